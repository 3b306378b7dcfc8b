#pragma once

#include "platform/Ascii.h"
#include "text/Replace.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessaloom {

/// Tells quickly that a tag does not occur in a text, by the fifth and sixth character of what begins with
/// "<".
class TagFilter {
public:
    static constexpr std::size_t ShortestTag = 6;  ///< No tag that is asked for may be shorter.

    explicit TagFilter(std::string_view text) { Look(text); }

    /// Takes the text as it is now.
    void Look(std::string_view text) {
        seen_ = 0;
        for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at + 1))
            if (text.size() - at >= ShortestTag) seen_ |= Bit(text.substr(at, ShortestTag));
    }

    /// False: `tag` does not occur, whatever the case of its letters.
    bool MayHold(std::string_view tag) const { return (seen_ & Bit(tag)) != 0; }

private:
    static std::uint64_t Bit(std::string_view tag) {
        const auto letter = [&](std::size_t i) { return static_cast<unsigned char>(ascii::Upper(tag[i])); };
        return std::uint64_t{1} << ((letter(4) * 7U + letter(5)) % 64);
    }

    std::uint64_t seen_ = 0;
};

/// Puts the values of those of `tags` (each with a `name`) that occur into `text`, one tag after the other.
template <typename Tags, typename ValueOf>
void ReplaceTags(std::string& text, const Tags& tags, ValueOf valueOf) {
    TagFilter filter(text);
    for (const auto& tag : tags) {
        if (!filter.MayHold(tag.name) || FindTag(text, tag.name) == std::string_view::npos) continue;
        Replace(text, tag.name, valueOf(tag));
        filter.Look(text);
    }
}

}  // namespace tessaloom
