#include "platform/qt/QtSystemTime.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

std::timespec universalTime{};

std::timespec SetClock() { return universalTime; }

/// Puts the process into another time zone for a while.
class Zone {
public:
    explicit Zone(const char* name) {
        if (const char* before = std::getenv("TZ")) before_ = before;
        setenv("TZ", name, 1);
        tzset();
    }
    ~Zone() {
        before_ ? setenv("TZ", before_->c_str(), 1) : unsetenv("TZ");
        tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;

private:
    std::optional<std::string> before_;
};

constexpr std::time_t January = 1768478400;  // 2026-01-15 12:00 UTC
constexpr std::time_t July = 1784116800;     // 2026-07-15 12:00 UTC

TEST(QtSystemTime, TellsTheZone) {
    using State = ZoneRecord::State;
    struct {
        const char* zone;
        std::time_t time;
        State state;
        int bias, daylightBias;
        const char *standardName, *daylightName;
    } const rows[] = {
  // clang-format off
        {"America/New_York", January, State::Standard, 300, -60, "Eastern Standard Time", "Eastern Daylight Time"},
        {"America/New_York", July, State::Daylight, 300, -60, "Eastern Standard Time", "Eastern Daylight Time"},
        {"Europe/Berlin", July, State::Daylight, -60, -60, "Central European Standard Time",
         "Central European Summer Time"},
        {"Australia/Sydney", January, State::Daylight, -600, -60, "Australian Eastern Standard Time",
         "Australian Eastern Daylight Time"},
        {"Australia/Lord_Howe", January, State::Daylight, -630, -30, "Lord Howe Standard Time",
         "Lord Howe Daylight Time"},
        {"Asia/Kolkata", July, State::Standard, -330, 0, "India Standard Time", ""},
        {"Etc/UTC", July, State::Standard, 0, 0, "Coordinated Universal Time", ""},
        {"EST5EDT,M3.2.0,M11.1.0", January, State::Standard, 300, -60, "EST", "EDT"},
  // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.zone);
        const Zone zone(row.zone);
        universalTime = {row.time, 0};
        const ZoneRecord record = QtSystemTime(SetClock).Zone();
        EXPECT_EQ(record.state, row.state);
        EXPECT_EQ(record.bias, row.bias);
        EXPECT_EQ(record.daylightBias, row.daylightBias);
        EXPECT_EQ(record.standardBias, 0);
        EXPECT_EQ(record.standardName, row.standardName);
        EXPECT_EQ(record.daylightName, row.daylightName);
    }
}

TEST(QtSystemTime, ZoneAgreesWithTheClock) {
    for (const char* name : {"America/New_York", "Europe/Dublin", "Africa/Casablanca", "Asia/Kathmandu",
                             "Pacific/Chatham", "America/St_Johns", "Nowhere/At_All"}) {
        const Zone zone(name);
        const QtSystemTime time(SetClock);
        for (std::time_t day = 0; day < 400; day += 7) {
            SCOPED_TRACE(::testing::Message() << name << " day " << day);
            universalTime = {January + day * 86400, 0};
            const ZoneRecord record = time.Zone();
            const int daylight = record.state == ZoneRecord::State::Daylight ? record.daylightBias : 0;
            const double ahead =
                time.LocalDateTime() - (25569 + static_cast<double>(universalTime.tv_sec) / 86400);
            EXPECT_EQ(std::lround(ahead * 1440), -(record.bias + daylight));
            const bool named = !record.standardName.empty() || !record.daylightName.empty();
            EXPECT_EQ(named, record.state != ZoneRecord::State::Unknown);
        }
    }
}

TEST(QtSystemTime, JumpsWithTheWallClock) {
    const Zone zone("Europe/Berlin");
    const QtSystemTime time(SetClock);
    constexpr std::time_t Forward = 1774746000;  // 2026-03-29 01:00 UTC, 02:00 becomes 03:00
    constexpr std::time_t Back = 1792890000;     // 2026-10-25 01:00 UTC, 03:00 becomes 02:00
    struct {
        std::time_t universal;
        long nanoseconds;
        double day, seconds;  // local
    } const rows[] = {
        {Forward - 1,            990'000'000, 46110, 7199.99  },
        {Forward,                0,           46110, 10800    },
        {Forward,                250'000'000, 46110, 10800.25 },
        {Back - 1,               999'000'000, 46320, 10799.999},
        {Back,                   0,           46320, 7200     },
        {Back - 2 * 3600 - 3600, 0,           46320, 0        },
        {Back - 2 * 3600 - 3601, 0,           46319, 86399    },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.seconds);
        universalTime = {row.universal, row.nanoseconds};
        EXPECT_DOUBLE_EQ(time.LocalDateTime(), row.day + std::floor(row.seconds) / 86400);
        EXPECT_NEAR(time.SecondsSinceMidnight(), row.seconds, 1e-9);
    }
}

}  // namespace
}  // namespace tessaloom::testing
