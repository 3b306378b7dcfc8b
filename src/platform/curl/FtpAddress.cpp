#include "platform/curl/FtpAddress.h"

#include <algorithm>
#include <charconv>

#include "platform/Ascii.h"

namespace tessaloom {

namespace {

constexpr std::string_view ImplicitPort = "990";

bool IsPlain(char c) {
    return ascii::IsDigit(c) || ascii::IsLetter(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

/// Host names with letters of other scripts are left to the library.
bool MayStandInHost(char c) { return IsPlain(c) || static_cast<unsigned char>(c) >= 0x80; }

bool IsPort(std::string_view text) {
    int port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    return error == std::errc() && end == text.data() + text.size() && port >= 1 && port <= 65535;
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
    if (!ascii::StartsWithText(text, prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

/// The length of the host in front of `text`; 0 when there is none.
std::size_t HostLength(std::string_view text) {
    if (text.starts_with('[')) {
        const std::size_t end = text.find_first_not_of("0123456789abcdefABCDEF:.", 1);
        return end != std::string_view::npos && end > 1 && text[end] == ']' ? end + 1 : 0;
    }
    return static_cast<std::size_t>(std::ranges::find_if_not(text, MayStandInHost) - text.begin());
}

std::string Encoded(std::string_view path) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : path) {
        if (IsPlain(c) || c == '/') {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', Digits[byte >> 4], Digits[byte & 15]};
    }
    return encoded;
}

}  // namespace

std::optional<FtpAddress> FtpAddress::Parse(std::string_view server) {
    FtpAddress address;
    std::string_view rest = ascii::Trimmed(server, ascii::Blanks);
    if (TakePrefix(rest, "sftp://"))
        address.security = Security::Shell;
    else if (TakePrefix(rest, "ftps://"))
        address.security = Security::Explicit;
    else
        TakePrefix(rest, "ftp://");
    if (rest.ends_with('/')) rest.remove_suffix(1);

    address.place = rest;
    const std::size_t host = HostLength(rest);
    if (host == 0) return std::nullopt;
    rest.remove_prefix(host);
    if (!rest.empty() && (rest.front() != ':' || !IsPort(rest.substr(1)))) return std::nullopt;
    if (address.security == Security::Explicit && rest.ends_with(ImplicitPort) &&
        rest.size() == ImplicitPort.size() + 1)
        address.security = Security::Implicit;
    return address;
}

std::string FtpAddress::Url(std::string_view path) const {
    std::string url = Shell() ? "sftp://" : security == Security::Implicit ? "ftps://" : "ftp://";
    url += place + "/";
    const bool absolute = path.starts_with('/');
    if (absolute) path.remove_prefix(1);
    // One protocol counts from the root and knows "~", the other counts from the folder of the log-in.
    if (Shell() && !absolute && !path.empty()) url += "~/";
    if (!Shell() && absolute) url += "%2F";
    return url + Encoded(path);
}

}  // namespace tessaloom
