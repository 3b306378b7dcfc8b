#pragma once

#include <functional>
#include <memory>

namespace tessaloom {

class Canvas;
class DIB;

/// The window that shows one canvas, as the canvas sees it. There is none without a desktop.
class CanvasView {
public:
    virtual ~CanvasView() = default;

    /// Shows the freshly composed picture. What is needed of it is copied or painted before the call returns.
    virtual void ShowPicture(const DIB& picture) = 0;

    /// The caption, place, state, size or kind of the canvas changed; the new values are read from the
    /// canvas.
    virtual void CanvasChanged() = 0;

    /// Starts the window's own timer (previews, the line of status texts).
    virtual void ActivitateFormTimer() = 0;

    /// Where the window is now, in its frame's units; the defaults of a canvas file that has no place yet.
    virtual int Left() const = 0;
    virtual int Top() const = 0;
};

/// Makes the window of a canvas that becomes visible; null where none can be shown. The canvas owns the
/// result.
using CanvasViewFactory = std::function<std::unique_ptr<CanvasView>(Canvas&)>;

}  // namespace tessaloom
