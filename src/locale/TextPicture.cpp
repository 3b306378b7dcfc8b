#include <algorithm>

#include "locale/Pictures.h"
#include "platform/Ascii.h"
#include "platform/TextEncoding.h"

namespace tessaloom {

namespace {

enum class LetterCase { Kept, Lower, Upper };

int CharacterCount(std::string_view utf8) {
    return static_cast<int>(std::ranges::count_if(utf8, [](char c) { return !ContinuesCharacter(c); }));
}

/// How a section fills its places, told by characters that may stand anywhere in it.
struct TextLayout {
    int places = 0;
    bool fromLeft = false;
    LetterCase letters = LetterCase::Kept;

    explicit TextLayout(std::string_view section) {
        std::string ignored;
        for (std::size_t at = 0; at < section.size();) {
            if (AppendQuoted(ignored, section, at)) continue;
            switch (section[at++]) {
                case '@':
                case '&':
                    ++places;
                    break;
                case '!':
                    fromLeft = true;
                    break;
                case '<':
                    letters = LetterCase::Lower;
                    break;
                case '>':
                    letters = LetterCase::Upper;
                    break;
                default:
                    break;
            }
        }
    }
};

/// Takes the first character off `text` and appends it in the wanted case. Letters beyond ASCII are changed
/// in the Latin-1 range only (U+00C0 .. U+00FE, in UTF-8 behind the byte C3).
void MoveCharacter(std::string& out, std::string_view& text, LetterCase letters) {
    std::size_t length = 1;
    while (length < text.size() && ContinuesCharacter(text[length])) ++length;
    const auto start = out.size();
    out += text.substr(0, length);
    text.remove_prefix(length);
    if (letters == LetterCase::Kept) return;
    const bool lower = letters == LetterCase::Lower;
    if (length == 1) {
        out[start] = lower ? ascii::Lower(out[start]) : ascii::Upper(out[start]);
    } else if (length == 2 && out[start] == '\xC3') {
        const auto second = static_cast<unsigned char>(out[start + 1]);
        const auto folded = second & ~0x20U;  // the capitals are 80 .. 9E, without the sign at 97
        if (folded <= 0x9E && folded != 0x97)
            out[start + 1] = static_cast<char>(lower ? folded | 0x20U : folded);
    }
}

}  // namespace

void AppendTextPicture(std::string& out, std::string_view text, std::string_view picture) {
    const PictureSections sections(picture);
    const auto section = text.empty() && sections.count > 1 ? sections.section[1] : sections.section[0];
    const TextLayout layout(section);
    const int missing = std::max(layout.places - CharacterCount(text), 0);
    int blanksBefore = layout.fromLeft ? 0 : missing;
    for (std::size_t at = 0; at < section.size();) {
        if (AppendQuoted(out, section, at)) continue;
        const char c = section[at++];
        if (c == '@' || c == '&') {
            if (blanksBefore == 0 && !text.empty())
                MoveCharacter(out, text, layout.letters);
            else if (c == '@')
                out += ' ';
            blanksBefore = std::max(blanksBefore - 1, 0);
        } else if (c != '!' && c != '<' && c != '>') {
            out += c;
        }
    }
    while (!text.empty()) MoveCharacter(out, text, layout.letters);
}

}  // namespace tessaloom
