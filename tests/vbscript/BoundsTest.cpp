#include "support/FakeScriptHost.h"
#include "support/HeapInUse.h"
#include "support/ScriptSink.h"
#include "vbscript/Engine.h"
#include "vbscript/TextSearch.h"

/// What no script may pass: its time, and its memory. Time is counted in looks at the clock, so that nothing here
/// depends on the machine: whatever may take long must look often enough.
namespace tessaloom::vbscript {
namespace {

using namespace testing;

constexpr std::size_t MegaBytes = std::size_t{1} << 20;

/// A second passes between two looks at its clock. It watches what the heap holds, too.
class LookingHost : public FakeScriptHost {
public:
    int looks = 0;
    bool watchesHeap = false;
    std::size_t highestHeap = 0;

    double SteadySeconds() override {
        ++looks;
        // asking the heap takes long where much of it is free
        if (watchesHeap && (MemoryBudget::Used() > used_ + MegaBytes || looks % 500'000 == 0)) {
            used_ = MemoryBudget::Used();
            highestHeap = std::max(highestHeap, HeapInUse());
        }
        return looks;
    }

private:
    std::size_t used_ = 0;
};

TEST(ScriptTime, IsLookedAtWithinEveryStatementThatGrowsWithItsInput) {
    // What the procedure takes besides its one statement: calls, and functions that make its operands.
    constexpr int FewLooks = 40;
    const std::string setup =
        "t = String(2000000, \"a\") : u = String(2000000, ChrW(233)) : v = t & \"b\" : n = 0\n"
        "parts = Split(Replace(Space(2000), \" \", \"x \"), \" \") : ReDim many(1000000)\n"
        "Set r = New RegExp : r.Global = True\n"
        "Class Sum\nPublic Default Function Of : For i = 1 To 100 : Next : Of = 1 : End Function\nEnd Class\n"
        "Class Ends\nPublic Link\nPrivate Sub Class_Terminate : n = n + 1 : End Sub\nEnd Class\n"
        "Class Begins\nPrivate Sub Class_Initialize : For i = 1 To 100 : Next : End Sub\nEnd Class\n"
        "Function Own(x) : For i = 1 To 100 : Next : Own = x : End Function\n"
        "Set s = New Sum : Set f = GetRef(\"Own\") : d = 0\n"
        "c = \"d=d+1 : If d<7 Then Execute c : Execute c\" & vbLf & \"d=d-1\"\n";
    const char* const statements[] = {
        "x = UCase(t)", "x = LCase(u)", "x = StrReverse(t)", "x = String(2000000, \"x\")", "x = Space(2000000)",
        "x = Escape(t)", "x = Unescape(t)", "x = InStr(t, \"b\")", "x = InStr(1, t, \"B\", 1)",
        "x = InStrRev(t, \"b\")", "x = InStrB(t, \"b\")", "x = InStr(t, String(1000, \"a\") & \"b\")",
        "x = InStrRev(t, \"b\" & String(1000, \"a\"))", "x = Replace(t, \"b\", \"c\")",
        "x = Replace(t, \"a\", \"bc\")", "x = Split(t, \"a\")", "x = Split(t, \"b\")", "x = Join(parts, \"-\")",
        "x = Filter(parts, \"y\", False)", "x = StrComp(t, v)", "x = StrComp(u, u & \"x\", 1)",
        "x = (v = t & \"c\")", "x = (v < t & \"c\")", "x = many : x(0) = 1", "For Each x In many : Next",
        "Execute String(100000, \":\")", "Execute \"x = 1\" & Replace(Space(1000), \" \", \"+1\")",
        "Execute c", "ExecuteGlobal c", "x = s + 1", "x = s & \"\"", "x = f(1)", "Set x = New Begins",
        "x = Eval(\"1\" & Replace(Space(1000), \" \", \"+1\"))",
        "For i = 1 To 100 : Set x = New Ends : Next", "r.Pattern = \"b\" : x = r.Test(t)",
        "r.Pattern = \"(a|aa)*c\" : x = r.Test(Left(t, 2000))", "r.Pattern = \"a*c\" : x = r.Test(Left(t, 10000))",
        "r.Pattern = \"(a*)\\1c\" : x = r.Test(Left(t, 5000))", "r.Pattern = \"a\" : x = r.Replace(t, \"b\")",
        "r.Pattern = \"[^b]+\" : x = r.Test(t)", "r.Pattern = \".\" : Set x = r.Execute(t)",
    };
    for (const std::string statement : statements) {
        for (const std::string handler : {"", "On Error Resume Next : "}) {
            SCOPED_TRACE(handler + statement);
            LookingHost host;
            Engine engine(host);
            engine.SetLimits({.callDepth = 100});
            ASSERT_FALSE(engine.AddCode(setup + "Sub Slow\n" + handler + statement + "\nAfter\nEnd Sub\n" +
                                        "Sub After : n = 99 : End Sub\n"));
            engine.SetLimits({.seconds = FewLooks, .callDepth = 100});
            host.looks = 0;
            const auto fault = engine.Run("Slow", {});
            ASSERT_TRUE(fault);
            EXPECT_EQ(fault->number, Engine::TimeIsUp);
            EXPECT_GT(fault->line, 0);
            EXPECT_LT(host.looks, FewLooks + 20) << "once it is over, nothing goes on";
            engine.SetLimits({});
            EXPECT_FALSE(engine.AddCode("If n = 99 Then Err.Raise 1"));
        }
    }
}

/// Keeps what was set; the function Timer takes three seconds, at whose end it rings.
class RingingHost : public FakeScriptHost {
public:
    int looks = 0;
    struct : Alarm {
        std::atomic<bool>* flag = nullptr;
        double seconds = 0;
        void Set(std::atomic<bool>& raised, double after) override { flag = &raised, seconds = after; }
        void Cancel() override { flag = nullptr; }
    } kept;

    double SteadySeconds() override { return ++looks, steady; }
    Alarm& TimeAlarm() override { return kept; }
    double Timer() override {
        steady += 3;
        if (kept.flag) *kept.flag = true;
        return 0;
    }
};

TEST(ScriptTime, IsAskedForWhenTheAlarmRingsAndNotBefore) {
    RingingHost host;
    Engine engine(host);
    engine.SetLimits({.seconds = 5});
    EXPECT_FALSE(engine.AddCode("For i = 1 To 100000 : x = UCase(\"abc\") : Next"));
    EXPECT_LE(host.looks, 2);
    EXPECT_EQ(host.kept.flag, nullptr) << "nothing rings once it is over";
    EXPECT_FALSE(engine.AddCode("x = Timer : y = UCase(\"a\")"));
    EXPECT_EQ(host.kept.seconds, 2) << "rung too early, it is set again for what is left";
    EXPECT_FALSE(engine.AddCode("x = Timer")) << "each run has its own time";
    const auto fault = engine.AddCode("x = Timer\nx = Timer\nx = UCase(\"a\")");
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->number, Engine::TimeIsUp);
    EXPECT_FALSE(engine.AddCode("x = 1"));
}

TEST(ScriptTime, StandsStillForBoxesThatSomebodyMayHaveAnsweredOnly) {
    struct BoxHost : LookingHost {
        double now = 0, boxSeconds = 0;
        double SteadySeconds() override { return now += 0.001; }
        int MsgBox(const std::string&, int, const std::string&) override { return now += boxSeconds, 1; }
    } host;
    Engine engine(host);
    engine.SetLimits({.seconds = 10});
    host.boxSeconds = 60;
    EXPECT_FALSE(engine.AddCode("For i = 1 To 20 : MsgBox i : Next"));
    host.boxSeconds = TimeLimit::Pause::ShortestAnswer / 2;
    host.now = 0;
    EXPECT_EQ(engine.AddCode("Do : MsgBox 1 : Loop")->number, Engine::TimeIsUp);
    EXPECT_LT(host.now, 11) << "boxes that answer themselves at once give no time";
}

TEST(ScriptMemory, IsChargedBeforeItIsTaken) {
    constexpr std::size_t Limit = 32 * MegaBytes, Slack = 32 * MegaBytes;
    FakeScriptHost other;
    ASSERT_FALSE(Engine(other).AddCode("x = vbCrLf"));  // makes what all engines share
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA "/hostile_scripts")) {
        SCOPED_TRACE(entry.path());
        std::ifstream file(entry.path());
        constexpr std::string_view Expect = "' expect: ";
        std::string first, script;
        ASSERT_TRUE(std::getline(file, first) && std::getline(file, script, '\0') && first.starts_with(Expect));
        const std::size_t usedBefore = MemoryBudget::Used();
        {
            LookingHost host;
            Engine engine(host);
            engine.SetLimits({.seconds = 1e9, .callDepth = 5000, .bytes = Limit});
            const std::size_t before = HeapInUse();
            host.watchesHeap = true;
            const auto fault = engine.AddCode(script);
            EXPECT_EQ(fault ? fault->number : 0, std::stoi(first.substr(Expect.size())));
            EXPECT_LE(host.highestHeap, before + Limit + Limit / 4 + Slack);
            EXPECT_TRUE(engine.Reset());
            EXPECT_FALSE(engine.AddCode("s = String(1000000, \"x\")")) << "all is there again";
        }
        EXPECT_EQ(MemoryBudget::Used(), usedBefore);
    }
}

TEST(ScriptTime, IsUpWithinClassTerminateToo) {
    const std::string endless = "Class C\nPrivate Sub Class_Terminate : Do : Loop : End Sub\nEnd Class\nSet x = New C\n";
    LookingHost host;
    Engine engine(host);
    engine.SetLimits({.seconds = 1000});
    const auto fault = engine.AddCode(endless + "Set x = Nothing\ny = 1\n");
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->number, Engine::TimeIsUp);
    EXPECT_FALSE(engine.AddCode("Set x = New C"));
    EXPECT_TRUE(engine.Reset()) << "late, but whole";
    EXPECT_FALSE(engine.AddCode(endless)) << "and its end comes with the engine's";
}

TEST(ScriptMemory, ThatEndsWhileCompilingLeavesProceduresThatRefuseToRun) {
    constexpr std::size_t Limit = 4 * MegaBytes;
    std::string code;
    for (const char* const name : {"A", "B", "C", "D", "E", "F", "G", "H"})
        code += std::string("Class K") + name + "\nPublic Sub M : x = x + 1 : End Sub\nEnd Class\nSub S" + name +
                "(a)\nx = a + 5 & \"text\" & a\nx = x & 1\nEnd Sub\n";
    int failed = 0;
    for (std::size_t room = 18'000; room < 40'000; room += 160) {
        SCOPED_TRACE(room);
        LookingHost host;
        Engine engine(host);
        engine.SetLimits({.bytes = Limit});
        ASSERT_FALSE(engine.AddCode("f = \"\""));
        const std::size_t units = (Limit - MemoryBudget::Used() - room) / sizeof(char16_t);
        ASSERT_FALSE(engine.AddCode("f = Space(" + std::to_string(units) + ")"));
        const auto fault = engine.AddCode(code);
        EXPECT_EQ(fault ? fault->number : 7, 7);
        failed += fault.has_value();
        for (const char* const name : {"SA", "SD", "SH"}) {
            Value one = Value::OfLong(1);
            const auto called = engine.Run(name, {&one, 1});
            const int number = called ? called->number : 0;
            EXPECT_TRUE(number == 0 || number == 7 || number == 35 || number == 51) << number;
        }
        static_cast<void>(engine.AddCode("Set k = New KA : k.M"));
        static_cast<void>(engine.AddCode("f = \"\" : Set k = New KH : k.M"));
    }
    EXPECT_GT(failed, 20) << "else the room was not scarce";
}

TEST(ScriptMemory, CanBeFreedByAScriptThatIsShortOfIt) {
    LookingHost host;
    Engine engine(host);
    engine.SetLimits({.bytes = 32 * MegaBytes});
    EXPECT_FALSE(engine.AddCode("Dim a() : ReDim a(1500000) : a(3) = 7 : a(9) = 8 : ReDim Preserve a(10)\n"
                                "If UBound(a) <> 10 Or a(3) <> 7 Or a(9) <> 8 Then Err.Raise 1\n"
                                "ReDim a(900000) : a(5) = 1 : ReDim Preserve a(800000) : ReDim Preserve a(900001)\n"
                                "If a(5) <> 1 Then Err.Raise 1"));
}

TEST(ScriptTexts, GrowInPlaceInExpressionsOfManyParts) {
    constexpr int Parts = 20000;
    for (const std::string sign : {" & ", " + "}) {
        std::string sum = "\"part\"";
        for (int i = 1; i < Parts; ++i) sum += sign + "\"part\"";
        LookingHost host;
        Engine engine(host);
        engine.SetLimits({.seconds = 1e9});
        ASSERT_FALSE(engine.AddCode("Function Sum : Sum = " + sum + " : End Function"));
        host.looks = 0;
        Value result;
        ASSERT_FALSE(engine.Run("Sum", {}, &result));
        EXPECT_EQ(result.Text().size(), 4u * Parts);
        EXPECT_LT(host.looks, Parts / 10) << "a look goes with each new text";
    }
}

/// A unit that counts how often it was compared.
struct CountedUnit {
    char16_t unit;

    friend bool operator==(CountedUnit a, CountedUnit b) { return ++comparisons, a.unit == b.unit; }
    static inline std::size_t comparisons = 0;
};

TEST(TextSearch, ComparesAFewTimesForEachUnit) {
    const auto counted = [](std::u16string_view text) {
        std::vector<CountedUnit> units;
        for (const char16_t unit : text) units.push_back({unit});
        return units;
    };
    const std::u16string as(100'000, u'a'), half(50'000, u'a');
    std::u16string fibonacci = u"a", shorter = u"b";
    while (fibonacci.size() < 100'000) fibonacci += std::exchange(shorter, fibonacci);
    std::u16string steps;
    for (std::size_t i = 1; steps.size() < 100'000; ++i) steps += std::u16string(i % 700, u'a') + u"b";
    constexpr std::size_t None = std::u16string::npos;
    const struct {
        std::u16string text, wanted;
        std::size_t place;
    } rows[] = {
        {as,        half + u"b",                         None  },
        {as,        u"b" + half,                         None  },
        {as,        half + u"b" + half,                  None  },
        {as + u"b", half + u"b",                         50'000},
        {fibonacci, fibonacci.substr(0, 30'000) + u"c",  None  },
        {fibonacci, u"c" + fibonacci.substr(0, 30'000),  None  },
        {steps,     std::u16string(699, u'a') + u"c",    None  },
    };
    for (const auto& row : rows) {
        const auto text = counted(row.text), wanted = counted(row.wanted);
        using View = TextSearch<CountedUnit>::View;
        TextSearch<CountedUnit> first(View(wanted.data(), wanted.size())), last(View(wanted.data(), wanted.size()));
        CountedUnit::comparisons = 0;
        EXPECT_EQ(first.First(View(text.data(), text.size()), 0), row.place);
        EXPECT_EQ(last.Last(View(text.data(), text.size())), row.place);
        EXPECT_LT(CountedUnit::comparisons, 20 * (text.size() + wanted.size()));
    }
}

TEST(TextSearch, FindsWhatThePlainWayFinds) {
    std::mt19937 random(7);
    const auto any = [&](std::size_t length, unsigned letters) {
        std::u16string text;
        while (text.size() < length) text += static_cast<char16_t>(u'a' + random() % letters);
        return text;
    };
    for (int i = 0; i < 3000; ++i) {
        // long repeated parts lead to the second way of searching, too
        std::u16string text;
        const std::u16string part = any(1 + random() % 40, 1 + i % 3);
        while (text.size() < 3000) text += random() % 50 == 0 ? any(random() % 9, 3) : part;
        const std::u16string wanted = i % 7 == 0 ? any(random() % 5, 2) : text.substr(random() % 2000, random() % 900) + any(random() % 3, 3);
        const std::size_t from = random() % 3000;
        TextSearch<char16_t> first(wanted), last(wanted);
        ASSERT_EQ(first.First(text, from), text.find(wanted, from));
        ASSERT_EQ(first.First(text, 0), text.find(wanted));
        ASSERT_EQ(last.Last(text), text.rfind(wanted));
    }
}

}  // namespace
}  // namespace tessaloom::vbscript
