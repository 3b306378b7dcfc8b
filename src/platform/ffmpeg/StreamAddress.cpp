#include "platform/ffmpeg/StreamAddress.h"

#include <algorithm>
#include <iterator>

#include "platform/Ascii.h"

namespace tessaloom {

namespace {

constexpr std::string_view StreamSchemes[] = {"rtsp", "rtsps", "http", "https", "udp", "rtp"};

// "crypto" is for streams in encrypted parts.
constexpr const char* StreamProtocols = "rtsp,rtsps,rtp,srtp,udp,tcp,tls,http,https,httpproxy,crypto";
constexpr const char* SecuredProtocols = "rtsps,https,tls,tcp,httpproxy,crypto";

StreamAddress File(std::string_view path) {
    // "file:///x" and "file:/x" mean the same; "//" elsewhere does no harm.
    if (path.starts_with("//")) path.remove_prefix(2);
    std::string location = "file:" + std::string(path);
    std::ranges::replace(location, '\\', '/');
    return {.kind = StreamAddress::Kind::File, .location = std::move(location), .protocols = "file"};
}

std::string Usable(std::string_view address) {
    std::string usable;
    for (const char c : address) {
        if (c == ' ') {
            usable += "%20";
        } else {
            usable += c;
        }
    }
    return usable;
}

}  // namespace

bool StreamAddress::Secured(std::string_view address) {
    const std::string scheme = ascii::LowerText(address.substr(0, address.find(':')));
    return scheme == "https" || scheme == "rtsps";
}

StreamAddress StreamAddress::Parse(std::string_view written) {
    // The library's texts end at the first NUL, and would mean another address.
    if (written.find('\0') != std::string_view::npos) return {};
    const std::string_view address = ascii::Trimmed(written, ascii::WhiteSpace);
    const std::size_t colon = address.find(':');
    const std::size_t separator = address.find_first_of("/\\");
    if (colon == std::string_view::npos || colon < 2 || separator < colon) return File(address);
    const std::string scheme = ascii::LowerText(address.substr(0, colon));
    if (scheme == "file") return File(address.substr(colon + 1));
    if (std::ranges::find(StreamSchemes, scheme) == std::end(StreamSchemes)) return {};
    const bool secured = Secured(scheme);
    return {.kind = Kind::Stream,
            .location = scheme + Usable(address.substr(colon)),
            .protocols = secured ? SecuredProtocols : StreamProtocols,
            .secured = secured};
}

}  // namespace tessaloom
