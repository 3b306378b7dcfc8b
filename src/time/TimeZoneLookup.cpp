#include "time/TimeZoneLookup.h"

#include <algorithm>

#include "platform/Ascii.h"
#include "platform/TextEncoding.h"

namespace tessaloom {
namespace {}  // namespace

void TimeZoneLookup::Load(std::string_view bytes) {
    const std::string decoded = ToUtf8(bytes);
    std::string_view text = decoded;
    if (text.starts_with(Utf8Mark)) text.remove_prefix(Utf8Mark.size());
    pairs_.clear();
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::size_t comma = line.find(',');
        if (comma == line.npos) continue;
        pairs_.push_back({std::string(ascii::Trimmed(line.substr(0, comma), ascii::Blanks)),
                          std::string(ascii::Trimmed(line.substr(comma + 1), ascii::Blanks))});
    }
}

const std::string* TimeZoneLookup::Find(std::string_view name) const {
    const std::string folded = FoldCase(name);
    const auto pair = std::ranges::find_if(
        pairs_, [&](const Pair& candidate) { return FoldCase(candidate.name) == folded; });
    return pair == pairs_.end() ? nullptr : &pair->value;
}

}  // namespace tessaloom
