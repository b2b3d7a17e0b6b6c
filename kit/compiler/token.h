#pragma once

#include "errors.h"
#include "symbols.h"

#include <cstdint>

namespace tp3 {

enum class TokenKind : std::uint8_t {
    endOfSource,
    identifier, ///< name
    integer,    ///< value; 32768 stands for a number that only a minus sign makes valid
    real,       ///< the scanner's text holds the digits
    string,     ///< the scanner's text holds the characters
    plus,
    minus,
    star,
    slash,
    equal,
    notEqual,
    less,
    lessEqual,
    greater,
    greaterEqual,
    assign,
    leftParenthesis,
    rightParenthesis,
    leftBracket,
    rightBracket,
    period,
    range,
    comma,
    semicolon,
    colon,
    caret,
    // reserved words; the table in names.cpp has the same order
    wordAbsolute,
    wordAnd,
    wordArray,
    wordBegin,
    wordCase,
    wordConst,
    wordDiv,
    wordDo,
    wordDownto,
    wordElse,
    wordEnd,
    wordExternal,
    wordFile,
    wordFor,
    wordForward,
    wordFunction,
    wordGoto,
    wordIf,
    wordIn,
    wordInline,
    wordLabel,
    wordMod,
    wordNil,
    wordNot,
    wordOf,
    wordOr,
    wordOverlay,
    wordPacked,
    wordProcedure,
    wordProgram,
    wordRecord,
    wordRepeat,
    wordSet,
    wordShl,
    wordShr,
    wordString,
    wordThen,
    wordTo,
    wordType,
    wordUntil,
    wordVar,
    wordWhile,
    wordWith,
    wordXor,
};

struct Token {
    TokenKind kind = TokenKind::endOfSource;
    Position position;
    Name* name = nullptr;
    std::int32_t value = 0;

    [[nodiscard]] bool isReservedWord() const { return kind >= TokenKind::wordAbsolute; }
};

} // namespace tp3
