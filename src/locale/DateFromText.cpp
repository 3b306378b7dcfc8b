#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

#include "locale/Conversion.h"
#include "locale/DateParts.h"
#include "platform/Ascii.h"

namespace tessaloom {

namespace {

constexpr int TwoDigitPivot = 30;  ///< 00 .. 29 lie in this century, 30 .. 99 in the last.

enum class Part { Year, Month, Day };

using PartOrder = std::array<Part, 3>;

/// In which orders three numbers are tried: the user's own first.
std::span<const PartOrder> OrdersOf(DateOrder order) {
    using enum Part;
    static constexpr std::array<PartOrder, 4> MonthFirst = {
        {{Month, Day, Year}, {Day, Month, Year}, {Year, Month, Day}, {Year, Day, Month}}
    };
    static constexpr std::array<PartOrder, 4> DayFirst = {
        {{Day, Month, Year}, {Month, Day, Year}, {Year, Month, Day}, {Year, Day, Month}}
    };
    static constexpr std::array<PartOrder, 4> YearFirst = {
        {{Year, Month, Day}, {Month, Day, Year}, {Day, Month, Year}, {Year, Day, Month}}
    };
    switch (order) {
        case DateOrder::DayMonthYear:
            return DayFirst;
        case DateOrder::YearMonthDay:
            return YearFirst;
        case DateOrder::MonthDayYear:
            break;
    }
    return MonthFirst;
}

/// A day number, when the three name a day of the calendar.
std::optional<int> DayOf(int year, int month, int day) {
    if (year < TwoDigitPivot)
        year += 2000;
    else if (year < 100)
        year += 1900;
    if (year > 9999 || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month))
        return std::nullopt;
    return DayNumber(year, month, day);
}

/// Short names may be written with a dot, which is not part of the word.
bool IsName(std::string_view name, std::string_view word) {
    if (name.ends_with('.')) name.remove_suffix(1);
    return ascii::SameText(name, word);
}

template <typename Names>
std::optional<int> FindName(const Names& names, std::string_view word) {
    const auto found =
        std::ranges::find_if(names, [&](const std::string& name) { return IsName(name, word); });
    if (found == names.end()) return std::nullopt;
    return static_cast<int>(found - names.begin()) + 1;
}

/// 1 .. 12 for a month's long or short name, in the user's language or in English.
std::optional<int> MonthOf(std::string_view word, const UserLocale& user) {
    static const UserLocale English;
    for (const UserLocale* names : {&user, &English}) {
        if (const auto month = FindName(names->months, word)) return month;
        if (const auto month = FindName(names->shortMonths, word)) return month;
    }
    return std::nullopt;
}

/// Reads a date, a time, or one of each in either order.
class DateReader {
public:
    DateReader(std::string_view text, const UserLocale& user, int currentYear)
        : rest_(text), user_(user), currentYear_(currentYear) {}

    std::optional<double> Read() {
        for (SkipBlanks(); !rest_.empty(); SkipBlanks())
            if (!ReadPart()) return std::nullopt;
        if (separatorPending_ || markPending_ != 0 || (!hasTime_ && !HasDate())) return std::nullopt;
        if (!HasDate()) return JoinMoment(0, seconds_);
        const auto day = FindDay();
        return day ? std::optional(JoinMoment(*day, seconds_)) : std::nullopt;
    }

private:
    bool HasDate() const { return count_ > 0 || month_ != 0; }
    bool DateIsWhole() const { return count_ + (month_ != 0 ? 1 : 0) == 3; }

    void SkipBlanks() {
        while (!rest_.empty() && ascii::IsBlank(rest_.front())) rest_.remove_prefix(1);
    }

    /// One number of a date, one month's name, or a whole time, with the separator that may follow.
    bool ReadPart() {
        if (!ascii::IsDigit(rest_.front())) return ReadLeadingMark() || ReadMonth();
        const auto number = ReadNumber();
        if (!number) return false;
        SkipBlanks();
        if (AtTimeSeparator()) return !separatorPending_ && ReadTime(*number);
        if (const auto mark = TakeMark()) return !separatorPending_ && SetTime(*number, 0, 0, mark);
        if (count_ == static_cast<int>(numbers_.size()) || !BeginDatePart()) return false;
        numbers_[static_cast<std::size_t>(count_++)] = *number;
        // some end a date with the separator
        separatorPending_ =
            TakeDateSeparator() && !(DateIsWhole() && user_.shortDate.ends_with(user_.dateSeparator));
        return true;
    }

    /// Whether the user writes the half of the day before the hour.
    bool MarkLeads() const { return user_.time.starts_with("tt"); }

    bool ReadLeadingMark() {
        if (hasTime_ || separatorPending_ || markPending_ != 0 || !MarkLeads()) return false;
        markPending_ = TakeOwnMark();
        return markPending_ != 0;
    }

    /// A date is not interrupted by a time.
    bool BeginDatePart() {
        if (HasDate() && timeAfterDate_) return false;
        separatorPending_ = false;
        return true;
    }

    bool ReadMonth() {
        const auto word = PeekWord();
        if (word.empty() || month_ != 0) return false;
        const auto month = MonthOf(word, user_);
        if (!month || !BeginDatePart()) return false;
        month_ = *month;
        rest_.remove_prefix(word.size());
        SkipBlanks();
        separatorPending_ = TakeDateSeparator();
        return true;
    }

    /// Letters, where every byte beyond ASCII counts as one.
    std::string_view PeekWord() const {
        const auto end = std::ranges::find_if_not(
            rest_, [](char c) { return ascii::IsLetter(c) || static_cast<unsigned char>(c) >= 0x80; });
        return rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
    }

    std::optional<int> ReadNumber() {
        int value = 0;
        for (int length = 0; !rest_.empty() && ascii::IsDigit(rest_.front()); rest_.remove_prefix(1)) {
            if (++length > 5) return std::nullopt;
            value = value * 10 + (rest_.front() - '0');
        }
        return value;
    }

    bool Take(std::string_view token) {
        if (token.empty() || !rest_.starts_with(token)) return false;
        rest_.remove_prefix(token.size());
        return true;
    }

    /// A comma only beside a month's name, for "1,5" is a number.
    bool TakeDateSeparator() {
        return Take("/") || Take("-") || (month_ != 0 && Take(",")) || Take(user_.dateSeparator);
    }

    /// A dot separates the parts of a time unless dates are written with it; where both are, once the date is
    /// whole.
    bool AtTimeSeparator() const {
        if (rest_.empty()) return false;
        if (rest_.front() != '.') return rest_.front() == ':';
        return user_.dateSeparator != "." || (user_.timeSeparator == "." && DateIsWhole());
    }

    /// The user's marks may hold dots and blanks.
    char TakeOwnMark() {
        for (const auto& [text, mark] : {std::pair(&user_.amMark, 'a'), std::pair(&user_.pmMark, 'p')}) {
            if (text->empty() || !ascii::StartsWithText(rest_, *text)) continue;
            const auto after = rest_.substr(text->size());
            if (!after.empty() && ascii::IsLetter(after.front())) continue;
            rest_ = after;
            return mark;
        }
        return 0;
    }

    /// 'a' or 'p' when a mark of the half of the day follows, which is then consumed.
    char TakeMark() {
        if (const char own = MarkLeads() ? '\0' : TakeOwnMark()) return own;
        const auto word = PeekWord();
        char mark = 0;
        if (ascii::SameText(word, "AM") || ascii::SameText(word, "A")) mark = 'a';
        if (ascii::SameText(word, "PM") || ascii::SameText(word, "P")) mark = 'p';
        if (mark != 0) rest_.remove_prefix(word.size());
        return mark;
    }

    bool ReadTime(int hour) {
        std::array<int, 2> minuteAndSecond{};
        for (std::size_t i = 0; i < 2 && AtTimeSeparator(); ++i) {
            rest_.remove_prefix(1);
            SkipBlanks();
            if (rest_.empty() || !ascii::IsDigit(rest_.front())) return false;
            const auto number = ReadNumber();
            if (!number) return false;
            minuteAndSecond[i] = *number;
            SkipBlanks();
        }
        return SetTime(hour, minuteAndSecond[0], minuteAndSecond[1], TakeMark());
    }

    bool SetTime(int hour, int minute, int second, char mark) {
        if (hasTime_ || hour > 23 || minute > 59 || second > 59) return false;
        if (mark == 0) mark = std::exchange(markPending_, '\0');
        if (mark == 'a' && hour == 12) hour = 0;
        if (mark == 'p' && hour < 12) hour += 12;
        hasTime_ = true;
        timeAfterDate_ = HasDate();
        seconds_ = hour * 3600 + minute * 60 + second;
        return true;
    }

    std::optional<int> FindDay() const {
        if (month_ != 0) return FindDayWithName();
        if (count_ == 2) return FindDayOfTwo();
        return count_ == 3 ? FindDayOfThree() : std::nullopt;
    }

    /// "14 Jan", "Jan 2006", "14 Jan 2006", "Jan 14 2006", "2006 Jan 14".
    std::optional<int> FindDayWithName() const {
        if (count_ == 1) {
            const auto day = DayOf(currentYear_, month_, numbers_[0]);
            return day ? day : DayOf(numbers_[0], month_, 1);
        }
        if (count_ != 2) return std::nullopt;
        const auto day = DayOf(numbers_[1], month_, numbers_[0]);
        return day ? day : DayOf(numbers_[0], month_, numbers_[1]);
    }

    /// Two numbers are month and day in the user's order, else in the other, else a month and a year.
    std::optional<int> FindDayOfTwo() const {
        const auto [first, second] = std::pair(numbers_[0], numbers_[1]);
        const auto monthFirst = DayOf(currentYear_, first, second);
        const auto dayFirst = DayOf(currentYear_, second, first);
        const bool preferDay = user_.dateOrder == DateOrder::DayMonthYear;
        if (const auto day = preferDay ? dayFirst : monthFirst) return day;
        if (const auto day = preferDay ? monthFirst : dayFirst) return day;
        if (const auto day = DayOf(second, first, 1)) return day;
        return DayOf(first, second, 1);
    }

    std::optional<int> FindDayOfThree() const {
        for (const PartOrder& order : OrdersOf(user_.dateOrder)) {
            std::array<int, 3> parts{};
            for (std::size_t i = 0; i < order.size(); ++i)
                parts[static_cast<std::size_t>(order[i])] = numbers_[i];
            if (const auto day = DayOf(parts[0], parts[1], parts[2])) return day;
        }
        return std::nullopt;
    }

    std::string_view rest_;
    const UserLocale& user_;
    int currentYear_;
    std::array<int, 3> numbers_{};
    int count_ = 0;
    int month_ = 0;  ///< 1 .. 12 when it was given by name.
    int seconds_ = 0;
    bool hasTime_ = false;
    bool timeAfterDate_ = false;
    char markPending_ = 0;           ///< 'a' or 'p': the half of the day of the time that must follow.
    bool separatorPending_ = false;  ///< A date separator was read, so that another part must follow.
};

}  // namespace

Converted<double> DateFromText(std::string_view text, const UserLocale& user, int currentYear) {
    const auto moment = DateReader(text, user, currentYear).Read();
    return moment ? Converted<double>(*moment) : Converted<double>(Fault::TypeMismatch);
}

}  // namespace tessaloom
