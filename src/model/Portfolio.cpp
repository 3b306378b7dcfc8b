#include "model/Portfolio.h"

#include "core/ErrorReport.h"
#include "core/INI.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/Store.h"
#include "model/Canvas.h"
#include "model/DocumentReader.h"
#include "model/PortfolioFile.h"
#include "model/PublishedCanvases.h"
#include "platform/CaptureDriver.h"
#include "platform/FileSystem.h"
#include "platform/FtpClient.h"
#include "platform/Platform.h"
#include "platform/PrivateProfile.h"
#include "platform/UrlTransfer.h"
#include "publish/VideoStreaming.h"
#include "publish/WebServer.h"
#include "script/host/Script.h"
#include "text/VWS.h"
#include "time/modTime.h"
#include "video/InputDevice.h"
#include "video/VideoFeed.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "Portfolio.cls";
constexpr int MostInputDevices = 10;

std::size_t Index(int slot) { return static_cast<std::size_t>(slot); }

VideoFeed::Tools FeedTools(const Platform& platform) {
    return {platform.captureDrivers, platform.fileSystem, platform.jpegCodec, platform.desktop,
            platform.dialogs,        platform.mainWindow, platform.timer};
}

}  // namespace

Portfolio::Portfolio(Platform& platform)
    : platform_(platform),
      errors_(platform.fileSystem, platform.locale),
      pictures_{platform.fileSystem, platform.jpegCodec, platform.pictureLoader, errors_,
                platform.urlTransfers} {
    faultHandler_ = [](const DocumentFault& fault) { Log(LogLevel::Warning, fault.Text()); };
    script_ = std::make_unique<tessaloom::Script>(*this, *this, platform.fileSystem);
    vws_ = std::make_unique<tessaloom::VWS>(*this, *this, platform.fileSystem);
    webHost_ = std::make_unique<PublishedCanvases>(*this);
    webServer_ = std::make_unique<tessaloom::WebServer>(
        *this, *webHost_,
        tessaloom::WebServer::Tools{platform.sockets, platform.fileSystem, platform.dialogs, platform.timer});
    for (int feed = 0; feed < MaxFeed; ++feed) {
        feeds_[Index(feed)] = std::make_unique<tessaloom::VideoFeed>(*this, *this, FeedTools(platform));
        tessaloom::MotionDetect& motion = feeds_[Index(feed)]->MotionDetect();
        motion.SetFeedNumber(feed);
        motion.OnTrigger([this, feed] { script_->CallMotionDetected(feed + 1); });
    }
    for (int slot = 1; slot <= MaxCanvas; ++slot)
        canvases_[Index(slot - 1)] = std::make_unique<tessaloom::Canvas>(*this, slot);
    needSaving_ = false;
}

Portfolio::~Portfolio() = default;

template <typename Work>
void Portfolio::ForOpenCanvases(Work work) {
    for (int slot = 1; slot <= MaxCanvas && Flags().running; ++slot)
        if (Canvas(slot).Enabled()) work(Canvas(slot));
}

// --- The file ---

bool Portfolio::LoadFile(Reading reading) {
    return Trap({Module, "LoadFile"}, [&] {
        INI ini(platform_.profile, fileName_);
        DocumentReader reader(ini, DocumentReader::ModeOf(reading), faultHandler_);
        const ProfileState state = platform_.profile.State(fileName_);
        if (state == ProfileState::NotText || state == ProfileState::Unreadable) {
            reader.Fault({}, {}, {}, ReasonOf(state));
            return false;
        }
        if (state == ProfileState::Missing) reader.Fault({}, {}, {}, "missing file, the defaults are taken");

        const Script::HeldBack held(*script_);
        DocumentTransaction transaction(ini);
        PortfolioFile file(*this);
        file.Load(reader);
        if (reading == Reading::Completing) {
            if (file.HoldsSecret()) ini.SetOwnerOnly();
            transaction.Commit();
        }
        // Canvases come before feeds in the file, so their layers find their feeds only now.
        for (int slot = 1; slot <= MaxCanvas; ++slot) Canvas(slot).FindFeeds();
        needSaving_ = false;
        if (reading == Reading::Completing && script_->Enabled()) {
            script_->ResetScript();
            script_->CallStartup();
        }
        return true;
    });
}

bool Portfolio::SaveFile() {
    return Trap({Module, "SaveFile"}, [&] {
        if (fileName_.empty()) return false;
        const bool written = SaveDocument(platform_.profile, fileName_, PortfolioFile(*this));
        if (written) needSaving_ = false;
        return written;
    });
}

void Portfolio::SaveCanvases() {
    Trap({Module, "SaveCanvases"}, [&] {
        for (int slot = 1; slot <= MaxCanvas; ++slot)
            if (Canvas(slot).Enabled() && Canvas(slot).NeedSaving()) Canvas(slot).SaveFile();
    });
}

void Portfolio::ResetCanvas(int slot) {
    Trap({Module, "ResetCanvas"}, [&] {
        if (slot < 1 || slot > MaxCanvas) return;
        Canvas(slot).CanvasUnload();
        canvases_[Index(slot - 1)] = std::make_unique<tessaloom::Canvas>(*this, slot);
        unloadedNames_[Index(slot)].clear();
        if (activeCanvas_ == slot) activeCanvas_ = 0;
        SettingChanged();
    });
}

void Portfolio::PortfolioUnload() {
    Trap({Module, "PortfolioUnload"}, [&] {
        if (script_->Enabled()) script_->CallShutdown();
        script_->UnloadClass();
        webServer_->UnloadClass();
        for (const auto& feed : feeds_) feed->VideoFeedUnload();
        for (const auto& device : inputDevices_) device->ClassUnload();
        for (int slot = 1; slot <= MaxCanvas; ++slot) Canvas(slot).CanvasUnload();
        activeCanvas_ = 0;
    });
}

// --- One tick ---

void Portfolio::UpdateOtherPre() {
    Trap({Module, "UpdateOtherPre"}, [&] {
        if (script_->Enabled() && script_->NextTime() <= captureTime_) {
            script_->CallInterval();
            if (!Flags().running) return;
            script_->SetNextTime();
        }
        if (vws_->Due()) {
            vws_->SetNextTime();
            if (vws_->GetCSVData()) script_->CallNewCSVData();
        }
    });
}

void Portfolio::UpdateImages() {
    Trap({Module, "UpdateImages"}, [&] {
        platform_.urlTransfers.Poll();
        ForOpenCanvases([](auto& canvas) { canvas.UpdateImage(); });
    });
}

/// Motion in a feed runs a script, which may end the program.
void Portfolio::UpdateVideoFeeds() {
    for (const auto& feed : feeds_)
        if (Flags().running) feed->Update();
}

void Portfolio::UpdateInputDevices() {
    for (const auto& device : inputDevices_)
        if (Flags().running) device->Update();
}

void Portfolio::ReopenFeeds() {
    if (platform_.captureDrivers) platform_.captureDrivers->Refresh();
    for (const auto& feed : feeds_) feed->Reopen();
    for (const auto& device : inputDevices_) device->Reopen();
}

void Portfolio::UpdateOtherPost() {
    Trap({Module, "UpdateOtherPost"}, [&] {
        ForOpenCanvases([](auto& canvas) { canvas.DoSaves(); });
        if (platform_.ftpClients) platform_.ftpClients->Poll();
        ForOpenCanvases([](auto& canvas) { canvas.VideoStreaming().Refresh(); });
        webServer_->Refresh(captureTime_);
    });
}

void Portfolio::ForceUpdate() {
    for (const auto& canvas : canvases_)
        if (canvas->Enabled()) canvas->ForceUpdate();
    script_->ForceUpdate();
    vws_->ForceUpdate();
    for (const auto& feed : feeds_) feed->SetNextTime(Now());
    for (const auto& device : inputDevices_) device->SetNextTime(Now());
}

// --- Properties ---

int Portfolio::FeedNamed(std::string_view name) const {
    for (int feed = 0; feed < MaxFeed; ++feed)
        if (VideoFeed(feed).FeedName() == name) return feed;
    return -1;
}

/// A slot whose file could not be loaded is taken last, so that its name is not lost.
int Portfolio::FreeCanvasSlot() const {
    int kept = 0;
    for (int slot = MaxCanvas; slot >= 1; --slot)
        if (!Canvas(slot).Enabled() && !unloadedNames_[Index(slot)].empty()) kept = slot;
    for (int slot = 1; slot <= MaxCanvas; ++slot)
        if (!Canvas(slot).Enabled() && unloadedNames_[Index(slot)].empty()) return slot;
    return kept;
}

int Portfolio::SlotOfFile(std::string_view path) const {
    if (path.empty()) return 0;
    for (int slot = 1; slot <= MaxCanvas; ++slot)
        if (Canvas(slot).Enabled() && platform_.fileSystem.SameFile(Canvas(slot).FileName(), path))
            return slot;
    return 0;
}

int Portfolio::CanvasesOpen() const {
    int count = 0;
    for (int slot = 1; slot <= MaxCanvas; ++slot) count += Canvas(slot).Enabled() ? 1 : 0;
    return count;
}

void Portfolio::SetFileName(std::string_view path) {
    if (Store(fileName_, std::string(path))) SettingChanged();
}

bool Portfolio::NeedSaving() const {
    if (needSaving_) return true;
    for (int slot = 1; slot <= MaxCanvas; ++slot)
        if (Canvas(slot).Enabled() && Canvas(slot).NeedSaving()) return true;
    return false;
}

void Portfolio::SetActiveCanvas(int slot) { activeCanvas_ = Clamped(slot, {0, MaxCanvas}); }

void Portfolio::SetShadowIntensity(double percent) {
    if (!Store(shadowIntensity_, percent, {0, 100})) return;
    for (int slot = 1; slot <= MaxCanvas; ++slot)
        if (Canvas(slot).Enabled()) Canvas(slot).SetShadowIntensity(static_cast<int>(shadowIntensity_ + 0.5));
}

void Portfolio::SetCaptureTime(double moment) {
    captureTime_ = moment;
    if (clockWatch_.SteppedBack(moment)) RestartTimes();
}

void Portfolio::RestartTimes() {
    for (int slot = 1; slot <= MaxCanvas; ++slot) Canvas(slot).RestartTimes();
    script_->RestartTime();
    vws_->RestartTiming();
    webServer_->RestartTimes(captureTime_);
    for (const auto& feed : feeds_) feed->RestartTimes();
    for (const auto& device : inputDevices_) device->RestartTimes();
}

void Portfolio::SetInputDeviceCount(int count) {
    const auto wanted = Index(Clamped(count, {0, MostInputDevices}));
    for (std::size_t i = wanted; i < inputDevices_.size(); ++i) inputDevices_[i]->ClassUnload();
    inputDevices_.resize(std::min(wanted, inputDevices_.size()));
    while (inputDevices_.size() < wanted)
        inputDevices_.push_back(std::make_unique<InputDevice>(*this, *this, FeedTools(platform_)));
}

void Portfolio::ReportFault(const DocumentFault& fault) {
    if (faultHandler_) faultHandler_(fault);
}

double Portfolio::Now() const { return captureTime_ != 0 ? captureTime_ : modTime::Clock(); }

double Portfolio::LastMotionTime(int feed) const {
    return feed >= 0 && feed < MaxFeed ? VideoFeed(feed).MotionDetect().LastMotionTriggerTime() : 0;
}

}  // namespace tessaloom
