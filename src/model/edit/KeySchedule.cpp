#include "model/edit/KeySchedule.h"

#include <cmath>
#include <optional>

#include "core/modNumbers.h"
#include "model/KeyKinds.h"

namespace tessaloom {

namespace {

constexpr double SecondsPerDay = 86400;

struct End {
    int mode = Schedule::Absolute;
    double value = 0;  ///< Fraction of a day, or minutes from the sun's event.
};

/// "+30 min", "-15.5 minutes", or nothing for no offset.
std::optional<double> ParseOffset(std::string_view text) {
    if (text.empty()) return 0;
    const auto unit = text.find(" min");
    double minutes = 0;
    if (unit == text.npos || !modNumbers::TryDblNI(std::string(text.substr(0, unit)), minutes)) return {};
    return minutes;
}

std::optional<End> ParseEnd(std::string_view text) {
    constexpr std::pair<std::string_view, int> Suns[] = {
        {"sunrise", Schedule::Sunrise},
        {"sunset",  Schedule::Sunset }
    };
    for (const auto& [word, mode] : Suns)
        if (text.starts_with(word)) {
            const auto minutes = ParseOffset(text.substr(word.size()));
            return minutes ? std::optional(End{mode, *minutes}) : std::nullopt;
        }
    int seconds = 0;
    if (TimeOfDay::Parse(std::string(text), seconds) != KeyFault::None) return {};
    return End{Schedule::Absolute, seconds / SecondsPerDay};
}

struct Window {
    End start, stop;
};

std::optional<Window> ParseWindow(std::string_view text) {
    constexpr std::string_view Between = " to ";
    const auto at = text.find(Between);
    if (at == text.npos) return {};
    const auto start = ParseEnd(text.substr(0, at));
    const auto stop = ParseEnd(text.substr(at + Between.size()));
    return start && stop ? std::optional(Window{*start, *stop}) : std::nullopt;
}

/// The setters of the three fields of an end, by its mode.
struct EndSetters {
    void (Schedule::*mode)(int);
    void (Schedule::*value[3])(double);
};
constexpr EndSetters Start = {
    &Schedule::SetStartMode,
    {&Schedule::SetStartAbsoluteTime, &Schedule::SetStartSunriseOffset, &Schedule::SetStartSunsetOffset}
};
constexpr EndSetters Stop = {
    &Schedule::SetStopMode,
    {&Schedule::SetStopAbsoluteTime, &Schedule::SetStopSunriseOffset, &Schedule::SetStopSunsetOffset}
};

void SetEnd(Schedule& schedule, const EndSetters& set, const End& end) {
    (schedule.*set.mode)(end.mode);
    (schedule.*set.value[end.mode])(end.value);
}

bool InRange(const End& end) {
    return end.mode == Schedule::Absolute ? end.value >= 0 && end.value <= Schedule::LatestTime
                                          : std::abs(end.value) <= Schedule::LongestOffset;
}

}  // namespace

KeyFault ScheduleText::Judge(const std::string& text) {
    if (text == Fallback) return KeyFault::None;
    const auto window = ParseWindow(text);
    if (!window) return KeyFault::NotATime;
    return InRange(window->start) && InRange(window->stop) ? KeyFault::None : KeyFault::OutOfRange;
}

KeyFault ScheduleText::Read(Schedule& schedule, const std::string& text) {
    if (text == Fallback) {
        schedule.SetScheduleMode(Schedule::Always);
        return KeyFault::None;
    }
    const auto window = ParseWindow(text);
    if (!window) return KeyFault::NotATime;
    schedule.SetScheduleMode(Schedule::FromStartTo);
    SetEnd(schedule, Start, window->start);
    SetEnd(schedule, Stop, window->stop);
    return Judge(text);
}

}  // namespace tessaloom
