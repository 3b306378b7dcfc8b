#include "locale/UserPicture.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tessaloom {

namespace {

std::size_t RunLength(std::string_view text) {
    const auto end = text.find_first_not_of(text.front());
    return end == std::string_view::npos ? text.size() : end;
}

template <typename Names>
const std::string& NameOf(const Names& names, int number) {
    return names.at(static_cast<std::size_t>(number - 1));
}

/// Appends one field, a run of `length` equal letters; false when it is none.
bool AppendField(std::string& out, char letter, int length, const DateParts& parts, const UserLocale& user) {
    const int width = std::min(length, 2);
    switch (letter) {
        case 'd':
            if (length <= 2)
                AppendNumber(out, parts.day, width);
            else
                out += NameOf(length == 3 ? user.shortWeekdays : user.weekdays, parts.weekday);
            return true;
        case 'M':
            if (length <= 2)
                AppendNumber(out, parts.month, width);
            else
                out += NameOf(length == 3 ? user.shortMonths : user.months, parts.month);
            return true;
        case 'y':
            AppendNumber(out, length <= 2 ? parts.year % 100 : parts.year, length <= 2 ? width : 4);
            return true;
        case 'h':
            AppendNumber(out, HourOfTwelve(parts.hour), width);
            return true;
        case 'H':
            AppendNumber(out, parts.hour, width);
            return true;
        case 'm':
            AppendNumber(out, parts.minute, width);
            return true;
        case 's':
            AppendNumber(out, parts.second, width);
            return true;
        case 't':
            out += parts.hour < 12 ? user.amMark : user.pmMark;
            return true;
        default:
            return false;
    }
}

}  // namespace

void AppendNumber(std::string& out, int value, int width) {
    if (value < 10 && width <= 2) {  // nearly every part of a time
        if (width == 2) out += '0';
        out += static_cast<char>('0' + value);
        return;
    }
    std::array<char, 12> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    for (auto length = end - text.data(); length < width; ++length) out += '0';
    out.append(text.data(), end);
}

void AppendUserPicture(std::string& out, const DateParts& parts, std::string_view pattern,
                       const UserLocale& user) {
    while (!pattern.empty()) {
        if (pattern.front() == '\'') {
            const auto close = std::min(pattern.find('\'', 1), pattern.size());
            out += close == 1 ? pattern.substr(0, 1) : pattern.substr(1, close - 1);
            pattern.remove_prefix(std::min(close + 1, pattern.size()));
            continue;
        }
        const auto length = RunLength(pattern);
        if (!AppendField(out, pattern.front(), static_cast<int>(length), parts, user))
            out += pattern.substr(0, length);
        pattern.remove_prefix(length);
    }
}

}  // namespace tessaloom
