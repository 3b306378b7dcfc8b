#include "imaging/BmpFile.h"

#include <cstddef>

#include "imaging/DIB.h"

namespace tessaloom {

namespace {

constexpr std::size_t HeaderBytes = 14 + 40;

void Append(std::vector<std::uint8_t>& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

}  // namespace

std::vector<std::uint8_t> WriteBmp(const DIB& picture) {
    std::vector<std::uint8_t> bytes;
    if (!picture.DIBPtr()) return bytes;
    const auto pixelBytes = static_cast<std::uint32_t>(picture.SizeInBytes());
    bytes.reserve(HeaderBytes + pixelBytes);

    bytes.assign({'B', 'M'});
    Append(bytes, HeaderBytes + pixelBytes, 4);
    Append(bytes, 0, 4);
    Append(bytes, HeaderBytes, 4);

    Append(bytes, 40, 4);
    Append(bytes, static_cast<std::uint32_t>(picture.Width()), 4);
    Append(bytes, static_cast<std::uint32_t>(picture.Height()), 4);  // positive: bottom row first
    Append(bytes, 1, 2);
    Append(bytes, 24, 2);
    Append(bytes, 0, 4);
    Append(bytes, pixelBytes, 4);
    for (int field = 0; field < 4; ++field) Append(bytes, 0, 4);

    bytes.insert(bytes.end(), picture.DIBPtr(), picture.DIBPtr() + pixelBytes);
    return bytes;
}

}  // namespace tessaloom
