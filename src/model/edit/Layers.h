#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/Graphic.h"
#include "imaging/pixelops/Rotation.h"
#include "model/edit/LayerId.h"
#include "model/edit/LayerNames.h"

/// Operations on the layers of a canvas, as people ask for them. They record no history themselves.
///
/// Positions are pixels from the canvas's top left corner, y downwards.
namespace tessaloom {

class Canvas;

namespace Layers {

/// A layer as it lies on the canvas. Turning is about the centre.
struct Geometry {
    double centreX = 0, centreY = 0;
    double width = 0, height = 0;  ///< Before turning; 0 while the layer has no picture.
    double angle = 0;              ///< Degrees counterclockwise, 0 .. < 360.
    int left = 0, top = 0, right = 0,
        bottom = 0;  ///< The upright frame of the turned layer; right and bottom excluded.
};

/// Every layer, in the order of drawing: the bottommost first.
std::vector<LayerId> InDrawingOrder(const Canvas& canvas);

bool Exists(const Canvas& canvas, LayerId layer);
bool Enabled(const Canvas& canvas, LayerId layer);
int Pass(const Canvas& canvas, LayerId layer);

/// For lists: the beginning of a text, the name of a file, "Camera: ..", "Block".
std::string Title(const Canvas& canvas, LayerId layer);

/// "3 text layers", "1 picture layer"; "4 layers" of both kinds.
std::string Counted(std::span<const LayerId> layers);

std::optional<Geometry> GeometryOf(const Canvas& canvas, LayerId layer);

/// The enabled layers under a point, the topmost first. A layer is hit within its turned outline.
std::vector<LayerId> At(const Canvas& canvas, double x, double y);

/// The enabled layers that lie wholly within the rectangle.
std::vector<LayerId> Within(const Canvas& canvas, double left, double top, double right, double bottom);

/// New layers with sensible first values, on top of what the canvas has in `pass` as far as slots are free
/// there; none when all slots are taken. A text is light on dark ground and dark on light; a picture that is
/// larger than the canvas is made to fit. sourceName: of a feed, file or address; the slot of another canvas.
/// known: the size of the file's picture, which is then not loaded before the layer is due; 0 for unknown.
std::optional<LayerId> AddText(Canvas& canvas, std::string_view text, int x, int y, int pass = 1);
std::optional<LayerId> AddGraphic(Canvas& canvas, Graphic::Source source, std::string_view sourceName, int x,
                                  int y, int pass = 1, PixelSize known = {});

void Remove(Canvas& canvas, std::span<const LayerId> layers);

/// Copies beside the originals, shifted by `offset` pixels; those for which there was a free slot.
std::vector<LayerId> Duplicate(Canvas& canvas, std::span<const LayerId> layers, int offset = 10);

/// Layers as text for the clipboard, and back. Pasting takes what it understands of any text; empty when that
/// is nothing.
std::string Copy(const Canvas& canvas, std::span<const LayerId> layers);
std::vector<LayerId> Paste(Canvas& canvas, std::string_view text, int offset = 0);

/// Shifts layers, however they are aligned.
void Move(Canvas& canvas, std::span<const LayerId> layers, int dx, int dy);

/// Puts a layer into `pass`, directly above `below` (slot 0: at the bottom of its kind there). Layers of one
/// kind exchange slots for it, so the layer may come out under another name, which is returned; graphics
/// always lie beneath the texts of their pass.
LayerId Reorder(Canvas& canvas, LayerId layer, int pass, LayerId below);

/// One step up or down in the order of drawing, within the pass or into the next one; the layer's new name.
LayerId Raise(Canvas& canvas, LayerId layer);
LayerId Lower(Canvas& canvas, LayerId layer);
LayerId ToFront(Canvas& canvas, LayerId layer);
LayerId ToBack(Canvas& canvas, LayerId layer);

/// Changes the place of one layer with one of these, and tells what all layers are called then.
LayerNames NamesAfter(Canvas& canvas, LayerId layer, const std::function<LayerId(Canvas&, LayerId)>& reorder);

/// Gives the layer's unturned picture a size, its place given by its upper left corner before turning: a
/// stretched graphic, or a text whose font size follows the height. As a text takes only some sizes, the
/// edges of an upright one that are asked for where they are stay there; a turned one is centred on what is
/// asked.
void Resize(Canvas& canvas, LayerId layer, double left, double top, double width, double height);

/// Turns the layer to an angle, counterclockwise, about its centre, which stays where it is.
void Rotate(Canvas& canvas, LayerId layer, double degrees);

}  // namespace Layers
}  // namespace tessaloom
