#include "script/library/FilePaths.h"

#include <vector>

#include "platform/FileSystem.h"
#include "platform/Folders.h"
#include "platform/Paths.h"
#include "platform/TextEncoding.h"
#include "vbscript/Error.h"

namespace tessaloom::library {

namespace {

/// Below that a disk counts as full: the system keeps some for itself.
constexpr std::uint64_t LeastFreeBytes = 64 << 10;

/// The separators before the first part, and the parts with the separator before each.
struct Parts {
    std::string root;
    std::vector<std::string_view> parts;
};

Parts Split(std::string_view path) {
    Parts result;
    if (!path.empty() && IsSeparator(path.front())) result.root = path.substr(0, 1);
    for (std::size_t begin = 0; begin < path.size();) {
        std::size_t name = begin;
        while (name < path.size() && IsSeparator(path[name])) ++name;
        std::size_t end = name;
        while (end < path.size() && !IsSeparator(path[end])) ++end;
        const std::string_view part = path.substr(name, end - name);
        if (part == "..") {
            if (!result.parts.empty()) result.parts.pop_back();
        } else if (!part.empty() && part != ".") {
            result.parts.push_back(name > begin ? path.substr(name - 1, end - name + 1) : part);
        }
        begin = end;
    }
    return result;
}

}  // namespace

void Raise(FileError error) { throw vbscript::RuntimeError(static_cast<int>(error)); }

void RaiseNotWritten(const LibraryServices& services, std::string_view path) {
    const std::string folder = ParentFolderName(AbsolutePath(services, path));
    if (!services.files.FolderExists(folder)) Raise(FileError::PathNotFound);
    const auto disk = services.folders.Disk(folder);
    Raise(disk && disk->availableBytes < LeastFreeBytes ? FileError::DiskFull : FileError::PermissionDenied);
}

bool IsSeparator(char unit) { return unit == '\\' || unit == '/'; }

std::string AbsolutePath(const LibraryServices& services, std::string_view path) {
    const bool absolute = !path.empty() && IsSeparator(path.front());
    const std::string whole = absolute ? std::string(path) : JoinPath(services.files.CurrentFolder(), path);
    const Parts parts = Split(whole);
    std::string result;
    for (const std::string_view part : parts.parts) result += part;
    return result.empty() ? parts.root : result;
}

std::string BuildPath(std::string_view folder, std::string_view name) {
    if (!folder.empty() && !name.empty() && IsSeparator(name.front())) {
        if (IsSeparator(folder.back())) name.remove_prefix(1);
        return std::string(folder).append(name);
    }
    if (folder.ends_with(':')) return std::string(folder).append(name);
    return JoinPath(folder, name);
}

std::string DriveName(std::string_view path) {
    if (path.size() >= 2 && path[1] == ':') return std::string(path.substr(0, 2));
    if (!path.starts_with("\\\\")) return {};
    const std::size_t share = path.find_first_of("\\/", 2);
    if (share == path.npos || share == 2) return {};
    return std::string(path.substr(0, path.find_first_of("\\/", share + 1)));
}

bool FitsPattern(std::string_view name, std::string_view pattern) {
    const std::string text = FoldCase(name), mask = FoldCase(pattern == "*.*" ? "*" : pattern);
    std::size_t at = 0, want = 0, star = mask.npos, again = 0;
    while (at < text.size()) {
        if (want < mask.size() && (mask[want] == '?' || mask[want] == text[at]) && mask[want] != '*') {
            ++at, ++want;
        } else if (want < mask.size() && mask[want] == '*') {
            star = want++;
            again = at;
        } else if (star != mask.npos) {
            want = star + 1;
            at = ++again;
        } else {
            return false;
        }
    }
    return mask.find_first_not_of('*', want) == mask.npos;
}

bool HasWildcards(std::string_view path) { return FileName(path).find_first_of("*?") != std::string::npos; }

}  // namespace tessaloom::library
