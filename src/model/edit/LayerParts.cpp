#include "model/edit/LayerParts.h"

#include <algorithm>

#include "model/edit/CanvasRecord.h"
#include "model/edit/LayerKeys.h"
#include "model/edit/Layers.h"

namespace tessaloom::Layers::parts {

namespace {

/// The empty slot nearest above `highest`, else the one nearest beneath it; 0 when all are taken. Nothing
/// makes room by moving layers: scripts know them by their slots.
int FreeSlot(const Canvas& canvas, LayerId::Kind kind, int highest) {
    for (int slot = highest + 1; slot <= Canvas::MaxText; ++slot)
        if (!Exists(canvas, {kind, slot})) return slot;
    int slot = highest;
    while (slot > 0 && Exists(canvas, {kind, slot})) --slot;
    return slot;
}

}  // namespace

std::vector<int> SlotsOf(const Canvas& canvas, LayerId::Kind kind, int pass) {
    std::vector<int> slots;
    for (int slot = 1; slot <= Canvas::MaxText; ++slot)
        if (const LayerId layer{kind, slot}; Exists(canvas, layer) && Pass(canvas, layer) == pass)
            slots.push_back(slot);
    return slots;
}

PixelSize TurnedSize(int width, int height, double angle) {
    return angle == 0 ? PixelSize{width, height} : RotatedSize(width, height, angle);
}

LayerId AddOnTop(Canvas& canvas, LayerId::Kind kind, int pass) {
    const std::vector<int> slots = SlotsOf(canvas, kind, pass);
    const LayerId layer{kind, FreeSlot(canvas, kind, slots.empty() ? 0 : slots.back())};
    if (layer.slot == 0) return layer;
    AddLayer(canvas, layer);
    With(canvas, layer, [&](auto& part) {
        LayerKeys::SetDefaults(part);
        part.SetLayer(pass);
    });
    return layer;
}

std::vector<LayerId> Ordered(const Canvas& canvas, std::span<const LayerId> layers) {
    std::vector<LayerId> ordered = InDrawingOrder(canvas);
    std::erase_if(ordered, [&](LayerId layer) { return std::ranges::find(layers, layer) == layers.end(); });
    return ordered;
}

}  // namespace tessaloom::Layers::parts
