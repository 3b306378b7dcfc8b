#include "ui/Commands.h"

#include <QMdiArea>
#include <vector>

#include "core/main/DocumentCommands.h"
#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "ui/AboutBox.h"
#include "ui/CanvasKind.h"
#include "ui/CanvasWindow.h"
#include "ui/DesktopDialogs.h"
#include "ui/ManualWindow.h"
#include "ui/canvas/CanvasEditor.h"
#include "ui/dialogs/Setups.h"
#include "ui/frmMain.h"
#include "ui/property/TextTags.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

using Context = const CommandContext&;

/// A command of the document menus.
template <auto Operation>
void Run(Context) {
    Operation();
}

/// A command of the active canvas's editor.
template <void (CanvasEditor::*Operation)()>
void Edit(Context context) {
    if (CanvasWindow* window = context.frame.ActiveWindow()) (window->Editor().*Operation)();
}

template <void (History::*Operation)()>
void Undo(Context context) {
    if (History* history = context.workspace.HistoryOf(context.workspace.ActiveSlot()))
        (history->*Operation)();
}

template <CanvasPage Page>
void ShowCanvas(Context context) {
    if (const int slot = context.workspace.ActiveSlot())
        ShowCanvasSetup(context.workspace, &context.frame, slot, Page);
}

/// A window of the set-up menu.
template <void (*Show)(Workspace&, QWidget*)>
void Open(Context context) {
    Show(context.workspace, &context.frame);
}

template <void (QMdiArea::*Operation)()>
void Arrange(Context context) {
    (context.frame.Area().*Operation)();
}

void Exit(Context context) { context.frame.AskToClose(); }

void SaveAll(Context) { modMain::SaveAllProc(false); }

void ScaleToWindow(Context context) {
    Canvas* canvas = context.workspace.ActiveCanvas();
    if (!canvas) return;
    const bool scaled = canvas->FormType() != CanvasKind::Unscaled;
    canvas->SetFormType(scaled ? CanvasKind::Unscaled : CanvasKind::Scaled);
}

void ShowCanvasWindows(Context context) {
    for (int slot = Portfolio::MaxCanvas; slot > 0; --slot)
        if (CanvasWindow* window = context.frame.WindowOf(slot)) window->BringBack();
}

void CloseCanvasWindow(Context context) {
    if (CanvasWindow* window = context.frame.ActiveWindow()) window->close();
}

void ShowReports(Context context) { context.dialogs.ShowReports(); }

void ShowManual(Context context) {
    const QString page = ManualWindow::FirstPage();
    if (!page.isEmpty()) {
        ManualWindow::ShowPage(page, &context.frame);
        return;
    }
    context.dialogs.MessageBox("The manual is not installed.", "Manual", Buttons::Ok);
}

void ShowAbout(Context context) { ShowAboutBox(&context.frame); }

Command Separator(Menu menu) { return {.menu = menu, .name = nullptr}; }

Command Submenu(Menu menu, const char* name, const char* text, Needs needs, Menu submenu) {
    return {.menu = menu, .name = name, .text = text, .needs = needs, .submenu = submenu};
}

// clang-format off
std::vector<Command> MakeCommands() {
    using enum Needs;
    using namespace modMain;
    using Keys = QKeySequence;
    constexpr auto Control = Qt::CTRL;
    constexpr auto ControlShift = Qt::CTRL | Qt::SHIFT;
    return {
        {Menu::File, "cmdPortfolioNew", "&New Portfolio", Nothing, Keys(ControlShift | Qt::Key_N), Run<PortfolioNew>, {}, "new"},
        {Menu::File, "cmdPortfolioOpen", "&Open Portfolio...", Nothing, Keys(Keys::Open), Run<PortfolioOpen>, {}, "open"},
        Submenu(Menu::File, "mnuRecent", "Open &Recent", Nothing, Menu::Recent),
        {Menu::File, "cmdPortfolioSave", "Save &Portfolio", Portfolio, Keys(), Run<PortfolioSave>},
        {Menu::File, "cmdPortfolioSaveAs", "Save Portfolio &As...", Portfolio, Keys(), Run<PortfolioSaveAs>},
        Separator(Menu::File),
        {Menu::File, "cmdCanvasNew", "New &Canvas...", Portfolio, Keys(Keys::New), Run<CanvasNew>, {}, "new"},
        {Menu::File, "cmdCanvasOpen", "Op&en Canvas...", Portfolio, Keys(ControlShift | Qt::Key_O), Run<CanvasOpen>},
        {Menu::File, "cmdCanvasSave", "&Save Canvas", Canvas, Keys(Keys::Save), Run<CanvasSave>},
        {Menu::File, "cmdCanvasSaveAs", "Save Can&vas As...", Canvas, Keys(), Run<CanvasSaveAs>},
        {Menu::File, "cmdCanvasRemove", "Re&move Canvas", Canvas, Keys(), Run<CanvasRemove>},
        Separator(Menu::File),
        {Menu::File, "cmdSaveAll", "Save A&ll", Portfolio, Keys(ControlShift | Qt::Key_S), SaveAll, {}, "save"},
        Separator(Menu::File),
        {Menu::File, "cmdExit", "E&xit", Nothing, Keys(Control | Qt::Key_Q), Exit},

        {Menu::Edit, "cmdUndo", "&Undo", Needs::Undo, Keys(Keys::Undo), tessaloom::Undo<&History::Undo>, {}, "undo"},
        {Menu::Edit, "cmdRedo", "&Redo", Redo, Keys(ControlShift | Qt::Key_Z), tessaloom::Undo<&History::Redo>, {}, "redo"},
        Separator(Menu::Edit),
        {Menu::Edit, "cmdCut", "Cu&t", Selection, Keys(Keys::Cut), Edit<&CanvasEditor::Cut>},
        {Menu::Edit, "cmdCopy", "&Copy", Selection, Keys(Keys::Copy), Edit<&CanvasEditor::Copy>},
        {Menu::Edit, "cmdPaste", "&Paste", Window, Keys(Keys::Paste), Edit<&CanvasEditor::Paste>},
        {Menu::Edit, "cmdDuplicate", "Dup&licate", Selection, Keys(Control | Qt::Key_D), Edit<&CanvasEditor::Duplicate>},
        {Menu::Edit, "cmdDelete", "&Delete", Selection, Keys(Keys::Delete), Edit<&CanvasEditor::Delete>},
        Separator(Menu::Edit),
        {Menu::Edit, "cmdSelectAll", "Select &All", Window, Keys(Keys::SelectAll), Edit<&CanvasEditor::SelectAll>},
        Submenu(Menu::Edit, "mnuOrder", "&Order", Selection, Menu::Order),
        {Menu::Order, "cmdToFront", "Bring to &Front", Selection, Keys(ControlShift | Qt::Key_BracketRight), Edit<&CanvasEditor::ToFront>},
        {Menu::Order, "cmdRaise", "&Raise", Selection, Keys(Control | Qt::Key_BracketRight), Edit<&CanvasEditor::Raise>},
        {Menu::Order, "cmdLower", "&Lower", Selection, Keys(Control | Qt::Key_BracketLeft), Edit<&CanvasEditor::Lower>},
        {Menu::Order, "cmdToBack", "Send to &Back", Selection, Keys(ControlShift | Qt::Key_BracketLeft), Edit<&CanvasEditor::ToBack>},

        {Menu::Canvas, "cmdAddText", "Add &Text", Window, Keys(Control | Qt::Key_T), Edit<&CanvasEditor::AddText>, {}, "text"},
        {Menu::Canvas, "cmdAddPicture", "Add &Picture...", Window, Keys(Control | Qt::Key_I), Edit<&CanvasEditor::AddPictureFile>, {}, "picture"},
        {Menu::Canvas, "cmdAddFeed", "Add Ca&mera...", Window, Keys(Control | Qt::Key_M), Edit<&CanvasEditor::AddFeed>, {}, "camera"},
        {Menu::Canvas, "cmdAddAddress", "Add &Web Picture...", Window, Keys(), Edit<&CanvasEditor::AddAddress>, {}, "web"},
        {Menu::Canvas, "cmdAddBlock", "Add &Block", Window, Keys(), Edit<&CanvasEditor::AddBlock>, {}, "block"},
        {Menu::Canvas, "cmdAddCanvas", "Add C&anvas...", Window, Keys(), Edit<&CanvasEditor::AddCanvas>},
        Separator(Menu::Canvas),
        {Menu::Canvas, "cmdCanvasProperties", "Canvas P&roperties...", Canvas, Keys(Qt::ALT | Qt::Key_Return), ShowCanvas<CanvasPage::General>, {}, "properties"},
        {Menu::Canvas, "cmdFixedSave", "&Fixed Save...", Canvas, Keys(), ShowCanvas<CanvasPage::FixedSave>},
        {Menu::Canvas, "cmdSequentialSave", "S&equential Save...", Canvas, Keys(), ShowCanvas<CanvasPage::SequentialSave>},
        {Menu::Canvas, "cmdWallpaper", "Wa&llpaper...", Canvas, Keys(), ShowCanvas<CanvasPage::Wallpaper>},
        {Menu::Canvas, "cmdFTPUpload", "FTP &Upload...", Canvas, Keys(), ShowCanvas<CanvasPage::FTPUpload>},
        {Menu::Canvas, "cmdWebPicture", "Publ&ish on the Web...", Canvas, Keys(), ShowCanvas<CanvasPage::WebPicture>},
        Separator(Menu::Canvas),
        {Menu::Canvas, "cmdForceEverything", "Update Everything &Now", Portfolio, Keys(Qt::Key_F5), Run<ForceEverything>},

        {Menu::Setup, "cmdVideoFeeds", "&Video Feeds...", Portfolio, Keys(), Open<ShowVideoFeedsSetup>},
        Submenu(Menu::Setup, "mnuMotion", "&Motion Detection", Portfolio, Menu::Motion),
        {Menu::Setup, "cmdWebServer", "&Web Server...", Portfolio, Keys(), Open<ShowWebServerSetup>},
        {Menu::Setup, "cmdWeather", "Weat&her Input...", Portfolio, Keys(), Open<ShowWeatherSetup>},
        {Menu::Setup, "cmdScript", "&Script...", Portfolio, Keys(), Open<ShowScriptSetup>},
        {Menu::Setup, "cmdReloadSources", "&Reload Script and Feeds", Portfolio, Keys(), Run<ReloadSources>},
        Separator(Menu::Setup),
        {Menu::Setup, "cmdPreferences", "&Preferences...", Nothing, Keys(Control | Qt::Key_Comma), Open<ShowPreferences>},

        {Menu::View, "cmdScaleToWindow", "&Scale to Window", Canvas, Keys(), ScaleToWindow},
        Separator(Menu::View),

        {Menu::Window, "cmdCascade", "&Cascade", Canvas, Keys(), Arrange<&QMdiArea::cascadeSubWindows>},
        {Menu::Window, "cmdTile", "&Tile", Canvas, Keys(), Arrange<&QMdiArea::tileSubWindows>},
        {Menu::Window, "cmdNextWindow", "&Next", Canvas, Keys(Control | Qt::Key_F6), Arrange<&QMdiArea::activateNextSubWindow>},
        {Menu::Window, "cmdShowWindows", "Show &All", Canvas, Keys(), ShowCanvasWindows},
        {Menu::Window, "cmdHideWindow", "&Hide", Window, Keys(Control | Qt::Key_W), CloseCanvasWindow},
        Separator(Menu::Window),

        {Menu::Help, "cmdManual", "&Manual", Nothing, Keys(Keys::HelpContents), ShowManual},
        {Menu::Help, "cmdTextTags", "&Text Tags...", Nothing, Keys(), Open<ShowTextTags>},
        {Menu::Help, "cmdErrorReports", "&Error Reports...", Nothing, Keys(), ShowReports},
        Separator(Menu::Help),
        {Menu::Help, "cmdAbout", "&About Tessaloom", Nothing, Keys(), ShowAbout},
    };
}
// clang-format on

}  // namespace

std::span<const Command> AllCommands() {
    static const std::vector<Command> commands = MakeCommands();
    return commands;
}

}  // namespace tessaloom
