#include <algorithm>
#include <array>
#include <vector>

#include "vbscript/Builtins.h"

namespace tessaloom::vbscript {

namespace {

struct Number {
    std::u16string_view name;
    int whole;
};

// clang-format off
constexpr auto Integers = std::to_array<Number>({
    {u"vbTrue", -1}, {u"vbFalse", 0}, {u"vbUseDefault", -2},
    {u"vbBinaryCompare", 0}, {u"vbTextCompare", 1}, {u"vbDatabaseCompare", 2},

    {u"vbSunday", 1}, {u"vbMonday", 2}, {u"vbTuesday", 3}, {u"vbWednesday", 4}, {u"vbThursday", 5},
    {u"vbFriday", 6}, {u"vbSaturday", 7}, {u"vbUseSystem", 0}, {u"vbUseSystemDayOfWeek", 0},
    {u"vbFirstJan1", 1}, {u"vbFirstFourDays", 2}, {u"vbFirstFullWeek", 3},
    {u"vbGeneralDate", 0}, {u"vbLongDate", 1}, {u"vbShortDate", 2}, {u"vbLongTime", 3}, {u"vbShortTime", 4},

    {u"vbOKOnly", 0}, {u"vbOKCancel", 1}, {u"vbAbortRetryIgnore", 2}, {u"vbYesNoCancel", 3},
    {u"vbYesNo", 4}, {u"vbRetryCancel", 5}, {u"vbCritical", 16}, {u"vbQuestion", 32},
    {u"vbExclamation", 48}, {u"vbInformation", 64}, {u"vbDefaultButton1", 0}, {u"vbDefaultButton2", 256},
    {u"vbDefaultButton3", 512}, {u"vbDefaultButton4", 768}, {u"vbApplicationModal", 0},
    {u"vbSystemModal", 4096}, {u"vbMsgBoxHelpButton", 16384},
    {u"vbOK", 1}, {u"vbCancel", 2}, {u"vbAbort", 3}, {u"vbRetry", 4}, {u"vbIgnore", 5}, {u"vbYes", 6},
    {u"vbNo", 7},

    {u"vbEmpty", 0}, {u"vbNull", 1}, {u"vbInteger", 2}, {u"vbLong", 3}, {u"vbSingle", 4}, {u"vbDouble", 5},
    {u"vbCurrency", 6}, {u"vbDate", 7}, {u"vbString", 8}, {u"vbObject", 9}, {u"vbError", 10},
    {u"vbBoolean", 11}, {u"vbVariant", 12}, {u"vbDataObject", 13}, {u"vbDecimal", 14}, {u"vbByte", 17},
    {u"vbArray", 8192},
});

constexpr auto Longs = std::to_array<Number>({
    {u"vbBlack", 0x000000}, {u"vbRed", 0x0000FF}, {u"vbGreen", 0x00FF00}, {u"vbYellow", 0x00FFFF},
    {u"vbBlue", 0xFF0000}, {u"vbMagenta", 0xFF00FF}, {u"vbCyan", 0xFFFF00}, {u"vbWhite", 0xFFFFFF},
    {u"vbMsgBoxSetForeground", 0x10000}, {u"vbMsgBoxRight", 0x80000}, {u"vbMsgBoxRtlReading", 0x100000},
    {u"vbObjectError", -2147221504},
});

struct Text {
    std::u16string_view name;
    std::u16string_view text;
};

constexpr auto Texts = std::to_array<Text>({
    {u"vbCr", u"\r"}, {u"vbCrLf", u"\r\n"}, {u"vbFormFeed", u"\f"}, {u"vbLf", u"\n"}, {u"vbNewLine", u"\r\n"},
    {u"vbNullChar", {u"\0", 1}}, {u"vbNullString", u""}, {u"vbTab", u"\t"}, {u"vbVerticalTab", u"\v"},
});
// clang-format on

struct Constant {
    std::u16string_view name;
    Value value;
};

std::vector<Constant> CollectAll() {
    std::vector<Constant> all;
    for (const auto& row : Integers) all.push_back({row.name, Value::OfInteger(row.whole)});
    for (const auto& row : Longs) all.push_back({row.name, Value::OfLong(row.whole)});
    for (const auto& row : Texts) all.push_back({row.name, Value::OfText(row.text)});
    std::ranges::sort(all,
                      [](const Constant& a, const Constant& b) { return NameComesBefore(a.name, b.name); });
    return all;
}

}  // namespace

const Value* FindConstant(std::u16string_view name) {
    // one set for each thread, because the texts are counted without locks
    static const thread_local std::vector<Constant> all = CollectAll();
    const auto found = std::lower_bound(
        all.begin(), all.end(), name,
        [](const Constant& row, std::u16string_view wanted) { return NameComesBefore(row.name, wanted); });
    return found != all.end() && SameName(found->name, name) ? &found->value : nullptr;
}

}  // namespace tessaloom::vbscript
