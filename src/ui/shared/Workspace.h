#pragma once

#include <QObject>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/Portfolio.h"
#include "model/edit/History.h"
#include "model/edit/LayerId.h"

class QWidget;

namespace tessaloom {

struct Platform;

/// What the windows share: the open portfolio, the canvas in hand, its selected layers, and one slow pulse on
/// which they look at what changed.
///
/// The engine knows nothing of windows and is changed by scripts and ticks at any time; windows therefore
/// keep slots, never pointers, and look again at each `Pulse`.
class Workspace : public QObject {
    Q_OBJECT

public:
    static constexpr int PulseMilliseconds = 250;

    explicit Workspace(Platform& platform, QObject* parent = nullptr);
    ~Workspace() override;

    Platform& Services() const { return platform_; }

    /// The open portfolio; null when there is none.
    tessaloom::Portfolio* Portfolio() const;

    /// The canvas of `slot` while it is in use, else null.
    Canvas* CanvasAt(int slot) const;

    /// The slot of the canvas whose window is active; 0 when none is.
    int ActiveSlot() const;
    Canvas* ActiveCanvas() const { return CanvasAt(ActiveSlot()); }
    void Activate(int slot);

    /// The canvas's history, made when it is first asked for; null for a slot that is not in use.
    History* HistoryOf(int slot);

    /// The selected layers of the active canvas, in the order in which they were chosen; those that have gone
    /// since are left out.
    std::vector<LayerId> Selection() const;
    void Select(std::vector<LayerId> layers);

    /// Small things that the desktop remembers between two runs (places of windows, recent portfolios), in
    /// the section "X-Desktop" of the settings file.
    std::string Remembered(std::string_view key) const;
    void Remember(std::string_view key, const std::string& value);

    /// Called by the main window.
    void PortfolioOpened();
    void PortfolioClosing();      ///< Before the portfolio goes: set-up windows close.
    void CanvasClosed(int slot);  ///< Its history goes with it.
    void SetAwake(bool awake);    ///< The pulse runs only while something can be seen.
    void TellLayersChanged() { Q_EMIT LayersChanged(); }

Q_SIGNALS:
    void Pulse();             ///< Four times a second while a window can be seen.
    void PortfolioChanged();  ///< Another portfolio is open, or none.
    void SetupMustClose();    ///< Set-up windows close without a question, keeping what was set.
    void ActiveCanvasChanged();
    void SelectionChanged();
    /// Layers of a canvas exchanged their names, also by undoing that; the selection follows by itself.
    void LayersRenamed(int canvas, const tessaloom::LayerNames& names);
    void LayersChanged();   ///< Layers came, went or changed their order, by a command of a window.
    void HistoryChanged();  ///< Undo and redo have other names.

private:
    void TakeNames(int canvas, const LayerNames& names);

    Platform& platform_;
    QTimer pulse_;
    int active_ = 0;
    std::vector<LayerId> selection_;
    std::array<std::unique_ptr<History>, tessaloom::Portfolio::MaxCanvas + 1> histories_;
};

}  // namespace tessaloom
