#include <sstream>

#include "platform/curl/CurlTransfers.h"
#include "platform/posix/PosixEnvironment.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixFolders.h"
#include "script/library/ClassLibrary.h"
#include "support/FakeScriptHost.h"
#include "support/LocalHttpServer.h"
#include "support/TemporaryFolder.h"
#include "vbscript/Engine.h"
#include "vbscript/MemberTable.h"

namespace tessaloom::library {
namespace {

using namespace testing;

namespace fs = std::filesystem;
using Connection = LocalHttpServer::Connection;

/// What the scripts of this test find beside the classes.
class Outside final : public vbscript::TableObject<Outside> {
public:
    static constexpr std::u16string_view Name = u"Outside";
    static std::span<const vbscript::Member<Outside>> Members();

    std::vector<std::string> said;
    std::string address, request;
};

std::span<const vbscript::Member<Outside>> Outside::Members() {
    using vbscript::Arguments, vbscript::Value;
    static constexpr std::array<vbscript::Member<Outside>, 3> All = {
        {
         {u"Say", 0, 20,
             [](Outside& self, const Arguments& arguments) {
                 std::string line;
                 for (std::size_t i = 0; i < arguments.Count(); ++i)
                     line.append(i == 0 ? "" : " ").append(arguments.Text(i).ToUtf8());
                 self.said.push_back(line);
                 return Value();
             }},
         {u"Address", 0, 0, [](Outside& self, const Arguments&) { return Value::OfUtf8(self.address); }},
         {u"Requested", 1, 1,
             [](Outside& self, const Arguments& arguments) {
                 return Value::OfBoolean(self.request.find(arguments.Text(0).ToUtf8()) != std::string::npos);
             }},
         }
    };
    return All;
}

/// A host whose steady clock runs.
class RunningHost final : public FakeScriptHost {
public:
    double SteadySeconds() override {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
};

/// Runs a script in an empty folder. What it says must be what its comments expect, line for line.
class ScriptLibrary : public ::testing::Test {
protected:
    ScriptLibrary() {
        fs::current_path(folder_.Path());
        host_.now = folders_.Details(".")->modified;
        host_.create = [this](std::string_view programId) {
            return CreateObject({files_, folders_, environment_, transfers_}, programId);
        };
    }
    ~ScriptLibrary() override { fs::current_path(before_); }

    std::optional<vbscript::Fault> Run(const std::string& name, double seconds = 0) {
        const std::string code = files_.ReadFile(TEST_DATA "/library/" + name).value();
        static_cast<void>(vbscript::Engine(host_).AddCode("x = 1"));  // makes what all engines share
        const std::size_t used = vbscript::MemoryBudget::Used();
        std::optional<vbscript::Fault> fault;
        {
            vbscript::Engine engine(host_);
            engine.SetLimits({.seconds = seconds});
            engine.AddObject("Outside", outside_, true);
            fault = engine.AddCode(code);
        }
        EXPECT_EQ(outside_->said, Expected(code));
        EXPECT_EQ(vbscript::MemoryBudget::Used(), used) << "circles end, too";
        return fault;
    }

    void RunWhole(const std::string& name) {
        const auto fault = Run(name);
        if (fault) ADD_FAILURE() << name << ":" << fault->line << ": " << fault->description;
    }

    static std::vector<std::string> Expected(const std::string& code) {
        constexpr std::string_view Mark = "' expect: ";
        std::vector<std::string> lines;
        std::istringstream text(code);
        for (std::string line; std::getline(text, line);)
            if (const auto at = line.find(Mark); at != line.npos)
                lines.push_back(line.substr(at + Mark.size()));
        return lines;
    }

    vbscript::Ref<Outside> outside_ = vbscript::Make<Outside>();
    PosixFileSystem files_;
    RunningHost host_;

private:
    const fs::path before_ = fs::current_path();
    TemporaryFolder folder_;
    PosixFolders folders_;
    PosixEnvironment environment_;
    CurlTransfers transfers_;
};

TEST_F(ScriptLibrary, Dictionary) { RunWhole("dictionary.vbs"); }
TEST_F(ScriptLibrary, Files) { RunWhole("files.vbs"); }
TEST_F(ScriptLibrary, Streams) { RunWhole("streams.vbs"); }
TEST_F(ScriptLibrary, Shell) { RunWhole("shell.vbs"); }

TEST_F(ScriptLibrary, LooksAtTheClockWithinAllThatGrows) {
    struct LookingHost final : FakeScriptHost {
        int looks = 0;
        double SteadySeconds() override { return ++looks; }
    } host;
    host.create = host_.create;
    constexpr int FewLooks = 40;
    const std::string setup =
        "t = String(2000000, \"a\") : u = String(2000000, ChrW(233))\n"
        "Set fso = CreateObject(\"Scripting.FileSystemObject\") : Set d = "
        "CreateObject(\"Scripting.Dictionary\")\n"
        "Set s = CreateObject(\"ADODB.Stream\") : s.Open : s.Charset = \"utf-8\"\n"
        "Set file = fso.CreateTextFile(\"large.txt\") : For i = 1 To 10 : file.Write u : Next : file.Close\n"
        "fso.CreateFolder \"many\" : For i = 1 To 100 : fso.CreateTextFile(\"many/\" & i).Close : Next\n"
        "Set w = CreateObject(\"WScript.Shell\") : For i = 1 To 1000 : d(i) = i : Next\n";
    const char* const statements[] = {
        "s.WriteText u : s.Position = 0 : x = s.ReadText",
        "s.Charset = \"unicode\" : s.WriteText t",
        "x = fso.OpenTextFile(\"large.txt\").ReadAll",
        "fso.CreateTextFile(\"x\").Write t",
        "fso.CopyFile \"large.txt\", \"copy.txt\"",
        "fso.CopyFolder \"many\", \"more\"",
        "fso.DeleteFolder \"many\"",
        "x = d.Keys",
        "d.RemoveAll : d.CompareMode = 1 : d(u) = 1",
        "x = w.ExpandEnvironmentStrings(String(10000, \"%\"))",
    };
    for (const std::string statement : statements) {
        SCOPED_TRACE(statement);
        vbscript::Engine engine(host);
        ASSERT_FALSE(
            engine.AddCode(setup + "Sub Slow\nOn Error Resume Next : " + statement + "\nx = 1\nEnd Sub\n"));
        engine.SetLimits({.seconds = FewLooks});
        host.looks = 0;
        const auto fault = engine.Run("Slow", {});
        ASSERT_TRUE(fault);
        EXPECT_EQ(fault->number, vbscript::Engine::TimeIsUp);
        EXPECT_FALSE(files_.FileExists("copy.txt")) << "half a copy has no name";
        engine.SetLimits({});
        EXPECT_FALSE(
            engine.AddCode("If fso.FolderExists(\"more\") Then fso.DeleteFolder \"more\"\n"
                           "fso.DeleteFolder \"many\""));
    }
}

class ScriptRequests : public ScriptLibrary {
protected:
    ScriptRequests() {
        server_.On("/page", [this](Connection& to) {
            outside_->request = to.Request();
            to.Send(LocalHttpServer::Whole(
                "200 Fine", "\xE4\x80",
                "Content-Type: text/plain; charset=\"windows-1252\"\r\nX-Twice: a\r\nX-Twice: b\r\n"));
        });
        server_.On("/slow", [](Connection& to) { to.GoneWithin(-1); });
        outside_->address = server_.Address("");
    }

    LocalHttpServer server_;
};

TEST_F(ScriptRequests, GetAndPost) { RunWhole("requests.vbs"); }

TEST_F(ScriptRequests, EndWithTheScriptsTime) {
    const auto fault = Run("endless.vbs", 0.2);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->number, vbscript::Engine::TimeIsUp);
}

}  // namespace
}  // namespace tessaloom::library
