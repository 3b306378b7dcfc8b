#include "locale/Conversion.h"

#include <bit>

#include "locale/DateParts.h"
#include "locale/Format.h"
#include "support/TestLocales.h"

namespace tessaloom::testing {
namespace {

std::string RandomText(std::mt19937& random, std::string_view alphabet, std::size_t maxLength) {
    std::string text(random() % (maxLength + 1), ' ');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    return text;
}

TEST(DoubleFromText, ReadsBackWhatWasWritten) {
    std::mt19937_64 random(1);
    for (const auto& user : {EnglishLocale(), GermanLocale()}) {
        for (int i = 0; i < 50000; ++i) {
            const double value = i % 2 == 0 ? std::bit_cast<double>(random())
                                            : static_cast<double>(random() % 2000000) / 1000 - 1000;
            if (!std::isfinite(value) || std::abs(value) > 1e307) continue;
            const auto text = TextFromDouble(value, user);
            const auto back = DoubleFromText(text, user);
            ASSERT_EQ(back.fault, Fault::None) << text;
            ASSERT_LE(std::abs(back.value - value), std::abs(value) * 1e-14 + 1e-320) << text;
        }
    }
}

TEST(DoubleFromText, TakesSignsOnEitherSideButOnlyOne) {
    const struct {
        const char* text;
        double value;
    } rows[] = {
        {"5-",             -5    },
        {"$5-",            -5    },
        {"($1,250)",       -1250 },
        {"5 $",            5     },
        {"1e-320",         1e-320},
        {"1e-400",         0     },
        {"0e999999999999", 0     },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto actual = DoubleFromText(row.text, EnglishLocale());
        EXPECT_EQ(actual.fault, Fault::None);
        EXPECT_EQ(actual.value, row.value);
    }
    for (const char* text :
         {"-5-", "(5", "5)", "(-5)", "$5$", "-&H1", "&H1&", "&H-1", "&H11111111111111111 x"})
        EXPECT_EQ(DoubleFromText(text, EnglishLocale()).fault, Fault::TypeMismatch) << text;
}

TEST(DoubleFromText, TakesAnyBlankWhereTheUserGroupsByBlanks) {
    auto french = GermanLocale();
    french.grouping = "\u202f";
    for (const char* text : {"1\u202f234,5", "1\u00a0234,5", "1 234,5"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(DoubleFromText(text, french).value, 1234.5);
    }
    EXPECT_EQ(DoubleFromText("1 ", french).value, 1);
}

TEST(LongFromText, KeepsBitPatternsOfItsOwnWidth) {
    EXPECT_EQ(LongFromText("&HFFFFFFFF", EnglishLocale()).value, -1);
    EXPECT_EQ(LongFromText("&H100000000", EnglishLocale()).fault, Fault::Overflow);
    EXPECT_EQ(LongFromText("&HFFFFFFFFFFFFFFFFF", EnglishLocale()).fault, Fault::Overflow);
}

TEST(Conversion, AnyTextGivesAValueOfTheTypeOrAFault) {
    std::mt19937 random(2);
    const auto german = GermanLocale();
    for (int i = 0; i < 100000; ++i) {
        const auto text = RandomText(random, "0123456789.,-+()$&HOeEd:/ \tAPMJanF\xC3\xA4\xE2", 14);
        const auto number = DoubleFromText(text, german);
        ASSERT_TRUE(std::isfinite(number.value)) << text;
        ASSERT_TRUE(number || number.value == 0) << text;
        const auto whole = LongFromText(text, german);
        ASSERT_TRUE(!whole || number) << text;
        const auto date = DateFromText(text, german, 2026);
        ASSERT_TRUE(!date || PartsOfMoment(date.value)) << text;
    }
}

TEST(Conversion, AnyPictureGivesATextOfItsOwnSize) {
    std::mt19937 random(3);
    const auto english = EnglishLocale();
    const FormatValue values[] = {0.0,
                                  -1234.5678,
                                  1e300,
                                  5e-324,
                                  FormatDate{38965.645891203705},
                                  true,
                                  std::string_view("a\xC3\xA4\xFF b"),
                                  FormatNull{},
                                  {}};
    for (int i = 0; i < 100000; ++i) {
        const auto picture = RandomText(random, "0#.,%;eE+-\"\\@&<>!dDmyhHnswwqctAM/P: \xC3", 16);
        for (const auto& value : values) {
            const auto result = Format(value, picture, english);
            ASSERT_TRUE(result || result.fault == Fault::InvalidCall) << picture;
            ASSERT_LT(result.value.size(), 1000u) << picture;
        }
    }
}

}  // namespace
}  // namespace tessaloom::testing
