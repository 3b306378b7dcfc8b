#pragma once

#include <array>
#include <string_view>

namespace tessaloom {

/// The modes of `ColorProcess`. The numbers are stored in files, so they are fixed.
enum class ColorMode {
    None = 0,
    Greyscale = 1,
    Negative = 2,
    Brighter = 3,
    Darker = 4,
    MoreContrast = 5,
    LessContrast = 6,
    LighterMidtones = 7,
    DarkerMidtones = 8,
    MoreSaturation = 9,
    LessSaturation = 10,
    Warmer = 11,
    Cooler = 12,
    AutoLevels = 13,
    Sharpen = 14,
    SwapRedAndBlue = 15,
};

/// The names as a list shows them; the position is the mode's number.
inline constexpr std::array<std::string_view, 16> ColorModeNames = {
    "None",
    "Greyscale",
    "Negative",
    "Brighter",
    "Darker",
    "More contrast",
    "Less contrast",
    "Lighter midtones",
    "Darker midtones",
    "More saturation",
    "Less saturation",
    "Warmer",
    "Cooler",
    "Auto levels",
    "Sharpen",
    "Swap red and blue",
};

}  // namespace tessaloom
