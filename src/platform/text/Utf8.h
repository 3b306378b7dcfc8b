#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessaloom {

/// The characters of `text`, at most `limit` of them. Each byte that is no valid UTF-8 becomes U+FFFD.
std::u32string DecodeUtf8(std::string_view text, std::size_t limit);

/// The same characters as valid UTF-8.
std::string EncodeUtf8(std::u32string_view characters);

}  // namespace tessaloom
