#pragma once

#include <QPointer>
#include <functional>
#include <memory>

#include "model/CanvasView.h"
#include "platform/MainWindow.h"

class QSystemTrayIcon;

namespace tessaloom {

class DesktopDialogs;
class SplashWindow;
class Workspace;
class frmMain;
struct Platform;

/// The main window, its splash and its tray icon on a desktop.
class DesktopMainWindow final : public MainWindow {
public:
    /// quit: called when the window is unloaded. dialogs: shown before the window; they outlive this object.
    DesktopMainWindow(DesktopDialogs& dialogs, std::function<void()> quit);
    ~DesktopMainWindow() override;

    /// To be called before the window is loaded.
    void Connect(Platform& platform);

    /// Null before the window is loaded.
    std::unique_ptr<CanvasView> MakeView(Canvas& canvas);

    void ShowSplash() override;
    void RedrawSplash() override;
    void CloseSplash() override;
    void UnloadSplash() override;
    void Load(const char* tip) override;
    void SetState(WindowState state) override;
    void SetPlace(const WindowPlace& place) override;
    void Show() override;
    void Hide() override;
    void Unload() override;
    void RemoveTrayIcon() override;
    void EnablePortfolioCommands(bool enable) override;
    void UnloadSetupWindows() override;
    void UnloadSecondaryWindows() override;
    PreviewSize Preview() const override;
    void DrawPreview(const std::uint8_t* rows, PreviewSize size) override;
    void DoEvents() override;
    int TwipsPerPixelX() const override;
    int TwipsPerPixelY() const override;

private:
    DesktopDialogs& dialogs_;
    std::function<void()> quit_;
    std::unique_ptr<Workspace> workspace_;
    std::unique_ptr<SplashWindow> splash_;
    QPointer<frmMain> window_;
};

}  // namespace tessaloom
