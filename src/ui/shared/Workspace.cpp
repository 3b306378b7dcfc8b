#include "ui/shared/Workspace.h"

#include <algorithm>
#include <utility>

#include "core/INI.h"
#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/edit/Layers.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"

namespace tessaloom {

namespace {

constexpr std::string_view Section = "X-Desktop";

INI SettingsFile(const Platform& platform) {
    return INI(platform.profile, platform.fileSystem.CurrentFolder() + "\\" + modMain::SettingsFileName);
}

}  // namespace

Workspace::Workspace(Platform& platform, QObject* parent) : QObject(parent), platform_(platform) {
    pulse_.setInterval(PulseMilliseconds);
    connect(&pulse_, &QTimer::timeout, this, &Workspace::Pulse);
}

Workspace::~Workspace() = default;

Portfolio* Workspace::Portfolio() const { return modMain::OpenPortfolio(); }

Canvas* Workspace::CanvasAt(int slot) const {
    tessaloom::Portfolio* portfolio = Portfolio();
    if (!portfolio || slot < 1 || slot > tessaloom::Portfolio::MaxCanvas) return nullptr;
    Canvas& canvas = portfolio->Canvas(slot);
    return canvas.Enabled() ? &canvas : nullptr;
}

int Workspace::ActiveSlot() const { return CanvasAt(active_) ? active_ : 0; }

void Workspace::Activate(int slot) {
    if (tessaloom::Portfolio* portfolio = Portfolio()) portfolio->SetActiveCanvas(slot);
    if (active_ == slot) return;
    active_ = slot;
    selection_.clear();
    Q_EMIT ActiveCanvasChanged();
    Q_EMIT SelectionChanged();
    Q_EMIT HistoryChanged();
}

History* Workspace::HistoryOf(int slot) {
    if (!CanvasAt(slot)) return nullptr;
    auto& history = histories_[static_cast<std::size_t>(slot)];
    if (!history) {
        history = std::make_unique<History>(*Portfolio(), slot);
        history->OnChanged([this] {
            Q_EMIT HistoryChanged();
            Q_EMIT LayersChanged();
        });
        history->OnRenamed([this, slot](const LayerNames& names) { TakeNames(slot, names); });
    }
    return history.get();
}

void Workspace::TakeNames(int canvas, const LayerNames& names) {
    Q_EMIT LayersRenamed(canvas, names);
    if (canvas != active_) return;
    std::vector<LayerId> selection = selection_;
    for (LayerId& layer : selection) layer = NameNow(names, layer);
    Select(std::move(selection));
}

std::vector<LayerId> Workspace::Selection() const {
    std::vector<LayerId> there = selection_;
    const Canvas* canvas = ActiveCanvas();
    std::erase_if(there, [&](LayerId layer) { return !canvas || !Layers::Exists(*canvas, layer); });
    return there;
}

void Workspace::Select(std::vector<LayerId> layers) {
    if (layers == selection_) return;
    selection_ = std::move(layers);
    Q_EMIT SelectionChanged();
}

std::string Workspace::Remembered(std::string_view key) const {
    return SettingsFile(platform_).GetKey(Section, key, WriteDefault::No, {});
}

void Workspace::Remember(std::string_view key, const std::string& value) {
    INI settings = SettingsFile(platform_);
    if (settings.GetKey(Section, key, WriteDefault::No, {}) != value) settings.SetKey(Section, key, value);
}

void Workspace::PortfolioOpened() {
    active_ = 0;
    selection_.clear();
    Q_EMIT PortfolioChanged();
    Q_EMIT ActiveCanvasChanged();
    Q_EMIT SelectionChanged();
    Q_EMIT HistoryChanged();
}

void Workspace::PortfolioClosing() {
    Q_EMIT SetupMustClose();
    for (auto& history : histories_) history.reset();
    active_ = 0;
    selection_.clear();
}

void Workspace::CanvasClosed(int slot) {
    histories_.at(static_cast<std::size_t>(slot)).reset();
    if (active_ == slot) Activate(0);
}

void Workspace::SetAwake(bool awake) {
    if (awake == pulse_.isActive()) return;
    if (awake) {
        pulse_.start();
        Q_EMIT Pulse();
    } else {
        pulse_.stop();
    }
}

}  // namespace tessaloom
