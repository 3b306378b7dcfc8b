#pragma once

#include "vbscript/Object.h"

namespace tessaloom::vbscript {

/// A new object of the class RegExp: Pattern, Global, IgnoreCase, Multiline, Execute, Test, Replace.
///
/// A pattern is compiled by the first search, which is where its errors (5017 to 5021) show. Searches obey
/// the engine's time limit. Replace takes, in place of a text, an object whose default member is called with
/// the match, its groups, its index and the whole text, and gives the text to put there.
Ref<Object> MakeRegExp();

}  // namespace tessaloom::vbscript
