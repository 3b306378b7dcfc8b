#pragma once

#include <array>

#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/Key.h"
#include "publish/CanvasSaves.h"
#include "publish/VideoStreaming.h"
#include "text/Text.h"
#include "time/Schedule.h"

/// The keys of the canvas file, section by section, in file order.
///
/// In defaults, "##" stands for the two digits of the canvas's slot. The keys "PosX" and "PosY" take theirs
/// from the window.
namespace tessaloom::CanvasKeys {

// clang-format off

inline constexpr auto General = std::to_array<Key<Canvas>>({
    Entry<Plain,   &Canvas::Name,       &Canvas::SetName>      ("Name", "New Canvas"),
    Entry<Whole,   &Canvas::Width,      &Canvas::SetWidth>     ("Width", "320"),
    Entry<Whole,   &Canvas::Height,     &Canvas::SetHeight>    ("Height", "240"),
    Entry<Boolean, &Canvas::SizeLocked, &Canvas::SetSizeLocked>("SizeLocked", "False"),
    Entry<WindowStateNumber, &Canvas::WindowState, &Canvas::SetWindowState>("WindowState", "2"),
    Entry<Whole,   &Canvas::Left,       &Canvas::SetLeft>      ("PosX", ""),
    Entry<Whole,   &Canvas::Top,        &Canvas::SetTop>       ("PosY", ""),
    Entry<Whole,   &Canvas::ShadowIntensity, &Canvas::SetShadowIntensity>("ShadowIntensity", "30"),
    Entry<Whole,   &Canvas::FormType,   &Canvas::SetFormType>  ("FormType", "0"),
});

inline constexpr auto BackgroundColor = std::to_array<Key<Canvas>>({
    Entry<Colour, &Canvas::BackgroundColor, &Canvas::SetBackgroundColor>("BackgroundColor", "&HFFFFFF"),
});

inline constexpr auto Background = std::to_array<Key<CanvasSaves>>({
    Entry<Boolean,   &CanvasSaves::BackgroundEnabled,  &CanvasSaves::SetBackgroundEnabled> ("BackgroundEnabled", "False"),
    Entry<Real,      &CanvasSaves::BackgroundRate,     &CanvasSaves::SetBackgroundRate>    ("BackgroundRate", "60"),
    Entry<TimeOfDay, &CanvasSaves::BackgroundBaseTime, &CanvasSaves::SetBackgroundBaseTime>("BackgroundBaseTime", "00:00:00"),
});

inline constexpr auto Capture = std::to_array<Key<CanvasSaves>>({
    Entry<Boolean,   &CanvasSaves::FixedEnabled,       &CanvasSaves::SetFixedEnabled>      ("FixedEnabled", "False"),
    Entry<Real,      &CanvasSaves::FixedRate,          &CanvasSaves::SetFixedRate>         ("FixedRate", "60"),
    Entry<TimeOfDay, &CanvasSaves::FixedBaseTime,      &CanvasSaves::SetFixedBaseTime>     ("FixedBaseTime", "00:00:00"),
    Entry<Plain,     &CanvasSaves::FixedFileName,      &CanvasSaves::SetFixedFileName>     ("FixedFileName", "images\\fixed.jpg"),
    Entry<Whole,     &CanvasSaves::FixedQuality,       &CanvasSaves::SetFixedQuality>      ("FixedQuality", "80"),
    Entry<Boolean,   &CanvasSaves::CascadeEnabled,     &CanvasSaves::SetCascadeEnabled>    ("CascadeEnabled", "False"),
    Entry<Whole,     &CanvasSaves::CascadeCount,       &CanvasSaves::SetCascadeCount>      ("CascadeCount", "100"),
    Entry<Whole,     &CanvasSaves::CascadeMode,        &CanvasSaves::SetCascadeMode>       ("CascadeMode", "0"),
    Entry<Boolean,   &CanvasSaves::SequentialEnabled,  &CanvasSaves::SetSequentialEnabled> ("SequentialEnabled", "False"),
    Entry<Real,      &CanvasSaves::SequentialRate,     &CanvasSaves::SetSequentialRate>    ("SequentialRate", "60"),
    Entry<TimeOfDay, &CanvasSaves::SequentialBaseTime, &CanvasSaves::SetSequentialBaseTime>("SequentialBaseTime", "00:00:00"),
    Entry<Plain,     &CanvasSaves::SequentialPath,     &CanvasSaves::SetSequentialPath>    ("SequentialDirectory", "sequential\\"),
    Entry<Whole,     &CanvasSaves::SequentialType,     &CanvasSaves::SetSequentialType>    ("SequentialType", "0"),
    Entry<Whole,     &CanvasSaves::SequentialNumber,   &CanvasSaves::SetSequentialNumber>  ("SequentialNumber", "0"),
    Entry<Whole,     &CanvasSaves::SequentialQuality,  &CanvasSaves::SetSequentialQuality> ("SequentialQuality", "80"),
});

/// In a section of its own for each output, among the layer's keys for a layer.
inline constexpr auto ScheduleKeys = std::to_array<Key<Schedule>>({
    Entry<Whole, &Schedule::ScheduleMode,       &Schedule::SetScheduleMode>      ("ScheduleMode", "0"),
    Entry<Whole, &Schedule::StartMode,          &Schedule::SetStartMode>         ("StartMode", "0"),
    Entry<Whole, &Schedule::StopMode,           &Schedule::SetStopMode>          ("StopMode", "0"),
    Entry<Real,  &Schedule::StartAbsoluteTime,  &Schedule::SetStartAbsoluteTime> ("StartAbsoluteTime", "0"),
    Entry<Real,  &Schedule::StartSunriseOffset, &Schedule::SetStartSunriseOffset>("StartSunriseOffset", "0"),
    Entry<Real,  &Schedule::StartSunsetOffset,  &Schedule::SetStartSunsetOffset> ("StartSunsetOffset", "0"),
    Entry<Real,  &Schedule::StopAbsoluteTime,   &Schedule::SetStopAbsoluteTime>  ("StopAbsoluteTime", "0"),
    Entry<Real,  &Schedule::StopSunriseOffset,  &Schedule::SetStopSunriseOffset> ("StopSunriseOffset", "0"),
    Entry<Real,  &Schedule::StopSunsetOffset,   &Schedule::SetStopSunsetOffset>  ("StopSunsetOffset", "0"),
});

inline constexpr auto FTPPushKeys = std::to_array<Key<FTPPush>>({
    Entry<Switch,    &FTPPush::Enabled,            &FTPPush::SetEnabled>           ("Enabled", "False"),
    Entry<TimeOfDay, &FTPPush::BaseTime,           &FTPPush::SetBaseTime>          ("BaseTime", "00:00:00"),
    Entry<Plain,     &FTPPush::Path,               &FTPPush::SetPath>              ("FilePath", "FTPPush##.jpg"),
    Entry<Whole,     &FTPPush::FTPMode,            &FTPPush::SetFTPMode>           ("FTPMode", "0"),
    Entry<Boolean,   &FTPPush::KeepAlive,          &FTPPush::SetKeepAlive>         ("KeepAlive", "False"),
    Entry<Boolean,   &FTPPush::KeepConnectionOpen, &FTPPush::SetKeepConnectionOpen>("KeepConnectionOpen", "False"),
    Entry<Real,      &FTPPush::Interval,           &FTPPush::SetInterval>          ("Interval", "60"),
    Entry<Boolean,   &FTPPush::PassiveFTP,         &FTPPush::SetPassiveFTP>        ("PassiveFTP", "False"),
    Entry<Password,  &FTPPush::Password,           &FTPPush::SetPassword>          ("Password", ""),
    Entry<Whole,     &FTPPush::Quality,            &FTPPush::SetQuality>           ("Quality", "80"),
    Entry<Plain,     &FTPPush::ServerName,         &FTPPush::SetServerName>        ("ServerName", "ftp.example.com"),
    Entry<Plain,     &FTPPush::UserName,           &FTPPush::SetUserName>          ("UserName", ""),
});

inline constexpr auto WebServerKeys = std::to_array<Key<CanvasWebServer>>({
    Entry<Switch, &CanvasWebServer::Enabled,         &CanvasWebServer::SetEnabled>        ("Enabled", "False"),
    Entry<Plain,  &CanvasWebServer::FileName,        &CanvasWebServer::SetFileName>       ("FileName", "Canvas##.jpg"),
    Entry<Real,   &CanvasWebServer::Interval,        &CanvasWebServer::SetInterval>       ("Interval", "0"),
    Entry<Whole,  &CanvasWebServer::Quality,         &CanvasWebServer::SetQuality>        ("Quality", "80"),
    Entry<Plain,  &CanvasWebServer::OffScheduleFile, &CanvasWebServer::SetOffScheduleFile>("OffScheduleFile", "offair.jpg"),
});

/// Of a text layer's section after "Enabled" (whose presence marks the layer) and "Text"; the schedule's keys
/// stand between the two parts.
inline constexpr auto TextBeforeSchedule = std::to_array<Key<Text>>({
    Entry<Whole,   &Text::Layer,         &Text::SetLayer>        ("Layer", "1"),
    Entry<Whole,   &Text::Alignment,     &Text::SetAlignment>    ("Align", "0"),
    Entry<Colour,  &Text::Color,         &Text::SetColor>        ("Color", "&H808080"),
    Entry<Boolean, &Text::FontBold,      &Text::SetFontBold>     ("FontBold", "False"),
    Entry<Boolean, &Text::FontItalic,    &Text::SetFontItalic>   ("FontItalic", "False"),
    Entry<Plain,   &Text::FontName,      &Text::SetFontName>     ("FontName", "Arial"),
    Entry<Single,  &Text::FontSize,      &Text::SetFontSize>     ("FontSize", "14"),
    Entry<Whole,   &Text::FontSmoothing, &Text::SetFontSmoothing>("FontSmoothing", "0"),
    Entry<Whole,   &Text::Opacity,       &Text::SetOpacity>      ("Opacity", "100"),
    Entry<Whole,   &Text::OpacityMode,   &Text::SetOpacityMode>  ("OpacityMode", "2"),
    Entry<Real,    &Text::Rate,          &Text::SetRate>         ("Interval", "1"),
    Entry<Angle,   &Text::RotationAngle, &Text::SetRotationAngle>("RotationAngle", "0"),
});

inline constexpr auto TextAfterSchedule = std::to_array<Key<Text>>({
    Entry<Boolean,   &Text::Scripted,       &Text::SetScripted>      ("Scripted", "False"),
    Entry<Boolean,   &Text::Shadow,         &Text::SetShadow>        ("Shadow", "False"),
    Entry<Whole,     &Text::ShadowOffsetX,  &Text::SetShadowOffsetX> ("ShadowOffsetX", "2"),
    Entry<Whole,     &Text::ShadowOffsetY,  &Text::SetShadowOffsetY> ("ShadowOffsetY", "2"),
    Entry<Whole,     &Text::ShadowSize,     &Text::SetShadowSize>    ("ShadowSize", "1"),
    Entry<TimeOfDay, &Text::UpdateBaseTime, &Text::SetUpdateBaseTime>("UpdateBaseTime", "00:00:00"),
    Entry<Whole,     &Text::x,              &Text::Setx>             ("LocationX", "0"),
    Entry<Whole,     &Text::Y,              &Text::SetY>             ("LocationY", "0"),
});

/// Of a graphic layer's section after "Enabled".
inline constexpr auto GraphicBeforeSchedule = std::to_array<Key<Graphic>>({
    Entry<Whole,   &Graphic::Alignment,       &Graphic::SetAlignment>      ("Align", "0"),
    Entry<Colour,  &Graphic::BackgroundColor, &Graphic::SetBackgroundColor>("BackgroundColor", "&H000000"),
    Entry<Whole,   &Graphic::ColorProcessing, &Graphic::SetColorProcessing>("ColorProcessing", "0"),
    Entry<Whole,   &Graphic::CropBottom,      &Graphic::SetCropBottom>     ("CropBottom", "0"),
    Entry<Whole,   &Graphic::CropLeft,        &Graphic::SetCropLeft>       ("CropLeft", "0"),
    Entry<Whole,   &Graphic::CropRight,       &Graphic::SetCropRight>      ("CropRight", "0"),
    Entry<Whole,   &Graphic::CropTop,         &Graphic::SetCropTop>        ("CropTop", "0"),
    Entry<Whole,   &Graphic::FeatherRadius,   &Graphic::SetFeatherRadius>  ("FeatherRadius", "0"),
    Entry<Whole,   &Graphic::FeatherWidth,    &Graphic::SetFeatherWidth>   ("FeatherWidth", "0"),
    Entry<Real,    &Graphic::Rate,            &Graphic::SetRate>           ("Interval", "10"),
    Entry<Whole,   &Graphic::Layer,           &Graphic::SetLayer>          ("Layer", "1"),
    Entry<Whole,   &Graphic::Opacity,         &Graphic::SetOpacity>        ("Opacity", "100"),
    Entry<Plain,   &Graphic::OpacityFileName, &Graphic::SetOpacityFileName>("OpacityFileName", ""),
    Entry<Whole,   &Graphic::OpacityMode,     &Graphic::SetOpacityMode>    ("OpacityMode", "2"),
    Entry<Boolean, &Graphic::OpacityUseFile,  &Graphic::SetOpacityUseFile> ("OpacityUseFile", "False"),
    Entry<Angle,   &Graphic::RotationAngle,   &Graphic::SetRotationAngle>  ("RotationAngle", "0"),
});

inline constexpr auto GraphicAfterSchedule = std::to_array<Key<Graphic>>({
    Entry<Boolean, &Graphic::Scripted,            &Graphic::SetScripted>           ("Scripted", "False"),
    Entry<Boolean, &Graphic::Shadow,              &Graphic::SetShadow>             ("Shadow", "False"),
    Entry<Whole,   &Graphic::ShadowSize,          &Graphic::SetShadowSize>         ("ShadowSize", "1"),
    Entry<Whole,   &Graphic::ShadowOffsetX,       &Graphic::SetShadowOffsetX>      ("ShadowOffsetX", "2"),
    Entry<Whole,   &Graphic::ShadowOffsetY,       &Graphic::SetShadowOffsetY>      ("ShadowOffsetY", "2"),
    Entry<Plain,   &Graphic::SourceFileName,      &Graphic::SetSourceFileName>     ("SourceFileName", ""),
    Entry<Whole,   &Graphic::SourceType,          &Graphic::SetSourceType>         ("SourceType", "3"),
    Entry<Plain,   &Graphic::SourceURL,           &Graphic::SetSourceURL>          ("SourceURL", ""),
    Entry<Plain,   &Graphic::SourceVideoFeedName, &Graphic::SetSourceVideoFeedName>("SourceVideoFeedName", ""),
    Entry<Whole,   &Graphic::SourceCanvas,        &Graphic::SetSourceCanvas>       ("SourceCanvas", "1"),
    Entry<Boolean, &Graphic::Stretched,           &Graphic::SetStretched>          ("Stretched", "False"),
    Entry<Whole,   &Graphic::StretchHeight,       &Graphic::SetStretchHeight>      ("StretchedHeight", "240"),
    Entry<Whole,   &Graphic::StretchWidth,        &Graphic::SetStretchWidth>       ("StretchedWidth", "320"),
    // The spelling of this name is kept: existing documents have it.
    Entry<Boolean, &Graphic::StretchSmoothing,    &Graphic::SetStretchSmoothing>   ("StrechedSmoothing", "False"),
    Entry<Whole,   &Graphic::TransparentColorCount,  &Graphic::SetTransparentColorCount> ("TransparentColorCount", "1"),
    Entry<Boolean, &Graphic::TransparentColorEnable, &Graphic::SetTransparentColorEnable>("TransparentColorEnabled", "False"),
});

/// The last ones, behind the table of transparent colours.
inline constexpr auto GraphicAfterTable = std::to_array<Key<Graphic>>({
    Entry<TimeOfDay, &Graphic::UpdateBaseTime, &Graphic::SetUpdateBaseTime>("UpdateBaseTime", "00:00:00"),
    Entry<Whole,     &Graphic::x,              &Graphic::Setx>             ("LocationX", "0"),
    Entry<Whole,     &Graphic::Y,              &Graphic::SetY>             ("LocationY", "0"),
});

// clang-format on

}  // namespace tessaloom::CanvasKeys
