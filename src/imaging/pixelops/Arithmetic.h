#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

/// The rounding that all pixel operations share, and the layout of their bitmaps.
namespace tessaloom::pixelops {

/// [value / 255] for 0 .. 65025: the nearest whole number; an odd divisor knows no ties.
constexpr int By255(int value) { return (value + 128 + ((value + 128) >> 8)) >> 8; }

constexpr int ClampToByte(int value) { return std::clamp(value, 0, 255); }

constexpr int Red(int colour) { return colour & 0xFF; }
constexpr int Green(int colour) { return (colour >> 8) & 0xFF; }
constexpr int Blue(int colour) { return (colour >> 16) & 0xFF; }

/// Bytes from one row to the next.
constexpr std::ptrdiff_t RowBytes(int width) { return (std::ptrdiff_t{width} * 3 + 3) & ~std::ptrdiff_t{3}; }

/// Row `y`, counted from the bottom.
inline std::uint8_t* RowAt(std::uint8_t* bits, int width, int y) { return bits + y * RowBytes(width); }
inline const std::uint8_t* RowAt(const std::uint8_t* bits, int width, int y) {
    return bits + y * RowBytes(width);
}

/// How far it is to the next address that `size` divides.
inline std::size_t ToMultiple(const std::uint8_t* at, std::size_t size) {
    return static_cast<std::size_t>(-reinterpret_cast<std::uintptr_t>(at) % size);
}

/// The part of a source placed at (x, y) that lies on the destination.
struct Overlap {
    int destX = 0, destY = 0;
    int sourceX = 0, sourceY = 0;
    int width = 0, height = 0;  ///< Below 1 when nothing does.
};

constexpr Overlap Clip(int destWidth, int destHeight, int sourceWidth, int sourceHeight, int x, int y) {
    struct Span {
        int dest, source, length;
    };
    // 64 bits, as position plus size may exceed 32.
    auto clip = [](std::int64_t dest, std::int64_t source, std::int64_t at) {
        const std::int64_t from = std::max<std::int64_t>(at, 0);
        const std::int64_t to = std::min(at + source, dest);
        if (to <= from) return Span{0, 0, 0};
        return Span{static_cast<int>(from), static_cast<int>(from - at), static_cast<int>(to - from)};
    };
    const Span across = clip(destWidth, sourceWidth, x), up = clip(destHeight, sourceHeight, y);
    return {across.dest, up.dest, across.source, up.source, across.length, up.length};
}

}  // namespace tessaloom::pixelops
