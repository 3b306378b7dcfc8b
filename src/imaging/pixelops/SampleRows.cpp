#include "imaging/pixelops/SampleRows.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/SampleRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::SampleRow;

#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::FixedTag<std::uint8_t, 16>;
using D16 = hn::FixedTag<std::uint16_t, 8>;
using DI32 = hn::FixedTag<std::int32_t, 4>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;

/// Pixels whose places are found together: so few that 7 bits hold how many whole pixels they span.
constexpr std::size_t PlacesAtOnce = 32;

/// Where to read for each pixel, and with which weights, in 65536ths and twice side by side.
struct Places {
    HWY_ALIGN std::int32_t offsets[PlacesAtOnce];
    HWY_ALIGN std::int32_t right[PlacesAtOnce];
    HWY_ALIGN std::int32_t top[PlacesAtOnce];
};

/// The places of `count` pixels and up to three more, whose positions are counted from the pixel below `at`
/// in 1/2^24 pixels.
HWY_INLINE void Find(Places& places, const Pixels& source, Position at, Position step, std::size_t count) {
    const DI32 d;
    const auto part = [](std::int64_t fixed) { return static_cast<std::int32_t>(fixed >> 8 & 0xFFFFFF); };
    const auto slope = [](std::int64_t fixed) { return static_cast<std::int32_t>((fixed + 128) >> 8); };
    const auto lanes = hn::Iota(d, 0);
    const auto stepX = hn::Set(d, slope(step.x)), stepY = hn::Set(d, slope(step.y));
    auto x = hn::Add(hn::Set(d, part(at.x)), hn::Mul(stepX, lanes));
    auto y = hn::Add(hn::Set(d, part(at.y)), hn::Mul(stepY, lanes));
    const auto rowBytes = hn::Set(d, static_cast<std::int32_t>(source.rowBytes));
    const auto weight = [](auto fixed) HWY_ATTR {
        const DI32 tag;
        const auto high =
            hn::And(hn::ShiftLeft<8>(fixed), hn::Set(tag, static_cast<std::int32_t>(0xFF000000)));
        return hn::Or(high,
                      hn::BitCast(tag, hn::ShiftRight<16>(hn::BitCast(hn::RebindToUnsigned<DI32>(), high))));
    };
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
        const auto column = hn::ShiftRight<24>(x), row = hn::ShiftRight<24>(y);
        const auto offset = hn::Add(hn::Mul(row, rowBytes), hn::Add(column, hn::Add(column, column)));
        hn::Store(offset, d, places.offsets + i);
        hn::Store(weight(x), d, places.right + i);
        hn::Store(weight(y), d, places.top + i);
        x = hn::Add(x, hn::ShiftLeft<2>(stepX));
        y = hn::Add(y, hn::ShiftLeft<2>(stepY));
    }
}

/// Eight components from `at` on, times 256.
HWY_INLINE V16 Load(const std::uint8_t* at) {
    const D8 d;
    const hn::FixedTag<std::uint8_t, 8> half;
    const V8 bytes = hn::ZeroExtendVector(d, hn::LoadU(half, at));
    return hn::BitCast(D16(), hn::InterleaveLower(d, hn::Zero(d), bytes));
}

HWY_INLINE V16 Weight(const std::int32_t* twice) { return hn::BitCast(D16(), hn::Set(DI32(), *twice)); }

/// The pixel number `i` in the first three numbers, in 256ths.
HWY_INLINE V16 Sample(const std::uint8_t* bits, std::ptrdiff_t rowBytes, const Places& places,
                      std::size_t i) {
    const std::uint8_t* below = bits + places.offsets[i];
    const V16 right = Weight(places.right + i), top = Weight(places.top + i);
    const V16 lower = Load(below), upper = Load(below + rowBytes);
    const V16 left = hn::Add(hn::Sub(lower, hn::MulHigh(lower, top)), hn::MulHigh(upper, top));
    const V16 next = hn::ShiftRightLanes<3>(D16(), left);
    return hn::Add(hn::Sub(left, hn::MulHigh(left, right)), hn::MulHigh(next, right));
}

/// Up to `PlacesAtOnce` pixels.
HWY_INLINE void SamplePart(std::uint8_t* dest, const Pixels& source, Position at, Position step,
                           std::size_t count) {
    const D8 d8;
    const D16 d16;
    // The rounded components of four pixels, to the 12 bytes where they belong.
    constexpr std::uint8_t Z = 0x80;
    alignas(16) static constexpr std::uint8_t Order[4][16] = {
        {1, 3, 5, Z, Z, Z, Z, Z, Z, Z, Z, Z, Z, Z, Z, Z},
        {Z, Z, Z, 1, 3, 5, Z, Z, Z, Z, Z, Z, Z, Z, Z, Z},
        {Z, Z, Z, Z, Z, Z, 1, 3, 5, Z, Z, Z, Z, Z, Z, Z},
        {Z, Z, Z, Z, Z, Z, Z, Z, Z, 1, 3, 5, Z, Z, Z, Z}
    };
    Places places;
    Find(places, source, at, step, count);
    const std::uint8_t* const bits = source.bits + (at.y >> 32) * source.rowBytes + (at.x >> 32) * 3;
    const std::ptrdiff_t rowBytes = source.rowBytes;
    const V16 half = hn::Set(d16, 128);
    const auto placed = [&](std::size_t first, std::size_t i) HWY_ATTR {
        const V16 pixel = hn::Add(Sample(bits, rowBytes, places, first + i), half);
        return hn::TableLookupBytesOr0(hn::BitCast(d8, pixel), hn::Load(d8, Order[i]));
    };
    const auto four = [&](std::size_t i) HWY_ATTR {
        return hn::Or(hn::Or(placed(i, 0), placed(i, 1)), hn::Or(placed(i, 2), placed(i, 3)));
    };
    std::size_t i = 0;
    // What is stored behind four pixels is overwritten by the next ones.
    for (; i + 8 <= count; i += 4) hn::StoreU(four(i), d8, dest + i * 3);
    if (i + 4 <= count) {
        alignas(16) std::uint8_t last[16];
        hn::Store(four(i), d8, last);
        std::memcpy(dest + i * 3, last, 12);
        i += 4;
    }
    reference::SampleRow(
        dest + i * 3, source,
        {at.x + static_cast<std::int64_t>(i) * step.x, at.y + static_cast<std::int64_t>(i) * step.y}, step,
        count - i);
}

void SampleRow(std::uint8_t* dest, const Pixels& source, Position at, Position step, std::size_t count) {
    for (; count > PlacesAtOnce; count -= PlacesAtOnce, dest += PlacesAtOnce * 3) {
        SamplePart(dest, source, at, step, PlacesAtOnce);
        at.x += static_cast<std::int64_t>(PlacesAtOnce) * step.x;
        at.y += static_cast<std::int64_t>(PlacesAtOnce) * step.y;
    }
    SamplePart(dest, source, at, step, count);
}

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(SampleRow);

void SampleRow(std::uint8_t* dest, const Pixels& source, Position at, Position step, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(SampleRow)(dest, source, at, step, count);
}

}  // namespace tessaloom::pixelops

#endif
