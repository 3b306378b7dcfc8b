#include "ui/MenuBar.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <algorithm>
#include <stdexcept>

#include "core/main/DocumentCommands.h"
#include "model/Canvas.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "ui/CanvasKind.h"
#include "ui/CanvasWindow.h"
#include "ui/DesktopDialogs.h"
#include "ui/dialogs/Setups.h"
#include "ui/frmMain.h"
#include "ui/shared/CommandIcon.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom {

namespace {

struct MenuTitle {
    Menu menu;
    const char* name;
    const char* text;
};
constexpr MenuTitle BarMenus[] = {
    {Menu::File,   "mnuFile",   "&File"  },
    {Menu::Edit,   "mnuEdit",   "&Edit"  },
    {Menu::Canvas, "mnuCanvas", "&Canvas"},
    {Menu::Setup,  "mnuSetup",  "&Setup" },
    {Menu::View,   "mnuView",   "&View"  },
    {Menu::Window, "mnuWindow", "&Window"},
    {Menu::Help,   "mnuHelp",   "&Help"  },
};

/// Null sets groups apart.
constexpr const char* ToolBarCommands[] = {
    "cmdCanvasNew", "cmdPortfolioOpen",   "cmdSaveAll",    nullptr,      "cmdUndo",       "cmdRedo",
    nullptr,        "cmdAddText",         "cmdAddPicture", "cmdAddFeed", "cmdAddAddress", "cmdAddBlock",
    nullptr,        "cmdCanvasProperties"};

/// A name as a menu shows it: no "&" in it is a mnemonic.
QString Shown(const std::string& name) { return QString::fromStdString(name).replace("&", "&&"); }

/// The mnemonic of a list's n-th entry.
QString Numbered(std::size_t number, const QString& text) {
    return (number < 10 ? "&" : "") + QString::number(number) + "  " + text;
}

}  // namespace

MenuBar::MenuBar(const CommandContext& context, QMainWindow* window)
    : QObject(window), context_(context), recent_(context.workspace) {
    MakeMenus(window);
    for (const Command& command : AllCommands()) AddCommand(command);
    MakeToolBar(window);
    DrawIcons();
    Workspace& workspace = context_.workspace;
    for (const auto change :
         {&Workspace::Pulse, &Workspace::PortfolioChanged, &Workspace::ActiveCanvasChanged,
          &Workspace::SelectionChanged, &Workspace::LayersChanged, &Workspace::HistoryChanged})
        connect(&workspace, change, this, &MenuBar::Refresh);
    connect(Of(Menu::Recent), &QMenu::aboutToShow, this, &MenuBar::ListRecent);
    connect(Of(Menu::File), &QMenu::aboutToShow, this, &MenuBar::ListRecent);
    connect(Of(Menu::Motion), &QMenu::aboutToShow, this, &MenuBar::ListFeeds);
    connect(Of(Menu::Window), &QMenu::aboutToShow, this, &MenuBar::ListCanvases);
    Refresh();
}

void MenuBar::MakeMenus(QMainWindow* window) {
    for (const auto& [menu, name, text] : BarMenus) {
        menus_[menu] = window->menuBar()->addMenu(text);
        menus_[menu]->setObjectName(name);
    }
    for (const Menu menu : {Menu::Recent, Menu::Order, Menu::Motion}) menus_[menu] = new QMenu(window);
}

void MenuBar::AddCommand(const Command& command) {
    QMenu* menu = Of(command.menu);
    if (!command.name) {
        menu->addSeparator();
        return;
    }
    QAction* action = command.run ? new QAction(menu) : Of(command.submenu)->menuAction();
    menu->addAction(action);
    action->setText(command.text);
    action->setObjectName(command.name);
    action->setShortcut(command.shortcut);
    if (command.run)
        connect(action, &QAction::triggered, this, [this, run = command.run] {
            run(context_);
            Refresh();
        });
    entries_.push_back({&command, action});
}

void MenuBar::MakeToolBar(QMainWindow* window) {
    QToolBar* bar = window->addToolBar("Tool bar");
    bar->setObjectName("ToolBar");
    for (const char* name : ToolBarCommands)
        if (name)
            bar->addAction(Action(name));
        else
            bar->addSeparator();
    Of(Menu::View)->addAction(bar->toggleViewAction());
}

QAction* MenuBar::Action(const char* name) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return std::string_view(entry.command->name) == name;
    });
    if (found == entries_.end()) throw std::logic_error(name);
    return found->action;
}

void MenuBar::DrawIcons() {
    for (const auto& [command, action] : entries_)
        action->setIcon(CommandIcon(command->icon, context_.frame.palette()));
}

void MenuBar::EnablePortfolioCommands(bool enable) {
    portfolioCommands_ = enable;
    RememberPortfolio();
    Refresh();
}

bool MenuBar::MakesSense(Needs needs) const {
    Workspace& workspace = context_.workspace;
    const auto* window = context_.frame.ActiveWindow();
    switch (needs) {
        case Needs::Nothing:
            return true;
        case Needs::Portfolio:
            return portfolioCommands_ && workspace.Portfolio();
        case Needs::Canvas:
            return workspace.ActiveSlot() != 0;
        case Needs::Window:
            return window;
        case Needs::Selection:
            return window && !workspace.Selection().empty();
        case Needs::Undo:
        case Needs::Redo:
            break;
    }
    const History* history = workspace.HistoryOf(workspace.ActiveSlot());
    return history && (needs == Needs::Undo ? history->CanUndo() : history->CanRedo());
}

void MenuBar::Refresh() {
    for (const auto& [command, action] : entries_) action->setEnabled(MakesSense(command->needs));
    QAction* scale = Action("cmdScaleToWindow");
    scale->setCheckable(true);
    const Canvas* canvas = context_.workspace.ActiveCanvas();
    scale->setChecked(canvas && canvas->FormType() != CanvasKind::Unscaled);
    NameUndo();
}

void MenuBar::NameUndo() {
    const History* history = context_.workspace.HistoryOf(context_.workspace.ActiveSlot());
    const auto named = [](const char* verb, const std::string& step) {
        return step.empty() ? QString(verb) : QString(verb) + " " + Shown(step);
    };
    Action("cmdUndo")->setText(named("&Undo", history ? history->UndoName() : ""));
    Action("cmdRedo")->setText(named("&Redo", history ? history->RedoName() : ""));
}

void MenuBar::RememberPortfolio() {
    const Portfolio* portfolio = context_.workspace.Portfolio();
    if (portfolio && !portfolio->FileName().empty()) recent_.Add(portfolio->FileName());
}

void MenuBar::ListRecent() {
    RememberPortfolio();
    QMenu* menu = Of(Menu::Recent);
    menu->clear();
    std::size_t number = 0;
    for (const std::string& file : recent_.Files()) {
        QAction* action = menu->addAction(Numbered(++number, Shown(file)));
        action->setObjectName(QString("cmdRecent%1").arg(number));
        connect(action, &QAction::triggered, this, [this, file] {
            if (context_.workspace.Services().fileSystem.FileExists(file)) {
                modMain::PortfolioOpenFile(file);
                return;
            }
            recent_.Remove(file);
            context_.dialogs.MessageBox("There is no file " + file + " any more.", "Open Recent",
                                        Buttons::Ok);
        });
    }
    if (number == 0) menu->addAction("None yet")->setEnabled(false);
}

void MenuBar::ListFeeds() {
    QMenu* menu = Of(Menu::Motion);
    menu->clear();
    const Portfolio* portfolio = context_.workspace.Portfolio();
    for (int feed = 0; portfolio && feed < Portfolio::MaxFeed; ++feed) {
        const std::string name = portfolio->VideoFeed(feed).FeedName();
        if (name.empty() && !portfolio->VideoFeed(feed).Enabled()) continue;
        QAction* action = menu->addAction(Numbered(std::size_t(feed) + 1, Shown(name)) + "...");
        action->setObjectName(QString("cmdMotion%1").arg(feed));
        connect(action, &QAction::triggered, this,
                [this, feed] { ShowMotionDetectSetup(context_.workspace, &context_.frame, feed); });
    }
    if (menu->isEmpty()) menu->addAction("No video feed is set up")->setEnabled(false);
}

void MenuBar::ListCanvases() {
    for (QAction* action : std::exchange(canvases_, {})) delete action;
    QMenu* menu = Of(Menu::Window);
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
        const Canvas* canvas = context_.workspace.CanvasAt(slot);
        if (!canvas || !context_.frame.WindowOf(slot)) continue;
        QAction* action = menu->addAction(Numbered(std::size_t(slot), Shown(canvas->Name())));
        action->setObjectName(QString("cmdCanvas%1").arg(slot));
        action->setCheckable(true);
        action->setChecked(slot == context_.workspace.ActiveSlot());
        connect(action, &QAction::triggered, this, [this, slot] {
            if (CanvasWindow* window = context_.frame.WindowOf(slot)) window->BringBack();
        });
        canvases_.push_back(action);
    }
}

}  // namespace tessaloom
