#include "platform/Paths.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(Paths, AreTakenApartAtBothSeparators) {
    const struct {
        const char *path, *folder, *name, *base, *extension;
    } rows[] = {
        {"C:\\cam\\live.v2.jpg", "C:\\cam",  "live.v2.jpg", "live.v2", "jpg"   },
        {"/srv/cam/live.jpg",    "/srv/cam", "live.jpg",    "live",    "jpg"   },
        {"a/b\\c",               "a/b",      "c",           "c",       ""      },
        {"live.jpg",             "",         "live.jpg",    "live",    "jpg"   },
        {"/live",                "/",        "live",        "live",    ""      },
        {"a\\b.d\\",             "a",        "b.d",         "b",       "d"     },
        {"a.d\\b",               "a.d",      "b",           "b",       ""      },
        {".hidden",              "",         ".hidden",     "",        "hidden"},
        {"dot.",                 "",         "dot.",        "dot",     ""      },
        {"/",                    "",         "",            "",        ""      },
        {"",                     "",         "",            "",        ""      },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(ParentFolderName(row.path), row.folder);
        EXPECT_EQ(FileName(row.path), row.name);
        EXPECT_EQ(BaseName(row.path), row.base);
        EXPECT_EQ(ExtensionName(row.path), row.extension);
    }
}

TEST(Paths, AreJoinedByOneSeparator) {
    EXPECT_EQ(JoinPath("/srv", "x.ini"), "/srv\\x.ini");
    EXPECT_EQ(JoinPath("/srv/", "x.ini"), "/srv/x.ini");
    EXPECT_EQ(JoinPath("C:\\", "x.ini"), "C:\\x.ini");
    EXPECT_EQ(JoinPath("", "x.ini"), "x.ini");
}

}  // namespace
}  // namespace tessaloom::testing
