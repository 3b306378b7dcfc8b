#pragma once

#include <memory>

#include "platform/JpegCodec.h"

namespace tessaloom {

/// The codec on libjpeg-turbo. Not for use by two threads at a time.
class TurboJpegCodec final : public JpegCodec {
public:
    TurboJpegCodec();
    ~TurboJpegCodec() override;

    void SetLimits(const PictureLimits& limits) override { limits_ = limits; }
    JpegResult ReadHeader(std::span<const std::uint8_t> file, JpegHeader& header) override;
    JpegResult Decode(std::span<const std::uint8_t> file, const JpegHeader& header, std::uint8_t* rows,
                      int stride) override;
    std::span<const std::uint8_t> Encode(const std::uint8_t* rows, int width, int height, int stride,
                                         int quality, std::vector<std::uint8_t>& buffer) override;

private:
    struct Close {
        void operator()(void* handle) const;
    };
    using Handle = std::unique_ptr<void, Close>;

    JpegResult GiveUp(JpegResult reason);

    PictureLimits limits_;
    Handle decoder_;
    Handle encoder_;
};

}  // namespace tessaloom
