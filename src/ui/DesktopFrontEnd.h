#pragma once

#include <functional>
#include <memory>

#include "model/CanvasView.h"
#include "platform/Platform.h"

namespace tessaloom {

class Dialogs;
class MainWindow;
struct ErrorReport;

/// The desktop, plugged in: windows in place of the logs and silences of a server.
///
/// Made after the toolkit's application object and before the platform is complete: `Connect` gives it the
/// services once they are there.
class DesktopFrontEnd {
public:
    /// quit: called when the main window is unloaded.
    explicit DesktopFrontEnd(std::function<void()> quit);
    ~DesktopFrontEnd();

    void Connect(Platform& platform);

    tessaloom::MainWindow& MainWindow();
    tessaloom::Dialogs& Dialogs();
    CanvasViewFactory Views();

    /// Shows an unexpected error, beside those before it, in one window.
    void AddReport(const ErrorReport& report);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace tessaloom
