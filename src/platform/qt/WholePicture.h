#pragma once

#include <cstdint>
#include <span>

namespace tessaloom {

/// Whether a picture file goes on to its end, for the formats whose decoders would otherwise hand out the
/// part that is there, or complain on standard error: BMP, ICO, CUR, GIF, JPEG, PNG, PBM, PGM, PPM. True for
/// all other formats, and for what is none.
bool IsWholePicture(std::span<const std::uint8_t> file);

}  // namespace tessaloom
