#include "imaging/pixelops/StreamRows.h"

#include <hwy/cache_control.h>

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/StreamRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::StreamRow;

#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::ScalableTag<std::uint8_t>;

void StreamRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t count) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d), step = 2 * lanes;
    // Streams begin at whole vectors.
    const auto first = static_cast<std::size_t>(-reinterpret_cast<std::uintptr_t>(dest) % lanes);
    std::size_t i = std::min(first, count);
    std::memcpy(dest, source, i);
    for (; i + step <= count; i += step) {
        const auto one = hn::LoadU(d, source + i), two = hn::LoadU(d, source + i + lanes);
        hn::Stream(one, d, dest + i);
        hn::Stream(two, d, dest + i + lanes);
    }
    std::memcpy(dest + i, source + i, count - i);
}

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(StreamRow);

void StreamRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(StreamRow)(dest, source, count);
}

void FinishStreams() { hwy::FlushStream(); }

}  // namespace tessaloom::pixelops

#endif
