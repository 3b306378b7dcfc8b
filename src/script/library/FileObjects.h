#pragma once

#include <string>
#include <string_view>

#include "script/library/ClassLibrary.h"

/// The objects that stand for what lies on the disk. They hold a path only; what they tell is read from the
/// disk each time. Each factory throws RuntimeError for what is not there.
namespace tessaloom::library {

vbscript::Ref<vbscript::Object> MakeFile(const LibraryServices& services, std::string_view path);
vbscript::Ref<vbscript::Object> MakeFolderObject(const LibraryServices& services, std::string_view path);

/// The one disk that this system shows: it holds the root.
vbscript::Ref<vbscript::Object> MakeDrive(const LibraryServices& services);
vbscript::Ref<vbscript::Object> MakeDrives(const LibraryServices& services);

/// Whether `path` names, or begins with, that disk.
bool IsOnDrive(std::string_view path);

}  // namespace tessaloom::library
