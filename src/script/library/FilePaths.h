#pragma once

#include <string>
#include <string_view>

#include "script/library/ClassLibrary.h"

namespace tessaloom::library {

/// The numbers of the errors that file operations raise.
enum class FileError : int {
    InvalidCall = 5,
    BadFileNumber = 52,
    FileNotFound = 53,
    BadFileMode = 54,
    DeviceFault = 57,
    FileExists = 58,
    DiskFull = 61,
    PastEndOfFile = 62,
    DeviceUnavailable = 68,
    PermissionDenied = 70,
    PathNotFound = 76,
};

[[noreturn]] void Raise(FileError error);

/// Why nothing can be written at `path`: its folder is missing, its disk is full, or it is not allowed.
[[noreturn]] void RaiseNotWritten(const LibraryServices& services, std::string_view path);

bool IsSeparator(char unit);

/// In full, from the root on, without `.` and `..` and without a separator at its end. Separators stay as
/// they came; joins use `\`.
std::string AbsolutePath(const LibraryServices& services, std::string_view path);

/// `folder` and `name` with one separator between them; none behind the colon of a drive.
std::string BuildPath(std::string_view folder, std::string_view name);

/// "c:" or "\\server\share"; "" for other paths.
std::string DriveName(std::string_view path);

/// Whether a name fits a pattern of `*` and `?`, whatever the case.
bool FitsPattern(std::string_view name, std::string_view pattern);

bool HasWildcards(std::string_view path);

}  // namespace tessaloom::library
