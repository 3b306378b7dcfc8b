#include "imaging/pixelops/BlurRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/BlurRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::MeanRow;
using reference::SumRow;

#else

namespace hn = hwy::HWY_NAMESPACE;
using D16 = hn::ScalableTag<std::uint16_t>;
using V16 = hn::Vec<D16>;

HWY_INLINE V16 Load(const std::uint8_t* at) {
    return hn::PromoteTo(D16(), hn::LoadU(hn::Rebind<std::uint8_t, D16>(), at));
}

void SumRow(std::uint16_t* sums, const std::uint8_t* added, const std::uint8_t* removed, std::size_t count) {
    const D16 d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        V16 sum = hn::Add(hn::LoadU(d, sums + i), Load(added + i));
        if (removed) sum = hn::Sub(sum, Load(removed + i));
        hn::StoreU(sum, d, sums + i);
    }
    reference::SumRow(sums + i, added + i, removed ? removed + i : nullptr, count - i);
}

/// Division by the area as a product: exact for all sums up to 255 * area and their rounding.
template <int radius>
struct Division;
template <>
struct Division<1> {
    static constexpr std::uint16_t Factor = 7282;
    static constexpr int Shift = 0;
};
template <>
struct Division<2> {
    static constexpr std::uint16_t Factor = 20972;
    static constexpr int Shift = 3;
};
template <>
struct Division<3> {
    static constexpr std::uint16_t Factor = 21400;
    static constexpr int Shift = 4;
};

template <int radius>
HWY_INLINE V16 Mean(const std::uint16_t* sums) {
    const D16 d;
    constexpr int Area = (2 * radius + 1) * (2 * radius + 1);
    V16 sum = hn::Add(hn::LoadU(d, sums), hn::Set(d, Area / 2));
    for (int i = 3; i <= 3 * radius; i += 3)
        sum = hn::Add(sum, hn::Add(hn::LoadU(d, sums - i), hn::LoadU(d, sums + i)));
    return hn::ShiftRight<Division<radius>::Shift>(hn::MulHigh(sum, hn::Set(d, Division<radius>::Factor)));
}

template <int radius>
HWY_INLINE void MeanRowOf(std::uint8_t* out, const std::uint16_t* sums, std::size_t count) {
    const D16 d;
    const hn::RebindToSigned<D16> s;
    const hn::Rebind<std::uint8_t, D16> bytes;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d))
        hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(s, Mean<radius>(sums + i))), bytes, out + i);
    reference::MeanRow(out + i, sums + i, radius, count - i);
}

void MeanRow(std::uint8_t* out, const std::uint16_t* sums, int radius, std::size_t count) {
    switch (radius) {
        case 1:
            return MeanRowOf<1>(out, sums, count);
        case 2:
            return MeanRowOf<2>(out, sums, count);
        default:
            return MeanRowOf<3>(out, sums, count);
    }
}

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(SumRow);
HWY_EXPORT(MeanRow);

void SumRow(std::uint16_t* sums, const std::uint8_t* added, const std::uint8_t* removed, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(SumRow)(sums, added, removed, count);
}

void MeanRow(std::uint8_t* out, const std::uint16_t* sums, int radius, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(MeanRow)(out, sums, radius, count);
}

}  // namespace tessaloom::pixelops

#endif
