#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace tessaloom {

/// The formats in which picture files are taken. What is none of them never reaches a decoder, whatever
/// decoders the system has besides.
enum class PictureFormat { Bmp, Gif, Icon, Jpeg, Png, Portable, Svg, Tiff, WebP };

/// How many bytes from the beginning of a file `PictureFormatOf` looks at.
inline constexpr std::size_t PictureSignatureBytes = 64;

/// What a file is by its first bytes, whatever its name; nothing for all other formats.
///
/// A vector picture (`Svg`) is told by its first mark-up only: it may turn out to be another document.
std::optional<PictureFormat> PictureFormatOf(std::span<const std::uint8_t> file);

/// The formats as people know them, for reports.
inline constexpr std::string_view PictureFormatNames = "BMP, GIF, ICO, JPEG, PNG, PNM, SVG, TIFF, WebP";

/// The file names that go with them, for file dialogs: "title|patterns".
inline constexpr std::string_view PictureFileFilter =
    "Pictures|*.jpg *.jpeg *.png *.gif *.bmp *.webp *.svg *.ico *.cur *.tif *.tiff *.ppm *.pgm *.pbm *.pnm";

}  // namespace tessaloom
