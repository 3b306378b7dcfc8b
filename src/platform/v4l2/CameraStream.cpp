#include "platform/v4l2/CameraStream.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace tessaloom {

namespace {

using Clock = std::chrono::steady_clock;

/// One is filled while another is converted; two more bridge a late turn of this thread.
constexpr std::uint32_t Buffers = 4;

/// How long a camera may take until its next picture.
constexpr std::chrono::seconds Patience{5};

/// How often the wait looks whether it is to end.
constexpr int PollMilliseconds = 100;

/// What a camera is asked for that delivers in no format known here.
constexpr std::uint32_t UsualWidth = 640, UsualHeight = 480;

v4l2_buffer EmptyBuffer(std::uint32_t index = 0) {
    v4l2_buffer buffer{};
    buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    buffer.memory = V4L2_MEMORY_MMAP;
    buffer.index = index;
    return buffer;
}

}  // namespace

std::string CameraStream::Failure(std::string_view what) {
    return std::string(what) + ": " + std::generic_category().message(errno);
}

CameraStream::~CameraStream() {
    if (buffers_.empty()) return;
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    device_.Do(VIDIOC_STREAMOFF, &type);
    for (const std::span<std::uint8_t> buffer : buffers_)
        if (!buffer.empty()) device_.Calls().unmap(buffer.data(), buffer.size());
}

std::string CameraStream::Run() {
    for (const auto step : {&CameraStream::ChooseFormat, &CameraStream::ShareBuffers, &CameraStream::Start})
        if (const Reason reason = (this->*step)()) return *reason;
    deadline_ = Clock::now() + Patience;
    while (!inbox_.Stopped())
        if (const Reason reason = Wait()) return *reason;
    return "closed";
}

CameraStream::Reason CameraStream::ChooseFormat() {
    v4l2_format shape{};
    shape.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (!device_.Do(VIDIOC_G_FMT, &shape)) return Failure("it tells no format");
    format_ = PixelFormat::Of(shape.fmt.pix.pixelformat);
    for (const PixelFormat& wanted : PixelFormat::All()) {
        if (format_) break;
        shape = {};
        shape.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        shape.fmt.pix.width = UsualWidth;
        shape.fmt.pix.height = UsualHeight;
        shape.fmt.pix.pixelformat = wanted.code;
        // The device may choose another format than the one asked for.
        if (device_.Do(VIDIOC_S_FMT, &shape)) format_ = PixelFormat::Of(shape.fmt.pix.pixelformat);
    }
    if (!format_) return "it delivers pictures in no known format";
    const v4l2_pix_format& pixels = shape.fmt.pix;
    const auto side = [](std::uint32_t value) {
        return static_cast<int>(std::min<std::uint32_t>(value, CaptureFormat::MaxSide + 1));
    };
    width_ = side(pixels.width);
    height_ = side(pixels.height);
    if (format_->bytesPerPixel == 0) return std::nullopt;
    if (!inbox_.Accepts(width_, height_)) return "its pictures cannot be used";
    const auto shortest = static_cast<std::size_t>(width_) * static_cast<std::size_t>(format_->bytesPerPixel);
    rowBytes_ = std::max<std::size_t>(pixels.bytesperline, shortest);
    return std::nullopt;
}

CameraStream::Reason CameraStream::ShareBuffers() {
    v4l2_requestbuffers request{};
    request.count = Buffers;
    request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    request.memory = V4L2_MEMORY_MMAP;
    if (!device_.Do(VIDIOC_REQBUFS, &request)) return Failure("it shares no buffers");
    if (request.count == 0) return "it shares no buffers";
    for (std::uint32_t index = 0; index < std::min(request.count, Buffers); ++index) {
        v4l2_buffer buffer = EmptyBuffer(index);
        if (!device_.Do(VIDIOC_QUERYBUF, &buffer)) return Failure("it shares no buffers");
        void* const memory = device_.Calls().map(buffer.length, device_.Handle(), buffer.m.offset);
        if (!memory) return Failure("it shares no buffers");
        buffers_.emplace_back(static_cast<std::uint8_t*>(memory), buffer.length);
    }
    return std::nullopt;
}

CameraStream::Reason CameraStream::Start() {
    for (std::uint32_t index = 0; index < buffers_.size(); ++index)
        if (!Queue(index)) return Failure("it takes no buffers");
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (!device_.Do(VIDIOC_STREAMON, &type)) return Failure("it does not start");
    return std::nullopt;
}

CameraStream::Reason CameraStream::Wait() {
    pollfd handle{device_.Handle(), POLLIN, 0};
    const int ready = device_.Calls().poll(&handle, PollMilliseconds);
    if (ready < 0 && errno != EINTR) return Failure("it cannot be waited for");
    if (Clock::now() > deadline_) return "nothing came in time";
    if (ready <= 0) return std::nullopt;
    if (handle.revents & POLLIN) return TakeNewest();
    return "the camera is gone";
}

/// Takes all pictures that are there, and hands over the last of them.
CameraStream::Reason CameraStream::TakeNewest() {
    std::optional<v4l2_buffer> newest;
    for (std::size_t taken = 0; taken < buffers_.size(); ++taken) {
        v4l2_buffer buffer = EmptyBuffer();
        if (!device_.Do(VIDIOC_DQBUF, &buffer)) {
            if (errno == EAGAIN) break;
            return Failure("the camera is gone");
        }
        if (buffer.index >= buffers_.size()) return "it misstates its buffers";
        if (newest && !Queue(newest->index)) return Failure("it takes no buffers");
        newest = buffer;
    }
    if (!newest) return std::nullopt;
    Reason reason;
    const std::span<const std::uint8_t> memory = buffers_[newest->index];
    if (!(newest->flags & V4L2_BUF_FLAG_ERROR) && newest->bytesused > 0)
        reason = Convert(memory.first(std::min<std::size_t>(newest->bytesused, memory.size())));
    if (!reason && !Queue(newest->index)) return Failure("it takes no buffers");
    return reason;
}

/// A sound picture has come. True: somebody wants it.
bool CameraStream::Arrived() {
    deadline_ = Clock::now() + Patience;
    return inbox_.Arrived();
}

CameraStream::Reason CameraStream::Convert(std::span<const std::uint8_t> picture) {
    if (format_->bytesPerPixel == 0) return ConvertJpeg(picture);
    const auto rows = static_cast<std::size_t>(height_);
    const std::size_t lastRow =
        static_cast<std::size_t>(width_) * static_cast<std::size_t>(format_->bytesPerPixel);
    // A picture cut short is none.
    if (picture.size() < rowBytes_ * (rows - 1) + lastRow || !Arrived()) return std::nullopt;
    return ConvertRows(picture);
}

CameraStream::Reason CameraStream::ConvertRows(std::span<const std::uint8_t> picture) {
    const std::span<std::uint8_t> rows =
        inbox_.Begin({.width = width_, .height = height_, .bitCount = format_->bitCount});
    if (rows.empty()) return "its pictures cannot be used";
    const std::size_t stride = rows.size() / static_cast<std::size_t>(height_);
    const auto height = static_cast<std::size_t>(height_);
    for (std::size_t y = 0; y < height; ++y)
        format_->convert(rows.data() + (height - 1 - y) * stride, picture.data() + y * rowBytes_, width_);
    inbox_.Commit();
    return std::nullopt;
}

/// The size is that of the picture itself. A damaged one is skipped.
CameraStream::Reason CameraStream::ConvertJpeg(std::span<const std::uint8_t> picture) {
    JpegHeader header;
    if (codec_.ReadHeader(picture, header) != JpegResult::Ok || !Arrived()) return std::nullopt;
    const std::span<std::uint8_t> rows = inbox_.Begin({.width = header.width, .height = header.height});
    if (rows.empty()) return "its pictures cannot be used";
    const int stride = static_cast<int>(rows.size()) / header.height;
    if (codec_.Decode(picture, header, rows.data(), stride) == JpegResult::Ok) inbox_.Commit();
    return std::nullopt;
}

/// Gives a buffer to the device to fill.
bool CameraStream::Queue(std::uint32_t index) {
    v4l2_buffer buffer = EmptyBuffer(index);
    return device_.Do(VIDIOC_QBUF, &buffer);
}

}  // namespace tessaloom
