#include "ui/canvas/Gesture.h"

#include <algorithm>
#include <cmath>

#include "model/Canvas.h"
#include "model/edit/History.h"
#include "text/Text.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

// In the widget's units.
constexpr double DragDistance = 3;
constexpr double SnapDistance = 6;

constexpr double TurnStep = 15;

QRectF BoundsOf(const Canvas& canvas, const std::vector<LayerId>& layers) {
    QRectF bounds;
    for (const LayerId layer : layers)
        if (const auto place = Layers::GeometryOf(canvas, layer))
            bounds |= QRectF(place->left, place->top, place->right - place->left, place->bottom - place->top);
    return bounds;
}

bool Contains(const std::vector<LayerId>& layers, LayerId layer) { return std::ranges::count(layers, layer); }

}  // namespace

Canvas* Gesture::TheCanvas() const { return workspace_.CanvasAt(slot_); }

void Gesture::Press(const Pointer& pointer, const Grip& grip) {
    if (state_ != State::Idle) Finish();
    if (!TheCanvas()) return;
    state_ = State::Pressed;
    start_ = pointer;
    grip_ = grip;
    spans_ = false;
    narrow_.reset();
    if (grip.kind == Grip::Kind::None) Pick(pointer);
}

void Gesture::Pick(const Pointer& pointer) {
    const std::vector<LayerId> hits = Layers::At(*TheCanvas(), pointer.at.x(), pointer.at.y());
    const bool adds = pointer.keys & (Qt::ControlModifier | Qt::ShiftModifier);
    found_ = workspace_.Selection();
    const auto isSelected = [&](LayerId layer) { return Contains(found_, layer); };
    if (hits.empty()) {
        spans_ = true;
        if (!adds) {
            found_.clear();
            workspace_.Select({});
        }
    } else if (pointer.keys & Qt::AltModifier) {
        const auto chosen = std::ranges::find_if(hits, isSelected);
        const std::size_t index =
            chosen == hits.end() ? 1 : static_cast<std::size_t>(chosen - hits.begin()) + 1;
        workspace_.Select({hits[index % hits.size()]});
    } else if (adds) {
        Toggle(hits.front());
    } else if (std::ranges::any_of(hits, isSelected)) {
        narrow_ = hits.front();
    } else {
        workspace_.Select({hits.front()});
    }
}

void Gesture::Toggle(LayerId layer) {
    std::vector<LayerId> selection = found_;
    if (Contains(selection, layer)) {
        std::erase(selection, layer);
        state_ = State::Idle;  // what was taken out is not dragged
    } else {
        selection.push_back(layer);
    }
    workspace_.Select(std::move(selection));
}

void Gesture::Move(const Pointer& pointer) {
    if (state_ == State::Idle) return;
    Canvas* canvas = TheCanvas();
    if (!canvas) return Abandon();
    if (state_ == State::Pressed) {
        const QPointF way = pointer.at - start_.at;
        if (std::hypot(way.x(), way.y()) < DragDistance * pointer.unit) return;
        Begin(*canvas);
    }
    Drag(*canvas, pointer);
}

void Gesture::Begin(Canvas& canvas) {
    if (spans_) {
        state_ = State::Spanning;
        return;
    }
    layers_ = workspace_.Selection();
    if (grip_.kind != Grip::Kind::None && !layers_.empty()) layers_.resize(1);
    const auto first = layers_.empty() ? std::nullopt : Layers::GeometryOf(canvas, layers_.front());
    if (!first) {
        state_ = State::Idle;
        return;
    }
    frame_ = LayerFrame::Of(*first);
    bounds_ = BoundsOf(canvas, layers_);
    moved_ = {};
    snapping_ = Snapping(canvas, layers_);
    switch (grip_.kind) {
        case Grip::Kind::None:
            state_ = State::Moving;
            return Record("Move");
        case Grip::Kind::Size:
            state_ = State::Sizing;
            return Record("Resize");
        case Grip::Kind::Turn:
            state_ = State::Turning;
            return Record("Turn");
    }
}

void Gesture::Record(const char* name) {
    if (History* history = workspace_.HistoryOf(slot_)) {
        history->Begin(name);
        recording_ = true;
    }
}

bool Gesture::DropMissing(const Canvas& canvas) {
    std::erase_if(layers_, [&](LayerId layer) { return !Layers::Exists(canvas, layer); });
    return !layers_.empty();
}

void Gesture::Drag(Canvas& canvas, const Pointer& pointer) {
    hit_ = {};
    if (state_ == State::Spanning) return DragSpan(canvas, pointer);
    if (state_ == State::Idle) return;
    if (!DropMissing(canvas)) return Finish();
    if (state_ == State::Moving)
        DragLayers(canvas, pointer);
    else
        DragGrip(canvas, pointer);
}

void Gesture::DragLayers(Canvas& canvas, const Pointer& pointer) {
    QPointF by = pointer.at - start_.at;
    const bool straight = pointer.keys & Qt::ShiftModifier;
    const bool sideways = std::abs(by.x()) >= std::abs(by.y());
    if (straight) (sideways ? by.ry() : by.rx()) = 0;
    if (!(pointer.keys & Qt::AltModifier))
        hit_ = snapping_.Move(bounds_.translated(by), SnapDistance * pointer.unit);
    if (straight && sideways) {
        hit_.shift.setY(0);
        hit_.y.reset();
    } else if (straight) {
        hit_.shift.setX(0);
        hit_.x.reset();
    }
    const QPoint target = (by + hit_.shift).toPoint();
    const QPoint step = target - moved_;
    moved_ = target;
    if (!step.isNull()) Layers::Move(canvas, layers_, step.x(), step.y());
}

void Gesture::DragGrip(Canvas& canvas, const Pointer& pointer) {
    const LayerId layer = layers_.front();
    if (state_ == State::Turning) {
        const double step = pointer.keys & Qt::ShiftModifier ? TurnStep : 1;
        return Layers::Rotate(canvas, layer, frame_.TurnedTo(start_.at, pointer.at, step));
    }
    const SizeRules rules{
        .proportional = layer.kind == LayerId::Kind::Text || (pointer.keys & Qt::ShiftModifier),
        .fromCentre = bool(pointer.keys & Qt::ControlModifier)};
    QPointF by = pointer.at - start_.at;
    if (!(pointer.keys & Qt::AltModifier) && frame_.angle == 0 && !rules.proportional) {
        hit_ = snapping_.Point(frame_.Corner(grip_.column, grip_.row) + by, grip_.column != 0, grip_.row != 0,
                               SnapDistance * pointer.unit);
        by += hit_.shift;
    }
    const LayerFrame frame = frame_.Resized(grip_, by, rules);
    Layers::Resize(canvas, layer, frame.centre.x() - frame.width / 2, frame.centre.y() - frame.height / 2,
                   frame.width, frame.height);
}

void Gesture::DragSpan(const Canvas& canvas, const Pointer& pointer) {
    span_ = QRectF(start_.at, pointer.at).normalized();
    std::vector<LayerId> selection = found_;
    for (const LayerId layer :
         Layers::Within(canvas, span_.left(), span_.top(), span_.right(), span_.bottom()))
        if (!Contains(selection, layer)) selection.push_back(layer);
    workspace_.Select(std::move(selection));
}

void Gesture::Release() {
    const bool click = state_ == State::Pressed;
    Finish();
    if (click && narrow_ && TheCanvas()) workspace_.Select({*narrow_});
}

void Gesture::Cancel() {
    const bool spanned = state_ == State::Spanning;
    if (History* history = recording_ ? workspace_.HistoryOf(slot_) : nullptr) history->Cancel();
    Abandon();
    if (spanned) workspace_.Select(found_);
}

void Gesture::Finish() {
    History* history = recording_ ? workspace_.HistoryOf(slot_) : nullptr;
    Abandon();
    if (history) history->End();
}

void Gesture::Abandon() {
    state_ = State::Idle;
    recording_ = false;
    hit_ = {};
    layers_.clear();
}

QString Gesture::Values() const {
    const Canvas* canvas = TheCanvas();
    const auto place =
        canvas && !layers_.empty() ? Layers::GeometryOf(*canvas, layers_.front()) : std::nullopt;
    if (!place) return {};
    switch (state_) {
        case State::Moving:
            return QString("X %1, Y %2").arg(place->left).arg(place->top);
        case State::Sizing: {
            const QString size = QString("%1 \u00d7 %2").arg(place->width).arg(place->height);
            const Text* text =
                layers_.front().kind == LayerId::Kind::Text ? canvas->Text(layers_.front().slot) : nullptr;
            return text ? size + QString(", %1 pt").arg(double(text->FontSize()), 0, 'f', 1) : size;
        }
        case State::Turning:
            return QString("%1\u00b0").arg(place->angle);
        case State::Idle:
        case State::Pressed:
        case State::Spanning:
            break;
    }
    return {};
}

}  // namespace tessaloom
