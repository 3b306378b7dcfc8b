#include "imaging/OpacityMap.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "imaging/DIB.h"

namespace tessaloom::OpacityMap {

namespace {

/// The opacity at a distance (pixels) inside the edge.
std::uint8_t Ramp(double distance, int width) {
    const double share = width > 0 ? distance / width : distance + 0.5;
    return static_cast<std::uint8_t>(std::lround(255 * std::clamp(share, 0.0, 1.0)));
}

/// Runs `change(row)` for the bytes of each row, without the padding.
template <typename Change>
void ForEachRow(DIB& map, Change&& change) {
    if (!map.DIBPtr()) return;
    for (int y = 0; y < map.Height(); ++y)
        change(std::span(map.Row(y), static_cast<std::size_t>(map.Width()) * 3), y);
}

void SetGrey(std::uint8_t* pixel, std::uint8_t value) { pixel[0] = pixel[1] = pixel[2] = value; }

}  // namespace

void FillFeathered(DIB& map, int width, int radius) {
    const int columns = map.Width();
    const int rows = map.Height();
    // A fade turns the corner in an arc, too; two straight ones would meet in a visible mitre.
    const double corner = std::min<double>(std::max(radius, width), std::min(columns, rows) / 2.0);
    std::vector<std::uint8_t> straight(static_cast<std::size_t>(std::max({columns, rows, 1})));
    for (std::size_t i = 0; i < straight.size(); ++i) straight[i] = Ramp(static_cast<double>(i) + 0.5, width);

    // Distances of pixel centres from the nearer side. Only pixels in both sides' corner zone need a root.
    ForEachRow(map, [&](std::span<std::uint8_t> row, int y) {
        const int fromRowEdge = std::min(y, rows - 1 - y);
        const double inRow = corner - (fromRowEdge + 0.5);
        for (int x = 0; x < columns; ++x) {
            const int fromColumnEdge = std::min(x, columns - 1 - x);
            const double inColumn = corner - (fromColumnEdge + 0.5);
            const std::uint8_t value =
                inRow > 0 && inColumn > 0
                    ? Ramp(corner - std::hypot(inRow, inColumn), width)
                    : straight[static_cast<std::size_t>(std::min(fromRowEdge, fromColumnEdge))];
            SetGrey(&row[static_cast<std::size_t>(x) * 3], value);
        }
    });
}

void FromPicture(DIB& picture, std::span<const std::uint8_t> alpha) {
    const auto columns = static_cast<std::size_t>(picture.Width());
    const bool useAlpha = alpha.size() == columns * static_cast<std::size_t>(picture.Height());
    ForEachRow(picture, [&](std::span<std::uint8_t> row, int y) {
        const auto alphaRow = static_cast<std::size_t>(picture.Height() - 1 - y) * columns;
        for (std::size_t x = 0; x < columns; ++x) {
            std::uint8_t* pixel = &row[x * 3];
            const int intensity = (29 * pixel[0] + 150 * pixel[1] + 77 * pixel[2] + 128) / 256;
            SetGrey(pixel, useAlpha ? alpha[alphaRow + x] : static_cast<std::uint8_t>(intensity));
        }
    });
}

void Multiply(DIB& map, const DIB& other) {
    if (!other.DIBPtr() || other.Width() != map.Width() || other.Height() != map.Height()) return;
    ForEachRow(map, [&](std::span<std::uint8_t> row, int y) {
        const std::uint8_t* factor = other.Row(y);
        for (std::uint8_t& value : row) value = static_cast<std::uint8_t>((value * *factor++ + 127) / 255);
    });
}

void Negate(DIB& map) {
    ForEachRow(map, [](std::span<std::uint8_t> row, int) {
        for (std::uint8_t& value : row) value = static_cast<std::uint8_t>(255 - value);
    });
}

}  // namespace tessaloom::OpacityMap
