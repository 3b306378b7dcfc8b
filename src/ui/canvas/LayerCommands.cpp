#include "ui/canvas/LayerCommands.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>
#include <utility>

#include "model/Canvas.h"
#include "model/edit/History.h"
#include "model/edit/Layers.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

constexpr const char* LayersFormat = "application/x-tessaloom-layers";
constexpr int PasteOffset = 10;  ///< Pixels.

bool Contains(const std::vector<LayerId>& layers, LayerId layer) { return std::ranges::count(layers, layer); }

}  // namespace

Canvas* LayerCommands::TheCanvas() const { return workspace_.CanvasAt(slot_); }

std::vector<LayerId> LayerCommands::Selection() const {
    if (!TheCanvas() || workspace_.ActiveSlot() != slot_) return {};
    return workspace_.Selection();
}

void LayerCommands::Copy() {
    const std::vector<LayerId> selection = Selection();
    if (selection.empty()) return;
    pasted_ = Layers::Copy(*TheCanvas(), selection);
    pastings_ = 1;
    auto* data = new QMimeData;
    data->setData(LayersFormat, QByteArray::fromStdString(pasted_));
    data->setText(QString::fromStdString(pasted_));
    QGuiApplication::clipboard()->setMimeData(data);
}

void LayerCommands::Cut() {
    Copy();
    pastings_ = 0;
    Remove("Cut");
}

void LayerCommands::Remove(std::string_view step) {
    const std::vector<LayerId> selection = Selection();
    if (selection.empty()) return;
    {
        const HistoryStep recorded(workspace_.HistoryOf(slot_), step);
        Layers::Remove(*TheCanvas(), selection);
    }
    workspace_.Select({});
}

void LayerCommands::Duplicate() {
    const std::vector<LayerId> selection = Selection();
    if (selection.empty()) return;
    std::vector<LayerId> copies;
    {
        const HistoryStep recorded(workspace_.HistoryOf(slot_), "Duplicate");
        copies = Layers::Duplicate(*TheCanvas(), selection, PasteOffset);
    }
    if (!copies.empty()) workspace_.Select(std::move(copies));
}

bool LayerCommands::Paste(const QMimeData& data) {
    if (!TheCanvas()) return false;
    const std::string text =
        data.hasFormat(LayersFormat) ? data.data(LayersFormat).toStdString() : data.text().toStdString();
    if (text.empty()) return false;
    if (text != pasted_) pastings_ = 0;
    std::vector<LayerId> layers;
    {
        const HistoryStep recorded(workspace_.HistoryOf(slot_), "Paste");
        layers = Layers::Paste(*TheCanvas(), text, PasteOffset * pastings_);
    }
    if (layers.empty()) return false;
    pasted_ = text;
    ++pastings_;
    workspace_.Activate(slot_);
    workspace_.Select(std::move(layers));
    return true;
}

void LayerCommands::SelectAll() {
    const Canvas* canvas = TheCanvas();
    if (!canvas) return;
    std::vector<LayerId> layers = Layers::InDrawingOrder(*canvas);
    std::erase_if(layers, [&](LayerId layer) { return !Layers::Enabled(*canvas, layer); });
    workspace_.Activate(slot_);
    workspace_.Select(std::move(layers));
}

bool LayerCommands::SelectNext(bool forward) {
    const Canvas* canvas = TheCanvas();
    if (!canvas) return false;
    std::vector<LayerId> layers = Layers::InDrawingOrder(*canvas);
    std::erase_if(layers, [&](LayerId layer) { return !Layers::Enabled(*canvas, layer); });
    if (forward) std::ranges::reverse(layers);
    const std::vector<LayerId> selection = Selection();
    auto next = layers.begin();
    if (!selection.empty()) {
        next = std::ranges::find(layers, selection.back());
        if (next != layers.end()) ++next;
    }
    if (next == layers.end()) return false;
    workspace_.Activate(slot_);
    workspace_.Select({*next});
    return true;
}

void LayerCommands::Reorder(std::string_view step, Reordering reorder, bool topmostFirst) {
    const std::vector<LayerId> selection = Selection();
    if (selection.empty()) return;
    Canvas& canvas = *TheCanvas();
    History* const history = workspace_.HistoryOf(slot_);
    const HistoryStep recorded(history, step);
    std::vector<LayerId> waiting = Layers::InDrawingOrder(canvas);
    std::erase_if(waiting, [&](LayerId layer) { return !Contains(selection, layer); });
    if (topmostFirst) std::ranges::reverse(waiting);
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        const LayerNames names = Layers::NamesAfter(canvas, waiting[i], reorder);
        for (LayerId& layer : waiting) layer = NameNow(names, layer);
        history->Renamed(names);
    }
}

void LayerCommands::Raise() { Reorder("Raise", &Layers::Raise, true); }
void LayerCommands::Lower() { Reorder("Lower", &Layers::Lower, false); }
void LayerCommands::ToFront() { Reorder("Bring to front", &Layers::ToFront, false); }
void LayerCommands::ToBack() { Reorder("Send to back", &Layers::ToBack, true); }

void LayerCommands::Nudge(int dx, int dy) {
    const std::vector<LayerId> selection = Selection();
    if (selection.empty()) return;
    std::string key = "Nudge";
    for (const LayerId layer : selection)
        key.append(layer.kind == LayerId::Kind::Text ? " T" : " G").append(std::to_string(layer.slot));
    const HistoryStep recorded(workspace_.HistoryOf(slot_), "Move", key);
    Layers::Move(*TheCanvas(), selection, dx, dy);
}

}  // namespace tessaloom
