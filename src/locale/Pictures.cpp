#include "locale/Pictures.h"

#include <algorithm>

#include "platform/Ascii.h"

namespace tessaloom {

namespace {

/// Behind the quoted or escaped text that starts at `at`; `at` itself when none does.
std::size_t SkipQuoted(std::string_view picture, std::size_t at) {
    if (picture[at] == '\\') return std::min(at + 2, picture.size());
    if (picture[at] != '"') return at;
    const auto close = picture.find('"', at + 1);
    return close == std::string_view::npos ? picture.size() : close + 1;
}

/// Case does not matter for letters. The separators of dates and times are no placeholders, they only hint.
PictureKind KindOfPlaceholder(char c) {
    static constexpr std::string_view NumberPlaces = "0#.,%", TextPlaces = "@&<>!", DateFields = "cdhmnqstwy";
    if (NumberPlaces.find(c) != std::string_view::npos) return PictureKind::Number;
    if (TextPlaces.find(c) != std::string_view::npos) return PictureKind::Text;
    if (DateFields.find(ascii::Lower(c)) != std::string_view::npos) return PictureKind::Date;
    return PictureKind::Literal;
}

}  // namespace

std::string_view HalfDayMarkAt(std::string_view picture) {
    for (const auto mark : HalfDayMarks)
        if (ascii::StartsWithText(picture, mark)) return picture.substr(0, mark.size());
    return {};
}

PictureKind KindOfPicture(std::string_view picture) {
    PictureKind fallback = PictureKind::Literal;
    for (std::size_t at = 0; at < picture.size();) {
        if (const auto next = SkipQuoted(picture, at); next != at) {
            at = next;
            continue;
        }
        const char c = picture[at];
        const auto kind = KindOfPlaceholder(c);
        if (kind != PictureKind::Literal) return kind;
        if (c == '/' || c == ':') fallback = PictureKind::Date;
        if (ascii::Lower(c) == 'a' && !HalfDayMarkAt(picture.substr(at)).empty()) return PictureKind::Date;
        ++at;
    }
    return fallback;
}

PictureSections::PictureSections(std::string_view picture) {
    std::size_t start = 0;
    for (std::size_t at = 0; at < picture.size() && count < Max - 1;) {
        if (const auto next = SkipQuoted(picture, at); next != at) {
            at = next;
        } else if (picture[at++] == ';') {
            section[count++] = picture.substr(start, at - 1 - start);
            start = at;
        }
    }
    section[count++] = picture.substr(start);
}

bool AppendQuoted(std::string& out, std::string_view picture, std::size_t& at) {
    const auto end = SkipQuoted(picture, at);
    if (end == at) return false;
    auto text = picture.substr(at + 1, end - at - 1);
    if (picture[at] == '"' && text.ends_with('"')) text.remove_suffix(1);
    out += text;
    at = end;
    return true;
}

}  // namespace tessaloom
