#include "platform/posix/PosixEnvironment.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/TextEncoding.h"

extern char** environ;

namespace tessaloom {

namespace {

bool Usable(std::string_view name) {
    return !name.empty() && name.find('=') == name.npos && name.find('\0') == name.npos;
}

const passwd* User() { return ::getpwuid(::getuid()); }

}  // namespace

std::optional<std::string> PosixEnvironment::Variable(std::string_view name) const {
    if (!Usable(name)) return std::nullopt;
    if (const auto change = changes_.find(name); change != changes_.end()) return change->second;
    const char* value = std::getenv(std::string(name).c_str());
    return value ? std::optional(ToUtf8(value)) : std::nullopt;
}

std::vector<std::pair<std::string, std::string>> PosixEnvironment::Variables() const {
    std::vector<std::pair<std::string, std::string>> all;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string text = ToUtf8(*entry);
        const std::size_t sign = text.find('=');
        if (sign == text.npos || sign == 0 || changes_.contains(text.substr(0, sign))) continue;
        all.emplace_back(text.substr(0, sign), text.substr(sign + 1));
    }
    for (const auto& [name, value] : changes_)
        if (value) all.emplace_back(name, *value);
    return all;
}

bool PosixEnvironment::SetVariable(std::string_view name, std::string_view value) {
    if (!Usable(name)) return false;
    changes_[std::string(name)] = value;
    return true;
}

void PosixEnvironment::RemoveVariable(std::string_view name) { changes_[std::string(name)] = std::nullopt; }

std::string PosixEnvironment::HomeFolder() const {
    if (const auto home = Variable("HOME"); home && !home->empty()) return *home;
    const passwd* user = User();
    return user ? ToUtf8(user->pw_dir) : "/";
}

std::string PosixEnvironment::TemporaryFolder() const {
    const auto chosen = Variable("TMPDIR");
    return chosen && !chosen->empty() ? *chosen : "/tmp";
}

std::string PosixEnvironment::ComputerName() const {
    char name[256] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? ToUtf8(name) : "";
}

std::string PosixEnvironment::UserName() const {
    const passwd* user = User();
    return user ? ToUtf8(user->pw_name) : Variable("USER").value_or("");
}

}  // namespace tessaloom
