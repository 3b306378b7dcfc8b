#pragma once

#include <optional>

namespace tessaloom {

/// A moment in the parts of the civil (Gregorian) calendar.
struct DateParts {
    int year = 1899;    ///< 100 .. 9999
    int month = 12;     ///< 1 .. 12
    int day = 30;       ///< 1 .. 31
    int hour = 0;       ///< 0 .. 23
    int minute = 0;     ///< 0 .. 59
    int second = 0;     ///< 0 .. 59
    int weekday = 7;    ///< 1 Sunday .. 7 Saturday
    int yearDay = 364;  ///< 1 .. 366

    bool operator==(const DateParts&) const = default;
};

/// The first and last whole day numbers: 1 January 100 and 31 December 9999.
inline constexpr int FirstDayNumber = -657434;
inline constexpr int LastDayNumber = 2958465;

bool IsLeapYear(int year);

/// 28 .. 31; month: 1 .. 12.
int DaysInMonth(int year, int month);

/// Whole days since 30 December 1899. Any month and day are allowed: month 13 is January of the next year,
/// day 0 the last day of the month before.
int DayNumber(int year, int month, int day);

/// The moment at `secondsOfDay` (0 .. 86399.999) on a whole day. Before day 0 the time of day is subtracted:
/// the fraction of a moment is the time whatever its sign, so -1.25 is six in the morning of day -1.
double JoinMoment(int dayNumber, double secondsOfDay);

/// 1 Sunday .. 7 Saturday.
int WeekdayOf(int dayNumber);

/// The parts of a moment, rounded to the nearest second (which may carry into the next day). Nothing when it
/// lies outside the years 100 .. 9999 or is not a number.
std::optional<DateParts> PartsOfMoment(double moment);

}  // namespace tessaloom
