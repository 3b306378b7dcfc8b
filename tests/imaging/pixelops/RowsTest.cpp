#include "imaging/pixelops/BlurRows.h"
#include "imaging/pixelops/ColorRows.h"
#include "imaging/pixelops/DiffRows.h"
#include "imaging/pixelops/FrameRows.h"
#include "imaging/pixelops/MergeRows.h"
#include "imaging/pixelops/RowFixture.h"
#include "imaging/pixelops/SampleRows.h"
#include "imaging/pixelops/ScaleRows.h"
#include "imaging/pixelops/ShadowRows.h"
#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

using namespace tessaloom::pixelops;

TEST(LayRow, EqualsItsReference) {
    OnEachLength(1, [](RandomBytes& random, std::size_t count) {
        for (const Laying laying : {Laying::KeepDenser, Laying::Darken, Laying::Blend}) {
            for (const int opacity : {0, 1, 153, 254, 255}) {
                Bytes before = random(count), paint = random(count), map = random(count);
                for (std::uint8_t* used : {map.Data(), static_cast<std::uint8_t*>(nullptr)}) {
                    Bytes dest = before, expected = before;
                    LayRow(laying, dest.Data(), paint.Data(), used, opacity, count);
                    reference::LayRow(laying, expected.Data(), paint.Data(), used, opacity, count);
                    ASSERT_EQ(dest, expected) << count << " bytes, opacity " << opacity << ", laying "
                                              << static_cast<int>(laying) << (used ? ", map" : "");
                }
            }
        }
    });
}

TEST(KeepRowAndHideRow, EqualTheirReferences) {
    OnEachLength(2, [](RandomBytes& random, std::size_t count) {
        const ColourRange ranges[] = {
            {{0, 0, 0},     {0, 0, 0},       0  },
            {{255, 0, 255}, {255, 0, 255},   9  },
            {{10, 0, 90},   {250, 200, 255}, 77 },
            {{0, 0, 0},     {255, 255, 255}, 128},
            {{9, 0, 0},     {8, 255, 255},   0  }
        };
        for (const ColourRange& range : ranges) {
            const std::size_t pixels = count / 3;
            Bytes source = random(pixels * 3), kept = random(pixels * 3), expected = kept;
            KeepRow(kept.Data(), source.Data(), range, pixels);
            reference::KeepRow(expected.Data(), source.Data(), range, pixels);
            ASSERT_EQ(kept, expected) << pixels << " pixels, kept " << int{range.kept};
            HideRow(kept.Data(), source.Data(), range, pixels);
            reference::HideRow(expected.Data(), source.Data(), range, pixels);
            ASSERT_EQ(kept, expected) << pixels << " pixels, hidden";
        }
    });
}

TEST(ScaleRow, EqualsItsReference) {
    OnEachLength(3, [](RandomBytes& random, std::size_t count) {
        Bytes map = random(count), kept = random(count), expected = kept;
        const int opacity = static_cast<int>(random.Below(256));
        ScaleRow(kept.Data(), map.Data(), opacity, count);
        reference::ScaleRow(expected.Data(), map.Data(), opacity, count);
        ASSERT_EQ(kept, expected) << count << " bytes, opacity " << opacity;
    });
}

TEST(SoftenRow, EqualsItsReference) {
    OnEachLength(4, [](RandomBytes& random, std::size_t count) {
        Bytes line = random(count + 12), dest = random(count), expected = dest;
        const std::uint8_t* at = line.Data();
        const FiveLines lines{at, at + 3, at + 6, at + 9, at + 12};
        for (const Softness softness : {
                 Softness{12, 2, 0},
                 Softness{6,  4, 1},
                 Softness{4,  3, 3}
        }) {
            SoftenRow(dest.Data(), lines, softness, count);
            reference::SoftenRow(expected.Data(), lines, softness, count);
            ASSERT_EQ(dest, expected) << count << " bytes, centre " << softness.centre;
        }
    });
}

TEST(FillRow, RepeatsThePixel) {
    OnEachLength(5, [](RandomBytes& random, std::size_t count) {
        Bytes dest = random(count / 3 * 3), expected = dest;
        std::uint8_t pattern[FillBytes];
        for (std::size_t i = 0; i < FillBytes; ++i) pattern[i] = static_cast<std::uint8_t>(i % 3 * 70);
        for (std::size_t i = 0; i < expected.Size(); ++i) expected.Data()[i] = pattern[i % 3];
        for (const bool streamed : {false, true}) {
            std::fill_n(dest.Data(), dest.Size(), std::uint8_t{1});
            FillRow(dest.Data(), pattern, count / 3, streamed);
            ASSERT_EQ(dest, expected) << count / 3 << " pixels";
        }
    });
}

TEST(DiffRow, EqualsItsReferenceAndCounts) {
    OnEachLength(6, [](RandomBytes& random, std::size_t count) {
        for (const int threshold : {0, 1, 9, 255}) {
            SCOPED_TRACE(::testing::Message() << count << " bytes, threshold " << threshold);
            Bytes current = random(count), previous = random(count), expected(count), out(count);
            // As cameras have it: a little noise, now and then more.
            for (std::size_t i = count / 2; i < count; ++i)
                previous.Data()[i] = static_cast<std::uint8_t>(current.Data()[i] +
                                                               random.Below(random.Below(30) == 0 ? 60 : 12));
            reference::DiffRow(expected.Data(), current.Data(), previous.Data(), threshold, count);
            std::uint32_t occurred[256] = {};
            for (std::size_t i = 0; i < count; ++i) ++occurred[expected.Data()[i]];
            for (const bool streamed : {false, true}) {
                Counts counts;
                DiffCountRow(out.Data(), current.Data(), previous.Data(), threshold, count, streamed, counts);
                ASSERT_TRUE(std::equal(out.Data(), out.Data() + count, expected.Data()));
                for (int v = 0; v < 256; ++v) ASSERT_EQ(counts[v], occurred[v]) << v;
            }
            DiffRow(current.Data(), current.Data(), previous.Data(), threshold, count);
            ASSERT_TRUE(std::equal(out.Data(), out.Data() + count, current.Data())) << "in place";
        }
    });
}

TEST(ChangeRow, EqualsItsReference) {
    OnEachLength(8, [](RandomBytes& random, std::size_t count) {
        Bytes current = random(count), previous = random(count), same = previous;
        for (const ChangeLimits limits : {
                 ChangeLimits{0,   255},
                 {127, 128},
                 {100, 200}
        }) {
            for (Bytes* frame : {&current, &same}) {
                FrameChange change, expected;
                ChangeRow(frame->Data(), previous.Data(), limits, count, change);
                reference::ChangeRow(frame->Data(), previous.Data(), limits, count, expected);
                ASSERT_EQ(change.beyond, expected.beyond) << count;
                ASSERT_EQ(change.lowest, expected.lowest) << count;
                ASSERT_EQ(change.highest, expected.highest) << count;
            }
        }
    });
}

TEST(WidenRow, EqualsItsReferenceInPlaceAndApart) {
    OnEachLength(7, [](RandomBytes& random, std::size_t count) {
        for (const std::size_t apart : {std::size_t{0}, std::size_t{1}, std::size_t{100}, count * 2}) {
            Bytes frame = random(apart + count * 3), expected = frame;
            WidenRow(frame.Data() + apart, frame.Data(), count);
            reference::WidenRow(expected.Data() + apart, expected.Data(), count);
            ASSERT_EQ(frame, expected) << count << " pixels, " << apart << " bytes on";
        }
    });
}

TEST(SumRow, EqualsItsReference) {
    OnEachLength(8, [](RandomBytes& random, std::size_t count) {
        Bytes added = random(count), removed = random(count);
        for (std::uint8_t* gone : {removed.Data(), static_cast<std::uint8_t*>(nullptr)}) {
            std::vector<std::uint16_t> sums(count, 1000), expected = sums;
            SumRow(sums.data(), added.Data(), gone, count);
            reference::SumRow(expected.data(), added.Data(), gone, count);
            ASSERT_EQ(sums, expected) << count;
        }
    });
}

TEST(MeanRow, EqualsItsReferenceForAllSums) {
    OnEachTarget([] {
        for (int radius = 1; radius <= 3; ++radius) {
            const std::size_t reach = static_cast<std::size_t>(radius) * 3, side = 2 * reach / 3 + 1;
            for (const std::size_t count : RowLengths()) {
                std::vector<std::uint16_t> sums(count + 2 * reach);
                for (std::size_t i = 0; i < sums.size(); ++i)
                    sums[i] = static_cast<std::uint16_t>((i * 31 + count) % (255 * side + 1));
                Bytes out(count), expected(count);
                MeanRow(out.Data(), sums.data() + reach, radius, count);
                reference::MeanRow(expected.Data(), sums.data() + reach, radius, count);
                ASSERT_EQ(out, expected) << count << " bytes, radius " << radius;
            }
        }
    });
}

TEST(SampleRow, StaysWithinOneOfItsReference) {
    OnEachTarget([] {
        RandomBytes random(9);
        constexpr std::size_t Side = 40, RowBytes = Side * 3;
        Bytes picture = random(RowBytes * Side);
        const std::int64_t pixel = std::int64_t{1} << 32;
        for (std::size_t count = 0; count <= 40; ++count) {
            const auto anywhere = [&] {
                return static_cast<std::int64_t>(random.Below(37) * 1000) * (pixel / 1000);
            };
            const Position from{anywhere(), anywhere()}, to{anywhere(), anywhere()};
            const Position step{(to.x - from.x) / 40, (to.y - from.y) / 40};
            Bytes out(count * 3), expected(count * 3);
            SampleRow(out.Data(), {picture.Data(), RowBytes}, from, step, count);
            reference::SampleRow(expected.Data(), {picture.Data(), RowBytes}, from, step, count);
            for (std::size_t i = 0; i < count * 3; ++i)
                ASSERT_NEAR(out.Data()[i], expected.Data()[i], 1) << i << " of " << count;
        }
    });
}

TEST(MixRows, EqualsItsReference) {
    OnEachLength(10, [](RandomBytes& random, std::size_t count) {
        Bytes rows = random(count + 40);
        const std::uint16_t weights[] = {0, 21845, 30000, 13691};
        for (std::size_t taps = 1; taps <= 4; ++taps) {
            std::vector<std::uint16_t> out(count), expected(count);
            MixRows(out.data(), {rows.Data(), 11, weights, taps}, count);
            reference::MixRows(expected.data(), {rows.Data(), 11, weights, taps}, count);
            ASSERT_EQ(out, expected) << count << " bytes, taps " << taps;
        }
    });
}

TEST(MixPixelsAndSpreadPixels, EqualTheirReferences) {
    OnEachTarget([] {
        RandomBytes random(11);
        for (std::size_t pixels = 0; pixels < 70; ++pixels) {
            const std::size_t padded = (pixels + 3) / 4 * 4, taps = 1 + pixels % 5;
            std::vector<std::uint16_t> row((50 + taps) * 3 + 1), weights(padded * taps * 4);
            for (std::uint16_t& value : row) value = static_cast<std::uint16_t>(random.Below(65281));
            for (std::size_t i = 0; i < weights.size(); ++i)
                weights[i] = static_cast<std::uint16_t>(65535 / taps - i / 4);
            std::vector<std::int32_t> firsts(padded);
            for (std::int32_t& first : firsts) first = static_cast<std::int32_t>(random.Below(50) * 3);
            const PixelMix mix{firsts.data(), weights.data(), padded, taps};
            Bytes out(pixels * 3), expected(pixels * 3);
            MixPixels(out.Data(), row.data(), mix, pixels);
            reference::MixPixels(expected.Data(), row.data(), mix, pixels);
            ASSERT_EQ(out, expected) << pixels << " pixels";
            std::vector<std::uint16_t> wide(pixels * 3 + 2), expectedWide(pixels * 3);
            SpreadPixels(wide.data(), row.data(), mix, pixels);
            reference::SpreadPixels(expectedWide.data(), row.data(), mix, pixels);
            wide.resize(pixels * 3);
            ASSERT_EQ(wide, expectedWide) << pixels << " pixels";
        }
    });
}

TEST(SpreadLine, EqualsItsReference) {
    OnEachLength(13, [](RandomBytes& random, std::size_t count) {
        Bytes row = random(61);
        std::vector<std::int32_t> begins(count / LineMix::Block + 1);
        for (std::int32_t& begin : begins) begin = static_cast<std::int32_t>(random.Below(61 - 16 + 1));
        std::vector<std::uint16_t> places(count), weights(count), out(count), expected(count);
        for (std::size_t i = 0; i < count; ++i) {
            places[i] = static_cast<std::uint16_t>(random.Below(13) << 8 | 128);
            weights[i] = static_cast<std::uint16_t>(random.Below(10) == 0 ? 65535 : random.Below(65536));
        }
        const LineMix mix{begins.data(), places.data(), weights.data()};
        SpreadLine(out.data(), row.Data(), mix, count);
        reference::SpreadLine(expected.data(), row.Data(), mix, count);
        ASSERT_EQ(out, expected) << count << " components";
    });
}

TEST(BlendRows, EqualsItsReference) {
    OnEachLength(12, [](RandomBytes& random, std::size_t count) {
        std::vector<std::uint16_t> rows(count + 5);
        for (std::uint16_t& value : rows) value = static_cast<std::uint16_t>(random.Below(65313));
        for (const std::uint16_t weight : {0, 1, 32768, 65535}) {
            Bytes out(count), expected(count);
            BlendRows(out.Data(), rows.data(), rows.data() + 5, weight, count);
            reference::BlendRows(expected.Data(), rows.data(), rows.data() + 5, weight, count);
            ASSERT_EQ(out, expected) << count << " bytes, weight " << weight;
        }
    });
}

TEST(ColorRows, EqualTheirReferences) {
    OnEachLength(14, [](RandomBytes& random, std::size_t count) {
        const std::size_t pixels = count / 3;
        Bytes blue = random(256), red = random(256), lines = random(3 * count + 6);
        std::uint8_t *here = lines.Data() + 3, *below = here + count + 3, *above = below + count;
        const auto both = [&](const char* name, auto fast, auto plain) {
            Bytes row = random(count), expected = row;
            fast(row.Data());
            plain(expected.Data());
            ASSERT_EQ(row, expected) << name << ", " << count << " bytes";
        };
#define EXPECT_ALIKE(Routine, ...)                                       \
    both(                                                                \
        #Routine, [&](std::uint8_t* row) { Routine(row, __VA_ARGS__); }, \
        [&](std::uint8_t* row) { reference::Routine(row, __VA_ARGS__); })
        EXPECT_ALIKE(InvertRow, count);
        for (const int amount : {-255, -32, 0, 1, 255}) EXPECT_ALIKE(BrightenRow, amount, count);
        EXPECT_ALIKE(MapRow, blue.Data(), count);
        EXPECT_ALIKE(MapPixels, blue.Data(), red.Data(), pixels);
        EXPECT_ALIKE(GreyRow, pixels);
        for (const int fifths : {0, 1, 3, 5, 7, 10}) EXPECT_ALIKE(SaturateRow, fifths, pixels);
        EXPECT_ALIKE(SwapRow, pixels);
        EXPECT_ALIKE(SharpenRow, here, below, above, count);
#undef EXPECT_ALIKE
    });
}

}  // namespace
}  // namespace tessaloom::testing
