#include "imaging/Resampler.h"

#include <algorithm>
#include <cmath>

#include "imaging/pixelops/ScaleRows.h"

namespace tessaloom {

bool AxisWeights::Prepare(int sourceLength, int destLength, int from, int count) {
    const Lengths lengths{sourceLength, destLength, from, count};
    if (prepared_ == lengths) return false;
    prepared_ = {};  // so that nothing half prepared is used after an exception
    entries_.clear();
    weights_.clear();
    const double scale = static_cast<double>(sourceLength) / destLength;
    for (int i = from; i < from + count; ++i) {
        const std::size_t begin = weights_.size();
        entries_.push_back({0, begin, begin});
        if (sourceLength > destLength)
            AddMean(i * scale, (i + 1) * scale, sourceLength);
        else
            AddLine((i + 0.5) * scale - 0.5, sourceLength);
        entries_.back().end = weights_.size();
    }
    prepared_ = lengths;
    return true;
}

AxisWeights::Taps AxisWeights::operator[](int i) const {
    const Entry& entry = entries_[static_cast<std::size_t>(i)];
    return {entry.first, std::span(weights_).subspan(entry.begin, entry.end - entry.begin)};
}

void AxisWeights::AddMean(double begin, double end, int sourceLength) {
    const int first = std::clamp(static_cast<int>(begin), 0, sourceLength - 1);
    const int last = std::clamp(static_cast<int>(std::ceil(end)) - 1, first, sourceLength - 1);
    entries_.back().first = first;
    for (int pixel = first; pixel <= last; ++pixel) {
        const double covered = std::min(end, pixel + 1.0) - std::max<double>(begin, pixel);
        weights_.push_back(static_cast<float>(std::max(covered, 0.0) / (end - begin)));
    }
}

void AxisWeights::AddLine(double centre, int sourceLength) {
    const double held = std::clamp(centre, 0.0, sourceLength - 1.0);
    const int first = static_cast<int>(held);
    const float fraction = static_cast<float>(held - first);
    entries_.back().first = first;
    if (fraction == 0) {
        weights_.push_back(1);
    } else {
        weights_.push_back(1 - fraction);
        weights_.push_back(fraction);
    }
}

namespace {

using namespace pixelops;

/// Whole numbers round too coarsely where more pixels make up one.
constexpr std::size_t MostTaps = 64;

void AddRow(float* sum, const std::uint8_t* row, float weight, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) sum[i] += weight * static_cast<float>(row[i]);
}

/// Calls use(tap, weight) with the weights in 65536ths. What rounding loses of one is given to the next, so
/// that together they stay what they are; a weight of 1 becomes the largest that there is.
template <typename Use>
void InWholeNumbers(std::span<const float> weights, Use use) {
    double sum = 0;
    int given = 0;
    for (std::size_t tap = 0; tap < weights.size(); ++tap) {
        sum += static_cast<double>(weights[tap]) * 65536;
        const int whole = std::clamp(static_cast<int>(sum + 0.5) - given, 0, 65535);
        given += whole;
        use(tap, static_cast<std::uint16_t>(whole));
    }
}

/// What the second of two taps weighs in 65536ths; 0 where there is but one.
std::uint16_t SecondWeight(std::span<const float> weights) {
    std::uint16_t second = 0;
    if (weights.size() > 1) InWholeNumbers(weights, [&](std::size_t, std::uint16_t last) { second = last; });
    return second;
}

}  // namespace

std::size_t AxisWeights::MostTaps() const {
    std::size_t most = 0;
    for (const Entry& entry : entries_) most = std::max(most, entry.end - entry.begin);
    return most;
}

PixelMix Resampler::Columns(int width) {
    const std::size_t taps = columns_.MostTaps(), padded = (static_cast<std::size_t>(width) + 3) / 4 * 4;
    if (firsts_.empty()) {
        columnWeights_.assign(taps * padded * 4, 0);
        firsts_.assign(padded, 0);
        for (int x = 0; x < width; ++x) {
            const AxisWeights::Taps columns = columns_[x];
            const auto at = static_cast<std::size_t>(x);
            firsts_[at] = columns.first * 3;
            InWholeNumbers(columns.weights, [&](std::size_t tap, std::uint16_t weight) {
                std::fill_n(columnWeights_.begin() + static_cast<std::ptrdiff_t>((tap * padded + at) * 4), 4,
                            weight);
            });
        }
    }
    return {firsts_.data(), columnWeights_.data(), padded, taps};
}

LineMix Resampler::Line(int sourceWidth, int width) {
    const std::size_t count = static_cast<std::size_t>(width) * 3;
    if (lineBegins_.empty()) {
        linePlaces_.resize(count);
        lineWeights_.resize(count);
        lineBegins_.assign((count + LineMix::Block - 1) / LineMix::Block, 0);
        for (std::size_t i = 0; i < count; ++i) {
            const auto [first, weights] = columns_[static_cast<int>(i / 3)];
            // The last pixel has no neighbour to its right: it is one itself, and has all the weight.
            const bool last = first == sourceWidth - 1;
            const int left = (last ? first - 1 : first) * 3;
            std::int32_t& begin = lineBegins_[i / LineMix::Block];
            if (i % LineMix::Block == 0) begin = std::min(left, sourceWidth * 3 - LineMix::Reach);
            linePlaces_[i] = static_cast<std::uint16_t>((left - begin + static_cast<int>(i % 3)) << 8 | 128);
            lineWeights_[i] = last ? 65535 : SecondWeight(weights);
        }
    }
    return {lineBegins_.data(), linePlaces_.data(), lineWeights_.data()};
}

void Resampler::Run(const Target& target, const Source& source) {
    if (columns_.Prepare(source.width, target.fullWidth, target.left, target.width)) {
        firsts_.clear();
        lineBegins_.clear();
    }
    rows_.Prepare(source.height, target.fullHeight, target.top, target.height);
    if (columns_.MostTaps() > MostTaps || rows_.MostTaps() > MostTaps) return RunInFractions(target, source);

    // Taps without weight may lie beyond the row.
    mixed_.assign(static_cast<std::size_t>(source.width) * 3 + 3 * columns_.MostTaps() + 1, 0);
    const bool sameHeight = target.fullHeight == source.height;
    if (target.fullHeight > source.height || (sameHeight && target.fullWidth > source.width))
        return Enlarge(target, source);
    Shrink(target, source);
}

void Resampler::Shrink(const Target& target, const Source& source) {
    const PixelMix columns = Columns(target.width);
    for (int y = 0; y < target.height; ++y) {
        const auto [firstRow, weights] = rows_[y];
        std::uint16_t rowWeights[MostTaps];
        InWholeNumbers(weights, [&](std::size_t tap, std::uint16_t weight) { rowWeights[tap] = weight; });
        MixRows(mixed_.data(),
                {source.pixels + firstRow * source.rowStep, source.rowStep, rowWeights, weights.size()},
                static_cast<std::size_t>(source.width) * 3);
        MixPixels(target.pixels + y * target.rowStep, mixed_.data(), columns,
                  static_cast<std::size_t>(target.width));
    }
}

void Resampler::Enlarge(const Target& target, const Source& source) {
    // A source row goes into several rows of the result: it is brought to their width once.
    int held[] = {-1, -1};
    const auto wide = [&](int row) {
        std::vector<std::uint16_t>& result = wide_[row % 2];
        if (held[row % 2] != row) Spread(result, target, source, row);
        held[row % 2] = row;
        return result.data();
    };
    for (int y = 0; y < target.height; ++y) {
        const auto [first, weights] = rows_[y];
        const std::uint16_t* const one = wide(first);
        const std::uint16_t* const other = weights.size() > 1 ? wide(first + 1) : one;
        BlendRows(target.pixels + y * target.rowStep, one, other, SecondWeight(weights),
                  static_cast<std::size_t>(target.width) * 3);
    }
}

void Resampler::Spread(std::vector<std::uint16_t>& wide, const Target& target, const Source& source,
                       int row) {
    const std::uint8_t* pixels = source.pixels + row * source.rowStep;
    const auto count = static_cast<std::size_t>(target.width) * 3;
    wide.resize(count + 2);
    if (target.fullWidth >= source.width && source.width * 3 >= LineMix::Reach) {
        SpreadLine(wide.data(), pixels, Line(source.width, target.width), count);
    } else {
        constexpr std::uint16_t All = 65535;
        MixRows(mixed_.data(), {pixels, 0, &All, 1}, static_cast<std::size_t>(source.width) * 3);
        SpreadPixels(wide.data(), mixed_.data(), Columns(target.width),
                     static_cast<std::size_t>(target.width));
    }
}

void Resampler::RunInFractions(const Target& target, const Source& source) {
    row_.resize(static_cast<std::size_t>(source.width) * 3);
    for (int y = 0; y < target.height; ++y) {
        std::fill(row_.begin(), row_.end(), 0.0F);
        const auto [firstRow, rowWeights] = rows_[y];
        const std::uint8_t* row = source.pixels + firstRow * source.rowStep;
        for (const float weight : rowWeights) {
            AddRow(row_.data(), row, weight, row_.size());
            row += source.rowStep;
        }
        std::uint8_t* to = target.pixels + y * target.rowStep;
        for (int x = 0; x < target.width; ++x, to += 3) {
            const auto [firstColumn, weights] = columns_[x];
            const float* pixel = row_.data() + firstColumn * std::ptrdiff_t{3};
            float blue = 0.5F, green = 0.5F, red = 0.5F;  // rounds to the nearest
            for (const float weight : weights) {
                blue += weight * pixel[0];
                green += weight * pixel[1];
                red += weight * pixel[2];
                pixel += 3;
            }
            to[0] = static_cast<std::uint8_t>(std::min(blue, 255.0F));
            to[1] = static_cast<std::uint8_t>(std::min(green, 255.0F));
            to[2] = static_cast<std::uint8_t>(std::min(red, 255.0F));
        }
    }
}

}  // namespace tessaloom
