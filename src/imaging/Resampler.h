#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessaloom {

namespace pixelops {
struct LineMix;
struct PixelMix;
}  // namespace pixelops

/// Which source pixels of one axis make up each destination pixel, and with what weights (their sum is 1).
///
/// Shrinking takes the mean over what a destination pixel covers, with fractions at its ends; enlarging takes
/// a straight line between the two nearest pixel centres; an unchanged length takes the pixel itself.
class AxisWeights {
public:
    struct Taps {
        int first = 0;  ///< The source pixel that the first weight belongs to.
        std::span<const float> weights;
    };

    /// Prepares the destination pixels `from` .. `from + count - 1` of `destLength`. False if they were
    /// prepared before.
    bool Prepare(int sourceLength, int destLength, int from, int count);

    /// The taps of the prepared pixel number `i`, 0 .. `count` - 1.
    Taps operator[](int i) const;

    /// The most weights that a prepared pixel has.
    std::size_t MostTaps() const;

private:
    void AddMean(double begin, double end, int sourceLength);
    void AddLine(double centre, int sourceLength);

    struct Lengths {
        int source = 0, dest = 0, from = 0, count = 0;
        bool operator==(const Lengths&) const = default;
    };
    struct Entry {
        int first;
        std::size_t begin, end;  ///< In `weights_`.
    };
    Lengths prepared_;
    std::vector<Entry> entries_;
    std::vector<float> weights_;
};

/// Scales 24-bit rows smoothly, each component within 1 of the exact mean, rounded. Keeps its buffers and
/// weights, so that scaling to a steady size allocates and prepares nothing.
class Resampler {
public:
    /// `pixels` is the first pixel of the first row; `rowStep` the bytes from a row to the next, maybe
    /// negative.
    struct Source {
        const std::uint8_t* pixels;
        std::ptrdiff_t rowStep;
        int width, height;
    };

    /// The whole scaled picture has `fullWidth` x `fullHeight` pixels; of it the part at (left, top) of the
    /// given size is written.
    struct Target {
        std::uint8_t* pixels;
        std::ptrdiff_t rowStep;
        int fullWidth, fullHeight;
        int left, top, width, height;
    };

    void Run(const Target& target, const Source& source);

private:
    pixelops::PixelMix Columns(int width);
    pixelops::LineMix Line(int sourceWidth, int width);
    void Shrink(const Target& target, const Source& source);
    void Enlarge(const Target& target, const Source& source);
    /// Brings a source row to the width of the destination.
    void Spread(std::vector<std::uint16_t>& wide, const Target& target, const Source& source, int row);
    void RunInFractions(const Target& target, const Source& source);

    AxisWeights columns_;
    AxisWeights rows_;
    std::vector<std::int32_t> firsts_;          ///< See pixelops::PixelMix; empty when not prepared.
    std::vector<std::uint16_t> columnWeights_;  ///< Likewise.
    std::vector<std::int32_t> lineBegins_;      ///< See pixelops::LineMix; empty when not prepared.
    std::vector<std::uint16_t> linePlaces_;     ///< Likewise.
    std::vector<std::uint16_t> lineWeights_;    ///< Likewise.
    std::vector<std::uint16_t> mixed_;          ///< The source rows that make up one destination row, mixed.
    std::vector<std::uint16_t> wide_[2];        ///< Two source rows in the width of the destination.
    std::vector<float> row_;  ///< The weighted sum of the source rows that make up one destination row.
};

}  // namespace tessaloom
