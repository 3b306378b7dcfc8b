#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "imaging/AreaList.h"
#include "imaging/DIB.h"
#include "imaging/DrawnLayer.h"
#include "imaging/PixelArea.h"
#include "time/LayerTimingTable.h"

namespace tessaloom {

/// Puts a canvas's picture together from its layers, anew only where something of them changed since the last
/// time. The result is to the bit what a composition of everything would be.
///
/// It remembers what each layer looked like and where it lay. Owned by its `Canvas`. It never allocates but
/// for the shadows, the first time that there are any.
class Composition {
public:
    static constexpr int Passes = 4;

    /// A layer's place: graphics by slot, then texts by slot; within a pass they are drawn in this order.
    static constexpr std::size_t Places = std::size_t{2} * LayerTimingTable::Slots;

    /// What is shown of a place: null when it is empty, or its layer is off.
    struct Shown {
        DrawnLayer* layer = nullptr;
        int pass = 0;
    };
    using Layers = std::array<Shown, Places>;

    /// What the layers lie on.
    struct Ground {
        int colour;         ///< 0x00BBGGRR.
        int shadowDensity;  ///< 0 .. 255, of what the shadows hide at most.
    };

    /// Brings `picture`, which nobody else draws on, up to date.
    void Compose(DIB& picture, const Ground& ground, const Layers& layers);

    /// Lays pass `pass` onto what `picture` holds. The next composition is one of everything.
    void AddPass(DIB& picture, const Ground& ground, const Layers& layers, int pass);

    /// The next composition is one of everything: the ground or the picture's size changed.
    void Invalidate() { whole_ = true; }

    /// The layer of that place was taken away; the next one there is another.
    void Forget(std::size_t place) { composed_[place].gone = true; }

    /// Releases the shadows.
    void UnloadClass();

    /// The part of the picture outside of which the last composition changed nothing.
    const PixelArea& ChangedArea() const { return changed_; }

private:
    /// What was composed of a place.
    struct Composed {
        LayerLook look;
        int pass = 0;
        bool gone = false;

        bool operator==(const Composed&) const = default;
    };

    /// The collected shadows of a pass: density on black, the larger one where several meet.
    struct PassShadow {
        DIB density;
        AreaList cast;   ///< There is none outside.
        AreaList stale;  ///< To be collected anew.
    };

    void FindChanges(const DIB& picture, const Layers& layers);
    void Change(std::size_t place, const Composed& now, const PixelArea& canvas);
    void SortByPass(const Layers& layers);
    void UpdateShadow(PassShadow& shadow, int pass, const DIB& picture, const Layers& layers);
    void ComposeArea(DIB& picture, const Ground& ground, const Layers& layers, const PixelArea& area);
    void ComposeBand(DIB& picture, const Ground& ground, const Layers& layers, const PixelArea& band);
    std::size_t TopmostHiding(const PixelArea& area) const;
    void Darken(DIB& picture, const Ground& ground, int pass, const PixelArea& within);
    void MergeLayer(DIB& picture, const Layers& layers, std::size_t place, const PixelArea& within);

    std::array<Composed, Places> composed_;
    std::array<std::size_t, Places> order_{};  ///< The places that are shown, as they are drawn.
    std::size_t shown_ = 0;
    std::array<PassShadow, Passes> shadows_;
    AreaList dirty_;
    PixelArea changed_;
    bool whole_ = true;
};

}  // namespace tessaloom
