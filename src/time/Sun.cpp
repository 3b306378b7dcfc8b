#include "time/Sun.h"

#include <cmath>
#include <numbers>

namespace tessaloom::modTime {
namespace {

constexpr double Pi = std::numbers::pi;
constexpr double DegreesPerRadian = 57.29577951308238;

constexpr double EventAltitude =
    -0.833 / DegreesPerRadian;     // of the sun's centre: refraction and half the disc
constexpr double Epoch = 36526.5;  // 1 January 2000, 12:00, as a day number
constexpr double DaysPerCentury = 36525;
constexpr double Tolerance = 0.001;  // radians of universal time, 14 seconds
constexpr int MostPasses = 35;

/// Reduced to 0 .. below 2 pi.
double Normalised(double angle) {
    angle -= 2 * Pi * std::trunc(angle / (2 * Pi));
    return angle < 0 ? angle + 2 * Pi : angle;
}

struct SunPlace {
    double declination;     // radians
    double equationOfTime;  // radians
};

/// Low-precision formulas of the mean sun with the equation of centre, angles in radians.
SunPlace SunAt(double centuries) {
    const double meanLongitude = Normalised(4.8949504201433 + 628.331969753199 * centuries);
    const double meanAnomaly = Normalised(6.2400408 + 628.3019501 * centuries);
    const double centre = 0.033423 * std::sin(meanAnomaly) + 0.00034907 * std::sin(2 * meanAnomaly);
    const double longitude = meanLongitude + centre;
    const double obliquity = 0.409093 - 0.0002269 * centuries;
    const double sine = std::sin(obliquity) * std::sin(longitude);
    return {std::atan(sine / std::sqrt(1 - sine * sine)),
            -centre + 0.0430398 * std::sin(2 * longitude) - 0.00092502 * std::sin(4 * longitude)};
}

/// The hour angle whose cosine is `c`; noon where the sun stays below the altitude, midnight where above.
double HourAngle(double c) {
    if (c > 1) return 0;
    if (c < -1) return Pi;
    const double angle = std::atan(std::sqrt(1 - c * c) / c);
    return angle < 0 ? angle + Pi : angle;
}

}  // namespace

double SunEvent(Sun event, double latitude, double longitude, double offset, double day) {
    if (std::abs(latitude) > SunLatitudeLimit) return 0;
    const double sign = event == Sun::Set ? -1 : 1;
    const double days = day - Epoch;
    const double eastward = longitude / DegreesPerRadian;
    const double sinAltitude = std::sin(EventAltitude);
    const double sinLatitude = std::sin(latitude / DegreesPerRadian);
    const double cosLatitude = std::cos(latitude / DegreesPerRadian);

    double previous = Pi;  // only makes the first test pass
    double universal = 0;  // radians since midnight
    for (int pass = 0; std::abs(previous - universal) > Tolerance && pass < MostPasses; ++pass) {
        previous = universal;
        const SunPlace sun = SunAt((days + previous / (2 * Pi)) / DaysPerCentury);
        const double greenwichHourAngle = previous - Pi + sun.equationOfTime;
        const double c = (sinAltitude - sinLatitude * std::sin(sun.declination)) /
                         (cosLatitude * std::cos(sun.declination));
        universal = Normalised(previous - (greenwichHourAngle + eastward + sign * HourAngle(c)));
    }

    double time = (universal * DegreesPerRadian / 15 - offset) / 24;
    if (time < 0) time += 1;
    if (time >= 1) time -= 1;
    return time >= 0 && time < 1 ? time : 0;
}

}  // namespace tessaloom::modTime
