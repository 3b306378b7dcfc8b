#include "imaging/pixelops/ColorRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/ColorRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::BrightenRow;
using reference::GreyRow;
using reference::InvertRow;
using reference::MapPixels;
using reference::MapRow;
using reference::SaturateRow;
using reference::SharpenRow;
using reference::SwapRow;

#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::ScalableTag<std::uint8_t>;
using D16 = hn::ScalableTag<std::uint16_t>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;

/// Replaces vectors of the row by change(them). Returns how many bytes that were.
template <typename Change>
HWY_INLINE std::size_t ChangeBytes(std::uint8_t* row, std::size_t count, Change change) {
    const D8 d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d))
        hn::StoreU(change(hn::LoadU(d, row + i)), d, row + i);
    return i;
}

void InvertRow(std::uint8_t* row, std::size_t count) {
    const std::size_t done = ChangeBytes(row, count, [](V8 values) { return hn::Not(values); });
    reference::InvertRow(row + done, count - done);
}

void BrightenRow(std::uint8_t* row, int amount, std::size_t count) {
    const V8 more = hn::Set(D8(), static_cast<std::uint8_t>(amount > 0 ? amount : 0)),
             less = hn::Set(D8(), static_cast<std::uint8_t>(amount < 0 ? -amount : 0));
    const std::size_t done = ChangeBytes(
        row, count, [&](V8 values) { return hn::SaturatedSub(hn::SaturatedAdd(values, more), less); });
    reference::BrightenRow(row + done, amount, count - done);
}

/// Values to look up: their lower four bits, and which have each of the upper four.
struct Indices {
    V8 low;
    hn::Mask<D8> bit4, bit5, bit6, bit7;

    HWY_INLINE explicit Indices(V8 values)
        : low(hn::And(values, hn::Set(D8(), 15))),
          bit4(hn::TestBit(values, hn::Set(D8(), 16))),
          bit5(hn::TestBit(values, hn::Set(D8(), 32))),
          bit6(hn::TestBit(values, hn::Set(D8(), 64))),
          bit7(hn::TestBit(values, hn::Set(D8(), 128))) {}
};

HWY_INLINE V8 LookUp16(const std::uint8_t* table, const Indices& at) {
    return hn::TableLookupBytes(hn::LoadDup128(D8(), table), at.low);
}

HWY_INLINE V8 LookUp32(const std::uint8_t* table, const Indices& at) {
    return hn::IfThenElse(at.bit4, LookUp16(table + 16, at), LookUp16(table, at));
}

HWY_INLINE V8 LookUp64(const std::uint8_t* table, const Indices& at) {
    return hn::IfThenElse(at.bit5, LookUp32(table + 32, at), LookUp32(table, at));
}

HWY_INLINE V8 LookUp128(const std::uint8_t* table, const Indices& at) {
    return hn::IfThenElse(at.bit6, LookUp64(table + 64, at), LookUp64(table, at));
}

HWY_INLINE V8 LookUp(const std::uint8_t* table, V8 values) {
    const Indices at(values);
    return hn::IfThenElse(at.bit7, LookUp128(table + 128, at), LookUp128(table, at));
}

void MapRow(std::uint8_t* row, const std::uint8_t* table, std::size_t count) {
    const std::size_t done = ChangeBytes(row, count, [&](V8 values) { return LookUp(table, values); });
    reference::MapRow(row + done, table, count - done);
}

/// Calls change(blue, green, red) with the components of as many pixels as a vector has lanes, and stores
/// what it made of them. Returns at which pixel too few are left.
template <typename Change>
HWY_INLINE std::size_t ChangePixels(std::uint8_t* row, std::size_t pixels, Change change) {
    const D8 d;
    std::size_t x = 0;
    for (; x + hn::Lanes(d) <= pixels; x += hn::Lanes(d)) {
        V8 blue, green, red;
        hn::LoadInterleaved3(d, row + x * 3, blue, green, red);
        change(blue, green, red);
        hn::StoreInterleaved3(blue, green, red, d, row + x * 3);
    }
    return x;
}

void MapPixels(std::uint8_t* row, const std::uint8_t* blue, const std::uint8_t* red, std::size_t pixels) {
    const std::size_t x = ChangePixels(row, pixels, [&](V8& b, V8&, V8& r) {
        b = LookUp(blue, b);
        r = LookUp(red, r);
    });
    reference::MapPixels(row + x * 3, blue, red, pixels - x);
}

void SwapRow(std::uint8_t* row, std::size_t pixels) {
    const std::size_t x = ChangePixels(row, pixels, [](V8& blue, V8&, V8& red) {
        const V8 kept = blue;
        blue = red;
        red = kept;
    });
    reference::SwapRow(row + x * 3, pixels - x);
}

/// Every other byte of a vector, as numbers.
HWY_INLINE V16 Even(V8 bytes) { return hn::And(hn::BitCast(D16(), bytes), hn::Set(D16(), 255)); }
HWY_INLINE V16 Odd(V8 bytes) { return hn::ShiftRight<8>(hn::BitCast(D16(), bytes)); }
HWY_INLINE V8 FromHalves(V16 even, V16 odd) { return hn::BitCast(D8(), hn::Or(even, hn::ShiftLeft<8>(odd))); }

HWY_INLINE V16 Lightness(V16 blue, V16 green, V16 red) {
    const D16 d;
    const V16 cold = hn::Add(hn::Mul(blue, hn::Set(d, 29)), hn::Mul(green, hn::Set(d, 150)));
    return hn::ShiftRight<8>(hn::Add(cold, hn::Add(hn::Mul(red, hn::Set(d, 77)), hn::Set(d, 128))));
}

void GreyRow(std::uint8_t* row, std::size_t pixels) {
    const std::size_t x = ChangePixels(row, pixels, [](V8& blue, V8& green, V8& red) {
        blue = FromHalves(Lightness(Even(blue), Even(green), Even(red)),
                          Lightness(Odd(blue), Odd(green), Odd(red)));
        green = red = blue;
    });
    reference::GreyRow(row + x * 3, pixels - x);
}

void SaturateRow(std::uint8_t* row, int fifths, std::size_t pixels) {
    const D16 d;
    const auto number = [&](int value) { return hn::Set(d, static_cast<std::uint16_t>(value)); };
    const V16 own = number(fifths), added = number(fifths < 5 ? 5 - fifths : 0),
              removed = number(fifths > 5 ? fifths - 5 : 0), half = number(2), most = number(255);
    const V16 fifth = number(52429);  // 2^18 / 5, which divides all numbers of 16 bits exactly
    const auto saturate = [&](V16& blue, V16& green, V16& red) {
        const V16 lightness = Lightness(blue, green, red);
        const V16 more = hn::Add(hn::Mul(lightness, added), half), less = hn::Mul(lightness, removed);
        for (V16* component : {&blue, &green, &red}) {
            const V16 fivefold = hn::SaturatedSub(hn::Add(hn::Mul(*component, own), more), less);
            *component = hn::Min(hn::ShiftRight<2>(hn::MulHigh(fivefold, fifth)), most);
        }
    };
    const std::size_t x = ChangePixels(row, pixels, [&](V8& blue, V8& green, V8& red) {
        V16 even[] = {Even(blue), Even(green), Even(red)}, odd[] = {Odd(blue), Odd(green), Odd(red)};
        saturate(even[0], even[1], even[2]);
        saturate(odd[0], odd[1], odd[2]);
        blue = FromHalves(even[0], odd[0]);
        green = FromHalves(even[1], odd[1]);
        red = FromHalves(even[2], odd[2]);
    });
    reference::SaturateRow(row + x * 3, fifths, pixels - x);
}

HWY_INLINE V16 Sharpened(V16 here, V16 left, V16 right, V16 below, V16 above) {
    const hn::RebindToSigned<D16> d;
    const V16 around = hn::Add(hn::Add(left, right), hn::Add(below, above));
    const V16 fourfold = hn::Sub(hn::Add(hn::ShiftLeft<3>(here), hn::Set(D16(), 2)), around);
    const auto value = hn::ShiftRight<2>(hn::BitCast(d, fourfold));
    return hn::BitCast(D16(), hn::Min(hn::Max(value, hn::Zero(d)), hn::Set(d, 255)));
}

void SharpenRow(std::uint8_t* out, const std::uint8_t* here, const std::uint8_t* below,
                const std::uint8_t* above, std::size_t count) {
    const D8 d;
    std::size_t i = 0;
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
        const V8 centre = hn::LoadU(d, here + i), left = hn::LoadU(d, here + i - 3),
                 right = hn::LoadU(d, here + i + 3), under = hn::LoadU(d, below + i),
                 over = hn::LoadU(d, above + i);
        const V16 even = Sharpened(Even(centre), Even(left), Even(right), Even(under), Even(over));
        const V16 odd = Sharpened(Odd(centre), Odd(left), Odd(right), Odd(under), Odd(over));
        hn::StoreU(FromHalves(even, odd), d, out + i);
    }
    reference::SharpenRow(out + i, here + i, below + i, above + i, count - i);
}

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(InvertRow);
HWY_EXPORT(BrightenRow);
HWY_EXPORT(MapRow);
HWY_EXPORT(MapPixels);
HWY_EXPORT(GreyRow);
HWY_EXPORT(SaturateRow);
HWY_EXPORT(SwapRow);
HWY_EXPORT(SharpenRow);

void InvertRow(std::uint8_t* row, std::size_t count) { HWY_DYNAMIC_DISPATCH(InvertRow)(row, count); }

void BrightenRow(std::uint8_t* row, int amount, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(BrightenRow)(row, amount, count);
}

void MapRow(std::uint8_t* row, const std::uint8_t* table, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(MapRow)(row, table, count);
}

void MapPixels(std::uint8_t* row, const std::uint8_t* blue, const std::uint8_t* red, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(MapPixels)(row, blue, red, pixels);
}

void GreyRow(std::uint8_t* row, std::size_t pixels) { HWY_DYNAMIC_DISPATCH(GreyRow)(row, pixels); }

void SaturateRow(std::uint8_t* row, int fifths, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(SaturateRow)(row, fifths, pixels);
}

void SwapRow(std::uint8_t* row, std::size_t pixels) { HWY_DYNAMIC_DISPATCH(SwapRow)(row, pixels); }

void SharpenRow(std::uint8_t* out, const std::uint8_t* here, const std::uint8_t* below,
                const std::uint8_t* above, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(SharpenRow)(out, here, below, above, count);
}

}  // namespace tessaloom::pixelops

#endif
