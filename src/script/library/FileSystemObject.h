#pragma once

#include "script/library/ClassLibrary.h"

namespace tessaloom::library {

/// A new "Scripting.FileSystemObject".
///
/// Paths keep their separators, joins use `\`, relative paths start at the current folder. The system's disks
/// show as one drive, "/".
vbscript::Ref<vbscript::Object> MakeFileSystemObject(const LibraryServices& services);

}  // namespace tessaloom::library
