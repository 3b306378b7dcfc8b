#include "platform/ffmpeg/FrameConverter.h"

#include <algorithm>

namespace tessaloom {

namespace {

/// Pictures at least that large follow the standard of high definition where they do not say.
constexpr int HighDefinitionHeight = 720;  // pixels

/// The library writes whole vectors: past the end of rows that are no multiple of one.
constexpr int SafeWidth = 16;         // pixels
constexpr std::size_t RowRoom = 128;  // bytes

/// The full-range twins of the plain formats, which the library gave up in favour of a property of the frame.
AVPixelFormat Plain(int format, bool& fullRange) {
    fullRange = true;
    switch (format) {
        case AV_PIX_FMT_YUVJ420P:
            return AV_PIX_FMT_YUV420P;
        case AV_PIX_FMT_YUVJ422P:
            return AV_PIX_FMT_YUV422P;
        case AV_PIX_FMT_YUVJ444P:
            return AV_PIX_FMT_YUV444P;
        case AV_PIX_FMT_YUVJ440P:
            return AV_PIX_FMT_YUV440P;
        case AV_PIX_FMT_YUVJ411P:
            return AV_PIX_FMT_YUV411P;
        default:
            fullRange = false;
            return static_cast<AVPixelFormat>(format);
    }
}

}  // namespace

FrameConverter::Shape FrameConverter::ShapeOf(const AVFrame& frame) {
    Shape shape{.width = frame.width, .height = frame.height};
    shape.format = Plain(frame.format, shape.fullRange);
    shape.fullRange = shape.fullRange || frame.color_range == AVCOL_RANGE_JPEG;
    shape.colours = frame.colorspace;
    // MJPEG is always of the old standard.
    if (frame.colorspace == AVCOL_SPC_UNSPECIFIED)
        shape.colours =
            !shape.fullRange && frame.height >= HighDefinitionHeight ? SWS_CS_ITU709 : SWS_CS_ITU601;
    return shape;
}

bool FrameConverter::Prepare(const Shape& shape) {
    if (scaler_ && shape == shape_) return true;
    scaler_.reset(sws_getContext(shape.width, shape.height, static_cast<AVPixelFormat>(shape.format),
                                 shape.width, shape.height, AV_PIX_FMT_BGR24, SWS_POINT, nullptr, nullptr,
                                 nullptr));
    if (!scaler_) return false;
    shape_ = shape;
    constexpr int Neutral = 1 << 16;
    // Fails for formats without such a matrix, which need none.
    sws_setColorspaceDetails(scaler_.get(), sws_getCoefficients(shape.colours), shape.fullRange,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, Neutral, Neutral);
    return true;
}

/// Fills rows that lie `stride` bytes apart, the bottom row first.
bool FrameConverter::Scale(const AVFrame& frame, std::uint8_t* rows, std::size_t stride) {
    const std::size_t top = stride * static_cast<std::size_t>(frame.height - 1);
    std::uint8_t* const planes[] = {rows + top, nullptr, nullptr, nullptr};
    const int strides[] = {-static_cast<int>(stride), 0, 0, 0};
    return sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) ==
           frame.height;
}

/// The same by way of rows with room behind each.
bool FrameConverter::ScaleBeside(const AVFrame& frame, std::span<std::uint8_t> rows, std::size_t stride) {
    const std::size_t roomy = (stride / RowRoom + 2) * RowRoom;
    beside_.resize(roomy * static_cast<std::size_t>(frame.height));
    if (!Scale(frame, beside_.data(), roomy)) return false;
    for (std::size_t y = 0; y < static_cast<std::size_t>(frame.height); ++y)
        std::copy_n(beside_.data() + y * roomy, static_cast<std::size_t>(frame.width) * 3,
                    rows.data() + y * stride);
    return true;
}

bool FrameConverter::Convert(const AVFrame& frame, FrameInbox& inbox) {
    if (!inbox.Accepts(frame.width, frame.height) || !Prepare(ShapeOf(frame))) return false;
    const std::span<std::uint8_t> rows = inbox.Begin({.width = frame.width, .height = frame.height});
    if (rows.empty()) return false;
    const std::size_t stride = rows.size() / static_cast<std::size_t>(frame.height);
    const bool direct = frame.width % SafeWidth == 0;
    if (direct ? !Scale(frame, rows.data(), stride) : !ScaleBeside(frame, rows, stride)) return false;
    inbox.Commit();
    return true;
}

}  // namespace tessaloom
