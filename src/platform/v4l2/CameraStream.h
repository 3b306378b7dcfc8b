#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/CaptureSource.h"
#include "platform/JpegCodec.h"
#include "platform/v4l2/Device.h"
#include "platform/v4l2/PixelFormat.h"

namespace tessaloom {

/// The streaming of one open camera: buffers shared with the device, the wait for pictures, their conversion.
/// Nothing that the device says about sizes is believed.
class CameraStream {
public:
    CameraStream(const Device& device, FrameInbox& inbox, JpegCodec& codec)
        : device_(device), inbox_(inbox), codec_(codec) {}
    ~CameraStream();
    CameraStream(const CameraStream&) = delete;
    CameraStream& operator=(const CameraStream&) = delete;

    /// Streams until the end; returns why it ended.
    std::string Run();

    /// `what` with the system's words for `errno`.
    static std::string Failure(std::string_view what);

private:
    using Reason = std::optional<std::string>;  ///< Nothing: all is well.

    Reason ChooseFormat();
    Reason ShareBuffers();
    Reason Start();
    Reason Wait();
    Reason TakeNewest();
    bool Arrived();
    Reason Convert(std::span<const std::uint8_t> picture);
    Reason ConvertRows(std::span<const std::uint8_t> picture);
    Reason ConvertJpeg(std::span<const std::uint8_t> picture);
    bool Queue(std::uint32_t index);

    const Device& device_;
    FrameInbox& inbox_;
    JpegCodec& codec_;
    const PixelFormat* format_ = nullptr;
    int width_ = 0;             ///< Pixels.
    int height_ = 0;            ///< Pixels.
    std::size_t rowBytes_ = 0;  ///< From one row of the camera's to the next.
    std::vector<std::span<std::uint8_t>> buffers_;
    std::chrono::steady_clock::time_point deadline_{};
};

}  // namespace tessaloom
