#include "ui/property/ColourGroups.h"

#include <algorithm>
#include <cstdint>

#include "imaging/DIB.h"
#include "imaging/Graphic.h"
#include "imaging/Image.h"
#include "imaging/Percent.h"
#include "imaging/pixelops/Tessaloom.h"
#include "ui/shared/PictureImage.h"

namespace tessaloom {

namespace {

constexpr int GroupSize = 4;
constexpr int Blend = 2;
constexpr int FullOpacity = 255;

void DrawCheckerboard(DIB& board) {
    constexpr int Field = 8;
    constexpr std::uint8_t Light = 0xCC, Dark = 0x99;
    for (int y = 0; y < board.Height(); ++y)
        for (int x = 0; x < board.Width(); ++x)
            std::fill_n(board.Row(y) + x * 3, 3, (x / Field + y / Field) % 2 == 0 ? Light : Dark);
}

}  // namespace

QColor FromEngineColour(int colour) { return {colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF}; }
int ToEngineColour(const QColor& colour) { return colour.red() | colour.green() << 8 | colour.blue() << 16; }

ColourGroups ColourGroups::Of(const Graphic& graphic) {
    ColourGroups table;
    table.enabled = graphic.TransparentColorEnable();
    for (int group = 0; group < graphic.TransparentColorCount(); ++group) {
        const auto at = [&](int place) { return graphic.TransparentColorTable(group * GroupSize + place); };
        table.groups.push_back({FromEngineColour(at(0)), FromEngineColour(at(1)), at(2), at(3)});
    }
    return table;
}

void ColourGroups::PutInto(Graphic& graphic) const {
    graphic.SetTransparentColorCount(static_cast<int>(groups.size()));
    int position = 0;
    for (const ColourGroup& group : groups)
        for (const int value :
             {ToEngineColour(group.first), ToEngineColour(group.second), group.tolerance, group.opacity})
            graphic.SetTransparentColorTable(position++, value);
    graphic.SetTransparentColorEnable(enabled);
}

QImage ColourGroups::Result(const DIB& picture) const {
    DIB board;
    board.SetWidthHeight(picture.Width(), picture.Height());
    if (!picture.DIBPtr() || !board.DIBPtr()) return {};
    DrawCheckerboard(board);
    std::vector<int> table;
    for (const ColourGroup& group : groups)
        table.insert(table.end(), {ToEngineColour(group.first), ToEngineColour(group.second),
                                   To255(group.tolerance), To255(group.opacity)});
    Merge(board.DIBPtr(), board.Width(), board.Height(), picture.DIBPtr(), picture.Width(), picture.Height(),
          0, 0, Blend, Image::NoKeyColour, FullOpacity, nullptr, 0, 0, table.data(),
          static_cast<int>(groups.size()), enabled ? -1 : 0);
    return ScaledPicture(board, QSize(board.Width(), board.Height()));
}

void TakeSample(const DIB& picture, int width, int height, DIB& sample) {
    const int step =
        std::max({1, (picture.Width() + width - 1) / width, (picture.Height() + height - 1) / height});
    sample.SetWidthHeight(picture.Width() / step, picture.Height() / step);
    if (!picture.DIBPtr() || !sample.DIBPtr()) return;
    for (int y = 0; y < sample.Height(); ++y)
        for (int x = 0; x < sample.Width(); ++x)
            std::copy_n(picture.Row(y * step) + x * step * 3, 3, sample.Row(y) + x * 3);
}

}  // namespace tessaloom
