#include "imaging/pixelops/Bitmap.h"
#include "imaging/pixelops/ColorModes.h"
#include "imaging/pixelops/Tessaloom.h"
#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(Cls, StoresBlueGreenRed) {
    Bitmap one(1, 1, 0xABCDEF);
    Cls(one.Ptr(), 1, 1, 0x0000FF);
    EXPECT_EQ(std::vector<int>({one.Ptr()[0], one.Ptr()[1], one.Ptr()[2]}), std::vector<int>({0, 0, 0xFF}));

    Bitmap many(5, 3);
    Cls(many.Ptr(), 5, 3, 0x123456);
    EXPECT_EQ(many, Bitmap(5, 3, 0x123456));
}

TEST(DIB1624, ConvertsInPlaceWithoutReadingItsOwnResult) {
    for (const int width : {1, 2, 3, 7, 8, 33}) {
        for (const int height : {1, 2, 9}) {
            Bitmap frame(width, height), expected(width, height);
            std::mt19937 random(static_cast<unsigned>(width * height));
            const std::size_t rowBytes = (static_cast<std::size_t>(width) * 2 + 3) / 4 * 4;
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    const auto packed = static_cast<unsigned>(random() & 0x7FFF);
                    std::uint8_t* at = frame.Ptr() + static_cast<std::size_t>(y) * rowBytes + x * 2;
                    at[0] = static_cast<std::uint8_t>(packed);
                    at[1] = static_cast<std::uint8_t>(packed >> 8);
                    auto eight = [](unsigned five) { return static_cast<int>(five * 527 + 23) >> 6; };
                    expected.Set(
                        x, y,
                        eight(packed >> 10 & 31) | eight(packed >> 5 & 31) << 8 | eight(packed & 31) << 16);
                }
            }
            DIB1624(frame.Ptr(), width, height);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    ASSERT_EQ(frame.Colour(x, y), expected.Colour(x, y)) << x << "," << y;
            EXPECT_TRUE(frame.GuardsIntact());
        }
    }
}

TEST(Diff, CentresOn128AndHonoursTheThreshold) {
    const struct {
        int current, previous, threshold, expected;
    } cases[] = {
        {10,  10,  0,   128},
        {20,  10,  0,   138},
        {10,  20,  0,   118},
        {255, 0,   0,   255},
        {0,   255, 0,   0  },
        {20,  10,  10,  128},
        {21,  10,  10,  139},
        {10,  20,  10,  128},
        {9,   20,  10,  117},
        {255, 0,   255, 128},
        {11,  10,  -5,  129}
    };
    for (const auto& c : cases) {
        Bitmap current(1, 1, c.current), previous(1, 1, c.previous), out(1, 1);
        Diff(out.Ptr(), current.Ptr(), previous.Ptr(), 1, 1, c.threshold);
        EXPECT_EQ(out.Colour(0, 0), 0x808000 | c.expected) << c.current << " after " << c.previous;
        Diff(current.Ptr(), current.Ptr(), previous.Ptr(), 1, 1, c.threshold);
        EXPECT_EQ(current, out) << "in place";
    }
}

TEST(DiffHistogram, CountsWhatDiffWritesWithoutThePadBytes) {
    Bitmap current(3, 2, 0x0105FF), previous(3, 2, 0x010000), out(3, 2), difference = out;
    std::array<int, 256> counts;
    counts.fill(99);
    DiffHistogram(out.Ptr(), current.Ptr(), previous.Ptr(), 3, 2, 4, counts.data());
    Diff(difference.Ptr(), current.Ptr(), previous.Ptr(), 3, 2, 4);
    EXPECT_EQ(out, difference);
    for (int v = 0; v < 256; ++v)
        EXPECT_EQ(counts[static_cast<std::size_t>(v)], v == 128 || v == 133 || v == 255 ? 6 : 0) << v;
}

TEST(Blur, TakesTheMeanOfTheNeighbourhood) {
    const struct {
        int width, height;
    } sizes[] = {
        {1,    1 },
        {2,    5 },
        {7,    1 },
        {31,   12},
        {256,  3 },
        {257,  4 },
        {600,  9 },
        {2050, 8 },
        {4099, 2 }
    };
    for (const auto& size : sizes) {
        for (int level = 0; level <= 4; ++level) {
            SCOPED_TRACE(::testing::Message() << size.width << " x " << size.height << ", level " << level);
            Bitmap source = Bitmap::Random(size.width, size.height, 5), out(size.width, size.height);
            Blur(source.Ptr(), out.Ptr(), size.height, size.width, level);
            EXPECT_TRUE(out.GuardsIntact());
            const int r = std::min(level, 3), area = (2 * r + 1) * (2 * r + 1);
            for (int y = 0; y < size.height; ++y) {
                for (int x = 0; x < size.width; ++x) {
                    int sum = 0;
                    for (int v = y - r; v <= y + r; ++v)
                        for (int u = x - r; u <= x + r; ++u)
                            sum += source.At(std::clamp(u, 0, size.width - 1),
                                             std::clamp(v, 0, size.height - 1))[1];
                    ASSERT_EQ(out.At(x, y)[1], (2 * sum + area) / (2 * area)) << x << ", " << y;
                }
            }
        }
    }
}

TEST(ColorProcess, TransformsByMode) {
    const struct {
        ColorMode mode;
        int before, after;  // 0x00BBGGRR
    } cases[] = {
        {ColorMode::None,            0x336699, 0x336699},
        {ColorMode::Greyscale,       0x336699, 0x707070},
        {ColorMode::Greyscale,       0xFFFFFF, 0xFFFFFF},
        {ColorMode::Negative,        0x00FF10, 0xFF00EF},
        {ColorMode::Brighter,        0x0080F0, 0x20A0FF},
        {ColorMode::Darker,          0x1080F0, 0x0060D0},
        {ColorMode::MoreContrast,    0x00FF80, 0x00FF80},
        {ColorMode::MoreContrast,    0x4080C0, 0x3080D0},
        {ColorMode::LessContrast,    0x00FF80, 0x1AE680},
        {ColorMode::LighterMidtones, 0x00FF40, 0x00FF5F},
        {ColorMode::DarkerMidtones,  0x00FF5F, 0x00FF40},
        {ColorMode::MoreSaturation,  0x808080, 0x808080},
        {ColorMode::MoreSaturation,  0x6078A0, 0x5374AC},
        {ColorMode::LessSaturation,  0x0000FF, 0x1F1FB8},
        {ColorMode::Warmer,          0x646464, 0x5A646E},
        {ColorMode::Cooler,          0x646464, 0x6E645A},
        {ColorMode::Sharpen,         0x336699, 0x336699},
        {ColorMode::AutoLevels,      0x404040, 0x404040},
        {ColorMode::SwapRedAndBlue,  0x336699, 0x996633},
        {static_cast<ColorMode>(99), 0x336699, 0x336699},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.mode));
        Bitmap picture(3, 2, c.before);
        ColorProcess(picture.Ptr(), 3, 2, static_cast<int>(c.mode));
        EXPECT_EQ(::testing::PrintToString(picture == Bitmap(3, 2, c.after)), "true")
            << std::hex << picture.Colour(0, 0);
    }
}

TEST(ColorProcess, SpreadsLevelsAndSharpensEdges) {
    Bitmap dull(100, 2, 0x404040);
    for (int x = 50; x < 100; ++x) dull.Set(x, 0, 0xC0C0C0), dull.Set(x, 1, 0x808080);
    ColorProcess(dull.Ptr(), 100, 2, static_cast<int>(ColorMode::AutoLevels));
    EXPECT_EQ(dull.Colour(0, 0), 0);
    EXPECT_EQ(dull.Colour(60, 0), 0xFFFFFF);
    EXPECT_EQ(dull.Colour(60, 1), 0x808080);

    Bitmap dot(3, 3, 100);
    dot.Set(1, 1, 140);
    ColorProcess(dot.Ptr(), 3, 3, static_cast<int>(ColorMode::Sharpen));
    EXPECT_EQ(dot.Colour(1, 1), 180);
    for (const auto& [x, y] : {
             std::pair{1, 0},
             {0, 1},
             {2, 1},
             {1, 2}
    })
        EXPECT_EQ(dot.Colour(x, y), 90);
    EXPECT_EQ(dot.Colour(0, 0), 100) << "diagonal neighbours do not count";
}

}  // namespace
}  // namespace tessaloom::testing
