#include "locale/Format.h"

#include <charconv>

#include "locale/DateParts.h"
#include "support/TestLocales.h"
#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

/// The table's value: its type by name and its text.
FormatValue ValueOf(const std::string& type, const std::string& text) {
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    if (type == "DATE") return FormatDate{number};
    if (type == "R8") return number;
    if (type == "I2") return static_cast<int>(number);
    if (type == "BOOL") return number != 0;
    if (type == "NULL") return FormatNull{};
    if (type == "BSTR") return std::string_view(text);
    EXPECT_EQ(type, "EMPTY");
    return {};
}

TEST(FormatVectors, AllRowsAgree) {
    const auto english = EnglishLocale();
    const auto german = GermanLocale();
    const auto rows = ReadTsv(TEST_DATA "/vectors/format.tsv");
    ASSERT_EQ(rows.size(), 386u);
    for (const auto& row : rows) {
        SCOPED_TRACE("line " + std::to_string(row.line) + ": " + row[0] + " " + row[1] + " " + row[2] +
                     " \"" + row[3] + "\"");
        const auto actual = Format(ValueOf(row[0], row[1]), row[3], row[2] == "1031" ? german : english);
        EXPECT_EQ(actual.fault, Fault::None);
        EXPECT_EQ(actual.value, row[4]);
    }
}

TEST(Format, CountsWeeksFromTheChosenDay) {
    const struct {
        int year, month, day, firstWeekday, firstWeek;
        const char* result;
    } rows[] = {
        {2021, 1,  3,  2, 2, "7 53"}, // a Sunday, by the international rule still of the old year
        {2021, 1,  4,  2, 2, "1 1" },
        {2020, 12, 31, 2, 2, "4 53"},
        {2021, 1,  3,  1, 1, "1 2" },
        {2021, 1,  3,  1, 3, "1 1" },
        {2021, 1,  2,  1, 3, "7 52"},
        {2021, 1,  3,  0, 0, "7 1" }, // the German week starts on Monday
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.result);
        const FormatDate date{static_cast<double>(DayNumber(row.year, row.month, row.day))};
        const FormatCalendar calendar{row.firstWeekday, row.firstWeek, 2021};
        EXPECT_EQ(Format(date, "w ww", GermanLocale(), calendar).value, row.result);
    }
}

TEST(Format, KeepsThePlaceOfWhatAPictureHasNoMeaningFor) {
    const struct {
        FormatValue value;
        const char* picture;
        const char* result;
    } rows[] = {
        {1.5,                               "average 0.0",   "average 1.5"         },
        {1.5,                               "\"open 0.0",    "open 0.0"            },
        {1.5,                               "0.0\\",         "1.5"                 },
        {1.5,                               "0.0 \"\\\"",    "1.5 \\"              },
        {9.999,                             "0.00E+00",      "1.00E+01"            },
        {std::string_view("\u00c4b\u00d7"), "<@@@@",         " \u00e4b\u00d7"      },
        {std::string_view("\u00e4b\u00f7"), ">",             "\u00c4B\u00f7"       },
        {std::string_view(""),              "@;\"none\"",    "none"                },
        {std::string_view("38965.5"),       "yyyy hh",       "2006 12"             },
        {FormatDate{38965.5},               "yyy ttt mmmmm", "06248 ttt September9"},
        {true,                              "Currency",      "($1.00)"             },
        {FormatNull{},                      "@@",            ""                    },
        {FormatNull{},                      "hh:nn",         ""                    },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.picture);
        EXPECT_EQ(Format(row.value, row.picture, EnglishLocale()).value, row.result);
    }
}

TEST(Format, RefusesDatesBeyondTheCalendar) {
    for (const double moment : {-657435.0, 2958466.0, 2958465.9999999, 1e300, -1e300}) {
        SCOPED_TRACE(moment);
        EXPECT_EQ(Format(FormatDate{moment}, "yyyy", EnglishLocale()).fault, Fault::InvalidCall);
        EXPECT_EQ(Format(FormatDate{moment}, "General Date", EnglishLocale()).fault, Fault::InvalidCall);
    }
}

}  // namespace
}  // namespace tessaloom::testing
