#include "publish/WebFiles.h"

#include "locale/Error.h"

namespace tessaloom {

SharedBytes WebFiles::ReadIn(std::string_view folder, std::string_view path) {
    // Without a folder a path would be taken as it is, from the root on.
    if (folder.empty() || path.find("..") != path.npos || path.find('\0') != path.npos) return nullptr;
    const std::string whole = JoinPath(folder, path);
    return files_.LiesWithin(folder, whole) ? Read(whole) : nullptr;
}

SharedBytes WebFiles::Read(const std::string& path) {
    const auto stamp = files_.Stamp(path);
    if (!stamp || !files_.FileExists(path)) return nullptr;
    if (const auto found = underWay_.find(path); found != underWay_.end() && found->second.stamp == *stamp)
        if (SharedBytes bytes = found->second.bytes.lock()) return bytes;

    const std::size_t room = Together - std::min(Together, BytesUnderWay());
    auto read = files_.ReadFile(path, std::min(LargestFile, room));
    if (!read) throw Error(ErrorNumber::DeviceIO, "Cannot read " + path + ": " + files_.LastFailure());
    auto bytes = std::make_shared<const std::string>(std::move(*read));
    if (stamp->settled) underWay_[path] = {*stamp, bytes};
    return bytes;
}

/// Forgets files that have arrived everywhere.
std::size_t WebFiles::BytesUnderWay() {
    std::size_t bytes = 0;
    std::erase_if(underWay_, [&](const auto& entry) {
        const SharedBytes held = entry.second.bytes.lock();
        if (held) bytes += held->size();
        return !held;
    });
    return bytes;
}

}  // namespace tessaloom
