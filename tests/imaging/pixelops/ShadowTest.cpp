#include "imaging/pixelops/Bitmap.h"
#include "imaging/pixelops/Tessaloom.h"
#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

constexpr int NoKey = 0x1000000;

Bitmap ShadowOf(Bitmap& layer, int size, int opacity = 255, Bitmap* map = nullptr, int key = NoKey) {
    Bitmap shadow(layer.width + 4, layer.height + 4, 0x777777);
    Shadow(shadow.Ptr(), shadow.width, shadow.height, layer.Ptr(), layer.width, layer.height, 2, 2,
           map ? 3 : 2, key, opacity, map ? map->Ptr() : nullptr, size, 0, 0, nullptr, 0, 0);
    EXPECT_TRUE(shadow.GuardsIntact());
    return shadow;
}

int Density(Bitmap& shadow, int x, int y) { return shadow.At(x, y)[0]; }

TEST(Shadow, IsASoftenedShapeOnBlack) {
    Bitmap layer(9, 7, 0x336699);
    for (int size = 1, last = 201; size <= 4; ++size) {
        SCOPED_TRACE(size);
        Bitmap shadow = ShadowOf(layer, size, 200);
        EXPECT_LT(Density(shadow, 2, 5), last) << "the softer, the less at the layer's own edge";
        last = Density(shadow, 2, 5);
        EXPECT_EQ(Density(shadow, 6, 5), 200) << "full within";
        int sum = 0;
        for (int y = 0; y < shadow.height; ++y) {
            for (int x = 0; x < shadow.width; ++x) {
                sum += Density(shadow, x, y);
                EXPECT_EQ(shadow.Colour(x, y), Density(shadow, x, y) * 0x010101) << "grey";
                EXPECT_EQ(Density(shadow, x, y),
                          Density(shadow, shadow.width - 1 - x, shadow.height - 1 - y));
            }
        }
        EXPECT_NEAR(sum, 9 * 7 * 200, 9 * 7 * 2) << "softening moves density, and loses none";
    }
    EXPECT_EQ(ShadowOf(layer, 0), ShadowOf(layer, 1));
    EXPECT_EQ(ShadowOf(layer, 99), ShadowOf(layer, 4));
}

TEST(Shadow, FollowsMapAndKeyColour) {
    Bitmap layer(11, 11, 0x0000FF), map(11, 11, 0);
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 5; ++x) map.Set(x, y, 0xFF8001);
    Bitmap mapped = ShadowOf(layer, 2, 255, &map);
    EXPECT_EQ(Density(mapped, 4, 7), 128) << "the mean of the three components";
    EXPECT_EQ(Density(mapped, 11, 7), 0);
    EXPECT_EQ(ShadowOf(layer, 2, 255, nullptr, 0x0000FF), Bitmap(15, 15, 0)) << "all keyed out";
}

TEST(Shadow, DarkensTheCanvasThroughThePass) {
    Bitmap layer(5, 5), pass(20, 20, 0), canvas(20, 20, 0xC86432);
    Bitmap shadow = ShadowOf(layer, 1);
    const int black[] = {0, 0, 0, 0};
    for (const int x : {4, 6})  // two shadows that overlap are no darker than one
        Merge(pass.Ptr(), 20, 20, shadow.Ptr(), 9, 9, x, 4, 0, 0, 255, nullptr, 0, 0, black, 1, -1);
    EXPECT_EQ(pass.Colour(9, 8), 0xFFFFFF);
    Merge(canvas.Ptr(), 20, 20, pass.Ptr(), 20, 20, 0, 0, 1, NoKey, 77, nullptr, 0, 0, nullptr, 0, 0);
    EXPECT_EQ(canvas.Colour(9, 8), 0x8C4623) << "30 % of it is gone";
    EXPECT_EQ(canvas.Colour(0, 0), 0xC86432) << "nothing where no shadow lies";
}

}  // namespace
}  // namespace tessaloom::testing
