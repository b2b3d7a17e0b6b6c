#include "source_parser.h"

namespace tp3 {

// designator = variable identifier selectors
Expr* SourceParser::designator(Symbol& variable, Position position) {
    return selectors(variableNode(variable, position));
}

// selectors = {'[' expression {',' expression} ']' | '.' identifier | '^'}
// A selector that does not suit the type is left to whoever comes next, who will find it unexpected.
Expr* SourceParser::selectors(Expr* base) {
    while (true) {
        const TypeKind kind = base->type->kind;
        if (at(TokenKind::leftBracket) && (kind == TypeKind::array || kind == TypeKind::string)) {
            base = indexSelector(base);
        } else if (at(TokenKind::period) && kind == TypeKind::record) {
            base = fieldSelector(base);
        } else if (at(TokenKind::caret) && kind == TypeKind::pointer && base->type->base != nullptr) {
            const Position position = token_.position;
            advance();
            noteAccess(*base, Access::read);
            Expr* node = newExpr(ExprKind::dereference, base->type->base, position);
            node->left = base;
            base = finish(node);
        } else {
            return base;
        }
    }
}

// '[' expression {',' expression} ']'
Expr* SourceParser::indexSelector(Expr* base) {
    const Position position = token_.position;
    const bool checked = scanner_.directives().rangeCheck;
    advance();
    while (true) {
        if (base->type->kind == TypeKind::array)
            base = arrayIndex(base, position, checked);
        else if (base->type->kind == TypeKind::string)
            base = characterIndex(base, checked);
        else
            failHere(Error::rightBracketExpected);
        if (!accept(TokenKind::comma))
            break;
    }
    expect(TokenKind::rightBracket, Error::rightBracketExpected);
    return base;
}

Expr* SourceParser::arrayIndex(Expr* base, Position bracket, bool checked) {
    Type& array = *base->type;
    const Position position = token_.position;
    Expr* index = parseExpression();
    if (errors.failed())
        return errorNode();
    if (array.index->host() == &char_)
        index = toChar(index);
    if (!index->type->isOrdinal() || index->type->host() != array.index->host()) {
        fail(Error::typeMismatch, position);
        return errorNode();
    }
    const bool constant = index->kind == ExprKind::ordinal;
    if (constant && checked && (index->value < array.low || index->value > array.high))
        fail(Error::constantOutOfRange, position);
    Expr* node = newExpr(ExprKind::index, array.base, bracket);
    node->left = base;
    node->right = index;
    node->checked = checked && !constant && (index->type->low < array.low || index->type->high > array.high);
    return finish(node);
}

// s[i] with the characters from 1 and the length at 0
Expr* SourceParser::characterIndex(Expr* base, bool checked) {
    const Position position = token_.position;
    const Type& string = *base->type;
    Expr* index = integerExpression();
    if (errors.failed())
        return errorNode();
    const bool constant = index->kind == ExprKind::ordinal;
    if (constant && checked && (index->value < 0 || index->value > string.high))
        fail(Error::constantOutOfRange, position);
    Expr* node = newExpr(ExprKind::character, &char_, base->position);
    node->left = base;
    node->right = index;
    node->checked = checked && !constant && (index->type->low < 0 || index->type->high > string.high);
    return finish(node);
}

// '.' identifier
Expr* SourceParser::fieldSelector(Expr* base) {
    advance();
    const Position position = token_.position;
    const Name* name = expectIdentifier();
    if (name == nullptr)
        return errorNode();
    const Symbol* field = findField(*base->type, name);
    if (field == nullptr) {
        fail(Error::unknownIdentifier, position, name->text);
        return errorNode();
    }
    Expr* node = newExpr(ExprKind::field, field->type, position);
    node->left = base;
    node->value = field->value;
    return finish(node);
}

// memoryElement = ('Mem' | 'Port') '[' expression ']'; the token is the identifier
Expr* SourceParser::memoryElement(CallShape shape, Position position) {
    advance();
    expect(TokenKind::leftBracket, Error::leftBracketExpected);
    Expr* address = integerExpression();
    expect(TokenKind::rightBracket, Error::rightBracketExpected);
    Expr* node =
        newExpr(shape == CallShape::memoryArray ? ExprKind::memory : ExprKind::port, &byte_, position);
    node->left = address;
    return finish(node);
}

bool SourceParser::isWithField(const Name* name) const {
    for (const WithRecord& with : withRecords_)
        if (findField(*with.record, name) != nullptr)
            return true;
    return false;
}

// The field that a name means because of a with statement around, the innermost first; null if it is none.
Expr* SourceParser::findInWith(const Name* name, Position position) {
    for (std::size_t i = withRecords_.size(); i-- > 0;) {
        const Symbol* field = findField(*withRecords_[i].record, name);
        if (field == nullptr)
            continue;
        Expr* node = newExpr(ExprKind::field, field->type, position);
        node->left = copyDesignator(withRecords_[i].designator);
        node->value = field->value;
        noteAccess(*node->left, Access::read);
        return finish(node);
    }
    return nullptr;
}

// A place that can be written, or whose address can be taken. The token is its identifier.
Expr* SourceParser::parseVariable(Access access) {
    const Position position = token_.position;
    if (!at(TokenKind::identifier)) {
        const bool literal = at(TokenKind::integer) || at(TokenKind::real) || at(TokenKind::string) ||
                             at(TokenKind::minus) || at(TokenKind::plus);
        failHere(literal ? Error::constantNotAllowed : Error::unknownIdentifier);
        return errorNode();
    }
    Name* name = token_.name;
    Expr* node = withRecords_.empty() ? nullptr : findInWith(name, position);
    if (node != nullptr) {
        advance();
        node = selectors(node);
        noteAccess(*node, access);
        return node;
    }
    Symbol* symbol = name->meaning;
    if (symbol != nullptr && symbol->kind == SymbolKind::variable) {
        advance();
        node = designator(*symbol, position);
        noteAccess(*node, access);
        return node;
    }
    if (symbol != nullptr && symbol->kind == SymbolKind::standardRoutine) {
        const CallShape shape = standardNames()[static_cast<std::size_t>(symbol->value)].shape;
        if (shape == CallShape::memoryArray || (shape == CallShape::portArray && access == Access::write))
            return memoryElement(shape, position);
    }
    const bool constant = symbol != nullptr && symbol->kind == SymbolKind::constant;
    failHere(constant ? Error::constantNotAllowed : Error::unknownIdentifier, name->text);
    return errorNode();
}

// True when the place lies where it lies during a whole routine: no index or pointer that may change.
bool SourceParser::isStaticDesignator(const Expr* designator) const {
    while (designator->kind == ExprKind::field ||
           (designator->kind == ExprKind::index && designator->right->kind == ExprKind::ordinal))
        designator = designator->left;
    return designator->kind == ExprKind::variable;
}

Expr* SourceParser::copyDesignator(const Expr* original) {
    Expr* copy = arena_.make<Expr>(*original);
    copy->next = nullptr;
    if (original->left != nullptr)
        copy->left = copyDesignator(original->left);
    if (original->right != nullptr)
        copy->right = copyDesignator(original->right);
    return copy;
}

} // namespace tp3
