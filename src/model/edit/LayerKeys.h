#pragma once

#include <array>
#include <string>
#include <string_view>

#include "model/CanvasKeys.h"
#include "model/edit/KeySchedule.h"

/// All that makes up a layer, or a canvas with its outputs, as keys: those of the canvas file, and those that
/// the file treats apart.
namespace tessaloom::LayerKeys {

/// A table of transparent colours as one value: its groups in use, each "colour colour tolerance opacity",
/// separated by "; ".
struct ColourTableText {
    static constexpr std::string_view Name = "TransparentColorTable";

    /// Also sets how many groups are in use. Groups behind the first that is none are left out.
    static KeyFault Read(Graphic& graphic, const std::string& text);
    static KeyFault Judge(const std::string& text);
    static std::string Write(const Graphic& graphic);
};

// clang-format off

inline constexpr auto TextHead = std::to_array<Key<Text>>({
    Entry<Boolean, &Text::Enabled, &Text::SetEnabled>("Enabled", "True"),
    Entry<Plain,   &Text::Value,   &Text::SetValue>  ("Text", ""),
});

inline constexpr auto GraphicHead = std::to_array<Key<Graphic>>({
    Entry<Boolean, &Graphic::Enabled, &Graphic::SetEnabled>("Enabled", "True"),
});

inline constexpr auto GraphicColours = std::to_array<Key<Graphic>>({
    {ColourTableText::Name, "&H000000 &H000000 0 0", false, false,
     &ColourTableText::Read, &ColourTableText::Judge, &ColourTableText::Write},
});

// clang-format on

/// What belongs to a window, or counts by itself, is no setting of the picture.
inline constexpr std::string_view NotSettings[] = {"WindowState", "PosX", "PosY", "SequentialNumber"};
constexpr bool IsSetting(std::string_view name) {
    for (const std::string_view other : NotSettings)
        if (name == other) return false;
    return true;
}

/// Calls `visit(key, owner)` for each key of the layer, always in the same order.
template <typename Visit>
void ForEach(Text& text, Visit visit) {
    for (const auto& key : TextHead) visit(key, text);
    for (const auto& key : CanvasKeys::TextBeforeSchedule) visit(key, text);
    for (const auto& key : CanvasKeys::ScheduleKeys) visit(key, text.Schedule());
    for (const auto& key : CanvasKeys::TextAfterSchedule) visit(key, text);
}

template <typename Visit>
void ForEach(Graphic& graphic, Visit visit) {
    for (const auto& key : GraphicHead) visit(key, graphic);
    for (const auto& key : CanvasKeys::GraphicBeforeSchedule) visit(key, graphic);
    for (const auto& key : CanvasKeys::ScheduleKeys) visit(key, graphic.Schedule());
    for (const auto& key : CanvasKeys::GraphicAfterSchedule) visit(key, graphic);
    for (const auto& key : GraphicColours) visit(key, graphic);
    for (const auto& key : CanvasKeys::GraphicAfterTable) visit(key, graphic);
}

/// The same for the canvas itself and its outputs.
template <typename Visit>
void ForEach(Canvas& canvas, Visit visit) {
    const auto each = [&](const auto& keys, auto& owner) {
        for (const auto& key : keys)
            if (IsSetting(key.name)) visit(key, owner);
    };
    CanvasSaves& saves = canvas.Saves();
    FTPPush& upload = canvas.VideoStreaming().FTPPush();
    CanvasWebServer& web = canvas.VideoStreaming().CanvasWebServer();
    each(CanvasKeys::General, canvas);
    each(CanvasKeys::BackgroundColor, canvas);
    each(CanvasKeys::Background, saves);
    each(CanvasKeys::Capture, saves);
    for (Schedule* schedule : {&saves.FixedSchedule(), &saves.SequentialSchedule(),
                               &saves.BackgroundSchedule(), &upload.Schedule(), &web.Schedule()})
        each(CanvasKeys::ScheduleKeys, *schedule);
    each(CanvasKeys::FTPPushKeys, upload);
    each(CanvasKeys::WebServerKeys, web);
}

/// Sets all of a new layer to the defaults of the canvas file.
template <typename Layer>
void SetDefaults(Layer& layer) {
    ForEach(layer, [](const auto& key, auto& owner) { key.read(owner, std::string(key.fallback)); });
}

/// Finds the feed of a layer's name anew; without a name it is the first one.
void FollowFeedName(Canvas& canvas, Graphic& graphic);

}  // namespace tessaloom::LayerKeys
