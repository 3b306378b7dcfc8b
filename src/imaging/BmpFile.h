#pragma once

#include <cstdint>
#include <vector>

namespace tessaloom {

class DIB;

/// The bytes of a 24-bit ".bmp" file of the same pixels; empty without pixels.
std::vector<std::uint8_t> WriteBmp(const DIB& picture);

}  // namespace tessaloom
