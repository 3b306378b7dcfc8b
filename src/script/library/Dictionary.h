#pragma once

#include "vbscript/Object.h"

namespace tessaloom::library {

/// A new "Scripting.Dictionary".
///
/// Numbers of any kind are one key when they are equal; texts follow `CompareMode`; objects are keys by
/// identity; Empty is a key of its own, Null another. Arrays are refused (error 5). The order is that of
/// adding.
vbscript::Ref<vbscript::Object> MakeDictionary();

}  // namespace tessaloom::library
