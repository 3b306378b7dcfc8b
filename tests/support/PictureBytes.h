#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/Testing.h"

namespace tessaloom::testing {

/// Builds picture files byte by byte.
class PictureBytes {
public:
    PictureBytes() = default;
    explicit PictureBytes(std::string_view text) { Text(text); }

    PictureBytes& Text(std::string_view text) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        return *this;
    }
    /// `count` bytes, the most significant first.
    PictureBytes& Big(std::uint64_t value, int count) {
        for (int i = count - 1; i >= 0; --i) bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
        return *this;
    }
    /// The least significant first.
    PictureBytes& Little(std::uint64_t value, int count) {
        for (int i = 0; i < count; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
        return *this;
    }
    PictureBytes& Append(const std::vector<std::uint8_t>& more) {
        bytes_.insert(bytes_.end(), more.begin(), more.end());
        return *this;
    }
    /// A chunk of a PNG or MNG file: length, kind, content, check sum.
    PictureBytes& Chunk(std::string_view kind, const PictureBytes& content = {}) {
        Big(content.bytes_.size(), 4);
        const std::size_t from = bytes_.size();
        Text(kind).Append(content.bytes_);
        std::uint32_t crc = ~0U;
        for (std::size_t i = from; i < bytes_.size(); ++i) {
            crc ^= bytes_[i];
            for (int bit = 0; bit < 8; ++bit) crc = crc & 1 ? crc >> 1 ^ 0xEDB88320U : crc >> 1;
        }
        return Big(~crc, 4);
    }

    std::vector<std::uint8_t> Bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace tessaloom::testing
