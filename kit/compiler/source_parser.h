#pragma once

#include "parser.h"
#include "scanner.h"
#include "standard_names.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tp3 {

/// A literal, or what the name of a constant stands for.
struct ConstantValue {
    Type* type = nullptr;
    std::int32_t value = 0;     ///< ordinals
    const char* text = nullptr; ///< strings: characters; reals: 6 bytes
    std::uint16_t length = 0;
    Position position;
};

/// All of the parser, by recursive descent: one function for each rule of the grammar, which stands above it.
/// The functions lie in one file for each part of the language.
///
/// After the first error every token is the end of the source, and no further error is kept, so that nothing
/// needs to be cut short by hand: expectations fail silently, loops end, and no function returns a null
/// expression.
class SourceParser {
  public:
    SourceParser(Host& host, Arena& arena, const ParserOptions& options, BodyConsumer& consumer);

    bool run();
    void fail(Error error, Position position, std::string_view detail = {});

    ErrorState errors;
    std::vector<VariableFacts> variableFacts;
    bool chains = false;
    std::vector<std::uint16_t> handedOut; ///< ordinals of the routines whose address is taken
    std::vector<std::vector<std::uint16_t>> callees;
    std::vector<std::uint16_t> hiddenVariables;
    std::uint8_t programOptions = 0;
    [[nodiscard]] std::uint32_t lineCount() const { return scanner_.lineCount(); }

  private:
    struct Scope {
        Symbol* first = nullptr;
        Symbol* last = nullptr;
    };
    struct PendingPointer {
        Type* pointer;
        Name* target;
        Position position;
    };
    /// Statements into whose inside no goto may lead.
    struct Enclosure {
        const Enclosure* outer;
    };
    struct PendingGoto {
        Symbol* label;
        const Enclosure* from;
        Position position;
    };
    struct WithRecord {
        Type* record;
        Expr* designator;
    };
    /// A sequence of statements that is being put together.
    struct StmtList {
        Stmt* first = nullptr;
        Stmt* last = nullptr;
        void add(Stmt* stmt);
    };
    /// A Read or Write while it is being parsed.
    struct Transfer {
        bool output = false;
        bool selected = false; ///< `file` is the one that items go to or come from
        Expr* file = nullptr;  ///< null: the standard file
        Position position;
        StmtList list;
    };
    /// Counts how deep the recursion is; `ok` tells whether it may go on.
    class Nesting {
      public:
        explicit Nesting(SourceParser& parser);
        ~Nesting() { --parser_.nesting_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;
        bool ok = true;

      private:
        SourceParser& parser_;
    };
    enum class Access : std::uint8_t { read, write, address };

    // source_parser.cpp: tokens and the program as a whole
    void advance() { scanner_.next(token_); }
    [[nodiscard]] bool at(TokenKind kind) const { return token_.kind == kind; }
    bool accept(TokenKind kind);
    bool expect(TokenKind kind, Error error);
    bool expectSemicolon() { return expect(TokenKind::semicolon, Error::semicolonExpected); }
    void failHere(Error error, std::string_view detail = {});
    Name* expectIdentifier();
    void program();
    void block(Routine& routine);
    void statementPart(Routine& routine);
    [[nodiscard]] bool isPassedOver(const Routine& routine) const {
        return knownHidden_ != nullptr && !consumer_.wants(routine);
    }
    void passOverStatements(const Routine& routine);
    void declarations();

    // scopes.cpp: names and what they mean
    void openScope();
    void closeScope();
    Symbol* declare(Name* name, SymbolKind kind, Position position);
    void enter(Symbol& symbol);
    static Symbol* statementMeaning(const Name& name);
    Symbol* newVariable(Name* name, StorageKind storage, Type* type, Position position);
    Symbol* newHidden(Type* type);
    void addLocal(Symbol& variable);
    void noteUse(const Symbol& variable, Access access);
    void noteAccess(const Expr& designator, Access access);
    void noteCall(const Routine& callee);
    void declareStandardNames();
    Symbol* declareStandard(std::string_view text, SymbolKind kind, Type* type, std::int32_t value);

    // types.cpp
    Type* parseType();
    Type* parseSimpleType();
    Type* parseEnumeration();
    Type* parseSubrange(const ConstantValue& low);
    Type* parseStringType();
    Type* parseArrayType();
    Type* parseRecordType();
    void parseFieldList(Type& record, Symbol*& last, std::uint32_t offset, std::uint32_t& size,
                        TokenKind closing);
    void parseVariantPart(Type& record, Symbol*& last, std::uint32_t offset, std::uint32_t& size);
    Symbol* addField(Type& record, Symbol*& last, Name* name, Position position);
    void placeField(Symbol& field, Type* type, std::uint32_t& offset);
    Type* parseSetType();
    Type* parseFileType();
    Type* parsePointerType();
    Type* parseTypeIdentifier();
    void resolvePointers();
    Type* newType(TypeKind kind);
    Type* stringType(std::size_t length);
    bool fits(std::uint64_t size, Position position);
    bool feature(bool open, std::string_view what);

    // constants.cpp
    ConstantValue parseConstant();
    ConstantValue unsignedConstant();
    ConstantValue signedConstant(bool negative, Position position);
    bool integerConstant(std::int32_t& value);
    void negate(ConstantValue& constant);
    void constSection();
    void typedConstant(Symbol& symbol);
    void constantBytes(Type& type, std::uint8_t* bytes);
    void ordinalBytes(Type& type, std::uint8_t* bytes);
    void stringBytes(Type& type, std::uint8_t* bytes);
    void arrayBytes(Type& type, std::uint8_t* bytes);
    void recordBytes(Type& type, std::uint8_t* bytes);
    void realBytes(std::uint8_t* bytes);
    void setBytes(Type& type, std::uint8_t* bytes);

    // declarations.cpp
    void labelSection();
    Name* labelName();
    void typeSection();
    void varSection();
    void variableGroup();
    void absolutePart(Symbol& variable);

    // routines.cpp
    void routineDeclaration(bool overlay);
    Symbol* routineHeading(bool function, Arena::Mark& mark);
    Symbol* newRoutine(Name* name, Position position);
    void parameterList(Routine& routine);
    void parameterGroup(Routine& routine, Symbol*& last);
    void functionResult(Routine& routine);
    void routineBody(Routine& routine);
    void externalPart(Routine& routine);
    void checkForwards();

    // statements.cpp
    Stmt* newStmt(StmtKind kind, Position position);
    void noteOptions();
    Stmt* parseStatement();
    Stmt* unlabelledStatement();
    void statementList(StmtList& list, TokenKind closing);
    Stmt* compoundStatement();
    Stmt* identifierStatement();
    Stmt* routineStatement(Symbol& symbol, Position position);
    Stmt* assignment(Expr* target, Position position);
    Stmt* ifStatement();
    Stmt* whileStatement();
    Stmt* repeatStatement();
    Stmt* caseStatement();
    CaseLabel* caseLabels(const Type& selector);
    std::int32_t caseConstant(const Type& selector);
    Stmt* forStatement();
    Expr* condition();

    // structured_statements.cpp: with, goto, labels, inline
    Stmt* withStatement();
    Stmt* withRecord(Expr* record, Position position);
    void openEnclosure();
    void closeEnclosure() { enclosure_ = enclosure_->outer; }
    Stmt* gotoStatement();
    void placeLabel(Symbol& label, StmtList& list);
    Symbol* findLabel(Name* name);
    void checkGotos();
    Stmt* inlineStatement();
    InlineItem* inlineItem();
    bool inlineTerm(InlineItem& item, bool negative);

    // expressions.cpp
    Expr* parseExpression();
    Expr* simpleExpression();
    Expr* term();
    Expr* factor();
    Expr* identifierFactor();
    Expr* integerExpression();
    Expr* stringExpression();
    Expr* ordinalExpression();
    Expr* constantNode(const ConstantValue& constant);
    Expr* newExpr(ExprKind kind, Type* type, Position position);
    Expr* ordinalNode(std::int32_t value, Type* type, Position position);
    Expr* variableNode(Symbol& variable, Position position);
    Expr* stringNode(const char* text, std::size_t length, Position position);
    Expr* finish(Expr* expr);
    Expr* errorNode() { return &errorNode_; }

    // operators.cpp
    Expr* binary(Operator op, Expr* left, Expr* right, Position position);
    Expr* integerOperation(Operator op, Expr* left, Expr* right, Position position);
    Expr* booleanOperation(Operator op, Expr* left, Expr* right, Position position);
    Expr* realOperation(Operator op, Expr* left, Expr* right, Position position);
    Expr* concatenation(Expr* left, Expr* right, Position position);
    Expr* comparison(Operator op, Expr* left, Expr* right, Position position);
    Expr* unary(Operator op, Expr* operand, Position position);
    Expr* binaryNode(Operator op, Expr* left, Expr* right, Type* type, Position position);
    Expr* operandError(Position position);
    bool isOperand(const Type& type, Operator op, Position position);

    // conversions.cpp
    Expr* convertNode(Expr* value, Type* type);
    Expr* retype(Expr* value, Type* type);
    Expr* toString(Expr* value);
    Expr* toChar(Expr* value);
    Expr* toReal(Expr* value);
    Expr* assignable(Expr* value, Type* target, Position position);
    Expr* assignableOrdinal(Expr* value, Type* target, Position position);
    Expr* assignableArray(Expr* value, Type* target, Position position);
    bool isCharArray(const Type& type) const;
    bool isStringLike(const Type& type) const;

    // sets.cpp
    Expr* setConstructor();
    Expr* setElement();
    Expr* setOperation(Operator op, Expr* left, Expr* right, Position position);
    Expr* setMembership(Expr* element, Expr* set, Position position);
    Expr* assignableSet(Expr* value, Type* target, Position position);

    // designators.cpp
    Expr* designator(Symbol& variable, Position position);
    Expr* selectors(Expr* base);
    Expr* indexSelector(Expr* base);
    Expr* arrayIndex(Expr* base, Position bracket, bool checked);
    Expr* characterIndex(Expr* base, bool checked);
    Expr* fieldSelector(Expr* base);
    Expr* memoryElement(CallShape shape, Position position);
    bool isWithField(const Name* name) const;
    Expr* findInWith(const Name* name, Position position);
    Expr* parseVariable(Access access);
    Expr* copyDesignator(const Expr* original);
    bool isStaticDesignator(const Expr* designator) const;
    static Symbol* findField(const Type& record, const Name* name);

    // calls.cpp
    Expr* routineCall(Symbol& symbol, Position position);
    Expr* valueArgument(const Symbol& parameter);
    Expr* variableArgument(const Symbol& parameter);
    Expr* standardNode(StandardRoutine routine, Type* type, Position position);
    Stmt* callStmt(Expr* call, Position position);

    // standard_functions.cpp
    Expr* standardFunction(Symbol& symbol, Position position);
    Expr* functionOfInteger(CallShape shape, StandardRoutine routine, Position position);
    Expr* functionOfString(CallShape shape, StandardRoutine routine, Position position);
    Expr* functionOfName(CallShape shape, Position position);
    Expr* ordinalFunction(CallShape shape, StandardRoutine routine, Position position);
    Expr* realFunction(CallShape shape, StandardRoutine routine, Position position);
    Expr* systemFunction(StandardRoutine routine, Position position);
    Expr* randomFunction(Position position);
    Expr* sizeOf(Position position);
    Expr* addressOfName(Position position);
    Expr* foldFunction(StandardRoutine routine, Expr* argument, Type* type, Position position);
    void append(Expr* call, Expr* argument);
    void openArguments() { expect(TokenKind::leftParenthesis, Error::leftParenthesisExpected); }
    void nextArgument() { expect(TokenKind::comma, Error::commaExpected); }
    void closeArguments() { expect(TokenKind::rightParenthesis, Error::rightParenthesisExpected); }

    // standard_procedures.cpp
    Stmt* standardProcedure(Symbol& symbol, Position position);
    void stringProcedure(CallShape shape, Expr* call);
    void strProcedure(Expr* call);
    void valProcedure(Expr* call);
    void memoryProcedure(CallShape shape, Expr* call);
    void heapProcedure(CallShape shape, Expr* call);
    Expr* stringVariable();
    Expr* integerVariable();

    // files.cpp
    bool containsFile(const Type& type) const;
    bool sameComponent(const Type& a, const Type& b) const;
    Expr* ioCall(StandardRoutine routine, Type* type, Position position);
    Expr* fileArgument(CallShape shape);
    Expr* fileFunction(CallShape shape, StandardRoutine routine, Position position);
    void fileProcedure(CallShape shape, Expr* call);

    // input_output.cpp
    Stmt* writeStatement(bool line, Position position);
    void writeItem(Expr* value, Transfer& transfer, Position position);
    Expr* widthPart();
    Stmt* readStatement(bool line, Position position);
    void readItem(Expr* target, Transfer& transfer, Position position);
    void transferFile(Transfer& transfer, Expr* file, bool line, Position position);
    void openTransfer(Transfer& transfer, Expr* file);
    Stmt* closeTransfer(Transfer& transfer);
    void select(Transfer& transfer, bool on);
    void fileItems(StandardRoutine routine, Transfer& transfer);
    void holdCalls(std::span<Expr*> parts, Transfer& transfer);
    Expr* heldValue(Expr* value, Type* type, StmtList& list);
    Expr* heldPlace(Expr* place, StmtList& list);
    Stmt* sequence(StmtList& list, Position position);

    Host& host_;
    Arena& arena_;
    BodyConsumer& consumer_;
    Features features_;
    const std::vector<std::uint16_t>* knownHidden_;
    std::string_view mainFile_;
    NameTable names_;
    Scanner scanner_;
    Token token_;

    std::vector<Scope> scopes_;
    Routine* current_ = nullptr; ///< the routine whose block is being parsed
    Symbol* lastLocal_ = nullptr;
    std::vector<PendingPointer> pendingPointers_;
    std::vector<PendingGoto> pendingGotos_;
    std::vector<WithRecord> withRecords_;
    const Enclosure* enclosure_ = nullptr;
    std::size_t nesting_ = 0;
    std::uint8_t statementOptions_ = 0; ///< StatementOption bits where the statement began
    Symbol* input_ = nullptr;           ///< the standard files
    Symbol* output_ = nullptr;
    std::size_t routineCount_ = 0;

    Type integer_{}, byte_{}, char_{}, boolean_{}, real_{}, text_{};
    Type untyped_{};    ///< of VAR parameters without a type, and of what is wrong
    Type anyPointer_{}; ///< of nil and of Ptr
    Type emptySet_{};
    std::array<Type*, 256> stringTypes_{}; ///< by length; of literals and of results
    Expr errorNode_{};
};

} // namespace tp3
