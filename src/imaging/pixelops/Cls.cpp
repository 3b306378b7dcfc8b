#include "imaging/pixelops/Arithmetic.h"
#include "imaging/pixelops/FrameRows.h"
#include "imaging/pixelops/Streams.h"
#include "imaging/pixelops/Target.h"
#include "imaging/pixelops/Tessaloom.h"

using namespace tessaloom::pixelops;

void tessaloom::pixelops::Fill(const Target& target, int colour) {
    if (!target.bits || target.width < 1 || target.height < 1) return;
    std::uint8_t pattern[FillBytes];
    for (std::size_t i = 0; i < FillBytes; i += 3) {
        pattern[i] = static_cast<std::uint8_t>(Blue(colour));
        pattern[i + 1] = static_cast<std::uint8_t>(Green(colour));
        pattern[i + 2] = static_cast<std::uint8_t>(Red(colour));
    }
    for (int y = 0; y < target.height; ++y)
        FillRow(target.bits + y * target.rowBytes, pattern, static_cast<std::size_t>(target.width),
                target.streamed);
}

int Cls(uint8_t* Ptr, int Width, int Height, int Colour) {
    const bool large = IsStreamed(Width, Height);
    Fill({Ptr, Width, Height, RowBytes(Width), large}, Colour);
    if (large) FinishStreams();
    return 0;
}
