#include "source_parser.h"

namespace tp3 {

Symbol* SourceParser::findField(const Type& record, const Name* name) {
    for (Symbol* field = record.members; field != nullptr; field = field->next)
        if (field->name == name)
            return field;
    return nullptr;
}

// recordType = 'record' fieldList 'end'
Type* SourceParser::parseRecordType() {
    advance();
    Type* type = newType(TypeKind::record);
    Symbol* last = nullptr;
    std::uint32_t size = 0;
    parseFieldList(*type, last, 0, size, TokenKind::wordEnd);
    expect(TokenKind::wordEnd, Error::endExpected);
    type->size = static_cast<std::uint16_t>(size);
    return errors.failed() ? &untyped_ : type;
}

Symbol* SourceParser::addField(Type& record, Symbol*& last, Name* name, Position position) {
    if (name != nullptr && findField(record, name) != nullptr)
        fail(Error::duplicateIdentifier, position, name->text);
    Symbol* field = arena_.make<Symbol>();
    field->kind = SymbolKind::field;
    field->name = name;
    field->position = position;
    if (last == nullptr)
        record.members = field;
    else
        last->next = field;
    last = field;
    return field;
}

void SourceParser::placeField(Symbol& field, Type* type, std::uint32_t& offset) {
    field.type = type;
    field.value = static_cast<std::int32_t>(offset);
    if (fits(std::uint64_t{offset} + type->size, field.position))
        offset += type->size;
}

// fieldList = [fields {';' fields}] [';' variantPart];  fields = identifier {',' identifier} ':' type
// Fields begin at `offset`; `size` grows to the end of the longest variant.
void SourceParser::parseFieldList(Type& record, Symbol*& last, std::uint32_t offset, std::uint32_t& size,
                                  TokenKind closing) {
    const Nesting nesting(*this);
    if (!nesting.ok)
        return;
    while (!at(closing) && !errors.failed()) {
        if (at(TokenKind::wordCase)) {
            parseVariantPart(record, last, offset, size);
            break;
        }
        if (at(TokenKind::semicolon)) {
            advance();
            continue;
        }
        Symbol* first = nullptr;
        do {
            const Position position = token_.position;
            Symbol* field = addField(record, last, expectIdentifier(), position);
            if (first == nullptr)
                first = field;
        } while (accept(TokenKind::comma));
        expect(TokenKind::colon, Error::colonExpected);
        Type* type = parseType();
        // Fields of a record type written here are in its own list, so that only ours follow.
        for (Symbol* field = first; field != nullptr; field = field->next)
            placeField(*field, type, offset);
        if (!at(closing))
            expectSemicolon();
    }
    if (offset > size)
        size = offset;
}

// variantPart = 'case' [identifier ':'] typeIdentifier 'of' variant {';' variant}
// variant = constants ':' '(' fieldList ')'
void SourceParser::parseVariantPart(Type& record, Symbol*& last, std::uint32_t offset, std::uint32_t& size) {
    advance();
    const Position position = token_.position;
    Type* type = &untyped_;
    const Symbol* meaning = at(TokenKind::identifier) ? token_.name->meaning : nullptr;
    Name* tag = expectIdentifier();
    if (accept(TokenKind::colon)) {
        Symbol* field = addField(record, last, tag, position);
        const Position typePosition = token_.position;
        type = parseTypeIdentifier();
        if (!errors.failed() && !type->isOrdinal())
            fail(Error::simpleTypeExpected, typePosition);
        placeField(*field, type, offset);
    } else if (!errors.failed()) {
        if (meaning == nullptr)
            fail(Error::unknownIdentifier, position, tag->text);
        else if (meaning->kind != SymbolKind::typeName)
            fail(Error::typeIdentifierExpected, position);
        else
            type = meaning->type;
        if (!errors.failed() && !type->isOrdinal())
            fail(Error::simpleTypeExpected, position);
    }
    expect(TokenKind::wordOf, Error::ofExpected);
    while (!errors.failed() && !at(TokenKind::wordEnd) && !at(TokenKind::rightParenthesis)) {
        if (accept(TokenKind::semicolon))
            continue;
        caseLabels(*type);
        expect(TokenKind::colon, Error::colonExpected);
        expect(TokenKind::leftParenthesis, Error::leftParenthesisExpected);
        parseFieldList(record, last, offset, size, TokenKind::rightParenthesis);
        expect(TokenKind::rightParenthesis, Error::rightParenthesisExpected);
        if (!at(TokenKind::wordEnd) && !at(TokenKind::rightParenthesis))
            expectSemicolon();
    }
    if (offset > size)
        size = offset;
}

} // namespace tp3
