#pragma once

#include <string>

namespace tessaloom {

class INI;

/// What the user chose for the whole program: section "General" of the settings file.
struct SetupValues {
    bool autoLoad = true;       ///< Load `lastPortfolio` at start-up.
    std::string lastPortfolio;  ///< Full path of the portfolio opened or saved last; "" for none.

    int startupMode = 2;  ///< How the main window opens: 0 minimized, 1 as it was, 2 maximized.

    /// Place of the main window for mode 1, twips.
    int startupWidth = 0, startupHeight = 0, startupTop = 0, startupLeft = 0;

    int startupState = 2;                  ///< State at the last exit: 0 normal, 1 minimized, 2 maximized.
    int startupLastNonMinimizedState = 2;  ///< 0 or 2; what the tray icon brings back.

    double stationLongitude = 0, stationLatitude = 0;  ///< Decimal degrees, for sunrise and sunset.

    int clearTypeContrast = 1400;  ///< 1000 .. 2200.
    int clearTypeOrientation = 1;  ///< Order of the sub-pixels, 0 or 1.
};

/// The one set of setup values of this process.
SetupValues& Setup();

/// Reads the setup values, completing the file with the defaults of missing keys.
///
/// twipsX, twipsY: the screen's twips per pixel, of which the default window size is made.
void LoadSetup(INI& ini, int twipsX, int twipsY);

/// Writes the setup values. Without `autoLoad` no last portfolio is remembered.
void SaveSetup(INI& ini);

}  // namespace tessaloom
