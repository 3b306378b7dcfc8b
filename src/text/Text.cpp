#include "text/Text.h"

#include "core/ErrorReport.h"
#include "text/Tags.h"
#include "text/TextBox.h"

#include <cmath>
#include <utility>

namespace tessaloom {
namespace {

constexpr std::string_view Module = "Text.cls";
constexpr int ThroughTheMap = 3;  ///< The opacity mode in which the glyphs' coverage decides.

FontQuality QualityOf(int smoothing) {
    constexpr FontQuality qualities[] = {FontQuality::NonAntialiased, FontQuality::Antialiased,
                                         FontQuality::ClearType};
    return qualities[smoothing];
}

}  // namespace

Text::Text(LayerHost& host, LayerTiming& timing, Fonts& fonts, const TagSource* tags)
    : host_(host), entry_(timing), fonts_(fonts), tags_(tags), schedule_(&host) {
    schedule_.SetRedraw([this] {
        changed_ = true;
        host_.ScheduleStateChanged();
    });
    SetCanvasValue(host.CanvasIndex());
    entry_.force = true;
    entry_.scripted = scripted_;
    CopyNextTime();
}

void Text::UnloadClass() {
    image_.ClearDIB();
    coverage_.SetWidthHeight(0, 0);
    haveDrawn_ = false;
    blank_ = true;
}

void Text::ProcessText() {
    Trap({Module, "ProcessText"}, [&] {
        if (!tags_) return;
        processed_ = text_;
        ExpandTags(processed_, host_.Now(), *tags_);
        if (previousResult_ == processed_) return;
        previousResult_ = processed_;
        changed_ = true;
        entry_.force = true;
    });
}

void Text::SetNextTime() {
    timing_.SetNextTime(host_.Now());
    CopyNextTime();
}

void Text::RestartTiming() {
    timing_.Restart(host_.Now());
    CopyNextTime();
}

void Text::ForceUpdate() {
    timing_.Force(host_.Now());
    CopyNextTime();
    changed_ = true;
    entry_.force = true;
}

void Text::UpdateImage() {
    Trap({Module, "UpdateImage"}, [&] {
        const bool recompose = std::exchange(recompose_, false);
        changed_ = false;
        entry_.force = false;
        FindWanted();
        const bool redraw = !haveDrawn_ || wanted_ != drawn_;
        if (redraw) {
            PlaceText();
            drawn_ = wanted_;
            haveDrawn_ = true;
        }
        SetUpImage();
        if (redraw || recompose) host_.PassChanged(layer_);
    });
}

// Member by member, so that the texts keep their memory from one update to the next.
void Text::FindWanted() {
    wanted_.text = processed_;
    wanted_.font.faceName = fontName_;
    wanted_.font.pixelHeight = static_cast<int>(std::lround(fontSize_ * DotsPerInch / 72.0));
    wanted_.font.bold = fontBold_;
    wanted_.font.italic = fontItalic_;
    wanted_.font.quality = QualityOf(fontSmoothing_);
    wanted_.clearType = fonts_.ClearType();
    wanted_.column = alignment_ % 3;
}

void Text::PlaceText() {
    const TextBox box(wanted_.text, wanted_.font, wanted_.column, fonts_);
    blank_ = !box.Draw(coverage_);
    if (!blank_) image_.SetTextCoverage(coverage_);
}

void Text::SetUpImage() {
    image_.SetPictureType(Image::Text);
    image_.SetAutoSize(true);
    image_.SetTextColor(color_);
    image_.SetOpacityValue(opacity_);
    image_.SetOpacityMode(ThroughTheMap);
    image_.SetRotationAngle(rotationAngle_);
    image_.SetShadowEnabled(shadow_);
    image_.SetShadowSize(shadowSize_);
    image_.SetAlignment(alignment_);
}

LayerLook Text::Look(int canvasHeight) {
    return Trap({Module, "Look"}, [&] {
        if (blank_) return LayerLook();
        LayerLook look = image_.Look(x_, y_, canvasHeight);
        if (shadow_) look.shadow = image_.ShadowArea(x_ + shadowOffsetX_, y_ + shadowOffsetY_, canvasHeight);
        return look;
    });
}

void Text::MergeImageTo(DIB& canvas, const PixelArea& within) {
    Trap({Module, "MergeImageTo"}, [&] {
        if (!blank_) image_.MergeImageTo(canvas, x_, y_, within);
    });
}

void Text::MergeShadowTo(DIB& shadow, const PixelArea& within) {
    Trap({Module, "MergeShadowTo"}, [&] {
        if (!blank_) image_.MergeShadowTo(shadow, x_ + shadowOffsetX_, y_ + shadowOffsetY_, within);
    });
}

void Text::SetCanvasValue(int slot) {
    canvasIndex_ = slot;
    schedule_.SetCanvasIndex(slot);
}

void Text::SetValue(std::string_view text) {
    if (Store(text_, std::string(text))) Touch();
}

// What a script supplies is drawn by the update that called the script, so nothing is forced here.
void Text::SetProcessedString(std::string_view text) {
    if (Store(processed_, std::string(text))) changed_ = true;
}

void Text::SetFontName(std::string_view name) {
    if (Store(fontName_, std::string(name))) Touch();
}

void Text::SetRotationAngle(float degrees) {
    if (degrees < 0) degrees += 360;
    Set(rotationAngle_, degrees, {0, 360});
}

void Text::SetScripted(bool scripted) {
    if (!Store(scripted_, scripted)) return;
    entry_.scripted = scripted;
    Touch();
}

void Text::SetEnabled(bool enabled) {
    if (!Store(enabled_, enabled)) return;
    host_.PassChanged(layer_);
    Touch();
}

void Text::SetLayer(int pass) {
    const int before = layer_;
    if (!Store(layer_, pass, {0, 3})) return;
    host_.PassChanged(before);
    host_.PassChanged(layer_);
    Touch();
}

// The next time stays, so that a new rate alone draws nothing.
void Text::SetRate(double seconds) {
    if (!timing_.SetRate(seconds, host_)) return;
    CopyNextTime();
    changed_ = true;
    host_.SettingChanged();
}

void Text::SetUpdateBaseTime(int seconds) {
    if (!timing_.SetBaseTime(seconds)) return;
    changed_ = true;
    host_.SettingChanged();
}

void Text::Touch() {
    changed_ = true;
    recompose_ = true;
    entry_.force = true;
    host_.SettingChanged();
}

void Text::CopyNextTime() { entry_.nextTime = timing_.NextTime(); }

}  // namespace tessaloom
