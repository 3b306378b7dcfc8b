#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "vbscript/Names.h"
#include "vbscript/Value.h"

namespace tessaloom::vbscript {

/// What a token is. The keywords come first, in the order of `Keywords`.
enum class TokenKind : std::uint8_t {
    And,
    ByRef,
    ByVal,
    Call,
    Case,
    Class,
    Const,
    Dim,
    Do,
    Each,
    Else,
    ElseIf,
    Empty,
    End,
    Eqv,
    Exit,
    False,
    For,
    Function,
    GoTo,
    If,
    Imp,
    In,
    Is,
    Loop,
    Me,
    Mod,
    New,
    Next,
    Not,
    Nothing,
    Null,
    On,
    Option,
    Or,
    Private,
    Public,
    ReDim,
    Rem,
    Resume,
    Select,
    Set,
    Stop,
    Sub,
    Then,
    To,
    True,
    Until,
    WEnd,
    While,
    With,
    Xor,

    Identifier,
    Literal,
    OpenParenthesis,
    CloseParenthesis,
    Comma,
    Dot,
    Plus,
    Minus,
    Times,
    Divide,
    IntegerDivide,
    Power,
    Ampersand,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessOrEqual,
    GreaterOrEqual,
    Colon,
    NewLine,
    EndOfText,
};

inline constexpr auto Keywords = std::to_array<std::u16string_view>({
    u"And",
    u"ByRef",
    u"ByVal",
    u"Call",
    u"Case",
    u"Class",
    u"Const",
    u"Dim",
    u"Do",
    u"Each",
    u"Else",
    u"ElseIf",
    u"Empty",
    u"End",
    u"Eqv",
    u"Exit",
    u"False",
    u"For",
    u"Function",
    u"GoTo",
    u"If",
    u"Imp",
    u"In",
    u"Is",
    u"Loop",
    u"Me",
    u"Mod",
    u"New",
    u"Next",
    u"Not",
    u"Nothing",
    u"Null",
    u"On",
    u"Option",
    u"Or",
    u"Private",
    u"Public",
    u"ReDim",
    u"Rem",
    u"Resume",
    u"Select",
    u"Set",
    u"Stop",
    u"Sub",
    u"Then",
    u"To",
    u"True",
    u"Until",
    u"WEnd",
    u"While",
    u"With",
    u"Xor",
    // Words with a meaning in some places only, where they are looked for by name.
    u"Default",
    u"Erase",
    u"Error",
    u"Explicit",
    u"Get",
    u"Let",
    u"Preserve",
    u"Property",
    u"Step",
});

inline constexpr NameId KeywordCount = static_cast<NameId>(TokenKind::Identifier);

/// @name The words that are keywords in some places only
/// @{
enum class Word : NameId {
    Default = KeywordCount,
    Erase,
    Error,
    Explicit,
    Get,
    Let,
    Preserve,
    Property,
    Step
};
/// @}

static_assert(Keywords.size() == static_cast<NameId>(Word::Step) + 1);

struct Position {
    int line = 1;
    int column = 1;
};

struct Token {
    TokenKind kind = TokenKind::NewLine;
    bool spaceBefore = false;
    Position at;
    NameId name = NoName;  ///< Of identifiers and keywords.
    Value literal;         ///< Of literals.
};

}  // namespace tessaloom::vbscript
