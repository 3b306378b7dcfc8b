#pragma once

#include <string>
#include <vector>

#include "vbscript/Engine.h"
#include "vbscript/MemberTable.h"

namespace tessaloom::vbrun {

/// The object WScript.
class ScriptShell final : public vbscript::TableObject<ScriptShell> {
public:
    static constexpr std::u16string_view Name = u"Object";
    static std::span<const vbscript::Member<ScriptShell>> Members();

    /// `fullName`: of the script's file. The engine is told to stop by Quit.
    ScriptShell(vbscript::Engine& engine, vbscript::Host& host, std::string fullName,
                std::vector<std::string> arguments);

    bool HasQuit() const { return hasQuit_; }
    int ExitCode() const { return exitCode_; }

private:
    using Value = vbscript::Value;
    using Arguments = vbscript::Arguments;

    static Value Echo(ScriptShell& self, const Arguments& arguments);
    static Value Quit(ScriptShell& self, const Arguments& arguments);
    static Value Sleep(ScriptShell& self, const Arguments& arguments);

    vbscript::Engine& engine_;
    vbscript::Host& host_;
    std::string fullName_;
    vbscript::Ref<vbscript::Object> arguments_;
    bool hasQuit_ = false;
    int exitCode_ = 0;
};

}  // namespace tessaloom::vbrun
