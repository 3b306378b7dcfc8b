#include "time/Sun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaloom::modTime {
namespace {

constexpr double March20 = 45371, June20 = 45463, June21 = 45464, September22 = 45557,
                 December21 = 45647;  // 2024

double HourMinute(int hour, int minute) { return (hour * 60 + minute) / 1440.0; }

TEST(SunEvent, AgreesWithAlmanacs) {
    struct {
        const char* place;
        double latitude, longitude, offset, day, rise, set;
    } const rows[] = {
        {"London in summer",            51.5074,  -0.1278,   -1,  June21,      HourMinute(4,  43), HourMinute(21, 22)},
        {"London in winter",            51.5074,  -0.1278,   0,   December21,  HourMinute(8,  4),  HourMinute(15, 53)},
        {"New York in summer",          40.7128,  -74.006,   4,   June20,      HourMinute(5,  25), HourMinute(20, 31)},
        {"New York in winter",          40.7128,  -74.006,   5,   December21,  HourMinute(7,  17), HourMinute(16, 32)},
        {"Sydney in summer",            -33.8688, 151.2093,  -11, December21,  HourMinute(5,  41), HourMinute(20, 5) },
        {"Sydney in winter",            -33.8688, 151.2093,  -10, June21,      HourMinute(7,  0),  HourMinute(16, 54)},
        {"Auckland",                    -36.8485, 174.7633,  -13, December21,  HourMinute(5,  58), HourMinute(20, 39)},
        {"Honolulu",                    21.3069,  -157.8583, 10,  June20,      HourMinute(5,  50), HourMinute(19, 16)},
        {"Singapore, near the equator", 1.3521,   103.8198,  -8,  March20,     HourMinute(7,  9),  HourMinute(19, 15)},
        {"Quito, on the equator",       -0.1807,  -78.4678,  5,   September22, HourMinute(6,  3),  HourMinute(18, 10)},
        {"Far north in winter",         62.9,     -21.9,     0,   December21,  HourMinute(11, 3),  HourMinute(15, 49)},
    };
    constexpr double TwoMinutes = 2 / 1440.0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.place);
        EXPECT_NEAR(SunEvent(Sun::Rise, row.latitude, row.longitude, row.offset, row.day), row.rise,
                    TwoMinutes);
        EXPECT_NEAR(SunEvent(Sun::Set, row.latitude, row.longitude, row.offset, row.day), row.set,
                    TwoMinutes);
    }
}

TEST(SunEvent, IsNotComputedAtHighLatitudesOrForNoNumbers) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    struct {
        double latitude, longitude;
    } const rows[] = {
        {70,      20      },
        {63.001,  20      },
        {-63.001, 20      },
        {none,    20      },
        {50,      none    },
        {50,      infinite},
        {50,      1e300   }
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.latitude);
        EXPECT_EQ(SunEvent(Sun::Rise, row.latitude, row.longitude, 0, June21), 0);
        EXPECT_EQ(SunEvent(Sun::Set, row.latitude, row.longitude, 0, June21), 0);
    }
    EXPECT_GT(SunEvent(Sun::Rise, 63, 20, 0, December21), 0.3);
    EXPECT_GT(SunEvent(Sun::Rise, -63, 20, 0, December21), 0);
}

TEST(SunEvent, IsATimeOfDayEverywhereAndMovesWithTheZone) {
    for (double latitude = -63; latitude <= 63; latitude += 9) {
        for (double longitude = -180; longitude <= 180; longitude += 15) {
            SCOPED_TRACE(latitude * 1000 + longitude);
            for (const Sun event : {Sun::Rise, Sun::Set}) {
                const double zone = std::round(-longitude / 15);
                const double local = SunEvent(event, latitude, longitude, zone, June21);
                const double universal = SunEvent(event, latitude, longitude, 0, June21);
                EXPECT_GE(local, 0);
                EXPECT_LT(local, 1);
                const double turned = universal - zone / 24;
                EXPECT_NEAR(local, turned - std::floor(turned), 1e-9);
            }
        }
    }
}

}  // namespace
}  // namespace tessaloom::modTime
