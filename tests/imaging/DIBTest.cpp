#include "imaging/DIB.h"

#include <climits>

#include "imaging/BmpFile.h"
#include "imaging/IJL.h"
#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(DIB, MakesItsPixelsByTheRulesOfItsSetters) {
    const struct {
        const char* name;
        std::function<void(DIB&)> act;
        int width, height;
        bool surface, pixels;
    } cases[] = {
  // clang-format off
        {"fresh", [](DIB&) {}, 0, 0, false, false},
        {"width alone", [](DIB& d) { d.SetWidth(320);}, 320, 0, false, false},
        {"width, then height", [](DIB& d) { d.SetWidth(320), d.SetHeight(240);}, 320, 240, true, true},
        {"height, then width", [](DIB& d) { d.SetHeight(240), d.SetWidth(320);}, 320, 240, true, true},
        {"both", [](DIB& d) { d.SetWidthHeight(5, 7);}, 5, 7, true, true},
        {"both to 0", [](DIB& d) { d.SetWidthHeight(5, 7), d.SetWidthHeight(0, 0);}, 0, 0, false, false},
        {"one to 0 together", [](DIB& d) { d.SetWidthHeight(5, 7), d.SetWidthHeight(5, 0);}, 5, 0, false, false},
        {"one to 0 alone", [](DIB& d) { d.SetWidthHeight(5, 7), d.SetWidth(0);}, 0, 7, true, false},
        {"negative", [](DIB& d) { d.SetWidthHeight(-5, 7);}, -5, 7, true, false},
        {"more than there is", [](DIB& d) { d.SetWidthHeight(INT_MAX, INT_MAX);}, INT_MAX, INT_MAX, true, false},
        {"unloaded", [](DIB& d) { d.SetWidthHeight(5, 7), d.UnloadClass();}, 5, 7, false, false},
  // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DIB dib;
        c.act(dib);
        EXPECT_EQ(dib.Width(), c.width);
        EXPECT_EQ(dib.Height(), c.height);
        EXPECT_EQ(dib.hDC() != nullptr, c.surface);
        EXPECT_EQ(dib.hDIB() != nullptr, c.pixels);
        EXPECT_EQ(dib.DIBPtr() != nullptr, c.pixels);
        dib.Clear(0x123456);  // whatever the state
    }
}

TEST(DIB, KeepsItsPixelsUntilTheSizeChanges) {
    DIB dib;
    dib.SetWidthHeight(4, 3);
    dib.Clear(0x112233);
    dib.SetWidthHeight(4, 3), dib.SetWidth(4), dib.SetHeight(3);
    EXPECT_EQ(dib.Pixel(3, 2), 0x112233);
    dib.SetHeight(4);
    EXPECT_NE(dib.Pixel(3, 2), 0x112233);
}

TEST(DIB, LiesBottomUpInPaddedRows) {
    DIB dib;
    dib.SetWidthHeight(641, 480);
    EXPECT_EQ(dib.Stride(), 1924);
    EXPECT_EQ(dib.Row(0), dib.DIBPtr() + 479 * 1924);
    dib.Clear(0x0000FF);
    EXPECT_EQ(dib.DIBPtr()[0], 0);
    EXPECT_EQ(dib.DIBPtr()[2], 0xFF);
}

TEST(DIB, SwapsPixelsAndKeepsSurfaces) {
    DIB one, two, copy;
    one.SetWidthHeight(2, 2), two.SetWidthHeight(3, 1);
    one.Clear(1), two.Clear(2);
    const DeviceContext* surface = one.hDC();
    one.Swap(two);
    EXPECT_EQ(one.hDC(), surface);
    EXPECT_EQ(one.Pixel(2, 0), 2);
    EXPECT_EQ(&one.hDC()->Bitmap(), &one);
    EXPECT_TRUE(copy.CopyFrom(two));
    EXPECT_EQ(copy.Pixel(1, 1), 1);
    EXPECT_TRUE(copy.CopyFrom(DIB()));
    EXPECT_EQ(copy.hDC(), nullptr);
}

TEST(IJL, PadsRows) {
    EXPECT_EQ(IJL_DIB_PAD_BYTES(641, 3), 1);
    EXPECT_EQ(IJL_DIB_PAD_BYTES(640, 3), 0);
    EXPECT_EQ(IJL_DIB_PAD_BYTES(INT_MAX, 3), 3);
    const struct {
        int width, height, bytes, expected;
    } cases[] = {
  // clang-format off
        {100, 10, 3, 3000}, {101, 10, 3, 3040}, {21846, 1, 3, 4}, {21848, 2, 3, 131088}, {INT_MAX, 1, 3, 0},
        {40000, INT_MAX, 3, 0}, {641, 1, 3, 1924}, {640, 1, 3, 1920},
  // clang-format on
    };
    for (const auto& c : cases) EXPECT_EQ(PaddedSize(c.width, c.height, c.bytes), c.expected) << c.width;
}

TEST(WriteBmp, DescribesThePixelsThatFollow) {
    DIB dib;
    EXPECT_TRUE(WriteBmp(dib).empty());
    dib.SetWidthHeight(3, 2);
    dib.Clear(0x0102FF);
    const auto file = WriteBmp(dib);
    ASSERT_EQ(file.size(), 54U + 24U);
    const struct {
        std::size_t at;
        int value;
    } numbers[] = {
  // clang-format off
        {2, 78}, {10, 54}, {18, 3}, {22, 2}, {28, 24}, {54, 0xFF0201},
  // clang-format on
    };
    for (const auto& [at, value] : numbers)
        EXPECT_EQ(file[at] | file[at + 1] << 8 | file[at + 2] << 16, value) << at;
}

}  // namespace
}  // namespace tessaloom::testing
