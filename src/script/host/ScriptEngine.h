#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tessaloom {

/// One procedure of the loaded script, as the engine lists it.
struct ScriptProcedure {
    std::string name;
    int argumentCount = 0;
};

/// Where and why a script failed. `line` and `column` count from 1 in the text given to `AddCode`; 0:
/// unknown.
struct ScriptFault {
    int line = 0;
    int column = 0;
    std::string description;
};

/// A value passed to a script procedure: a 32-bit number or a text.
using ScriptArgument = std::variant<int, std::string>;

/// The script language, as the script host drives it. It holds at most one script at a time.
class ScriptEngine {
public:
    virtual ~ScriptEngine() = default;

    /// Forgets all code and objects. A procedure may then run for `timeoutSeconds` before it is stopped.
    virtual void Reset(std::string_view language, int timeoutSeconds) = 0;

    /// Makes the system's root object known to scripts as `name`, and its members without the name as well.
    virtual void AddRootObject(std::string_view name) = 0;

    /// Compiles and runs the outermost statements of `code` (UTF-8, lines parted by CR LF).
    virtual std::optional<ScriptFault> AddCode(std::string_view code) = 0;

    /// The procedures of the code added, in the order of the code.
    virtual std::vector<ScriptProcedure> Procedures() const = 0;

    /// Runs one procedure to its end; its result is dropped.
    virtual std::optional<ScriptFault> Run(std::string_view name,
                                           std::span<const ScriptArgument> arguments) = 0;
};

}  // namespace tessaloom
