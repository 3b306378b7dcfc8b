#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "platform/PictureLimits.h"

namespace tessaloom {

/// What became of a JPEG file's bytes.
enum class JpegResult {
    Ok,
    Damaged,      ///< Decoded in part only, or with a warning of damage; the rows hold no usable picture.
    Unsupported,  ///< A JPEG that this decoder cannot turn into blue, green and red; another one might.
    TooLarge,     ///< Beyond the limits, in size or in the work it asks for.
    Failed,       ///< No JPEG, or too broken to start with.
};

struct JpegHeader {
    enum class Colours { Grey, YCbCr, RGB, CMYK, YCCK };

    int width = 0;   ///< Pixels.
    int height = 0;  ///< Pixels.
    Colours colours = Colours::YCbCr;
};

/// JPEG files from memory. Rows are 24-bit pixels, blue, green, red; the first row in memory is the bottom
/// row of the picture; a row takes `stride` bytes. Nothing throws but a lack of memory.
class JpegDecoder {
public:
    virtual ~JpegDecoder() = default;

    /// What files may ask for from now on.
    virtual void SetLimits(const PictureLimits& limits) = 0;

    /// Fills `header` from `file`; reads no picture data. CMYK and YCCK headers are read and yield `Ok`.
    virtual JpegResult ReadHeader(std::span<const std::uint8_t> file, JpegHeader& header) = 0;

    /// Decodes the whole picture; `header` must come from `ReadHeader` of the same bytes, and `rows` have
    /// room for its height times `stride` bytes. On anything but `Ok` the content of `rows` is undefined.
    virtual JpegResult Decode(std::span<const std::uint8_t> file, const JpegHeader& header,
                              std::uint8_t* rows, int stride) = 0;
};

/// Makes a decoder for the thread of one camera.
using MakeJpegDecoder = std::function<std::unique_ptr<JpegDecoder>()>;

}  // namespace tessaloom
