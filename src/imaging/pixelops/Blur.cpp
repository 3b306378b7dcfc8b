#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom::pixelops;

constexpr int MaximumRadius = 3;

/// Columns that are worked on together, so that their sums fit on the stack.
constexpr int StripWidth = 256;

struct Frame {
    const std::uint8_t* source;
    std::uint8_t* dest;
    int width, height, radius;
};

/// Blurs the columns from `left` to `left` + `width`, by running sums down the columns and along the row.
void BlurStrip(const Frame& frame, int left, int width) {
    const int radius = frame.radius, side = 2 * radius + 1, area = side * side;
    int sums[(StripWidth + 2 * MaximumRadius) * 3] =
        {};  // of the columns left - radius .. left + width + radius
    auto addRow = [&](int y, int sign) {
        const std::uint8_t* row = RowAt(frame.source, frame.width, std::clamp(y, 0, frame.height - 1));
        for (int i = 0; i < width + 2 * radius; ++i) {
            const std::uint8_t* pixel =
                row + std::clamp(left - radius + i, 0, frame.width - 1) * std::ptrdiff_t{3};
            for (int c = 0; c < 3; ++c) sums[i * 3 + c] += sign * pixel[c];
        }
    };
    for (int y = -radius; y < radius; ++y) addRow(y, 1);
    for (int y = 0; y < frame.height; ++y) {
        addRow(y + radius, 1);
        std::uint8_t* out = RowAt(frame.dest, frame.width, y) + left * std::ptrdiff_t{3};
        for (int c = 0; c < 3; ++c) {
            int sum = 0;
            for (int i = 0; i < side - 1; ++i) sum += sums[i * 3 + c];
            for (int x = 0; x < width; ++x) {
                sum += sums[(x + side - 1) * 3 + c];
                out[x * 3 + c] = static_cast<std::uint8_t>((sum + area / 2) / area);
                sum -= sums[x * 3 + c];
            }
        }
        addRow(y - radius, -1);
    }
}

}  // namespace

int Blur(const uint8_t* SourcePtr, uint8_t* DestPtr, int Height, int Width, int Level) {
    if (!SourcePtr || !DestPtr || Width < 1 || Height < 1) return 0;
    if (Level < 1) {
        for (int y = 0; y < Height; ++y)
            std::memcpy(RowAt(DestPtr, Width, y), RowAt(SourcePtr, Width, y),
                        static_cast<std::size_t>(Width) * 3);
        return 0;
    }
    const Frame frame{SourcePtr, DestPtr, Width, Height, std::min(Level, MaximumRadius)};
    for (int left = 0; left < Width; left += StripWidth)
        BlurStrip(frame, left, std::min(StripWidth, Width - left));
    return 0;
}
