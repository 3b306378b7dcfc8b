#pragma once

#include "platform/text/FallbackList.h"

#include <hb.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace tessaloom {

/// A part of a line that is shaped in one go.
struct TextRun {
    std::size_t start = 0, length = 0;  ///< Characters of the line.
    std::size_t font = 0;               ///< Of the fallback list.
    hb_script_t script = HB_SCRIPT_LATIN;
    unsigned char level = 0;  ///< Of embedding; odd ones run from right to left.
};

/// Splits `line` into runs, in the order in which they stand on the line from left to right.
std::vector<TextRun> SplitIntoRuns(std::u32string_view line, FallbackList& fonts);

}  // namespace tessaloom
