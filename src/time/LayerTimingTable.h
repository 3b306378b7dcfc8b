#pragma once

#include <array>
#include <cstddef>

namespace tessaloom {

/// What the canvas update cycle must know of a layer on every tick, without touching the layer itself.
struct LayerTiming {
    double nextTime = 0;          ///< A moment; the layer's own next time, copied whenever it is recomputed.
    bool present = false;         ///< The slot holds a layer.
    bool force = false;           ///< The layer is due, whatever its next time, and its canvas is recomposed.
    bool scripted = false;        ///< A copy of the layer's `Scripted` flag.
    bool scheduleEnabled = true;  ///< What the layer's schedule answered last.
};

/// One entry for each layer slot of one canvas, text and graphic layers apart. Slot 0 exists and stays empty.
class LayerTimingTable {
public:
    static constexpr int Slots = 100;

    LayerTiming& Text(int slot) { return text_.at(static_cast<std::size_t>(slot)); }
    LayerTiming& Graphic(int slot) { return graphic_.at(static_cast<std::size_t>(slot)); }
    const LayerTiming& Text(int slot) const { return text_.at(static_cast<std::size_t>(slot)); }
    const LayerTiming& Graphic(int slot) const { return graphic_.at(static_cast<std::size_t>(slot)); }

private:
    std::array<LayerTiming, Slots + 1> text_;
    std::array<LayerTiming, Slots + 1> graphic_;
};

}  // namespace tessaloom
