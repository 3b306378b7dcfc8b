#include "model/DocumentCheck.h"
#include "model/Documents.h"
#include "publish/WebServer.h"
#include "script/host/Script.h"
#include "support/RecordingScriptEngine.h"
#include "video/VideoFeed.h"

namespace tessaloom::testing {
namespace {

using Lines = std::vector<std::string>;

struct PortfolioTest : Documents, ::testing::Test {
    PortfolioTest() { portfolio.SetFileName("p.por"); }

    bool Load(std::string_view text) {
        Write("p.por", text);
        return portfolio.LoadFile();
    }

    RecordingScriptEngine engine;
};

TEST_F(PortfolioTest, LoadingCompletesAFileWithItsDefaults) {
    ASSERT_TRUE(portfolio.LoadFile()) << "a missing file is made";
    Write("expected", Data("completed.por"));
    EXPECT_EQ(Contents("p.por"), Contents("expected"));
    EXPECT_FALSE(portfolio.NeedSaving());
    EXPECT_EQ(TakeFaults(), Lines{"p.por: missing file, the defaults are taken"});
}

TEST_F(PortfolioTest, NewPortfolioHasTheDefaultsOfAFileButForAFewKeys) {
    ASSERT_TRUE(portfolio.SaveFile());
    EXPECT_EQ(Differences("p.por", "completed.por"),
              (Lines{"CSVDelay=0", "CSVBarometerOffset=0", "Port=18080"}));
}

TEST_F(PortfolioTest, SavesAllKeysInTheOrderOfWriting) {
    portfolio.Script().SetBaseTime(3661);
    portfolio.VideoFeed(3).SetFeedName("Garden");
    portfolio.VideoFeed(3).MotionDetect().SetBrighterPercent(12.5);
    portfolio.WebServer().SetPort(8080);
    EXPECT_TRUE(portfolio.NeedSaving());
    ASSERT_TRUE(portfolio.SaveFile());
    EXPECT_FALSE(portfolio.NeedSaving());
    const auto sections = profile.Sections("p.por");
    ASSERT_EQ(sections.size(), 24U);
    EXPECT_EQ(sections[6].name, "Canvas07");
    EXPECT_EQ(sections[21].name, "VWS");
    EXPECT_EQ(profile.Keys("p.por", "VWS")[0].name, "CSVDelay");
    EXPECT_EQ(Value("p.por", "Scripting", "BaseTime"), "01:01:01");
    EXPECT_EQ(Value("p.por", "VideoFeeds", "Feed3MotionBrighterMotionLimit"), "12.5");

    const std::string saved = files["p.por"].bytes;
    Portfolio again(platform);
    again.SetFileName("p.por");
    ASSERT_TRUE(again.LoadFile());
    EXPECT_EQ(again.VideoFeed(3).FeedName(), "Garden");
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
        "[Canvas01]\r\nFileName=f/a.can\r\n"
        "[Canvas02]\r\nFileName=f\\a.can\r\n[Canvas03]\r\nFileName=p.por\r\n";
    Write("f/a.can", "[General]\r\nName=A\r\n");
    const Lines expected = {
        "[Canvas02] FileName=f\\a.can: the file of Canvas01, the slot is left out",
        "[Canvas03] FileName=p.por: the file of the portfolio itself, the slot is left out"};
    ASSERT_TRUE(Load(names));
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    EXPECT_EQ(TakeFaults(), (Lines{"p.por " + expected[0], "p.por " + expected[1]}));
    EXPECT_TRUE(profile.Keys("p.por", "General").empty()) << "no canvas was put into the portfolio";
    ASSERT_TRUE(portfolio.SaveFile());
    EXPECT_EQ(Value("p.por", "Canvas02", "FileName"), "f\\a.can");
    EXPECT_EQ(Value("p.por", "Canvas03", "FileName"), "p.por");
    const auto checked = CheckDocument(platform, "p.por");
    ASSERT_EQ(checked.size(), 2U);
    EXPECT_EQ(checked[0].Text(), "p.por(4) " + expected[0]);
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
    // clang-format off
    engine.procedures = {{"Startup", 0}, {"Shutdown", 0}, {"Interval", 0}};
    // clang-format on
    portfolio.Script().SetEngine(&engine);
    Write("script.txt", "'");
    Write("a.can", "");
    int canvasesThen = -1;
    engine.during = [&] { canvasesThen = portfolio.CanvasesOpen(); };
    ASSERT_TRUE(
        Load("[Canvas01]\r\nFileName=a.can\r\n[Scripting]\r\nEnabled=True\r\nRate=10\r\nAllowStartup=True\r\n"
             "AllowShutdown=True\r\nAllowInterval=True\r\n"));
    EXPECT_EQ(engine.calls, Lines{"Startup()"});
    EXPECT_EQ(canvasesThen, 1);
    engine.calls.clear();
    time.Set(FakeTime::FirstDay, 12, 0, 1);
    Tick(1);
    Tick(1);
    Tick(8);
    EXPECT_EQ(engine.calls, (Lines{"Interval()", "Interval()"})) << "at once, then on the grid";
    engine.calls.clear();
    canvasesThen = -1;
    portfolio.PortfolioUnload();
    EXPECT_EQ(engine.calls, Lines{"Shutdown()"});
    EXPECT_EQ(canvasesThen, 1) << "the canvases go after the script";
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
}

TEST_F(PortfolioTest, CaptureTimeIsThePresentOfOneTick) {
    Portfolio fresh(platform);
    EXPECT_EQ(fresh.Now(), time.Now()) << "the clock before the first tick";
    fresh.SetCaptureTime(time.Now());
    time.Advance(2);
    EXPECT_EQ(fresh.Now(), time.Now() - 2 / 86400.0);
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
    Lines found;
    for (const DocumentFault& fault : CheckDocument(platform, "p.por")) found.push_back(fault.Text());
    EXPECT_EQ(found, (Lines{
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
