#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/FrameRows.h"
#include "imaging/pixelops/Tessaloom.h"

using namespace tessaloom::pixelops;

int Cls(uint8_t* Ptr, int Width, int Height, int Colour) {
    if (!Ptr || Width < 1 || Height < 1) return 0;
    const std::uint8_t pixel[] = {static_cast<std::uint8_t>(Blue(Colour)),
                                  static_cast<std::uint8_t>(Green(Colour)),
                                  static_cast<std::uint8_t>(Red(Colour))};
    for (int y = 0; y < Height; ++y) FillRow(RowAt(Ptr, Width, y), pixel, static_cast<std::size_t>(Width));
    return 0;
}
