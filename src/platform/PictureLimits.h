#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tessaloom {

/// What a picture file may ask for. Tested against its header, before anything of that size is allocated.
struct PictureLimits {
    int side = 65'500;                  ///< Pixels; the largest side of a JPEG file.
    std::int64_t pixels = 100'000'000;  ///< Width times height.

    /// Pixels times passes over the picture. An ordinary progressive JPEG takes about ten passes; a hostile
    /// one of a few kilobytes could ask for hundreds over the largest picture and hold the program up for
    /// minutes.
    std::int64_t work = 1'500'000'000;

    bool Allow(std::int64_t width, std::int64_t height) const {
        return width > 0 && height > 0 && width <= side && height <= side && width * height <= pixels;
    }

    bool AllowJpeg(std::int64_t width, std::int64_t height, std::span<const std::uint8_t> file) const {
        return Allow(width, height) && width * height * JpegScans(file) <= work;
    }

    /// How many passes over the picture a JPEG file asks for. Small pictures embedded in its headers and what
    /// follows its end (a film, in some cameras' files) are not counted.
    static std::int64_t JpegScans(std::span<const std::uint8_t> file);
};

}  // namespace tessaloom
