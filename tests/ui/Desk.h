#pragma once

#include <QtTest>
#include <QtWidgets>

#include "core/SetupValues.h"
#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "support/TestPlatform.h"
#include "ui/shared/Workspace.h"

namespace tessaloom::testing {

/// Windows on the real engine, above a platform of fakes, without the main window.
class Desk : public ::testing::Test {
protected:
    /// Starts the engine with these files and with the portfolio "p.por" of them: a new one where it is not
    /// there. general: lines of section "General" of the settings file.
    void Start(const std::map<std::string, std::string>& files = {}, const std::string& general = "",
               ScriptEngine* scripts = nullptr) {
        it.files[it.files.CurrentFolder() + "\\Tessaloom.INI"].bytes = "[General]\r\n" + general;
        for (const auto& [name, bytes] : files) it.files[name].bytes = bytes;
        modMain::Main(it.platform, {.portfolio = "p.por", .views = {}, .scripts = scripts});
        workspace = std::make_unique<Workspace>(it.platform);
    }
    void TearDown() override {
        workspace->PortfolioClosing();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        workspace.reset();
        modMain::modMain_Shutdown();
        tessaloom::Setup() = {};
    }

    Portfolio& Open() { return *modMain::OpenPortfolio(); }
    Canvas& TheCanvas() { return Open().Canvas(1); }

    void Tick(int times = 1) {
        for (; times > 0; --times) {
            it.time.Advance(0.01);
            it.timer.Tick();
        }
        Q_EMIT workspace->Pulse();
    }

    static QWidget* Window(const char* name) {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == name && window->isVisible()) return window;
        return nullptr;
    }
    /// A control of a window that can be seen.
    template <typename Control>
    static Control* Find(const char* window, const char* name) {
        for (auto* control : Window(window)->findChildren<Control*>(name))
            if (control->isVisible()) return control;
        return nullptr;
    }
    static void Press(const char* window, const char* button) {
        auto* found = Find<QPushButton>(window, button);
        ASSERT_TRUE(found && found->isEnabled()) << button;
        QTest::mouseClick(found, Qt::LeftButton);
    }
    static void Press(const char* window, QDialogButtonBox::StandardButton button) {
        QTest::mouseClick(Window(window)->findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
    }

    TestPlatform it;
    std::unique_ptr<Workspace> workspace;
};

}  // namespace tessaloom::testing
