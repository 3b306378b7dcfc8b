#include "script/host/Script.h"

#include <gmock/gmock.h>

#include "script/host/ScriptText.h"
#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"
#include "support/PropertyTable.h"
#include "support/RecordingScriptEngine.h"

namespace tessaloom {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using namespace tessaloom::testing;

struct Host {
    Host() {
        time.Set(FakeTime::FirstDay, 12, 0);
        files["script.txt"].bytes = "\t  x = 1 \r\nSub Interval()\r\n\t y = 2\r\nEnd Sub\r\n";
        engine.procedures = {
            {"Interval",       0},
            {"TEXTUPDATE",     2},
            {"graphicupdate",  2},
            {"Startup",        0},
            {"Shutdown",       0},
            {"MotionDetected", 1},
            {"NewCSVData",     0},
            {"WebRequest",     2},
            {"Helper",         3}
        };
    }

    void AllowAll() {
        script.SetAllowInterval(true);
        script.SetAllowTextUpdate(true);
        script.SetAllowGraphicUpdate(true);
        script.SetAllowStartup(true);
        script.SetAllowShutdown(true);
        script.SetAllowMotionDetected(true);
        script.SetAllowNewCSVData(true);
        script.SetAllowWebRequest(true);
    }
    void CallAll() {
        script.CallInterval();
        script.CallTextUpdate(2, 99);
        script.CallGraphicUpdate(20, 1);
        script.CallStartup();
        script.CallShutdown();
        script.CallMotionDetected(10);
        script.CallNewCSVData();
        script.CallWebRequest("10.0.0.7", "live.jpg?x=1");
    }

    FakeTime time;
    CountingOwner owner;
    MemoryFileSystem files;
    RecordingScriptEngine engine;
    Script script{owner, time, files, &engine};
};

/// The one moment of a tick, while the clock goes on.
struct CaptureTime final : PresentTime {
    explicit CaptureTime(double now) : moment(now) {}
    double Now() const override { return moment; }
    const double moment;
};

TEST(Script, ClampsItsPropertiesAndTellsChanges) {
    using S = Script;
    Host at;
    const std::vector<Property<S>> rows{
        Plain<S, &S::FileName, &S::SetFileName>("FileName", "script.txt", "other.txt"),
        Plain<S, &S::Enabled, &S::SetEnabled>("Enabled", false, true),
        Plain<S, &S::AllowInterval, &S::SetAllowInterval>("AllowInterval", false, true),
        Plain<S, &S::AllowTextUpdate, &S::SetAllowTextUpdate>("AllowTextUpdate", false, true),
        Plain<S, &S::AllowGraphicUpdate, &S::SetAllowGraphicUpdate>("AllowGraphicUpdate", false, true),
        Plain<S, &S::AllowStartup, &S::SetAllowStartup>("AllowStartup", false, true),
        Plain<S, &S::AllowShutdown, &S::SetAllowShutdown>("AllowShutdown", false, true),
        Plain<S, &S::AllowMotionDetected, &S::SetAllowMotionDetected>("AllowMotionDetected", false, true),
        Plain<S, &S::AllowNewCSVData, &S::SetAllowNewCSVData>("AllowNewCSVData", false, true),
        Plain<S, &S::AllowWebRequest, &S::SetAllowWebRequest>("AllowWebRequest", false, true),
        Number<S, &S::Rate, &S::SetRate>("Rate", 1, 0, 86400),
        Number<S, &S::BaseTime, &S::SetBaseTime>("BaseTime", 0, 0, 86399),
    };
    CheckProperties<S>(at.script, at.owner, rows);
}

TEST(Script, LoadsTheFileAndTellsWhatItFound) {
    Host at;
    at.script.SetEnabled(true);
    EXPECT_TRUE(at.script.Ready());
    EXPECT_EQ(at.engine.language, "vbScript");
    EXPECT_EQ(at.engine.timeoutSeconds, 5);
    EXPECT_EQ(at.engine.root, "Tessaloom");
    EXPECT_EQ(at.engine.code, "x = 1\r\nSub Interval()\r\ny = 2\r\nEnd Sub\r\n");
    EXPECT_EQ(at.script.Status(),
              "4 Lines\r\n"
              "Script Loaded Successfully\r\n"
              "Method Found: Interval()\r\n"
              "Method Found: TextUpdate(Canvas,Index)\r\n"
              "Method Found: GraphicUpdate(Canvas,Index)\r\n"
              "Method Found: Startup()\r\n"
              "Method Found: Shutdown()\r\n"
              "Method Found: MotionDetected(VideoFeed)\r\n"
              "Method Found: NewCSVData()\r\n"
              "Method Found: WebRequest(IPAddress,Path)\r\n"
              "Running Script\r\n");
}

TEST(Script, StaysNotReadyWithoutAFileOrALanguage) {
    Host at;
    at.AllowAll();
    at.script.SetFileName("missing.txt");
    at.script.SetEnabled(true);
    EXPECT_FALSE(at.script.Ready());
    EXPECT_EQ(at.script.Status(), "File Not Found\r\n");

    at.script.SetFileName("script.txt");  // enabled: loaded at once
    EXPECT_TRUE(at.script.Ready());
    at.script.SetEngine(nullptr);
    at.script.ResetScript();
    EXPECT_FALSE(at.script.Ready());
    EXPECT_THAT(at.script.Status(), Not(HasSubstr("Running Script")));
    at.CallAll();
    EXPECT_THAT(at.engine.calls, IsEmpty());
}

TEST(Script, DeliversEachEventWithItsArguments) {
    Host at;
    at.AllowAll();
    at.script.SetEnabled(true);
    at.CallAll();
    EXPECT_THAT(at.engine.calls, ElementsAre("Interval()", "TextUpdate(2,99)", "GraphicUpdate(20,1)",
                                             "Startup()", "Shutdown()", "MotionDetected(10)", "NewCSVData()",
                                             "WebRequest(\"10.0.0.7\",\"live.jpg?x=1\")"));
}

TEST(Script, DeliversOnlyWhatIsAllowedFoundAndEnabled) {
    Host at;
    at.script.SetEnabled(true);
    at.CallAll();
    EXPECT_THAT(at.engine.calls, IsEmpty()) << "all switches off";

    at.AllowAll();
    at.script.SetAllowWebRequest(false);
    at.engine.procedures = {
        {"textupdate",     1},
        {"motiondetected", 2},
        {"interval",       1},
        {"WebRequest",     2}
    };
    at.script.ResetScript();
    EXPECT_THAT(at.script.Status(), Not(HasSubstr("TextUpdate")));
    at.CallAll();
    EXPECT_THAT(at.engine.calls, IsEmpty()) << "argument counts that do not fit, or switched off";

    at.engine.procedures = {
        {"INTERVAL", 0}
    };
    at.script.ResetScript();
    at.CallAll();
    EXPECT_THAT(at.engine.calls, ElementsAre("Interval()"));
    at.script.SetEnabled(false);
    at.CallAll();
    EXPECT_EQ(at.engine.calls.size(), 1u);
}

TEST(Script, QuotesTheFaultyLineOfALoadError) {
    Host at;
    at.engine.loadFault = ScriptFault{3, 5, "Expected end of statement"};
    at.script.SetEnabled(true);
    EXPECT_FALSE(at.script.Ready());
    EXPECT_EQ(at.script.Status(),
              "Script Load-Time Error: Expected end of statement\r\n"
              "Line 3, Column 5\r\n"
              "Code Fragment (without white space):\r\n"
              "y = 2\r\n"
              "Stopping Script\r\n");
    for (const int line : {0, -1, 5, 1000000}) {  // an engine that does not know where
        at.engine.loadFault->line = line;
        at.script.ResetScript();
        EXPECT_THAT(at.script.Status(), HasSubstr("space):\r\n\r\nStopping Script")) << line;
    }
}

TEST(Script, StopsAtARunTimeErrorUntilReloaded) {
    Host at;
    at.AllowAll();
    at.script.SetEnabled(true);
    at.engine.runFault = ScriptFault{1, 1, "Division by zero"};
    at.script.CallInterval();
    EXPECT_FALSE(at.script.Ready());
    EXPECT_THAT(at.script.Status(), HasSubstr("Running Script\r\nScript Run-Time Error: Division by zero\r\n"
                                              "Line 1, Column 1\r\nCode Fragment (without white space):\r\n"
                                              "x = 1\r\nStopping Script\r\n"));
    at.CallAll();
    EXPECT_EQ(at.engine.calls.size(), 1u);
    at.engine.runFault.reset();
    at.script.ResetScript();
    at.script.CallInterval();
    EXPECT_EQ(at.engine.calls.size(), 2u);
}

TEST(Script, RefusesToReloadWhileItRuns) {
    Host at;
    at.AllowAll();
    at.script.SetEnabled(true);
    at.engine.during = [&] { at.script.ResetScript(); };
    at.script.CallStartup();
    EXPECT_TRUE(at.script.Ready());
    EXPECT_EQ(at.engine.resets, 1);
    EXPECT_THAT(at.script.Status(), HasSubstr("Couldn't reset script as it was running.\r\n"
                                              "Let script complete and then press 'Reload Script'.\r\n"));
    at.engine.during = [&] { at.script.UnloadClass(); };
    at.script.CallStartup();
    EXPECT_FALSE(at.script.Ready());
    EXPECT_EQ(at.engine.resets, 1) << "the code that runs is not pulled away";
    at.script.ResetScript();
    EXPECT_TRUE(at.script.Ready());
}

TEST(Script, TimesItsInterval) {
    Host at;
    at.script.SetRate(10);
    at.script.SetBaseTime(3);
    at.script.SetNextTime();
    EXPECT_NEAR(at.script.NextTime(), at.time.Now() + 3 / 86400.0, 1e-9);
    at.time.Advance(-3600);
    at.script.RestartTime();
    EXPECT_NEAR(at.script.NextTime(), at.time.Now() + 3 / 86400.0, 1e-9);
    at.script.ForceUpdate();
    EXPECT_EQ(at.script.NextTime(), at.time.Now());
}

TEST(Script, KeepsTheIntervalThatItsOwnHookForces) {
    Host at;
    const CaptureTime tick(at.time.Now());
    Script script(at.owner, tick, at.files, &at.engine);
    script.SetEnabled(true);
    script.SetAllowInterval(true);
    script.ResetScript();
    at.time.Advance(0.003);
    at.engine.during = [&] { script.ForceUpdate(); };
    script.CallInterval();
    script.SetNextTime();
    EXPECT_NEAR(script.NextTime(), at.time.Now(), 1e-10) << "due in the next tick";
}

TEST(StrippedLines, DropsWhiteSpaceAndLineEnds) {
    const struct {
        const char* text;
        std::vector<std::string> lines;
    } rows[] = {
        {"",                    {}             },
        {"a",                   {"a"}          },
        {"a\n",                 {"a"}          },
        {"a\r\n\r\nb",          {"a", "", "b"} },
        {"a\rb\n",              {"a", "b"}     },
        {"\t \ta b\t",          {"a b\t"}      },
        {"  \t ",               {""}           },
        {"\xEF\xBB\xBFx \n y ", {"x", "y"}     },
        {"caf\xE9",             {"caf\xC3\xA9"}},
        {"caf\xC3\xA9",         {"caf\xC3\xA9"}},
    };
    for (const auto& row : rows) EXPECT_EQ(StrippedLines(row.text), row.lines) << row.text;
}

}  // namespace
}  // namespace tessaloom
