#pragma once

#include "script/library/ClassLibrary.h"

namespace tessaloom::library {

/// A new "ADODB.Stream": bytes in memory, as such or as text of a charset, that are loaded from files and
/// saved to them. Errors have the numbers 3001 to 3705.
vbscript::Ref<vbscript::Object> MakeStream(const LibraryServices& services);

}  // namespace tessaloom::library
