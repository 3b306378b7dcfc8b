#include <cstdint>
#include <string_view>

#include "support/FakeScriptHost.h"
#include "vbscript/Engine.h"

/// Any bytes as a script: read, never run.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static tessaloom::testing::FakeScriptHost host;
    static tessaloom::vbscript::Engine engine(host);
    static_cast<void>(engine.Check({reinterpret_cast<const char*>(data), size}));
    return 0;
}
