#include "publish/RequestHead.h"

#include <algorithm>
#include <charconv>

#include "platform/Ascii.h"

namespace tessaloom {

namespace {

constexpr std::string_view Method = "GET", Protocol = " HTTP", KeepAlive = "connection: keep-alive";
constexpr std::string_view LineEnd = "\r\n";

/// Fields that, whatever they say, let something follow the head that is no request.
constexpr std::string_view BodyFields[] = {"Transfer-Encoding", "Expect", "Upgrade"};

bool Holds(std::string_view text, std::string_view lowerCase) {
    return std::search(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                       [](char c, char lower) { return ascii::Lower(c) == lower; }) != text.end();
}

bool IsControl(char c) { return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7F'; }

bool IsNameCharacter(char c) {
    constexpr std::string_view Signs = "!#$%&'*+-.^_`|~";
    return ascii::IsLetter(c) || ascii::IsDigit(c) || Signs.find(c) != Signs.npos;
}

/// Whether everybody reads `line` as one field that promises no body.
bool IsBodiless(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == line.npos || colon == 0) return false;
    const std::string_view name = line.substr(0, colon), value = line.substr(colon + 1);
    if (!std::ranges::all_of(name, IsNameCharacter) || std::ranges::any_of(value, IsControl)) return false;
    if (ascii::SameText(name, "Content-Length")) return ascii::Trimmed(value, ascii::Blanks) == "0";
    return std::ranges::none_of(BodyFields, [&](auto field) { return ascii::SameText(name, field); });
}

/// Whether no body can follow the head that has this request line and, behind it, these fields.
bool IsBodiless(std::string_view line, std::string_view fields) {
    if (std::ranges::any_of(line, IsControl)) return false;
    while (!fields.empty()) {
        const std::size_t end = fields.find(LineEnd);
        if (!IsBodiless(fields.substr(0, end))) return false;
        fields.remove_prefix(end == fields.npos ? fields.size() : end + LineEnd.size());
    }
    return true;
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
    const std::string_view line = head.substr(0, head.find(LineEnd));
    const std::string_view fields = head.substr(std::min(head.size(), line.size() + LineEnd.size()));
    const std::size_t blank = line.find(' '), protocol = line.rfind(Protocol);
    if (protocol == line.npos || blank >= protocol) return std::nullopt;
    std::string_view path = line.substr(blank + 1, protocol - blank - 1);
    if (path.starts_with('/')) path.remove_prefix(1);
    return RequestHead{std::string(path), Holds(head, KeepAlive) && IsBodiless(line, fields)};
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
