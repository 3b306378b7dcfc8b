#include "imaging/DeviceContext.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include "core/ErrorReport.h"
#include "imaging/DIB.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "DIB.cls";

/// A stretch of one axis; 64 bits, as position plus length may exceed 32.
struct Range64 {
    std::int64_t begin, end;

    Range64 Cut(std::int64_t low, std::int64_t high) const {
        return {std::max(begin, low), std::min(end, high)};
    }
    bool Empty() const { return end <= begin; }
    int Begin() const { return static_cast<int>(begin); }
    int Length() const { return static_cast<int>(end - begin); }
};

Range64 From(std::int64_t begin, std::int64_t length) { return {begin, begin + length}; }

/// The part of a copy along one axis that lies on both bitmaps, as positions on the destination.
Range64 Common(int dest, int destSize, int length, int source, int sourceSize) {
    const std::int64_t shift = std::int64_t{dest} - source;
    return From(dest, length).Cut(0, destSize).Cut(shift, sourceSize + shift);
}

}  // namespace

/// One `StretchBlt`, clipped: where the full scaled picture would lie, what of it is seen, and the source
/// area.
struct DeviceContext::Stretch {
    int x, y, width, height;
    Range64 columns, rows;  ///< What is seen, on the destination.
    const DIB& source;
    Range64 sourceColumns, sourceRows;
};

void DeviceContext::BitBlt(int x, int y, int width, int height, const DeviceContext& source, int sourceX,
                           int sourceY) {
    const DIB& from = source.bitmap_;
    if (!bitmap_.DIBPtr() || !from.DIBPtr()) return;
    const Range64 columns = Common(x, bitmap_.Width(), width, sourceX, from.Width());
    const Range64 rows = Common(y, bitmap_.Height(), height, sourceY, from.Height());
    if (columns.Empty() || rows.Empty()) return;

    const std::ptrdiff_t fromX = columns.begin - x + sourceX;
    const std::int64_t shift = std::int64_t{sourceY} - y;
    // Onto itself, rows are copied in the order that overwrites none that is still needed.
    const bool upwards = shift < 0;
    for (int i = 0; i < rows.Length(); ++i) {
        const auto row = static_cast<int>(upwards ? rows.end - 1 - i : rows.begin + i);
        std::memmove(bitmap_.Row(row) + columns.begin * 3,
                     from.Row(static_cast<int>(row + shift)) + fromX * 3,
                     static_cast<std::size_t>(columns.Length()) * 3);
    }
}

void DeviceContext::StretchBlt(int x, int y, int width, int height, const DeviceContext& source, int sourceX,
                               int sourceY, int sourceWidth, int sourceHeight) {
    Trap({Module, "StretchBlt"}, [&] {
        const DIB& from = source.bitmap_;
        if (!bitmap_.DIBPtr() || !from.DIBPtr() || &from == &bitmap_ || width < 1 || height < 1) return;
        const Stretch stretch{x,
                              y,
                              width,
                              height,
                              From(x, width).Cut(0, bitmap_.Width()),
                              From(y, height).Cut(0, bitmap_.Height()),
                              from,
                              From(sourceX, sourceWidth).Cut(0, from.Width()),
                              From(sourceY, sourceHeight).Cut(0, from.Height())};
        for (const Range64& range :
             {stretch.columns, stretch.rows, stretch.sourceColumns, stretch.sourceRows})
            if (range.Empty()) return;
        if (stretchMode_ == StretchMode::Halftone)
            StretchSmooth(stretch);
        else
            StretchNearest(stretch);
    });
}

void DeviceContext::StretchNearest(const Stretch& stretch) {
    auto nearest = [](std::int64_t pixel, const Range64& from, int length) {
        return static_cast<int>(from.begin + (2 * pixel + 1) * from.Length() / (2 * std::int64_t{length}));
    };
    for (std::int64_t y = stretch.rows.begin; y < stretch.rows.end; ++y) {
        const std::uint8_t* from =
            stretch.source.Row(nearest(y - stretch.y, stretch.sourceRows, stretch.height));
        std::uint8_t* to = bitmap_.Row(static_cast<int>(y)) + stretch.columns.begin * 3;
        for (std::int64_t x = stretch.columns.begin; x < stretch.columns.end; ++x, to += 3) {
            const std::ptrdiff_t column = nearest(x - stretch.x, stretch.sourceColumns, stretch.width);
            std::copy_n(from + column * 3, 3, to);
        }
    }
}

void DeviceContext::StretchSmooth(const Stretch& stretch) {
    const Resampler::Source source{
        stretch.source.Row(stretch.sourceRows.Begin()) + stretch.sourceColumns.begin * 3,
        -stretch.source.Stride(), stretch.sourceColumns.Length(), stretch.sourceRows.Length()};
    const Resampler::Target target{bitmap_.Row(stretch.rows.Begin()) + stretch.columns.begin * 3,
                                   -bitmap_.Stride(),
                                   stretch.width,
                                   stretch.height,
                                   static_cast<int>(stretch.columns.begin - stretch.x),
                                   static_cast<int>(stretch.rows.begin - stretch.y),
                                   stretch.columns.Length(),
                                   stretch.rows.Length()};
    resampler_.Run(target, source);
}

}  // namespace tessaloom
