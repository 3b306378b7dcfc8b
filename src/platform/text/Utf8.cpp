#include "platform/text/Utf8.h"

#include <algorithm>

#include "platform/TextEncoding.h"

namespace tessaloom {

std::u32string DecodeUtf8(std::string_view text, std::size_t limit) {
    std::u32string characters;
    characters.reserve(std::min(text.size(), limit));
    while (!text.empty() && characters.size() < limit) characters.push_back(TakeCharacter(text));
    return characters;
}

std::string EncodeUtf8(std::u32string_view characters) {
    std::string text;
    for (const char32_t character : characters) AppendCharacter(text, character);
    return text;
}

}  // namespace tessaloom
