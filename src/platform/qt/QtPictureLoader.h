#pragma once

#include "platform/PictureLoader.h"

namespace tessaloom {

/// The loader on QImageReader, which is only ever asked for the format that our own look at a file's first
/// bytes found: BMP, GIF, ICO, JPEG, PNG, PNM, and TIFF, WebP and SVG where their plug-ins are installed.
/// Only vector pictures need an application object, a QGuiApplication.
class QtPictureLoader final : public PictureLoader {
public:
    void SetLimits(const PictureLimits& limits) override { limits_ = limits; }
    LoadedPicture Load(std::span<const std::uint8_t> file) override;
    std::optional<PictureHeader> Header(std::span<const std::uint8_t> beginning) override;
    std::shared_ptr<PictureLoader> Another() const override;

private:
    PictureLimits limits_;
};

}  // namespace tessaloom
