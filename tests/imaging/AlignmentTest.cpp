#include "imaging/Alignment.h"

#include "gtest/gtest.h"

namespace tessaloom {
namespace {

TEST(Alignment, PutsTheAnchorOnThePosition) {
    struct Row {
        int alignment;
        Offset offset;  // of the top left corner of 10 x 7 pixels
    };
    const Row rows[] = {
        {0,  {0, 0}   },
        {1,  {-5, 0}  },
        {2,  {-10, 0} },
        {3,  {0, -3}  },
        {4,  {-5, -3} },
        {5,  {-10, -3}},
        {6,  {0, -7}  },
        {7,  {-5, -7} },
        {8,  {-10, -7}},
        {9,  {0, 0}   },
        {-1, {0, 0}   }
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.alignment);
        const Offset offset = AlignmentOffset(row.alignment, 10, 7);
        EXPECT_EQ(offset.x, row.offset.x);
        EXPECT_EQ(offset.y, row.offset.y);
    }
}

}  // namespace
}  // namespace tessaloom
