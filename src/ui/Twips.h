#pragma once

#include <Qt>

/// Twips are 1/1440 inch; settings and documents hold the places of windows in them.
namespace tessaloom::Twips {

/// Of the main screen; 15 at 96 pixels an inch.
int PerPixel(Qt::Orientation direction);

}  // namespace tessaloom::Twips
