#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/ColorModes.h"
#include "imaging/pixelops/ColorRows.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom;
using namespace tessaloom::pixelops;

struct Bitmap {
    std::uint8_t* bits;
    int width, height;

    std::size_t Pixels() const { return static_cast<std::size_t>(width); }
    std::size_t RowBytes() const { return Pixels() * 3; }  ///< Without what pads it.

    template <typename Change>
    void EachRow(Change change) const {
        for (int y = 0; y < height; ++y) change(RowAt(bits, width, y));
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

template <typename Function>
void Apply(const Bitmap& bitmap, Function function) {
    const Curve curve = MakeCurve(function);
    bitmap.EachRow([&](std::uint8_t* row) { MapRow(row, curve.data(), bitmap.RowBytes()); });
}

void Negative(const Bitmap& bitmap) {
    bitmap.EachRow([&](std::uint8_t* row) { InvertRow(row, bitmap.RowBytes()); });
}

void Brighten(const Bitmap& bitmap, int amount) {
    bitmap.EachRow([&](std::uint8_t* row) { BrightenRow(row, amount, bitmap.RowBytes()); });
}

/// Slope around middle grey.
void Contrast(const Bitmap& bitmap, double slope) {
    Apply(bitmap, [=](int v) { return 127.5 + (v - 127.5) * slope; });
}

void Gamma(const Bitmap& bitmap, double gamma) {
    Apply(bitmap, [=](int v) { return 255 * std::pow(v / 255.0, 1 / gamma); });
}

void Scale(const Bitmap& bitmap, double blueFactor, double redFactor) {
    const Curve blue = MakeCurve([=](int v) { return v * blueFactor; }),
                red = MakeCurve([=](int v) { return v * redFactor; });
    bitmap.EachRow([&](std::uint8_t* row) { MapPixels(row, blue.data(), red.data(), bitmap.Pixels()); });
}

void Grey(const Bitmap& bitmap) {
    bitmap.EachRow([&](std::uint8_t* row) { GreyRow(row, bitmap.Pixels()); });
}

void Swap(const Bitmap& bitmap) {
    bitmap.EachRow([&](std::uint8_t* row) { SwapRow(row, bitmap.Pixels()); });
}

void Saturate(const Bitmap& bitmap, int fifths) {
    bitmap.EachRow([&](std::uint8_t* row) { SaturateRow(row, fifths, bitmap.Pixels()); });
}

/// How often each value occurs. It is kept in parts, as a counter cannot be raised again before it has
/// reached the memory.
struct Counts {
    std::uint32_t parts[4][256] = {};

    std::int64_t operator[](int value) const {
        return std::int64_t{parts[0][value]} + parts[1][value] + parts[2][value] + parts[3][value];
    }

    void Add(const std::uint8_t* row, std::size_t count) {
        std::size_t i = 0;
        for (std::uint64_t eight; i + sizeof eight <= count; i += sizeof eight) {
            std::memcpy(&eight, row + i, sizeof eight);
            for (int k = 0; k < 8; ++k) ++parts[k % 4][eight >> (8 * k) & 0xFF];
        }
        for (; i < count; ++i) ++parts[0][row[i]];
    }
};

/// Spreads the values between the darkest and the lightest half percent over the whole range. All three
/// components alike, so that no hue shifts.
void AutoLevels(const Bitmap& bitmap) {
    Counts counts;
    bitmap.EachRow([&](const std::uint8_t* row) { counts.Add(row, bitmap.RowBytes()); });
    const std::int64_t ignored = std::int64_t{bitmap.width} * bitmap.height * 3 / 200;
    int low = 0, high = 255;
    for (std::int64_t below = counts[low]; below <= ignored && low < 255;) below += counts[++low];
    for (std::int64_t above = counts[high]; above <= ignored && high > 0;) above += counts[--high];
    if (high <= low || high - low == 255) return;
    const double factor = 255.0 / (high - low);
    Apply(bitmap, [=](int v) { return (v - low) * factor; });
}

/// Edges repeat their pixels.
void Sharpen(const Bitmap& bitmap) {
    // Two rows as they were before, with a pixel more on either side.
    const std::size_t bytes = bitmap.RowBytes(), padded = bytes + 6;
    const std::unique_ptr<std::uint8_t[]> rows(new (std::nothrow) std::uint8_t[padded * 2]);
    if (!rows) return;
    std::uint8_t *below = rows.get() + 3, *here = below + padded;
    std::memcpy(below, bitmap.bits, bytes);
    for (int y = 0; y < bitmap.height; ++y) {
        std::uint8_t* row = RowAt(bitmap.bits, bitmap.width, y);
        std::memcpy(here, row, bytes);
        std::memcpy(here - 3, row, 3);
        std::memcpy(here + bytes, row + bytes - 3, 3);
        const std::uint8_t* above = y + 1 < bitmap.height ? RowAt(bitmap.bits, bitmap.width, y + 1) : here;
        SharpenRow(row, here, below, above, bytes);
        std::swap(below, here);
    }
}

// clang-format off
constexpr struct {
    ColorMode mode;
    void (*run)(const Bitmap&);
} Processes[] = {
    {ColorMode::Greyscale,       Grey},
    {ColorMode::Negative,        Negative},
    {ColorMode::Brighter,        [](const Bitmap& b) { Brighten(b, 32); }},
    {ColorMode::Darker,          [](const Bitmap& b) { Brighten(b, -32); }},
    {ColorMode::MoreContrast,    [](const Bitmap& b) { Contrast(b, 1.25); }},
    {ColorMode::LessContrast,    [](const Bitmap& b) { Contrast(b, 0.8); }},
    {ColorMode::LighterMidtones, [](const Bitmap& b) { Gamma(b, 1.4); }},
    {ColorMode::DarkerMidtones,  [](const Bitmap& b) { Gamma(b, 1 / 1.4); }},
    {ColorMode::MoreSaturation,  [](const Bitmap& b) { Saturate(b, 7); }},
    {ColorMode::LessSaturation,  [](const Bitmap& b) { Saturate(b, 3); }},
    {ColorMode::Warmer,          [](const Bitmap& b) { Scale(b, 0.9, 1.1); }},
    {ColorMode::Cooler,          [](const Bitmap& b) { Scale(b, 1.1, 0.9); }},
    {ColorMode::AutoLevels,      AutoLevels},
    {ColorMode::Sharpen,         Sharpen},
    {ColorMode::SwapRedAndBlue,  Swap},
};
// clang-format on

}  // namespace

int ColorProcess(uint8_t* Ptr, int Width, int Height, int Mode) {
    if (!Ptr || Width < 1 || Height < 1) return 0;
    for (const auto& [mode, run] : Processes)
        if (static_cast<int>(mode) == Mode) run({Ptr, Width, Height});
    return 0;
}
