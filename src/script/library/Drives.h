#pragma once

#include <string_view>

#include "script/library/ClassLibrary.h"

namespace tessaloom::library {

/// The one disk that this system shows: it holds the root.
vbscript::Ref<vbscript::Object> MakeDrive(const LibraryServices& services);
vbscript::Ref<vbscript::Object> MakeDrives(const LibraryServices& services);

/// Whether `path` names, or begins with, that disk.
bool IsOnDrive(std::string_view path);

}  // namespace tessaloom::library
