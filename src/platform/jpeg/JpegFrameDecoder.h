#pragma once

#include "platform/JpegDecoder.h"

namespace tessaloom {

/// Decodes the JPEG pictures that cameras send, by libjpeg: what is cut or damaged is refused, what is merely
/// untidy is not.
///
/// Many cameras leave some bytes between the segments, before restart markers or before the end, fill up with
/// bytes that are all alike, or leave the end marker away. More bytes than a few where the picture data
/// should have ended mean that some were lost or changed before. Now and then what is damaged ends in the
/// right place by chance, and goes unnoticed.
class JpegFrameDecoder final : public JpegDecoder {
public:
    void SetLimits(const PictureLimits& limits) override { limits_ = limits; }
    JpegResult ReadHeader(std::span<const std::uint8_t> file, JpegHeader& header) override;
    JpegResult Decode(std::span<const std::uint8_t> file, const JpegHeader& header, std::uint8_t* rows,
                      int stride) override;

private:
    PictureLimits limits_;
};

}  // namespace tessaloom
