#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tessaloom {

class FileReader;
class FileSystem;

/// The files that the web server sends. Null when there is no such file; an `Error` when it cannot be read.

/// The file at `path` in `folder`; also null when no file can have that name or the way to it leads out of
/// the folder, by ".." or by a link.
std::unique_ptr<FileReader> OpenWebFile(FileSystem& files, std::string_view folder, std::string_view path);

/// The file at `path`, wherever it lies.
std::unique_ptr<FileReader> OpenWebFile(FileSystem& files, const std::string& path);

}  // namespace tessaloom
