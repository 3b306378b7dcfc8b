#include <charconv>

#include "locale/Conversion.h"
#include "support/TestLocales.h"
#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

template <typename T>
T Parsed(std::string_view text) {
    T value{};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    EXPECT_EQ(result.ptr, text.data() + text.size()) << "not a number in the table: " << text;
    return value;
}

template <>
bool Parsed<bool>(std::string_view text) {
    return text == "True";
}

Fault FaultOf(std::string_view cell) {
    if (cell == "ERR_TYPEMISMATCH") return Fault::TypeMismatch;
    if (cell == "ERR_OVERFLOW") return Fault::Overflow;
    return cell == "ERR_INVALIDARG" ? Fault::InvalidCall : Fault::None;
}

template <typename T>
void ExpectResult(const Converted<T>& actual, const std::string& cell) {
    EXPECT_EQ(actual.fault, FaultOf(cell));
    if (FaultOf(cell) != Fault::None) return;
    if constexpr (std::is_same_v<T, std::string>)
        EXPECT_EQ(actual.value, cell);
    else
        EXPECT_EQ(actual.value, Parsed<T>(cell));
}

using Check = std::function<void(const std::string& input, const UserLocale&, const std::string& result)>;

template <typename T>
Check Reads(Converted<T> (*convert)(std::string_view, const UserLocale&)) {
    return [=](const auto& input, const auto& user, const auto& result) {
        ExpectResult(convert(input, user), result);
    };
}

template <typename T, typename Text>
Check Writes(Text (*convert)(T, const UserLocale&)) {
    return [=](const auto& input, const auto& user, const auto& result) {
        ExpectResult<std::string>(convert(Parsed<T>(input), user), result);
    };
}

TEST(NumberVectors, AllRowsAgree) {
    const std::map<std::string, Check> checks = {
        {"R8FromStr",    Reads(DoubleFromText) },
        {"R4FromStr",    Reads(SingleFromText) },
        {"I4FromStr",    Reads(LongFromText)   },
        {"I2FromStr",    Reads(IntegerFromText)},
        {"BoolFromStr",  Reads(BooleanFromText)},
        {"BstrFromR8",   Writes(TextFromDouble)},
        {"BstrFromR4",   Writes(TextFromSingle)},
        {"BstrFromDate", Writes(TextFromDate)  },
    };
    const std::map<std::string, UserLocale> locales = {
        {"1033", EnglishLocale()},
        {"1031", GermanLocale() }
    };
    const auto rows = ReadTsv(TEST_DATA "/vectors/numbers.tsv");
    ASSERT_EQ(rows.size(), 576u);
    for (const auto& row : rows) {
        SCOPED_TRACE("line " + std::to_string(row.line) + ": " + row[0] + " " + row[1] + " \"" + row[2] +
                     "\"");
        checks.at(row[0])(row[2], locales.at(row[1]), row[3]);
    }
}

}  // namespace
}  // namespace tessaloom::testing
