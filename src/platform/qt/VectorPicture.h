#pragma once

#include <QByteArray>
#include <cstdint>
#include <span>

#include "platform/PictureLoader.h"
#include "platform/qt/VectorScene.h"

namespace tessaloom {

/// A vector picture (SVG), reduced to what is drawn.
///
/// What the toolkit is handed is written anew: elements and attributes that are known to be drawn and
/// nothing else, so that animations, filters, scripts, fonts of the document's own and whatever else a later
/// version may learn do nothing. It stands by itself: it names no other file, which might be private or never
/// end, and expands no entities.
struct VectorPicture {
    QByteArray drawing;          ///< Empty when it was refused.
    VectorScene scene;           ///< For the time that drawing takes.
    std::int64_t sheetWork = 0;  ///< What applying its style sheets takes, in the same units.
    PictureRefusal refusal = PictureRefusal::None;

    /// Reads a file in time and memory linear in its size, and within the bounds of VectorPicture.cpp.
    static VectorPicture Of(std::span<const std::uint8_t> file);
};

/// Whether a file that begins like this is a vector picture and no other kind of document.
bool IsVectorPicture(std::span<const std::uint8_t> beginning);

}  // namespace tessaloom
