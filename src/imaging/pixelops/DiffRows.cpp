#include "imaging/pixelops/DiffRows.h"

#include <algorithm>
#include <cstring>

#include "imaging/pixelops/Arithmetic.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/DiffRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::ChangeRow;
using reference::DiffCountRow;
using reference::DiffRow;

#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::ScalableTag<std::uint8_t>;
using V8 = hn::Vec<D8>;

constexpr std::uint8_t None = 128;

/// Without a threshold.
HWY_INLINE V8 Difference(const std::uint8_t* current, const std::uint8_t* previous) {
    const D8 d;
    const V8 now = hn::LoadU(d, current), before = hn::LoadU(d, previous), none = hn::Set(d, None);
    return hn::SaturatedSub(hn::SaturatedAdd(none, hn::SaturatedSub(now, before)),
                            hn::SaturatedSub(before, now));
}

HWY_INLINE V8 Difference(const std::uint8_t* current, const std::uint8_t* previous, V8 threshold) {
    const D8 d;
    const V8 now = hn::LoadU(d, current), before = hn::LoadU(d, previous), none = hn::Set(d, None);
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

/// Counts the differences of a row in blocks of four vectors. A table takes one step of the processor for
/// each byte, so that it is spared most of them: what is 128 is not counted, it is the rest; what is about
/// 128, as the noise of cameras is, is compared with each of those values, a vector at a time.
class Tally {
public:
    explicit Tally(Counts& counts) : counts_(counts) {}

    static std::size_t BlockBytes() { return 4 * hn::Lanes(D8()); }

    HWY_INLINE void Add(V8 one, V8 two, V8 three, V8 four) {
        const D8 d;
        if (AllWithin<0>(one, two, three, four)) return;
        if (AllWithin<Close>(one, two, three, four)) return CountNear<Close>(one, two, three, four);
        const V8 none = hn::Set(d, None);
        const auto nearOne = Near(one), nearTwo = Near(two), nearThree = Near(three), nearFour = Near(four);
        const std::size_t near = hn::CountTrue(d, nearOne) + hn::CountTrue(d, nearTwo) +
                                 hn::CountTrue(d, nearThree) + hn::CountTrue(d, nearFour);
        if (near < BlockBytes() / 16 * NearSixteenths) {
            Store(one, two, three, four, gathered_ + size_);
            size_ += BlockBytes();
            if (size_ >= GatheredBytes) CountGathered();
            return;
        }
        CountNear<Reach>(one, two, three, four);
        if (near == BlockBytes()) return;
        Store(hn::IfThenElse(nearOne, none, one), hn::IfThenElse(nearTwo, none, two),
              hn::IfThenElse(nearThree, none, three), hn::IfThenElse(nearFour, none, four), block_);
        Gather();
    }

    void Finish() {
        CountGathered();
        FlushNear();
    }

private:
    /// What the noise of cameras reaches, blurred and as it is.
    static constexpr int Close = 3, Reach = 8, NearValues = 2 * Reach;

    /// Where fewer are near, most eights have one that is not, and a table must count them anyway.
    static constexpr std::size_t NearSixteenths = 15;

    static constexpr std::size_t MostBytes = 4 * HWY_MAX_BYTES, GatheredBytes = 512;

    /// All from 128 - `Reach` to 128 + `Reach` but 128 itself.
    static constexpr std::uint8_t NearValue(int i) {
        return static_cast<std::uint8_t>(None - Reach + i + (i < Reach ? 0 : 1));
    }

    /// 0 .. 2 * reach for what differs by no more than that from 128, more for all else.
    template <int reach>
    static HWY_INLINE V8 Above(V8 values) {
        return hn::Sub(values, hn::Set(D8(), None - reach));
    }

    template <int reach>
    static HWY_INLINE hn::Mask<D8> Within(V8 above) {
        return hn::Eq(hn::Min(above, hn::Set(D8(), 2 * reach)), above);
    }

    template <int reach>
    static HWY_INLINE bool AllWithin(V8 one, V8 two, V8 three, V8 four) {
        return hn::AllTrue(D8(), Within<reach>(hn::Max(hn::Max(Above<reach>(one), Above<reach>(two)),
                                                       hn::Max(Above<reach>(three), Above<reach>(four)))));
    }

    static HWY_INLINE hn::Mask<D8> Near(V8 values) { return Within<Reach>(Above<Reach>(values)); }

    template <int reach>
    HWY_INLINE void CountNear(V8 one, V8 two, V8 three, V8 four) {
        const D8 d;
        for (int i = Reach - reach; i < Reach + reach; ++i) {
            const V8 value = hn::Set(d, NearValue(i));
            // Each that is equal adds -1.
            const V8 equal = hn::Add(
                hn::Add(hn::VecFromMask(d, hn::Eq(one, value)), hn::VecFromMask(d, hn::Eq(two, value))),
                hn::Add(hn::VecFromMask(d, hn::Eq(three, value)), hn::VecFromMask(d, hn::Eq(four, value))));
            hn::Store(hn::Sub(hn::Load(d, near_[i]), equal), d, near_[i]);
        }
        if (++nearBlocks_ == 255 / 4) FlushNear();
    }

    /// A lane of `near_` counts to 255 at most.
    void FlushNear() {
        if (nearBlocks_ == 0) return;
        const D8 d;
        const hn::Repartition<std::uint64_t, D8> wide;
        for (int i = 0; i < NearValues; ++i) {
            const auto sum = hn::SumOfLanes(wide, hn::SumsOf8(hn::Load(d, near_[i])));
            counts_.parts[0][NearValue(i)] += static_cast<std::uint32_t>(hn::GetLane(sum));
            hn::Store(hn::Zero(d), d, near_[i]);
        }
        nearBlocks_ = 0;
    }

    HWY_INLINE void Store(V8 one, V8 two, V8 three, V8 four, std::uint8_t* to) {
        const D8 d;
        const std::size_t lanes = hn::Lanes(d);
        hn::StoreU(one, d, to);
        hn::StoreU(two, d, to + lanes);
        hn::StoreU(three, d, to + 2 * lanes);
        hn::StoreU(four, d, to + 3 * lanes);
    }

    /// Eights of the block in which something is left to count are put by, without a branch: nobody could
    /// foretell it.
    HWY_INLINE void Gather() {
        constexpr std::uint64_t NoneOfEight = 0x8080808080808080;
        for (std::size_t i = 0; i < BlockBytes(); i += 8) {
            std::uint64_t eight;
            std::memcpy(&eight, block_ + i, sizeof eight);
            std::memcpy(gathered_ + size_, &eight, sizeof eight);
            size_ += eight == NoneOfEight ? 0 : sizeof eight;
        }
        if (size_ >= GatheredBytes) CountGathered();
    }

    void CountGathered() {
        for (std::size_t at = 0; at < size_; at += 8) {
            std::uint64_t eight;
            std::memcpy(&eight, gathered_ + at, sizeof eight);
            for (int i = 0; i < 8; ++i) ++counts_.parts[i][eight >> (8 * i) & 0xFF];
        }
        size_ = 0;
    }

    Counts& counts_;
    alignas(HWY_MAX_BYTES) std::uint8_t near_[NearValues][HWY_MAX_BYTES] = {};
    int nearBlocks_ = 0;
    alignas(HWY_MAX_BYTES) std::uint8_t block_[MostBytes];
    std::uint8_t gathered_[GatheredBytes + MostBytes];
    std::size_t size_ = 0;  ///< Of what is gathered.
};

template <bool streamed>
HWY_INLINE void Put(V8 value, std::uint8_t* at) {
    if constexpr (streamed)
        hn::Stream(value, D8(), at);
    else
        hn::StoreU(value, D8(), at);
}

/// Returns how many bytes it did; all other numbers are as in `DiffCountRow`.
template <bool streamed>
HWY_INLINE std::size_t DiffCountBlocks(std::uint8_t* out, const std::uint8_t* current,
                                       const std::uint8_t* previous, int threshold, std::size_t count,
                                       Counts& counts) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d), step = Tally::BlockBytes();
    const V8 within = hn::Set(d, static_cast<std::uint8_t>(threshold));
    Tally tally(counts);
    std::size_t i = 0;
    for (; i + step <= count; i += step) {
        const V8 one = Difference(current + i, previous + i, within);
        const V8 two = Difference(current + i + lanes, previous + i + lanes, within);
        const V8 three = Difference(current + i + 2 * lanes, previous + i + 2 * lanes, within);
        const V8 four = Difference(current + i + 3 * lanes, previous + i + 3 * lanes, within);
        Put<streamed>(one, out + i);
        Put<streamed>(two, out + i + lanes);
        Put<streamed>(three, out + i + 2 * lanes);
        Put<streamed>(four, out + i + 3 * lanes);
        tally.Add(one, two, three, four);
    }
    tally.Finish();
    counts.total += i;
    return i;
}

void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, bool streamed, Counts& counts) {
    std::size_t i = 0;
    if (streamed) {
        i = std::min(count, ToMultiple(out, hn::Lanes(D8())));
        reference::DiffCountRow(out, current, previous, threshold, i, streamed, counts);
    }
    const auto blocks = streamed ? DiffCountBlocks<true> : DiffCountBlocks<false>;
    i += blocks(out + i, current + i, previous + i, threshold, count - i, counts);
    reference::DiffCountRow(out + i, current + i, previous + i, threshold, count - i, streamed, counts);
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

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(DiffRow);
HWY_EXPORT(DiffCountRow);
HWY_EXPORT(ChangeRow);

void DiffRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
             std::size_t count) {
    HWY_DYNAMIC_DISPATCH(DiffRow)(out, current, previous, threshold, count);
}

void DiffCountRow(std::uint8_t* out, const std::uint8_t* current, const std::uint8_t* previous, int threshold,
                  std::size_t count, bool streamed, Counts& counts) {
    HWY_DYNAMIC_DISPATCH(DiffCountRow)(out, current, previous, threshold, count, streamed, counts);
}

void ChangeRow(const std::uint8_t* current, const std::uint8_t* previous, ChangeLimits limits,
               std::size_t count, FrameChange& change) {
    HWY_DYNAMIC_DISPATCH(ChangeRow)(current, previous, limits, count, change);
}

}  // namespace tessaloom::pixelops

#endif
