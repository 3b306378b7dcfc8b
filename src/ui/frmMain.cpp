#include "ui/frmMain.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QMdiArea>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>

#include "core/RunFlags.h"
#include "core/SetupValues.h"
#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/edit/PropertySet.h"
#include "platform/FileSystem.h"
#include "ui/CanvasWindow.h"
#include "ui/DesktopDialogs.h"
#include "ui/FeedPreview.h"
#include "ui/MenuBar.h"
#include "ui/ProgramIcon.h"
#include "ui/StatusLine.h"
#include "ui/TrayIcon.h"
#include "ui/Twips.h"
#include "ui/WelcomePage.h"
#include "ui/canvas/CanvasEditor.h"
#include "ui/dialogs/MotionWindows.h"
#include "ui/dialogs/Setups.h"
#include "ui/property/LayerPanel.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

/// What the settings file holds of one value, in characters, is limited; the layout takes several.
constexpr qsizetype LayoutPiece = 200;
constexpr int MostLayoutPieces = 16;
/// How long the window may take to get its size once it appears.
constexpr int AppearMilliseconds = 1000;
/// How often a window in the tray looks whether that is still there.
constexpr int TrayLookMilliseconds = 3000;
/// Told to the toolkit, so that a layout with other panels is not taken for this one.
constexpr int LayoutVersion = 1;

std::string LayoutKey(int piece) { return "Layout" + std::to_string(piece + 1); }

QString FileOf(const std::string& path) {
    return QString::fromStdString(path.substr(path.find_last_of("/\\") + 1));
}

/// `place`, brought to where the person can reach it: no larger than its screen, its title within it.
QRect Reachable(QRect place) {
    const QScreen* screen = QGuiApplication::screenAt(place.center());
    if (!screen) screen = QGuiApplication::screenAt(place.topLeft());
    const bool elsewhere = !screen;
    if (!screen) screen = QGuiApplication::primaryScreen();
    if (!screen) return place;
    const QRect free = screen->availableGeometry();
    place.setSize(place.size().boundedTo(free.size()));
    if (elsewhere || !free.contains(place.topLeft())) {
        place.moveLeft(qBound(free.left(), place.left(), free.right() - place.width() + 1));
        place.moveTop(qBound(free.top(), place.top(), free.bottom() - place.height() + 1));
    }
    return place;
}

WindowState StateOf(Qt::WindowStates states) {
    return states & Qt::WindowMinimized   ? WindowState::Minimized
           : states & Qt::WindowMaximized ? WindowState::Maximized
                                          : WindowState::Normal;
}

}  // namespace

struct frmMain::Parts {
    Workspace& workspace;
    DesktopDialogs& dialogs;
    QStackedWidget* pages = nullptr;
    QMdiArea* area = nullptr;
    WelcomePage* welcome = nullptr;
    FeedPreview* preview = nullptr;
    PropertyForm* form = nullptr;
    QDockWidget* properties = nullptr;
    MenuBar* menus = nullptr;
    std::unique_ptr<TrayIcon> tray = nullptr;
    QTimer* trayLook = nullptr;
    QByteArray layout = {};                   ///< Of the panels, until the window has got its size.
    WindowState state = WindowState::Normal;  ///< In which the window is to appear.
    bool appeared = false;                    ///< From then on its place and state are the person's.
    bool closing = false;                     ///< The person is being asked about the end.
};

frmMain::frmMain(Workspace& workspace, DesktopDialogs& dialogs)
    : parts_(std::make_unique<Parts>(Parts{workspace, dialogs})) {
    setObjectName("frmMain");
    setWindowTitle("Tessaloom");
    setWindowIcon(ProgramIcon());
    setDockNestingEnabled(true);
    const int unit = fontMetrics().height();
    setMinimumSize(24 * unit, 18 * unit);
    parts_->area = new QMdiArea(this);
    parts_->menus = new MenuBar({workspace, *this, dialogs}, this);
    MakePages();
    MakePanels();
    new StatusLine(workspace, statusBar());
    new MotionWindows(workspace, this);
    parts_->trayLook = new QTimer(this);
    connect(parts_->trayLook, &QTimer::timeout, this, &frmMain::LookForTray);
    connect(&workspace, &Workspace::Pulse, this, [this] {
        ShowTitle();
        ShowPage();
        UpdateAwake();
    });
    connect(&workspace, &Workspace::PortfolioChanged, this, [this] {
        ShowTitle();
        ShowPage();
    });
    connect(&workspace, &Workspace::ActiveCanvasChanged, this, &frmMain::FollowActiveCanvas);
    connect(&workspace, &Workspace::ActiveCanvasChanged, this, &frmMain::ShowProperties);
    connect(&workspace, &Workspace::SelectionChanged, this, &frmMain::ShowProperties);
    RestoreLayout();
    ShowProperties();
}

frmMain::~frmMain() {
    // The windows' own end must not be taken for the person's doing.
    disconnect(parts_->area, nullptr, this, nullptr);
    disconnect(&parts_->workspace, nullptr, this, nullptr);
}

void frmMain::MakePages() {
    parts_->area->setObjectName("Canvases");
    parts_->area->setBackground(palette().brush(QPalette::Mid));
    parts_->area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    parts_->area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(parts_->area, &QMdiArea::subWindowActivated, this, &frmMain::WindowActivated);
    const MenuBar& menus = *parts_->menus;
    parts_->pages = new QStackedWidget(this);
    using enum WelcomePage::Lack;
    parts_->welcome = new WelcomePage(
        {
            {menus.Action("cmdPortfolioNew"),  "&New Portfolio",     {WelcomePage::Lack::Portfolio}            },
            {menus.Action("cmdPortfolioOpen"), "&Open Portfolio...", {WelcomePage::Lack::Portfolio}            },
            {menus.Action("cmdShowWindows"),   "Show &All Canvases", {VisibleCanvas}                           },
            {menus.Action("cmdCanvasNew"),     "New &Canvas...",     {WelcomePage::Lack::Canvas, VisibleCanvas}},
            {menus.Action("cmdCanvasOpen"),    "Op&en Canvas...",    {WelcomePage::Lack::Canvas, VisibleCanvas}},
    },
        parts_->pages);
    parts_->pages->addWidget(parts_->welcome);
    parts_->pages->addWidget(parts_->area);
    setCentralWidget(parts_->pages);
}

void frmMain::MakePanels() {
    Workspace& workspace = parts_->workspace;
    const auto dock = [this](const char* name, const char* title, QWidget* content) {
        auto* panel = new QDockWidget(title, this);
        panel->setObjectName(name);
        panel->setWidget(content);
        addDockWidget(Qt::RightDockWidgetArea, panel);
        parts_->menus->Of(Menu::View)->addAction(panel->toggleViewAction());
        return panel;
    };
    parts_->preview = new FeedPreview(workspace);
    parts_->form = new PropertyForm(workspace);
    auto* list = new LayerPanel(workspace);
    auto* newLayers = new QMenu(this);
    for (const char* command :
         {"cmdAddText", "cmdAddPicture", "cmdAddFeed", "cmdAddAddress", "cmdAddBlock", "cmdAddCanvas"})
        newLayers->addAction(parts_->menus->Of(Menu::Canvas)->findChild<QAction*>(command));
    list->SetAddMenu(newLayers);
    QDockWidget* layers = dock("dockLayers", "Layers", list);
    QDockWidget* preview = dock("dockPreview", "Feed Preview", parts_->preview);
    parts_->properties = dock("dockProperties", "Properties", parts_->form);
    tabifyDockWidget(layers, preview);
    layers->raise();
    const int unit = fontMetrics().height();
    resizeDocks({layers, parts_->properties}, {24 * unit, 24 * unit}, Qt::Horizontal);
    resizeDocks({layers, parts_->properties}, {14 * unit, 26 * unit}, Qt::Vertical);
}

// --- Place and state ---

void frmMain::AddTrayIcon(const QString& tip) {
    parts_->tray = std::make_unique<TrayIcon>(
        tip, [this] { ShowMe(); }, [this] { AskToClose(); });
}

void frmMain::RemoveTrayIcon() {
    if (!parts_->tray) return;
    parts_->tray->Hide();
    // Its own menu may be on the stack.
    parts_->tray.release()->deleteLater();
}

void frmMain::SetState(WindowState state) { parts_->state = state; }

void frmMain::SetPlace(const WindowPlace& place) {
    const int x = Twips::PerPixel(Qt::Horizontal), y = Twips::PerPixel(Qt::Vertical);
    const QRect wanted(place.left / x, place.top / y, place.width / x, place.height / y);
    const QRect found = Reachable({wanted.topLeft(), wanted.size().expandedTo(minimumSize())});
    resize(found.size());
    move(found.topLeft());
}

void frmMain::Appear() {
    if (parts_->appeared) return;
    switch (parts_->state) {
        case WindowState::Minimized:
            AppearMinimized();
            break;
        case WindowState::Maximized:
            showMaximized();
            break;
        case WindowState::Normal:
            show();
            break;
    }
    parts_->appeared = true;
    if (parts_->state != WindowState::Minimized) KeepState(windowState());
}

void frmMain::AppearMinimized() {
    Setup().startupState = static_cast<int>(WindowState::Minimized);
    if (InTray()) return parts_->trayLook->start(TrayLookMilliseconds);
    ShowInTaskBar();
}

/// Shown and then minimized, as window managers open a window that is shown and activated in whatever state.
void frmMain::ShowInTaskBar() {
    const bool maximized = Setup().startupLastNonMinimizedState == static_cast<int>(WindowState::Maximized);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowState(maximized ? Qt::WindowMaximized : Qt::WindowNoState);
    show();
    setWindowState(windowState() | Qt::WindowMinimized);
    setAttribute(Qt::WA_ShowWithoutActivating, false);
}

/// A window that is hidden in a notification area which goes must not go with it.
void frmMain::LookForTray() {
    if (!isVisible() && InTray()) return;
    parts_->trayLook->stop();
    if (!isVisible()) ShowInTaskBar();
}

bool frmMain::InTray() const { return parts_->tray && TrayIcon::Available(); }

void frmMain::ShowMe() {
    if (Setup().startupLastNonMinimizedState == static_cast<int>(WindowState::Maximized))
        showMaximized();
    else
        showNormal();
    raise();
    activateWindow();
    KeepState(windowState());
}

/// before: the state that the window left for a minimized one.
void frmMain::KeepState(Qt::WindowStates before) {
    if (!parts_->appeared) return;
    Setup().startupState = static_cast<int>(StateOf(windowState()));
    const WindowState last = StateOf(isMinimized() ? before : windowState());
    if (last != WindowState::Minimized) Setup().startupLastNonMinimizedState = static_cast<int>(last);
}

void frmMain::KeepPlace() {
    if (!parts_->appeared || !isVisible() || isMinimized() || isMaximized() || isFullScreen()) return;
    const int perX = Twips::PerPixel(Qt::Horizontal), perY = Twips::PerPixel(Qt::Vertical);
    Setup().startupLeft = x() * perX;
    Setup().startupTop = y() * perY;
    Setup().startupWidth = width() * perX;
    Setup().startupHeight = height() * perY;
}

void frmMain::closeEvent(QCloseEvent* event) {
    // The window goes when the program is taken down, not before.
    event->ignore();
    AskToClose();
}

/// Not by closing the window: the toolkit would take a second close, while a question about the first one is
/// open, for granted.
void frmMain::AskToClose() {
    if (parts_->closing) return;
    const QScopedValueRollback closing(parts_->closing, true);
    parts_->dialogs.SetClosing(true);
    modMain::MDIForm_QueryUnload(modMain::CloseCause::Person);
    parts_->dialogs.SetClosing(false);
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && parts_->menus) {
        parts_->menus->DrawIcons();
        parts_->area->setBackground(palette().brush(QPalette::Mid));
    }
    if (event->type() != QEvent::WindowStateChange) return;
    const auto before = static_cast<QWindowStateChangeEvent*>(event)->oldState();
    if (isVisible()) KeepState(before);
    UpdateAwake();
    if (isMinimized() && isVisible() && InTray())
        QTimer::singleShot(0, this, [this] {
            if (!isMinimized()) return;
            hide();
            parts_->trayLook->start(TrayLookMilliseconds);
        });
}

void frmMain::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    KeepPlace();
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    KeepPlace();
    // The sizes of the panels are right in the size that the window had with them.
    if (!parts_->layout.isEmpty())
        QTimer::singleShot(0, this, [this] { restoreState(parts_->layout, LayoutVersion); });
}

void frmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!parts_->layout.isEmpty())
        QTimer::singleShot(AppearMilliseconds, this, [this] { parts_->layout.clear(); });
    UpdateAwake();
}

void frmMain::hideEvent(QHideEvent* event) {
    QMainWindow::hideEvent(event);
    KeepLayout();
    UpdateAwake();
}

/// Something of the program can be seen: this window, or a set-up window that stayed.
void frmMain::UpdateAwake() {
    bool seen = isVisible() && !isMinimized();
    for (const QWidget* window : SecondaryWindows())
        seen = seen || (window->isVisible() && !window->isMinimized());
    parts_->workspace.SetAwake(seen);
}

QWidgetList frmMain::SecondaryWindows() const {
    QWidgetList windows = QApplication::topLevelWidgets();
    windows.removeIf([this](const QWidget* window) {
        const Qt::WindowType type = window->windowType();
        return window == this || (type != Qt::Window && type != Qt::Dialog);
    });
    return windows;
}

void frmMain::KeepLayout() {
    const QByteArray layout = saveState(LayoutVersion).toBase64();
    for (int piece = 0; piece < MostLayoutPieces; ++piece)
        parts_->workspace.Remember(LayoutKey(piece),
                                   layout.mid(piece * LayoutPiece, LayoutPiece).toStdString());
}

void frmMain::RestoreLayout() {
    std::string layout;
    for (int piece = 0; piece < MostLayoutPieces; ++piece)
        layout += parts_->workspace.Remembered(LayoutKey(piece));
    parts_->layout = QByteArray::fromBase64(QByteArray::fromStdString(layout));
    restoreState(parts_->layout, LayoutVersion);
}

// --- Canvases ---

QMdiArea& frmMain::Area() const { return *parts_->area; }

void frmMain::AddCanvasWindow(CanvasWindow* window) {
    ShowPage(1);
    parts_->area->addSubWindow(window);
    window->ReadCanvas();
    connect(&window->Editor(), &CanvasEditor::EditRequested, this, [this] {
        parts_->properties->show();
        parts_->properties->raise();
        parts_->form->FocusOn("Text");
    });
    connect(&window->Editor(), &CanvasEditor::FeedsWanted, this,
            [this] { ShowVideoFeedsSetup(parts_->workspace, this); });
    window->show();
    if (!window->isMinimized()) parts_->area->setActiveSubWindow(window);
}

void frmMain::RemoveCanvasWindow(CanvasWindow* window) {
    window->disconnect(this);
    parts_->area->removeSubWindow(window);
    window->hide();
    // One of its own commands may be on the stack.
    window->deleteLater();
    ShowPage();
}

CanvasWindow* frmMain::WindowOf(int slot) const {
    for (QMdiSubWindow* window : parts_->area->subWindowList())
        if (auto* canvas = qobject_cast<CanvasWindow*>(window); canvas && canvas->Slot() == slot)
            return canvas;
    return nullptr;
}

CanvasWindow* frmMain::ActiveWindow() const {
    CanvasWindow* window = WindowOf(parts_->workspace.ActiveSlot());
    return window && !window->isHidden() && !window->isMinimized() ? window : nullptr;
}

/// A canvas whose window was hidden stays the active one until another window is chosen.
void frmMain::WindowActivated(QMdiSubWindow* window) {
    if (auto* canvas = qobject_cast<CanvasWindow*>(window)) parts_->workspace.Activate(canvas->Slot());
}

void frmMain::FollowActiveCanvas() {
    CanvasWindow* window = WindowOf(parts_->workspace.ActiveSlot());
    if (window && !window->isHidden() && parts_->area->activeSubWindow() != window)
        parts_->area->setActiveSubWindow(window);
}

/// more: windows about to be added.
void frmMain::ShowPage(int more) {
    const auto windows = parts_->area->subWindowList();
    const bool seen = more > 0 || std::any_of(windows.begin(), windows.end(),
                                              [](const QWidget* window) { return !window->isHidden(); });
    parts_->welcome->ShowFor(!parts_->workspace.Portfolio() ? WelcomePage::Lack::Portfolio
                             : windows.isEmpty()            ? WelcomePage::Lack::Canvas
                                                            : WelcomePage::Lack::VisibleCanvas);
    parts_->pages->setCurrentWidget(seen ? static_cast<QWidget*>(parts_->area) : parts_->welcome);
}

void frmMain::ShowTitle() {
    const Portfolio* portfolio = parts_->workspace.Portfolio();
    QString title = "Tessaloom";
    if (portfolio)
        title = (portfolio->FileName().empty() ? QString("New portfolio") : FileOf(portfolio->FileName())) +
                (portfolio->NeedSaving() ? " *" : "") + " - " + title;
    if (title != windowTitle()) setWindowTitle(title);
}

void frmMain::ShowProperties() {
    constexpr const char* Advice = "Select a layer to see its properties.";
    Workspace& workspace = parts_->workspace;
    const std::vector<LayerId> selection = workspace.Selection();
    if (selection.empty()) {
        parts_->form->Show(nullptr, Advice);
        return;
    }
    parts_->form->Show(PropertySets::Layers(*workspace.Portfolio(), workspace.ActiveSlot(), selection));
}

void frmMain::EnablePortfolioCommands(bool enable) {
    parts_->workspace.PortfolioOpened();
    parts_->menus->EnablePortfolioCommands(enable);
    WindowActivated(parts_->area->currentSubWindow());
}

PreviewSize frmMain::Preview() const { return parts_->preview->Size(); }

void frmMain::DrawPreview(const std::uint8_t* rows, PreviewSize size) { parts_->preview->Draw(rows, size); }

}  // namespace tessaloom
