#include "lower.h"

namespace tp3 {

namespace {

StandardRoutine routineOf(const Expr* e) {
    return static_cast<StandardRoutine>(e->value);
}

bool isZero(const Expr* e) {
    return e == nullptr || (e->kind == ExprKind::ordinal && e->value == 0);
}

} // namespace

/// The check that {$I+} puts behind what may fail.
void Lowering::checkInputOutput(const Expr* e) {
    if (e->checked) {
        library(RuntimeEntry::ioCheck, {});
    }
}

/// A standard function in a scalar expression.
Operand Lowering::standardCall(const Expr* e, Width want) {
    const Expr* first = e->left;
    switch (routineOf(e)) {
    case StandardRoutine::randomLimit:
        return resize(
            libraryWord(RuntimeEntry::randomWord, {word(z80::Pair::hl, evaluate(first, Width::word))}),
            Width::word, want);
    case StandardRoutine::length:
        if (first->kind == ExprKind::string) {
            return Operand::constant(first->textLength);
        }
        return resize(load(place(first), Width::byte), Width::byte, want);
    case StandardRoutine::pos: {
        const Operand target = steadyString(first, first->next);
        const Operand text = stringAddress(first->next);
        return resize(libraryWord(RuntimeEntry::stringPosition,
                                  {word(z80::Pair::hl, target), word(z80::Pair::de, text)}),
                      Width::word, want);
    }
    case StandardRoutine::addressOf: {
        const Operand address = addressOfDesignator(first);
        return want == Width::word ? address : resize(load(address, Width::word), Width::word, want);
    }
    case StandardRoutine::bdos:
    case StandardRoutine::bdosHL: {
        const Operand function = freeze(evaluate(first, Width::word), Width::word);
        const Operand parameter =
            first->next != nullptr ? evaluate(first->next, Width::word) : Operand::constant(0);
        const RuntimeEntry entry =
            routineOf(e) == StandardRoutine::bdos ? RuntimeEntry::bdos : RuntimeEntry::bdosHL;
        return resize(libraryWord(entry, {word(z80::Pair::bc, function), word(z80::Pair::de, parameter)}),
                      Width::word, want);
    }
    case StandardRoutine::bios:
    case StandardRoutine::biosHL: {
        const Operand function = freeze(evaluate(first, Width::word), Width::word);
        const Operand parameter =
            first->next != nullptr ? evaluate(first->next, Width::word) : Operand::constant(0);
        const RuntimeEntry entry =
            routineOf(e) == StandardRoutine::bios ? RuntimeEntry::bios : RuntimeEntry::biosHL;
        return resize(libraryWord(entry, {word(z80::Pair::de, function), word(z80::Pair::bc, parameter)}),
                      Width::word, want);
    }
    case StandardRoutine::paramCount:
        return resize(libraryWord(RuntimeEntry::paramCount, {}), Width::word, want);
    case StandardRoutine::ioResult:
        return resize(libraryWord(RuntimeEntry::ioResult, {}), Width::word, want);
    case StandardRoutine::keyPressed:
        return resize(libraryByte(RuntimeEntry::keyPressed, {}), Width::byte, want);
    case StandardRoutine::round:
    case StandardRoutine::trunc: {
        const RuntimeEntry entry =
            routineOf(e) == StandardRoutine::round ? RuntimeEntry::realRound : RuntimeEntry::realTruncate;
        return resize(libraryWord(entry, {word(z80::Pair::hl, realAddress(first))}), Width::word, want);
    }
    case StandardRoutine::memAvail:
        return resize(libraryWord(RuntimeEntry::memAvail, {}), Width::word, want);
    case StandardRoutine::maxAvail:
        return resize(libraryWord(RuntimeEntry::maxAvail, {}), Width::word, want);
    case StandardRoutine::upCase:
        return resize(libraryByte(RuntimeEntry::upCase, {byte(z80::Reg::a, evaluate(first, Width::byte))}),
                      Width::byte, want);
    default:
        return standardArithmetic(e, want);
    }
}

Operand Lowering::standardArithmetic(const Expr* e, Width want) {
    const Expr* first = e->left;
    switch (routineOf(e)) {
    case StandardRoutine::abs: {
        if (isNonNegative(first)) {
            return evaluate(first, want);
        }
        const Operand value = evaluate(first, Width::word);
        return resize(b_.operation(IrOp::absolute, Width::word, value), Width::word, want);
    }
    case StandardRoutine::sqr: {
        const Operand value = freeze(evaluate(first, Width::word), Width::word);
        return resize(
            libraryWord(RuntimeEntry::multiply, {word(z80::Pair::hl, value), word(z80::Pair::de, value)}),
            Width::word, want);
    }
    case StandardRoutine::odd:
        return resize(
            b_.operation(IrOp::bitAnd, Width::byte, evaluate(first, Width::byte), Operand::constant(1)),
            Width::byte, want);
    case StandardRoutine::pred:
    case StandardRoutine::succ: {
        const Width width = widthOfType(e->type);
        const Operand step = Operand::constant(routineOf(e) == StandardRoutine::succ ? 1 : -1);
        return resize(b_.operation(IrOp::add, width, evaluate(first, width), step), width, want);
    }
    case StandardRoutine::hi:
        if (fitsByte(first)) {
            evaluate(first, Width::byte);
            return Operand::constant(0);
        }
        return resize(b_.operation(IrOp::highByte, Width::byte, evaluate(first, Width::word)), Width::byte,
                      want);
    case StandardRoutine::lo:
        return resize(evaluate(first, Width::byte), Width::byte, want);
    case StandardRoutine::swap: {
        const Operand value = freeze(evaluate(first, Width::word), Width::word);
        const Operand low = b_.operation(IrOp::narrow, Width::byte, value);
        const Operand high = b_.operation(IrOp::highByte, Width::byte, value);
        return resize(b_.operation(IrOp::joinBytes, Width::word, low, high), Width::word, want);
    }
    default: {
        const Operand result = fileFunction(e, want);
        checkInputOutput(e);
        return result;
    }
    }
}

/// A standard function that gives a string; its address comes back.
Operand Lowering::standardString(const Expr* e) {
    constexpr std::uint16_t largest = 256;
    const Expr* first = e->left;
    switch (routineOf(e)) {
    case StandardRoutine::copy: {
        const Operand source = steadyString(first, first->next);
        const Operand position = freeze(evaluate(first->next, Width::word), Width::word);
        const Operand count = evaluate(first->next->next, Width::word);
        const Operand target = stackTemporary(largest);
        b_.copy(Operand::memory(runtimeAddresses[static_cast<std::size_t>(RuntimeEntry::stringCount)]), count,
                Width::word);
        library(RuntimeEntry::stringSlice,
                {word(z80::Pair::hl, source), word(z80::Pair::de, target), word(z80::Pair::bc, position)});
        return target;
    }
    case StandardRoutine::paramStr: {
        const Operand number = evaluate(first, Width::word);
        const Operand target = stackTemporary(largest);
        library(RuntimeEntry::paramString, {word(z80::Pair::hl, number), word(z80::Pair::de, target)});
        return target;
    }
    default:
        cannot(e->position);
        return Operand::constant(0);
    }
}

bool Lowering::standardOutput(const Expr* e) {
    const Expr* value = e->left;
    const Expr* width = value != nullptr ? value->next : nullptr;
    const auto write = [&](RuntimeEntry plain, RuntimeEntry formatted, LibraryArgument argument) {
        if (isZero(width)) {
            library(plain, {argument});
        } else {
            if (hasCall(width)) {
                argument.operand = freeze(argument.operand, argument.isByte ? Width::byte : Width::word);
            }
            library(formatted, {argument, word(z80::Pair::de, evaluate(width, Width::word))});
        }
    };
    switch (routineOf(e)) {
    case StandardRoutine::writeInteger:
        write(RuntimeEntry::writeInteger, RuntimeEntry::writeIntegerWidth,
              word(z80::Pair::hl, evaluate(value, Width::word)));
        return true;
    case StandardRoutine::writeChar:
        write(RuntimeEntry::writeChar, RuntimeEntry::writeCharWidth,
              byte(z80::Reg::a, evaluate(value, Width::byte)));
        return true;
    case StandardRoutine::writeBoolean:
        write(RuntimeEntry::writeBoolean, RuntimeEntry::writeBooleanWidth,
              byte(z80::Reg::a, evaluate(value, Width::byte)));
        return true;
    case StandardRoutine::writeString:
        if (value->kind == ExprKind::string && isZero(width)) {
            if (value->textLength > 0) {
                libraryText(RuntimeEntry::writeLiteral, value->text, value->textLength);
            }
        } else if (value->type->kind == TypeKind::array) {
            const Operand address = steadyPlace(value, width);
            const Operand count = Operand::constant(value->type->size);
            if (isZero(width)) {
                library(RuntimeEntry::writeChars, {word(z80::Pair::hl, address), word(z80::Pair::bc, count)});
            } else {
                library(RuntimeEntry::writeCharsWidth,
                        {word(z80::Pair::hl, address), word(z80::Pair::bc, count),
                         word(z80::Pair::de, evaluate(width, Width::word))});
            }
        } else {
            write(RuntimeEntry::writeString, RuntimeEntry::writeStringWidth,
                  word(z80::Pair::hl, steadyString(value, width)));
        }
        return true;
    case StandardRoutine::writeLine:
        library(RuntimeEntry::writeLine, {});
        return true;
    default:
        return false;
    }
}

bool Lowering::standardInput(const Expr* e, std::uint8_t options) {
    const Expr* target = e->left;
    switch (routineOf(e)) {
    case StandardRoutine::readBegin:
        library(RuntimeEntry::readBegin, {});
        return true;
    case StandardRoutine::readEnd:
        library(RuntimeEntry::readEnd, {});
        return true;
    case StandardRoutine::readLine:
        library(RuntimeEntry::readLine, {});
        return true;
    case StandardRoutine::readInteger:
        library(target->type->size == 1 ? RuntimeEntry::readByte : RuntimeEntry::readInteger,
                {word(z80::Pair::hl, addressOfDesignator(target))});
        if ((options & optionIoCheck) != 0) {
            library(RuntimeEntry::ioCheck, {});
        }
        return true;
    case StandardRoutine::readChar:
        library(RuntimeEntry::readChar, {word(z80::Pair::hl, addressOfDesignator(target))});
        return true;
    case StandardRoutine::readString:
        if (target->type->kind == TypeKind::array) {
            library(RuntimeEntry::readChars, {word(z80::Pair::hl, addressOfDesignator(target)),
                                              word(z80::Pair::bc, Operand::constant(target->type->size))});
        } else {
            library(RuntimeEntry::readString, {word(z80::Pair::hl, addressOfDesignator(target)),
                                               byte(z80::Reg::a, Operand::constant(target->type->high))});
        }
        return true;
    default:
        return false;
    }
}

bool Lowering::standardMemory(const Expr* e) {
    const Expr* first = e->left;
    const Expr* second = first != nullptr ? first->next : nullptr;
    const Expr* third = second != nullptr ? second->next : nullptr;
    switch (routineOf(e)) {
    case StandardRoutine::deleteChars: {
        const Operand text = steadyAddress(first, second);
        const Operand position = freeze(evaluate(second, Width::word), Width::word);
        const Operand count = evaluate(third, Width::word);
        library(RuntimeEntry::stringDelete,
                {word(z80::Pair::hl, text), word(z80::Pair::de, position), word(z80::Pair::bc, count)});
        return true;
    }
    case StandardRoutine::insert: {
        const Operand source = steadyString(first, second);
        const Operand text = steadyAddress(second, third);
        const Operand position = evaluate(third, Width::word);
        library(RuntimeEntry::stringInsert,
                {word(z80::Pair::hl, source), word(z80::Pair::de, text), word(z80::Pair::bc, position),
                 byte(z80::Reg::a, Operand::constant(second->type->high))});
        return true;
    }
    case StandardRoutine::strInteger: {
        auto [value, width] = operands(first, second, Width::word);
        if (hasCall(third)) {
            value = freeze(value, Width::word);
            width = freeze(width, Width::word);
        }
        library(RuntimeEntry::stringFromInteger,
                {word(z80::Pair::hl, value), word(z80::Pair::de, addressOfDesignator(third)),
                 word(z80::Pair::bc, width), byte(z80::Reg::a, Operand::constant(third->type->high))});
        return true;
    }
    case StandardRoutine::valInteger: {
        const Operand text = steadyString(first, second);
        const Operand number = steadyAddress(second, third);
        library(RuntimeEntry::stringToInteger, {word(z80::Pair::hl, text), word(z80::Pair::de, number),
                                                word(z80::Pair::bc, addressOfDesignator(third))});
        return true;
    }
    case StandardRoutine::move: {
        const Operand from = steadyAddress(first, second);
        const Operand to = steadyAddress(second, third);
        const Operand count = evaluate(third, Width::word);
        library(RuntimeEntry::moveBytes,
                {word(z80::Pair::hl, from), word(z80::Pair::de, to), word(z80::Pair::bc, count)});
        return true;
    }
    case StandardRoutine::fillChar: {
        const Operand to = steadyAddress(first, second);
        const Operand count = freeze(evaluate(second, Width::word), Width::word);
        const Operand value = evaluate(third, Width::byte);
        library(RuntimeEntry::fillBytes,
                {word(z80::Pair::hl, to), word(z80::Pair::bc, count), byte(z80::Reg::a, value)});
        return true;
    }
    default:
        return false;
    }
}

bool Lowering::standardHeap(const Expr* e) {
    const Expr* pointer = e->left;
    switch (routineOf(e)) {
    case StandardRoutine::newPointer:
    case StandardRoutine::getMem: {
        if (pointer->kind == ExprKind::variable || !(hasCall(pointer) || hasCall(pointer->next))) {
            const Operand size = evaluate(pointer->next, Width::word);
            const Operand address = libraryWord(RuntimeEntry::heapAllocate, {word(z80::Pair::hl, size)});
            b_.copy(place(pointer), address, Width::word);
            return true;
        }
        const Operand to = freeze(addressOfDesignator(pointer), Width::word);
        const Operand size = evaluate(pointer->next, Width::word);
        const Operand address = libraryWord(RuntimeEntry::heapAllocate, {word(z80::Pair::hl, size)});
        b_.copy(to.isValue() ? Operand::indirect(to.id, 0) : memoryAt(to), address, Width::word);
        return true;
    }
    case StandardRoutine::disposePointer:
    case StandardRoutine::freeMem: {
        auto [address, size] = operands(pointer, pointer->next, Width::word);
        library(RuntimeEntry::heapFree, {word(z80::Pair::hl, address), word(z80::Pair::de, size)});
        return true;
    }
    case StandardRoutine::mark:
        b_.copy(place(pointer), libraryWord(RuntimeEntry::heapMark, {}), Width::word);
        return true;
    case StandardRoutine::release:
        library(RuntimeEntry::heapRelease, {word(z80::Pair::hl, evaluate(pointer, Width::word))});
        return true;
    default:
        return false;
    }
}

bool Lowering::standardScreen(const Expr* e) {
    switch (routineOf(e)) {
    case StandardRoutine::clrScr:
        library(RuntimeEntry::clrScr, {});
        return true;
    case StandardRoutine::clrEol:
        library(RuntimeEntry::clrEol, {});
        return true;
    case StandardRoutine::insLine:
        library(RuntimeEntry::insLine, {});
        return true;
    case StandardRoutine::delLine:
        library(RuntimeEntry::delLine, {});
        return true;
    case StandardRoutine::gotoXY: {
        auto [x, y] = operands(e->left, e->left->next, Width::word);
        library(RuntimeEntry::gotoXY, {word(z80::Pair::hl, x), word(z80::Pair::de, y)});
        return true;
    }
    case StandardRoutine::delay:
        library(RuntimeEntry::delay, {word(z80::Pair::hl, evaluate(e->left, Width::word))});
        return true;
    case StandardRoutine::lowVideo:
        library(RuntimeEntry::lowVideo, {});
        return true;
    case StandardRoutine::normVideo:
        library(RuntimeEntry::normVideo, {});
        return true;
    case StandardRoutine::highVideo:
        library(RuntimeEntry::highVideo, {});
        return true;
    case StandardRoutine::crtInit:
        library(RuntimeEntry::crtInit, {});
        return true;
    case StandardRoutine::crtExit:
        library(RuntimeEntry::crtExit, {});
        return true;
    default:
        return false;
    }
}

/// A standard procedure, or a function whose result is dropped.
void Lowering::standardStatement(const Expr* e, std::uint8_t options) {
    if (standardOutput(e) || standardInput(e, options) || standardReal(e, options) || standardMemory(e) ||
        standardHeap(e) || standardFile(e) || standardScreen(e)) {
        checkInputOutput(e);
        return;
    }
    switch (routineOf(e)) {
    case StandardRoutine::halt:
        library(RuntimeEntry::halt, {});
        break;
    case StandardRoutine::randomize:
        library(RuntimeEntry::randomize, {});
        break;
    default:
        standardCall(e, Width::word);
        break;
    }
}

} // namespace tp3
