#include "script/host/Script.h"

#include "script/host/ScriptText.h"
#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"
#include "support/PropertyTable.h"
#include "support/RecordingScriptEngine.h"

namespace tessaloom::testing {
namespace {

const struct {
    void (Script::*allow)(bool);
    std::string call;
} Events[] = {
    {&Script::SetAllowInterval,       "Interval()"                               },
    {&Script::SetAllowTextUpdate,     "TextUpdate(2,99)"                         },
    {&Script::SetAllowGraphicUpdate,  "GraphicUpdate(20,1)"                      },
    {&Script::SetAllowStartup,        "Startup()"                                },
    {&Script::SetAllowShutdown,       "Shutdown()"                               },
    {&Script::SetAllowMotionDetected, "MotionDetected(10)"                       },
    {&Script::SetAllowNewCSVData,     "NewCSVData()"                             },
    {&Script::SetAllowWebRequest,     "WebRequest(\"10.0.0.7\",\"live.jpg?x=1\")"},
};

struct Host {
    explicit Host(bool allow = true) {
        time.Set(FakeTime::FirstDay, 12, 0);
        files["script.txt"].bytes = "\t  x = 1 \r\nSub Interval()\r\n\t y = 2\r\nEnd Sub\r\n";
        // clang-format off
        engine.procedures = {{"Interval", 0}, {"TEXTUPDATE", 2}, {"graphicupdate", 2}, {"Startup", 0}, {"Shutdown", 0},
                             {"MotionDetected", 1}, {"NewCSVData", 0}, {"WebRequest", 2}, {"Helper", 3}};
        // clang-format on
        for (const auto& event : Events) (script.*event.allow)(allow);
        script.SetEnabled(true);
    }

    /// The calls that all events led to.
    std::vector<std::string> CallAll() {
        engine.calls.clear();
        script.CallInterval();
        script.CallTextUpdate(2, 99);
        script.CallGraphicUpdate(20, 1);
        script.CallStartup();
        script.CallShutdown();
        script.CallMotionDetected(10);
        script.CallNewCSVData();
        script.CallWebRequest("10.0.0.7", "live.jpg?x=1");
        return engine.calls;
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

TEST(Script, LoadsTheFileAndTellsWhatItFound) {
    Host at;
    EXPECT_TRUE(at.script.Ready());
    EXPECT_EQ(at.engine.language + at.engine.root, "vbScriptTessaloom");
    EXPECT_EQ(at.engine.timeoutSeconds, 5);
    EXPECT_EQ(at.engine.code, "x = 1\r\nSub Interval()\r\ny = 2\r\nEnd Sub\r\n");
    EXPECT_EQ(at.script.Status(),
              "4 Lines\r\nScript Loaded Successfully\r\n"
              "Method Found: Interval()\r\nMethod Found: TextUpdate(Canvas,Index)\r\n"
              "Method Found: GraphicUpdate(Canvas,Index)\r\nMethod Found: Startup()\r\n"
              "Method Found: Shutdown()\r\nMethod Found: MotionDetected(VideoFeed)\r\n"
              "Method Found: NewCSVData()\r\nMethod Found: WebRequest(IPAddress,Path)\r\n"
              "Running Script\r\n");
}

TEST(Script, StaysNotReadyWithoutAFileOrALanguage) {
    Host at;
    at.script.SetFileName("missing.txt");  // enabled: loaded at once
    EXPECT_FALSE(at.script.Ready());
    EXPECT_EQ(at.script.Status(), "File Not Found\r\n");
    at.script.SetFileName("script.txt");
    EXPECT_TRUE(at.script.Ready());
    at.script.SetEngine(nullptr);
    at.script.ResetScript();
    EXPECT_FALSE(at.script.Ready());
    EXPECT_THAT(at.CallAll(), IsEmpty());
}

TEST(Script, DeliversWhatIsAllowedFoundAndEnabled) {
    for (const auto& event : Events) {
        Host at(false);
        (at.script.*event.allow)(true);
        EXPECT_THAT(at.CallAll(), ElementsAre(event.call));
    }
    Host at;
    EXPECT_EQ(at.CallAll().size(), 8U);
    // clang-format off
    at.engine.procedures = {{"textupdate", 1}, {"motiondetected", 2}, {"STARTUP", 0}};
    // clang-format on
    at.script.ResetScript();
    EXPECT_THAT(at.CallAll(), ElementsAre("Startup()")) << "the others do not take the arguments";
    at.script.SetEnabled(false);
    EXPECT_THAT(at.CallAll(), IsEmpty());
}

TEST(Script, QuotesTheFaultyLineOfALoadError) {
    Host at;
    for (const int line : {3, 0, -1, 5, 1000000}) {  // the others come of an engine that does not know where
        at.engine.loadFault = ScriptFault{line, 5, "Expected end of statement"};
        at.script.ResetScript();
        EXPECT_FALSE(at.script.Ready());
        EXPECT_EQ(at.script.Status(), "Script Load-Time Error: Expected end of statement\r\nLine " +
                                          std::to_string(line) +
                                          ", Column 5\r\nCode Fragment (without white space):\r\n" +
                                          (line == 3 ? "y = 2" : "") + "\r\nStopping Script\r\n");
    }
}

TEST(Script, StopsAtARunTimeErrorUntilReloaded) {
    Host at;
    at.engine.runFault = ScriptFault{1, 1, "Division by zero"};
    EXPECT_THAT(at.CallAll(), ElementsAre("Interval()"));
    EXPECT_FALSE(at.script.Ready());
    EXPECT_THAT(at.script.Status(), HasSubstr("Running Script\r\nScript Run-Time Error: Division by zero\r\n"
                                              "Line 1, Column 1\r\nCode Fragment (without white space):\r\n"
                                              "x = 1\r\nStopping Script\r\n"));
    at.engine.runFault.reset();
    at.script.ResetScript();
    EXPECT_EQ(at.CallAll().size(), 8U);
}

TEST(Script, RefusesToReloadWhileItRuns) {
    Host at;
    const int resets = at.engine.resets;
    at.engine.during = [&] { at.script.ResetScript(); };
    at.script.CallStartup();
    EXPECT_TRUE(at.script.Ready());
    EXPECT_THAT(at.script.Status(), HasSubstr("Couldn't reset script as it was running.\r\n"
                                              "Let script complete and then press 'Reload Script'.\r\n"));
    at.engine.during = [&] { at.script.UnloadClass(); };
    at.script.CallStartup();
    EXPECT_FALSE(at.script.Ready());
    EXPECT_EQ(at.engine.resets, resets) << "the code that runs is not pulled away";
    at.script.ResetScript();
    EXPECT_TRUE(at.script.Ready());
}

TEST(Script, KeepsTheIntervalThatItsOwnHookForces) {
    Host at;
    const CaptureTime tick(at.time.Now());
    Script script(at.owner, tick, at.files, &at.engine);
    script.SetAllowInterval(true);
    script.SetEnabled(true);
    at.time.Advance(0.003);
    at.engine.during = [&] { script.ForceUpdate(); };
    script.CallInterval();
    script.SetNextTime();
    EXPECT_NEAR(script.NextTime(), at.time.Now(), 1e-10) << "due in the next tick";
    script.SetRate(10);
    script.SetBaseTime(-3);
    EXPECT_EQ(script.BaseTime(), 0);
    script.SetBaseTime(3);
    script.RestartTime();
    EXPECT_NEAR(script.NextTime(), tick.moment + 3 / 86400.0, 1e-9) << "counted from the tick";
}

TEST(StrippedLines, DropsWhiteSpaceAndLineEnds) {
    const struct {
        const char* text;
        std::vector<std::string> lines;
    } rows[] = {
  // clang-format off
        {"", {}}, {"a", {"a"}}, {"a\n", {"a"}}, {"a\r\n\r\nb", {"a", "", "b"}}, {"a\rb\n", {"a", "b"}},
        {"\t \ta b\t", {"a b\t"}}, {"  \t ", {""}}, {"\xEF\xBB\xBFx \n y ", {"x", "y"}},
        {"caf\xE9", {"caf\xC3\xA9"}}, {"caf\xC3\xA9", {"caf\xC3\xA9"}},
  // clang-format on
    };
    for (const auto& row : rows) EXPECT_EQ(StrippedLines(row.text), row.lines) << row.text;
}

}  // namespace
}  // namespace tessaloom::testing
