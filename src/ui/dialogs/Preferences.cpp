#include <QLocale>
#include <QTime>
#include <QVBoxLayout>
#include <cmath>

#include "core/SetupValues.h"
#include "platform/Platform.h"
#include "time/Sun.h"
#include "time/modTime.h"
#include "ui/dialogs/ClearTypeSample.h"
#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Hint.h"
#include "ui/dialogs/SetupProperties.h"
#include "ui/dialogs/Setups.h"
#include "ui/dialogs/Wording.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/SetupWindow.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

QString Degrees(double value, const char* positive, const char* negative) {
    return QLocale().toString(std::abs(value), 'f', 4) + "° " + (value < 0 ? negative : positive);
}

class Preferences final : public SetupWindow {
public:
    Preferences(Workspace& workspace, QWidget* parent)
        : SetupWindow(workspace, "Preferences", "Preferences", parent),
          form_(new PropertyForm(workspace)),
          hints_(new Hint),
          facts_(new FactList),
          sample_(new ClearTypeSample(workspace.Services().fonts)) {
        form_->Show(std::make_unique<SetupProperties>(workspace.Services()));
        facts_->Add("factPosition", "Position");
        facts_->Add("factSun", "Sun today");
        facts_->AddWidget("ClearType", sample_);
        Contents()->addWidget(form_, 1);
        Contents()->addWidget(hints_);
        Contents()->addWidget(facts_);
        latitude_ = Setup().stationLatitude;
        longitude_ = Setup().stationLongitude;
        connect(form_, &PropertyForm::Changed, this, &Preferences::Refresh);
        connect(&workspace, &Workspace::Pulse, this, &Preferences::Refresh);
        Refresh();
        resize(fontMetrics().averageCharWidth() * 75, fontMetrics().height() * 30);
    }

protected:
    void Restore() override { form_->Restore(); }

private:
    void Refresh() {
        const double latitude = Setup().stationLatitude, longitude = Setup().stationLongitude;
        facts_->Tell("factPosition", Degrees(latitude, "N", "S") + ", " + Degrees(longitude, "E", "W"));
        facts_->Tell("factSun", SunText(latitude, longitude));
        const bool moved = latitude != latitude_ || longitude != longitude_;
        hints_->Tell(moved ? QStringList{"Texts and schedules follow the sun of the new position from "
                                         "midnight on, or when the program is started anew."}
                           : QStringList());
        sample_->Refresh();
    }

    static QString SunText(double latitude, double longitude) {
        if (std::abs(latitude) > modTime::SunLatitudeLimit)
            return QString("Beyond %1° north or south no sun times are computed; both count as midnight.")
                .arg(modTime::SunLatitudeLimit);
        const auto time = [&](modTime::Sun event) {
            const double day = std::floor(modTime::Clock());
            const double when = modTime::SunEvent(event, latitude, longitude, modTime::GMTOffset(), day);
            return QLocale().toString(QTime(0, 0).addSecs(static_cast<int>(when * modTime::SecondsPerDay)),
                                      QLocale::ShortFormat);
        };
        return QString("rises at %1, sets at %2").arg(time(modTime::Sun::Rise), time(modTime::Sun::Set));
    }

    PropertyForm* form_;
    Hint* hints_;
    FactList* facts_;
    ClearTypeSample* sample_;
    double latitude_, longitude_;  ///< As the window found them.
};

}  // namespace

void ShowPreferences(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly("Preferences", [&] { return new Preferences(workspace, parent); });
}

}  // namespace tessaloom
