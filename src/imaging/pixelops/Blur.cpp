#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/BlurRows.h"
#include "imaging/pixelops/DiffRows.h"
#include "imaging/pixelops/FrameChange.h"
#include "imaging/pixelops/Tessaloom.h"

namespace {

using namespace tessaloom::pixelops;

constexpr int MaximumRadius = 3;

/// Columns that are worked on together, so that their sums fit on the stack.
constexpr int StripWidth = 2048;

struct Frame {
    const std::uint8_t* source;
    std::uint8_t* dest;
    int width, height, radius;
};

/// The sums down the columns of a strip, with `radius` more on both sides. Beyond the frame's edges the sums
/// of its first and last column are repeated.
class ColumnSums {
public:
    ColumnSums(const Frame& frame, int left, int width)
        : frame_(frame),
          from_(std::max(left - frame.radius, 0)),
          columns_(std::min(left + width + frame.radius, frame.width) - from_),
          before_(from_ - (left - frame.radius)),
          after_(width + 2 * frame.radius - before_ - columns_) {}

    /// removed: its number, or one below 0 beside the frame, for none.
    void Add(int added, const int* removed) {
        SumRow(sums_ + before_ * 3, Row(added), removed ? Row(*removed) : nullptr,
               static_cast<std::size_t>(columns_) * 3);
    }

    /// Where the strip's own sums begin.
    const std::uint16_t* Complete() {
        std::uint16_t* const first = sums_ + before_ * 3;
        for (int i = 1; i <= before_ * 3; ++i) first[-i] = first[(3 - i % 3) % 3];
        std::uint16_t* const last = first + (columns_ - 1) * 3;
        for (int i = 0; i < after_ * 3; ++i) last[3 + i] = last[i % 3];
        return sums_ + frame_.radius * 3;
    }

private:
    const std::uint8_t* Row(int y) const {
        return RowAt(frame_.source, frame_.width, std::clamp(y, 0, frame_.height - 1)) +
               from_ * std::ptrdiff_t{3};
    }

    const Frame& frame_;
    int from_, columns_, before_, after_;
    std::uint16_t sums_[(StripWidth + 2 * MaximumRadius) * 3] = {};
};

/// Blurs the columns from `left` to `left` + `width`; `done` is told of each row's part.
template <typename Done>
void BlurStrip(const Frame& frame, int left, int width, Done done) {
    ColumnSums sums(frame, left, width);
    for (int y = -frame.radius; y < frame.radius; ++y) sums.Add(y, nullptr);
    for (int y = 0; y < frame.height; ++y) {
        const int gone = y - frame.radius - 1;
        sums.Add(y + frame.radius, y == 0 ? nullptr : &gone);
        const std::ptrdiff_t start = y * RowBytes(frame.width) + left * std::ptrdiff_t{3};
        MeanRow(frame.dest + start, sums.Complete(), frame.radius, static_cast<std::size_t>(width) * 3);
        done(start, static_cast<std::size_t>(width) * 3);
    }
}

/// Blurs, or copies, all of it; `done(start, bytes)` follows each stretch of bytes.
template <typename Done>
void BlurFrame(const Frame& frame, Done done) {
    if (frame.radius < 1) {
        const std::size_t bytes = static_cast<std::size_t>(frame.width) * 3;
        for (int y = 0; y < frame.height; ++y) {
            const std::ptrdiff_t start = y * RowBytes(frame.width);
            std::memcpy(frame.dest + start, frame.source + start, bytes);
            done(start, bytes);
        }
        return;
    }
    for (int left = 0; left < frame.width; left += StripWidth)
        BlurStrip(frame, left, std::min(StripWidth, frame.width - left), done);
}

}  // namespace

int Blur(const uint8_t* SourcePtr, uint8_t* DestPtr, int Height, int Width, int Level) {
    if (!SourcePtr || !DestPtr || Width < 1 || Height < 1) return 0;
    BlurFrame({SourcePtr, DestPtr, Width, Height, std::min(Level, MaximumRadius)},
              [](std::ptrdiff_t, std::size_t) {});
    return 0;
}

namespace tessaloom::pixelops {

FrameChange BlurAndCompare(const std::uint8_t* source, std::uint8_t* blurred, const std::uint8_t* previous,
                           int height, int width, int level, ChangeLimits limits) {
    FrameChange change;
    BlurFrame({source, blurred, width, height, std::min(level, MaximumRadius)},
              [&](std::ptrdiff_t start, std::size_t bytes) {
                  ChangeRow(blurred + start, previous + start, limits, bytes, change);
              });
    return change;
}

}  // namespace tessaloom::pixelops
