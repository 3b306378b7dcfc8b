#include "platform/v4l2/PixelFormat.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <cstring>

namespace tessaloom {

namespace {

std::uint8_t Limited(int value) { return static_cast<std::uint8_t>(std::clamp(value, 0, 255)); }

/// ITU-R BT.601: luminance 16 .. 235, colour differences 16 .. 240, in units of 1/256.
struct Chroma {
    int blue, green, red;

    Chroma(int u, int v)
        : blue(516 * (u - 128)), green(-100 * (u - 128) - 208 * (v - 128)), red(409 * (v - 128)) {}

    void Put(std::uint8_t* pixel, int y) const {
        const int luminance = 298 * (y - 16) + 128;
        pixel[0] = Limited((luminance + blue) >> 8);
        pixel[1] = Limited((luminance + green) >> 8);
        pixel[2] = Limited((luminance + red) >> 8);
    }
};

/// Two pixels share their colour; in the bytes of a pair, Y is where luminance starts, C where colour does.
template <int Y, int C>
void FromPairs(std::uint8_t* to, const std::uint8_t* from, int width) {
    int x = 0;
    for (; x + 1 < width; x += 2, from += 4, to += 6) {
        const Chroma chroma(from[C], from[C + 2]);
        chroma.Put(to, from[Y]);
        chroma.Put(to + 3, from[Y + 2]);
    }
    // Half of the last pair of an odd row is missing: its colour is that of the pair before.
    if (x < width) (x > 0 ? Chroma(from[C - 4], from[C - 2]) : Chroma(128, 128)).Put(to, from[Y]);
}

void FromBgr(std::uint8_t* to, const std::uint8_t* from, int width) {
    std::memcpy(to, from, static_cast<std::size_t>(width) * 3);
}

void FromRgb(std::uint8_t* to, const std::uint8_t* from, int width) {
    for (int x = 0; x < width; ++x, to += 3, from += 3) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
    }
}

void From555(std::uint8_t* to, const std::uint8_t* from, int width) {
    std::memcpy(to, from, static_cast<std::size_t>(width) * 2);
}

// clang-format off
constexpr PixelFormat Formats[] = {
    {V4L2_PIX_FMT_YUYV,    2, 24, &FromPairs<0, 1>},
    {V4L2_PIX_FMT_MJPEG,   0, 24, nullptr},
    {V4L2_PIX_FMT_UYVY,    2, 24, &FromPairs<1, 0>},
    {V4L2_PIX_FMT_BGR24,   3, 24, &FromBgr},
    {V4L2_PIX_FMT_RGB24,   3, 24, &FromRgb},
    {V4L2_PIX_FMT_RGB555,  2, 16, &From555},
    {V4L2_PIX_FMT_XRGB555, 2, 16, &From555},
    {V4L2_PIX_FMT_JPEG,    0, 24, nullptr},
};
// clang-format on

}  // namespace

std::span<const PixelFormat> PixelFormat::All() { return Formats; }

const PixelFormat* PixelFormat::Of(std::uint32_t code) {
    const auto* found = std::ranges::find(Formats, code, &PixelFormat::code);
    return found == std::end(Formats) ? nullptr : found;
}

}  // namespace tessaloom
