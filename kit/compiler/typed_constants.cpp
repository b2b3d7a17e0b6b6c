#include "real_constant.h"
#include "source_parser.h"

#include <cstring>

namespace tp3 {

// typedConstant = constant | '(' typedConstant {',' typedConstant} ')' |
//                 '(' identifier ':' typedConstant {';' identifier ':' typedConstant} ')' | '[' elements ']'
void SourceParser::typedConstant(Symbol& symbol) {
    if (errors.failed())
        return;
    auto* bytes = static_cast<std::uint8_t*>(arena_.allocate(symbol.type->size));
    constantBytes(*symbol.type, bytes);
    symbol.text = reinterpret_cast<const char*>(bytes);
    symbol.textLength = symbol.type->size;
    if (!errors.failed())
        consumer_.typedConstant(symbol);
}

// Lays out a constant as it will stand in memory.
void SourceParser::constantBytes(Type& type, std::uint8_t* bytes) {
    const Nesting nesting(*this);
    if (!nesting.ok)
        return;
    switch (type.kind) {
    case TypeKind::integer:
    case TypeKind::character:
    case TypeKind::boolean:
    case TypeKind::enumeration:
        return ordinalBytes(type, bytes);
    case TypeKind::string:
        return stringBytes(type, bytes);
    case TypeKind::array:
        return arrayBytes(type, bytes);
    case TypeKind::record:
        return recordBytes(type, bytes);
    case TypeKind::real:
        return realBytes(bytes);
    case TypeKind::set:
        return setBytes(type, bytes);
    default:
        return failHere(Error::fileOrPointerNotAllowed);
    }
}

void SourceParser::ordinalBytes(Type& type, std::uint8_t* bytes) {
    const ConstantValue constant = parseConstant();
    if (errors.failed())
        return;
    if (type.host() == &char_ && constant.type->kind == TypeKind::string && constant.length == 0)
        return; // the empty literal is Chr(0)
    if (constant.type->host() != type.host())
        return fail(Error::typeMismatch, constant.position);
    if (constant.value < type.low || constant.value > type.high)
        return fail(Error::constantOutOfRange, constant.position);
    bytes[0] = static_cast<std::uint8_t>(constant.value & 0xFF);
    if (type.size == 2)
        bytes[1] = static_cast<std::uint8_t>((constant.value >> 8) & 0xFF);
}

void SourceParser::stringBytes(Type& type, std::uint8_t* bytes) {
    const ConstantValue constant = parseConstant();
    if (errors.failed())
        return;
    if (constant.type->host() == &char_) {
        bytes[0] = 1;
        bytes[1] = static_cast<std::uint8_t>(constant.value);
        return;
    }
    if (constant.type->kind != TypeKind::string)
        return fail(Error::stringConstantExpected, constant.position);
    const std::int32_t length = constant.length < type.high ? constant.length : type.high;
    bytes[0] = static_cast<std::uint8_t>(length);
    if (length > 0)
        std::memcpy(bytes + 1, constant.text, static_cast<std::size_t>(length));
}

void SourceParser::arrayBytes(Type& type, std::uint8_t* bytes) {
    const std::int32_t count = type.high - type.low + 1;
    if (isCharArray(type) && !at(TokenKind::leftParenthesis)) {
        const ConstantValue constant = parseConstant();
        if (errors.failed())
            return;
        const bool single = constant.type->host() == &char_;
        if (!single && constant.type->kind != TypeKind::string)
            return fail(Error::stringConstantExpected, constant.position);
        if ((single ? 1 : constant.length) != count)
            return fail(Error::stringConstantLength, constant.position);
        if (single)
            bytes[0] = static_cast<std::uint8_t>(constant.value);
        else
            std::memcpy(bytes, constant.text, constant.length);
        return;
    }
    expect(TokenKind::leftParenthesis, Error::leftParenthesisExpected);
    for (std::int32_t i = 0; i < count && !errors.failed(); ++i) {
        if (i > 0)
            expect(TokenKind::comma, Error::commaExpected);
        constantBytes(*type.base, bytes + static_cast<std::size_t>(i) * type.base->size);
    }
    expect(TokenKind::rightParenthesis, Error::rightParenthesisExpected);
}

// Fields stand in the order of their declaration; the fields of other variants may be left out.
void SourceParser::recordBytes(Type& type, std::uint8_t* bytes) {
    expect(TokenKind::leftParenthesis, Error::leftParenthesisExpected);
    const Symbol* next = type.members;
    do {
        const Position position = token_.position;
        const Name* name = expectIdentifier();
        if (name == nullptr)
            return;
        const Symbol* field = next;
        while (field != nullptr && field->name != name)
            field = field->next;
        if (field == nullptr)
            return findField(type, name) == nullptr ? fail(Error::unknownIdentifier, position, name->text)
                                                    : fail(Error::fieldOrder, position, name->text);
        next = field->next;
        expect(TokenKind::colon, Error::colonExpected);
        constantBytes(*field->type, bytes + field->value);
    } while (accept(TokenKind::semicolon));
    expect(TokenKind::rightParenthesis, Error::rightParenthesisExpected);
}

void SourceParser::realBytes(std::uint8_t* bytes) {
    const ConstantValue constant = parseConstant();
    if (errors.failed())
        return;
    if (constant.type->host() == &integer_)
        realFromInteger(constant.value, reinterpret_cast<char*>(bytes));
    else if (constant.type->kind == TypeKind::real)
        std::memcpy(bytes, constant.text, 6);
    else
        fail(Error::numericConstantExpected, constant.position);
}

// '[' [constant ['..' constant] {',' constant ['..' constant]}] ']'
void SourceParser::setBytes(Type& type, std::uint8_t* bytes) {
    expect(TokenKind::leftBracket, Error::leftBracketExpected);
    if (accept(TokenKind::rightBracket))
        return;
    do {
        const ConstantValue low = parseConstant();
        const ConstantValue high = accept(TokenKind::range) ? parseConstant() : low;
        if (errors.failed())
            return;
        for (const ConstantValue& bound : {low, high}) {
            if (bound.type->host() != type.base->host())
                return fail(Error::typeMismatch, bound.position);
            if (bound.value < type.low || bound.value > type.high)
                return fail(Error::constantOutOfRange, bound.position);
        }
        for (std::int32_t element = low.value; element <= high.value; ++element)
            bytes[element / 8 - type.low / 8] |= static_cast<std::uint8_t>(1 << (element % 8));
    } while (accept(TokenKind::comma));
    expect(TokenKind::rightBracket, Error::rightBracketExpected);
}

} // namespace tp3
