#include <algorithm>

#include "model/edit/CanvasRecord.h"
#include "model/edit/LayerParts.h"
#include "model/edit/Layers.h"

namespace tessaloom::Layers {

namespace {

constexpr int TopPass = Canvas::Passes - 1;

/// Gives the layers in `slots` the order of `wanted`, the same slots in another order. They are made anew, so
/// that none shows the picture of the one that was in its slot before.
void Exchange(Canvas& canvas, LayerId::Kind kind, const std::vector<int>& slots,
              const std::vector<int>& wanted) {
    std::vector<std::pair<LayerId, KeyTexts>> moved;
    for (std::size_t at = 0; at < slots.size(); ++at)
        if (slots[at] != wanted[at])
            moved.emplace_back(LayerId{kind, slots[at]}, TextsOf(canvas, {kind, wanted[at]}));
    for (const auto& [layer, texts] : moved) {
        RemoveLayer(canvas, layer);
        AddLayer(canvas, layer);
        SetTexts(canvas, layer, texts);
    }
}

/// The topmost layer of a kind in a pass; slot 0 without one.
LayerId Topmost(const Canvas& canvas, LayerId::Kind kind, int pass) {
    const std::vector<int> slots = parts::SlotsOf(canvas, kind, pass);
    return {kind, slots.empty() ? 0 : slots.back()};
}

/// The one of the same kind and pass right beneath a layer; slot 0 without one.
LayerId Beneath(const Canvas& canvas, LayerId layer) {
    const std::vector<int> slots = parts::SlotsOf(canvas, layer.kind, Pass(canvas, layer));
    const auto at = std::ranges::find(slots, layer.slot);
    return {layer.kind, at == slots.begin() ? 0 : *std::prev(at)};
}

/// Puts `layer` directly above `other`, as far as graphics may lie above texts.
LayerId PutAbove(Canvas& canvas, LayerId layer, LayerId other) {
    const int pass = Pass(canvas, other);
    if (layer.kind == other.kind) return Reorder(canvas, layer, pass, other);
    if (layer.kind == LayerId::Kind::Text) return Reorder(canvas, layer, pass, {layer.kind, 0});
    return pass == TopPass ? layer : Reorder(canvas, layer, pass + 1, {layer.kind, 0});
}

LayerId PutBeneath(Canvas& canvas, LayerId layer, LayerId other) {
    const int pass = Pass(canvas, other);
    if (layer.kind == other.kind) return Reorder(canvas, layer, pass, Beneath(canvas, other));
    if (layer.kind == LayerId::Kind::Graphic)
        return Reorder(canvas, layer, pass, Topmost(canvas, layer.kind, pass));
    return pass == 0 ? layer : Reorder(canvas, layer, pass - 1, Topmost(canvas, layer.kind, pass - 1));
}

/// The layers of the canvas, and where among them `layer` is.
struct Place {
    std::vector<LayerId> order;
    std::size_t at;

    Place(const Canvas& canvas, LayerId layer)
        : order(InDrawingOrder(canvas)),
          at(static_cast<std::size_t>(std::ranges::find(order, layer) - order.begin())) {}
    bool Last() const { return at + 1 >= order.size(); }
    bool First() const { return at == 0 || at >= order.size(); }
};

}  // namespace

LayerId Reorder(Canvas& canvas, LayerId layer, int pass, LayerId below) {
    if (!Exists(canvas, layer) || below == layer) return layer;
    pass = std::clamp(pass, 0, TopPass);
    parts::With(canvas, layer, [&](auto& part) { part.SetLayer(pass); });
    const std::vector<int> slots = parts::SlotsOf(canvas, layer.kind, pass);
    std::vector<int> wanted = slots;
    std::erase(wanted, layer.slot);
    auto place = wanted.begin();
    if (below.slot != 0 && below.kind == layer.kind) {
        const auto found = std::ranges::find(wanted, below.slot);
        if (found != wanted.end()) place = std::next(found);
    } else if (below.slot != 0 && layer.kind == LayerId::Kind::Graphic) {
        place = wanted.end();
    }
    const auto at = static_cast<std::size_t>(wanted.insert(place, layer.slot) - wanted.begin());
    Exchange(canvas, layer.kind, slots, wanted);
    return {layer.kind, slots[at]};
}

LayerId Raise(Canvas& canvas, LayerId layer) {
    const Place place(canvas, layer);
    return place.Last() ? layer : PutAbove(canvas, layer, place.order[place.at + 1]);
}

LayerId Lower(Canvas& canvas, LayerId layer) {
    const Place place(canvas, layer);
    return place.First() ? layer : PutBeneath(canvas, layer, place.order[place.at - 1]);
}

LayerId ToFront(Canvas& canvas, LayerId layer) {
    const Place place(canvas, layer);
    if (place.Last()) return layer;
    const LayerId top = place.order.back();
    if (layer.kind == LayerId::Kind::Graphic && top.kind == LayerId::Kind::Text &&
        Pass(canvas, top) == TopPass)
        return Reorder(canvas, layer, TopPass, Topmost(canvas, layer.kind, TopPass));
    return PutAbove(canvas, layer, top);
}

LayerId ToBack(Canvas& canvas, LayerId layer) {
    const Place place(canvas, layer);
    if (place.First()) return layer;
    const LayerId bottom = place.order.front();
    if (layer.kind == LayerId::Kind::Text && bottom.kind == LayerId::Kind::Graphic &&
        Pass(canvas, bottom) == 0)
        return Reorder(canvas, layer, 0, {layer.kind, 0});
    return PutBeneath(canvas, layer, bottom);
}

/// All others keep their order, so places tell who is who.
LayerNames NamesAfter(Canvas& canvas, LayerId layer,
                      const std::function<LayerId(Canvas&, LayerId)>& reorder) {
    std::vector<LayerId> before = InDrawingOrder(canvas);
    const LayerId renamed = reorder(canvas, layer);
    const std::vector<LayerId> after = InDrawingOrder(canvas);
    std::erase(before, layer);
    before.insert(before.begin() + (std::ranges::find(after, renamed) - after.begin()), layer);
    LayerNames names;
    for (std::size_t place = 0; place < after.size(); ++place)
        if (before[place] != after[place]) names[before[place]] = after[place];
    return names;
}

}  // namespace tessaloom::Layers
