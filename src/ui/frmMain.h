#pragma once

#include <QMainWindow>
#include <memory>

#include "platform/MainWindow.h"

class QMdiArea;
class QMdiSubWindow;

namespace tessaloom {

class CanvasWindow;
class DesktopDialogs;
class Workspace;

/// The frame: menus, tool bar, status bar, panels, and one child window for each canvas.
class frmMain final : public QMainWindow {
    Q_OBJECT

public:
    frmMain(Workspace& workspace, DesktopDialogs& dialogs);
    ~frmMain() override;

    /// tip: at most 63 characters are shown.
    void AddTrayIcon(const QString& tip);
    void RemoveTrayIcon();

    void SetState(WindowState state);
    void SetPlace(const WindowPlace& place);  ///< Twips.

    /// Shows the window in the state it was given. A minimized one goes to the tray where there is one.
    void Appear();

    /// Brings the window back to its last state other than minimized, before all others.
    void ShowMe();

    /// The person wants the program to end, which may be called off. The window itself need not be open.
    void AskToClose();

    void EnablePortfolioCommands(bool enable);

    PreviewSize Preview() const;
    void DrawPreview(const std::uint8_t* rows, PreviewSize size);

    /// The frame owns the window from now on and decides its place unless it has one.
    void AddCanvasWindow(CanvasWindow* window);
    void RemoveCanvasWindow(CanvasWindow* window);

    /// The window of the active canvas while it is to be seen; null when there is none.
    CanvasWindow* ActiveWindow() const;
    CanvasWindow* WindowOf(int slot) const;
    QMdiArea& Area() const;

    /// The other windows and dialogs of the program; without menus, tips and the like.
    QWidgetList SecondaryWindows() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Parts;

    void MakePages();
    void MakePanels();
    bool InTray() const;
    void AppearMinimized();
    void ShowInTaskBar();
    void LookForTray();
    void KeepState(Qt::WindowStates before);
    void KeepPlace();
    void UpdateAwake();
    void KeepLayout();
    void RestoreLayout();
    void WindowActivated(QMdiSubWindow* window);
    void FollowActiveCanvas();
    void ShowPage(int more = 0);
    void ShowTitle();
    void ShowProperties();

    std::unique_ptr<Parts> parts_;
};

}  // namespace tessaloom
