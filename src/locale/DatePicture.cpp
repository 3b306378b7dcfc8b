#include <algorithm>
#include <array>
#include <cmath>

#include "locale/Conversion.h"
#include "locale/Pictures.h"
#include "locale/UserPicture.h"
#include "platform/Ascii.h"

namespace tessaloom {

namespace {

/// Hours count from 1 to 12 when the picture holds such a mark anywhere.
bool HasHalfDayMark(std::string_view picture) {
    std::string ignored;
    for (std::size_t at = 0; at < picture.size();) {
        if (AppendQuoted(ignored, picture, at)) continue;
        if (ascii::Lower(picture[at]) == 'a' && !HalfDayMarkAt(picture.substr(at)).empty()) return true;
        ++at;
    }
    return false;
}

/// The number of letters of the longest field that starts with `letter`, in lower case; 0: no field.
std::size_t LongestField(char letter) {
    switch (letter) {
        case 'd':
            return 6;
        case 'm':
        case 'y':
            return 4;
        case 'h':
        case 'n':
        case 's':
        case 'w':
            return 2;
        case 'q':
        case 'c':
            return 1;
        case 't':
            return 5;
        default:
            return 0;
    }
}

class DateWriter {
public:
    DateWriter(std::string& out, double moment, const DateParts& parts, const UserLocale& user,
               const FormatCalendar& calendar)
        : out_(out), moment_(moment), parts_(parts), user_(user), calendar_(calendar) {}

    void Write(std::string_view picture) {
        twelveHours_ = HasHalfDayMark(picture);
        for (std::size_t at = 0; at < picture.size();) {
            if (AppendQuoted(out_, picture, at)) continue;
            const auto rest = picture.substr(at);
            if (const auto mark = HalfDayMarkAt(rest); !mark.empty()) {
                WriteHalfDay(mark);
                at += mark.size();
            } else {
                at += WriteField(rest);
            }
        }
    }

private:
    void WriteHalfDay(std::string_view mark) {
        const bool morning = parts_.hour < 12;
        if (mark.size() == HalfDayMarks[1].size())
            out_ += morning ? user_.amMark : user_.pmMark;
        else if (mark.size() == HalfDayMarks[0].size())
            out_ += mark.substr(morning ? 0 : 3, 2);
        else
            out_ += mark[morning ? 0 : 2];
    }

    /// Writes the field or the character at the front of `rest`; the number of characters used.
    std::size_t WriteField(std::string_view rest) {
        const char letter = ascii::Lower(rest.front());
        std::size_t length = 1;
        const auto longest = LongestField(letter);
        while (length < longest && length < rest.size() && ascii::Lower(rest[length]) == letter) ++length;
        if (letter == 't' && length < longest) length = 1;  // only five of them are a field
        if (letter == 'y' && length == 3) length = 2;
        const bool isField = longest > 0 && (letter != 't' || length == longest);
        if (!isField) {
            WriteLiteral(rest.front());
            return 1;
        }
        const int width = static_cast<int>(length);
        if (!WriteTimeField(letter, width)) WriteDateField(letter, width);
        return length;
    }

    void WriteLiteral(char c) {
        if (c == '/')
            out_ += user_.dateSeparator;
        else if (c == ':')
            out_ += user_.timeSeparator;
        else
            out_ += c;
    }

    /// "m" means minutes once, after hours; any other field but a literal ends that.
    bool WriteTimeField(char letter, int width) {
        const bool minutes = letter == 'n' || (letter == 'm' && width <= 2 && afterHours_);
        afterHours_ = letter == 'h';
        if (minutes)
            AppendNumber(out_, parts_.minute, width);
        else if (letter == 'h')
            AppendNumber(out_, twelveHours_ ? HourOfTwelve(parts_.hour) : parts_.hour, width);
        else if (letter == 's')
            AppendNumber(out_, parts_.second, width);
        else if (letter == 't')
            AppendUserPicture(out_, parts_, user_.time, user_);
        else
            return false;
        return true;
    }

    void WriteDateField(char letter, int width) {
        switch (letter) {
            case 'd':
                return WriteDay(width);
            case 'm':
                return WriteMonth(width);
            case 'y':
                return WriteYear(width);
            case 'w':
                return WriteWeek(width);
            case 'q':
                return AppendNumber(out_, (parts_.month + 2) / 3, 1);
            default:
                out_ += TextFromDate(moment_, user_).value;
        }
    }

    void WriteDay(int width) {
        const auto index = static_cast<std::size_t>(parts_.weekday - 1);
        switch (width) {
            case 3:
                out_ += user_.shortWeekdays[index];
                break;
            case 4:
                out_ += user_.weekdays[index];
                break;
            case 5:
                AppendUserPicture(out_, parts_, user_.shortDate, user_);
                break;
            case 6:
                AppendUserPicture(out_, parts_, user_.longDate, user_);
                break;
            default:
                AppendNumber(out_, parts_.day, width);
        }
    }

    void WriteMonth(int width) {
        const auto index = static_cast<std::size_t>(parts_.month - 1);
        if (width <= 2)
            AppendNumber(out_, parts_.month, width);
        else
            out_ += width == 3 ? user_.shortMonths[index] : user_.months[index];
    }

    void WriteYear(int width) {
        if (width == 1)
            AppendNumber(out_, parts_.yearDay, 1);
        else
            AppendNumber(out_, width == 2 ? parts_.year % 100 : parts_.year, width);
    }

    void WriteWeek(int width) {
        const int firstWeekday = calendar_.firstWeekday == 0 ? user_.firstWeekday : calendar_.firstWeekday;
        const int value = width == 1 ? (parts_.weekday - firstWeekday + 7) % 7 + 1
                                     : WeekOfYear(DayNumber(parts_.year, parts_.month, parts_.day),
                                                  firstWeekday, calendar_.firstWeek);
        AppendNumber(out_, value, 1);
    }

    std::string& out_;
    double moment_;
    const DateParts& parts_;
    const UserLocale& user_;
    const FormatCalendar& calendar_;
    bool twelveHours_ = false;
    bool afterHours_ = false;
};

/// The day on which week 1 of `year` starts.
int StartOfWeekOne(int year, int firstWeekday, int firstWeek) {
    const int newYear = DayNumber(year, 1, 1);
    const int daysBefore = (WeekdayOf(newYear) - firstWeekday + 7) % 7;  // of its week, in the old year
    const int allowed = firstWeek == 2 ? 3 : firstWeek == 3 ? 0 : 6;
    return newYear - daysBefore + (daysBefore > allowed ? 7 : 0);
}

}  // namespace

int WeekOfYear(int dayNumber, int firstWeekday, int firstWeek) {
    const int year = PartsOfMoment(dayNumber).value_or(DateParts()).year;
    int start = StartOfWeekOne(year, firstWeekday, firstWeek);
    if (dayNumber < start) start = StartOfWeekOne(year - 1, firstWeekday, firstWeek);
    return (dayNumber - start) / 7 + 1;
}

void AppendDatePicture(std::string& out, double moment, const DateParts& parts, std::string_view picture,
                       const UserLocale& user, const FormatCalendar& calendar) {
    DateWriter(out, moment, parts, user, calendar).Write(picture);
}

}  // namespace tessaloom
