#pragma once

#include <QImage>

namespace tessaloom {

class DIB;

/// The bitmap as the toolkit has it: 32 bits a pixel. `image` keeps its memory while the size stays. An empty
/// bitmap gives a null image.
void CopyPicture(const DIB& picture, QImage& image);

/// The same scaled down to fit `size`, keeping its proportions; never scaled up.
QImage ScaledPicture(const DIB& picture, QSize size);

}  // namespace tessaloom
