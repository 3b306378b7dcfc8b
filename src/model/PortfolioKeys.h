#pragma once

#include <array>

#include "model/Key.h"
#include "publish/WebServer.h"
#include "script/host/Script.h"
#include "text/VWS.h"
#include "video/MotionDetect.h"
#include "video/VideoFeed.h"

/// The keys of the portfolio file, section by section, in the order in which they are written.
namespace tessaloom::PortfolioKeys {

// clang-format off

/// In section "VideoFeeds", each name behind "Feed" and the feed's slot; the motion keys of a feed follow.
inline constexpr auto Feed = std::to_array<Key<VideoFeed>>({
    Entry<Plain,   &VideoFeed::FeedName,    &VideoFeed::SetFeedName>   ("Name", ""),
    Entry<Switch,  &VideoFeed::Enabled,     &VideoFeed::SetEnabled>    ("Enabled", "False"),
    Entry<Real,    &VideoFeed::Rate,        &VideoFeed::SetRate>       ("FrameRate", "30"),
    Entry<Switch,  &VideoFeed::ShowPreview, &VideoFeed::SetShowPreview>("ShowPreview", "False"),
});

inline constexpr auto Motion = std::to_array<Key<MotionDetect>>({
    Entry<Real,    &MotionDetect::BrighterPercent,     &MotionDetect::SetBrighterPercent>    ("MotionBrighterMotionLimit", "100"),
    Entry<Real,    &MotionDetect::CoveragePercent,     &MotionDetect::SetCoveragePercent>    ("MotionCoverageLimit", "100"),
    Entry<Real,    &MotionDetect::DarkerPercent,       &MotionDetect::SetDarkerPercent>      ("MotionDarkerMotionLimit", "-100"),
    Entry<Whole,   &MotionDetect::DiffPreBlurRadius,   &MotionDetect::SetDiffPreBlurRadius>  ("MotionDiffPreBlurRadius", "0"),
    Entry<Boolean, &MotionDetect::Enabled,             &MotionDetect::SetEnabled>            ("MotionEnabled", "False"),
    Entry<Boolean, &MotionDetect::MotionBeep,          &MotionDetect::SetMotionBeep>         ("MotionBeep", "False"),
    Entry<Whole,   &MotionDetect::MotionTriggerRestInterval, &MotionDetect::SetMotionTriggerRestInterval>("MotionTriggerRestInterval", "0"),
    Entry<Boolean, &MotionDetect::SaveDiff,            &MotionDetect::SetSaveDiff>           ("MotionSaveDiff", "False"),
    Entry<Boolean, &MotionDetect::SaveFixed,           &MotionDetect::SetSaveFixed>          ("MotionSaveFixed", "False"),
    Entry<Plain,   &MotionDetect::SaveFixedFileName,   &MotionDetect::SetSaveFixedFileName>  ("MotionSaveFixedFileName", "motion\\motion.jpg"),
    Entry<Boolean, &MotionDetect::SaveSequential,      &MotionDetect::SetSaveSequential>     ("MotionSaveSequential", "False"),
    Entry<Plain,   &MotionDetect::SaveSequentialPath,  &MotionDetect::SetSaveSequentialPath> ("MotionSaveSequentialPath", "motion\\"),
    Entry<Boolean, &MotionDetect::ShowDiffImageCoverage, &MotionDetect::SetShowDiffImageCoverage>("MotionShowDiffImageCoverage", "False"),
});

inline constexpr auto Weather = std::to_array<Key<VWS>>({
    Entry<Real,      &VWS::CSVDelay,                     &VWS::SetCSVDelay>                    ("CSVDelay", "15"),
    Entry<Switch,    &VWS::CSVEnabled,                   &VWS::SetCSVEnabled>                  ("CSVEnabled", "False"),
    Entry<TimeOfDay, &VWS::CSVBaseTime,                  &VWS::SetCSVBaseTime>                 ("CSVBaseTime", "00:00:00"),
    Entry<Plain,     &VWS::CSVFile,                      &VWS::SetCSVFile>                     ("CSVFile", ""),
    Entry<Whole,     &VWS::CSVWindStatisticsInterval,    &VWS::SetCSVWindStatisticsInterval>   ("CSVWindStatisticsInterval", "60"),
    Entry<Real,      &VWS::CSVTemperatureTrendThreshold, &VWS::SetCSVTemperatureTrendThreshold>("CSVTemperatureTrendThreshold", "1"),
    Entry<Real,      &VWS::CSVBarometricTrendThreshold,  &VWS::SetCSVBarometricTrendThreshold> ("CSVBarometricTrendThreshold", "0.05"),
    Entry<Real,      &VWS::CSVBarometerOffset,           &VWS::SetCSVBarometerOffset>          ("CSVBarometerOffset", "0.00"),
    Entry<Real,      &VWS::CSVAltitude,                  &VWS::SetCSVAltitude>                 ("CSVAltitude", "0"),
    Entry<Whole,     &VWS::CSVAltitudeUnits,             &VWS::SetCSVAltitudeUnits>            ("CSVAltitudeUnits", "0"),
    Entry<Whole,     &VWS::CSVTemperatureUnits,          &VWS::SetCSVTemperatureUnits>         ("CSVTemperatureUnits", "0"),
});

/// Reading goes in another order than writing: what switches an activity on comes where its settings are known.
inline constexpr auto WeatherLoadOrder = std::to_array<std::string_view>({
    "CSVEnabled", "CSVDelay", "CSVBaseTime", "CSVFile", "CSVWindStatisticsInterval", "CSVBarometricTrendThreshold",
    "CSVTemperatureTrendThreshold", "CSVBarometerOffset", "CSVAltitude", "CSVAltitudeUnits", "CSVTemperatureUnits",
});

inline constexpr auto Web = std::to_array<Key<WebServer>>({
    Entry<Switch,  &WebServer::Enabled,              &WebServer::SetEnabled>             ("Enabled", "False"),
    Entry<Boolean, &WebServer::AllowNonCanvasServes, &WebServer::SetAllowNonCanvasServes>("AllowNonCanvasServes", "False"),
    Entry<Whole,   &WebServer::Port,                 &WebServer::SetPort>                ("Port", "80"),
    Entry<Plain,   &WebServer::WebPath,              &WebServer::SetWebPath>             ("WebPath", "web"),
});

inline constexpr auto WebLoadOrder = std::to_array<std::string_view>({
    "Port", "WebPath", "AllowNonCanvasServes", "Enabled",
});

inline constexpr auto Scripting = std::to_array<Key<Script>>({
    Entry<Trimmed,   &Script::FileName,            &Script::SetFileName>           ("FileName", "script.txt"),
    Entry<Boolean,   &Script::AllowInterval,       &Script::SetAllowInterval>      ("AllowInterval", "False"),
    Entry<Boolean,   &Script::AllowTextUpdate,     &Script::SetAllowTextUpdate>    ("AllowTextUpdate", "False"),
    Entry<Boolean,   &Script::AllowGraphicUpdate,  &Script::SetAllowGraphicUpdate> ("AllowGraphicUpdate", "False"),
    Entry<Boolean,   &Script::AllowStartup,        &Script::SetAllowStartup>       ("AllowStartup", "False"),
    Entry<Boolean,   &Script::AllowShutdown,       &Script::SetAllowShutdown>      ("AllowShutdown", "False"),
    Entry<Boolean,   &Script::AllowMotionDetected, &Script::SetAllowMotionDetected>("AllowMotionDetected", "False"),
    Entry<Boolean,   &Script::AllowNewCSVData,     &Script::SetAllowNewCSVData>    ("AllowNewCSVData", "False"),
    Entry<Boolean,   &Script::AllowWebRequest,     &Script::SetAllowWebRequest>    ("AllowWebRequest", "False"),
    Entry<Real,      &Script::Rate,                &Script::SetRate>               ("Rate", "1"),
    Entry<TimeOfDay, &Script::BaseTime,            &Script::SetBaseTime>           ("BaseTime", "00:00:00"),
    Entry<Switch,    &Script::Enabled,             &Script::SetEnabled>            ("Enabled", "False"),
});

// clang-format on

}  // namespace tessaloom::PortfolioKeys
