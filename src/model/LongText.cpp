#include "model/LongText.h"

#include "platform/Ascii.h"
#include "platform/PrivateProfile.h"
#include "platform/TextEncoding.h"

namespace tessaloom::LongText {

namespace {

constexpr std::string_view LineBreaks = "\r\n";

/// Pairs of a character and the letter that stands for it behind a backslash.
constexpr std::string_view Escapes = "\\\\\nn\rr\tt s&a\"q'p";

constexpr std::size_t PieceLimit = 240;  ///< Characters; below the limit of a value.

/// What profile files drop only at the ends of a value; elsewhere it stays readable.
bool AtEnds(char c) { return c == ' ' || c == '\''; }

std::string Escaped(std::string_view text) {
    std::string result;
    result.reserve(text.size() + 16);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        const bool inner = at > 0 && at + 1 < text.size() && !AtEnds(text[at - 1]);
        std::size_t escape = inner && AtEnds(c) ? Escapes.size() : 0;
        while (escape < Escapes.size() && Escapes[escape] != c) escape += 2;
        if (escape < Escapes.size())
            result.append({'\\', Escapes[escape + 1]});
        else
            result += c;
    }
    return result;
}

/// Where to cut `text` so that a whole character ends the piece, and neither piece has a blank or an
/// apostrophe there. A run of those that is longer than a piece is cut anyway.
std::size_t PieceLength(std::string_view text) {
    const std::size_t longest = FirstCharacters(text, PieceLimit).size();
    if (longest == text.size()) return longest;
    for (std::size_t at = longest; at > 0; --at)
        if (!ContinuesCharacter(text[at]) && !AtEnds(text[at]) && !AtEnds(text[at - 1])) return at;
    return longest;
}

}  // namespace

bool Needed(std::string_view text) { return text.find_first_of(LineBreaks) != text.npos; }

std::string PlainForm(std::string_view text) {
    std::string line(text.substr(0, text.find_first_of(LineBreaks)));
    for (std::size_t at = 0; (at = line.find("&34", at)) != line.npos;) line.replace(at, 3, 1, '"');
    std::string_view value = ascii::Trimmed(line, ascii::Blanks);
    if (value.size() > 1 && value.front() == '\'' && value.back() == '\'')
        value = value.substr(1, value.size() - 2);
    return std::string(FirstCharacters(value, PrivateProfile::ValueLimit));
}

std::vector<std::string> Pieces(std::string_view text) {
    const std::string escaped = Escaped(text);
    std::vector<std::string> pieces;
    for (std::string_view rest = escaped; !rest.empty();) {
        const std::size_t length = PieceLength(rest);
        pieces.emplace_back(rest.substr(0, length));
        rest.remove_prefix(length);
    }
    return pieces;
}

std::string Unescaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\' || at + 1 == text.size()) {
            result += text[at];
            continue;
        }
        ++at;
        std::size_t escape = 1;
        while (escape < Escapes.size() && Escapes[escape] != text[at]) escape += 2;
        if (escape < Escapes.size())
            result += Escapes[escape - 1];
        else
            result.append({'\\', text[at]});
    }
    return result;
}

}  // namespace tessaloom::LongText
