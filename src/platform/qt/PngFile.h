#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessaloom {

/// A PNG file with nothing but what its pixels are made of; nothing when it is cut short or damaged.
///
/// Left out is what may be packed and unpack to gigabytes before the first pixel: texts and colour profiles,
/// which change no pixel of ours.
std::optional<std::vector<std::uint8_t>> EssentialPng(std::span<const std::uint8_t> file);

/// Width and height from its first chunk; nothing when that is none.
struct PngSize {
    std::uint32_t width, height;
};
std::optional<PngSize> SizeOfPng(std::span<const std::uint8_t> beginning);

}  // namespace tessaloom
