#pragma once

#include "model.h"
#include "random_numbers.h"

#include <list>
#include <map>

namespace fuzz {

/// Makes one source file of a random program. It has the same meaning in 8-bit Turbo Pascal 3
/// and, in the other dialect's text, in Free Pascal's Turbo Pascal mode: there each operation is cut to 16
/// bits, because its intermediate results are wider. It ends, because loops count and calls have a budget.
/// Every statement and term has a number by which it can be left out when a small case is wanted.
/// Functions in expressions may change variables, write, and use files. In ours they are called where they
/// stand; in the other text each operand of such a statement is kept in a variable of its own before, from
/// left to right, since Free Pascal chooses another order.
class Generator {
  public:
    explicit Generator(const Options& options);

    /// The whole source file.
    std::string source();
    /// How many statements and terms there are, dropped ones included.
    [[nodiscard]] int count() const { return number_; }

  private:
    // generator.cpp: the program as a whole, and small things
    void program();
    [[nodiscard]] bool free() const { return options_.dialect == Dialect::freePascal; }
    std::string newName(const char* prefix);
    /// Counts one more statement or term; true when it is to be left out.
    bool dropNext();
    void line(const std::string& text);
    void plainLine(const std::string& text);
    /// `text` of a value as it is read from a variable, or as an impure function returns it.
    [[nodiscard]] std::string readMark(const Type* type, const std::string& text) const;
    [[nodiscard]] std::string callMark(const Type* type, const std::string& text) const;
    static bool hasCallMark(const std::string& text) { return text.find(callBegin) != std::string::npos; }
    std::string withoutMarks(const std::string& text, std::size_t& at, bool hoist);
    void declareKept();
    [[nodiscard]] std::string wrap(const Term& term) const;
    std::string operand(const Term& term, int level);
    void spend(long cost) { cost_ += cost * weight_; }

    // generator_types.cpp: types and variables
    void makeTypes();
    const Type* addType(Type type, const std::string& text);
    const Type* makeArray();
    const Type* makeRecord();
    const Type* pickType(bool anything);
    const Type* pickScalar();
    Variable makeVariable(const char* prefix, const Type* type, bool local);
    void declareVariables(int count, bool local);
    void typedConstant();
    std::string constantOf(const Type* type);
    std::string scalarLiteral(const Type* type, int value);
    void clear(const Variable& variable);

    // generator_expressions.cpp
    Term integer(int depth);
    Term integerOf(int low, int high, int depth);
    Term leaf();
    Term arithmetic(int depth);
    Term bitwise(int depth);
    Term shifted(int depth);
    Term integerFunction(int depth);
    Term condition(int depth);
    Term compare(int depth);
    Term character(int depth);
    Term enumeration(const Type* type, int depth);
    Term scalar(const Type* type, int depth);
    Term number(int value);
    Term hiddenNumber(int value);
    Term functionCall(Kind kind, const Type* type);
    // generator_reals.cpp: halves down to sixteenths of numbers that both dialects hold exactly
    struct RealTerm {
        Term term;
        long most = 0; ///< the greatest absolute value
        int bits = 0;  ///< behind the binary point
    };
    RealTerm realTerm(int depth);
    RealTerm realLeaf();
    Term real(int depth);
    std::string realLiteral();
    // generator_strings.cpp
    Term string(int limit, int depth);
    Term stringPiece(int limit, int& most);
    Term setElement(const Type* type, int depth);
    Term set(const Type* type, int depth);
    bool stringStatement();

    // generator_places.cpp: variables and parts of them
    struct Place {
        std::string text;
        const Type* type = nullptr;
        int low = 0, high = 0;
        bool indexed = false;
        bool byPointer = false;
        const Variable* root = nullptr;
    };
    [[nodiscard]] std::string read(const Place& place) const { return readMark(place.type, place.text); }
    bool stringStatementOn(const Place& to, int form);
    bool findPlace(Place& place, Kind kind, const Type* type, bool forWriting);
    void descend(Place& place, Kind kind, int depth);
    std::string indexInto(const Type* array, int depth);

    // generator_statements.cpp
    void statements(int count);
    void statement();
    void body(int count);
    void assignment();
    void ifStatement();
    void caseStatement();
    void forStatement();
    void countedLoop();
    void withStatement();
    void loopWithGoto();
    void report();
    void writeStatement();
    void writeItems(const std::string& file, const std::vector<std::string>& items, bool lineEnd);
    void textFileStatement();
    void typedFileStatement();
    bool callStatement();
    std::string call(const Routine& routine, bool& possible, bool recursive);
    void mix(const Variable& variable);
    void mixPlace(const std::string& text, const Type* type);
    // generator_routines.cpp
    void routine(bool nested);
    void routineHeading(Routine& made);
    void routineBody(Routine& made, std::size_t outerVariables);

    Options options_;
    RandomNumbers random_;
    RandomNumbers decoration_; ///< for what need not be the same in both dialects
    std::string text_;
    std::list<Type> types_;
    std::vector<const Type*> scalars_, strings_, structures_, enumerations_, sets_, pointers_;
    std::vector<Variable> variables_;     ///< in scope
    std::vector<Routine> routines_;       ///< that can be called
    std::vector<Variable> loopVariables_; ///< of the current block, free ones
    std::vector<Routine*> current_;       ///< routines that are being written
    const Type* integerType_ = nullptr;
    const Type* byteType_ = nullptr;
    const Type* characterType_ = nullptr;
    const Type* booleanType_ = nullptr;
    const Type* realType_ = nullptr;
    static constexpr char readBegin = '\x01', callBegin = '\x04', typeEnd = '\x02', markEnd = '\x03';
    std::map<std::string, int> keptMost_; ///< of the current block: how many variables of a type keep values
    std::map<std::string, int> keptNow_;  ///< and how many of them the current statement uses
    std::string textFile_, typedFile_;    ///< of the current block; empty in routines that call themselves
    bool callsAllowed_ = true;            ///< a function that changes something may stand here
    std::string mixName_, sumName_;
    std::string labelName_; ///< of the current block
    bool labelUsed_ = false;
    bool pure_ = false; ///< nothing outside the current routine may be changed
    int number_ = 0;
    int nameCount_ = 0;
    int indent_ = 0;
    int nesting_ = 0;
    int loopDepth_ = 0;
    int withDepth_ = 0;
    int recursiveCalls_ = 0;
    std::size_t ownVariables_ = 0; ///< where those of the current routine begin in variables_
    long weight_ = 1;
    long cost_ = 0;
};

} // namespace fuzz
