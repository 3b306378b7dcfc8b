#include "ui/property/ScheduleSetup.h"

#include <QApplication>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QTime>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "core/SetupValues.h"
#include "model/edit/History.h"
#include "model/edit/KeySchedule.h"
#include "time/Schedule.h"
#include "time/Sun.h"
#include "time/modTime.h"
#include "ui/property/DayBand.h"
#include "ui/property/ScheduleEnd.h"
#include "ui/property/editors/Parts.h"
#include "ui/shared/SetupWindow.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

/// A copy that can be asked about any moment: the canvas would be redrawn for each answer that differs.
Schedule Askable(const Schedule& schedule) {
    Schedule copy = schedule;
    copy.SetCanvasIndex(0);
    return copy;
}

/// For each minute of the day whether the schedule lets its activity act.
std::vector<bool> MinutesOn(Schedule asked, double day) {
    std::vector<bool> on(DayBand::MinutesPerDay);
    for (int minute = 0; minute < DayBand::MinutesPerDay; ++minute)
        on[static_cast<std::size_t>(minute)] =
            asked.EnableNow(day + static_cast<double>(minute) / DayBand::MinutesPerDay);
    return on;
}

/// "On now, until 17:00." on: `MinutesOn`.
QString StateNow(bool onNow, const std::vector<bool>& on, double timeOfDay) {
    const int count = DayBand::MinutesPerDay;
    const int present = static_cast<int>(timeOfDay * count);
    int ahead = 1;
    while (ahead <= count && on[static_cast<std::size_t>((present + ahead) % count)] == onNow) ++ahead;
    if (ahead > count) return onNow ? QObject::tr("On all day.") : QObject::tr("Off all day.");
    // Both ends belong to the window: the last minute found on is the one that it ends with.
    const int change = (present + ahead - (onNow ? 1 : 0)) % count;
    return (onNow ? QObject::tr("On now, until %1.") : QObject::tr("Off now, on at %1."))
        .arg(QTime(change / 60, change % 60).toString(QStringLiteral("HH:mm")));
}

/// What has to be known of the sun times; "" when they are as expected.
QString SunWarning() {
    const SetupValues& setup = Setup();
    if (std::abs(setup.stationLatitude) > modTime::SunLatitudeLimit)
        return QObject::tr(
            "This far from the equator no sunrise and sunset are computed: both count as 00:00.");
    if (setup.stationLatitude == 0 && setup.stationLongitude == 0)
        return QObject::tr(
            "Sunrise and sunset are those of latitude 0, longitude 0. Enter your place under "
            "Setup, Preferences.");
    return {};
}

class frmScheduler : public SetupWindow {
public:
    frmScheduler(Workspace& workspace, QWidget* parent, std::string name, int canvas, FindSchedules find)
        : SetupWindow(workspace, QStringLiteral("frmScheduler"), tr("Schedule Setup"), parent),
          name_(std::move(name)),
          canvas_(canvas),
          find_(std::move(find)) {
        for (const Schedule* schedule : find_())
            found_.push_back(schedule ? ScheduleText::Write(*schedule) : std::string());
        MakeContents();
        Refresh();
        connect(&workspace, &Workspace::Pulse, this, [this] {
            if (isVisible()) Refresh();
        });
    }

    bool IsFor(const FindSchedules& find) const { return find_() == find(); }

protected:
    void Restore() override {
        const std::vector<Schedule*> schedules = find_();
        {
            const HistoryStep step = Step();
            for (std::size_t i = 0; i < std::min(schedules.size(), found_.size()); ++i)
                if (schedules[i]) ScheduleText::Read(*schedules[i], found_[i]);
        }
        Refresh();
    }

    void Closing() override {
        if (History* history = TheWorkspace().HistoryOf(canvas_)) history->Seal();
    }

private:
    void MakeContents() {
        subject_->setText(QString::fromStdString(name_));
        QFont bold = font();
        bold.setBold(true);
        subject_->setFont(bold);
        Contents()->addWidget(subject_);
        Contents()->addWidget(band_);
        constexpr std::array<const char*, 2> Captions = {"24-&Hours", "&From Start to"};
        // Without a group the toolkit counts those of the boxes below in, and Tab passes them by.
        auto* modes = new QButtonGroup(this);
        for (int mode = 0; mode < 2; ++mode) {
            auto* button = new QRadioButton(tr(Captions[static_cast<std::size_t>(mode)]));
            button->setObjectName(mode == Schedule::Always ? QStringLiteral("Always")
                                                           : QStringLiteral("FromStartTo"));
            connect(button, &QRadioButton::clicked, this,
                    [this, mode] { Apply([mode](Schedule& schedule) { schedule.SetScheduleMode(mode); }); });
            modes->addButton(button);
            Contents()->addWidget(button);
            modes_[static_cast<std::size_t>(mode)] = button;
        }
        auto* ends = new QHBoxLayout;
        const auto apply = [this](const ScheduleEnd::Change& change) { Apply(change); };
        start_ = new ScheduleEnd(ScheduleStart(), apply);
        stop_ = new ScheduleEnd(ScheduleStop(), apply);
        ends->addWidget(start_);
        ends->addWidget(stop_);
        Contents()->addLayout(ends);
        for (QLabel* label : {summary_, differ_, warning_}) {
            label->setWordWrap(true);
            Contents()->addWidget(label);
        }
        summary_->setObjectName(QStringLiteral("summary"));
        differ_->setObjectName(QStringLiteral("differ"));
        differ_->setText(Editors::DifferHint());
        warning_->setForegroundRole(QPalette::PlaceholderText);
        Contents()->addStretch();
    }

    HistoryStep Step() {
        return HistoryStep(TheWorkspace().HistoryOf(canvas_), "Change schedule", "schedule " + name_);
    }

    /// The one that is shown: the last that is there.
    static Schedule* Lead(const std::vector<Schedule*>& schedules) {
        const auto lead = std::find_if(schedules.rbegin(), schedules.rend(), [](auto* each) { return each; });
        return lead == schedules.rend() ? nullptr : *lead;
    }

    void Apply(const ScheduleEnd::Change& change) {
        const std::vector<Schedule*> schedules = find_();
        Schedule* const lead = Lead(schedules);
        if (!lead) return;
        {
            const HistoryStep step = Step();
            change(*lead);
            const std::string text = ScheduleText::Write(*lead);
            for (Schedule* schedule : schedules)
                if (schedule && schedule != lead) ScheduleText::Read(*schedule, text);
        }
        Refresh();
    }

    static bool Differ(const std::vector<Schedule*>& schedules, const Schedule& lead) {
        return std::any_of(schedules.begin(), schedules.end(), [&](const Schedule* each) {
            return each && ScheduleText::Write(*each) != ScheduleText::Write(lead);
        });
    }

    void Refresh() {
        const std::vector<Schedule*> schedules = find_();
        const Schedule* schedule = Lead(schedules);
        differ_->setVisible(schedule && Differ(schedules, *schedule));
        for (QWidget* part : std::initializer_list<QWidget*>{modes_[0], modes_[1], start_, stop_, band_})
            part->setEnabled(schedule);
        if (!schedule) {
            summary_->setText(tr("What had this schedule is gone."));
            return;
        }
        const double now = TheWorkspace().Portfolio() ? TheWorkspace().Portfolio()->Now() : modTime::Clock();
        const double day = std::floor(now), timeOfDay = now - day;
        const modTime::SunTimes& sun = modTime::SunTimesOn(day);
        const std::vector<bool> on = MinutesOn(Askable(*schedule), day);
        const bool onNow = Askable(*schedule).EnableNow(now);
        const bool window = schedule->ScheduleMode() == Schedule::FromStartTo;
        band_->ShowDay(sun.sunrise, sun.sunset, on);
        band_->ShowNow(timeOfDay);
        modes_[window ? 1 : 0]->setChecked(true);
        start_->Show(*schedule);
        stop_->Show(*schedule);
        start_->setEnabled(window);
        stop_->setEnabled(window);
        summary_->setText(QStringLiteral("%1%2. %3")
                              .arg(tr("Schedule: "), QString::fromStdString(schedule->Description()),
                                   StateNow(onNow, on, timeOfDay)));
        const QString warning = SunWarning();
        warning_->setText(warning);
        warning_->setVisible(!warning.isEmpty());
    }

    const std::string name_;
    const int canvas_;
    const FindSchedules find_;
    std::vector<std::string> found_;  ///< As they were when the window was opened.
    QLabel* subject_ = new QLabel;
    DayBand* band_ = new DayBand;
    std::array<QRadioButton*, 2> modes_{};
    ScheduleEnd* start_ = nullptr;
    ScheduleEnd* stop_ = nullptr;
    QLabel* summary_ = new QLabel;
    QLabel* differ_ = new QLabel;
    QLabel* warning_ = new QLabel;
};

/// A window that shows another schedule makes room, keeping what was set there.
void CloseOthers(const FindSchedules& find) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* open = dynamic_cast<frmScheduler*>(window); open && open->isVisible() && !open->IsFor(find))
            open->accept();
}

}  // namespace

void ShowScheduleSetup(Workspace& workspace, QWidget* parent, const std::string& name, int canvas,
                       FindSchedules find) {
    CloseOthers(find);
    SetupWindow::ShowOnly(QStringLiteral("frmScheduler"),
                          [&] { return new frmScheduler(workspace, parent, name, canvas, std::move(find)); });
}

}  // namespace tessaloom
