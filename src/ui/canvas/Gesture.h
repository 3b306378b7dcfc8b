#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>
#include <optional>
#include <vector>

#include "model/edit/LayerId.h"
#include "ui/canvas/LayerFrame.h"
#include "ui/canvas/Snapping.h"

namespace tessaloom {

class Canvas;
class History;
class Workspace;

/// What the pointer does to the layers of a canvas between press and release: select, move, resize, turn, or
/// span a rectangle. What changes layers is one step of the canvas's history.
///
/// Places are canvas pixels. Layers may go or change at any time in between, and so may the canvas.
class Gesture {
public:
    enum class State { Idle, Pressed, Moving, Spanning, Sizing, Turning };

    struct Pointer {
        QPointF at;
        double unit = 1;  ///< Canvas pixels that one of the widget's units covers.
        Qt::KeyboardModifiers keys;
    };

    Gesture(Workspace& workspace, int canvas) : workspace_(workspace), slot_(canvas) {}

    /// grip: of the selected layer, on which the pointer lies.
    void Press(const Pointer& pointer, const Grip& grip);
    void Move(const Pointer& pointer);
    void Release();

    /// Puts back what the gesture changed; the rest of it does nothing.
    void Cancel();

    /// Ends it, keeping what it changed.
    void Finish();

    /// Forgets it, as the canvas has gone and its history with it.
    void Abandon();

    State Now() const { return state_; }
    bool Dragging() const { return state_ != State::Idle && state_ != State::Pressed; }

    /// The rectangle being spanned; else empty.
    QRectF Span() const { return state_ == State::Spanning ? span_ : QRectF(); }

    /// The lines that what is dragged lies on.
    std::optional<double> Column() const { return hit_.x; }
    std::optional<double> Row() const { return hit_.y; }

    /// What is being set, for people: "X 12, Y 30". Empty when nothing is.
    QString Values() const;

private:
    tessaloom::Canvas* TheCanvas() const;
    void Pick(const Pointer& pointer);
    void Toggle(LayerId layer);
    void Begin(tessaloom::Canvas& canvas);
    void Record(const char* name);
    bool DropMissing(const tessaloom::Canvas& canvas);
    void Drag(tessaloom::Canvas& canvas, const Pointer& pointer);
    void DragLayers(tessaloom::Canvas& canvas, const Pointer& pointer);
    void DragGrip(tessaloom::Canvas& canvas, const Pointer& pointer);
    void DragSpan(const tessaloom::Canvas& canvas, const Pointer& pointer);

    Workspace& workspace_;
    const int slot_;
    State state_ = State::Idle;
    bool recording_ = false;
    Pointer start_;
    Grip grip_;
    bool spans_ = false;             ///< Pressed on no layer.
    std::optional<LayerId> narrow_;  ///< Selected alone, should the press turn out to be a click.

    std::vector<LayerId> found_;   ///< The selection at the press.
    std::vector<LayerId> layers_;  ///< Those that are dragged.
    LayerFrame frame_;             ///< Of the first of them, and
    QRectF bounds_;                ///< of all, when the drag began.
    QPoint moved_;                 ///< How far they have been moved.
    Snapping snapping_;
    Snapping::Hit hit_;
    QRectF span_;
};

}  // namespace tessaloom
