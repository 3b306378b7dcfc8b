#include "imaging/pixelops/MergeRows.h"

#include <array>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixelops/MergeRows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaloom::pixelops::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

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

/// One vector by a uniform opacity.
template <Laying laying>
struct Uniform {
    V16 opacity;
    explicit HWY_INLINE Uniform(int value) : opacity(hn::Set(D16(), static_cast<std::uint16_t>(value))) {}
    HWY_INLINE void operator()(std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t*) const {
        const D8 d;
        hn::StoreU(Laid<laying>(hn::LoadU(d, dest), hn::LoadU(d, paint), opacity, opacity), d, dest);
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

/// For each byte of three vectors and each of the places from two bytes before it to two behind: the bounds
/// of the component that stands there if it belongs to the same pixel, and all values otherwise. Thus no
/// component need be shuffled to its neighbours.
class Bounds {
public:
    explicit Bounds(const ColourRange& range) {
        const D8 d;
        for (std::size_t i = 0; i < 3 * hn::Lanes(d); i += hn::Lanes(d)) {
            for (std::size_t at = 0; at < 5; ++at) {
                V8 low = hn::Zero(d), aboveHigh = hn::Zero(d);
                for (std::size_t place = 0; place < 3; ++place) {  // of the byte in its pixel
                    if (place + at < 2 || place + at > 4) continue;
                    const V8 bytes = hn::LoadU(d, Thirds.data() + i + (3 - place) % 3);
                    const std::size_t component = place + at - 2;
                    const auto beyond = static_cast<std::uint8_t>(255 - range.high[component]);
                    low = hn::Or(low, hn::And(bytes, hn::Set(d, range.low[component])));
                    aboveHigh = hn::Or(aboveHigh, hn::And(bytes, hn::Set(d, beyond)));
                }
                hn::Store(low, d, low_[at] + i);
                hn::Store(hn::Not(aboveHigh), d, high_[at] + i);
            }
        }
    }

    /// All ones in the bytes whose pixel lies within the range; `i` is their place in the three vectors.
    HWY_INLINE V8 Within(const std::uint8_t* bytes, std::size_t i) const {
        const D8 d;
        V8 off = hn::Zero(d);
        for (int at = 0; at < 5; ++at) {
            const V8 value = hn::LoadU(d, bytes + at - 2);
            off = hn::Or(off, hn::Or(hn::SaturatedSub(hn::Load(d, low_[at] + i), value),
                                     hn::SaturatedSub(value, hn::Load(d, high_[at] + i))));
        }
        return hn::VecFromMask(d, hn::Eq(off, hn::Zero(d)));
    }

private:
    HWY_ALIGN std::uint8_t low_[5][3 * MaximumLanes];
    HWY_ALIGN std::uint8_t high_[5][3 * MaximumLanes];
};

/// Lowers three vectors of `kept`; two bytes before and behind those of `source` are read.
HWY_INLINE void Keep(std::uint8_t* kept, const std::uint8_t* source, const Bounds& bounds, V8 value) {
    const D8 d;
    const std::size_t lanes = hn::Lanes(d);
    for (std::size_t i = 0; i < 3 * lanes; i += lanes) {
        const V8 limit = hn::Or(hn::Not(bounds.Within(source + i, i)), value);
        hn::StoreU(hn::Min(hn::LoadU(d, kept + i), limit), d, kept + i);
    }
}

void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    const D8 d;
    const std::size_t step = 3 * hn::Lanes(d), bytes = pixels * 3;
    if (hn::Lanes(d) > MaximumLanes || bytes < step) return reference::KeepRow(kept, source, range, pixels);
    const Bounds bounds(range);
    const V8 value = hn::Set(d, range.kept);
    // The ends by copies, as what lies beyond them is not to be read.
    const auto keepCopy = [&](std::size_t i) HWY_ATTR {
        std::uint8_t sourceCopy[2 + 3 * MaximumLanes + 2], keptCopy[3 * MaximumLanes];
        std::memcpy(sourceCopy + 2, source + i, step);
        std::memcpy(keptCopy, kept + i, step);
        Keep(keptCopy, sourceCopy + 2, bounds, value);
        std::memcpy(kept + i, keptCopy, step);
    };
    keepCopy(0);
    for (std::size_t i = step; i + step + 2 <= bytes; i += step) Keep(kept + i, source + i, bounds, value);
    if (bytes > step) keepCopy(bytes - step);  // what was lowered before is lowered once more
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
HWY_EXPORT(ScaleRow);

void LayRow(Laying laying, std::uint8_t* dest, const std::uint8_t* paint, const std::uint8_t* map,
            int opacity, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(LayRow)(laying, dest, paint, map, opacity, count);
}

void KeepRow(std::uint8_t* kept, const std::uint8_t* source, const ColourRange& range, std::size_t pixels) {
    HWY_DYNAMIC_DISPATCH(KeepRow)(kept, source, range, pixels);
}

void ScaleRow(std::uint8_t* kept, const std::uint8_t* map, int opacity, std::size_t count) {
    HWY_DYNAMIC_DISPATCH(ScaleRow)(kept, map, opacity, count);
}

}  // namespace tessaloom::pixelops

#endif
