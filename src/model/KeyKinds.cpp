#include "model/KeyKinds.h"

#include <algorithm>
#include <charconv>

#include "platform/Ascii.h"

namespace tessaloom {

namespace {

/// Only a result of 0 can stem from a text that is no number, or one too large for its kind.
KeyFault JudgeZero(const std::string& text, double value) {
    double number = 0;
    if (value != 0 || text == "0") return KeyFault::None;
    if (!modNumbers::TryDblNI(text, number)) return KeyFault::NotANumber;
    return std::abs(number) < 1 ? KeyFault::None : KeyFault::OutOfRange;
}

/// The digits of "HH:MM:SS"; false for any other form.
bool ParseClock(std::string_view text, int& seconds) {
    int parts[3] = {};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (int i = 0; i < 3; ++i) {
        if (i > 0 && (at == end || *at++ != ':')) return false;
        if (at == end || *at < '0' || *at > '9' || end - at > 8) return false;
        const auto [next, error] = std::from_chars(at, end, parts[i]);
        if (error != std::errc{} || parts[i] > 999) return false;
        at = next;
    }
    if (at != end || parts[1] > 59 || parts[2] > 59) return false;
    seconds = parts[0] * 3600 + parts[1] * 60 + parts[2];
    return true;
}

}  // namespace

std::string_view DescriptionOf(KeyFault fault) {
    switch (fault) {
        case KeyFault::None:
            return "";
        case KeyFault::NotABoolean:
            return "neither True nor False";
        case KeyFault::NotANumber:
            return "not a number";
        case KeyFault::NotAColour:
            return "not a colour (&HBBGGRR)";
        case KeyFault::NotATime:
            return "not a time of day (HH:MM:SS)";
        case KeyFault::OutOfRange:
            return "out of range";
    }
    return "";
}

KeyFault Boolean::Parse(const std::string& text, bool& value) {
    return modNumbers::TryBool(text, value) ? KeyFault::None : KeyFault::NotABoolean;
}

KeyFault Whole::Parse(const std::string& text, int& value) {
    value = modNumbers::Str2LngNI(text);
    return JudgeZero(text, value);
}

KeyFault Real::Parse(const std::string& text, double& value) {
    value = modNumbers::Str2DblNI(text);
    return JudgeZero(text, value);
}

KeyFault Single::Parse(const std::string& text, float& value) {
    value = modNumbers::Str2SngNI(text);
    return JudgeZero(text, static_cast<double>(value));
}

KeyFault Colour::Parse(const std::string& text, int& value) {
    std::string_view digits = ascii::Trimmed(text, ascii::Blanks);
    if (digits.size() > 2 && digits[0] == '&' && (digits[1] == 'H' || digits[1] == 'h')) {
        digits.remove_prefix(2);
        if (digits.back() == '&') digits.remove_suffix(1);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        if (error == std::errc{} && end == digits.data() + digits.size()) return KeyFault::None;
    } else {
        double number = 0;
        if (modNumbers::TryDblNI(text, number)) return Whole::Parse(text, value);
    }
    value = 0;
    return KeyFault::NotAColour;
}

std::string Colour::Write(int value) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string text = "&H000000";
    for (std::size_t at = text.size() - 1; at > 1; --at, value >>= 4)
        text[at] = Digits[static_cast<std::size_t>(value & 15)];
    return text;
}

KeyFault TimeOfDay::Parse(const std::string& text, int& value) {
    if (ParseClock(text, value)) return KeyFault::None;
    const double seconds = std::round(modNumbers::CDateNI(text) * 86400);
    value = static_cast<int>(std::clamp(seconds, -1.0, 1e9));
    double ignored = 0;
    // Only midnight can stem from a text that is no time.
    return seconds != 0 || modNumbers::TryDateNI(text, ignored) ? KeyFault::None : KeyFault::NotATime;
}

std::string TimeOfDay::Write(double seconds) {
    static const UserLocale WithColons;  // also where the user writes dots
    return Format(FormatDate{seconds / 86400}, "HH:MM:SS", WithColons).value;
}

KeyFault Trimmed::Parse(const std::string& text, std::string_view& value) {
    value = ascii::Trimmed(text, ascii::Blanks);
    return KeyFault::None;
}

}  // namespace tessaloom
