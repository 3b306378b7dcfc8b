#include "ui/DesktopFrontEnd.h"

#include <utility>

#include "ui/DesktopDialogs.h"
#include "ui/DesktopMainWindow.h"

namespace tessaloom {

struct DesktopFrontEnd::Parts {
    explicit Parts(std::function<void()> quit) : mainWindow(dialogs, std::move(quit)) {}

    DesktopDialogs dialogs;
    DesktopMainWindow mainWindow;
};

DesktopFrontEnd::DesktopFrontEnd(std::function<void()> quit)
    : parts_(std::make_unique<Parts>(std::move(quit))) {}

DesktopFrontEnd::~DesktopFrontEnd() = default;

void DesktopFrontEnd::Connect(Platform& platform) { parts_->mainWindow.Connect(platform); }

MainWindow& DesktopFrontEnd::MainWindow() { return parts_->mainWindow; }

Dialogs& DesktopFrontEnd::Dialogs() { return parts_->dialogs; }

CanvasViewFactory DesktopFrontEnd::Views() {
    return [this](Canvas& canvas) { return parts_->mainWindow.MakeView(canvas); };
}

void DesktopFrontEnd::AddReport(const ErrorReport& report) { parts_->dialogs.AddReport(report); }

}  // namespace tessaloom
