#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "model/Portfolio.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "text/VWS.h"
#include "time/modTime.h"
#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Hint.h"
#include "ui/dialogs/SetupPage.h"
#include "ui/dialogs/Setups.h"
#include "ui/dialogs/WeatherReadings.h"
#include "ui/dialogs/Wording.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/SetupWindow.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

class WeatherPage final : public SetupPage {
public:
    WeatherPage(Workspace& workspace, WeatherReadings* readings)
        : SetupPage(workspace, PropertySets::Weather(*workspace.Portfolio())), readings_(readings) {
        Facts()->Add("factFile", "File");
        Facts()->Add("factFileState", "On the disk");
        Facts()->Add("factRecord", "Last record");
        Facts()->Add("factNext", "Next reading");
        read_ =
            AddAction("cmdReadNow", "Read &Now", [this] { TheWorkspace().Portfolio()->VWS().ForceUpdate(); });
    }

private:
    void ShowFacts(Portfolio& portfolio) override {
        const VWS& weather = portfolio.VWS();
        const double now = portfolio.Now();
        const FileSystem& files = TheWorkspace().Services().fileSystem;
        const auto stamp = files.Stamp(weather.CSVFile());
        Facts()->TellPath("factFile", Wording::FullPath(files, weather.CSVFile()));
        Facts()->Tell("factFileState", weather.CSVFile().empty() ? QString()
                                       : stamp                   ? Wording::Size(stamp->size)
                                                                 : "There is no such file");
        Facts()->Tell("factRecord",
                      weather.CSVLastTime() > 0 ? Wording::Moment(weather.CSVLastTime(), now) : "None yet");
        Facts()->Tell("factNext", NextReading(weather, now));
        ShowHints(weather);
        read_->setEnabled(weather.CSVEnabled());
        read_->setToolTip(weather.CSVEnabled() ? QString() : "Only while weather data is read");
        readings_->Show(weather);
    }

    static QString NextReading(const VWS& weather, double now) {
        if (!weather.CSVEnabled()) return "Switched off";
        if (weather.NextTime() >= modTime::Never) return "Only when forced";
        return Wording::Due(weather.NextTime(), now);
    }

    void ShowHints(const VWS& weather) {
        QStringList hints;
        if (weather.CSVEnabled() && weather.CSVFile().empty()) hints += "There is no file yet.";
        if (weather.CSVEnabled() && !weather.CSVFile().empty() && !weather.Failure().empty())
            hints += "The file " + Wording::Words(weather.Failure()) + ".";
        if (!weather.CSVDataValid() && weather.CSVLastTime() > 0)
            hints += "Until it can be read again, texts show N/A in place of all readings.";
        Hints()->Tell(hints);
    }

    WeatherReadings* readings_;
    QPushButton* read_;
};

class WeatherSetup final : public SetupWindow {
public:
    WeatherSetup(Workspace& workspace, QWidget* parent)
        : SetupWindow(workspace, "WeatherSetup", "Weather Input", parent) {
        auto* readings = new WeatherReadings;
        page_ = new WeatherPage(workspace, readings);
        auto* sides = new QSplitter;
        sides->addWidget(page_);
        sides->addWidget(readings);
        sides->setChildrenCollapsible(false);
        sides->setStretchFactor(1, 1);
        Contents()->addWidget(sides);
        resize(fontMetrics().averageCharWidth() * 160, fontMetrics().height() * 36);
    }

protected:
    void Restore() override { page_->Form()->Restore(); }

private:
    WeatherPage* page_;
};

}  // namespace

void ShowWeatherSetup(Workspace& workspace, QWidget* parent) {
    if (!workspace.Portfolio()) return;
    SetupWindow::ShowOnly("WeatherSetup", [&] { return new WeatherSetup(workspace, parent); });
}

}  // namespace tessaloom
