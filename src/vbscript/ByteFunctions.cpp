#include <algorithm>
#include <string_view>

#include "vbscript/Arguments.h"
#include "vbscript/BuiltinTables.h"
#include "vbscript/PartFunctions.h"
#include "vbscript/TextSearch.h"

/// The functions that take a text for the bytes behind it, two to a unit, the lower one first.
namespace tessaloom::vbscript {

namespace {

std::string_view BytesOf(const String& text) {
    return {reinterpret_cast<const char*>(text.Bytes()), text.ByteLength()};
}

struct Bytes {
    static std::size_t Length(const String& text) { return text.ByteLength(); }

    static Value Part(const String& text, std::size_t start, std::size_t count) {
        const std::string_view part = BytesOf(text).substr(std::min(start, text.ByteLength()), count);
        return Value::OfString(String::OfBytes(part.data(), part.size()));
    }
};
using Parts = PartFunctions<Bytes>;

Value InStrB(Context& context, std::span<Value> values) {
    const bool hasStart = values.size() > 2;
    const Arguments all(context, values);
    const int start = hasStart ? all.LongOr(0, 1) : 1;
    if (start < 1) Fail(ErrorCode::InvalidCall);
    const Arguments of(context, values.subspan(hasStart ? 1 : 0));
    if (of.IsNull(0) || of.IsNull(1)) return Value::Null();
    const String text = of.Text(0), wanted = of.Text(1);
    const auto from = static_cast<std::size_t>(start) - 1;
    if (from >= text.ByteLength()) return Value::OfLong(0);
    return Value::OfLong(static_cast<int>(TextSearch<char>(BytesOf(wanted)).First(BytesOf(text), from) + 1));
}

Value AscB(Context& context, std::span<Value> values) {
    const String text = Arguments(context, values).Text(0);
    if (text.IsEmpty()) Fail(ErrorCode::InvalidCall);
    return Value::OfByte(text.Bytes()[0]);
}

Value ChrB(Context& context, std::span<Value> values) {
    const int code = Arguments(context, values).Long(0);
    if (code < 0 || code > 255) Fail(ErrorCode::InvalidCall);
    const auto byte = static_cast<unsigned char>(code);
    return Value::OfString(String::OfBytes(&byte, 1));
}

constexpr Builtin Functions[] = {
    {u"AscB",   1, 1, AscB        },
    {u"ChrB",   1, 1, ChrB        },
    {u"InStrB", 2, 4, InStrB      },
    {u"LeftB",  2, 2, Parts::Left },
    {u"LenB",   1, 1, Parts::Len  },
    {u"MidB",   2, 3, Parts::Mid  },
    {u"RightB", 2, 2, Parts::Right},
};

}  // namespace

std::span<const Builtin> ByteFunctions() { return Functions; }

}  // namespace tessaloom::vbscript
