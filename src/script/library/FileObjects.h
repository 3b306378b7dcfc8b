#pragma once

#include <cstdint>
#include <string_view>

#include "script/library/ClassLibrary.h"

/// The objects that stand for what lies on the disk. They hold a path only; what they tell is read from the
/// disk each time. Each factory throws RuntimeError for what is not there.
namespace tessaloom::library {

vbscript::Ref<vbscript::Object> MakeFile(const LibraryServices& services, std::string_view path);
vbscript::Ref<vbscript::Object> MakeFolderObject(const LibraryServices& services, std::string_view path);

/// A number of bytes as scripts see it: a Long while that can hold it.
vbscript::Value ByteCount(std::uint64_t bytes);

}  // namespace tessaloom::library
