#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "locale/DateParts.h"
#include "locale/Pictures.h"
#include "vbscript/Arguments.h"
#include "vbscript/BuiltinTables.h"

namespace tessaloom::vbscript {

namespace {

constexpr std::int64_t SecondsPerDay = 86400;

/// The intervals of DateAdd, DateDiff and DatePart.
enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval IntervalAt(const Arguments& of, std::size_t index) {
    static constexpr std::array<std::u16string_view, 10> Names = {u"yyyy", u"q",  u"m", u"y", u"d",
                                                                  u"w",    u"ww", u"h", u"n", u"s"};
    const String name = of.Text(index);
    const auto found =
        std::ranges::find_if(Names, [&](std::u16string_view row) { return SameName(row, name.View()); });
    if (found == Names.end()) Fail(ErrorCode::InvalidCall);
    return static_cast<Interval>(found - Names.begin());
}

/// 0 for intervals of days and more.
int SecondsOf(Interval interval) {
    switch (interval) {
        case Interval::Hour:
            return 3600;
        case Interval::Minute:
            return 60;
        case Interval::Second:
            return 1;
        default:
            return 0;
    }
}

/// 0 when it is no interval of months.
int MonthsOf(Interval interval) {
    switch (interval) {
        case Interval::Year:
            return 12;
        case Interval::Quarter:
            return 3;
        case Interval::Month:
            return 1;
        default:
            return 0;
    }
}

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

DateParts PartsOf(double moment) {
    const auto parts = PartsOfMoment(moment);
    if (!parts) Fail(ErrorCode::InvalidCall);
    return *parts;
}

int DayOf(const DateParts& parts) { return DayNumber(parts.year, parts.month, parts.day); }

int SecondOfDay(const DateParts& parts) { return parts.hour * 3600 + parts.minute * 60 + parts.second; }

/// Seconds since midnight of day 0.
std::int64_t SecondsSinceStart(const DateParts& parts) {
    return DayOf(parts) * SecondsPerDay + SecondOfDay(parts);
}

Value OfMoment(std::int64_t day, std::int64_t secondOfDay) {
    if (day < FirstDayNumber || day > LastDayNumber) Fail(ErrorCode::InvalidCall);
    return Value::OfDate(JoinMoment(static_cast<int>(day), static_cast<double>(secondOfDay)));
}

/// vbUseSystemDayOfWeek (0), or 1 Sunday .. 7 Saturday.
int FirstWeekdayAt(const Arguments& of, std::size_t index) {
    const int weekday = of.LongWithin(index, 0, 7, 1);
    return weekday == 0 ? of.GetContext().locale.firstWeekday : weekday;
}

/// 1 .. 7, the first weekday being 1.
int PlaceInWeek(int weekday, int firstWeekday) { return (weekday - firstWeekday + 7) % 7 + 1; }

Value AddMonths(const DateParts& parts, std::int64_t months) {
    const std::int64_t month = parts.year * 12 + parts.month - 1 + months;
    const std::int64_t year = FloorDivide(month, 12);
    if (year < 100 || year > 9999) Fail(ErrorCode::InvalidCall);
    const int inYear = static_cast<int>(month - year * 12) + 1;
    const int day = std::min(parts.day, DaysInMonth(static_cast<int>(year), inYear));
    return OfMoment(DayNumber(static_cast<int>(year), inYear, day), SecondOfDay(parts));
}

Value DateAdd(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const Interval interval = IntervalAt(of, 0);
    const std::int64_t count = of.Long(1);
    if (of.IsNull(2)) return Value::Null();
    const DateParts parts = PartsOf(of.Date(2));
    if (const int months = MonthsOf(interval)) return AddMonths(parts, count * months);
    if (const int unit = SecondsOf(interval)) {
        const std::int64_t seconds = SecondsSinceStart(parts) + count * unit;
        const std::int64_t day = FloorDivide(seconds, SecondsPerDay);
        return OfMoment(day, seconds - day * SecondsPerDay);
    }
    return OfMoment(DayOf(parts) + count * (interval == Interval::Week ? 7 : 1), SecondOfDay(parts));
}

/// How many interval boundaries lie between two moments.
std::int64_t Difference(Interval interval, const DateParts& a, const DateParts& b, int firstWeekday) {
    const auto quarterOf = [](const DateParts& parts) { return parts.year * 4 + (parts.month - 1) / 3; };
    const auto weekOf = [&](const DateParts& parts) {
        return FloorDivide(DayOf(parts) - PlaceInWeek(parts.weekday, firstWeekday) + 1, 7);
    };
    switch (interval) {
        case Interval::Year:
            return b.year - a.year;
        case Interval::Quarter:
            return quarterOf(b) - quarterOf(a);
        case Interval::Month:
            return (b.year - a.year) * 12 + b.month - a.month;
        case Interval::DayOfYear:
        case Interval::Day:
            return DayOf(b) - DayOf(a);
        case Interval::Weekday:
            return (DayOf(b) - DayOf(a)) / 7;
        case Interval::Week:
            return weekOf(b) - weekOf(a);
        case Interval::Hour:
        case Interval::Minute:
        case Interval::Second:
            break;
    }
    const int unit = SecondsOf(interval);
    return FloorDivide(SecondsSinceStart(b), unit) - FloorDivide(SecondsSinceStart(a), unit);
}

Value DateDiff(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const Interval interval = IntervalAt(of, 0);
    const int firstWeekday = FirstWeekdayAt(of, 3);
    of.LongWithin(4, 0, 3, 1);
    if (of.IsNull(1) || of.IsNull(2)) return Value::Null();
    const auto count = Difference(interval, PartsOf(of.Date(1)), PartsOf(of.Date(2)), firstWeekday);
    if (count != static_cast<std::int32_t>(count)) Fail(ErrorCode::Overflow);
    return Value::OfLong(static_cast<int>(count));
}

Value DatePart(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const Interval interval = IntervalAt(of, 0);
    const int firstWeekday = FirstWeekdayAt(of, 2);
    const int firstWeek = of.LongWithin(3, 0, 3, 1);
    if (of.IsNull(1)) return Value::Null();
    const DateParts parts = PartsOf(of.Date(1));
    switch (interval) {
        case Interval::Year:
            return Value::OfInteger(parts.year);
        case Interval::Quarter:
            return Value::OfInteger((parts.month + 2) / 3);
        case Interval::Month:
            return Value::OfInteger(parts.month);
        case Interval::DayOfYear:
            return Value::OfInteger(parts.yearDay);
        case Interval::Day:
            return Value::OfInteger(parts.day);
        case Interval::Weekday:
            return Value::OfInteger(PlaceInWeek(parts.weekday, firstWeekday));
        case Interval::Week:
            return Value::OfInteger(WeekOfYear(DayOf(parts), firstWeekday, firstWeek == 0 ? 1 : firstWeek));
        case Interval::Hour:
            return Value::OfInteger(parts.hour);
        case Interval::Minute:
            return Value::OfInteger(parts.minute);
        case Interval::Second:
            break;
    }
    return Value::OfInteger(parts.second);
}

Value DateSerial(Context& context, std::span<Value> values) {
    int year = ToInteger(context, values[0]);
    const int month = ToInteger(context, values[1]), day = ToInteger(context, values[2]);
    if (year >= 0 && year < 100) year += year < 30 ? 2000 : 1900;
    if (year < 0 || year > 9999 + 2800) Fail(ErrorCode::InvalidCall);
    return OfMoment(DayNumber(year, month, day), 0);
}

Value TimeSerial(Context& context, std::span<Value> values) {
    const int hour = ToInteger(context, values[0]), minute = ToInteger(context, values[1]);
    const int seconds = hour * 3600 + minute * 60 + ToInteger(context, values[2]);
    return Value::OfDate(static_cast<double>(seconds) / SecondsPerDay);
}

/// A Date, or the one that a text names; numbers go by their text.
double DateByTextAt(const Arguments& of, std::size_t index) {
    if (!of.Plain(index).Is(VarType::Date)) of[index] = Value::OfString(of.Text(index));
    return of.Date(index);
}

Value DateValue(Context& context, std::span<Value> values) {
    return Value::OfDate(std::trunc(DateByTextAt(Arguments(context, values), 0)));
}

Value TimeValue(Context& context, std::span<Value> values) {
    const double moment = DateByTextAt(Arguments(context, values), 0);
    return Value::OfDate(std::abs(moment - std::trunc(moment)));
}

Value Now(Context& context, std::span<Value>) { return Value::OfDate(context.host.Now()); }

Value Date(Context& context, std::span<Value>) { return Value::OfDate(std::trunc(context.host.Now())); }

Value Time(Context& context, std::span<Value>) {
    const double now = context.host.Now();
    return Value::OfDate(std::abs(now - std::trunc(now)));
}

Value Timer(Context& context, std::span<Value>) {
    return Value::OfSingle(static_cast<float>(context.host.Timer()));
}

template <int DateParts::*Part>
Value PartOfDate(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    return of.IsNull(0) ? Value::Null() : Value::OfInteger(PartsOf(of.Date(0)).*Part);
}

Value Weekday(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const int firstWeekday = FirstWeekdayAt(of, 1);
    if (of.IsNull(0)) return Value::Null();
    return Value::OfInteger(PlaceInWeek(PartsOf(of.Date(0)).weekday, firstWeekday));
}

Value MonthName(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const auto month = static_cast<std::size_t>(of.LongWithin(0, 1, 12, 0));
    const auto& names = of.BooleanOr(1, false) ? context.locale.shortMonths : context.locale.months;
    return Value::OfUtf8(names[month - 1]);
}

Value WeekdayName(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const int place = of.LongWithin(0, 1, 7, 0);
    const auto& names = of.BooleanOr(1, false) ? context.locale.shortWeekdays : context.locale.weekdays;
    return Value::OfUtf8(names[static_cast<std::size_t>((place + FirstWeekdayAt(of, 2) - 2) % 7)]);
}

// clang-format off
constexpr Builtin Functions[] = {
    {u"Date",        0, 0, Date},
    {u"DateAdd",     3, 3, DateAdd},
    {u"DateDiff",    3, 5, DateDiff},
    {u"DatePart",    2, 4, DatePart},
    {u"DateSerial",  3, 3, DateSerial},
    {u"DateValue",   1, 1, DateValue},
    {u"Day",         1, 1, PartOfDate<&DateParts::day>},
    {u"Hour",        1, 1, PartOfDate<&DateParts::hour>},
    {u"Minute",      1, 1, PartOfDate<&DateParts::minute>},
    {u"Month",       1, 1, PartOfDate<&DateParts::month>},
    {u"MonthName",   1, 2, MonthName},
    {u"Now",         0, 0, Now},
    {u"Second",      1, 1, PartOfDate<&DateParts::second>},
    {u"Time",        0, 0, Time},
    {u"Timer",       0, 0, Timer},
    {u"TimeSerial",  3, 3, TimeSerial},
    {u"TimeValue",   1, 1, TimeValue},
    {u"Weekday",     1, 2, Weekday},
    {u"WeekdayName", 1, 3, WeekdayName},
    {u"Year",        1, 1, PartOfDate<&DateParts::year>},
};
// clang-format on

}  // namespace

std::span<const Builtin> DateFunctions() { return Functions; }

}  // namespace tessaloom::vbscript
