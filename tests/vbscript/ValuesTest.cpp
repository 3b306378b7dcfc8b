#include <charconv>

#include "support/FakeScriptHost.h"
#include "support/Tsv.h"
#include "vbscript/Array.h"
#include "vbscript/Builtins.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/Operators.h"

namespace tessaloom::vbscript {
namespace {

using namespace testing;

Value IsEqual(Context& context, const Value& a, const Value& b) {
    return Compare(context, Comparison::Equal, a, b);
}

Value IsLess(Context& context, const Value& a, const Value& b) {
    return Compare(context, Comparison::Less, a, b);
}

struct ValuesTest : ::testing::Test {
    FakeScriptHost host;
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
    for (const TsvRow& row : ReadTsv(TEST_DATA "/vectors/vbscript_operators.tsv")) {
        SCOPED_TRACE(row[0] + " " + row[1] + " " + row[2]);
        const auto apply =
            std::ranges::find(operators, row[1], &std::pair<std::string_view, Operator>::first);
        EXPECT_EQ(Show([&] { return apply->second(context, Of(row[0]), Of(row[2])); }), row[3]);
    }
    EXPECT_EQ(Show([&] { return Negate(context, Of("i-32768")); }), "Long 32768");
    EXPECT_EQ(Show([&] { return Not(context, Of("empty")); }), "Integer -1");
}

TEST_F(ValuesTest, FunctionsConvertAndRefuseAsTheLanguageHasIt) {
    for (const TsvRow& row : ReadTsv(TEST_DATA "/vectors/vbscript_functions.tsv")) {
        SCOPED_TRACE(row[0] + " " + row[2]);
        EXPECT_EQ(Call(row[0], {row.cells.begin() + 2, row.cells.end()}), row[1]);
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
