#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/PictureLimits.h"

namespace tessaloom {

/// What became of a JPEG file's bytes.
enum class JpegResult {
    Ok,
    Damaged,      ///< Decoded in part only, or with a warning; the rows hold no usable picture.
    Unsupported,  ///< A JPEG that this codec cannot turn into blue, green and red; another decoder might.
    TooLarge,     ///< Beyond the limits, in size or in the work it asks for.
    Failed,       ///< No JPEG, or too broken to start with.
};

struct JpegHeader {
    enum class Colours { Grey, YCbCr, RGB, CMYK, YCCK };

    int width = 0;   ///< Pixels.
    int height = 0;  ///< Pixels.
    Colours colours = Colours::YCbCr;
};

/// JPEG files from and to memory. Rows are 24-bit pixels, blue, green, red; the first row in memory is the
/// bottom row of the picture; a row takes `stride` bytes. Nothing throws but a lack of memory.
class JpegCodec {
public:
    virtual ~JpegCodec() = default;

    /// What files may ask for from now on.
    virtual void SetLimits(const PictureLimits& limits) = 0;

    /// Fills `header` from `file`; reads no picture data. CMYK and YCCK headers are read and yield `Ok`.
    virtual JpegResult ReadHeader(std::span<const std::uint8_t> file, JpegHeader& header) = 0;

    /// Decodes the whole picture; `header` must come from `ReadHeader` of the same bytes, and `rows` have
    /// room for its height times `stride` bytes. On anything but `Ok` the content of `rows` is undefined.
    virtual JpegResult Decode(std::span<const std::uint8_t> file, const JpegHeader& header,
                              std::uint8_t* rows, int stride) = 0;

    /// Encodes `width` x `height` pixels with chroma halved in both directions (4:2:0) into `buffer`, which
    /// is enlarged where it is too small and never shrunk. The result is the file's bytes, a part of
    /// `buffer`; empty on failure. quality: percent, held to 1 .. 100.
    virtual std::span<const std::uint8_t> Encode(const std::uint8_t* rows, int width, int height, int stride,
                                                 int quality, std::vector<std::uint8_t>& buffer) = 0;
};

}  // namespace tessaloom
