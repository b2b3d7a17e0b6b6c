#pragma once

#include "symbols.h"
#include "types.h"

#include <cstdint>

namespace tp3 {

/// What a node of an expression is. The parser resolves every name, inserts every conversion and folds
/// constants, so that the generator never has to look anything up: a node's type says what its value is.
enum class ExprKind : std::uint8_t {
    // values
    ordinal,      ///< value; any ordinal type; also nil and constant addresses (pointer types)
    realConstant, ///< text = 6 bytes
    string, ///< text, textLength; type is a string type with high = length, or an array of Char of exactly
            ///< that length
    setConstant, ///< text = 32 bytes
    // designators (things that have an address)
    variable, ///< symbol; a VAR parameter stands for the actual variable, a structured value parameter for
              ///< its copy
    index, ///< left = array designator, right = index value (of the index type, NOT yet reduced by the lower
           ///< bound)
    character,      ///< left = string designator, right = integer: s[i], type Char; s[0] is the length
    field,          ///< left = record designator, value = offset
    dereference,    ///< left = pointer value
    memory,         ///< Mem[left]: Byte at an address
    port,           ///< Port[left]
    routineAddress, ///< symbol (a routine): where its code is; type Integer. Not a designator
    retypeVariable, ///< left = designator seen as another type of the same size
    // operations
    unary,  ///< op, left
    binary, ///< op, left, right. Operands are of one kind: both integer, both the same ordinal host type,
            ///< both strings, ...
    /// left; to `type`: ordinal to ordinal by value (retype), Char or array of Char to string, string to Char
    /// (its
    /// length must be 1, else run-time error 10), Integer to Real, pointer to Integer and back
    convert,
    call, ///< symbol (a routine); arguments linked by next from `left`, one for each parameter in order
    standardCall,   ///< value = StandardRoutine; arguments linked by next from `left`
    setConstructor, ///< elements linked by next from `left`: single values, or `range` nodes
    range,          ///< left..right, only inside setConstructor
};

enum class Operator : std::uint8_t {
    none,
    negate,
    bitNot /* Integer */,
    logicalNot /* Boolean */,
    add,
    subtract,
    multiply,
    divide /* Real / */,
    integerDivide,
    modulo,
    bitAnd,
    bitOr,
    bitXor,
    shiftLeft,
    shiftRight,
    equal,
    notEqual,
    less,
    lessEqual,
    greater,
    greaterEqual,
    in,
    // bitAnd, bitOr and bitXor serve Boolean operands too (values 0 and 1); add on strings concatenates;
    // add, subtract, multiply on sets are union, difference, intersection.
};

/// Deeper expressions are error 99. Deep enough for any text written by hand, small enough for a DOS stack.
inline constexpr std::uint8_t maximumTreeDepth = 200;

struct Expr {
    ExprKind kind = ExprKind::ordinal;
    Operator op = Operator::none;
    /// Range check wanted ({$R+}) at this index, or (convert) at this assignment or parameter: type gives the
    /// bounds. At a standardCall: the I/O result is looked at behind it ({$I+}).
    bool checked = false;
    /// Levels of nodes from here down, never above maximumTreeDepth, so that recursion over a tree is
    /// bounded.
    std::uint8_t depth = 1;
    std::uint16_t textLength = 0;
    Type* type = nullptr;
    Position position;
    Expr* left = nullptr;
    Expr* right = nullptr;
    Expr* next = nullptr; ///< next argument or element
    std::int32_t value = 0;
    union {
        Symbol* symbol = nullptr;
        const char* text;
    };
};

enum class StmtKind : std::uint8_t {
    empty,
    assign,      ///< target := value. For a function result the target is the result variable.
    call,        ///< value: call or standardCall whose result, if any, is dropped
    block,       ///< body, linked by next
    conditional, ///< if value then body else other (null when there is none)
    caseOf, ///< value (ordinal); arms: linked by next from `body`, each of kind caseArm; other = else part or
            ///< null
    caseArm,     ///< labels linked by Label::next; body = statement
    whileDo,     ///< value, body
    repeatUntil, ///< body (linked by next), value
    forLoop,     ///< target = plain variable designator, value = first, limit = last, down; body
    with, ///< target = hidden pointer variable; value = expression for the record's address (an addressOf
          ///< standardCall); body
    gotoLabel,  ///< symbol (a label)
    label,      ///< symbol; the place itself
    exit,       ///< leave the routine
    inlineCode, ///< code: linked InlineItem
};

/// One constant or range in front of a case arm.
struct CaseLabel {
    std::int32_t low = 0;
    std::int32_t high = 0;
    CaseLabel* next = nullptr;
};

/// One element of an inline statement.
struct InlineItem {
    enum class Size : std::uint8_t { automatic, byte, word };
    Size size = Size::automatic;
    std::int32_t constant = 0;    ///< sum of the constants
    Symbol* symbol = nullptr;     ///< variable or routine whose address is added, or null
    bool locationCounter = false; ///< `*`: the address of this element is added
    InlineItem* next = nullptr;
};

/// Directives in force where a statement begins, as bits of Stmt::options.
enum StatementOption : std::uint8_t {
    optionIoCheck = 1,          ///< {$I+} stop at an I/O error
    optionUserInterrupt = 2,    ///< {$U+} look for ^C here
    optionControlC = 4,         ///< {$C+}
    optionArraySpeed = 8,       ///< {$X+} code for speed rather than size
    optionBufferedConsole = 16, ///< {$B+}
    optionAbsoluteCode = 32,    ///< {$A+}
    optionRangeCheck = 64,      ///< {$R+}
};

struct Stmt {
    StmtKind kind = StmtKind::empty;
    bool down = false;        ///< forLoop: downto
    std::uint8_t options = 0; ///< StatementOption bits
    Position position;
    Stmt* next = nullptr;
    Stmt* body = nullptr;
    Stmt* other = nullptr;
    Expr* target = nullptr;
    Expr* value = nullptr;
    Expr* limit = nullptr;
    CaseLabel* labels = nullptr;
    union {
        Symbol* symbol = nullptr;
        InlineItem* code;
    };
};

/// Standard procedures and functions as the generator sees them. Functions that are plain arithmetic are
/// turned by the parser into nodes above where it can (Ord, Chr and retyping into convert; SizeOf into a
/// constant). Arguments are given in the comment; "address" means a designator whose address is wanted.
enum class StandardRoutine : std::uint8_t {
    none,
    // text output to the file selected by the last selectOutput; a Write statement selects the standard
    // output again at its end
    selectOutput, ///< (text file designator)
    writeInteger, ///< (integer, width) width is an integer expression, constant 0 when not given
    writeChar,    ///< (char, width)
    writeBoolean, ///< (boolean, width)
    writeString,  ///< (string or array of char, width)
    writeReal,    ///< (real, width, decimals) width -1 = not given; decimals -1 = not given
    writeLine,    ///< ()
    // text input
    selectInput, ///< (text file designator)
    readInteger, ///< (integer variable, address) 16 bits or, for 1-byte variables, the low byte stored
    readChar,    ///< (char variable)
    readString,  ///< (string variable)
    readReal,    ///< (real variable)
    readLine,    ///< () skip the rest of the line
    readBegin,   ///< () before the items of a Read from the console
    readEnd,     ///< () after the items of a Read (not ReadLn) from the console
    // arithmetic and ordinals
    abs,
    sqr,
    odd,
    pred,
    succ,
    hi,
    lo,
    swap,
    upCase,
    random /* () real */,
    randomLimit /* (integer) */,
    randomize,
    // strings
    length,
    copy /* (s, pos, n) */,
    pos /* (target, s) */,
    concat /* (s, s, ...) */,
    deleteChars /* (var s, pos, n) */,
    insert /* (s, var t, pos) */,
    strInteger /* (i, width, var s) */,
    strReal /* (r, w, d, var s) */,
    valInteger /* (s, var i, var code) */,
    valReal /* (s, var r, var code) */,
    // memory
    addressOf, ///< (designator) its address, type Integer or pointer
    move /* (a, b, count) a and b designators */,
    fillChar /* (v, count, byte) */,
    memAvail,
    maxAvail,
    newPointer /* (pointer variable, size constant) */,
    disposePointer /* (pointer variable, size) */,
    getMem,
    freeMem,
    mark,
    release,
    // program
    halt,
    bdos /* (f, p) */,
    bdosHL,
    bios,
    biosHL,
    chain,
    execute,
    paramCount,
    paramStr,
    ioResult,
    // screen
    clrScr,
    clrEol,
    gotoXY,
    insLine,
    delLine,
    lowVideo,
    normVideo,
    highVideo,
    crtInit,
    crtExit,
    delay,
    keyPressed,
    // reals: (real) real, but for round and trunc: (real) integer
    sqrt,
    sin,
    cos,
    arcTan,
    ln,
    exp,
    frac,
    intPart,
    round,
    trunc,
    // files. "file" is a designator of a file type, whose address is wanted; a string is of a string type
    fileAssignText, ///< (file, string) name or device
    fileAssignTyped,
    fileAssignUntyped,
    fileReset,   ///< (file, constant) record size: 0 text, 128 untyped
    fileRewrite, ///< the same
    fileClose,   ///< (file)
    fileErase,
    fileFlush,
    fileRename,   ///< (file, string)
    fileSeek,     ///< (file, integer)
    filePosition, ///< (file) integer
    fileSize,
    fileEof, ///< (file) boolean
    fileEoln,
    fileSeekEof,
    fileSeekEoln,
    fileRead,       ///< (typed file, designator of a component)
    fileWrite,      ///< the same
    fileBlockRead,  ///< (untyped file, designator, count [, result]) result: an integer variable of 1 or 2
                    ///< bytes
    fileBlockWrite, ///< the same
    selectStandardOutput, ///< () ends selectOutput
    selectStandardInput,  ///< () ends selectInput
    ovrDrive,             ///< (integer): the drive of the overlay files
    last = ovrDrive,
};

} // namespace tp3
