#pragma once

#include "core/SetupValues.h"
#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/posix/PosixEnvironment.h"
#include "platform/posix/PosixFolders.h"
#include "script/host/Script.h"
#include "script/objects/ScriptControl.h"
#include "support/EagerAlarm.h"
#include "support/TestPlatform.h"
#include "text/Text.h"

namespace tessaloom::testing {

/// The whole engine on fakes, with the real script language: portfolio a.por with canvas a.can in slot 3,
/// which has text layer 7 and graphic layer 9; feed 4 is called Garden.
class ScriptedProgram : public ::testing::Test {
protected:
    ScriptedProgram() {
        it_.files["a.can"].bytes =
            "[Text007]\r\nEnabled=True\r\nText=A\r\nScripted=True\r\n"
            "[Graphic009]\r\nEnabled=True\r\n";
    }
    ~ScriptedProgram() override {
        modMain::modMain_Shutdown();
        tessaloom::Setup() = {};
    }

    /// Opens the portfolio; its script has these lines, and every event is allowed.
    void Start(const std::string& script = "") {
        std::string allowed;
        for (const char* event : {"Interval", "TextUpdate", "GraphicUpdate", "Startup", "Shutdown",
                                  "MotionDetected", "NewCSVData", "WebRequest"})
            allowed += std::string("Allow") + event + "=True\r\n";
        it_.files["script.txt"].bytes = script;
        it_.files["a.por"].bytes =
            "[Canvas03]\r\nFileName=a.can\r\n[VideoFeeds]\r\nFeed3Name=Garden\r\n"
            "[Scripting]\r\nEnabled=True\r\n" +
            allowed;
        ASSERT_TRUE(modMain::Main(it_.platform, {.portfolio = "a.por", .views = {}, .scripts = &control_}));
    }

    Portfolio& Open() { return *modMain::OpenPortfolio(); }
    Script& TheScript() { return Open().Script(); }
    Text& TheText() { return *Open().Canvas(3).Text(7); }
    void Tick(double seconds = 1) {
        it_.time.Advance(seconds);
        it_.timer.Tick();
    }

    /// Runs `code` beside the portfolio's script: "" or why it failed.
    std::string Run(const std::string& code) {
        const auto fault = control_.AddCode(code);
        return fault ? fault->description : "";
    }

    /// What an expression is as text, or why it failed.
    std::string Value(const std::string& expression) {
        const std::string fault = Run("LoadLastFileName = CStr(" + expression + ")");
        return fault.empty() ? tessaloom::Setup().lastPortfolio : fault;
    }

    TestPlatform it_;
    double steadySeconds_ = 0, secondsPerLook_ = 0;
    PosixFolders folders_;
    PosixEnvironment environment_;
    FakeUrlTransfers scriptTransfers_;
    EagerAlarm alarm_;
    ScriptControl control_{
        it_.platform, {it_.files,                                             folders_, environment_, scriptTransfers_},
         alarm_, [this] {
            return steadySeconds_ += secondsPerLook_;
                       }
    };
};

}  // namespace tessaloom::testing
