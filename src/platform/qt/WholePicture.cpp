#include "platform/qt/WholePicture.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "platform/Bytes.h"

namespace tessaloom {

namespace {

/// Reads a file's numbers, least significant byte first. Beyond the end there is nothing but zeros, and
/// `Past` tells.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> file) : file_(file) {}

    std::uint32_t Number(std::size_t at, int bytes) const {
        std::uint32_t value = 0;
        for (int i = 0; i < bytes; ++i)
            value |= std::uint32_t{Byte(at + static_cast<std::size_t>(i))} << 8 * i;
        return value;
    }
    std::uint8_t Byte(std::size_t at) const { return at < file_.size() ? file_[at] : std::uint8_t{0}; }
    bool Past(std::size_t at) const { return at >= file_.size(); }
    bool Holds(std::uint64_t bytes) const { return bytes <= file_.size(); }

private:
    std::span<const std::uint8_t> file_;
};

bool WholeBmp(const Reader& file) {
    constexpr std::uint32_t OldHeaderBytes = 12, Rle8 = 1, Rle4 = 2;
    const std::uint64_t pixelsAt = file.Number(10, 4);
    const bool old = file.Number(14, 4) == OldHeaderBytes;
    const std::uint64_t width = old ? file.Number(18, 2) : file.Number(18, 4);
    const auto signedHeight =
        old ? static_cast<std::int32_t>(file.Number(20, 2)) : static_cast<std::int32_t>(file.Number(22, 4));
    const std::uint64_t height = static_cast<std::uint64_t>(std::abs(std::int64_t{signedHeight}));
    const std::uint64_t bitsPerPixel = file.Number(old ? 24 : 28, 2);
    const std::uint32_t compression = old ? 0 : file.Number(30, 4);
    if (compression == Rle8 || compression == Rle4) {
        const std::uint32_t pixelBytes = file.Number(34, 4);
        return file.Holds(pixelBytes ? pixelsAt + pixelBytes : file.Number(2, 4));
    }
    if (width > 0x7FFFFFFF || bitsPerPixel > 64) return false;
    const std::uint64_t rowBytes = (width * bitsPerPixel + 31) / 32 * 4;
    return height == 0 || rowBytes <= (std::uint64_t{1} << 40) / height
               ? file.Holds(pixelsAt + rowBytes * height)
               : false;
}

/// Every picture of the directory lies within the file.
bool WholeIcon(const Reader& file) {
    constexpr std::size_t DirectoryAt = 6, EntryBytes = 16;
    const std::size_t count = file.Number(4, 2);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = DirectoryAt + i * EntryBytes;
        if (file.Past(entry + EntryBytes - 1)) return false;
        if (!file.Holds(std::uint64_t{file.Number(entry + 8, 4)} + file.Number(entry + 12, 4))) return false;
    }
    return true;
}

/// Walks from block to block as far as the trailer.
bool WholeGif(const Reader& file) {
    constexpr std::uint8_t Trailer = 0x3B, Extension = 0x21, Descriptor = 0x2C;
    auto colourTableBytes = [&](std::size_t flagsAt) {
        const unsigned flags = file.Byte(flagsAt);
        return flags & 0x80 ? std::size_t{3} << ((flags & 7) + 1) : 0;
    };
    std::size_t at = 13 + colourTableBytes(10);
    while (!file.Past(at)) {
        const std::uint8_t kind = file.Byte(at);
        if (kind == Trailer) return true;
        if (kind == Extension)
            at += 2;
        else if (kind == Descriptor)
            at += 10 + colourTableBytes(at + 9) + 1;
        else
            return false;
        while (file.Byte(at) != 0) at += std::size_t{1} + file.Byte(at);
        ++at;
    }
    return false;
}

/// The check sum of PNG chunks (ISO 3309), bit by bit for one byte.
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

/// Walks from chunk to chunk, each with its check sum right, as far as the last one.
bool WholePng(std::span<const std::uint8_t> file) {
    constexpr std::size_t SignatureBytes = 8, Frame = 12;  // length and kind before, check sum behind
    auto bigEndian = [&](std::size_t at) {
        return std::uint32_t{file[at]} << 24 | std::uint32_t{file[at + 1]} << 16 |
               std::uint32_t{file[at + 2]} << 8 | file[at + 3];
    };
    for (std::size_t at = SignatureBytes; at + Frame <= file.size();) {
        const std::size_t length = bigEndian(at);
        if (length > file.size() - at - Frame) return false;
        const auto chunk = file.subspan(at + 4, 4 + length);
        if (Crc(chunk) != bigEndian(at + 8 + length)) return false;
        if (std::ranges::equal(chunk.first(4), std::string_view("IEND"))) return true;
        at += Frame + length;
    }
    return false;
}

/// The end marker is there; whether all before it is, the decoder's warnings tell.
bool WholeJpeg(std::span<const std::uint8_t> file) {
    constexpr std::uint8_t End[] = {0xFF, 0xD9};
    return std::search(file.begin(), file.end(), std::begin(End), std::end(End)) != file.end();
}

/// Binary PBM, PGM or PPM: as many pixel bytes as its numbers ask for.
bool WholePortable(std::span<const std::uint8_t> file) {
    const char kind = static_cast<char>(file[1]);
    std::size_t at = 2;
    std::uint64_t numbers[3] = {0, 0, 1};  // width, height, highest value
    for (int i = 0; i < (kind == '4' ? 2 : 3); ++i) {
        auto blank = [&] { return at < file.size() && (file[at] <= ' '); };
        for (; blank() || (at < file.size() && file[at] == '#'); ++at)
            if (file[at] == '#')
                at = static_cast<std::size_t>(
                    std::find(file.begin() + static_cast<std::ptrdiff_t>(at), file.end(), '\n') -
                    file.begin());
        numbers[i] = 0;
        for (; at < file.size() && file[at] >= '0' && file[at] <= '9' && numbers[i] < 1'000'000; ++at)
            numbers[i] = numbers[i] * 10 + (file[at] - std::uint64_t{'0'});
    }
    const std::uint64_t samples = kind == '6' ? 3 : 1, bytesPerSample = numbers[2] > 255 ? 2 : 1;
    const std::uint64_t rowBytes = kind == '4' ? (numbers[0] + 7) / 8 : numbers[0] * samples * bytesPerSample;
    return at + 1 + rowBytes * numbers[1] <= file.size();
}

}  // namespace

bool IsWholePicture(std::span<const std::uint8_t> file) {
    const std::string_view text = AsText(file);
    auto begins = [&](std::string_view magic) { return text.substr(0, magic.size()) == magic; };
    using namespace std::string_view_literals;
    if (begins("BM")) return WholeBmp(Reader(file));
    if (begins("GIF8")) return WholeGif(Reader(file));
    if (begins("\xFF\xD8")) return WholeJpeg(file);
    if (begins("\x89PNG\r\n\x1A\n")) return WholePng(file);
    if (begins("\0\0\1\0"sv) || begins("\0\0\2\0"sv)) return WholeIcon(Reader(file));
    if (begins("P4") || begins("P5") || begins("P6")) return WholePortable(file);
    return true;
}

}  // namespace tessaloom
