#include "time/TimeZoneLookup.h"

#include <algorithm>

namespace tessaloom {
namespace {

std::string_view Trimmed(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    return text;
}

/// Zone names are English, so that ASCII letters are all there is to fold.
char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool SameName(std::string_view a, std::string_view b) { return std::ranges::equal(a, b, {}, Folded, Folded); }

}  // namespace

void TimeZoneLookup::Load(std::string_view text) {
    constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(ByteOrderMark)) text.remove_prefix(ByteOrderMark.size());
    pairs_.clear();
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::size_t comma = line.find(',');
        if (comma == line.npos) continue;
        pairs_.push_back(
            {std::string(Trimmed(line.substr(0, comma))), std::string(Trimmed(line.substr(comma + 1)))});
    }
}

const std::string* TimeZoneLookup::Find(std::string_view name) const {
    const auto pair = std::ranges::find_if(
        pairs_, [name](const Pair& candidate) { return SameName(candidate.name, name); });
    return pair == pairs_.end() ? nullptr : &pair->value;
}

}  // namespace tessaloom
