#pragma once

#include <array>
#include <string_view>

namespace tessaloom {

/// The modes of `ColorProcess`. The numbers are stored in files, so they are fixed.
enum class ColorMode {
    None = 0,
    Greyscale = 1,  ///< By ITU-R BT.601.
    Negative = 2,
    Brighter = 3,         ///< + 32.
    Darker = 4,           ///< - 32.
    MoreContrast = 5,     ///< Distance from middle grey times 1.25.
    LessContrast = 6,     ///< The same times 0.8.
    LighterMidtones = 7,  ///< Gamma 1.4.
    DarkerMidtones = 8,   ///< Gamma 1 / 1.4.
    MoreSaturation = 9,   ///< Distance from grey times 1.4.
    LessSaturation = 10,  ///< The same times 0.6.
    Warmer = 11,          ///< Red times 1.1, blue times 0.9.
    Cooler = 12,          ///< The other way round.
    AutoLevels = 13,      ///< Spreads the range between the outermost half percents, all components alike.
    Sharpen = 14,         ///< Adds the difference from the mean of the four neighbours.
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
