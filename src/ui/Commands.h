#pragma once

#include <QKeySequence>
#include <span>

namespace tessaloom {

class DesktopDialogs;
class Workspace;
class frmMain;

/// What a command needs to make sense; it is disabled otherwise.
enum class Needs {
    Nothing,
    Portfolio,
    Canvas,     ///< An active canvas.
    Window,     ///< An active canvas whose window can be seen.
    Selection,  ///< Selected layers in it.
    Undo,
    Redo,
};

/// What commands work on.
struct CommandContext {
    Workspace& workspace;
    frmMain& frame;
    DesktopDialogs& dialogs;
};

/// The menus of the menu bar, in their order. `View` and `Window` end in entries that the frame adds.
enum class Menu { File, Recent, Edit, Order, Canvas, Setup, Motion, View, Window, Help };

/// One command of a menu, as data; a separator has no name.
struct Command {
    Menu menu;
    const char* name;  ///< The action's object name; null for a separator.
    const char* text = "";
    Needs needs = Needs::Nothing;
    QKeySequence shortcut = {};
    void (*run)(const CommandContext&) = nullptr;  ///< Null: the row stands for the menu `submenu`.
    Menu submenu = Menu::File;
    const char* icon = "";  ///< A sign of `CommandIcon`.
};

/// All commands, in the order of their menus.
std::span<const Command> AllCommands();

}  // namespace tessaloom
