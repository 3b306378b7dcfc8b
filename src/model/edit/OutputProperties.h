#pragma once

#include "model/CanvasKeys.h"
#include "model/edit/KeySchedule.h"
#include "model/edit/PropertyChoices.h"
#include "model/edit/PropertyTable.h"

/// What people set of a canvas and of its five outputs.
namespace tessaloom::OutputProperties {

// clang-format off

/// The schedules as rows.
inline constexpr auto FixedSchedule = std::to_array({
    ScheduleEntry<CanvasSaves, [](auto& owner) -> auto& { return owner.FixedSchedule(); }>(),
});
inline constexpr auto SequentialSchedule = std::to_array({
    ScheduleEntry<CanvasSaves, [](auto& owner) -> auto& { return owner.SequentialSchedule(); }>(),
});
inline constexpr auto BackgroundSchedule = std::to_array({
    ScheduleEntry<CanvasSaves, [](auto& owner) -> auto& { return owner.BackgroundSchedule(); }>(),
});
inline constexpr auto UploadSchedule = std::to_array({
    ScheduleEntry<FTPPush, [](auto& owner) -> auto& { return owner.Schedule(); }>(),
});
inline constexpr auto WebSchedule = std::to_array({
    ScheduleEntry<CanvasWebServer, [](auto& owner) -> auto& { return owner.Schedule(); }>(),
});


inline constexpr auto General = WithDefaults({
    {.name = "Name", .label = "&Name", .group = "Canvas", .kind = PropertyKind::Line},
    {.name = "Width", .label = "&Width", .group = "Size", .kind = PropertyKind::Whole,
     .low = 1, .high = 3000, .unit = "px", .relevantIf = "SizeLocked", .relevantValues = "False"},
    {.name = "Height", .label = "&Height", .group = "Size", .kind = PropertyKind::Whole,
     .low = 1, .high = 2000, .unit = "px", .relevantIf = "SizeLocked", .relevantValues = "False"},
    {.name = "SizeLocked", .label = "&Lock the size", .group = "Size", .kind = PropertyKind::Switch},
    {.name = "BackgroundColor", .label = "&Background colour", .group = "Look", .kind = PropertyKind::Colour},
    {.name = "ShadowIntensity", .label = "&Shadow strength", .group = "Look", .kind = PropertyKind::Percent,
     .low = 0, .high = 100, .unit = "%", .tip = "How dark the shadows of the layers are."},
}, CanvasKeys::General, CanvasKeys::BackgroundColor);

inline constexpr auto FixedSave = WithDefaults({
    {.name = "FixedEnabled", .label = "&Save the picture", .group = "File", .kind = PropertyKind::Switch},
    {.name = "FixedFileName", .label = "&File", .group = "File", .kind = PropertyKind::SaveFile,
     .filter = "JPEG pictures|*.jpg *.jpeg", .tip = "Each picture replaces the one before."},
    {.name = "FixedQuality", .label = "&Quality", .group = "File", .kind = PropertyKind::Percent,
     .low = 1, .high = 100, .tip = "Of the JPEG: a higher quality makes a larger file."},
    {.name = "FixedRate", .label = "&Every", .group = "Timing", .kind = PropertyKind::Rate,
     .low = 0, .high = 86400, .unit = "s"},
    {.name = "FixedBaseTime", .label = "Counted f&rom", .group = "Timing", .kind = PropertyKind::TimeOfDay,
     .low = 0, .high = 86399, .tip = "A time of day at which a picture is saved."},
    {.name = "Schedule", .label = "Sche&dule", .group = "Timing", .kind = PropertyKind::Schedule,
     .choices = PropertyChoices::Schedules},
    {.name = "CascadeEnabled", .label = "&Keep older copies", .group = "Older copies", .kind = PropertyKind::Switch,
     .tip = "They are numbered: the higher the number, the older."},
    {.name = "CascadeCount", .label = "&Highest number", .group = "Older copies", .kind = PropertyKind::Whole,
     .low = 1, .high = 1000, .relevantIf = "CascadeEnabled", .relevantValues = "True"},
    {.name = "CascadeMode", .label = "N&umbering", .group = "Older copies", .kind = PropertyKind::Choice,
     .low = 0, .high = 1, .choices = PropertyChoices::CascadeModes,
     .relevantIf = "CascadeEnabled", .relevantValues = "True"},
}, CanvasKeys::Capture, FixedSchedule);

inline constexpr auto SequentialSave = WithDefaults({
    {.name = "SequentialEnabled", .label = "&Save a series of pictures", .group = "Files", .kind = PropertyKind::Switch},
    {.name = "SequentialDirectory", .label = "&Folder", .group = "Files", .kind = PropertyKind::Folder,
     .tip = "Each picture becomes a new file there."},
    {.name = "SequentialType", .label = "Na&mes", .group = "Files", .kind = PropertyKind::Choice,
     .low = 0, .high = 1, .choices = PropertyChoices::SequentialTypes},
    {.name = "SequentialNumber", .label = "&Next number", .group = "Files", .kind = PropertyKind::Whole,
     .low = 0, .high = 99999999, .relevantIf = "SequentialType", .relevantValues = "1"},
    {.name = "SequentialQuality", .label = "&Quality", .group = "Files", .kind = PropertyKind::Percent,
     .low = 1, .high = 100, .tip = "Of the JPEG: a higher quality makes a larger file."},
    {.name = "SequentialRate", .label = "&Every", .group = "Timing", .kind = PropertyKind::Rate,
     .low = 0, .high = 86400, .decimals = 2, .unit = "s"},
    {.name = "SequentialBaseTime", .label = "Counted f&rom", .group = "Timing", .kind = PropertyKind::TimeOfDay,
     .low = 0, .high = 86399, .tip = "A time of day at which a picture is saved."},
    {.name = "Schedule", .label = "Sche&dule", .group = "Timing", .kind = PropertyKind::Schedule,
     .choices = PropertyChoices::Schedules},
}, CanvasKeys::Capture, SequentialSchedule);

inline constexpr auto Wallpaper = WithDefaults({
    {.name = "BackgroundEnabled", .label = "&Show as wallpaper", .group = "Wallpaper", .kind = PropertyKind::Switch,
     .tip = "The picture becomes the background of the computer's desktop."},
    {.name = "BackgroundRate", .label = "&Every", .group = "Timing", .kind = PropertyKind::Rate,
     .low = 0, .high = 86400, .unit = "s"},
    {.name = "BackgroundBaseTime", .label = "Counted f&rom", .group = "Timing", .kind = PropertyKind::TimeOfDay,
     .low = 0, .high = 86399, .tip = "A time of day at which the wallpaper changes."},
    {.name = "Schedule", .label = "Sche&dule", .group = "Timing", .kind = PropertyKind::Schedule,
     .choices = PropertyChoices::Schedules},
}, CanvasKeys::Background, BackgroundSchedule);

inline constexpr auto FTPUpload = WithDefaults({
    {.name = "Enabled", .label = "&Upload by FTP", .group = "Server", .kind = PropertyKind::Switch},
    {.name = "ServerName", .label = "&Server", .group = "Server", .kind = PropertyKind::Line,
     .tip = "Its name, and behind a colon the port where it is not the usual one."},
    {.name = "UserName", .label = "User &name", .group = "Server", .kind = PropertyKind::Line},
    {.name = "Password", .label = "&Password", .group = "Server", .kind = PropertyKind::Password,
     .tip = "It is kept in the canvas's file as it is."},
    {.name = "PassiveFTP", .label = "Passi&ve mode", .group = "Server", .kind = PropertyKind::Switch,
     .tip = "Usually needed behind a router or firewall."},
    {.name = "FilePath", .label = "&File on the server", .group = "Picture", .kind = PropertyKind::Line,
     .tip = "With its folder, for example pictures/harbour.jpg."},
    {.name = "FTPMode", .label = "&Write it", .group = "Picture", .kind = PropertyKind::Choice,
     .low = 0, .high = 2, .choices = PropertyChoices::FTPModes,
     .tip = "Safely: visitors never see half a picture."},
    {.name = "Quality", .label = "&Quality", .group = "Picture", .kind = PropertyKind::Percent,
     .low = 1, .high = 100, .tip = "Of the JPEG: a higher quality makes a larger file."},
    {.name = "Interval", .label = "&Every", .group = "Timing", .kind = PropertyKind::Rate,
     .low = 0, .high = 86400, .unit = "s"},
    {.name = "BaseTime", .label = "Counted f&rom", .group = "Timing", .kind = PropertyKind::TimeOfDay,
     .low = 0, .high = 86399, .tip = "A time of day at which an upload begins."},
    {.name = "Schedule", .label = "Sche&dule", .group = "Timing", .kind = PropertyKind::Schedule,
     .choices = PropertyChoices::Schedules},
    {.name = "KeepConnectionOpen", .label = "Stay &connected", .group = "Connection", .kind = PropertyKind::Switch,
     .tip = "The connection is kept between two uploads."},
    {.name = "KeepAlive", .label = "&Keep the connection alive", .group = "Connection", .kind = PropertyKind::Switch,
     .tip = "A command every half minute keeps the server from hanging up.",
     .relevantIf = "KeepConnectionOpen", .relevantValues = "True"},
}, CanvasKeys::FTPPushKeys, UploadSchedule);

inline constexpr auto WebPicture = WithDefaults({
    {.name = "Enabled", .label = "&Show on the web server", .group = "Page", .kind = PropertyKind::Switch},
    {.name = "FileName", .label = "&Name", .group = "Page", .kind = PropertyKind::Line,
     .tip = "What follows the server's address, for example Canvas01.jpg."},
    {.name = "Quality", .label = "&Quality", .group = "Page", .kind = PropertyKind::Percent,
     .low = 1, .high = 100, .tip = "Of the JPEG: a higher quality makes a larger file."},
    {.name = "Interval", .label = "&Oldest picture", .group = "Timing", .kind = PropertyKind::Real,
     .low = 0, .high = 60, .decimals = 1, .unit = "s",
     .tip = "Requests within this time are answered with the same picture; 0: with the present one."},
    {.name = "Schedule", .label = "Sche&dule", .group = "Timing", .kind = PropertyKind::Schedule,
     .choices = PropertyChoices::Schedules},
    {.name = "OffScheduleFile", .label = "&Picture at other times", .group = "Timing", .kind = PropertyKind::Line,
     .tip = "A file of the web folder that is shown outside the schedule."},
}, CanvasKeys::WebServerKeys, WebSchedule);

// clang-format on

}  // namespace tessaloom::OutputProperties
