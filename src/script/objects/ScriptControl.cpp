#include "script/objects/ScriptControl.h"

#include <chrono>
#include <utility>

#include "platform/Dialogs.h"
#include "platform/Platform.h"
#include "platform/SystemTime.h"
#include "platform/UrlTransfer.h"

namespace tessaloom {

namespace {

using vbscript::Value;

double SystemSteadySeconds() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceStart).count();
}

/// Keeps boxes from waiting for ever while it lives.
class ShortPatience {
public:
    explicit ShortPatience(Dialogs& dialogs) : dialogs_(dialogs), before_(dialogs.Patience()) {
        dialogs_.SetPatience(ScriptControl::BoxPatience);
    }
    ~ShortPatience() { dialogs_.SetPatience(before_); }
    ShortPatience(const ShortPatience&) = delete;
    ShortPatience& operator=(const ShortPatience&) = delete;

private:
    Dialogs& dialogs_;
    const int before_;
};

std::optional<ScriptFault> HostFault(const std::optional<vbscript::Fault>& fault) {
    if (!fault) return std::nullopt;
    return ScriptFault{fault->line, fault->column, fault->description};
}

Value ValueOf(const ScriptArgument& argument) {
    if (const int* const number = std::get_if<int>(&argument)) return Value::OfLong(*number);
    return Value::OfUtf8(std::get<std::string>(argument));
}

}  // namespace

ScriptControl::ScriptControl(Platform& platform, const library::LibraryServices& library, Alarm& alarm,
                             std::function<double()> steadySeconds)
    : platform_(platform),
      library_(library),
      alarm_(alarm),
      steadySeconds_(steadySeconds ? std::move(steadySeconds) : SystemSteadySeconds),
      engine_(*this) {}

void ScriptControl::Reset(std::string_view, int timeoutSeconds) {
    engine_.Reset();
    engine_.SetLimits({.seconds = static_cast<double>(timeoutSeconds)});
    library_.transfers.SetLimits(platform_.urlTransfers.Limits());
}

void ScriptControl::AddRootObject(std::string_view name) {
    engine_.AddObject(name, vbscript::Make<SCObject>(SCKind::Main), true);
}

std::optional<ScriptFault> ScriptControl::AddCode(std::string_view code) {
    const ShortPatience patience(platform_.dialogs);
    return HostFault(engine_.AddCode(code));
}

std::vector<ScriptProcedure> ScriptControl::Procedures() const {
    std::vector<ScriptProcedure> procedures;
    for (const vbscript::Procedure& procedure : engine_.Procedures())
        procedures.push_back({procedure.name, procedure.argumentCount});
    return procedures;
}

std::optional<ScriptFault> ScriptControl::Run(std::string_view name,
                                              std::span<const ScriptArgument> arguments) {
    const ShortPatience patience(platform_.dialogs);
    std::vector<Value> values;
    try {
        for (const ScriptArgument& argument : arguments) values.push_back(ValueOf(argument));
    } catch (const vbscript::RuntimeError& error) {  // the script has left no memory for them
        return ScriptFault{0, 0, vbscript::Utf8Of(error.description)};
    }
    return HostFault(engine_.Run(name, values));
}

double ScriptControl::Now() { return platform_.systemTime.LocalDateTime(); }
double ScriptControl::Timer() { return platform_.systemTime.SecondsSinceMidnight(); }
double ScriptControl::SteadySeconds() { return steadySeconds_(); }
const UserLocale& ScriptControl::Locale() { return platform_.locale; }

/// The low three bits choose the buttons, numbered as `Buttons` is; answers count from 1 as `Answer` does
/// from 0. Icons and default buttons are left to the desktop.
int ScriptControl::MsgBox(const std::string& prompt, int buttons, const std::string& title) {
    constexpr int ButtonBits = 7;
    const int kind = buttons & ButtonBits;
    const Buttons shown =
        kind <= static_cast<int>(Buttons::RetryCancel) ? static_cast<Buttons>(kind) : Buttons::Ok;
    return static_cast<int>(platform_.dialogs.MessageBox(prompt, title, shown)) + 1;
}

std::string ScriptControl::InputBox(const std::string& prompt, const std::string& title,
                                    const std::string& initial) {
    return platform_.dialogs.InputBox(prompt, title, initial).value_or("");
}

vbscript::Ref<vbscript::Object> ScriptControl::CreateObject(std::string_view programId) {
    return library::CreateObject(library_, programId);
}

}  // namespace tessaloom
