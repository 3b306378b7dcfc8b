#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

#include "vbscript/AnsiCodes.h"
#include "vbscript/Arguments.h"
#include "vbscript/BuiltinTables.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/PartFunctions.h"

namespace tessaloom::vbscript {

namespace {

struct Units {
    static std::size_t Length(const String& text) { return text.Length(); }

    /// `text` itself where the part is all of it.
    static Value Part(const String& text, std::size_t start, std::size_t count) {
        const std::u16string_view part = text.View().substr(std::min(start, text.Length()), count);
        return part.size() == text.Length() ? Value::OfString(text) : Value::OfText(part);
    }
};
using Parts = PartFunctions<Units>;

Value OfUnit(char16_t unit) { return Value::OfText({&unit, 1}); }

template <char16_t (*Change)(char16_t)>
Value ChangeCase(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    if (of.IsNull(0)) return Value::Null();
    const String text = of.Text(0);
    String result = String::OfLength(text.Length());
    const char16_t* const from = text.View().data();
    InStretches(text.Length(), [&](std::size_t begin, std::size_t end) {
        std::transform(from + begin, from + end, result.Units() + begin, Change);
    });
    return Value::OfString(result);
}

template <bool AtStart, bool AtEnd>
Value TrimBlanks(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    if (of.IsNull(0)) return Value::Null();
    const String text = of.Text(0);
    const std::u16string_view view = text.View();
    // blanks alone have no first and no last of the others
    const std::size_t first = AtStart ? std::min(view.find_first_not_of(u' '), view.size()) : 0;
    const std::size_t end = AtEnd ? view.find_last_not_of(u' ') + 1 : view.size();
    return Units::Part(text, first, std::max(first, end) - first);
}

Value Repeated(std::size_t count, char16_t unit) {
    String result = String::OfLength(count);
    InStretches(count, [&](std::size_t begin, std::size_t end) {
        std::fill(result.Units() + begin, result.Units() + end, unit);
    });
    return Value::OfString(result);
}

Value Space(Context& context, std::span<Value> values) {
    return Repeated(Arguments(context, values).Length(0), u' ');
}

Value RepeatUnit(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    if (of.IsNull(0) || of.IsNull(1)) return Value::Null();
    const std::size_t count = of.Length(0);
    if (!values[1].Is(VarType::String)) return Repeated(count, UnitOfAnsi(of.Long(1) & 0xFF));
    if (values[1].Text().empty()) Fail(ErrorCode::InvalidCall);
    return Repeated(count, values[1].Text().front());
}

Value StrReverse(Context& context, std::span<Value> values) {
    const String text = Arguments(context, values).Text(0);
    String result = String::OfLength(text.Length());
    const auto last = text.View().rbegin();
    InStretches(text.Length(), [&](std::size_t begin, std::size_t end) {
        std::copy(last + begin, last + end, result.Units() + begin);
    });
    return Value::OfString(result);
}

char16_t FirstUnit(const Arguments& of) {
    const String text = of.Text(0);
    if (text.Length() == 0) Fail(ErrorCode::InvalidCall);
    return text.View().front();
}

Value Asc(Context& context, std::span<Value> values) {
    return Value::OfInteger(AnsiOfUnit(FirstUnit(Arguments(context, values))));
}

Value AscW(Context& context, std::span<Value> values) {
    return Value::OfInteger(static_cast<std::int16_t>(FirstUnit(Arguments(context, values))));
}

Value Chr(Context& context, std::span<Value> values) {
    const int code = Arguments(context, values).Long(0);
    if (code < 0 || code > 255) Fail(ErrorCode::InvalidCall);
    return OfUnit(UnitOfAnsi(code));
}

Value ChrW(Context& context, std::span<Value> values) {
    const int code = Arguments(context, values).Long(0);
    if (code < -32768 || code > 65535) Fail(ErrorCode::InvalidCall);
    return OfUnit(static_cast<char16_t>(code));
}

/// Negative numbers show the bits of their type: 16 of an Integer, else 32.
template <int Base>
Value InBase(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    if (of.IsNull(0)) return Value::Null();
    const bool isShort = values[0].Is(VarType::Integer) || values[0].Is(VarType::Boolean);
    const auto bits = static_cast<std::uint32_t>(of.Long(0)) & (isShort ? 0xFFFFu : 0xFFFFFFFFu);
    char digits[12];
    char* const end = std::to_chars(digits, digits + sizeof digits, bits, Base).ptr;
    std::transform(digits, end, digits, [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });
    return Value::OfString(String::OfLatin({digits, end}));
}

constexpr std::u16string_view HexDigits = u"0123456789ABCDEF";

bool StaysUnescaped(char16_t unit) {
    const bool isLetter = (unit | 32) >= u'a' && (unit | 32) <= u'z';
    const bool isDigit = unit >= u'0' && unit <= u'9';
    return unit < 128 &&
           (isLetter || isDigit || std::u16string_view(u"@*_+-./").find(unit) != std::u16string_view::npos);
}

Value Escape(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    if (of.IsNull(0)) return Value::Null();
    const String text = of.Text(0);
    BudgetUnits out;
    InStretches(text.Length(), [&](std::size_t begin, std::size_t end) {
        for (const char16_t unit : text.View().substr(begin, end - begin)) {
            if (StaysUnescaped(unit)) {
                out += unit;
                continue;
            }
            out += unit > 255 ? u"%u" : u"%";
            for (int shift = unit > 255 ? 12 : 4; shift >= 0; shift -= 4)
                out += HexDigits[static_cast<std::size_t>(unit >> shift & 15)];
        }
    });
    return Value::OfText(out);
}

/// The number of exactly `count` hexadecimal digits at the start of `text`.
std::optional<char16_t> HexAt(std::u16string_view text, std::size_t count) {
    if (text.size() < count) return std::nullopt;
    unsigned number = 0;
    for (const char16_t unit : text.substr(0, count)) {
        const std::size_t digit = HexDigits.find(UpperOf(unit));
        if (digit == std::u16string_view::npos) return std::nullopt;
        number = number * 16 + static_cast<unsigned>(digit);
    }
    return static_cast<char16_t>(number);
}

Value Unescape(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    if (of.IsNull(0)) return Value::Null();
    const String text = of.Text(0);
    BudgetUnits out;
    for (std::u16string_view rest = text.View(); !rest.empty();) {
        TimeLimit::Poll();
        const bool isWide = rest.starts_with(u"%u");
        const std::size_t mark = isWide ? 2 : 1, digits = isWide ? 4 : 2;
        if (const auto unit = rest.front() == u'%' ? HexAt(rest.substr(mark), digits) : std::nullopt) {
            out += *unit;
            rest.remove_prefix(mark + digits);
        } else {
            out += rest.front();
            rest.remove_prefix(1);
        }
    }
    return Value::OfText(out);
}

// clang-format off
constexpr Builtin Functions[] = {
    {u"Asc",        1, 1, Asc},
    {u"AscW",       1, 1, AscW},
    {u"Chr",        1, 1, Chr},
    {u"ChrW",       1, 1, ChrW},
    {u"Escape",     1, 1, Escape},
    {u"Hex",        1, 1, InBase<16>},
    {u"LCase",      1, 1, ChangeCase<LowerOf>},
    {u"Left",       2, 2, Parts::Left},
    {u"Len",        1, 1, Parts::Len},
    {u"LTrim",      1, 1, TrimBlanks<true, false>},
    {u"Mid",        2, 3, Parts::Mid},
    {u"Oct",        1, 1, InBase<8>},
    {u"Right",      2, 2, Parts::Right},
    {u"RTrim",      1, 1, TrimBlanks<false, true>},
    {u"Space",      1, 1, Space},
    {u"String",     2, 2, RepeatUnit},
    {u"StrReverse", 1, 1, StrReverse},
    {u"Trim",       1, 1, TrimBlanks<true, true>},
    {u"UCase",      1, 1, ChangeCase<UpperOf>},
    {u"Unescape",   1, 1, Unescape},
};
// clang-format on

}  // namespace

std::span<const Builtin> TextFunctions() { return Functions; }

}  // namespace tessaloom::vbscript
