#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessaloom {

/// The mark that some editors put before UTF-8.
inline constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

/// Whether a byte of UTF-8 is no character's first.
constexpr bool ContinuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// Whether `bytes` is well-formed UTF-8 (no surrogates, no overlong forms).
bool IsUtf8(std::string_view bytes);

/// Takes the first character off `text`, which is not empty; a byte that is no part of well-formed UTF-8
/// counts alone, and is `MalformedCharacter`.
char32_t TakeCharacter(std::string_view& text);
inline constexpr char32_t MalformedCharacter = 0xFFFD;

/// Appends a character, up to 0x10FFFF and no surrogate, as UTF-8.
void AppendCharacter(std::string& text, char32_t character);

/// Windows-1252 as UTF-8. The five bytes that it leaves open become the control characters of that number.
std::string FromWindows1252(std::string_view bytes);

/// The text of a file or of a foreign caller: UTF-8 when all of it is, else taken as Windows-1252.
std::string ToUtf8(std::string_view bytes);

/// The first `count` characters of a UTF-8 text.
std::string_view FirstCharacters(std::string_view text, std::size_t count);

/// For comparing names without regard to case: ASCII and the letters of Windows-1252 in lower case.
std::string FoldCase(std::string_view text);

/// The same into a string that is used again and again.
void FoldCase(std::string_view text, std::string& folded);

}  // namespace tessaloom
