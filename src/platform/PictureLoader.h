#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/PictureLimits.h"

namespace tessaloom {

/// A decoded picture. The first row in memory is the bottom row.
struct LoadedPicture {
    int width = 0;                     ///< Pixels; 0 when nothing was loaded.
    int height = 0;                    ///< Pixels.
    std::vector<std::uint8_t> pixels;  ///< Blue, green, red; rows padded to a multiple of 4 bytes.
    std::vector<std::uint8_t> alpha;  ///< `width` bytes a row, 0 clear .. 255 solid; empty when all is solid.

    explicit operator bool() const { return width > 0 && height > 0; }
};

/// Decodes picture files of every format that the platform knows, by their content and not by their name.
class PictureLoader {
public:
    virtual ~PictureLoader() = default;

    /// What files may ask for from now on.
    virtual void SetLimits(const PictureLimits& limits) = 0;

    /// The picture in `file` (the first one, where it holds several); an empty one when it is damaged, cut
    /// short, beyond the limits or of an unknown format. Never a part of a picture.
    virtual LoadedPicture Load(std::span<const std::uint8_t> file) = 0;
};

}  // namespace tessaloom
