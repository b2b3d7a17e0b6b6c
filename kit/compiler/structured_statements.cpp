#include "source_parser.h"

namespace tp3 {

// What lies inside a for or a with statement. Lives in the arena: gotos are compared at the end of the block.
void SourceParser::openEnclosure() {
    Enclosure* enclosure = arena_.make<Enclosure>();
    enclosure->outer = enclosure_;
    enclosure_ = enclosure;
}

// withStatement = 'with' variable {',' variable} 'do' statement
// A record that stays where it is for the whole routine is used directly; for any other, its address is taken
// once and kept in a hidden pointer.
Stmt* SourceParser::withStatement() {
    const Position start = token_.position;
    StmtList list;
    Stmt* innermost = nullptr;
    const std::size_t before = withRecords_.size();
    do {
        advance();
        const Position position = token_.position;
        Expr* record = parseVariable(Access::read);
        if (!errors.failed() && record->type->kind != TypeKind::record)
            fail(Error::recordVariableExpected, position);
        if (withRecords_.size() >= scanner_.directives().withLimit)
            fail(Error::withNesting, position);
        if (errors.failed())
            break;
        Stmt* with = withRecord(record, position);
        if (with == nullptr)
            continue;
        if (innermost == nullptr)
            list.add(with);
        else
            innermost->body = with;
        innermost = with;
    } while (at(TokenKind::comma));
    expect(TokenKind::wordDo, Error::doExpected);
    openEnclosure();
    Stmt* body = parseStatement();
    closeEnclosure();
    withRecords_.resize(before);
    if (innermost == nullptr)
        return body;
    innermost->body = body;
    return sequence(list, start);
}

// Opens the fields of a record. Null when no statement is needed for it.
Stmt* SourceParser::withRecord(Expr* record, Position position) {
    if (isStaticDesignator(record)) {
        withRecords_.push_back({record->type, record});
        return nullptr;
    }
    noteAccess(*record, Access::address);
    Type* pointer = newType(TypeKind::pointer);
    pointer->size = 2;
    pointer->base = record->type;
    Symbol* hidden = newHidden(pointer);
    noteUse(*hidden, Access::write);
    Expr* variable = variableNode(*hidden, position);
    Expr* address = standardNode(StandardRoutine::addressOf, pointer, position);
    address->left = record;
    Stmt* with = newStmt(StmtKind::with, position);
    with->target = variable;
    with->value = finish(address);
    Expr* dereference = newExpr(ExprKind::dereference, record->type, position);
    dereference->left = copyDesignator(variable);
    withRecords_.push_back({record->type, finish(dereference)});
    noteUse(*hidden, Access::read);
    return with;
}

Symbol* SourceParser::findLabel(Name* name) {
    Symbol* symbol = name != nullptr ? name->meaning : nullptr;
    return symbol != nullptr && symbol->kind == SymbolKind::label ? symbol : nullptr;
}

// label ':'
void SourceParser::placeLabel(Symbol& label, StmtList& list) {
    if (label.owner != current_)
        return fail(Error::labelOutsideBlock, token_.position);
    if (label.value != 0)
        return fail(Error::duplicateIdentifier, token_.position);
    label.value = 1;
    label.enclosure = enclosure_;
    Stmt* stmt = newStmt(StmtKind::label, token_.position);
    stmt->symbol = &label;
    list.add(stmt);
}

// gotoStatement = 'goto' label
Stmt* SourceParser::gotoStatement() {
    Stmt* stmt = newStmt(StmtKind::gotoLabel, token_.position);
    advance();
    const Position position = token_.position;
    const bool declared = at(TokenKind::identifier) && token_.name->meaning != nullptr;
    Symbol* label = findLabel(labelName());
    if (label == nullptr) {
        fail(declared ? Error::badGoto : Error::undefinedLabel, position);
        return stmt;
    }
    if (label->owner != current_)
        fail(Error::labelOutsideBlock, position);
    stmt->symbol = label;
    pendingGotos_.push_back({label, enclosure_, position});
    return stmt;
}

// At the end of a block: every label that is gone to has a place, and not inside a for or with that the goto
// is outside of.
void SourceParser::checkGotos() {
    std::size_t kept = 0;
    for (const PendingGoto& pending : pendingGotos_) {
        if (errors.failed())
            break;
        if (pending.label->owner != current_) {
            pendingGotos_[kept++] = pending;
            continue;
        }
        if (pending.label->value == 0)
            return fail(Error::undefinedLabel, pending.position);
        const Enclosure* enclosure = pending.from;
        while (enclosure != nullptr && enclosure != pending.label->enclosure)
            enclosure = enclosure->outer;
        if (enclosure != pending.label->enclosure)
            return fail(Error::badGoto, pending.position);
    }
    pendingGotos_.resize(kept);
}

// inlineStatement = 'inline' '(' inlineItem {'/' inlineItem} ')'
Stmt* SourceParser::inlineStatement() {
    Stmt* stmt = newStmt(StmtKind::inlineCode, token_.position);
    stmt->code = nullptr;
    advance();
    openArguments();
    InlineItem* last = nullptr;
    do {
        InlineItem* item = inlineItem();
        if (last == nullptr)
            stmt->code = item;
        else
            last->next = item;
        last = item;
    } while (accept(TokenKind::slash));
    closeArguments();
    return stmt;
}

// inlineItem = ['<' | '>'] inlineTerm {('+' | '-') inlineTerm}
InlineItem* SourceParser::inlineItem() {
    InlineItem* item = arena_.make<InlineItem>();
    if (accept(TokenKind::less))
        item->size = InlineItem::Size::byte;
    else if (accept(TokenKind::greater))
        item->size = InlineItem::Size::word;
    bool negative = false;
    if (at(TokenKind::plus) || at(TokenKind::minus)) {
        negative = at(TokenKind::minus);
        advance();
    }
    while (inlineTerm(*item, negative)) {
        if (!at(TokenKind::plus) && !at(TokenKind::minus))
            break;
        negative = at(TokenKind::minus);
        advance();
    }
    item->constant = static_cast<std::int16_t>(item->constant & 0xFFFF);
    return item;
}

// inlineTerm = integer constant | Char constant | variable identifier | routine identifier | '*'
bool SourceParser::inlineTerm(InlineItem& item, bool negative) {
    if (errors.failed())
        return false;
    const Position position = token_.position;
    Symbol* symbol = at(TokenKind::identifier) ? token_.name->meaning : nullptr;
    const bool variable = symbol != nullptr && symbol->kind == SymbolKind::variable;
    const bool routine = symbol != nullptr && symbol->kind == SymbolKind::routine;
    if (at(TokenKind::star) || variable || routine) {
        // One address in each item, and only added: the sum must stay an address or a distance from one.
        if (negative || item.symbol != nullptr || item.locationCounter) {
            fail(Error::inlineError, position);
            return false;
        }
        item.locationCounter = at(TokenKind::star);
        item.symbol = at(TokenKind::star) ? nullptr : symbol;
        advance();
        if (variable)
            noteUse(*symbol, Access::address);
        if (routine)
            noteCall(*symbol->routine);
        return true;
    }
    if (!at(TokenKind::integer) && !at(TokenKind::string) && !at(TokenKind::identifier) &&
        !at(TokenKind::caret)) {
        failHere(Error::inlineError);
        return false;
    }
    const ConstantValue constant = unsignedConstant();
    if (errors.failed())
        return false;
    if (!constant.type->isOrdinal()) {
        fail(Error::inlineError, position);
        return false;
    }
    item.constant += negative ? -constant.value : constant.value;
    item.constant = static_cast<std::int16_t>(item.constant & 0xFFFF);
    return true;
}

} // namespace tp3
