#include "time/modTime.h"

#include "core/ErrorReport.h"
#include "locale/Error.h"
#include "platform/FileSystem.h"
#include "platform/SystemTime.h"
#include "time/Sun.h"
#include "time/TimeZoneLookup.h"

#include <cmath>
#include <utility>

namespace tessaloom::modTime {
namespace {

constexpr std::string_view Module = "modTime.bas";

const SystemTime* systemTime = nullptr;

const SystemTime& System() {
    if (!systemTime) throw Error(ErrorNumber::Internal, "No clock is in use");
    return *systemTime;
}

struct Station {
    double latitude = 0, longitude = 0;  // degrees
} station;

struct SunDay {
    double day = -1;
    SunTimes times;
};

/// The day asked for last and the one before it: around midnight one tick may ask for both of them in turn.
struct {
    SunDay latest, other;
} sunDays;

TimeZoneLookup& Lookup() {
    static TimeZoneLookup lookup;
    return lookup;
}

}  // namespace

void UseSystemTime(const SystemTime& time) {
    systemTime = &time;
    sunDays = {};
}

void ReleaseSystemTime(const SystemTime& time) {
    if (systemTime == &time) systemTime = nullptr;
}

double Clock() {
    return Trap({Module, "Clock"}, [] {
        const SystemTime& system = System();
        const double before = system.LocalDateTime();
        const double seconds = system.SecondsSinceMidnight();
        const double fraction = seconds - std::floor(seconds);
        const double after = system.LocalDateTime();
        // When the second ticked in between, a small fraction was read after the tick, a large one before it.
        const double whole = fraction < 0.5 ? after : before;
        return (fraction + whole * SecondsPerDay) / SecondsPerDay;
    });
}

double CalcNextUpdate(double rate, double baseTime, double now) {
    if (rate == 0) return now;
    return Trap({Module, "CalcNextUpdate"}, [&] {
        const double microsecond = 0.0001;  // in hundredths of a second, as the whole quotient is
        const double hundredths = now * (SecondsPerDay * 100) - baseTime * 100 + microsecond;
        const double runs = std::floor(hundredths / (rate * 100));
        const double next = ((runs + 1) * rate + baseTime) / SecondsPerDay;
        if (!std::isfinite(next)) throw Error(ErrorNumber::Overflow);
        return next;
    });
}

std::string GetTimeZone() {
    return Trap({Module, "GetTimeZone"}, []() -> std::string {
        const ZoneRecord zone = System().Zone();
        if (zone.state == ZoneRecord::State::Unknown) return "Unknown";
        const bool daylight = zone.state == ZoneRecord::State::Daylight;
        const std::string& name = daylight ? zone.daylightName : zone.standardName;
        return name.empty() ? "Not Available" : name;
    });
}

double GMTOffset() {
    return Trap({Module, "GMTOffset"}, [] {
        const ZoneRecord zone = System().Zone();
        double offset = zone.bias / 60.0;
        if (zone.state == ZoneRecord::State::Standard) offset += zone.standardBias / 60.0;
        if (zone.state == ZoneRecord::State::Daylight) offset += zone.daylightBias / 60.0;
        return offset;
    });
}

void LoadTimeZoneLookup(FileSystem& files) {
    Trap({Module, "LoadTimeZoneLookup"}, [&] {
        constexpr std::size_t MostBytes = 1 << 20;  // far more than there are zones; keeps odd files out
        Lookup().Load(files.ReadFile(TimeZoneLookup::FileName, MostBytes).value_or(""));
    });
}

std::string ConvertedTimeZone() {
    return Trap({Module, "ConvertedTimeZone"}, []() -> std::string {
        const std::string* value = Lookup().Find(GetTimeZone());
        return value ? *value : "Not defined in timezone.txt";
    });
}

void SetStation(double latitude, double longitude) { station = {latitude, longitude}; }

const SunTimes& SunTimesOn(double day) {
    if (sunDays.latest.day == day) return sunDays.latest.times;
    std::swap(sunDays.latest, sunDays.other);
    if (sunDays.latest.day != day) {
        const auto time = [offset = GMTOffset(), day](Sun event) {
            return SunEvent(event, station.latitude, station.longitude, offset, day);
        };
        sunDays.latest = {
            day, {time(Sun::Rise), time(Sun::Set)}
        };
    }
    return sunDays.latest.times;
}

double Sunrise() {
    return Trap({Module, "Sunrise"}, [] { return SunTimesOn(std::floor(Clock())).sunrise; });
}

double Sunset() {
    return Trap({Module, "Sunset"}, [] { return SunTimesOn(std::floor(Clock())).sunset; });
}

double GetSunrise() { return Sunrise(); }

double GetSunset() { return Sunset(); }

}  // namespace tessaloom::modTime
