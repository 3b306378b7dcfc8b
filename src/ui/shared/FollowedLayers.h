#pragma once

#include <QObject>
#include <utility>
#include <vector>

#include "model/edit/LayerId.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

/// Layers of a canvas under the names that they have now, however their order changes. Those that have gone
/// keep their last name.
class FollowedLayers : public QObject {
public:
    FollowedLayers(Workspace& workspace, int canvas, std::vector<LayerId> layers)
        : canvas_(canvas), layers_(std::move(layers)) {
        connect(&workspace, &Workspace::LayersRenamed, this, [this](int changed, const LayerNames& names) {
            if (changed != canvas_) return;
            for (LayerId& layer : layers_) layer = NameNow(names, layer);
        });
    }

    int CanvasSlot() const { return canvas_; }
    const std::vector<LayerId>& Now() const { return layers_; }

private:
    const int canvas_;
    std::vector<LayerId> layers_;
};

}  // namespace tessaloom
