#include <cmath>
#include <string>

#include "locale/DateParts.h"
#include "locale/Pictures.h"
#include "locale/UserPicture.h"
#include "vbscript/Arguments.h"
#include "vbscript/BuiltinTables.h"

namespace tessaloom::vbscript {

namespace {

constexpr int MaxDecimals = 255;
constexpr int UsualDecimals = 2;

/// The optional arguments that FormatNumber, FormatCurrency and FormatPercent share: how many decimals, and
/// three switches (vbTrue -1, vbFalse 0, vbUseDefault -2).
struct Layout {
    explicit Layout(const Arguments& of)
        : decimals(of.LongWithin(1, -1, MaxDecimals, -1)),
          leadingZero(SwitchAt(of, 2)),
          parentheses(SwitchAt(of, 3)),
          grouping(SwitchAt(of, 4)) {}

    static constexpr int UseDefault = -2;

    static int SwitchAt(const Arguments& of, std::size_t index) {
        const int choice = of.LongOr(index, UseDefault);
        if (choice < UseDefault || choice > 0) Fail(ErrorCode::InvalidCall);
        return choice;
    }

    std::string Picture() const {
        std::string picture = grouping != 0 ? "#,##" : "#";
        picture += leadingZero != 0 ? '0' : '#';
        const int places = decimals < 0 ? UsualDecimals : decimals;
        if (places > 0) picture += '.' + std::string(static_cast<std::size_t>(places), '0');
        return picture;
    }

    int decimals;
    int leadingZero;
    int parentheses;
    int grouping;
};

std::string DigitsOf(double value, const Layout& layout, const UserLocale& locale) {
    std::string digits;
    AppendNumberPicture(digits, std::abs(value), layout.Picture(), locale);
    return digits;
}

/// A negative amount with a sign before it or, when asked for, in parentheses.
std::string Signed(std::string text, double value, const Layout& layout) {
    if (!(value < 0)) return text;
    return layout.parentheses == -1 ? "(" + text + ")" : "-" + text;
}

Value FormatNumber(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const Layout layout(of);
    const double value = of.Double(0);
    return Value::OfUtf8(Signed(DigitsOf(value, layout, context.locale), value, layout));
}

Value FormatPercent(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const Layout layout(of);
    const double value = of.Double(0) * 100;
    if (!std::isfinite(value)) Fail(ErrorCode::Overflow);
    return Value::OfUtf8(Signed(DigitsOf(value, layout, context.locale) + "%", value, layout));
}

/// `$` in a currency pattern stands for the sign, `n` for the digits.
std::string FillCurrency(std::string_view pattern, std::string_view digits, const UserLocale& locale) {
    std::string out;
    for (const char c : pattern) {
        if (c == '$')
            out += locale.currency;
        else if (c == 'n')
            out += digits;
        else
            out += c;
    }
    return out;
}

Value FormatCurrency(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const Layout layout(of);
    const double value = of.Double(0);
    const UserLocale& locale = context.locale;
    const std::string digits = DigitsOf(value, layout, locale);
    if (value < 0 && layout.parentheses == Layout::UseDefault)
        return Value::OfUtf8(FillCurrency(locale.negativeCurrency, digits, locale));
    return Value::OfUtf8(Signed(FillCurrency(locale.positiveCurrency, digits, locale), value, layout));
}

Value FormatDateTime(Context& context, std::span<Value> values) {
    enum Style { General, LongDate, ShortDate, LongTime, ShortTime };
    const Arguments of(context, values);
    const int style = of.LongWithin(1, General, ShortTime, General);
    const double moment = of.Date(0);
    if (style == General) return Value::OfString(ToText(context, Value::OfDate(moment)));
    const auto parts = PartsOfMoment(moment);
    if (!parts) Fail(ErrorCode::InvalidCall);
    const UserLocale& locale = context.locale;
    const std::string pattern = style == LongDate    ? locale.longDate
                                : style == ShortDate ? locale.shortDate
                                : style == LongTime  ? locale.time
                                                     : "HH:mm";
    std::string out;
    AppendUserPicture(out, *parts, pattern, locale);
    return Value::OfUtf8(out);
}

constexpr Builtin Functions[] = {
    {u"FormatCurrency", 1, 5, FormatCurrency},
    {u"FormatDateTime", 1, 2, FormatDateTime},
    {u"FormatNumber",   1, 5, FormatNumber  },
    {u"FormatPercent",  1, 5, FormatPercent },
};

}  // namespace

std::span<const Builtin> FormatFunctions() { return Functions; }

}  // namespace tessaloom::vbscript
