#include "core/main/DocumentCommands.h"
#include "imaging/Graphic.h"
#include "script/objects/ScriptedProgram.h"
#include "text/VWS.h"

namespace tessaloom::testing {
namespace {

class HooksTest : public ScriptedProgram {};

TEST_F(HooksTest, ReachTheScriptWithTheirArguments) {
    Start(
        "Note = \"\"\n"
        "Sub Add(t) : Note = Note & t & \" \" : LoadLastFileName = Note : End Sub\n"
        "\tSub INTERVAL() : Add \"I\" : End Sub\n"
        "Sub TextUpdate(c, i) : Add \"T\" & c & \",\" & i : End Sub\n"
        "Function GraphicUpdate(ByVal c, i) : Add \"G\" & VarType(c) & VarType(i) : End Function\n"
        "Sub Startup : Add \"S\" : End Sub\n"
        "Sub MotionDetected(feed) : Add \"M\" & feed : End Sub\n"
        "Sub NewCSVData() : Add \"N\" : End Sub\n"
        "Sub WebRequest(ip, path) : Add ip & path : End Sub\n");
    EXPECT_THAT(TheScript().Status(), EndsWith("Running Script\r\n"));
    Open().Canvas(3).Graphic(9)->SetScripted(true);
    Tick();
    TheScript().CallMotionDetected(4);
    TheScript().CallNewCSVData();
    TheScript().CallWebRequest("10.0.0.7", "/caf\u00e9");
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "S I T3,7 G33 M4 N 10.0.0.7/caf\u00e9 ");
}

TEST_F(HooksTest, OfATextDecideWhatTheSameTickDraws) {
    Start(
        "Sub TextUpdate(c, i)\nWith Portfolio.Canvas(c).Text(i)\n"
        ".ProcessedString = .ProcessedString & String(n, \"x\") : n = n + 1\nEnd With\nEnd Sub\nn = 1\n");
    Tick();
    EXPECT_EQ(TheText().ProcessedString(), "Ax");
    int width = TheText().Width();
    for (int tick = 0; tick < 3; ++tick) {
        Tick();
        EXPECT_GT(TheText().Width(), width) << "drawn in the tick of the hook";
        width = TheText().Width();
    }
    TheScript().SetEnabled(false);
    Tick();
    EXPECT_LT(TheText().Width(), width / 4) << "back to its own text";
}

TEST_F(HooksTest, ThatFailStopTheScriptAndNothingElse) {
    const struct {
        const char *body, *description, *place;
    } rows[] = {
  // clang-format off
        {"\t  x = 1 / 0\n", "Division by zero", "Line 2, Column 1\r\n"},
        {"x = 1 : y = Portfolio.Canvas(1).Name\n", "Object variable not set", "Line 2, Column 9\r\n"},
        {"Do : Loop\n", "", "Line "},
        {"Interval\n", "Out of stack space", "Line 2, Column 1\r\n"},
        {"s = \"x\" : Do : s = s & s : Loop\n", "Out of", "Line 2, "},
        {"Portfolio.Nothing\n", "Object doesn't support", "Line 2, Column 1\r\n"},
  // clang-format on
    };
    secondsPerLook_ = 1e-5;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body);
        Start(std::string("Sub Interval\n") + row.body + "End Sub\n");
        Tick();
        EXPECT_FALSE(TheScript().Ready());
        EXPECT_THAT(TheScript().Status(),
                    HasSubstr(std::string("Script Run-Time Error: ") + row.description));
        EXPECT_THAT(TheScript().Status(), HasSubstr(row.place));
        EXPECT_GT(TheText().Width(), 0) << "the tick went on";
        modMain::modMain_Shutdown();
    }
}

TEST_F(HooksTest, ThatSaveEverythingLeaveWholeDocuments) {
    const std::string save = "SaveAll : Portfolio.Canvas(3).Save : SavePortfolio : ExitApp";
    Start(save + "\nSub Startup : " + save +
          " : End Sub\nSub Interval : Portfolio.Canvas(3).Name = \"N\" : " + save +
          " : End Sub\nSub TextUpdate(c, i) : " + save + " : End Sub\n");
    Tick();
    EXPECT_TRUE(TheScript().Ready()) << TheScript().Status();
    EXPECT_EQ(it_.profile.Get("a.por", "Canvas03", "FileName"), "a.can");
    EXPECT_EQ(it_.profile.Get("a.can", "General", "Name"), "N");
    EXPECT_EQ(it_.profile.Get("a.por", "Scripting", "AllowWebRequest"), "True");
    EXPECT_FALSE(Open().NeedSaving());
    EXPECT_TRUE(Flags().running);
}

TEST_F(HooksTest, MayShowBoxesWhileThePortfolioStaysAsItIs) {
    Start(
        "Dim n\nSub TextUpdate(c, i) : Portfolio.Canvas(c).Text(i).ProcessedString = MsgBox(\"Go on?\", 3 + "
        "32, "
        "\"Ask\")\n"
        "End Sub\nSub Interval : n = n + 1 : LoadLastFileName = n & InputBox(\"Name?\") : End Sub\n");
    it_.dialogs.answers = {Answer::Yes};
    it_.dialogs.texts = {"Bo"};
    Open().SetActiveCanvas(3);
    steadySeconds_ = 1;
    it_.dialogs.whileShown = [&] {
        steadySeconds_ += 59;  // a box does not use up the script's time
        EXPECT_EQ(it_.dialogs.Patience(), 60);
        TheScript().CallInterval();
        it_.timer.Tick();
        modMain::PortfolioNew();
        modMain::CanvasRemove();
        EXPECT_FALSE(modMain::MDIForm_QueryUnload(modMain::CloseCause::Program));
        TheScript().ResetScript();
        TheScript().SetEnabled(false);
        Open().Canvas(3).RemoveGraphic(9);
    };
    Tick();
    EXPECT_THAT(it_.dialogs.shown, ElementsAre("", "Ask: Go on?"));
    EXPECT_EQ(it_.dialogs.Patience(), 0);
    EXPECT_EQ(TheText().ProcessedString(), "6");
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "1Bo") << "no event came while the box was open";
    EXPECT_FALSE(TheScript().Ready());
    TheScript().SetEnabled(true);
    EXPECT_TRUE(TheScript().Ready());
}

TEST_F(HooksTest, OfShutdownMayShowABoxWithoutTicksOnWhatIsGoing) {
    Start(
        "Dim n\nSub Shutdown : MsgBox \"Bye\" : End Sub\nSub Interval : n = n + 1 : LoadLastFileName = n : "
        "End "
        "Sub\n");
    Tick();
    it_.dialogs.whileShown = [&] { Tick(60); };
    Open().SetNeedSaving(false);
    modMain::PortfolioNew();
    EXPECT_THAT(it_.dialogs.shown.front(), HasSubstr("Bye"));
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "1");
    EXPECT_EQ(Open().FileName(), "");
}

TEST_F(HooksTest, TransferWithinTheLimitsOfAll) {
    it_.files[it_.files.CurrentFolder() + "\\Tessaloom.INI"].bytes = "[X-Limits]\r\nDownloadSeconds=7\r\n";
    Start();
    EXPECT_EQ(scriptTransfers_.limits.totalMilliseconds, 7000);
}

TEST_F(HooksTest, DoNotExistInAScriptThatCannotBeLoaded) {
    Start("Sub Interval\n\t\t  x = = 1\nEnd Sub\n");
    EXPECT_THAT(TheScript().Status(), HasSubstr("Script Load-Time Error: Syntax error\r\nLine 2, Column 5\r\n"
                                                "Code Fragment (without white space):\r\nx = = 1\r\n"
                                                "Stopping Script\r\n"));
    it_.files["script.txt"].bytes =
        "Class K\nPrivate Sub Class_Terminate\nErr.Raise 5 : Do : Loop\nEnd Sub\nEnd Class\n"
        "Set o = New K\nSet d = CreateObject(\"Scripting.Dictionary\")\n"
        "d.Add 1, Portfolio.Canvas(3)\nOn Error Resume Next\nSet n = CreateObject(\"No.Such\")\n"
        "LoadLastFileName = Err.Number & d(1).Text(7).Text\n";
    secondsPerLook_ = 1e-5;
    TheScript().ResetScript();
    EXPECT_TRUE(TheScript().Ready()) << TheScript().Status();
    EXPECT_EQ(tessaloom::Setup().lastPortfolio, "429A");
    TheScript().ResetScript();
    EXPECT_TRUE(TheScript().Ready()) << "what the old script leaves behind cannot hang the new one";
}

}  // namespace
}  // namespace tessaloom::testing
