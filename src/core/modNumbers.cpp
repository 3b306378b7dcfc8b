#include "core/modNumbers.h"

#include <algorithm>
#include <ctime>

#include "core/ErrorReport.h"
#include "locale/DateParts.h"
#include "platform/Ascii.h"

namespace tessaloom::modNumbers {

namespace {

constexpr std::string_view Module = "modNumbers.bas";

constexpr double LargestSetting = 2000000000;  ///< What is above reads as "no limit".

struct State {
    UserLocale user;
    int decimalIsComma = 0;
    int currentYear = 0;
};

State& Process() {
    static State state;
    return state;
}

int CurrentYear() {
    if (Process().currentYear != 0) return Process().currentYear;
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    return ::localtime_r(&now, &local) ? local.tm_year + 1900 : 1970;
}

void ReplaceFirst(std::string& text, char from, char to) {
    const auto at = text.find(from);
    if (at != std::string::npos) text[at] = to;
}

/// Reads a text with a decimal point by the user's rules: in a comma locale its first point becomes a comma.
template <typename T>
Converted<T> ReadNeutral(Converted<T> (*read)(std::string_view, const UserLocale&), std::string_view text) {
    const State& state = Process();
    if (state.decimalIsComma == 0 || text.find('.') == std::string_view::npos) return read(text, state.user);
    std::string local(text);
    ReplaceFirst(local, '.', ',');
    return read(local, state.user);
}

Converted<double> ReadDate(std::string_view text) {
    std::string local(text);
    std::ranges::replace(local, '.', ':');
    return DateFromText(local, Process().user, CurrentYear());
}

std::string WithPoint(std::string text) {
    if (Process().decimalIsComma != 0) ReplaceFirst(text, ',', '.');
    return text;
}

Converted<std::string> Formatted(const FormatValue& value, std::string_view pattern) {
    FormatCalendar calendar;
    if (std::holds_alternative<std::string_view>(value)) calendar.currentYear = CurrentYear();
    return Format(value, pattern, Process().user, calendar);
}

}  // namespace

void InitNumberFormat(const UserLocale& user) {
    Trap({Module, "InitNumberFormat"}, [&] {
        State& state = Process();
        state.user = user;
        const auto sample = SingleFromText("1,1", user);
        state.decimalIsComma = sample && sample.value == 1.1f ? 1 : 0;
    });
}

const UserLocale& Locale() { return Process().user; }

int DecimalIsComma() { return Process().decimalIsComma; }

int TimeSeparatorIsDot() { return 0; }

void SetCurrentYear(int year) { Process().currentYear = year; }

bool Str2Bool(std::string_view text) {
    const auto trimmed = ascii::Trimmed(text);
    if (const auto flag = BooleanFromText(trimmed, Process().user)) return flag.value;
    return ascii::SameText(trimmed, "YES");
}

double Str2Dbl(std::string_view text) { return Str2DblNI(text); }

std::int16_t Str2Int(std::string_view text) { return Str2IntNI(text); }

int Str2Lng(std::string_view text) { return Str2LngNI(text); }

double Str2DblNI(std::string_view text) { return CDblNI(text); }

float Str2SngNI(std::string_view text) { return CSngNI(text); }

std::int16_t Str2IntNI(std::string_view text) {
    return CDblNI(text) > LargestSetting ? Str2IntFallback : CIntNI(text);
}

int Str2LngNI(std::string_view text) {
    return CDblNI(text) > LargestSetting ? Str2LngFallback : CLngNI(text);
}

std::int16_t CIntNI(std::string_view text) {
    return Trap({Module, "CIntNI"}, [&] { return ReadNeutral(IntegerFromText, text).OrThrow(); });
}

std::int16_t CIntNI(double value) {
    return Trap({Module, "CIntNI"}, [&] { return IntegerFromDouble(value).OrThrow(); });
}

int CLngNI(std::string_view text) {
    return Trap({Module, "CLngNI"}, [&] { return ReadNeutral(LongFromText, text).OrThrow(); });
}

int CLngNI(double value) {
    return Trap({Module, "CLngNI"}, [&] { return LongFromDouble(value).OrThrow(); });
}

double CDblNI(std::string_view text) {
    return Trap({Module, "CDblNI"}, [&] { return ReadNeutral(DoubleFromText, text).OrThrow(); });
}

double CDblNI(double value) { return value; }

float CSngNI(std::string_view text) {
    return Trap({Module, "CSngNI"}, [&] { return ReadNeutral(SingleFromText, text).OrThrow(); });
}

float CSngNI(double value) {
    return Trap({Module, "CSngNI"}, [&] { return SingleFromDouble(value).OrThrow(); });
}

bool TryBool(std::string_view text, bool& value) {
    value = Str2Bool(text);
    const std::string_view word = ascii::Trimmed(text, ascii::Blanks);
    double number = 0;
    return value || ascii::SameText(word, "false") || ascii::SameText(word, "no") || TryDblNI(text, number);
}

bool TryDblNI(std::string_view text, double& value) {
    const auto number = ReadNeutral(DoubleFromText, text);
    if (number) value = number.value;
    return static_cast<bool>(number);
}

double CDateNI(std::string_view text) {
    return Trap({Module, "CDateNI"}, [&] { return ReadDate(text).OrThrow(); });
}

double CDateNI(double moment) {
    return Trap({Module, "CDateNI"}, [&] {
        if (!PartsOfMoment(moment)) throw Error(ErrorNumber::Overflow);
        return moment;
    });
}

bool TryDateNI(std::string_view text, double& moment) {
    const auto date = ReadDate(text);
    if (date) moment = date.value;
    return static_cast<bool>(date);
}

std::string CStrNI(double value) {
    return Trap({Module, "CStrNI"}, [&] { return WithPoint(TextFromDouble(value, Process().user)); });
}

std::string CStrNI(float value) {
    return Trap({Module, "CStrNI"}, [&] { return WithPoint(TextFromSingle(value, Process().user)); });
}

std::string CStrNI(int value) {
    return Trap({Module, "CStrNI"}, [&] { return std::to_string(value); });
}

std::string CStrNI(std::int16_t value) { return CStrNI(static_cast<int>(value)); }

std::string CStrNI(bool value) {
    return Trap({Module, "CStrNI"}, [&] { return TextFromBoolean(value); });
}

std::string CStrNI(std::string_view text) {
    return Trap({Module, "CStrNI"}, [&] { return WithPoint(std::string(text)); });
}

std::string CStrNI(FormatDate date) {
    return Trap({Module, "CStrNI"},
                [&] { return WithPoint(TextFromDate(date.moment, Process().user).OrThrow()); });
}

std::string FormatNI(const FormatValue& value, std::string_view pattern) {
    return Trap({Module, "FormatNI"}, [&] { return WithPoint(Formatted(value, pattern).OrThrow()); });
}

std::string FormatI(const FormatValue& value, std::string_view pattern) {
    return Trap({Module, "FormatI"}, [&] {
        std::string neutral(pattern);
        ReplaceFirst(neutral, ',', '.');
        return Formatted(value, neutral).OrThrow();
    });
}

std::string GetFormatI(std::string_view sample) {
    return Trap({Module, "GetFormatI"}, [&] {
        const auto trimmed = ascii::Trimmed(sample);
        const auto point = trimmed.find('.');
        if (point == std::string_view::npos) return std::string("0");
        std::string pattern = "0";
        pattern += NumberSeparator();
        pattern.append(trimmed.size() - point - 1, '0');
        return pattern;
    });
}

std::string NumberSeparator() { return DecimalIsComma() != 0 ? "," : "."; }

}  // namespace tessaloom::modNumbers
