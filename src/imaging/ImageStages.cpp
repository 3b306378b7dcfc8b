// How each stage of an `Image` is made from the one before.

#include "imaging/Image.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <string>

#include "core/ErrorReport.h"
#include "core/Store.h"
#include "imaging/ErrorsFile.h"
#include "imaging/OpacityMap.h"
#include "imaging/Percent.h"
#include "imaging/PictureFile.h"
#include "imaging/pixelops/Rotation.h"
#include "imaging/pixelops/Tessaloom.h"
#include "locale/Error.h"
#include "platform/PictureLimits.h"

namespace tessaloom {

namespace {

/// What is turned is first continued by this many pixels on each side, so that at the rotated picture's edge
/// no other colour is mixed in: the opacity map alone fades there.
constexpr int EdgePixels = 2;

bool SameSize(const DIB& a, const DIB& b) { return a.Width() == b.Width() && a.Height() == b.Height(); }

/// `source` with its edge pixels repeated outwards.
void ContinueEdges(const DIB& source, DIB& target) {
    target.SetWidthHeight(source.Width() + 2 * EdgePixels, source.Height() + 2 * EdgePixels);
    if (!target.DIBPtr()) return;
    target.hDC()->BitBlt(EdgePixels, EdgePixels, source.Width(), source.Height(), *source.hDC(), 0, 0);
    for (int i = 0; i < EdgePixels; ++i) {
        const int right = target.Width() - 1 - i;
        target.hDC()->BitBlt(i, EdgePixels, 1, source.Height(), *source.hDC(), 0, 0);
        target.hDC()->BitBlt(right, EdgePixels, 1, source.Height(), *source.hDC(), source.Width() - 1, 0);
    }
    for (int i = 0; i < EdgePixels; ++i) {
        const int bottom = target.Height() - 1 - i;
        target.hDC()->BitBlt(0, i, target.Width(), 1, *target.hDC(), 0, EdgePixels);
        target.hDC()->BitBlt(0, bottom, target.Width(), 1, *target.hDC(), 0,
                             target.Height() - 1 - EdgePixels);
    }
}

/// Turns `source` onto `target`, which has its size and ground already.
void Turn(const DIB& source, DIB& target, double degrees) {
    if (!source.DIBPtr() || !target.DIBPtr()) return;
    const Shears shears = RotationShears(degrees);
    Rotate(target.DIBPtr(), target.Width(), target.Height(), source.DIBPtr(), source.Width(), source.Height(),
           shears.angle, shears.shearX, shears.shearY, 0);
}

/// Turned far, a long narrow picture needs a square of its length: up to as many pixels as a picture file may
/// have are granted.
bool CanBeRotatedTo(PixelSize size) {
    if (std::int64_t{size.width} * size.height <= PictureLimits().pixels) return true;
    Report({.module = "Image.cls",
            .procedure = "LoadRotatedDIB",
            .number = static_cast<int>(ErrorNumber::OutOfMemory),
            .description = "A picture is too large to be rotated; stretch or crop it"});
    return false;
}

/// The part of a side that two margins leave: where it starts and its length, within `largest`.
struct Cut {
    int start = 0;
    int length = 0;
};

Cut CutSide(int side, int before, int after, int largest) {
    const auto left = std::int64_t{side} - before - after;
    const auto last = std::max<std::int64_t>(std::int64_t{side} - after - 1, 0);
    return {.start = static_cast<int>(Clamped<std::int64_t>(before, {0, std::min<std::int64_t>(last, side)})),
            .length = static_cast<int>(Clamped<std::int64_t>(left, {1, largest}))};
}

}  // namespace

const Image::StageRoutine Image::StageRoutines[] = {
    {Stage::Picture,        &Image::CheckPictureFile     },
    {Stage::Image,          &Image::LoadImageDIB         },
    {Stage::Crop,           &Image::LoadCroppedDIB       },
    {Stage::Stretch,        &Image::LoadStretchedDIB     },
    {Stage::Rotation,       &Image::LoadRotatedDIB       },
    {Stage::OpacityFile,    &Image::LoadOpacityFile      },
    {Stage::Opacity,        &Image::LoadOpacity          },
    {Stage::RotatedOpacity, &Image::LoadRotatedOpacityDIB},
    {Stage::Shadow,         &Image::LoadShadowDIB        },
};

void Image::UpdateTo(Stage last) {
    if (dirty_ == 0) return;
    for (const auto& [stage, run] : StageRoutines) {
        if (stage > last) return;
        if (!Dirty(stage)) continue;
        dirty_ = static_cast<Stages>(dirty_ & ~Bit(stage));
        (this->*run)();
    }
}

void Image::PictureReplaced(Held held) {
    held_ = held;
    if (held != Held::FromOwner) shared_.reset();
    SetGraphics(Bits(Stage::Crop));
}

void Image::CheckPictureFile() {
    if (!IsFile() || pictureFileName_.empty() || !pictureFile_) return;
    if (held_ != Held::FromFile || pictureFile_->Stale(pictureFileName_)) MarkDirty(Bits(Stage::Image));
}

void Image::LoadImageDIB() {
    try {
        LoadPicture();
    } catch (const std::exception& error) {
        if (!errors_) return;
        errors_->Append(
            "Image.cls (Sub LoadImageDIB )",
            {
                {"Line",   std::to_string(__LINE__)              },
                {"Values", pictureFileName_ + ": " + error.what()}
        });
    }
}

void Image::LoadPicture() {
    if (!IsFile() || pictureFileName_.empty() || !pictureFile_) return;
    const auto outcome = pictureFile_->Load(pictureFileName_, picture_, pictureOrigin_);
    pictureFile_->Release();
    if (outcome == PictureFile::Outcome::Failed)
        MarkDirty(Bits(Stage::Crop, Stage::Stretch, Stage::Rotation));
    if (outcome != PictureFile::Outcome::Loaded) return;
    if (colorProcessing_ != 0)
        ColorProcess(picture_.DIBPtr(), picture_.Width(), picture_.Height(), colorProcessing_);
    PictureReplaced(Held::FromFile);
}

void Image::LoadCroppedDIB() {
    MarkDirty(Bits(Stage::Stretch));
    cropActive_ = crop_ != Margins{} && Original().DIBPtr();
    if (!cropActive_) return;
    const Cut columns = CutSide(Original().Width(), crop_.left, crop_.right, LargestWidth);
    const Cut rows = CutSide(Original().Height(), crop_.top, crop_.bottom, LargestHeight);
    cropped_.SetWidthHeight(columns.length, rows.length);
    const bool beyondPicture = crop_.left < 0 || crop_.right < 0 || crop_.top < 0 || crop_.bottom < 0;
    if (beyondPicture) cropped_.Clear(backgroundColor_);
    if (cropped_.hDC())
        cropped_.hDC()->BitBlt(0, 0, columns.length, rows.length, *Original().hDC(), columns.start,
                               rows.start);
}

void Image::LoadStretchedDIB() {
    MarkDirty(Bits(Stage::Rotation));
    const DIB& source = Cropped();
    const bool sameSize = source.Width() == stretchedWidth_ && source.Height() == stretchedHeight_;
    stretchActive_ = stretchEnabled_ && pictureType_ != Block && stretchedWidth_ != 0 &&
                     stretchedHeight_ != 0 && source.DIBPtr() && !sameSize;
    if (stretchActive_) {
        stretched_.SetWidthHeight(stretchedWidth_, stretchedHeight_);
        stretched_.hDC()->SetStretchBltMode(stretchSmoothing_ ? StretchMode::Halftone
                                                              : StretchMode::ColorOnColor);
        stretched_.hDC()->StretchBlt(0, 0, stretchedWidth_, stretchedHeight_, *source.hDC(), 0, 0,
                                     source.Width(), source.Height());
    }
    if (HasOpacity() && !SameSize(Stretched(), opacity_)) MarkDirty(Bits(Stage::Opacity));
}

void Image::LoadRotatedDIB() {
    const DIB& source = Stretched();
    const PixelSize size = RotatedSize(source.Width(), source.Height(), rotationAngle_);
    rotationActive_ = rotationAngle_ != 0 && source.DIBPtr() && CanBeRotatedTo(size);
    if (rotationActive_) {
        rotated_.SetWidthHeight(size.width, size.height);
        // The coverage of a text ends in nothing by itself.
        rotated_.Clear(IsText() ? 0 : backgroundColor_);
        const bool continued = !IsText() && TurnsToCorners();
        if (continued) ContinueEdges(source, work_);
        Turn(continued ? work_ : source, rotated_, rotationAngle_);
    }
    const bool sameOutline = shadow_.Width() == Rotated().Width() + 2 * ShadowMargin &&
                             shadow_.Height() == Rotated().Height() + 2 * ShadowMargin;
    // A plain shadow shows the outline alone, so that a feed's new frame of the same size keeps it.
    if (!sameOutline || transparentEnabled_ || IsText()) MarkShadow();
    if (rotationActive_ && mapFrom_ != PixelSize{source.Width(), source.Height()})
        MarkDirty(Bits(Stage::RotatedOpacity));
}

void Image::LoadOpacityFile() {
    if (opacityType_ != FromOpacityFile || !opacityFile_) return;
    if (opacityFileName_.empty()) {
        opacityPicture_.SetWidthHeight(0, 0);
        return;
    }
    if (opacityPicture_.DIBPtr() && !opacityFile_->Stale(opacityFileName_)) return;
    const bool loaded = opacityFile_->Load(opacityFileName_, opacityPicture_) == PictureFile::Outcome::Loaded;
    if (loaded) {
        OpacityMap::FromPicture(opacityPicture_, opacityFile_->Alpha());
        SetGraphics(Bits(Stage::Opacity));
    }
    opacityFile_->Release();
}

void Image::LoadOpacity() {
    MarkDirty(Bits(Stage::RotatedOpacity));
    const DIB& picture = Stretched();
    opacityActive_ = HasOpacity() && picture.DIBPtr();
    if (!opacityActive_) return;

    const bool fromFile = HasOpacityFile();
    const bool feathered = IsFeathered();
    opacity_.SetWidthHeight(picture.Width(), picture.Height());
    if (feathered) OpacityMap::FillFeathered(opacity_, featherWidth_, featherRadius_);
    if (!fromFile) return;
    DIB& scaled = feathered ? work_ : opacity_;
    scaled.SetWidthHeight(picture.Width(), picture.Height());
    scaled.hDC()->SetStretchBltMode(StretchMode::Halftone);
    scaled.hDC()->StretchBlt(0, 0, picture.Width(), picture.Height(), *opacityPicture_.hDC(), 0, 0,
                             opacityPicture_.Width(), opacityPicture_.Height());
    if (feathered) OpacityMap::Multiply(opacity_, scaled);
}

bool Image::HasOpacityFile() const { return opacityType_ == FromOpacityFile && opacityPicture_.DIBPtr(); }

bool Image::HasOpacity() const { return !IsText() && (HasOpacityFile() || IsFeathered()); }

bool Image::TurnsToCorners() const { return std::fmod(rotationAngle_, 90.0F) != 0; }

void Image::LoadRotatedOpacityDIB() {
    MarkShadow();
    const DIB& picture = Stretched();
    mapFrom_ = rotationActive_ ? PixelSize{picture.Width(), picture.Height()} : PixelSize{};
    rotatedOpacityActive_ = rotationActive_ && !IsText() && (opacityActive_ || TurnsToCorners());
    if (!rotatedOpacityActive_) return;
    // The map is turned as its negative: white, the ground that its edges blend with, ends as nothing.
    if (opacityActive_) {
        work_.CopyFrom(opacity_);
        OpacityMap::Negate(work_);
    } else {
        work_.SetWidthHeight(picture.Width(), picture.Height());
        work_.Clear(0);
    }
    rotatedOpacity_.SetWidthHeight(Rotated().Width(), Rotated().Height());
    rotatedOpacity_.Clear(0xFFFFFF);
    Turn(work_, rotatedOpacity_, rotationAngle_);
    OpacityMap::Negate(rotatedOpacity_);
}

const DIB* Image::FinalMap() const {
    if (IsText()) return Rotated().DIBPtr() ? &Rotated() : nullptr;
    if (rotationActive_) return rotatedOpacityActive_ ? &rotatedOpacity_ : nullptr;
    return opacityActive_ ? &opacity_ : nullptr;
}

// That the outline of a turned picture is a map, too, does not count: it would show at some angles alone.
bool Image::LacksMap() const { return opacityMode_ == 3 && !IsText() && !opacityActive_; }

void Image::LoadShadowDIB() {
    const DIB& source = Rotated();
    if (!shadowEnabled_ || !source.DIBPtr() || LacksMap()) {
        shadow_.SetWidthHeight(0, 0);
        return;
    }
    const DIB* map = FinalMap();
    const int mode = map ? 3 : 2;
    shadow_.SetWidthHeight(source.Width() + 2 * ShadowMargin, source.Height() + 2 * ShadowMargin);
    if (!shadow_.DIBPtr()) return;
    Shadow(shadow_.DIBPtr(), shadow_.Width(), shadow_.Height(), source.DIBPtr(), source.Width(),
           source.Height(), ShadowMargin, ShadowMargin, mode, KeyColour(), To255(opacityValue_),
           map ? map->DIBPtr() : nullptr, shadowSize_, 0, 0, transparentColorTable_.data(),
           transparentColorCount_, transparentEnabled_ ? -1 : 0);
}

}  // namespace tessaloom
