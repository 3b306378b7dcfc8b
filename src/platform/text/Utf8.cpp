#include "platform/text/Utf8.h"

namespace tessaloom {
namespace {

constexpr char32_t Replacement = 0xFFFD;

/// The lead bytes of each length: what they look like, and the smallest character of that length.
struct Lead {
    unsigned mask, pattern;
    std::size_t length;
    char32_t smallest;
};
constexpr Lead Leads[] = {
    {0xE0, 0xC0, 2, 0x80   },
    {0xF0, 0xE0, 3, 0x800  },
    {0xF8, 0xF0, 4, 0x10000},
};

/// The character at the front of `text` and how many bytes it takes.
char32_t First(std::string_view text, std::size_t& length) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    length = 1;
    if (byte(0) < 0x80) return byte(0);
    for (const Lead& lead : Leads) {
        if ((byte(0) & lead.mask) != lead.pattern || text.size() < lead.length) continue;
        char32_t c = byte(0) & ~lead.mask;
        for (std::size_t i = 1; i < lead.length; ++i) {
            if ((byte(i) & 0xC0) != 0x80) return Replacement;
            c = (c << 6) | (byte(i) & 0x3F);
        }
        if (c < lead.smallest || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return Replacement;
        length = lead.length;
        return c;
    }
    return Replacement;
}

}  // namespace

std::u32string DecodeUtf8(std::string_view text, std::size_t limit) {
    std::u32string characters;
    characters.reserve(text.size() < limit ? text.size() : limit);
    while (!text.empty() && characters.size() < limit) {
        std::size_t length = 1;
        characters.push_back(First(text, length));
        text.remove_prefix(length);
    }
    return characters;
}

std::string EncodeUtf8(std::u32string_view characters) {
    std::string text;
    for (const char32_t c : characters) {
        const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
        if (c < 0x80) {
            text += static_cast<char>(c);
        } else if (c < 0x800) {
            text += static_cast<char>(0xC0 | (c >> 6));
            tail(0);
        } else if (c < 0x10000) {
            text += static_cast<char>(0xE0 | (c >> 12));
            tail(6), tail(0);
        } else {
            text += static_cast<char>(0xF0 | (c >> 18));
            tail(12), tail(6), tail(0);
        }
    }
    return text;
}

}  // namespace tessaloom
