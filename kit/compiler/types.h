#pragma once

#include <cstdint>

namespace tp3 {

struct Symbol;

enum class TypeKind : std::uint8_t {
    none,    ///< after an error, and of statements
    integer, ///< 16 bits, two's complement; Byte is its subrange 0..255
    character,
    boolean,
    enumeration,
    real,
    string,
    array,
    record,
    set,
    pointer,
    textFile,
    typedFile,
    untypedFile,
};

/// A type. Two types are the same when the pointers are equal, but for the strings, sets and pointers that
/// rules of compatibility say otherwise of. Lives in the arena.
struct Type {
    TypeKind kind = TypeKind::none;
    /// Bytes that a variable takes. Scalars: 1 when all values lie in 0..255, otherwise 2.
    std::uint16_t size = 0;
    /// Scalars: least and greatest ordinal value. Strings: high = maximum length.
    /// Arrays: bounds of the index (one dimension; more are arrays of arrays). Sets: bounds of the base.
    std::int32_t low = 0;
    std::int32_t high = 0;
    /// Subranges: the type they are part of (else null). Arrays, typed files: component. Sets: base type.
    /// Pointers: target, null for nil and until a forward target is known.
    Type* base = nullptr;
    /// Arrays: type of the index.
    Type* index = nullptr;
    /// Records: fields in order, linked by Symbol::next. Enumerations: the constants likewise.
    Symbol* members = nullptr;

    [[nodiscard]] bool isOrdinal() const {
        return kind == TypeKind::integer || kind == TypeKind::character || kind == TypeKind::boolean ||
               kind == TypeKind::enumeration;
    }
    [[nodiscard]] bool isFile() const {
        return kind == TypeKind::textFile || kind == TypeKind::typedFile || kind == TypeKind::untypedFile;
    }
    /// Held in a register: ordinals and pointers.
    [[nodiscard]] bool isSimple() const { return isOrdinal() || kind == TypeKind::pointer; }
    /// The whole type of a subrange, else itself.
    [[nodiscard]] const Type* host() const { return base != nullptr && isOrdinal() ? base : this; }
};

} // namespace tp3
