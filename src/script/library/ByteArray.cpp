#include "script/library/ByteArray.h"

#include "vbscript/Array.h"
#include "vbscript/Conversions.h"

namespace tessaloom::library {

using namespace vbscript;

Value ByteArrayOf(std::string_view bytes) {
    const Ref<Array> array = Array::OfCount(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        array->Elements()[i] = Value::OfByte(static_cast<std::uint8_t>(bytes[i]));
    return Value::OfArray(array);
}

std::string BytesOf(Context& context, const Value& value) {
    if (!value.Is(VarType::Array) || value.AsArray()->Rank() != 1) Fail(ErrorCode::TypeMismatch);
    std::string bytes;
    bytes.reserve(value.AsArray()->Count());
    for (const Value& element : value.AsArray()->Elements())
        bytes += static_cast<char>(ToByte(context, element));
    return bytes;
}

}  // namespace tessaloom::library
