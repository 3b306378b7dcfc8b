#include "platform/Paths.h"

namespace tessaloom {

namespace {

constexpr std::string_view Separators = "\\/";

std::string_view WithoutTrailingSeparators(std::string_view path) {
    const std::size_t last = path.find_last_not_of(Separators);
    return path.substr(0, last == path.npos ? 0 : last + 1);
}

std::string_view LastPart(std::string_view path) {
    path = WithoutTrailingSeparators(path);
    const std::size_t separator = path.find_last_of(Separators);
    return separator == path.npos ? path : path.substr(separator + 1);
}

}  // namespace

std::string ParentFolderName(std::string_view path) {
    path = WithoutTrailingSeparators(path);
    const std::size_t separator = path.find_last_of(Separators);
    if (separator == path.npos) return {};
    const std::string_view folder = WithoutTrailingSeparators(path.substr(0, separator));
    return std::string(folder.empty() ? path.substr(0, 1) : folder);
}

std::string FileName(std::string_view path) { return std::string(LastPart(path)); }

std::string BaseName(std::string_view path) {
    const std::string_view name = LastPart(path);
    return std::string(name.substr(0, name.rfind('.')));
}

std::string ExtensionName(std::string_view path) {
    const std::string_view name = LastPart(path);
    const std::size_t dot = name.rfind('.');
    return dot == name.npos ? std::string() : std::string(name.substr(dot + 1));
}

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && Separators.find(path.back()) == Separators.npos) path += '\\';
    return path.append(name);
}

}  // namespace tessaloom
