#pragma once

#include <cstdint>

namespace tessaloom {

/// The states of a window, with the numbers that the files hold.
enum class WindowState { Normal = 0, Minimized = 1, Maximized = 2 };

/// Twips: 1/1440 inch.
struct WindowPlace {
    int left = 0, top = 0, width = 0, height = 0;
};

/// Pixels.
struct PreviewSize {
    int width = 0, height = 0;
};

/// The main window, its splash and its tray icon, as start-up and shutdown drive them.
///
/// Without a desktop nothing is shown and every call is accepted.
class MainWindow {
public:
    virtual ~MainWindow() = default;

    virtual void ShowSplash() = 0;
    virtual void RedrawSplash() = 0;
    virtual void CloseSplash() = 0;
    virtual void UnloadSplash() = 0;

    /// Creates the window, hidden, and its tray icon with `tip` (at most 63 characters are shown).
    virtual void Load(const char* tip) = 0;
    virtual void SetState(WindowState state) = 0;
    virtual void SetPlace(const WindowPlace& place) = 0;
    virtual void Show() = 0;
    virtual void Hide() = 0;
    virtual void Unload() = 0;
    virtual void RemoveTrayIcon() = 0;

    /// Enables or disables the menu commands that need an open portfolio.
    virtual void EnablePortfolioCommands(bool enable) = 0;

    /// Closes the set-up windows of the portfolio; closes every other secondary window.
    virtual void UnloadSetupWindows() = 0;
    virtual void UnloadSecondaryWindows() = 0;

    /// The size of the box that previews a feed; 0 x 0 where none can be seen.
    virtual PreviewSize Preview() const = 0;

    /// Shows a picture of that size in it: blue, green, red, rows padded to 4 bytes, bottom row first.
    virtual void DrawPreview(const std::uint8_t* rows, PreviewSize size) = 0;

    /// Lets pending window events run.
    virtual void DoEvents() = 0;

    /// The screen's twips per pixel; 15 without a desktop (96 pixels an inch).
    virtual int TwipsPerPixelX() const = 0;
    virtual int TwipsPerPixelY() const = 0;
};

}  // namespace tessaloom
