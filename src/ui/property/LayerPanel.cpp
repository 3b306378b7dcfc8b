#include "ui/property/LayerPanel.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QStackedLayout>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "model/Canvas.h"
#include "model/edit/Layers.h"
#include "text/Text.h"
#include "time/modTime.h"
#include "ui/property/LayerTree.h"
#include "ui/shared/CommandIcon.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

constexpr double SecondsPerDay = 86400;

/// "in 12 s", "in 5 min", "in 3 h".
std::string In(double seconds) {
    const auto text = [](double number, const char* unit) {
        return "in " + std::to_string(std::lround(number)) + unit;
    };
    if (seconds < 100) return text(std::max(1.0, seconds), " s");
    if (seconds < 100 * 60) return text(seconds / 60, " min");
    return text(seconds / 3600, " h");
}

/// When the layer is looked at next.
std::string Due(const LayerTiming& timing, bool enabled, double now) {
    if (!enabled) return {};
    if (!timing.scheduleEnabled) return "off schedule";
    if (timing.force || timing.nextTime <= now) return "due";
    if (timing.nextTime >= modTime::Never) return timing.scripted ? "by script" : "never";
    return In((timing.nextTime - now) * SecondsPerDay);
}

std::string IconOf(const Canvas& canvas, LayerId layer) {
    if (layer.kind == LayerId::Kind::Text) return "text";
    switch (canvas.Graphic(layer.slot)->SourceType()) {
        case Graphic::VideoFeed:
            return "camera";
        case Graphic::Address:
            return "web";
        case Graphic::PlainBlock:
            return "block";
        case Graphic::OtherCanvas:
            return "canvas";
        default:
            return "picture";
    }
}

std::vector<LayerLine> LinesOf(const Canvas& canvas) {
    std::vector<LayerLine> lines;
    for (const LayerId layer : Layers::InDrawingOrder(canvas)) {
        const LayerTiming& timing = layer.kind == LayerId::Kind::Text ? canvas.Timing().Text(layer.slot)
                                                                      : canvas.Timing().Graphic(layer.slot);
        const bool enabled = Layers::Enabled(canvas, layer);
        lines.push_back({layer, Layers::Pass(canvas, layer), IconOf(canvas, layer),
                         Layers::Title(canvas, layer), enabled, Due(timing, enabled, canvas.Now())});
    }
    std::reverse(lines.begin(), lines.end());
    return lines;
}

void SetEnabled(Canvas& canvas, LayerId layer, bool enabled) {
    if (layer.kind == LayerId::Kind::Text)
        canvas.Text(layer.slot)->SetEnabled(enabled);
    else
        canvas.Graphic(layer.slot)->SetEnabled(enabled);
}

}  // namespace

struct LayerPanel::Parts {
    explicit Parts(Workspace& shared) : workspace(shared) {}

    Workspace& workspace;
    LayerTree* const tree = new LayerTree;
    QLabel* const empty = new QLabel;
    QStackedLayout* const pages = new QStackedLayout;
    QToolButton* add = nullptr;
    QAction* addAction = nullptr;  ///< Shows and hides `add` in its tool bar.
    std::vector<QAction*> needSelection;

    void Refresh() {
        const Canvas* canvas = workspace.ActiveCanvas();
        const std::vector<LayerLine> lines = canvas ? LinesOf(*canvas) : std::vector<LayerLine>();
        tree->ShowLines(lines);
        add->setEnabled(canvas != nullptr);
        empty->setText(canvas ? "This canvas has no layers yet." : "No canvas is open.");
        pages->setCurrentWidget(lines.empty() ? static_cast<QWidget*>(empty) : tree);
        ShowSelection();
    }

    void ShowSelection() {
        const std::vector<LayerId> selection = workspace.Selection();
        std::vector<LayerId> shown = tree->Selection();
        auto wanted = selection;
        std::sort(shown.begin(), shown.end());
        std::sort(wanted.begin(), wanted.end());
        if (shown != wanted) tree->ShowSelection(selection);
        for (QAction* action : needSelection) action->setEnabled(!selection.empty());
    }

    /// Hands the list's selection on; what was chosen before keeps its place in the order.
    void TakeSelection() {
        const std::vector<LayerId> now = tree->Selection();
        std::vector<LayerId> selection = workspace.Selection();
        std::erase_if(selection,
                      [&](LayerId layer) { return std::find(now.begin(), now.end(), layer) == now.end(); });
        for (const LayerId layer : now)
            if (std::find(selection.begin(), selection.end(), layer) == selection.end())
                selection.push_back(layer);
        workspace.Select(std::move(selection));
    }

    /// Runs `change` on the canvas in hand as one step; the layers that it returns are selected then.
    void Step(std::string_view name, const std::function<std::vector<LayerId>(Canvas&)>& change) {
        Canvas* canvas = workspace.ActiveCanvas();
        if (!canvas) return;
        std::vector<LayerId> chosen;
        {
            HistoryStep step(workspace.HistoryOf(workspace.ActiveSlot()), name);
            chosen = change(*canvas);
        }
        workspace.TellLayersChanged();
        workspace.Select(std::move(chosen));
        Refresh();
    }

    void Delete() {
        const std::vector<LayerId> selection = workspace.Selection();
        if (selection.empty()) return;
        Step("Delete", [&](Canvas& canvas) {
            Layers::Remove(canvas, selection);
            return std::vector<LayerId>();
        });
    }

    void Duplicate() {
        const std::vector<LayerId> selection = workspace.Selection();
        if (selection.empty()) return;
        Step("Duplicate", [&](Canvas& canvas) { return Layers::Duplicate(canvas, selection); });
    }

    /// Changes the place of one layer; the selection follows.
    void Reorder(std::string_view name, LayerId layer,
                 const std::function<LayerId(Canvas&, LayerId)>& shift) {
        Step(name, [&](Canvas& canvas) {
            workspace.HistoryOf(workspace.ActiveSlot())->Renamed(Layers::NamesAfter(canvas, layer, shift));
            return workspace.Selection();
        });
    }

    /// Steps the layer in hand up or down.
    void Shift(std::string_view name, LayerId (*shift)(Canvas&, LayerId)) {
        const std::vector<LayerId> selection = workspace.Selection();
        if (!selection.empty()) Reorder(name, selection.back(), shift);
    }

    void Switch(LayerId layer, bool enabled) {
        const std::vector<LayerId> selection = workspace.Selection();
        Step(enabled ? "Switch on" : "Switch off", [&](Canvas& canvas) {
            if (Layers::Exists(canvas, layer)) SetEnabled(canvas, layer, enabled);
            return selection;
        });
    }

    void Move(LayerId layer, int pass, LayerId below) {
        Reorder("Reorder", layer, [pass, below](Canvas& canvas, LayerId moved) {
            return Layers::Reorder(canvas, moved, pass, below);
        });
    }
};

LayerPanel::LayerPanel(Workspace& workspace, QWidget* parent)
    : QWidget(parent), parts_(new Parts(workspace)) {
    Parts& parts = *parts_;
    parts.tree->setObjectName("layers");
    parts.empty->setAlignment(Qt::AlignCenter);
    parts.empty->setWordWrap(true);
    parts.empty->setForegroundRole(QPalette::PlaceholderText);
    parts.pages->addWidget(parts.empty);
    parts.pages->addWidget(parts.tree);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addLayout(parts.pages, 1);
    layout->addWidget(MakeTools());

    connect(parts.tree, &LayerTree::SelectionMade, this, [this] { parts_->TakeSelection(); });
    connect(parts.tree, &LayerTree::Switched, this,
            [this](LayerId layer, bool enabled) { parts_->Switch(layer, enabled); });
    connect(parts.tree, &LayerTree::Dropped, this,
            [this](LayerId layer, int pass, LayerId below) { parts_->Move(layer, pass, below); });
    connect(parts.tree, &LayerTree::DeletePressed, this, [this] { parts_->Delete(); });
    connect(&workspace, &Workspace::SelectionChanged, this, [this] { parts_->ShowSelection(); });
    for (auto signal : {&Workspace::Pulse, &Workspace::LayersChanged, &Workspace::ActiveCanvasChanged})
        connect(&workspace, signal, this, [this] {
            if (isVisible()) parts_->Refresh();
        });
    parts.Refresh();
}

LayerPanel::~LayerPanel() { parts_->tree->disconnect(this); }

void LayerPanel::SetAddMenu(QMenu* menu) {
    parts_->add->setMenu(menu);
    parts_->addAction->setVisible(menu != nullptr);
}

QWidget* LayerPanel::MakeTools() {
    Parts& parts = *parts_;
    auto* tools = new QToolBar;
    tools->setIconSize(QSize(1, 1) * fontMetrics().height());
    parts.add = new QToolButton;
    parts.add->setObjectName("layerAdd");
    parts.add->setIcon(CommandIcon("add", palette()));
    parts.add->setText("Add");
    parts.add->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    parts.add->setPopupMode(QToolButton::InstantPopup);
    parts.add->setFocusPolicy(Qt::StrongFocus);
    parts.add->setToolTip("Add a layer");
    parts.addAction = tools->addWidget(parts.add);
    parts.addAction->setVisible(false);

    const auto tool = [&](const char* icon, const QString& name, const QString& tip,
                          std::function<void()> run) {
        QAction* action = tools->addAction(CommandIcon(icon, palette()), tip, this, std::move(run));
        action->setObjectName(name);
        parts.needSelection.push_back(action);
        QWidget* button = tools->widgetForAction(action);
        button->setObjectName(name);
        button->setFocusPolicy(Qt::StrongFocus);
    };
    tool("duplicate", "layerDuplicate", "Duplicate", [this] { parts_->Duplicate(); });
    tool("delete", "layerDelete", "Delete", [this] { parts_->Delete(); });
    tool("up", "layerUp", "Raise", [this] { parts_->Shift("Raise", &Layers::Raise); });
    tool("down", "layerDown", "Lower", [this] { parts_->Shift("Lower", &Layers::Lower); });
    return tools;
}

void LayerPanel::showEvent(QShowEvent* event) {
    parts_->Refresh();
    QWidget::showEvent(event);
}

}  // namespace tessaloom
