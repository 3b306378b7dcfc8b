#include "core/main/DocumentCommands.h"

#include "core/SetupValues.h"
#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "support/TestPlatform.h"

namespace tessaloom::testing {
namespace {

using namespace modMain;

using Lines = std::vector<std::string>;

constexpr const char* Created =
    "New Portfolio: Your portfolio has been created.\n\n"
    "You may now add canvases using the Open Canvas or New Canvas selections from the File Menu.";
constexpr const char* SaveOpen =
    "Save Open Portfolio and Canvases?: Would you like to save the open portfolio and canvases?";
constexpr const char* NoFile = "No file selected: No file was selected.";
constexpr const char* NoFileAborting = "No file selected: No file was selected.  Aborting process.";
constexpr const char* Full =
    "Out of Canvas Locations: You already have all of the allowed canvases loaded.\n"
    "Remove an existing canvas to make room for a new one.";
constexpr const char* Exists =
    "Canvas Save As: This file already exists.  To open an existing file, select \"Open Canvas\" instead.";
constexpr const char* Remove = "Remove Canvas: Are you sure you want to remove this canvas?";
constexpr const char* SaveFirst =
    "Save Canvas: This canvas has been changed.  Would you like to save it first?";

constexpr auto Yes = Answer::Yes, No = Answer::No, Cancel = Answer::Cancel;
constexpr auto Nothing = std::nullopt;

bool SaveAll() { return SaveAllProc(true); }

/// What a person answers to the boxes and dialogs of one command.
struct Answers {
    std::deque<Answer> boxes = {};
    std::deque<std::optional<std::string>> saves = {}, opens = {}, names = {};
};

Answers Pressed(std::deque<Answer> boxes, std::deque<std::optional<std::string>> saves = {}) {
    return {.boxes = std::move(boxes), .saves = std::move(saves)};
}

class DocumentCommandsTest : public ::testing::Test {
protected:
    DocumentCommandsTest() { modMain::Main(it_.platform); }
    ~DocumentCommandsTest() override {
        modMain_Shutdown();
        tessaloom::Setup() = {};
    }

    /// Runs a command: what it showed, then its result, if any.
    template <typename Command>
    Lines Run(Command command, Answers answers = {}) {
        it_.dialogs.answers = answers.boxes;
        it_.dialogs.saveFiles = answers.saves;
        it_.dialogs.openFiles = answers.opens;
        it_.dialogs.texts = answers.names;
        it_.dialogs.status.clear();
        if constexpr (std::is_void_v<decltype(command())>) {
            command();
            return std::exchange(it_.dialogs.shown, {});
        } else {
            it_.dialogs.shown.emplace_back(command() ? "done" : "refused");
            return std::exchange(it_.dialogs.shown, {});
        }
    }
    Portfolio& New() {
        Run(PortfolioNew);
        return *OpenPortfolio();
    }
    Canvas& NewCanvas(const char* name = "A") {
        Run(CanvasNew, {.names = {name}});
        return OpenPortfolio()->Canvas(OpenPortfolio()->ActiveCanvas());
    }
    std::string File(const std::string& path) { return it_.files.ReadFile(path).value_or("<missing>"); }
    bool Holds(const std::string& path, const char* text) {
        return File(path).find(text) != std::string::npos;
    }

    TestPlatform it_;
};

TEST_F(DocumentCommandsTest, NewAsksOnlyWhenSomethingChangedAndKeepsAllUntilItIsSaved) {
    EXPECT_EQ(Run(PortfolioNew), Lines{Created});
    EXPECT_TRUE(it_.mainWindow.portfolioCommands);
    EXPECT_EQ(Run(PortfolioNew), Lines{Created});
    const Portfolio* old = OpenPortfolio();
    NewCanvas();
    EXPECT_EQ(Run(PortfolioNew, Pressed({Cancel})), Lines{SaveOpen});
    EXPECT_EQ(Run(PortfolioNew, Pressed({Yes}, {Nothing})), (Lines{SaveOpen, "Portfolio Save As", NoFile}));
    EXPECT_EQ(OpenPortfolio(), old);
    EXPECT_EQ(Run(PortfolioNew, Pressed({Yes}, {"p.por", "c.can"})),
              (Lines{SaveOpen, "Portfolio Save As", "Canvas Save As", Created}));
    EXPECT_TRUE(Holds("p.por", "[Canvas01]\r\nFileName=c.can"));
    EXPECT_TRUE(Holds("c.can", "Name=A"));
    EXPECT_EQ(OpenPortfolio()->FileName(), "");
}

TEST_F(DocumentCommandsTest, OpenLoadsTheChosenFileAndRemembersIt) {
    it_.files.WriteFile("p.por", "[WebServer]\r\nPort=8081\r\n");
    EXPECT_EQ(Run(PortfolioOpen), Lines{"Portfolio Open"});
    EXPECT_EQ(OpenPortfolio(), nullptr);
    Run(PortfolioOpen, {.opens = {"p.por"}});
    ASSERT_NE(OpenPortfolio(), nullptr);
    EXPECT_EQ(OpenPortfolio()->FileName(), "p.por");
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "p.por");
    EXPECT_TRUE(Holds("p.por", "Port=8081"));
    EXPECT_FALSE(OpenPortfolio()->NeedSaving());
}

TEST_F(DocumentCommandsTest, SaveAsNamesTheFileAndSaves) {
    New();
    EXPECT_EQ(Run(PortfolioSave), (Lines{"Portfolio Save As", NoFile, "refused"}));
    EXPECT_EQ(Run(PortfolioSave, {.saves = {"p.por"}}), (Lines{"Portfolio Save As", "done"}));
    EXPECT_EQ(it_.dialogs.status, (Lines{"Saving...", ""}));
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "p.por");
    EXPECT_TRUE(Holds("p.por", "[Canvas20]"));
    EXPECT_EQ(Run(PortfolioSave), Lines{"done"});
}

TEST_F(DocumentCommandsTest, SaveAllWritesEveryCanvasOrThoseThatChanged) {
    for (const bool everything : {false, true}) {
        New();
        NewCanvas("A");
        NewCanvas("B");
        ASSERT_EQ(Run([] { return SaveAllProc(false); }, Pressed({}, {"p.por", "a.can", "b.can"})).back(),
                  "done");
        for (const char* file : {"a.can", "b.can"}) it_.files.WriteFile(file, "");
        OpenPortfolio()->Canvas(2).SetName("C");
        EXPECT_TRUE(SaveAllProc(everything));
        EXPECT_EQ(File("a.can").empty(), !everything);
        EXPECT_TRUE(Holds("b.can", "Name=C"));
        EXPECT_FALSE(OpenPortfolio()->NeedSaving());
        for (const char* file : {"p.por", "a.can", "b.can"}) it_.files.DeleteFile(file);
    }
}

TEST_F(DocumentCommandsTest, KeepsThePortfolioOpenWhenACanvasCannotBeSaved) {
    Portfolio& old = New();
    NewCanvas();
    ASSERT_EQ(Run(SaveAll, Pressed({}, {"p.por", "c.can"})).back(), "done");
    it_.files.WriteFile("c.can", std::string_view("\0", 1));  // never written to
    old.Canvas(1).SetName("B");
    EXPECT_EQ(Run(PortfolioNew, Pressed({Yes, Answer::Ok})),
              (Lines{SaveOpen, "Not Saved: Could not be written:\nc.can"}));
    EXPECT_EQ(OpenPortfolio(), &old);
    EXPECT_EQ(old.Canvas(1).Name(), "B");
}

TEST_F(DocumentCommandsTest, TakesTwentyNamedCanvases) {
    Portfolio& portfolio = New();
    for (const auto& name : {std::optional<std::string>(), std::optional<std::string>("")})
        EXPECT_EQ(Run(CanvasNew, {.names = {name}}), Lines{"Canvas Name"});
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
    for (const int slot : {-1, 0, 1, 21})
        EXPECT_EQ(Run([=] { return CanvasSaveAsProc(slot); }), Lines{"refused"});

    for (int i = 0; i < 20; ++i) NewCanvas();
    EXPECT_EQ(portfolio.CanvasesOpen(), 20);
    for (const auto command : {CanvasNew, CanvasOpen}) EXPECT_EQ(Run(command), Lines{Full});
    portfolio.SetActiveCanvas(7);
    Run(CanvasRemove, Pressed({Yes, No}));
    EXPECT_EQ(portfolio.CanvasesOpen(), 19);
    NewCanvas("again");
    EXPECT_EQ(portfolio.Canvas(7).Name(), "again");
}

TEST_F(DocumentCommandsTest, OpensACanvasOnce) {
    Portfolio& portfolio = New();
    it_.files.WriteFile("folder\\c.can", "[General]\r\nName=C\r\nWidth=64\r\n");
    EXPECT_EQ(Run(CanvasOpen), (Lines{"Canvas Open", NoFileAborting}));
    Run(CanvasOpen, {.opens = {"folder\\c.can"}});
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    EXPECT_EQ(portfolio.Canvas(1).Width(), 64);
    EXPECT_EQ(portfolio.ActiveCanvas(), 1);
    EXPECT_TRUE(portfolio.NeedSaving());
    EXPECT_EQ(Run(CanvasOpen, {.opens = {"folder/c.can"}}),
              (Lines{"Canvas Open", "Canvas Open: This canvas is already open."}));
    portfolio.SetNeedSaving(false);
    Run(CanvasOpen, {.opens = {"missing.can"}});
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    EXPECT_FALSE(portfolio.NeedSaving());
}

TEST_F(DocumentCommandsTest, NeverGivesOneFileToTwoDocuments) {
    Portfolio& portfolio = New();
    Run(PortfolioSaveAs, {.saves = {"p.por"}});
    it_.files.WriteFile("c.can", "[General]\r\nName=C\r\n");
    Run(CanvasOpen, {.opens = {"p.por"}});
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
    Run(CanvasOpen, {.opens = {"c.can"}});
    NewCanvas("second");
    it_.files.DeleteFile("c.can");
    EXPECT_EQ(Run([] { return CanvasSaveAsProc(2); }, {.saves = {"c.can"}}),
              (Lines{"Canvas Save As", "Canvas Save As: This canvas is already open.", "refused"}))
        << "it is the file of the first, even while it is gone";
    EXPECT_EQ(
        Run(PortfolioSaveAs, {.saves = {"c.can"}}),
        (Lines{"Portfolio Save As", "Portfolio Save As: This is the file of an open canvas.", "refused"}));
    EXPECT_EQ(portfolio.FileName(), "p.por");
    EXPECT_EQ(portfolio.Canvas(2).FileName(), "");
}

TEST_F(DocumentCommandsTest, NeverOverwritesACanvasFileBySaveAs) {
    New();
    const Canvas& canvas = NewCanvas();
    it_.files.WriteFile("old.can", "kept");
    EXPECT_EQ(Run(CanvasSave, {.saves = {"old.can"}}), (Lines{"Canvas Save As", Exists, "refused"}));
    EXPECT_EQ(File("old.can"), "kept");
    EXPECT_EQ(Run(CanvasSaveAs), (Lines{"Canvas Save As", NoFileAborting, "refused"}));
    EXPECT_EQ(Run(CanvasSaveAs, {.saves = {"new.can"}}), (Lines{"Canvas Save As", "done"}));
    EXPECT_EQ(canvas.FileName(), "new.can");
    EXPECT_EQ(Run(CanvasSave), Lines{"done"});
}

TEST_F(DocumentCommandsTest, RemoveAsksBeforeItLosesAnything) {
    const Portfolio& portfolio = New();
    NewCanvas();
    EXPECT_EQ(Run(CanvasRemove, Pressed({No})), Lines{Remove});
    EXPECT_EQ(Run(CanvasRemove, Pressed({Yes, Yes})),
              (Lines{Remove, SaveFirst, "Canvas Save As", NoFileAborting}));
    EXPECT_EQ(portfolio.CanvasesOpen(), 1);
    Run(CanvasRemove, Pressed({Yes, Yes}, {"c.can"}));
    EXPECT_EQ(portfolio.CanvasesOpen(), 0);
    EXPECT_TRUE(it_.files.FileExists("c.can"));
    NewCanvas().SetNeedSaving(false);
    EXPECT_EQ(Run(CanvasRemove, Pressed({Yes})), Lines{Remove});
}

TEST_F(DocumentCommandsTest, DoNothingWithoutAPortfolio) {
    for (const auto command : {PortfolioSave, SaveAll, CanvasSave}) EXPECT_EQ(Run(command), Lines{"refused"});
    for (const auto command : {CanvasNew, CanvasOpen, CanvasRemove}) EXPECT_EQ(Run(command), Lines{});
}

}  // namespace
}  // namespace tessaloom::testing
