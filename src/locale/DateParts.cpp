#include "locale/DateParts.h"

#include <array>
#include <cmath>

namespace tessaloom {

namespace {

constexpr double SecondsPerDay = 86400;

/// Seconds. A half second up counts as a half even where the moment, a double, lies just below it.
constexpr double RoundingTolerance = 5e-6;

/// Day number 0 in the days since 1 March of year 0 that the calendar arithmetic below counts.
constexpr int EpochShift = 693899;

constexpr int FloorDivide(int a, int b) { return a / b - (a % b < 0 ? 1 : 0); }

/// The date of a day number; the year starts in March, so that the leap day is its last.
void SetDate(DateParts& parts, int dayNumber) {
    const int day = dayNumber + EpochShift;
    const int era = FloorDivide(day, 146097);
    const int dayOfEra = day - era * 146097;
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int marchMonth = (5 * dayOfYear + 2) / 153;
    parts.day = dayOfYear - (153 * marchMonth + 2) / 5 + 1;
    parts.month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    parts.year = era * 400 + yearOfEra + (parts.month <= 2 ? 1 : 0);
    parts.weekday = WeekdayOf(dayNumber);
    parts.yearDay = dayNumber - DayNumber(parts.year, 1, 1) + 1;
}

}  // namespace

bool IsLeapYear(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int DaysInMonth(int year, int month) {
    static constexpr std::array Days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : Days.at(static_cast<std::size_t>(month - 1));
}

int DayNumber(int year, int month, int day) {
    const int monthsFromMarch = year * 12 + month - 3;
    const int marchYear = FloorDivide(monthsFromMarch, 12);
    const int marchMonth = monthsFromMarch - marchYear * 12;
    const int era = FloorDivide(marchYear, 400);
    const int yearOfEra = marchYear - era * 400;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + (153 * marchMonth + 2) / 5;
    return era * 146097 + dayOfEra + day - 1 - EpochShift;
}

double JoinMoment(int dayNumber, double secondsOfDay) {
    const double fraction = secondsOfDay / SecondsPerDay;
    return dayNumber < 0 ? dayNumber - fraction : dayNumber + fraction;
}

int WeekdayOf(int dayNumber) {
    const int days = (dayNumber + 6) % 7;  // day 0 was a Saturday
    return (days < 0 ? days + 7 : days) + 1;
}

std::optional<DateParts> PartsOfMoment(double moment) {
    if (!(moment > FirstDayNumber - 1 && moment < LastDayNumber + 1)) return std::nullopt;
    const double wholeDays = std::trunc(moment);
    int dayNumber = static_cast<int>(wholeDays);
    int seconds =
        static_cast<int>(std::floor(std::abs(moment - wholeDays) * SecondsPerDay + 0.5 + RoundingTolerance));
    if (seconds >= static_cast<int>(SecondsPerDay)) {
        seconds = 0;
        ++dayNumber;
    }
    if (dayNumber > LastDayNumber) return std::nullopt;
    DateParts parts;
    SetDate(parts, dayNumber);
    parts.hour = seconds / 3600;
    parts.minute = seconds / 60 % 60;
    parts.second = seconds % 60;
    return parts;
}

}  // namespace tessaloom
