#pragma once

#include <algorithm>
#include <cstdint>

#include "imaging/pixelops/Arithmetic.h"

namespace tessaloom::pixelops {

/// What decides how much of a source pixel is laid down, as Tessaloom.h defines it.
struct Coverage {
    int keyColour = 0;
    int opacity = 255;
    const int* table = nullptr;
    int groups = 0;  ///< Of the table; 0: the key colour decides.

    // Neighbours often have one colour, and tables may be long.
    mutable int lastColour = -1;
    mutable int lastKept = 0;

    Coverage(int key, int opacity255, const int* colourTable, int colourCount, int enabled)
        : keyColour(key),
          opacity(std::clamp(opacity255, 0, 255)),
          table(colourTable),
          groups(enabled != 0 && colourTable != nullptr ? std::max(colourCount, 0) : 0) {}

    /// Whether the source pixels must be looked at.
    bool Selective() const { return groups > 0 || (keyColour >= 0 && keyColour <= 0xFFFFFF); }

    /// How much is kept of a pixel, 0 .. 255.
    int Kept(const std::uint8_t* pixel) const {
        const int colour = pixel[2] | pixel[1] << 8 | pixel[0] << 16;
        if (groups == 0) return colour == keyColour ? 0 : 255;
        if (colour != lastColour) {
            lastColour = colour;
            lastKept = KeptByTable(colour);
        }
        return lastKept;
    }

    /// The opacity of one component. map: 255 without a map; kept: from `Kept`.
    int Of(int map, int kept) const {
        return By255(static_cast<std::uint16_t>(By255(static_cast<std::uint16_t>(opacity * map)) * kept));
    }

private:
    int KeptByTable(int colour) const {
        int kept = 255;
        for (int i = 0; i < groups && kept > 0; ++i) {
            const int* group = table + std::ptrdiff_t{i} * 4;
            if (Matches(colour, group)) kept = std::min(kept, std::clamp(group[3], 0, 255));
        }
        return kept;
    }

    static bool Matches(int colour, const int* group) {
        const int tolerance = std::clamp(group[2], 0, 255);
        auto within = [&](int value, int one, int other) {
            return value >= std::min(one, other) - tolerance && value <= std::max(one, other) + tolerance;
        };
        return within(Red(colour), Red(group[0]), Red(group[1])) &&
               within(Green(colour), Green(group[0]), Green(group[1])) &&
               within(Blue(colour), Blue(group[0]), Blue(group[1]));
    }
};

}  // namespace tessaloom::pixelops
