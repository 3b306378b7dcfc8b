#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/edit/LayerId.h"

namespace tessaloom {

class Canvas;

/// The texts of all keys of one layer, in the order of `LayerKeys::ForEach`.
using KeyTexts = std::vector<std::string>;

KeyTexts TextsOf(const Canvas& canvas, LayerId layer);

/// Sets all keys of a layer that exists.
void SetTexts(Canvas& canvas, LayerId layer, const KeyTexts& texts);

/// Makes the layer where its slot is empty.
void AddLayer(Canvas& canvas, LayerId layer);
void RemoveLayer(Canvas& canvas, LayerId layer);

/// A canvas as it is at one moment: its own settings and outputs, and its layers.
struct CanvasRecord {
    struct Part {
        LayerId id;  ///< Slot 0: the canvas itself.
        KeyTexts texts;
    };
    std::vector<Part> parts;  ///< By id.

    static CanvasRecord Of(const Canvas& canvas);
};

/// What two records differ in.
struct CanvasChange {
    struct KeyChange {
        std::size_t index;  ///< Of `KeyTexts`.
        std::string before, after;
    };
    struct Part {
        LayerId id;
        std::optional<KeyTexts> before, after;  ///< Of a layer that came (no `before`) or went.
        std::vector<KeyChange> keys;            ///< Of a part that both have.
    };
    std::vector<Part> parts;

    static CanvasChange Between(const CanvasRecord& before, const CanvasRecord& after);

    bool Empty() const { return parts.empty(); }
    bool KeysOnly() const;  ///< No layer came or went.

    /// Takes in a later change; both `KeysOnly`.
    void Append(CanvasChange later);

    enum class Direction { Back, Forth };

    /// Brings the canvas to one side of the change. Parts that have gone, and slots that others have filled
    /// since, are left alone.
    void Apply(Canvas& canvas, Direction direction) const;
};

}  // namespace tessaloom
