#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/CaptureSource.h"
#include "platform/ffmpeg/Library.h"

namespace tessaloom {

/// Turns decoded frames of any size and pixel format into rows for the inbox: 24 bits, bottom row first.
class FrameConverter {
public:
    /// False when the frame was refused or its format cannot be converted.
    bool Convert(const AVFrame& frame, FrameInbox& inbox);

private:
    /// What the conversion at hand was made for.
    struct Shape {
        int width = 0, height = 0, format = AV_PIX_FMT_NONE;
        int colours = 0;  ///< Which matrix turned red, green and blue into luminance.
        bool fullRange = false;

        bool operator==(const Shape&) const = default;
    };

    static Shape ShapeOf(const AVFrame& frame);
    bool Prepare(const Shape& shape);
    bool Scale(const AVFrame& frame, std::uint8_t* rows, std::size_t stride);
    bool ScaleBeside(const AVFrame& frame, std::span<std::uint8_t> rows, std::size_t stride);

    Shape shape_;
    Owned<SwsContext> scaler_;
    std::vector<std::uint8_t> beside_;  ///< Rows with room behind them.
};

}  // namespace tessaloom
