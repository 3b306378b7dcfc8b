#pragma once

#include <string>
#include <string_view>

#include "locale/DateParts.h"
#include "platform/UserLocale.h"

namespace tessaloom {

/// Appends a moment under one of the user's own patterns (`shortDate`, `longDate`, `time` of `UserLocale`).
void AppendUserPicture(std::string& out, const DateParts& parts, std::string_view pattern,
                       const UserLocale& user);

/// Appends `value` in decimal digits with at least `width` of them. `value` is not negative.
void AppendNumber(std::string& out, int value, int width);

/// The hour on a clock of 12 hours: 12, 1 .. 11.
constexpr int HourOfTwelve(int hour) { return hour % 12 == 0 ? 12 : hour % 12; }

}  // namespace tessaloom
