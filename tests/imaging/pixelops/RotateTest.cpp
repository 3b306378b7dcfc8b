#include <climits>
#include <numbers>

#include "imaging/pixelops/Bitmap.h"
#include "imaging/pixelops/Rotation.h"
#include "imaging/pixelops/Tessaloom.h"
#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

void RotateOnto(Bitmap& dest, Bitmap& source, double degrees) {
    const Shears shears = RotationShears(degrees);
    Rotate(dest.Ptr(), dest.width, dest.height, source.Ptr(), source.width, source.height, shears.angle,
           shears.shearX, shears.shearY, 0);
    EXPECT_TRUE(dest.GuardsIntact());
}

Bitmap Rotated(Bitmap& source, double degrees, int background = 0) {
    const PixelSize size = RotatedSize(source.width, source.height, degrees);
    Bitmap dest(size.width, size.height, background);
    RotateOnto(dest, source, degrees);
    return dest;
}

std::vector<int> FromTop(Bitmap bitmap) {
    std::vector<int> colours;
    for (int y = bitmap.height - 1; y >= 0; --y)
        for (int x = 0; x < bitmap.width; ++x) colours.push_back(bitmap.Colour(x, y));
    return colours;
}

TEST(Rotate, TurnsByQuartersExactlyAndCounterClockwise) {
    Bitmap source(3, 2);  // seen from the top: 1 2 3 / 4 5 6
    for (int i = 0; i < 6; ++i) source.Set(i % 3, 1 - i / 3, i + 1);
    const struct {
        double degrees;
        std::vector<int> expected;
    } cases[] = {
        {0,   {1, 2, 3, 4, 5, 6}},
        {90,  {3, 6, 2, 5, 1, 4}},
        {180, {6, 5, 4, 3, 2, 1}},
        {270, {4, 1, 5, 2, 6, 3}},
        {360, {1, 2, 3, 4, 5, 6}},
        {-90, {4, 1, 5, 2, 6, 3}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.degrees);
        EXPECT_EQ(FromTop(Rotated(source, c.degrees)), c.expected);
    }
}

TEST(Rotate, KnowsAHalfTurnByItsAngleWhateverTheShear) {
    Bitmap source = Bitmap::Random(5, 4, 1), expected = Rotated(source, 180);
    for (const int shear : {INT_MIN, INT_MAX, 0}) {
        Bitmap dest(5, 4);
        Rotate(dest.Ptr(), 5, 4, source.Ptr(), 5, 4, 180, shear, 0, 0);
        EXPECT_EQ(dest, expected);
    }
}

TEST(Rotate, LosesNoCornerAndStaysCentred) {
    for (const double degrees :
         {0.5, 1.0, 17.0, 44.9, 45.0, 61.5, 89.5, 90.5, 135.0, 179.5, 180.5, 222.0, 300.0, 359.5}) {
        SCOPED_TRACE(degrees);
        Bitmap source(61, 38, 0xFFFFFF);
        Bitmap dest = Rotated(source, degrees);
        double mass = 0, momentX = 0, momentY = 0;
        for (int y = 0; y < dest.height; ++y) {
            for (int x = 0; x < dest.width; ++x) {
                const double covered = dest.At(x, y)[1] / 255.0;
                mass += covered;
                momentX += covered * (x + 0.5);
                momentY += covered * (y + 0.5);
            }
        }
        EXPECT_NEAR(mass, 61 * 38, 61 * 38 * 0.003);
        EXPECT_NEAR(momentX / mass, dest.width / 2.0, 0.02);
        EXPECT_NEAR(momentY / mass, dest.height / 2.0, 0.02);
    }
}

TEST(Rotate, IsCloseToABilinearRotationInDoublePrecision) {
    // Waves of a few pixels' length: where interpolation matters.
    Bitmap source(160, 120);
    for (int y = 0; y < 120; ++y)
        for (int x = 0; x < 160; ++x) {
            const auto wave = [&](double length) {
                return static_cast<int>(127.5 +
                                        120 * std::sin((x + 0.7 * y) / length) * std::cos((x - y) / 9.0));
            };
            source.Set(x, y, wave(1.3) | wave(3) << 8 | wave(12) << 16);
        }
    for (const double degrees : {0.3, 7.0, 17.0, 45.0, 89.0, 133.0, 179.6, 211.0, 302.0}) {
        Bitmap dest = Rotated(source, degrees);
        const double a = degrees * std::numbers::pi / 180;
        double squares = 0;
        int components = 0;
        for (int y = 0; y < dest.height; ++y) {
            for (int x = 0; x < dest.width; ++x) {
                const double dx = x + 0.5 - dest.width / 2.0, dy = y + 0.5 - dest.height / 2.0;
                const double u = std::cos(a) * dx + std::sin(a) * dy + 79.5;
                const double v = -std::sin(a) * dx + std::cos(a) * dy + 59.5;
                if (u < 0 || u >= 159 || v < 0 || v >= 119) continue;
                const int column = static_cast<int>(u), row = static_cast<int>(v);
                const double right = u - column, up = v - row;
                for (int c = 0; c < 3; ++c, ++components) {
                    const double lower =
                        source.At(column, row)[c] * (1 - right) + source.At(column + 1, row)[c] * right;
                    const double upper = source.At(column, row + 1)[c] * (1 - right) +
                                         source.At(column + 1, row + 1)[c] * right;
                    squares += std::pow(dest.At(x, y)[c] - (lower * (1 - up) + upper * up), 2);
                }
            }
        }
        EXPECT_GT(components, 160 * 120 * 3 * 9 / 10);
        EXPECT_LT(std::sqrt(squares / components), 0.6) << degrees;
    }
}

TEST(Rotate, BlendsItsEdgesWithWhatIsThere) {
    Bitmap source(20, 20, 0x80C040);
    EXPECT_EQ(Rotated(source, 33, 0x80C040), Bitmap(28, 28, 0x80C040)) << "no seam on the same colour";
    Bitmap onBlack = Rotated(source, 33), small(5, 5), far(90, 70, 0x123456);
    EXPECT_EQ(onBlack.Colour(0, 0), 0);
    RotateOnto(small, source, 33);
    EXPECT_EQ(small, Bitmap(5, 5, 0x80C040)) << "a destination that is too small shows the middle";
    RotateOnto(far, source, 33);
    EXPECT_EQ(far.Colour(2, 2), 0x123456);
    EXPECT_EQ(far.Colour(45, 35), 0x80C040);
}

TEST(RotatedSize, HoldsTheTurnedRectangle) {
    const struct {
        double degrees;
        PixelSize expected;
    } cases[] = {
        {0,   {40, 30}},
        {90,  {30, 40}},
        {180, {40, 30}},
        {270, {30, 40}},
        {360, {40, 30}},
        {45,  {50, 50}},
        {30,  {50, 46}},
        {-30, {50, 46}},
        {150, {50, 46}}
    };
    for (const auto& c : cases) EXPECT_EQ(RotatedSize(40, 30, c.degrees), c.expected) << c.degrees;
}

}  // namespace
}  // namespace tessaloom::testing
