#include "model/Canvas.h"

#include <algorithm>

#include "core/ErrorReport.h"
#include "core/INI.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/Store.h"
#include "imaging/Graphic.h"
#include "imaging/Percent.h"
#include "model/CanvasFile.h"
#include "model/DocumentReader.h"
#include "model/Portfolio.h"
#include "model/PortfolioFile.h"
#include "platform/Platform.h"
#include "platform/PrivateProfile.h"
#include "publish/CanvasSaves.h"
#include "publish/VideoStreaming.h"
#include "script/host/Script.h"
#include "text/Text.h"
#include "video/VideoFeed.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "Canvas.cls";

bool IsSlot(int slot) { return slot >= 1 && slot <= LayerTimingTable::Slots; }
std::size_t Index(int slot) { return static_cast<std::size_t>(slot); }
std::size_t GraphicPlace(int slot) { return Index(slot - 1); }
std::size_t TextPlace(int slot) { return Index(Canvas::MaxGraphic + slot - 1); }

template <typename Layers>
int FreeSlot(const Layers& layers) {
    for (int slot = 1; slot <= LayerTimingTable::Slots; ++slot)
        if (!layers[Index(slot)]) return slot;
    return 0;
}

}  // namespace

Canvas::Canvas(Portfolio& portfolio, int slot) : portfolio_(portfolio), slot_(slot) {
    MakeParts();
    needSaving_ = false;
}

Canvas::~Canvas() = default;

void Canvas::MakeParts() {
    Platform& platform = portfolio_.PlatformServices();
    saves_ = std::make_unique<CanvasSaves>(
        *this, *this, CanvasSaves::Tools{platform.fileSystem, platform.jpegCodec, platform.desktop});
    saves_->OnSequentialNumber([this](int number) {
        // A file that is gone is not made anew: one with this key alone would pass as the canvas.
        PrivateProfile& profile = portfolio_.PlatformServices().profile;
        if (profile.State(fileName_) == ProfileState::Readable)
            INI(profile, fileName_).SetKey("Capture", "SequentialNumber", std::to_string(number));
    });
    saves_->OnFailure([this](const std::string& message) { Log(LogLevel::Warning, name_ + ": " + message); });

    videoStreaming_ = std::make_unique<tessaloom::VideoStreaming>(*this, *this);
    if (platform.ftpClients)
        videoStreaming_->FTPPush().Use({platform.fileSystem, platform.jpegCodec, *platform.ftpClients},
                                       picture_, slot_);
    CanvasWebServer& page = videoStreaming_->CanvasWebServer();
    page.SetCanvasIndex(slot_);
    page.SetPicture(picture_, platform.jpegCodec);
    page.SetFileName(PortfolioFile::CanvasSection(slot_) + ".jpg");  // as in a file without this key
    for (Schedule* schedule :
         {&saves_->FixedSchedule(), &saves_->SequentialSchedule(), &saves_->BackgroundSchedule(),
          &videoStreaming_->FTPPush().Schedule(), &videoStreaming_->CanvasWebServer().Schedule()}) {
        schedule->SetCanvasIndex(slot_);
        schedule->SetRedraw([this] { ForceRedraw(); });
    }
}

// --- The file ---

bool Canvas::LoadFile(Reading reading) {
    return Trap({Module, "LoadFile"}, [&] {
        INI ini(portfolio_.PlatformServices().profile, fileName_);
        const DocumentFaultHandler faults = [this](const DocumentFault& fault) {
            portfolio_.ReportFault(fault);
        };
        DocumentReader reader(ini, DocumentReader::ModeOf(reading), faults);
        const ProfileState state = portfolio_.PlatformServices().profile.State(fileName_);
        if (state != ProfileState::Readable) {
            reader.Fault({}, {}, {}, ReasonOf(state));
            return false;
        }
        DocumentTransaction transaction(ini);
        CanvasFile file(*this);
        file.Load(reader);
        if (reading == Reading::Completing) {
            if (file.HoldsSecret()) ini.SetOwnerOnly();
            transaction.Commit();
        }
        FindFeeds();
        ForceRedraw();
        needSaving_ = false;
        return true;
    });
}

bool Canvas::SaveFile() {
    return Trap({Module, "SaveFile"}, [&] {
        if (fileName_.empty()) return false;
        NameFeeds();
        const bool written =
            SaveDocument(portfolio_.PlatformServices().profile, fileName_, CanvasFile(*this));
        if (written) needSaving_ = false;
        return written;
    });
}

void Canvas::FindFeeds() {
    const bool needSaving = needSaving_;
    for (const auto& graphic : graphics_)
        if (graphic && !graphic->SourceVideoFeedName().empty())
            graphic->SetSourceVideoFeed(portfolio_.FeedNamed(graphic->SourceVideoFeedName()));
    needSaving_ = needSaving;
}

/// The file knows a feed by its name, which may have changed, or been chosen by slot.
void Canvas::NameFeeds() {
    for (const auto& graphic : graphics_) {
        if (!graphic || graphic->SourceType() != Graphic::VideoFeed) continue;
        const int feed = graphic->SourceVideoFeed();
        if (feed < 0 || feed >= Portfolio::MaxFeed) continue;
        const std::string& name = portfolio_.VideoFeed(feed).FeedName();
        if (!name.empty()) graphic->SetSourceVideoFeedName(name);
    }
}

// --- The update cycle ---

void Canvas::UpdateImage() {
    Trap({Module, "UpdateImage"}, [&] {
        const double now = Now();
        composeForced_ = false;
        AskSchedules(now);
        if (!UpdateTexts(now) || !UpdateGraphics(now)) return;
        // Without layers there is nothing more to do: the last composition left the plain background.
        if (NeedsComposing()) Compose();
    });
}

void Canvas::AskSchedules(double now) {
    if (scheduledStale_) FindScheduledLayers();
    for (const ScheduledLayer& layer : scheduled_) {
        const bool enabled = layer.schedule.EnableNow(now);
        if (Store(layer.timing.scheduleEnabled, enabled)) ForceRedraw();
    }
}

/// Few layers have a daily window, and only those need to be asked. One that lost its window is asked once
/// more.
void Canvas::FindScheduledLayers() {
    scheduledStale_ = false;
    scheduled_.clear();
    const auto look = [&](LayerTiming& timing, Schedule& schedule) {
        if (schedule.ScheduleMode() != Schedule::Always || !timing.scheduleEnabled)
            scheduled_.push_back({timing, schedule});
    };
    for (int slot = 1; slot <= MaxText; ++slot)
        if (texts_[Index(slot)]) look(timing_.Text(slot), texts_[Index(slot)]->Schedule());
    for (int slot = 1; slot <= MaxGraphic; ++slot)
        if (graphics_[Index(slot)]) look(timing_.Graphic(slot), graphics_[Index(slot)]->Schedule());
}

bool Canvas::Due(const LayerTiming& timing, double now) const {
    return timing.scheduleEnabled && (timing.nextTime <= now || timing.force || forceReload_);
}

/// Both return false when a script hook ended the program.
bool Canvas::UpdateTexts(double now) {
    int highest = 0;
    for (int slot = 1; slot <= std::min(textHighWater_, MaxText); ++slot) {
        LayerTiming& timing = timing_.Text(slot);
        if (!timing.present) continue;
        highest = slot;
        if (!Due(timing, now)) continue;
        const auto& text = texts_[Index(slot)];
        if (!text->Enabled()) continue;
        text->ProcessText();
        text->SetNextTime();
        if (timing.scripted && portfolio_.Script().AllowTextUpdate()) {
            portfolio_.Script().CallTextUpdate(slot_, slot);
            if (!Flags().running) return false;
            if (!text) continue;  // removed while the hook waited for a person
        }
        if (timing.force) composeForced_ = true;
        text->UpdateImage();
        timing.force = false;
    }
    textHighWater_ = highest;
    return true;
}

bool Canvas::UpdateGraphics(double now) {
    int highest = 0;
    for (int slot = 1; slot <= std::min(graphicHighWater_, MaxGraphic); ++slot) {
        LayerTiming& timing = timing_.Graphic(slot);
        if (!timing.present) continue;
        highest = slot;
        const auto& graphic = graphics_[Index(slot)];
        // A camera that starts slowly is not to leave its layer empty until the next round.
        const bool arrived = timing.scheduleEnabled && graphic->SourceArrived();
        if (!arrived && !Due(timing, now)) continue;
        if (!graphic->Enabled()) continue;
        graphic->SetNextTime();
        if (timing.scripted && portfolio_.Script().AllowGraphicUpdate()) {
            portfolio_.Script().CallGraphicUpdate(slot_, slot);
            if (!Flags().running) return false;
            if (!graphic) continue;
        }
        if (timing.force) composeForced_ = true;
        graphic->UpdateImage();
        timing.force = false;
    }
    graphicHighWater_ = highest;
    return true;
}

bool Canvas::SourcesPending() const {
    return std::ranges::any_of(graphics_, [](const auto& graphic) {
        return graphic && graphic->Enabled() && graphic->SourcePending();
    });
}

bool Canvas::NeedsComposing() const {
    return forceRedraw_ || forceReload_ || composeForced_ ||
           std::ranges::find(passChanged_, true) != passChanged_.end();
}

void Canvas::Compose() {
    textHighWater_ = MaxText + 1;
    graphicHighWater_ = MaxGraphic;
    picture_.SetWidthHeight(width_, height_);
    if (!picture_.hDIB()) picture_.CreateDIB();  // it was unloaded, or there was no memory
    if (forceRedraw_ || forceReload_) composition_.Invalidate();
    CollectLayers();
    composition_.Compose(picture_, Ground(), layers_);
    passChanged_.fill(false);
    forceRedraw_ = false;
    forceReload_ = false;
    CopyTofrmMain();
}

void Canvas::AddTextAndGraphicLayer(int pass) {
    Trap({Module, "AddTextAndGraphicLayer"}, [&] {
        CollectLayers();
        composition_.AddPass(picture_, Ground(), layers_, pass);
    });
}

void Canvas::CollectLayers() {
    const auto shown = [](const auto& layer, const LayerTiming& timing) {
        const bool isShown = timing.present && timing.scheduleEnabled && layer->Enabled();
        return isShown ? Composition::Shown{layer.get(), layer->Layer()} : Composition::Shown{};
    };
    for (int slot = 1; slot <= MaxGraphic; ++slot)
        layers_[GraphicPlace(slot)] = shown(graphics_[Index(slot)], timing_.Graphic(slot));
    for (int slot = 1; slot <= MaxText; ++slot)
        layers_[TextPlace(slot)] = shown(texts_[Index(slot)], timing_.Text(slot));
}

Composition::Ground Canvas::Ground() const { return {backgroundColor_, To255(shadowIntensity_)}; }

void Canvas::CopyTofrmMain() {
    Trap({Module, "CopyTofrmMain"}, [&] {
        if (view_) view_->ShowPicture(picture_);
    });
}

void Canvas::DoSaves() { saves_->DoSaves(picture_); }

void Canvas::ForceUpdate() {
    for (const auto& text : texts_)
        if (text) text->ForceUpdate();
    for (const auto& graphic : graphics_)
        if (graphic) graphic->ForceUpdate();
    saves_->ForceUpdate();
    videoStreaming_->FTPPush().ForceUpdate();
}

void Canvas::RestartTimes() {
    for (const auto& text : texts_)
        if (text) text->RestartTiming();
    for (const auto& graphic : graphics_)
        if (graphic) graphic->RestartTiming();
    saves_->RestartTimes();
    videoStreaming_->RestartTimes();
}

void Canvas::CanvasUnload() {
    Trap({Module, "CanvasUnload"}, [&] {
        for (int slot = 1; slot <= MaxText; ++slot) RemoveText(slot);
        for (int slot = 1; slot <= MaxGraphic; ++slot) RemoveGraphic(slot);
        view_.reset();
        videoStreaming_->UnloadClass();
        picture_.UnloadClass();
        composition_.UnloadClass();
        visible_ = false;
        enabled_ = false;
        needSaving_ = false;
        forceRedraw_ = true;
    });
}

// --- Layers ---

tessaloom::Text* Canvas::Text(int slot) const { return IsSlot(slot) ? texts_[Index(slot)].get() : nullptr; }

tessaloom::Graphic* Canvas::Graphic(int slot) const {
    return IsSlot(slot) ? graphics_[Index(slot)].get() : nullptr;
}

tessaloom::Text* Canvas::AddText(int slot) {
    if (!IsSlot(slot)) return nullptr;
    auto& text = texts_[Index(slot)];
    if (text) return text.get();
    text = std::make_unique<tessaloom::Text>(*this, timing_.Text(slot), portfolio_.PlatformServices().fonts,
                                             &portfolio_);
    timing_.Text(slot).present = true;
    text->SetCanvasValue(slot_);
    text->SetIndexValue(slot);
    textHighWater_ = MaxText + 1;
    PassChanged(text->Layer());
    SettingChanged();
    return text.get();
}

tessaloom::Graphic* Canvas::AddGraphic(int slot) {
    if (!IsSlot(slot)) return nullptr;
    auto& graphic = graphics_[Index(slot)];
    if (graphic) return graphic.get();
    graphic = std::make_unique<tessaloom::Graphic>(*this, timing_.Graphic(slot), portfolio_.Pictures());
    timing_.Graphic(slot).present = true;
    graphic->SetCanvasValue(slot_);
    graphic->SetIndexValue(slot);
    graphicHighWater_ = MaxGraphic;
    PassChanged(graphic->Layer());
    SettingChanged();
    return graphic.get();
}

void Canvas::RemoveText(int slot) {
    tessaloom::Text* const text = Text(slot);
    if (!text) return;
    PassChanged(text->Layer());
    text->UnloadClass();
    texts_[Index(slot)].reset();
    timing_.Text(slot) = {};
    composition_.Forget(TextPlace(slot));
    SettingChanged();
}

void Canvas::RemoveGraphic(int slot) {
    tessaloom::Graphic* const graphic = Graphic(slot);
    if (!graphic) return;
    PassChanged(graphic->Layer());
    graphic->UnloadClass();
    graphics_[Index(slot)].reset();
    timing_.Graphic(slot) = {};
    composition_.Forget(GraphicPlace(slot));
    SettingChanged();
}

int Canvas::FreeTextSlot() const { return FreeSlot(texts_); }
int Canvas::FreeGraphicSlot() const { return FreeSlot(graphics_); }

// --- Properties ---

void Canvas::Touch() { needSaving_ = true; }

void Canvas::WindowSettingChanged() {
    Touch();
    if (view_) view_->CanvasChanged();
}

void Canvas::SetName(std::string_view name) {
    if (Store(name_, std::string(name))) WindowSettingChanged();
}

void Canvas::SetFileName(std::string_view path) {
    if (!Store(fileName_, std::string(path))) return;
    Touch();
    portfolio_.SettingChanged();
}

void Canvas::SetWidthHeight(int width, int height) {
    const bool widthChanged = Store(width_, width, {1, MaxWidth});
    if (!Store(height_, height, {1, MaxHeight}) && !widthChanged) return;
    if (picture_.hDIB()) {
        picture_.SetWidthHeight(width_, height_);
        picture_.Clear(backgroundColor_);
    }
    ForceRedraw();
    WindowSettingChanged();
}

void Canvas::SetSizeLocked(bool locked) {
    if (Store(sizeLocked_, locked)) WindowSettingChanged();
}

void Canvas::SetLeft(int position) {
    if (Store(left_, position)) WindowSettingChanged();
}

void Canvas::SetTop(int position) {
    if (Store(top_, position)) WindowSettingChanged();
}

void Canvas::SetWindowState(int state) {
    if (Store(windowState_, state == 2 ? 0 : state, {0, 1})) WindowSettingChanged();
}

void Canvas::SetShadowIntensity(int percent) {
    if (!Store(shadowIntensity_, percent, {0, 100})) return;
    ForceRedraw();
    Touch();
}

void Canvas::SetBackgroundColor(int colour) {
    if (!Store(backgroundColor_, colour, {0, 0xFFFFFF})) return;
    ForceRedraw();
    Touch();
}

void Canvas::SetFormType(int type) {
    if (Store(formType_, type)) WindowSettingChanged();
}

void Canvas::SetEnabled(bool enabled) {
    if (!Store(enabled_, enabled)) return;
    ForceRedraw();
    portfolio_.SettingChanged();
}

void Canvas::SetVisible(bool visible) {
    if (!Store(visible_, visible)) return;
    view_.reset();
    if (visible && portfolio_.ViewFactory()) view_ = portfolio_.ViewFactory()(*this);
    if (view_ && picture_.hDIB()) CopyTofrmMain();
}

void Canvas::ActivitateFormTimer() {
    if (view_) view_->ActivitateFormTimer();
}

// --- LayerHost ---

void Canvas::SettingChanged() {
    Touch();
    scheduledStale_ = true;
}

double Canvas::Now() const { return portfolio_.Now(); }

void Canvas::PassChanged(int pass) {
    if (pass >= 0 && pass < Passes) passChanged_[Index(pass)] = true;
}

const DIB* Canvas::CanvasPicture(int canvas) const {
    if (canvas < 1 || canvas > Portfolio::MaxCanvas) return nullptr;
    const Canvas& source = portfolio_.Canvas(canvas);
    return source.Enabled() && source.picture_.hDIB() ? &source.picture_ : nullptr;
}

std::shared_ptr<const DIB> Canvas::FeedFrame(int feed) const {
    return feed >= 0 && feed < Portfolio::MaxFeed ? portfolio_.VideoFeed(feed).Frame() : nullptr;
}

}  // namespace tessaloom
