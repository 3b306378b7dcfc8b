#include <cmath>
#include <cstdlib>
#include <numbers>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/SampleRows.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom::pixelops;

struct Canvas {
    std::uint8_t* bits;
    int width, height;
};
struct Picture {
    const std::uint8_t* bits;
    int width, height;
};

/// Beyond this a position would not fit in 64 bits with its 32 bits of fraction.
constexpr int MaximumSide = 1 << 24;

/// Radians, -pi .. pi. The shear X gives the angle with full precision all around, except at a half turn.
double AngleOf(int degrees, int shearX, int shearY) {
    if (degrees % 180 == 0 && degrees % 360 != 0 && std::abs(std::int64_t{shearY}) <= 1)
        return std::numbers::pi;
    return 2 * std::atan2(-static_cast<double>(shearX), 65536.0);
}

void QuarterTurns(const Canvas& dest, const Picture& source, int quarters) {
    const bool upright = quarters % 2 == 0;
    const int width = upright ? source.width : source.height, height = upright ? source.height : source.width;
    const int left = static_cast<int>(std::floor((dest.width - width) / 2.0));
    const int bottom = static_cast<int>(std::floor((dest.height - height) / 2.0));
    const Overlap area = Clip(dest.width, dest.height, width, height, left, bottom);
    for (int row = 0; row < area.height; ++row) {
        std::uint8_t* to = RowAt(dest.bits, dest.width, area.destY + row) + area.destX * std::ptrdiff_t{3};
        const int y = area.sourceY + row;
        for (int column = 0; column < area.width; ++column, to += 3) {
            const int x = area.sourceX + column;
            const int sourceX[] = {x, y, width - 1 - x, height - 1 - y};
            const int sourceY[] = {y, width - 1 - x, height - 1 - y, x};
            const std::uint8_t* from =
                RowAt(source.bits, source.width, sourceY[quarters]) + sourceX[quarters] * std::ptrdiff_t{3};
            std::copy_n(from, 3, to);
        }
    }
}

/// Pixels of the destination that are worked on together.
constexpr int TileWidth = 32, TileHeight = 16;

std::int64_t ToFixed(double pixels) { return std::llround(pixels * 4294967296.0); }

/// Mixes the source at `at` over the pixel `to`; the weights are in 256ths on each axis.
void Sample(std::uint8_t* to, const Picture& source, Position at) {
    const std::int64_t left = at.x >> 32, bottom = at.y >> 32;
    if (left < -1 || left >= source.width || bottom < -1 || bottom >= source.height) return;
    const int rightWeight = static_cast<int>(at.x >> 24 & 0xFF),
              topWeight = static_cast<int>(at.y >> 24 & 0xFF);
    int covered = 0, sums[3] = {};
    for (int i = 0; i < 4; ++i) {
        const std::int64_t x = left + (i & 1), y = bottom + (i >> 1);
        if (x < 0 || x >= source.width || y < 0 || y >= source.height) continue;
        const int weight =
            ((i & 1) ? rightWeight : 256 - rightWeight) * ((i >> 1) ? topWeight : 256 - topWeight);
        const std::uint8_t* pixel = RowAt(source.bits, source.width, static_cast<int>(y)) + x * 3;
        covered += weight;
        for (int c = 0; c < 3; ++c) sums[c] += weight * pixel[c];
    }
    for (int c = 0; c < 3; ++c)
        to[c] = static_cast<std::uint8_t>((sums[c] + (65536 - covered) * to[c] + 32768) >> 16);
}

/// Whole pixels below a position.
std::int64_t Floor(std::int64_t position) { return position >> 32; }

/// `count` pixels along a line, most often all within the source or all beside it.
void SamplePiece(std::uint8_t* to, const Picture& source, Position at, Position step, int count) {
    const Position last{at.x + (count - 1) * step.x, at.y + (count - 1) * step.y};
    const auto [left, right] = std::minmax({Floor(at.x), Floor(last.x)});
    const auto [bottom, top] = std::minmax({Floor(at.y), Floor(last.y)});
    if (right < -1 || left >= source.width || top < -1 || bottom >= source.height) return;
    // From each pixel's left neighbour on, 8 bytes are read.
    if (left >= 0 && right < source.width - 2 && bottom >= 0 && top < source.height - 1)
        return SampleRow(to, {source.bits, RowBytes(source.width)}, at, step,
                         static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i, to += 3, at.x += step.x, at.y += step.y) Sample(to, source, at);
}

void Turn(const Canvas& dest, const Picture& source, double radians) {
    // The product of the three shears, undone: from a position on the destination to one on the source, both
    // measured from their centres.
    const double cosine = std::cos(radians), sine = std::sin(radians);
    const Position step{ToFixed(cosine), ToFixed(-sine)};
    const double firstX = (1 - dest.width) / 2.0, middleX = (source.width - 1) / 2.0;
    const double middleY = (source.height - 1) / 2.0;
    constexpr std::int64_t Half = std::int64_t{1} << 23;  // rounds to the 256ths that `Sample` looks at
    const auto rowStart = [&](int y) {
        const double upY = y + (1 - dest.height) / 2.0;
        return Position{ToFixed(cosine * firstX + sine * upY + middleX) + Half,
                        ToFixed(-sine * firstX + cosine * upY + middleY) + Half};
    };
    // In tiles, so that the source's rows that one piece crosses are still at hand for the next.
    for (int bottom = 0; bottom < dest.height; bottom += TileHeight) {
        const int top = std::min(bottom + TileHeight, dest.height);
        Position starts[TileHeight];
        for (int y = bottom; y < top; ++y) starts[y - bottom] = rowStart(y);
        for (int x = 0; x < dest.width; x += TileWidth) {
            const int count = std::min(TileWidth, dest.width - x);
            for (int y = bottom; y < top; ++y) {
                const Position start = starts[y - bottom];
                SamplePiece(RowAt(dest.bits, dest.width, y) + x * std::ptrdiff_t{3}, source,
                            {start.x + x * step.x, start.y + x * step.y}, step, count);
            }
        }
    }
}

}  // namespace

int Rotate(uint8_t* DestPtr, int DestWidth, int DestHeight, const uint8_t* SourcePtr, int SourceWidth,
           int SourceHeight, int Angle, int ShearX, int ShearY, int) {
    if (!DestPtr || !SourcePtr) return 0;
    for (const int side : {DestWidth, DestHeight, SourceWidth, SourceHeight})
        if (side < 1 || side > MaximumSide) return 0;

    const Canvas dest{DestPtr, DestWidth, DestHeight};
    const Picture source{SourcePtr, SourceWidth, SourceHeight};
    const double radians = AngleOf(Angle, ShearX, ShearY);
    const double quarters = std::round(radians / (std::numbers::pi / 2));
    // Less than half a step of the shears, which moves no corner by as much as 1/50 pixel.
    if (std::abs(radians - quarters * (std::numbers::pi / 2)) < 1.0 / 131072)
        QuarterTurns(dest, source, (static_cast<int>(quarters) + 4) % 4);
    else
        Turn(dest, source, radians);
    return 0;
}
