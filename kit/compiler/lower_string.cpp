#include "lower.h"

#include <algorithm>

namespace tp3 {

namespace {

constexpr std::uint16_t largestString = 256; ///< length byte and 255 characters

bool isCharToString(const Expr* e) {
    return e->kind == ExprKind::convert && e->left->type != nullptr &&
           e->left->type->kind == TypeKind::character;
}

bool isConcatenation(const Expr* e) {
    return e->kind == ExprKind::binary && e->op == Operator::add;
}

bool isConcat(const Expr* e) {
    return e->kind == ExprKind::standardCall &&
           static_cast<StandardRoutine>(e->value) == StandardRoutine::concat;
}

/// The expression is a string that already lies somewhere, so that it can be copied without being built.
bool isInPlace(const Expr* e) {
    return e->kind == ExprKind::string || e->kind == ExprKind::variable || e->kind == ExprKind::index ||
           e->kind == ExprKind::field || e->kind == ExprKind::dereference ||
           e->kind == ExprKind::retypeVariable;
}

} // namespace

/// The place of constant text in the code, shared by all uses of the same text in the routine.
Operand Lowering::literal(const char* text, std::uint16_t length, bool lengthByte) {
    std::vector<std::uint8_t> content;
    if (lengthByte) {
        content.push_back(static_cast<std::uint8_t>(length));
    }
    for (std::uint16_t i = 0; i < length; ++i) {
        content.push_back(static_cast<std::uint8_t>(text[i]));
    }
    Operand operand;
    operand.kind = Operand::Kind::address;
    operand.target = z80::Target::literal;
    for (std::size_t i = 0; i < function_.literals.size(); ++i) {
        const Function::Literal& known = function_.literals[i];
        if (known.count == content.size() &&
            std::equal(content.begin(), content.end(), function_.bytes.data() + known.first)) {
            operand.index = static_cast<std::uint16_t>(i);
            return operand;
        }
    }
    operand.index = static_cast<std::uint16_t>(function_.literals.size());
    function_.literals.push_back(
        {static_cast<std::uint32_t>(function_.bytes.size()), static_cast<std::uint16_t>(content.size())});
    function_.bytes.insert(function_.bytes.end(), content.begin(), content.end());
    return operand;
}

/// The address of a string expression's value.
Operand Lowering::stringAddress(const Expr* e) {
    if (e->kind == ExprKind::string) {
        return literal(e->text, e->textLength, true);
    }
    if (isCharToString(e)) {
        const Operand character = evaluate(e->left, Width::byte);
        const Operand address = stackTemporary(2);
        b_.copy(Operand::indirect(address.id, 0), Operand::constant(1), Width::byte);
        b_.copy(Operand::indirect(address.id, 1), character, Width::byte);
        return address;
    }
    if (e->kind == ExprKind::convert && e->left->type != nullptr && e->left->type->kind == TypeKind::array) {
        const Operand source = charsAddress(e->left);
        const Operand target = stackTemporary(largestString);
        library(RuntimeEntry::stringFromChars,
                {word(z80::Pair::hl, source), word(z80::Pair::bc, Operand::constant(e->left->type->size)),
                 word(z80::Pair::de, target)});
        return target;
    }
    if (e->kind == ExprKind::convert) {
        return stringAddress(e->left);
    }
    if (isConcatenation(e) || isConcat(e)) {
        const Operand target = stackTemporary(largestString);
        b_.copy(Operand::indirect(target.id, 0), Operand::constant(0), Width::byte);
        appendTo(target, e);
        return target;
    }
    if (e->kind == ExprKind::call) {
        return call(e, {});
    }
    if (e->kind == ExprKind::standardCall) {
        return standardString(e);
    }
    return addressOf(place(e));
}

/// The same, safe from what the arguments from `later` on do when they are evaluated.
Operand Lowering::steadyString(const Expr* e, const Expr* later) {
    const Operand address = stringAddress(e);
    const Expr* source = e;
    while (source->kind == ExprKind::convert && source->left->type->kind == TypeKind::string) {
        source = source->left;
    }
    if (!isInVariable(source) || !anyCall(later)) {
        return address;
    }
    const Operand copy = stackTemporary(largestString);
    library(RuntimeEntry::stringMove, {word(z80::Pair::hl, address), word(z80::Pair::de, copy)});
    return copy;
}

void Lowering::appendTo(Operand target, const Expr* e) {
    if (isConcatenation(e)) {
        appendTo(target, e->left);
        appendTo(target, e->right);
        return;
    }
    if (isConcat(e)) {
        for (const Expr* part = e->left; part != nullptr; part = part->next) {
            appendTo(target, part);
        }
        return;
    }
    if (isCharToString(e)) {
        const Operand character = evaluate(e->left, Width::byte);
        library(RuntimeEntry::stringAppendChar, {byte(z80::Reg::a, character), word(z80::Pair::de, target)});
        return;
    }
    const Operand source = stringAddress(e);
    library(RuntimeEntry::stringAppend, {word(z80::Pair::hl, source), word(z80::Pair::de, target)});
}

/// Stores a string value into a place that holds up to `maximum` characters.
void Lowering::storeString(Operand target, std::uint16_t maximum, const Expr* value) {
    if (isCharToString(value)) {
        const Operand character = freeze(evaluate(value->left, Width::byte), Width::byte);
        b_.copy(target, Operand::constant(1), Width::byte);
        b_.copy(offsetPlace(target, 1), character, Width::byte);
        return;
    }
    if (value->kind == ExprKind::string && value->textLength <= maximum) {
        if (value->textLength == 0) {
            b_.copy(target, Operand::constant(0), Width::byte);
            return;
        }
        const Operand source = literal(value->text, value->textLength, true);
        const Operand to = addressOf(target);
        moveBlock(source, to, static_cast<std::uint16_t>(value->textLength + 1U));
        return;
    }
    const Operand source = stringAddress(value);
    const Operand to = addressOf(target);
    const bool fits = maximum == 255 || (isInPlace(value) && value->type->high <= maximum);
    if (fits) {
        library(RuntimeEntry::stringMove, {word(z80::Pair::hl, source), word(z80::Pair::de, to)});
    } else {
        library(RuntimeEntry::stringCopy, {word(z80::Pair::hl, source), word(z80::Pair::de, to),
                                           byte(z80::Reg::a, Operand::constant(maximum))});
    }
}

void Lowering::assignString(const Expr* target, const Expr* value) {
    Operand to = place(target);
    if (to.kind == Operand::Kind::indirect && hasCall(value)) {
        to.id = freeze(Operand::value(to.id), Width::word).id;
    }
    storeString(to, static_cast<std::uint16_t>(target->type->high), value);
}

/// Address of the first character of an array of Char or of text in the same shape.
Operand Lowering::charsAddress(const Expr* e) {
    return addressOf(place(e));
}

void Lowering::assignStructured(const Expr* target, const Expr* value) {
    const Operand to = steadyAddress(target, value);
    const Operand from = addressOf(place(value));
    moveBlock(from, to, target->type->size);
}

/// Compares two strings or reals; the instruction's result or targets are for the caller to fill in. The
/// library tells less and equal, so the other two relations compare the other way round.
Ir& Lowering::compareStructured(const Expr* e, IrOp op) {
    const bool reals = e->left->type->kind == TypeKind::real;
    Operand left = reals ? steadyReal(e->left, e->right) : steadyString(e->left, e->right);
    Operand right = reals ? realAddress(e->right) : stringAddress(e->right);
    Relation relation = relationOf(e->op);
    if (relation == Relation::greater || relation == Relation::lessEqual) {
        std::swap(left, right);
        relation = mirrored(relation);
    }
    Ir& ir = library(reals ? RuntimeEntry::realCompare : RuntimeEntry::stringCompare,
                     {word(z80::Pair::hl, left), word(z80::Pair::de, right)}, op);
    ir.relation = relation;
    ir.width = Width::byte;
    return ir;
}

} // namespace tp3
