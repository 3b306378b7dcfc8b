#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/FrameRows.h"
#include "imaging/pixelops/Tessaloom.h"

using namespace tessaloom::pixelops;

int Cls(uint8_t* Ptr, int Width, int Height, int Colour) {
    if (!Ptr || Width < 1 || Height < 1) return 0;
    std::uint8_t pattern[FillBytes];
    for (std::size_t i = 0; i < FillBytes; i += 3) {
        pattern[i] = static_cast<std::uint8_t>(Blue(Colour));
        pattern[i + 1] = static_cast<std::uint8_t>(Green(Colour));
        pattern[i + 2] = static_cast<std::uint8_t>(Red(Colour));
    }
    for (int y = 0; y < Height; ++y) FillRow(RowAt(Ptr, Width, y), pattern, static_cast<std::size_t>(Width));
    return 0;
}
