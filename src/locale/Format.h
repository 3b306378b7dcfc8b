#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "locale/Conversion.h"

namespace tessaloom {

struct FormatNull {};

struct FormatDate {
    double moment;  ///< A local day number.
};

/// What can be formatted; std::monostate is the empty value. Text is only borrowed.
using FormatValue = std::variant<std::monostate, FormatNull, bool, int, double, FormatDate, std::string_view>;

/// How the week patterns count.
struct FormatCalendar {
    int firstWeekday = 1;  ///< 1 Sunday .. 7 Saturday; 0: the user's.
    int firstWeek = 1;  ///< The first week is that of 1 January (1), the first with four days (2), the first
                        ///< full one (3); 0: that of 1 January.
    int currentYear = 2000;  ///< Of dates in a text without a year.
};

/// `value` as `pattern` says: a named format ("Fixed", "Long Date" ...) or a picture for numbers
/// ("#,##0.00"), for dates ("dd/mm/yyyy hh:nn:ss") or for text ("@@@-@@").
///
/// The picture is in the neutral notation ("." decimal, "," grouping, "/" date, ":" time); the result is the
/// user's. An empty picture gives the plain text of the value. A text that is neither number nor date stays
/// as it is under their pictures. A date outside the years 100 .. 9999 is an InvalidCall.
Converted<std::string> Format(const FormatValue& value, std::string_view pattern, const UserLocale& user,
                              const FormatCalendar& calendar = {});

}  // namespace tessaloom
