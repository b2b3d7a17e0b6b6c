#include "lower.h"

namespace tp3 {

/// Assign, Reset and the like: (file), (file, string) or (file, integer).
bool Lowering::standardFile(const Expr* e) {
    const Expr* file = e->left;
    const auto plain = [&](RuntimeEntry entry) {
        library(entry, {word(z80::Pair::hl, addressOfDesignator(file))});
        return true;
    };
    const auto withString = [&](RuntimeEntry entry) {
        const Operand at = steadyAddress(file, file->next);
        const Operand text = stringAddress(file->next);
        library(entry, {word(z80::Pair::hl, at), word(z80::Pair::de, text)});
        return true;
    };
    const auto withWord = [&](RuntimeEntry entry) {
        const Operand at = steadyAddress(file, file->next);
        const Operand value = evaluate(file->next, Width::word);
        library(entry, {word(z80::Pair::hl, at), word(z80::Pair::de, value)});
        return true;
    };
    const auto withRecord = [&](RuntimeEntry entry) {
        const Operand at = steadyAddress(file, file->next);
        const Operand record = addressOfDesignator(file->next);
        library(entry, {word(z80::Pair::hl, at), word(z80::Pair::de, record)});
        return true;
    };
    switch (static_cast<StandardRoutine>(e->value)) {
    case StandardRoutine::fileAssignText:
        return withString(RuntimeEntry::fileAssignText);
    case StandardRoutine::fileAssignTyped:
        return withString(RuntimeEntry::fileAssignTyped);
    case StandardRoutine::fileAssignUntyped:
        return withString(RuntimeEntry::fileAssignUntyped);
    case StandardRoutine::fileRename:
        return withString(RuntimeEntry::fileRename);
    case StandardRoutine::fileReset:
        return withWord(RuntimeEntry::fileReset);
    case StandardRoutine::fileRewrite:
        return withWord(RuntimeEntry::fileRewrite);
    case StandardRoutine::fileSeek:
        return withWord(RuntimeEntry::fileSeek);
    case StandardRoutine::fileClose:
        return plain(RuntimeEntry::fileClose);
    case StandardRoutine::fileErase:
        return plain(RuntimeEntry::fileErase);
    case StandardRoutine::fileFlush:
        return plain(RuntimeEntry::fileFlush);
    case StandardRoutine::chain:
        return plain(RuntimeEntry::chain);
    case StandardRoutine::execute:
        return plain(RuntimeEntry::execute);
    case StandardRoutine::fileRead:
        return withRecord(RuntimeEntry::fileRead);
    case StandardRoutine::fileWrite:
        return withRecord(RuntimeEntry::fileWrite);
    case StandardRoutine::selectOutput:
        return plain(RuntimeEntry::selectOutput);
    case StandardRoutine::selectInput:
        return plain(RuntimeEntry::selectInput);
    case StandardRoutine::selectStandardOutput:
        library(RuntimeEntry::selectStandardOutput, {});
        return true;
    case StandardRoutine::selectStandardInput:
        library(RuntimeEntry::selectStandardInput, {});
        return true;
    case StandardRoutine::fileBlockRead:
        blockTransfer(e, RuntimeEntry::fileBlockRead);
        return true;
    case StandardRoutine::fileBlockWrite:
        blockTransfer(e, RuntimeEntry::fileBlockWrite);
        return true;
    case StandardRoutine::ovrDrive:
        b_.copy(Operand::memory(runtimeAddresses[static_cast<std::size_t>(RuntimeEntry::ovrDrive)]),
                evaluate(file, Width::byte), Width::byte);
        return true;
    default:
        return false;
    }
}

/// BlockRead and BlockWrite: what was done goes to the result variable; without one, less than all is an
/// error.
void Lowering::blockTransfer(const Expr* e, RuntimeEntry entry) {
    const Expr* file = e->left;
    const Expr* data = file->next;
    const Expr* result = data->next->next;
    const Operand at = steadyAddress(file, data);
    const Operand from = steadyAddress(data, data->next);
    const Operand count = freeze(evaluate(data->next, Width::word), Width::word);
    const Operand done =
        libraryWord(entry, {word(z80::Pair::hl, at), word(z80::Pair::de, from), word(z80::Pair::bc, count)});
    if (result == nullptr) {
        library(RuntimeEntry::fileBlockCheck, {word(z80::Pair::hl, done), word(z80::Pair::de, count)});
        return;
    }
    const Width width = widthOfType(result->type);
    b_.copy(place(result), resize(done, Width::word, width), width);
}

/// FilePos, Eof and the like.
Operand Lowering::fileFunction(const Expr* e, Width want) {
    const auto ask = [&](RuntimeEntry entry, Width width) {
        const Operand file = addressOfDesignator(e->left);
        const Operand result = width == Width::word ? libraryWord(entry, {word(z80::Pair::hl, file)})
                                                    : libraryByte(entry, {word(z80::Pair::hl, file)});
        return resize(result, width, want);
    };
    switch (static_cast<StandardRoutine>(e->value)) {
    case StandardRoutine::filePosition:
        return ask(RuntimeEntry::filePosition, Width::word);
    case StandardRoutine::fileSize:
        return ask(RuntimeEntry::fileSize, Width::word);
    case StandardRoutine::fileEof:
        return ask(RuntimeEntry::fileEof, Width::byte);
    case StandardRoutine::fileEoln:
        return ask(RuntimeEntry::fileEoln, Width::byte);
    case StandardRoutine::fileSeekEof:
        return ask(RuntimeEntry::fileSeekEof, Width::byte);
    case StandardRoutine::fileSeekEoln:
        return ask(RuntimeEntry::fileSeekEoln, Width::byte);
    default:
        cannot(e->position);
        return Operand::constant(0);
    }
}

} // namespace tp3
