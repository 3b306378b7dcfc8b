#include "imaging/pixelops/FrameRows.h"

#include <algorithm>

#include "imaging/pixelops/Arithmetic.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/FrameRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::FillRow;
using reference::WidenRow;

#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::ScalableTag<std::uint8_t>;
using D16 = hn::ScalableTag<std::uint16_t>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;

template <bool streamed>
HWY_INLINE void Put(V8 value, std::uint8_t* at) {
    if constexpr (streamed)
        hn::Stream(value, D8(), at);
    else
        hn::StoreU(value, D8(), at);
}

/// Returns how many bytes it did, whole periods of three vectors. The pattern must be readable that far.
template <bool streamed>
HWY_INLINE std::size_t FillPeriods(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t count) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d);
    const V8 first = hn::LoadU(d, pattern), second = hn::LoadU(d, pattern + lanes),
             third = hn::LoadU(d, pattern + 2 * lanes);
    std::size_t i = 0;
    for (; i + 3 * lanes <= count; i += 3 * lanes) {
        Put<streamed>(first, dest + i);
        Put<streamed>(second, dest + i + lanes);
        Put<streamed>(third, dest + i + 2 * lanes);
    }
    return i;
}

void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels, bool streamed) {
    const std::size_t lanes = hn::Lanes(D8()), count = pixels * 3;
    std::size_t i = streamed ? std::min(count, ToMultiple(dest, lanes)) : 0;
    std::copy_n(pattern, i, dest);
    const std::uint8_t* const component = pattern + i % 3;
    i += (streamed ? FillPeriods<true> : FillPeriods<false>)(dest + i, component, count - i);
    std::copy_n(component, count - i, dest + i);
}

/// Eight bits of five, which stand in the bits 10 .. 14: [v * 255 / 31] for all 32 of them.
HWY_INLINE V16 FromFiveBits(V16 value) {
    return hn::MulHigh(hn::Add(value, hn::Set(D16(), 45)), hn::Set(D16(), 527));
}

/// Blue, green or red of two vectors of pixels, `left` bits below the place of red.
template <int left>
HWY_INLINE V8 Component(V16 low, V16 high) {
    const D16 d;
    const V16 five = hn::Set(d, 0x7C00);
    const V16 lower = FromFiveBits(hn::And(hn::ShiftLeft<left>(low), five));
    const V16 upper = FromFiveBits(hn::And(hn::ShiftLeft<left>(high), five));
    return hn::ConcatEven(D8(), hn::BitCast(D8(), upper), hn::BitCast(D8(), lower));
}

void WidenRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t pixels) {
    const D8 d8;
    const D16 d16;
    const std::size_t step = hn::Lanes(d8), rest = pixels % step;
    std::size_t i = pixels - rest;
    reference::WidenRow(dest + i * 3, source + i * 2, rest);
    // Backwards, and all of a step is read before any of it is written: what is yet to be read lies before.
    while (i > 0) {
        i -= step;
        const V16 low = hn::BitCast(d16, hn::LoadU(d8, source + i * 2));
        const V16 high = hn::BitCast(d16, hn::LoadU(d8, source + i * 2 + step));
        hn::StoreInterleaved3(Component<10>(low, high), Component<5>(low, high), Component<0>(low, high), d8,
                              dest + i * 3);
    }
}

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(FillRow);
HWY_EXPORT(WidenRow);

void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels, bool streamed) {
    HWY_DYNAMIC_DISPATCH(FillRow)(dest, pattern, pixels, streamed);
}

void WidenRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(WidenRow)(dest, source, pixels);
}

}  // namespace tessaloom::pixelops

#endif
