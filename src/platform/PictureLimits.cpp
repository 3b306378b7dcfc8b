#include "platform/PictureLimits.h"

namespace tessaloom {

namespace {

constexpr std::uint8_t Escape = 0xFF;  // begins a marker; may be repeated

enum Marker : std::uint8_t {
    Stuffed = 0x00,  // a byte 0xFF of picture data
    Temporary = 0x01,
    FirstRestart = 0xD0,
    Start = 0xD8,  // the last one without a segment of its own
    End = 0xD9,
    Scan = 0xDA,
};

bool HasSegment(std::uint8_t marker) {
    return marker > Temporary && (marker < FirstRestart || marker > Start);
}

}  // namespace

std::int64_t PictureLimits::JpegScans(std::span<const std::uint8_t> file) {
    std::int64_t scans = 0;
    for (std::size_t at = 0; at + 3 < file.size();) {
        const std::uint8_t marker = file[at + 1];
        if (file[at] != Escape || marker == Escape) {
            ++at;
            continue;
        }
        if (marker == End) break;
        scans += marker == Scan ? 1 : 0;
        at += 2;
        if (HasSegment(marker)) at += std::size_t{file[at]} << 8 | file[at + 1];
    }
    return scans;
}

}  // namespace tessaloom
