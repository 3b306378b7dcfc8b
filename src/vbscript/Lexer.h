#pragma once

#include <string_view>

#include "vbscript/Token.h"

namespace tessaloom::vbscript {

/// Cuts a program text into tokens. Comments and continued lines leave no token. Throws SyntaxError.
class Lexer {
public:
    /// `text` must outlive the lexer. `currentYear` completes date literals without a year.
    Lexer(std::u16string_view text, Names& names, int currentYear)
        : text_(text), names_(names), currentYear_(currentYear) {}

    /// The next token; `EndOfText` again and again at the end.
    Token Next();

private:
    char16_t At(std::size_t ahead = 0) const {
        return place_ + ahead < text_.size() ? text_[place_ + ahead] : u'\0';
    }
    bool AtEnd() const { return place_ >= text_.size(); }
    Position Here() const { return {line_, static_cast<int>(place_ - lineStart_) + 1}; }
    [[noreturn]] void Fail(int number, Position at) const;

    void SkipBlanks();
    bool SkipContinuation();
    void SkipToLineEnd();
    void PassLineEnd();

    TokenKind Scan(Token& token);
    TokenKind ScanWord(Token& token);
    TokenKind ScanBracketed(Token& token);
    TokenKind ScanString(Token& token);
    TokenKind ScanNumber(Token& token);
    TokenKind ScanDate(Token& token);
    bool ScanRadixNumber(Token& token);
    TokenKind ScanOperator(Token& token);
    bool FinishRadixNumber(Token& token, std::size_t digitsFrom, unsigned radix);

    std::u16string_view text_;
    Names& names_;
    int currentYear_;
    std::size_t place_ = 0;
    std::size_t lineStart_ = 0;
    int line_ = 1;
    TokenKind last_ = TokenKind::NewLine;
};

}  // namespace tessaloom::vbscript
