#include "generator.h"

#include <algorithm>

namespace fuzz {

namespace {
constexpr long mostRoutineCost = 6000;
constexpr long mostProgramCost = 60000;
} // namespace

/// The text of a call. `possible` becomes false when there is nothing to pass.
std::string Generator::call(const Routine& routine, bool& possible, bool recursive) {
    std::string text = routine.name;
    for (std::size_t i = 0; i < routine.parameters.size(); ++i) {
        const Parameter& parameter = routine.parameters[i];
        const Type* type = parameter.variable.type;
        text += i == 0 ? "(" : ", ";
        if (parameter.isDepth) {
            text += recursive ? parameter.variable.name + " - 1" : std::to_string(random_.between(1, 4));
            continue;
        }
        Place place;
        if (parameter.byReference || !(type->isScalar() || type->kind == Kind::string ||
                                       type->kind == Kind::set || type->kind == Kind::real)) {
            if (!findPlace(place, type->kind, type, parameter.byReference)) {
                possible = false;
                return text;
            }
            text += parameter.byReference ? place.text : read(place);
            if (type->size > 2) {
                spend(type->size / 4);
            }
        } else if (type->kind == Kind::string) {
            text += string(std::max(type->high, 5), 1).text;
        } else if (type->kind == Kind::set) {
            text += set(type, 1).text;
        } else if (type->kind == Kind::real) {
            text += real(1).text;
        } else {
            text += scalar(type, 2).text;
        }
    }
    return text + (routine.parameters.empty() ? "" : ")");
}

/// A call inside an expression. A function that changes something stands there only where that may be.
Term Generator::functionCall(Kind kind, const Type* type) {
    for (int attempt = 0; attempt < 6 && !routines_.empty(); ++attempt) {
        const Routine routine =
            routines_[static_cast<std::size_t>(random_.below(static_cast<int>(routines_.size())))];
        if (routine.result == nullptr || (!routine.pure && (pure_ || !callsAllowed_)) ||
            routine.result->kind != kind || (type != nullptr && routine.result != type)) {
            continue;
        }
        if (cost_ + weight_ * routine.cost > (current_.empty() ? mostProgramCost : mostRoutineCost)) {
            continue;
        }
        bool possible = true;
        std::string text = call(routine, possible, false);
        if (possible) {
            spend(routine.cost + 2);
            return {routine.pure ? text : callMark(routine.result, text), 0, routine.result->low,
                    routine.result->high};
        }
    }
    if (kind == Kind::boolean) {
        return compare(1);
    }
    if (kind == Kind::real) {
        return realLeaf().term;
    }
    return kind == Kind::character ? character(0) : leaf();
}

bool Generator::callStatement() {
    bool inside = !current_.empty();
    // A routine calls itself at most twice, outside of loops, so that depth bounds the number of calls.
    if (inside && recursiveCalls_ > 0 && weight_ == 1 && random_.chance(1, 2)) {
        const Routine own = *current_.back();
        bool possible = true;
        Place to;
        // The whole line depends on the condition, so nothing of it can be moved before it.
        bool callsAllowed = callsAllowed_;
        callsAllowed_ = false;
        if (own.result != nullptr && !findPlace(to, own.result->kind, own.result, true)) {
            callsAllowed_ = callsAllowed;
            return false;
        }
        std::string text = call(own, possible, true);
        callsAllowed_ = callsAllowed;
        if (!possible || (own.result != nullptr && to.indexed)) {
            return false;
        }
        --recursiveCalls_;
        std::string depth;
        for (const Parameter& parameter : own.parameters) {
            depth = parameter.isDepth ? parameter.variable.name : depth;
        }
        line("if " + depth + " > 0 then " + (own.result != nullptr ? to.text + " := " : "") + text + ";");
        return true;
    }
    for (int attempt = 0; attempt < 8 && !routines_.empty(); ++attempt) {
        const Routine routine =
            routines_[static_cast<std::size_t>(random_.below(static_cast<int>(routines_.size())))];
        if ((pure_ && !routine.pure) ||
            cost_ + weight_ * routine.cost > (inside ? mostRoutineCost : mostProgramCost)) {
            continue;
        }
        Place to;
        if (routine.result != nullptr && !findPlace(to, routine.result->kind, routine.result, true)) {
            continue;
        }
        bool possible = true;
        std::string text = call(routine, possible, false);
        if (!possible) {
            continue;
        }
        spend(routine.cost + 2);
        if (routine.result != nullptr) {
            text = callMark(routine.result, text);
            std::string rest;
            if (routine.result == integerType_ && random_.chance(1, 2)) {
                rest = std::string(random_.chance(1, 2) ? " + " : " xor ") + operand(leaf(), 3);
            }
            text =
                to.text + " := " + (free() && !rest.empty() ? "Integer(" + text + rest + ")" : text + rest);
        }
        line(text + ";");
        return true;
    }
    return false;
}

void Generator::routineHeading(Routine& made) {
    bool function = made.result != nullptr;
    std::string text = (function ? "function " : "procedure ") + made.name;
    bool recursive = random_.chance(1, 3);
    int count = random_.between(recursive ? 1 : 0, 6);
    std::size_t depth = recursive ? static_cast<std::size_t>(random_.below(count)) : 99;
    for (int i = 0; i < count; ++i) {
        Parameter parameter;
        parameter.isDepth = static_cast<std::size_t>(i) == depth;
        parameter.byReference = !parameter.isDepth && !made.pure && random_.chance(1, 3);
        const Type* type = parameter.isDepth ? (random_.chance(1, 2) ? byteType_ : integerType_)
                                             : pickType(random_.chance(1, 2));
        if (!parameter.isDepth && !pointers_.empty() && random_.chance(1, 8)) {
            type = pointers_[0];
        }
        parameter.variable = makeVariable("p", type, !parameter.byReference);
        parameter.variable.initialised = true;
        if (parameter.isDepth) {
            parameter.variable.writable = false;
            parameter.variable.low = 0, parameter.variable.high = 4;
        }
        text += i == 0 ? "(" : "; ";
        text += (parameter.byReference ? "var " : "") + parameter.variable.name + ": " + type->name;
        made.parameters.push_back(parameter);
    }
    text += count > 0 ? ")" : "";
    line(text + (function ? ": " + made.result->name : "") + ";");
    recursiveCalls_ = recursive ? 2 : 0;
}

void Generator::routine(bool nested) {
    bool drop = dropNext();
    std::size_t start = text_.size();
    Routine made;
    made.name = newName("r");
    if (random_.chance(2, 3)) {
        made.result = random_.chance(1, 8) ? strings_[0] : random_.chance(1, 8) ? realType_ : pickScalar();
        made.pure = pure_ || random_.chance(1, 4);
    } else if (pure_) {
        made.result = integerType_;
        made.pure = true;
    }
    if (routines_.size() < 2 && !nested) {
        // Every program has functions that change something.
        made.result = routines_.empty() ? integerType_ : made.result != nullptr ? made.result : booleanType_;
        made.pure = false;
    }
    // What belongs to the block around.
    auto loopVariables = loopVariables_;
    auto label = labelName_;
    bool labelUsed = labelUsed_, pure = pure_;
    int recursiveCalls = recursiveCalls_;
    long cost = cost_;
    std::size_t own = ownVariables_, routines = routines_.size(), variables = variables_.size();
    int nesting = nesting_;
    auto kept = keptMost_;
    auto textFile = textFile_, typedFile = typedFile_;
    bool callsAllowed = callsAllowed_;
    callsAllowed_ = true;
    cost_ = 0, nesting_ = 0, pure_ = made.pure;
    routineHeading(made);
    bool recursive = recursiveCalls_ > 0;
    ownVariables_ = variables;
    ++indent_;
    current_.push_back(&made);
    routineBody(made, nested ? 1 : 0);
    current_.pop_back();
    --indent_;
    made.cost = (cost_ + 4) * (recursive ? 16 : 1);
    variables_.resize(variables);
    routines_.resize(routines);
    routines_.push_back(made);
    loopVariables_ = loopVariables, labelName_ = label, labelUsed_ = labelUsed, pure_ = pure;
    keptMost_ = kept, textFile_ = textFile, typedFile_ = typedFile, callsAllowed_ = callsAllowed;
    cost_ = cost, recursiveCalls_ = recursiveCalls, ownVariables_ = own, nesting_ = nesting;
    if (drop) {
        text_.resize(start);
    }
}

/// Declarations and statements of a routine whose heading is written.
void Generator::routineBody(Routine& made, std::size_t level) {
    for (const Parameter& parameter : made.parameters) {
        variables_.push_back(parameter.variable);
    }
    std::size_t locals = variables_.size();
    std::string before;
    before.swap(text_);
    declareVariables(random_.between(1, 4), true);
    std::string textFile, typedFile;
    if (recursiveCalls_ == 0 && !made.pure) {
        textFile = newName("file"), typedFile = newName("file");
        line("var " + textFile + ": Text; " + typedFile + ": file of Integer;");
    }
    int recursiveCalls = recursiveCalls_;
    if (level == 0 && random_.chance(1, 4)) {
        // A routine inside may change what belongs to this one.
        for (std::size_t i = ownVariables_; i < variables_.size(); ++i) {
            variables_[i].local = variables_[i].local && made.pure;
        }
        recursiveCalls_ = 0;
        for (int i = random_.between(1, 2); i > 0; --i) {
            routine(true);
        }
        for (std::size_t i = ownVariables_; i < variables_.size(); ++i) {
            variables_[i].local = true;
        }
    }
    recursiveCalls_ = recursiveCalls;
    labelName_.clear();
    labelUsed_ = false;
    keptMost_.clear();
    textFile_ = textFile, typedFile_ = typedFile;
    line("begin");
    ++indent_;
    if (made.result != nullptr) {
        std::string value = made.result->kind == Kind::string ? "'r'"
                            : made.result->kind == Kind::real
                                ? "0.5"
                                : scalarLiteral(made.result, made.result->kind == Kind::character ? 66 : 0);
        line(made.name + " := " + value + ";");
    }
    for (std::size_t i = locals; i < variables_.size(); ++i) {
        clear(variables_[i]);
    }
    statements(random_.between(2, 6));
    if (made.result != nullptr) {
        bool drop = dropNext();
        std::string value = made.result->kind == Kind::string ? string(std::max(made.result->high, 5), 2).text
                            : made.result->kind == Kind::real ? real(2).text
                                                              : scalar(made.result, 3).text;
        if (!drop) {
            line(made.name + " := " + value + ";");
        }
    } else if (!made.pure && random_.chance(1, 3)) {
        report();
    }
    --indent_;
    line("end;");
    before.swap(text_);
    if (labelUsed_) {
        line("label " + labelName_ + ";");
    }
    declareKept();
    text_ += before;
}

} // namespace fuzz
