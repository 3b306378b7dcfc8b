#include "model/Composition.h"

#include <algorithm>

#include "imaging/Image.h"
#include "imaging/pixelops/StreamRows.h"

namespace tessaloom {

namespace {

/// A band of the picture stays in the processor's cache while one layer after the other is laid onto it. Of
/// 16 KB to 8 MB, 32 and 64 KB came out best.
constexpr int BandBytes = 32 << 10;

/// Bands are divided at multiples of this: whole cache lines, where rows begin with one.
constexpr int ColumnPixels = 64;

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
    const CanvasPart all = CanvasPart::Of(picture);
    Darken(all, ground, pass);
    for (std::size_t i = 0; i < shown_; ++i)
        if (composed_[order_[i]].pass == pass) MergeLayer(all, layers, order_[i]);
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
    const bool large =
        area.Width() * rows * 3 <= BandBytes && area.Pixels() * 3 >= std::int64_t{pixelops::StreamedBytes};
    for (int first = area.first; first < area.end; first += rows) {
        const PixelArea band = {area.left, area.right, first, std::min(first + rows, area.end)};
        if (large)
            StreamBand(picture, ground, layers, band);
        else
            ComposePart(CanvasPart::Of(picture, band), ground, layers);
    }
    if (large) pixelops::FinishStreams();
}

/// Nothing of the picture is read for that: what stands alone goes there past the cache, all else likewise
/// once it is composed elsewhere.
void Composition::StreamBand(DIB& picture, const Ground& ground, const Layers& layers,
                             const PixelArea& band) {
    const PixelArea covered = Covered(band);
    StreamAlone(picture, ground, layers, {band.left, covered.left, band.first, band.end});
    StreamAlone(picture, ground, layers, {covered.right, band.right, band.first, band.end});
    if (!covered.Empty()) StreamComposed(picture, ground, layers, covered);
}

void Composition::StreamAlone(DIB& picture, const Ground& ground, const Layers& layers,
                              const PixelArea& area) {
    if (area.Empty()) return;
    CanvasPart part = CanvasPart::Of(picture, area);
    part.pixels.streamed = true;
    ComposePart(part, ground, layers);
}

void Composition::StreamComposed(DIB& picture, const Ground& ground, const Layers& layers,
                                 const PixelArea& area) {
    alignas(64) std::uint8_t pixels[BandBytes];
    const std::ptrdiff_t rowBytes = area.Width() * std::ptrdiff_t{3};
    const pixelops::Target elsewhere = {pixels, area.Width(), area.Height(), rowBytes};
    ComposePart({elsewhere, area, picture.Height()}, ground, layers);
    const pixelops::Target to = picture.Part(area);
    for (int row = 0; row < to.height; ++row)
        pixelops::StreamRow(to.bits + row * to.rowBytes, pixels + row * rowBytes,
                            static_cast<std::size_t>(rowBytes));
}

/// Beside it, there is the topmost hiding layer alone, or the ground.
PixelArea Composition::Covered(const PixelArea& band) const {
    const std::size_t hiding = TopmostHiding(band);
    PixelArea covered;
    for (std::size_t i = hiding == NoPlace ? 0 : hiding + 1; i < shown_; ++i)
        covered.Include(composed_[order_[i]].look.picture.Common(band));
    for (int pass = hiding == NoPlace ? 0 : composed_[order_[hiding]].pass + 1; pass < Passes; ++pass)
        for (const PixelArea& cast : shadows_[static_cast<std::size_t>(pass)].cast)
            covered.Include(cast.Common(band));
    if (covered.Empty()) return {band.left, band.left, band.first, band.end};
    return {std::max(covered.left / ColumnPixels * ColumnPixels, band.left),
            std::min((covered.right + ColumnPixels - 1) / ColumnPixels * ColumnPixels, band.right),
            band.first, band.end};
}

/// Begins with the topmost layer that hides all beneath it: in its own pass, the shadows too.
void Composition::ComposePart(const CanvasPart& part, const Ground& ground, const Layers& layers) {
    const std::size_t hiding = TopmostHiding(part.area);
    int pass = hiding == NoPlace ? -1 : composed_[order_[hiding]].pass;
    if (hiding == NoPlace) Fill(part.pixels, ground.colour);
    for (std::size_t i = hiding == NoPlace ? 0 : hiding; i < shown_; ++i) {
        const std::size_t place = order_[i];
        if (composed_[place].pass != pass) {
            pass = composed_[place].pass;
            Darken(part, ground, pass);
        }
        MergeLayer(part, layers, place);
    }
}

std::size_t Composition::TopmostHiding(const PixelArea& area) const {
    for (std::size_t i = shown_; i > 0; --i) {
        const LayerLook& look = composed_[order_[i - 1]].look;
        if (look.opaque && look.picture.Holds(area)) return i - 1;
    }
    return NoPlace;
}

void Composition::Darken(const CanvasPart& part, const Ground& ground, int pass) {
    const PassShadow& shadow = shadows_[static_cast<std::size_t>(pass)];
    const DIB& density = shadow.density;
    if (!density.DIBPtr()) return;
    constexpr int Darkening = 1;
    for (const PixelArea& cast : shadow.cast) {
        const PixelArea area = cast.Common(part.area);
        if (area.Empty()) continue;
        MergeOnto(part.Part(area).pixels,
                  {density.DIBPtr(), density.Width(), density.Height(), Darkening, Image::NoKeyColour,
                   ground.shadowDensity, nullptr, nullptr, 0, 0},
                  -area.left, -area.first);
    }
}

void Composition::MergeLayer(const CanvasPart& part, const Layers& layers, std::size_t place) {
    if (!composed_[place].look.picture.Common(part.area).Empty()) layers[place].layer->MergeImageTo(part);
}

}  // namespace tessaloom
