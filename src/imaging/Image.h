#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/DIB.h"
#include "imaging/DrawnLayer.h"
#include "imaging/PixelArea.h"
#include "imaging/pixelops/Rotation.h"

namespace tessaloom {

class ErrorsFile;
struct PictureAccess;
class PictureFile;

/// Turns a layer's source into the bitmap that is laid onto the canvas, through cached stages: load and
/// colour processing, crop, stretch, rotation, opacity, shadow. Only stages whose input changed are computed
/// again.
///
/// Owned by its layer. Sizes and positions are pixels, positions from the canvas's top left corner, angles
/// degrees, colours 0x00BBGGRR. Every setter does nothing when the value is unchanged. A picture that cannot
/// be read leaves the one before in place.
class Image {
public:
    /// The numbers of `PictureType`. A supplied picture comes through `LoadIntoPictureDIB`.
    enum Type {
        Supplied = 0,  ///< By the owner (a feed's frame, a canvas); cropped and stretched like a file.
        File = 1,
        FetchedFile = 2,  ///< A file that was fetched from an address.
        Block = 3,        ///< Supplied at its final size: never stretched.
        Text = 4,         ///< Coverage of text, laid down in `TextColor`.
    };

    /// How the opacity map is obtained (`OpacityType`).
    enum OpacitySource {
        NoOpacityFile = 0,  ///< From the feathered edge, if any.
        /// From `OpacityFileName`: its alpha, without one its intensity; times the edge.
        FromOpacityFile = 1,
    };

    /// Stages in the order in which they are brought up to date; each has a dirty flag.
    enum class Stage : std::uint16_t {
        Picture,  ///< Whether the file must be read again.
        Image,    ///< The loaded, colour-processed picture.
        Crop,
        Stretch,
        Rotation,
        OpacityFile,     ///< Whether the opacity file must be read again.
        Opacity,         ///< The map of the stretched picture.
        RotatedOpacity,  ///< The map of the rotated picture.
        Shadow,
    };

    static constexpr int LargestWidth = 3000;
    static constexpr int LargestHeight = 2000;
    static constexpr int NoKeyColour = 0x1000000;
    static constexpr int ShadowMargin = 2;  ///< By which the shadow bitmap exceeds the picture on each side.

    static constexpr int LargestColorCount = 999;  ///< Groups: files number them with three digits.
    static constexpr int LargestColorTable = 4 * LargestColorCount;

    /// An image that is never asked for files (a text layer's) does without access to them.
    Image();
    explicit Image(const PictureAccess& access);
    ~Image();
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    // --- The source ---

    /// Takes `source` as the picture (types `Supplied` and `Block`). An equal picture changes nothing.
    void LoadIntoPictureDIB(const DIB& source);

    /// The same, but `source` itself becomes the picture: nobody may change it any more. Null changes
    /// nothing.
    void ShareIntoPictureDIB(std::shared_ptr<const DIB> source);

    /// Takes the coverage of a text as the picture (type `Text`): 0 none .. 255 full for each colour
    /// component. The image gets its size.
    void SetTextCoverage(const DIB& coverage);

    /// Gives the picture the size `Width` x `Height` and fills it with `BackgroundColor`.
    void ClearPicture();

    /// Drops the picture and all that was made of it.
    void ClearDIB();

    /// Has the file looked at again by the next getter; it is decoded when it changed since, or failed
    /// before.
    void ReloadPicture();

    /// The same for the opacity file.
    void ForceOpacityLoad();

    // --- The stages ---

    /// Each getter first brings the earlier stages up to date. Without a picture the bitmap is empty.
    const DIB& GetImageDIB();
    const DIB& GetCroppedDIB();
    const DIB& GetStretchedDIB();
    const DIB& GetRotatedDIB();
    /// The rotated picture, with opacity and shadow up to date, too.
    const DIB& GetFinalizedDIB();

    /// The map of the final picture; null where the opacity is uniform.
    const DIB* FinalOpacityDIB();
    const std::uint8_t* FinalOpacityDIBPtr();

    /// The shadow of the final picture; an empty bitmap without shadow.
    const DIB& GetShadowDIB();

    /// What each stage yields as it stands, with nothing brought up to date; null without pixels.
    const std::uint8_t* OriginalDIBPtrToWorkFrom() const { return Original().DIBPtr(); }
    const std::uint8_t* CroppedDIBPtrToWorkFrom() const { return Cropped().DIBPtr(); }
    const std::uint8_t* StretchedDIBPtrToWorkFrom() const { return Stretched().DIBPtr(); }
    const std::uint8_t* DIBPtrToWorkFrom() const { return Rotated().DIBPtr(); }
    const DeviceContext* OriginalhDCToWorkFrom() const { return Original().hDC(); }
    const DeviceContext* CroppedhDCToWorkFrom() const { return Cropped().hDC(); }
    const DeviceContext* StretchedhDCToWorkFrom() const { return Stretched().hDC(); }
    const DeviceContext* hDCToWorkFrom() const { return Rotated().hDC(); }
    const DIB& GetWorkingDIB() const { return Rotated(); }
    const DeviceContext* GetWorkinghDC() const { return Rotated().hDC(); }

    int FinalWidth() { return GetRotatedDIB().Width(); }
    int FinalHeight() { return GetRotatedDIB().Height(); }
    int GetWidth() { return GetImageDIB().Width(); }
    int GetHeight() { return GetImageDIB().Height(); }

    /// Changes whenever something changed that can be seen of the layer at an unchanged position.
    unsigned Revision() const { return revision_; }

    bool Dirty(Stage stage) const { return (dirty_ & Bit(stage)) != 0; }

    // --- Merging; `x`, `y`: where the alignment's anchor lies ---

    /// Lays the final picture onto `destination`, or onto that part of it alone.
    void MergeImageTo(DIB& destination, int x, int y) {
        MergeImageTo(destination, x, y, destination.Whole());
    }
    void MergeImageTo(DIB& destination, int x, int y, const PixelArea& within);

    /// Adds the shadow's density to `shadow`, a bitmap of the canvas's size. Nothing without shadow.
    void MergeShadowTo(DIB& shadow, int x, int y) { MergeShadowTo(shadow, x, y, shadow.Whole()); }
    void MergeShadowTo(DIB& shadow, int x, int y, const PixelArea& within);

    /// What `MergeImageTo` would show on a canvas of that height, with everything brought up to date; it
    /// knows no shadow.
    LayerLook Look(int x, int y, int canvasHeight);

    /// Where `MergeShadowTo` would add to a shadow of that height; empty without shadow.
    PixelArea ShadowArea(int x, int y, int canvasHeight);

    // --- Properties ---

    int PictureType() const { return pictureType_; }
    void SetPictureType(int type);

    /// origin: where the file was fetched from, as reports may show it; empty for a file of others.
    const std::string& PictureFileName() const { return pictureFileName_; }
    void SetPictureFileName(std::string_view name, std::string_view origin = {});

    const std::string& OpacityFileName() const { return opacityFileName_; }
    void SetOpacityFileName(std::string_view name);

    int OpacityType() const { return opacityType_; }
    void SetOpacityType(int type);

    /// 0 .. 3, pixelops/Tessaloom.h. A map works in every mode; mode 3 draws nothing without one.
    int OpacityMode() const { return opacityMode_; }
    void SetOpacityMode(int mode);

    /// Percent, 0 .. 100.
    int OpacityValue() const { return opacityValue_; }
    void SetOpacityValue(int percent);

    /// A number of pixelops/ColorModes.h; 0: none.
    int ColorProcessing() const { return colorProcessing_; }
    void SetColorProcessing(int mode);

    int BackgroundColor() const { return backgroundColor_; }
    void SetBackgroundColor(int colour);

    int TextColor() const { return textColor_; }
    void SetTextColor(int colour);

    /// 1 .. 3000 x 1 .. 2000; 0 x 0 in a new image.
    int Width() const { return width_; }
    int Height() const { return height_; }
    void SetWidthHeight(int width, int height);

    int StretchedWidth() const { return stretchedWidth_; }
    int StretchedHeight() const { return stretchedHeight_; }
    void SetStretchedWidthHeight(int width, int height);

    bool StretchEnabled() const { return stretchEnabled_; }
    void SetStretchEnabled(bool enabled);

    bool StretchSmoothing() const { return stretchSmoothing_; }
    void SetStretchSmoothing(bool smoothing);

    /// Pixels cut from each edge of the loaded picture; what is too much is reduced when the picture is cut.
    void SetCrop(int left, int right, int top, int bottom);

    /// An `Anchor`, imaging/Alignment.h.
    int Alignment() const { return alignment_; }
    void SetAlignment(int alignment);

    /// Degrees counterclockwise, 0 .. 360; 360 is stored as 0.
    float RotationAngle() const { return rotationAngle_; }
    void SetRotationAngle(float degrees);
    static float StoredAngle(float degrees);

    /// Pixels over which the picture fades in from its edge.
    int FeatherWidth() const { return featherWidth_; }
    void SetFeatherWidth(int pixels);

    /// Radius in pixels of the picture's rounded corners.
    int FeatherRadius() const { return featherRadius_; }
    void SetFeatherRadius(int pixels);

    bool ShadowEnabled() const { return shadowEnabled_; }
    void SetShadowEnabled(bool enabled);

    int ShadowSize() const { return shadowSize_; }
    void SetShadowSize(int size);

    bool TransparentEnabled() const { return transparentEnabled_; }
    void SetTransparentEnabled(bool enabled);

    /// Positions count from 0, in groups of four: two colours, then two parameters, set in percent and read
    /// scaled to 0 .. 255. A position below 0 or above the last possible one is ignored; unset ones read 0.
    int TransparentColorTable(int position) const;
    void SetTransparentColorTable(int position, int value);

    /// Whether the value at `position` of the table is a percentage, not a colour.
    static constexpr bool IsPercent(int position) { return position / 2 % 2 == 1; }

    /// Groups in use, 0 .. 999.
    int TransparentColorCount() const { return transparentColorCount_; }
    void SetTransparentColorCount(int count);

    /// Handed to the loading surface: it takes the picture's size.
    bool AutoSize() const { return autoSize_; }
    void SetAutoSize(bool autoSize);

private:
    using Stages = std::uint16_t;
    static constexpr Stages AllStages = 0x1FF;
    static constexpr Stages Bit(Stage stage) {
        return static_cast<Stages>(1U << static_cast<unsigned>(stage));
    }
    template <typename... Each>
    static constexpr Stages Bits(Each... stages) {
        return static_cast<Stages>((0U | ... | Bit(stages)));
    }

    struct Margins {
        int left = 0, right = 0, top = 0, bottom = 0;
        bool operator==(const Margins&) const = default;
    };

    /// Where the picture in hand came from.
    enum class Held { Nothing, FromFile, FromOwner, Cleared, Coverage };

    /// A stage and what brings it up to date.
    struct StageRoutine {
        Stage stage;
        void (Image::*run)();
    };
    static const StageRoutine StageRoutines[];

    /// The common change routine: what is seen changed, and `stages` must be computed again.
    void SetGraphics(Stages stages);
    void MarkDirty(Stages stages) { dirty_ = static_cast<Stages>(dirty_ | stages); }
    void MarkShadow();                            ///< Where there is one.
    bool HoldsSupplied(const DIB& source) const;  ///< It is what the picture in hand was made of.
    void PictureReplaced(Held held);

    void UpdateTo(Stage last);
    void CheckPictureFile();
    void LoadImageDIB();
    void LoadPicture();
    void LoadCroppedDIB();
    void LoadStretchedDIB();
    void LoadRotatedDIB();
    void LoadOpacityFile();
    void LoadOpacity();
    void LoadRotatedOpacityDIB();
    void LoadShadowDIB();

    const DIB& Original() const { return shared_ && suppliedProcessing_ == 0 ? *shared_ : picture_; }
    const DIB& Cropped() const { return cropActive_ ? cropped_ : Original(); }
    const DIB& Stretched() const { return stretchActive_ ? stretched_ : Cropped(); }
    const DIB& Rotated() const { return rotationActive_ ? rotated_ : Stretched(); }
    const DIB* FinalMap() const;
    bool LacksMap() const;  ///< The mode asks for a map, and neither a file nor a soft edge makes one.
    bool Opaque() const;
    bool Drawn() const;  ///< There is something to lay down.
    PixelArea PictureArea(int x, int y, int canvasHeight) const;

    bool IsFile() const { return pictureType_ == File || pictureType_ == FetchedFile; }
    bool IsText() const { return pictureType_ == Text; }
    bool IsFeathered() const { return featherWidth_ != 0 || featherRadius_ != 0; }
    bool HasOpacityFile() const;
    bool HasOpacity() const;      ///< Of the unrotated picture: a file's or a soft edge.
    bool TurnsToCorners() const;  ///< The rotated picture does not fill its bitmap.
    int KeyColour() const;

    std::unique_ptr<PictureFile> pictureFile_;
    std::unique_ptr<PictureFile> opacityFile_;
    ErrorsFile* errors_ = nullptr;

    DIB picture_;
    std::shared_ptr<const DIB> shared_;  ///< Like `supplied_`, of another owner; it is the picture itself
                                         ///< where nothing is processed.
    DIB supplied_;                       ///< The supplied picture before colour processing; empty without.
    DIB cropped_, stretched_, rotated_;
    DIB opacityPicture_;  ///< The opacity file as a map of its own size.
    DIB opacity_, rotatedOpacity_;
    DIB shadow_;
    DIB work_;           ///< What is turned: the picture with its edge continued, or the map's negative.
    PixelSize mapFrom_;  ///< The unrotated size that `rotatedOpacity_` was last made for; 0 x 0: unrotated.
    bool cropActive_ = false, stretchActive_ = false, rotationActive_ = false;
    bool opacityActive_ = false, rotatedOpacityActive_ = false;
    Held held_ = Held::Nothing;
    int suppliedProcessing_ = 0;  ///< The colour processing that the supplied picture went through.
    int clearedColor_ = 0;

    std::string pictureFileName_;
    std::string pictureOrigin_;
    std::string opacityFileName_;
    int pictureType_ = Supplied;
    int opacityType_ = NoOpacityFile;
    int opacityMode_ = 2;
    int opacityValue_ = 100;
    int colorProcessing_ = 0;
    int backgroundColor_ = 0;
    int textColor_ = 0;
    int width_ = 0, height_ = 0;
    int stretchedWidth_ = 0, stretchedHeight_ = 0;
    Margins crop_;
    int alignment_ = 0;
    float rotationAngle_ = 0;
    int featherWidth_ = 0, featherRadius_ = 0;
    int shadowSize_ = 1;
    int transparentColorCount_ = 0;
    std::vector<int> transparentColorTable_;
    bool stretchEnabled_ = false;
    bool stretchSmoothing_ = false;
    bool shadowEnabled_ = false;
    bool transparentEnabled_ = false;
    bool autoSize_ = true;

    Stages dirty_ = 0;
    unsigned revision_ = 0;
};

}  // namespace tessaloom
