#include "imaging/Image.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "core/Store.h"
#include "imaging/Alignment.h"
#include "imaging/Percent.h"
#include "imaging/PictureFile.h"
#include "imaging/pixelops/Tessaloom.h"

namespace tessaloom {

namespace {

constexpr Range<int> Widths = {1, Image::LargestWidth};
constexpr Range<int> Heights = {1, Image::LargestHeight};
constexpr Range<int> Percents = {0, 100};

/// Positions beyond this are nowhere near a canvas; held, so that sums of them do not overflow.
constexpr Range<int> Positions = {-1'000'000, 1'000'000};

bool SamePixels(const DIB& a, const DIB& b) {
    if (!a.DIBPtr() || !b.DIBPtr() || a.Width() != b.Width() || a.Height() != b.Height()) return false;
    const auto rowBytes = static_cast<std::size_t>(a.Width()) * 3;
    for (int y = 0; y < a.Height(); ++y)
        if (std::memcmp(a.Row(y), b.Row(y), rowBytes) != 0) return false;
    return true;
}

}  // namespace

Image::Image() = default;

Image::Image(const PictureAccess& access)
    : pictureFile_(std::make_unique<PictureFile>(access)),
      opacityFile_(std::make_unique<PictureFile>(access)),
      errors_(&access.errors) {}

Image::~Image() = default;

// --- The source ---

void Image::LoadIntoPictureDIB(const DIB& source) {
    if (!source.DIBPtr()) return;
    if (HoldsSupplied(source) || !picture_.CopyFrom(source)) return;
    suppliedProcessing_ = colorProcessing_;
    shared_.reset();
    if (colorProcessing_ == 0) {
        supplied_.SetWidthHeight(0, 0);
    } else {
        supplied_.CopyFrom(source);
        ColorProcess(picture_.DIBPtr(), picture_.Width(), picture_.Height(), colorProcessing_);
    }
    PictureReplaced(Held::FromOwner);
}

void Image::ShareIntoPictureDIB(std::shared_ptr<const DIB> source) {
    if (!source || !source->DIBPtr() || HoldsSupplied(*source)) return;
    if (colorProcessing_ == 0) {
        picture_.SetWidthHeight(0, 0);
    } else {
        if (!picture_.CopyFrom(*source)) return;
        ColorProcess(picture_.DIBPtr(), picture_.Width(), picture_.Height(), colorProcessing_);
    }
    suppliedProcessing_ = colorProcessing_;
    supplied_.SetWidthHeight(0, 0);
    shared_ = std::move(source);
    PictureReplaced(Held::FromOwner);
}

bool Image::HoldsSupplied(const DIB& source) const {
    if (held_ != Held::FromOwner || suppliedProcessing_ != colorProcessing_) return false;
    if (shared_) return &source == shared_.get() || SamePixels(source, *shared_);
    return SamePixels(source, suppliedProcessing_ == 0 ? picture_ : supplied_);
}

void Image::SetTextCoverage(const DIB& coverage) {
    width_ = coverage.Width();
    height_ = coverage.Height();
    if (held_ == Held::Coverage && SamePixels(coverage, picture_)) return;
    if (!coverage.DIBPtr()) {
        picture_.SetWidthHeight(0, 0);
    } else if (!picture_.CopyFrom(coverage)) {
        return;
    }
    PictureReplaced(Held::Coverage);
}

void Image::ClearPicture() {
    const bool sameSize = picture_.Width() == width_ && picture_.Height() == height_;
    if (held_ == Held::Cleared && sameSize && clearedColor_ == backgroundColor_) return;
    picture_.SetWidthHeight(width_, height_);
    picture_.Clear(backgroundColor_);
    clearedColor_ = backgroundColor_;
    PictureReplaced(Held::Cleared);
}

void Image::ClearDIB() {
    for (DIB* bitmap : {&picture_, &supplied_, &cropped_, &stretched_, &rotated_, &opacityPicture_, &opacity_,
                        &rotatedOpacity_, &shadow_, &work_})
        bitmap->SetWidthHeight(0, 0);
    mapFrom_ = {};
    PictureReplaced(Held::Nothing);
    if (opacityType_ == FromOpacityFile) MarkDirty(Bits(Stage::OpacityFile));
}

void Image::ReloadPicture() { MarkDirty(Bits(Stage::Picture)); }

void Image::ForceOpacityLoad() { MarkDirty(Bits(Stage::OpacityFile)); }

// --- The stages ---

const DIB& Image::GetImageDIB() {
    UpdateTo(Stage::Image);
    return Original();
}

const DIB& Image::GetCroppedDIB() {
    UpdateTo(Stage::Crop);
    return Cropped();
}

const DIB& Image::GetStretchedDIB() {
    UpdateTo(Stage::Stretch);
    return Stretched();
}

const DIB& Image::GetRotatedDIB() {
    UpdateTo(Stage::Rotation);
    return Rotated();
}

const DIB& Image::GetFinalizedDIB() {
    UpdateTo(Stage::Shadow);
    return Rotated();
}

const DIB* Image::FinalOpacityDIB() {
    UpdateTo(Stage::RotatedOpacity);
    return FinalMap();
}

const std::uint8_t* Image::FinalOpacityDIBPtr() {
    const DIB* map = FinalOpacityDIB();
    return map ? map->DIBPtr() : nullptr;
}

const DIB& Image::GetShadowDIB() {
    UpdateTo(Stage::Shadow);
    return shadow_;
}

// --- Merging ---

/// Entries that are no longer in use may still lie in the table.
int Image::KeyColour() const {
    return transparentEnabled_ && transparentColorCount_ > 0 ? transparentColorTable_[0] : NoKeyColour;
}

bool Image::Opaque() const {
    return !IsText() && opacityMode_ == 2 && opacityValue_ == 100 && !transparentEnabled_ && !FinalMap();
}

bool Image::Drawn() const {
    if (opacityMode_ == 2 && opacityValue_ == 0) return false;
    return Rotated().DIBPtr() && !LacksMap();
}

PixelArea Image::PictureArea(int x, int y, int canvasHeight) const {
    const int width = Rotated().Width(), height = Rotated().Height();
    const auto offset = AlignmentOffset(alignment_, width, height);
    const int left = Clamped(x, Positions) + offset.x;
    const int first = canvasHeight - height - (Clamped(y, Positions) + offset.y);
    return {left, left + width, first, first + height};
}

void Image::MergeImageTo(DIB& destination, int x, int y, const PixelArea& within) {
    const DIB& source = GetFinalizedDIB();
    if (!destination.DIBPtr() || !Drawn()) return;
    const PixelArea area = PictureArea(x, y, destination.Height());
    if (area.Common(within).Empty()) return;
    const DIB* map = FinalMap();
    const pixelops::Laid laid = {source.DIBPtr(),
                                 source.Width(),
                                 source.Height(),
                                 IsText() ? 3 : opacityMode_,
                                 KeyColour(),
                                 To255(opacityValue_),
                                 map ? map->DIBPtr() : nullptr,
                                 transparentColorTable_.data(),
                                 transparentColorCount_,
                                 transparentEnabled_ ? -1 : 0};
    const int left = area.left - within.left, first = area.first - within.first;
    if (IsText()) {
        MergeTextOnto(destination.Part(within), laid, left, first, textColor_);
    } else {
        MergeOnto(destination.Part(within), laid, left, first);
    }
}

LayerLook Image::Look(int x, int y, int canvasHeight) {
    GetFinalizedDIB();
    LayerLook look;
    if (Drawn()) look.picture = PictureArea(x, y, canvasHeight);
    look.revision = revision_;
    look.opaque = Opaque();
    return look;
}

PixelArea Image::ShadowArea(int x, int y, int canvasHeight) {
    const DIB& shadow = GetShadowDIB();
    if (!shadowEnabled_ || !shadow.DIBPtr()) return {};
    const int width = shadow.Width(), height = shadow.Height();
    const auto offset = AlignmentOffset(alignment_, width - 2 * ShadowMargin, height - 2 * ShadowMargin);
    const int left = Clamped(x, Positions) + offset.x - ShadowMargin;
    const int first = canvasHeight - height - (Clamped(y, Positions) + offset.y - ShadowMargin);
    return {left, left + width, first, first + height};
}

void Image::MergeShadowTo(DIB& shadow, int x, int y, const PixelArea& within) {
    const PixelArea area = ShadowArea(x, y, shadow.Height());
    if (!shadow.DIBPtr() || area.Common(within).Empty()) return;
    // Black, the shadow's ground, need not be left out: of two densities the larger one stays.
    constexpr int KeepDenser = 0;
    MergeOnto(shadow.Part(within),
              {shadow_.DIBPtr(), shadow_.Width(), shadow_.Height(), KeepDenser, NoKeyColour, 255, nullptr,
               nullptr, 0, 0},
              area.left - within.left, area.first - within.first);
}

// --- Properties ---

void Image::SetGraphics(Stages stages) {
    MarkDirty(stages);
    ++revision_;
}

void Image::MarkShadow() {
    if (shadowEnabled_) MarkDirty(Bits(Stage::Shadow));
}

void Image::SetPictureType(int type) {
    if (Store(pictureType_, type)) SetGraphics(Bits(Stage::Stretch, Stage::Opacity));
}

void Image::SetPictureFileName(std::string_view name, std::string_view origin) {
    pictureOrigin_ = origin;
    if (pictureFileName_ == name) return;
    pictureFileName_ = name;
    SetGraphics(Bits(Stage::Picture));
}

void Image::SetOpacityFileName(std::string_view name) {
    if (opacityFileName_ == name) return;
    opacityFileName_ = name;
    SetGraphics(Bits(Stage::OpacityFile, Stage::Opacity));
}

void Image::SetOpacityType(int type) {
    if (Store(opacityType_, type)) SetGraphics(Bits(Stage::OpacityFile, Stage::Opacity));
}

void Image::SetOpacityMode(int mode) {
    if (!Store(opacityMode_, mode, {0, 3})) return;
    SetGraphics(0);
    MarkShadow();
}

void Image::SetOpacityValue(int percent) {
    if (!Store(opacityValue_, percent, Percents)) return;
    SetGraphics(0);
    MarkShadow();
}

void Image::SetColorProcessing(int mode) {
    if (Store(colorProcessing_, mode) && !pictureFileName_.empty()) SetGraphics(AllStages);
}

void Image::SetBackgroundColor(int colour) {
    if (Store(backgroundColor_, colour)) SetGraphics(0);
}

void Image::SetTextColor(int colour) {
    if (Store(textColor_, colour)) SetGraphics(0);
}

void Image::SetWidthHeight(int width, int height) {
    const bool widthChanged = Store(width_, width, Widths);
    if (Store(height_, height, Heights) || widthChanged) SetGraphics(0);
}

void Image::SetStretchedWidthHeight(int width, int height) {
    const bool widthChanged = Store(stretchedWidth_, width, Widths);
    if (Store(stretchedHeight_, height, Heights) || widthChanged) SetGraphics(Bits(Stage::Stretch));
}

void Image::SetStretchEnabled(bool enabled) {
    if (Store(stretchEnabled_, enabled))
        SetGraphics(Bits(Stage::Stretch, Stage::Rotation, Stage::RotatedOpacity));
}

void Image::SetStretchSmoothing(bool smoothing) {
    if (Store(stretchSmoothing_, smoothing)) SetGraphics(Bits(Stage::Stretch));
}

void Image::SetCrop(int left, int right, int top, int bottom) {
    if (Store(crop_, Margins{left, right, top, bottom})) SetGraphics(Bits(Stage::Crop));
}

void Image::SetAlignment(int alignment) {
    if (Store(alignment_, alignment, {FirstAlignment, LastAlignment})) SetGraphics(0);
}

float Image::StoredAngle(float degrees) {
    const float angle = Clamped(degrees, {0.0F, 360.0F});
    return angle == 360.0F ? 0.0F : angle;
}

void Image::SetRotationAngle(float degrees) {
    if (Store(rotationAngle_, StoredAngle(degrees)))
        SetGraphics(Bits(Stage::Rotation, Stage::RotatedOpacity));
}

void Image::SetFeatherWidth(int pixels) {
    if (Store(featherWidth_, pixels, {0, LargestWidth})) SetGraphics(Bits(Stage::Opacity));
}

void Image::SetFeatherRadius(int pixels) {
    if (Store(featherRadius_, pixels, {0, LargestWidth})) SetGraphics(Bits(Stage::Opacity));
}

void Image::SetShadowEnabled(bool enabled) {
    if (!Store(shadowEnabled_, enabled)) return;
    SetGraphics(0);
    dirty_ = static_cast<Stages>(enabled ? dirty_ | Bit(Stage::Shadow) : dirty_ & ~Bit(Stage::Shadow));
    if (!enabled) shadow_.SetWidthHeight(0, 0);
}

void Image::SetShadowSize(int size) {
    if (!Store(shadowSize_, size, {1, 4})) return;
    SetGraphics(0);
    MarkShadow();
}

void Image::SetTransparentEnabled(bool enabled) {
    if (!Store(transparentEnabled_, enabled)) return;
    SetGraphics(0);
    MarkShadow();
}

int Image::TransparentColorTable(int position) const {
    if (position < 0 || position >= static_cast<int>(transparentColorTable_.size())) return 0;
    return transparentColorTable_[static_cast<std::size_t>(position)];
}

void Image::SetTransparentColorTable(int position, int value) {
    if (position < 0 || position >= LargestColorTable) return;
    const auto index = static_cast<std::size_t>(position);
    if (index >= transparentColorTable_.size()) transparentColorTable_.resize((index / 4 + 1) * 4);
    if (!Store(transparentColorTable_[index], IsPercent(position) ? To255(Clamped(value, Percents)) : value))
        return;
    SetGraphics(0);
    MarkShadow();
}

void Image::SetTransparentColorCount(int count) {
    if (!Store(transparentColorCount_, count, {0, LargestColorCount})) return;
    const auto needed = static_cast<std::size_t>(transparentColorCount_) * 4;
    if (transparentColorTable_.size() < needed) transparentColorTable_.resize(needed);
    SetGraphics(0);
    MarkShadow();
}

void Image::SetAutoSize(bool autoSize) {
    if (Store(autoSize_, autoSize) && pictureFile_) pictureFile_->SetAutoSize(autoSize);
}

}  // namespace tessaloom
