#include "imaging/IJL.h"

namespace tessaloom {

int IJL_DIB_PAD_BYTES(int Width, int Channels) {
    const int row = Width * Channels;
    return ((row + 3) & ~3) - row;
}

int PaddedSize(int Width, int Height, int BytesPerPixel) {
    int row = Width * BytesPerPixel;
    if (row % 4 != 0) row = (row & 0xFFFC) + 4;
    return Height * row;
}

}  // namespace tessaloom
