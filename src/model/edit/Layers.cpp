#include "model/edit/Layers.h"

#include "model/Canvas.h"
#include "text/Text.h"

namespace tessaloom::Layers {

std::vector<LayerId> InDrawingOrder(const Canvas& canvas) {
    std::vector<LayerId> layers;
    for (int pass = 0; pass < Canvas::Passes; ++pass) {
        for (int slot = 1; slot <= Canvas::MaxGraphic; ++slot)
            if (const Graphic* graphic = canvas.Graphic(slot); graphic && graphic->Layer() == pass)
                layers.push_back({LayerId::Kind::Graphic, slot});
        for (int slot = 1; slot <= Canvas::MaxText; ++slot)
            if (const Text* text = canvas.Text(slot); text && text->Layer() == pass)
                layers.push_back({LayerId::Kind::Text, slot});
    }
    return layers;
}

bool Exists(const Canvas& canvas, LayerId layer) {
    return layer.kind == LayerId::Kind::Text ? canvas.Text(layer.slot) != nullptr
                                             : canvas.Graphic(layer.slot) != nullptr;
}
bool Enabled(const Canvas&, LayerId) { return true; }
int Pass(const Canvas&, LayerId) { return 1; }
std::string Title(const Canvas&, LayerId) { return {}; }
std::optional<Geometry> GeometryOf(const Canvas&, LayerId) { return std::nullopt; }
std::vector<LayerId> At(const Canvas&, double, double) { return {}; }
std::vector<LayerId> Within(const Canvas&, double, double, double, double) { return {}; }
std::optional<LayerId> AddText(Canvas&, std::string_view, int, int, int) { return std::nullopt; }
std::optional<LayerId> AddGraphic(Canvas&, Graphic::Source, std::string_view, int, int, int) {
    return std::nullopt;
}
void Remove(Canvas&, std::span<const LayerId>) {}
std::vector<LayerId> Duplicate(Canvas&, std::span<const LayerId>, int) { return {}; }
std::string Copy(const Canvas&, std::span<const LayerId>) { return {}; }
std::vector<LayerId> Paste(Canvas&, std::string_view, int) { return {}; }
void Move(Canvas&, std::span<const LayerId>, int, int) {}
LayerId Reorder(Canvas&, LayerId layer, int, LayerId) { return layer; }
LayerId Raise(Canvas&, LayerId layer) { return layer; }
LayerId Lower(Canvas&, LayerId layer) { return layer; }
LayerId ToFront(Canvas&, LayerId layer) { return layer; }
LayerId ToBack(Canvas&, LayerId layer) { return layer; }
void Resize(Canvas&, LayerId, double, double, double, double) {}
void Rotate(Canvas&, LayerId, double) {}

}  // namespace tessaloom::Layers
