#include "publish/RequestHead.h"

#include <algorithm>
#include <charconv>

#include "platform/Ascii.h"

namespace tessaloom {

namespace {

constexpr std::string_view Method = "GET", Protocol = " HTTP", KeepAlive = "connection: keep-alive";

bool Holds(std::string_view text, std::string_view lowerCase) {
    return std::search(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                       [](char c, char lower) { return ascii::Lower(c) == lower; }) != text.end();
}

/// The byte that the two characters behind a "%" stand for.
std::optional<char> Hexadecimal(std::string_view digits) {
    unsigned value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (digits.size() != 2 || error != std::errc() || end != digits.data() + 2) return std::nullopt;
    return static_cast<char>(value);
}

}  // namespace

std::optional<RequestHead> ParseRequestHead(std::string_view head) {
    if (!ascii::StartsWithText(head, Method)) return std::nullopt;
    const std::string_view line = head.substr(0, head.find("\r\n"));
    const std::size_t blank = line.find(' '), protocol = line.rfind(Protocol);
    if (protocol == line.npos || blank >= protocol) return std::nullopt;
    std::string_view path = line.substr(blank + 1, protocol - blank - 1);
    if (path.starts_with('/')) path.remove_prefix(1);
    return RequestHead{std::string(path), Holds(head, KeepAlive)};
}

std::string RequestedName(std::string_view path) {
    path = path.substr(0, path.find('?'));
    std::string name;
    name.reserve(path.size());
    for (std::size_t at = 0; at < path.size(); ++at) {
        const auto byte = path[at] == '%' ? Hexadecimal(path.substr(at + 1, 2)) : std::nullopt;
        name += byte.value_or(path[at]);
        if (byte) at += 2;
    }
    return name;
}

}  // namespace tessaloom
