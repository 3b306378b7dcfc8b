// Whatever a client of the web server may send: heads are cut out, read and their paths decoded.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "publish/RequestHead.h"
#include "publish/ResponseHead.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace tessaloom;
    std::string_view rest(reinterpret_cast<const char*>(bytes), size);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find("\r\n\r\n"), rest.size());
        if (const auto request = ParseRequestHead(rest.substr(0, end))) {
            const std::string name = RequestedName(request->path);
            if (request->path.size() > end || name.size() > request->path.size()) std::abort();
            if (ContentTypeOf(name).empty()) std::abort();
        }
        rest.remove_prefix(std::min(end + 4, rest.size()));
    }
    return 0;
}
