#include "imaging/Image.h"

#include "PictureFixture.h"
#include "imaging/Alignment.h"

namespace tessaloom::testing {
namespace {

constexpr int White = 0xFFFFFF, Black = 0, Red = 0x0000FF, Green = 0x00FF00, Blue = 0xFF0000;

using Stage = Image::Stage;

class ImageTest : public PictureFixture {
protected:
    /// A plain picture supplied by the owner.
    void Supply(int width, int height, int color) {
        DIB source;
        Fill(source, width, height, color);
        image.LoadIntoPictureDIB(source);
    }

    void SupplyText(int width, int height, int coverage) {
        DIB source;
        Fill(source, width, height, coverage * 0x010101);
        image.SetPictureType(Image::Text);
        image.SetTextCoverage(source);
    }

    Image image{access};
    DIB canvas;
};

TEST_F(ImageTest, ClampsItsProperties) {
    const std::pair<float, float> angles[] = {
  // clang-format off
        {360, 0}, {-10, 0}, {400, 0}, {359.5F, 359.5F}, {90, 90}, {-360, 0},
  // clang-format on
    };
    for (const auto& [set, stored] : angles) {
        image.SetRotationAngle(set);
        EXPECT_EQ(image.RotationAngle(), stored) << set;
    }
    image.SetWidthHeight(5000, 5000);
    EXPECT_EQ(image.Width(), 3000);
    EXPECT_EQ(image.Height(), 2000);
    image.SetStretchedWidthHeight(0, 9999);
    EXPECT_EQ(image.StretchedWidth(), 1);
    EXPECT_EQ(image.StretchedHeight(), 2000);
}

TEST_F(ImageTest, MarksTheStagesThatASetterAffects) {
    struct Row {
        std::string name;
        std::function<void(Image&)> set;
        std::vector<Stage> dirty;
    };
    using S = Stage;
    // clang-format off
    const std::vector<S> all = {S::Picture, S::Image, S::Crop, S::Stretch, S::Rotation, S::OpacityFile, S::Opacity,
                                S::RotatedOpacity, S::Shadow};
    const Row rows[] = {
        {"StretchEnabled",   [](Image& i) { i.SetStretchEnabled(true); }, {S::Stretch, S::Rotation, S::RotatedOpacity}},
        {"StretchSmoothing", [](Image& i) { i.SetStretchSmoothing(true); }, {S::Stretch}},
        {"Stretched size",   [](Image& i) { i.SetStretchedWidthHeight(7, 7); }, {S::Stretch}},
        {"RotationAngle",    [](Image& i) { i.SetRotationAngle(30); }, {S::Rotation, S::RotatedOpacity}},
        {"ShadowEnabled",    [](Image& i) { i.SetShadowEnabled(true); }, {S::Shadow}},
        {"without shadow",   [](Image& i) { i.SetShadowSize(3); }, {}},
        {"ColorProcessing",  [](Image& i) { i.SetColorProcessing(1); }, all},
        {"Crop",             [](Image& i) { i.SetCrop(1, 0, 0, 0); }, {S::Crop}},
        {"FeatherWidth",     [](Image& i) { i.SetFeatherWidth(2); }, {S::Opacity}},
        {"the same value",   [](Image& i) { i.SetCrop(0, 0, 0, 0); }, {}},
    };
    // clang-format on
    Put("a.jpg", {8, 6, Red});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Image fresh(access);
        fresh.SetPictureType(Image::File);
        fresh.SetPictureFileName("a.jpg");
        fresh.GetFinalizedDIB();
        row.set(fresh);
        for (const Stage stage : all) {
            const bool expected = std::ranges::count(row.dirty, stage) > 0;
            EXPECT_EQ(fresh.Dirty(stage), expected) << static_cast<int>(stage);
        }
        fresh.GetFinalizedDIB();
        for (const Stage stage : all) EXPECT_FALSE(fresh.Dirty(stage)) << static_cast<int>(stage);
    }
}

TEST_F(ImageTest, KeepsItsStagesWhenColoursChangeWithoutAFile) {
    Supply(4, 4, Red);
    image.GetFinalizedDIB();
    const unsigned before = image.Revision();
    image.SetColorProcessing(1);
    EXPECT_EQ(image.Revision(), before);
    EXPECT_FALSE(image.Dirty(Stage::Crop));

    Supply(4, 4, Red);  // the same frame again is processed now
    EXPECT_NE(image.GetFinalizedDIB().Pixel(0, 0), Red);
}

TEST_F(ImageTest, CutsStretchesAndTurnsInThisOrder) {
    struct Row {
        std::string name;
        int type;
        int left, right, top, bottom;
        bool stretch;
        float angle;
        int croppedWidth, croppedHeight, finalWidth, finalHeight;
    };
    const Row rows[] = {
        {"as it is",                      Image::Supplied, 0,    0,    0,    0,    false, 0,   40, 20, 40, 20},
        {"cut",                           Image::Supplied, 3,    4,    5,    6,    false, 0,   33, 9,  33, 9 },
        {"cut to nothing",                Image::Supplied, 30,   30,   0,    0,    false, 0,   1,  20, 1,  20},
        {"cut by far more than there is", Image::Supplied, 3000, 3000, 2000, 2000, false, 0,   1,  1,  1,  1 },
        {"stretched",                     Image::Supplied, 3,    4,    0,    0,    true,  0,   33, 20, 10, 30},
        {"a block is not stretched",      Image::Block,    0,    0,    0,    0,    true,  0,   40, 20, 40, 20},
        {"a quarter turn",                Image::Supplied, 0,    0,    0,    0,    false, 90,  40, 20, 20, 40},
        {"a half turn after stretching",  Image::Supplied, 0,    0,    0,    0,    true,  180, 40, 20, 10, 30},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        image.SetPictureType(row.type);
        image.SetCrop(row.left, row.right, row.top, row.bottom);
        image.SetStretchedWidthHeight(10, 30);
        image.SetStretchEnabled(row.stretch);
        image.SetRotationAngle(row.angle);
        Supply(40, 20, Green);
        EXPECT_EQ(image.GetCroppedDIB().Width(), row.croppedWidth);
        EXPECT_EQ(image.GetCroppedDIB().Height(), row.croppedHeight);
        EXPECT_EQ(image.FinalWidth(), row.finalWidth);
        EXPECT_EQ(image.FinalHeight(), row.finalHeight);
        EXPECT_EQ(CountPixels(image.GetFinalizedDIB(), Green), row.finalWidth * row.finalHeight);
    }
}

TEST_F(ImageTest, CutsFromTheEdgesThatAreNamed) {
    DIB source;
    Fill(source, 6, 5, Black);
    SetPixel(source, 2, 1, Red);
    image.LoadIntoPictureDIB(source);
    image.SetCrop(2, 1, 1, 0);
    EXPECT_EQ(image.GetFinalizedDIB().Pixel(0, 0), Red);
    EXPECT_EQ(image.FinalWidth(), 3);
    EXPECT_EQ(image.FinalHeight(), 4);
}

TEST_F(ImageTest, MergesByOpacityAndIsCutAtTheEdges) {
    struct Row {
        std::string name;
        int x, y, mode, percent, color;
        int pixels;  // of `color` on a white canvas of 10 x 8
    };
    const Row rows[] = {
        {"copied",                  2,           2,          2, 100, Black,    12},
        {"nothing at 0 percent",    2,           2,          2, 0,   White,    80},
        {"half",                    2,           2,          2, 50,  0x808080, 12},
        {"cut at the left and top", -2,          -1,         2, 100, Black,    4 },
        {"cut, blended",            8,           6,          2, 50,  0x808080, 4 },
        {"outside",                 10,          0,          2, 100, White,    80},
        {"far outside",             -2147483647, 2147483647, 2, 50,  White,    80},
        {"mode 3 without a map",    2,           2,          3, 100, White,    80},
        {"the same, turned",        2,           2,          3, 100, White,    80},
    };
    Supply(4, 3, Black);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        image.SetRotationAngle(row.name == "the same, turned" ? 45.0F : 0.0F);
        Fill(canvas, 10, 8, White);
        image.SetOpacityMode(row.mode);
        image.SetOpacityValue(row.percent);
        image.MergeImageTo(canvas, row.x, row.y);
        EXPECT_EQ(CountPixels(canvas, row.color), row.pixels);
        EXPECT_EQ(CountPixels(canvas, White), row.color == White ? row.pixels : 80 - row.pixels);
    }
}

TEST_F(ImageTest, LiesWhereItsAlignmentSays) {
    Supply(4, 3, Red);
    image.SetAlignment(static_cast<int>(Anchor::BottomRight));
    for (const int percent : {100, 99}) {  // copied and blended alike
        Fill(canvas, 10, 8, Black);
        image.SetOpacityValue(percent);
        image.MergeImageTo(canvas, 10, 8);
        EXPECT_NE(canvas.Pixel(6, 5), Black);
        EXPECT_NE(canvas.Pixel(9, 7), Black);
        EXPECT_EQ(CountPixels(canvas, Black), 80 - 12);
    }
}

TEST_F(ImageTest, LetsTheCanvasShowBesideATurnedPicture) {
    image.SetBackgroundColor(Black);
    image.SetRotationAngle(45);
    Supply(30, 30, White);
    Fill(canvas, 60, 60, White);
    image.SetAlignment(static_cast<int>(Anchor::Centre));
    image.MergeImageTo(canvas, 30, 30);
    EXPECT_EQ(CountPixels(canvas, White), 3600) << "the edges mix with the background colour";

    Fill(canvas, 60, 60, Black);
    image.MergeImageTo(canvas, 30, 30);
    EXPECT_EQ(canvas.Pixel(30, 30), White);
    EXPECT_EQ(canvas.Pixel(30, 12), White) << "a corner of the square points upwards";
    EXPECT_EQ(canvas.Pixel(18, 18), Black) << "a corner of the bitmap is empty";
    EXPECT_NEAR(CountPixels(canvas, White), 30 * 30, 70);
}

TEST_F(ImageTest, TurnsTheMapAnewWhenAnotherShapeTurnsToTheSameSize) {
    image.SetBackgroundColor(Red);
    image.SetRotationAngle(45);
    image.SetAlignment(static_cast<int>(Anchor::Centre));
    for (const auto& [width, height] : {
             std::pair{40, 8 },
             {8,  40}
    }) {
        Supply(width, height, White);
        Fill(canvas, 60, 60, Black);
        image.MergeImageTo(canvas, 30, 30);
        EXPECT_EQ(canvas.Pixel(30 + 11, 30 - 11), width > height ? White : Black) << width;
    }
}

TEST_F(ImageTest, LaysTextDownInItsColour) {
    SupplyText(4, 3, 255);
    image.SetTextColor(Red);
    image.SetOpacityMode(2);
    for (const auto& [percent, colour] : {
             std::pair{100, Red},
             {50,  127}
    }) {
        image.SetOpacityValue(percent);
        Fill(canvas, 10, 8, Black);
        image.MergeImageTo(canvas, 1, 1);
        EXPECT_EQ(CountPixels(canvas, colour), 12);
    }
    image.SetOpacityValue(100);
    image.SetRotationAngle(45);
    Fill(canvas, 10, 8, Black);
    image.MergeImageTo(canvas, 1, 1);
    EXPECT_EQ(canvas.Pixel(1, 1), Black) << "a corner beside the turned text";
    EXPECT_GT(CountPixels(canvas, Red), 0);

    const unsigned before = image.Revision();
    SupplyText(4, 3, 255);
    EXPECT_EQ(image.Revision(), before) << "the same text again";
}

TEST_F(ImageTest, DropsTransparentColours) {
    DIB source;
    Fill(source, 4, 4, Green);
    SetPixel(source, 1, 1, Red);
    image.LoadIntoPictureDIB(source);
    image.SetTransparentColorTable(0, 0x00F000);
    image.SetTransparentColorTable(1, Green);
    image.SetTransparentColorCount(1);
    image.SetTransparentEnabled(true);
    Fill(canvas, 4, 4, White);
    image.MergeImageTo(canvas, 0, 0);
    EXPECT_EQ(CountPixels(canvas, White), 15);
    EXPECT_EQ(canvas.Pixel(1, 1), Red);

    image.SetTransparentColorTable(0, Green);
    image.SetTransparentColorCount(0);
    image.MergeImageTo(canvas, 0, 0);
    EXPECT_EQ(CountPixels(canvas, Green), 15) << "an entry that is no longer in use";
}

TEST_F(ImageTest, FadesTowardsFeatheredEdges) {
    Supply(21, 21, White);
    image.SetFeatherWidth(4);
    image.SetFeatherRadius(6);
    Fill(canvas, 21, 21, Black);
    image.MergeImageTo(canvas, 0, 0);
    EXPECT_EQ(canvas.Pixel(10, 10), White);
    EXPECT_EQ(canvas.Pixel(0, 0), Black) << "outside the rounded corner";
    for (int x = 1; x < 4; ++x) {
        EXPECT_GT(canvas.Pixel(x, 10), canvas.Pixel(x - 1, 10)) << x;
        EXPECT_EQ(canvas.Pixel(x, 10), canvas.Pixel(20 - x, 10)) << x;
        EXPECT_EQ(canvas.Pixel(x, 10), canvas.Pixel(10, x)) << x;
    }
    EXPECT_EQ(canvas.Pixel(4, 10), White);

    image.SetFeatherWidth(0);
    image.SetFeatherRadius(0);
    EXPECT_EQ(image.FinalOpacityDIB(), nullptr);
}

TEST_F(ImageTest, StaysUprightWhereTurningWouldTakeTooMuchMemory) {
    Supply(20'000, 2, Red);
    image.SetRotationAngle(45);
    image.SetShadowEnabled(true);
    EXPECT_EQ(image.FinalWidth(), 20'000);
    EXPECT_EQ(image.FinalOpacityDIB(), nullptr);
    EXPECT_EQ(reports.size(), 1U);
    image.SetRotationAngle(90);
    EXPECT_EQ(image.FinalHeight(), 20'000);
    image.SetRotationAngle(45);
    image.SetCrop(0, 19'990, 0, 0);
    EXPECT_EQ(image.GetFinalizedDIB().Width(), 9);
    EXPECT_NE(image.FinalOpacityDIB(), nullptr);

    image.SetCrop(0, 0, 0, 0);
    for (const int feather : {2, 0}) {
        image.SetFeatherWidth(feather);
        image.GetFinalizedDIB();
    }
    image.SetCrop(0, 19'990, 0, 0);
    EXPECT_NE(image.FinalOpacityDIB(), nullptr) << "turned again, to the size of before";
}

TEST_F(ImageTest, TakesItsOpacityFromAFile) {
    struct Row {
        std::string name, file;
        PlainPicture picture;
        int left, right;  // levels of a white picture on black
    };
    const Row rows[] = {
        {"alpha",                       "alpha.png", {4, 2, White, 51}, 51, 255},
        {"intensity",                   "grey.jpg",  {4, 2, 0x404040},  64, 64 },
        {"missing: the last one stays", "none.png",  {0, 0},            64, 64 },
    };
    image.SetOpacityType(Image::FromOpacityFile);
    Supply(16, 8, White);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        if (row.picture.width > 0) Put(row.file, row.picture);
        image.SetOpacityFileName(row.file);
        Fill(canvas, 16, 8, Black);
        image.MergeImageTo(canvas, 0, 0);
        EXPECT_EQ(canvas.Pixel(1, 1) & 0xFF, row.left);
        EXPECT_EQ(canvas.Pixel(14, 6) & 0xFF, row.right);
    }
    EXPECT_EQ(reports.size(), 1U);

    const unsigned before = image.Revision();
    image.ForceOpacityLoad();
    image.GetFinalizedDIB();
    EXPECT_EQ(image.Revision(), before) << "a file that stays missing is no change";
}

TEST_F(ImageTest, CastsAShadowAroundItself) {
    Supply(8, 6, Red);
    DIB shadow;
    Fill(shadow, 30, 20, Black);
    image.MergeShadowTo(shadow, 10, 5);
    EXPECT_EQ(CountPixels(shadow, Black), 600) << "without shadow";

    image.SetShadowSize(4);
    image.SetShadowEnabled(true);
    EXPECT_EQ(image.GetShadowDIB().Width(), 12);
    image.MergeShadowTo(shadow, 10, 5);
    EXPECT_EQ(shadow.Pixel(14, 8), White);
    for (int i = 0; i < 6; ++i) {  // alike on opposite sides of the layer at (10, 5) .. (17, 10)
        EXPECT_EQ(shadow.Pixel(8 + i, 8), shadow.Pixel(19 - i, 8)) << i;
        EXPECT_EQ(shadow.Pixel(14, 3 + i), shadow.Pixel(14, 12 - i)) << i;
    }
    EXPECT_NE(shadow.Pixel(9, 8), Black);
    EXPECT_EQ(shadow.Pixel(7, 8), Black);

    Supply(8, 4, Red);
    EXPECT_EQ(image.GetShadowDIB().Height(), 8) << "it follows the picture";
    image.SetRotationAngle(90);
    image.GetFinalizedDIB();
    Supply(8, 4, Blue);
    image.FinalOpacityDIB();
    EXPECT_FALSE(image.Dirty(Stage::Shadow)) << "another frame of the same outline";
}

TEST_F(ImageTest, HasNothingToMergeBeforeAPictureCame) {
    image.SetShadowEnabled(true);
    image.SetFeatherWidth(3);
    image.SetRotationAngle(20);
    image.SetCrop(1, 1, 1, 1);
    image.SetStretchedWidthHeight(5, 5);
    image.SetStretchEnabled(true);
    Fill(canvas, 4, 4, White);
    image.MergeImageTo(canvas, 0, 0);
    image.MergeShadowTo(canvas, 0, 0);
    EXPECT_EQ(CountPixels(canvas, White), 16);
    EXPECT_EQ(image.FinalWidth(), 0);

    Supply(9, 9, Black);
    image.MergeImageTo(canvas, 0, 0);
    EXPECT_LT(CountPixels(canvas, White), 16);
    ASSERT_NE(image.FinalOpacityDIB(), nullptr);
    EXPECT_EQ(image.FinalOpacityDIB()->Width(), image.FinalWidth());
}

/// Settings of an image, as numbers that a random walk changes one by one.
struct Walk {
    // clang-format off
    enum Setting { Type, Frame, Size, Cut, Stretch, StretchSize, Smooth, Angle, Feather, Radius, File, Transparent,
                   Percent, Shadow, Softness, Colors, Mode, Count };
    // clang-format on

    std::array<int, Count> values{};

    void Apply(Image& image) const {
        const auto of = [&](Setting setting) { return values[setting]; };
        constexpr int Types[] = {Image::Supplied, Image::Block, Image::Text, Image::Supplied};
        constexpr float Angles[] = {0, 90, 33.5F, 270};
        image.SetPictureType(Types[of(Type)]);
        image.SetColorProcessing(of(Colors));
        image.SetCrop(of(Cut), 0, 2 * of(Cut), 1);
        image.SetStretchEnabled(of(Stretch) % 2 == 1);
        image.SetStretchedWidthHeight(9 + 5 * of(StretchSize), 14);
        image.SetStretchSmoothing(of(Smooth) % 2 == 1);
        image.SetRotationAngle(Angles[of(Angle)]);
        image.SetFeatherWidth(of(Feather) == 1 ? 3 : 0);
        image.SetFeatherRadius(of(Radius) == 1 ? 4 : 0);
        image.SetOpacityFileName(of(File) >= 2 ? "two.jpg" : "one.png");
        image.SetOpacityType(of(File) % 2);
        image.SetTransparentColorTable(0, 0x303030);
        image.SetTransparentColorTable(2, 10 * of(Transparent));
        image.SetTransparentColorCount(1);
        image.SetTransparentEnabled(of(Transparent) > 1);
        image.SetOpacityValue(100 - 20 * of(Percent));
        image.SetOpacityMode(of(Mode));
        image.SetShadowEnabled(of(Shadow) % 2 == 1);
        image.SetShadowSize(of(Softness));
        DIB frame;
        Fill(frame, 12 + of(Size), 10 + 3 * of(Size), 0x202020 * (of(Frame) + 1));
        SetPixel(frame, 3, 4, Red);
        Types[of(Type)] == Image::Text ? image.SetTextCoverage(frame) : image.LoadIntoPictureDIB(frame);
    }
};

TEST_F(ImageTest, ShowsTheSameAsAFreshOneAfterAnyChanges) {
    Put("one.png", {4, 2, White, 100});
    Put("two.jpg", {2, 2, 0xA0A0A0});
    Walk walk;
    std::mt19937 random(7);
    const auto shown = [](Image& subject) {
        DIB both;
        Fill(both, 60, 120, 0x406080);
        subject.MergeImageTo(both, 5, 5);
        subject.MergeShadowTo(both, 5, 65);
        return std::vector<std::uint8_t>(both.DIBPtr(), both.DIBPtr() + both.SizeInBytes());
    };
    for (int step = 0; step < 2000; ++step) {
        const auto setting = random() % Walk::Count;
        walk.values[setting] = static_cast<int>(random() % 4);
        if (step % 8 == 7) {
            image.ClearDIB();
            image.GetFinalizedDIB();
        }
        walk.Apply(image);
        Image fresh(access);
        walk.Apply(fresh);
        ASSERT_EQ(shown(image), shown(fresh)) << "step " << step << ", setting " << setting;
    }
}

}  // namespace
}  // namespace tessaloom::testing
