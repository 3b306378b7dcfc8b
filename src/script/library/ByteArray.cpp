#include "script/library/ByteArray.h"

#include "vbscript/Array.h"
#include "vbscript/Conversions.h"

namespace tessaloom::library {

using namespace vbscript;

BudgetBytes BytesOf(Context& context, const Value& value) {
    if (!value.Is(VarType::Array) || value.AsArray()->Rank() != 1) Fail(ErrorCode::TypeMismatch);
    BudgetBytes bytes;
    bytes.reserve(value.AsArray()->Count());
    for (const Value& element : value.AsArray()->Elements()) {
        TimeLimit::Poll();
        bytes += static_cast<char>(ToByte(context, element));
    }
    return bytes;
}

}  // namespace tessaloom::library
