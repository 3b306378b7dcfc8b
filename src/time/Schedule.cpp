#include "time/Schedule.h"

#include "core/ErrorReport.h"
#include "core/modNumbers.h"
#include "time/modTime.h"

#include <cmath>

namespace tessaloom {
namespace {

constexpr std::string_view Module = "Schedule.cls";

constexpr double MinutesPerDay = 1440;

/// A moment is exact to about half of this only: without it 08:00:00 of many a day would lie before 08:00:00.
constexpr double Microsecond = 1e-6 / modTime::SecondsPerDay;

constexpr Range<int> Modes{Schedule::Always, Schedule::FromStartTo};
constexpr Range<int> Ends{Schedule::Absolute, Schedule::Sunset};
constexpr Range<double> TimesOfDay{0, Schedule::LatestTime};
constexpr Range<double> Offsets{-Schedule::LongestOffset, Schedule::LongestOffset};

/// "+30 min", "-15.5 min" or, for 0, nothing.
std::string SignedMinutes(double minutes, std::string_view unit) {
    if (minutes == 0) return {};
    std::string text = minutes > 0 ? "+" : "";
    text += modNumbers::CStrNI(minutes);
    return text.append(unit);
}

}  // namespace

void Schedule::Reset() {
    canvasIndex_ = 0;
    scheduleMode_ = Always;
    start_ = {};
    stop_ = {};
    needsSaving_ = false;
    lastState_ = false;
}

bool Schedule::EnableNow(double time) {
    return Trap({Module, "EnableNow"}, [&] {
        const bool enabled = scheduleMode_ == Always || InWindow(time);
        if (enabled != lastState_) {
            lastState_ = enabled;
            if (canvasIndex_ != 0 && redraw_) redraw_();
        }
        return enabled;
    });
}

bool Schedule::InWindow(double time) const {
    const double day = std::floor(time);
    const double timeOfDay = time - day;
    const double start = start_.TimeOfDay(day);
    const double stop = stop_.TimeOfDay(day);
    if (start == stop) return true;
    const bool started = timeOfDay >= start - Microsecond;
    const bool notStopped = timeOfDay <= stop + Microsecond;
    return start < stop ? started && notStopped : started || notStopped;
}

double Schedule::WindowEnd::TimeOfDay(double day) const {
    switch (mode) {
        case Sunrise:
            return modTime::SunTimesOn(day).sunrise + sunriseOffset / MinutesPerDay;
        case Sunset:
            return modTime::SunTimesOn(day).sunset + sunsetOffset / MinutesPerDay;
        default:
            return absoluteTime;
    }
}

std::string Schedule::Description() const {
    return Trap({Module, "Description"}, [&]() -> std::string {
        if (scheduleMode_ == Always) return "24-hours";
        return start_.Description(" min") + " to " + stop_.Description(" minutes");  // kept: they differ
    });
}

std::string Schedule::WindowEnd::Description(std::string_view sunriseUnit) const {
    switch (mode) {
        case Sunrise:
            return "sunrise" + SignedMinutes(sunriseOffset, sunriseUnit);
        case Sunset:
            return "sunset" + SignedMinutes(sunsetOffset, " min");
        default:
            return modNumbers::FormatNI(absoluteTime, "HH:MM:SS");
    }
}

template <typename T>
void Schedule::Set(T& field, T value, Range<T> range) {
    if (!Store(field, value, range)) return;
    needsSaving_ = true;
    if (owner_) owner_->SettingChanged();
}

void Schedule::SetScheduleMode(int mode) { Set(scheduleMode_, mode, Modes); }
void Schedule::SetStartMode(int end) { Set(start_.mode, end, Ends); }
void Schedule::SetStopMode(int end) { Set(stop_.mode, end, Ends); }
void Schedule::SetStartAbsoluteTime(double time) { Set(start_.absoluteTime, time, TimesOfDay); }
void Schedule::SetStopAbsoluteTime(double time) { Set(stop_.absoluteTime, time, TimesOfDay); }
void Schedule::SetStartSunriseOffset(double minutes) { Set(start_.sunriseOffset, minutes, Offsets); }
void Schedule::SetStopSunriseOffset(double minutes) { Set(stop_.sunriseOffset, minutes, Offsets); }
void Schedule::SetStartSunsetOffset(double minutes) { Set(start_.sunsetOffset, minutes, Offsets); }
void Schedule::SetStopSunsetOffset(double minutes) { Set(stop_.sunsetOffset, minutes, Offsets); }

}  // namespace tessaloom
