#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "model/DocumentCheck.h"
#include "model/Documents.h"
#include "publish/CanvasSaves.h"
#include "publish/WebServer.h"
#include "script/host/Script.h"
#include "support/RecordingScriptEngine.h"
#include "text/VWS.h"
#include "video/VideoFeed.h"

namespace tessaloom::testing {
namespace {

struct PortfolioTest : Documents, ::testing::Test {
    PortfolioTest() { portfolio.SetFileName("p.por"); }

    bool Load(std::string_view text) {
        Write("p.por", text);
        return portfolio.LoadFile();
    }

    RecordingScriptEngine engine;
};

TEST_F(PortfolioTest, LoadingCompletesAFileWithItsDefaults) {
    std::ifstream data(TEST_DATA "/model/completed.por", std::ios::binary);
    const std::string expected{std::istreambuf_iterator<char>(data), {}};
    ASSERT_TRUE(portfolio.LoadFile()) << "a missing file is made";
    Write("expected", expected);
    ASSERT_EQ(profile.Sections("p.por").size(), profile.Sections("expected").size());
    for (const ProfileSection& section : profile.Sections("expected")) {
        SCOPED_TRACE(section.name);
        const auto wanted = profile.Keys("expected", section.name);
        const auto actual = profile.Keys("p.por", section.name);
        ASSERT_EQ(actual.size(), wanted.size());
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            EXPECT_EQ(actual[i].name, wanted[i].name);
            EXPECT_EQ(actual[i].value, wanted[i].value) << wanted[i].name;
        }
    }
    EXPECT_FALSE(portfolio.NeedSaving());
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].Text(), "p.por: missing file, the defaults are taken");
}

TEST_F(PortfolioTest, SavesAllKeysInTheOrderOfWriting) {
    portfolio.Script().SetBaseTime(3661);
    portfolio.VWS().SetCSVFile("w.csv");
    portfolio.VideoFeed(3).SetFeedName("Garden");
    portfolio.VideoFeed(3).MotionDetect().SetBrighterPercent(12.5);
    portfolio.WebServer().SetPort(8080);
    EXPECT_TRUE(portfolio.NeedSaving());
    ASSERT_TRUE(portfolio.SaveFile());
    EXPECT_FALSE(portfolio.NeedSaving());
    const auto sections = profile.Sections("p.por");
    ASSERT_EQ(sections.size(), 24U);
    EXPECT_EQ(sections[6].name, "Canvas07");
    EXPECT_EQ(sections[20].name, "VideoFeeds");
    EXPECT_EQ(sections[21].name, "VWS");
    EXPECT_EQ(profile.Keys("p.por", "VWS")[0].name, "CSVDelay");
    EXPECT_EQ(profile.Keys("p.por", "WebServer")[0].name, "Enabled");
    EXPECT_EQ(Value("p.por", "Scripting", "BaseTime"), "01:01:01");
    EXPECT_EQ(Value("p.por", "VideoFeeds", "Feed3MotionBrighterMotionLimit"), "12.5");

    const std::string saved = files["p.por"].bytes;
    Portfolio again(platform);
    again.SetFileName("p.por");
    ASSERT_TRUE(again.LoadFile());
    EXPECT_EQ(again.VideoFeed(3).FeedName(), "Garden");
    EXPECT_EQ(again.WebServer().Port(), 8080);
    ASSERT_TRUE(again.SaveFile());
    EXPECT_EQ(files["p.por"].bytes, saved);
}

TEST_F(PortfolioTest, OpensTheCanvasesThatItNames) {
    Write("a.can", "[General]\r\nName=A\r\n");
    ASSERT_TRUE(Load("[Canvas03]\r\nFileName=a.can\r\n"));
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    EXPECT_TRUE(portfolio.Canvas(3).Enabled());
    EXPECT_TRUE(portfolio.Canvas(3).Visible());
    EXPECT_EQ(portfolio.Canvas(3).Name(), "A");
    EXPECT_EQ(portfolio.FreeCanvasSlot(), 1);
    EXPECT_EQ(Value("p.por", "WebServer", "Port"), "80");
    EXPECT_FALSE(portfolio.NeedSaving());
    portfolio.ResetCanvas(3);
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
    EXPECT_EQ(portfolio.Canvas(3).Name(), "New Canvas");
    EXPECT_TRUE(portfolio.NeedSaving());
}

TEST_F(PortfolioTest, CanvasThatCannotBeLoadedKeepsItsNameInTheFile) {
    Write("good.can", "[General]\r\nName=Good\r\n");
    Write("bad.can", std::string_view("\0\0", 2));
    ASSERT_TRUE(
        Load("[Canvas01]\r\nFileName=gone.can\r\n[Canvas02]\r\nFileName=bad.can\r\n"
             "[Canvas04]\r\nFileName=good.can\r\n"));
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    ASSERT_EQ(faults.size(), 2U);
    EXPECT_EQ(portfolio.FreeCanvasSlot(), 3) << "slots without a name come first";
    ASSERT_TRUE(portfolio.SaveFile());
    EXPECT_EQ(Value("p.por", "Canvas01", "FileName"), "gone.can");
    EXPECT_EQ(Value("p.por", "Canvas02", "FileName"), "bad.can");
    portfolio.Canvas(1).SetFileName("new.can");
    portfolio.Canvas(1).SetEnabled(true);
    ASSERT_TRUE(portfolio.SaveFile());
    EXPECT_EQ(Value("p.por", "Canvas01", "FileName"), "new.can");
}

TEST_F(PortfolioTest, FileThatIsInUseAlreadyIsNotOpenedASecondTime) {
    const std::string names =
        "[Canvas01]\r\nFileName=f/"
        "a.can\r\n[Canvas02]\r\nFileName=f\\a.can\r\n[Canvas03]\r\nFileName=p.por\r\n";
    Write("f/a.can", "[General]\r\nName=A\r\n");
    const std::vector<std::string> expected = {
        "p.por [Canvas02] FileName=f\\a.can: the file of Canvas01, the slot is left out",
        "p.por [Canvas03] FileName=p.por: the file of the portfolio itself, the slot is left out",
    };
    ASSERT_TRUE(Load(names));
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    ASSERT_EQ(faults.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(faults[i].Text(), expected[i]);
    EXPECT_TRUE(profile.Keys("p.por", "General").empty()) << "no canvas was put into the portfolio";
    ASSERT_TRUE(portfolio.SaveFile());
    EXPECT_EQ(Value("p.por", "Canvas02", "FileName"), "f\\a.can");
    EXPECT_EQ(Value("p.por", "Canvas03", "FileName"), "p.por");
    const auto checked = CheckDocument(platform, "p.por");
    ASSERT_EQ(checked.size(), 2U);
    EXPECT_EQ(checked[0].Text(), "p.por(4) [Canvas02]" + expected[0].substr(expected[0].find("] ") + 1));
}

TEST_F(PortfolioTest, SaveCanvasesWritesThoseThatChanged) {
    for (int slot : {1, 2, 3}) Open(slot).SetFileName("c" + std::to_string(slot) + ".can");
    portfolio.Canvas(2).SetNeedSaving(false);
    portfolio.Canvas(3).SetFileName("");
    portfolio.SaveCanvases();
    EXPECT_TRUE(files.FileExists("c1.can"));
    EXPECT_FALSE(files.FileExists("c2.can"));
    EXPECT_FALSE(portfolio.Canvas(1).NeedSaving());
    EXPECT_TRUE(portfolio.Canvas(3).NeedSaving()) << "it has no file";
}

TEST_F(PortfolioTest, WriteThatFailsLeavesTheNeedToSave) {
    ASSERT_TRUE(portfolio.SaveFile());
    files["p.por"].readOnly = true;
    portfolio.WebServer().SetPort(81);
    EXPECT_FALSE(portfolio.SaveFile());
    EXPECT_TRUE(portfolio.NeedSaving());
    EXPECT_EQ(Value("p.por", "WebServer", "Port"), "18080") << "the old file, whole";
}

TEST_F(PortfolioTest, LayersFindTheirFeedsByName) {
    Write("a.can",
          "[Graphic001]\r\nEnabled=True\r\nSourceType=0\r\nSourceVideoFeedName=Garden\r\n"
          "[Graphic002]\r\nEnabled=True\r\nSourceType=0\r\nSourceVideoFeedName=Nobody\r\n");
    ASSERT_TRUE(Load("[Canvas01]\r\nFileName=a.can\r\n[VideoFeeds]\r\nFeed4Name=Garden\r\n"));
    const Canvas& canvas = portfolio.Canvas(1);
    EXPECT_EQ(canvas.Graphic(1)->SourceVideoFeed(), 4);
    EXPECT_EQ(canvas.Graphic(2)->SourceVideoFeed(), Graphic::NoFeed);
    EXPECT_FALSE(canvas.NeedSaving());
    portfolio.VideoFeed(4).SetFeedName("Yard");
    portfolio.Canvas(1).SaveFile();
    EXPECT_EQ(Value("a.can", "Graphic001", "SourceVideoFeedName"), "Yard");
    EXPECT_EQ(Value("a.can", "Graphic002", "SourceVideoFeedName"), "Nobody") << "it may come back";
}

TEST_F(PortfolioTest, ScriptTakesPartInLoadingTickingAndUnloading) {
    engine.procedures = {
        {"Startup",    0},
        {"Shutdown",   0},
        {"Interval",   0},
        {"NewCSVData", 0}
    };
    portfolio.Script().SetEngine(&engine);
    Write("script.txt", "'");
    Write("a.can", "");
    int canvasesAtStartup = -1;
    engine.during = [&] { canvasesAtStartup = portfolio.CanvasesOpen(); };
    ASSERT_TRUE(
        Load("[Canvas01]\r\nFileName=a.can\r\n[Scripting]\r\nEnabled=True\r\nRate=10\r\nAllowStartup=True\r\n"
             "AllowShutdown=True\r\nAllowInterval=True\r\n"));
    EXPECT_EQ(engine.calls, std::vector<std::string>{"Startup()"});
    EXPECT_EQ(canvasesAtStartup, 1);
    engine.calls.clear();
    time.Set(FakeTime::FirstDay, 12, 0, 1);
    Tick(1);
    Tick(1);
    Tick(8);
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"Interval()", "Interval()"}))
        << "at once, then on the grid";
    engine.calls.clear();
    engine.during = [&] { canvasesAtStartup = portfolio.CanvasesOpen(); };
    portfolio.PortfolioUnload();
    EXPECT_EQ(engine.calls, std::vector<std::string>{"Shutdown()"});
    EXPECT_EQ(canvasesAtStartup, 1) << "the canvases go after the script";
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
}

TEST_F(PortfolioTest, NewWeatherDataReachesTheScriptOnce) {
    engine.procedures = {
        {"NewCSVData", 0}
    };
    portfolio.Script().SetEngine(&engine);
    Write("script.txt", "'");
    std::string record = "0,1,2026,1,15,12,0,0";
    for (int field = 8; field < 39; ++field) record += "," + std::to_string(field);
    Write("w.csv", record);
    ASSERT_TRUE(
        Load("[VWS]\r\nCSVEnabled=True\r\nCSVDelay=1\r\nCSVFile=w.csv\r\n"
             "[Scripting]\r\nEnabled=True\r\nAllowNewCSVData=True\r\n"));
    for (int i = 0; i < 3; ++i) Tick();
    EXPECT_EQ(engine.calls, std::vector<std::string>{"NewCSVData()"});
    EXPECT_EQ(portfolio.VWS().CSVData(14), 14);
}

TEST_F(PortfolioTest, FilesAreTheSameInEveryLocale) {
    Write("a.can",
          "[Capture]\r\nFixedRate=0.5\r\nFixedBaseTime=01:02:03\r\n[Text001]\r\nEnabled=True\r\nFontSize=10."
          "5\r\n");
    modNumbers::InitNumberFormat(GermanLocale());
    ASSERT_TRUE(Load("[Canvas01]\r\nFileName=a.can\r\n[VWS]\r\nCSVBarometerOffset=-0.25\r\n"));
    profile.Set("a.can", "General", "WindowState", "0");
    const std::string expected = files["a.can"].bytes;
    EXPECT_EQ(portfolio.Canvas(1).Saves().FixedRate(), 0.5);
    EXPECT_EQ(portfolio.Canvas(1).Saves().FixedBaseTime(), 3723);
    EXPECT_EQ(portfolio.Canvas(1).Text(1)->FontSize(), 10.5F);
    portfolio.Canvas(1).SaveFile();
    portfolio.SaveFile();
    EXPECT_EQ(files["a.can"].bytes, expected);
    EXPECT_EQ(Value("p.por", "VWS", "CSVBarometerOffset"), "-0.25");
    EXPECT_EQ(Value("p.por", "VWS", "CSVBarometricTrendThreshold"), "0.05");
}

TEST_F(PortfolioTest, EndedProgramStopsTheTickBetweenCanvases) {
    for (int slot : {1, 2}) {
        Open(slot).Saves().SetFixedEnabled(true);
        portfolio.Canvas(slot).Saves().SetFixedRate(1);
        portfolio.Canvas(slot).Saves().SetFixedFileName("out" + std::to_string(slot) + ".jpg");
    }
    Tick();
    EXPECT_TRUE(files.FileExists("out1.jpg"));
    const int changes = files.Changes();
    Flags().running = false;
    portfolio.Canvas(2).SetBackgroundColor(0xFF);
    Tick();
    EXPECT_EQ(files.Changes(), changes);
    EXPECT_EQ(portfolio.Canvas(2).Picture().Pixel(0, 0), 0);
}

TEST_F(PortfolioTest, CaptureTimeIsThePresentOfOneTick) {
    Portfolio fresh(platform);
    EXPECT_EQ(fresh.Now(), time.Now()) << "the clock before the first tick";
    fresh.SetCaptureTime(time.Now());
    time.Advance(2);
    EXPECT_EQ(fresh.Now(), time.Now() - 2 / 86400.0);
    EXPECT_EQ(fresh.CycleTime(), 0);
    fresh.SetCaptureTime(time.Now());
    EXPECT_NEAR(fresh.CycleTime(), 2, 1e-4);
}

TEST_F(PortfolioTest, CheckListsAllThatIsWrongAndWritesNothing) {
    Write("p.por",
          "[Canvas01]\r\nFileName=a.can\r\n[Canvas02]\r\nFileName=gone.can\r\nColour=red\r\n"
          "[WebServer]\r\nPort=0\r\nEnabled=perhaps\r\n[Scripting]\r\nEnabled=True\r\n"
          "[Canvas21]\r\nFileName=x\r\n[X-Own]\r\nAny=1\r\n");
    Write(
        "a.can",
        "[General]\r\nWidth=9999\r\nWidht=5\r\n[Capture]\r\nFixedEnabled=True\r\nFixedFileName=no\\f.jpg\r\n"
        "[FTPPush]\r\nPassword=secret\r\n"
        "[Text002]\r\nText=lost\r\n[Graphic001]\r\nEnabled=True\r\nSourceType=1\r\nSourceFileName=a.jpg\r\n");
    const int changes = files.Changes();
    std::vector<std::string> found;
    for (const DocumentFault& fault : CheckDocument(platform, "p.por")) found.push_back(fault.Text());
    EXPECT_EQ(found, (std::vector<std::string>{
                         "p.por [Scripting] FileName=script.txt: missing file",
                         "p.por(5) [Canvas02] Colour=red: unknown key",
                         "p.por(7) [WebServer] Port=0: out of range, 1 taken",
                         "p.por(8) [WebServer] Enabled=perhaps: neither True nor False",
                         "p.por(11) [Canvas21]: unknown section",
                         "a.can(2) [General] Width=9999: out of range, 3000 taken",
                         "a.can(3) [General] Widht=5: unknown key",
                         "a.can(6) [Capture] FixedFileName=no\\f.jpg: missing folder",
                         "a.can(9) [Text002] Enabled: missing, so the layer is left out",
                         "a.can(14) [Graphic001] SourceFileName=a.jpg: missing file",
                         "gone.can: missing file",
                     }));
    EXPECT_EQ(files.Changes(), changes);
}

}  // namespace
}  // namespace tessaloom::testing
