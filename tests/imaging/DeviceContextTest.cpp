#include "imaging/DeviceContext.h"

#include <climits>

#include "imaging/DIB.h"
#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

std::unique_ptr<DIB> Make(int width, int height, unsigned seed = 0) {
    auto dib = std::make_unique<DIB>();
    dib->SetWidthHeight(width, height);
    std::mt19937 random(seed);
    for (int y = 0; y < height && seed; ++y)
        for (int i = 0; i < width * 3; ++i) dib->Row(y)[i] = static_cast<std::uint8_t>(random());
    return dib;
}

std::vector<int> Pixels(const DIB& dib) {
    std::vector<int> pixels;
    for (int y = 0; y < dib.Height(); ++y)
        for (int x = 0; x < dib.Width(); ++x) pixels.push_back(dib.Pixel(x, y));
    return pixels;
}

struct Place {
    int x, y, width, height, sourceX, sourceY;
};
constexpr Place Places[] = {
  // clang-format off
    {0, 0, 7, 5, 0, 0}, {-3, -2, 7, 5, 0, 0}, {5, 4, 7, 5, 0, 0}, {2, 1, 3, 2, -1, -1}, {2, 1, 30, 20, 3, 2},
    {0, 0, INT_MAX, INT_MAX, 0, 0}, {INT_MIN, 0, 7, 5, 0, 0}, {INT_MAX, 3, 7, 5, 0, 0},
    {0, 0, 7, 5, INT_MAX, INT_MIN}, {0, 0, -4, 5, 0, 0}, {-5, 0, INT_MAX, 2, -5, 1}, {9, 6, 1, 1, 6, 4},
  // clang-format on
};

TEST(BitBlt, CopiesWhatLiesOnBothBitmaps) {
    const auto source = Make(7, 5, 1);
    for (const Place& p : Places) {
        SCOPED_TRACE(::testing::Message() << p.x << ", " << p.y << ": " << p.width << " x " << p.height);
        const auto dest = Make(10, 8, 2), before = Make(10, 8, 2);
        dest->hDC()->BitBlt(p.x, p.y, p.width, p.height, *source->hDC(), p.sourceX, p.sourceY);
        for (int y = 0; y < 8; ++y) {
            for (int x = 0; x < 10; ++x) {
                const std::int64_t u = std::int64_t{x} - p.x, v = std::int64_t{y} - p.y;
                const std::int64_t fromX = u + p.sourceX, fromY = v + p.sourceY;
                const bool copied = u >= 0 && u < p.width && v >= 0 && v < p.height && fromX >= 0 &&
                                    fromX < 7 && fromY >= 0 && fromY < 5;
                ASSERT_EQ(dest->Pixel(x, y),
                          copied ? source->Pixel(static_cast<int>(fromX), static_cast<int>(fromY))
                                 : before->Pixel(x, y));
            }
        }
    }
}

TEST(BitBlt, CopiesWithinOneBitmapWhateverTheOverlap) {
    for (const int shiftX : {-2, 0, 3}) {
        for (const int shiftY : {-2, 0, 1}) {
            const auto dib = Make(9, 6, 3), before = Make(9, 6, 3);
            dib->hDC()->BitBlt(3 + shiftX, 2 + shiftY, 3, 3, *dib->hDC(), 3, 2);
            for (int y = 0; y < 3; ++y)
                for (int x = 0; x < 3; ++x)
                    EXPECT_EQ(dib->Pixel(3 + shiftX + x, 2 + shiftY + y), before->Pixel(3 + x, 2 + y));
        }
    }
}

TEST(StretchBlt, ShowsTheSamePartWhenItIsClipped) {
    const auto source = Make(23, 17, 5);
    for (const StretchMode mode : {StretchMode::ColorOnColor, StretchMode::Halftone}) {
        for (const auto& [width, height] : {
                 std::pair{60, 50},
                 {11, 40},
                 {9,  5 }
        }) {
            const auto whole = Make(width, height), part = Make(8, 6);
            whole->hDC()->SetStretchBltMode(mode), part->hDC()->SetStretchBltMode(mode);
            whole->hDC()->StretchBlt(0, 0, width, height, *source->hDC(), 2, 1, 20, 15);
            part->hDC()->StretchBlt(-3, -2, width, height, *source->hDC(), 2, 1, 20, 15);
            for (int y = 0; y + 2 < height && y < 6; ++y)
                for (int x = 0; x + 3 < width && x < 8; ++x)
                    ASSERT_EQ(part->Pixel(x, y), whole->Pixel(x + 3, y + 2))
                        << width << " at " << x << ", " << y;
        }
    }
}

TEST(StretchBlt, TakesTheNearestPixelOrTheMean) {
    const auto source = Make(4, 1);
    const int values[] = {10, 30, 50, 200};
    for (int x = 0; x < 4; ++x) source->Row(0)[x * 3] = static_cast<std::uint8_t>(values[x]);
    const struct {
        StretchMode mode;
        std::vector<int> expected;
    } cases[] = {
  // clang-format off
        {StretchMode::ColorOnColor, {30, 200}                         },
        {StretchMode::ColorOnColor, {10, 50, 200}                     },
        {StretchMode::ColorOnColor, {10, 10, 30, 30, 50, 50, 200, 200}},
        {StretchMode::Halftone,     {73}                              }, // 72.5
        {StretchMode::Halftone,     {20, 125}                         },
        {StretchMode::Halftone,     {15, 40, 163}                     }, // 4/3 source pixels each: 162.5
        {StretchMode::Halftone,     {10, 15, 25, 35, 45, 88, 163, 200}}, // 87.5, 162.5
  // clang-format on
    };
    for (const auto& c : cases) {
        const int width = static_cast<int>(c.expected.size());
        const auto dest = Make(width, 1);
        dest->hDC()->SetStretchBltMode(c.mode);
        dest->hDC()->StretchBlt(0, 0, width, 1, *source->hDC(), 0, 0, 4, 1);
        for (int x = 0; x < width; ++x)
            EXPECT_EQ(dest->Row(0)[x * 3], c.expected[static_cast<std::size_t>(x)])
                << width << " wide, at " << x;
    }
}

TEST(StretchBlt, AcceptsWhatCannotBeDrawn) {
    const auto dest = Make(6, 6, 7), source = Make(5, 5, 8);
    const auto before = Pixels(*dest);
    DIB none;
    none.SetWidthHeight(-1, 5);
    for (const StretchMode mode : {StretchMode::ColorOnColor, StretchMode::Halftone}) {
        DeviceContext& surface = *dest->hDC();
        surface.SetStretchBltMode(mode);
        surface.StretchBlt(0, 0, 0, 5, *source->hDC(), 0, 0, 5, 5);
        surface.StretchBlt(0, 0, 5, -5, *source->hDC(), 0, 0, 5, 5);
        surface.StretchBlt(0, 0, 5, 5, *source->hDC(), 5, 0, 5, 5);
        surface.StretchBlt(0, 0, 5, 5, *source->hDC(), INT_MIN, 0, INT_MAX, 5);
        surface.StretchBlt(INT_MAX, INT_MAX, INT_MAX, INT_MAX, *source->hDC(), 0, 0, 5, 5);
        surface.StretchBlt(0, 0, 5, 5, *none.hDC(), 0, 0, 5, 5);
        surface.BitBlt(0, 0, 5, 5, *none.hDC(), 0, 0);
        none.hDC()->StretchBlt(0, 0, 5, 5, *source->hDC(), 0, 0, 5, 5);
    }
    EXPECT_EQ(Pixels(*dest), before);
}

}  // namespace
}  // namespace tessaloom::testing
