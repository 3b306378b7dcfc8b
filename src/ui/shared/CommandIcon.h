#pragma once

#include <QIcon>
#include <string_view>

class QPalette;

namespace tessaloom {

/// The sign of a command, drawn in the palette's text colour: "new", "open", "save", "undo", "redo", "text",
/// "picture", "camera", "web", "block", "canvas", "properties", "add", "duplicate", "delete", "up", "down",
/// "reset". A null icon for any other name.
QIcon CommandIcon(std::string_view name, const QPalette& palette);

}  // namespace tessaloom
