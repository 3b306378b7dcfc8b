#pragma once
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/DrawnLayer.h"
#include "imaging/Image.h"
#include "imaging/LayerHost.h"
#include "imaging/PictureAccess.h"
#include "imaging/PixelArea.h"
#include "time/Schedule.h"
#include "time/TimedActivity.h"

namespace tessaloom {

class UrlTransfer;
enum class TransferState;

/// A picture layer of a canvas: a feed's frame, a file, a picture from an address, a plain block or another
/// canvas, refreshed when due and laid onto the canvas.
///
/// Owned by its `Canvas`, which outlives it, like `access` and the layer's entry in the timing table. Moments
/// are local day numbers (time/modTime.h), rates and base times seconds, positions pixels from the canvas's
/// top left corner, colours 0x00BBGGRR. Numbers outside a stated range are moved to its nearer end.
class Graphic final : public DrawnLayer {
public:
    /// The numbers of `SourceType`.
    enum Source { VideoFeed = 0, PictureFile = 1, Address = 2, PlainBlock = 3, OtherCanvas = 4 };

    static constexpr int NoFeed = -1;
    static constexpr int LargestColor = 0xFFFFFF;

    Graphic(LayerHost& host, LayerTiming& timing, const PictureAccess& access);
    ~Graphic();
    Graphic(const Graphic&) = delete;
    Graphic& operator=(const Graphic&) = delete;

    // --- Drawing ---

    /// Takes in what the source holds now. The layer's pass is marked only when its picture changed.
    ///
    /// The picture of an address is only asked for; one still on its way is given up for it. When it has come
    /// it is put into a file in the folder of the start, and the layer's pass is marked.
    void UpdateImage();

    /// The picture of an address is on its way.
    bool SourcePending() const;

    /// The layer has no picture, as its feed or canvas had none when it was asked; now there is one.
    bool SourceArrived() const;

    /// Lays the layer's picture onto all of `canvas`; adds its shadow to `shadow`, a bitmap of the canvas's
    /// size.
    void MergeImageTo(DIB& canvas) { MergeImageTo(canvas, canvas.Whole()); }
    void MergeShadowTo(DIB& shadow) { MergeShadowTo(shadow, shadow.Whole()); }

    // DrawnLayer

    LayerLook Look(int canvasHeight) override;
    void MergeImageTo(DIB& canvas, const PixelArea& within) override;
    void MergeShadowTo(DIB& shadow, const PixelArea& within) override;

    /// The layer's pictures and what they were made of are released.
    void UnloadClass();

    // --- Timing ---

    void SetNextTime();
    double NextTime() const { return activity_.NextTime(); }

    /// Makes the layer due at once, whatever its rate.
    void ForceUpdate();

    /// The layer waits for its next time, whatever was set.
    void Postpone();

    /// Runs `set`, which changes how the layer looks and not what it shows. A picture that came from an
    /// address gets the new look as it is, while setters alone make the layer due, so that the address is
    /// asked anew.
    void ChangeLook(const std::function<void()>& set);

    /// For a clock that was set back: the next time is recomputed from the present.
    void RestartTiming();

    /// Seconds between two refreshes, 0 .. 86400; 0: only when forced.
    double Rate() const { return activity_.Rate(); }
    void SetRate(double seconds);

    /// Seconds after midnight, 0 .. 86400.
    int UpdateBaseTime() const { return static_cast<int>(activity_.BaseTime()); }
    void SetUpdateBaseTime(int seconds);

    // --- State ---

    /// Set at first, by every change of a setting that shows, and by `ForceUpdate`; cleared by `UpdateImage`.
    /// Also set when a picture from an address has come, and true while the layer's schedule needs saving.
    bool Changed() const { return changed_ || schedule_.NeedsSaving(); }

    /// Setting it marks the layer's pass, too.
    void SetChanged(bool changed);

    tessaloom::Schedule& Schedule() { return schedule_; }
    const tessaloom::Schedule& Schedule() const { return schedule_; }
    tessaloom::Image& Image() { return image_; }

    /// The final picture's size; 0 while there is none.
    int Width() { return image_.FinalWidth(); }
    int Height() { return image_.FinalHeight(); }

    // --- Properties ---

    /// The layer's slot.
    int IndexValue() const { return indexValue_; }
    void SetIndexValue(int index) { indexValue_ = index; }

    /// The owning canvas's slot.
    int CanvasValue() const { return canvasValue_; }
    void SetCanvasValue(int canvas);

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);

    /// The pass in which the layer is composed, 0 .. 3. A change marks both passes.
    int Layer() const { return layer_; }
    void SetLayer(int pass);

    /// A `Source`.
    int SourceType() const { return sourceType_; }
    void SetSourceType(int type);

    const std::string& SourceFileName() const { return sourceFileName_; }
    void SetSourceFileName(std::string_view name);

    const std::string& SourceURL() const { return sourceURL_; }
    void SetSourceURL(std::string_view address);

    /// The feed's slot, 0 .. 9, or `NoFeed`. The file knows the feed by its name; the canvas finds the slot.
    int SourceVideoFeed() const { return sourceVideoFeed_; }
    void SetSourceVideoFeed(int feed);
    const std::string& SourceVideoFeedName() const { return sourceVideoFeedName_; }
    void SetSourceVideoFeedName(std::string_view name);

    /// 1 .. 20.
    int SourceCanvas() const { return sourceCanvas_; }
    void SetSourceCanvas(int canvas);

    /// Where the alignment's anchor lies: -3000 .. 3000, -2000 .. 2000.
    int x() const { return x_; }
    void Setx(int pixels);
    int Y() const { return y_; }
    void SetY(int pixels);

    /// An `Anchor`, imaging/Alignment.h.
    int Alignment() const { return alignment_; }
    void SetAlignment(int alignment);

    /// Pixels cut from the source: 0 .. 3000 left and right, 0 .. 2000 at the top and bottom.
    int CropLeft() const { return cropLeft_; }
    void SetCropLeft(int pixels);
    int CropRight() const { return cropRight_; }
    void SetCropRight(int pixels);
    int CropTop() const { return cropTop_; }
    void SetCropTop(int pixels);
    int CropBottom() const { return cropBottom_; }
    void SetCropBottom(int pixels);

    bool Stretched() const { return stretched_; }
    void SetStretched(bool stretched);

    /// 0 .. 3000 x 0 .. 2000; below 1 counts as 1. Also the size of a plain block.
    int StretchWidth() const { return stretchWidth_; }
    void SetStretchWidth(int pixels);
    int StretchHeight() const { return stretchHeight_; }
    void SetStretchHeight(int pixels);
    bool StretchSmoothing() const { return stretchSmoothing_; }
    void SetStretchSmoothing(bool smoothing);

    /// A number of pixelops/ColorModes.h; 0: none. Unknown numbers are kept.
    int ColorProcessing() const { return colorProcessing_; }
    void SetColorProcessing(int mode);

    /// Degrees counterclockwise, 0 .. 360; 360 is stored as 0.
    float RotationAngle() const { return rotationAngle_; }
    void SetRotationAngle(float degrees);

    /// Percent.
    int Opacity() const { return opacity_; }
    void SetOpacity(int percent);

    /// 0 .. 3, pixelops/Tessaloom.h.
    int OpacityMode() const { return opacityMode_; }
    void SetOpacityMode(int mode);

    bool OpacityUseFile() const { return opacityUseFile_; }
    void SetOpacityUseFile(bool use);
    const std::string& OpacityFileName() const { return opacityFileName_; }
    void SetOpacityFileName(std::string_view name);

    /// Pixels, 0 .. 3000: the radius of the corners, and the width over which the edge fades.
    int FeatherRadius() const { return featherRadius_; }
    void SetFeatherRadius(int pixels);
    int FeatherWidth() const { return featherWidth_; }
    void SetFeatherWidth(int pixels);

    bool TransparentColorEnable() const { return transparentColorEnable_; }
    void SetTransparentColorEnable(bool enable);

    /// Positions count from 0, in groups of four: two colours, then two percentages 0 .. 100, read as they
    /// were set. A position outside the table is ignored; unset ones read 0.
    int TransparentColorTable(int position) const;
    void SetTransparentColorTable(int position, int value);

    /// Groups in use, 0 .. 999.
    int TransparentColorCount() const { return transparentColorCount_; }
    void SetTransparentColorCount(int count);

    int BackgroundColor() const { return backgroundColor_; }
    void SetBackgroundColor(int colour);

    bool Shadow() const { return shadow_; }
    void SetShadow(bool shadow);

    /// The softness of its edge, 1 .. 4.
    int ShadowSize() const { return shadowSize_; }
    void SetShadowSize(int size);

    /// -3000 .. 3000, -2000 .. 2000, from the layer's own position.
    int ShadowOffsetX() const { return shadowOffsetX_; }
    void SetShadowOffsetX(int pixels);
    int ShadowOffsetY() const { return shadowOffsetY_; }
    void SetShadowOffsetY(int pixels);

    /// The script's update hook is called for this layer.
    bool Scripted() const { return scripted_; }
    void SetScripted(bool scripted);

private:
    void Touch();  ///< A setting that shows changed: the layer is due, its pass recomposed.
    void PassSettings();
    void TakeSource();
    void TakeFrame();
    void LoadIntoPictureDIB(const DIB* picture);
    void TakeFile();
    void TakeBlock();
    void TakeAddress();
    void CancelFetch();
    void myInet_StateChanged(TransferState state);
    bool StoreResponse(const std::string& name);
    void FetchFailed(const std::string& reason);
    std::string TemporaryFileName() const;
    void ManageStretchedDimensions();
    void CopyTiming();

    LayerHost& host_;
    LayerTiming& timing_;
    const PictureAccess access_;
    TimedActivity activity_;
    tessaloom::Schedule schedule_;
    tessaloom::Image image_;
    unsigned shownRevision_ = 0;  ///< Of the image, when the pass was last marked or the layer drawn.

    std::unique_ptr<UrlTransfer> myInet_;  ///< Made for the first address.
    std::string fetched_;                  ///< The address that was asked for last.
    std::string fetchFault_;               ///< What was reported of it; "" when the last picture came.

    std::string sourceFileName_;
    std::string sourceURL_;
    std::string sourceVideoFeedName_;
    std::string opacityFileName_;
    std::vector<int> transparentColorTable_;
    int indexValue_ = 0;
    int canvasValue_ = 0;
    int layer_ = 1;
    int sourceType_ = PlainBlock;
    int sourceVideoFeed_ = 0;
    int sourceCanvas_ = 1;
    int x_ = 0, y_ = 0;
    int alignment_ = 0;
    int cropLeft_ = 0, cropRight_ = 0, cropTop_ = 0, cropBottom_ = 0;
    int stretchWidth_ = 320, stretchHeight_ = 240;
    int colorProcessing_ = 0;
    float rotationAngle_ = 0;
    int opacity_ = 100;
    int opacityMode_ = 2;
    int featherRadius_ = 0, featherWidth_ = 0;
    int transparentColorCount_ = 1;
    int backgroundColor_ = 0;
    int shadowSize_ = 1;
    int shadowOffsetX_ = 2, shadowOffsetY_ = 2;
    bool enabled_ = true;
    bool stretched_ = false;
    bool stretchSmoothing_ = false;
    bool opacityUseFile_ = false;
    bool transparentColorEnable_ = false;
    bool shadow_ = false;
    bool scripted_ = false;
    bool changed_ = true;
};

}  // namespace tessaloom
