#pragma once

#include <QStringView>
#include <optional>
#include <string_view>
#include <vector>

#include "script/objects/SCObject.h"

namespace tessaloom {

/// The words of scripts, from the tables of the language and of the object tree.
namespace ScriptWords {

enum class Kind {
    Name,     ///< One that the script gave.
    Keyword,  ///< If, Next ...
    BuiltIn,  ///< Functions and constants of the language, and what the root object makes known.
};

/// `word` in any case, standing by itself (not behind a dot).
Kind Of(QStringView word);

/// The class of the object that a member gives; nothing for a plain value or a method.
std::optional<SCKind> Part(const SCMember& member);

/// Where a status says that the script failed, counted from 1, on the line without its leading white space.
struct Place {
    int line = 1;
    int column = 1;
};

/// Nothing when the script did not fail.
std::optional<Place> FaultIn(std::string_view status);

/// A text to start from: every event with a comment, none of which does anything yet.
QString Example();

}  // namespace ScriptWords
}  // namespace tessaloom
