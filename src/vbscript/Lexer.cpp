#include "vbscript/Lexer.h"

#include <charconv>
#include <cmath>
#include <string>

#include "locale/Conversion.h"
#include "vbscript/Error.h"

namespace tessaloom::vbscript {

namespace {

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool IsLetter(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == 0xAA || unit == 0xB5 ||
           unit == 0xBA || (unit >= 0xC0 && unit != 0xD7 && unit != 0xF7 && unit < 0x2000) ||
           (unit >= 0x2C00 && unit < 0x3000) || (unit >= 0x3040 && unit < 0xD800) ||
           (unit >= 0xF900 && unit < 0xFE00);
}
bool IsNameUnit(char16_t unit) { return IsLetter(unit) || IsDigit(unit) || unit == u'_'; }
bool IsBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == 0xA0 || unit == 0xFEFF; }
bool IsLineEnd(char16_t unit) { return unit == u'\r' || unit == u'\n'; }

int DigitOf(char16_t unit) {
    if (IsDigit(unit)) return unit - u'0';
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    return 99;
}

/// Whether an expression may end with this token, so that "&1" behind it is no octal number.
bool EndsOperand(TokenKind kind) {
    switch (kind) {
        case TokenKind::Identifier:
        case TokenKind::Literal:
        case TokenKind::CloseParenthesis:
        case TokenKind::Empty:
        case TokenKind::Null:
        case TokenKind::Nothing:
        case TokenKind::True:
        case TokenKind::False:
        case TokenKind::Me:
            return true;
        default:
            return false;
    }
}

/// Whether a statement, or a remark, may stand behind this token.
bool BeginsStatement(TokenKind kind) {
    return kind == TokenKind::NewLine || kind == TokenKind::Colon || kind == TokenKind::Then ||
           kind == TokenKind::Else;
}

}  // namespace

void Lexer::Fail(int number, Position at) const { throw SyntaxError(number, at.line, at.column); }

Token Lexer::Next() {
    TimeLimit::Poll();
    Token token;
    const std::size_t before = place_;
    SkipBlanks();
    token.spaceBefore = place_ != before;
    token.at = Here();
    token.kind = Scan(token);
    last_ = token.kind;
    return token;
}

void Lexer::SkipBlanks() {
    for (;;) {
        while (!AtEnd() && IsBlank(At())) ++place_;
        if (At() == u'_' && SkipContinuation()) continue;
        return;
    }
}

bool Lexer::SkipContinuation() {
    std::size_t ahead = 1;
    while (IsBlank(At(ahead))) ++ahead;
    if (!IsLineEnd(At(ahead))) return false;
    place_ += ahead;
    PassLineEnd();
    return true;
}

void Lexer::SkipToLineEnd() {
    while (!AtEnd() && !IsLineEnd(At())) ++place_;
}

void Lexer::PassLineEnd() {
    place_ += At() == u'\r' && At(1) == u'\n' ? 2 : 1;
    lineStart_ = place_;
    ++line_;
}

TokenKind Lexer::Scan(Token& token) {
    if (At() == u'\'') SkipToLineEnd();
    if (AtEnd()) return TokenKind::EndOfText;
    const char16_t unit = At();
    if (IsLineEnd(unit)) {
        PassLineEnd();
        return TokenKind::NewLine;
    }
    if (IsLetter(unit)) return ScanWord(token);
    if (IsDigit(unit) || (unit == u'.' && IsDigit(At(1)))) return ScanNumber(token);
    if (unit == u'"') return ScanString(token);
    if (unit == u'[') return ScanBracketed(token);
    if (unit == u'#') return ScanDate(token);
    if (unit == u'&' && ScanRadixNumber(token)) return TokenKind::Literal;
    return ScanOperator(token);
}

TokenKind Lexer::ScanWord(Token& token) {
    const std::size_t from = place_;
    while (IsNameUnit(At())) ++place_;
    if (place_ - from > Names::Longest) Fail(1030, token.at);
    token.name = names_.Intern(text_.substr(from, place_ - from));
    if (token.name >= KeywordCount || last_ == TokenKind::Dot) return TokenKind::Identifier;
    const auto kind = static_cast<TokenKind>(token.name);
    if (kind != TokenKind::Rem || !BeginsStatement(last_)) return kind;
    SkipToLineEnd();
    return Scan(token);
}

TokenKind Lexer::ScanBracketed(Token& token) {
    const std::size_t from = ++place_;
    while (!AtEnd() && !IsLineEnd(At()) && At() != u']') ++place_;
    if (At() != u']') Fail(1007, Here());
    if (place_ - from > Names::Longest) Fail(1030, token.at);
    token.name = names_.Intern(text_.substr(from, place_ - from));
    ++place_;
    return TokenKind::Identifier;
}

TokenKind Lexer::ScanString(Token& token) {
    const std::size_t from = ++place_;
    bool hasQuotes = false;
    for (;; ++place_) {
        if (AtEnd() || IsLineEnd(At())) Fail(1033, Here());
        if (At() != u'"') continue;
        if (At(1) != u'"') break;
        hasQuotes = true;
        ++place_;
    }
    const std::u16string_view raw = text_.substr(from, place_ - from);
    ++place_;
    if (!hasQuotes) {
        token.literal = Value::OfText(raw);
        return TokenKind::Literal;
    }
    std::u16string text;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        text += raw[i];
        if (raw[i] == u'"') ++i;
    }
    token.literal = Value::OfText(text);
    return TokenKind::Literal;
}

TokenKind Lexer::ScanNumber(Token& token) {
    std::string digits;
    const auto takeDigits = [&] {
        while (IsDigit(At())) digits += static_cast<char>(text_[place_++]);
    };
    takeDigits();
    bool whole = true;
    if (At() == u'.') {
        whole = false;
        digits += '.';
        ++place_;
        takeDigits();
    }
    if (At() == u'e' || At() == u'E') {
        const std::size_t sign = At(1) == u'+' || At(1) == u'-' ? 1 : 0;
        if (!IsDigit(At(1 + sign))) Fail(1031, token.at);
        whole = false;
        digits += 'e';
        if (At(1) == u'-') digits += '-';
        place_ += 1 + sign;
        takeDigits();
    }
    double number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error == std::errc::result_out_of_range && number != 0 && std::isinf(number)) Fail(1031, token.at);
    if (error == std::errc::result_out_of_range) {
        // Too small reads as 0; too large is no number.
        const std::size_t exponent = digits.find('e');
        if (exponent == std::string::npos || digits[exponent + 1] != '-') Fail(1031, token.at);
        number = 0;
    }
    if (whole && number <= 32767)
        token.literal = Value::OfInteger(static_cast<int>(number));
    else if (whole && number <= 2147483647)
        token.literal = Value::OfLong(static_cast<int>(number));
    else
        token.literal = Value::OfDouble(number);
    return TokenKind::Literal;
}

bool Lexer::ScanRadixNumber(Token& token) {
    const char16_t radix = At(1);
    if (radix == u'h' || radix == u'H') return FinishRadixNumber(token, 2, 16);
    if (radix == u'o' || radix == u'O') return FinishRadixNumber(token, 2, 8);
    return IsDigit(radix) && !EndsOperand(last_) && FinishRadixNumber(token, 1, 8);
}

/// False when this is the operator & with a name behind it.
bool Lexer::FinishRadixNumber(Token& token, std::size_t digitsFrom, unsigned radix) {
    std::size_t ahead = digitsFrom;
    std::uint64_t number = 0;
    for (; static_cast<unsigned>(DigitOf(At(ahead))) < radix; ++ahead) {
        number = number * radix + static_cast<unsigned>(DigitOf(At(ahead)));
        if (number > 0xFFFFFFFF) Fail(1031, token.at);
    }
    if (ahead == digitsFrom || IsNameUnit(At(ahead))) return false;
    const bool isLong = At(ahead) == u'&';
    place_ += ahead + (isLong ? 1 : 0);
    if (!isLong && number <= 0xFFFF)
        token.literal = Value::OfInteger(static_cast<std::int16_t>(number));
    else
        token.literal = Value::OfLong(static_cast<std::int32_t>(number));
    return true;
}

/// Between the signs stands a date as in English, whatever the user's locale.
TokenKind Lexer::ScanDate(Token& token) {
    const std::size_t from = ++place_;
    while (!AtEnd() && !IsLineEnd(At()) && At() != u'#') ++place_;
    if (At() != u'#') Fail(1002, Here());
    const auto moment = DateFromText(Utf8Of(text_.substr(from, place_ - from)), UserLocale(), currentYear_);
    if (!moment) Fail(1002, token.at);
    ++place_;
    token.literal = Value::OfDate(moment.value);
    return TokenKind::Literal;
}

TokenKind Lexer::ScanOperator(Token& token) {
    const char16_t unit = At(), next = At(1);
    const auto take = [&](std::size_t units, TokenKind kind) {
        place_ += units;
        return kind;
    };
    switch (unit) {
        case u'(':
            return take(1, TokenKind::OpenParenthesis);
        case u')':
            return take(1, TokenKind::CloseParenthesis);
        case u',':
            return take(1, TokenKind::Comma);
        case u'.':
            return take(1, TokenKind::Dot);
        case u'+':
            return take(1, TokenKind::Plus);
        case u'-':
            return take(1, TokenKind::Minus);
        case u'*':
            return take(1, TokenKind::Times);
        case u'/':
            return take(1, TokenKind::Divide);
        case u'\\':
            return take(1, TokenKind::IntegerDivide);
        case u'^':
            return take(1, TokenKind::Power);
        case u'&':
            return take(1, TokenKind::Ampersand);
        case u':':
            return take(1, TokenKind::Colon);
        case u'=':
            if (next == u'<') return take(2, TokenKind::LessOrEqual);
            if (next == u'>') return take(2, TokenKind::GreaterOrEqual);
            return take(1, TokenKind::Equal);
        case u'<':
            if (next == u'=') return take(2, TokenKind::LessOrEqual);
            if (next == u'>') return take(2, TokenKind::NotEqual);
            return take(1, TokenKind::Less);
        case u'>':
            if (next == u'=') return take(2, TokenKind::GreaterOrEqual);
            if (next == u'<') return take(2, TokenKind::NotEqual);
            return take(1, TokenKind::Greater);
        default:
            Fail(1032, token.at);
    }
}

}  // namespace tessaloom::vbscript
