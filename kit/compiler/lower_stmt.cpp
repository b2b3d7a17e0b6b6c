#include "lower.h"

namespace tp3 {

void Lowering::statements(const Stmt* s) {
    for (; s != nullptr; s = s->next) {
        statement(s);
    }
}

void Lowering::statement(const Stmt* s) {
    b_.setPosition(s->position);
    if ((s->options & optionUserInterrupt) != 0 && s->kind != StmtKind::block && s->kind != StmtKind::label) {
        library(RuntimeEntry::userBreakPoll, {});
    }
    switch (s->kind) {
    case StmtKind::empty:
        break;
    case StmtKind::assign:
        assign(s);
        break;
    case StmtKind::call:
        if (s->value->kind == ExprKind::call) {
            call(s->value, {});
        } else {
            standardStatement(s->value, s->options);
        }
        break;
    case StmtKind::block:
        statements(s->body);
        break;
    case StmtKind::conditional:
        conditional(s);
        break;
    case StmtKind::caseOf:
        caseOf(s);
        break;
    case StmtKind::caseArm:
        statements(s->body);
        break;
    case StmtKind::whileDo:
        whileDo(s);
        break;
    case StmtKind::repeatUntil:
        repeatUntil(s);
        break;
    case StmtKind::forLoop:
        forLoop(s);
        break;
    case StmtKind::with: {
        const Operand address = evaluate(s->value, Width::word);
        b_.copy(variablePlace(*s->target->symbol, Width::word), address, Width::word);
        releaseStack();
        statements(s->body);
        break;
    }
    case StmtKind::gotoLabel:
        b_.jump(labelBlock(s->symbol));
        break;
    case StmtKind::label:
        b_.startBlock(labelBlock(s->symbol));
        break;
    case StmtKind::exit:
        b_.jump(exit_);
        break;
    case StmtKind::inlineCode:
        inlineCode(s);
        break;
    }
    releaseStack();
}

void Lowering::assign(const Stmt* s) {
    const Type* type = s->target->type;
    if (s->target->kind == ExprKind::port) {
        auto [number, value] = operands(s->target->left, s->value, Width::byte);
        Ir& ir = b_.emit(IrOp::portOut, Width::byte);
        ir.a = number;
        ir.b = value;
        return;
    }
    if (type->kind == TypeKind::string) {
        assignString(s->target, s->value);
        return;
    }
    if (type->kind == TypeKind::real) {
        assignReal(s->target, s->value);
        return;
    }
    if (type->kind == TypeKind::set) {
        assignSet(s->target, s->value, s->options);
        return;
    }
    if (!isScalar(type)) {
        assignStructured(s->target, s->value);
        return;
    }
    const Width width = widthOfType(type);
    // The place comes first, as it is written; nobody can tell when neither side calls anything.
    if (s->target->kind != ExprKind::variable && (hasCall(s->value) || hasCall(s->target))) {
        Operand to = place(s->target);
        if (to.usesValue()) {
            to.id = to.isValue() ? to.id : freeze(Operand::value(to.id), Width::word).id;
        }
        const Operand value = evaluate(s->value, width);
        b_.copy(to, value, width);
        return;
    }
    const Operand value = evaluate(s->value, width);
    b_.copy(place(s->target), value, width);
}

/// A chain of else-ifs is walked, not descended into: it may have thousands of links.
void Lowering::conditional(const Stmt* s) {
    const BlockId done = b_.newBlock();
    for (const Stmt* rest = s; rest != nullptr;) {
        if (rest != s && (rest->kind != StmtKind::conditional || rest->next != nullptr)) {
            statements(rest);
            break;
        }
        const BlockId thenBlock = b_.newBlock();
        const BlockId elseBlock = rest->other != nullptr ? b_.newBlock() : done;
        b_.setPosition(rest->position);
        condition(rest->value, thenBlock, elseBlock);
        b_.startBlock(thenBlock);
        statements(rest->body);
        rest = rest->other;
        if (rest != nullptr) {
            if (b_.isOpen()) {
                b_.jump(done);
            }
            b_.startBlock(elseBlock);
        }
    }
    b_.startBlock(done);
}

void Lowering::caseOf(const Stmt* s) {
    const Width width = naturalWidth(s->value);
    Operand selector = evaluate(s->value, width);
    if (!selector.isValue() || !function_.values[selector.id].crossesBlocks) {
        const Operand kept = Operand::value(b_.crossing(width));
        b_.copy(kept, selector, width);
        selector = kept;
    }
    releaseStack();
    const BlockId done = b_.newBlock();
    std::vector<std::pair<const Stmt*, BlockId>> arms;
    const bool isSigned = width == Width::word;
    for (const Stmt* arm = s->body; arm != nullptr; arm = arm->next) {
        const BlockId block = b_.newBlock();
        arms.emplace_back(arm, block);
        for (const CaseLabel* label = arm->labels; label != nullptr; label = label->next) {
            if (width == Width::byte && (label->high < 0 || label->low > 255)) {
                continue; // an 8-bit selector never has these values
            }
            const BlockId next = b_.newBlock();
            if (label->low == label->high) {
                b_.branch(width, Relation::equal, false, selector, Operand::constant(label->low), block,
                          next);
            } else {
                const BlockId above = b_.newBlock();
                b_.branch(width, Relation::less, isSigned, selector, Operand::constant(label->low), next,
                          above);
                b_.startBlock(above);
                b_.branch(width, Relation::lessEqual, isSigned, selector, Operand::constant(label->high),
                          block, next);
            }
            b_.startBlock(next);
        }
    }
    if (s->other != nullptr) {
        statements(s->other);
    }
    if (b_.isOpen()) {
        b_.jump(done);
    }
    for (const auto& [arm, block] : arms) {
        b_.startBlock(block);
        statement(arm);
        if (b_.isOpen()) {
            b_.jump(done);
        }
    }
    b_.startBlock(done);
}

/// The test stands below the body: one jump a round.
void Lowering::whileDo(const Stmt* s) {
    const BlockId body = b_.newBlock();
    const BlockId test = b_.newBlock();
    const BlockId done = b_.newBlock();
    b_.jump(test);
    b_.beginLoop();
    b_.startBlock(body);
    statements(s->body);
    b_.startBlock(test);
    b_.setPosition(s->position);
    condition(s->value, body, done);
    b_.endLoop();
    b_.startBlock(done);
}

void Lowering::repeatUntil(const Stmt* s) {
    const BlockId body = b_.newBlock();
    const BlockId done = b_.newBlock();
    b_.jump(body);
    b_.beginLoop();
    b_.startBlock(body);
    statements(s->body);
    b_.setPosition(s->value->position);
    condition(s->value, done, body);
    b_.endLoop();
    b_.startBlock(done);
}

/// The limit is evaluated once. The variable is stepped and then compared for equality with the value behind
/// the limit, which works at the ends of the type's range too; behind the loop the step too many is taken
/// back, so that the variable keeps the last value. An empty range leaves it alone.
void Lowering::forLoop(const Stmt* s) {
    const Symbol& variable = *s->target->symbol;
    const Width width = widthOfType(s->target->type);
    const bool bytes = width == Width::byte && fitsByte(s->value) && fitsByte(s->limit);
    const Width testWidth = bytes ? Width::byte : Width::word;
    auto [first, limit] = operands(s->value, s->limit, testWidth);
    const BlockId body = b_.newBlock();
    const BlockId done = b_.newBlock();
    const Relation empty = s->down ? Relation::less : Relation::greater;
    if (first.isConstant() && limit.isConstant()) {
        if (s->down ? first.n < limit.n : first.n > limit.n) {
            releaseStack();
            return;
        }
    } else {
        if (!limit.isConstant()) {
            const Operand kept = Operand::value(b_.crossing(testWidth));
            b_.copy(kept, limit, testWidth);
            limit = kept;
        }
        Operand start = first;
        if (!start.isConstant()) {
            start = Operand::value(b_.crossing(testWidth));
            b_.copy(start, first, testWidth);
        }
        first = start;
        releaseStack();
        const BlockId enter = b_.newBlock();
        if (start.isConstant()) {
            b_.branch(testWidth, mirrored(empty), !bytes, limit, start, done, enter);
        } else {
            b_.branch(testWidth, empty, !bytes, start, limit, done, enter);
        }
        b_.startBlock(enter);
    }
    releaseStack();
    b_.copy(variablePlace(variable, width), resize(first, testWidth, width), width);
    if (testWidth != width && !limit.isConstant()) {
        const Operand narrow = Operand::value(b_.crossing(width));
        b_.copy(narrow, resize(limit, testWidth, width), width);
        limit = narrow;
    }
    const Operand one = Operand::constant(s->down ? -1 : 1);
    Operand behind = limit;
    if (limit.isConstant()) {
        behind.n =
            width == Width::byte ? (limit.n + one.n) & 0xFF : static_cast<std::int16_t>(limit.n + one.n);
    } else {
        b_.copy(limit, b_.operation(IrOp::add, width, limit, one), width);
    }
    b_.jump(body);
    b_.beginLoop();
    b_.startBlock(body);
    statements(s->body);
    b_.setPosition(s->position);
    const Operand now = load(variablePlace(variable, width), width);
    const Operand next = b_.operation(IrOp::add, width, now, one);
    b_.copy(variablePlace(variable, width), next, width);
    const BlockId leave = b_.newBlock();
    b_.branch(width, Relation::equal, false, load(variablePlace(variable, width), width), behind, leave,
              body);
    b_.endLoop();
    b_.startBlock(leave);
    const Operand last = load(variablePlace(variable, width), width);
    b_.copy(variablePlace(variable, width), b_.operation(IrOp::add, width, last, Operand::constant(-one.n)),
            width);
    b_.startBlock(done);
}

BlockId Lowering::labelBlock(const Symbol* label) {
    for (const auto& [symbol, block] : labels_) {
        if (symbol == label) {
            return block;
        }
    }
    const BlockId block = b_.newBlock();
    labels_.emplace_back(label, block);
    return block;
}

void Lowering::inlineCode(const Stmt* s) {
    const auto first = static_cast<std::uint16_t>(function_.bytes.size());
    for (const InlineItem* item = s->code; item != nullptr; item = item->next) {
        const bool isAddress = item->symbol != nullptr || item->locationCounter;
        const bool isByte = item->size == InlineItem::Size::byte ||
                            (item->size == InlineItem::Size::automatic && !isAddress && item->constant >= 0 &&
                             item->constant <= 255);
        std::int32_t value = item->constant;
        const auto offset = static_cast<std::uint16_t>(function_.bytes.size());
        if (item->symbol != nullptr && item->symbol->kind == SymbolKind::routine) {
            function_.byteFixups.push_back({offset, z80::Target::routine, item->symbol->routine->ordinal});
        } else if (item->symbol != nullptr) {
            const Slot slot = storage_.slotOf(*item->symbol, routine_);
            if (slot.kind == SlotKind::frame) {
                cannot(s->position); // a recursive routine's variables have no fixed address
            } else if (slot.kind == SlotKind::constant) {
                function_.byteFixups.push_back({offset, z80::Target::constant, item->symbol->ordinal});
            } else {
                value += slot.address;
            }
        } else if (item->locationCounter) {
            function_.byteFixups.push_back({offset, z80::Target::local, 0});
            value += offset - first;
        }
        function_.bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
        if (!isByte) {
            function_.bytes.push_back(static_cast<std::uint8_t>(value >> 8 & 0xFF));
        }
    }
    Ir& ir = b_.emit(IrOp::inlineCode);
    ir.firstArgument = first;
    ir.n = static_cast<std::uint16_t>(function_.bytes.size() - first);
}

} // namespace tp3
