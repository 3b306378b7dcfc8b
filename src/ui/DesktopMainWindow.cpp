#include "ui/DesktopMainWindow.h"

#include <QApplication>
#include <utility>

#include "ui/CanvasForm.h"
#include "ui/DesktopDialogs.h"
#include "ui/SplashWindow.h"
#include "ui/Twips.h"
#include "ui/frmMain.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

DesktopMainWindow::DesktopMainWindow(DesktopDialogs& dialogs, std::function<void()> quit)
    : dialogs_(dialogs), quit_(std::move(quit)) {}

DesktopMainWindow::~DesktopMainWindow() { delete window_.data(); }

void DesktopMainWindow::Connect(Platform& platform) { workspace_ = std::make_unique<Workspace>(platform); }

std::unique_ptr<CanvasView> DesktopMainWindow::MakeView(Canvas& canvas) {
    if (!window_) return nullptr;
    return std::make_unique<CanvasForm>(*workspace_, *window_, canvas);
}

void DesktopMainWindow::ShowSplash() {
    splash_ = std::make_unique<SplashWindow>();
    splash_->show();
    RedrawSplash();
}

void DesktopMainWindow::RedrawSplash() {
    if (splash_) splash_->repaint();
    DoEvents();
}

void DesktopMainWindow::CloseSplash() {
    if (splash_) splash_->hide();
}

void DesktopMainWindow::UnloadSplash() { splash_.reset(); }

void DesktopMainWindow::Load(const char* tip) {
    window_ = new frmMain(*workspace_, dialogs_);
    window_->AddTrayIcon(QString::fromUtf8(tip));
    dialogs_.SetParent(window_);
}

void DesktopMainWindow::SetState(WindowState state) {
    if (window_) window_->SetState(state);
}

void DesktopMainWindow::SetPlace(const WindowPlace& place) {
    if (window_) window_->SetPlace(place);
}

void DesktopMainWindow::Show() {
    if (window_) window_->Appear();
}

void DesktopMainWindow::Hide() {
    if (window_) window_->hide();
}

void DesktopMainWindow::Unload() {
    dialogs_.SetParent(nullptr);
    // Its own close event may be on the stack.
    if (window_) window_->deleteLater();
    quit_();
}

void DesktopMainWindow::RemoveTrayIcon() {
    if (window_) window_->RemoveTrayIcon();
}

void DesktopMainWindow::EnablePortfolioCommands(bool enable) {
    if (window_) window_->EnablePortfolioCommands(enable);
}

void DesktopMainWindow::UnloadSetupWindows() { workspace_->PortfolioClosing(); }

void DesktopMainWindow::UnloadSecondaryWindows() {
    if (window_)
        for (QWidget* window : window_->SecondaryWindows()) window->close();
    dialogs_.UnloadReports();
}

PreviewSize DesktopMainWindow::Preview() const { return window_ ? window_->Preview() : PreviewSize{}; }

void DesktopMainWindow::DrawPreview(const std::uint8_t* rows, PreviewSize size) {
    if (window_) window_->DrawPreview(rows, size);
}

void DesktopMainWindow::DoEvents() { QApplication::processEvents(); }

int DesktopMainWindow::TwipsPerPixelX() const { return Twips::PerPixel(Qt::Horizontal); }

int DesktopMainWindow::TwipsPerPixelY() const { return Twips::PerPixel(Qt::Vertical); }

}  // namespace tessaloom
