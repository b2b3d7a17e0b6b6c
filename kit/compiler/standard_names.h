#pragma once

#include "language_features.h"
#include "tree.h"

#include <cstdint>
#include <span>

namespace tp3 {

/// How the arguments of a standard routine are parsed; the letters stand for what is given.
enum class CallShape : std::uint8_t {
    none,        ///< P
    integer,     ///< (integer)
    twoIntegers, ///< (integer, integer)
    // functions
    booleanResult, ///< F: Boolean, no arguments
    integerResult, ///< F: Integer, no arguments
    integerToInteger,
    integerToBoolean,
    integerToString,
    charToChar,
    realToReal,
    realToInteger,
    numeric, ///< Integer or Real, result the same
    ordinal, ///< any ordinal, result the same
    ordFunction,
    chrFunction,
    ptrFunction,
    addrFunction,
    sizeOfFunction,
    lengthFunction,
    posFunction,
    copyFunction,
    concatFunction,
    randomFunction,
    system, ///< Bdos and its kin: (integer [, integer]), function or procedure
    // procedures with arguments of their own
    write,
    writeLine,
    read,
    readLine,
    deleteProcedure,
    insertProcedure,
    strProcedure,
    valProcedure,
    moveProcedure,
    fillCharProcedure,
    pointer,     ///< (pointer variable): New, Dispose
    pointerSize, ///< (pointer variable, integer): GetMem, FreeMem
    heapMark,    ///< (pointer variable): Mark, Release
    exitProcedure,
    // arrays of bytes
    memoryArray,
    portArray,
};

/// Whether a shape stands for a value or a statement.
bool isFunctionShape(CallShape shape);
bool isProcedureShape(CallShape shape);

/// The part of the language without which an identifier is not declared.
enum class FeatureNeed : std::uint8_t { none, reals, files, heap };

struct StandardName {
    const char* text;
    CallShape shape;
    StandardRoutine routine;
    FeatureNeed need;
};

/// A variable of the run-time library that programs may use by name.
struct StandardVariable {
    const char* text;
    bool boolean;          ///< Boolean, otherwise Integer
    std::uint16_t address; ///< 0 while the library has no such variable: then it is not declared
};

std::span<const StandardVariable> standardVariables();

/// All standard procedures and functions, Mem and Port.
std::span<const StandardName> standardNames();

} // namespace tp3
