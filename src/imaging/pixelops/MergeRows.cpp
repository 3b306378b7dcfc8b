#include "imaging/pixelops/MergeRows.h"

#include <array>
#include <cstring>

#if !defined(TESSALOOM_BLEND_FACTORS)
#define TESSALOOM_BLEND_FACTORS
namespace tessaloom::pixelops {

/// For each opacity the factor, in 32768ths, with which a rounded product is [way * opacity / 255] for every
/// way from one byte to another, -255 .. 255: one of the two next to opacity / 255 is.
constexpr auto BlendFactors = [] {
    const auto exact = [](int factor, int opacity) {
        for (int way = -255; way <= 255; ++way)
            if ((way * factor + 0x4000) >> 15 != (way * opacity * 2 + 255 + 510 * 255) / 510 - 255)
                return false;
        return true;
    };
    std::array<std::int16_t, 256> factors{};
    for (int opacity = 0; opacity < 256; ++opacity) {
        const int lower = opacity * 32768 / 255, factor = exact(lower, opacity) ? lower : lower + 1;
        factors[static_cast<std::size_t>(opacity)] =
            static_cast<std::int16_t>(factor < 32767 ? factor : 32767);
    }
    return factors;
}();

}  // namespace tessaloom::pixelops
#endif

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/MergeRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

using reference::HideRow;
using reference::KeepRow;
using reference::LayRow;
using reference::ScaleRow;

#else

namespace hn = hwy::HWY_NAMESPACE;
using D8 = hn::ScalableTag<std::uint8_t>;
using D16 = hn::ScalableTag<std::uint16_t>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;

/// The most bytes that a vector may have here; longer ones (of processors that leave it open) take the
/// reference.
constexpr std::size_t MaximumLanes = 64;

/// The bytes of a vector as numbers of 16 bits: those at even places and those at odd ones. This takes no
/// shuffling, neither there nor back.
HWY_INLINE V16 Even(V8 bytes) { return hn::And(hn::BitCast(D16(), bytes), hn::Set(D16(), 0xFF)); }
HWY_INLINE V16 Odd(V8 bytes) { return hn::ShiftRight<8>(hn::BitCast(D16(), bytes)); }
HWY_INLINE V8 Join(V16 even, V16 odd) { return hn::BitCast(D8(), hn::Or(even, hn::ShiftLeft<8>(odd))); }

/// [value / 255] for 0 .. 65025.
HWY_INLINE V16 By255(V16 value) {
    return hn::MulHigh(hn::Add(value, hn::Set(D16(), 128)), hn::Set(D16(), 257));
}

HWY_INLINE V8 Scaled(V8 bytes, V16 factor) {
    return Join(By255(hn::Mul(Even(bytes), factor)), By255(hn::Mul(Odd(bytes), factor)));
}
HWY_INLINE V8 Scaled(V8 bytes, V8 factors) {
    return Join(By255(hn::Mul(Even(bytes), Even(factors))), By255(hn::Mul(Odd(bytes), Odd(factors))));
}

/// [dest * (65025 - density) / 65025].
///
/// There is no division: the quotient is estimated within 1 / 255, which makes it wrong by one at most; the
/// remainder, of which 16 bits are enough then, tells.
HWY_INLINE V16 Darkened(V16 dest, V16 density) {
    const D16 d;
    const hn::RebindToSigned<D16> s;
    const V16 light = hn::Sub(hn::Set(d, 65025), density);
    const V16 stretched = hn::Mul(dest, hn::Set(d, 257));  // 255 becomes 65535
    const V16 quotient = By255(hn::Add(hn::MulHigh(stretched, light), hn::Set(d, 1)));
    const V16 rest =  // - 65025 is 511 within 16 bits
        hn::Add(hn::Mul(dest, light), hn::Mul(quotient, hn::Set(d, 511)));
    const auto signedRest = hn::BitCast(s, rest);
    const auto above = hn::VecFromMask(s, hn::Gt(signedRest, hn::Set(s, 32512)));
    const auto below = hn::VecFromMask(s, hn::Gt(hn::Set(s, -32512), signedRest));
    return hn::Add(hn::Sub(quotient, hn::BitCast(d, above)), hn::BitCast(d, below));
}

template <Laying laying>
HWY_INLINE V8 Laid(V8 dest, V8 paint, V16 evenOpacity, V16 oddOpacity) {
    const V16 even = hn::Mul(Even(paint), evenOpacity), odd = hn::Mul(Odd(paint), oddOpacity);
    if constexpr (laying == Laying::KeepDenser) {
        return hn::Max(dest, Join(By255(even), By255(odd)));
    } else if constexpr (laying == Laying::Darken) {
        return Join(Darkened(Even(dest), even), Darkened(Odd(dest), odd));
    } else {
        const V16 whole = hn::Set(D16(), 255);
        return Join(By255(hn::Add(even, hn::Mul(Even(dest), hn::Sub(whole, evenOpacity)))),
                    By255(hn::Add(odd, hn::Mul(Odd(dest), hn::Sub(whole, oddOpacity)))));
    }
}

/// One vector of densities by a uniform opacity. Nothing is done where there are none, as in most of a shadow
/// bitmap.
template <Laying laying>
struct Uniform {
    V16 opacity;
    explicit HWY_INLINE Uniform(int value) : opacity(hn::Set(D16(), static_cast<std::uint16_t>(value))) {}
    HWY_INLINE void operator()(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t*) const {
        const D8 d;
        const V8 bytes = hn::LoadU(d, paint);
        if (hn::AllTrue(d, hn::Eq(bytes, hn::Zero(d)))) return;
        hn::StoreU(Laid<laying>(hn::LoadU(d, dest), bytes, opacity, opacity), d, dest);
    }
};

/// One vector blended by a uniform opacity: dest + [(paint - dest) * factor / 32768].
template <>
struct Uniform<Laying::Blend> {
    using DS16 = hn::RebindToSigned<D16>;
    hn::Vec<DS16> factor;
    explicit HWY_INLINE Uniform(int opacity)
        : factor(hn::Set(DS16(), BlendFactors[static_cast<std::size_t>(opacity)])) {}
    HWY_INLINE V16 Blended(V16 dest, V16 paint) const {
        const auto way = hn::BitCast(DS16(), hn::Sub(paint, dest));
        return hn::Add(dest, hn::BitCast(D16(), hn::MulFixedPoint15(way, factor)));
    }
    HWY_INLINE void operator()(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t*) const {
        const D8 d;
        const V8 below = hn::LoadU(d, dest), above = hn::LoadU(d, paint);
        hn::StoreU(Join(Blended(Even(below), Even(above)), Blended(Odd(below), Odd(above))), d, dest);
    }
};

/// One vector by a map. Nothing is done where the map is empty, as in most of a text's box.
template <Laying laying, bool whole>
struct Mapped {
    V16 opacity;
    explicit HWY_INLINE Mapped(int value) : opacity(hn::Set(D16(), static_cast<std::uint16_t>(value))) {}
    HWY_INLINE void operator()(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map) const {
        const D8 d;
        const V8 bytes = hn::LoadU(d, map);
        if (hn::AllTrue(d, hn::Eq(bytes, hn::Zero(d)))) return;
        V16 even = Even(bytes), odd = Odd(bytes);
        if constexpr (!whole) {
            even = By255(hn::Mul(even, opacity));
            odd = By255(hn::Mul(odd, opacity));
        }
        hn::StoreU(Laid<laying>(hn::LoadU(d, dest), hn::LoadU(d, paint), even, odd), d, dest);
    }
};

/// Runs `step` along a row, the last incomplete vector by copies of its bytes.
template <typename Step>
HWY_INLINE void AlongRow(const Step& step, std::uint8_t* dest, const std::uint8_t* paint,
                         const std::uint8_t* map, std::size_t count) {
    const std::size_t lanes = hn::Lanes(D8());
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) step(dest + i, paint + i, map ? map + i : nullptr);
    if (i == count) return;
    const std::size_t rest = count - i;
    std::uint8_t lastDest[MaximumLanes], lastPaint[MaximumLanes], lastMap[MaximumLanes];
    for (std::uint8_t* last : {lastDest, lastPaint, lastMap}) std::memset(last, 0, lanes);
    std::memcpy(lastDest, dest + i, rest);
    std::memcpy(lastPaint, paint + i, rest);
    if (map) std::memcpy(lastMap, map + i, rest);
    step(lastDest, lastPaint, lastMap);
    std::memcpy(dest + i, lastDest, rest);
}

template <Laying laying>
HWY_INLINE void LayRowAs(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map, int opacity,
                         std::size_t count) {
    if (!map)
        AlongRow(Uniform<laying>(opacity), dest, paint, map, count);
    else if (opacity == 255)
        AlongRow(Mapped<laying, true>(opacity), dest, paint, map, count);
    else
        AlongRow(Mapped<laying, false>(opacity), dest, paint, map, count);
}

void LayRow(Laying laying, std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map,
            int opacity, std::size_t count) {
    if (hn::Lanes(D8()) > MaximumLanes) return reference::LayRow(laying, dest, paint, map, opacity, count);
    switch (laying) {
        case Laying::KeepDenser:
            return LayRowAs<Laying::KeepDenser>(dest, paint, map, opacity, count);
        case Laying::Darken:
            return LayRowAs<Laying::Darken>(dest, paint, map, opacity, count);
        default:
            return LayRowAs<Laying::Blend>(dest, paint, map, opacity, count);
    }
}

/// All ones in every third byte from the first on.
constexpr auto Thirds = [] {
    std::array<std::uint8_t, 3 * MaximumLanes + 2> bytes{};
    for (std::size_t i = 0; i < bytes.size(); i += 3) bytes[i] = 255;
    return bytes;
}();

/// Bytes of a row that are matched at a time: whole pixels, and whole vectors three at a time.
constexpr std::size_t MatchedBytes = 3072;

/// All ones in the bytes of `source` that begin a pixel of the range; `bytes` is a multiple of three vectors.
/// A pixel's other components are read at the next two addresses, so that nothing need be shuffled.
HWY_INLINE void FindPixels(std::uint8_t* found, const std::uint8_t* source, const ColourRange& range,
                           std::size_t bytes) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d);
    const V8 lowBlue = hn::Set(d, range.low[0]), highBlue = hn::Set(d, range.high[0]);
    const V8 lowGreen = hn::Set(d, range.low[1]), highGreen = hn::Set(d, range.high[1]);
    const V8 lowRed = hn::Set(d, range.low[2]), highRed = hn::Set(d, range.high[2]);
    for (std::size_t i = 0; i < bytes; i += 3 * lanes) {
        for (std::size_t part = 0; part < 3 * lanes; part += lanes) {
            const std::uint8_t* at = source + i + part;
            const V8 blue = hn::LoadU(d, at), green = hn::LoadU(d, at + 1), red = hn::LoadU(d, at + 2);
            const V8 below =
                hn::Or(hn::Or(hn::SaturatedSub(lowBlue, blue), hn::SaturatedSub(lowGreen, green)),
                       hn::SaturatedSub(lowRed, red));
            const V8 above =
                hn::Or(hn::Or(hn::SaturatedSub(blue, highBlue), hn::SaturatedSub(green, highGreen)),
                       hn::SaturatedSub(red, highRed));
            const V8 within = hn::VecFromMask(d, hn::Eq(hn::Or(below, above), hn::Zero(d)));
            hn::StoreU(hn::And(within, hn::LoadU(d, Thirds.data() + part)), d, found + i + part);
        }
    }
}

/// All ones in all bytes of the pixels that were found.
HWY_INLINE V8 WholePixels(const std::uint8_t* found) {
    const D8 d;
    return hn::Or(hn::LoadU(d, found), hn::Or(hn::LoadU(d, found - 1), hn::LoadU(d, found - 2)));
}

/// Calls use(i, mask) for each vector of a row, and use.Last(i, masks, count) for the bytes that remain.
template <typename Use>
HWY_INLINE void MatchRow(const std::uint8_t* source, const ColourRange& range, std::size_t bytes,
                         const Use& use) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d), step = 3 * lanes;
    std::uint8_t buffer[2 + MatchedBytes] = {};
    std::uint8_t* const found = buffer + 2;
    std::size_t i = 0;
    while (i + step + 2 <= bytes) {  // two bytes behind the last vector are read
        const std::size_t left = (bytes - i - 2) / step * step;
        const std::size_t count = left < MatchedBytes ? left : MatchedBytes;
        FindPixels(found, source + i, range, count);
        for (std::size_t at = 0; at < count; at += lanes) use(i + at, WholePixels(found + at));
        i += count;
    }
    if (i == bytes) return;
    std::uint8_t rest[6 * MaximumLanes + 2] = {}, masks[6 * MaximumLanes];
    std::memcpy(rest, source + i, bytes - i);
    FindPixels(found, rest, range, 2 * step);
    for (std::size_t at = 0; at < 2 * step; at += lanes) hn::StoreU(WholePixels(found + at), d, masks + at);
    use.Last(i, masks, bytes - i);
}

struct Keep {
    std::uint8_t* kept;
    std::uint8_t value;

    HWY_INLINE void operator()(std::size_t i, V8 mask) const {
        const D8 d;
        const V8 limit = hn::Or(hn::Not(mask), hn::Set(d, value));
        hn::StoreU(hn::Min(hn::LoadU(d, kept + i), limit), d, kept + i);
    }
    HWY_INLINE void Last(std::size_t i, const std::uint8_t* masks, std::size_t count) const {
        for (std::size_t at = 0; at < count; ++at)
            if (masks[at] && value < kept[i + at]) kept[i + at] = value;
    }
};

void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    if (hn::Lanes(D8()) > MaximumLanes) return reference::KeepRow(kept, source, range, pixels);
    MatchRow(source, range, pixels * 3, Keep{kept, range.kept});
}

struct Hide {
    std::uint8_t* dest;
    const std::uint8_t* source;

    HWY_INLINE void operator()(std::size_t i, V8 mask) const {
        const D8 d;
        const V8 result =
            hn::IfThenElse(hn::MaskFromVec(mask), hn::LoadU(d, dest + i), hn::LoadU(d, source + i));
        hn::StoreU(result, d, dest + i);
    }
    HWY_INLINE void Last(std::size_t i, const std::uint8_t* masks, std::size_t count) const {
        for (std::size_t at = 0; at < count; ++at)
            if (!masks[at]) dest[i + at] = source[i + at];
    }
};

void HideRow(std::uint8_t* dest, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    if (hn::Lanes(D8()) > MaximumLanes) return reference::HideRow(dest, source, range, pixels);
    MatchRow(source, range, pixels * 3, Hide{dest, source});
}

/// One vector of `ScaleRow`.
struct Scale {
    V16 opacity;
    explicit HWY_INLINE Scale(int value) : opacity(hn::Set(D16(), static_cast<std::uint16_t>(value))) {}
    HWY_INLINE void operator()(std::uint8_t* kept, const std::uint8_t* map, const std::uint8_t*) const {
        const D8 d;
        hn::StoreU(Scaled(Scaled(hn::LoadU(d, map), opacity), hn::LoadU(d, kept)), d, kept);
    }
};

void ScaleRow(std::uint8_t* kept, const std::uint8_t* map, int opacity, std::size_t count) {
    if (hn::Lanes(D8()) > MaximumLanes) return reference::ScaleRow(kept, map, opacity, count);
    AlongRow(Scale(opacity), kept, map, nullptr, count);
}

#endif

}  // namespace tessaloom::pixelops::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tessaloom::pixelops {

HWY_EXPORT(LayRow);
HWY_EXPORT(KeepRow);
HWY_EXPORT(HideRow);
HWY_EXPORT(ScaleRow);

void LayRow(Laying laying, std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map,
            int opacity, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(LayRow)(laying, dest, paint, map, opacity, count);
}

void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(KeepRow)(kept, source, range, pixels);
}

void HideRow(std::uint8_t* dest, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(HideRow)(dest, source, range, pixels);
}

void ScaleRow(std::uint8_t* kept, const std::uint8_t* map, int opacity, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(ScaleRow)(kept, map, opacity, count);
}

}  // namespace tessaloom::pixelops

#endif
