#include "model/Composition.h"

#include <algorithm>

#include "imaging/Image.h"
#include "imaging/pixelops/Target.h"

namespace tessaloom {

namespace {

/// A band of the picture stays in the processor's cache while one layer after the other is laid onto it. Of
/// 16 KB to 8 MB, 32 and 64 KB came out best.
constexpr int BandBytes = 64 << 10;

constexpr std::size_t NoPlace = Composition::Places;

/// Then all of the canvas is composed: bands of full rows cost less than many parts.
bool AreMostOf(const PixelArea& canvas, const AreaList& areas) {
    return areas.Pixels() * 10 > canvas.Pixels() * 9;
}

}  // namespace

void Composition::Compose(DIB& picture, const Ground& ground, const Layers& layers) {
    changed_ = {};
    if (!picture.DIBPtr()) return;
    FindChanges(picture, layers);
    if (whole_ || AreMostOf(picture.Whole(), dirty_)) {
        dirty_.Clear();
        dirty_.Add(picture.Whole());
    }
    for (const PixelArea& area : dirty_) {
        ComposeArea(picture, ground, layers, area);
        changed_.Include(area);
    }
    dirty_.Clear();
    whole_ = false;
}

void Composition::AddPass(DIB& picture, const Ground& ground, const Layers& layers, int pass) {
    if (pass < 0 || pass >= Passes || !picture.DIBPtr()) return;
    FindChanges(picture, layers);
    whole_ = true;
    Darken(picture, ground, pass, picture.Whole());
    for (std::size_t i = 0; i < shown_; ++i)
        if (composed_[order_[i]].pass == pass) MergeLayer(picture, layers, order_[i], picture.Whole());
}

void Composition::UnloadClass() {
    for (PassShadow& shadow : shadows_) {
        shadow.density.SetWidthHeight(0, 0);
        shadow.cast.Clear();
        shadow.stale.Clear();
    }
    whole_ = true;
}

// --- What changed ---

void Composition::FindChanges(const DIB& picture, const Layers& layers) {
    for (PassShadow& shadow : shadows_) shadow.cast.Clear();
    for (std::size_t place = 0; place < Places; ++place) {
        const Shown& shown = layers[place];
        Composed now;
        if (shown.layer) now = {shown.layer->Look(picture.Height()), shown.pass};
        if (now != composed_[place]) Change(place, now, picture.Whole());
        shadows_[static_cast<std::size_t>(now.pass)].cast.Add(now.look.shadow.Common(picture.Whole()));
    }
    SortByPass(layers);
    for (int pass = 0; pass < Passes; ++pass)
        UpdateShadow(shadows_[static_cast<std::size_t>(pass)], pass, picture, layers);
}

void Composition::Change(std::size_t place, const Composed& now, const PixelArea& canvas) {
    for (const Composed& composed : {composed_[place], now}) {
        const PixelArea shadow = composed.look.shadow.Common(canvas);
        dirty_.Add(composed.look.picture.Common(canvas));
        dirty_.Add(shadow);
        shadows_[static_cast<std::size_t>(composed.pass)].stale.Add(shadow);
    }
    composed_[place] = now;
}

void Composition::SortByPass(const Layers& layers) {
    shown_ = 0;
    for (int pass = 0; pass < Passes; ++pass)
        for (std::size_t place = 0; place < Places; ++place)
            if (layers[place].layer && layers[place].pass == pass) order_[shown_++] = place;
}

void Composition::UpdateShadow(PassShadow& shadow, int pass, const DIB& picture, const Layers& layers) {
    if (shadow.density.Width() != picture.Width() || shadow.density.Height() != picture.Height()) {
        const bool needed = !shadow.cast.Empty();
        shadow.density.SetWidthHeight(needed ? picture.Width() : 0, needed ? picture.Height() : 0);
        shadow.stale = shadow.cast;
    }
    if (shadow.density.DIBPtr()) {
        for (const PixelArea& area : shadow.stale) {
            Fill(shadow.density.Part(area), 0);
            for (std::size_t i = 0; i < shown_; ++i) {
                const Composed& composed = composed_[order_[i]];
                if (composed.pass == pass && !composed.look.shadow.Common(area).Empty())
                    layers[order_[i]].layer->MergeShadowTo(shadow.density, area);
            }
        }
    }
    shadow.stale.Clear();
}

// --- Drawing ---

void Composition::ComposeArea(DIB& picture, const Ground& ground, const Layers& layers,
                              const PixelArea& area) {
    const int rows = std::max(BandBytes / (area.Width() * 3), 1);
    for (int first = area.first; first < area.end; first += rows)
        ComposeBand(picture, ground, layers,
                    {area.left, area.right, first, std::min(first + rows, area.end)});
}

/// Begins with the topmost layer that hides all beneath it: in its own pass, the shadows too.
void Composition::ComposeBand(DIB& picture, const Ground& ground, const Layers& layers,
                              const PixelArea& band) {
    const std::size_t hiding = TopmostHiding(band);
    int pass = hiding == NoPlace ? -1 : composed_[order_[hiding]].pass;
    if (hiding == NoPlace) Fill(picture.Part(band), ground.colour);
    for (std::size_t i = hiding == NoPlace ? 0 : hiding; i < shown_; ++i) {
        const std::size_t place = order_[i];
        if (composed_[place].pass != pass) {
            pass = composed_[place].pass;
            Darken(picture, ground, pass, band);
        }
        MergeLayer(picture, layers, place, band);
    }
}

std::size_t Composition::TopmostHiding(const PixelArea& area) const {
    for (std::size_t i = shown_; i > 0; --i) {
        const LayerLook& look = composed_[order_[i - 1]].look;
        if (look.opaque && look.picture.Holds(area)) return i - 1;
    }
    return NoPlace;
}

void Composition::Darken(DIB& picture, const Ground& ground, int pass, const PixelArea& within) {
    const PassShadow& shadow = shadows_[static_cast<std::size_t>(pass)];
    const DIB& density = shadow.density;
    if (!density.DIBPtr()) return;
    constexpr int Darkening = 1;
    for (const PixelArea& cast : shadow.cast) {
        const PixelArea area = cast.Common(within);
        if (area.Empty()) continue;
        MergeOnto(picture.Part(area),
                  {density.DIBPtr(), density.Width(), density.Height(), Darkening, Image::NoKeyColour,
                   ground.shadowDensity, nullptr, nullptr, 0, 0},
                  -area.left, -area.first);
    }
}

void Composition::MergeLayer(DIB& picture, const Layers& layers, std::size_t place, const PixelArea& within) {
    if (!composed_[place].look.picture.Common(within).Empty())
        layers[place].layer->MergeImageTo(picture, within);
}

}  // namespace tessaloom
