#include "publish/CanvasSaves.h"

#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/posix/PosixFileSystem.h"
#include "support/FaultyFileSystem.h"
#include "support/PropertyTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestPlatform.h"

namespace tessaloom::testing {
namespace {

constexpr double Day = 38731;  // 14 January 2006

// "Encodes" a picture to its quality and its colour, so that a file shows which pass wrote it.
class NamingCodec : public FakeJpegCodec {
public:
    std::span<const std::uint8_t> Encode(const std::uint8_t* rows, int, int, int, int quality,
                                         std::vector<std::uint8_t>& buffer) override {
        qualities.push_back(quality);
        const std::string name = "q" + std::to_string(quality) + " pass " + std::to_string(rows[0]);
        buffer.assign(name.begin(), failing ? name.begin() : name.end());
        return buffer;
    }

    std::vector<int> qualities;
    bool failing = false;
};

struct Saves : TestPlatform {
    /// Both files every minute, at quality 80.
    explicit Saves(bool fixed = true, bool sequential = false) {
        time.Set(Day, 12, 0);
        picture.SetWidthHeight(4, 3);
        saves.OnFailure([this](const std::string& message) { log.push_back(message); });
        saves.OnSequentialNumber([this](int number) { kept.push_back(number); });
        saves.SetFixedEnabled(fixed);
        saves.SetSequentialEnabled(sequential);
    }

    /// One tick, with a picture of its own, a minute after the one before.
    void Pass(int number) {
        picture.Clear(number << 16);
        saves.DoSaves(picture);
        time.Advance(60);
    }
    void Cascade(int count, int mode = 0) {
        saves.SetCascadeEnabled(true);
        saves.SetCascadeCount(count);
        saves.SetCascadeMode(mode);
    }
    std::string File(std::string_view path) { return files.ReadFile(path).value_or("none"); }

    CountingOwner owner;
    FaultyFileSystem faulty{files};
    NamingCodec codec;
    CanvasSaves saves{
        owner, time, {faulty, codec, desktop}
    };
    DIB picture;
    std::vector<std::string> log;
    std::vector<int> kept;
};

TEST(CanvasSaves, ShiftsTheCascade) {
    const struct {
        const char* what;
        int mode, count, passes;
        std::map<std::string, int> files;  // and the pass that each must hold; 0: no such file
    } rows[] = {
  // clang-format off
        {"mode 0", 0, 3, 4, {{"", 4}, {"0000", 4}, {"0001", 3}, {"0002", 2}, {"0003", 1}}},
        {"full",   0, 3, 5, {{"", 5}, {"0000", 5}, {"0001", 4}, {"0003", 2}, {"0004", 0}}},
        {"mode 1", 1, 3, 4, {{"", 4}, {"0000", 0}, {"0001", 3}, {"0002", 2}, {"0003", 1}}},
        {"full",   1, 3, 6, {{"", 6}, {"0001", 5}, {"0003", 3}, {"0004", 0}}},
        {"single", 0, 1, 3, {{"", 3}, {"0000", 3}, {"0001", 2}, {"0002", 0}}},
        {"single", 1, 1, 3, {{"", 3}, {"0000", 0}, {"0001", 2}}},
        {"many",   0, 1000, 2, {{"", 2}, {"0000", 2}, {"0001", 1}, {"1000", 0}}},
  // clang-format on
    };
    for (const auto& row : rows)
        for (const std::string stem : {"C:\\cam\\live", "live"}) {
            SCOPED_TRACE(std::string(row.what) + ", mode " + std::to_string(row.mode) + ": " + stem);
            Saves at;
            at.saves.SetFixedFileName(stem + ".jpg");
            at.Cascade(row.count, row.mode);
            at.files[stem + "0001.jpg"] = {"old", 0, true, false};  // deleted all the same, once the oldest
            for (int pass = 1; pass <= row.passes; ++pass) at.Pass(pass);
            for (const auto& [number, pass] : row.files)
                EXPECT_EQ(at.File(stem + number + ".jpg"),
                          pass == 0 ? "none" : "q80 pass " + std::to_string(pass))
                    << number;
        }
}

TEST(CanvasSaves, NamesSequentialFilesByTimeStamp) {
    const struct {
        double rate, second;
        const char* name;
    } rows[] = {
  // clang-format off
        {1,   5,    "060114153005"},   {1,   5.4, "060114153005"},   {1,     5.6,   "060114153006"},
        {60,  59.7, "060114153100"},   {0.5, 5.0, "06011415300500"}, {0.5,   5.47,  "06011415300547"},
        {0.1, 59.99, "06011415305999"}, {0.999, 5.5, "06011415300550"}, {0.5, 5.999, "06011415300599"},
        {1.0 / 30, 0.29, "06011415300029"},
  // clang-format on
    };
    for (const auto& row : rows) {
        Saves at(false, true);
        at.time.Set(Day, 15, 30, row.second);
        at.saves.SetSequentialRate(row.rate);
        at.Pass(1);
        EXPECT_EQ(at.saves.LastSequential().path, "sequential\\" + std::string(row.name) + ".jpg");
        EXPECT_EQ(at.File(at.saves.LastSequential().path), "q80 pass 1");
    }
}

TEST(CanvasSaves, NumbersSequentialFilesAndKeepsTheNextNumberAtOnce) {
    Saves at(false, true);
    at.saves.SetSequentialType(1);
    at.saves.SetSequentialBaseTime(-60);
    EXPECT_EQ(at.saves.SequentialBaseTime(), 0);
    at.saves.SetSequentialNumber(99999998);
    at.saves.SetSequentialPath("C:\\seq");
    const int told = at.owner.changes;
    at.Pass(1);
    at.Pass(2);
    at.saves.SetSequentialPath("C:\\seq\\");
    at.faulty.FailAt(1);  // the write
    at.Pass(3);
    EXPECT_EQ(at.File("C:\\seq\\99999998.jpg"), "q80 pass 1");
    EXPECT_EQ(at.File("C:\\seq\\99999999.jpg"), "q80 pass 2");
    EXPECT_EQ(at.File("C:\\seq\\00000000.jpg"), "none");
    EXPECT_THAT(at.kept, ElementsAre(99999999, 0, 1));
    EXPECT_EQ(at.owner.changes, told + 1) << "only the path is a setting";
}

TEST(CanvasSaves, MovesOnWithoutSavingWhileTheScheduleIsOff) {
    Saves at;
    at.saves.FixedSchedule().SetScheduleMode(1);
    at.saves.FixedSchedule().SetStartAbsoluteTime(0.75);
    at.saves.FixedSchedule().SetStopAbsoluteTime(0.8);
    at.Pass(1);
    EXPECT_NEAR(at.saves.FixedNextFrame(), Day + 0.5 + 60 / 86400.0, 1e-9);
    at.saves.FixedSchedule().SetStartAbsoluteTime(0.1);
    at.time.Advance(-1);
    at.saves.DoSaves(at.picture);
    EXPECT_THAT(at.codec.qualities, IsEmpty()) << "the suppressed run is not made up";
    at.time.Advance(1);
    at.saves.DoSaves(at.picture);
    EXPECT_EQ(at.File("images\\fixed.jpg"), "q80 pass 1");
}

TEST(CanvasSaves, RunsOnceAfterASleepAndNeverAtRateZero) {
    Saves at(true, true);
    at.saves.SetSequentialRate(0);
    at.Pass(1);
    at.time.Advance(3 * 3600);
    for (int i = 0; i < 2; ++i) at.saves.DoSaves(at.picture);
    EXPECT_THAT(at.codec.qualities, ElementsAre(80, 80));
    EXPECT_EQ(at.saves.LastSequential().moment, 0);
    at.time.Advance(-7200);
    at.saves.RestartTimes();
    EXPECT_GT(at.saves.FixedNextFrame(), at.time.Now());
    EXPECT_LT(at.saves.FixedNextFrame(), at.time.Now() + 61 / 86400.0);
    at.saves.ForceUpdate();
    at.saves.DoSaves(at.picture);
    EXPECT_EQ(at.codec.qualities.size(), 3u);
}

TEST(CanvasSaves, EncodesOncePerQualityInOrder) {
    const struct {
        int fixed, sequential;
        std::vector<int> encoded;
    } rows[] = {
        {75,  75,  {75, 100}     },
        {75,  80,  {75, 80, 100} },
        {80,  100, {80, 100}     },
        {100, 80,  {100, 80, 100}}
    };
    for (const auto& row : rows) {
        Saves at(true, true);
        at.saves.SetFixedQuality(row.fixed);
        at.saves.SetSequentialQuality(row.sequential);
        at.saves.SetBackgroundEnabled(true);
        at.Pass(1);
        EXPECT_EQ(at.codec.qualities, row.encoded);
    }
}

TEST(CanvasSaves, SkipsLaterOutputsWhenThePictureCannotBeEncoded) {
    Saves at(true, true);
    at.saves.SetSequentialType(1);
    at.codec.failing = true;
    at.Pass(1);
    at.Pass(2);
    EXPECT_EQ(at.files.Changes(), 0);
    EXPECT_THAT(at.kept, IsEmpty());
    EXPECT_THAT(at.log, ElementsAre(HasSubstr("encoded")));
    EXPECT_FALSE(at.saves.LastFixed().written);
    EXPECT_GT(at.saves.SequentialNextFrame(), Day + 0.5) << "not retried at once";
}

TEST(CanvasSaves, GoesOnWhenFilesFailAndLogsTheFirstFailureInARow) {
    Saves at(true, true);
    at.Cascade(2);
    at.saves.SetSequentialQuality(90);
    for (int broken = 0; broken < 2; ++broken) {
        at.faulty.FailFrom(1);
        at.Pass(1);
        at.Pass(2);
        EXPECT_THAT(at.log, ElementsAre(AllOf(HasSubstr("Fixed save: \"images\\fixed.jpg\""),
                                              HasSubstr("No space left")),
                                        HasSubstr("")))
            << "one for each output";
        at.log.clear();
        at.faulty.FailNever();
        at.Pass(3);
        EXPECT_EQ(at.File("images\\fixed.jpg"), "q80 pass 3");
        EXPECT_THAT(at.log, IsEmpty());
    }
    for (int call = 1; call <= 6; ++call) {  // any one of write, delete, two renames, copy, write
        at.faulty.FailAt(call);
        at.Pass(10 + call);
        EXPECT_EQ(at.saves.LastFixed().written, call != 1);
        EXPECT_EQ(at.saves.LastSequential().written, call != 6);
    }
}

TEST(CanvasSaves, MakesABitmapOfTheEncodedPictureTheWallpaper) {
    Saves at;
    TurboJpegCodec codec;
    CanvasSaves saves{
        at.owner, at.time, {at.faulty, codec, at.desktop}
    };
    saves.SetBackgroundEnabled(true);
    at.picture.SetWidthHeight(5, 3);  // rows with a pad byte
    at.picture.Clear(0x204060);
    saves.DoSaves(at.picture);
    EXPECT_THAT(at.desktop.wallpapers, ElementsAre("data/TessaloomWallPaper.bmp"));
    EXPECT_FALSE(at.files.FileExists("data/TessaloomWallPaper.jpg"));
    const std::string bitmap = at.File("data/TessaloomWallPaper.bmp");
    ASSERT_EQ(bitmap.size(), 54u + 3 * 16);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(static_cast<unsigned char>(bitmap[54 + static_cast<std::size_t>(i)]), 0x20 * (i + 1), 2);
    for (int call = 1; call <= 4; ++call) {  // write JPEG, read it, write BMP, delete JPEG
        at.faulty.FailAt(call);
        at.time.Advance(60);
        saves.DoSaves(at.picture);
        EXPECT_EQ(saves.LastBackground().written, call == 4);
    }
    EXPECT_EQ(at.desktop.wallpapers.size(), 2u) << "a bitmap that was not written is not shown";
}

TEST(CanvasSaves, MovesNoFoldersAndMakesNone) {
    Saves at(true, true);
    const TemporaryFolder folder;
    PosixFileSystem disk;
    CanvasSaves saves{
        at.owner, at.time, {disk, at.codec, at.desktop}
    };
    saves.SetFixedEnabled(true);
    saves.SetFixedFileName(folder.Path() + "\\live.jpg");
    saves.SetCascadeEnabled(true);
    saves.SetCascadeCount(2);
    saves.SetSequentialEnabled(true);
    saves.SetSequentialPath(folder / "missing");
    ASSERT_TRUE(disk.MakeFolder(folder / "live0002.jpg"));
    for (int pass = 1; pass <= 4; ++pass) {
        if (pass == 4) saves.SetCascadeCount(3);
        at.picture.Clear(pass << 16);
        saves.DoSaves(at.picture);
        at.time.Advance(60);
        EXPECT_EQ(disk.ReadFile(folder / "live0000.jpg"), "q80 pass " + std::to_string(pass));
    }
    EXPECT_EQ(disk.ReadFile(folder / "live0001.jpg"), "q80 pass 1") << "stale: it could not be renamed";
    EXPECT_TRUE(disk.FolderExists(folder / "live0002.jpg"));
    EXPECT_FALSE(disk.FolderExists(folder / "missing"));
}

}  // namespace
}  // namespace tessaloom::testing
