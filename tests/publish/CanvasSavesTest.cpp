#include "publish/CanvasSaves.h"

#include <map>

#include <gmock/gmock.h>

#include "imaging/DIB.h"
#include "platform/Desktop.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/posix/PosixFileSystem.h"
#include "support/FakeTime.h"
#include "support/FaultyFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/PropertyTable.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using namespace tessaloom::testing;

constexpr double Day = 38731;  // 14 January 2006

// "Encodes" a picture to its quality and its colour, so that a file shows which pass wrote it.
class NamingCodec : public JpegCodec {
public:
    void SetLimits(const PictureLimits&) override {}
    JpegResult ReadHeader(std::span<const std::uint8_t>, JpegHeader&) override { return JpegResult::Failed; }
    JpegResult Decode(std::span<const std::uint8_t>, const JpegHeader&, std::uint8_t*, int) override {
        return JpegResult::Failed;
    }
    std::span<const std::uint8_t> Encode(const std::uint8_t* rows, int, int, int, int quality,
                                         std::vector<std::uint8_t>& buffer) override {
        qualities.push_back(quality);
        if (failing) return {};
        const std::string name = "q" + std::to_string(quality) + " pass " + std::to_string(rows[0]);
        buffer.assign(name.begin(), name.end());
        return buffer;
    }

    std::vector<int> qualities;
    bool failing = false;
};

class RecordingDesktop : public Desktop {
public:
    bool SetWallpaper(std::string_view path) override {
        wallpapers.emplace_back(path);
        return true;
    }
    void Beep() override {}
    std::string UserDataFolder() const override { return "/data"; }
    bool ClaimInstance(std::string_view) override { return true; }

    std::vector<std::string> wallpapers;
};

struct Saves {
    Saves() {
        time.Set(Day, 12, 0);
        picture.SetWidthHeight(4, 3);
        saves.OnFailure([this](const std::string& message) { log.push_back(message); });
        saves.OnSequentialNumber([this](int number) { kept.push_back(number); });
    }

    // One tick, with a picture of its own, a minute after the one before.
    void Pass(int number) {
        picture.Clear(number << 16);
        saves.DoSaves(picture);
        time.Advance(60);
    }
    std::string File(std::string_view path) { return memory.ReadFile(path).value_or("none"); }

    FakeTime time;
    CountingOwner owner;
    MemoryFileSystem memory;
    FaultyFileSystem files{memory};
    NamingCodec codec;
    RecordingDesktop desktop;
    CanvasSaves saves{
        owner, time, {files, codec, desktop}
    };
    DIB picture;
    std::vector<std::string> log;
    std::vector<int> kept;
};

TEST(CanvasSaves, ClampsItsPropertiesAndTellsChanges) {
    using S = CanvasSaves;
    Saves at;
    const std::vector<Property<S>> rows{
        Plain<S, &S::FixedEnabled, &S::SetFixedEnabled>("FixedEnabled", false, true),
        Number<S, &S::FixedRate, &S::SetFixedRate>("FixedRate", 60, 0, 86400),
        Number<S, &S::FixedBaseTime, &S::SetFixedBaseTime>("FixedBaseTime", 0, 0, 86399),
        Number<S, &S::FixedQuality, &S::SetFixedQuality>("FixedQuality", 80, 1, 100),
        Plain<S, &S::FixedFileName, &S::SetFixedFileName>("FixedFileName", "images\\fixed.jpg", "a.jpg"),
        Plain<S, &S::CascadeEnabled, &S::SetCascadeEnabled>("CascadeEnabled", false, true),
        Number<S, &S::CascadeCount, &S::SetCascadeCount>("CascadeCount", 100, 1, 1000),
        Number<S, &S::CascadeMode, &S::SetCascadeMode>("CascadeMode", 0, 0, 1),
        Plain<S, &S::SequentialEnabled, &S::SetSequentialEnabled>("SequentialEnabled", false, true),
        Number<S, &S::SequentialRate, &S::SetSequentialRate>("SequentialRate", 60, 0, 86400),
        Number<S, &S::SequentialBaseTime, &S::SetSequentialBaseTime>("SequentialBaseTime", 0, 0, 86399),
        Number<S, &S::SequentialQuality, &S::SetSequentialQuality>("SequentialQuality", 80, 1, 100),
        Plain<S, &S::SequentialPath, &S::SetSequentialPath>("SequentialPath", "sequential\\", "b"),
        Number<S, &S::SequentialType, &S::SetSequentialType>("SequentialType", 0, 0, 1),
        Number<S, &S::SequentialNumber, &S::SetSequentialNumber>("SequentialNumber", 0, 0, 99999999),
        Plain<S, &S::BackgroundEnabled, &S::SetBackgroundEnabled>("BackgroundEnabled", false, true),
        Number<S, &S::BackgroundRate, &S::SetBackgroundRate>("BackgroundRate", 60, 0, 86400),
        Number<S, &S::BackgroundBaseTime, &S::SetBackgroundBaseTime>("BackgroundBaseTime", 0, 0, 86399),
    };
    CheckProperties<S>(at.saves, at.owner, rows);
    const int before = at.owner.changes;
    for (auto* schedule :
         {&at.saves.FixedSchedule(), &at.saves.SequentialSchedule(), &at.saves.BackgroundSchedule()})
        schedule->SetScheduleMode(1);
    EXPECT_EQ(at.owner.changes, before + 3);
}

struct CascadeRow {
    const char* what;
    int mode, count, passes;
    std::map<std::string, int> files;  // and the pass that each must hold; 0: no such file
};

TEST(CanvasSaves, ShiftsTheCascade) {
    const CascadeRow rows[] = {
        {"mode 0",
         0,                        3,
         4,                                 {{"live", 4}, {"live0000", 4}, {"live0001", 3}, {"live0002", 2}, {"live0003", 1}}},
        {"mode 0, a pass more",
         0,                        3,
         5,                                 {{"live", 5}, {"live0000", 5}, {"live0001", 4}, {"live0003", 2}, {"live0004", 0}}},
        {"mode 1",
         1,                        3,
         4,                                 {{"live", 4}, {"live0000", 0}, {"live0001", 3}, {"live0002", 2}, {"live0003", 1}}},
        {"mode 1, full",        1, 3,    6, {{"live", 6}, {"live0001", 5}, {"live0003", 3}, {"live0004", 0}}                 },
        {"one copy, mode 0",    0, 1,    3, {{"live", 3}, {"live0000", 3}, {"live0001", 2}, {"live0002", 0}}                 },
        {"one copy, mode 1",    1, 1,    3, {{"live", 3}, {"live0000", 0}, {"live0001", 2}}                                  },
        {"not filled yet",      0, 1000, 2, {{"live", 2}, {"live0000", 2}, {"live0001", 1}, {"live1000", 0}}                 },
    };
    for (const auto& row : rows)
        for (const std::string folder : {"C:\\cam\\", ""}) {
            SCOPED_TRACE(std::string(row.what) + " in \"" + folder + "\"");
            Saves at;
            at.saves.SetFixedEnabled(true);
            at.saves.SetFixedFileName(folder + "live.jpg");
            at.saves.SetCascadeEnabled(true);
            at.saves.SetCascadeMode(row.mode);
            at.saves.SetCascadeCount(row.count);
            for (int pass = 1; pass <= row.passes; ++pass) at.Pass(pass);
            for (const auto& [name, pass] : row.files)
                EXPECT_EQ(at.File(folder + name + ".jpg"),
                          pass == 0 ? "none" : "q80 pass " + std::to_string(pass))
                    << name;
        }
}

TEST(CanvasSaves, DeletesTheOldestCopyEvenIfReadOnly) {
    Saves at;
    at.saves.SetFixedEnabled(true);
    at.saves.SetCascadeEnabled(true);
    at.saves.SetCascadeCount(1);
    at.memory["images\\fixed0001.jpg"] = {"old", 0, true, false};
    at.Pass(1);
    at.Pass(2);
    EXPECT_EQ(at.File("images\\fixed0001.jpg"), "q80 pass 1");
}

TEST(CanvasSaves, NamesSequentialFilesByTimeStamp) {
    const struct {
        double rate, second;
        const char* name;
    } rows[] = {
        {1,        5,     "060114153005"  },
        {1,        5.4,   "060114153005"  },
        {1,        5.6,   "060114153006"  },
        {60,       59.7,  "060114153100"  },
        {0.5,      5.47,  "06011415300547"},
        {0.5,      5.0,   "06011415300500"},
        {0.5,      5.999, "06011415300599"},
        {0.999,    5.5,   "06011415300550"},
        {1.0 / 30, 0.29,  "06011415300029"},
        {0.1,      59.99, "06011415305999"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Saves at;
        at.time.Set(Day, 15, 30, row.second);
        at.saves.SetSequentialEnabled(true);
        at.saves.SetSequentialRate(row.rate);
        at.saves.DoSaves(at.picture);
        EXPECT_EQ(at.saves.LastSequential().path, "sequential\\" + std::string(row.name) + ".jpg");
        EXPECT_EQ(at.File(at.saves.LastSequential().path), "q80 pass 0");
    }
}

TEST(CanvasSaves, NumbersSequentialFilesAndKeepsTheNextNumberAtOnce) {
    Saves at;
    at.saves.SetSequentialEnabled(true);
    at.saves.SetSequentialType(1);
    at.saves.SetSequentialNumber(99999998);
    at.saves.SetSequentialPath("C:\\seq");
    const int told = at.owner.changes;
    at.Pass(1);
    at.Pass(2);
    at.saves.SetSequentialPath("C:\\seq\\");
    at.files.FailAt(1);  // the write
    at.Pass(3);
    EXPECT_EQ(at.File("C:\\seq\\99999998.jpg"), "q80 pass 1");
    EXPECT_EQ(at.File("C:\\seq\\99999999.jpg"), "q80 pass 2");
    EXPECT_EQ(at.File("C:\\seq\\00000000.jpg"), "none");
    EXPECT_THAT(at.kept, ElementsAre(99999999, 0, 1));
    EXPECT_EQ(at.owner.changes, told + 1) << "only the path is a setting";
}

TEST(CanvasSaves, MovesOnWithoutSavingWhileTheScheduleIsOff) {
    Saves at;
    at.saves.SetFixedEnabled(true);
    at.saves.FixedSchedule().SetScheduleMode(1);
    at.saves.FixedSchedule().SetStartAbsoluteTime(0.75);
    at.saves.FixedSchedule().SetStopAbsoluteTime(0.8);
    at.Pass(1);
    EXPECT_EQ(at.memory.Changes(), 0);
    EXPECT_THAT(at.codec.qualities, IsEmpty());
    EXPECT_NEAR(at.saves.FixedNextFrame(), Day + 0.5 + 60 / 86400.0, 1e-9);
    at.saves.FixedSchedule().SetStartAbsoluteTime(0.1);
    at.time.Advance(-1);
    at.saves.DoSaves(at.picture);
    EXPECT_EQ(at.memory.Changes(), 0) << "the suppressed run is not made up";
    at.time.Advance(1);
    at.saves.DoSaves(at.picture);
    EXPECT_EQ(at.File("images\\fixed.jpg"), "q80 pass 1");
}

TEST(CanvasSaves, RunsOnceAfterASleepAndNeverAtRateZero) {
    Saves at;
    at.saves.SetFixedEnabled(true);
    at.saves.SetSequentialEnabled(true);
    at.saves.SetSequentialRate(0);
    at.Pass(1);
    at.time.Advance(3 * 3600);
    at.saves.DoSaves(at.picture);
    at.saves.DoSaves(at.picture);
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
        Saves at;
        at.saves.SetFixedEnabled(true);
        at.saves.SetFixedQuality(row.fixed);
        at.saves.SetSequentialEnabled(true);
        at.saves.SetSequentialQuality(row.sequential);
        at.saves.SetBackgroundEnabled(true);
        at.Pass(1);
        EXPECT_EQ(at.codec.qualities, row.encoded);
    }
}

TEST(CanvasSaves, SkipsLaterOutputsWhenThePictureCannotBeEncoded) {
    Saves at;
    at.saves.SetFixedEnabled(true);
    at.saves.SetSequentialEnabled(true);
    at.saves.SetSequentialType(1);
    at.codec.failing = true;
    at.Pass(1);
    at.Pass(2);
    EXPECT_EQ(at.memory.Changes(), 0);
    EXPECT_THAT(at.kept, IsEmpty());
    EXPECT_THAT(at.log, ElementsAre(HasSubstr("encoded")));
    EXPECT_FALSE(at.saves.LastFixed().written);
    EXPECT_GT(at.saves.SequentialNextFrame(), Day + 0.5) << "not retried at once";
}

TEST(CanvasSaves, GoesOnWhenFilesFailAndLogsTheFirstFailureInARow) {
    Saves at;
    at.saves.SetFixedEnabled(true);
    at.saves.SetCascadeEnabled(true);
    at.saves.SetCascadeCount(2);
    at.saves.SetSequentialEnabled(true);
    at.saves.SetSequentialQuality(90);
    for (int broken = 0; broken < 2; ++broken) {
        at.files.FailFrom(1);
        at.Pass(1);
        at.Pass(2);
        EXPECT_EQ(at.log.size(), 2u) << "one for each output";
        EXPECT_THAT(at.log.front(), HasSubstr("Fixed save: \"images\\fixed.jpg\""));
        EXPECT_THAT(at.log.front(), HasSubstr("No space left"));
        at.log.clear();
        at.files.FailNever();
        at.Pass(3);
        EXPECT_EQ(at.File("images\\fixed.jpg"), "q80 pass 3");
        EXPECT_TRUE(at.saves.LastSequential().written);
        EXPECT_THAT(at.log, IsEmpty());
    }
    for (int call = 1; call <= 6; ++call) {  // any one of write, delete, two renames, copy, write
        at.files.FailAt(call);
        at.Pass(10 + call);
        EXPECT_EQ(at.saves.LastFixed().written, call != 1);
        EXPECT_EQ(at.saves.LastSequential().written, call != 6);
    }
}

TEST(CanvasSaves, MakesABitmapOfTheEncodedPictureTheWallpaper) {
    Saves at;
    TurboJpegCodec codec;
    CanvasSaves saves{
        at.owner, at.time, {at.files, codec, at.desktop}
    };
    saves.SetBackgroundEnabled(true);
    at.picture.SetWidthHeight(5, 3);  // rows with a pad byte
    at.picture.Clear(0x204060);
    saves.DoSaves(at.picture);

    EXPECT_THAT(at.desktop.wallpapers, ElementsAre("/data/TessaloomWallPaper.bmp"));
    EXPECT_FALSE(at.memory.FileExists("/data/TessaloomWallPaper.jpg"));
    const std::string bitmap = at.File("/data/TessaloomWallPaper.bmp");
    ASSERT_EQ(bitmap.size(), 54u + 3 * 16);
    EXPECT_EQ(bitmap.substr(0, 2), "BM");
    EXPECT_EQ(bitmap[28], 24) << "bits per pixel";
    const int bgr[] = {0x20, 0x40, 0x60};
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(static_cast<unsigned char>(bitmap[54 + static_cast<std::size_t>(i)]), bgr[i], 2);

    for (int call = 1; call <= 4; ++call) {  // write JPEG, read it, write BMP, delete JPEG
        at.files.FailAt(call);
        at.time.Advance(60);
        saves.DoSaves(at.picture);
        EXPECT_EQ(saves.LastBackground().written, call == 4);
    }
    EXPECT_EQ(at.desktop.wallpapers.size(), 2u) << "a bitmap that was not written is not shown";
}

TEST(CanvasSaves, WritesPicturesThatCanBeReadFromDisk) {
    Saves at;
    const TemporaryFolder folder;
    PosixFileSystem disk;
    TurboJpegCodec codec;
    CanvasSaves saves{
        at.owner, at.time, {disk, codec, at.desktop}
    };
    saves.SetFixedEnabled(true);
    saves.SetFixedFileName(folder / "live.jpg");
    saves.SetCascadeEnabled(true);
    saves.SetCascadeCount(2);
    saves.SetSequentialEnabled(true);
    saves.SetSequentialPath(folder / "missing");
    std::vector<std::string> log;
    saves.OnFailure([&](const std::string& message) { log.push_back(message); });

    // The last file found in the way is a folder, which nothing can delete as a file.
    ASSERT_TRUE(disk.MakeFolder(folder / "live0002.jpg"));
    for (int size = 8; size <= 10; ++size) {
        at.picture.SetWidthHeight(size, size);
        saves.DoSaves(at.picture);
        at.time.Advance(60);
    }
    const auto widthOf = [&](std::string_view path) {
        JpegHeader header;
        const std::string file = disk.ReadFile(path).value_or("");
        codec.ReadHeader({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()}, header);
        return header.width;
    };
    EXPECT_EQ(widthOf(folder.Path() + "\\live.jpg"), 10);
    EXPECT_EQ(widthOf(folder / "live0000.jpg"), 10);
    EXPECT_EQ(widthOf(folder / "live0001.jpg"), 8) << "stale: it could not be renamed";
    EXPECT_THAT(log, ElementsAre(HasSubstr("missing")));
    EXPECT_FALSE(disk.FolderExists(folder / "missing")) << "the folder is not made";
    saves.SetCascadeCount(3);
    saves.SetSequentialPath(folder.Path());
    saves.DoSaves(at.picture);
    EXPECT_TRUE(disk.FolderExists(folder / "live0002.jpg")) << "folders are not moved on";
    EXPECT_EQ(widthOf(folder / "060114120300.jpg"), 10);
}

}  // namespace
}  // namespace tessaloom
