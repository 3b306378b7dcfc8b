#include "platform/qt/PngFile.h"

#include <array>
#include <string_view>

#include "platform/Bytes.h"

namespace tessaloom {

namespace {

constexpr std::size_t SignatureBytes = 8;
constexpr std::size_t FrameBytes = 12;  // of a chunk: length and kind before, check sum behind

/// The check sum of chunks (ISO 3309), bit by bit for one byte.
constexpr std::uint32_t CrcOfByte(std::uint32_t byte) {
    for (int bit = 0; bit < 8; ++bit) byte = byte & 1 ? byte >> 1 ^ 0xEDB88320U : byte >> 1;
    return byte;
}

constexpr auto CrcTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) table[i] = CrcOfByte(i);
    return table;
}();

std::uint32_t Crc(std::span<const std::uint8_t> bytes) {
    std::uint32_t crc = ~0U;
    for (const std::uint8_t byte : bytes) crc = CrcTable[(crc ^ byte) & 0xFF] ^ crc >> 8;
    return ~crc;
}

std::uint32_t BigEndian(std::span<const std::uint8_t> file, std::size_t at) {
    return std::uint32_t{file[at]} << 24 | std::uint32_t{file[at + 1]} << 16 |
           std::uint32_t{file[at + 2]} << 8 | file[at + 3];
}

/// Kinds that begin with a capital letter are needed by every reader; transparency is needed by us.
bool IsEssential(std::string_view kind) { return (kind[0] & 0x20) == 0 || kind == "tRNS"; }

}  // namespace

std::optional<std::vector<std::uint8_t>> EssentialPng(std::span<const std::uint8_t> file) {
    if (file.size() < SignatureBytes) return std::nullopt;
    std::vector<std::uint8_t> essential(file.begin(), file.begin() + SignatureBytes);
    for (std::size_t at = SignatureBytes; at + FrameBytes <= file.size();) {
        const std::size_t length = BigEndian(file, at);
        if (length > file.size() - at - FrameBytes) return std::nullopt;
        const auto named = file.subspan(at + 4, 4 + length);
        if (Crc(named) != BigEndian(file, at + 8 + length)) return std::nullopt;
        const std::string_view kind = AsText(named.first(4));
        const auto chunk = file.subspan(at, FrameBytes + length);
        if (IsEssential(kind)) essential.insert(essential.end(), chunk.begin(), chunk.end());
        if (kind == "IEND") return essential;
        at += FrameBytes + length;
    }
    return std::nullopt;
}

std::optional<PngSize> SizeOfPng(std::span<const std::uint8_t> beginning) {
    constexpr std::size_t SizeAt = 16, SizeEnd = 24;
    if (beginning.size() < SizeEnd || AsText(beginning.subspan(12, 4)) != "IHDR") return std::nullopt;
    return PngSize{BigEndian(beginning, SizeAt), BigEndian(beginning, SizeAt + 4)};
}

}  // namespace tessaloom
