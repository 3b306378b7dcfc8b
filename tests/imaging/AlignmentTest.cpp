#include "imaging/Alignment.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(Alignment, PutsTheAnchorOnThePosition) {
    const int columns[] = {0, -5, -10}, rows[] = {0, -3, -7};  // of the top left corner of 10 x 7 pixels
    for (int code = -1; code <= 9; ++code) {
        const bool known = code >= 0 && code <= 8;
        const Offset offset = AlignmentOffset(code, 10, 7);
        EXPECT_EQ(offset.x, known ? columns[code % 3] : 0) << code;
        EXPECT_EQ(offset.y, known ? rows[code / 3] : 0) << code;
    }
}

}  // namespace
}  // namespace tessaloom::testing
