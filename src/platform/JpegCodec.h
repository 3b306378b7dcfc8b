#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/JpegDecoder.h"

namespace tessaloom {

/// JPEG files from and to memory.
class JpegCodec : public JpegDecoder {
public:
    /// Encodes `width` x `height` pixels with chroma halved in both directions (4:2:0) into `buffer`, which
    /// is enlarged where it is too small and never shrunk. The result is the file's bytes, a part of
    /// `buffer`; empty on failure. quality: percent, held to 1 .. 100.
    virtual std::span<const std::uint8_t> Encode(const std::uint8_t* rows, int width, int height, int stride,
                                                 int quality, std::vector<std::uint8_t>& buffer) = 0;
};

}  // namespace tessaloom
