#pragma once

#include <string>
#include <string_view>

#include "vbscript/Context.h"
#include "vbscript/Value.h"

namespace tessaloom::library {

/// Binary data as scripts see it: an array of Byte.
vbscript::Value ByteArrayOf(std::string_view bytes);

/// The bytes of such an array; throws RuntimeError 13 for anything else.
std::string BytesOf(vbscript::Context& context, const vbscript::Value& value);

}  // namespace tessaloom::library
