#pragma once

#include "platform/PictureLoader.h"

namespace tessaloom {

/// The loader on QImageReader: BMP, GIF, ICO, PNG, PNM, XBM, XPM and what plug-ins add. Only vector pictures
/// need an application object, a QGuiApplication; they must not be packed nor name other files.
class QtPictureLoader final : public PictureLoader {
public:
    void SetLimits(const PictureLimits& limits) override { limits_ = limits; }
    LoadedPicture Load(std::span<const std::uint8_t> file) override;

private:
    PictureLimits limits_;
};

}  // namespace tessaloom
