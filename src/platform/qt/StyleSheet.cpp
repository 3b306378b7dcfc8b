#include "platform/qt/StyleSheet.h"

#include <algorithm>
#include <string>

#include "platform/qt/VectorOutline.h"

namespace tessaloom {

namespace {

constexpr std::string_view Blanks = " \t\r\n\f";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::string WithoutComments(std::string_view text) {
    std::string plain;
    while (true) {
        const std::size_t begin = text.find("/*");
        const std::size_t end = begin == std::string_view::npos ? begin : text.find("*/", begin + 2);
        if (end == std::string_view::npos) return plain.append(text);
        plain.append(text.substr(0, begin));
        text.remove_prefix(end + 2);
    }
}

}  // namespace

VectorStyle StyleOf(std::string_view property, std::string_view value) {
    VectorStyle style;
    value = Trimmed(value);
    if (value == "inherit") return style;
    // Whatever a careless reader passes over before it.
    const auto is = [&](std::string_view name) { return property.ends_with(name); };
    if (is("stroke")) style.stroked = value != "none";
    if (is("stroke-width")) style.strokeWidth = LargestNumber(value);
    if (is("stroke-dasharray")) style.dash = DashPeriod(value);
    if (is("font-size") || is("font")) style.fontSize = LargestNumber(value);
    return style;
}

void StyleSheet::Add(std::string_view text) {
    // A name may be written with escapes; what it says is then not known.
    transforms_ = transforms_ || text.find('\\') != std::string_view::npos;
    const std::string plain = WithoutComments(text);
    for (std::string_view rest = plain; !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of("{};"), rest.size());
        const std::string_view part = Trimmed(rest.substr(0, end));
        const char mark = end < rest.size() ? rest[end] : ';';
        if (mark == '{')
            AddSelectors(part);
        else if (!part.empty())
            AddDeclaration(part);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

void StyleSheet::AddSelectors(std::string_view selectors) {
    while (true) {
        const std::size_t comma = selectors.find(',');
        const std::string_view one = Trimmed(selectors.substr(0, comma));
        const auto looks = [&](std::string_view marks) {
            return static_cast<double>(std::ranges::count_if(
                one, [&](char letter) { return marks.find(letter) != std::string_view::npos; }));
        };
        selectors_ += 1;
        ofAncestors_ += std::min(looks(" \t\r\n\f>"), 1.0);
        ofSiblings_ += looks("+~");
        if (comma == std::string_view::npos) return;
        selectors.remove_prefix(comma + 1);
    }
}

void StyleSheet::AddDeclaration(std::string_view declaration) {
    declarations_ += 1;
    const std::size_t colon = declaration.find(':');
    if (colon == std::string_view::npos) return;
    std::string property(Trimmed(declaration.substr(0, colon)));
    std::ranges::transform(property, property.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
    });
    const std::string_view value = declaration.substr(colon + 1);
    // "text-transform" is about letters.
    transforms_ = transforms_ || (property.ends_with("transform") && !property.ends_with("text-transform"));
    style_ = style_.OrWorse(StyleOf(property, value));
    if (property.ends_with("stroke-miterlimit")) miterLimit_ = std::max(miterLimit_, LargestNumber(value));
}

double StyleSheet::Work(double elements, double depth, double classLetters) const {
    // Measured; each selector is held against each element, and what it declares is parsed anew for each.
    constexpr double Selector = 25, Ancestor = 40, Sibling = 1, Declaration = 50, ClassLetter = 1.5;
    return elements * (Selector * selectors_ + Ancestor * ofAncestors_ * depth +
                       Sibling * ofSiblings_ * elements + Declaration * declarations_) +
           ClassLetter * selectors_ * classLetters;
}

}  // namespace tessaloom
