#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessaloom {

/// The environment of the process and the folders of its user. Texts are UTF-8.
class Environment {
public:
    virtual ~Environment() = default;

    virtual std::optional<std::string> Variable(std::string_view name) const = 0;

    /// Names and values, in no particular order.
    virtual std::vector<std::pair<std::string, std::string>> Variables() const = 0;

    /// @name Changes
    /// Only those who ask here see them: other parts of the process may be reading theirs at the same time.
    /// @{

    /// False for a name that cannot be.
    virtual bool SetVariable(std::string_view name, std::string_view value) = 0;
    virtual void RemoveVariable(std::string_view name) = 0;
    /// @}

    virtual std::string HomeFolder() const = 0;
    virtual std::string TemporaryFolder() const = 0;
    virtual std::string ComputerName() const = 0;
    virtual std::string UserName() const = 0;
};

}  // namespace tessaloom
