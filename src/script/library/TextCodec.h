#pragma once

#include <optional>
#include <string_view>

#include "vbscript/MemoryBudget.h"
#include "vbscript/String.h"

namespace tessaloom::library {

/// How bytes stand for text.
enum class Charset {
    Utf16,           ///< Low byte first; a mark at the begin may say otherwise, and is no part of the text.
    Utf16BigEndian,  ///< The same, high byte first.
    Utf8,            ///< A mark at the begin is no part of the text.
    Utf8OrWindows,   ///< The same, but Windows-1252 where the bytes are no UTF-8.
    Windows1252,
    Latin1,
    Ascii,
};

inline constexpr std::string_view Utf16Mark = "\xFF\xFE";

/// The charset of that name, whatever its case ("utf-8", "unicode", "iso-8859-1" ...).
std::optional<Charset> CharsetNamed(std::string_view name);

/// Malformed parts become U+FFFD. Throws RuntimeError 7.
vbscript::String DecodeText(std::string_view bytes, Charset charset);

/// Without a mark. What the charset does not have becomes "?".
void AppendEncoded(vbscript::BudgetBytes& bytes, std::u16string_view text, Charset charset);

/// The mark that begins a file of that charset; "" for none.
std::string_view MarkOf(Charset charset);

}  // namespace tessaloom::library
