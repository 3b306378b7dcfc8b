#include "imaging/pixelops/MergeRows.h"

#include <algorithm>
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
#include <hwy/cache_control.h>
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

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_SSSE3
// What this family of processors has for bytes and the library has no word for.
#if HWY_TARGET <= HWY_AVX3
HWY_INLINE V16 AddProducts(V8 bytes, V8 signedBytes) {
    return V16{_mm512_maddubs_epi16(bytes.raw, signedBytes.raw)};
}
HWY_INLINE V8 Pack(V16 low, V16 high) { return V8{_mm512_packus_epi16(low.raw, high.raw)}; }
#elif HWY_TARGET <= HWY_AVX2
HWY_INLINE V16 AddProducts(V8 bytes, V8 signedBytes) {
    return V16{_mm256_maddubs_epi16(bytes.raw, signedBytes.raw)};
}
HWY_INLINE V8 Pack(V16 low, V16 high) { return V8{_mm256_packus_epi16(low.raw, high.raw)}; }
#else
HWY_INLINE V16 AddProducts(V8 bytes, V8 signedBytes) {
    return V16{_mm_maddubs_epi16(bytes.raw, signedBytes.raw)};
}
HWY_INLINE V8 Pack(V16 low, V16 high) { return V8{_mm_packus_epi16(low.raw, high.raw)}; }
#endif

/// [(dest * (255 - opacity) + paint * opacity) / 255], both products at once.
///
/// One factor of each has to be signed, so that dest and paint are taken 128 lower; this takes 255 * 128 from
/// the sum, which together with the 128 of rounding makes 32768.
HWY_INLINE V8 Blended(V8 dest, V8 paint, V8 opacity) {
    const D8 d;
    const V8 middle = hn::Set(d, 128), through = hn::Not(opacity);
    const V8 below = hn::Xor(dest, middle), above = hn::Xor(paint, middle);
    const auto by255 = [](V16 sums) {
        return hn::MulHigh(hn::Add(sums, hn::Set(D16(), 32768)), hn::Set(D16(), 257));
    };
    return Pack(
        by255(AddProducts(hn::InterleaveLower(d, through, opacity), hn::InterleaveLower(d, below, above))),
        by255(AddProducts(hn::InterleaveUpper(d, through, opacity), hn::InterleaveUpper(d, below, above))));
}

#else

/// [(dest * (255 - opacity) + paint * opacity) / 255]
HWY_INLINE V8 Blended(V8 dest, V8 paint, V8 opacity) {
    const V8 through = hn::Not(opacity);
    return Join(By255(hn::Add(hn::Mul(Even(paint), Even(opacity)), hn::Mul(Even(dest), Even(through)))),
                By255(hn::Add(hn::Mul(Odd(paint), Odd(opacity)), hn::Mul(Odd(dest), Odd(through)))));
}

#endif

template <Laying laying>
HWY_INLINE V8 Laid(V8 dest, V8 paint, V8 opacity) {
    if constexpr (laying == Laying::KeepDenser) {
        return hn::Max(dest, Scaled(paint, opacity));
    } else if constexpr (laying == Laying::Darken) {
        return Join(Darkened(Even(dest), hn::Mul(Even(paint), Even(opacity))),
                    Darkened(Odd(dest), hn::Mul(Odd(paint), Odd(opacity))));
    } else {
        return Blended(dest, paint, opacity);
    }
}

/// Vectors of a turn: whole lines of the cache.
constexpr std::size_t TurnVectors = 4;

/// Whether a turn of bytes is empty. So many are looked at together because where an image has gaps is not to
/// be foreseen by the processor, which costs more than a few vectors of work.
HWY_INLINE bool Empty(const std::uint8_t* bytes) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d);
    const V8 any = hn::Or(hn::Or(hn::LoadU(d, bytes), hn::LoadU(d, bytes + lanes)),
                          hn::Or(hn::LoadU(d, bytes + 2 * lanes), hn::LoadU(d, bytes + 3 * lanes)));
    return hn::AllTrue(d, hn::Eq(any, hn::Zero(d)));
}

/// One vector of densities by a uniform opacity. Nothing is done where there are none, as in most of a shadow
/// bitmap.
template <Laying laying>
struct Uniform {
    V8 opacity;
    explicit HWY_INLINE Uniform(int value) : opacity(hn::Set(D8(), static_cast<std::uint8_t>(value))) {}
    static HWY_INLINE bool Skips(const std::uint8_t* paint, const std::uint8_t*) { return Empty(paint); }
    HWY_INLINE void operator()(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t*) const {
        const D8 d;
        hn::StoreU(Laid<laying>(hn::LoadU(d, dest), hn::LoadU(d, paint), opacity), d, dest);
    }
};

/// One vector blended by a uniform opacity: dest + [(paint - dest) * factor / 32768].
template <>
struct Uniform<Laying::Blend> {
    using DS16 = hn::RebindToSigned<D16>;
    hn::Vec<DS16> factor;
    explicit HWY_INLINE Uniform(int opacity)
        : factor(hn::Set(DS16(), BlendFactors[static_cast<std::size_t>(opacity)])) {}
    static HWY_INLINE bool Skips(const std::uint8_t*, const std::uint8_t*) { return false; }
    HWY_INLINE V16 Moved(V16 dest, V16 paint) const {
        const auto way = hn::BitCast(DS16(), hn::Sub(paint, dest));
        return hn::Add(dest, hn::BitCast(D16(), hn::MulFixedPoint15(way, factor)));
    }
    HWY_INLINE void operator()(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t*) const {
        const D8 d;
        const V8 below = hn::LoadU(d, dest), above = hn::LoadU(d, paint);
        hn::StoreU(Join(Moved(Even(below), Even(above)), Moved(Odd(below), Odd(above))), d, dest);
    }
};

/// One vector by a map. Nothing is done where the map is empty, as in most of a text's box.
template <Laying laying, bool whole>
struct Mapped {
    V16 opacity;
    explicit HWY_INLINE Mapped(int value) : opacity(hn::Set(D16(), static_cast<std::uint16_t>(value))) {}
    static HWY_INLINE bool Skips(const std::uint8_t*, const std::uint8_t* map) { return Empty(map); }
    HWY_INLINE void operator()(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map) const {
        const D8 d;
        V8 part = hn::LoadU(d, map);
        if constexpr (!whole) part = Scaled(part, opacity);
        hn::StoreU(Laid<laying>(hn::LoadU(d, dest), hn::LoadU(d, paint), part), d, dest);
    }
};

/// Asks the memory for the bytes that a later turn needs. Its own foresight ends at the borders of pages.
/// What lies behind the end of a row is most often the next one; asking for what does not exist is harmless.
HWY_INLINE void FetchAhead(const std::uint8_t* bytes) {
    constexpr std::size_t Ahead = 1024, Line = 64;
    for (std::size_t at = 0; at < TurnVectors * hn::Lanes(D8()); at += Line)
        hwy::Prefetch(bytes + Ahead + at);
}

/// Runs `step` along a row, the last incomplete vector by copies of its bytes.
template <typename Step>
HWY_INLINE void AlongRow(const Step& step, std::uint8_t* dest, const std::uint8_t* paint,
                         const std::uint8_t* map, std::size_t count) {
    const std::size_t lanes = hn::Lanes(D8()), turn = TurnVectors * lanes;
    const auto mapAt = [map](std::size_t i) { return map ? map + i : nullptr; };
    std::size_t i = 0;
    for (; i + turn <= count; i += turn) {
        if (Step::Skips(paint + i, mapAt(i))) continue;
        for (const std::uint8_t* bytes : {static_cast<const std::uint8_t*>(dest) + i, paint + i, mapAt(i)})
            if (bytes) FetchAhead(bytes);
        for (std::size_t part = i; part < i + turn; part += lanes)
            step(dest + part, paint + part, mapAt(part));
    }
    for (; i + lanes <= count; i += lanes) step(dest + i, paint + i, mapAt(i));
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

/// Finds the pixels of a range. Each byte is compared together with the other two of its pixel, which are
/// read from addresses beside it, so that the answer stands in all three.
class Finder {
public:
    explicit HWY_INLINE Finder(const ColourRange& range) {
        for (std::size_t phase = 0; phase < 3; ++phase)
            first_[phase] = hn::MaskFromVec(hn::LoadU(D8(), Thirds.data() + phase));
        const std::uint8_t widths[] = {Width(range, 0), Width(range, 1), Width(range, 2)};
        for (std::size_t phase = 0; phase < 3; ++phase) {
            low_[phase] = Components(range.low, phase);
            width_[phase] = Components(widths, phase);
        }
    }

    /// All ones in the bytes of the pixels that lie within; `phase` is what component the first byte is. The
    /// two bytes before the vector and behind it are read, too.
    HWY_INLINE V8 operator()(const std::uint8_t* bytes, std::size_t phase) const {
        const D8 d;
        const V8 next =
            hn::IfThenElse(first_[(phase + 1) % 3], hn::LoadU(d, bytes - 2), hn::LoadU(d, bytes + 1));
        const V8 third = hn::IfThenElse(first_[phase % 3], hn::LoadU(d, bytes + 2), hn::LoadU(d, bytes - 1));
        const V8 beside = hn::Or(hn::Or(Beside(hn::LoadU(d, bytes), phase), Beside(next, phase + 1)),
                                 Beside(third, phase + 2));
        return hn::VecFromMask(d, hn::Eq(beside, hn::Zero(d)));
    }

private:
    static HWY_INLINE std::uint8_t Width(const ColourRange& range, int component) {
        return static_cast<std::uint8_t>(range.high[component] - range.low[component]);
    }

    /// The values of blue, green and red over and over.
    HWY_INLINE V8 Components(const std::uint8_t* values, std::size_t phase) const {
        const D8 d;
        return hn::IfThenElse(
            first_[phase], hn::Set(d, values[0]),
            hn::IfThenElse(first_[(phase + 2) % 3], hn::Set(d, values[1]), hn::Set(d, values[2])));
    }

    /// More than 0 beside the range: what lies below it turns into large numbers.
    HWY_INLINE V8 Beside(V8 bytes, std::size_t phase) const {
        return hn::SaturatedSub(hn::Sub(bytes, low_[phase % 3]), width_[phase % 3]);
    }

    hn::Mask<D8> first_[3];  ///< Where pixels begin, in a vector that begins with each component.
    V8 low_[3], width_[3];
};

/// Runs `step` along a row of whole pixels: step(dest, source, mask) for a vector, the mask all ones in the
/// pixels of the range, or step.None(dest, source) for one without any.
template <typename Step>
HWY_INLINE void MatchRow(const Step& step, std::uint8_t* dest, const std::uint8_t* source,
                         const ColourRange& range, std::size_t count) {
    if (count == 0) return;
    const D8 d;
    const std::size_t lanes = hn::Lanes(d), turn = 3 * lanes;
    const Finder find(range);
    const auto onCopies = [&](std::size_t i, std::size_t end) {
        std::uint8_t lastDest[4 * MaximumLanes] = {}, lastSource[4 * MaximumLanes + 4] = {};
        std::memcpy(lastDest, dest + i, end - i);
        std::memcpy(lastSource + 2, source + i, end - i);
        for (std::size_t at = 0; i + at < end; at += lanes)
            step(lastDest + at, lastSource + 2 + at, find(lastSource + 2 + at, at));
        std::memcpy(dest + i, lastDest, end - i);
    };
    std::size_t i = std::min<std::size_t>(count, 3);
    onCopies(0, i);
    for (; i + turn + 2 <= count; i += turn) {
        FetchAhead(dest + i);  // also what is only written: stores wait longer for their line than loads
        FetchAhead(source + i);
        const V8 first = find(source + i, 0), second = find(source + i + lanes, lanes),
                 third = find(source + i + 2 * lanes, 2 * lanes);
        if (hn::AllTrue(d, hn::Eq(hn::Or(hn::Or(first, second), third), hn::Zero(d)))) {
            for (std::size_t at = i; at < i + turn; at += lanes) step.None(dest + at, source + at);
        } else {
            step(dest + i, source + i, first);
            step(dest + i + lanes, source + i + lanes, second);
            step(dest + i + 2 * lanes, source + i + 2 * lanes, third);
        }
    }
    onCopies(i, count);
}

/// Vectors too long, or a range that cannot be told by its widths.
HWY_INLINE bool TakesReference(const ColourRange& range) {
    return hn::Lanes(D8()) > MaximumLanes || range.low[0] > range.high[0] || range.low[1] > range.high[1] ||
           range.low[2] > range.high[2];
}

struct Keep {
    V8 limit;

    static HWY_INLINE void None(std::uint8_t*, const std::uint8_t*) {}
    HWY_INLINE void operator()(std::uint8_t* kept, const std::uint8_t*, V8 mask) const {
        const D8 d;
        hn::StoreU(hn::Min(hn::LoadU(d, kept), hn::Or(hn::Not(mask), limit)), d, kept);
    }
};

void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    if (TakesReference(range)) return reference::KeepRow(kept, source, range, pixels);
    MatchRow(Keep{hn::Set(D8(), range.kept)}, kept, source, range, pixels * 3);
}

struct Hide {
    static HWY_INLINE void None(std::uint8_t* dest, const std::uint8_t* source) {
        const D8 d;
        hn::StoreU(hn::LoadU(d, source), d, dest);
    }
    HWY_INLINE void operator()(std::uint8_t* dest, const std::uint8_t* source, V8 mask) const {
        const D8 d;
        const auto hidden = hn::MaskFromVec(mask);
        if (hn::AllTrue(d, hidden)) return;  // as in most of a keyed background
        hn::StoreU(hn::IfThenElse(hidden, hn::LoadU(d, dest), hn::LoadU(d, source)), d, dest);
    }
};

void HideRow(std::uint8_t* dest, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    if (TakesReference(range)) return reference::HideRow(dest, source, range, pixels);
    MatchRow(Hide(), dest, source, range, pixels * 3);
}

/// One vector of `ScaleRow`.
struct Scale {
    V16 opacity;
    static HWY_INLINE bool Skips(const std::uint8_t*, const std::uint8_t*) { return false; }
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
