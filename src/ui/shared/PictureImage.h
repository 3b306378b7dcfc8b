#pragma once

#include <QImage>

namespace tessaloom {

class DIB;

/// The bitmap as the toolkit has it, scaled down to fit `size`, keeping its proportions; never scaled up. An
/// empty bitmap gives a null image.
QImage ScaledPicture(const DIB& picture, QSize size);

}  // namespace tessaloom
