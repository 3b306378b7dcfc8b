#include "vbscript/Parser.h"

#include "vbscript/Error.h"
#include "vbscript/ParserNesting.h"

namespace tessaloom::vbscript {

using syntax::ExpressionKind;
using syntax::StatementKind;

namespace {

constexpr int ComparisonLevel = 7;

/// How tightly a binary operator binds, from Imp (1) to ^ (13); 0 for other tokens.
int LevelOf(TokenKind kind) {
    switch (kind) {
        case TokenKind::Imp:
            return 1;
        case TokenKind::Eqv:
            return 2;
        case TokenKind::Xor:
            return 3;
        case TokenKind::Or:
            return 4;
        case TokenKind::And:
            return 5;
        case TokenKind::Equal:
        case TokenKind::NotEqual:
        case TokenKind::Less:
        case TokenKind::Greater:
        case TokenKind::LessOrEqual:
        case TokenKind::GreaterOrEqual:
        case TokenKind::Is:
            return ComparisonLevel;
        case TokenKind::Ampersand:
            return 8;
        case TokenKind::Plus:
        case TokenKind::Minus:
            return 9;
        case TokenKind::Mod:
            return 10;
        case TokenKind::IntegerDivide:
            return 11;
        case TokenKind::Times:
        case TokenKind::Divide:
            return 12;
        case TokenKind::Power:
            return 13;
        default:
            return 0;
    }
}

}  // namespace

Parser::Parser(std::u16string_view text, Names& names, int currentYear)
    : names_(names), lexer_(text, names, currentYear), tree_(std::make_unique<syntax::ProgramTree>()) {
    Advance();
}

std::unique_ptr<syntax::ProgramTree> Parser::ParseProgram() {
    ParseOuterStatements();
    tree_->main.variables = tree_->Keep(scope_.variables);
    tree_->main.constants = tree_->Keep(scope_.constants);
    return std::move(tree_);
}

std::unique_ptr<syntax::ProgramTree> Parser::ParseExpressionText() {
    SkipSeparators();
    Statement* const statement = NewStatement(StatementKind::Let, token_.at);
    statement->value = ParseExpression();
    SkipSeparators();
    if (!Is(TokenKind::EndOfText)) Fail(1025);
    tree_->main.body = tree_->Keep(std::vector<Statement*>{statement});
    return std::move(tree_);
}

// Tokens

void Parser::Advance() {
    if (hasAhead_) {
        token_ = std::move(ahead_);
        hasAhead_ = false;
    } else {
        token_ = lexer_.Next();
    }
}

const Token& Parser::Peek() {
    if (!hasAhead_) {
        ahead_ = lexer_.Next();
        hasAhead_ = true;
    }
    return ahead_;
}

bool Parser::Accept(TokenKind kind) {
    if (!Is(kind)) return false;
    Advance();
    return true;
}

bool Parser::AcceptWord(Word word) {
    if (!IsWord(word)) return false;
    Advance();
    return true;
}

void Parser::Expect(TokenKind kind, int otherwise) {
    if (!Accept(kind)) Fail(otherwise);
}

NameId Parser::ExpectName() {
    if (!Is(TokenKind::Identifier)) Fail(1010);
    const NameId name = token_.name;
    Advance();
    return name;
}

bool Parser::AtStatementEnd() const {
    switch (token_.kind) {
        case TokenKind::NewLine:
        case TokenKind::Colon:
        case TokenKind::EndOfText:
            return true;
        case TokenKind::Else:
        case TokenKind::End:
            return scope_.inlineIfs > 0;
        default:
            return false;
    }
}

void Parser::ExpectStatementEnd() {
    if (!AtStatementEnd()) Fail(1025);
}

void Parser::SkipSeparators() {
    while (Is(TokenKind::NewLine) || Is(TokenKind::Colon)) Advance();
}

void Parser::Fail(int number) const { FailAt(number, token_.at); }

void Parser::FailAt(int number, Position at) { throw SyntaxError(number, at.line, at.column); }

// Expressions

Parser::Expression* Parser::NewExpression(ExpressionKind kind, Position at) {
    Expression expression{};
    expression.kind = kind;
    expression.at = at;
    return tree_->New(expression);
}

Parser::Expression* Parser::ParseExpression(int lowest) {
    const ParserNesting nesting(nesting_, DeepestNesting, token_.at);
    return ParseBinaryTail(ParseOperand(), lowest);
}

/// Goes on behind `left` with all operators that bind at least as tightly as `lowest`; each takes what is on
/// its left first.
Parser::Expression* Parser::ParseBinaryTail(Expression* left, int lowest) {
    for (;;) {
        const int level = LevelOf(token_.kind);
        if (level == 0 || level < lowest) return left;
        Expression* const binary = NewExpression(ExpressionKind::Binary, token_.at);
        binary->operation = token_.kind;
        Advance();
        binary->left = left;
        binary->right = ParseExpression(level + 1);
        left = binary;
    }
}

/// A sign binds more tightly than any operator, even ^; Not takes a whole comparison.
Parser::Expression* Parser::ParseOperand() {
    if (!Is(TokenKind::Not) && !Is(TokenKind::Minus) && !Is(TokenKind::Plus)) return ParsePrimary();
    const ParserNesting nesting(nesting_, DeepestNesting, token_.at);
    Expression* const unary = NewExpression(ExpressionKind::Unary, token_.at);
    unary->operation = token_.kind;
    Advance();
    unary->left = unary->operation == TokenKind::Not ? ParseExpression(ComparisonLevel) : ParseOperand();
    return unary;
}

Parser::Expression* Parser::ParsePrimary() {
    const Position at = token_.at;
    switch (token_.kind) {
        case TokenKind::Identifier: {
            Expression* const name = NewExpression(ExpressionKind::Name, at);
            name->name = token_.name;
            Advance();
            return ParsePostfix(name, false);
        }
        case TokenKind::Me: {
            if (!inClass_) Fail(1037);
            Advance();
            return ParsePostfix(NewExpression(ExpressionKind::Me, at), false);
        }
        case TokenKind::Dot: {
            Advance();
            Expression* const member = NewExpression(ExpressionKind::WithMember, at);
            member->name = ExpectName();
            return ParsePostfix(member, false);
        }
        case TokenKind::OpenParenthesis: {
            Advance();
            Expression* const inner = NewExpression(ExpressionKind::Parenthesized, at);
            inner->left = ParseExpression();
            Expect(TokenKind::CloseParenthesis, 1006);
            return ParsePostfix(inner, false);
        }
        case TokenKind::New: {
            Advance();
            Expression* const made = NewExpression(ExpressionKind::New, at);
            made->name = ExpectName();
            return made;
        }
        default:
            return ParseConstant();
    }
}

Parser::Expression* Parser::ParseConstant() {
    Value value;
    switch (token_.kind) {
        case TokenKind::Literal:
            value = token_.literal;
            break;
        case TokenKind::True:
            value = Value::OfBoolean(true);
            break;
        case TokenKind::False:
            value = Value::OfBoolean(false);
            break;
        case TokenKind::Null:
            value = Value::Null();
            break;
        case TokenKind::Nothing:
            value = Value::Nothing();
            break;
        case TokenKind::Empty:
            break;
        default:
            Fail(1002);
    }
    Expression* const constant = NewExpression(ExpressionKind::Constant, token_.at);
    constant->index = static_cast<std::uint32_t>(tree_->constants.size());
    tree_->constants.push_back(std::move(value));
    Advance();
    return constant;
}

/// Members and arguments behind `expression`. At the start of a statement inside With, " .Name" is an
/// argument, not a member.
Parser::Expression* Parser::ParsePostfix(Expression* expression, bool isStatement) {
    for (int length = 0;; ++length) {
        if (length > DeepestNesting) Fail(1001);
        const Position at = token_.at;
        if (Is(TokenKind::Dot)) {
            if (isStatement && token_.spaceBefore && scope_.withs > 0) return expression;
            Advance();
            Expression* const member = NewExpression(ExpressionKind::Member, at);
            member->left = expression;
            member->name = ExpectName();
            expression = member;
        } else if (Is(TokenKind::OpenParenthesis)) {
            Advance();
            Expression* const call = NewExpression(ExpressionKind::Call, at);
            call->left = expression;
            if (!Is(TokenKind::CloseParenthesis))
                call->arguments = ParseArguments(TokenKind::CloseParenthesis);
            Expect(TokenKind::CloseParenthesis, 1006);
            expression = call;
        } else {
            return expression;
        }
    }
}

/// At least one; an omitted argument is null. `closing` other than a parenthesis: up to the statement's end.
std::span<Parser::Expression*> Parser::ParseArguments(TokenKind closing) {
    std::vector<Expression*> list;
    const auto atEnd = [&] {
        return closing == TokenKind::CloseParenthesis ? Is(closing) : AtStatementEnd();
    };
    do {
        list.push_back(Is(TokenKind::Comma) || atEnd() ? nullptr : ParseExpression());
    } while (Accept(TokenKind::Comma));
    return tree_->Keep(list);
}

}  // namespace tessaloom::vbscript
