#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "imaging/DIB.h"

namespace tessaloom {

/// A surface that a picture of any format is loaded into.
struct PictureBox {
    DIB surface;
    std::vector<std::uint8_t> alpha;  ///< As in `LoadedPicture`: bottom row first; empty when all is solid.
    std::string fileName;             ///< Of the picture on the surface; "" without one.
    bool autoSize = false;
};

/// The pool of these surfaces. It belongs to the process and its one thread; numbers start at 1.
namespace modPictureBox {

/// More surfaces than all layers of all canvases can hold at a time.
inline constexpr int PoolSize = 4096;

/// Empties the pool and opens it.
void InitializePictureBox();

/// Takes a slot and returns its number; 0 when all are taken. Opens the pool when nobody has.
int CreatePictureBox();

/// The surface in slot `index`; null when that slot is not taken.
PictureBox* GetPictureBox(int index);

/// Gives slot `index` back; its number may be handed out again.
void DestroyPictureBox(int index);
void DestroyAllPictureBoxes();

/// Empties the pool and closes it: no slot can be taken until it is initialised again.
void TerminatePictureBox();

}  // namespace modPictureBox
}  // namespace tessaloom
