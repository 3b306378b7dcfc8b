#include "imaging/pixelops/ScaleRows.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/ScaleRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::BlendRows;
using reference::MixPixels;
using reference::MixRows;
using reference::SpreadLine;
using reference::SpreadPixels;

#else

namespace hn = hwy::HWY_NAMESPACE;

void MixRows(std::uint16_t* row, const RowMix& mix, std::size_t count) {
    const hn::ScalableTag<std::uint16_t> d;
    const hn::Rebind<std::uint8_t, decltype(d)> bytes;
    const auto half = hn::Set(d, static_cast<std::uint16_t>((mix.taps + 1) / 2));
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        auto sum = half;
        const std::uint8_t* at = mix.first + i;
        for (std::size_t tap = 0; tap < mix.taps; ++tap, at += mix.step) {
            const auto value = hn::ShiftLeft<8>(hn::PromoteTo(d, hn::LoadU(bytes, at)));
            sum = hn::Add(sum, hn::MulHigh(value, hn::Set(d, mix.weights[tap])));
        }
        hn::StoreU(sum, d, row + i);
    }
    reference::MixRows(row + i, {mix.first + i, mix.step, mix.weights, mix.taps}, count - i);
}

using D8 = hn::FixedTag<std::uint8_t, 16>;
using D16 = hn::FixedTag<std::uint16_t, 8>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;

/// The pixels x and x + 1 of the result, in 256ths, four numbers each. known: the taps, 0 where they are not
/// known before.
template <std::size_t known>
HWY_INLINE V16 MixPair(const std::uint16_t* row, const PixelMix& mix, std::size_t x, V16 half) {
    const D16 d;
    const hn::Half<D16> pixel;
    const std::uint16_t *first = row + mix.firsts[x], *second = row + mix.firsts[x + 1];
    const std::uint16_t* weights = mix.weights + x * 4;
    V16 sum = half;
    const std::size_t taps = known == 0 ? mix.taps : known;
    for (std::size_t tap = 0; tap < taps; ++tap) {
        const V16 pair = hn::Combine(d, hn::LoadU(pixel, second), hn::LoadU(pixel, first));
        sum = hn::Add(sum, hn::MulHigh(pair, hn::LoadU(d, weights)));
        first += 3;
        second += 3;
        weights += mix.padded * 4;
    }
    return sum;
}

template <std::size_t known>
HWY_INLINE V8 MixFour(const std::uint16_t* row, const PixelMix& mix, std::size_t x, V16 half) {
    const D8 d;
    // The upper halves of the components, to the 12 bytes where they belong.
    constexpr std::uint8_t Z = 0x80;
    alignas(16) static constexpr std::uint8_t Order[2][16] = {
        {1, 3, 5, 9, 11, 13, Z, Z, Z, Z, Z,  Z,  Z, Z, Z, Z},
        {Z, Z, Z, Z, Z,  Z,  1, 3, 5, 9, 11, 13, Z, Z, Z, Z}
    };
    return hn::Or(
        hn::TableLookupBytesOr0(hn::BitCast(d, MixPair<known>(row, mix, x, half)), hn::Load(d, Order[0])),
        hn::TableLookupBytesOr0(hn::BitCast(d, MixPair<known>(row, mix, x + 2, half)),
                                hn::Load(d, Order[1])));
}

template <std::size_t known>
HWY_INLINE void MixPixelsOf(std::uint8_t* dest, const std::uint16_t* row, const PixelMix& mix,
                            std::size_t pixels) {
    const D8 d;
    const V16 half = hn::Set(D16(), static_cast<std::uint16_t>(128 + (mix.taps + 1) / 2));
    std::size_t x = 0;
    // What is stored behind four pixels is overwritten by the next ones.
    for (; x + 6 <= pixels; x += 4) hn::StoreU(MixFour<known>(row, mix, x, half), d, dest + x * 3);
    for (; x < pixels; x += 4) {
        std::uint8_t last[16];
        hn::StoreU(MixFour<known>(row, mix, x, half), d, last);
        std::memcpy(dest + x * 3, last, (pixels - x < 4 ? pixels - x : 4) * 3);
    }
}

void MixPixels(std::uint8_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels) {
    if (mix.taps == 2) return MixPixelsOf<2>(dest, row, mix, pixels);
    if (mix.taps == 3) return MixPixelsOf<3>(dest, row, mix, pixels);
    MixPixelsOf<0>(dest, row, mix, pixels);
}

template <std::size_t known>
HWY_INLINE void SpreadPixelsOf(std::uint16_t* dest, const std::uint16_t* row, const PixelMix& mix,
                               std::size_t pixels) {
    const D8 d8;
    const D16 d16;
    const V16 half = hn::Set(d16, static_cast<std::uint16_t>((mix.taps + 1) / 2));
    constexpr std::uint8_t Z = 0x80;
    alignas(16) static constexpr std::uint8_t Order[16] = {0,  1,  2,  3,  4, 5, 8, 9,
                                                           10, 11, 12, 13, Z, Z, Z, Z};
    std::size_t x = 0;
    for (; x + 2 <= pixels; x += 2) {  // two numbers more than a pair has are stored
        const V8 pair = hn::BitCast(d8, MixPair<known>(row, mix, x, half));
        hn::StoreU(hn::BitCast(d16, hn::TableLookupBytesOr0(pair, hn::Load(d8, Order))), d16, dest + x * 3);
    }
    if (x < pixels) {
        std::uint16_t last[8];
        hn::StoreU(MixPair<known>(row, mix, x, half), d16, last);
        std::memcpy(dest + x * 3, last, 6);
    }
}

void SpreadPixels(std::uint16_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels) {
    if (mix.taps == 2) return SpreadPixelsOf<2>(dest, row, mix, pixels);
    SpreadPixelsOf<0>(dest, row, mix, pixels);
}

using DBlocks = hn::CappedTag<std::uint8_t, 32>;
using VBlocks = hn::Vec<DBlocks>;

/// The bytes of as many blocks as a vector has.
HWY_INLINE VBlocks LoadBlocks(const std::uint8_t* row, const std::int32_t* begins) {
    const DBlocks d;
#if HWY_MAX_BYTES >= 32
    const hn::Half<DBlocks> half;
    return hn::Combine(d, hn::LoadU(half, row + begins[1]), hn::LoadU(half, row + begins[0]));
#else
    return hn::LoadU(d, row + begins[0]);
#endif
}

void SpreadLine(std::uint16_t* dest, const std::uint8_t* row, const LineMix& mix, std::size_t count) {
    const DBlocks bytes;
    const hn::Repartition<std::uint16_t, DBlocks> d;
    const auto pixel = hn::Set(d, 3 << 8);
    const auto [begins, places, weights] = mix;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const VBlocks blocks = LoadBlocks(row, begins + i / LineMix::Block);
        const auto pick = [&](auto from) {
            return hn::BitCast(d, hn::TableLookupBytesOr0(blocks, hn::BitCast(bytes, from)));
        };
        const auto place = hn::LoadU(d, places + i), weight = hn::LoadU(d, weights + i);
        const auto left = pick(place), right = pick(hn::Add(place, pixel));
        const auto rest = hn::Sub(left, hn::MulHigh(left, weight));
        hn::StoreU(hn::Add(rest, hn::MulHigh(right, weight)), d, dest + i);
    }
    reference::SpreadLine(dest + i, row, {begins + i / LineMix::Block, places + i, weights + i}, count - i);
}

void BlendRows(std::uint8_t* dest, const std::uint16_t* one, const std::uint16_t* other, std::uint16_t weight,
               std::size_t count) {
    const hn::ScalableTag<std::uint16_t> d;
    const hn::Repartition<std::uint8_t, decltype(d)> bytes;
    const std::size_t lanes = hn::Lanes(d);
    const auto part = hn::Set(d, weight), half = hn::Set(d, 128);
    const auto blended = [&](std::size_t at) {
        const auto first = hn::LoadU(d, one + at), second = hn::LoadU(d, other + at);
        const auto rest = hn::Sub(hn::Add(first, half), hn::MulHigh(first, part));
        return hn::BitCast(bytes, hn::Add(rest, hn::MulHigh(second, part)));
    };
    std::size_t i = 0;
    for (; i + 2 * lanes <= count; i += 2 * lanes)
        hn::StoreU(hn::ConcatOdd(bytes, blended(i + lanes), blended(i)), bytes, dest + i);
    reference::BlendRows(dest + i, one + i, other + i, weight, count - i);
}

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(MixRows);
HWY_EXPORT(SpreadPixels);
HWY_EXPORT(MixPixels);
HWY_EXPORT(SpreadLine);
HWY_EXPORT(BlendRows);

void MixRows(std::uint16_t* row, const RowMix& mix, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(MixRows)(row, mix, count);
}

void MixPixels(std::uint8_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(MixPixels)(dest, row, mix, pixels);
}

void SpreadPixels(std::uint16_t* dest, const std::uint16_t* row, const PixelMix& mix, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(SpreadPixels)(dest, row, mix, pixels);
}

void SpreadLine(std::uint16_t* dest, const std::uint8_t* row, const LineMix& mix, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(SpreadLine)(dest, row, mix, count);
}

void BlendRows(std::uint8_t* dest, const std::uint16_t* one, const std::uint16_t* other, std::uint16_t weight,
               std::size_t count) {
    HWY_DYNAMIC_DISPATCH(BlendRows)(dest, one, other, weight, count);
}

}  // namespace tessaloom::pixelops

#endif
