#include "platform/jpeg/TurboJpegCodec.h"

#include <turbojpeg.h>

#include <algorithm>

#include "platform/jpeg/PlaneRows.h"

namespace tessaloom {

namespace {

JpegHeader::Colours ColoursOf(int colourSpace) {
    switch (colourSpace) {
        case TJCS_GRAY:
            return JpegHeader::Colours::Grey;
        case TJCS_RGB:
            return JpegHeader::Colours::RGB;
        case TJCS_CMYK:
            return JpegHeader::Colours::CMYK;
        case TJCS_YCCK:
            return JpegHeader::Colours::YCCK;
        default:
            return JpegHeader::Colours::YCbCr;
    }
}

/// Of pictures that the encoder takes, pixels.
constexpr int LargestSide = 65500;

/// Of pictures whose width is a multiple of this, the planes have no edge that would have to be filled.
constexpr int SplitWidth = 16;

}  // namespace

void TurboJpegCodec::Close::operator()(void* handle) const { tjDestroy(handle); }

TurboJpegCodec::TurboJpegCodec() : decoder_(tjInitDecompress()), encoder_(tjInitCompress()) {}
TurboJpegCodec::~TurboJpegCodec() = default;

JpegResult TurboJpegCodec::ReadHeader(std::span<const std::uint8_t> file, JpegHeader& header) {
    if (!decoder_ || file.empty()) return JpegResult::Failed;
    int width = 0, height = 0, subsampling = 0, colourSpace = 0;
    if (tjDecompressHeader3(decoder_.get(), file.data(), file.size(), &width, &height, &subsampling,
                            &colourSpace) != 0) {
        // Unusual samplings are among these; another decoder may know them.
        const bool jpeg = file.size() > 2 && file[0] == 0xFF && file[1] == 0xD8;
        return GiveUp(jpeg ? JpegResult::Unsupported : JpegResult::Failed);
    }
    if (!limits_.AllowJpeg(width, height, file)) return JpegResult::TooLarge;
    header = {width, height, ColoursOf(colourSpace)};
    return JpegResult::Ok;
}

JpegResult TurboJpegCodec::Decode(std::span<const std::uint8_t> file, const JpegHeader& header,
                                  std::uint8_t* rows, int stride) {
    if (!decoder_ || !rows) return JpegResult::Failed;
    if (header.colours == JpegHeader::Colours::CMYK || header.colours == JpegHeader::Colours::YCCK)
        return JpegResult::Unsupported;
    constexpr int Flags = TJFLAG_BOTTOMUP | TJFLAG_STOPONWARNING | TJFLAG_LIMITSCANS;
    if (tjDecompress2(decoder_.get(), file.data(), file.size(), rows, header.width, stride, header.height,
                      TJPF_BGR, Flags) == 0)
        return JpegResult::Ok;
    return GiveUp(tjGetErrorCode(decoder_.get()) == TJERR_WARNING ? JpegResult::Damaged : JpegResult::Failed);
}

/// A decoder that failed may stay in the middle of that file, where the next one would be taken for its rest.
JpegResult TurboJpegCodec::GiveUp(JpegResult reason) {
    decoder_.reset(tjInitDecompress());
    return reason;
}

std::span<const std::uint8_t> TurboJpegCodec::Encode(const std::uint8_t* rows, int width, int height,
                                                     int stride, int quality,
                                                     std::vector<std::uint8_t>& buffer) {
    if (!encoder_ || !rows || std::min(width, height) < 1 || std::max(width, height) > LargestSide) return {};
    const unsigned long worstCase = tjBufSize(width, height, TJSAMP_420);
    if (worstCase == static_cast<unsigned long>(-1)) return {};
    if (buffer.size() < worstCase) buffer.resize(worstCase);
    unsigned char* bytes = buffer.data();
    unsigned long size = buffer.size();
    const int held = std::clamp(quality, 1, 100);
    const int result = width % SplitWidth == 0 && CanSplitRows()
                           ? EncodeSplit({rows, width, height, stride}, held, &bytes, &size)
                           : tjCompress2(encoder_.get(), rows, width, stride, height, TJPF_BGR, &bytes, &size,
                                         TJSAMP_420, held, TJFLAG_BOTTOMUP | TJFLAG_NOREALLOC);
    if (result != 0) return {};
    return {buffer.data(), size};
}

int TurboJpegCodec::EncodeSplit(const Rows& rows, int quality, std::uint8_t** bytes, unsigned long* size) {
    const auto width = static_cast<std::size_t>(rows.width), height = static_cast<std::size_t>(rows.height);
    const std::size_t halfWidth = width / 2, evenHeight = (height + 1) / 2 * 2;
    if (planes_.size() < width * evenHeight * 3 / 2) planes_.resize(width * evenHeight * 3 / 2);
    std::uint8_t* const luma = planes_.data();
    std::uint8_t* const blueness = luma + width * evenHeight;
    std::uint8_t* const redness = blueness + halfWidth * evenHeight / 2;
    const auto rowFromTop = [&](std::size_t y) {
        return rows.first + static_cast<std::ptrdiff_t>(height - 1 - std::min(y, height - 1)) * rows.stride;
    };
    for (std::size_t y = 0; y < height; y += 2)
        SplitRows(rowFromTop(y), rowFromTop(y + 1), width,
                  {luma + y * width, luma + (y + 1) * width, blueness + y / 2 * halfWidth,
                   redness + y / 2 * halfWidth});
    const std::uint8_t* planes[] = {luma, blueness, redness};
    const int strides[] = {rows.width, rows.width / 2, rows.width / 2};
    return tjCompressFromYUVPlanes(encoder_.get(), planes, rows.width, strides, rows.height, TJSAMP_420,
                                   bytes, size, quality, TJFLAG_NOREALLOC);
}

}  // namespace tessaloom
