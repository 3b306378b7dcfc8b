#pragma once

#include "core/Store.h"
#include "imaging/DIB.h"
#include "imaging/DrawnLayer.h"
#include "imaging/Image.h"
#include "imaging/LayerHost.h"
#include "imaging/PixelArea.h"
#include "platform/Fonts.h"
#include "time/Schedule.h"
#include "time/TimedActivity.h"

#include <string>
#include <string_view>

namespace tessaloom {

class TagSource;

/// One text layer of a canvas: text with live tags, expanded when due and drawn when its picture changed.
///
/// Owned by its `Canvas`, which drives it through `ProcessText`, `SetNextTime`, `UpdateImage` and the merges.
/// Moments are local day numbers (time/modTime.h), rates are seconds, positions are pixels from the canvas's
/// top left corner. Setters clamp silently; one that changes a value makes the layer due and changed.
class Text final : public DrawnLayer {
public:
    /// The text is drawn for a device of this many dots per inch.
    static constexpr int DotsPerInch = 96;

    /// `timing` is the layer's entry in the canvas's timing table, kept in step from here on. Without
    /// `tags`, that is outside a portfolio, texts are not expanded. All of them outlive the layer.
    Text(LayerHost& host, LayerTiming& timing, Fonts& fonts, const TagSource* tags);
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    /// Releases the layer's picture and font. The canvas calls it before it drops the layer.
    void UnloadClass();

    /// Expands the tags of `Value` into `ProcessedString`. A result that differs from the one before makes
    /// the layer changed and sets its force flag.
    void ProcessText();

    void SetNextTime();

    /// The next time is computed anew from the present, whatever it was: for a clock that was set back.
    void RestartTiming();

    /// Makes the layer due at once, whatever its rate.
    void ForceUpdate();

    /// Draws `ProcessedString` where it or a drawing setting changed, and marks the layer's pass then.
    /// Clears the changed and the force flag.
    void UpdateImage();

    /// Lays the text, or its shadow, onto all of a bitmap of the canvas's size at the aligned position.
    void MergeImageTo(DIB& canvas) { MergeImageTo(canvas, canvas.Whole()); }
    void MergeShadowTo(DIB& shadow) { MergeShadowTo(shadow, shadow.Whole()); }

    // DrawnLayer

    LayerLook Look(int canvasHeight) override;
    void MergeImageTo(DIB& canvas, const PixelArea& within) override;
    void MergeShadowTo(DIB& shadow, const PixelArea& within) override;

    /// The final picture's size; 0 while there is nothing to draw.
    int Width() { return blank_ ? 0 : image_.FinalWidth(); }
    int Height() { return blank_ ? 0 : image_.FinalHeight(); }

    /// True while the layer waits to be drawn, or its schedule to be saved.
    bool Changed() const { return changed_ || schedule_.NeedsSaving(); }

    tessaloom::Image& Image() { return image_; }
    tessaloom::Schedule& Schedule() { return schedule_; }
    const tessaloom::Schedule& Schedule() const { return schedule_; }

    /// The canvas's slot in the portfolio and the layer's in the canvas, given by the owner.
    int CanvasValue() const { return canvasIndex_; }
    void SetCanvasValue(int slot);
    int IndexValue() const { return index_; }
    void SetIndexValue(int slot) { index_ = slot; }

    /// The text as typed, with its tags (the property `Text`).
    const std::string& Value() const { return text_; }
    void SetValue(std::string_view text);

    /// The text as it is drawn. What a script sets here lasts until the next expansion.
    const std::string& ProcessedString() const { return processed_; }
    void SetProcessedString(std::string_view text);

    /// Which point of the text's box lies at the position (imaging/Alignment.h), 0 .. 8.
    int Alignment() const { return alignment_; }
    void SetAlignment(int code) { Set(alignment_, code, {0, 8}); }

    int x() const { return x_; }
    void Setx(int column) { Set(x_, column, {-3000, 3000}); }
    int Y() const { return y_; }
    void SetY(int row) { Set(y_, row, {-2000, 2000}); }

    /// Points, 2 .. 288.
    float FontSize() const { return fontSize_; }
    void SetFontSize(float points) { Set(fontSize_, points, {2, 288}); }

    const std::string& FontName() const { return fontName_; }
    void SetFontName(std::string_view name);

    bool FontBold() const { return fontBold_; }
    void SetFontBold(bool bold) { Set(fontBold_, bold); }
    bool FontItalic() const { return fontItalic_; }
    void SetFontItalic(bool italic) { Set(fontItalic_, italic); }

    /// 0: two-level, 1: grey, 2: sub-pixels.
    int FontSmoothing() const { return fontSmoothing_; }
    void SetFontSmoothing(int smoothing) { Set(fontSmoothing_, smoothing, {0, 2}); }

    /// 0x00BBGGRR
    int Color() const { return color_; }
    void SetColor(int color) { Set(color_, color, {0, 0xFFFFFF}); }

    /// Per cent.
    int Opacity() const { return opacity_; }
    void SetOpacity(int percent) { Set(opacity_, percent, {0, 100}); }

    /// 0 .. 2. Kept for its document; a text is always blended through its glyphs.
    int OpacityMode() const { return opacityMode_; }
    void SetOpacityMode(int mode) { Set(opacityMode_, mode, {0, 2}); }

    /// Degrees counterclockwise, 0 .. 360: from 360 on 360, negative ones get 360 added.
    float RotationAngle() const { return rotationAngle_; }
    void SetRotationAngle(float degrees);

    /// A script supplies the text.
    bool Scripted() const { return scripted_; }
    void SetScripted(bool scripted);

    bool Shadow() const { return shadow_; }
    void SetShadow(bool shadow) { Set(shadow_, shadow); }
    /// Softness, 1 .. 4.
    int ShadowSize() const { return shadowSize_; }
    void SetShadowSize(int size) { Set(shadowSize_, size, {1, 4}); }
    int ShadowOffsetX() const { return shadowOffsetX_; }
    void SetShadowOffsetX(int columns) { Set(shadowOffsetX_, columns, {-3000, 3000}); }
    int ShadowOffsetY() const { return shadowOffsetY_; }
    void SetShadowOffsetY(int rows) { Set(shadowOffsetY_, rows, {-2000, 2000}); }

    /// A change marks the layer's pass.
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);

    /// The pass, 0 (bottom) .. 3. A change marks the old pass and the new one.
    int Layer() const { return layer_; }
    void SetLayer(int pass);

    /// Seconds between two expansions, 0 .. 86400; 0: only when forced.
    double Rate() const { return timing_.Rate(); }
    void SetRate(double seconds);

    /// Seconds after midnight, 0 .. 86400.
    int UpdateBaseTime() const { return static_cast<int>(timing_.BaseTime()); }
    void SetUpdateBaseTime(int seconds);

    double NextTime() const { return timing_.NextTime(); }

private:
    /// All that decides the coverage map; while it stays the same, nothing is drawn.
    struct Drawing {
        std::string text;
        LogicalFont font;
        ClearTypeSettings clearType;
        int column = 0;  ///< How lines of one text are aligned to one another.

        bool operator==(const Drawing&) const = default;
    };

    template <typename T>
    void Set(T& field, T value, Range<T> range) {
        if (Store(field, value, range)) Touch();
    }
    template <typename T>
    void Set(T& field, T value) {
        if (Store(field, value)) Touch();
    }
    void Touch();
    void CopyNextTime();
    void FindWanted();
    void PlaceText();
    void SetUpImage();

    LayerHost& host_;
    LayerTiming& entry_;
    Fonts& fonts_;
    const TagSource* tags_;
    tessaloom::Image image_;
    tessaloom::Schedule schedule_;
    TimedActivity timing_{
        {0, 86400},
        {0, 86400}
    };

    DIB coverage_;
    Drawing wanted_, drawn_;
    bool haveDrawn_ = false;
    bool blank_ = true;  ///< Nothing to lay down: an empty text, or none drawn yet.
    bool changed_ = true;
    bool recompose_ = true;  ///< A setting changed that the next `UpdateImage` makes visible.

    int canvasIndex_ = 0;
    int index_ = 0;
    std::string text_;
    std::string processed_;
    std::string previousResult_;
    int alignment_ = 0;
    int x_ = 0;
    int y_ = 0;
    float fontSize_ = 14;
    std::string fontName_ = "Arial";
    bool fontBold_ = false;
    bool fontItalic_ = false;
    int fontSmoothing_ = 0;
    int color_ = 0x808080;
    int opacity_ = 100;
    int opacityMode_ = 2;
    float rotationAngle_ = 0;
    bool scripted_ = false;
    bool shadow_ = false;
    int shadowSize_ = 1;
    int shadowOffsetX_ = 2;
    int shadowOffsetY_ = 2;
    bool enabled_ = true;
    int layer_ = 1;
};

}  // namespace tessaloom
