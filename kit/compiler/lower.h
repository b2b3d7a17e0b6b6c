#pragma once

#include "builder.h"
#include "storage.h"
#include "tree.h"

#include <runtime_entries.h>

#include <initializer_list>
#include <utility>
#include <vector>

namespace tp3 {

/// Width of the register that holds a value of this type.
inline Width widthOfType(const Type* type) {
    return type != nullptr && type->size == 1 ? Width::byte : Width::word;
}

/// The expression's value is known to lie in 0..255, so that 8 bits hold it.
bool fitsByte(const Expr* e);
/// 8 when the value fits, 16 otherwise.
Width naturalWidth(const Expr* e);
Relation relationOf(Operator op);
bool isNonNegative(const Expr* e);
bool isPowerOfTwoConstant(const Expr* e);
/// Evaluating it may run a routine of the program or change something.
bool hasCall(const Expr* e);
/// The same of any of the expressions in a list of arguments.
bool anyCall(const Expr* first);
/// Evaluating it takes room on the stack or may fail, so it cannot be left out or done out of order.
bool isPlain(const Expr* e);
/// Its value lies in a variable, which something that happens later may change.
bool isInVariable(const Expr* e);

/// Turns one routine's tree into intermediate code: places become addresses, structured operations become
/// library calls, arithmetic is done in 8 bits where that gives the same, control flow becomes blocks.
class Lowering {
  public:
    Lowering(Storage& storage, const Routine& routine);

    /// The whole routine, entry and exit included.
    Function run(const Stmt* body);
    /// Position of the first construct that this generator cannot translate, line 0 when there was none.
    [[nodiscard]] Position untranslatable() const { return untranslatable_; }

  private:
    // lower.cpp: routine frame, variables
    void enterRoutine();
    void copyParameters(const std::vector<Operand>& addresses);
    void leaveRoutine();
    ValueId valueOf(const Symbol& variable, const Slot& slot);
    ValueId frameOf(const Routine& owner);
    void cannot(Position position);

    // lower_place.cpp: designators and addresses
    Operand place(const Expr* designator);
    Operand variablePlace(const Symbol& variable, Width width);
    Operand slotOperand(const Symbol& variable, const Slot& slot);
    Operand indexPlace(const Expr* e);
    Operand elementPlace(Operand base, const Expr* index, std::int32_t low, std::uint32_t elementSize,
                         bool checked, std::int32_t high);
    Operand offsetPlace(Operand base, std::int32_t offset);
    static Operand memoryAt(Operand address);
    Operand addressOf(Operand place);
    Operand addressOfDesignator(const Expr* designator) { return addressOf(place(designator)); }
    Operand steadyAddress(const Expr* designator, const Expr* later);
    Operand freeze(Operand operand, Width width);
    Operand load(Operand operand, Width width);
    Operand multiplied(Operand index, std::uint32_t factor);

    // lower_expr.cpp: scalar expressions
    Operand evaluate(const Expr* e, Width want);
    Operand evaluateNatural(const Expr* e) { return evaluate(e, naturalWidth(e)); }
    Operand resize(Operand operand, Width from, Width want);
    Operand unary(const Expr* e, Width want);
    Operand binary(const Expr* e, Width want);
    Operand arithmetic(const Expr* e, Width want);
    Operand shift(const Expr* e, Width want);
    Operand product(const Expr* e, Width want);
    Operand quotient(const Expr* e, Width want);
    Operand convert(const Expr* e, Width want);
    Operand comparison(const Expr* e);
    Operand binaryOperation(IrOp op, const Expr* e, Width want);
    bool conditionOnBits(const Expr* e, BlockId whenTrue, BlockId whenFalse);
    void comparisonBranch(const Expr* e, BlockId whenTrue, BlockId whenFalse);
    void checkRange(Operand value, Width width, std::int32_t low, std::int32_t high, RuntimeEntry error);
    std::pair<Operand, Operand> operands(const Expr* left, const Expr* right, Width want);
    void condition(const Expr* e, BlockId whenTrue, BlockId whenFalse);

    // lower_call.cpp: calls of routines and of the library
    Operand call(const Expr* e, Operand resultAddress);
    Operand externalCall(const Expr* e, const Routine& callee);
    void passArguments(const Routine& callee, std::vector<Operand>& values, Ir& ir);
    struct LibraryArgument {
        Operand operand;
        z80::Pair pair;
        z80::Reg reg;
        bool isByte;
    };
    static LibraryArgument word(z80::Pair pair, Operand operand) {
        return {operand, pair, z80::Reg::a, false};
    }
    static LibraryArgument byte(z80::Reg reg, Operand operand) { return {operand, z80::Pair::hl, reg, true}; }
    Ir& library(RuntimeEntry entry, std::initializer_list<LibraryArgument> arguments,
                IrOp op = IrOp::runtime);
    Operand libraryWord(RuntimeEntry entry, std::initializer_list<LibraryArgument> arguments,
                        z80::Pair result = z80::Pair::hl);
    Operand libraryByte(RuntimeEntry entry, std::initializer_list<LibraryArgument> arguments);
    void libraryText(RuntimeEntry entry, const char* text, std::uint16_t length);

    // lower_string.cpp
    Operand literal(const char* text, std::uint16_t length, bool lengthByte);
    Operand stringAddress(const Expr* e);
    Operand steadyString(const Expr* e, const Expr* later);
    Operand steadyPlace(const Expr* e, const Expr* later);
    void appendTo(Operand target, const Expr* e);
    void assignString(const Expr* target, const Expr* value);
    void storeString(Operand place, std::uint16_t maximum, const Expr* value);
    void assignStructured(const Expr* target, const Expr* value);
    Operand charsAddress(const Expr* e);
    Ir& compareStructured(const Expr* e, IrOp op);

    // lower_temporary.cpp: room for intermediate results
    Operand stackTemporary(std::uint16_t size);
    Operand temporary(std::uint16_t size);
    void giveBack(const Operand& address);
    void moveBlock(Operand from, Operand to, std::uint16_t size);
    /// What the expressions of the current statement took is given back at its end.
    void releaseStack();

    // lower_real.cpp
    struct RealTarget {
        const Expr* designator = nullptr; ///< looked up when the operands are known
        Operand address;                  ///< used when there is no designator; none asks for a temporary
    };
    Operand realAddress(const Expr* e);
    Operand steadyReal(const Expr* e, const Expr* later);
    Operand realTarget(const RealTarget& target, std::initializer_list<Operand> operands);
    Operand realInto(const Expr* e, const RealTarget& target);
    Operand realUnary(RuntimeEntry entry, const Expr* operand, const RealTarget& target);
    void assignReal(const Expr* target, const Expr* value);
    bool standardReal(const Expr* e, std::uint8_t options);

    // lower_file.cpp
    bool standardFile(const Expr* e);
    void blockTransfer(const Expr* e, RuntimeEntry entry);
    Operand fileFunction(const Expr* e, Width want);

    // lower_set.cpp
    Operand setLiteral(const std::uint8_t* bytes, std::uint16_t count);
    Operand setAddress(const Expr* e);
    Operand setTemporary(const Expr* e);
    Operand setOfElements(const Expr* e);
    Operand trimmedSet(const Expr* e, const Type* type, const Expr* later = nullptr);
    void assignSet(const Expr* target, const Expr* value, std::uint8_t options);
    Operand setComparison(const Expr* e);
    Operand membership(const Expr* e);
    bool membershipBranch(const Expr* e, BlockId whenTrue, BlockId whenFalse);

    // lower_stmt.cpp
    void statement(const Stmt* s);
    void statements(const Stmt* s);
    void assign(const Stmt* s);
    void conditional(const Stmt* s);
    void caseOf(const Stmt* s);
    void whileDo(const Stmt* s);
    void repeatUntil(const Stmt* s);
    void forLoop(const Stmt* s);
    void inlineCode(const Stmt* s);
    BlockId labelBlock(const Symbol* label);

    // lower_standard.cpp
    Operand standardCall(const Expr* e, Width want);
    Operand standardArithmetic(const Expr* e, Width want);
    Operand standardString(const Expr* e);
    bool standardOutput(const Expr* e);
    bool standardInput(const Expr* e, std::uint8_t options);
    bool standardMemory(const Expr* e);
    bool standardScreen(const Expr* e);
    void standardStatement(const Expr* e, std::uint8_t options);
    bool standardHeap(const Expr* e);
    void checkInputOutput(const Expr* e);

    Storage& storage_;
    const Routine& routine_;
    Function function_;
    Builder b_;
    Position untranslatable_;
    BlockId exit_ = noBlock;
    std::uint16_t stackTaken_ = 0;
    struct Temporary {
        Operand address;
        std::uint16_t size;
        bool taken;
    };
    std::vector<Temporary> temporaries_;
    ValueId frame_ = 0;
    std::uint32_t frameEnterAt_ = 0; ///< its size is known when the body is done
    /// Values of variables met so far: ordinal and value. Routines use few, so a list serves.
    std::vector<std::pair<std::uint16_t, ValueId>> variableValues_;
    std::vector<std::pair<std::uint16_t, ValueId>> frameValues_;
    std::vector<std::pair<const Symbol*, BlockId>> labels_;
};

} // namespace tp3
