#include "core/modNumbers.h"

#include "core/ErrorReport.h"
#include "locale/Error.h"
#include "support/TestLocales.h"

namespace tessaloom::testing {
namespace {

using namespace modNumbers;

/// Runs each test under a locale of its own and collects what is reported as "procedure number".
class ModNumbers : public ::testing::Test {
protected:
    ModNumbers() {
        InitNumberFormat(EnglishLocale());
        SetCurrentYear(2026);
        previous_ = SetErrorReporter([this](const ErrorReport& report) {
            EXPECT_EQ(report.module, "modNumbers.bas");
            reports_.push_back(report.procedure + " " + std::to_string(report.number));
        });
    }
    ~ModNumbers() override {
        SetErrorReporter(std::move(previous_));
        InitNumberFormat(EnglishLocale());
        SetCurrentYear(0);
    }

    std::vector<std::string> TakeReports() { return std::exchange(reports_, {}); }

private:
    ErrorReporter previous_;
    std::vector<std::string> reports_;
};

TEST_F(ModNumbers, ReadsAndWritesTheSameFilesInEveryLocale) {
    for (const auto& user : {EnglishLocale(), GermanLocale()}) {
        InitNumberFormat(user);
        SCOPED_TRACE(NumberSeparator());
        EXPECT_EQ(Str2DblNI("0.75"), 0.75);
        EXPECT_EQ(Str2Dbl("-12.75"), -12.75);
        EXPECT_EQ(Str2SngNI("2.5"), 2.5f);
        EXPECT_EQ(Str2Lng("2.5"), 2);
        EXPECT_EQ(Str2Int("-3.5"), -4);
        EXPECT_EQ(CDateNI("12.30.00"), CDateNI("12:30:00"));
        EXPECT_EQ(CDateNI("07.30"), 0.3125);
        EXPECT_EQ(CDateNI("2006-9-5 6:00"), 38965.25);
        EXPECT_EQ(CStrNI(-12.75), "-12.75");
        EXPECT_EQ(CStrNI(0.1f), "0.1");
        EXPECT_EQ(CStrNI(1e-20), "1E-20");
        EXPECT_EQ(CStrNI(2000000000), "2000000000");
        EXPECT_EQ(CStrNI(true), "True");
        EXPECT_EQ(FormatNI(0.5, "0.000"), "0.500");
        EXPECT_EQ(FormatNI(0.25, "HH:MM:SS"), "06:00:00");
        EXPECT_EQ(FormatNI("7.25", "0"), user.decimal == "," ? "725" : "7");
    }
    EXPECT_THAT(TakeReports(), IsEmpty());
}

TEST_F(ModNumbers, ShowsNumbersInTheUsersOwnStyle) {
    EXPECT_EQ(DecimalIsComma(), 0);
    EXPECT_EQ(NumberSeparator(), ".");
    EXPECT_EQ(GetFormatI(" 12.345 "), "0.000");
    EXPECT_EQ(GetFormatI("12."), "0.");
    EXPECT_EQ(GetFormatI("12,3"), "0");
    EXPECT_EQ(FormatI(2.345, "0,00"), "2.35");

    InitNumberFormat(GermanLocale());
    EXPECT_EQ(DecimalIsComma(), 1);
    EXPECT_EQ(TimeSeparatorIsDot(), 0);
    EXPECT_EQ(NumberSeparator(), ",");
    EXPECT_EQ(GetFormatI("12.345"), "0,000");
    EXPECT_EQ(FormatI(2.345, GetFormatI("1.00")), "2,35");
    EXPECT_EQ(Str2DblNI("1,5"), 1.5);
    EXPECT_EQ(FormatNI(1234.5, "#,##0.0"), "1.234.5");  // only the first comma is replaced
}

TEST_F(ModNumbers, ReplacesOnlyTheFirstPointInACommaLocale) {
    InitNumberFormat(GermanLocale());
    EXPECT_EQ(CDblNI("1.234.5"), 0);
    EXPECT_EQ(CDblNI("1.234,5"), 0);
    EXPECT_THAT(TakeReports(), ElementsAre("CDblNI 13", "CDblNI 13"));
}

TEST_F(ModNumbers, ReadsBooleansWithoutEverReporting) {
    for (const char* text : {"True", " True ", "TRUE", "yes", "YES ", "1", "-1", "0.5", "&H1"})
        EXPECT_TRUE(Str2Bool(text)) << text;
    for (const char* text : {"False", "0", "no", "", " ", "on", "ja", "0.0", "1e400", "\tyes"})
        EXPECT_FALSE(Str2Bool(text)) << text;
    EXPECT_THAT(TakeReports(), IsEmpty());
}

TEST_F(ModNumbers, FallsBackAboveTheLargestSetting) {
    EXPECT_EQ(Str2LngNI("3000000000"), 2000000000);
    EXPECT_EQ(Str2LngNI("1e300"), 2000000000);
    EXPECT_EQ(Str2IntNI("3000000000"), -27648);
    EXPECT_EQ(Str2LngNI("2000000000"), 2000000000);
    EXPECT_THAT(TakeReports(), IsEmpty());
    EXPECT_EQ(Str2IntNI("40000"), 0);
    EXPECT_EQ(Str2IntNI("2000000000"), 0);
    EXPECT_EQ(Str2LngNI("-3000000000"), 0);
    EXPECT_THAT(TakeReports(), ElementsAre("CIntNI 6", "CIntNI 6", "CLngNI 6"));
}

TEST_F(ModNumbers, ReportsWhatItCannotConvertAndGoesOnWithNothing) {
    EXPECT_EQ(Str2LngNI("abc"), 0);  // read twice, so reported twice
    EXPECT_THAT(TakeReports(), ElementsAre("CDblNI 13", "CLngNI 13"));
    EXPECT_EQ(CSngNI("1e39"), 0);
    EXPECT_EQ(CSngNI(1e39), 0);
    EXPECT_EQ(CLngNI(2147483647.5), 0);
    EXPECT_EQ(CIntNI(32767.5), 0);
    EXPECT_THAT(TakeReports(), ElementsAre("CSngNI 6", "CSngNI 6", "CLngNI 6", "CIntNI 6"));
    EXPECT_EQ(CDateNI("24:00"), 0);
    EXPECT_EQ(CDateNI(3e6), 0);
    EXPECT_EQ(CStrNI(FormatDate{-700000}), "");
    EXPECT_EQ(FormatNI(1e300, "HH:MM"), "");
    EXPECT_THAT(TakeReports(), ElementsAre("CDateNI 13", "CDateNI 6", "CStrNI 5", "FormatNI 5"));
}

TEST_F(ModNumbers, ReadsSilentlyWhereAsked) {
    double value = 7;
    EXPECT_FALSE(TryDblNI("N/A", value));
    EXPECT_FALSE(TryDblNI("1e400", value));
    EXPECT_EQ(value, 7);
    EXPECT_TRUE(TryDblNI(" -1.5 ", value));
    EXPECT_EQ(value, -1.5);
    EXPECT_THAT(TakeReports(), IsEmpty());
}

TEST_F(ModNumbers, TakesTheChosenYearForADateWithoutOne) {
    SetCurrentYear(2008);
    EXPECT_EQ(CDateNI("29 Feb"), 39507);
    EXPECT_EQ(FormatNI("2/29", "yyyy"), "2008");
}

TEST_F(ModNumbers, LimitsAndTakesFractions) {
    int contrast = 1400;
    Limit(contrast, 1000, 2200);
    EXPECT_EQ(contrast, 1400);
    Limit(contrast = 900, 1000, 2200);
    EXPECT_EQ(contrast, 1000);
    double rate = 5000;
    Limit(rate, 1000, 2200);
    EXPECT_EQ(rate, 2200);
    EXPECT_EQ(Frac(-1.25), 0.75);
}

}  // namespace
}  // namespace tessaloom::testing
