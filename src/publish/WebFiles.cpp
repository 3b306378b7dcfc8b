#include "publish/WebFiles.h"

#include "locale/Error.h"
#include "platform/FileSystem.h"

namespace tessaloom {

std::unique_ptr<FileReader> OpenWebFile(FileSystem& files, std::string_view folder, std::string_view path) {
    // Without a folder a path would be taken as it is, from the root on.
    if (folder.empty() || path.find("..") != path.npos || path.find('\0') != path.npos) return nullptr;
    const std::string whole = JoinPath(folder, path);
    return files.LiesWithin(folder, whole) ? OpenWebFile(files, whole) : nullptr;
}

std::unique_ptr<FileReader> OpenWebFile(FileSystem& files, const std::string& path) {
    if (!files.FileExists(path)) return nullptr;
    auto file = files.OpenFile(path);
    if (!file) throw Error(ErrorNumber::DeviceIO, "Cannot read " + path + ": " + files.LastFailure());
    return file;
}

}  // namespace tessaloom
