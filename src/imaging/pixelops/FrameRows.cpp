#include "imaging/pixelops/FrameRows.h"

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/FrameRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::ChangeRow;
using reference::DiffCountRow;
using reference::DiffRow;
using reference::FillRow;
using reference::WidenRow;

#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::ScalableTag<std::uint8_t>;
using D16 = hn::ScalableTag<std::uint16_t>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;

void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d), count = pixels * 3;
    std::size_t i = 0;
    if (3 * lanes <= FillBytes) {
        const V8 first = hn::LoadU(d, pattern), second = hn::LoadU(d, pattern + lanes),
                 third = hn::LoadU(d, pattern + 2 * lanes);
        for (; i + 3 * lanes <= count; i += 3 * lanes) {
            hn::StoreU(first, d, dest + i);
            hn::StoreU(second, d, dest + i + lanes);
            hn::StoreU(third, d, dest + i + 2 * lanes);
        }
    }
    reference::FillRow(dest + i, pattern, (count - i) / 3);
}

/// Without a threshold.
HWY_INLINE V8 Difference(const std::uint8_t* current, const std::uint8_t* previous) {
    const D8 d;
    const V8 now = hn::LoadU(d, current), before = hn::LoadU(d, previous), none = hn::Set(d, 128);
    return hn::SaturatedSub(hn::SaturatedAdd(none, hn::SaturatedSub(now, before)),
                            hn::SaturatedSub(before, now));
}

HWY_INLINE V8 Difference(const std::uint8_t* current, const std::uint8_t* previous, V8 threshold) {
    const D8 d;
    const V8 now = hn::LoadU(d, current), before = hn::LoadU(d, previous), none = hn::Set(d, 128);
    const V8 up = hn::SaturatedSub(now, before), down = hn::SaturatedSub(before, now);
    const V8 distance = hn::Or(up, down);
    const V8 centred = hn::SaturatedSub(hn::SaturatedAdd(none, up), down);
    return hn::IfThenElse(hn::Eq(hn::SaturatedSub(distance, threshold), hn::Zero(d)), none, centred);
}

void DiffRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
             std::size_t count) {
    const D8 d;
    const V8 within = hn::Set(d, static_cast<std::uint8_t>(threshold));
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d))
        hn::StoreU(Difference(current + i, previous + i, within), d, out + i);
    reference::DiffRow(out + i, current + i, previous + i, threshold, count - i);
}

/// Counts eight bytes; most often, nothing happened in any of them.
HWY_INLINE void CountEight(const std::uint8_t* bytes, Counts& counts) {
    std::uint64_t eight;
    std::memcpy(&eight, bytes, sizeof eight);
    if (eight == 0x8080808080808080) {
        counts.none += 8;
        return;
    }
    for (int i = 0; i < 8; ++i) ++counts.parts[i % 4][eight >> (8 * i) & 0xFF];
}

void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, Counts& counts) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d), step = 4 * lanes;
    std::size_t i = 0;
    const V8 within = hn::Set(d, static_cast<std::uint8_t>(threshold)), none = hn::Set(d, 128);
    for (; i + step <= count; i += step) {
        const V8 one = Difference(current + i, previous + i, within);
        const V8 two = Difference(current + i + lanes, previous + i + lanes, within);
        const V8 three = Difference(current + i + 2 * lanes, previous + i + 2 * lanes, within);
        const V8 four = Difference(current + i + 3 * lanes, previous + i + 3 * lanes, within);
        hn::StoreU(one, d, out + i);
        hn::StoreU(two, d, out + i + lanes);
        hn::StoreU(three, d, out + i + 2 * lanes);
        hn::StoreU(four, d, out + i + 3 * lanes);
        const V8 any = hn::Or(hn::Or(hn::Xor(one, none), hn::Xor(two, none)),
                              hn::Or(hn::Xor(three, none), hn::Xor(four, none)));
        if (hn::AllTrue(d, hn::Eq(any, hn::Zero(d)))) {
            counts.none += static_cast<std::uint32_t>(step);
        } else {
            for (std::size_t part = 0; part < step; part += 8) CountEight(out + i + part, counts);
        }
    }
    reference::DiffCountRow(out + i, current + i, previous + i, threshold, count - i, counts);
}

void ChangeRow(const std::uint8_t* current, const std::uint8_t* previous, ChangeLimits limits,
               std::size_t count, FrameChange& change) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d);
    const V8 darker = hn::Set(d, static_cast<std::uint8_t>(limits.darker)),
             lighter = hn::Set(d, static_cast<std::uint8_t>(limits.lighter));
    V8 lowest = hn::Set(d, 255), highest = hn::Zero(d);
    std::size_t i = 0;
    while (i + lanes <= count) {
        // A lane counts to 255 at most.
        const std::size_t end = i + std::min<std::size_t>((count - i) / lanes, 255) * lanes;
        V8 beyond = hn::Zero(d);
        for (; i < end; i += lanes) {
            const V8 difference = Difference(current + i, previous + i);
            const auto counts = hn::Or(hn::Eq(hn::Min(difference, darker), difference),
                                       hn::Eq(hn::Max(difference, lighter), difference));
            beyond = hn::Sub(beyond, hn::VecFromMask(d, counts));
            lowest = hn::Min(lowest, difference);
            highest = hn::Max(highest, difference);
        }
        const hn::Repartition<std::uint64_t, D8> wide;
        change.beyond += static_cast<std::int64_t>(hn::GetLane(hn::SumOfLanes(wide, hn::SumsOf8(beyond))));
    }
    std::uint8_t extremes[HWY_MAX_BYTES];
    const auto fold = [&](V8 lane, auto&& take) {
        hn::StoreU(lane, d, extremes);
        for (std::size_t lane8 = 0; lane8 < lanes; ++lane8) take(static_cast<int>(extremes[lane8]));
    };
    if (i > 0) {
        fold(lowest, [&](int value) { change.lowest = std::min(change.lowest, value); });
        fold(highest, [&](int value) { change.highest = std::max(change.highest, value); });
    }
    reference::ChangeRow(current + i, previous + i, limits, count - i, change);
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
HWY_EXPORT(DiffRow);
HWY_EXPORT(DiffCountRow);
HWY_EXPORT(ChangeRow);
HWY_EXPORT(WidenRow);

void FillRow(std::uint8_t* dest, const std::uint8_t* pattern, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(FillRow)(dest, pattern, pixels);
}

void DiffRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
             std::size_t count) {
    HWY_DYNAMIC_DISPATCH(DiffRow)(out, current, previous, threshold, count);
}

void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, Counts& counts) {
    HWY_DYNAMIC_DISPATCH(DiffCountRow)(out, current, previous, threshold, count, counts);
}

void ChangeRow(const std::uint8_t* current, const std::uint8_t* previous, ChangeLimits limits,
               std::size_t count, FrameChange& change) {
    HWY_DYNAMIC_DISPATCH(ChangeRow)(current, previous, limits, count, change);
}

void WidenRow(std::uint8_t* dest, const std::uint8_t* source, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(WidenRow)(dest, source, pixels);
}

}  // namespace tessaloom::pixelops

#endif
