#include "imaging/Alignment.h"

namespace tessaloom {

Offset AlignmentOffset(int alignment, int width, int height) {
    if (alignment < FirstAlignment || alignment > LastAlignment) return {};
    const int column = alignment % 3;  // left, centre, right
    const int row = alignment / 3;     // top, middle, bottom
    return {-(width * column / 2), -(height * row / 2)};
}

}  // namespace tessaloom
