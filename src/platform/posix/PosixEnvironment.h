#pragma once

#include <map>

#include "platform/Environment.h"

namespace tessaloom {

/// The environment of this process.
class PosixEnvironment final : public Environment {
public:
    std::optional<std::string> Variable(std::string_view name) const override;
    std::vector<std::pair<std::string, std::string>> Variables() const override;
    bool SetVariable(std::string_view name, std::string_view value) override;
    void RemoveVariable(std::string_view name) override;
    std::string HomeFolder() const override;
    std::string TemporaryFolder() const override;
    std::string ComputerName() const override;
    std::string UserName() const override;

private:
    std::map<std::string, std::optional<std::string>, std::less<>> changes_;  ///< Nothing: removed.
};

}  // namespace tessaloom
