#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "script/library/ClassLibrary.h"
#include "vbscript/MemoryBudget.h"

/// What both the file system object and its files and folders do: copy, move, delete. Paths may hold `*` and
/// `?` in their last part where a pattern makes sense. A target that ends in a separator is a folder to copy
/// or move into. Throw RuntimeError: 53 and 76 for what is missing, 58 for what is there already, 70 for what
/// is not allowed. What may take long ends with the script's time.
namespace tessaloom::library {

void CopyFiles(const LibraryServices& services, std::string_view source, std::string_view target,
               bool overwrite);
void CopyFolders(const LibraryServices& services, std::string_view source, std::string_view target,
                 bool overwrite);
void MoveFiles(const LibraryServices& services, std::string_view source, std::string_view target);
void MoveFolders(const LibraryServices& services, std::string_view source, std::string_view target);

/// Without `force` read-only files stay, and error 70 is raised.
void DeleteFiles(const LibraryServices& services, std::string_view pattern, bool force);
void DeleteFolders(const LibraryServices& services, std::string_view pattern, bool force);

/// The folder above must exist.
void CreateFolder(const LibraryServices& services, std::string_view path);

/// The content of a file, charged to the script while `charge` lives; nothing when it cannot be read. Throws
/// RuntimeError 7.
std::optional<std::string> ReadCharged(FileSystem& files, std::string_view path,
                                       vbscript::MemoryCharge& charge);

/// Bytes in all its files, at any depth. Folders that cannot be read count nothing.
std::uint64_t FolderSize(const LibraryServices& services, std::string_view folder);

}  // namespace tessaloom::library
