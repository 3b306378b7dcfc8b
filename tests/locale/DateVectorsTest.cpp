#include <gtest/gtest.h>

#include <charconv>

#include "locale/Conversion.h"
#include "support/TestLocales.h"
#include "support/Tsv.h"

namespace tessaloom {
namespace {

constexpr int CurrentYear = 2026;  // of the table's dates without a year

TEST(DateVectors, AllRowsAgree) {
    const auto english = testing::EnglishLocale();
    const auto german = testing::GermanLocale();
    const auto rows = testing::ReadTsv(TEST_DATA "/vectors/dates.tsv");
    ASSERT_GT(rows.size(), 100u);
    for (const auto& row : rows) {
        SCOPED_TRACE("line " + std::to_string(row.line) + ": " + row[1] + " \"" + row[0] + "\"");
        const auto actual = DateFromText(row[0], row[1] == "1031" ? german : english, CurrentYear);
        if (row[2] == "ERR_TYPEMISMATCH") {
            EXPECT_EQ(actual.fault, Fault::TypeMismatch) << actual.value;
            continue;
        }
        double expected = 0;
        std::from_chars(row[2].data(), row[2].data() + row[2].size(), expected);
        EXPECT_EQ(actual.fault, Fault::None);
        EXPECT_DOUBLE_EQ(actual.value, expected);
    }
}

TEST(DateFromText, ReadsWhatTheUsersOwnLanguageWrites) {
    const struct {
        const char* text;
        double moment;
    } german[] = {
        {"14. Januar 2006",     38731            },
        {"3. m\u00e4rz 2008",   39510            },
        {"14. Mrz. 2006",       38790            },
        {"Sep 5, 2006 6:00",    38965.25         },
        {"05.09.2006 15:30:05", 38965.64589120370},
    };
    for (const auto& row : german) {
        SCOPED_TRACE(row.text);
        const auto actual = DateFromText(row.text, testing::GermanLocale(), CurrentYear);
        EXPECT_EQ(actual.fault, Fault::None);
        EXPECT_NEAR(actual.value, row.moment, 1e-9);
    }
}

TEST(DateFromText, RefusesADateThatATimeInterrupts) {
    for (const char* text : {"1/14 3:30 2006", "Jan 3:30 14", "1:30 2:30", "1/2/3/4", "Jan Feb 3", "1,5"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(DateFromText(text, testing::EnglishLocale(), CurrentYear).fault, Fault::TypeMismatch);
    }
}

}  // namespace
}  // namespace tessaloom
