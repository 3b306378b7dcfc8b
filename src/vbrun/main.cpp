#include <cstdio>
#include <filesystem>

#include "platform/TextEncoding.h"
#include "vbrun/RunHost.h"
#include "vbrun/ScriptShell.h"

namespace {

constexpr int ScriptFailed = 1;
constexpr int BadArguments = 2;

int Usage() {
    std::fputs("usage: vbrun FILE.vbs [ARGUMENT...]\n", stderr);
    return BadArguments;
}

}  // namespace

int main(int count, char** words) {
    using namespace tessaloom;
    if (count < 2 || words[1][0] == '\0' || words[1][0] == '-') return Usage();
    vbrun::RunHost host;
    const auto bytes = host.Files().ReadFile(words[1]);
    if (!bytes) {
        std::fprintf(stderr, "vbrun: cannot read %s\n", words[1]);
        return BadArguments;
    }
    int exitCode = 0;
    {
        vbscript::Engine engine(host);
        std::error_code unknownFolder;  // there is no full name then
        const std::string fullName =
            std::filesystem::absolute(words[1], unknownFolder).lexically_normal().string();
        const auto shell = vbscript::Make<vbrun::ScriptShell>(
            engine, host, fullName, std::vector<std::string>(words + 2, words + count));
        engine.AddObject("WScript", shell);
        std::string_view code = *bytes;
        if (code.starts_with(Utf8Mark)) code.remove_prefix(Utf8Mark.size());
        const auto fault = engine.AddCode(ToUtf8(code));
        std::fflush(stdout);
        if (shell->HasQuit()) {
            exitCode = shell->ExitCode();
        } else if (fault) {
            std::fprintf(stderr, "%s(%d, %d) ERROR %d: %s\n", words[1], fault->line, fault->column,
                         fault->number, fault->description.c_str());
            exitCode = ScriptFailed;
        }
    }
    std::fflush(stdout);
    return exitCode;
}
