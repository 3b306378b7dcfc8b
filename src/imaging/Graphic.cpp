#include "imaging/Graphic.h"

#include <algorithm>
#include <utility>

#include "core/ErrorReport.h"
#include "core/Store.h"
#include "imaging/Alignment.h"
#include "platform/UrlTransfer.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "Graphic.cls";

constexpr Range<double> Rates = {0, 86400};      // seconds
constexpr Range<double> BaseTimes = {0, 86400};  // seconds after midnight
constexpr Range<int> Columns = {-3000, 3000};    // pixels
constexpr Range<int> Rows = {-2000, 2000};       // pixels
constexpr Range<int> Widths = {0, 3000};         // pixels
constexpr Range<int> Heights = {0, 2000};        // pixels
constexpr Range<int> Percents = {0, 100};
constexpr Range<int> Colours = {0, Graphic::LargestColor};
constexpr Range<int> Passes = {0, 3};
constexpr Range<int> Sources = {Graphic::VideoFeed, Graphic::OtherCanvas};
constexpr Range<int> Feeds = {Graphic::NoFeed, 9};
constexpr Range<int> Canvases = {1, 20};
constexpr Range<int> Alignments = {FirstAlignment, LastAlignment};
constexpr Range<int> OpacityModes = {0, 3};
constexpr Range<int> ColorModes = {0, 999};  // room for modes to come
constexpr Range<int> ShadowSizes = {1, 4};

/// What the image is told of each source.
int PictureTypeOf(int sourceType) {
    switch (sourceType) {
        case Graphic::PictureFile:
            return Image::File;
        case Graphic::Address:
            return Image::FetchedFile;
        case Graphic::PlainBlock:
            return Image::Block;
        default:
            return Image::Supplied;
    }
}

}  // namespace

Graphic::Graphic(LayerHost& host, LayerTiming& timing, const PictureAccess& access)
    : host_(host),
      timing_(timing),
      access_(access),
      activity_(Rates, BaseTimes),
      schedule_(&host),
      image_(access) {
    schedule_.SetRedraw([this] {
        SetChanged(true);
        host_.ScheduleStateChanged();
    });
    SetCanvasValue(host.CanvasIndex());
    CopyTiming();
}

Graphic::~Graphic() = default;

void Graphic::UpdateImage() {
    Trap({Module, "UpdateImage"}, [&] {
        changed_ = false;
        timing_.force = false;
        PassSettings();
        TakeSource();
        image_.GetFinalizedDIB();
        if (Store(shownRevision_, image_.Revision())) host_.PassChanged(layer_);
    });
}

LayerLook Graphic::Look(int canvasHeight) {
    return Trap({Module, "Look"}, [&] {
        LayerLook look = image_.Look(x_, y_, canvasHeight);
        if (shadow_) look.shadow = image_.ShadowArea(x_ + shadowOffsetX_, y_ + shadowOffsetY_, canvasHeight);
        shownRevision_ = image_.Revision();
        return look;
    });
}

void Graphic::MergeImageTo(DIB& canvas, const PixelArea& within) {
    Trap({Module, "MergeImageTo"}, [&] {
        image_.MergeImageTo(canvas, x_, y_, within);
        shownRevision_ = image_.Revision();
    });
}

void Graphic::MergeShadowTo(DIB& shadow, const PixelArea& within) {
    Trap({Module, "MergeShadowTo"},
         [&] { image_.MergeShadowTo(shadow, x_ + shadowOffsetX_, y_ + shadowOffsetY_, within); });
}

void Graphic::UnloadClass() {
    Trap({Module, "UnloadClass"}, [&] {
        CancelFetch();
        image_.ClearDIB();
    });
}

void Graphic::PassSettings() {
    image_.SetPictureType(PictureTypeOf(sourceType_));
    image_.SetAutoSize(true);
    image_.SetColorProcessing(colorProcessing_);
    image_.SetBackgroundColor(backgroundColor_);
    if (sourceType_ == PlainBlock) {
        image_.SetCrop(0, 0, 0, 0);
        image_.SetStretchEnabled(false);
    } else {
        image_.SetCrop(cropLeft_, cropRight_, cropTop_, cropBottom_);
        image_.SetStretchedWidthHeight(stretchWidth_, stretchHeight_);
        image_.SetStretchSmoothing(stretchSmoothing_);
        image_.SetStretchEnabled(stretched_);
    }
    image_.SetRotationAngle(rotationAngle_);
    image_.SetOpacityValue(opacity_);
    image_.SetOpacityMode(opacityMode_);
    image_.SetOpacityType(opacityUseFile_ ? Image::FromOpacityFile : Image::NoOpacityFile);
    image_.SetOpacityFileName(opacityFileName_);
    image_.SetFeatherWidth(featherWidth_);
    image_.SetFeatherRadius(featherRadius_);
    image_.SetTransparentEnabled(transparentColorEnable_);
    image_.SetTransparentColorCount(transparentColorCount_);
    for (std::size_t i = 0; i < transparentColorTable_.size(); ++i)
        image_.SetTransparentColorTable(static_cast<int>(i), transparentColorTable_[i]);
    image_.SetAlignment(alignment_);
    image_.SetShadowSize(shadowSize_);
    image_.SetShadowEnabled(shadow_);
}

void Graphic::TakeSource() {
    if (opacityUseFile_) image_.ForceOpacityLoad();
    if (sourceType_ != Address) CancelFetch();
    switch (sourceType_) {
        case VideoFeed:
            return TakeFrame();
        case OtherCanvas:
            return LoadIntoPictureDIB(host_.CanvasPicture(sourceCanvas_));
        case PictureFile:
            return TakeFile();
        case PlainBlock:
            return TakeBlock();
        case Address:
            return TakeAddress();
    }
}

bool Graphic::SourceArrived() const {
    if (image_.OriginalDIBPtrToWorkFrom()) return false;
    if (sourceType_ == VideoFeed) return sourceVideoFeed_ != NoFeed && host_.FeedFrame(sourceVideoFeed_);
    return sourceType_ == OtherCanvas && host_.CanvasPicture(sourceCanvas_);
}

void Graphic::LoadIntoPictureDIB(const DIB* picture) {
    if (picture) image_.LoadIntoPictureDIB(*picture);
}

void Graphic::TakeFrame() {
    if (sourceVideoFeed_ != NoFeed) image_.ShareIntoPictureDIB(host_.FeedFrame(sourceVideoFeed_));
}

void Graphic::TakeFile() {
    image_.SetPictureFileName(sourceFileName_);
    image_.ReloadPicture();
}

void Graphic::TakeBlock() {
    ManageStretchedDimensions();
    image_.SetWidthHeight(stretchWidth_, stretchHeight_);
    image_.ClearPicture();
}

void Graphic::ManageStretchedDimensions() {
    stretchWidth_ = std::max(stretchWidth_, 1);
    stretchHeight_ = std::max(stretchHeight_, 1);
}

void Graphic::SetNextTime() {
    Trap({Module, "SetNextTime"}, [&] {
        activity_.SetNextTime(host_.Now());
        CopyTiming();
    });
}

void Graphic::ForceUpdate() {
    Trap({Module, "ForceUpdate"}, [&] {
        activity_.Force(host_.Now());
        changed_ = true;
        timing_.force = true;
        CopyTiming();
    });
}

void Graphic::Postpone() {
    SetNextTime();
    timing_.force = false;
}

void Graphic::ChangeLook(const std::function<void()>& set) {
    Trap({Module, "ChangeLook"}, [&] {
        const bool due = timing_.force;
        set();
        if (due || sourceType_ != Address) return;
        timing_.force = false;
        PassSettings();
    });
}

void Graphic::RestartTiming() {
    Trap({Module, "RestartTiming"}, [&] {
        activity_.Restart(host_.Now());
        CopyTiming();
    });
}

void Graphic::SetRate(double seconds) {
    if (!activity_.SetRate(seconds, host_)) return;
    CopyTiming();
    host_.SettingChanged();
}

void Graphic::SetUpdateBaseTime(int seconds) {
    if (activity_.SetBaseTime(seconds)) host_.SettingChanged();
}

void Graphic::CopyTiming() { timing_.nextTime = activity_.NextTime(); }

void Graphic::SetChanged(bool changed) {
    changed_ = changed;
    if (changed) host_.PassChanged(layer_);
}

void Graphic::Touch() {
    SetChanged(true);
    timing_.force = true;
    host_.SettingChanged();
}

void Graphic::SetCanvasValue(int canvas) {
    canvasValue_ = canvas;
    schedule_.SetCanvasIndex(canvas);
}

void Graphic::SetLayer(int pass) {
    const int before = layer_;
    if (!Store(layer_, pass, Passes)) return;
    host_.PassChanged(before);
    Touch();
}

void Graphic::SetRotationAngle(float degrees) {
    if (Store(rotationAngle_, Image::StoredAngle(degrees))) Touch();
}

int Graphic::TransparentColorTable(int position) const {
    if (position < 0 || position >= static_cast<int>(transparentColorTable_.size())) return 0;
    return transparentColorTable_[static_cast<std::size_t>(position)];
}

void Graphic::SetTransparentColorTable(int position, int value) {
    if (position < 0 || position >= Image::LargestColorTable) return;
    const auto index = static_cast<std::size_t>(position);
    if (index >= transparentColorTable_.size()) transparentColorTable_.resize((index / 4 + 1) * 4);
    if (Store(transparentColorTable_[index], value, Image::IsPercent(position) ? Percents : Colours)) Touch();
}

void Graphic::SetScripted(bool scripted) {
    if (!Store(scripted_, scripted)) return;
    timing_.scripted = scripted;
    host_.SettingChanged();
}

// The plain settings: clamp, compare, flag.

void Graphic::SetSourceType(int type) {
    if (Store(sourceType_, type, Sources)) Touch();
}

void Graphic::SetSourceVideoFeed(int feed) {
    if (Store(sourceVideoFeed_, feed, Feeds)) Touch();
}

void Graphic::SetSourceCanvas(int canvas) {
    if (Store(sourceCanvas_, canvas, Canvases)) Touch();
}

void Graphic::Setx(int pixels) {
    if (Store(x_, pixels, Columns)) Touch();
}

void Graphic::SetY(int pixels) {
    if (Store(y_, pixels, Rows)) Touch();
}

void Graphic::SetAlignment(int alignment) {
    if (Store(alignment_, alignment, Alignments)) Touch();
}

void Graphic::SetCropLeft(int pixels) {
    if (Store(cropLeft_, pixels, Widths)) Touch();
}

void Graphic::SetCropRight(int pixels) {
    if (Store(cropRight_, pixels, Widths)) Touch();
}

void Graphic::SetCropTop(int pixels) {
    if (Store(cropTop_, pixels, Heights)) Touch();
}

void Graphic::SetCropBottom(int pixels) {
    if (Store(cropBottom_, pixels, Heights)) Touch();
}

void Graphic::SetStretchWidth(int pixels) {
    if (Store(stretchWidth_, pixels, Widths)) Touch();
}

void Graphic::SetStretchHeight(int pixels) {
    if (Store(stretchHeight_, pixels, Heights)) Touch();
}

void Graphic::SetColorProcessing(int mode) {
    if (Store(colorProcessing_, mode, ColorModes)) Touch();
}

void Graphic::SetOpacity(int percent) {
    if (Store(opacity_, percent, Percents)) Touch();
}

void Graphic::SetOpacityMode(int mode) {
    if (Store(opacityMode_, mode, OpacityModes)) Touch();
}

void Graphic::SetFeatherRadius(int pixels) {
    if (Store(featherRadius_, pixels, Widths)) Touch();
}

void Graphic::SetFeatherWidth(int pixels) {
    if (Store(featherWidth_, pixels, Widths)) Touch();
}

void Graphic::SetTransparentColorCount(int count) {
    if (Store(transparentColorCount_, count, Range<int>{0, Image::LargestColorCount})) Touch();
}

void Graphic::SetBackgroundColor(int colour) {
    if (Store(backgroundColor_, colour, Colours)) Touch();
}

void Graphic::SetShadowSize(int size) {
    if (Store(shadowSize_, size, ShadowSizes)) Touch();
}

void Graphic::SetShadowOffsetX(int pixels) {
    if (Store(shadowOffsetX_, pixels, Columns)) Touch();
}

void Graphic::SetShadowOffsetY(int pixels) {
    if (Store(shadowOffsetY_, pixels, Rows)) Touch();
}

void Graphic::SetEnabled(bool enabled) {
    if (Store(enabled_, enabled)) Touch();
}

void Graphic::SetStretched(bool stretched) {
    if (Store(stretched_, stretched)) Touch();
}

void Graphic::SetStretchSmoothing(bool smoothing) {
    if (Store(stretchSmoothing_, smoothing)) Touch();
}

void Graphic::SetOpacityUseFile(bool use) {
    if (Store(opacityUseFile_, use)) Touch();
}

void Graphic::SetTransparentColorEnable(bool enable) {
    if (Store(transparentColorEnable_, enable)) Touch();
}

void Graphic::SetShadow(bool shadow) {
    if (Store(shadow_, shadow)) Touch();
}

void Graphic::SetSourceFileName(std::string_view name) {
    if (Store(sourceFileName_, std::string(name))) Touch();
}

void Graphic::SetSourceURL(std::string_view address) {
    if (Store(sourceURL_, std::string(address))) Touch();
}

void Graphic::SetSourceVideoFeedName(std::string_view name) {
    if (Store(sourceVideoFeedName_, std::string(name))) Touch();
}

void Graphic::SetOpacityFileName(std::string_view name) {
    if (Store(opacityFileName_, std::string(name))) Touch();
}

}  // namespace tessaloom
