#pragma once

#include <functional>
#include <utility>

#include "platform/MainWindow.h"

namespace tessaloom {

/// The main window of a server: there is none. Unloading it ends the program, as it does on a desktop.
class HeadlessMainWindow : public MainWindow {
public:
    explicit HeadlessMainWindow(std::function<void()> unloaded) : unloaded_(std::move(unloaded)) {}

    void ShowSplash() override {}
    void RedrawSplash() override {}
    void CloseSplash() override {}
    void UnloadSplash() override {}
    void Load(const char*) override {}
    void SetState(WindowState) override {}
    void SetPlace(const WindowPlace&) override {}
    void Show() override {}
    void Hide() override {}
    void Unload() override { unloaded_(); }
    void RemoveTrayIcon() override {}
    void EnablePortfolioCommands(bool) override {}
    void UnloadSetupWindows() override {}
    void UnloadSecondaryWindows() override {}
    PreviewSize Preview() const override { return {}; }
    void DrawPreview(const std::uint8_t*, PreviewSize) override {}
    void DoEvents() override {}
    int TwipsPerPixelX() const override { return 15; }
    int TwipsPerPixelY() const override { return 15; }

private:
    std::function<void()> unloaded_;
};

}  // namespace tessaloom
