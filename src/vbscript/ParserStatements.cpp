#include "vbscript/Error.h"
#include "vbscript/Parser.h"
#include "vbscript/ParserNesting.h"

namespace tessaloom::vbscript {

using syntax::Branch;
using syntax::ExpressionKind;
using syntax::RoutineKind;
using syntax::StatementKind;

namespace {

bool EndsBlock(TokenKind kind) {
    switch (kind) {
        case TokenKind::End:
        case TokenKind::Else:
        case TokenKind::ElseIf:
        case TokenKind::Case:
        case TokenKind::Loop:
        case TokenKind::Next:
        case TokenKind::WEnd:
        case TokenKind::EndOfText:
            return true;
        default:
            return false;
    }
}

bool IsBinaryOperator(TokenKind kind) {
    switch (kind) {
        case TokenKind::And:
        case TokenKind::Or:
        case TokenKind::Xor:
        case TokenKind::Eqv:
        case TokenKind::Imp:
        case TokenKind::Is:
        case TokenKind::Mod:
            return true;
        default:
            return kind >= TokenKind::Plus && kind <= TokenKind::GreaterOrEqual;
    }
}

}  // namespace

Parser::Statement* Parser::NewStatement(StatementKind kind, Position at) {
    Statement statement{};
    statement.kind = kind;
    statement.at = at;
    return tree_->New(statement);
}

void Parser::ParseOuterStatements() {
    const syntax::Block body = ParseBlock();
    switch (token_.kind) {
        case TokenKind::EndOfText:
            break;
        case TokenKind::Loop:
            Fail(1038);
        case TokenKind::Next:
            Fail(1055);
        default:
            Fail(1024);
    }
    tree_->main.body = body;
}

syntax::Block Parser::ParseBlock() {
    std::vector<Statement*> list;
    ++scope_.blocks;
    for (SkipSeparators(); !EndsBlock(token_.kind); SkipSeparators()) ParseLine(list);
    --scope_.blocks;
    return tree_->Keep(list);
}

/// Procedures and classes stand in no block.
void Parser::RequireOutermost() const {
    if (scope_.routine != RoutineKind::Main || scope_.blocks > 1) Fail(1002);
}

/// One statement and a look at what follows it. An If on one line may have taken the colon before a Next.
void Parser::ParseLine(std::vector<Statement*>& list) {
    const bool isIf = Is(TokenKind::If);
    ParseStatement(list);
    if (!(isIf && EndsBlock(token_.kind))) ExpectStatementEnd();
}

syntax::Block Parser::ParseInlineBlock() {
    std::vector<Statement*> list;
    ++scope_.blocks;
    for (;;) {
        while (Accept(TokenKind::Colon)) {}
        if (Is(TokenKind::NewLine) || EndsBlock(token_.kind)) break;
        ParseLine(list);
    }
    --scope_.blocks;
    return tree_->Keep(list);
}

void Parser::ParseStatement(std::vector<Statement*>& list) {
    const ParserNesting nesting(nesting_, DeepestNesting, token_.at);
    const Position at = token_.at;
    if (Is(TokenKind::Option)) return ParseOption();
    anyStatement_ = true;
    switch (token_.kind) {
        case TokenKind::Set:
            return ParseSet(list);
        case TokenKind::Call:
            return ParseCall(list);
        case TokenKind::If:
            return ParseIf(list);
        case TokenKind::Select:
            return ParseSelect(list);
        case TokenKind::For:
            return ParseFor(list);
        case TokenKind::Do:
            return ParseDo(list);
        case TokenKind::While:
            return ParseWhile(list);
        case TokenKind::With:
            return ParseWith(list);
        case TokenKind::Exit:
            return ParseExit(list);
        case TokenKind::On:
            return ParseOnError(list);
        case TokenKind::ReDim:
            return ParseReDim(list);
        case TokenKind::Stop:
            return Advance();
        case TokenKind::Dim:
            Advance();
            return ParseVariables(scope_.variables, false);
        case TokenKind::Const:
            Advance();
            return ParseConstants(scope_.constants);
        case TokenKind::Public:
        case TokenKind::Private:
            return ParseVisible();
        case TokenKind::Class:
            return ParseClass();
        case TokenKind::Sub:
        case TokenKind::Function:
            RequireOutermost();
            tree_->routines.push_back(ParseRoutine(false, false, false));
            return;
        case TokenKind::Identifier:
            if (IsWord(Word::Erase) && Peek().kind == TokenKind::Identifier) return ParseErase(list);
            if (IsWord(Word::Property) && !inClass_ &&
                (Peek().kind == TokenKind::Set || Peek().name == static_cast<NameId>(Word::Get) ||
                 Peek().name == static_cast<NameId>(Word::Let)))
                FailAt(1048, at);
            return ParseAssignmentOrCall(list);
        case TokenKind::Me:
        case TokenKind::Dot:
            return ParseAssignmentOrCall(list);
        default:
            Fail(1024);
    }
}

void Parser::ParseAssignmentOrCall(std::vector<Statement*>& list) {
    const Position at = token_.at;
    Expression* target = nullptr;
    if (Is(TokenKind::Me)) {
        if (!inClass_) Fail(1037);
        target = NewExpression(ExpressionKind::Me, at);
        Advance();
    } else {
        const bool isMember = Accept(TokenKind::Dot);
        target = NewExpression(isMember ? ExpressionKind::WithMember : ExpressionKind::Name, at);
        target->name = ExpectName();
    }
    target = ParsePostfix(target, true);
    if (Is(TokenKind::Equal)) {
        if (target->kind == ExpressionKind::Me) Fail(1037);
        Advance();
        Statement* const statement = NewStatement(StatementKind::Let, at);
        statement->target = target;
        statement->value = ParseExpression();
        list.push_back(statement);
        return;
    }
    Statement* const statement = NewStatement(StatementKind::Invoke, at);
    statement->target = target;
    ParseInvocation(*statement);
    list.push_back(statement);
}

/// The arguments of a call as a statement. What looks like a call with one argument in parentheses is an
/// argument that begins with a parenthesis.
void Parser::ParseInvocation(Statement& statement) {
    Expression* const target = statement.target;
    if (target->kind != ExpressionKind::Call) {
        if (!AtStatementEnd()) statement.arguments = ParseArguments(TokenKind::NewLine);
        return;
    }
    statement.target = target->left;
    if (AtStatementEnd() && target->arguments.size() > 1) Fail(1044);
    if (target->arguments.empty()) return;
    if (target->arguments.size() > 1 || !target->arguments[0]) Fail(1025);
    Expression* first = NewExpression(ExpressionKind::Parenthesized, target->at);
    first->left = target->arguments[0];
    if (IsBinaryOperator(token_.kind)) first = ParseBinaryTail(first, 1);
    std::vector<Expression*> arguments{first};
    if (Accept(TokenKind::Comma)) {
        const std::span<Expression*> others = ParseArguments(TokenKind::NewLine);
        arguments.insert(arguments.end(), others.begin(), others.end());
    }
    statement.arguments = tree_->Keep(arguments);
}

void Parser::ParseSet(std::vector<Statement*>& list) {
    Statement* const statement = NewStatement(StatementKind::Set, token_.at);
    Advance();
    const Position at = token_.at;
    if (!Is(TokenKind::Identifier) && !Is(TokenKind::Dot) && !Is(TokenKind::Me)) Fail(1010);
    statement->target = ParsePrimary();
    if (statement->target->kind == ExpressionKind::Me) FailAt(1037, at);
    Expect(TokenKind::Equal, 1011);
    statement->value = ParseExpression();
    list.push_back(statement);
}

void Parser::ParseCall(std::vector<Statement*>& list) {
    Statement* const statement = NewStatement(StatementKind::Invoke, token_.at);
    Advance();
    if (!Is(TokenKind::Identifier) && !Is(TokenKind::Dot) && !Is(TokenKind::Me)) Fail(1010);
    statement->target = ParsePrimary();
    if (statement->target->kind == ExpressionKind::Call) {
        statement->arguments = statement->target->arguments;
        statement->target = statement->target->left;
    }
    list.push_back(statement);
}

void Parser::ParseIf(std::vector<Statement*>& list) {
    Statement* const statement = NewStatement(StatementKind::If, token_.at);
    Advance();
    Expression* const condition = ParseExpression();
    Expect(TokenKind::Then, 1017);
    if (Is(TokenKind::NewLine))
        ParseBlockIf(*statement, condition);
    else
        ParseInlineIf(*statement, condition);
    list.push_back(statement);
}

void Parser::ParseInlineIf(Statement& statement, Expression* condition) {
    ++scope_.inlineIfs;
    std::vector<Branch> branches;
    branches.push_back({tree_->Keep(std::vector<Expression*>{condition}), ParseInlineBlock(), statement.at});
    if (Accept(TokenKind::Else)) branches.push_back({{}, ParseInlineBlock(), token_.at});
    --scope_.inlineIfs;
    if (Is(TokenKind::End) && Peek().kind == TokenKind::If) {
        Advance();
        Advance();
    }
    statement.branches = tree_->Keep(branches);
}

void Parser::ParseBlockIf(Statement& statement, Expression* condition) {
    const int inlineIfs = std::exchange(scope_.inlineIfs, 0);
    std::vector<Branch> branches;
    branches.push_back({tree_->Keep(std::vector<Expression*>{condition}), ParseBlock(), statement.at});
    for (;;) {
        const Position at = token_.at;
        if (Accept(TokenKind::ElseIf)) {
            Expression* const test = ParseExpression();
            Expect(TokenKind::Then, 1017);
            branches.push_back({tree_->Keep(std::vector<Expression*>{test}), ParseBlock(), at});
        } else if (Accept(TokenKind::Else)) {
            branches.push_back({{}, ParseBlock(), at});
            break;
        } else {
            break;
        }
    }
    FinishBlock(TokenKind::If, 1012);
    scope_.inlineIfs = inlineIfs;
    statement.branches = tree_->Keep(branches);
}

void Parser::ParseSelect(std::vector<Statement*>& list) {
    Statement* const statement = NewStatement(StatementKind::Select, token_.at);
    Advance();
    Expect(TokenKind::Case, 1021);
    statement->value = ParseExpression();
    ExpectStatementEnd();
    SkipSeparators();
    std::vector<Branch> branches;
    while (Is(TokenKind::Case)) {
        const Position at = token_.at;
        Advance();
        std::vector<Expression*> tests;
        const bool isElse = Accept(TokenKind::Else);
        if (!isElse) {
            do {
                tests.push_back(ParseExpression());
            } while (Accept(TokenKind::Comma));
        }
        branches.push_back({tree_->Keep(tests), ParseBlock(), at});
        if (isElse) break;
    }
    if (!Is(TokenKind::End) && !Is(TokenKind::EndOfText)) Fail(1021);
    FinishBlock(TokenKind::Select, 1022);
    statement->branches = tree_->Keep(branches);
    list.push_back(statement);
}

void Parser::ParseFor(std::vector<Statement*>& list) {
    Statement* const statement = NewStatement(StatementKind::For, token_.at);
    Advance();
    if (Accept(TokenKind::Each)) {
        statement->kind = StatementKind::ForEach;
        statement->name = ExpectName();
        Expect(TokenKind::In, 1046);
        statement->value = ParseExpression();
    } else {
        const Position at = token_.at;
        statement->name = ExpectName();
        if (Is(TokenKind::Dot) || Is(TokenKind::OpenParenthesis)) FailAt(1040, at);
        Expect(TokenKind::Equal, 1011);
        statement->value = ParseExpression();
        Expect(TokenKind::To, 1013);
        statement->limit = ParseExpression();
        if (AcceptWord(Word::Step)) statement->step = ParseExpression();
    }
    ExpectStatementEnd();
    ++scope_.loopsFor;
    statement->body = ParseBlock();
    --scope_.loopsFor;
    statement->endAt = token_.at;
    Expect(TokenKind::Next, 1020);
    list.push_back(statement);
}

void Parser::ParseDo(std::vector<Statement*>& list) {
    Statement* const statement = NewStatement(StatementKind::Do, token_.at);
    Advance();
    const bool atStart = ParseLoopTest(*statement);
    ++scope_.loopsDo;
    statement->body = ParseBlock();
    --scope_.loopsDo;
    statement->endAt = token_.at;
    Expect(TokenKind::Loop, 1019);
    if (atStart)
        ExpectStatementEnd();
    else
        statement->flag2 = ParseLoopTest(*statement);
    list.push_back(statement);
}

/// While or Until with its condition, or the end of the statement (false).
bool Parser::ParseLoopTest(Statement& statement) {
    if (AtStatementEnd()) return false;
    if (Accept(TokenKind::Until))
        statement.flag = true;
    else
        Expect(TokenKind::While, 1028);
    statement.value = ParseExpression();
    ExpectStatementEnd();
    return true;
}

void Parser::ParseWhile(std::vector<Statement*>& list) {
    Statement* const statement = NewStatement(StatementKind::While, token_.at);
    Advance();
    statement->value = ParseExpression();
    ExpectStatementEnd();
    statement->body = ParseBlock();
    statement->endAt = token_.at;
    Expect(TokenKind::WEnd, 1018);
    list.push_back(statement);
}

void Parser::ParseWith(std::vector<Statement*>& list) {
    Statement* const statement = NewStatement(StatementKind::With, token_.at);
    Advance();
    statement->value = ParseExpression();
    ExpectStatementEnd();
    ++scope_.withs;
    statement->body = ParseBlock();
    --scope_.withs;
    statement->endAt = token_.at;
    FinishBlock(TokenKind::With, 1029);
    list.push_back(statement);
}

void Parser::ParseExit(std::vector<Statement*>& list) {
    const Position at = token_.at;
    Advance();
    StatementKind kind = StatementKind::ExitRoutine;
    bool valid = false;
    if (Is(TokenKind::Do)) {
        kind = StatementKind::ExitDo;
        valid = scope_.loopsDo > 0;
    } else if (Is(TokenKind::For)) {
        kind = StatementKind::ExitFor;
        valid = scope_.loopsFor > 0;
    } else if (Is(TokenKind::Sub)) {
        valid = scope_.routine == RoutineKind::Sub;
    } else if (Is(TokenKind::Function)) {
        valid = scope_.routine == RoutineKind::Function;
    } else if (IsWord(Word::Property)) {
        valid = scope_.routine >= RoutineKind::PropertyGet;
    }
    if (!valid) Fail(1039);
    Advance();
    list.push_back(NewStatement(kind, at));
}

void Parser::ParseOnError(std::vector<Statement*>& list) {
    const Position at = token_.at;
    Advance();
    if (!AcceptWord(Word::Error)) Fail(1002);
    if (Accept(TokenKind::Resume)) {
        Expect(TokenKind::Next, 1020);
        list.push_back(NewStatement(StatementKind::ResumeNext, at));
        return;
    }
    Expect(TokenKind::GoTo, 1002);
    if (!Is(TokenKind::Literal) || !token_.literal.Is(VarType::Integer) || token_.literal.Whole() != 0)
        Fail(1002);
    Advance();
    list.push_back(NewStatement(StatementKind::ErrorGoTo0, at));
}

/// Option Explicit, once and before anything else.
void Parser::ParseOption() {
    if (anyStatement_) Fail(1024);
    anyStatement_ = true;
    Advance();
    if (!AcceptWord(Word::Explicit)) Fail(1002);
    tree_->explicitNames = true;
}

void Parser::ParseReDim(std::vector<Statement*>& list) {
    const Position at = token_.at;
    Advance();
    const bool preserve = IsWord(Word::Preserve) && Peek().kind == TokenKind::Identifier;
    if (preserve) Advance();
    do {
        if (!Is(TokenKind::Identifier) && !Is(TokenKind::Dot) && !Is(TokenKind::Me)) Fail(1010);
        Statement* const statement = NewStatement(StatementKind::ReDim, at);
        statement->flag = preserve;
        statement->target = ParsePrimary();
        if (statement->target->kind != ExpressionKind::Call) Fail(1005);
        if (statement->target->arguments.empty()) Fail(1002);
        list.push_back(statement);
    } while (Accept(TokenKind::Comma));
}

void Parser::ParseErase(std::vector<Statement*>& list) {
    const Position at = token_.at;
    Advance();
    do {
        Statement* const statement = NewStatement(StatementKind::Erase, at);
        statement->target = ParsePrimary();
        list.push_back(statement);
    } while (Accept(TokenKind::Comma));
}

void Parser::FinishBlock(TokenKind closing, int otherwise) {
    Expect(TokenKind::End, 1014);
    Expect(closing, otherwise);
}

}  // namespace tessaloom::vbscript
