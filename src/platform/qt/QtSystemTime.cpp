#include "platform/qt/QtSystemTime.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

namespace tessaloom {
namespace {

constexpr int SecondsPerDay = 86400;
constexpr std::time_t UnixEpoch = 25569;  // 1 January 1970 as a day number

std::string NameOf(const QTimeZone& zone, const QDateTime& time) {
    return zone.displayName(time, QTimeZone::LongName, QLocale::c()).toStdString();
}

/// `offset`: seconds that local time is ahead, as the clock itself applies it.
ZoneRecord ZoneAt(std::time_t universal, int offset) {
    const QTimeZone zone = QTimeZone::systemTimeZone();
    ZoneRecord record;
    record.bias = -offset / 60;
    if (!zone.isValid()) return record;

    // Ireland counts its winter as daylight saving of minus one hour; here only a clock put forward is that.
    const QDateTime now = QDateTime::fromSecsSinceEpoch(universal, Qt::UTC);
    const int shift = zone.daylightTimeOffset(now);
    const QTimeZone::OffsetData other = zone.nextTransition(now);
    if (shift > 0) {
        record.state = ZoneRecord::State::Daylight;
        record.bias += shift / 60;
        record.daylightBias = -shift / 60;
        record.daylightName = NameOf(zone, now);
        if (other.atUtc.isValid()) record.standardName = NameOf(zone, other.atUtc);
    } else {
        record.state = ZoneRecord::State::Standard;
        record.standardName = NameOf(zone, now);
        if (other.atUtc.isValid() && other.offsetFromUtc > offset) {
            record.daylightBias = (offset - other.offsetFromUtc) / 60;
            record.daylightName = NameOf(zone, other.atUtc);
        }
    }
    return record;
}

}  // namespace

std::timespec QtSystemTime::ComputerClock() {
    std::timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now;
}

const QtSystemTime::Second& QtSystemTime::At(std::time_t universal) const {
    if (second_.universal == universal) return second_;
    if (second_.universal / 60 != universal / 60) tzset();  // looks at the zone's file again
    std::tm local{};
    localtime_r(&universal, &local);
    second_.universal = universal;
    second_.offset = static_cast<int>(local.tm_gmtoff);
    const std::time_t seconds = universal + local.tm_gmtoff;
    second_.secondsSinceMidnight =
        static_cast<int>((seconds % SecondsPerDay + SecondsPerDay) % SecondsPerDay);
    second_.moment = static_cast<double>(UnixEpoch * SecondsPerDay + seconds) / SecondsPerDay;
    return second_;
}

double QtSystemTime::LocalDateTime() const { return At(clock_().tv_sec).moment; }

double QtSystemTime::SecondsSinceMidnight() const {
    const std::timespec now = clock_();
    return At(now.tv_sec).secondsSinceMidnight + static_cast<double>(now.tv_nsec) * 1e-9;
}

ZoneRecord QtSystemTime::Zone() const {
    const std::time_t universal = clock_().tv_sec;
    if (zoneMinute_ != universal / 60) {
        zone_ = ZoneAt(universal, At(universal).offset);
        zoneMinute_ = universal / 60;
    }
    return zone_;
}

}  // namespace tessaloom
