#include "vbscript/RegExpProgram.h"

#include "vbscript/RegExpSyntax.h"

namespace tessaloom::vbscript {

namespace {

class Compiler {
public:
    explicit Compiler(RegExpSyntax syntax) : syntax_(std::move(syntax)) {
        program_.groups = syntax_.groups;
        program_.registers = 2 * (syntax_.groups + 1);
        empty_.resize(syntax_.nodes.size());
        for (std::size_t i = 0; i < empty_.size(); ++i) empty_[i] = MayBeEmpty(syntax_.nodes[i]);
    }

    RegExpProgram Compile() {
        Emit(syntax_.root);
        Put({Op::Match});
        FindFirst();
        program_.sets = std::move(syntax_.sets);
        return std::move(program_);
    }

private:
    using Op = RegExpProgram::Op;
    using Instruction = RegExpProgram::Instruction;
    using Kind = RegExpSyntax::Kind;
    using Node = RegExpSyntax::Node;

    static constexpr std::uint32_t Unlimited = RegExpProgram::Unlimited;

    std::uint32_t Here() const { return static_cast<std::uint32_t>(program_.code.size()); }
    std::uint32_t Put(Instruction instruction) {
        program_.code.push_back(instruction);
        return Here() - 1;
    }
    void LandHere(std::uint32_t jump) { program_.code[jump].target = Here(); }
    std::uint32_t TwoRegisters() {
        program_.registers += 2;
        return program_.registers - 2;
    }

    static bool IsOneUnit(const Node& node) {
        return node.kind == Kind::Unit || node.kind == Kind::Any || node.kind == Kind::Set;
    }

    /// Children stand before their parents.
    bool MayBeEmpty(const Node& node) const {
        switch (node.kind) {
            case Kind::Unit:
            case Kind::Any:
            case Kind::Set:
                return false;
            case Kind::Group:
                return empty_[node.children[0]];
            case Kind::Repeat:
                return node.least == 0 || empty_[node.children[0]];
            case Kind::Sequence:
                for (const std::uint32_t child : node.children)
                    if (!empty_[child]) return false;
                return true;
            case Kind::Alternation:
                for (const std::uint32_t child : node.children)
                    if (empty_[child]) return true;
                return false;
            default:
                return true;
        }
    }

    void Emit(std::uint32_t index) {
        const Node& node = syntax_.nodes[index];
        switch (node.kind) {
            case Kind::Unit:
                Put({Op::Unit, node.value});
                break;
            case Kind::Any:
                Put({Op::Any});
                break;
            case Kind::Set:
                Put({Op::Set, node.value});
                break;
            case Kind::Begin:
                Put({Op::Begin});
                break;
            case Kind::End:
                Put({Op::End});
                break;
            case Kind::Boundary:
                Put({Op::Boundary});
                break;
            case Kind::NotBoundary:
                Put({Op::NotBoundary});
                break;
            case Kind::Back:
                Put({Op::Back, node.value});
                break;
            case Kind::Group:
                EmitGroup(node);
                break;
            case Kind::Look:
            case Kind::LookNot:
                EmitLook(node);
                break;
            case Kind::Repeat:
                EmitRepeat(node);
                break;
            case Kind::Sequence:
                for (const std::uint32_t child : node.children) Emit(child);
                break;
            case Kind::Alternation:
                EmitAlternation(node);
                break;
        }
    }

    void EmitGroup(const Node& node) {
        Put({Op::Save, 2 * node.value});
        Emit(node.children[0]);
        Put({Op::Save, 2 * node.value + 1});
    }

    void EmitLook(const Node& node) {
        const std::uint32_t state = TwoRegisters();
        const bool wanted = node.kind == Kind::Look;
        const std::uint32_t begin = Put({wanted ? Op::Look : Op::LookNot, state});
        Emit(node.children[0]);
        Put({wanted ? Op::LookEnd : Op::LookNotEnd, state});
        LandHere(begin);
    }

    void EmitAlternation(const Node& node) {
        std::vector<std::uint32_t> exits;
        for (std::size_t i = 0; i + 1 < node.children.size(); ++i) {
            const std::uint32_t split = Put({Op::Split});
            Emit(node.children[i]);
            exits.push_back(Put({Op::Jump}));
            LandHere(split);
        }
        Emit(node.children.back());
        for (const std::uint32_t exit : exits) LandHere(exit);
    }

    /// The node itself, or the only one in it.
    std::uint32_t Unwrapped(std::uint32_t index) const {
        const Node& node = syntax_.nodes[index];
        return node.kind == Kind::Sequence && node.children.size() == 1 ? Unwrapped(node.children[0]) : index;
    }

    void EmitRepeat(const Node& node) {
        const std::uint32_t child = Unwrapped(node.children[0]);
        if (node.most == 0) return;
        if (node.least == 1 && node.most == 1) return Emit(child);
        if (IsOneUnit(syntax_.nodes[child])) {
            Put({node.lazy ? Op::LazyRun : Op::Run, 0, 0, node.least, node.most});
            return Emit(child);
        }
        const Op split = node.lazy ? Op::LazySplit : Op::Split;
        if (empty_[child] || node.least > 1 || (node.most != Unlimited && node.most > 1))
            return EmitCounted(node);
        const std::uint32_t begin = node.least == 0 ? Put({split}) : 0;
        const std::uint32_t body = Here();
        Emit(child);
        if (node.least == 1) {
            // Back to the body first, or on first: the other sense of the two splits.
            Put({node.lazy ? Op::Split : Op::LazySplit, 0, body});
        } else {
            if (node.most == Unlimited) Put({Op::Jump, 0, begin});
            LandHere(begin);
        }
    }

    void EmitCounted(const Node& node) {
        const std::uint32_t state = TwoRegisters();
        Put({Op::LoopInit, state});
        const std::uint32_t loop =
            Put({node.lazy ? Op::LazyLoop : Op::Loop, state, 0, node.least, node.most});
        Put({Op::LoopRound, state});
        Emit(node.children[0]);
        Put({Op::LoopEnd, state, loop, node.least});
        LandHere(loop);
    }

    void FindFirst() {
        const Node& root = syntax_.nodes[syntax_.root];
        const Node& start =
            root.kind == Kind::Sequence && !root.children.empty() ? syntax_.nodes[root.children[0]] : root;
        program_.atBeginOnly = start.kind == Kind::Begin;
        program_.firstKnown = !empty_[syntax_.root];
        if (program_.firstKnown) AddFirst(syntax_.root);
    }

    /// Adds the units with which `index` may begin, for those up to the first that is never empty.
    void AddFirst(std::uint32_t index) {
        const Node& node = syntax_.nodes[index];
        switch (node.kind) {
            case Kind::Unit:
                if (node.value < program_.first.size()) program_.first[node.value] = true;
                break;
            case Kind::Any:
                program_.first.set();
                break;
            case Kind::Set:
                for (std::size_t unit = 0; unit < program_.first.size(); ++unit)
                    if (syntax_.sets[node.value].Contains(static_cast<char16_t>(unit)))
                        program_.first[unit] = true;
                break;
            case Kind::Back:
                program_.first.set();
                break;
            case Kind::Group:
            case Kind::Repeat:
                AddFirst(node.children[0]);
                break;
            case Kind::Alternation:
                for (const std::uint32_t child : node.children) AddFirst(child);
                break;
            case Kind::Sequence:
                for (const std::uint32_t child : node.children) {
                    AddFirst(child);
                    if (!empty_[child]) break;
                }
                break;
            default:
                break;  // takes no unit
        }
    }

    RegExpSyntax syntax_;
    RegExpProgram program_;
    std::vector<bool> empty_;  ///< By node: it can match without a unit.
};

}  // namespace

RegExpProgram CompileRegExp(std::u16string_view pattern, bool ignoreCase, bool multiLine) {
    RegExpProgram program = Compiler(ParseRegExp(pattern, ignoreCase)).Compile();
    program.ignoreCase = ignoreCase;
    program.multiLine = multiLine;
    program.atBeginOnly = program.atBeginOnly && !multiLine;
    return program;
}

}  // namespace tessaloom::vbscript
