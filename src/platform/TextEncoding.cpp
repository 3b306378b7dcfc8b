#include "platform/TextEncoding.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace tessaloom {

namespace {

/// Bytes 0x80 .. 0x9F of Windows-1252; the rest equals Latin-1.
constexpr std::array<char16_t, 32> Windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

/// The lead bytes of well-formed UTF-8: how many bytes follow, and between what the first of them must lie.
struct Lead {
    unsigned char from, to;
    int following;
    unsigned char low, high;
};
constexpr Lead Leads[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF},
    {0xE0, 0xE0, 2, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x80, 0x9F},
    {0xEE, 0xEF, 2, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x80, 0xBF},
    {0xF4, 0xF4, 3, 0x80, 0x8F},
};

/// Capitals of Windows-1252 outside ASCII and Latin-1, with their small letters.
struct Pair {
    std::string_view capital, small;
};
constexpr Pair Pairs[] = {
    {"\xC5\x92", "\xC5\x93"}, // OE
    {"\xC5\xA0", "\xC5\xA1"}, // S with caron
    {"\xC5\xBD", "\xC5\xBE"}, // Z with caron
    {"\xC5\xB8", "\xC3\xBF"}, // Y with diaeresis
};

unsigned char Byte(char c) { return static_cast<unsigned char>(c); }

/// The bytes of the character at the start of `text`; 0 when it is ill-formed.
std::size_t CharacterLength(std::string_view text) {
    const unsigned char first = Byte(text[0]);
    if (first < 0x80) return 1;
    for (const Lead& lead : Leads) {
        if (first < lead.from || first > lead.to) continue;
        const std::size_t length = static_cast<std::size_t>(lead.following) + 1;
        if (text.size() < length || Byte(text[1]) < lead.low || Byte(text[1]) > lead.high) return 0;
        for (std::size_t i = 2; i < length; ++i)
            if (!ContinuesCharacter(text[i])) return 0;
        return length;
    }
    return 0;
}

/// How many bytes at the start of `text` are surely ASCII: whole words only.
std::size_t AsciiRun(std::string_view text) {
    std::size_t at = 0;
    for (std::uint64_t word; at + sizeof word <= text.size(); at += sizeof word) {
        std::memcpy(&word, text.data() + at, sizeof word);
        if (word & 0x8080808080808080u) break;
    }
    return at;
}

/// The small letter for a capital of two bytes, or the letter itself.
std::string_view SmallLetter(std::string_view letter) {
    for (const Pair& pair : Pairs)
        if (letter == pair.capital) return pair.small;
    return letter;
}

bool IsLatin1Capital(char first, char second) {
    const unsigned char byte = Byte(second);
    return Byte(first) == 0xC3 && byte >= 0x80 && byte <= 0x9E &&
           byte != 0x97;  // 0x97: the multiplication sign
}

}  // namespace

char32_t TakeCharacter(std::string_view& text) {
    const std::size_t length = CharacterLength(text);
    // Of the first byte as many bits count as are left behind the mark of the length.
    char32_t character = length < 2 ? Byte(text[0]) : Byte(text[0]) & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) character = character << 6 | (Byte(text[i]) & 0x3F);
    text.remove_prefix(length == 0 ? 1 : length);
    return length == 0 ? MalformedCharacter : character;
}

void AppendCharacter(std::string& text, char32_t character) {
    const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) return add(character);
    if (character < 0x800) {
        add(0xC0 | character >> 6);
    } else {
        if (character < 0x10000) {
            add(0xE0 | character >> 12);
        } else {
            add(0xF0 | character >> 18);
            add(0x80 | (character >> 12 & 0x3F));
        }
        add(0x80 | (character >> 6 & 0x3F));
    }
    add(0x80 | (character & 0x3F));
}

bool IsUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        bytes.remove_prefix(AsciiRun(bytes));
        if (bytes.empty()) break;
        const std::size_t length = CharacterLength(bytes);
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::string FromWindows1252(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (char c : bytes) {
        const unsigned char byte = Byte(c);
        if (byte < 0x80) {
            text += c;
        } else {
            AppendCharacter(text, byte < 0xA0 ? Windows1252[byte - 0x80u] : byte);
        }
    }
    return text;
}

std::string ToUtf8(std::string_view bytes) {
    return IsUtf8(bytes) ? std::string(bytes) : FromWindows1252(bytes);
}

std::string_view FirstCharacters(std::string_view text, std::size_t count) {
    if (text.size() <= count) return text;
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (!ContinuesCharacter(text[i]) && characters++ == count) return text.substr(0, i);
    return text;
}

std::string FoldCase(std::string_view text) {
    std::string folded;
    FoldCase(text, folded);
    return folded;
}

void FoldCase(std::string_view text, std::string& folded) {
    folded = text;
    for (std::size_t i = 0; i < folded.size(); ++i) {
        if (folded[i] >= 'A' && folded[i] <= 'Z') folded[i] = static_cast<char>(folded[i] + 32);
        const bool leadsTwoBytes = (Byte(folded[i]) & 0xE0) == 0xC0;  // no longer character has a case here
        if (!leadsTwoBytes || i + 1 == folded.size()) continue;
        if (IsLatin1Capital(folded[i], folded[i + 1])) {
            folded[i + 1] = static_cast<char>(folded[i + 1] + 0x20);
        } else {
            folded.replace(i, 2, SmallLetter(text.substr(i, 2)));  // of the same length
        }
        ++i;
    }
}

}  // namespace tessaloom
