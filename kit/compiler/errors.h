#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tp3 {

/// A place in the source: file is an index into the list of files in the order of their opening (0 the main
/// file).
struct Position {
    std::uint16_t line = 0; ///< from 1
    std::uint8_t file = 0;
    std::uint8_t column = 0; ///< from 1; lines hold at most 127 characters
};

/// The numbers that users know from the language's error list. The enumerators say what was expected or
/// wrong.
enum class Error : std::uint8_t {
    none = 0,
    semicolonExpected = 1,
    colonExpected = 2,
    commaExpected = 3,
    leftParenthesisExpected = 4,
    rightParenthesisExpected = 5,
    equalExpected = 6,
    assignExpected = 7,
    leftBracketExpected = 8,
    rightBracketExpected = 9,
    periodExpected = 10,
    rangeExpected = 11,
    beginExpected = 12,
    doExpected = 13,
    endExpected = 14,
    ofExpected = 15,
    routineExpected = 16,
    thenExpected = 17,
    toOrDowntoExpected = 18,
    booleanExpressionExpected = 20,
    fileVariableExpected = 21,
    integerConstantExpected = 22,
    integerExpressionExpected = 23,
    integerVariableExpected = 24,
    numericConstantExpected = 25,
    numericExpressionExpected = 26,
    numericVariableExpected = 27,
    pointerVariableExpected = 28,
    recordVariableExpected = 29,
    simpleTypeExpected = 30,
    simpleExpressionExpected = 31,
    stringConstantExpected = 32,
    stringExpressionExpected = 33,
    stringVariableExpected = 34,
    textFileExpected = 35,
    typeIdentifierExpected = 36,
    untypedFileExpected = 37,
    undefinedLabel = 40,
    unknownIdentifier = 41,
    undefinedPointerType = 42,
    duplicateIdentifier = 43,
    typeMismatch = 44,
    constantOutOfRange = 45,
    caseLabelType = 46,
    operandType = 47,
    resultType = 48,
    stringLength = 49,
    stringConstantLength = 50,
    subrangeBase = 51,
    lowAboveHigh = 52,
    reservedWord = 53,
    illegalAssignment = 54,
    stringExceedsLine = 55,
    integerConstant = 56,
    realConstant = 57,
    identifierCharacter = 58,
    constantNotAllowed = 60,
    fileOrPointerNotAllowed = 61,
    structuredNotAllowed = 62,
    textFileNotAllowed = 63,
    textOrUntypedFileNotAllowed = 64,
    untypedFileNotAllowed = 65,
    notReadableOrWritable = 66,
    fileMustBeVar = 67,
    fileOfFile = 68,
    fieldOrder = 69,
    setBase = 70,
    badGoto = 71,
    labelOutsideBlock = 72,
    undefinedForward = 73,
    inlineError = 74,
    badAbsolute = 75,
    overlayForward = 76,
    overlayDirect = 77,
    fileNotFound = 90,
    unexpectedEnd = 91,
    overlayFile = 92,
    directive = 93,
    outputFile = 94,
    includeNesting = 96,
    withNesting = 97,
    outOfMemory = 98,
    tableOverflow = 99,
};

/// The English text that goes with a number, without a full stop; holds no quote character.
std::string_view errorText(Error error);

/// The first error of a compilation; later ones are not kept, as everything after the first is guesswork.
struct Diagnostic {
    Error error = Error::none;
    Position position;
    std::string file;   ///< name of the file that holds the error, upper case, without folder
    std::string detail; ///< what the error is about, such as the missing file's name; may be empty
    /// When the IDE's project tree does not show that file: the innermost directive that includes it and lies
    /// in a file that the tree shows, and that file's name. Else empty.
    std::string shownFile = {};
    Position shownPosition = {};
};

} // namespace tp3
