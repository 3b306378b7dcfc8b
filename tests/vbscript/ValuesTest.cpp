#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/FakeScriptHost.h"
#include "vbscript/Array.h"
#include "vbscript/Builtins.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/Operators.h"

namespace tessaloom::vbscript {

namespace {

Value IsEqual(Context& context, const Value& a, const Value& b) {
    return Compare(context, Comparison::Equal, a, b);
}

Value IsLess(Context& context, const Value& a, const Value& b) {
    return Compare(context, Comparison::Less, a, b);
}

struct ValuesTest : ::testing::Test {
    testing::FakeScriptHost host;
    Context context{host};

    /// "b7" Byte, "i7" Integer, "l7" Long, "s1.5" Single, "d1.5" Double, "c1.5" Currency, "t1.5" Date,
    /// "'x" String; "true", "false", "null", "empty", "nothing", "missing", "array".
    Value Of(std::string_view text) {
        const std::pair<std::string_view, Value> words[] = {
            {"true",    Value::OfBoolean(true)           },
            {"false",   Value::OfBoolean(false)          },
            {"null",    Value::Null()                    },
            {"empty",   Value()                          },
            {"nothing", Value::Nothing()                 },
            {"missing", Value::Missing()                 },
            {"array",   Value::OfArray(Array::OfCount(2))}
        };
        for (const auto& [word, value] : words)
            if (text == word) return value;
        if (text.front() == '\'') return Value::OfUtf8(text.substr(1));
        double number = 0;
        std::from_chars(text.data() + 1, text.data() + text.size(), number);
        switch (text.front()) {
            case 'b':
                return Value::OfByte(static_cast<std::uint8_t>(number));
            case 'i':
                return Value::OfInteger(static_cast<int>(number));
            case 'l':
                return Value::OfLong(static_cast<int>(number));
            case 's':
                return Value::OfSingle(static_cast<float>(number));
            case 'c':
                return Value::OfCurrency(static_cast<std::int64_t>(number * 10000));
            case 't':
                return Value::OfDate(number);
            default:
                return Value::OfDouble(number);
        }
    }

    /// "Integer 300", "Null", or "error 6".
    std::string Show(const std::function<Value()>& compute) {
        try {
            const Value value = compute();
            const std::string type = Utf8Of(TypeNameOf(value));
            const bool hasText = !value.Is(VarType::Null) && !value.Is(VarType::Array);
            return hasText ? type + " " + ToText(context, value).ToUtf8() : type;
        } catch (const RuntimeError& error) {
            return "error " + std::to_string(error.number);
        }
    }

    std::string Call(std::string_view name, const std::vector<std::string_view>& arguments) {
        std::vector<Value> values;
        for (const auto argument : arguments) values.push_back(Of(argument));
        const int place = FindBuiltin(Utf16Of(name));
        if (place < 0) return "unknown";
        return Show([&] { return Builtins()[static_cast<std::size_t>(place)].call(context, values); });
    }
};

}  // namespace

TEST_F(ValuesTest, OperatorsPromoteAndOverflowAsTheLanguageHasIt) {
    const struct {
        std::string_view a, op, b, expected;
    } rows[] = {
        {"b200",        "+",   "b100",   "Integer 300"                },
        {"b5",          "-",   "b6",     "Integer -1"                 },
        {"b5",          "+",   "b6",     "Byte 11"                    },
        {"i32767",      "+",   "i1",     "Long 32768"                 },
        {"l2147483647", "+",   "i1",     "Double 2147483648"          },
        {"i200",        "*",   "i200",   "Long 40000"                 },
        {"true",        "+",   "true",   "Integer -2"                 },
        {"empty",       "+",   "empty",  "Integer 0"                  },
        {"'1",          "+",   "'2",     "String 12"                  },
        {"'1",          "+",   "i2",     "Double 3"                   },
        {"'x",          "+",   "i2",     "error 13"                   },
        {"empty",       "+",   "'x",     "String x"                   },
        {"null",        "+",   "array",  "error 13"                   },
        {"null",        "*",   "i1",     "Null"                       },
        {"nothing",     "+",   "i1",     "error 91"                   },
        {"missing",     "+",   "i1",     "error 13"                   },
        {"s1.5",        "+",   "i1",     "Single 2.5"                 },
        {"s1.5",        "+",   "l1",     "Double 2.5"                 },
        {"s3e38",       "*",   "s10",    "Double 3.00000000549776E+39"},
        {"c1.5",        "+",   "d1.25",  "Currency 2.75"              },
        {"c1.5",        "*",   "d1.25",  "Double 1.875"               },
        {"c1.5",        "*",   "i2",     "Currency 3"                 },
        {"t36526",      "+",   "i1",     "Date 1/2/2000"              },
        {"t36526",      "-",   "t36525", "Double 1"                   },
        {"t36526",      "*",   "i1",     "Double 36526"               },
        {"t36526",      "+",   "d1e7",   "error 6"                    },
        {"d1e308",      "*",   "i10",    "error 6"                    },
        {"i0",          "/",   "i0",     "error 6"                    },
        {"i1",          "/",   "empty",  "error 11"                   },
        {"i6",          "/",   "i3",     "Double 2"                   },
        {"d7.5",        "\\",  "i2",     "Long 4"                     },
        {"i-7",         "\\",  "i2",     "Integer -3"                 },
        {"d3e9",        "\\",  "i2",     "error 6"                    },
        {"i-7",         "mod", "i3",     "Integer -1"                 },
        {"i7",          "mod", "d0.4",   "error 11"                   },
        {"i2",          "^",   "i-1",    "Double 0.5"                 },
        {"i0",          "^",   "i-1",    "error 5"                    },
        {"i10",         "^",   "i400",   "error 6"                    },
        {"i5",          "and", "true",   "Integer 5"                  },
        {"d5.5",        "and", "i7",     "Long 6"                     },
        {"true",        "or",  "'True",  "Boolean True"               },
        {"null",        "and", "i0",     "Integer 0"                  },
        {"null",        "and", "i5",     "Null"                       },
        {"null",        "or",  "i5",     "Integer 5"                  },
        {"b5",          "xor", "b4",     "Byte 1"                     },
        {"false",       "imp", "null",   "Boolean True"               },
        {"i1",          "eqv", "i2",     "Integer -4"                 },
        {"null",        "&",   "i5",     "String 5"                   },
        {"null",        "&",   "null",   "Null"                       },
        {"i5",          "<",   "'4",     "Boolean True"               },
        {"true",        "=",   "'True",  "Boolean False"              },
        {"empty",       "=",   "'",      "Boolean True"               },
        {"c0.5",        "=",   "d0.5",   "Boolean True"               },
        {"null",        "=",   "null",   "Null"                       },
        {"array",       "=",   "i1",     "error 13"                   },
    };
    using Operator = Value (*)(Context&, const Value&, const Value&);
    const std::pair<std::string_view, Operator> operators[] = {
        {"+",   Add          },
        {"-",   Subtract     },
        {"*",   Multiply     },
        {"/",   Divide       },
        {"\\",  IntegerDivide},
        {"mod", Modulo       },
        {"^",   Power        },
        {"and", And          },
        {"or",  Or           },
        {"xor", Xor          },
        {"eqv", Eqv          },
        {"imp", Imp          },
        {"&",   Concatenate  },
        {"=",   IsEqual      },
        {"<",   IsLess       },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.a) + " " + std::string(row.op) + " " + std::string(row.b));
        const auto apply =
            std::ranges::find(operators, row.op, &std::pair<std::string_view, Operator>::first);
        EXPECT_EQ(Show([&] { return apply->second(context, Of(row.a), Of(row.b)); }), row.expected);
    }
    EXPECT_EQ(Show([&] { return Negate(context, Of("i-32768")); }), "Long 32768");
    EXPECT_EQ(Show([&] { return Not(context, Of("empty")); }), "Integer -1");
}

TEST_F(ValuesTest, FunctionsConvertAndRefuseAsTheLanguageHasIt) {
    const struct {
        std::string_view name;
        std::vector<std::string_view> arguments;
        std::string_view expected;
    } rows[] = {
        {"CInt",           {"d2.5"},                          "Integer 2"                    },
        {"CInt",           {"d32767.5"},                      "error 6"                      },
        {"CInt",           {"'&HFFFF"},                       "Integer -1"                   },
        {"CByte",          {"i256"},                          "error 6"                      },
        {"CLng",           {"c-2.5"},                         "Long -2"                      },
        {"CCur",           {"d1.23455"},                      "Currency 1.2346"              },
        {"CCur",           {"'922337203685477.5807"},         "Currency 922337203685477.5807"},
        {"CCur",           {"'"},                             "error 13"                     },
        {"CCur",           {"'1,000.5"},                      "Currency 1000.5"              },
        {"StrComp",        {"'_", "'1", "i1"},                "Integer -1"                   },
        {"StrComp",        {"'ä", "'b", "i1"},               "Integer -1"                   },
        {"CDate",          {"'1/14/2006 3:30 PM"},            "Date 1/14/2006 3:30:00 PM"    },
        {"CDate",          {"d3e6"},                          "error 6"                      },
        {"CStr",           {"null"},                          "error 94"                     },
        {"CBool",          {"'abc"},                          "error 13"                     },
        {"Mid",            {"'abc", "i0"},                    "error 5"                      },
        {"Mid",            {"'abc", "i2", "missing"},         "String bc"                    },
        {"Left",           {"'abc", "i-1"},                   "error 5"                      },
        {"InStr",          {"i1", "'aBc", "'b", "i1"},        "Long 2"                       },
        {"InStr",          {"'abc", "'"},                     "Long 1"                       },
        {"InStrRev",       {"'abcabc", "'bc", "i4"},          "Long 2"                       },
        {"LenB",           {"i123"},                          "Long 6"                       },
        {"Hex",            {"i-1"},                           "String FFFF"                  },
        {"Hex",            {"d-1"},                           "String FFFFFFFF"              },
        {"String",         {"i3", "i300"},                    "String ,,,"                   },
        {"Chr",            {"i128"},                          "String \u20ac"                },
        {"Asc",            {"'\u20ac"},                       "Integer 128"                  },
        {"Round",          {"d2.5"},                          "Double 2"                     },
        {"Round",          {"d2.5", "i-1"},                   "error 5"                      },
        {"Int",            {"c-1.5"},                         "Currency -2"                  },
        {"Fix",            {"'-1.5"},                         "Double -1"                    },
        {"Abs",            {"i-32768"},                       "Long 32768"                   },
        {"Sgn",            {"null"},                          "error 94"                     },
        {"Weekday",        {"'1/14/2006", "i2"},              "Integer 6"                    },
        {"DatePart",       {"'ww", "'1/1/2006", "i2", "i2"},  "Integer 52"                   },
        {"DateSerial",     {"i2006", "i14", "i0"},            "Date 1/31/2007"               },
        {"TimeSerial",     {"i12", "i-15", "i0"},             "Date 11:45:00 AM"             },
        {"DateAdd",        {"'yyyy", "i9000", "'1/1/2006"},   "error 5"                      },
        {"MonthName",      {"i13"},                           "error 5"                      },
        {"FormatNumber",   {"d-1234.565", "i2", "i0", "i-1"}, "String (1,234.57)"            },
        {"FormatNumber",   {"d0.5", "i1", "i0"},              "String .5"                    },
        {"FormatCurrency", {"d-1234.5"},                      "String ($1,234.50)"           },
        {"FormatPercent",  {"d12.345", "i1"},                 "String 1,234.5%"              },
        {"FormatDateTime", {"t38731.645891203705", "i4"},     "String 15:30"                 },
        {"Join",           {"i1"},                            "error 13"                     },
        {"UBound",         {"array", "i2"},                   "error 9"                      },
        {"IsNumeric",      {"t1"},                            "Boolean False"                },
        {"IsNumeric",      {"empty"},                         "Boolean True"                 },
        {"CreateObject",   {"'No.Such"},                      "error 429"                    },
        {"SetLocale",      {"'de-de"},                        "Long 1033"                    },
        {"CStr",           {"d1234.5"},                       "String 1234,5"                },
        {"CDbl",           {"'1.234,5"},                      "Double 1234,5"                },
        {"FormatCurrency", {"d-1.5"},                         "String -1,50 \u20ac"          },
        {"SetLocale",      {"i1"},                            "error 447"                    },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.name) + " " + std::string(row.arguments.front()));
        EXPECT_EQ(Call(row.name, row.arguments), row.expected);
    }
}

TEST_F(ValuesTest, ArraysAreCopiedWhenAssignedAndLockedWhileWalked) {
    const int bounds[] = {1, 2}, wider[] = {1, 4}, other[] = {2, 2};
    Value a;
    Redimension(a, bounds, false);
    a.WritableArray().At(std::vector{1, 2}) = Value::OfLong(7);
    Value b = a.Assigned();
    Redimension(b, wider, true);
    b.WritableArray().At(std::vector{0, 0}) = Value::OfLong(8);
    EXPECT_EQ(b.AsArray()->At(std::vector{1, 2}).Whole(), 7);
    EXPECT_TRUE(a.AsArray()->At(std::vector{0, 0}).Is(VarType::Empty));
    EXPECT_THROW(Redimension(b, other, true), RuntimeError);
    {
        const Array::Lock lock(*a.AsArray());
        EXPECT_THROW(Redimension(a, wider, false), RuntimeError);
        EXPECT_EQ(&a.WritableArray(), &*lock);
    }
    Redimension(a, wider, false);
    EXPECT_EQ(a.AsArray()->Count(), 10u);
}

TEST_F(ValuesTest, MemoryIsGivenBackAndItsLimitIsAnError) {
    const std::size_t before = MemoryBudget::Used();
    {
        Value chain;
        for (int i = 0; i < 200'000; ++i) chain = Value::OfArray(Array::OfValues({&chain, 1}));
        Value text = Value::OfText(u"x");
        MemoryBudget::SetLimit(MemoryBudget::Used() + 100'000);
        EXPECT_EQ(Show([&] {
                      for (;;) AppendTo(context, text, Value::OfText(u"0123456789"));
                      return Value();
                  }),
                  "error 7");
        EXPECT_GT(text.Text().size(), 10'000u);
        MemoryBudget::SetLimit(MemoryBudget::DefaultLimit);
    }
    EXPECT_EQ(MemoryBudget::Used(), before);
}

}  // namespace tessaloom::vbscript
