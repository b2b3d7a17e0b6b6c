#include "source_parser.h"

namespace tp3 {
namespace {

constexpr std::size_t maximumOrdinals = firstStandardVariable; // ordinals have 16 bits

} // namespace

void SourceParser::openScope() {
    scopes_.emplace_back();
}

void SourceParser::closeScope() {
    for (Symbol* symbol = scopes_.back().first; symbol != nullptr; symbol = symbol->nextInScope)
        symbol->name->meaning = symbol->shadowed;
    scopes_.pop_back();
}

// Puts a symbol into the innermost scope. One name has one meaning there.
void SourceParser::enter(Symbol& symbol) {
    const auto level = static_cast<std::uint8_t>(scopes_.size() - 1);
    Symbol* before = symbol.name->meaning;
    if (before != nullptr && before->scopeLevel == level && level > 0)
        return fail(Error::duplicateIdentifier, symbol.position, symbol.name->text);
    symbol.scopeLevel = level;
    symbol.shadowed = before;
    symbol.nextInScope = nullptr;
    symbol.name->meaning = &symbol;
    Scope& scope = scopes_.back();
    if (scope.last != nullptr)
        scope.last->nextInScope = &symbol;
    else
        scope.first = &symbol;
    scope.last = &symbol;
}

// What a name means where a statement begins: a constant or type of the name of a procedure does not hide it,
// since it could not stand there.
Symbol* SourceParser::statementMeaning(const Name& name) {
    Symbol* found = name.meaning;
    while (found != nullptr && (found->kind == SymbolKind::constant || found->kind == SymbolKind::typeName))
        found = found->shadowed;
    const bool procedure =
        found != nullptr && (found->kind == SymbolKind::standardRoutine ||
                             (found->kind == SymbolKind::routine && found->routine->result == nullptr));
    return procedure ? found : name.meaning;
}

// A new symbol in the innermost scope. `name` may be null after an error; the symbol is then in no scope.
Symbol* SourceParser::declare(Name* name, SymbolKind kind, Position position) {
    Symbol* symbol = arena_.make<Symbol>();
    symbol->kind = kind;
    symbol->name = name;
    symbol->type = &untyped_;
    symbol->position = position;
    if (name != nullptr)
        enter(*symbol);
    return symbol;
}

// A variable that is in no scope and in no list yet.
Symbol* SourceParser::newVariable(Name* name, StorageKind storage, Type* type, Position position) {
    Symbol* variable = arena_.make<Symbol>();
    variable->kind = SymbolKind::variable;
    variable->storage = storage;
    variable->name = name;
    variable->type = type;
    variable->position = position;
    variable->owner = current_ != nullptr && current_->level > 0 ? current_ : nullptr;
    if (variableFacts.size() >= maximumOrdinals)
        fail(Error::tableOverflow, position, "variables");
    variable->ordinal = static_cast<std::uint16_t>(variableFacts.size());
    variableFacts.emplace_back();
    return variable;
}

void SourceParser::addLocal(Symbol& variable) {
    if (lastLocal_ != nullptr)
        lastLocal_->next = &variable;
    else
        current_->locals = &variable;
    lastLocal_ = &variable;
}

Symbol* SourceParser::newHidden(Type* type) {
    Symbol* variable = newVariable(nullptr, StorageKind::hidden, type, token_.position);
    variable->userDeclared = false;
    addLocal(*variable);
    return variable;
}

void SourceParser::noteUse(const Symbol& variable, Access access) {
    if (errors.failed() || variable.ordinal >= firstStandardVariable)
        return;
    VariableFacts& facts = variableFacts[variable.ordinal];
    const Routine* here = current_->level > 0 ? current_ : nullptr;
    if (variable.owner != here)
        facts.usedByNested = true;
    switch (access) {
    case Access::read:
        facts.used = true;
        break;
    case Access::write:
        facts.assigned = true;
        break;
    case Access::address:
        facts.used = true;
        facts.assigned = true;
        // A VAR parameter passes on the address that it holds; its own place stays unknown to others.
        if (variable.storage != StorageKind::varParameter)
            facts.addressTaken = true;
        break;
    }
    if (variable.storage == StorageKind::absoluteVariable && variable.alias != nullptr)
        noteUse(*variable.alias, Access::address);
}

// What an access to a designator means for the variable that it begins with.
void SourceParser::noteAccess(const Expr& designator, Access access) {
    const Expr* root = &designator;
    while (root->kind == ExprKind::index || root->kind == ExprKind::field ||
           root->kind == ExprKind::character)
        root = root->left;
    if (root->kind != ExprKind::variable)
        return;
    // A part is written: the rest of the variable counts as used, or a store to it might be dropped.
    if (root != &designator)
        noteUse(*root->symbol, Access::read);
    noteUse(*root->symbol, access);
}

void SourceParser::noteCall(const Routine& callee) {
    if (knownHidden_ != nullptr)
        return; // a former pass has told who calls whom
    std::vector<std::uint16_t>& list = callees[current_->ordinal];
    for (const std::uint16_t ordinal : list)
        if (ordinal == callee.ordinal)
            return;
    list.push_back(callee.ordinal);
}

Symbol* SourceParser::declareStandard(std::string_view text, SymbolKind kind, Type* type,
                                      std::int32_t value) {
    Symbol* symbol = names_.arena().make<Symbol>();
    symbol->kind = kind;
    symbol->userDeclared = false;
    symbol->name = names_.find(text);
    symbol->type = type;
    symbol->value = value;
    enter(*symbol);
    return symbol;
}

void SourceParser::declareStandardNames() {
    declareStandard("INTEGER", SymbolKind::typeName, &integer_, 0);
    declareStandard("BYTE", SymbolKind::typeName, &byte_, 0);
    declareStandard("CHAR", SymbolKind::typeName, &char_, 0);
    declareStandard("BOOLEAN", SymbolKind::typeName, &boolean_, 0);
    boolean_.members = declareStandard("FALSE", SymbolKind::constant, &boolean_, 0);
    boolean_.members->next = declareStandard("TRUE", SymbolKind::constant, &boolean_, 1);
    declareStandard("MAXINT", SymbolKind::constant, &integer_, 32767);
    if (features_.reals) {
        declareStandard("REAL", SymbolKind::typeName, &real_, 0);
        Symbol* pi = declareStandard("PI", SymbolKind::constant, &real_, 0);
        pi->text = "\x82\x21\xA2\xDA\x0F\x49"; // 3.1415926536 in 40 bits
    }
    if (features_.files)
        declareStandard("TEXT", SymbolKind::typeName, &text_, 0);
    const auto there = [&](FeatureNeed need) {
        return need == FeatureNeed::none || (need == FeatureNeed::reals && features_.reals) ||
               (need == FeatureNeed::files && features_.files) ||
               (need == FeatureNeed::heap && features_.heap);
    };
    std::uint16_t ordinal = firstStandardVariable;
    for (const StandardVariable& entry : standardVariables()) {
        if (!there(entry.need))
            continue;
        Type* type = entry.kind == TypeKind::textFile  ? &text_
                     : entry.kind == TypeKind::boolean ? &boolean_
                                                       : &integer_;
        Symbol* variable = declareStandard(entry.text, SymbolKind::variable, type, addressOf(entry));
        variable->storage = StorageKind::absoluteAddress;
        variable->ordinal = ordinal++;
        if (entry.entry == RuntimeEntry::inputFile)
            input_ = variable;
        else if (entry.entry == RuntimeEntry::outputFile)
            output_ = variable;
    }
    std::int32_t index = 0;
    for (const StandardName& entry : standardNames()) {
        if (there(entry.need))
            declareStandard(entry.text, SymbolKind::standardRoutine, &untyped_, index);
        ++index;
    }
}

} // namespace tp3
