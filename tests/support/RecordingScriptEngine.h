#pragma once

#include "script/host/ScriptEngine.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Takes any code, claims the procedures it was given, and notes every call as "Name(arguments)".
class RecordingScriptEngine : public ScriptEngine {
public:
    std::vector<ScriptProcedure> procedures;
    std::optional<ScriptFault> loadFault, runFault;  ///< What loading and running end with from now on.
    std::function<void()> during;                    ///< Runs inside every procedure.

    std::string language, root, code;
    std::vector<std::string> calls;
    int timeoutSeconds = 0;
    int resets = 0;

    void Reset(std::string_view languageName, int seconds) override {
        language = languageName;
        timeoutSeconds = seconds;
        ++resets;
    }
    void AddRootObject(std::string_view name) override { root = name; }
    std::optional<ScriptFault> AddCode(std::string_view text) override {
        code = text;
        return loadFault;
    }
    std::vector<ScriptProcedure> Procedures() const override { return procedures; }

    std::optional<ScriptFault> Run(std::string_view name,
                                   std::span<const ScriptArgument> arguments) override {
        std::string call(name);
        char before = '(';
        for (const ScriptArgument& argument : arguments) {
            call += before;
            if (const int* number = std::get_if<int>(&argument))
                call += std::to_string(*number);
            else
                call.append("\"").append(std::get<std::string>(argument)).append("\"");
            before = ',';
        }
        calls.push_back(call + (arguments.empty() ? "()" : ")"));
        if (during) during();
        return runFault;
    }
};

}  // namespace tessaloom::testing
