#include "ui/property/ScheduleEnd.h"

#include <QButtonGroup>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTimeEdit>
#include <algorithm>
#include <cmath>

#include "time/Schedule.h"
#include "time/modTime.h"

namespace tessaloom {

namespace {

// clang-format off
constexpr ScheduleEndWords Start{"Start", "Start", &Schedule::StartMode, &Schedule::SetStartMode, {{
    {"&Abs. Time: (HH:MM:SS)", &Schedule::StartAbsoluteTime,  &Schedule::SetStartAbsoluteTime},
    {"&Sunrise +/- minutes",   &Schedule::StartSunriseOffset, &Schedule::SetStartSunriseOffset},
    {"S&unset +/- minutes",    &Schedule::StartSunsetOffset,  &Schedule::SetStartSunsetOffset},
}}};
constexpr ScheduleEndWords Stop{"Stop", "Stop", &Schedule::StopMode, &Schedule::SetStopMode, {{
    {"Abs. &Time: (HH:MM:SS)", &Schedule::StopAbsoluteTime,  &Schedule::SetStopAbsoluteTime},
    {"Su&nrise +/- minutes",   &Schedule::StopSunriseOffset, &Schedule::SetStopSunriseOffset},
    {"Sunse&t +/- minutes",    &Schedule::StopSunsetOffset,  &Schedule::SetStopSunsetOffset},
}}};
// clang-format on

constexpr std::array<const char*, 3> WayNames = {"AbsoluteTime", "SunriseOffset", "SunsetOffset"};

QTime TimeOf(double fraction) {
    return QTime(0, 0).addSecs(static_cast<int>(std::lround(fraction * modTime::SecondsPerDay)));
}

/// Minutes without zeros behind the decimal separator.
class MinutesBox : public QDoubleSpinBox {
public:
    MinutesBox() {
        setRange(-Schedule::LongestOffset, Schedule::LongestOffset);
        setDecimals(3);
        setSingleStep(5);
    }
    QString textFromValue(double value) const override {
        return (value > 0 ? QStringLiteral("+") : QString()) +
               locale().toString(value, 'g', QLocale::FloatingPointShortest);
    }
};

}  // namespace

const ScheduleEndWords& ScheduleStart() { return Start; }
const ScheduleEndWords& ScheduleStop() { return Stop; }

ScheduleEnd::ScheduleEnd(const ScheduleEndWords& words, std::function<void(const Change&)> apply)
    : QGroupBox(tr(words.title)), words_(words), apply_(std::move(apply)) {
    setObjectName(QLatin1String(words.name));
    auto* grid = new QGridLayout(this);
    auto* choices = new QButtonGroup(this);
    for (int way = 0; way < 3; ++way) {
        const auto index = static_cast<std::size_t>(way);
        const QString caption = tr(words.ways[index].caption);
        const QString name = QLatin1String(words.name) + QLatin1String(WayNames[index]);
        buttons_[index] = new QRadioButton(caption);
        buttons_[index]->setObjectName(name);
        choices->addButton(buttons_[index]);
        QWidget* editor = MakeEditor(way);
        editor->setObjectName(name + QStringLiteral("Value"));
        editor->setAccessibleName(QStringLiteral("%1: %2").arg(title(), QString(caption).remove('&')));
        grid->addWidget(buttons_[index], way, 0);
        grid->addWidget(editor, way, 1);
        connect(buttons_[index], &QRadioButton::clicked, this, [this, way] { Choose(way); });
    }
    grid->setColumnStretch(0, 1);
}

QWidget* ScheduleEnd::MakeEditor(int way) {
    if (way == Schedule::Absolute) {
        time_ = new QTimeEdit;
        time_->setDisplayFormat(QStringLiteral("HH:mm:ss"));
        time_->setMaximumTime(TimeOf(Schedule::LatestTime));
        connect(time_, &QTimeEdit::timeChanged, this, [this](QTime time) {
            Set(Schedule::Absolute, QTime(0, 0).secsTo(time) / modTime::SecondsPerDay);
        });
        return time_;
    }
    auto* minutes = new MinutesBox;
    offsets_[static_cast<std::size_t>(way)] = minutes;
    connect(minutes, &QDoubleSpinBox::valueChanged, this, [this, way](double value) { Set(way, value); });
    return minutes;
}

void ScheduleEnd::Choose(int way) {
    const auto setMode = words_.setMode;
    apply_([setMode, way](Schedule& schedule) { (schedule.*setMode)(way); });
}

void ScheduleEnd::Set(int way, double value) {
    apply_([this, way, value](Schedule& schedule) {
        (schedule.*words_.ways[static_cast<std::size_t>(way)].setValue)(value);
    });
}

void ScheduleEnd::Show(const Schedule& schedule) {
    const int mode = (schedule.*words_.mode)();
    for (int way = 0; way < 3; ++way) {
        const auto index = static_cast<std::size_t>(way);
        QWidget* editor = time_;
        const double value = (schedule.*words_.ways[index].value)();
        if (way == Schedule::Absolute) {
            const QSignalBlocker quiet(time_);
            if (!time_->hasFocus()) time_->setTime(TimeOf(value));
        } else {
            const QSignalBlocker quiet(offsets_[index]);
            if (!offsets_[index]->hasFocus()) offsets_[index]->setValue(value);
            editor = offsets_[index];
        }
        buttons_[index]->setChecked(way == mode);
        editor->setEnabled(way == mode);
    }
}

}  // namespace tessaloom
