#pragma once

#include <cstdint>
#include <memory_resource>
#include <span>
#include <vector>

#include "vbscript/MemoryBudget.h"
#include "vbscript/Names.h"
#include "vbscript/Token.h"
#include "vbscript/Value.h"

/// The tree of a program, between parser and compiler. Nodes live in the arena of their `ProgramTree` and own
/// nothing.
namespace tessaloom::vbscript::syntax {

enum class ExpressionKind : std::uint8_t {
    Constant,       ///< `index` in `ProgramTree::constants`.
    Name,           ///< `name`.
    Member,         ///< `left` . `name`
    WithMember,     ///< . `name` of the innermost With.
    Call,           ///< `left` ( `arguments` ): an index, a call or a default member.
    Parenthesized,  ///< ( `left` ): passed by value.
    Unary,          ///< `operation` `left`: Not, Minus, Plus.
    Binary,         ///< `left` `operation` `right`.
    New,            ///< New `name`.
    Me,
};

struct Expression {
    ExpressionKind kind;
    TokenKind operation = TokenKind::EndOfText;
    NameId name = NoName;
    std::uint32_t index = 0;
    Position at;
    Expression* left = nullptr;
    Expression* right = nullptr;
    std::span<Expression*> arguments;  ///< Null where omitted between commas.
};

enum class StatementKind : std::uint8_t {
    Let,      ///< `target` = `value`
    Set,      ///< Set `target` = `value`
    Invoke,   ///< `target` called with `arguments`, its result dropped.
    ReDim,    ///< One `target` (a Call, or a Name for no bounds); `flag`: Preserve.
    Erase,    ///< `target`
    If,       ///< `branches`; the last one may lack a condition.
    Select,   ///< `value`, `cases`.
    For,      ///< `name` = `value` To `limit` Step `step`, `body`.
    ForEach,  ///< `name` In `value`, `body`.
    Do,       ///< `value` (may be null), `body`; `flag`: Until; `flag2`: the test is at the end.
    While,    ///< `value`, `body`.
    With,     ///< `value`, `body`.
    ExitDo,
    ExitFor,
    ExitRoutine,
    ResumeNext,  ///< On Error Resume Next
    ErrorGoTo0,  ///< On Error GoTo 0
    Define,      ///< A Const whose value is stored when it is passed by; nothing for locals.
};

struct Statement;
using Block = std::span<Statement*>;

/// A branch of If (`tests` has one expression or none) or a Case (none: Case Else).
struct Branch {
    std::span<Expression*> tests;
    Block body;
    Position at;
};

struct Statement {
    StatementKind kind;
    bool flag = false;
    bool flag2 = false;
    Position at;
    Position endAt;  ///< Of the Next, Loop or Wend.
    NameId name = NoName;
    Expression* target = nullptr;
    Expression* value = nullptr;
    Expression* limit = nullptr;
    Expression* step = nullptr;
    std::span<Expression*> arguments;
    std::span<Branch> branches;
    Block body;
};

struct VariableDeclaration {
    NameId name;
    Position at;
    bool isArray = false;
    bool isPrivate = false;
    std::span<const int> bounds;  ///< None and `isArray`: a dynamic array.
};

struct ConstantDeclaration {
    NameId name;
    Position at;
    std::uint32_t index;  ///< In `ProgramTree::constants`.
    bool negated = false;
};

struct Parameter {
    NameId name;
    Position at;
    bool byValue = false;
};

enum class RoutineKind : std::uint8_t { Main, Sub, Function, PropertyGet, PropertyLet, PropertySet };

struct RoutineDeclaration {
    RoutineKind kind;
    NameId name;
    Position at;
    bool isPrivate = false;
    bool isDefault = false;
    std::span<Parameter> parameters;
    std::span<VariableDeclaration> variables;
    std::span<ConstantDeclaration> constants;
    Block body;
};

struct ClassDeclaration {
    NameId name;
    Position at;
    std::span<VariableDeclaration> fields;
    std::span<RoutineDeclaration*> routines;
};

/// A whole program text, or (for Eval) one expression as the value of a single Let without target.
struct ProgramTree {
    BudgetResource budget;
    std::pmr::monotonic_buffer_resource arena{16 * 1024, &budget};
    BudgetVector<Value> constants;
    bool explicitNames = false;
    RoutineDeclaration main{RoutineKind::Main, NoName, {}, false, false, {}, {}, {}, {}};
    std::vector<RoutineDeclaration*> routines;
    std::vector<ClassDeclaration*> classes;

    template <typename T>
    T* New(T node) {
        TimeLimit::Poll();
        return new (arena.allocate(sizeof(T), alignof(T))) T(node);
    }

    template <typename T>
    std::span<T> Keep(const std::vector<T>& list) {
        if (list.empty()) return {};
        T* const place = static_cast<T*>(arena.allocate(list.size() * sizeof(T), alignof(T)));
        std::uninitialized_copy(list.begin(), list.end(), place);
        return {place, list.size()};
    }
};

}  // namespace tessaloom::vbscript::syntax
