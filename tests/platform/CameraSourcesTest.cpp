#include <linux/videodev2.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/v4l2/CameraSources.h"
#include "support/CaughtFrames.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {
namespace {

/// A camera that does what a test says.
struct ScriptedCamera {
    std::string card = "Webcam";
    std::uint32_t capabilities = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
    std::uint32_t code = V4L2_PIX_FMT_YUYV;
    std::uint32_t width = 4, height = 2, rowBytes = 0;
    std::string picture = {};    ///< The bytes of every picture.
    std::uint32_t claims = 0;    ///< Bytes that a picture is said to have, where that is a lie.
    int pictures = 1000;         ///< So many, then it is gone.
    int busyAt = 0;              ///< The request that fails because another program holds the camera.
    std::uint32_t returned = 0;  ///< Added to the number of the buffer that it gives back.
};

class Cameras : public ::testing::Test {
protected:
    static constexpr std::size_t BufferBytes = 4096;

    TemporaryFolder folder;
    std::vector<ScriptedCamera> cameras{1};
    CaughtFrames frames;
    std::array<std::array<std::uint8_t, BufferBytes>, 4> memory{};
    std::vector<std::uint32_t> queued;
    std::atomic<int> open = 0, mapped = 0;

    CameraSources Make() {
        for (std::size_t i = 0; i < cameras.size(); ++i) std::ofstream(Node(i));
        return CameraSources([] { return std::make_unique<TurboJpegCodec>(); }, Calls(), folder.Path());
    }
    std::string Node(std::size_t camera) const { return folder / ("video" + std::to_string(camera)); }

    /// The frame that one attempt gets from the only camera, or why there was none.
    std::string Told(CaptureSource& source) {
        queued.clear();
        frames.Start(source);
        const bool came = frames.Wait(1);
        if (came) frames.End();
        const std::string reason = came ? "" : frames.Reason();
        frames.End();
        EXPECT_EQ(open, 0);
        EXPECT_EQ(mapped, 0);
        return reason;
    }

private:
    DeviceCalls Calls() {
        DeviceCalls calls;
        calls.open = [this](const char* path, int) {
            if (!std::filesystem::exists(path)) return errno = ENOENT, -1;
            ++open;
            return std::atoi(path + std::strlen(path) - 1);
        };
        calls.close = [this](int) { return --open, 0; };
        calls.ioctl = [this](int handle, unsigned long request, void* argument) {
            return Answer(cameras.at(static_cast<std::size_t>(handle)), request, argument);
        };
        calls.poll = [this](pollfd* handle, int) {
            const ScriptedCamera& camera = cameras.at(static_cast<std::size_t>(handle->fd));
            handle->revents = camera.pictures > 0 ? POLLIN : POLLERR;
            return 1;
        };
        calls.map = [this](std::size_t, int, std::int64_t offset) -> void* {
            ++mapped;
            return memory.at(static_cast<std::size_t>(offset)).data();
        };
        calls.unmap = [this](void*, std::size_t) { return --mapped, 0; };
        return calls;
    }

    int Answer(ScriptedCamera& camera, unsigned long request, void* argument) {
        if (request == static_cast<unsigned long>(camera.busyAt)) return errno = EBUSY, -1;
        auto& buffer = *static_cast<v4l2_buffer*>(argument);
        switch (request) {
            case VIDIOC_QUERYCAP: {
                auto& told = *static_cast<v4l2_capability*>(argument);
                std::copy_n(camera.card.data(), camera.card.size(), told.card);
                told.capabilities = camera.capabilities;
                return 0;
            }
            case VIDIOC_G_FMT: {
                auto& shape = static_cast<v4l2_format*>(argument)->fmt.pix;
                shape.pixelformat = camera.code;
                shape.width = camera.width;
                shape.height = camera.height;
                shape.bytesperline = camera.rowBytes;
                return 0;
            }
            case VIDIOC_QUERYBUF:
                buffer.length = BufferBytes;
                buffer.m.offset = buffer.index;
                return 0;
            case VIDIOC_QBUF:
                queued.push_back(buffer.index);
                return 0;
            case VIDIOC_DQBUF: {
                if (queued.empty() || camera.pictures <= 0) return errno = EAGAIN, -1;
                --camera.pictures;
                auto& bytes = memory.at(queued.front());
                std::ranges::copy(camera.picture, bytes.begin());
                buffer.index = queued.front() + camera.returned;
                buffer.bytesused =
                    camera.claims ? camera.claims : static_cast<std::uint32_t>(camera.picture.size());
                queued.erase(queued.begin());
                return 0;
            }
            default:  // S_FMT keeps what was asked for
                return request == VIDIOC_S_FMT && camera.code == 0 ? (errno = EINVAL, -1) : 0;
        }
    }
};

std::string Repeated(std::string_view bytes, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += bytes;
    return all;
}

std::string RedJpeg(int width, int height) {
    TurboJpegCodec codec;
    const int stride = (width * 3 + 3) & ~3;
    const std::string pixels = Repeated(std::string("\0\0\xFF", 3), stride * height / 3 + 1);
    std::vector<std::uint8_t> buffer;
    const auto file =
        codec.Encode(reinterpret_cast<const std::uint8_t*>(pixels.data()), width, height, stride, 90, buffer);
    return {file.begin(), file.end()};
}

TEST_F(Cameras, EveryFormatBecomesThePictureThatItIs) {
    struct Case {
        const char* name;
        std::uint32_t code, width, height, rowBytes;
        std::string picture;
        int color;  ///< Of the top left pixel; the bottom one is black in two rows.
    };
    const std::string red = {81, 90, 81, char(240)}, black = {16, char(128), 16, char(128)};
    const std::string redFirst = {90, 81, char(240), 81}, blackFirst = {char(128), 16, char(128), 16};
    const std::string rgb555Red = {0, 0x7C}, none = std::string(12, '\0');
    const std::string odd = "xxxx";  // what a row has behind its pixels
    // clang-format off
    const Case cases[] = {
        {"pairs",        V4L2_PIX_FMT_YUYV,  4, 2, 0, Repeated(red, 2) + Repeated(black, 2),           0xFE0000},
        {"long rows",    V4L2_PIX_FMT_YUYV,  2, 2, 8, red + odd + black,                               0xFE0000},
        {"colour first", V4L2_PIX_FMT_UYVY,  4, 2, 0, Repeated(redFirst, 2) + Repeated(blackFirst, 2), 0xFE0000},
        {"blue first",   V4L2_PIX_FMT_BGR24, 4, 2, 0, Repeated({"\1\2\3", 3}, 4) + none,               0x030201},
        {"red first",    V4L2_PIX_FMT_RGB24, 4, 2, 0, Repeated({"\3\2\1", 3}, 4) + none,               0x030201},
        {"JPEG",         V4L2_PIX_FMT_MJPEG, 4, 2, 0, RedJpeg(16, 8),                                  0xFE0000},
    };
    // clang-format on
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        cameras[0] = {
            "Webcam",   ScriptedCamera().capabilities, row.code, row.width, row.height, row.rowBytes,
            row.picture};
        EXPECT_EQ(Told(*Make().Make("Webcam")), "");
        const auto frame = frames.Last();
        EXPECT_EQ(frame.Pixel(0, 0) & 0xFEFEFF, row.color & 0xFEFEFF);
        EXPECT_EQ(frame.Pixel(0, 1), row.code == V4L2_PIX_FMT_MJPEG ? frame.Pixel(0, 0) : 0);
    }
    cameras[0] = {.code = V4L2_PIX_FMT_RGB555, .width = 3, .height = 1, .picture = Repeated(rgb555Red, 3)};
    EXPECT_EQ(Told(*Make().Make("Webcam")), "");
    EXPECT_EQ(frames.Last().format.bitCount, 16);
    EXPECT_EQ(frames.Last().rows, (std::vector<std::uint8_t>{0, 0x7C, 0, 0x7C, 0, 0x7C, 0, 0}));
}

TEST_F(Cameras, WhatGoesWrongIsSurvivedAndTold) {
    const std::string picture(16, '\x10');
    const auto start = static_cast<int>(VIDIOC_STREAMON);
    // clang-format off
    const std::pair<ScriptedCamera, std::string> cases[] = {
        {{.picture = picture, .pictures = 0},                             "the camera is gone"},
        {{.picture = picture.substr(1), .pictures = 9},                   "the camera is gone"},
        {{.picture = picture, .claims = 1u << 30},                        ""},
        {{.width = 400, .height = 400, .claims = 1u << 30, .pictures = 9}, "the camera is gone"},
        {{.width = 20000},                                                "its pictures cannot be used"},
        {{.width = 0},                                                    "its pictures cannot be used"},
        {{.picture = picture, .returned = 7},                             "it misstates its buffers"},
        {{.code = V4L2_PIX_FMT_MJPEG, .picture = picture, .pictures = 9}, "the camera is gone"},
        {{.code = 0},                                                     "it delivers pictures in no known format"},
        {{.busyAt = start},                                               "it does not start: Device or resource busy"},
    };
    // clang-format on
    for (const auto& [camera, reason] : cases) {
        SCOPED_TRACE(reason);
        cameras[0] = camera;
        EXPECT_EQ(Told(*Make().Make("Webcam")), reason);
    }
}

TEST_F(Cameras, AreFoundAgainByTheirLastingNames) {
    // The second node is no camera; the other two are equal, and listed by their lasting names.
    cameras = {{}, {.capabilities = V4L2_CAP_VIDEO_OUTPUT}, {}};
    CameraSources sources = Make();
    std::filesystem::create_directories(folder / "v4l/by-id");
    const auto link = [&](const char* name, std::size_t camera) {
        std::filesystem::remove(folder / name);
        std::filesystem::create_symlink(Node(camera), folder / name);
    };
    link("v4l/by-id/usb-B", 0);
    link("v4l/by-id/usb-A", 2);
    EXPECT_EQ(sources.List(), (std::vector<std::string>{"Webcam", "Webcam"}));

    cameras[0].picture = std::string(16, '\x50');
    cameras[2].picture = std::string(16, '\x20');
    const auto source = sources.Make("(1) Webcam");
    EXPECT_EQ(Told(*source), "");
    const int color = frames.Last().Pixel(0, 0);

    // Plugged in anew, it got the other number.
    std::swap(cameras[0].picture, cameras[2].picture);
    link("v4l/by-id/usb-A", 0);
    link("v4l/by-id/usb-B", 2);
    EXPECT_EQ(Told(*source), "");
    EXPECT_EQ(frames.Last().Pixel(0, 0), color);

    std::filesystem::remove(folder / "v4l/by-id/usb-A");
    EXPECT_EQ(Told(*source), "no camera or file of that name is there");
    EXPECT_EQ(Told(*sources.Make("Microscope")), "no camera or file of that name is there");
}

}  // namespace
}  // namespace tessaloom::testing
