#include "text/Replace.h"

#include "core/modNumbers.h"
#include "platform/Ascii.h"

#include <algorithm>

namespace tessaloom {
namespace {

constexpr std::string_view NotAvailable = "N/A";
constexpr double Missing = -1000;

}  // namespace

std::size_t FindTag(std::string_view text, std::string_view tag, std::size_t from) {
    const char last = ascii::Lower(tag.back());
    for (std::size_t at = text.find(tag.front(), from); at != std::string_view::npos;
         at = text.find(tag.front(), at + 1)) {
        if (text.size() - at < tag.size()) break;
        // Tags begin alike, so the last character tells most of them apart.
        if (ascii::Lower(text[at + tag.size() - 1]) == last &&
            ascii::SameText(text.substr(at, tag.size()), tag))
            return at;
    }
    return std::string_view::npos;
}

void Replace(std::string& text, std::string_view tag, std::string_view value) {
    double number = 0;
    if (modNumbers::TryDblNI(value, number) && number == Missing) value = NotAvailable;
    // A user's own value may hold its tag, which would be replaced for ever: it is then left as it stands.
    const bool endless = FindTag(value, tag) != std::string_view::npos;
    for (std::size_t at = FindTag(text, tag); at != std::string_view::npos; at = FindTag(text, tag, at)) {
        text.replace(at, tag.size(), value);
        // Nothing before this point held the tag, so only its beginning can lie there.
        at = endless ? at + value.size() : at - std::min(at, tag.size() - 1);
    }
}

}  // namespace tessaloom
