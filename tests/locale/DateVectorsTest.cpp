#include <charconv>

#include "locale/Conversion.h"
#include "support/TestLocales.h"
#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

constexpr int CurrentYear = 2026;  // of the table's dates without a year

TEST(DateVectors, AllRowsAgree) {
    const auto english = EnglishLocale();
    const auto german = GermanLocale();
    const auto rows = ReadTsv(TEST_DATA "/vectors/dates.tsv");
    ASSERT_EQ(rows.size(), 125u);
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
        const auto actual = DateFromText(row.text, GermanLocale(), CurrentYear);
        EXPECT_EQ(actual.fault, Fault::None);
        EXPECT_NEAR(actual.value, row.moment, 1e-9);
    }
}

TEST(DateFromText, ReadsMarksAndSeparatorsAsTheUserWritesThem) {
    auto canadian = EnglishLocale();
    canadian.pmMark = "p.m.";
    auto korean = EnglishLocale();
    korean.dateOrder = DateOrder::YearMonthDay;
    korean.dateSeparator = ".";
    korean.shortDate = "yyyy. M. d.";
    korean.time = "tt h:mm:ss";
    korean.pmMark = "\uc624\ud6c4";
    const struct {
        const UserLocale& user;
        const char* text;
        double moment;
    } rows[] = {
        {canadian, "2006-09-05 6:00:00 p.m.",          38965.75},
        {canadian, "6 P.M.",                           0.75    },
        {canadian, "6 pm",                             0.75    },
        {korean,   "2006. 9. 5. \uc624\ud6c4 6:00:00", 38965.75},
        {korean,   "2006/9/5 \uc624\ud6c46:00",        38965.75},
        {korean,   "2006. 9. 5.",                      38965   },
        {korean,   "6:00 PM",                          0.75    },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto actual = DateFromText(row.text, row.user, CurrentYear);
        EXPECT_EQ(actual.fault, Fault::None);
        EXPECT_EQ(actual.value, row.moment);
    }
    for (const char* text :
         {"2006. 9. 5. \uc624\ud6c4", "\uc624\ud6c4 2006. 9. 5.", "\uc624\ud6c4 6 AM", "2006. 9."})
        EXPECT_EQ(DateFromText(text, korean, CurrentYear).fault, Fault::TypeMismatch) << text;
}

TEST(DateFromText, RefusesADateThatATimeInterrupts) {
    for (const char* text : {"1/14 3:30 2006", "Jan 3:30 14", "1:30 2:30", "1/2/3/4", "Jan Feb 3", "1,5"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(DateFromText(text, EnglishLocale(), CurrentYear).fault, Fault::TypeMismatch);
    }
}

}  // namespace
}  // namespace tessaloom::testing
