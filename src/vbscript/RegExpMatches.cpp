#include "vbscript/RegExpMatches.h"

#include <array>
#include <functional>

namespace tessaloom::vbscript {

namespace {

/// Walks along `count` things that `item` makes.
class Counting final : public Enumerator {
public:
    Counting(std::size_t count, std::function<Value(std::size_t)> item)
        : count_(count), item_(std::move(item)) {}

    bool Next(Value& item) override {
        if (next_ >= count_) return false;
        item = item_(next_++);
        return true;
    }

private:
    std::size_t count_, next_ = 0;
    std::function<Value(std::size_t)> item_;
};

Value Whole(std::size_t number) { return Value::OfLong(static_cast<std::int32_t>(number)); }

/// The only argument as an index below `count`.
std::size_t Index(const Arguments& arguments, std::size_t count) {
    const int index = arguments.Long(0);
    if (index < 0 || static_cast<std::size_t>(index) >= count) Fail(ErrorCode::InvalidCall);
    return static_cast<std::size_t>(index);
}

Value MatchOf(const SharedFindings& findings, std::size_t index) {
    return Value::OfObject(Make<RegExpMatch>(findings, index));
}

}  // namespace

Value RegExpFindings::TextOf(std::size_t match, std::size_t group) const {
    const auto positions = Positions(match);
    const std::int32_t begin = positions[2 * group], end = positions[2 * group + 1];
    if (begin < 0 || end < begin) return {};
    return Value::OfText(
        text_.View().substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
}

std::span<const Member<RegExpMatches>> RegExpMatches::Members() {
    using Self = RegExpMatches;
    // clang-format off
    static constexpr std::array<Member<Self>, 2> All = {{
        {u"Item", 1, 1,
         [](Self& self, const Arguments& arguments) {
             return MatchOf(self.findings_, Index(arguments, self.findings_->Count()));
         },
         nullptr, nullptr, IsDefault::Yes},
        {u"Count", 0, 0, [](Self& self, const Arguments&) { return Whole(self.findings_->Count()); }},
    }};
    // clang-format on
    return All;
}

std::unique_ptr<Enumerator> RegExpMatches::Enumerate(Context&) {
    return std::make_unique<Counting>(
        findings_->Count(), [findings = findings_](std::size_t index) { return MatchOf(findings, index); });
}

std::span<const Member<RegExpMatch>> RegExpMatch::Members() {
    using Self = RegExpMatch;
    // clang-format off
    static constexpr std::array<Member<Self>, 4> All = {{
        {u"Value", 0, 0, [](Self& self, const Arguments&) { return self.findings_->TextOf(self.index_, 0); },
         nullptr, nullptr, IsDefault::Yes},
        {u"FirstIndex", 0, 0,
         [](Self& self, const Arguments&) {
             return Value::OfLong(self.findings_->Positions(self.index_)[0]);
         }},
        {u"Length", 0, 0,
         [](Self& self, const Arguments&) {
             const auto positions = self.findings_->Positions(self.index_);
             return Value::OfLong(positions[1] - positions[0]);
         }},
        {u"SubMatches", 0, 1,
         [](Self& self, const Arguments& arguments) {
             if (arguments.Count() == 0)
                 return Value::OfObject(Make<RegExpSubMatches>(self.findings_, self.index_));
             return self.findings_->TextOf(self.index_, Index(arguments, self.findings_->Groups()) + 1);
         }},
    }};
    // clang-format on
    return All;
}

std::span<const Member<RegExpSubMatches>> RegExpSubMatches::Members() {
    using Self = RegExpSubMatches;
    // clang-format off
    static constexpr std::array<Member<Self>, 2> All = {{
        {u"Item", 1, 1,
         [](Self& self, const Arguments& arguments) {
             return self.findings_->TextOf(self.match_, Index(arguments, self.findings_->Groups()) + 1);
         },
         nullptr, nullptr, IsDefault::Yes},
        {u"Count", 0, 0, [](Self& self, const Arguments&) { return Whole(self.findings_->Groups()); }},
    }};
    // clang-format on
    return All;
}

std::unique_ptr<Enumerator> RegExpSubMatches::Enumerate(Context&) {
    return std::make_unique<Counting>(findings_->Groups(),
                                      [findings = findings_, match = match_](std::size_t group) {
                                          return findings->TextOf(match, group + 1);
                                      });
}

}  // namespace tessaloom::vbscript
