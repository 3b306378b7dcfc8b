#include "platform/jpeg/PlaneRows.h"

#include <cstring>

#if !defined(TESSALOOM_PLANE_WEIGHTS)
#define TESSALOOM_PLANE_WEIGHTS
namespace tessaloom {

/// A component is (offset - blue * [0] - green * ([1] + [3]) - red * [2]) / 65536. That of green is in two
/// parts, and all are negative, as 16 bits would not hold them otherwise.
struct PlaneWeights {
    std::int16_t weights[4];
    std::int32_t offset;
};

constexpr std::int32_t MiddleOfChroma = (128 << 16) + 32767;
constexpr PlaneWeights LumaWeights = {
    {-7471, -16384, -19595, -22086},
    32768
};
constexpr PlaneWeights BluenessWeights = {
    {-32768, 10000, 11059, 11709},
    MiddleOfChroma
};
constexpr PlaneWeights RednessWeights = {
    {5329, 10000, -32768, 17439},
    MiddleOfChroma
};

}  // namespace tessaloom
#endif

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/jpeg/PlaneRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::HWY_NAMESPACE {

// Where bytes cannot be shuffled within a register, the encoder's own way is the faster one.
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128 || HWY_HAVE_SCALABLE

bool CanSplitRows() { return false; }

void SplitRows(const std::uint8_t*, const std::uint8_t*, std::size_t, PlaneRows) {}

#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::CappedTag<std::uint8_t, 32>;
using D16 = hn::RepartitionToWide<hn::RebindToSigned<D8>>;
using D32 = hn::RepartitionToWide<D16>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;
using V32 = hn::Vec<D32>;

/// A vector is made of blocks of 16 bytes. Here each one deals with 16 pixels, four at a time.
constexpr std::size_t BlockBytes = 48, Groups = 4, GroupBytes = 12;

/// Bytes that are read beyond the last pixel.
constexpr std::size_t Beyond = 16 - GroupBytes;

/// Each block from where its pixels are.
template <class D>
HWY_INLINE hn::Vec<D> LoadBlocks(D d, const std::uint8_t* pixels) {
    if constexpr (hn::MaxLanes(D()) <= 16) {
        return hn::LoadU(d, pixels);
    } else {
        const hn::Half<D> half;
        return hn::Combine(d, LoadBlocks(half, pixels + BlockBytes * hn::MaxLanes(half) / 16),
                           LoadBlocks(half, pixels));
    }
}

/// As many pixels as a vector has bytes, as pairs of 16 bits.
struct Pixels {
    V16 blueGreen[Groups], redGreen[Groups];

    explicit HWY_INLINE Pixels(const std::uint8_t* from) {
        constexpr std::uint8_t No = 0x80;
        alignas(16) constexpr std::uint8_t blueGreenPlaces[] = {0, No, 1, No, 3, No, 4,  No,
                                                                6, No, 7, No, 9, No, 10, No};
        alignas(16) constexpr std::uint8_t redGreenPlaces[] = {2, No, 1, No, 5,  No, 4,  No,
                                                               8, No, 7, No, 11, No, 10, No};
        const D8 d;
        for (std::size_t i = 0; i < Groups; ++i) {
            const V8 bytes = LoadBlocks(d, from + i * GroupBytes);
            blueGreen[i] =
                hn::BitCast(D16(), hn::TableLookupBytesOr0(bytes, hn::LoadDup128(d, blueGreenPlaces)));
            redGreen[i] =
                hn::BitCast(D16(), hn::TableLookupBytesOr0(bytes, hn::LoadDup128(d, redGreenPlaces)));
        }
    }
};

/// `added` and the sum of the products of each pair. It is added last: on NEON the library spreads the pairs
/// over both of its sums, and would take what is in the first of them for products of other pairs.
HWY_INLINE V32 SumOfPairs(V16 a, V16 b, V32 added) {
    V32 rest = hn::Zero(D32());
    const V32 sum = hn::ReorderWidenMulAccumulate(D32(), a, b, hn::Zero(D32()), rest);
    return hn::Add(added, hn::RearrangeToOddPlusEven(sum, rest));
}

/// A component of all pixels, 0 .. 255; in each block, eight of them in either vector.
struct Component {
    V16 first, second;

    HWY_INLINE Component(const Pixels& pixels, const PlaneWeights& by) {
        const auto pair = [&](int at) {
            const std::uint32_t low = static_cast<std::uint16_t>(by.weights[at]),
                                high = static_cast<std::uint16_t>(by.weights[at + 1]);
            return hn::BitCast(D16(), hn::Set(hn::RebindToUnsigned<D32>(), low | high << 16));
        };
        const V16 blueGreen = pair(0), redGreen = pair(2);
        const auto group = [&](std::size_t i) {
            const V32 sum = SumOfPairs(pixels.redGreen[i], redGreen,
                                       SumOfPairs(pixels.blueGreen[i], blueGreen, hn::Zero(D32())));
            return hn::ShiftRight<16>(hn::Sub(hn::Set(D32(), by.offset), sum));
        };
        first = hn::ReorderDemote2To(D16(), group(0), group(1));
        second = hn::ReorderDemote2To(D16(), group(2), group(3));
    }
};

HWY_INLINE void StoreLuma(const Pixels& pixels, std::uint8_t* to) {
    alignas(16) constexpr std::uint8_t order[] = {0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15};
    const D8 d;
    const Component luma(pixels, LumaWeights);
    const V16 both = hn::Or(luma.first, hn::ShiftLeft<8>(luma.second));
    hn::StoreU(hn::TableLookupBytes(hn::BitCast(d, both), hn::LoadDup128(d, order)), d, to);
}

HWY_INLINE void StoreChroma(const Pixels& upper, const Pixels& lower, const PlaneWeights& by,
                            std::uint8_t* to) {
    alignas(16) constexpr std::int32_t roundings[] = {1, 2, 1, 2};
    const Component above(upper, by), below(lower, by);
    const V16 one = hn::Set(D16(), 1);
    const V32 rounding = hn::LoadDup128(D32(), roundings);
    const V32 first = SumOfPairs(hn::Add(above.first, below.first), one, rounding);
    const V32 second = SumOfPairs(hn::Add(above.second, below.second), one, rounding);
    const V16 means = hn::ReorderDemote2To(D16(), hn::ShiftRight<2>(first), hn::ShiftRight<2>(second));
    const hn::Half<D8> half;
    hn::StoreU(hn::DemoteTo(half, means), half, to);
}

/// As many columns as a vector has bytes.
HWY_INLINE void SplitColumns(const std::uint8_t* upper, const std::uint8_t* lower, const PlaneRows& planes) {
    const Pixels above(upper), below(lower);
    StoreLuma(above, planes.upperLuma);
    StoreLuma(below, planes.lowerLuma);
    StoreChroma(above, below, BluenessWeights, planes.blueness);
    StoreChroma(above, below, RednessWeights, planes.redness);
}

bool CanSplitRows() { return true; }

void SplitRows(const std::uint8_t* upper, const std::uint8_t* lower, std::size_t width, PlaneRows planes) {
    constexpr std::size_t step = hn::MaxLanes(D8());
    std::size_t x = 0;
    for (; (x + step) * 3 + Beyond <= width * 3; x += step)
        SplitColumns(
            upper + x * 3, lower + x * 3,
            {planes.upperLuma + x, planes.lowerLuma + x, planes.blueness + x / 2, planes.redness + x / 2});
    if (x == width) return;
    const std::size_t rest = width - x;
    std::uint8_t above[step * 3 + Beyond] = {}, below[step * 3 + Beyond] = {}, split[4][step];
    std::memcpy(above, upper + x * 3, rest * 3);
    std::memcpy(below, lower + x * 3, rest * 3);
    SplitColumns(above, below, {split[0], split[1], split[2], split[3]});
    std::memcpy(planes.upperLuma + x, split[0], rest);
    std::memcpy(planes.lowerLuma + x, split[1], rest);
    std::memcpy(planes.blueness + x / 2, split[2], rest / 2);
    std::memcpy(planes.redness + x / 2, split[3], rest / 2);
}

#endif

}  // namespace tessaloom::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom {

HWY_EXPORT(CanSplitRows);
HWY_EXPORT(SplitRows);

bool CanSplitRows() { return HWY_DYNAMIC_DISPATCH(CanSplitRows)(); }

void SplitRows(const std::uint8_t* upper, const std::uint8_t* lower, std::size_t width, PlaneRows planes) {
    HWY_DYNAMIC_DISPATCH(SplitRows)(upper, lower, width, planes);
}

}  // namespace tessaloom

#endif
