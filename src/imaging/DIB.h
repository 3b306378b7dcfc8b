#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "imaging/DeviceContext.h"
#include "imaging/PixelArea.h"
#include "imaging/pixelops/Target.h"

namespace tessaloom {

/// A 24-bit bitmap in memory: blue, green, red; rows padded to 4 bytes; the first row in memory is the bottom
/// row.
///
/// It is empty or holds exactly `Width` x `Height` pixels. A change of size discards them; new pixels are
/// black. A size that cannot be had (no memory, negative) leaves a drawing surface without pixels: `hDC` is
/// set, `hDIB` and `DIBPtr` are null. Nothing throws.
class DIB {
public:
    DIB() = default;
    ~DIB() { UnloadClass(); }
    DIB(const DIB&) = delete;
    DIB& operator=(const DIB&) = delete;

    /// Makes it empty. The stored size stays.
    void UnloadClass();

    /// Pixels. Setting one while the other is 0 only stores it; an unchanged value keeps the pixels.
    int Width() const { return width_; }
    void SetWidth(int width);
    int Height() const { return height_; }
    void SetHeight(int height);

    /// Unlike the two above, a size with a 0 in it leaves the bitmap empty.
    void SetWidthHeight(int width, int height);

    /// The drawing surface; null when the bitmap is empty.
    DeviceContext* hDC() { return surface_ ? &context_ : nullptr; }
    const DeviceContext* hDC() const { return surface_ ? &context_ : nullptr; }

    /// Not null when there are pixels.
    const void* hDIB() const { return pixels_.get(); }

    /// The first byte of the bottom row; null when there are no pixels.
    std::uint8_t* DIBPtr() { return pixels_.get(); }
    const std::uint8_t* DIBPtr() const { return pixels_.get(); }

    /// Fills all pixels with `color` (0x00BBGGRR).
    void Clear(int color);

    void CreateDIB();
    void DestroyDIB();

    /// Bytes from a row to the next.
    int Stride() const { return StrideOf(width_); }
    static int StrideOf(int width) {
        return static_cast<int>((static_cast<std::int64_t>(width) * 3 + 3) & ~std::int64_t{3});
    }

    /// The first byte of row `row`, counted from the top. There must be pixels.
    std::uint8_t* Row(int row) { return pixels_.get() + Offset(row); }
    const std::uint8_t* Row(int row) const { return pixels_.get() + Offset(row); }

    /// A part of it to draw onto; it must lie on the bitmap.
    pixelops::Target Part(const PixelArea& area) {
        return {pixels_.get() + std::ptrdiff_t{area.first} * Stride() + std::ptrdiff_t{area.left} * 3,
                area.Width(), area.Height(), Stride()};
    }
    PixelArea Whole() const { return PixelArea::Of(width_, height_); }

    /// The colour (0x00BBGGRR) of a pixel counted from the top left corner. It must exist.
    int Pixel(int x, int y) const;

    /// Bytes of all rows; 0 without pixels.
    std::size_t SizeInBytes() const;

    /// Takes over size and pixels of `source`; false, and without pixels, when there is no memory for them.
    bool CopyFrom(const DIB& source);

    /// Exchanges sizes and pixels. Each keeps its own drawing surface.
    void Swap(DIB& other) noexcept;

private:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };

    std::ptrdiff_t Offset(int row) const { return static_cast<std::ptrdiff_t>(height_ - 1 - row) * Stride(); }

    int width_ = 0;
    int height_ = 0;
    bool surface_ = false;
    std::unique_ptr<std::uint8_t[], Free> pixels_;
    DeviceContext context_{*this};
};

}  // namespace tessaloom
