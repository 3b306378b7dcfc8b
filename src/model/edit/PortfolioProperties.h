#pragma once

#include "model/PortfolioKeys.h"
#include "model/edit/PropertyChoices.h"
#include "model/edit/PropertyTable.h"

/// What people set of a portfolio's feeds, web server, weather input and script.
namespace tessaloom::PortfolioProperties {

// clang-format off

inline constexpr auto Feed = WithDefaults({
    {.name = "Enabled", .label = "&In use", .group = "Video feed", .kind = PropertyKind::Switch},
    {.name = "Name", .label = "&Source", .group = "Video feed", .kind = PropertyKind::Line,
     .tip = "A camera of this computer, or the address of a stream or a video file."},
    {.name = "FrameRate", .label = "&Frame rate", .group = "Video feed", .kind = PropertyKind::Real,
     .low = VideoFeed::SlowestRate, .high = 120, .decimals = 2, .unit = "frames/s"},
    {.name = "ShowPreview", .label = "Show in the main &window", .group = "Video feed", .kind = PropertyKind::Switch},
}, PortfolioKeys::Feed);

inline constexpr auto Motion = WithDefaults({
    {.name = "MotionEnabled", .label = "&Watch for motion", .group = "Detection", .kind = PropertyKind::Switch},
    {.name = "MotionBrighterMotionLimit", .label = "&Lighter by", .group = "Detection", .kind = PropertyKind::Real,
     .low = 0, .high = 100, .decimals = 2, .unit = "%",
     .tip = "From this much on, a point counts as lighter than in the frame before."},
    {.name = "MotionDarkerMotionLimit", .label = "&Darker by", .group = "Detection", .kind = PropertyKind::Real,
     .low = -100, .high = 0, .decimals = 2, .unit = "%",
     .tip = "From this much on, a point counts as darker than in the frame before."},
    {.name = "MotionCoverageLimit", .label = "&Coverage", .group = "Detection", .kind = PropertyKind::Real,
     .low = 0, .high = 100, .decimals = 2, .unit = "%",
     .tip = "How much of the picture must change; the scale is logarithmic: 50 % are a thousandth of it."},
    {.name = "MotionDiffPreBlurRadius", .label = "&Blur before", .group = "Detection", .kind = PropertyKind::Choice,
     .low = 0, .high = 3, .choices = PropertyChoices::Blurs, .tip = "Against the noise of the camera."},
    {.name = "MotionTriggerRestInterval", .label = "&Rest after a motion", .group = "Detection",
     .kind = PropertyKind::Choice, .low = -60, .high = 60, .unit = "sec", .unitBelow = "frames",
     .choices = PropertyChoices::RestIntervals},
    {.name = "MotionBeep", .label = "Bee&p", .group = "On motion", .kind = PropertyKind::Switch},
    {.name = "MotionSaveFixed", .label = "&Save to one file", .group = "On motion", .kind = PropertyKind::Switch},
    {.name = "MotionSaveFixedFileName", .label = "&File", .group = "On motion", .kind = PropertyKind::SaveFile,
     .filter = "JPEG pictures|*.jpg *.jpeg", .relevantIf = "MotionSaveFixed", .relevantValues = "True"},
    {.name = "MotionSaveSequential", .label = "Save to &new files", .group = "On motion", .kind = PropertyKind::Switch},
    {.name = "MotionSaveSequentialPath", .label = "F&older", .group = "On motion", .kind = PropertyKind::Folder,
     .relevantIf = "MotionSaveSequential", .relevantValues = "True"},
    {.name = "MotionSaveDiff", .label = "Save the differ&ence, too", .group = "On motion", .kind = PropertyKind::Switch,
     .tip = "The picture of what changed, beside each saved frame."},
    {.name = "MotionShowDiffImageCoverage", .label = "Show the &graph", .group = "Display", .kind = PropertyKind::Switch,
     .tip = "The coverage over time, in the window of the difference picture."},
}, PortfolioKeys::Motion);

inline constexpr auto Web = WithDefaults({
    {.name = "Enabled", .label = "&Run the web server", .group = "Web server", .kind = PropertyKind::Switch},
    {.name = "Port", .label = "&Port", .group = "Web server", .kind = PropertyKind::Whole, .low = 1, .high = 65535,
     .tip = "Ports below 1024 may need special rights. Takes effect when the server is started."},
    {.name = "AllowNonCanvasServes", .label = "Serve &files, too", .group = "Web server", .kind = PropertyKind::Switch,
     .tip = "Besides the pictures of the canvases, the files of the web folder."},
    {.name = "WebPath", .label = "Web f&older", .group = "Web server", .kind = PropertyKind::Folder,
     .relevantIf = "AllowNonCanvasServes", .relevantValues = "True"},
}, PortfolioKeys::Web);

inline constexpr auto Weather = WithDefaults({
    {.name = "CSVEnabled", .label = "&Read weather data", .group = "File", .kind = PropertyKind::Switch},
    {.name = "CSVFile", .label = "&File", .group = "File", .kind = PropertyKind::OpenFile,
     .filter = "Weather data|*.csv *.txt", .tip = "The file that the weather station's program writes."},
    {.name = "CSVDelay", .label = "&Every", .group = "File", .kind = PropertyKind::Rate,
     .low = 0, .high = 86400, .unit = "s"},
    {.name = "CSVBaseTime", .label = "C&ounted from", .group = "File", .kind = PropertyKind::TimeOfDay,
     .low = 0, .high = 86400, .tip = "A time of day at which the file is read."},
    {.name = "CSVBarometerOffset", .label = "Add to the &barometer", .group = "Station", .kind = PropertyKind::Real,
     .low = -1000, .high = 1000, .decimals = 2},
    {.name = "CSVAltitude", .label = "&Altitude", .group = "Station", .kind = PropertyKind::Real,
     .low = -2000, .high = 40000, .decimals = 1, .tip = "Of the station above the sea."},
    {.name = "CSVAltitudeUnits", .label = "Altitude &in", .group = "Station", .kind = PropertyKind::Choice,
     .low = 0, .high = 1, .choices = PropertyChoices::AltitudeUnits},
    {.name = "CSVTemperatureUnits", .label = "Te&mperature in", .group = "Station", .kind = PropertyKind::Choice,
     .low = 0, .high = 1, .choices = PropertyChoices::TemperatureUnits},
    {.name = "CSVTemperatureTrendThreshold", .label = "&Temperature trend from", .group = "Trends",
     .kind = PropertyKind::Real, .low = 0, .high = 1000, .decimals = 2,
     .tip = "From this rate on, the temperature counts as rising or falling."},
    {.name = "CSVBarometricTrendThreshold", .label = "&Pressure trend from", .group = "Trends",
     .kind = PropertyKind::Real, .low = 0, .high = 1000, .decimals = 3,
     .tip = "From this rate on, the pressure counts as rising or falling."},
    {.name = "CSVWindStatisticsInterval", .label = "&Wind over the last", .group = "Trends",
     .kind = PropertyKind::Whole, .low = 0, .high = 86400, .unit = "s",
     .tip = "The time over which wind speed, direction and gusts are summed up."},
}, PortfolioKeys::Weather);

inline constexpr auto Scripting = WithDefaults({
    {.name = "Enabled", .label = "&Run the script", .group = "Script", .kind = PropertyKind::Switch},
    {.name = "FileName", .label = "&File", .group = "Script", .kind = PropertyKind::OpenFile,
     .filter = "Scripts|*.txt *.vbs"},
    {.name = "AllowInterval", .label = "&Interval", .group = "Events", .kind = PropertyKind::Switch,
     .tip = "At the rate below."},
    {.name = "AllowTextUpdate", .label = "&Text update", .group = "Events", .kind = PropertyKind::Switch,
     .tip = "When a text that asks the script is due."},
    {.name = "AllowGraphicUpdate", .label = "&Picture update", .group = "Events", .kind = PropertyKind::Switch,
     .tip = "When a picture that asks the script is due."},
    {.name = "AllowStartup", .label = "St&art-up", .group = "Events", .kind = PropertyKind::Switch},
    {.name = "AllowShutdown", .label = "Shut&down", .group = "Events", .kind = PropertyKind::Switch},
    {.name = "AllowMotionDetected", .label = "&Motion detected", .group = "Events", .kind = PropertyKind::Switch},
    {.name = "AllowNewCSVData", .label = "&New weather data", .group = "Events", .kind = PropertyKind::Switch},
    {.name = "AllowWebRequest", .label = "&Web request", .group = "Events", .kind = PropertyKind::Switch},
    {.name = "Rate", .label = "Interval &every", .group = "Timing", .kind = PropertyKind::Rate,
     .low = 0, .high = 86400, .decimals = 1, .unit = "s", .relevantIf = "AllowInterval", .relevantValues = "True"},
    {.name = "BaseTime", .label = "C&ounted from", .group = "Timing", .kind = PropertyKind::TimeOfDay,
     .low = 0, .high = 86399, .relevantIf = "AllowInterval", .relevantValues = "True"},
}, PortfolioKeys::Scripting);

// clang-format on

}  // namespace tessaloom::PortfolioProperties
