#pragma once

/// The kinds of window that show a canvas, as its file has them; any other number is the first kind.
namespace tessaloom::CanvasKind {

inline constexpr int Scaled = 0;    ///< The whole picture, scaled to the window.
inline constexpr int Unscaled = 1;  ///< Pixel for pixel, behind scroll bars where the window is smaller.

}  // namespace tessaloom::CanvasKind
