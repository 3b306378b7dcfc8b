#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/edit/LayerId.h"

class QMimeData;

namespace tessaloom {

class Canvas;
class Workspace;

/// The commands on the selected layers of one canvas. Each is a step of its history and leaves selected what
/// it made. Without a selection, or once the canvas has gone, they do nothing.
class LayerCommands {
public:
    LayerCommands(Workspace& workspace, int canvas) : workspace_(workspace), slot_(canvas) {}

    void Copy();
    void Cut();
    void Delete() { Remove("Delete"); }
    void Duplicate();

    /// Pastes layers that were copied here or by another program as text. False when `data` holds none.
    bool Paste(const QMimeData& data);

    void SelectAll();

    /// Selects the layer after the selected one, from the topmost down, or the one before it. False at the
    /// end.
    bool SelectNext(bool forward);

    void Raise();
    void Lower();
    void ToFront();
    void ToBack();

    /// Steps that follow each other are one in the history.
    void Nudge(int dx, int dy);

private:
    using Reordering = LayerId (*)(tessaloom::Canvas&, LayerId);

    tessaloom::Canvas* TheCanvas() const;
    std::vector<LayerId> Selection() const;
    void Remove(std::string_view step);
    void Reorder(std::string_view step, Reordering reorder, bool topmostFirst);

    Workspace& workspace_;
    const int slot_;
    std::string pasted_;  ///< What was copied or pasted last, and
    int pastings_ = 0;    ///< how often: each lands a little further.
};

}  // namespace tessaloom
