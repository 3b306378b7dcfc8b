#pragma once

#include <cstdint>
#include <span>

namespace tessaloom {

/// Whether a GIF file goes on to its trailer.
bool IsWholeGif(std::span<const std::uint8_t> file);

/// How many pixels the data of its first picture unpack to, whatever size the picture claims: each code may
/// stand for up to 4096 of them. The toolkit unpacks them all, also those that have no place.
std::int64_t UnpackedGifPixels(std::span<const std::uint8_t> file);

}  // namespace tessaloom
