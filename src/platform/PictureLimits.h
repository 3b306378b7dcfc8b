#pragma once

#include <cstdint>

namespace tessaloom {

/// What a picture file may ask for. Tested against its header, before anything of that size is allocated.
struct PictureLimits {
    int side = 65'500;                  ///< Pixels; the largest side of a JPEG file.
    std::int64_t pixels = 100'000'000;  ///< Width times height.

    bool Allow(std::int64_t width, std::int64_t height) const {
        return width > 0 && height > 0 && width <= side && height <= side && width * height <= pixels;
    }
};

}  // namespace tessaloom
