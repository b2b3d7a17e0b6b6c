#pragma once

#include "language_features.h"
#include "runtime_entries.h"
#include "tree.h"

#include <cstddef>
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
    filePlace,    ///< F(file): Integer; of files with components: FilePos, FileSize
    eofFunction,  ///< F[(file)]: Boolean, of Input when no file is given
    textFunction, ///< F[(text file)]: the same, of text files only
    system,       ///< Bdos and its kin: (integer [, integer]), function or procedure
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
    anyFile,       ///< (file): Close, Erase, Chain, Execute
    assignFile,    ///< (file, string)
    openFile,      ///< (file): Reset, Rewrite
    flushFile,     ///< (typed file)
    renameFile,    ///< (file, string)
    seekFile,      ///< (typed or untyped file, integer)
    blockTransfer, ///< (untyped file, variable, integer [, integer variable])
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
    TypeKind kind; ///< integer, boolean or textFile
    RuntimeEntry entry;
    FeatureNeed need;
};

/// The address of a standard variable.
inline std::uint16_t addressOf(const StandardVariable& variable) {
    return runtimeAddresses[static_cast<std::size_t>(variable.entry)];
}

/// Standard variables have no facts; their ordinals begin here, above those of the program's own.
inline constexpr std::uint16_t firstStandardVariable = 0xFF00;

std::span<const StandardVariable> standardVariables();

/// All standard procedures and functions, Mem and Port.
std::span<const StandardName> standardNames();

} // namespace tp3
