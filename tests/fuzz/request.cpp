// Whatever a client of the web server may send: heads are cut out, read and their paths decoded. None that
// speaks of a body, wherever it does so, keeps its connection.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "publish/RequestHead.h"
#include "publish/ResponseHead.h"

namespace {

using namespace tessaloom;

bool KeptWith(std::string_view field, std::string_view head, std::size_t at) {
    const auto request = ParseRequestHead(std::string(head).insert(at, field));
    return request && request->keepAlive;
}

void DemandBodiesEndTheConnection(std::string_view head) {
    constexpr std::string_view LineEnd = "\r\n";
    if (KeptWith("\r\nContent-Length: 1", head, head.size())) std::abort();
    if (KeptWith("\nTransfer-Encoding: chunked", head, head.size())) std::abort();
    const std::size_t line = head.find(LineEnd);
    if (line != head.npos && KeptWith("Content-Length : 1\r\n", head, line + LineEnd.size())) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(bytes), size);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find("\r\n\r\n"), rest.size());
        DemandBodiesEndTheConnection(rest.substr(0, end));
        if (const auto request = ParseRequestHead(rest.substr(0, end))) {
            const std::string name = RequestedName(request->path);
            if (request->path.size() > end || name.size() > request->path.size()) std::abort();
            if (ContentTypeOf(name).empty()) std::abort();
        }
        rest.remove_prefix(std::min(end + 4, rest.size()));
    }
    return 0;
}
