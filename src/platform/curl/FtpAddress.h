#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessaloom {

/// A server as a person names it, taken apart.
struct FtpAddress {
    enum class Security {
        None,
        Explicit,  ///< TLS after the greeting.
        Implicit,  ///< TLS from the start.
        Shell,     ///< File transfer of a secure shell.
    };

    Security security = Security::None;
    std::string place;  ///< Host, with ":port" where one was given.

    /// Nothing for what is no server name: no host, a port out of 1 .. 65535, a path, a user name.
    static std::optional<FtpAddress> Parse(std::string_view server);

    bool Shell() const { return security == Security::Shell; }

    /// The address of the file `path` ("" for the server itself), relative paths from the folder of the
    /// log-in.
    std::string Url(std::string_view path) const;
};

}  // namespace tessaloom
