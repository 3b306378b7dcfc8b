#include <climits>

#include "imaging/pixelops/Bitmap.h"
#include "imaging/pixelops/Tessaloom.h"
#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

constexpr int NoKey = 0x1000000, White = 0xFFFFFF;

struct Options {
    int mode = 2, key = NoKey, opacity = 255;
    Bitmap* map = nullptr;
    std::vector<int> table = {};
};

void MergeOnto(Bitmap& dest, Bitmap& source, int x, int y, Options o = {}) {
    Merge(dest.Ptr(), dest.width, dest.height, source.Ptr(), source.width, source.height, x, y, o.mode, o.key,
          o.opacity, o.map ? o.map->Ptr() : nullptr, 0, 0, o.table.data(),
          static_cast<int>(o.table.size() / 4), o.table.empty() ? 0 : -1);
}

int MergedColour(int dest, int source, Options o = {}) {
    Bitmap below(1, 1, dest), above(1, 1, source);
    MergeOnto(below, above, 0, 0, o);
    return below.Colour(0, 0);
}

TEST(Merge, FollowsItsFormulasForAllValues) {
    Bitmap source(256, 256, 0), before(256, 256, 0);
    for (int d = 0; d < 256; ++d) {
        for (int s = 0; s < 256; ++s) {
            source.Set(s, d, s * 0x010101);
            before.Set(s, d, d * 0x010101);
        }
    }
    for (const int o : {1, 77, 178, 254, 255}) {
        Bitmap merged[] = {before, before, before};
        for (int mode = 0; mode < 3; ++mode)
            MergeOnto(merged[mode], source, 0, 0, {.mode = mode, .opacity = o});
        for (int d = 0; d < 256; ++d) {
            for (int s = 0; s < 256; ++s) {
                const auto values = [&] { return ::testing::Message() << d << ", " << s << ", " << o; };
                const int denser = std::max(d, (s * o + 127) / 255);
                const int darker = (d * (65025 - s * o) + 32512) / 65025;
                const int blended = (d * (255 - o) + s * o + 127) / 255;
                ASSERT_EQ(merged[0].Colour(s, d), denser * 0x010101) << values();
                ASSERT_EQ(merged[1].Colour(s, d), darker * 0x010101) << values();
                ASSERT_EQ(merged[2].Colour(s, d), blended * 0x010101) << values();
            }
        }
    }
}

TEST(Merge, KeepsEqualColoursWhateverTheOpacity) {
    for (int colour = 0; colour < 256; ++colour)
        for (int opacity = 0; opacity < 256; ++opacity)
            ASSERT_EQ(MergedColour(colour << 8, colour << 8, {.opacity = opacity}), colour << 8);
}

TEST(Merge, ClipsOnAllSidesAndFarOutside) {
    const int places[] = {INT_MIN, -1000, -8, -7, -6, -3, 0, 1, 4, 5, 8, 9, 1000, INT_MAX};
    for (const int x : places) {
        for (const int y : places) {
            SCOPED_TRACE(::testing::Message() << x << ", " << y);
            const Bitmap before = Bitmap::Random(9, 5, 1);
            Bitmap dest = before, expected = before, source = Bitmap::Random(7, 8, 2);
            for (std::int64_t v = 0; v < source.height; ++v)
                for (std::int64_t u = 0; u < source.width; ++u)
                    if (x + u >= 0 && x + u < dest.width && y + v >= 0 && y + v < dest.height)
                        expected.Set(static_cast<int>(x + u), static_cast<int>(y + v),
                                     source.Colour(static_cast<int>(u), static_cast<int>(v)));
            MergeOnto(dest, source, x, y);
            EXPECT_EQ(dest, expected);  // pad and guard bytes included
        }
    }
}

TEST(Merge, HidesTheKeyColourAlone) {
    EXPECT_EQ(MergedColour(1, 0x123456, {.key = 0x123456}), 1);
    EXPECT_EQ(MergedColour(1, 0x123457, {.key = 0x123456}), 0x123457);
    EXPECT_EQ(MergedColour(1, White, {.key = NoKey}), White);
    EXPECT_EQ(MergedColour(1, 0, {.key = NoKey}), 0);
}

TEST(Merge, MatchesTheTransparentColourTable) {
    const std::vector<int> range = {0x102030, 0x302010, 0, 0};
    const std::vector<int> tolerant = {0x202020, 0x202020, 5, 0};
    const std::vector<int> twoGroups = {0x202020, 0x202020, 0, 128, 0x202020, White, 0, 64};
    const struct {
        const char* name;
        std::vector<int> table;
        int source, expected;
    } cases[] = {
        {"an end of the range",               range,     0x102030, 0       },
        {"the other end",                     range,     0x302010, 0       },
        {"between, the colours crossed over", range,     0x202020, 0       },
        {"one component outside",             range,     0x20210F, 0x20210F},
        {"within the tolerance",              tolerant,  0x251B20, 0       },
        {"just beyond the tolerance",         tolerant,  0x261B20, 0x261B20},
        {"the least opacity of two groups",   twoGroups, 0x202020, 0x080808},
        {"only the second group",             twoGroups, 0xFFFFFF, 0x404040},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MergedColour(0, c.source, {.table = c.table}), c.expected);
    }
    // A table overrules the key colour, which callers take from its first group.
    EXPECT_EQ(MergedColour(0, 0x202020,
                           {
                               .key = 0x202020, .table = {0x202020, 0x202020, 0, 255}
    }),
              0x202020);
}

TEST(Merge, TakesOpacityFromTheMapForEachComponent) {
    Bitmap map(1, 1, 0xFF8000);
    EXPECT_EQ(MergedColour(0, 0xC8C8C8, {.mode = 3, .map = &map}), 0xC86400);
    EXPECT_EQ(MergedColour(0, 0xC8C8C8, {.mode = 3, .opacity = 128, .map = &map}), 0x643200);
    EXPECT_EQ(MergedColour(0, 0xC8C8C8, {.mode = 2, .map = &map}), 0xC86400);
    EXPECT_EQ(MergedColour(7, 0xC8C8C8, {.mode = 3}), 7) << "no map";
}

TEST(Merge, ComesToTheSameWhetherOrNotPixelsAreLookedAt) {
    Bitmap source = Bitmap::Random(137, 5, 1), map = Bitmap::Random(137, 5, 2);
    for (int x = 0; x < 100; ++x) {  // stretches without any density or coverage
        source.Set(x, 1, 0);
        map.Set(x + 30, 2, 0);
    }
    for (int mode = 0; mode <= 3; ++mode) {
        for (const int opacity : {-3, 0, 1, 100, 254, 255, 300}) {
            for (Bitmap* used : {&map, static_cast<Bitmap*>(nullptr)}) {
                SCOPED_TRACE(::testing::Message() << "mode " << mode << ", opacity " << opacity);
                Bitmap plain = Bitmap::Random(137, 5, 3), keyed = plain;
                MergeOnto(plain, source, 0, 0, {.mode = mode, .opacity = opacity, .map = used});
                // A table whose one group keeps all that it matches.
                MergeOnto(keyed, source, 0, 0,
                          {
                              .mode = mode, .opacity = opacity, .map = used, .table = {0, White, 0, 255}
                });
                EXPECT_EQ(plain, keyed);
            }
        }
    }
}

TEST(MergeText, LaysTheTextColourDownThroughTheCoverage) {
    Bitmap dest(3, 1, 0), map(2, 1, 0);
    map.Set(1, 0, 0xFF8000);
    MergeText(dest.Ptr(), 3, 1, nullptr, 2, 1, 1, 0, 3, NoKey, 255, map.Ptr(), 0, 0, nullptr, 0, 0, 0x0A14C8);
    EXPECT_EQ(dest.Colour(1, 0), 0);
    EXPECT_EQ(dest.Colour(2, 0), 0x0A0A00);

    Bitmap uniform(3, 1, 0);  // without a map the rendered text is its own coverage
    MergeText(uniform.Ptr(), 3, 1, map.Ptr(), 2, 1, 1, 0, 2, NoKey, 128, nullptr, 0, 0, nullptr, 0, 0, White);
    EXPECT_EQ(uniform.Colour(2, 0), 0x804000);
}

TEST(PixelOperations, IgnoreNullBuffersAndSizesBelowOne) {
    Bitmap dest = Bitmap::Random(4, 4, 3);
    const Bitmap before = dest;
    std::uint8_t* none = nullptr;
    for (const int size : {INT_MIN, -1, 0}) {
        Merge(dest.Ptr(), size, 4, dest.Ptr(), 4, 4, 0, 0, 2, NoKey, 255, none, 0, 0, nullptr, 0, 0);
        Merge(dest.Ptr(), 4, 4, dest.Ptr(), 4, size, 0, 0, 2, NoKey, 255, none, 0, 0, nullptr, 0, 0);
        Shadow(dest.Ptr(), 4, size, dest.Ptr(), 1, 1, 0, 0, 2, NoKey, 255, none, 1, 0, 0, nullptr, 0, 0);
        Cls(dest.Ptr(), size, 4, 0);
        ColorProcess(dest.Ptr(), 4, size, 2);
        Rotate(dest.Ptr(), 4, 4, dest.Ptr(), size, 4, 30, -17560, 32768, 0);
        DIB1624(dest.Ptr(), size, 4);
        Diff(dest.Ptr(), dest.Ptr(), dest.Ptr(), 4, size, 0);
        Blur(dest.Ptr(), dest.Ptr(), size, 4, 1);
    }
    Merge(none, 4, 4, none, 4, 4, 0, 0, 2, NoKey, 255, none, 0, 0, nullptr, 0, 0);
    MergeText(dest.Ptr(), 4, 4, none, 4, 4, 0, 0, 2, NoKey, 255, none, 0, 0, nullptr, 0, 0, 0);
    Cls(none, 4, 4, 0);
    Blur(none, none, 4, 4, 1);
    EXPECT_EQ(dest, before);
}

}  // namespace
}  // namespace tessaloom::testing
