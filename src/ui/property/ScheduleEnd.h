#pragma once

#include <QGroupBox>
#include <array>
#include <functional>

class QDoubleSpinBox;
class QLabel;
class QRadioButton;
class QTimeEdit;

namespace tessaloom {

class Schedule;

/// One of the three ways to name an end of the daily window.
struct ScheduleWay {
    const char* caption;
    double (Schedule::*value)() const;  ///< A fraction of a day, or minutes from the sun's event.
    void (Schedule::*setValue)(double);
};

/// The start or the stop of a schedule, with the captions of its ways, in the order of their numbers.
struct ScheduleEndWords {
    const char* name;
    const char* title;
    int (Schedule::*mode)() const;
    void (Schedule::*setMode)(int);
    std::array<ScheduleWay, 3> ways;
};

const ScheduleEndWords& ScheduleStart();
const ScheduleEndWords& ScheduleStop();

/// Sets one end of a schedule: three choices, each with its value.
class ScheduleEnd : public QGroupBox {
public:
    using Change = std::function<void(Schedule&)>;

    /// apply: called with each change that the person makes.
    ScheduleEnd(const ScheduleEndWords& words, std::function<void(const Change&)> apply);

    /// Shows what `schedule` holds, but for a value that is being typed.
    void Show(const Schedule& schedule);

private:
    QWidget* MakeEditor(int way);
    void Choose(int way);
    void Set(int way, double value);

    const ScheduleEndWords& words_;
    std::function<void(const Change&)> apply_;
    std::array<QRadioButton*, 3> buttons_{};
    QTimeEdit* time_ = nullptr;
    std::array<QDoubleSpinBox*, 3> offsets_{};  ///< The first is null: an absolute time has none.
};

}  // namespace tessaloom
