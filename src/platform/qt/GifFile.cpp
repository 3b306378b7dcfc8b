#include "platform/qt/GifFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace tessaloom {

namespace {

constexpr std::uint8_t Trailer = 0x3B, Extension = 0x21, Descriptor = 0x2C;

/// Walks from block to block. Beyond the end of the file there is nothing but zeros.
class Blocks {
public:
    explicit Blocks(std::span<const std::uint8_t> file) : file_(file), at_(13 + ColourTableBytes(10)) {}

    /// Goes to the next block and tells its kind; nothing at the end of the file and for unknown kinds.
    std::optional<std::uint8_t> Next() {
        if (at_ >= file_.size()) return std::nullopt;
        const std::uint8_t kind = Byte(at_);
        if (kind == Extension)
            at_ += 2;
        else if (kind == Descriptor)
            at_ += 10 + ColourTableBytes(at_ + 9);
        else if (kind != Trailer)
            return std::nullopt;
        return kind;
    }

    /// Of a picture's data: the first byte, before its sub-blocks.
    std::uint8_t CodeBits() { return Byte(at_++); }

    /// The next sub-block of the present block; an empty one ends it.
    std::span<const std::uint8_t> NextPart() {
        const std::size_t length = Byte(at_++);
        const std::size_t begin = std::min(at_, file_.size());
        at_ += length;
        return file_.subspan(begin, std::min(length, file_.size() - begin));
    }

private:
    std::uint8_t Byte(std::size_t at) const { return at < file_.size() ? file_[at] : std::uint8_t{0}; }
    std::size_t ColourTableBytes(std::size_t flagsAt) const {
        const unsigned flags = Byte(flagsAt);
        return flags & 0x80 ? std::size_t{3} << ((flags & 7) + 1) : 0;
    }

    std::span<const std::uint8_t> file_;
    std::size_t at_;
};

constexpr unsigned MaximumCodeBits = 12;

/// Follows the codes of one picture, and keeps of each only how many pixels it stands for.
class CodeLengths {
public:
    explicit CodeLengths(unsigned colourBits) : colourBits_(colourBits), clear_(1U << colourBits) {
        lengths_.fill(1);
        Clear();
    }

    /// The pixels of the codes that are complete with `byte`.
    std::int64_t Take(std::uint8_t byte) {
        if (ended_) return 0;
        std::int64_t pixels = 0;
        held_ |= std::uint32_t{byte} << heldBits_;
        heldBits_ += 8;
        while (heldBits_ >= codeBits_ && !ended_) {
            const std::uint32_t code = held_ & ((1U << codeBits_) - 1);
            held_ >>= codeBits_;
            heldBits_ -= codeBits_;
            pixels += Pixels(code);
        }
        return pixels;
    }

private:
    void Clear() {
        next_ = clear_ + 2;
        codeBits_ = colourBits_ + 1;
        previous_.reset();
    }

    std::int64_t Pixels(std::uint32_t code) {
        ended_ = code == clear_ + 1;
        if (ended_) return 0;
        if (code == clear_) {
            Clear();
            return 0;
        }
        const auto previous = std::exchange(previous_, code);
        if (!previous) return 1;
        const std::int64_t longer = Length(*previous) + 1;
        const std::int64_t pixels = code < next_ ? Length(code) : longer;
        if (next_ < lengths_.size()) {
            lengths_[next_++] = static_cast<std::uint16_t>(longer);
            if (next_ >= 1U << codeBits_ && codeBits_ < MaximumCodeBits) ++codeBits_;
        }
        return pixels;
    }

    std::int64_t Length(std::uint32_t code) const { return code < lengths_.size() ? lengths_[code] : 1; }

    unsigned colourBits_;
    std::uint32_t clear_;     ///< Codes below it are colours; it empties the table, the one after it ends.
    std::uint32_t next_ = 0;  ///< The code that the table gets next.
    unsigned codeBits_ = 0;
    std::optional<std::uint32_t> previous_;  ///< The code before; nothing after emptying the table.
    std::array<std::uint16_t, std::size_t{1} << MaximumCodeBits> lengths_;  ///< Pixels of each code.
    std::uint32_t held_ = 0;  ///< Bits that make no whole code yet.
    unsigned heldBits_ = 0;
    bool ended_ = false;
};

}  // namespace

bool IsWholeGif(std::span<const std::uint8_t> file) {
    Blocks blocks(file);
    while (const auto kind = blocks.Next()) {
        if (*kind == Trailer) return true;
        if (*kind == Descriptor) blocks.CodeBits();
        while (!blocks.NextPart().empty()) {}
    }
    return false;
}

std::int64_t UnpackedGifPixels(std::span<const std::uint8_t> file) {
    Blocks blocks(file);
    for (auto kind = blocks.Next(); kind && *kind != Trailer; kind = blocks.Next()) {
        const unsigned colourBits = *kind == Descriptor ? blocks.CodeBits() : 0U;
        CodeLengths codes(std::min(colourBits, MaximumCodeBits));
        std::int64_t pixels = 0;
        for (auto part = blocks.NextPart(); !part.empty(); part = blocks.NextPart())
            if (*kind == Descriptor)
                for (const std::uint8_t byte : part) pixels += codes.Take(byte);
        if (*kind == Descriptor) return pixels;
    }
    return 0;
}

}  // namespace tessaloom
