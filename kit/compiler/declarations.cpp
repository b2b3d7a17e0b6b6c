#include "source_parser.h"

namespace tp3 {

// labelSection = 'label' label {',' label} ';'
void SourceParser::labelSection() {
    advance();
    do {
        const Position position = token_.position;
        Symbol* label = declare(labelName(), SymbolKind::label, position);
        label->owner = current_;
    } while (accept(TokenKind::comma));
    expectSemicolon();
}

// label = unsigned integer | identifier. Null when there is none.
Name* SourceParser::labelName() {
    if (!at(TokenKind::integer))
        return expectIdentifier();
    // 007 and 7 are the same label. A digit in front keeps such names apart from identifiers.
    const std::string text = std::to_string(token_.value);
    advance();
    return names_.find(text);
}

// typeSection = 'type' {identifier '=' type ';'}
void SourceParser::typeSection() {
    advance();
    do {
        const Position position = token_.position;
        Name* name = expectIdentifier();
        expect(TokenKind::equal, Error::equalExpected);
        Type* type = parseType();
        declare(name, SymbolKind::typeName, position)->type = type;
        expectSemicolon();
    } while (at(TokenKind::identifier));
    resolvePointers();
}

// varSection = 'var' {variableGroup ';'}
void SourceParser::varSection() {
    advance();
    do {
        variableGroup();
        expectSemicolon();
    } while (at(TokenKind::identifier));
    resolvePointers();
}

// variableGroup = identifier {',' identifier} ':' type [absolutePart]
void SourceParser::variableGroup() {
    const StorageKind storage = current_->level == 0 ? StorageKind::global : StorageKind::local;
    Symbol* first = nullptr;
    Symbol* last = nullptr;
    do {
        const Position position = token_.position;
        Name* name = expectIdentifier();
        if (name == nullptr)
            return;
        Symbol* variable = newVariable(name, storage, &untyped_, position);
        enter(*variable);
        if (first == nullptr)
            first = variable;
        else
            last->next = variable;
        last = variable;
    } while (accept(TokenKind::comma));
    expect(TokenKind::colon, Error::colonExpected);
    Type* type = parseType();
    for (Symbol* variable = first; variable != nullptr; variable = variable->next)
        variable->type = type;
    if (at(TokenKind::wordAbsolute)) {
        if (first != last)
            return failHere(Error::badAbsolute);
        return absolutePart(*first);
    }
    if (lastLocal_ == nullptr)
        current_->locals = first;
    else
        lastLocal_->next = first;
    lastLocal_ = last;
    for (Symbol* variable = first; variable != nullptr && !errors.failed(); variable = variable->next)
        if (storage == StorageKind::global)
            consumer_.globalVariable(*variable);
}

// absolutePart = 'absolute' (integer constant | variable identifier)
void SourceParser::absolutePart(Symbol& variable) {
    advance();
    if (at(TokenKind::identifier)) {
        Symbol* other = token_.name->meaning;
        if (other == nullptr)
            return failHere(Error::unknownIdentifier, token_.name->text);
        if (other->kind == SymbolKind::variable && other != &variable) {
            advance();
            variable.storage = StorageKind::absoluteVariable;
            variable.alias = other;
            return noteUse(*other, Access::address);
        }
        if (other->kind != SymbolKind::constant)
            return failHere(Error::badAbsolute);
    }
    const Position position = token_.position;
    const ConstantValue address = parseConstant();
    if (errors.failed())
        return;
    if (address.type->host() != &integer_)
        return fail(Error::badAbsolute, position);
    variable.storage = StorageKind::absoluteAddress;
    variable.value = address.value & 0xFFFF;
}

} // namespace tp3
