#include "core/ErrorReport.h"
#include "imaging/DIB.h"
#include "imaging/ErrorsFile.h"
#include "imaging/JpegEncoder.h"
#include "imaging/LoadJpegIntoDIB.h"
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"
#include "imaging/modPictureBox.h"
#include "platform/UserLocale.h"
#include "platform/curl/CurlTransfers.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/qt/QtPictureLoader.h"
#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"
#include "support/PictureData.h"

namespace tessaloom::testing {
namespace {

/// Files of which one is rewritten by somebody else while it is read.
class BusyFiles : public MemoryFileSystem {
public:
    std::optional<std::string> ReadFile(std::string_view path, std::size_t limit) override {
        auto bytes = MemoryFileSystem::ReadFile(path, limit);
        if (busy) (*this)[path];  // touches its time stamp
        return bytes;
    }

    bool busy = false;
};

class PictureFiles : public ::testing::Test {
protected:
    void Put(std::string_view name, std::string_view data, std::size_t cut = 0) {
        const auto bytes = PictureData(data);
        files[name].bytes.assign(bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(cut));
    }
    int Load(std::string_view name) { return LoadJpegIntoDIB(files, codec, loader, name, target, &buffers); }

    BusyFiles files;
    TurboJpegCodec codec;
    QtPictureLoader loader;
    UserLocale locale;
    ErrorsFile errors{files, locale};
    LoadingBuffers buffers;
    DIB target;
};

TEST_F(PictureFiles, AnswerLoadsByTheirNameAndContent) {
    const std::pair<const char*, const char*> sources[] = {
  // clang-format off
        {"a.jpg", "quarters.jpg"}, {"b.JpEg", "progressive.jpg"}, {"cmyk.jpg", "cmyk.jpg"}, {"odd.jpg", "odd.jpg"},
        {"picture.jpg.png", "quarters.jpg"}, {"png.jpg", "quarters.png"},
  // clang-format on
    };
    for (const auto& [name, data] : sources) Put(name, data);
    Put("cut.jpg", "quarters.jpg", 2);
    files["empty.jpg"].bytes = "";
    files["text.jpg"].bytes = "no picture";
    const struct {
        const char* name;
        int expected;
    } cases[] = {
  // clang-format off
        {"a.jpg", Loaded}, {" a.jpg ", Loaded}, {"b.JpEg", Loaded}, {"b.JpEg ", Loaded}, {"cmyk.jpg", Loaded},
        {"odd.jpg", Loaded}, {"a.jpe", NotJpegName}, {"", NotJpegName}, {"jpg", NotJpegName},
        {"picture.jpg.png", NotJpegName}, {"missing.jpg", Missing}, {".jpg", Missing}, {"cut.jpg", Unreadable},
        {"png.jpg", Unreadable}, {"empty.jpg", Unreadable}, {"text.jpg", Unreadable},
  // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        target.SetWidthHeight(2, 2);
        target.Clear(0x123456);
        EXPECT_EQ(Load(c.name), c.expected);
        EXPECT_EQ(target.Width(), c.expected == Loaded ? 33 : 2);
        if (c.expected != Loaded) {
            EXPECT_EQ(target.Pixel(1, 1), 0x123456) << "the last good picture stays";
            EXPECT_TRUE(c.expected != Unreadable || buffers.spare.SizeInBytes() == 0) << "no memory stays";
        } else {
            EXPECT_GT(target.Pixel(30, 3) >> 8 & 0xFF, 150) << "green above right";
        }
    }
}

TEST_F(PictureFiles, AreTriedAgainWhenTheyChangeWhileRead) {
    Put("a.jpg", "quarters.jpg");
    files.busy = true;
    EXPECT_EQ(Load("a.jpg"), Unreadable);
    files.busy = false;
    EXPECT_EQ(Load("a.jpg"), Loaded);
}

TEST_F(PictureFiles, ReuseTheSameTwoBitmaps) {
    Put("a.jpg", "quarters.jpg");
    std::set<const std::uint8_t*> seen;
    for (int i = 0; i < 6; ++i) {
        ASSERT_EQ(Load("a.jpg"), Loaded);
        seen.insert(target.DIBPtr());
    }
    EXPECT_LE(seen.size(), 2U);
}

TEST_F(PictureFiles, LoadIntoAPictureByTheirContent) {
    Picture picture(files, codec, loader, errors);
    picture.InitPictureBox();
    picture.SetAutoSize(true);
    Put("photo.bin", "quarters.jpg");
    Put("logo.txt", "alpha.png");
    Put("cut.bmp", "quarters.bmp", 1);
    ASSERT_TRUE(picture.SetPictureFile("photo.bin"));
    EXPECT_EQ(picture.Width(), 33);
    EXPECT_TRUE(picture.Alpha().empty());
    ASSERT_TRUE(picture.SetPictureFile("logo.txt"));
    EXPECT_EQ(picture.Value()->Pixel(3, 20), Quarters[2]);
    EXPECT_EQ(picture.Alpha()[33 * 23], 64);
    for (const char* bad : {"cut.bmp", "missing.png"}) {
        EXPECT_FALSE(picture.SetPictureFile(bad));
        EXPECT_EQ(picture.Value()->Pixel(3, 20), Quarters[2]) << "the last good picture stays";
    }
    picture.SetAutoSize(false);
    picture.SetWidthHeight(40, 12);
    ASSERT_TRUE(picture.SetPictureFile("logo.txt"));
    EXPECT_EQ(picture.Height(), 12);
    EXPECT_EQ(picture.hDC()->Bitmap().Pixel(20, 11), Quarters[1]);
    EXPECT_EQ(picture.Value()->Pixel(39, 0), 0);
    ASSERT_EQ(picture.Alpha().size(), 40U * 12U);
    EXPECT_EQ(picture.Alpha()[0], 64);
    EXPECT_EQ(picture.Alpha()[39], 255);
}

TEST_F(PictureFiles, SayWhyTheyAreNotLoaded) {
    CurlTransfers transfers;
    PictureFile file({files, codec, loader, errors, transfers});
    files["a.bin"].bytes = "\x8AMNG\r\n\x1A\n";
    Put("b.bmp", "quarters.bmp", 1);
    Put("c.png", "quarters.png");
    files["d.jpg"].bytes = "no picture";
    files["e.svg"].bytes = "<!DOCTYPE svg [<!ENTITY a 'a'>]><svg/>";
    const std::pair<const char*, const char*> rows[] = {
        {"a.bin",       "a.bin is not a supported picture (BMP, GIF, ICO, JPEG, PNG, PNM, SVG, TIFF, WebP)"      },
        {"d.jpg",       "No picture that is whole and not too large can be read from d.jpg"                      },
        {"b.bmp",
         "No picture that is whole and not too large can be read from b.bmp: it is damaged or cut "
         "short"                                                                                                 },
        {"c.png",       "No picture that is whole and not too large can be read from c.png: it is too large"     },
        {"missing.png", "There is no picture file missing.png"                                                   },
        {"e.svg",       "No picture that is whole and not too large can be read from e.svg: it declares entities"},
    };
    loader.SetLimits({.side = 20});
    for (const auto& [name, expected] : rows) {
        std::vector<std::string> reported;
        const ErrorReporter before =
            SetErrorReporter([&](const ErrorReport& report) { reported.push_back(report.description); });
        file.Load(name, target);
        SetErrorReporter(before);
        EXPECT_THAT(reported, ElementsAre(expected)) << name;
    }
}

TEST_F(PictureFiles, LeaveALineWhenThereIsNoSurface) {
    const FakeTime time(FakeTime::FirstDay);
    Picture picture(files, codec, loader, errors);
    EXPECT_EQ(picture.hDC(), nullptr);
    picture.InitPictureBox();
    EXPECT_EQ(picture.hDC(), nullptr) << "a surface without a picture";
    const std::string lines = files["errors.txt"].bytes;
    EXPECT_THAT(lines, MatchesRegex("Error Picture.cls \\(Get hDC\\), Time=[^,]+, Filename=, Line=[0-9]+, "
                                    "myPicture was Nothing=True, PictureIndex=0\r\n"
                                    "Error Picture.cls \\(Get hDC\\), Time=.*, myPicture was "
                                    "Nothing=False, PictureIndex=[0-9]+\r\n"));
}

TEST(modPictureBox, HandsSlotsOutAgain) {
    modPictureBox::InitializePictureBox();
    const int first = modPictureBox::CreatePictureBox(), second = modPictureBox::CreatePictureBox();
    EXPECT_NE(first, second);
    EXPECT_NE(modPictureBox::GetPictureBox(first), nullptr);
    modPictureBox::DestroyPictureBox(first);
    modPictureBox::DestroyPictureBox(first);
    EXPECT_EQ(modPictureBox::GetPictureBox(first), nullptr);
    EXPECT_EQ(modPictureBox::CreatePictureBox(), first);
    modPictureBox::TerminatePictureBox();
    EXPECT_EQ(modPictureBox::GetPictureBox(second), nullptr);
    EXPECT_EQ(modPictureBox::CreatePictureBox(), 0);
    for (const int index : {-1, 0, 1, 100000}) EXPECT_EQ(modPictureBox::GetPictureBox(index), nullptr);
    modPictureBox::InitializePictureBox();
}

TEST(JpegEncoder, EncodesOncePerQualityInARowAndPass) {
    TurboJpegCodec codec;
    JpegEncoder encoder(codec);
    DIB picture;
    EXPECT_TRUE(encoder.Bytes(75).empty());
    encoder.BeginPass(picture);
    EXPECT_TRUE(encoder.Bytes(75).empty()) << "no pixels";

    picture.SetWidthHeight(64, 48);
    for (int pass = 1; pass <= 2; ++pass) {
        encoder.BeginPass(picture);
        const auto* first = encoder.Bytes(75).data();
        EXPECT_EQ(encoder.Bytes(75).data(), first);
        const std::size_t small = encoder.Bytes(75).size();
        EXPECT_GT(encoder.Bytes(100).size(), 0U);
        EXPECT_EQ(encoder.Bytes(150).size(), encoder.Bytes(100).size());
        EXPECT_EQ(encoder.Bytes(75).size(), small);
        EXPECT_EQ(encoder.Encodings(), 3 * pass) << "75, 100, 75";
    }
}

}  // namespace
}  // namespace tessaloom::testing
