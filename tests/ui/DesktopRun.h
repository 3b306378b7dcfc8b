#pragma once

#include <QtTest>
#include <QtWidgets>

#include "core/SetupValues.h"
#include "core/main/modMain.h"
#include "support/TestPlatform.h"
#include "ui/DesktopFrontEnd.h"
#include "ui/frmMain.h"

namespace tessaloom::testing {

/// Does something to the next modal dialog that opens.
class WhenShown {
public:
    WhenShown(const char* name, std::function<void(QWidget&)> act) {
        QObject::connect(&timer_, &QTimer::timeout, [this, name, act = std::move(act)] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (!dialog || dialog->objectName() != name) return;
            timer_.stop();
            seen_ = true;
            act(*dialog);
        });
        timer_.start(1);
    }
    ~WhenShown() { EXPECT_TRUE(seen_); }
    WhenShown(const WhenShown&) = delete;
    WhenShown& operator=(const WhenShown&) = delete;

private:
    QTimer timer_;
    bool seen_ = false;
};

/// The whole program on a desktop, above a platform of fakes. Ticks come from `it.timer`.
class DesktopRun {
public:
    TestPlatform it;
    int quits = 0;

    DesktopRun() { front_.Connect(platform_); }
    ~DesktopRun() {
        modMain::modMain_Shutdown();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        tessaloom::Setup() = {};
    }
    DesktopRun(const DesktopRun&) = delete;
    DesktopRun& operator=(const DesktopRun&) = delete;

    /// general: lines of section "General" of the settings file.
    void Start(const std::string& general = "", const std::string& portfolio = "") {
        it.files[SettingsPath()].bytes = "[General]\r\n" + general;
        modMain::StartOptions options;
        options.views = front_.Views();
        options.portfolio = portfolio;
        modMain::Main(platform_, options);
        QCoreApplication::processEvents();
    }

    std::string SettingsPath() const { return it.files.CurrentFolder() + "\\Tessaloom.INI"; }

    Dialogs& TheDialogs() { return front_.Dialogs(); }
    DesktopFrontEnd& Front() { return front_; }

    frmMain& Window() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* window = qobject_cast<frmMain*>(widget)) return *window;
        throw std::logic_error("no main window");
    }

    /// The command of a menu.
    QAction& Command(const char* name) { return *Window().findChild<QAction*>(name); }

    /// A window, panel or control within the main window.
    template <typename Widget>
    Widget& Find(const char* name) {
        return *Window().findChild<Widget*>(name);
    }

private:
    DesktopFrontEnd front_{[this] { ++quits; }};
    Platform platform_{it.files,         it.profile,      it.locale,        it.time,    it.fonts,
                       it.pictureLoader, it.jpegCodec,    front_.Dialogs(), it.desktop, front_.MainWindow(),
                       it.timer,         it.urlTransfers, it.sockets,       nullptr,    &it.capture};
};

}  // namespace tessaloom::testing
