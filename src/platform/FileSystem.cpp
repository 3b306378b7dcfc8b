#include "platform/FileSystem.h"

#include <algorithm>

namespace tessaloom {

bool FileSystem::SameFile(std::string_view one, std::string_view other) const {
    const auto plain = [](char c) { return c == '/' ? '\\' : c; };
    if (std::ranges::equal(one, other, {}, plain, plain)) return true;
    const auto stamp = Stamp(one);
    return stamp && stamp == Stamp(other);
}

bool FileSystem::LiesWithin(std::string_view, std::string_view) const { return true; }

}  // namespace tessaloom
