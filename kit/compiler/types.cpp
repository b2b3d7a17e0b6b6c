#include "source_parser.h"

namespace tp3 {
namespace {

constexpr std::uint64_t memorySize = 65535; // no variable can be larger than the machine's memory

// Scalars take one byte when every value fits in it.
std::uint16_t scalarSize(std::int32_t low, std::int32_t high) {
    return low >= 0 && high <= 255 ? 1 : 2;
}

} // namespace

Type* SourceParser::newType(TypeKind kind) {
    Type* type = arena_.make<Type>();
    type->kind = kind;
    return type;
}

bool SourceParser::fits(std::uint64_t size, Position position) {
    if (size <= memorySize)
        return true;
    fail(Error::outOfMemory, position);
    return false;
}

// Refuses what this version of the library cannot do.
bool SourceParser::feature(bool open, std::string_view what) {
    if (!open)
        failHere(Error::unknownIdentifier, what);
    return open;
}

// The type of strings of at most `length` characters that has no name; made once.
Type* SourceParser::stringType(std::size_t length) {
    Type*& type = stringTypes_[length < 255 ? length : 255];
    if (type == nullptr) {
        type = names_.arena().make<Type>();
        type->kind = TypeKind::string;
        type->high = static_cast<std::int32_t>(length < 255 ? length : 255);
        type->size = static_cast<std::uint16_t>(type->high + 1);
    }
    return type;
}

// type = ['packed'] (arrayType | recordType | setType | fileType) | stringType | pointerType | simpleType
Type* SourceParser::parseType() {
    const Nesting nesting(*this);
    if (!nesting.ok)
        return &untyped_;
    accept(TokenKind::wordPacked); // everything is packed anyway
    switch (token_.kind) {
    case TokenKind::wordArray:
        return parseArrayType();
    case TokenKind::wordRecord:
        return parseRecordType();
    case TokenKind::wordSet:
        return parseSetType();
    case TokenKind::wordFile:
        return parseFileType();
    case TokenKind::wordString:
        return parseStringType();
    case TokenKind::caret:
        return parsePointerType();
    default:
        return parseSimpleType();
    }
}

// simpleType = '(' enumeration ')' | typeIdentifier | subrange
Type* SourceParser::parseSimpleType() {
    if (at(TokenKind::leftParenthesis))
        return parseEnumeration();
    if (at(TokenKind::identifier)) {
        Symbol* symbol = token_.name->meaning;
        if (symbol == nullptr) {
            failHere(Error::unknownIdentifier, token_.name->text);
            return &untyped_;
        }
        if (symbol->kind == SymbolKind::typeName) {
            advance();
            return symbol->type;
        }
        if (symbol->kind != SymbolKind::constant) {
            failHere(Error::typeIdentifierExpected);
            return &untyped_;
        }
    } else if (token_.isReservedWord()) {
        failHere(Error::unknownIdentifier);
        return &untyped_;
    }
    return parseSubrange(parseConstant());
}

// subrange = constant '..' constant
Type* SourceParser::parseSubrange(const ConstantValue& low) {
    if (!errors.failed() && !low.type->isOrdinal())
        fail(Error::subrangeBase, low.position);
    expect(TokenKind::range, Error::rangeExpected);
    const ConstantValue high = parseConstant();
    if (errors.failed())
        return &untyped_;
    if (high.type->host() != low.type->host()) {
        fail(high.type->isOrdinal() ? Error::typeMismatch : Error::subrangeBase, high.position);
        return &untyped_;
    }
    if (low.value > high.value)
        fail(Error::lowAboveHigh, high.position);
    Type* type = newType(low.type->kind);
    type->low = low.value;
    type->high = high.value;
    type->size = scalarSize(low.value, high.value);
    type->base = low.type->base != nullptr ? low.type->base : low.type;
    return type;
}

// enumeration = '(' identifier {',' identifier} ')'
Type* SourceParser::parseEnumeration() {
    advance();
    Type* type = newType(TypeKind::enumeration);
    Symbol* last = nullptr;
    do {
        const Position position = token_.position;
        Symbol* constant = declare(expectIdentifier(), SymbolKind::constant, position);
        constant->type = type;
        constant->value = last == nullptr ? 0 : last->value + 1;
        if (last == nullptr)
            type->members = constant;
        else
            last->next = constant;
        last = constant;
    } while (accept(TokenKind::comma));
    expect(TokenKind::rightParenthesis, Error::rightParenthesisExpected);
    type->high = last->value;
    if (type->high > 32767)
        fail(Error::tableOverflow, token_.position);
    type->size = scalarSize(0, type->high);
    return type;
}

// stringType = 'string' '[' constant ']'
Type* SourceParser::parseStringType() {
    advance();
    expect(TokenKind::leftBracket, Error::leftBracketExpected);
    const Position position = token_.position;
    std::int32_t length = 1;
    integerConstant(length);
    if (length < 1 || length > 255) {
        fail(Error::stringLength, position);
        length = 1;
    }
    expect(TokenKind::rightBracket, Error::rightBracketExpected);
    Type* type = newType(TypeKind::string);
    type->high = length;
    type->size = static_cast<std::uint16_t>(length + 1);
    return type;
}

// arrayType = 'array' '[' simpleType {',' simpleType} ']' 'of' type
Type* SourceParser::parseArrayType() {
    const Position position = token_.position;
    advance();
    expect(TokenKind::leftBracket, Error::leftBracketExpected);
    Type* outer = nullptr;
    Type* inner = nullptr;
    do {
        const Position indexPosition = token_.position;
        Type* index = parseSimpleType();
        if (!errors.failed() && !index->isOrdinal())
            fail(Error::simpleTypeExpected, indexPosition);
        Type* array = newType(TypeKind::array);
        array->index = index;
        array->low = index->low;
        array->high = index->high;
        // Until it is known, the base is the dimension outside, so that sizes can be reckoned from within.
        array->base = inner;
        inner = array;
        if (outer == nullptr)
            outer = array;
    } while (accept(TokenKind::comma));
    expect(TokenKind::rightBracket, Error::rightBracketExpected);
    expect(TokenKind::wordOf, Error::ofExpected);
    Type* component = parseType();
    while (inner != nullptr) {
        Type* outside = inner->base;
        inner->base = component;
        const std::uint64_t count = static_cast<std::uint64_t>(inner->high - inner->low + 1);
        const std::uint64_t size = count * component->size;
        if (!fits(size, position))
            return &untyped_;
        inner->size = static_cast<std::uint16_t>(size);
        component = inner;
        inner = outside;
    }
    return errors.failed() ? &untyped_ : outer;
}

// setType = 'set' 'of' simpleType
Type* SourceParser::parseSetType() {
    if (!feature(features_.sets, "sets"))
        return &untyped_;
    advance();
    expect(TokenKind::wordOf, Error::ofExpected);
    const Position position = token_.position;
    Type* base = parseSimpleType();
    if (errors.failed())
        return &untyped_;
    if (!base->isOrdinal())
        fail(Error::simpleTypeExpected, position);
    if (base->low < 0 || base->high > 255) {
        fail(Error::setBase, position);
        return &untyped_;
    }
    Type* type = newType(TypeKind::set);
    type->base = base;
    type->low = base->low;
    type->high = base->high;
    type->size = static_cast<std::uint16_t>(base->high / 8 - base->low / 8 + 1);
    return type;
}

// fileType = 'file' ['of' type]
Type* SourceParser::parseFileType() {
    if (!feature(features_.files, "files"))
        return &untyped_;
    advance();
    Type* type = newType(TypeKind::untypedFile);
    type->size = text_.size;
    if (accept(TokenKind::wordOf)) {
        const Position position = token_.position;
        type->kind = TypeKind::typedFile;
        type->base = parseType();
        if (containsFile(*type->base))
            fail(Error::fileOfFile, position);
    }
    return type;
}

// pointerType = '^' typeIdentifier; the identifier may be declared later in the same section
Type* SourceParser::parsePointerType() {
    advance();
    Type* type = newType(TypeKind::pointer);
    type->size = 2;
    const Position position = token_.position;
    if (token_.isReservedWord()) {
        failHere(Error::typeIdentifierExpected);
        return type;
    }
    Name* name = expectIdentifier();
    if (name != nullptr)
        pendingPointers_.push_back({type, name, position});
    return type;
}

// At the end of a section of declarations, all targets of pointers are known.
void SourceParser::resolvePointers() {
    for (const PendingPointer& pending : pendingPointers_) {
        const Symbol* target = pending.target->meaning;
        if (target == nullptr || target->kind != SymbolKind::typeName) {
            fail(Error::undefinedPointerType, pending.position, pending.target->text);
            break;
        }
        pending.pointer->base = target->type;
    }
    pendingPointers_.clear();
}

// Where only the name of a type may stand: parameters and results.
Type* SourceParser::parseTypeIdentifier() {
    if (!at(TokenKind::identifier)) {
        failHere(Error::typeIdentifierExpected);
        return &untyped_;
    }
    const Symbol* symbol = token_.name->meaning;
    if (symbol == nullptr)
        failHere(Error::unknownIdentifier, token_.name->text);
    else if (symbol->kind != SymbolKind::typeName)
        failHere(Error::typeIdentifierExpected);
    if (errors.failed())
        return &untyped_;
    advance();
    return symbol->type;
}

} // namespace tp3
