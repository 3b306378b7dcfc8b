#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Texts with line breaks, which a profile file cannot hold in one value. They are stored a second time,
/// escaped, in a section of their own; the plain key keeps the first line.
namespace tessaloom::LongText {

/// `text` holds a line break.
bool Needed(std::string_view text);

/// What the plain key gives back for `text`: its first line, as profile files change it.
std::string PlainForm(std::string_view text);

/// `text` in pieces that each survive as one value of a profile file.
std::vector<std::string> Pieces(std::string_view text);

/// The text of which `joined` are the pieces, one behind the other.
std::string Unescaped(std::string_view joined);

}  // namespace tessaloom::LongText
