#include <gtest/gtest.h>

#include "imaging/pixelops/MergeRows.h"
#include "imaging/pixelops/RowFixture.h"
#include "imaging/pixelops/ShadowRows.h"

namespace tessaloom::testing {
namespace {

using namespace tessaloom::pixelops;

TEST(LayRow, EqualsItsReference) {
    OnEachTarget([] {
        RandomBytes random(1);
        for (const std::size_t count : RowLengths()) {
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
        }
    });
}

TEST(KeepRow, EqualsItsReference) {
    OnEachTarget([] {
        RandomBytes random(2);
        for (const std::size_t count : RowLengths()) {
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
            }
        }
    });
}

TEST(ScaleRow, EqualsItsReference) {
    OnEachTarget([] {
        RandomBytes random(3);
        for (const std::size_t count : RowLengths()) {
            Bytes map = random(count), kept = random(count), expected = kept;
            const int opacity = static_cast<int>(random.Below(256));
            ScaleRow(kept.Data(), map.Data(), opacity, count);
            reference::ScaleRow(expected.Data(), map.Data(), opacity, count);
            ASSERT_EQ(kept, expected) << count << " bytes, opacity " << opacity;
        }
    });
}

TEST(SoftenRow, EqualsItsReference) {
    OnEachTarget([] {
        RandomBytes random(4);
        for (const std::size_t count : RowLengths()) {
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
        }
    });
}

}  // namespace
}  // namespace tessaloom::testing
