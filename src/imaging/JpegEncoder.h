#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessaloom {

class DIB;
class JpegCodec;

/// Makes the JPEG bytes of one picture for several outputs, and encodes only when the quality asked for
/// differs from that of the bytes in hand. The buffer is kept between passes and grows only.
class JpegEncoder {
public:
    explicit JpegEncoder(JpegCodec& codec) : codec_(codec) {}

    /// Starts a pass over `picture`, which must stay as it is until the next one: no bytes are in hand.
    void BeginPass(const DIB& picture);

    /// The JPEG file of the picture at `quality` (percent, held to 1 .. 100); empty on failure or without
    /// pixels. Valid until the next call of either function.
    std::span<const std::uint8_t> Bytes(int quality);

    /// How often this object has encoded.
    int Encodings() const { return encodings_; }

private:
    JpegCodec& codec_;
    const DIB* picture_ = nullptr;
    int quality_ = 0;  ///< Of the bytes in hand; 0: none.
    std::span<const std::uint8_t> bytes_;
    std::vector<std::uint8_t> buffer_;
    int encodings_ = 0;
};

}  // namespace tessaloom
