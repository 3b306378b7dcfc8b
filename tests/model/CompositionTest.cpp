#include "imaging/Percent.h"
#include "imaging/pixelops/Tessaloom.h"
#include "model/Documents.h"

namespace tessaloom::testing {
namespace {

constexpr int Slots = 8, Turns = 1500, NoKeyColour = 0x1000000;

/// A canvas whose layers and settings change at random.
struct CompositionTest : Documents, ::testing::Test {
    std::mt19937 random{7};
    Canvas& canvas = Open(1, 200, 150);

    CompositionTest() {
        Write("a.bin", PlainPicture{90, 70, 0x3060C0, 80}.Bytes(false));
        Write("b.bin", PlainPicture{40, 120, 0xF0E010}.Bytes(false));
    }

    int Any(int low, int high) { return std::uniform_int_distribution(low, high)(random); }
    bool OneIn(int many) { return Any(1, many) == 1; }

    /// What a text and a graphic have alike.
    void Change(auto& layer) {
        const std::function<void()> changes[] = {
            [&] { layer.Setx(Any(-40, 220)); },
            [&] { layer.SetY(Any(-40, 170)); },
            [&] { layer.SetLayer(Any(0, 3)); },
            [&] { layer.SetEnabled(!OneIn(4)); },
            [&] { layer.SetShadow(OneIn(2)); },
            [&] { layer.SetShadowOffsetX(Any(-20, 20)); },
            [&] { layer.SetShadowSize(Any(1, 4)); },
            [&] { layer.SetOpacity(OneIn(2) ? 100 : Any(0, 100)); },
            [&] { layer.SetRotationAngle(static_cast<float>(OneIn(2) ? 0 : Any(0, 359))); },
            [&] { layer.SetAlignment(Any(0, 8)); },
            [&] { layer.ForceUpdate(); },
            [&] {
                layer.Schedule().SetScheduleMode(OneIn(2) ? Schedule::Always : Schedule::FromStartTo);
                layer.Schedule().SetStopAbsoluteTime(Any(0, 1));
            },
        };
        changes[Any(0, static_cast<int>(std::size(changes)) - 1)]();
    }

    void ChangeText(int slot) {
        if (OneIn(12)) canvas.RemoveText(slot);
        Text& text = *canvas.AddText(slot);
        Change(text);
        if (OneIn(3)) text.SetValue(std::string(static_cast<std::size_t>(Any(0, 9)), 'A'));
        if (OneIn(3)) text.SetColor(Any(0, 0xFFFFFF));
    }

    void ChangeGraphic(int slot) {
        if (OneIn(12)) canvas.RemoveGraphic(slot);
        Graphic& graphic = *canvas.AddGraphic(slot);
        Change(graphic);
        if (OneIn(3)) graphic.SetSourceType(Any(Graphic::PictureFile, Graphic::OtherCanvas));
        if (OneIn(3)) graphic.SetSourceFileName(OneIn(2) ? "a.bin" : "b.bin");
        if (OneIn(3)) graphic.SetBackgroundColor(Any(0, 0xFFFFFF));
        if (OneIn(3)) graphic.SetStretchWidth(Any(1, 90));
        if (OneIn(6)) graphic.SetFeatherWidth(Any(0, 5));
        if (OneIn(6)) graphic.SetOpacityMode(Any(0, 3));
        if (OneIn(6)) graphic.SetTransparentColorEnable(OneIn(2));
        graphic.SetStretched(OneIn(2));
        graphic.SetRate(1);
    }

    void ChangeCanvas() {
        if (OneIn(2)) canvas.SetBackgroundColor(Any(0, 0xFFFFFF));
        if (OneIn(2)) canvas.SetShadowIntensity(Any(0, 100));
        if (OneIn(4)) canvas.SetWidth(Any(150, 220));
        if (OneIn(4)) canvas.ForceReload();
        if (OneIn(4)) canvas.AddTextAndGraphicLayer(Any(0, 3));
        canvas.ForceLayerRedraw(0);
    }

    /// All layers, one after the other, in the order of passes, kinds and slots.
    void ComposePlainly(DIB& picture) {
        picture.SetWidthHeight(canvas.Width(), canvas.Height());
        picture.Clear(canvas.BackgroundColor());
        for (int pass = 0; pass < Canvas::Passes; ++pass) {
            DIB shadow;
            shadow.SetWidthHeight(canvas.Width(), canvas.Height());
            std::vector<DrawnLayer*> layers;
            const auto add = [&](auto* layer) {
                if (!layer || layer->Layer() != pass || !layer->Enabled()) return;
                if (!layer->Schedule().EnableNow(time.Now())) return;
                if (layer->Shadow()) layer->MergeShadowTo(shadow);
                layers.push_back(layer);
            };
            for (int i = 1; i <= Slots; ++i) add(canvas.Graphic(i));
            for (int i = 1; i <= Slots; ++i) add(canvas.Text(i));
            Merge(picture.DIBPtr(), picture.Width(), picture.Height(), shadow.DIBPtr(), shadow.Width(),
                  shadow.Height(), 0, 0, 1, NoKeyColour, To255(canvas.ShadowIntensity()), nullptr, 0, 0,
                  nullptr, 0, 0);
            for (DrawnLayer* layer : layers) layer->MergeImageTo(picture, picture.Whole());
        }
    }

    /// Where two pictures of one size differ.
    static PixelArea Difference(const DIB& a, const DIB& b) {
        PixelArea area;
        for (int y = 0; y < a.Height(); ++y)
            for (int x = 0; x < a.Width(); ++x)
                if (a.Pixel(x, y) != b.Pixel(x, y))
                    area.Include({x, x + 1, a.Height() - 1 - y, a.Height() - y});
        return area;
    }
};

TEST_F(CompositionTest, OfWhatChangedIsTheCompositionOfEverything) {
    int parts = 0;
    for (int turn = 0; turn < Turns; ++turn) {
        SCOPED_TRACE(turn);
        for (int change = Any(0, 2); change > 0; --change)
            OneIn(2) ? ChangeText(Any(1, Slots)) : ChangeGraphic(Any(1, Slots));
        if (OneIn(20)) ChangeCanvas();
        DIB before, expected;
        before.CopyFrom(canvas.Picture());
        Tick();
        ComposePlainly(expected);
        ASSERT_TRUE(Difference(canvas.Picture(), expected).Empty());
        const PixelArea changed = canvas.ChangedArea();
        if (before.Width() == expected.Width() && !(changed == expected.Whole())) {
            ASSERT_TRUE(changed.Holds(Difference(canvas.Picture(), before))) << "more than was told";
            if (!changed.Empty()) ++parts;
        }
    }
    EXPECT_GT(parts, Turns / 3);
}

TEST_F(CompositionTest, TakesALayerThatFollowsInThePlaceOfAnotherForAnother) {
    for (const int colour : {0x0000FF, 0x00FF00}) {
        canvas.RemoveGraphic(1);
        Block(canvas, 1, colour, 0, 0, 20, 20);
        Tick();
        EXPECT_EQ(canvas.Picture().Pixel(5, 5), colour);
    }
}

}  // namespace
}  // namespace tessaloom::testing
