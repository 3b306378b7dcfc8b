#pragma once

#include <array>
#include <string>
#include <string_view>

#include "locale/DateParts.h"
#include "locale/Format.h"

/// The three kinds of pictures behind `Format`, each for a value that already has the right type.
namespace tessaloom {

enum class PictureKind {
    Literal,  ///< No placeholder at all: the picture stands for itself.
    Number,
    Date,
    Text,
};

/// Decided by the first placeholder; quoted and escaped characters are none.
PictureKind KindOfPicture(std::string_view picture);

/// The sections of a picture, divided by ";" outside quotes.
struct PictureSections {
    static constexpr int Max = 4;

    explicit PictureSections(std::string_view picture);

    std::string_view section[Max];
    int count = 0;  ///< 1 .. Max
};

/// Copies the quoted or escaped text at `at` of `picture` to `out` and moves `at` behind it; false when there
/// is none.
bool AppendQuoted(std::string& out, std::string_view picture, std::size_t& at);

/// How a date picture asks for the half of the day: in words, in the user's marks, in single letters.
inline constexpr std::array<std::string_view, 3> HalfDayMarks = {"AM/PM", "AMPM", "A/P"};

/// The one of them (in the picture's own case) that `picture` starts with; empty for none.
std::string_view HalfDayMarkAt(std::string_view picture);

void AppendNumberPicture(std::string& out, double value, std::string_view picture, const UserLocale& user);

void AppendCurrency(std::string& out, double value, const UserLocale& user);

/// `moment` is that of `parts`, for the pictures that tell whether it has a date or a time.
void AppendDatePicture(std::string& out, double moment, const DateParts& parts, std::string_view picture,
                       const UserLocale& user, const FormatCalendar& calendar);

void AppendTextPicture(std::string& out, std::string_view text, std::string_view picture);

/// The week of the year, 1 .. 53 (or the last one of the year before). Both arguments as in `FormatCalendar`.
int WeekOfYear(int dayNumber, int firstWeekday, int firstWeek);

}  // namespace tessaloom
