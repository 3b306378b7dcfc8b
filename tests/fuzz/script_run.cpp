#include <cstdint>
#include <string_view>

#include "support/FakeScriptHost.h"
#include "support/ScriptSink.h"
#include "vbscript/Engine.h"
#include "vbscript/RegExp.h"

namespace {

class TickingHost : public tessaloom::testing::FakeScriptHost {
public:
    double SteadySeconds() override { return steady += 1e-4; }
};

}  // namespace

/// Any bytes as a script that runs, within tight limits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaloom;
    TickingHost host;
    vbscript::Engine engine(host);
    engine.SetLimits({.seconds = 3, .callDepth = 200, .bytes = std::size_t{16} << 20});
    engine.Reset();
    engine.AddObject("WScript", vbscript::Make<tessaloom::testing::ScriptSink>());
    static_cast<void>(engine.AddCode({reinterpret_cast<const char*>(data), size}));
    for (const vbscript::Procedure& procedure : engine.Procedures()) {
        std::vector<vbscript::Value> arguments(static_cast<std::size_t>(procedure.argumentCount));
        static_cast<void>(engine.Run(procedure.name, arguments));
    }
    return 0;
}
