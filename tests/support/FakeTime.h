#pragma once

#include "platform/SystemTime.h"
#include "support/Testing.h"
#include "time/PresentTime.h"
#include "time/modTime.h"

namespace tessaloom::testing {

/// A wall clock that stands still until a test moves it. It is the process's clock for as long as it lives.
///
/// It counts whole microseconds, so that moving it in steps never drifts.
class FakeTime : public SystemTime, public PresentTime {
public:
    /// 2026-01-15, the day on which tests begin unless they say otherwise.
    static constexpr double FirstDay = 46037;

    explicit FakeTime(double moment = FirstDay) {
        Set(moment);
        modTime::UseSystemTime(*this);
    }
    ~FakeTime() override { modTime::ReleaseSystemTime(*this); }
    FakeTime(const FakeTime&) = delete;
    FakeTime& operator=(const FakeTime&) = delete;

    void Set(double moment) { microseconds_ = std::llround(moment * modTime::SecondsPerDay * 1e6); }
    void Set(double day, int hour, int minute, double second = 0) {
        Set(day);
        Advance(hour * 3600 + minute * 60 + second);
    }
    void Advance(double seconds) { microseconds_ += std::llround(seconds * 1e6); }

    /// What `Zone` answers; at first a zone without a name at offset 0 whose standard time is in force.
    ZoneRecord& ZoneInForce() { return zone_; }

    /// The next readings of the date and time, in whole seconds, ahead of the clock's own.
    void ScriptDateTimes(std::vector<double> moments) { scripted_ = std::move(moments); }

    /// The present moment to the microsecond.
    double Now() const override {
        return static_cast<double>(microseconds_) / (modTime::SecondsPerDay * 1e6);
    }

    double LocalDateTime() const override {
        ++readings_;
        if (!scripted_.empty()) {
            const double moment = scripted_.front();
            scripted_.erase(scripted_.begin());
            return moment;
        }
        return static_cast<double>(microseconds_ / Million) / modTime::SecondsPerDay;
    }
    double SecondsSinceMidnight() const override {
        return static_cast<double>(microseconds_ % (86400 * Million)) / 1e6;
    }
    ZoneRecord Zone() const override {
        ++zoneReadings_;
        return zone_;
    }

    int Readings() const { return readings_; }          ///< Of the date and time.
    int ZoneReadings() const { return zoneReadings_; }  ///< Of the zone record.

private:
    static constexpr std::int64_t Million = 1'000'000;

    std::int64_t microseconds_ = 0;  ///< Since day 0.
    ZoneRecord zone_{ZoneRecord::State::Standard, 0, 0, 0, {}, {}};
    mutable std::vector<double> scripted_;
    mutable int readings_ = 0;
    mutable int zoneReadings_ = 0;
};

}  // namespace tessaloom::testing
