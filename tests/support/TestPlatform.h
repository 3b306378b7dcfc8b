#pragma once

#include <deque>

#include "core/RunFlags.h"
#include "core/modNumbers.h"
#include "platform/Desktop.h"
#include "platform/Dialogs.h"
#include "platform/MainWindow.h"
#include "platform/Platform.h"
#include "platform/Timer.h"
#include "platform/profile/ProfileFiles.h"
#include "support/BlockFonts.h"
#include "support/FakeCapture.h"
#include "support/FakePictures.h"
#include "support/FakeTime.h"
#include "support/FakeUrlTransfers.h"
#include "support/MemoryFileSystem.h"
#include "support/QuietSockets.h"
#include "support/TestLocales.h"

namespace tessaloom::testing {

/// Notes what was shown, and answers with what a test has laid ready: the safe answer when nothing is.
class RecordingDialogs : public Dialogs {
public:
    std::vector<std::string> shown;   ///< "title: text" of message boxes, the titles of other dialogs.
    std::vector<std::string> status;  ///< Status lines; "" for each time that it was hidden.
    bool person = true;
    std::function<void()> whileShown;  ///< What goes on while the next box or dialog is open.
    std::deque<Answer> answers;
    std::deque<std::optional<std::string>> texts, openFiles, saveFiles;

    bool Interactive() const override { return person; }
    Answer MessageBox(std::string_view text, std::string_view title, Buttons buttons = Buttons::Ok) override {
        NoteWait();
        shown.push_back(std::string(title).append(": ").append(text));
        if (const auto meanwhile = std::exchange(whileShown, {})) meanwhile();
        return answers.empty() ? SafeAnswer(buttons) : Next(answers);
    }
    std::optional<std::string> InputBox(std::string_view, std::string_view title, std::string_view) override {
        return Asked(title, texts);
    }
    std::optional<std::string> OpenFile(const FileDialog& dialog) override {
        return Asked(dialog.title, openFiles);
    }
    std::optional<std::string> SaveFile(const FileDialog& dialog) override {
        return Asked(dialog.title, saveFiles);
    }
    void ShowStatus(std::string_view text) override { status.emplace_back(text); }
    void UpdateStatus() override {}
    void HideStatus() override { status.emplace_back(); }
    void UnloadStatus() override {}

private:
    template <typename T>
    static T Next(std::deque<T>& ready) {
        T value = std::move(ready.front());
        ready.pop_front();
        return value;
    }
    std::optional<std::string> Asked(std::string_view title, std::deque<std::optional<std::string>>& ready) {
        NoteWait();
        shown.emplace_back(title);
        return ready.empty() ? std::nullopt : Next(ready);
    }
};

class RecordingDesktop : public Desktop {
public:
    std::vector<std::string> wallpapers;
    bool otherInstance = false;  ///< Another one holds every folder.

    bool SetWallpaper(std::string_view path) override {
        wallpapers.emplace_back(path);
        return true;
    }
    int beeps = 0;
    std::function<void()> onBeep;
    void Beep() override {
        ++beeps;
        if (onBeep) onBeep();
    }
    std::string UserDataFolder() const override { return "data"; }
    bool ClaimInstance(std::string_view) override { return !otherInstance; }
};

/// Notes the name of every call, with its argument where it has one.
class RecordingMainWindow : public MainWindow {
public:
    std::vector<std::string> calls;
    std::optional<WindowState> state;
    std::optional<WindowPlace> place;
    std::function<void()> pendingEvents;  ///< Runs in the next `DoEvents`.
    bool portfolioCommands = false;

    void ShowSplash() override { calls.emplace_back("ShowSplash"); }
    void RedrawSplash() override { calls.emplace_back("RedrawSplash"); }
    void CloseSplash() override { calls.emplace_back("CloseSplash"); }
    void UnloadSplash() override { calls.emplace_back("UnloadSplash"); }
    void Load(const char* tip) override { calls.push_back(std::string("Load ").append(tip)); }
    void SetState(WindowState newState) override {
        state = newState;
        calls.push_back(std::string("SetState ").append(std::to_string(static_cast<int>(newState))));
    }
    void SetPlace(const WindowPlace& newPlace) override {
        place = newPlace;
        calls.emplace_back("SetPlace");
    }
    void Show() override { calls.emplace_back("Show"); }
    void Hide() override { calls.emplace_back("Hide"); }
    void Unload() override { calls.emplace_back("Unload"); }
    void RemoveTrayIcon() override { calls.emplace_back("RemoveTrayIcon"); }
    void EnablePortfolioCommands(bool enable) override { portfolioCommands = enable; }
    void UnloadSetupWindows() override { calls.emplace_back("UnloadSetupWindows"); }
    void UnloadSecondaryWindows() override { calls.emplace_back("UnloadSecondaryWindows"); }
    PreviewSize preview;
    std::vector<std::uint8_t> previewed;  ///< The rows drawn last.
    PreviewSize Preview() const override { return preview; }
    void DrawPreview(const std::uint8_t* rows, PreviewSize size) override {
        previewed.assign(rows, rows + (size.width * 3 + 3) / 4 * 4 * size.height);
    }
    void DoEvents() override {
        if (auto events = std::exchange(pendingEvents, {})) events();
    }
    int TwipsPerPixelX() const override { return 15; }
    int TwipsPerPixelY() const override { return 15; }
};

/// Ticks when a test says so.
class ManualTimer : public Timer {
public:
    int milliseconds = 0;  ///< 0: stopped.

    void Start(int interval, std::function<void()> tick) override {
        milliseconds = interval;
        tick_ = std::move(tick);
    }
    void Stop() override { milliseconds = 0; }
    void Post(std::function<void()> work) override { posted_.push_back(std::move(work)); }

    /// What was posted, then one tick if the timer runs.
    void Tick() {
        for (const auto& work : std::exchange(posted_, {})) work();
        if (milliseconds > 0) tick_();
    }

private:
    std::function<void()> tick_;
    std::vector<std::function<void()>> posted_;
};

/// Encodes a picture (sides below 256) as the plain picture of its bottom left pixel.
class PlainJpegCodec : public FakeJpegCodec {
public:
    int encoded = 0;

    std::span<const std::uint8_t> Encode(const std::uint8_t* rows, int width, int height, int, int,
                                         std::vector<std::uint8_t>& buffer) override {
        ++encoded;
        const std::string bytes =
            PlainPicture{.width = width, .height = height, .color = rows[0] << 16 | rows[1] << 8 | rows[2]}
                .Bytes(true);
        if (buffer.size() < bytes.size()) buffer.resize(bytes.size());
        std::copy(bytes.begin(), bytes.end(), buffer.begin());
        return std::span(buffer).first(bytes.size());
    }
};

/// A whole platform of fakes for one test: files in memory, a clock that stands still, dialogs without a
/// person. While it lives, the program counts as running and numbers are read and written in English.
class TestPlatform {
public:
    FakeTime time;
    MemoryFileSystem files;
    ProfileFiles profile{files};
    UserLocale locale = EnglishLocale();
    BlockFonts fonts;
    FakePictureLoader pictureLoader;
    PlainJpegCodec jpegCodec;
    RecordingDialogs dialogs;
    RecordingDesktop desktop;
    RecordingMainWindow mainWindow;
    ManualTimer timer;
    FakeUrlTransfers urlTransfers;
    QuietSockets sockets;
    FakeCapture capture;

    Platform platform{files,   profile, locale,     time,  fonts,        pictureLoader, jpegCodec,
                      dialogs, desktop, mainWindow, timer, urlTransfers, sockets};

    TestPlatform() : flags_(Flags()) {
        platform.captureDrivers = &capture;
        modNumbers::InitNumberFormat(locale);
        Flags() = {.running = true};
    }
    ~TestPlatform() { Flags() = flags_; }
    TestPlatform(const TestPlatform&) = delete;
    TestPlatform& operator=(const TestPlatform&) = delete;

private:
    RunFlags flags_;
};

}  // namespace tessaloom::testing
