#pragma once

namespace tessaloom::modTime {

enum class Sun { Rise, Set };

/// North of this latitude, and south of it on the other half, no sun time is computed.
inline constexpr double SunLatitudeLimit = 63;  // degrees

/// The local time of day of sunrise or sunset on `day`, as a fraction of a day (0.25 is 06:00).
///
/// latitude, longitude: degrees, north and east positive; offset: hours, local = universal - offset;
/// day: whole days since 30 December 1899. Solves the hour angle of the sun at -0.833 degrees (refraction and
/// half its disc included) by iteration, good to a minute or two. Where the sun stays below that altitude all
/// day both events fall on solar noon, where it stays above it on midnight. 0 beyond the latitude limit and
/// for positions that are no numbers or none on the globe.
double SunEvent(Sun event, double latitude, double longitude, double offset, double day);

}  // namespace tessaloom::modTime
