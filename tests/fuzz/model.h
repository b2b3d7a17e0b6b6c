#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace fuzz {

enum class Kind : std::uint8_t {
    integer,
    character,
    boolean,
    enumeration,
    string,
    array,
    record,
    set,
    real,
    pointer
};

struct Type;
struct Field {
    std::string name;
    const Type* type;
};

/// A type of the generated program. Zero is a value of every scalar one, so that FillChar makes any variable
/// valid.
struct Type {
    Kind kind = Kind::integer;
    std::string name;
    int low = 0;                   ///< scalars, and the index range of arrays
    int high = 0;                  ///< strings: the greatest length
    const Type* element = nullptr; ///< arrays; what pointers lead to
    const Type* index = nullptr;   ///< arrays whose index is not a number
    std::vector<Field> fields;
    std::vector<std::string> literals; ///< enumerations
    int size = 1;                      ///< bytes

    [[nodiscard]] bool isScalar() const { return kind <= Kind::enumeration; }
    /// A number that holds whatever is assigned, cut to its width.
    [[nodiscard]] bool wraps() const {
        return kind == Kind::integer && ((low == 0 && high == 255) || (low == -32768 && high == 32767));
    }
};

struct Variable {
    std::string name;
    const Type* type = nullptr;
    bool writable = true;
    bool local = false; ///< no other routine can change it: not even one that is called with VAR parameters
    bool dropped = false;
    bool initialised = false;
    int low = 0, high = 0; ///< what a number can be
};

struct Parameter {
    Variable variable;
    bool byReference = false;
    bool isDepth = false; ///< counts down to the end of the recursion
};

struct Routine {
    std::string name;
    std::vector<Parameter> parameters;
    const Type* result = nullptr; ///< none: a procedure
    bool pure = false;            ///< a function that changes nothing outside itself
    long cost = 0;                ///< of one call, in executed terms
};

/// A piece of an expression. In Free Pascal's text each read of a variable and each call of a function that
/// changes something stands between marks, so that they can be moved out of the statement in the order of the
/// text, which is the one in which our compiler evaluates them.
struct Term {
    std::string text;
    int level = 0;                  ///< 0 stands anywhere, 3 product, 4 sum, 5 comparison
    int low = -32768, high = 32767; ///< what a number can be
};

enum class Dialect : std::uint8_t { ours, freePascal };

struct Options {
    std::uint64_t seed = 1;
    Dialect dialect = Dialect::ours;
    bool rangeChecks = false;
    bool sets = false;
    std::vector<bool> dropped; ///< by number: statements and terms that are left out
    bool showCount = false;
};

} // namespace fuzz
