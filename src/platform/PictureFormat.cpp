#include "platform/PictureFormat.h"

#include <algorithm>

#include "platform/Bytes.h"

namespace tessaloom {

namespace {

using namespace std::string_view_literals;

struct Signature {
    std::string_view begins;
    PictureFormat format;
};

constexpr Signature Signatures[] = {
    {"\x89PNG\r\n\x1A\n"sv, PictureFormat::Png },
    {"\xFF\xD8\xFF"sv,      PictureFormat::Jpeg},
    {"GIF87a"sv,            PictureFormat::Gif },
    {"GIF89a"sv,            PictureFormat::Gif },
    {"BM"sv,                PictureFormat::Bmp },
    {"\0\0\1\0"sv,          PictureFormat::Icon},
    {"\0\0\2\0"sv,          PictureFormat::Icon},
    {"II*\0"sv,             PictureFormat::Tiff},
    {"MM\0*"sv,             PictureFormat::Tiff},
};

constexpr std::string_view Blanks = " \t\r\n";

bool IsWebP(std::string_view text) {
    return text.starts_with("RIFF") && text.size() >= 12 && text.substr(8, 4) == "WEBP";
}

/// "P1" .. "P6", then a blank or a comment.
bool IsPortable(std::string_view text) {
    return text.size() > 2 && text[0] == 'P' && text[1] >= '1' && text[1] <= '6' &&
           (Blanks.find(text[2]) != std::string_view::npos || text[2] == '#');
}

bool IsMarkUp(std::string_view text) {
    constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(ByteOrderMark)) text.remove_prefix(ByteOrderMark.size());
    const std::size_t first = text.find_first_not_of(Blanks);
    return first != std::string_view::npos && text[first] == '<';
}

}  // namespace

std::optional<PictureFormat> PictureFormatOf(std::span<const std::uint8_t> file) {
    const std::string_view text = AsText(file.first(std::min(file.size(), PictureSignatureBytes)));
    for (const Signature& signature : Signatures)
        if (text.starts_with(signature.begins)) return signature.format;
    if (IsWebP(text)) return PictureFormat::WebP;
    if (IsPortable(text)) return PictureFormat::Portable;
    if (IsMarkUp(text)) return PictureFormat::Svg;
    return std::nullopt;
}

}  // namespace tessaloom
