#pragma once

#include "imaging/Alignment.h"
#include "model/edit/LayerKeys.h"
#include "model/edit/PropertyChoices.h"
#include "model/edit/PropertyTable.h"
#include "platform/PictureFormat.h"

/// What people set of a layer, in the order in which they look for it. The angle of a text and the mode of
/// its opacity are kept in the file alike, but the latter decides nothing and is not shown.
namespace tessaloom::LayerProperties {

// clang-format off

inline constexpr auto TextSchedule = std::to_array({
    ScheduleEntry<Text, [](auto& layer) -> auto& { return layer.Schedule(); }>(),
});
inline constexpr auto GraphicSchedule = std::to_array({
    ScheduleEntry<Graphic, [](auto& layer) -> auto& { return layer.Schedule(); }>(),
});

/// What texts and pictures alike have; the rows of several layers of both kinds.
inline constexpr Property Shared[] = {
    {.name = "Enabled", .label = "Shown", .group = "Layer", .kind = PropertyKind::Switch},

    {.name = "LocationX", .label = "Across", .group = "Place", .kind = PropertyKind::Whole,
     .low = -3000, .high = 3000, .unit = "px", .tip = "Pixels from the left edge of the canvas."},
    {.name = "LocationY", .label = "Down", .group = "Place", .kind = PropertyKind::Whole,
     .low = -2000, .high = 2000, .unit = "px", .tip = "Pixels from the top edge of the canvas."},
    {.name = "Align", .label = "Anchor", .group = "Place", .kind = PropertyKind::Choice,
     .low = FirstAlignment, .high = LastAlignment, .choices = PropertyChoices::Anchors,
     .tip = "The point of the layer that stays in its place when its size changes."},
    {.name = "Layer", .label = "Level", .group = "Place", .kind = PropertyKind::Choice,
     .low = 0, .high = 3, .choices = PropertyChoices::Levels,
     .tip = "Layers of a higher level lie on top of those of a lower one; within a level, texts lie on top of pictures."},
    {.name = "RotationAngle", .label = "Turned by", .group = "Place", .kind = PropertyKind::Angle,
     .low = 0, .high = 360, .decimals = 1, .unit = "\u00B0", .tip = "Counterclockwise."},

    {.name = "Opacity", .label = "Opacity", .group = "Look", .kind = PropertyKind::Percent,
     .low = 0, .high = 100, .unit = "%"},
    {.name = "Shadow", .label = "Shadow", .group = "Look", .kind = PropertyKind::Switch},
    {.name = "ShadowSize", .label = "Shadow edge", .group = "Look", .kind = PropertyKind::Choice,
     .low = 1, .high = 4, .choices = PropertyChoices::ShadowSizes, .relevantIf = "Shadow", .relevantValues = "True"},
    {.name = "ShadowOffsetX", .label = "Shadow to the right", .group = "Look", .kind = PropertyKind::Whole,
     .low = -3000, .high = 3000, .unit = "px", .relevantIf = "Shadow", .relevantValues = "True"},
    {.name = "ShadowOffsetY", .label = "Shadow downwards", .group = "Look", .kind = PropertyKind::Whole,
     .low = -2000, .high = 2000, .unit = "px", .relevantIf = "Shadow", .relevantValues = "True"},

    {.name = "Interval", .label = "Update every", .group = "Timing", .kind = PropertyKind::Rate,
     .low = 0, .high = 86400, .decimals = 2, .unit = "s", .tip = "How often the layer is refreshed."},
    {.name = "UpdateBaseTime", .label = "Counted from", .group = "Timing", .kind = PropertyKind::TimeOfDay,
     .low = 0, .high = 86400, .tip = "A time of day at which an update falls."},
    {.name = "Schedule", .label = "Schedule", .group = "Timing", .kind = PropertyKind::Schedule,
     .choices = PropertyChoices::Schedules,
     .tip = "The hours of the day in which the layer is shown."},

    {.name = "Scripted", .label = "Ask the script", .group = "Script", .kind = PropertyKind::Switch,
     .tip = "The script is called at each update and may change the layer."},
};

/// The shared row of that name; with a heading or a tip of the kind's own where one is given.
consteval Property Common(std::string_view name, std::string_view group = {}, std::string_view tip = {}) {
    for (Property row : Shared)
        if (row.name == name) {
            if (!group.empty()) row.group = group;
            if (!tip.empty()) row.tip = tip;
            return row;
        }
    throw "no shared property";
}

inline constexpr auto OfText = WithDefaults({
    Common("Enabled", "Text"),
    {.name = "Text", .label = "Text", .group = "Text", .kind = PropertyKind::TaggedText,
     .tip = "Words between < and > are tags: they become the time, the weather and the like."},
    {.name = "FontName", .label = "Font", .group = "Text", .kind = PropertyKind::Font},
    {.name = "FontSize", .label = "Font size", .group = "Text", .kind = PropertyKind::Real,
     .low = 2, .high = 288, .decimals = 1, .unit = "pt"},
    {.name = "FontBold", .label = "Bold", .group = "Text", .kind = PropertyKind::Switch},
    {.name = "FontItalic", .label = "Italic", .group = "Text", .kind = PropertyKind::Switch},
    {.name = "Color", .label = "Colour", .group = "Text", .kind = PropertyKind::Colour},
    {.name = "FontSmoothing", .label = "Smooth edges", .group = "Text", .kind = PropertyKind::Choice,
     .low = 0, .high = 2, .choices = PropertyChoices::FontSmoothings},

    Common("LocationX"),
    Common("LocationY"),
    Common("Align"),
    Common("Layer"),
    Common("RotationAngle"),

    Common("Opacity"),
    Common("Shadow"),
    Common("ShadowSize"),
    Common("ShadowOffsetX"),
    Common("ShadowOffsetY"),

    Common("Interval", {}, "How often the tags of the text are looked up."),
    Common("UpdateBaseTime"),
    Common("Schedule"),

    Common("Scripted", {}, "The script is called at each update and may change the text."),
}, LayerKeys::TextHead, CanvasKeys::TextBeforeSchedule, CanvasKeys::TextAfterSchedule, TextSchedule);

inline constexpr auto OfGraphic = WithDefaults({
    Common("Enabled", "Source"),
    {.name = "SourceType", .label = "Source", .group = "Source", .kind = PropertyKind::Choice,
     .low = 0, .high = 4, .choices = PropertyChoices::Sources},
    {.name = "SourceVideoFeedName", .label = "Camera", .group = "Source", .kind = PropertyKind::Feed,
     .relevantIf = "SourceType", .relevantValues = "0"},
    {.name = "SourceFileName", .label = "File", .group = "Source", .kind = PropertyKind::OpenFile,
     .filter = PictureFileFilter, .relevantIf = "SourceType", .relevantValues = "1"},
    {.name = "SourceURL", .label = "Address", .group = "Source", .kind = PropertyKind::Address,
     .relevantIf = "SourceType", .relevantValues = "2"},
    {.name = "BackgroundColor", .label = "Block colour", .group = "Source", .kind = PropertyKind::Colour,
     .relevantIf = "SourceType", .relevantValues = "3"},
    {.name = "SourceCanvas", .label = "Canvas", .group = "Source", .kind = PropertyKind::Canvas,
     .low = 1, .high = 20, .relevantIf = "SourceType", .relevantValues = "4"},
    {.name = "ColorProcessing", .label = "Colour effect", .group = "Source", .kind = PropertyKind::Choice,
     .low = 0, .high = 999, .choices = PropertyChoices::ColourEffects,
     .relevantIf = "SourceType", .relevantValues = "0,1,2,4"},

    Common("LocationX"),
    Common("LocationY"),
    Common("Align"),
    Common("Layer"),
    Common("RotationAngle"),

    {.name = "Stretched", .label = "Change the size", .group = "Size and crop", .kind = PropertyKind::Switch,
     .tip = "Off: the picture keeps the size it has.", .relevantIf = "SourceType", .relevantValues = "0,1,2,4"},
    {.name = "StretchedWidth", .label = "Width", .group = "Size and crop", .kind = PropertyKind::Whole,
     .low = 0, .high = 3000, .unit = "px", .tip = "Of a block, or of a picture whose size is changed."},
    {.name = "StretchedHeight", .label = "Height", .group = "Size and crop", .kind = PropertyKind::Whole,
     .low = 0, .high = 2000, .unit = "px", .tip = "Of a block, or of a picture whose size is changed."},
    {.name = "StrechedSmoothing", .label = "Smooth", .group = "Size and crop", .kind = PropertyKind::Switch,
     .tip = "Finer, but slower.", .relevantIf = "Stretched", .relevantValues = "True"},
    {.name = "CropLeft", .label = "Cut left", .group = "Size and crop", .kind = PropertyKind::Whole,
     .low = 0, .high = 3000, .unit = "px", .relevantIf = "SourceType", .relevantValues = "0,1,2,4"},
    {.name = "CropTop", .label = "Cut top", .group = "Size and crop", .kind = PropertyKind::Whole,
     .low = 0, .high = 2000, .unit = "px", .relevantIf = "SourceType", .relevantValues = "0,1,2,4"},
    {.name = "CropRight", .label = "Cut right", .group = "Size and crop", .kind = PropertyKind::Whole,
     .low = 0, .high = 3000, .unit = "px", .relevantIf = "SourceType", .relevantValues = "0,1,2,4"},
    {.name = "CropBottom", .label = "Cut bottom", .group = "Size and crop", .kind = PropertyKind::Whole,
     .low = 0, .high = 2000, .unit = "px", .relevantIf = "SourceType", .relevantValues = "0,1,2,4"},

    Common("Opacity", "Opacity"),
    {.name = "OpacityMode", .label = "Laid down by", .group = "Opacity", .kind = PropertyKind::Choice,
     .low = 0, .high = 3, .choices = PropertyChoices::OpacityModes},
    {.name = "FeatherWidth", .label = "Soft edge", .group = "Opacity", .kind = PropertyKind::Whole,
     .low = 0, .high = 3000, .unit = "px", .tip = "How far the picture fades in from its edge."},
    {.name = "FeatherRadius", .label = "Round corners", .group = "Opacity", .kind = PropertyKind::Whole,
     .low = 0, .high = 3000, .unit = "px", .tip = "The radius of the corners."},
    {.name = "OpacityUseFile", .label = "Use a mask", .group = "Opacity", .kind = PropertyKind::Switch,
     .tip = "Another picture says where this one shows: white shows it, black hides it."},
    {.name = "OpacityFileName", .label = "Mask file", .group = "Opacity", .kind = PropertyKind::OpenFile,
     .filter = PictureFileFilter, .relevantIf = "OpacityUseFile", .relevantValues = "True"},

    {.name = "TransparentColorEnabled", .label = "Make colours transparent", .group = "Transparent colours",
     .kind = PropertyKind::Switch},
    {.name = "TransparentColorTable", .label = "Colours", .group = "Transparent colours",
     .kind = PropertyKind::TransparentColours, .relevantIf = "TransparentColorEnabled", .relevantValues = "True"},

    Common("Shadow", "Shadow"),
    Common("ShadowSize", "Shadow"),
    Common("ShadowOffsetX", "Shadow"),
    Common("ShadowOffsetY", "Shadow"),

    Common("Interval", {}, "How often the picture is taken from its source."),
    Common("UpdateBaseTime"),
    Common("Schedule"),

    Common("Scripted"),
}, LayerKeys::GraphicHead, CanvasKeys::GraphicBeforeSchedule, CanvasKeys::GraphicAfterSchedule,
   LayerKeys::GraphicColours, CanvasKeys::GraphicAfterTable, GraphicSchedule);

// clang-format on

}  // namespace tessaloom::LayerProperties
