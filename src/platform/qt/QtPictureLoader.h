#pragma once

#include "platform/PictureLoader.h"

namespace tessaloom {

/// The loader on QImageReader: BMP, GIF, ICO, PNG, PNM, XPM and what plug-ins add. Needs no application
/// object.
class QtPictureLoader final : public PictureLoader {
public:
    void SetLimits(const PictureLimits& limits) override { limits_ = limits; }
    LoadedPicture Load(std::span<const std::uint8_t> file) override;

private:
    PictureLimits limits_;
};

}  // namespace tessaloom
