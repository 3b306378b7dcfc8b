#include "imaging/DIB.h"

#include <cstring>
#include <limits>
#include <utility>

#include "imaging/pixelops/Tessaloom.h"

namespace tessaloom {

void DIB::UnloadClass() {
    if (surface_) DestroyDIB();
}

void DIB::SetWidth(int width) {
    if (width == width_ || height_ == 0) {
        width_ = width;
        return;
    }
    DestroyDIB();
    width_ = width;
    CreateDIB();
}

void DIB::SetHeight(int height) {
    if (height == height_ || width_ == 0) {
        height_ = height;
        return;
    }
    DestroyDIB();
    height_ = height;
    CreateDIB();
}

void DIB::SetWidthHeight(int width, int height) {
    if (width == width_ && height == height_) return;
    DestroyDIB();
    width_ = width;
    height_ = height;
    if (width != 0 && height != 0) CreateDIB();
}

void DIB::Clear(int color) {
    if (surface_ && width_ != 0 && height_ != 0) Cls(DIBPtr(), width_, height_, color);
}

void DIB::CreateDIB() {
    DestroyDIB();
    surface_ = true;
    if (width_ < 1 || height_ < 1) return;
    // A size of 32 bits, as in the header that files and drivers exchange; larger ones are refused.
    const std::int64_t rowBytes = (std::int64_t{width_} * 3 + 3) & ~std::int64_t{3};
    if (rowBytes > std::numeric_limits<int>::max() / height_) return;
    pixels_.reset(static_cast<std::uint8_t*>(
        std::calloc(static_cast<std::size_t>(height_), static_cast<std::size_t>(rowBytes))));
}

void DIB::DestroyDIB() {
    pixels_.reset();
    surface_ = false;
}

int DIB::Pixel(int x, int y) const {
    const std::uint8_t* pixel = Row(y) + x * std::ptrdiff_t{3};
    return pixel[2] | pixel[1] << 8 | pixel[0] << 16;
}

std::size_t DIB::SizeInBytes() const {
    return pixels_ ? static_cast<std::size_t>(Stride()) * static_cast<std::size_t>(height_) : 0;
}

bool DIB::CopyFrom(const DIB& source) {
    SetWidthHeight(source.width_, source.height_);
    if (!source.pixels_) {
        DestroyDIB();
        return true;
    }
    if (!pixels_) CreateDIB();
    if (!pixels_) return false;
    std::memcpy(pixels_.get(), source.pixels_.get(), SizeInBytes());
    return true;
}

void DIB::Swap(DIB& other) noexcept {
    std::swap(width_, other.width_);
    std::swap(height_, other.height_);
    std::swap(surface_, other.surface_);
    std::swap(pixels_, other.pixels_);
}

}  // namespace tessaloom
