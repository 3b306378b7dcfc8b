#include "script/host/Script.h"

#include <algorithm>
#include <utility>

#include "core/ErrorReport.h"
#include "core/Log.h"
#include "platform/Ascii.h"
#include "platform/FileSystem.h"
#include "script/host/ScriptText.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "Script.cls";
constexpr std::string_view Language = "vbScript";
constexpr std::string_view RootObject = "Tessaloom";
constexpr int TimeoutSeconds = 5;

// Scripts are written by hand; what is larger is some other file, and is refused rather than compiled.
constexpr std::size_t MaximumBytes = std::size_t{16} << 20;

struct EventProcedure {
    std::string_view name;
    int argumentCount;
    std::string_view foundMessage;
};

// In the order of ScriptEvent.
constexpr std::array<EventProcedure, Script::Events> Procedures{
    {
     {"Interval", 0, "Method Found: Interval()"},
     {"TextUpdate", 2, "Method Found: TextUpdate(Canvas,Index)"},
     {"GraphicUpdate", 2, "Method Found: GraphicUpdate(Canvas,Index)"},
     {"Startup", 0, "Method Found: Startup()"},
     {"Shutdown", 0, "Method Found: Shutdown()"},
     {"MotionDetected", 1, "Method Found: MotionDetected(VideoFeed)"},
     {"NewCSVData", 0, "Method Found: NewCSVData()"},
     {"WebRequest", 2, "Method Found: WebRequest(IPAddress,Path)"},
     }
};

constexpr std::size_t IndexOf(ScriptEvent event) { return static_cast<std::size_t>(event); }

// Counts the procedures on the engine's stack, however they end.
class RunningMark {
public:
    explicit RunningMark(int& count) : count_(count) { ++count_; }
    ~RunningMark() { --count_; }
    RunningMark(const RunningMark&) = delete;
    RunningMark& operator=(const RunningMark&) = delete;

private:
    int& count_;
};

}  // namespace

Script::Script(SettingsOwner& owner, const PresentTime& present, FileSystem& files, ScriptEngine* engine)
    : owner_(owner), present_(present), files_(files), engine_(engine), interval_({0, 86400}, {0, 86399}) {
    (void)interval_.SetRate(1, present);
}

void Script::SetEngine(ScriptEngine* engine) {
    UnloadClass();
    engine_ = engine;
}

void Script::ResetScript() {
    Trap({Module, "ResetScript"}, [&] {
        if (proceduresRunning_ > 0) {
            AddStatus("Couldn't reset script as it was running.");
            AddStatus("Let script complete and then press 'Reload Script'.");
            return;
        }
        Load();
    });
}

void Script::Load() {
    Forget();
    status_.clear();
    if (!files_.FileExists(fileName_)) return NotLoaded("File Not Found");
    const auto content = files_.ReadFile(fileName_, MaximumBytes);
    if (!content) return NotLoaded("File Not Readable");
    if (engine_ == nullptr) return NotLoaded("Script Language Not Available");

    engine_->AddRootObject(RootObject);
    lines_ = StrippedLines(*content);
    std::string code;
    for (const std::string& line : lines_) code += line + "\r\n";

    // The outermost statements run now: a reload asked for meanwhile would pull the code from under them.
    std::optional<ScriptFault> fault;
    {
        const RunningMark mark(proceduresRunning_);
        fault = engine_->AddCode(code);
    }
    if (fault) return Fail("Script Load-Time Error: ", *fault);

    AddStatus(std::to_string(lines_.size()) + " Lines");
    AddStatus("Script Loaded Successfully");
    FindProcedures();
    AddStatus("Running Script");
    ready_ = true;
}

void Script::FindProcedures() {
    for (const ScriptProcedure& procedure : engine_->Procedures()) {
        const auto known = std::ranges::find_if(
            Procedures, [&](const auto& event) { return ascii::SameText(event.name, procedure.name); });
        if (known == Procedures.end() || known->argumentCount != procedure.argumentCount) continue;
        found_[static_cast<std::size_t>(known - Procedures.begin())] = true;
        AddStatus(known->foundMessage);
    }
}

void Script::UnloadClass() {
    Trap({Module, "UnloadClass"}, [&] { Forget(); });
}

// The engine is left alone while a procedure is on its stack; the next load resets it.
void Script::Forget() {
    ready_ = false;
    found_.fill(false);
    if (proceduresRunning_ > 0) return;
    lines_.clear();
    if (engine_ != nullptr) engine_->Reset(Language, TimeoutSeconds);
}

void Script::ExecuteMethod(std::string_view name, std::span<const ScriptArgument> arguments) {
    Trap({Module, "ExecuteMethod"}, [&] {
        if (!ready_ || engine_ == nullptr) return;
        std::optional<ScriptFault> fault;
        {
            const RunningMark mark(proceduresRunning_);
            fault = engine_->Run(name, arguments);
        }
        if (fault) Fail("Script Run-Time Error: ", *fault);
    });
}

void Script::Deliver(ScriptEvent event, std::span<const ScriptArgument> arguments) {
    if (Delivers(event) && !Running()) ExecuteMethod(Procedures[IndexOf(event)].name, arguments);
}

void Script::CallInterval() { Deliver(ScriptEvent::Interval, {}); }

void Script::CallTextUpdate(int canvas, int index) {
    if (!Delivers(ScriptEvent::TextUpdate)) return;
    Deliver(ScriptEvent::TextUpdate, std::array<ScriptArgument, 2>{canvas, index});
}

void Script::CallGraphicUpdate(int canvas, int index) {
    if (!Delivers(ScriptEvent::GraphicUpdate)) return;
    Deliver(ScriptEvent::GraphicUpdate, std::array<ScriptArgument, 2>{canvas, index});
}

void Script::CallStartup() { Deliver(ScriptEvent::Startup, {}); }

void Script::CallShutdown() { Deliver(ScriptEvent::Shutdown, {}); }

void Script::CallMotionDetected(int videoFeed) {
    Deliver(ScriptEvent::MotionDetected, std::array<ScriptArgument, 1>{videoFeed});
}

void Script::CallNewCSVData() { Deliver(ScriptEvent::NewCSVData, {}); }

void Script::CallWebRequest(std::string_view ipAddress, std::string_view path) {
    if (!Delivers(ScriptEvent::WebRequest)) return;
    Deliver(ScriptEvent::WebRequest,
            std::array<ScriptArgument, 2>{std::string(ipAddress), std::string(path)});
}

void Script::SetFileName(std::string_view path) {
    if (!Store(fileName_, std::string(path))) return;
    owner_.SettingChanged();
    if (enabled_ && !heldBack_) ResetScript();
}

void Script::SetEnabled(bool enabled) {
    if (!Store(enabled_, enabled)) return;
    owner_.SettingChanged();
    if (!enabled_) return UnloadClass();
    if (!heldBack_) ResetScript();
}

void Script::SetAllow(ScriptEvent event, bool allow) {
    if (Store(allowed_[IndexOf(event)], allow)) owner_.SettingChanged();
}

void Script::SetRate(double seconds) {
    if (interval_.SetRate(seconds, present_)) owner_.SettingChanged();
}

void Script::SetBaseTime(double seconds) {
    if (interval_.SetBaseTime(seconds)) owner_.SettingChanged();
}

void Script::AddStatus(std::string_view line) {
    status_ += line;
    status_ += "\r\n";
}

void Script::NotLoaded(std::string_view why) {
    AddStatus(why);
    Log(LogLevel::Warning, "Script " + fileName_ + ": " + std::string(why));
}

// Lines and columns are those of the text without leading white space, which is what the engine was given.
void Script::Fail(std::string_view kind, const ScriptFault& fault) {
    ready_ = false;
    AddStatus(std::string(kind) + fault.description);
    AddStatus("Line " + std::to_string(fault.line) + ", Column " + std::to_string(fault.column));
    AddStatus("Code Fragment (without white space):");
    const auto line = static_cast<std::size_t>(fault.line) - 1;
    AddStatus(line < lines_.size() ? std::string_view(lines_[line]) : std::string_view());
    AddStatus("Stopping Script");
    Log(LogLevel::Warning, "Script " + fileName_ + "(" + std::to_string(fault.line) + ", " +
                               std::to_string(fault.column) + ") stopped: " + fault.description);
}

}  // namespace tessaloom
