#include "script/library/FileOperations.h"

#include <functional>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Folders.h"
#include "platform/Paths.h"
#include "script/library/FilePaths.h"

namespace tessaloom::library {

using vbscript::TimeLimit;

namespace {

enum class Kind { File, Folder };

FileError Missing(Kind kind) {
    return kind == Kind::File ? FileError::FileNotFound : FileError::PathNotFound;
}

bool Exists(const LibraryServices& services, std::string_view path, Kind kind) {
    return kind == Kind::File ? services.files.FileExists(path) : services.files.FolderExists(path);
}

/// The paths that `pattern` means, at least one.
std::vector<std::string> Found(const LibraryServices& services, std::string_view pattern, Kind kind) {
    if (pattern.empty()) Raise(FileError::InvalidCall);
    const std::string folder = ParentFolderName(AbsolutePath(services, pattern));
    if (!services.files.FolderExists(folder)) Raise(FileError::PathNotFound);
    if (!HasWildcards(pattern)) {
        if (!Exists(services, pattern, kind)) Raise(Missing(kind));
        return {std::string(pattern)};
    }
    std::vector<std::string> found;
    const std::string mask = FileName(pattern), parent = ParentFolderName(pattern);
    for (const FileDetails& entry : services.folders.List(folder).value_or(std::vector<FileDetails>()))
        if (entry.isFolder == (kind == Kind::Folder) && FitsPattern(entry.name, mask))
            found.push_back(JoinPath(parent, entry.name));
    if (found.empty()) Raise(Missing(kind));
    return found;
}

/// Calls `move` for every source with the path it is to get.
void ForEachTarget(const LibraryServices& services, std::string_view source, std::string_view target,
                   Kind kind, const std::function<void(const std::string&, const std::string&)>& move) {
    if (target.empty()) Raise(FileError::InvalidCall);
    const bool into = IsSeparator(target.back()) || HasWildcards(source);
    for (const std::string& path : Found(services, source, kind)) {
        if (into && !services.files.FolderExists(target)) Raise(FileError::PathNotFound);
        TimeLimit::Poll();
        move(path, into ? JoinPath(target, FileName(path)) : std::string(target));
    }
}

bool IsReadOnly(const LibraryServices& services, std::string_view path) {
    const auto details = services.folders.Details(path);
    return details && details->isReadOnly;
}

void CopyOneFile(const LibraryServices& services, const std::string& source, const std::string& target,
                 bool overwrite) {
    if (services.files.FolderExists(target)) Raise(FileError::PermissionDenied);
    if (!overwrite && services.files.FileExists(target)) Raise(FileError::FileExists);
    if (IsReadOnly(services, target)) Raise(FileError::PermissionDenied);
    if (!services.files.CopyFile(source, target, overwrite, TimeLimit::Poll))
        RaiseNotWritten(services, target);
}

/// A folder can be neither copied nor moved into itself.
void RefuseInside(const LibraryServices& services, std::string_view target, std::string_view folder) {
    std::string inner = AbsolutePath(services, target), outer = AbsolutePath(services, folder);
    for (std::string* path : {&inner, &outer})
        for (char& unit : *path)
            if (IsSeparator(unit)) unit = '/';
    if (inner == outer || inner.starts_with(outer + "/")) Raise(FileError::PermissionDenied);
}

void CopyOneFolder(const LibraryServices& services, const std::string& source, const std::string& target,
                   bool overwrite) {
    if (services.files.FileExists(target)) Raise(FileError::FileExists);
    // Before the target comes into being, which may lie within the source by way of a link.
    const auto entries = services.folders.List(source);
    if (!entries) Raise(FileError::PermissionDenied);
    if (!services.files.FolderExists(target)) CreateFolder(services, target);
    for (const FileDetails& entry : *entries) {
        TimeLimit::Poll();
        const std::string from = JoinPath(source, entry.name), to = JoinPath(target, entry.name);
        // A link to a folder might lead back to where the copy began.
        if (entry.isFolder && !entry.isLink) CopyOneFolder(services, from, to, overwrite);
        if (!entry.isFolder) CopyOneFile(services, from, to, overwrite);
    }
}

void DeleteOneFolder(const LibraryServices& services, const std::string& folder, bool force) {
    const auto entries = services.folders.List(folder);
    if (!entries) Raise(FileError::PermissionDenied);
    for (const FileDetails& entry : *entries) {
        TimeLimit::Poll();
        const std::string path = JoinPath(folder, entry.name);
        if (entry.isFolder && !entry.isLink)
            DeleteOneFolder(services, path, force);
        else if (!services.files.DeleteFile(path, force))
            Raise(FileError::PermissionDenied);
    }
    if (!services.folders.RemoveFolder(folder)) Raise(FileError::PermissionDenied);
}

}  // namespace

void CopyFiles(const LibraryServices& services, std::string_view source, std::string_view target,
               bool overwrite) {
    ForEachTarget(services, source, target, Kind::File,
                  [&](const auto& from, const auto& to) { CopyOneFile(services, from, to, overwrite); });
}

void CopyFolders(const LibraryServices& services, std::string_view source, std::string_view target,
                 bool overwrite) {
    ForEachTarget(services, source, target, Kind::Folder, [&](const auto& from, const auto& to) {
        RefuseInside(services, to, from);
        CopyOneFolder(services, from, to, overwrite);
    });
}

void MoveFiles(const LibraryServices& services, std::string_view source, std::string_view target) {
    ForEachTarget(services, source, target, Kind::File, [&](const auto& from, const auto& to) {
        if (services.folders.Details(to)) Raise(FileError::FileExists);
        if (!services.files.RenameFile(from, to, TimeLimit::Poll)) RaiseNotWritten(services, to);
    });
}

void MoveFolders(const LibraryServices& services, std::string_view source, std::string_view target) {
    ForEachTarget(services, source, target, Kind::Folder, [&](const auto& from, const auto& to) {
        RefuseInside(services, to, from);
        if (services.folders.Details(to)) Raise(FileError::FileExists);
        if (!services.folders.Move(from, to)) RaiseNotWritten(services, to);
    });
}

void DeleteFiles(const LibraryServices& services, std::string_view pattern, bool force) {
    for (const std::string& path : Found(services, pattern, Kind::File)) {
        TimeLimit::Poll();
        if (!services.files.DeleteFile(path, force)) Raise(FileError::PermissionDenied);
    }
}

void DeleteFolders(const LibraryServices& services, std::string_view pattern, bool force) {
    for (const std::string& path : Found(services, pattern, Kind::Folder)) {
        const auto details = services.folders.Details(path);
        const bool isLink = details && details->isLink;
        if (!isLink) DeleteOneFolder(services, path, force);
        if (isLink && !services.files.DeleteFile(path, force)) Raise(FileError::PermissionDenied);
    }
}

void CreateFolder(const LibraryServices& services, std::string_view path) {
    if (path.empty()) Raise(FileError::InvalidCall);
    if (services.folders.Details(path)) Raise(FileError::FileExists);
    if (!services.files.FolderExists(ParentFolderName(AbsolutePath(services, path))))
        Raise(FileError::PathNotFound);
    if (!services.files.MakeFolder(path)) RaiseNotWritten(services, path);
}

std::optional<std::string> ReadCharged(FileSystem& files, std::string_view path,
                                       vbscript::MemoryCharge& charge) {
    constexpr std::size_t Growth = 1 << 20;  // of a file that somebody writes to meanwhile
    const auto stamp = files.Stamp(path);
    if (!stamp) return std::nullopt;
    charge.Take(stamp->size);
    return files.ReadFile(path, static_cast<std::size_t>(stamp->size) + Growth);
}

std::uint64_t FolderSize(const LibraryServices& services, std::string_view folder) {
    TimeLimit::Poll();
    std::uint64_t bytes = 0;
    for (const FileDetails& entry : services.folders.List(folder).value_or(std::vector<FileDetails>())) {
        if (entry.isLink) continue;
        bytes += entry.isFolder ? FolderSize(services, JoinPath(folder, entry.name)) : entry.size;
    }
    return bytes;
}

}  // namespace tessaloom::library
