#pragma once

#include "support/Testing.h"

namespace tessaloom::testing {

/// A picture file of tests/data/pictures. All show the same 33 x 24 pixels in four parts, 17 and 16 wide, 12
/// high each: red and green above, blue and white below. "animated.gif" has a second picture, its negative;
/// the red part of "alpha.png" is a quarter solid; "odd.jpg" is sampled 4 x 1.
inline std::vector<std::uint8_t> PictureData(std::string_view name) {
    std::ifstream file(std::string(TEST_DATA "/pictures/").append(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The colours of the four parts, 0x00BBGGRR: above left and right, below left and right.
inline constexpr int Quarters[] = {0x0000FF, 0x00FF00, 0xFF0000, 0xFFFFFF};

/// The same file with a few bytes changed at random, and sometimes cut short.
inline std::vector<std::uint8_t> Mutated(std::vector<std::uint8_t> file, std::mt19937& random) {
    for (unsigned changes = random() % 6 + 1; changes > 0; --changes)
        file[random() % file.size()] = static_cast<std::uint8_t>(random());
    if (random() % 8 == 0) file.resize(random() % file.size());
    return file;
}

}  // namespace tessaloom::testing
