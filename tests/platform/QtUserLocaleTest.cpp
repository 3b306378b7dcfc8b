#include "platform/qt/QtUserLocale.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <tuple>

#include "core/modNumbers.h"
#include "locale/Conversion.h"
#include "support/TestLocales.h"
#include "support/Tsv.h"

namespace tessaloom {
namespace {

/// All that decides how numbers and dates are read and written; short names differ between sources.
auto Core(const UserLocale& user) {
    return std::tie(user.decimal, user.grouping, user.currency, user.positiveCurrency, user.dateOrder,
                    user.dateSeparator, user.timeSeparator, user.shortDate, user.longDate, user.time,
                    user.amMark, user.pmMark, user.firstWeekday, user.weekdays, user.shortWeekdays,
                    user.months);
}

TEST(QtUserLocale, AgreesWithTheFixedLocalesOfTheTests) {
    EXPECT_EQ(Core(QtUserLocale("en_US")), Core(testing::EnglishLocale()));
    EXPECT_EQ(Core(QtUserLocale("de_DE")), Core(testing::GermanLocale()));
    EXPECT_EQ(Core(QtUserLocale("C")), Core(testing::EnglishLocale()));
}

TEST(QtUserLocale, ReadsTheGermanRowsUnderTheRealLocale) {
    const auto german = QtUserLocale("de_DE");
    int rows = 0;
    for (const auto& row : testing::ReadTsv(TEST_DATA "/vectors/numbers.tsv")) {
        if (row[0] != "I4FromStr" || row[1] != "1031") continue;
        SCOPED_TRACE("line " + std::to_string(row.line) + ": " + row[2]);
        const auto actual = LongFromText(row[2], german);
        EXPECT_EQ(actual.fault == Fault::None       ? std::to_string(actual.value)
                  : actual.fault == Fault::Overflow ? "ERR_OVERFLOW"
                                                    : "ERR_TYPEMISMATCH",
                  row[3]);
        ++rows;
    }
    EXPECT_GT(rows, 50);
}

TEST(QtUserLocale, EveryLocaleReadsBackTheFilesThatItWrites) {
    const auto locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    EXPECT_GT(locales.size(), 100);
    for (const QLocale& locale : locales) {
        const std::string name = locale.name().toStdString();
        SCOPED_TRACE(name);
        modNumbers::InitNumberFormat(QtUserLocale(name));
        for (const double value : {0.75, -12.75, 1234567.5, 1e-20, 1e20})
            EXPECT_EQ(modNumbers::Str2DblNI(modNumbers::CStrNI(value)), value);
        EXPECT_EQ(modNumbers::CDateNI(modNumbers::FormatNI(0.75, "HH:MM:SS")), 0.75);
    }
    modNumbers::InitNumberFormat(UserLocale());
}

TEST(QtUserLocale, ReadsBackTheDatesThatItShows) {
    for (const char* name : {"en_US", "en_CA", "de_DE", "de_CH", "fr_FR", "fr_CA", "es_US", "hr_HR",
                             "hu_HU", "sv_SE", "fi_FI", "da_DK", "el_GR", "ru_RU", "ja_JP", "ko_KR",
                             "zh_CN", "zh_HK", "zh_TW", "ta_IN", "ar_EG", "hi_IN"}) {
        SCOPED_TRACE(name);
        const auto user = QtUserLocale(name);
        for (const double moment : {38965.75, 38965.0, 38965.25}) {
            const auto shown = TextFromDate(moment, user);
            EXPECT_EQ(DateFromText(shown.value, user, 2026).value, moment) << shown.value;
        }
    }
    EXPECT_EQ(QtUserLocale("fr_CA").time, "HH:mm:ss");
    EXPECT_EQ(QtUserLocale("ko_KR").time, "tt h:mm:ss");
    EXPECT_EQ(QtUserLocale("zh_TW").time, "H:mm:ss");
}

}  // namespace
}  // namespace tessaloom
