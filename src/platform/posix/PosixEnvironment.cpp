#include "platform/posix/PosixEnvironment.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/TextEncoding.h"
#include "platform/posix/PosixFileSystem.h"

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
    const char* value = std::getenv(std::string(name).c_str());
    return value ? std::optional(ToUtf8(value)) : std::nullopt;
}

std::vector<std::pair<std::string, std::string>> PosixEnvironment::Variables() const {
    std::vector<std::pair<std::string, std::string>> all;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string text = ToUtf8(*entry);
        const std::size_t sign = text.find('=');
        if (sign != text.npos && sign > 0) all.emplace_back(text.substr(0, sign), text.substr(sign + 1));
    }
    return all;
}

bool PosixEnvironment::SetVariable(std::string_view name, std::string_view value) {
    return Usable(name) && value.find('\0') == value.npos &&
           ::setenv(std::string(name).c_str(), std::string(value).c_str(), 1) == 0;
}

void PosixEnvironment::RemoveVariable(std::string_view name) {
    if (Usable(name)) ::unsetenv(std::string(name).c_str());
}

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

bool PosixEnvironment::SetCurrentFolder(std::string_view folder) {
    return folder.find('\0') == folder.npos && ::chdir(NativePath(folder).c_str()) == 0;
}

}  // namespace tessaloom
