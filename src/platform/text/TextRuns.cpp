#include "platform/text/TextRuns.h"

#include <fribidi.h>

#include <algorithm>

namespace tessaloom {
namespace {

using Levels = std::vector<FriBidiLevel>;

constexpr char32_t FirstRightToLeft = 0x590;  ///< No character below runs from right to left.

/// The embedding level of each character; the line's direction is that of its first letter.
Levels LevelsOf(std::u32string_view line) {
    Levels levels(line.size(), 0);
    if (std::none_of(line.begin(), line.end(), [](char32_t c) { return c >= FirstRightToLeft; }))
        return levels;
    const auto count = static_cast<FriBidiStrIndex>(line.size());
    const std::vector<FriBidiChar> characters(line.begin(), line.end());
    std::vector<FriBidiCharType> types(line.size());
    std::vector<FriBidiBracketType> brackets(line.size());
    fribidi_get_bidi_types(characters.data(), count, types.data());
    fribidi_get_bracket_types(characters.data(), count, types.data(), brackets.data());
    FriBidiParType direction = FRIBIDI_PAR_ON;
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), count, &direction,
                                            levels.data()) == 0)
        std::fill(levels.begin(), levels.end(), 0);
    return levels;
}

bool IsReal(hb_script_t script) {
    return script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN;
}

/// Marks, joiners and selectors belong to the letter before them, as long as its font can show them.
bool Continues(char32_t c) {
    switch (hb_unicode_general_category(hb_unicode_funcs_get_default(), c)) {
        case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_FORMAT:
            return true;
        default:
            return false;
    }
}

bool IsSelectorOrFormat(char32_t c) {
    return (c >= 0xFE00 && c <= 0xFE0F) || hb_unicode_general_category(hb_unicode_funcs_get_default(), c) ==
                                               HB_UNICODE_GENERAL_CATEGORY_FORMAT;
}

std::size_t FontFor(char32_t c, FallbackList& fonts, bool first, std::size_t previous) {
    if (c < 0x80) return fonts.Find(c);
    if (!first && Continues(c) && (IsSelectorOrFormat(c) || fonts.Has(previous, c))) return previous;
    return fonts.Find(c);
}

/// The runs in the order of the characters.
std::vector<TextRun> LogicalRuns(std::u32string_view line, FallbackList& fonts, const Levels& levels) {
    std::vector<TextRun> runs;
    bool scriptKnown = false;  // leading signs join the first letter's run
    for (std::size_t i = 0; i < line.size(); ++i) {
        const std::size_t font = FontFor(line[i], fonts, runs.empty(), runs.empty() ? 0 : runs.back().font);
        const auto script = hb_unicode_script(hb_unicode_funcs_get_default(), line[i]);
        const bool real = IsReal(script);
        const auto level = static_cast<unsigned char>(levels[i]);
        if (!runs.empty() && runs.back().font == font && runs.back().level == level &&
            (!real || !scriptKnown || runs.back().script == script)) {
            ++runs.back().length;
            if (real) runs.back().script = script;
        } else {
            const auto carried = runs.empty() ? HB_SCRIPT_LATIN : runs.back().script;
            runs.push_back({i, 1, font, real ? script : carried, level});
        }
        scriptKnown = scriptKnown || real;
    }
    return runs;
}

/// From the highest level down to the lowest odd one, each stretch of at least that level is turned round.
void PutIntoVisualOrder(std::vector<TextRun>& runs) {
    unsigned highest = 0;
    for (const TextRun& run : runs) highest = std::max<unsigned>(highest, run.level);
    for (unsigned level = highest; level > 0; --level)
        for (auto from = runs.begin(); from != runs.end();) {
            from = std::find_if(from, runs.end(), [&](const TextRun& r) { return r.level >= level; });
            const auto to = std::find_if(from, runs.end(), [&](const TextRun& r) { return r.level < level; });
            std::reverse(from, to);
            from = to;
        }
}

}  // namespace

std::vector<TextRun> SplitIntoRuns(std::u32string_view line, FallbackList& fonts) {
    if (line.empty() || fonts.Size() == 0) return {};
    std::vector<TextRun> runs = LogicalRuns(line, fonts, LevelsOf(line));
    PutIntoVisualOrder(runs);
    return runs;
}

}  // namespace tessaloom
