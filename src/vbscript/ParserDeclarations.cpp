#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "vbscript/Error.h"
#include "vbscript/Parser.h"

namespace tessaloom::vbscript {

using syntax::ClassDeclaration;
using syntax::ConstantDeclaration;
using syntax::Parameter;
using syntax::RoutineDeclaration;
using syntax::RoutineKind;
using syntax::VariableDeclaration;

namespace {

bool IsProperty(RoutineKind kind) { return kind >= RoutineKind::PropertyGet; }

/// The arguments that all parts of a property have in common; an assignment has one more.
std::size_t SharedArguments(const RoutineDeclaration& routine) {
    const bool assigns = routine.kind == RoutineKind::PropertyLet || routine.kind == RoutineKind::PropertySet;
    return routine.parameters.size() - (assigns ? 1 : 0);
}

}  // namespace

void Parser::ParseVariables(std::vector<VariableDeclaration>& list, bool isPrivate) {
    do {
        VariableDeclaration variable{};
        variable.at = token_.at;
        variable.isPrivate = isPrivate;
        variable.name = ExpectName();
        list.push_back(variable);
        if (!Accept(TokenKind::OpenParenthesis)) continue;
        std::vector<int> bounds;
        while (!Is(TokenKind::CloseParenthesis)) {
            const bool isWhole = Is(TokenKind::Literal) &&
                                 (token_.literal.Is(VarType::Integer) || token_.literal.Is(VarType::Long));
            if (!isWhole || token_.literal.Whole() < 0) Fail(1026);
            bounds.push_back(token_.literal.Whole());
            Advance();
            if (!Is(TokenKind::CloseParenthesis)) {
                Expect(TokenKind::Comma, 1006);
                if (Is(TokenKind::CloseParenthesis)) Fail(1026);
            }
        }
        Advance();
        list.back().isArray = true;
        list.back().bounds = tree_->Keep(bounds);
    } while (Accept(TokenKind::Comma));
}

void Parser::ParseConstants(std::vector<ConstantDeclaration>& list) {
    do {
        ConstantDeclaration constant{};
        constant.at = token_.at;
        constant.name = ExpectName();
        Expect(TokenKind::Equal, 1011);
        while (Is(TokenKind::Minus) || Is(TokenKind::Plus)) {
            if (Is(TokenKind::Minus)) constant.negated = !constant.negated;
            Advance();
        }
        switch (token_.kind) {
            case TokenKind::Literal:
            case TokenKind::True:
            case TokenKind::False:
            case TokenKind::Null:
            case TokenKind::Nothing:
            case TokenKind::Empty:
                break;
            default:
                Fail(1045);
        }
        constant.index = ParseConstant()->index;
        list.push_back(constant);
    } while (Accept(TokenKind::Comma));
}

void Parser::ParseVisible() {
    const bool isPrivate = Is(TokenKind::Private);
    if (scope_.routine != RoutineKind::Main) Fail(1002);
    Advance();
    if (Accept(TokenKind::Const)) return ParseConstants(scope_.constants);
    if (Is(TokenKind::Sub) || Is(TokenKind::Function)) {
        RequireOutermost();
        tree_->routines.push_back(ParseRoutine(isPrivate, false, false));
        return;
    }
    const TokenKind next = Is(TokenKind::Identifier) ? Peek().kind : TokenKind::EndOfText;
    if (IsWord(Word::Property) && (next == TokenKind::Identifier || next == TokenKind::Set)) Fail(1048);
    if (IsWord(Word::Default) && (next == TokenKind::Sub || next == TokenKind::Function)) Fail(1048);
    Accept(TokenKind::Dim);
    ParseVariables(scope_.variables, isPrivate);
}

/// From Sub, Function or Property to its End.
RoutineDeclaration* Parser::ParseRoutine(bool isPrivate, bool isDefault, bool inClass) {
    RoutineDeclaration routine{};
    routine.isPrivate = isPrivate;
    routine.isDefault = isDefault;
    const Position start = token_.at;
    if (Accept(TokenKind::Sub)) {
        routine.kind = RoutineKind::Sub;
    } else if (Accept(TokenKind::Function)) {
        routine.kind = RoutineKind::Function;
    } else {
        Advance();
        if (AcceptWord(Word::Get))
            routine.kind = RoutineKind::PropertyGet;
        else if (AcceptWord(Word::Let))
            routine.kind = RoutineKind::PropertyLet;
        else if (Accept(TokenKind::Set))
            routine.kind = RoutineKind::PropertySet;
        else
            Fail(1049);
        if (isDefault && routine.kind != RoutineKind::PropertyGet) FailAt(1058, start);
    }
    routine.at = token_.at;
    routine.name = ExpectName();
    if (Accept(TokenKind::OpenParenthesis)) routine.parameters = ParseParameters();
    if (routine.kind >= RoutineKind::PropertyLet && routine.parameters.empty()) FailAt(1054, routine.at);

    Scope outer = std::exchange(scope_, Scope());
    const bool outerInClass = std::exchange(inClass_, inClass);
    scope_.routine = routine.kind;
    routine.body = ParseBlock();
    routine.variables = tree_->Keep(scope_.variables);
    routine.constants = tree_->Keep(scope_.constants);
    scope_ = std::move(outer);
    inClass_ = outerInClass;

    Expect(TokenKind::End, 1014);
    if (routine.kind == RoutineKind::Sub)
        Expect(TokenKind::Sub, 1016);
    else if (routine.kind == RoutineKind::Function)
        Expect(TokenKind::Function, 1015);
    else if (!AcceptWord(Word::Property))
        Fail(1050);
    return tree_->New(routine);
}

std::span<Parameter> Parser::ParseParameters() {
    std::vector<Parameter> list;
    if (!Is(TokenKind::CloseParenthesis)) {
        do {
            Parameter parameter{};
            parameter.byValue = Accept(TokenKind::ByVal);
            if (!parameter.byValue) Accept(TokenKind::ByRef);
            parameter.at = token_.at;
            parameter.name = ExpectName();
            if (Accept(TokenKind::OpenParenthesis)) Expect(TokenKind::CloseParenthesis, 1006);
            list.push_back(parameter);
        } while (Accept(TokenKind::Comma));
    }
    Expect(TokenKind::CloseParenthesis, 1006);
    return tree_->Keep(list);
}

void Parser::ParseClass() {
    RequireOutermost();
    if (inClass_) Fail(1002);
    Advance();
    ClassDeclaration declaration{};
    declaration.at = token_.at;
    declaration.name = ExpectName();
    ExpectStatementEnd();
    std::vector<VariableDeclaration> fields;
    std::vector<RoutineDeclaration*> routines;
    for (SkipSeparators(); !Is(TokenKind::End) && !Is(TokenKind::EndOfText); SkipSeparators()) {
        ParseClassMember(fields, routines);
        ExpectStatementEnd();
    }
    FinishBlock(TokenKind::Class, 1047);
    declaration.fields = tree_->Keep(fields);
    declaration.routines = tree_->Keep(routines);
    CheckClass(declaration, routines);
    tree_->classes.push_back(tree_->New(declaration));
}

void Parser::ParseClassMember(std::vector<VariableDeclaration>& fields,
                              std::vector<RoutineDeclaration*>& routines) {
    const Position at = token_.at;
    const bool isPublic = Accept(TokenKind::Public);
    const bool isPrivate = !isPublic && Accept(TokenKind::Private);
    const bool isDim = !isPublic && !isPrivate && Accept(TokenKind::Dim);
    const auto startsRoutine = [&](TokenKind kind, const Token& token) {
        return kind == TokenKind::Sub || kind == TokenKind::Function ||
               (kind == TokenKind::Identifier && token.name == static_cast<NameId>(Word::Property));
    };
    bool isDefault = false;
    if (!isDim && IsWord(Word::Default)) {
        const Token& next = Peek();
        if (startsRoutine(next.kind, next)) {
            if (!isPublic) FailAt(1057, at);
            isDefault = true;
            Advance();
        } else if (next.kind == TokenKind::Identifier) {
            FailAt(1056, token_.at);
        }
    }
    if (!isDim && startsRoutine(token_.kind, token_)) {
        const bool isName = IsWord(Word::Property) && (isPublic || isPrivate) &&
                            Peek().kind != TokenKind::Identifier && Peek().kind != TokenKind::Set;
        if (!isName) {
            routines.push_back(ParseRoutine(isPrivate, isDefault, true));
            return;
        }
    }
    if (!isPublic && !isPrivate && !isDim) Fail(1002);
    Accept(TokenKind::Dim);
    ParseVariables(fields, isPrivate);
}

/// Field and method names are unique; the parts of a property share one name and agree on their arguments.
void Parser::CheckClass(const ClassDeclaration& declaration,
                        const std::vector<RoutineDeclaration*>& routines) {
    const NameId initialize = names_.Intern(u"Class_Initialize"),
                 terminate = names_.Intern(u"Class_Terminate");
    std::unordered_set<NameId> fields;
    for (const VariableDeclaration& field : declaration.fields)
        if (!fields.insert(field.name).second) FailAt(1041, field.at);
    std::unordered_multimap<NameId, const RoutineDeclaration*> known;
    bool hasDefault = false;
    for (const RoutineDeclaration* one : routines) {
        const RoutineDeclaration& routine = *one;
        if (routine.isDefault && std::exchange(hasDefault, true)) FailAt(1052, routine.at);
        if (fields.contains(routine.name)) FailAt(1041, routine.at);
        const bool isEvent = routine.name == initialize || routine.name == terminate;
        if (isEvent && !routine.parameters.empty()) FailAt(1053, routine.at);
        const auto [begin, end] = known.equal_range(routine.name);
        for (auto place = begin; place != end; ++place) {
            const RoutineDeclaration& other = *place->second;
            if (!IsProperty(other.kind) || !IsProperty(routine.kind) || other.kind == routine.kind)
                FailAt(1041, routine.at);
            if (SharedArguments(other) != SharedArguments(routine)) FailAt(1051, routine.at);
        }
        known.emplace(routine.name, one);
    }
}

}  // namespace tessaloom::vbscript
