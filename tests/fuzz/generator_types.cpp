#include "generator.h"

#include <algorithm>

namespace fuzz {

namespace {
constexpr int largestStructure = 300; ///< bytes; all variables must fit a 64 kB machine
} // namespace

const Type* Generator::addType(Type type, const std::string& text) {
    if (type.name.empty()) {
        type.name = newName("t");
        line(type.name + " = " + text + ";");
    }
    types_.push_back(std::move(type));
    return &types_.back();
}

void Generator::makeTypes() {
    auto plain = [&](Kind kind, const char* name, int low, int high, int size) {
        Type type;
        type.kind = kind, type.name = name, type.low = low, type.high = high, type.size = size;
        return addType(std::move(type), "");
    };
    types_.clear();
    enumerations_.clear(), strings_.clear(), structures_.clear(), sets_.clear(), pointers_.clear();
    integerType_ = plain(Kind::integer, "Integer", -32768, 32767, 2);
    byteType_ = plain(Kind::integer, "Byte", 0, 255, 1);
    characterType_ = plain(Kind::character, "Char", 0, 255, 1);
    booleanType_ = plain(Kind::boolean, "Boolean", 0, 1, 1);
    realType_ = plain(Kind::real, "Real", 0, 0, 6);
    scalars_ = {integerType_, integerType_, integerType_, byteType_, byteType_, characterType_, booleanType_};
    line("type");
    ++indent_;
    for (int i = random_.between(1, 2); i > 0; --i) {
        Type type;
        type.kind = Kind::enumeration;
        type.high = random_.between(1, 8);
        std::string text = "(";
        for (int k = 0; k <= type.high; ++k) {
            type.literals.push_back(newName("e"));
            text += (k > 0 ? ", " : "") + type.literals.back();
        }
        enumerations_.push_back(addType(std::move(type), text + ")"));
        scalars_.push_back(enumerations_.back());
    }
    for (int i = random_.between(1, 3); i > 0; --i) {
        Type type;
        bool small = random_.chance(1, 2);
        type.low = small ? 0 : -random_.between(1, 300);
        type.high = random_.between(1, small ? 254 : 2000);
        type.size = small ? 1 : 2;
        std::string text = std::to_string(type.low) + ".." + std::to_string(type.high);
        scalars_.push_back(addType(std::move(type), text));
    }
    for (int i = random_.between(1, 2); i > 0; --i) {
        Type type;
        type.kind = Kind::string;
        type.high = random_.chance(1, 4) ? random_.between(1, 4) : random_.between(5, 40);
        type.size = type.high + 1;
        std::string text = "string[" + std::to_string(type.high) + "]";
        strings_.push_back(addType(std::move(type), text));
    }
    for (int i = options_.sets ? random_.below(3) : 0; i > 0; --i) {
        Type type;
        type.kind = Kind::set;
        type.element = random_.chance(1, 3) ? enumerations_[0] : nullptr;
        type.low = 0;
        type.high = type.element != nullptr ? type.element->high
                    : random_.chance(1, 4)  ? 255
                                            : random_.between(3, 60);
        type.size = type.high / 8 + 1;
        std::string of = type.element != nullptr ? type.element->name : "0.." + std::to_string(type.high);
        sets_.push_back(addType(std::move(type), "set of " + of));
    }
    for (int i = random_.between(2, 5); i > 0; --i) {
        structures_.push_back(random_.chance(3, 5) ? makeArray() : makeRecord());
    }
    if (random_.chance(2, 3)) {
        Type type;
        type.kind = Kind::pointer;
        type.size = 2;
        type.element = pickType(true);
        std::string to = type.element->name;
        pointers_.push_back(addType(std::move(type), "^" + to));
    }
    --indent_;
}

const Type* Generator::makeArray() {
    Type type;
    type.kind = Kind::array;
    std::string index;
    int form = random_.below(8);
    if (form == 0) {
        type.index = enumerations_[0];
    } else if (form == 1) {
        type.index = booleanType_;
    }
    if (type.index != nullptr) {
        type.high = type.index->high;
        index = type.index->name;
    } else {
        type.low = random_.chance(1, 2) ? 0 : random_.between(-5, 5);
        int count = random_.chance(1, 2) ? 1 << random_.between(1, 5) : random_.between(1, 20);
        type.high = type.low + count - 1;
        index = std::to_string(type.low) + ".." + std::to_string(type.high);
    }
    type.element = random_.chance(1, 3) ? pickType(true) : pickScalar();
    int count = type.high - type.low + 1;
    if (count * type.element->size > largestStructure) {
        type.element = pickScalar();
    }
    type.size = count * type.element->size;
    // Two dimensions in one are the same type as an array of arrays.
    return addType(type, "array[" + index + "] of " + type.element->name);
}

const Type* Generator::makeRecord() {
    Type type;
    type.kind = Kind::record;
    type.size = 0;
    std::string text = "record ";
    for (int i = random_.between(1, 5); i > 0; --i) {
        const Type* of = pickType(true);
        if (type.size + of->size > largestStructure) {
            of = integerType_;
        }
        type.fields.push_back({newName("f"), of});
        type.size += of->size;
        text += type.fields.back().name + ": " + of->name + "; ";
    }
    return addType(std::move(type), text + "end");
}

const Type* Generator::pickScalar() {
    return scalars_[static_cast<std::size_t>(random_.below(static_cast<int>(scalars_.size())))];
}

const Type* Generator::pickType(bool anything) {
    auto one = [&](const std::vector<const Type*>& list) {
        return list.empty() ? integerType_
                            : list[static_cast<std::size_t>(random_.below(static_cast<int>(list.size())))];
    };
    int form = random_.below(8);
    if (anything && form < 2) {
        return one(structures_);
    }
    if (anything && form == 2) {
        return one(strings_);
    }
    if (anything && form == 3) {
        return one(sets_);
    }
    if (anything && form == 4) {
        return realType_;
    }
    return pickScalar();
}

Variable Generator::makeVariable(const char* prefix, const Type* type, bool local) {
    Variable variable;
    variable.name = newName(prefix);
    variable.type = type;
    variable.local = local;
    variable.low = type->low;
    variable.high = type->high;
    return variable;
}

/// Declares variables of the block and its loop variables.
void Generator::declareVariables(int count, bool local) {
    line("var");
    ++indent_;
    for (int i = 0; i < count; ++i) {
        const Type* type = i == 0 ? integerType_ : pickType(true);
        // A routine has them as parameters only, where they lead somewhere from the start.
        if (!local && !pointers_.empty() && (i == 1 || random_.chance(1, 8))) {
            type = pointers_[0];
        }
        Variable variable = makeVariable(local ? "l" : "g", type, local);
        variable.dropped = dropNext();
        if (!variable.dropped) {
            line(variable.name + ": " + variable.type->name + ";");
        }
        variables_.push_back(variable);
    }
    loopVariables_.clear();
    const Type* types[] = {integerType_, byteType_, integerType_, byteType_,
                           random_.chance(1, 2) ? characterType_ : enumerations_[0]};
    for (const Type* type : types) {
        Variable variable = makeVariable("i", type, local);
        variable.writable = false;
        variable.dropped = dropNext();
        if (!variable.dropped) {
            line(variable.name + ": " + type->name + ";");
        }
        loopVariables_.push_back(variable);
    }
    --indent_;
}

std::string Generator::constantOf(const Type* type) {
    std::string text = "(";
    switch (type->kind) {
    case Kind::array:
        for (int i = type->low; i <= type->high; ++i) {
            text += (i > type->low ? ", " : "") + constantOf(type->element);
        }
        return text + ")";
    case Kind::record:
        for (std::size_t i = 0; i < type->fields.size(); ++i) {
            text += (i > 0 ? "; " : "") + type->fields[i].name + ": " + constantOf(type->fields[i].type);
        }
        return text + ")";
    case Kind::string: {
        std::string letters = "'";
        for (int i = random_.below(std::min(type->high, 8) + 1); i > 0; --i) {
            letters += static_cast<char>('a' + random_.below(26));
        }
        return letters + "'";
    }
    case Kind::set:
        return "[]";
    case Kind::real:
        return realLiteral();
    case Kind::character:
        return scalarLiteral(type, random_.between(32, 126));
    default:
        return scalarLiteral(type, random_.between(type->low, type->high));
    }
}

void Generator::typedConstant() {
    const Type* type = pickType(true);
    Variable variable = makeVariable("k", type, false);
    variable.dropped = dropNext();
    variable.initialised = true;
    std::string value = constantOf(type);
    if (!variable.dropped) {
        line("const " + variable.name + ": " + type->name + " = " + value + ";");
    }
    variables_.push_back(variable);
}

std::string Generator::scalarLiteral(const Type* type, int value) {
    switch (type->kind) {
    case Kind::character:
        return value >= 32 && value < 127 && value != '\'' ? std::string("'") + static_cast<char>(value) + "'"
                                                           : "#" + std::to_string(value);
    case Kind::boolean:
        return value != 0 ? "True" : "False";
    case Kind::enumeration:
        return type->literals[static_cast<std::size_t>(value)];
    default:
        // Neither dialect takes this number in decimal everywhere.
        return value == -32768 ? (free() ? "(-32768)" : "$8000") : std::to_string(value);
    }
}

/// Gives a variable its first value.
void Generator::clear(const Variable& variable) {
    if (variable.initialised || variable.dropped) {
        return;
    }
    if (variable.type->isScalar()) {
        int value = random_.between(variable.type->low, variable.type->high);
        if (variable.type->kind == Kind::character) {
            value = 65;
        }
        line(variable.name + " := " + scalarLiteral(variable.type, value) + ";");
    } else if (variable.type->kind == Kind::pointer) {
        line("New(" + variable.name + "); FillChar(" + variable.name + "^, SizeOf(" + variable.name +
             "^), 0);");
    } else {
        line("FillChar(" + variable.name + ", SizeOf(" + variable.name + "), 0);");
    }
}

} // namespace fuzz
