#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessaloom {

/// A request to the web server, as far as it is looked at.
struct RequestHead {
    /// Bytes of a request up to and with its empty line; browsers send less than a kilobyte.
    static constexpr std::size_t Limit = 16384;

    std::string path;  ///< As it was sent, without one leading "/".

    /// Another request may follow on the same connection: the client asks for it, and nobody who passes the
    /// requests of many on could see a body behind this one.
    ///
    /// Bodies are not read, so a length other than a plain 0, an encoding or another protocol to come ends
    /// the connection, and so does a head that some would read otherwise: lines that go on in the next one,
    /// ends of lines that are none, blanks in names.
    bool keepAlive = false;
};

/// The request of `head`, which goes up to the empty line; nothing when it does not ask to get something.
std::optional<RequestHead> ParseRequestHead(std::string_view head);

/// The name that a request path means: what stands before the first "?", each "%" with two hexadecimal digits
/// replaced, once.
std::string RequestedName(std::string_view path);

}  // namespace tessaloom
