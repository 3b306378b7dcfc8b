#include "platform/qt/WholePicture.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "platform/qt/GifFile.h"

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

/// The end marker is there; whether all before it is, the decoder's warnings tell.
bool WholeJpeg(std::span<const std::uint8_t> file) {
    constexpr std::uint8_t End[] = {0xFF, 0xD9};
    return std::search(file.begin(), file.end(), std::begin(End), std::end(End)) != file.end();
}

/// Binary PBM, PGM or PPM: as many pixel bytes as its numbers ask for. Written in digits: not many more bytes
/// than that takes, since the toolkit reads blanks and comments slowly.
bool WholePortable(std::span<const std::uint8_t> file) {
    const char kind = static_cast<char>(file[1]);
    const bool bits = kind == '1' || kind == '4', digits = kind <= '3';
    std::size_t at = 2;
    std::uint64_t numbers[3] = {0, 0, 1};  // width, height, highest value
    for (int i = 0; i < (bits ? 2 : 3); ++i) {
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
    const std::uint64_t samples = kind == '6' || kind == '3' ? 3 : 1,
                        bytesPerSample = numbers[2] > 255 ? 2 : 1;
    if (digits) {
        constexpr std::uint64_t DigitsAndBlanks = 8, Comments = 65'536;
        return file.size() <= numbers[0] * numbers[1] * samples * DigitsAndBlanks + Comments;
    }
    const std::uint64_t rowBytes = bits ? (numbers[0] + 7) / 8 : numbers[0] * samples * bytesPerSample;
    return at + 1 + rowBytes * numbers[1] <= file.size();
}

}  // namespace

bool IsWholePicture(PictureFormat format, std::span<const std::uint8_t> file) {
    switch (format) {
        case PictureFormat::Bmp:
            return WholeBmp(Reader(file));
        case PictureFormat::Gif:
            return IsWholeGif(file);
        case PictureFormat::Icon:
            return WholeIcon(Reader(file));
        case PictureFormat::Jpeg:
            return WholeJpeg(file);
        case PictureFormat::Portable:
            return WholePortable(file);
        case PictureFormat::Png:  // see EssentialPng
        case PictureFormat::Svg:
        case PictureFormat::Tiff:
        case PictureFormat::WebP:
            break;
    }
    return true;
}

std::span<const std::uint8_t> FirstOfIcon(std::span<const std::uint8_t> file) {
    constexpr std::size_t BytesAt = 14, OffsetAt = 18;
    const Reader reader(file);
    const std::uint64_t offset = reader.Number(OffsetAt, 4), bytes = reader.Number(BytesAt, 4);
    if (!reader.Holds(offset + bytes)) return {};
    const auto first = file.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(bytes));
    return PictureFormatOf(first) == PictureFormat::Png ? first : std::span<const std::uint8_t>();
}

}  // namespace tessaloom
