#include <cstring>

#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/Tessaloom.h"

using namespace tessaloom::pixelops;

int Cls(uint8_t* Ptr, int Width, int Height, int Colour) {
    if (!Ptr || Width < 1 || Height < 1) return 0;
    for (std::ptrdiff_t i = 0; i < Width * std::ptrdiff_t{3}; i += 3) {
        Ptr[i] = static_cast<std::uint8_t>(Blue(Colour));
        Ptr[i + 1] = static_cast<std::uint8_t>(Green(Colour));
        Ptr[i + 2] = static_cast<std::uint8_t>(Red(Colour));
    }
    for (int y = 1; y < Height; ++y)
        std::memcpy(RowAt(Ptr, Width, y), Ptr, static_cast<std::size_t>(Width) * 3);
    return 0;
}
