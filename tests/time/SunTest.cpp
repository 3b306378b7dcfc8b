#include "time/Sun.h"

#include <limits>

#include "support/Testing.h"

namespace tessaloom::modTime {
namespace {

constexpr double March20 = 45371, June20 = 45463, June21 = 45464, September22 = 45557,
                 December21 = 45647;  // 2024

constexpr double HM(int hour, int minute) { return (hour * 60 + minute) / 1440.0; }

TEST(SunEvent, AgreesWithAlmanacs) {
    struct {
        const char* place;
        double latitude, longitude, offset, day, rise, set;
    } const rows[] = {
  // clang-format off
        {"London in summer", 51.5074, -0.1278, -1, June21, HM(4, 43), HM(21, 22)},
        {"London in winter", 51.5074, -0.1278, 0, December21, HM(8, 4), HM(15, 53)},
        {"New York in summer", 40.7128, -74.006, 4, June20, HM(5, 25), HM(20, 31)},
        {"New York in winter", 40.7128, -74.006, 5, December21, HM(7, 17), HM(16, 32)},
        {"Sydney in summer", -33.8688, 151.2093, -11, December21, HM(5, 41), HM(20, 5)},
        {"Sydney in winter", -33.8688, 151.2093, -10, June21, HM(7, 0), HM(16, 54)},
        {"Auckland", -36.8485, 174.7633, -13, December21, HM(5, 58), HM(20, 39)},
        {"Honolulu", 21.3069, -157.8583, 10, June20, HM(5, 50), HM(19, 16)},
        {"Singapore, near the equator", 1.3521, 103.8198, -8, March20, HM(7, 9), HM(19, 15)},
        {"Quito, on the equator", -0.1807, -78.4678, 5, September22, HM(6, 3), HM(18, 10)},
        {"Far north in winter", 62.9, -21.9, 0, December21, HM(11, 3), HM(15, 49)},
  // clang-format on
    };
    for (const auto& [place, latitude, longitude, offset, day, rise, set] : rows) {
        EXPECT_NEAR(SunEvent(Sun::Rise, latitude, longitude, offset, day), rise, HM(0, 2)) << place;
        EXPECT_NEAR(SunEvent(Sun::Set, latitude, longitude, offset, day), set, HM(0, 2)) << place;
    }
}

TEST(SunEvent, IsNotComputedAtHighLatitudesOrForNoNumbers) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    // clang-format off
    const double rows[][2] = {
        {70, 20}, {63.001, 20}, {-63.001, 20}, {none, 20}, {50, none}, {50, infinite}, {50, 1e300},
    };
    // clang-format on
    for (const auto& [latitude, longitude] : rows)
        for (const Sun event : {Sun::Rise, Sun::Set})
            EXPECT_EQ(SunEvent(event, latitude, longitude, 0, June21), 0) << latitude << " " << longitude;
    EXPECT_GT(SunEvent(Sun::Rise, 63, 20, 0, December21), 0.3);
    EXPECT_GT(SunEvent(Sun::Rise, -63, 20, 0, December21), 0);
}

TEST(SunEvent, IsATimeOfDayEverywhereAndMovesWithTheZone) {
    for (double latitude = -63; latitude <= 63; latitude += 9) {
        for (double longitude = -180; longitude <= 180; longitude += 15) {
            for (const Sun event : {Sun::Rise, Sun::Set}) {
                SCOPED_TRACE(latitude * 1000 + longitude);
                const double zone = std::round(-longitude / 15);
                const double local = SunEvent(event, latitude, longitude, zone, June21);
                const double turned = SunEvent(event, latitude, longitude, 0, June21) - zone / 24;
                EXPECT_GE(local, 0);
                EXPECT_LT(local, 1);
                EXPECT_NEAR(local, turned - std::floor(turned), 1e-9);
            }
        }
    }
}

}  // namespace
}  // namespace tessaloom::modTime
