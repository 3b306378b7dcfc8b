#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "script/host/ScriptEngine.h"
#include "script/library/ClassLibrary.h"
#include "script/objects/SCObject.h"
#include "vbscript/Engine.h"

namespace tessaloom {

class Alarm;
struct Platform;

/// Runs the scripts of portfolios: the script language with the system's object tree, the classes that
/// scripts can create, and boxes on the program's dialogs.
///
/// Outlives the portfolios that it is plugged into. While code runs, every box and dialog that it leads to
/// closes itself with its safe answer after `BoxPatience`; the time that a box is open does not count towards
/// the limit.
class ScriptControl final : public ScriptEngine, private vbscript::Host {
public:
    static constexpr int BoxPatience = 60;  ///< Seconds.

    /// platform: outlives this object, as `alarm` and what `library` names do. The alarm is for the time
    /// limit alone. steadySeconds: a clock that never goes back, for the same; the system's when empty.
    ScriptControl(Platform& platform, const library::LibraryServices& library, Alarm& alarm,
                  std::function<double()> steadySeconds = {});

    // ScriptEngine

    /// There is one language, "vbScript". Transfers of scripts that begin from then on have the limits of all
    /// others.
    void Reset(std::string_view language, int timeoutSeconds) override;
    void AddRootObject(std::string_view name) override;
    std::optional<ScriptFault> AddCode(std::string_view code) override;
    std::vector<ScriptProcedure> Procedures() const override;
    std::optional<ScriptFault> Run(std::string_view name, std::span<const ScriptArgument> arguments) override;

private:
    double Now() override;
    double Timer() override;
    double SteadySeconds() override;
    Alarm& TimeAlarm() override { return alarm_; }
    const UserLocale& Locale() override;
    int MsgBox(const std::string& prompt, int buttons, const std::string& title) override;
    std::string InputBox(const std::string& prompt, const std::string& title,
                         const std::string& initial) override;
    vbscript::Ref<vbscript::Object> CreateObject(std::string_view programId) override;

    Platform& platform_;
    const library::LibraryServices library_;
    Alarm& alarm_;
    std::function<double()> steadySeconds_;
    vbscript::Engine engine_;
};

}  // namespace tessaloom
