#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tessaloom {

// Files and what is sent are texts (`std::string`), pictures are bytes: the same memory, seen as the other.

inline std::string_view AsText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline std::span<const std::uint8_t> AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace tessaloom
