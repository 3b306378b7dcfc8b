#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessaloom {

/// Where `tag` first occurs in `text` from `from` on, whatever the case of its Latin letters; npos: nowhere.
/// Quick for texts without a "<", with which every tag begins.
std::size_t FindTag(std::string_view text, std::string_view tag, std::size_t from = 0);

/// Puts `value` in the place of every occurrence of `tag`, also of one that a replacement brings about.
/// A value that reads as the number -1000 is missing and shown as "N/A".
void Replace(std::string& text, std::string_view tag, std::string_view value);

}  // namespace tessaloom
