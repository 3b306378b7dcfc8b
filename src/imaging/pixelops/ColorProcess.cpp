#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/ColorModes.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom;
using namespace tessaloom::pixelops;

struct Bitmap {
    std::uint8_t* bits;
    int width, height;

    template <typename Change>
    void EachPixel(Change change) const {
        for (int y = 0; y < height; ++y) {
            std::uint8_t* pixel = RowAt(bits, width, y);
            for (int x = 0; x < width; ++x, pixel += 3) change(pixel);
        }
    }
};

/// What each value of a component becomes.
using Curve = std::array<std::uint8_t, 256>;

template <typename Function>
Curve MakeCurve(Function function) {
    Curve curve{};
    for (int v = 0; v < 256; ++v)
        curve[static_cast<std::size_t>(v)] =
            static_cast<std::uint8_t>(ClampToByte(static_cast<int>(std::lround(function(v)))));
    return curve;
}

void Apply(const Bitmap& bitmap, const Curve& blue, const Curve& green, const Curve& red) {
    bitmap.EachPixel([&](std::uint8_t* pixel) {
        pixel[0] = blue[pixel[0]];
        pixel[1] = green[pixel[1]];
        pixel[2] = red[pixel[2]];
    });
}

template <typename Function>
void ApplyAlike(const Bitmap& bitmap, Function function) {
    const Curve curve = MakeCurve(function);
    Apply(bitmap, curve, curve, curve);
}

/// Slope around middle grey.
void Contrast(const Bitmap& bitmap, double slope) {
    ApplyAlike(bitmap, [=](int v) { return 127.5 + (v - 127.5) * slope; });
}

void Gamma(const Bitmap& bitmap, double gamma) {
    ApplyAlike(bitmap, [=](int v) { return 255 * std::pow(v / 255.0, 1 / gamma); });
}

void Scale(const Bitmap& bitmap, double blueFactor, double redFactor) {
    Apply(bitmap, MakeCurve([=](int v) { return v * blueFactor; }),
          MakeCurve([](int v) { return double(v); }), MakeCurve([=](int v) { return v * redFactor; }));
}

/// Perceived lightness with the weights of ITU-R BT.601, in 256ths.
int Luma(const std::uint8_t* pixel) { return (29 * pixel[0] + 150 * pixel[1] + 77 * pixel[2] + 128) / 256; }

/// Distance of each component from the pixel's lightness, times `percent` / 100; 0 gives grey.
void Saturate(const Bitmap& bitmap, int percent) {
    bitmap.EachPixel([=](std::uint8_t* pixel) {
        const int luma = Luma(pixel);
        for (int c = 0; c < 3; ++c)
            pixel[c] =
                static_cast<std::uint8_t>(ClampToByte((luma * 100 + (pixel[c] - luma) * percent + 50) / 100));
    });
}

/// Spreads the values between the darkest and the lightest half percent over the whole range. All three
/// components alike, so that no hue shifts.
void AutoLevels(const Bitmap& bitmap) {
    std::array<std::int64_t, 256> counts{};
    bitmap.EachPixel([&](const std::uint8_t* pixel) {
        for (int c = 0; c < 3; ++c) ++counts[pixel[c]];
    });
    const std::int64_t ignored = std::int64_t{bitmap.width} * bitmap.height * 3 / 200;
    std::size_t low = 0, high = 255;
    for (std::int64_t below = counts[low]; below <= ignored && low < 255;) below += counts[++low];
    for (std::int64_t above = counts[high]; above <= ignored && high > 0;) above += counts[--high];
    if (high <= low) return;
    const double from = static_cast<double>(low), factor = 255.0 / static_cast<double>(high - low);
    ApplyAlike(bitmap, [=](int v) { return (v - from) * factor; });
}

/// Adds to each component what it differs from the mean of its four neighbours; edges repeat their pixels.
void Sharpen(const Bitmap& bitmap) {
    const std::size_t bytes = static_cast<std::size_t>(bitmap.width) * 3;
    const std::unique_ptr<std::uint8_t[]> rows(new (std::nothrow) std::uint8_t[bytes * 2]);
    if (!rows) return;
    std::uint8_t *below = rows.get(), *here = rows.get() + bytes;  // as they were before
    std::memcpy(below, bitmap.bits, bytes);
    for (int y = 0; y < bitmap.height; ++y) {
        std::uint8_t* row = RowAt(bitmap.bits, bitmap.width, y);
        std::memcpy(here, row, bytes);
        const std::uint8_t* above = y + 1 < bitmap.height ? RowAt(bitmap.bits, bitmap.width, y + 1) : here;
        for (std::size_t i = 0; i < bytes; ++i) {
            const int left = here[i < 3 ? i : i - 3], right = here[i + 3 < bytes ? i + 3 : i];
            const int eightfold = 8 * here[i] - left - right - below[i] - above[i];
            row[i] = static_cast<std::uint8_t>(ClampToByte((eightfold + 2) >> 2));
        }
        std::swap(below, here);
    }
}

// clang-format off
constexpr struct {
    ColorMode mode;
    void (*run)(const Bitmap&);
} Processes[] = {
    {ColorMode::Greyscale,       [](const Bitmap& b) { Saturate(b, 0); }},
    {ColorMode::Negative,        [](const Bitmap& b) { ApplyAlike(b, [](int v) { return 255.0 - v; }); }},
    {ColorMode::Brighter,        [](const Bitmap& b) { ApplyAlike(b, [](int v) { return v + 32.0; }); }},
    {ColorMode::Darker,          [](const Bitmap& b) { ApplyAlike(b, [](int v) { return v - 32.0; }); }},
    {ColorMode::MoreContrast,    [](const Bitmap& b) { Contrast(b, 1.25); }},
    {ColorMode::LessContrast,    [](const Bitmap& b) { Contrast(b, 0.8); }},
    {ColorMode::LighterMidtones, [](const Bitmap& b) { Gamma(b, 1.4); }},
    {ColorMode::DarkerMidtones,  [](const Bitmap& b) { Gamma(b, 1 / 1.4); }},
    {ColorMode::MoreSaturation,  [](const Bitmap& b) { Saturate(b, 140); }},
    {ColorMode::LessSaturation,  [](const Bitmap& b) { Saturate(b, 60); }},
    {ColorMode::Warmer,          [](const Bitmap& b) { Scale(b, 0.9, 1.1); }},
    {ColorMode::Cooler,          [](const Bitmap& b) { Scale(b, 1.1, 0.9); }},
    {ColorMode::AutoLevels,      AutoLevels},
    {ColorMode::Sharpen,         Sharpen},
    {ColorMode::SwapRedAndBlue,
     [](const Bitmap& b) { b.EachPixel([](std::uint8_t* pixel) { std::swap(pixel[0], pixel[2]); }); }},
};
// clang-format on

}  // namespace

int ColorProcess(uint8_t* Ptr, int Width, int Height, int Mode) {
    if (!Ptr || Width < 1 || Height < 1) return 0;
    for (const auto& [mode, run] : Processes)
        if (static_cast<int>(mode) == Mode) run({Ptr, Width, Height});
    return 0;
}
