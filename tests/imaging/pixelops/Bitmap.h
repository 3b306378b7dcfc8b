#pragma once

#include "support/Testing.h"

namespace tessaloom::testing {

/// A bitmap in the layout of the pixel operations, between guard bytes. Rows count from the bottom.
class Bitmap {
public:
    Bitmap(int w, int h, int colour = 0) : width(w), height(h), bytes_(Guard + Size() + Guard, GuardByte) {
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) Set(x, y, colour);
    }

    std::uint8_t* Ptr() { return bytes_.data() + Guard; }
    std::size_t Size() const { return Stride() * static_cast<std::size_t>(height); }
    std::size_t Stride() const { return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4; }
    std::uint8_t* At(int x, int y) {
        return Ptr() + static_cast<std::size_t>(y) * Stride() + static_cast<std::size_t>(x) * 3;
    }

    /// 0x00BBGGRR.
    int Colour(int x, int y) { return At(x, y)[2] | At(x, y)[1] << 8 | At(x, y)[0] << 16; }
    void Set(int x, int y, int colour) {
        for (int c = 0; c < 3; ++c) At(x, y)[2 - c] = static_cast<std::uint8_t>(colour >> 8 * c);
    }

    bool GuardsIntact() const {
        for (std::size_t i = 0; i < Guard; ++i)
            if (bytes_[i] != GuardByte || bytes_[bytes_.size() - 1 - i] != GuardByte) return false;
        return true;
    }

    static Bitmap Random(int w, int h, unsigned seed) {
        Bitmap bitmap(w, h);
        std::mt19937 random(seed);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) bitmap.Set(x, y, static_cast<int>(random() & 0xFFFFFF));
        return bitmap;
    }

    bool operator==(const Bitmap&) const = default;

    int width, height;

private:
    static constexpr std::size_t Guard = 64;
    static constexpr std::uint8_t GuardByte = 0xA5;
    std::vector<std::uint8_t> bytes_;
};

}  // namespace tessaloom::testing
