#pragma once

#include <cstdint>
#include <span>

namespace tessaloom {

/// One row of a camera's picture turned into one of ours.
using ConvertRow = void (*)(std::uint8_t* to, const std::uint8_t* from, int width);

/// A pixel format that a camera may deliver.
struct PixelFormat {
    std::uint32_t code;  ///< Video4Linux's.
    int bytesPerPixel;   ///< In the camera's rows; 0: pictures are JPEG files.
    int bitCount;        ///< Of the frames made of them.
    ConvertRow convert;

    /// All that can be read, those first that a camera which delivers none of them now is asked for first.
    static std::span<const PixelFormat> All();

    /// Null when the format cannot be read.
    static const PixelFormat* Of(std::uint32_t code);
};

}  // namespace tessaloom
