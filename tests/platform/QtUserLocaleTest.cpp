#include "platform/qt/QtUserLocale.h"

#include <QLocale>
#include <tuple>

#include "core/modNumbers.h"
#include "locale/Conversion.h"
#include "support/TestLocales.h"
#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

/// All that decides how numbers and dates are read and written; short names differ between sources.
auto Core(const UserLocale& user) {
    return std::tie(user.decimal, user.grouping, user.currency, user.positiveCurrency, user.dateOrder,
                    user.dateSeparator, user.timeSeparator, user.shortDate, user.longDate, user.time,
                    user.amMark, user.pmMark, user.firstWeekday, user.weekdays, user.shortWeekdays,
                    user.months);
}

TEST(QtUserLocale, AgreesWithTheFixedLocalesOfTheTests) {
    for (const char* name : {"en_US", "C"}) EXPECT_EQ(Core(QtUserLocale(name)), Core(EnglishLocale()));
    EXPECT_EQ(Core(QtUserLocale("de_DE")), Core(GermanLocale()));
}

TEST(QtUserLocale, ReadsTheGermanRowsUnderTheRealLocale) {
    const auto german = QtUserLocale("de_DE");
    int rows = 0;
    for (const auto& row : ReadTsv(TEST_DATA "/vectors/numbers.tsv")) {
        if (row[0] != "I4FromStr" || row[1] != "1031") continue;
        SCOPED_TRACE("line " + std::to_string(row.line) + ": " + row[2]);
        const auto actual = LongFromText(row[2], german);
        const char* const fault = actual.fault == Fault::Overflow ? "ERR_OVERFLOW" : "ERR_TYPEMISMATCH";
        EXPECT_EQ(actual ? std::to_string(actual.value) : fault, row[3]);
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

/// The session's environment with nothing said of locales; put back at the end.
class CleanEnvironment {
public:
    CleanEnvironment() {
        for (const char* name : Names) {
            values_.push_back(qgetenv(name));
            qunsetenv(name);
        }
    }
    ~CleanEnvironment() {
        for (std::size_t i = 0; i < values_.size(); ++i)
            values_[i].isNull() ? qunsetenv(Names[i]) : qputenv(Names[i], values_[i]);
    }

private:
    static constexpr std::array Names = {"LC_ALL", "LC_NUMERIC", "LC_MONETARY", "LC_TIME", "LANG"};
    std::vector<QByteArray> values_;
};

TEST(QtUserLocale, FollowsTheCategoriesOfTheSession) {
    using Variables = std::vector<std::pair<const char*, const char*>>;
    const struct {
        Variables variables;
        const char *decimal, *shortDate, *time;
    } rows[] = {
        {{},                                                   ".", "M/d/yyyy",   "h:mm:ss tt"},
        {{{"LANG", "de_DE.UTF-8"}},                            ",", "dd.MM.yyyy", "HH:mm:ss"  },
        {{{"LANG", "C.UTF-8"}, {"LC_NUMERIC", "de_DE.UTF-8"}}, ",", "M/d/yyyy",   "h:mm:ss tt"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_NUMERIC", "C"}},       ".", "dd.MM.yyyy", "HH:mm:ss"  },
        {{{"LANG", "en_US.UTF-8"}, {"LC_TIME", "de_DE@euro"}}, ".", "dd.MM.yyyy", "HH:mm:ss"  },
        {{{"LANG", "de_DE.UTF-8"}, {"LC_ALL", "en_US"}},       ".", "M/d/yyyy",   "h:mm:ss tt"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_ALL", ""}},            ",", "dd.MM.yyyy", "HH:mm:ss"  },
        {{{"LANG", "de_DE.UTF-8"}, {"LC_TIME", "POSIX"}},      ",", "M/d/yyyy",   "h:mm:ss tt"},
    };
    for (const auto& row : rows) {
        const CleanEnvironment clean;
        std::string trace;
        for (const auto& [name, value] : row.variables) {
            qputenv(name, value);
            trace += std::string(name) + "=" + value + " ";
        }
        SCOPED_TRACE(trace);
        const auto user = QtUserLocale();
        EXPECT_EQ(user.decimal, row.decimal);
        EXPECT_EQ(user.shortDate, row.shortDate);
        EXPECT_EQ(user.time, row.time);
    }
}

}  // namespace
}  // namespace tessaloom::testing
