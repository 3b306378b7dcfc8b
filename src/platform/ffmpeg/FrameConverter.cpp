#include "platform/ffmpeg/FrameConverter.h"

namespace tessaloom {

namespace {

/// Pictures at least that large follow the standard of high definition where they do not say.
constexpr int HighDefinitionHeight = 720;  // pixels

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

bool FrameConverter::Convert(const AVFrame& frame, FrameInbox& inbox) {
    if (!inbox.Accepts(frame.width, frame.height) || !Prepare(ShapeOf(frame))) return false;
    const std::span<std::uint8_t> rows = inbox.Begin({.width = frame.width, .height = frame.height});
    if (rows.empty()) return false;
    const int stride = static_cast<int>(rows.size()) / frame.height;
    std::uint8_t* const planes[] = {rows.data() + rows.size() - static_cast<std::size_t>(stride), nullptr,
                                    nullptr, nullptr};
    const int strides[] = {-stride, 0, 0, 0};
    if (sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) !=
        frame.height)
        return false;
    inbox.Commit();
    return true;
}

}  // namespace tessaloom
