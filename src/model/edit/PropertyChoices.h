#pragma once

#include <array>

#include "imaging/pixelops/ColorModes.h"
#include "model/edit/Property.h"

/// The lists that properties are chosen from.
namespace tessaloom::PropertyChoices {

/// The only schedule that has a name, for those who reset one.
inline constexpr PropertyChoice Schedules[] = {
    {"0;0;0;0;0;0;0;0;0", "24-hours"},
};

inline constexpr PropertyChoice Sources[] = {
    {"0", "Camera"        },
    {"1", "Picture file"  },
    {"2", "Web address"   },
    {"3", "Coloured block"},
    {"4", "Another canvas"},
};

inline constexpr PropertyChoice Levels[] = {
    {"0", "Bottom"      },
    {"1", "Lower middle"},
    {"2", "Upper middle"},
    {"3", "Top"         },
};

/// In the order of `Anchor`, imaging/Alignment.h.
inline constexpr PropertyChoice Anchors[] = {
    {"0", "Top left"     },
    {"1", "Top centre"   },
    {"2", "Top right"    },
    {"3", "Left"         },
    {"4", "Centre"       },
    {"5", "Right"        },
    {"6", "Bottom left"  },
    {"7", "Bottom centre"},
    {"8", "Bottom right" },
};

inline constexpr PropertyChoice FontSmoothings[] = {
    {"0", "None"                   },
    {"1", "Smooth"                 },
    {"2", "Smooth, for LCD screens"},
};

/// The usual one first.
inline constexpr PropertyChoice OpacityModes[] = {
    {"2", "Blend"                           },
    {"3", "Blend, only by soft edge or mask"},
    {"0", "Lighten"                         },
    {"1", "Darken by its brightness"        },
};

inline constexpr PropertyChoice ShadowSizes[] = {
    {"1", "Sharp"        },
    {"2", "Slightly soft"},
    {"3", "Soft"         },
    {"4", "Very soft"    },
};

inline constexpr PropertyChoice CascadeModes[] = {
    {"0", "Number 0000 is the newest picture"},
    {"1", "Copies hold older pictures only"  },
};

inline constexpr PropertyChoice SequentialTypes[] = {
    {"0", "Date and time" },
    {"1", "Running number"},
};

inline constexpr PropertyChoice FTPModes[] = {
    {"0", "Safely: delete the old file, then rename"},
    {"1", "Safely: rename over the old file"        },
    {"2", "Directly under its name"                 },
};

inline constexpr PropertyChoice Blurs[] = {
    {"0", "None"},
    {"1", "3x3" },
    {"2", "5x5" },
    {"3", "7x7" },
};

/// Frames are negative, seconds positive.
inline constexpr PropertyChoice RestIntervals[] = {
    {"0",  "None"   },
    {"-1", "1 frame"},
    {"1",  "1 sec"  },
    {"5",  "5 sec"  },
    {"10", "10 sec" },
};

inline constexpr PropertyChoice AltitudeUnits[] = {
    {"0", "Metres"},
    {"1", "Feet"  },
};

inline constexpr PropertyChoice TemperatureUnits[] = {
    {"0", "Celsius"   },
    {"1", "Fahrenheit"},
};

namespace detail {

inline constexpr std::array<std::string_view, 16> Numbers = {"0", "1", "2",  "3",  "4",  "5",  "6",  "7",
                                                             "8", "9", "10", "11", "12", "13", "14", "15"};

constexpr auto ColourEffects() {
    std::array<PropertyChoice, ColorModeNames.size()> choices{};
    for (std::size_t mode = 0; mode < choices.size(); ++mode)
        choices[mode] = {Numbers[mode], ColorModeNames[mode]};
    return choices;
}

}  // namespace detail

inline constexpr auto ColourEffects = detail::ColourEffects();

}  // namespace tessaloom::PropertyChoices
