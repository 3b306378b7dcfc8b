// The script language beside Lua 5.4 and Python, in one run: the same program in each, best of several rounds
// that take turns. Objects of the system are measured beside a table of Lua and an attribute of a plain
// Python object.

#include <lua.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <limits>
#include <string>

#include "benchmarks/Effort.h"
#include "core/main/modMain.h"
#include "platform/posix/PosixEnvironment.h"
#include "platform/posix/PosixFolders.h"
#include "platform/posix/ThreadAlarm.h"
#include "script/objects/ScriptControl.h"
#include "support/TestPlatform.h"

namespace tessaloom {
namespace {

constexpr double None = std::numeric_limits<double>::quiet_NaN();

/// A program of its own in each language; the procedure `Bench` is what is timed.
struct Comparison {
    const char *name, *script, *lua, *python;
};

constexpr Comparison Comparisons[] = {
    {"10,000,000 x call and add",
     R"(Function Same(x)
Same = x
End Function
Sub Bench()
Dim i, sum
sum = 0
For i = 1 To 10000000
sum = sum + Same(i)
Next
End Sub)", R"(local function same(x) return x end
function Bench()
  local sum = 0
  for i = 1, 10000000 do sum = sum + same(i) end
end)",
     R"(
def same(x):
    return x
def Bench():
    total = 0
    for i in range(1, 10000001):
        total = total + same(i)
)"},
    {"1,000,000 appends to a text",
     R"(Sub Bench()
Dim i, s
For i = 1 To 1000000
s = s & "x,"
Next
End Sub)",      R"(function Bench()
  local parts = {}
  for i = 1, 1000000 do parts[#parts + 1] = "x," end
  local s = table.concat(parts)
end)",
     R"(
def Bench():
    s = ""
    for i in range(1000000):
        s = s + "x,"
)"},
    {"Sorting 100,000 numbers",
     R"(Dim a(99999)
Sub Sort(low, high)
Dim i, j, pivot, x
i = low : j = high : pivot = a((low + high) \ 2)
Do While i <= j
Do While a(i) < pivot : i = i + 1 : Loop
Do While a(j) > pivot : j = j - 1 : Loop
If i <= j Then
x = a(i) : a(i) = a(j) : a(j) = x
i = i + 1 : j = j - 1
End If
Loop
If low < j Then Sort low, j
If i < high Then Sort i, high
End Sub
Sub Bench()
Dim i, seed
seed = 1
For i = 0 To 99999
seed = (seed * 3877 + 29573) Mod 139968
a(i) = seed
Next
Sort 0, 99999
End Sub)",     R"(local a = {}
local function sort(low, high)
  local i, j, pivot = low, high, a[(low + high) // 2]
  while i <= j do
    while a[i] < pivot do i = i + 1 end
    while a[j] > pivot do j = j - 1 end
    if i <= j then
      a[i], a[j] = a[j], a[i]
      i = i + 1; j = j - 1
    end
  end
  if low < j then sort(low, j) end
  if i < high then sort(i, high) end
end
function Bench()
  local seed = 1
  for i = 0, 99999 do
    seed = (seed * 3877 + 29573) % 139968
    a[i] = seed
  end
  sort(0, 99999)
end)",
     R"(
a = [0] * 100000
def sort(low, high):
    i, j, pivot = low, high, a[(low + high) // 2]
    while i <= j:
        while a[i] < pivot:
            i = i + 1
        while a[j] > pivot:
            j = j - 1
        if i <= j:
            a[i], a[j] = a[j], a[i]
            i = i + 1
            j = j - 1
    if low < j:
        sort(low, j)
    if i < high:
        sort(i, high)
def Bench():
    seed = 1
    for i in range(100000):
        seed = (seed * 3877 + 29573) % 139968
        a[i] = seed
    sort(0, 99999)
)"},
    {"1,000,000 look-ups in a Dictionary",
     R"(Dim d, keys(999)
Set d = CreateObject("Scripting.Dictionary")
For i = 0 To 999 : keys(i) = "key" & i : d.Add keys(i), i : Next
Sub Bench()
Dim i, j, sum
For i = 1 To 1000
For j = 0 To 999
sum = sum + d.Item(keys(j))
Next
Next
End Sub)", R"(local d, keys = {}, {}
for i = 0, 999 do keys[i] = "key" .. i; d[keys[i]] = i end
function Bench()
  local sum = 0
  for i = 1, 1000 do
    for j = 0, 999 do sum = sum + d[keys[j]] end
  end
end)",
     R"(
keys = ["key" + str(i) for i in range(1000)]
d = {key: i for i, key in enumerate(keys)}
def Bench():
    total = 0
    for i in range(1000):
        for j in range(1000):
            total = total + d[keys[j]]
)"},
    {"200,000 reads and writes of a property",
     R"(Dim layer
Set layer = Portfolio.Canvas(1).Text(1)
Sub Bench()
Dim i
For i = 1 To 200000
layer.x = layer.Y + 1
Next
End Sub)",        R"(local layer = {x = 0, Y = 0}
function Bench()
  for i = 1, 200000 do layer.x = layer.Y + 1 end
end)",
     R"(
class Layer:
    pass
layer = Layer()
layer.x = layer.Y = 0
def Bench():
    for i in range(200000):
        layer.x = layer.Y + 1
)"},
    {"200,000 reads along the tree",
     R"(Sub Bench()
Dim i, x
For i = 1 To 200000
x = Portfolio.Canvas(1).Text(1).x
Next
End Sub)",      R"(local portfolio = {canvas = {{text = {{x = 0}}}}}
function Bench()
  for i = 1, 200000 do local x = portfolio.canvas[1].text[1].x end
end)",
     R"(
class Thing:
    pass
portfolio = Thing()
portfolio.canvas = [None, Thing()]
portfolio.canvas[1].text = [None, Thing()]
portfolio.canvas[1].text[1].x = 0
def Bench():
    for i in range(200000):
        x = portfolio.canvas[1].text[1].x
)"},
};

/// Seconds that `work` takes.
double Timed(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class Lua {
public:
    explicit Lua(const char* program) {
        luaL_openlibs(state_);
        if (luaL_dostring(state_, program) != LUA_OK) std::fprintf(stderr, "%s\n", lua_tostring(state_, -1));
    }
    ~Lua() { lua_close(state_); }
    Lua(const Lua&) = delete;
    Lua& operator=(const Lua&) = delete;

    void Bench() {
        lua_getglobal(state_, "Bench");
        if (lua_pcall(state_, 0, 0, 0) != LUA_OK) std::fprintf(stderr, "%s\n", lua_tostring(state_, -1));
    }

private:
    lua_State* state_ = luaL_newstate();
};

/// Python is a process of its own, which times itself.
double PythonSeconds(const char* program) {
    const std::string file = "bench-vbscript.py";
    std::ofstream(file) << program << "import time\nstart = time.perf_counter()\nBench()\n"
                        << "print(time.perf_counter() - start)\n";
    std::FILE* const pipe = popen(("/usr/bin/python3 " + file).c_str(), "r");
    double seconds = None;
    if (pipe && std::fscanf(pipe, "%lf", &seconds) != 1) seconds = None;
    if (pipe) pclose(pipe);
    std::remove(file.c_str());
    return seconds;
}

/// The engine with an open portfolio, whose canvas 1 has text layer 1.
class Program {
public:
    Program() {
        it_.files["a.can"].bytes = "[Text001]\r\nEnabled=True\r\n";
        it_.files["a.por"].bytes = "[Canvas01]\r\nFileName=a.can\r\n";
        modMain::Main(it_.platform, {.portfolio = "a.por", .views = {}, .scripts = &control_});
    }
    ~Program() { modMain::modMain_Shutdown(); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Load(const std::string& code) {
        control_.Reset("vbScript", 0);
        control_.AddRootObject("Tessaloom");
        Check(control_.AddCode(code));
    }
    void Call(const char* name) { Check(control_.Run(name, {})); }

private:
    static void Check(const std::optional<ScriptFault>& fault) {
        if (fault)
            std::fprintf(stderr, "(%d, %d) %s\n", fault->line, fault->column, fault->description.c_str());
    }

    testing::TestPlatform it_;
    PosixFolders folders_;
    PosixEnvironment environment_;
    ThreadAlarm alarm_;
    ScriptControl control_{
        it_.platform, {it_.files, folders_, environment_, it_.urlTransfers},
         alarm_
    };
};

void Compare(Program& program, const Comparison& row) {
    Lua lua(row.lua);
    double ours = 1e9, luas = 1e9, pythons = 1e9;
    for (int round = 0; round < Effort(5, 1); ++round) {
        program.Load(row.script);
        ours = std::min(ours, Timed([&] { program.Call("Bench"); }));
        luas = std::min(luas, Timed([&] { lua.Bench(); }));
        pythons = std::min(pythons, PythonSeconds(row.python));
    }
    std::printf("%-40s %9.1f ms %9.1f ms %9.1f ms %8.2f x %8.2f x\n", row.name, ours * 1e3, luas * 1e3,
                pythons * 1e3, ours / luas, ours / pythons);
}

/// A script as people write them: procedures of ten lines with branches, loops, texts and objects.
std::string LongScript(int lines) {
    std::string code;
    for (int i = 0; i < lines / 10; ++i) {
        const std::string number = std::to_string(i);
        code += "Function Work" + number + "(ByVal canvas, index)\n" +
                "Dim layer, text, i ' what it works with\n" +
                "Set layer = Portfolio.Canvas(canvas).Text(index)\n" + "If layer.Enabled And index > " +
                number + " Then\n" + "For i = 1 To Len(layer.Text) Step 2\n" +
                "text = text & UCase(Mid(layer.Text, i, 1)) & \"-\" & CStr(i * 2.5 + " + number + ")\n" +
                "Next\nlayer.Text = Trim(text)\nEnd If\nEnd Function\n";
    }
    return code;
}

void MeasureAlone(Program& program) {
    const std::string code = LongScript(10000);
    double loading = 1e9, hook = 1e9;
    for (int round = 0; round < Effort(5, 1); ++round) {
        loading = std::min(loading, Timed([&] { program.Load(code); }));
        program.Load("Sub Interval\nEnd Sub\n");
        constexpr int Calls = 100000;
        hook = std::min(hook, Timed([&] {
                                  for (int i = 0; i < Calls; ++i) program.Call("Interval");
                              }) / Calls);
    }
    std::printf("%-40s %9.2f ms   (aim: below 20)\n", "Loading 10,000 lines", loading * 1e3);
    std::printf("%-40s %9.3f us   (aim: below 1)\n", "A hook that does nothing", hook * 1e6);
}

}  // namespace
}  // namespace tessaloom

int main() {
    using namespace tessaloom;
    Program program;
    std::printf("%-40s %12s %12s %12s %10s %10s\n", "", "ours", "Lua 5.4", "Python 3", "/ Lua", "/ Python");
    for (const Comparison& row : Comparisons) Compare(program, row);
    MeasureAlone(program);
}
