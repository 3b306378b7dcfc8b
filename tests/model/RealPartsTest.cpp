#include "imaging/BmpFile.h"
#include "model/Documents.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/qt/QtPictureLoader.h"
#include "platform/text/FreeTypeFonts.h"
#include "publish/CanvasSaves.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {
namespace {

constexpr int White = 0xFFFFFF, Red = 0x0000FF;

/// A document on real files, fonts and codecs; only the clock and the person are not.
struct RealParts : TestPlatform, ::testing::Test {
    TemporaryFolder folder;
    PosixFileSystem realFiles;
    ProfileFiles realProfile{realFiles};
    FreeTypeFonts realFonts{TEST_DATA "/fonts.conf"};
    QtPictureLoader realPictures;
    TurboJpegCodec realJpeg;
    Platform real{realFiles, realProfile, locale,  time,       realFonts, realPictures,
                  realJpeg,  dialogs,     desktop, mainWindow, timer,     urlTransfers};
};

TEST_F(RealParts, PublishThePictureThatTheDocumentDescribes) {
    realFiles.WriteFile(folder / "p.por", "[Canvas01]\r\nFileName=" + (folder / "c.can") + "\r\n");
    realFiles.WriteFile(folder / "c.can",
                        "[General]\r\nWidth=200\r\nHeight=100\r\n"
                        "[Capture]\r\nFixedEnabled=True\r\nFixedRate=1\r\nFixedFileName=" +
                            (folder / "out.jpg") +
                            "\r\n[Graphic001]\r\nEnabled=True\r\nSourceType=1\r\nLocationX=120\r\n"
                            "SourceFileName=" +
                            (folder / "red.bmp") +
                            "\r\n[Text001]\r\nEnabled=True\r\nText=WWW\r\nColor=&H000000\r\nFontSize=30\r\n");
    DIB red;
    red.SetWidthHeight(64, 64);
    red.Clear(Red);
    const auto bytes = WriteBmp(red);
    ASSERT_TRUE(
        realFiles.WriteFile(folder / "red.bmp", {reinterpret_cast<const char*>(bytes.data()), bytes.size()}));

    Portfolio portfolio(real);
    portfolio.SetFileName(folder / "p.por");
    ASSERT_TRUE(portfolio.LoadFile());
    portfolio.SetCaptureTime(time.Now());
    portfolio.UpdateImages();
    portfolio.UpdateOtherPost();

    const auto file = realFiles.ReadFile(folder / "out.jpg");
    ASSERT_TRUE(file);
    const LoadedPicture picture =
        realPictures.Load({reinterpret_cast<const std::uint8_t*>(file->data()), file->size()});
    DIB decoded;
    decoded.SetWidthHeight(picture.width, picture.height);
    ASSERT_EQ(decoded.SizeInBytes(), picture.pixels.size());
    std::copy(picture.pixels.begin(), picture.pixels.end(), decoded.DIBPtr());
    const auto isNear = [&](int x, int y, int colour) {
        for (int shift : {0, 8, 16})
            if (std::abs((decoded.Pixel(x, y) >> shift & 0xFF) - (colour >> shift & 0xFF)) > 12) return false;
        return true;
    };
    ASSERT_EQ(picture.width, 200);
    EXPECT_TRUE(isNear(150, 30, Red));
    EXPECT_TRUE(isNear(150, 80, White));
    EXPECT_TRUE(isNear(60, 90, White));
    int ink = 0;
    for (int x = 0; x < 110; ++x)
        for (int y = 0; y < 60; ++y) ink += (decoded.Pixel(x, y) & 0xFF) < 60 ? 1 : 0;
    EXPECT_GT(ink, 300) << "the letters";
}

}  // namespace
}  // namespace tessaloom::testing
