#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

/// What kind of source an address names, and how the library is to be asked for it.
struct StreamAddress {
    enum class Kind { Stream, File, Unknown };

    Kind kind = Kind::Unknown;
    std::string location;        ///< For the library.
    const char* protocols = "";  ///< All that it may use on the way, so that no playlist reaches local files.
    bool secured = false;        ///< Nothing may be fetched in clear, wherever the address leads to.

    /// Whether a scheme promises that: "https" and "rtsps", also with what follows in an address.
    static bool Secured(std::string_view address);

    /// A scheme of one letter is a drive's, so the whole is a path; "\" in paths counts as "/".
    static StreamAddress Parse(std::string_view written);
};

}  // namespace tessaloom
