#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

// The parts of a path, as text alone: no disk is touched. `\` and `/` both part folders; a path keeps the
// separators that it came with. Separators that end a path do not count: "a\b\" means "b" in "a".

/// The folder that holds `path`, without its trailing separator (the root keeps its own); "" when there is
/// none.
std::string ParentFolderName(std::string_view path);

/// The last part of `path`, with its extension.
std::string FileName(std::string_view path);

/// The last part of `path` without its extension: "a.b" of "C:\x\a.b.jpg".
std::string BaseName(std::string_view path);

/// What follows the last dot of the last part, without the dot; "" when there is none.
std::string ExtensionName(std::string_view path);

/// `folder` and `name` with one separator between them: `\`, unless `folder` ends in `\` or `/` already.
/// An empty folder gives `name` alone.
std::string JoinPath(std::string_view folder, std::string_view name);

}  // namespace tessaloom
