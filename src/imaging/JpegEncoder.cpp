#include "imaging/JpegEncoder.h"

#include <algorithm>

#include "core/ErrorReport.h"
#include "imaging/DIB.h"
#include "platform/JpegCodec.h"

namespace tessaloom {

void JpegEncoder::BeginPass(const DIB& picture) {
    picture_ = &picture;
    quality_ = 0;
    bytes_ = {};
}

std::span<const std::uint8_t> JpegEncoder::Bytes(int quality) {
    return Trap({"JpegEncoder.cls", "Bytes"}, [&] {
        quality = std::clamp(quality, 1, 100);
        if (quality == quality_) return bytes_;
        quality_ = 0;
        bytes_ = {};
        if (!picture_ || !picture_->DIBPtr()) return bytes_;
        bytes_ = codec_.Encode(picture_->DIBPtr(), picture_->Width(), picture_->Height(), picture_->Stride(),
                               quality, buffer_);
        ++encodings_;
        if (!bytes_.empty()) quality_ = quality;
        return bytes_;
    });
}

}  // namespace tessaloom
