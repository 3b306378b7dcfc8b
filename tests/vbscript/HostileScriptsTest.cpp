#include "support/FakeScriptHost.h"
#include "support/ScriptSink.h"
#include "vbscript/Engine.h"

namespace tessaloom::vbscript {
namespace {

using namespace testing;

/// Its clock moves whenever it is looked at, so that every loop comes to an end.
class TickingHost : public FakeScriptHost {
public:
    double SteadySeconds() override { return steady += 4e-6; }
};

struct Bench {
    TickingHost host;
    Engine engine{host};
    Ref<ScriptSink> sink = Make<ScriptSink>();

    Bench() {
        engine.SetLimits({.seconds = 5, .callDepth = 2000, .bytes = std::size_t{64} << 20});
        engine.AddObject("WScript", sink);
    }
    int Number(const std::string& code) {
        const auto fault = engine.AddCode(code);
        return fault ? fault->number : 0;
    }
};

std::string Times(int count, std::string_view text) {
    std::string all;
    while (count-- > 0) all += text;
    return all;
}

TEST(HostileScripts, EndWithAnErrorOrTheRightAnswer) {
    const std::string node =
        "Class N\nPublic Link\nPrivate Sub Class_Terminate : Err.Raise 5 : End Sub\nEnd Class\n";
    const std::string endless = "t = String(50000, \"x\") : For i = 1 To 2000 : ExecuteGlobal \"";
    const struct {
        std::string code;
        int number;
    } cases[] = {
        {"x = " + Times(10000,                                                                      "(") + "1" + Times(10000,                                                                   ")"),                 1001},
        {Times(10000,                                                                                         "If True Then\n") + Times(10000,                                                                                                                                                                         "End If\n"),                                                                      1001},
        {"x = " + Times(10000,                                                                                     "Not ") + "1",                                                                                                                                                                               1001                                                                                                          },
        {"x = a" + Times(10000,                                                                                     ".b"), 1001},
        {"x = 1" + Times(50000,                                                                                     "+1") + ": If x <> 50001 Then Err.Raise 1",                                                                                                                                                                               0                                                                                                                                                                                                                                                                                       },
        {"Do : Loop",                                                                                        Engine::TimeIsUp   },
        {"On Error Resume Next : Do : x = 1 / 0 : Loop",                                                                                         Engine::TimeIsUp                                                                                                                                  },
        {"For i = 1 To 2 Step 0 : Next",                                                            Engine::TimeIsUp                                                                          },
        {"Sub S : S : End Sub : S",                                                                                       28                                                                                          },
        {"Sub S : Execute \"S\" : End Sub : S",                                                                                         28                                                                                                                                                    },
        {"s = \"Execute s\" : Execute s", 28},
        {"Class C\nPrivate Sub Class_Initialize\nSet x = New C\nEnd Sub\nEnd Class\nSet x = New C",                                                                                         28                                                                                                                                                                                  },
        {"Class C\nSub Class_Terminate\nSet k = Me\nSet x = New C\nEnd Sub\nEnd Class\nSet x = New C\nx = 0",
         0                                                                                                                                                    },
        {"s = \"x\" : Do : s = s & s : Loop",                                       7                                       },
        {"Dim a() : ReDim a(2000000000)",                                                                                      7                                                                                                                                                                        },
        {"For i = 1 To 100000 : a = Array(a) : Next : a = 0",                                                                                         0                                                                                                                            },
        {node +
             "For i = 1 To 50000\nSet n1 = New N\nSet n1.Link = h\nSet h = n1\nNext\nSet n1 = Nothing\nh = 0",        424                                                                   },
        {node + "Set a = New N : Set a.Link = a : Set a = Nothing",                                                                                         0                                                                                                                                                                                  },
        {"a = Array(1, 2, 3) : For Each x In a : Erase a : Next",                                                                                         10                                                                                                    },
        {"a = Array(1, 2, 3) : For Each x In a : a = x : Next : If a <> 3 Then Err.Raise 1",                              0                                 },
        {"Sub S(e) : Erase q : q = 5 : e = 7 : End Sub : q = Array(1) : S q(0) : If q <> 5 Then Err.Raise 1",
         0                                                                                        },
        {"Sub S(e) : ReDim e(9) : e = 1 : End Sub : q = Array(1) : S q : If q <> 1 Then Err.Raise 1",                                                                                         0                                                                                   },
        {"a = Array(Array(1)) : Function F : a = 0 : F = 0 : End Function : a(F)(F) = 5",            13           },
        {"Sub S(p) : Execute \"Dim n : n = p : Execute \"\"p = n + 1\"\"\" : End Sub\n"
         "q = 1 : S q : If q <> 2 Then Err.Raise 1",
         0},
        {"a = Array(1) : a(0) = a : If a(0)(0) <> 1 Then Err.Raise 1",                                                                                      0                                                                         },
        {"Class C\nSub Class_Terminate : a = 5 : End Sub\nEnd Class\nReDim a(2) : Set a(2) = New C\n"
         "ReDim Preserve a(1) : If a <> 5 Then Err.Raise 1",                                                                                          0                                                                                                                                                                                              },
        {"Class C\nSub Class_Terminate\nDim x : Set x = New C\nEnd Sub\nEnd Class\nSet o = New C : o = 0",                                                                        Engine::TimeIsUp                                                                                                                                                         },
        {"ExecuteGlobal \"Function S : S = 1 : End Function\" : Function S : S = 2 : End Function\nx = S",                                                                                          0                                                                                                                                                                                    },
        {"Function Len(x) : Len = 99 : End Function : If Len(1) <> 99 Then Err.Raise 1",                                                                                          0                                                                                                                                                                            },
        {endless + "Sub S : y = \"\"\" & t & \"\"\" : End Sub\" : Next", 0},
        {endless + "Class C : Sub S : y = \"\"\" & t & \"\"\" : End Sub : End Class\" : Next", 0},
        {"Function F : F = 1 : End Function : Set r = GetRef(\"F\")\n"
         "ExecuteGlobal \"Function F : F = 2 : End Function\" : If r() <> 1 Or F <> 2 Then Err.Raise 1", 0},
        {std::string("x = \"\0\xFF\xED\xA0\x80\"\x01", 12), 1032},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.code.substr(0, 200));
        Bench bench;
        EXPECT_EQ(bench.Number(one.code), one.number);
        EXPECT_EQ(bench.Number("y = 1"), 0);
        EXPECT_TRUE(bench.engine.Reset());
    }
}

TEST(HostileScripts, NoChangedProgramHarmsTheEngine) {
    std::mt19937 random(20061);
    const auto any = [&](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    Bench bench;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA "/vbscript")) {
        if (entry.path().extension() != ".vbs") continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string program{std::istreambuf_iterator<char>(file), {}};
        for (int i = 0; i < 20; ++i) {
            std::string changed = program;
            for (int k = 0; k < 3; ++k) {
                const std::size_t from = any(changed.size()), count = any(12);
                const std::string piece = changed.substr(any(changed.size()), any(40));
                changed.replace(from, count, piece);
            }
            bench.host.steady = 0;
            bench.engine.AddObject("WScript", bench.sink);
            static_cast<void>(bench.engine.AddCode(changed));
            bench.sink->text.clear();
            ASSERT_TRUE(bench.engine.Reset());
        }
    }
    EXPECT_EQ(bench.Number("If 1 + 1 <> 2 Then Err.Raise 1"), 0);
}

TEST(Engine, RunsProceduresAndHandsBackWhatTheyAssign) {
    Bench bench;
    ASSERT_EQ(bench.Number("Dim n\nFunction Twice(x)\nTwice = x * 2\nx = 7\nn = n + 1\nEnd Function\n"
                           "Private Sub Other : Err.Raise 9, , \"gone\" : End Sub"),
              0);
    const std::vector<Procedure> procedures = bench.engine.Procedures();
    ASSERT_EQ(procedures.size(), 2u);
    EXPECT_EQ(procedures[0].name, "Twice");
    EXPECT_EQ(procedures[0].argumentCount, 1);
    Value argument = Value::OfLong(21), result;
    EXPECT_FALSE(bench.engine.Run("TWICE", {&argument, 1}, &result));
    EXPECT_EQ(result.Whole(), 42);
    EXPECT_EQ(argument.Whole(), 7);
    EXPECT_EQ(bench.engine.Run("Twice", {})->number, 450);
    EXPECT_EQ(bench.engine.Run("Missing", {})->number, 35);
    const auto fault = bench.engine.Run("other", {});
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->description, "gone");
    EXPECT_EQ(fault->line, 7);
    EXPECT_EQ(bench.engine.AddCode("Do\n  Loop")->line, 2);
    EXPECT_EQ(bench.Number("WScript.Echo Twice(5), n"), 0);  // code that comes later sees what is there
    EXPECT_EQ(bench.sink->text, "10 2\n");
}

}  // namespace
}  // namespace tessaloom::vbscript
