#include "vbrun/RunHost.h"

#include <chrono>
#include <cstdio>

#include "platform/qt/QtUserLocale.h"

namespace tessaloom::vbrun {

namespace {

/// The button that does no harm, by the lowest three bits of `buttons`: OK, Cancel, Ignore, Cancel, No,
/// Cancel.
constexpr int SafeAnswers[] = {1, 2, 5, 2, 7, 2};

}  // namespace

RunHost::RunHost() : locale_(QtUserLocale()) {}

double RunHost::SteadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

int RunHost::MsgBox(const std::string& prompt, int buttons, const std::string& title) {
    std::fprintf(stderr, "%s: %s\n", title.c_str(), prompt.c_str());
    const int kind = buttons & 7;
    return kind < static_cast<int>(std::size(SafeAnswers)) ? SafeAnswers[kind] : SafeAnswers[0];
}

std::string RunHost::InputBox(const std::string& prompt, const std::string& title, const std::string&) {
    std::fprintf(stderr, "%s: %s\n", title.c_str(), prompt.c_str());
    return {};
}

vbscript::Ref<vbscript::Object> RunHost::CreateObject(std::string_view programId) {
    return library::CreateObject({files_, folders_, environment_, transfers_}, programId);
}

}  // namespace tessaloom::vbrun
