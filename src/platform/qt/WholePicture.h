#pragma once

#include <cstdint>
#include <span>

#include "platform/PictureFormat.h"

namespace tessaloom {

/// Whether a picture file goes on to its end, for the formats whose decoders would otherwise hand out the
/// part that is there, or complain on standard error: BMP, ICO, CUR, GIF, JPEG, PBM, PGM, PPM. True for all
/// other formats.
bool IsWholePicture(PictureFormat format, std::span<const std::uint8_t> file);

/// The first picture of an icon file, as a file of its own where it is one (PNG); empty where it is none.
std::span<const std::uint8_t> FirstOfIcon(std::span<const std::uint8_t> file);

}  // namespace tessaloom
