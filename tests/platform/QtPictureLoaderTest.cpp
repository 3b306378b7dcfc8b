#include "platform/qt/QtPictureLoader.h"

#include <QGuiApplication>

#include "support/PictureData.h"

namespace tessaloom::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

// clang-format off
constexpr const char* Lossless[] = {"quarters.png", "deep.png", "quarters.bmp", "rle.bmp", "quarters.gif",
                                    "animated.gif", "quarters.ico", "quarters.ppm", "alpha.png"};
// clang-format on
constexpr const char* Lossy[] = {"quarters.jpg", "progressive.jpg", "cmyk.jpg", "odd.jpg"};

/// Counted from the top left corner; 0x00BBGGRR.
int Colour(const LoadedPicture& picture, int x, int y) {
    const int stride = (picture.width * 3 + 3) / 4 * 4;
    const auto at = static_cast<std::size_t>((picture.height - 1 - y) * stride + x * 3);
    return picture.pixels[at + 2] | picture.pixels[at + 1] << 8 | picture.pixels[at] << 16;
}

void ExpectQuarters(const LoadedPicture& picture, int tolerance, const char* name) {
    SCOPED_TRACE(name);
    ASSERT_EQ(picture.width, 33);
    ASSERT_EQ(picture.height, 24);
    ASSERT_EQ(picture.pixels.size(), 100U * 24U);
    const int seen[] = {Colour(picture, 3, 3), Colour(picture, 30, 3), Colour(picture, 3, 20),
                        Colour(picture, 30, 20)};
    for (std::size_t i = 0; i < 4; ++i)
        for (int shift = 0; shift < 24; shift += 8)
            EXPECT_NEAR(seen[i] >> shift & 0xFF, Quarters[i] >> shift & 0xFF, tolerance) << "part " << i;
}

TEST(QtPictureLoader, LoadsEveryFormatUpright) {
    QtPictureLoader loader;
    for (const char* name : Lossless) ExpectQuarters(loader.Load(PictureData(name)), 0, name);
    for (const char* name : Lossy) ExpectQuarters(loader.Load(PictureData(name)), 40, name);
}

TEST(QtPictureLoader, LoadsABitmapStoredFromTheTop) {
    Bytes file = PictureData("quarters.bmp");
    for (std::size_t i = 0; i < 4; ++i) file[22 + i] = static_cast<std::uint8_t>(-24 >> 8 * i);
    const LoadedPicture picture = QtPictureLoader().Load(file);
    ASSERT_EQ(picture.height, 24);
    EXPECT_EQ(Colour(picture, 3, 3), Quarters[2]) << "the rows now read the other way";
}

TEST(QtPictureLoader, FillsWhatRunLengthsPassOverWithTheFirstColour) {
    // 64 x 64, two colours; one white pixel, then the end of the picture.
    Bytes file(62);
    const auto put = [&](std::size_t at, unsigned value) {
        for (std::size_t i = 0; i < 4; ++i) file[at + i] = static_cast<std::uint8_t>(value >> 8 * i);
    };
    file[0] = 'B';
    file[1] = 'M';
    const std::pair<std::size_t, unsigned> fields[] = {
        {2,  66         },
        {10, 62         },
        {14, 40         },
        {18, 64         },
        {22, 64         },
        {26, 8 << 16 | 1},
        {30, 1          },
        {34, 4          },
        {46, 2          },
        {54, 0x302010   },
        {58, 0xFFFFFF   },
    };
    for (const auto& [at, value] : fields) put(at, value);
    for (const int byte : {1, 1, 0, 1}) file.push_back(static_cast<std::uint8_t>(byte));
    const LoadedPicture picture = QtPictureLoader().Load(file);
    ASSERT_EQ(picture.width, 64);
    EXPECT_EQ(Colour(picture, 0, 63), 0xFFFFFF);
    for (int x = 1; x < 64; ++x) EXPECT_EQ(Colour(picture, x, 63 - x), 0x102030);
}

TEST(QtPictureLoader, GivesAlphaOnlyWhereThereIsTransparency) {
    QtPictureLoader loader;
    EXPECT_TRUE(loader.Load(PictureData("quarters.png")).alpha.empty());
    const LoadedPicture picture = loader.Load(PictureData("alpha.png"));
    ASSERT_EQ(picture.alpha.size(), 33U * 24U);
    EXPECT_EQ(picture.alpha[0], 255) << "below left";
    EXPECT_EQ(picture.alpha[33 * 23], 64) << "above left";
}

TEST(QtPictureLoader, GivesAWholePictureOrNone) {
    QtPictureLoader loader;
    ::testing::internal::CaptureStderr();
    for (const auto names : {std::span<const char* const>(Lossless), std::span<const char* const>(Lossy)})
        for (const char* name : names) {
            const Bytes file = PictureData(name);
            const LoadedPicture whole = loader.Load(file);
            for (std::size_t length = 0; length < file.size(); ++length) {
                const LoadedPicture part = loader.Load(std::span(file).first(length));
                ASSERT_TRUE(!part || part.pixels == whole.pixels) << name << " cut to " << length << " bytes";
            }
        }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "") << "the decoders keep quiet";
}

TEST(QtPictureLoader, RefusesWhatIsBeyondTheLimits) {
    QtPictureLoader loader;
    for (const PictureLimits& limits : {PictureLimits{.side = 32}, PictureLimits{.pixels = 33 * 24 - 1}}) {
        loader.SetLimits(limits);
        for (const char* name : Lossless) EXPECT_FALSE(loader.Load(PictureData(name))) << name;
    }
    loader.SetLimits({.work = 33 * 24 * 5});
    EXPECT_FALSE(loader.Load(PictureData("progressive.jpg"))) << "ten passes";
    EXPECT_TRUE(loader.Load(PictureData("cmyk.jpg"))) << "one pass";
}

Bytes FromText(std::string_view text) { return {text.begin(), text.end()}; }

TEST(QtPictureLoader, DrawsVectorPicturesThatStandByThemselves) {
    constexpr std::string_view Open =
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:x='http://www.w3.org/1999/xlink' width='4' "
        "height='4'>";
    const auto picture = [&](std::string_view content) {
        return FromText(
            std::string(Open).append(content).append("<rect width='4' height='4' fill='red'/></svg>"));
    };
    QtPictureLoader loader;
    EXPECT_FALSE(loader.Load(picture("<text>a</text>"))) << "nothing to draw texts with";

    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 0;
    const QGuiApplication application(count, nullptr);
    const LoadedPicture text = loader.Load(picture("<text>a</text>"));
    ASSERT_EQ(text.width, 4) << "is the plug-in installed?";
    EXPECT_EQ(Colour(text, 1, 1), Quarters[0]);
    for (const char* content : {"<image x:href='/dev/stdin' width='4' height='4'/>",
                                "<g xmlns:s='http://www.w3.org/2000/svg'><s:image x:href='a.png'/></g>",
                                "<image x:href='data:image/png;base64,AAAA'/>", "<g>"})
        EXPECT_FALSE(loader.Load(picture(content))) << content;
    Bytes styled = FromText("<?xml version='1.0'?><?xml-stylesheet type=\"text/css\" href=\"/dev/stdin\"?>");
    const Bytes plain = picture("");
    styled.insert(styled.end(), plain.begin(), plain.end());
    EXPECT_FALSE(loader.Load(styled));
    EXPECT_FALSE(loader.Load(Bytes{0x1F, 0x8B, 8, 0})) << "packed";
}

TEST(QtPictureLoader, SurvivesDamagedFiles) {
    QtPictureLoader loader;
    loader.SetLimits({.side = 65500, .pixels = 1'000'000});
    std::mt19937 random(815);
    ::testing::internal::CaptureStderr();
    for (const char* name : Lossless) {
        const Bytes file = PictureData(name);
        for (int i = 0; i < 500; ++i) {
            const LoadedPicture picture = loader.Load(Mutated(file, random));
            if (!picture) continue;
            const auto width = static_cast<std::size_t>(picture.width),
                       height = static_cast<std::size_t>(picture.height);
            ASSERT_EQ(picture.pixels.size(), (width * 3 + 3) / 4 * 4 * height);
            ASSERT_TRUE(picture.alpha.empty() || picture.alpha.size() == width * height);
        }
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(loader.Load({}));
}

}  // namespace
}  // namespace tessaloom::testing
