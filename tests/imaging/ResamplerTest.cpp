#include "imaging/Resampler.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

/// The exact mean for one component of the result.
double Exact(const std::vector<std::uint8_t>& pixels, const Resampler::Source& source,
             const AxisWeights& columns, const AxisWeights& rows, int x, int y, int component) {
    double sum = 0;
    const auto [firstRow, rowWeights] = rows[y];
    const auto [firstColumn, columnWeights] = columns[x];
    for (std::size_t v = 0; v < rowWeights.size(); ++v)
        for (std::size_t u = 0; u < columnWeights.size(); ++u)
            sum +=
                double{rowWeights[v]} * double{columnWeights[u]} *
                pixels[(static_cast<std::size_t>(firstRow) + v) * static_cast<std::size_t>(source.rowStep) +
                       (static_cast<std::size_t>(firstColumn) + u) * 3 + static_cast<std::size_t>(component)];
    return sum;
}

TEST(Resampler, StaysWithinOneOfTheExactMean) {
    std::mt19937 random(1);
    const struct {
        int fromWidth, fromHeight, toWidth, toHeight;
    } cases[] = {
        {60,  30, 20,  10},
        {64,  48, 128, 96},
        {50,  40, 50,  40},
        {97,  61, 31,  90},
        {31,  90, 97,  61},
        {5,   4,  40,  4 },
        {6,   4,  95,  4 },
        {97,  61, 98,  61},
        {640, 3,  10,  7 },
        {200, 90, 3,   1 },
        {1,   1,  9,   5 },
        {2,   2,  1,   6 },
    };
    for (const auto& c : cases) {
        for (const bool flat : {false, true}) {
            SCOPED_TRACE(::testing::Message() << c.fromWidth << " x " << c.fromHeight << " to " << c.toWidth
                                              << " x " << c.toHeight);
            const std::ptrdiff_t fromStep = c.fromWidth * 3 + 1, toStep = c.toWidth * 3;
            std::vector<std::uint8_t> from(static_cast<std::size_t>(fromStep * c.fromHeight)),
                to(static_cast<std::size_t>(toStep * c.toHeight));
            for (std::uint8_t& byte : from) byte = flat ? 255 : static_cast<std::uint8_t>(random());
            const Resampler::Source source{from.data(), fromStep, c.fromWidth, c.fromHeight};
            Resampler().Run({to.data(), toStep, c.toWidth, c.toHeight, 0, 0, c.toWidth, c.toHeight}, source);
            AxisWeights columns, rows;
            columns.Prepare(c.fromWidth, c.toWidth, 0, c.toWidth);
            rows.Prepare(c.fromHeight, c.toHeight, 0, c.toHeight);
            for (int y = 0; y < c.toHeight; ++y)
                for (int i = 0; i < c.toWidth * 3; ++i)
                    ASSERT_NEAR(to[static_cast<std::size_t>(y * toStep + i)],
                                Exact(from, source, columns, rows, i / 3, y, i % 3), flat ? 0.01 : 0.75)
                        << i << ", " << y;
        }
    }
}

}  // namespace
}  // namespace tessaloom::testing
