#include "vbscript/RegExpSyntax.h"

#include <optional>

#include "vbscript/Error.h"
#include "vbscript/RegExpProgram.h"
#include "vbscript/String.h"

namespace tessaloom::vbscript {

namespace {

enum class Mistake { Syntax = 5017, Quantifier = 5018, NoBracket = 5019, NoParenthesis = 5020, Range = 5021 };

/// Groups within groups. Far above what is written by hand, far below what the stack bears.
constexpr int DeepestNesting = 500;

/// Units of a pattern, so that its tree and its compilation stay small: error 7 above it.
constexpr std::size_t LongestPattern = std::size_t{1} << 16;

[[noreturn]] void Refuse(Mistake mistake) { throw RuntimeError(static_cast<int>(mistake)); }

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool IsOctal(char16_t unit) { return unit >= u'0' && unit <= u'7'; }

std::optional<std::uint32_t> HexDigit(char16_t unit) {
    if (IsDigit(unit)) return unit - u'0';
    const char16_t lower = unit | 0x20;
    if (lower >= u'a' && lower <= u'f') return lower - u'a' + 10;
    return std::nullopt;
}

/// What `\d`, `\s`, `\w` and their opposites stand for; nothing for other letters.
std::optional<UnitSet> NamedSet(char16_t letter) {
    UnitSet set;
    switch (letter | 0x20) {
        case u'd':
            set.Add(u'0', u'9');
            break;
        case u's':
            set.Add(u'\t', u'\r');
            set.Add(u' ', u' ');
            break;
        case u'w':
            set.Add(u'0', u'9');
            set.Add(u'A', u'Z');
            set.Add(u'_', u'_');
            set.Add(u'a', u'z');
            break;
        default:
            return std::nullopt;
    }
    set.Finish();
    return letter & 0x20 ? set : set.Complement();
}

class Parser {
public:
    Parser(std::u16string_view pattern, bool ignoreCase)
        : pattern_(pattern), ignoreCase_(ignoreCase), allGroups_(CountGroups()) {}

    RegExpSyntax Parse() {
        if (pattern_.size() > LongestPattern) Fail(ErrorCode::OutOfMemory);
        syntax_.root = Alternation();
        if (!AtEnd()) Refuse(Mistake::Syntax);  // a parenthesis too many
        return std::move(syntax_);
    }

private:
    using Kind = RegExpSyntax::Kind;
    using Node = RegExpSyntax::Node;

    struct Count {
        std::uint32_t least, most;
    };

    bool AtEnd() const { return at_ >= pattern_.size(); }
    char16_t Peek(std::size_t ahead = 0) const {
        return at_ + ahead < pattern_.size() ? pattern_[at_ + ahead] : u'\0';
    }
    char16_t Take() { return pattern_[at_++]; }
    bool Accept(char16_t unit) {
        if (AtEnd() || pattern_[at_] != unit) return false;
        ++at_;
        return true;
    }

    std::uint32_t Add(Node node) {
        syntax_.nodes.push_back(std::move(node));
        return static_cast<std::uint32_t>(syntax_.nodes.size() - 1);
    }
    std::uint32_t AddSet(UnitSet set) {
        syntax_.sets.push_back(std::move(set));
        return Add({Kind::Set, static_cast<std::uint32_t>(syntax_.sets.size() - 1)});
    }
    std::uint32_t AddUnit(char16_t unit) {
        if (!ignoreCase_ || LowerOf(unit) == UpperOf(unit)) return Add({Kind::Unit, unit});
        UnitSet both;
        AddCases(both, unit);
        both.Finish();
        return AddSet(std::move(both));
    }

    /// Forward references count, so all groups are known before the first is read.
    std::uint32_t CountGroups() const {
        std::uint32_t count = 0;
        bool inClass = false;
        for (std::size_t i = 0; i < pattern_.size(); ++i) {
            if (pattern_[i] == u'\\') {
                ++i;
            } else if (inClass) {
                inClass = pattern_[i] != u']';
            } else if (pattern_[i] == u'[') {
                inClass = true;
                if (i + 1 < pattern_.size() && pattern_[i + 1] == u'^') ++i;
                if (i + 1 < pattern_.size() && pattern_[i + 1] == u']') ++i;
            } else if (pattern_[i] == u'(') {
                count += i + 1 >= pattern_.size() || pattern_[i + 1] != u'?';
            }
        }
        return count;
    }

    /// All units that have another case.
    static const std::vector<char16_t>& CasedUnits() {
        static const std::vector<char16_t> units = [] {
            std::vector<char16_t> all;
            for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
                if (LowerOf(static_cast<char16_t>(unit)) != UpperOf(static_cast<char16_t>(unit)))
                    all.push_back(static_cast<char16_t>(unit));
            return all;
        }();
        return units;
    }

    static void AddCases(UnitSet& set, char16_t unit) {
        for (const char16_t other : {unit, LowerOf(unit), UpperOf(unit)}) set.Add(other, other);
    }

    /// set: finished.
    static UnitSet BothCases(const UnitSet& set) {
        UnitSet both = set;
        for (const char16_t unit : CasedUnits())
            if (set.Contains(unit)) AddCases(both, unit);
        both.Finish();
        return both;
    }

    std::uint32_t Alternation() {
        if (++depth_ > DeepestNesting) Fail(ErrorCode::OutOfStackSpace);
        BudgetVector<std::uint32_t> branches{Sequence()};
        while (Accept(u'|')) branches.push_back(Sequence());
        --depth_;
        if (branches.size() == 1) return branches.front();
        return Add({.kind = Kind::Alternation, .children = std::move(branches)});
    }

    std::uint32_t Sequence() {
        BudgetVector<std::uint32_t> terms;
        while (!AtEnd() && Peek() != u'|' && Peek() != u')') terms.push_back(Quantified());
        if (terms.size() == 1) return terms.front();
        return Add({.kind = Kind::Sequence, .children = std::move(terms)});
    }

    std::uint32_t Quantified() {
        const std::uint32_t term = Term();
        const auto count = Quantifier();
        if (!count) return term;
        const Kind kind = syntax_.nodes[term].kind;
        if (kind >= Kind::Begin && kind <= Kind::NotBoundary) Refuse(Mistake::Quantifier);
        const bool lazy = Accept(u'?');
        if (Quantifier()) Refuse(Mistake::Quantifier);
        return Add({Kind::Repeat, 0, count->least, count->most, lazy, {term}});
    }

    std::optional<Count> Quantifier() {
        constexpr std::uint32_t Unlimited = RegExpProgram::Unlimited;
        if (Accept(u'*')) return Count{0, Unlimited};
        if (Accept(u'+')) return Count{1, Unlimited};
        if (Accept(u'?')) return Count{0, 1};
        return Braces();
    }

    /// {n}, {n,} or {n,m}; anything else in braces is no count.
    std::optional<Count> Braces() {
        const std::size_t begin = at_;
        Count count{};
        const bool read = Accept(u'{') && Number(count.least);
        count.most = count.least;
        if (read && Accept(u',') && !Number(count.most)) count.most = RegExpProgram::Unlimited;
        if (!read || !Accept(u'}')) {
            at_ = begin;
            return std::nullopt;
        }
        if (count.most < count.least) Refuse(Mistake::Syntax);
        return count;
    }

    /// Numbers too large for a text count as the largest.
    bool Number(std::uint32_t& number) {
        constexpr std::uint32_t Largest = 0x7FFFFFFF;
        if (!IsDigit(Peek())) return false;
        std::uint64_t value = 0;
        while (IsDigit(Peek())) value = std::min<std::uint64_t>(value * 10 + (Take() - u'0'), Largest);
        number = static_cast<std::uint32_t>(value);
        return true;
    }

    std::uint32_t Term() {
        if (Quantifier()) Refuse(Mistake::Quantifier);
        const char16_t unit = Take();
        switch (unit) {
            case u'^':
                return Add({Kind::Begin});
            case u'$':
                return Add({Kind::End});
            case u'.':
                return Add({Kind::Any});
            case u'(':
                return Parenthesis();
            case u'[':
                return Class();
            case u'\\':
                return Escape();
            default:
                return AddUnit(unit);
        }
    }

    std::uint32_t Parenthesis() {
        Node node{Kind::Group};
        bool plain = false;
        if (!Accept(u'?'))
            node.value = ++syntax_.groups;
        else if (Accept(u'='))
            node.kind = Kind::Look;
        else if (Accept(u'!'))
            node.kind = Kind::LookNot;
        else if (Accept(u':'))
            plain = true;
        else
            Refuse(Mistake::Quantifier);
        const std::uint32_t content = Alternation();
        if (!Accept(u')')) Refuse(Mistake::NoParenthesis);
        // A sequence of its own, so that a quantifier behind it finds no assertion there.
        node.children = {content};
        if (plain) node.kind = Kind::Sequence;
        return Add(std::move(node));
    }

    std::uint32_t Escape() {
        if (AtEnd()) Refuse(Mistake::Syntax);
        const char16_t letter = Peek();
        if (auto named = NamedSet(letter)) {
            ++at_;
            return AddSet(std::move(*named));
        }
        if (letter == u'b' || letter == u'B') {
            ++at_;
            return Add({letter == u'b' ? Kind::Boundary : Kind::NotBoundary});
        }
        if (const auto group = GroupNumber()) return Add({Kind::Back, *group});
        return AddUnit(EscapedUnit());
    }

    std::optional<std::uint32_t> GroupNumber() {
        if (Peek() < u'1' || Peek() > u'9') return std::nullopt;
        const std::size_t begin = at_;
        std::uint32_t group = 0;
        if (Number(group) && group <= allGroups_) return group;
        at_ = begin;
        return std::nullopt;
    }

    /// The unit that an escape stands for; the backslash is read.
    char16_t EscapedUnit() {
        if (IsOctal(Peek())) return Octal();
        const char16_t letter = Take();
        switch (letter) {
            case u'f':
                return u'\f';
            case u'n':
                return u'\n';
            case u'r':
                return u'\r';
            case u't':
                return u'\t';
            case u'v':
                return u'\v';
            case u'x':
                return Hexadecimal(2).value_or(letter);
            case u'u':
                return Hexadecimal(4).value_or(letter);
            case u'c':
                return (Peek() | 0x20) >= u'a' && (Peek() | 0x20) <= u'z' ? Take() & 0x1F : letter;
            default:
                return letter;
        }
    }

    /// At most three digits, at most 377.
    char16_t Octal() {
        char16_t value = 0;
        for (int digits = 0; digits < 3 && IsOctal(Peek()) && value < 040; ++digits)
            value = static_cast<char16_t>(value * 8 + (Take() - u'0'));
        return value;
    }

    std::optional<char16_t> Hexadecimal(std::size_t digits) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < digits; ++i) {
            const auto digit = HexDigit(Peek(i));
            if (!digit) return std::nullopt;
            value = value * 16 + *digit;
        }
        at_ += digits;
        return static_cast<char16_t>(value);
    }

    std::uint32_t Class() {
        UnitSet set;
        const bool negated = Accept(u'^');
        // What comes first is a member, even a closing bracket.
        for (bool first = true; first || Peek() != u']' || AtEnd(); first = false) {
            if (AtEnd()) Refuse(Mistake::NoBracket);
            ClassItem(set);
        }
        ++at_;
        set.Finish();
        if (ignoreCase_) set = BothCases(set);
        return AddSet(negated ? set.Complement() : std::move(set));
    }

    /// A unit, a range, or a named set. A hyphen beside a named set stands for itself.
    void ClassItem(UnitSet& set) {
        const auto first = ClassUnit(set);
        const bool range = Peek() == u'-' && at_ + 1 < pattern_.size() && Peek(1) != u']';
        if (!first) return;
        if (!range) return set.Add(*first, *first);
        ++at_;
        const auto last = ClassUnit(set);
        if (!last) {
            set.Add(*first, *first);
            return set.Add(u'-', u'-');
        }
        if (*last < *first) Refuse(Mistake::Range);
        set.Add(*first, *last);
    }

    /// Nothing for a named set, which is added.
    std::optional<char16_t> ClassUnit(UnitSet& set) {
        const char16_t unit = Take();
        if (unit != u'\\') return unit;
        if (AtEnd()) Refuse(Mistake::NoBracket);
        if (const auto named = NamedSet(Peek())) {
            ++at_;
            set.Add(*named);
            return std::nullopt;
        }
        if (Accept(u'b')) return u'\b';
        return EscapedUnit();
    }

    std::u16string_view pattern_;
    bool ignoreCase_;
    std::uint32_t allGroups_;
    std::size_t at_ = 0;
    int depth_ = 0;
    RegExpSyntax syntax_;
};

}  // namespace

RegExpSyntax ParseRegExp(std::u16string_view pattern, bool ignoreCase) {
    return Parser(pattern, ignoreCase).Parse();
}

}  // namespace tessaloom::vbscript
