#include "real_constant.h"
#include "source_parser.h"

namespace tp3 {

bool SourceParser::isCharArray(const Type& type) const {
    return type.kind == TypeKind::array && type.base != nullptr && type.base->host() == &char_;
}

bool SourceParser::isStringLike(const Type& type) const {
    return type.kind == TypeKind::string || type.host() == &char_ || isCharArray(type);
}

Expr* SourceParser::convertNode(Expr* value, Type* type) {
    Expr* node = newExpr(ExprKind::convert, type, value->position);
    node->left = value;
    return finish(node);
}

// An ordinal seen as another ordinal type with the same number.
Expr* SourceParser::retype(Expr* value, Type* type) {
    if (value->type == type)
        return value;
    if (value->kind != ExprKind::ordinal)
        return convertNode(value, type);
    std::int32_t number = static_cast<std::int16_t>(value->value);
    if (type->size == 1)
        number &= 0xFF;
    return ordinalNode(number, type, value->position);
}

// Char and arrays of Char as strings; null for what cannot be one.
Expr* SourceParser::toString(Expr* value) {
    const Type& type = *value->type;
    if (type.kind == TypeKind::string)
        return value;
    if (type.host() == &char_) {
        if (value->kind != ExprKind::ordinal)
            return convertNode(value, stringType(1));
        const char character = static_cast<char>(value->value);
        Expr* node = stringNode(arena_.copyText(&character, 1), 1, value->position);
        return node;
    }
    if (!isCharArray(type) || type.size > 255)
        return nullptr;
    return convertNode(value, stringType(type.size));
}

// A string where a Char is wanted: its length must be 1 when the program runs. The empty literal is Chr(0).
// Anything else stays what it is.
Expr* SourceParser::toChar(Expr* value) {
    if (value->type->kind != TypeKind::string)
        return value;
    if (value->kind != ExprKind::string)
        return convertNode(value, &char_);
    return value->textLength == 0 ? ordinalNode(0, &char_, value->position) : value;
}

// Integers as reals; null for what cannot be one.
Expr* SourceParser::toReal(Expr* value) {
    if (value->type->kind == TypeKind::real)
        return value;
    if (value->type->host() != &integer_)
        return nullptr;
    if (value->kind != ExprKind::ordinal)
        return convertNode(value, &real_);
    char* bytes = static_cast<char*>(arena_.allocate(6));
    realFromInteger(value->value, bytes);
    Expr* node = newExpr(ExprKind::realConstant, &real_, value->position);
    node->text = bytes;
    return node;
}

// Makes a value fit a variable or value parameter of type `target`; `position` is where the value begins.
Expr* SourceParser::assignable(Expr* value, Type* target, Position position) {
    if (errors.failed())
        return value;
    if (containsFile(*target) || value->type->isFile()) {
        fail(Error::fileOrPointerNotAllowed, position);
        return errorNode();
    }
    Expr* result = nullptr;
    switch (target->kind) {
    case TypeKind::integer:
    case TypeKind::character:
    case TypeKind::boolean:
    case TypeKind::enumeration:
        result = assignableOrdinal(value, target, position);
        break;
    case TypeKind::real:
        result = toReal(value);
        break;
    case TypeKind::string:
        result = toString(value);
        break;
    case TypeKind::array:
        result = assignableArray(value, target, position);
        break;
    case TypeKind::record:
        result = value->type == target ? value : nullptr;
        break;
    case TypeKind::pointer:
        if (value->type == target || value->type == &anyPointer_)
            result = value;
        break;
    case TypeKind::set:
        result = assignableSet(value, target, position);
        break;
    case TypeKind::none:
        break;
    case TypeKind::textFile:
    case TypeKind::typedFile:
    case TypeKind::untypedFile:
        break;
    }
    if (result == nullptr) {
        fail(Error::typeMismatch, position);
        return errorNode();
    }
    return result;
}

Expr* SourceParser::assignableOrdinal(Expr* value, Type* target, Position position) {
    if (target->host() == &char_)
        value = toChar(value);
    if (!value->type->isOrdinal() || value->type->host() != target->host())
        return nullptr;
    const bool checked = scanner_.directives().rangeCheck;
    if (value->kind == ExprKind::ordinal) {
        if (checked && (value->value < target->low || value->value > target->high))
            fail(Error::constantOutOfRange, position);
        return value;
    }
    if (!checked || (value->type->low >= target->low && value->type->high <= target->high))
        return value;
    Expr* node = convertNode(value, target);
    node->checked = true;
    return node;
}

// Arrays of the same type, arrays of Char of the same length, and string constants of exactly that length.
Expr* SourceParser::assignableArray(Expr* value, Type* target, Position position) {
    if (value->type == target)
        return value;
    if (!isCharArray(*target))
        return nullptr;
    if (value->kind == ExprKind::ordinal && value->type->host() == &char_)
        value = toString(value);
    if (value->kind == ExprKind::string) {
        if (value->textLength != target->size)
            fail(Error::stringConstantLength, position);
        Expr* node = stringNode(value->text, value->textLength, value->position);
        node->type = target;
        return node;
    }
    return isCharArray(*value->type) && value->type->size == target->size ? value : nullptr;
}

} // namespace tp3
