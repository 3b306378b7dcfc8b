#include "locale/Format.h"

#include <array>
#include <cmath>
#include <optional>

#include "locale/DateParts.h"
#include "locale/Pictures.h"
#include "platform/Ascii.h"

namespace tessaloom {

namespace {

/// What a named format does with its value.
enum class Named { GeneralNumber, Currency, NumberPicture, Choice, GeneralDate, DatePicture };

struct NamedFormat {
    std::string_view name;
    Named kind;
    std::string_view picture;  ///< Of a picture, or the word for a number but zero.
    std::string_view wordForZero = {};
};

constexpr std::array<NamedFormat, 16> NamedFormats = {
    {
     {"General Number", Named::GeneralNumber, ""},
     {"Currency", Named::Currency, ""},
     {"Fixed", Named::NumberPicture, "0.00"},
     {"Standard", Named::NumberPicture, "#,##0.00"},
     {"Percent", Named::NumberPicture, "0.00%"},
     {"Scientific", Named::NumberPicture, "0.00E+00"},
     {"Yes/No", Named::Choice, "Yes", "No"},
     {"True/False", Named::Choice, "True", "False"},
     {"On/Off", Named::Choice, "On", "Off"},
     {"General Date", Named::GeneralDate, ""},
     {"Long Date", Named::DatePicture, "dddddd"},
     {"Medium Date", Named::DatePicture, "dd-mmm-yy"},
     {"Short Date", Named::DatePicture, "ddddd"},
     {"Long Time", Named::DatePicture, "ttttt"},
     {"Medium Time", Named::DatePicture, "hh:nn AM/PM"},
     {"Short Time", Named::DatePicture, "hh:nn"},
     }
};

const NamedFormat* FindNamedFormat(std::string_view pattern) {
    if (pattern.size() < 5) return nullptr;
    for (const auto& format : NamedFormats)
        if (ascii::SameText(format.name, pattern)) return &format;
    return nullptr;
}

/// One call of `Format`: the value with the conversions that pictures ask of it.
class Formatter {
public:
    Formatter(const FormatValue& value, const UserLocale& user, const FormatCalendar& calendar)
        : value_(value), user_(user), calendar_(calendar) {}

    Converted<std::string> Plain() const {
        if (const auto* date = std::get_if<FormatDate>(&value_)) return TextFromDate(date->moment, user_);
        if (const auto* flag = std::get_if<bool>(&value_)) return TextFromBoolean(*flag);
        if (const auto* text = std::get_if<std::string_view>(&value_)) return std::string(*text);
        const auto number = Number();
        return number && !IsEmpty() ? TextFromDouble(*number, user_) : std::string();
    }

    Converted<std::string> ByName(const NamedFormat& format) const {
        switch (format.kind) {
            case Named::GeneralDate:
                return ByDate([&](double moment, const DateParts&) { return TextFromDate(moment, user_); });
            case Named::DatePicture:
                return ByDatePicture(format.picture);
            case Named::NumberPicture:
                return ByNumberPicture(format.picture);
            default:
                break;
        }
        const auto number = Number();
        if (!number) return Plain();
        if (format.kind == Named::GeneralNumber) return TextFromDouble(*number, user_);
        if (format.kind == Named::Choice)
            return std::string(*number != 0 ? format.picture : format.wordForZero);
        std::string out;
        AppendCurrency(out, *number, user_);
        return out;
    }

    Converted<std::string> ByPicture(std::string_view pattern) const {
        switch (KindOfPicture(pattern)) {
            case PictureKind::Date:
                return ByDatePicture(pattern);
            case PictureKind::Text:
                return ByTextPicture(pattern);
            case PictureKind::Literal:
                if (std::holds_alternative<std::string_view>(value_)) return ByTextPicture(pattern);
                break;
            case PictureKind::Number:
                break;
        }
        return ByNumberPicture(pattern);
    }

private:
    bool IsEmpty() const { return std::holds_alternative<std::monostate>(value_); }

    /// The value as a number; nothing for Null and for a text that is none.
    std::optional<double> Number() const {
        struct Reader {
            const UserLocale& user;
            std::optional<double> operator()(std::monostate) const { return 0.0; }
            std::optional<double> operator()(FormatNull) const { return std::nullopt; }
            std::optional<double> operator()(bool flag) const { return flag ? -1.0 : 0.0; }
            std::optional<double> operator()(int number) const { return number; }
            std::optional<double> operator()(double number) const { return number; }
            std::optional<double> operator()(FormatDate date) const { return date.moment; }
            std::optional<double> operator()(std::string_view text) const {
                const auto number = DoubleFromText(text, user);
                return number ? std::optional(number.value) : std::nullopt;
            }
        };
        return std::visit(Reader{user_}, value_);
    }

    /// The value as a moment: a text is first read as a date, then as a number.
    std::optional<double> Moment() const {
        if (const auto* text = std::get_if<std::string_view>(&value_))
            if (const auto date = DateFromText(*text, user_, calendar_.currentYear)) return date.value;
        return Number();
    }

    template <typename Writer>
    Converted<std::string> ByDate(Writer&& write) const {
        const auto moment = Moment();
        if (!moment) return Plain();
        const auto parts = PartsOfMoment(*moment);
        if (!parts) return Fault::InvalidCall;
        return write(*moment, *parts);
    }

    Converted<std::string> ByDatePicture(std::string_view picture) const {
        return ByDate([&](double moment, const DateParts& parts) -> Converted<std::string> {
            std::string out;
            AppendDatePicture(out, moment, parts, picture, user_, calendar_);
            return out;
        });
    }

    Converted<std::string> ByNumberPicture(std::string_view picture) const {
        const auto number = Number();
        if (!number) return Plain();
        std::string out;
        AppendNumberPicture(out, *number, picture, user_);
        return out;
    }

    Converted<std::string> ByTextPicture(std::string_view picture) const {
        if (std::holds_alternative<FormatNull>(value_)) return std::string();
        auto text = Plain();
        if (!text) return text;
        std::string out;
        AppendTextPicture(out, text.value, picture);
        return out;
    }

    const FormatValue& value_;
    const UserLocale& user_;
    const FormatCalendar& calendar_;
};

}  // namespace

Converted<std::string> Format(const FormatValue& value, std::string_view pattern, const UserLocale& user,
                              const FormatCalendar& calendar) {
    const Formatter formatter(value, user, calendar);
    if (pattern.empty()) return formatter.Plain();
    if (const auto* named = FindNamedFormat(pattern)) return formatter.ByName(*named);
    return formatter.ByPicture(pattern);
}

}  // namespace tessaloom
