#pragma once

#include <QObject>
#include <map>
#include <vector>

#include "ui/Commands.h"
#include "ui/RecentPortfolios.h"

class QAction;
class QMainWindow;
class QMenu;

namespace tessaloom {

/// The menus and the tool bar, made from the table of commands; keeps each command enabled only while it
/// makes sense.
class MenuBar final : public QObject {
    Q_OBJECT

public:
    /// window: the frame, which owns the menus.
    MenuBar(const CommandContext& context, QMainWindow* window);

    /// The action of a command's name; never null for a name of the table.
    QAction* Action(const char* name) const;
    QMenu* Of(Menu menu) const { return menus_.at(menu); }

    void EnablePortfolioCommands(bool enable);

    /// Puts the open portfolio's file, if it has one, first in the list of recent ones.
    void RememberPortfolio();

    /// Draws the signs in the colours of the palette.
    void DrawIcons();

private:
    struct Entry {
        const Command* command;
        QAction* action;
    };

    void MakeMenus(QMainWindow* window);
    void AddCommand(const Command& command);
    void MakeToolBar(QMainWindow* window);
    bool MakesSense(Needs needs) const;
    void Refresh();
    void NameUndo();
    void ListRecent();
    void ListFeeds();
    void ListCanvases();

    CommandContext context_;
    RecentPortfolios recent_;
    std::map<Menu, QMenu*> menus_;
    std::vector<Entry> entries_;
    std::vector<QAction*> canvases_;  ///< The list at the end of the Window menu.
    bool portfolioCommands_ = false;
};

}  // namespace tessaloom
