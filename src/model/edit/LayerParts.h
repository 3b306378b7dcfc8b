#pragma once

#include <span>
#include <vector>

#include "imaging/Graphic.h"
#include "imaging/pixelops/Rotation.h"
#include "model/Canvas.h"
#include "model/edit/LayerId.h"
#include "text/Text.h"

/// What the operations on layers share.
namespace tessaloom::Layers::parts {

/// The layer of that name; null when there is none, or it is of the other kind.
inline Text* TextOf(const Canvas& canvas, LayerId layer) {
    return layer.kind == LayerId::Kind::Text ? canvas.Text(layer.slot) : nullptr;
}
inline Graphic* GraphicOf(const Canvas& canvas, LayerId layer) {
    return layer.kind == LayerId::Kind::Graphic ? canvas.Graphic(layer.slot) : nullptr;
}

/// `act(Text&)` or `act(Graphic&)`, whatever the layer is; the result's zero value when there is none.
template <typename Act>
auto With(const Canvas& canvas, LayerId layer, Act act) -> decltype(act(*canvas.Text(0))) {
    if (Text* const text = TextOf(canvas, layer)) return act(*text);
    if (Graphic* const graphic = GraphicOf(canvas, layer)) return act(*graphic);
    return decltype(act(*canvas.Text(0)))();
}

/// Runs `set`, which changes how a layer looks, so that the steps of a gesture do not ask an address anew.
template <typename Set>
void ChangeLook(Text&, Set set) {
    set();
}
template <typename Set>
void ChangeLook(Graphic& graphic, Set set) {
    graphic.ChangeLook(set);
}

/// The slots of the layers of one kind in a pass, the lowest first.
std::vector<int> SlotsOf(const Canvas& canvas, LayerId::Kind kind, int pass);

/// The size of the upright frame around a turned picture.
PixelSize TurnedSize(int width, int height, double angle);

/// A new layer with the defaults of the canvas file, above those of its kind in `pass` as far as slots are
/// free there; slot 0 when all are taken.
LayerId AddOnTop(Canvas& canvas, LayerId::Kind kind, int pass);

/// The layers of `layers` that exist, in the order of drawing.
std::vector<LayerId> Ordered(const Canvas& canvas, std::span<const LayerId> layers);

}  // namespace tessaloom::Layers::parts
