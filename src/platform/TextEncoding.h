#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessaloom {

/// The mark that some editors put before UTF-8.
inline constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

/// Whether `bytes` is well-formed UTF-8 (no surrogates, no overlong forms).
bool IsUtf8(std::string_view bytes);

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
