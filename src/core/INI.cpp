#include "core/INI.h"

#include "core/ErrorReport.h"
#include "platform/PrivateProfile.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "INI.cls";
constexpr std::string_view Quote = "\"";
constexpr std::string_view StoredQuote = "&34";

/// One pass from left to right is enough, both ways: what is put in never completes another `from`.
std::string Replaced(std::string_view text, std::string_view from, std::string_view to) {
    std::string result;
    for (std::size_t at; (at = text.find(from)) != text.npos; text.remove_prefix(at + from.size()))
        result.append(text.substr(0, at)).append(to);
    return result.append(text);
}

}  // namespace

std::string INI::GetKey(std::string_view section, std::string_view key, WriteDefault writeDefault,
                        std::string_view fallback) {
    return Trap({Module, "GetKey"}, [&] {
        std::string value = profile_.Get(file_, section, key);
        if (value.empty() && writeDefault == WriteDefault::Yes) {
            SetKey(section, key, fallback);
            value = fallback;
        }
        if (value.find('&') == value.npos) return value;
        return Replaced(value, StoredQuote, Quote);
    });
}

void INI::SetKey(std::string_view section, std::string_view key, std::string_view value) {
    Trap({Module, "SetKey"}, [&] {
        if (value.find('"') == value.npos) {
            profile_.Set(file_, section, key, value);
        } else {
            profile_.Set(file_, section, key, Replaced(value, Quote, StoredQuote));
        }
    });
}

void INI::RemoveSection(std::string_view section) {
    Trap({Module, "RemoveSection"}, [&] { profile_.RemoveSection(file_, section); });
}

void INI::Begin() {
    Trap({Module, "Begin"}, [&] { profile_.Begin(file_); });
}

bool INI::Commit() {
    return Trap({Module, "Commit"}, [&] { return profile_.Commit(file_); });
}

void INI::Rollback() {
    Trap({Module, "Rollback"}, [&] { profile_.Rollback(file_); });
}

void INI::SetOwnerOnly() {
    Trap({Module, "SetOwnerOnly"}, [&] { profile_.SetOwnerOnly(file_); });
}

}  // namespace tessaloom
