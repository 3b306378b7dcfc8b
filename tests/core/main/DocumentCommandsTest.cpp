#include "core/main/DocumentCommands.h"

#include <gtest/gtest.h>

#include "core/SetupValues.h"
#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "support/TestPlatform.h"

namespace tessaloom::testing {
namespace {

using namespace modMain;

constexpr const char* SaveOpen =
    "Save Open Portfolio and Canvases?: Would you like to save the open portfolio and canvases?";
constexpr const char* NoFile = "No file selected: No file was selected.";
constexpr const char* NoFileAborting = "No file selected: No file was selected.  Aborting process.";

class DocumentCommandsTest : public ::testing::Test {
protected:
    DocumentCommandsTest() { modMain::Main(it_.platform); }
    ~DocumentCommandsTest() override {
        modMain_Shutdown();
        tessaloom::Setup() = {};
    }

    /// A new portfolio, with nothing shown so far.
    Portfolio& New() {
        PortfolioNew();
        Forget();
        return *OpenPortfolio();
    }
    Canvas& NewCanvas(const char* name = "A") {
        it_.dialogs.texts = {name};
        CanvasNew();
        Forget();
        return OpenPortfolio()->Canvas(OpenPortfolio()->ActiveCanvas());
    }
    void Forget() {
        it_.dialogs.shown.clear();
        it_.dialogs.status.clear();
    }
    std::vector<std::string> Shown() { return std::exchange(it_.dialogs.shown, {}); }
    std::string File(const std::string& path) {
        return it_.files.ReadFile(path, 1'000'000).value_or("<missing>");
    }

    using Lines = std::vector<std::string>;
    TestPlatform it_;
};

TEST_F(DocumentCommandsTest, NewAsksNothingWhenNothingChanged) {
    PortfolioNew();
    const Lines created{
        "New Portfolio: Your portfolio has been created.\n\n"
        "You may now add canvases using the Open Canvas or New Canvas selections from the File Menu."};
    EXPECT_EQ(Shown(), created);
    EXPECT_TRUE(it_.mainWindow.portfolioCommands);
    PortfolioNew();
    EXPECT_EQ(Shown(), created);
}

TEST_F(DocumentCommandsTest, NewLeavesTheOldPortfolioOnCancel) {
    Portfolio& old = New();
    old.SetNeedSaving(true);
    it_.dialogs.answers = {Answer::Cancel};
    PortfolioNew();
    EXPECT_EQ(Shown(), Lines{SaveOpen});
    EXPECT_EQ(OpenPortfolio(), &old);
}

TEST_F(DocumentCommandsTest, NewSavesOnYesAndKeepsAllWhenNoFileIsNamed) {
    Portfolio& old = New();
    NewCanvas();
    it_.dialogs.answers = {Answer::Yes};
    it_.dialogs.saveFiles = {std::nullopt};
    PortfolioNew();
    EXPECT_EQ(Shown(), (Lines{SaveOpen, "Portfolio Save As", NoFile}));
    EXPECT_EQ(OpenPortfolio(), &old);

    it_.dialogs.answers = {Answer::Yes};
    it_.dialogs.saveFiles = {"p.por", "c.can"};
    PortfolioNew();
    EXPECT_NE(File("p.por").find("[Canvas01]\r\nFileName=c.can"), std::string::npos);
    EXPECT_NE(File("c.can").find("Name=A"), std::string::npos);
    EXPECT_EQ(OpenPortfolio()->FileName(), "");
}

TEST_F(DocumentCommandsTest, OpenLoadsTheChosenFileAndRemembersIt) {
    it_.files.WriteFile("p.por", "[WebServer]\r\nPort=8081\r\n");
    it_.dialogs.openFiles = {std::nullopt};
    PortfolioOpen();
    EXPECT_EQ(OpenPortfolio(), nullptr);

    it_.dialogs.openFiles = {"p.por"};
    PortfolioOpen();
    ASSERT_NE(OpenPortfolio(), nullptr);
    EXPECT_EQ(OpenPortfolio()->FileName(), "p.por");
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "p.por");
    EXPECT_NE(File("p.por").find("Port=8081"), std::string::npos);
    EXPECT_FALSE(OpenPortfolio()->NeedSaving());
}

TEST_F(DocumentCommandsTest, SaveAsNamesTheFileAndSaves) {
    New();
    it_.dialogs.saveFiles = {std::nullopt, "p.por"};
    EXPECT_FALSE(PortfolioSave());
    EXPECT_EQ(Shown(), (Lines{"Portfolio Save As", NoFile}));
    EXPECT_TRUE(PortfolioSave());
    EXPECT_EQ(it_.dialogs.status, (Lines{"Saving...", ""}));
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "p.por");
    EXPECT_NE(File("p.por").find("[Canvas20]"), std::string::npos);
    EXPECT_TRUE(PortfolioSave());
    EXPECT_EQ(Shown(), Lines{"Portfolio Save As"});
}

TEST_F(DocumentCommandsTest, SaveAllWritesEveryCanvasOrThoseThatChanged) {
    for (const bool everything : {false, true}) {
        New();
        NewCanvas("A");
        NewCanvas("B");
        it_.dialogs.saveFiles = {"p.por", "a.can", "b.can"};
        ASSERT_TRUE(SaveAllProc(false));
        it_.files.WriteFile("a.can", "");
        it_.files.WriteFile("b.can", "");
        OpenPortfolio()->Canvas(2).SetName("C");
        EXPECT_TRUE(SaveAllProc(everything));
        EXPECT_EQ(File("a.can").empty(), !everything);
        EXPECT_NE(File("b.can").find("Name=C"), std::string::npos);
        EXPECT_FALSE(OpenPortfolio()->NeedSaving());
        for (const char* file : {"p.por", "a.can", "b.can"}) it_.files.DeleteFile(file);
    }
}

TEST_F(DocumentCommandsTest, KeepsThePortfolioOpenWhenACanvasCannotBeSaved) {
    Portfolio& old = New();
    NewCanvas();
    it_.dialogs.saveFiles = {"p.por", "c.can"};
    ASSERT_TRUE(SaveAllProc(true));
    it_.files.WriteFile("c.can", std::string_view("\0", 1));  // never written to
    old.Canvas(1).SetName("B");
    it_.dialogs.answers = {Answer::Yes};
    PortfolioNew();
    EXPECT_EQ(OpenPortfolio(), &old);
    EXPECT_EQ(old.Canvas(1).Name(), "B");
}

TEST_F(DocumentCommandsTest, RefusesATwentyFirstCanvas) {
    Portfolio& portfolio = New();
    for (int i = 0; i < 20; ++i) NewCanvas();
    EXPECT_EQ(portfolio.CanvasesOpen(), 20);
    const Lines full{
        "Out of Canvas Locations: You already have all of the allowed canvases loaded.\n"
        "Remove an existing canvas to make room for a new one."};
    CanvasNew();
    EXPECT_EQ(Shown(), full);
    CanvasOpen();
    EXPECT_EQ(Shown(), full);

    portfolio.SetActiveCanvas(7);
    it_.dialogs.answers = {Answer::Yes, Answer::No};
    CanvasRemove();
    EXPECT_EQ(portfolio.CanvasesOpen(), 19);
    NewCanvas("again");
    EXPECT_EQ(portfolio.Canvas(7).Name(), "again");
}

TEST_F(DocumentCommandsTest, MakesNoCanvasWithoutAName) {
    Portfolio& portfolio = New();
    it_.dialogs.texts = {std::nullopt, ""};
    CanvasNew();
    CanvasNew();
    EXPECT_EQ(Shown(), (Lines{"Canvas Name", "Canvas Name"}));
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
    for (const int slot : {-1, 0, 1, 21}) EXPECT_FALSE(CanvasSaveAsProc(slot));
    EXPECT_TRUE(Shown().empty());
}

TEST_F(DocumentCommandsTest, OpensACanvasOnce) {
    Portfolio& portfolio = New();
    it_.files.WriteFile("folder\\c.can", "[General]\r\nName=C\r\nWidth=64\r\n");
    it_.dialogs.openFiles = {std::nullopt, "folder\\c.can", "folder/c.can", "missing.can"};
    CanvasOpen();
    EXPECT_EQ(Shown(), (Lines{"Canvas Open", NoFileAborting}));
    CanvasOpen();
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    EXPECT_EQ(portfolio.Canvas(1).Width(), 64);
    EXPECT_EQ(portfolio.ActiveCanvas(), 1);
    EXPECT_TRUE(portfolio.NeedSaving());
    Forget();
    CanvasOpen();
    EXPECT_EQ(Shown(), (Lines{"Canvas Open", "Canvas Open: This canvas is already open."}));
    portfolio.SetNeedSaving(false);
    CanvasOpen();
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    EXPECT_FALSE(portfolio.NeedSaving());
}

TEST_F(DocumentCommandsTest, NeverGivesOneFileToTwoDocuments) {
    Portfolio& portfolio = New();
    it_.dialogs.saveFiles = {"p.por"};
    ASSERT_TRUE(PortfolioSaveAs());
    it_.files.WriteFile("c.can", "[General]\r\nName=C\r\n");
    it_.dialogs.openFiles = {"p.por", "c.can"};
    CanvasOpen();
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
    CanvasOpen();
    it_.dialogs.texts = {"second"};
    CanvasNew();
    it_.files.DeleteFile("c.can");
    it_.dialogs.saveFiles = {"c.can", "c.can"};
    Forget();
    EXPECT_FALSE(CanvasSaveAsProc(2)) << "it is the file of the first, even while it is gone";
    EXPECT_FALSE(PortfolioSaveAs());
    EXPECT_EQ(Shown(),
              (Lines{"Canvas Save As", "Canvas Save As: This canvas is already open.", "Portfolio Save As",
                     "Portfolio Save As: This is the file of an open canvas."}));
    EXPECT_EQ(portfolio.FileName(), "p.por");
    EXPECT_EQ(portfolio.Canvas(2).FileName(), "");
}

TEST_F(DocumentCommandsTest, NeverOverwritesACanvasFileBySaveAs) {
    New();
    Canvas& canvas = NewCanvas();
    it_.files.WriteFile("old.can", "kept");
    it_.dialogs.saveFiles = {"old.can", std::nullopt, "new.can"};
    EXPECT_FALSE(CanvasSave());
    EXPECT_EQ(Shown(), (Lines{"Canvas Save As",
                              "Canvas Save As: This file already exists.  To open an existing file, select "
                              "\"Open Canvas\" instead."}));
    EXPECT_EQ(File("old.can"), "kept");
    EXPECT_FALSE(CanvasSaveAs());
    EXPECT_EQ(Shown(), (Lines{"Canvas Save As", NoFileAborting}));
    EXPECT_TRUE(CanvasSaveAs());
    EXPECT_EQ(canvas.FileName(), "new.can");
    EXPECT_TRUE(CanvasSave());
    EXPECT_EQ(Shown(), Lines{"Canvas Save As"});
}

TEST_F(DocumentCommandsTest, RemoveAsksBeforeItLosesAnything) {
    Portfolio& portfolio = New();
    NewCanvas();
    const std::string sure = "Remove Canvas: Are you sure you want to remove this canvas?";
    const std::string save = "Save Canvas: This canvas has been changed.  Would you like to save it first?";
    it_.dialogs.answers = {Answer::No};
    CanvasRemove();
    EXPECT_EQ(Shown(), Lines{sure});
    it_.dialogs.answers = {Answer::Yes, Answer::Yes};
    it_.dialogs.saveFiles = {std::nullopt};
    CanvasRemove();
    EXPECT_EQ(Shown(), (Lines{sure, save, "Canvas Save As", NoFileAborting}));
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    it_.dialogs.answers = {Answer::Yes, Answer::Yes};
    it_.dialogs.saveFiles = {"c.can"};
    CanvasRemove();
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
    EXPECT_TRUE(it_.files.FileExists("c.can"));
}

TEST_F(DocumentCommandsTest, DoNothingWithoutAPortfolio) {
    EXPECT_FALSE(PortfolioSave());
    EXPECT_FALSE(SaveAllProc(true));
    CanvasNew();
    CanvasOpen();
    EXPECT_FALSE(CanvasSave());
    CanvasRemove();
    EXPECT_TRUE(Shown().empty());
}

}  // namespace
}  // namespace tessaloom::testing
