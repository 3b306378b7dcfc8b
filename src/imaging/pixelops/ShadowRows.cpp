#include "imaging/pixelops/ShadowRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/ShadowRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::SoftenRow;

#else

namespace hn = hwy::HWY_NAMESPACE;

/// The bytes from `at` on as numbers of 16 bits.
template <class D>
HWY_INLINE hn::Vec<D> Load(D d, const std::uint8_t* at) {
    return hn::PromoteTo(d, hn::LoadU(hn::Rebind<std::uint8_t, D>(), at));
}

void SoftenRow(std::uint8_t* dest, const FiveLines& lines, const Softness& softness, std::size_t count) {
    const hn::ScalableTag<std::uint16_t> d;
    const hn::RebindToSigned<decltype(d)> s;
    const hn::Rebind<std::uint8_t, decltype(d)> bytes;
    const auto centre = hn::Set(d, static_cast<std::uint16_t>(softness.centre));
    const auto next = hn::Set(d, static_cast<std::uint16_t>(softness.next));
    const auto outer = hn::Set(d, static_cast<std::uint16_t>(softness.outer));
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const auto middle = hn::Mul(centre, Load(d, lines.centre + i));
        const auto near = hn::Mul(next, hn::Add(Load(d, lines.before1 + i), Load(d, lines.after1 + i)));
        const auto far = hn::Mul(outer, hn::Add(Load(d, lines.before2 + i), Load(d, lines.after2 + i)));
        const auto sum = hn::Add(hn::Add(middle, near), hn::Add(far, hn::Set(d, 8)));
        hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(s, hn::ShiftRight<4>(sum))), bytes, dest + i);
    }
    reference::SoftenRow(
        dest + i,
        {lines.before2 + i, lines.before1 + i, lines.centre + i, lines.after1 + i, lines.after2 + i},
        softness, count - i);
}

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(SoftenRow);

void SoftenRow(std::uint8_t* dest, const FiveLines& lines, const Softness& softness, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(SoftenRow)(dest, lines, softness, count);
}

}  // namespace tessaloom::pixelops

#endif
