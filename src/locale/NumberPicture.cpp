#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "locale/Conversion.h"
#include "locale/Decimal.h"
#include "locale/Pictures.h"
#include "locale/UserPicture.h"
#include "platform/Ascii.h"

namespace tessaloom {

namespace {

bool IsPlaceholder(char c) { return c == '0' || c == '#'; }

/// An exponent mark is "E+" or "E-" (or small) before at least one digit place.
bool IsExponentAt(std::string_view picture, std::size_t at) {
    return at + 2 < picture.size() && ascii::Lower(picture[at]) == 'e' &&
           (picture[at + 1] == '+' || picture[at + 1] == '-') && IsPlaceholder(picture[at + 2]);
}

/// What must be known of a section before its first character can be written.
struct NumberLayout {
    int wholePlaces = 0;
    int decimalPlaces = 0;
    int forcedDecimals = 0;  ///< Decimals up to the last "0" are always written.
    int scale = 0;           ///< The value is multiplied by ten to this: percent signs, trailing commas.
    bool hasPoint = false;
    bool grouped = false;
    bool hasExponent = false;

    explicit NumberLayout(std::string_view section) {
        std::string ignored;
        int commas = 0;  // since the last digit place before the point
        for (std::size_t at = 0; at < section.size();) {
            if (AppendQuoted(ignored, section, at)) continue;
            if (!hasExponent && IsExponentAt(section, at)) {
                hasExponent = true;
                at += 2;
                while (at < section.size() && IsPlaceholder(section[at])) ++at;
                continue;
            }
            const char c = section[at++];
            if (IsPlaceholder(c) && !hasExponent) {
                AddPlace(c, commas);
            } else if (c == '.' && !hasPoint) {
                hasPoint = true;
                scale -= 3 * std::exchange(commas, 0);
            } else if (c == ',' && !hasPoint && wholePlaces > 0) {
                ++commas;
            } else if (c == '%') {
                scale += 2;
            }
        }
        scale -= 3 * commas;
    }

private:
    void AddPlace(char c, int& commas) {
        if (hasPoint) {
            ++decimalPlaces;
            if (c == '0') forcedDecimals = decimalPlaces;
            return;
        }
        ++wholePlaces;
        if (std::exchange(commas, 0) > 0) grouped = true;
    }
};

/// Writes one number under one section.
class NumberWriter {
public:
    NumberWriter(std::string& out, Decimal number, std::string_view section, const UserLocale& user)
        : out_(out), number_(number), section_(section), user_(user), layout_(section) {
        if (!number_.IsZero()) number_.exponent += layout_.scale;
        if (layout_.hasExponent)
            RoundMantissa();
        else
            number_.RoundTo(layout_.decimalPlaces);
    }

    void Write() {
        for (std::size_t at = 0; at < section_.size();) {
            if (AppendQuoted(out_, section_, at)) continue;
            if (layout_.hasExponent && !exponentDone_ && IsExponentAt(section_, at)) {
                WriteExponent(at);
                continue;
            }
            WriteCharacter(section_[at++]);
        }
    }

private:
    /// Moves the point so that the places before it are filled; what rounding carries over moves it once
    /// more.
    void RoundMantissa() {
        if (number_.IsZero()) return;
        for (int attempt = 0; attempt < 2; ++attempt) {
            exponent_ += number_.exponent - layout_.wholePlaces;
            number_.exponent = layout_.wholePlaces;
            number_.RoundTo(layout_.decimalPlaces);
        }
    }

    void WriteExponent(std::size_t& at) {
        out_ += section_[at];
        if (exponent_ < 0)
            out_ += '-';
        else if (section_[at + 1] == '+')
            out_ += '+';
        int width = 0;
        for (at += 2; at < section_.size() && IsPlaceholder(section_[at]); ++at)
            width += section_[at] == '0' ? 1 : 0;
        AppendNumber(out_, std::abs(exponent_), width);
        exponentDone_ = true;
    }

    void WriteCharacter(char c) {
        if (IsPlaceholder(c) && !exponentDone_)
            pointDone_ ? WriteDecimal() : WriteWhole(c);
        else if (c == '.' && !pointDone_)
            WritePoint();
        else if (c != ',')
            out_ += c;
    }

    /// The first place takes all digits that the picture has no place for.
    void WriteWhole(char c) {
        zeroSeen_ |= c == '0';
        const int place = layout_.wholePlaces - 1 - wholeIndex_;
        const int first = wholeIndex_++ == 0 ? std::max(number_.exponent - 1, place) : place;
        for (int digit = first; digit >= place; --digit) WriteDigit(digit);
    }

    void WriteDigit(int place) {
        if (place >= number_.exponent && !zeroSeen_) return;
        out_ += number_.DigitAt(place);
        if (layout_.grouped && place > 0 && place % 3 == 0) out_ += user_.grouping;
    }

    void WritePoint() {
        pointDone_ = true;
        if (layout_.wholePlaces == 0)
            for (int place = number_.exponent - 1; place >= 0; --place) WriteDigit(place);
        out_ += user_.decimal;
    }

    void WriteDecimal() {
        const int place = ++decimalIndex_;
        const int used = number_.count - number_.exponent;
        if (place <= std::max(layout_.forcedDecimals, used)) out_ += number_.DigitAt(-place);
    }

    std::string& out_;
    Decimal number_;
    std::string_view section_;
    const UserLocale& user_;
    NumberLayout layout_;
    int exponent_ = 0;
    int wholeIndex_ = 0;
    int decimalIndex_ = 0;
    bool zeroSeen_ = false;  ///< From the first "0" on, "#" counts as "0" before the point.
    bool pointDone_ = false;
    bool exponentDone_ = false;
};

}  // namespace

void AppendNumberPicture(std::string& out, double value, std::string_view picture, const UserLocale& user) {
    if (!std::isfinite(value)) {
        out += TextFromDouble(value, user);
        return;
    }
    const PictureSections sections(picture);
    std::string_view section = sections.section[0];
    Decimal number = Decimal::Of(value);
    bool showMinus = number.negative;
    if (number.negative && sections.count > 1 && !sections.section[1].empty()) {
        section = sections.section[1];
        showMinus = false;
    } else if (number.IsZero() && sections.count > 2 && !sections.section[2].empty()) {
        section = sections.section[2];
    }
    if (showMinus) out += '-';
    NumberWriter(out, number, section, user).Write();
}

void AppendCurrency(std::string& out, double value, const UserLocale& user) {
    std::string digits;
    AppendNumberPicture(digits, std::abs(value), "#,##0.00", user);
    for (const char c : value < 0 ? user.negativeCurrency : user.positiveCurrency) {
        if (c == '$')
            out += user.currency;
        else if (c == 'n')
            out += digits;
        else
            out += c;
    }
}

}  // namespace tessaloom
