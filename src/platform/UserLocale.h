#pragma once

#include <array>
#include <string>

namespace tessaloom {

/// The order of the parts in a short date.
enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

/// The regional settings of the user: how numbers, dates and times are written and read. Plain data, UTF-8.
///
/// The initial values are those of English (United States), which also serve where nothing is known.
struct UserLocale {
    std::string decimal = ".";
    std::string grouping = ",";  ///< Between groups of three digits; may be empty.

    std::string currency = "$";
    std::string positiveCurrency = "$n";    ///< `$` stands for the currency sign, `n` for the digits.
    std::string negativeCurrency = "($n)";  ///< The same for amounts below zero.

    DateOrder dateOrder = DateOrder::MonthDayYear;
    std::string dateSeparator = "/";
    std::string timeSeparator = ":";

    /// Patterns of `d M y h H m s tt`, repeated as in `dddd`; text in apostrophes stands for itself.
    std::string shortDate = "M/d/yyyy";
    std::string longDate = "dddd, MMMM d, yyyy";
    std::string time = "h:mm:ss tt";
    std::string amMark = "AM";
    std::string pmMark = "PM";

    int firstWeekday = 1;  ///< 1 Sunday .. 7 Saturday.

    using WeekdayNames = std::array<std::string, 7>;  ///< Sunday first.
    using MonthNames = std::array<std::string, 12>;

    WeekdayNames weekdays = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    WeekdayNames shortWeekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    MonthNames months = {"January", "February", "March",     "April",   "May",      "June",
                         "July",    "August",   "September", "October", "November", "December"};
    MonthNames shortMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
};

}  // namespace tessaloom
