#include "real_constant.h"
#include "source_parser.h"

#include <cstring>

namespace tp3 {

// constant = ['+' | '-'] (integer | real | identifier) | string
ConstantValue SourceParser::parseConstant() {
    const Position position = token_.position;
    if (at(TokenKind::minus) || at(TokenKind::plus)) {
        const bool negative = at(TokenKind::minus);
        advance();
        return signedConstant(negative, position);
    }
    return unsignedConstant();
}

ConstantValue SourceParser::signedConstant(bool negative, Position position) {
    if (negative && at(TokenKind::integer) && token_.value == 32768) {
        advance();
        return {&integer_, -32768, nullptr, 0, position};
    }
    const Position valuePosition = token_.position;
    ConstantValue constant = unsignedConstant();
    constant.position = position;
    if (errors.failed())
        return constant;
    if (constant.type->host() != &integer_ && constant.type->kind != TypeKind::real) {
        fail(Error::numericConstantExpected, valuePosition);
        return constant;
    }
    if (negative)
        negate(constant);
    return constant;
}

void SourceParser::negate(ConstantValue& constant) {
    if (constant.type->kind == TypeKind::real) {
        char* bytes = static_cast<char*>(arena_.allocate(6));
        std::memcpy(bytes, constant.text, 6);
        if (bytes[0] != 0)
            bytes[5] = static_cast<char>(bytes[5] ^ 0x80);
        constant.text = bytes;
    } else {
        constant.value = static_cast<std::int16_t>(-constant.value);
    }
}

ConstantValue SourceParser::unsignedConstant() {
    ConstantValue constant;
    constant.position = token_.position;
    constant.type = &untyped_;
    if (at(TokenKind::caret))
        scanner_.controlCharacter(token_);
    switch (token_.kind) {
    case TokenKind::integer:
        if (token_.value <= 32767) {
            constant.type = &integer_;
            constant.value = token_.value;
            advance();
            break;
        }
        [[fallthrough]];
    case TokenKind::real: {
        if (!feature(features_.reals, "reals"))
            break;
        constant.type = &real_;
        char* bytes = static_cast<char*>(arena_.allocate(6));
        if (!realFromText(scanner_.text(), bytes))
            failHere(Error::realConstant);
        constant.text = bytes;
        advance();
        break;
    }
    case TokenKind::string: {
        const std::string_view text = scanner_.text();
        if (text.size() == 1) {
            constant.type = &char_;
            constant.value = static_cast<unsigned char>(text[0]);
        } else {
            constant.type = stringType(text.size());
            constant.text = arena_.copyText(text.data(), text.size());
            constant.length = static_cast<std::uint16_t>(text.size());
        }
        advance();
        break;
    }
    case TokenKind::identifier: {
        const Symbol* symbol = token_.name->meaning;
        if (symbol == nullptr || symbol->kind != SymbolKind::constant) {
            failHere(Error::unknownIdentifier, token_.name->text);
            break;
        }
        constant.type = symbol->type;
        constant.value = symbol->value;
        constant.length = symbol->textLength;
        constant.text = symbol->text;
        advance();
        break;
    }
    default:
        failHere(Error::unknownIdentifier);
        break;
    }
    return constant;
}

bool SourceParser::integerConstant(std::int32_t& value) {
    const Position position = token_.position;
    if (!at(TokenKind::integer) && !at(TokenKind::identifier) && !at(TokenKind::minus) &&
        !at(TokenKind::plus)) {
        failHere(Error::integerConstantExpected);
        return false;
    }
    const ConstantValue constant = parseConstant();
    if (errors.failed())
        return false;
    if (constant.type->host() != &integer_) {
        fail(Error::integerConstantExpected, position);
        return false;
    }
    value = constant.value;
    return true;
}

// constSection = 'const' {identifier '=' constant ';' | identifier ':' type '=' typedConstant ';'}
void SourceParser::constSection() {
    advance();
    do {
        const Position position = token_.position;
        Name* name = expectIdentifier();
        if (name == nullptr)
            return;
        if (accept(TokenKind::colon)) {
            Symbol* symbol = newVariable(name, StorageKind::typedConstant, parseType(), position);
            enter(*symbol);
            expect(TokenKind::equal, Error::equalExpected);
            resolvePointers();
            typedConstant(*symbol);
        } else {
            expect(TokenKind::equal, Error::equalExpected);
            const ConstantValue constant = parseConstant();
            Symbol* symbol = declare(name, SymbolKind::constant, position);
            symbol->type = constant.type;
            symbol->value = constant.value;
            symbol->text = constant.text;
            symbol->textLength = constant.length;
        }
        expectSemicolon();
    } while (at(TokenKind::identifier));
}

} // namespace tp3
