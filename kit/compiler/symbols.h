#pragma once

#include "errors.h"
#include "types.h"

#include <cstdint>
#include <string_view>

namespace tp3 {

struct Symbol;
struct Routine;

/// An identifier's text, one object for all its uses, and what it means in the scope being compiled.
struct Name {
    std::string_view text; ///< upper case
    Symbol* meaning = nullptr;
    Name* nextInBucket = nullptr;
    std::uint8_t reservedWord = 0; ///< token number of a reserved word, 0 for an identifier
};

enum class SymbolKind : std::uint8_t {
    none,
    constant, ///< value / text; type tells which
    typeName,
    variable,        ///< global, local, parameter, typed constant: Variable
    field,           ///< value = offset in its record
    routine,         ///< Routine
    standardRoutine, ///< value = StandardRoutine
    label,
    program,
};

/// Where a variable lives and what was seen of it. The code generator decides the address.
enum class StorageKind : std::uint8_t {
    global,
    local,            ///< of the routine `owner`
    valueParameter,   ///< a local that the caller fills; structured ones arrive as an address and are copied
    varParameter,     ///< a local that holds the address of the actual variable
    result,           ///< the function's result
    typedConstant,    ///< initialised, in the code part
    absoluteAddress,  ///< at `address`
    absoluteVariable, ///< at the place of `alias`
    hidden,           ///< pointer made by the compiler, such as that of a with statement
};

/// Knowledge about a variable that the survey pass gathers, by Symbol::ordinal, for the code pass.
struct VariableFacts {
    /// Passed by VAR, Addr, absolute, or read/written by a standard routine through its address.
    bool addressTaken : 1 = false;
    bool usedByNested : 1 = false; ///< used by a routine other than its owner (for globals: by any routine)
    bool assigned : 1 = false;
    bool used : 1 = false;
};

struct Symbol {
    SymbolKind kind = SymbolKind::none;
    StorageKind storage = StorageKind::global;
    /// Declared by the user (so error 43 applies), not by the language.
    bool userDeclared = true;
    /// 0 the language's own identifiers, 1 the main program, 2 its routines, ...
    std::uint8_t scopeLevel = 0;
    Name* name = nullptr;
    Type* type = nullptr;
    /// Next local, field, parameter or enumeration constant, in order of declaration.
    Symbol* next = nullptr;
    Symbol* nextInScope = nullptr; ///< the parser's list of what to forget at the end of a scope
    Symbol* shadowed = nullptr;    ///< what the name meant outside
    /// Variables and routines: number in order of declaration, the same in both passes.
    std::uint16_t ordinal = 0;
    std::uint16_t textLength = 0; ///< string constants
    Routine* owner = nullptr;     ///< variables: the routine that holds it, null for globals
    /// Constants: ordinal value. Fields: offset. Standard routines: which. Absolute: address or offset.
    std::int32_t value = 0;
    /// What only one kind has. A large program has some thousand symbols, and under DOS every byte counts.
    union {
        /// String constants: characters. Real constants: the 6 bytes. Typed constants: the initial bytes
        /// (Type::size of them).
        const char* text = nullptr;
        Symbol* alias;         ///< absoluteVariable
        const void* enclosure; ///< labels: the parser's mark of the for or with statement around
        Routine* routine;      ///< kind routine
    };
    Position position;
};

/// A procedure, a function, or the main program.
struct Routine {
    Symbol* symbol = nullptr;  ///< null for the main program
    Routine* parent = nullptr; ///< the routine it is declared in; the main program's is null
    std::uint16_t ordinal = 0; ///< 0 the main program, then in order of declaration, the same in both passes
    std::uint8_t level = 0;    ///< 0 the main program
    bool isForward = false;    ///< heading seen, body still to come
    bool isExternal = false;
    bool isOverlay = false; ///< declared with the word
    std::uint16_t externalAddress = 0;
    Symbol* parameters = nullptr; ///< linked by next
    std::uint8_t parameterCount = 0;
    Symbol* result = nullptr; ///< functions: the result variable; its type is the function's type
    Symbol* locals = nullptr; ///< variables declared in it, hidden ones included, linked by next
};

} // namespace tp3
