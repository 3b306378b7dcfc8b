#pragma once

#include <string_view>
#include <vector>

#include "model/DocumentFault.h"

namespace tessaloom {

struct Platform;

/// Everything in a portfolio (with its canvases) or in a canvas that is unknown, out of range or missing on
/// disk, in file order. Sections that begin with "X-" are not looked at. Nothing is written and nothing set
/// going.
///
/// path: a canvas when its extension is "can" or, for any other than "por", when it has a section "General".
std::vector<DocumentFault> CheckDocument(Platform& platform, std::string_view path);

}  // namespace tessaloom
