#pragma once

#include <QByteArray>

namespace tessaloom {

/// Whether a vector picture (SVG) stands by itself and can be drawn here and now: it names no other file,
/// which might be private or never end, and the application object that its texts need exists.
bool IsDrawableVectorPicture(const QByteArray& file);

}  // namespace tessaloom
