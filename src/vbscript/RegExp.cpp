#include "vbscript/RegExp.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "vbscript/Context.h"
#include "vbscript/MemberTable.h"
#include "vbscript/RegExpMatcher.h"
#include "vbscript/RegExpMatches.h"

namespace tessaloom::vbscript {

namespace {

/// A template's "$" signs, replaced by parts of the text.
class Replacement {
public:
    Replacement(std::u16string_view pattern, std::u16string_view text) : pattern_(pattern), text_(text) {}

    void AppendTo(String& result, std::span<const std::int32_t> positions) const {
        std::size_t done = 0;
        for (std::size_t sign = 0; (sign = pattern_.find(u'$', sign)) != pattern_.npos;) {
            std::size_t length = 2;
            TimeLimit::Poll();
            const auto part = PartAt(sign + 1, length, positions);
            if (!part) {
                ++sign;
                continue;
            }
            result.Append(pattern_.substr(done, sign - done));
            result.Append(*part);
            done = sign += length;
        }
        result.Append(pattern_.substr(done));
    }

private:
    /// What stands for the sign and what follows it at `at`; nothing when they stand for themselves.
    std::optional<std::u16string_view> PartAt(std::size_t at, std::size_t& length,
                                              std::span<const std::int32_t> positions) const {
        const auto begin = static_cast<std::size_t>(positions[0]),
                   end = static_cast<std::size_t>(positions[1]);
        switch (at < pattern_.size() ? pattern_[at] : u'\0') {
            case u'$':
                return u"$";
            case u'&':
                return text_.substr(begin, end - begin);
            case u'`':
                return text_.substr(0, begin);
            case u'\'':
                return text_.substr(end);
            default:
                return GroupAt(at, length, positions);
        }
    }

    /// One or two digits, as many as there are groups for.
    std::optional<std::u16string_view> GroupAt(std::size_t at, std::size_t& length,
                                               std::span<const std::int32_t> positions) const {
        const auto digit = [&](std::size_t place) {
            return place < pattern_.size() && pattern_[place] >= u'0' && pattern_[place] <= u'9'
                       ? std::optional<std::size_t>(pattern_[place] - u'0')
                       : std::nullopt;
        };
        const std::size_t groups = positions.size() / 2 - 1;
        const auto first = digit(at), second = digit(at + 1);
        if (!first) return std::nullopt;
        std::size_t group = second ? *first * 10 + *second : 0;
        length = 3;
        if (group == 0 || group > groups) {
            group = *first;
            length = 2;
        }
        if (group == 0 || group > groups) return std::nullopt;
        const std::int32_t begin = positions[2 * group], end = positions[2 * group + 1];
        if (begin < 0 || end < begin) return u"";
        return text_.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
    }

    std::u16string_view pattern_, text_;
};

class RegExp final : public TableObject<RegExp> {
public:
    static constexpr std::u16string_view Name = u"IRegExp2";
    static std::span<const Member<RegExp>> Members();

private:
    template <bool RegExp::*Flag>
    static constexpr Member<RegExp> FlagMember(std::u16string_view name) {
        return {name, 0, 0, [](RegExp& self, const Arguments&) { return Value::OfBoolean(self.*Flag); },
                [](RegExp& self, const Arguments& arguments) {
                    self.*Flag = ToBoolean(arguments.GetContext(), arguments.NewValue());
                    self.program_.reset();
                    return Value();
                }};
    }

    const std::shared_ptr<const RegExpProgram>& Program() {
        if (!program_)
            program_ = std::allocate_shared<RegExpProgram>(
                BudgetAllocator<RegExpProgram>(), CompileRegExp(pattern_.View(), ignoreCase_, multiLine_));
        return program_;
    }

    /// Calls `found` with the positions of the first match or, with Global, of all.
    template <typename Found>
    void Search(std::u16string_view text, bool all, Found&& found) {
        const auto program = Program();  // a replacing function may change the pattern
        RegExpMatcher matcher(*program);
        RegExpMatcher::Positions positions;
        for (std::size_t from = 0; from <= text.size() && matcher.Find(text, from, positions);) {
            found(positions);
            if (!all) return;
            from = static_cast<std::size_t>(positions[1]) + (positions[0] == positions[1] ? 1 : 0);
        }
    }

    Value Execute(const String& text) {
        const auto findings = std::allocate_shared<RegExpFindings>(BudgetAllocator<RegExpFindings>(), text,
                                                                   2 * (Program()->groups + 1));
        Search(text.View(), global_, [&](const auto& positions) { findings->Add(positions); });
        return Value::OfObject(Make<RegExpMatches>(findings));
    }

    Value Test(const String& text) {
        bool matches = false;
        Search(text.View(), false, [&](const auto&) { matches = true; });
        return Value::OfBoolean(matches);
    }

    Value Replace(Context& context, const String& text, const Value& with) {
        const bool byFunction = with.Is(VarType::Object) && !with.IsNothing();
        const String pattern = byFunction ? String() : ToText(context, with);
        const Replacement replacement(pattern.View(), text.View());
        String result;
        std::size_t done = 0;
        Search(text.View(), global_, [&](const auto& positions) {
            const auto begin = static_cast<std::size_t>(positions[0]);
            result.Append(text.View().substr(done, begin - done));
            done = static_cast<std::size_t>(positions[1]);
            if (byFunction)
                result.Append(Replaced(context, *with.AsObject(), text, positions));
            else
                replacement.AppendTo(result, positions);
        });
        if (done == 0 && result.IsEmpty()) return Value::OfString(text);
        result.Append(text.View().substr(done));
        return Value::OfString(result);
    }

    static String Replaced(Context& context, Object& function, const String& text,
                           const RegExpMatcher::Positions& positions) {
        RegExpFindings findings(text, positions.size());
        findings.Add(positions);
        BudgetVector<Value> arguments;
        for (std::size_t group = 0; group <= findings.Groups(); ++group)
            arguments.push_back(findings.TextOf(0, group));
        arguments.push_back(Value::OfLong(positions[0]));
        arguments.push_back(Value::OfString(text));
        return ToText(context, function.Invoke(context, DefaultMember, CallKind::Get, arguments));
    }

    String pattern_;
    bool global_ = false, ignoreCase_ = false, multiLine_ = false;
    std::shared_ptr<const RegExpProgram> program_;  ///< Null until it is needed.
};

std::span<const Member<RegExp>> RegExp::Members() {
    // clang-format off
    static constexpr std::array<Member<RegExp>, 7> All = {{
        {u"Pattern", 0, 0, [](RegExp& self, const Arguments&) { return Value::OfString(self.pattern_); },
         [](RegExp& self, const Arguments& arguments) {
             self.pattern_ = ToText(arguments.GetContext(), arguments.NewValue());
             self.program_.reset();
             return Value();
         }},
        FlagMember<&RegExp::global_>(u"Global"),
        FlagMember<&RegExp::ignoreCase_>(u"IgnoreCase"),
        FlagMember<&RegExp::multiLine_>(u"Multiline"),
        {u"Execute", 1, 1,
         [](RegExp& self, const Arguments& arguments) {
             return self.Execute(arguments.Text(0));
         }},
        {u"Test", 1, 1,
         [](RegExp& self, const Arguments& arguments) {
             return self.Test(arguments.Text(0));
         }},
        {u"Replace", 2, 2,
         [](RegExp& self, const Arguments& arguments) {
             return self.Replace(arguments.GetContext(), arguments.Text(0), arguments[1]);
         }},
    }};
    // clang-format on
    return All;
}

}  // namespace

Ref<Object> MakeRegExp() { return Make<RegExp>(); }

}  // namespace tessaloom::vbscript
