#include "vbscript/RegExpMatcher.h"

#include <algorithm>
#include <functional>

#include "vbscript/Error.h"
#include "vbscript/String.h"

namespace tessaloom::vbscript {

namespace {

bool IsLineEnd(char16_t unit) { return unit == u'\n' || unit == u'\r'; }

bool IsWord(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'a' && unit <= u'z') || unit == u'_';
}

/// How many units lie before the first that `is` accepts.
template <typename Is>
std::size_t CountBefore(std::u16string_view text, Is is) {
    std::size_t count = 0;
    while (count < text.size()) {
        const auto stretch = text.substr(count, TimeLimit::UnitsBetweenPolls);
        const auto before = static_cast<std::size_t>(std::ranges::find_if(stretch, is) - stretch.begin());
        count += before;
        if (before < stretch.size()) break;
        TimeLimit::Poll();
    }
    return count;
}

}  // namespace

bool RegExpMatcher::Find(std::u16string_view text, std::size_t from, Positions& positions) {
    constexpr std::size_t Longest = 0x7FFFFFFF;
    text_ = text.substr(0, Longest);
    const std::size_t last = program_.atBeginOnly ? 0 : text_.size();
    for (std::size_t start = from; start <= last; ++start) {
        if (program_.firstKnown) {
            const auto possible = [&](char16_t unit) {
                return unit >= program_.first.size() || program_.first[unit];
            };
            start += CountBefore(text_.substr(start), possible);
            if (start >= text_.size()) return false;
        }
        Spend(1 + static_cast<std::int64_t>(program_.registers) / UnitsAStep);
        if (!MatchHere(static_cast<std::int32_t>(start))) continue;
        positions.assign(registers_.begin(), registers_.begin() + 2 * (program_.groups + 1));
        return true;
    }
    return false;
}

/// The registers hold the outcome. Instructions that fail go one step back.
bool RegExpMatcher::MatchHere(std::int32_t position) {
    const auto size = static_cast<std::int32_t>(text_.size());
    registers_.assign(program_.registers, -1);
    registers_[0] = position;
    steps_.clear();
    for (std::uint32_t code = 0;;) {
        const Instruction& now = program_.code[code];
        bool works = true;
        ++code;
        switch (now.op) {
            case Op::Unit:
                works = position < size && text_[position] == now.value;
                position += works;
                break;
            case Op::Any:
            case Op::Set:
                works = position < size && Takes(now, text_[position]);
                position += works;
                break;
            case Op::Run:
                works = Run(now, code, position);
                ++code;
                break;
            case Op::LazyRun:
                works = LazyRun(now, code, position);
                ++code;
                break;
            case Op::Begin:
                works = AtBegin(position);
                break;
            case Op::End:
                works = AtEnd(position);
                break;
            case Op::Boundary:
                works = AtBoundary(position);
                break;
            case Op::NotBoundary:
                works = !AtBoundary(position);
                break;
            case Op::Save:
                Set(now.value, position);
                break;
            case Op::Back:
                works = BackReference(now.value, position);
                break;
            case Op::Jump:
                code = now.target;
                break;
            case Op::Split:
                Push({Step::Kind::Choice, now.target, position, 0});
                break;
            case Op::LazySplit:
                Push({Step::Kind::Choice, code, position, 0});
                code = now.target;
                break;
            case Op::LoopInit:
                Set(now.value, 0);
                break;
            case Op::Loop:
            case Op::LazyLoop: {
                const auto rounds = static_cast<std::uint32_t>(registers_[now.value]);
                if (rounds < now.least) break;
                if (rounds >= now.most) {
                    code = now.target;
                } else if (now.op == Op::Loop) {
                    Push({Step::Kind::Choice, now.target, position, 0});
                } else {
                    Push({Step::Kind::Choice, code, position, 0});
                    code = now.target;
                }
                break;
            }
            case Op::LoopRound:
                BeginRound(now.value, position);
                break;
            case Op::LoopEnd:
                works = position != registers_[now.value + 1] ||
                        static_cast<std::uint32_t>(registers_[now.value]) <= now.least;
                code = now.target;
                break;
            case Op::Look:
                Set(now.value, static_cast<std::int32_t>(steps_.size()));
                Set(now.value + 1, position);
                break;
            case Op::LookEnd:
                position = registers_[now.value + 1];
                DropChoices(static_cast<std::size_t>(registers_[now.value]));
                break;
            case Op::LookNot:
                Set(now.value, static_cast<std::int32_t>(steps_.size()) + 1);
                Push({Step::Kind::Choice, now.target, position, 0});
                break;
            case Op::LookNotEnd:
                Undo(static_cast<std::size_t>(registers_[now.value]));
                works = false;
                break;
            case Op::Match:
                registers_[1] = position;
                return true;
        }
        if (!works && !Back(code, position)) return false;
    }
}

/// Goes back to the last choice; false when there is none.
bool RegExpMatcher::Back(std::uint32_t& code, std::int32_t& position) {
    Spend(1);
    while (!steps_.empty()) {
        Step& step = steps_.back();
        switch (step.kind) {
            case Step::Kind::Restore:
                registers_[step.code] = step.a;
                steps_.pop_back();
                break;
            case Step::Kind::Choice:
                code = step.code;
                position = step.a;
                steps_.pop_back();
                return true;
            case Step::Kind::Shorten:
                if (Shorten(step, code, position)) {
                    if (step.a == step.b) steps_.pop_back();
                    return true;
                }
                steps_.pop_back();
                break;
            case Step::Kind::Lengthen: {
                const Instruction& unit = program_.code[step.code];
                if (step.a < static_cast<std::int32_t>(text_.size()) && Takes(unit, text_[step.a])) {
                    position = ++step.a;
                    code = step.code + 1;
                    if (--step.b == 0) steps_.pop_back();
                    return true;
                }
                steps_.pop_back();
                break;
            }
        }
    }
    return false;
}

/// Ends that the next instruction would refuse at once are passed over.
bool RegExpMatcher::Shorten(Step& run, std::uint32_t& code, std::int32_t& position) const {
    const Instruction& next = program_.code[run.code + 1];
    while (run.a > run.b) {
        --run.a;
        if (next.op == Op::Unit && text_[run.a] != next.value) continue;
        position = run.a;
        code = run.code + 1;
        return true;
    }
    return false;
}

void RegExpMatcher::Push(Step step) {
    if (steps_.size() >= MostSteps) Fail(ErrorCode::OutOfMemory);
    steps_.push_back(step);
}

/// Changes a register so that going back undoes it.
void RegExpMatcher::Set(std::uint32_t index, std::int32_t value) {
    Push({Step::Kind::Restore, index, registers_[index], 0});
    registers_[index] = value;
}

void RegExpMatcher::Spend(std::int64_t steps) {
    untilCheck_ -= steps;
    if (untilCheck_ > 0) return;
    spent_ += StepsBetweenChecks - untilCheck_;
    untilCheck_ = StepsBetweenChecks;
    TimeLimit::Poll();
    if (spent_ > StepBudget) Fail(ErrorCode::OutOfStackSpace);
}

bool RegExpMatcher::Takes(const Instruction& unit, char16_t value) const {
    switch (unit.op) {
        case Op::Unit:
            return value == unit.value;
        case Op::Any:
            return value != u'\n';
        default:
            return program_.sets[unit.value].Contains(value);
    }
}

std::int32_t RegExpMatcher::RunEnd(const Instruction& unit, std::int32_t from, std::uint32_t most) const {
    const auto rest = text_.substr(static_cast<std::size_t>(from), most);
    const auto end = [&](auto takes) {
        return from + static_cast<std::int32_t>(CountBefore(rest, std::not_fn(takes)));
    };
    switch (unit.op) {
        case Op::Unit:
            return end([&](char16_t value) { return value == unit.value; });
        case Op::Any:
            return end([](char16_t value) { return value != u'\n'; });
        default:
            return end([&, &set = program_.sets[unit.value]](char16_t value) { return set.Contains(value); });
    }
}

bool RegExpMatcher::Run(const Instruction& run, std::uint32_t code, std::int32_t& position) {
    const std::int32_t begin = position;
    const std::int32_t end = RunEnd(program_.code[code], begin, run.most);
    Spend((end - begin) / UnitsAStep);
    if (static_cast<std::uint32_t>(end - begin) < run.least) return false;
    const std::int32_t shortest = begin + static_cast<std::int32_t>(run.least);
    if (end > shortest) Push({Step::Kind::Shorten, code, end, shortest});
    position = end;
    return true;
}

bool RegExpMatcher::LazyRun(const Instruction& run, std::uint32_t code, std::int32_t& position) {
    const std::int32_t end = RunEnd(program_.code[code], position, run.least);
    if (static_cast<std::uint32_t>(end - position) < run.least) return false;
    position = end;
    const std::uint32_t more = std::min<std::uint32_t>(run.most - run.least, 0x7FFFFFFF);
    if (more > 0) Push({Step::Kind::Lengthen, code, end, static_cast<std::int32_t>(more)});
    return true;
}

/// A group that took no part matches the empty text.
bool RegExpMatcher::BackReference(std::uint32_t group, std::int32_t& position) {
    const std::int32_t begin = registers_[2 * group], end = registers_[2 * group + 1];
    if (begin < 0 || end < begin) return true;
    Spend((end - begin) / UnitsAStep);
    const auto matched = text_.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
    const auto here = text_.substr(static_cast<std::size_t>(position), matched.size());
    const bool same = program_.ignoreCase ? SameName(matched, here) : matched == here;
    if (same) position += end - begin;
    return same;
}

bool RegExpMatcher::AtBegin(std::int32_t position) const {
    return position == 0 || (program_.multiLine && IsLineEnd(text_[position - 1]));
}

bool RegExpMatcher::AtEnd(std::int32_t position) const {
    return position == static_cast<std::int32_t>(text_.size()) ||
           (program_.multiLine && IsLineEnd(text_[position]));
}

bool RegExpMatcher::AtBoundary(std::int32_t position) const {
    const bool before = position > 0 && IsWord(text_[position - 1]);
    const bool after = position < static_cast<std::int32_t>(text_.size()) && IsWord(text_[position]);
    return before != after;
}

void RegExpMatcher::BeginRound(std::uint32_t state, std::int32_t position) {
    Set(state, registers_[state] + 1);
    Set(state + 1, position);
}

/// What was matched ahead is settled: only registers are put back on the way past it.
void RegExpMatcher::DropChoices(std::size_t height) {
    const auto dropped = std::remove_if(steps_.begin() + static_cast<std::ptrdiff_t>(height), steps_.end(),
                                        [](const Step& step) { return step.kind != Step::Kind::Restore; });
    steps_.erase(dropped, steps_.end());
}

/// Forgets all above the first `height` - 1 steps, the last of which was the choice to go on behind.
void RegExpMatcher::Undo(std::size_t height) {
    while (steps_.size() >= height) {
        const Step& step = steps_.back();
        if (step.kind == Step::Kind::Restore) registers_[step.code] = step.a;
        steps_.pop_back();
    }
}

}  // namespace tessaloom::vbscript
