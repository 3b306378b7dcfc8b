#pragma once

#include <memory>
#include <vector>

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

    /// A picture in memory, as `Encode` has it.
    struct Rows {
        const std::uint8_t* first;
        int width, height, stride;
    };

    JpegResult GiveUp(JpegResult reason);

    /// Does what the encoder does with rows of colours, in less time. Its result is the library's: 0 is good.
    int EncodeSplit(const Rows& rows, int quality, std::uint8_t** bytes, unsigned long* size);

    PictureLimits limits_;
    Handle decoder_;
    Handle encoder_;
    std::vector<std::uint8_t> planes_;  ///< Of the picture that is encoded; it grows only.
};

}  // namespace tessaloom
