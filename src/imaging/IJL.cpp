#include "imaging/IJL.h"

#include <cstdint>
#include <limits>

#include "core/ErrorReport.h"
#include "locale/Error.h"

namespace tessaloom {

int IJL_DIB_PAD_BYTES(int Width, int Channels) {
    const std::int64_t row = std::int64_t{Width} * Channels;
    return static_cast<int>(((row + 3) & ~std::int64_t{3}) - row);
}

int PaddedSize(int Width, int Height, int BytesPerPixel) {
    return Trap({"IJL.bas", "PaddedSize"}, [&] {
        constexpr std::int64_t Lowest = std::numeric_limits<int>::min(),
                               Highest = std::numeric_limits<int>::max();
        const auto whole = [](std::int64_t value) {
            if (value < Lowest || value > Highest) throw Error(ErrorNumber::Overflow);
            return value;
        };
        std::int64_t row = whole(std::int64_t{Width} * BytesPerPixel);
        if (row % 4 != 0) row = (row & 0xFFFC) + 4;
        return static_cast<int>(whole(Height * row));
    });
}

}  // namespace tessaloom
