#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/MergeRows.h"

namespace tessaloom::pixelops {

/// What decides how much of a source pixel is laid down, as Tessaloom.h defines it. It refers to the caller's
/// table.
class Coverage {
public:
    const int opacity;

    Coverage(int key, int opacity255, const int* colourTable, int colourCount, int enabled)
        : opacity(std::clamp(opacity255, 0, 255)) {
        if (enabled != 0 && colourTable && colourCount > 0) {
            table_ = colourTable;
            groups_ = colourCount;
            for (int i = 0; i < std::min(groups_, MaximumRanges); ++i) ranges_[i] = RangeOf(Group(i));
        } else if (key >= 0 && key <= 0xFFFFFF) {
            groups_ = 1;
            const int group[] = {key, key, 0, 0};
            ranges_[0] = RangeOf(group);
        }
    }

    /// Whether the source pixels must be looked at.
    bool Selective() const { return groups_ > 0; }

    /// The range of colours that hides what lies in it, where nothing else is to be looked at; else null.
    const ColourRange* OnlyHidden() const { return groups_ == 1 && ranges_[0].kept == 0 ? ranges_ : nullptr; }

    /// How much is kept of each component, 0 .. 255, by the colours of the pixels.
    void KeepRow(std::uint8_t* kept, const std::uint8_t* source, std::size_t pixels) const {
        std::memset(kept, 255, pixels * 3);
        if (groups_ <= MaximumRanges) {
            for (int i = 0; i < groups_; ++i) pixelops::KeepRow(kept, source, ranges_[i], pixels);
            return;
        }
        // Of a long table each colour is looked up once where neighbours are alike, as they often are.
        int lastColour = -1, lastKept = 255;
        for (std::size_t i = 0; i < pixels * 3; i += 3) {
            const int colour = source[i] << 16 | source[i + 1] << 8 | source[i + 2];
            if (colour != lastColour) lastKept = KeptByTable(source + i);
            lastColour = colour;
            std::memset(kept + i, lastKept, 3);
        }
    }

private:
    /// Of a table as long as this a whole row is compared with each group in turn.
    static constexpr int MaximumRanges = 16;

    const int* Group(int i) const { return table_ + std::ptrdiff_t{i} * 4; }

    static ColourRange RangeOf(const int* group) {
        const int tolerance = std::clamp(group[2], 0, 255);
        ColourRange range{};
        int (*const components[])(int) = {Blue, Green, Red};
        for (int c = 0; c < 3; ++c) {
            const int one = components[c](group[0]), other = components[c](group[1]);
            range.low[c] = static_cast<std::uint8_t>(ClampToByte(std::min(one, other) - tolerance));
            range.high[c] = static_cast<std::uint8_t>(ClampToByte(std::max(one, other) + tolerance));
        }
        range.kept = static_cast<std::uint8_t>(ClampToByte(group[3]));
        return range;
    }

    int KeptByTable(const std::uint8_t* pixel) const {
        std::uint8_t kept[3] = {255, 255, 255};
        for (int i = 0; i < groups_ && kept[0] > 0; ++i)
            reference::KeepRow(kept, pixel, RangeOf(Group(i)), 1);
        return kept[0];
    }

    const int* table_ = nullptr;
    int groups_ = 0;
    ColourRange ranges_[MaximumRanges];
};

}  // namespace tessaloom::pixelops
