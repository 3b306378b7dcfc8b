#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "vbscript/Lexer.h"
#include "vbscript/Syntax.h"

namespace tessaloom::vbscript {

/// Makes the tree of a program. Throws SyntaxError with the number, line and column of the first mistake.
class Parser {
public:
    /// How deep expressions and blocks may nest, so that no text can exhaust the machine stack; beyond it the
    /// program is refused with error 1001.
    static constexpr int DeepestNesting = 1000;

    Parser(std::u16string_view text, Names& names, int currentYear);

    std::unique_ptr<syntax::ProgramTree> ParseProgram();

    /// A text that is one expression: the `value` of the only statement of `main`.
    std::unique_ptr<syntax::ProgramTree> ParseExpressionText();

private:
    using Expression = syntax::Expression;
    using Statement = syntax::Statement;

    /// @name Tokens
    /// @{
    void Advance();
    const Token& Peek();
    bool Is(TokenKind kind) const { return token_.kind == kind; }
    bool IsWord(Word word) const {
        return token_.kind == TokenKind::Identifier && token_.name == static_cast<NameId>(word);
    }
    bool Accept(TokenKind kind);
    bool AcceptWord(Word word);
    void Expect(TokenKind kind, int otherwise);
    NameId ExpectName();
    bool AtStatementEnd() const;
    void ExpectStatementEnd();
    void SkipSeparators();
    [[noreturn]] void Fail(int number) const;
    [[noreturn]] static void FailAt(int number, Position at);
    /// @}

    /// @name Expressions
    /// @{
    Expression* ParseExpression(int lowest = 1);
    Expression* ParseBinaryTail(Expression* left, int lowest);
    Expression* ParseOperand();
    Expression* ParsePrimary();
    Expression* ParsePostfix(Expression* expression, bool isStatement);
    Expression* ParseConstant();
    std::span<Expression*> ParseArguments(TokenKind closing);
    Expression* NewExpression(syntax::ExpressionKind kind, Position at);
    /// @}

    /// @name Statements
    /// @{
    void ParseOuterStatements();
    void RequireOutermost() const;
    syntax::Block ParseBlock();
    void ParseLine(std::vector<Statement*>& list);
    syntax::Block ParseInlineBlock();
    void ParseStatement(std::vector<Statement*>& list);
    void ParseAssignmentOrCall(std::vector<Statement*>& list);
    void ParseInvocation(Statement& statement);
    void ParseSet(std::vector<Statement*>& list);
    void ParseCall(std::vector<Statement*>& list);
    void ParseIf(std::vector<Statement*>& list);
    void ParseInlineIf(Statement& statement, Expression* condition);
    void ParseBlockIf(Statement& statement, Expression* condition);
    void ParseSelect(std::vector<Statement*>& list);
    void ParseFor(std::vector<Statement*>& list);
    void ParseDo(std::vector<Statement*>& list);
    bool ParseLoopTest(Statement& statement);
    void ParseWhile(std::vector<Statement*>& list);
    void ParseWith(std::vector<Statement*>& list);
    void ParseExit(std::vector<Statement*>& list);
    void ParseOnError(std::vector<Statement*>& list);
    void ParseOption();
    void ParseReDim(std::vector<Statement*>& list);
    void ParseErase(std::vector<Statement*>& list);
    void FinishBlock(TokenKind closing, int otherwise);
    Statement* NewStatement(syntax::StatementKind kind, Position at);
    /// @}

    /// @name Declarations
    /// @{
    void ParseVariables(std::vector<syntax::VariableDeclaration>& list, bool isPrivate);
    void ParseConstants(std::vector<syntax::ConstantDeclaration>& list);
    void ParseVisible();
    syntax::RoutineDeclaration* ParseRoutine(bool isPrivate, bool isDefault, bool inClass);
    std::span<syntax::Parameter> ParseParameters();
    void ParseClass();
    void ParseClassMember(std::vector<syntax::VariableDeclaration>& fields,
                          std::vector<syntax::RoutineDeclaration*>& routines);
    void CheckClass(const syntax::ClassDeclaration& declaration,
                    const std::vector<syntax::RoutineDeclaration*>& routines);
    /// @}

    /// What is being parsed around the current statement.
    struct Scope {
        syntax::RoutineKind routine = syntax::RoutineKind::Main;
        int loopsFor = 0;
        int loopsDo = 0;
        int withs = 0;
        int inlineIfs = 0;
        int blocks = 0;  ///< The outermost one counts.
        std::vector<syntax::VariableDeclaration> variables;
        std::vector<syntax::ConstantDeclaration> constants;
    };

    Names& names_;
    Lexer lexer_;
    Token token_;
    Token ahead_;
    bool hasAhead_ = false;
    bool anyStatement_ = false;
    bool inClass_ = false;
    int nesting_ = 0;
    Scope scope_;
    std::unique_ptr<syntax::ProgramTree> tree_;
};

}  // namespace tessaloom::vbscript
