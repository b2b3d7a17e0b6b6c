#include "generator.h"

#include <algorithm>
#include <set>

namespace fuzz {

namespace {
constexpr long mostWeight = 400;  ///< how often one statement is executed
constexpr int deepestNesting = 4; ///< of statements
} // namespace

void Generator::statements(int count) {
    for (int i = 0; i < count; ++i) {
        statement();
    }
}

/// Statements in begin and end.
void Generator::body(int count) {
    line("begin");
    ++indent_;
    statements(count);
    --indent_;
    line("end;");
}

void Generator::statement() {
    bool drop = dropNext();
    std::size_t start = text_.size();
    bool label = labelUsed_;
    ++nesting_;
    bool deep = nesting_ > deepestNesting || number_ > 60000;
    switch (deep ? random_.below(9) : random_.below(24)) {
    case 4:
        if (!stringStatement()) {
            assignment();
        }
        break;
    case 5:
    case 6:
    case 22:
    case 23:
        if (!callStatement()) {
            assignment();
        }
        break;
    case 7:
        if (!pure_ && weight_ <= 20) {
            if (!textFile_.empty() && weight_ <= 3 && random_.chance(1, 6)) {
                textFileStatement();
            } else if (!typedFile_.empty() && weight_ <= 3 && random_.chance(1, 6)) {
                typedFileStatement();
            } else {
                writeStatement();
            }
        }
        break;
    case 9:
    case 10:
    case 11:
        ifStatement();
        break;
    case 12:
    case 13:
        caseStatement();
        break;
    case 14:
    case 15:
    case 16:
    case 17:
        forStatement();
        break;
    case 18:
    case 19:
        countedLoop();
        break;
    case 20:
        withStatement();
        break;
    case 21:
        loopWithGoto();
        break;
    default:
        assignment();
        break;
    }
    --nesting_;
    if (drop) {
        text_.resize(start);
        labelUsed_ = label;
    }
}

void Generator::assignment() {
    spend(2);
    Place to;
    const Type* type = random_.chance(1, 2) ? integerType_ : pickType(true);
    if (!pointers_.empty() && random_.chance(1, 16)) {
        type = pointers_[0];
    }
    if (!findPlace(to, type->kind, type, true)) {
        return;
    }
    if (type->kind == Kind::string) {
        Term value = string(std::max(type->high, 5), 2);
        line(to.text + " := " + value.text + ";");
    } else if (type->kind == Kind::set) {
        Term value = set(type, 2);
        line(to.text + " := " + value.text + ";");
    } else if (type->isScalar()) {
        Term value = scalar(type, random_.between(1, 4));
        line(to.text + " := " + value.text + ";");
    } else if (type->kind == Kind::real) {
        Term value = real(random_.between(1, 3));
        line(to.text + " := " + value.text + ";");
    } else {
        Place from;
        if (findPlace(from, type->kind, type, false)) {
            spend(type->size / 4);
            line(to.text + " := " + read(from) + ";");
        }
    }
}

void Generator::ifStatement() {
    bool callsAllowed = callsAllowed_;
    for (int i = random_.between(1, 3);; --i) {
        Term c = condition(random_.between(1, 3));
        callsAllowed_ = callsAllowed;
        line("if " + c.text + " then begin");
        ++indent_;
        statements(random_.between(1, 3));
        --indent_;
        if (i == 1) {
            break;
        }
        line("end else");
        callsAllowed_ = false; // nothing can be moved to between else and if
    }
    if (random_.chance(1, 2)) {
        line("end else begin");
        ++indent_;
        statements(random_.between(1, 2));
        --indent_;
    }
    line("end;");
}

void Generator::caseStatement() {
    const Type* type = random_.chance(1, 4)   ? enumerations_[0]
                       : random_.chance(1, 4) ? characterType_
                                              : integerType_;
    Term selector = scalar(type, 2);
    int low = type->low, high = type->high;
    if (type == integerType_) {
        low = std::max(selector.low, -200), high = std::min(selector.high, 300);
        if (low >= high) {
            low = -10, high = 10;
        }
    } else if (type == characterType_) {
        low = 60, high = 90;
    }
    line("case " + (free() && type == integerType_ ? "Integer(" + selector.text + ")" : selector.text) +
         " of");
    ++indent_;
    std::set<int> used;
    for (int i = random_.between(1, 5); i > 0; --i) {
        std::string labels;
        for (int k = random_.between(1, 3); k > 0; --k) {
            int first = random_.between(low, high);
            int last = random_.chance(1, 3) ? std::min(high, first + random_.below(10)) : first;
            bool fresh = true;
            for (int n = first; n <= last; ++n) {
                fresh = fresh && used.count(n) == 0;
            }
            if (!fresh) {
                continue;
            }
            for (int n = first; n <= last; ++n) {
                used.insert(n);
            }
            labels += (labels.empty() ? "" : ", ") + scalarLiteral(type, first);
            if (last > first) {
                labels += ".." + scalarLiteral(type, last);
            }
        }
        if (!labels.empty()) {
            line(labels + ":");
            ++indent_;
            body(random_.between(1, 2));
            --indent_;
        }
    }
    if (used.empty()) {
        line(scalarLiteral(type, low) + ": ;");
    }
    if (random_.chance(1, 2)) {
        line("else");
        ++indent_;
        statements(random_.between(1, 2));
        --indent_;
    }
    --indent_;
    line("end;");
}

void Generator::forStatement() {
    if (loopVariables_.empty() || weight_ * 4 > mostWeight) {
        assignment();
        return;
    }
    std::size_t which = static_cast<std::size_t>(random_.below(static_cast<int>(loopVariables_.size())));
    Variable saved = loopVariables_[which];
    loopVariables_.erase(loopVariables_.begin() + static_cast<std::ptrdiff_t>(which));
    Variable variable = saved;
    const Type* type = variable.type;
    int most = std::min<int>(static_cast<int>(mostWeight / weight_), random_.chance(1, 12) ? 200 : 20);
    int trips = random_.between(0, most);
    int low = random_.chance(1, 2) ? 0 : random_.between(std::max(type->low, -20), std::min(type->high, 20));
    if (type->kind == Kind::character) {
        low = random_.between(65, 90);
    }
    // The ends of the types are where loops go wrong.
    if (random_.chance(1, 12)) {
        low = random_.chance(1, 2) && type == integerType_
                  ? type->low
                  : std::max(type->low, type->high - std::max(trips, 1) + 1);
    }
    trips = std::min(trips, type->high - low + 1);
    int high = low + trips - 1;
    if (high < type->low) {
        trips = 1, high = low;
    }
    std::string first = scalarLiteral(type, low), last = scalarLiteral(type, high);
    bool computed = random_.chance(1, 4) && type->kind == Kind::integer && trips > 0;
    bool down = random_.chance(1, 3);
    if (computed) {
        // Known limits, unknown values.
        last = integerOf(low, high, 2).text;
        if (random_.chance(1, 2)) {
            first = integerOf(low, high, 1).text;
        }
    }
    if (down) {
        std::swap(first, last);
    }
    variable.low = std::min(low, high), variable.high = std::max(low, high);
    std::string range = first + (down ? " downto " : " to ") + last;
    line("for " + variable.name + " := " + range + " do");
    variables_.push_back(variable);
    long weight = weight_;
    weight_ *= std::max(trips, 1);
    body(random_.between(1, 3));
    weight_ = weight;
    variables_.pop_back();
    loopVariables_.push_back(saved);
}

/// A while or repeat statement that counts.
void Generator::countedLoop() {
    std::size_t which = 0;
    while (which < loopVariables_.size() && loopVariables_[which].type->kind != Kind::integer) {
        ++which;
    }
    if (which == loopVariables_.size() || weight_ * 4 > mostWeight) {
        assignment();
        return;
    }
    Variable saved = loopVariables_[which];
    loopVariables_.erase(loopVariables_.begin() + static_cast<std::ptrdiff_t>(which));
    int trips = random_.between(1, std::min(15, static_cast<int>(mostWeight / weight_)));
    Variable variable = saved;
    variable.low = 0, variable.high = trips;
    std::string limit = std::to_string(trips);
    bool repeated = random_.chance(1, 2);
    bool countsFirst = random_.chance(1, 2);
    bool callsAllowed = callsAllowed_;
    callsAllowed_ = false; // it is evaluated again and again
    Term more = condition(1);
    callsAllowed_ = callsAllowed;
    line(variable.name + " := 0;");
    line(repeated ? "repeat"
                  : "while (" + variable.name + " < " + limit + ") and (" + more.text + ") do begin");
    variables_.push_back(variable);
    ++indent_;
    std::string count = variable.name + " := " + variable.name + " + 1;";
    if (countsFirst) {
        line(count);
    }
    long weight = weight_;
    weight_ *= trips;
    statements(random_.between(1, 3));
    weight_ = weight;
    if (!countsFirst) {
        line(count);
    }
    --indent_;
    line(repeated ? "until (" + variable.name + " >= " + limit + ") or (" + more.text + ");" : "end;");
    variables_.pop_back();
    loopVariables_.push_back(saved);
}

void Generator::withStatement() {
    Place place;
    // More than two within each other need a directive.
    if (withDepth_ == 2 || !findPlace(place, Kind::record, nullptr, true)) {
        assignment();
        return;
    }
    line("with " + place.text + " do");
    std::size_t before = variables_.size();
    for (const Field& field : place.type->fields) {
        Variable variable;
        variable.name = field.name;
        variable.type = field.type;
        variable.local = place.root->local && !place.byPointer;
        variable.low = field.type->low;
        variable.high = field.type->high;
        variables_.push_back(variable);
    }
    ++withDepth_;
    body(random_.between(1, 3));
    --withDepth_;
    variables_.resize(before);
}

void Generator::loopWithGoto() {
    if (!labelName_.empty() || loopVariables_.empty() || weight_ * 10 > mostWeight) {
        assignment();
        return;
    }
    labelName_ = std::to_string(++nameCount_);
    std::string label = labelName_;
    Variable variable = loopVariables_.back();
    loopVariables_.pop_back();
    Variable saved = variable;
    variable.low = variable.type->kind == Kind::enumeration ? 0 : 65;
    variable.high = variable.type->kind == Kind::enumeration ? variable.type->high : 70;
    line("for " + variable.name + " := " + scalarLiteral(variable.type, variable.low) + " to " +
         scalarLiteral(variable.type, variable.high) + " do begin");
    ++indent_;
    variables_.push_back(variable);
    long weight = weight_;
    weight_ *= 8;
    statements(random_.between(0, 2));
    Term c = condition(2);
    line("if " + c.text + " then goto " + label + ";");
    statements(random_.between(0, 2));
    weight_ = weight;
    variables_.pop_back();
    loopVariables_.push_back(saved);
    --indent_;
    line("end;");
    line(label + ":;");
    labelUsed_ = true;
}

void Generator::writeStatement() {
    bool lineEnd = random_.chance(1, 2);
    std::vector<std::string> items{std::string("'") + static_cast<char>('a' + random_.below(26)) + "'"};
    for (int i = random_.between(1, 3); i > 0; --i) {
        std::string width = random_.chance(1, 3) ? ":" + std::to_string(random_.between(1, 9)) : "";
        std::string item;
        int most = 0;
        switch (random_.below(6)) {
        case 5:
            item = real(1).text + (free() ? " + zeroReal" : ""); // which knows a negative zero
            width = ":1:4";
            break;
        case 0:
            item = condition(1).text;
            break;
        case 1:
            item = character(1).text;
            break;
        case 2:
            item = stringPiece(100, most).text;
            break;
        default:
            item = integer(2).text;
            if (free()) {
                item = "Integer(" + item + ")";
            }
            break;
        }
        items.push_back(item + width);
        items.emplace_back("' '");
    }
    writeItems("", items, lineEnd);
}

/// A Write or WriteLn. Each item is written before the next one is evaluated.
void Generator::writeItems(const std::string& file, const std::vector<std::string>& items, bool lineEnd) {
    std::string text;
    for (const std::string& item : items) {
        text += (text.empty() && file.empty() ? "" : ", ") + item;
    }
    if (!hasCallMark(text)) {
        line((lineEnd ? "WriteLn(" : "Write(") + file + text + ");");
        return;
    }
    for (const std::string& item : items) {
        line("Write(" + file + (file.empty() ? "" : ", ") + item + ");");
    }
    if (lineEnd) {
        line(file.empty() ? "WriteLn;" : "WriteLn(" + file + ");");
    }
}

/// Numbers and a string go to a file and come back.
void Generator::textFileStatement() {
    spend(40);
    line("Assign(" + textFile_ + ", '" + textFile_ + ".TXT'); Rewrite(" + textFile_ + ");");
    int count = random_.between(1, 3);
    for (int i = 0; i < count; ++i) {
        std::string number = integer(2).text;
        std::vector<std::string> items{free() ? "Integer(" + number + ")" : number, "' '"};
        int most = 0;
        items.push_back(stringPiece(30, most).text);
        writeItems(textFile_, items, true);
    }
    line("Reset(" + textFile_ + ");");
    for (int i = random_.between(1, count); i > 0; --i) {
        Place number, text;
        if (!findPlace(number, Kind::integer, integerType_, true)) {
            break;
        }
        if (!findPlace(text, Kind::string, nullptr, true)) {
            line("ReadLn(" + textFile_ + ", " + number.text + ");");
        } else if (hasCallMark(number.text + text.text)) {
            line("Read(" + textFile_ + ", " + number.text + ");");
            line("ReadLn(" + textFile_ + ", " + text.text + ");");
        } else {
            line("ReadLn(" + textFile_ + ", " + number.text + ", " + text.text + ");");
        }
    }
    line("WriteLn(Eof(" + textFile_ + ")); Close(" + textFile_ + ");");
}

/// Numbers go to records of a file and come back from somewhere in it.
void Generator::typedFileStatement() {
    spend(40);
    line("Assign(" + typedFile_ + ", '" + typedFile_ + ".DAT'); Rewrite(" + typedFile_ + ");");
    int count = 0;
    for (int i = random_.between(1, 4); i > 0; --i) {
        Place place;
        if (findPlace(place, Kind::integer, integerType_, true)) {
            line("Write(" + typedFile_ + ", " + place.text + ");");
            ++count;
        }
    }
    for (int i = random_.between(0, count); i > 0; --i) {
        Place place;
        line("Seek(" + typedFile_ + ", " + integerOf(0, count - 1, 1).text + ");");
        if (findPlace(place, Kind::integer, integerType_, true)) {
            line("Read(" + typedFile_ + ", " + place.text + ");");
        }
    }
    line("WriteLn(FilePos(" + typedFile_ + "), ' ', FileSize(" + typedFile_ + ")); Close(" + typedFile_ +
         ");");
}

/// Adds what a variable holds to the checksum.
void Generator::mixPlace(const std::string& text, const Type* type) {
    switch (type->kind) {
    case Kind::integer:
        line(mixName_ + "(" + text + ");");
        return;
    case Kind::character:
    case Kind::boolean:
    case Kind::enumeration:
        line(mixName_ + "(Ord(" + text + "));");
        return;
    case Kind::string:
        line("WriteLn('<', " + text + ", '>');");
        return;
    case Kind::set: {
        std::string last =
            type->element != nullptr ? type->element->literals.back() : std::to_string(type->high);
        std::string first = type->element != nullptr ? type->element->literals.front() : "0";
        line(mixName_ + "(Ord(" + last + " in " + text + "));");
        line(mixName_ + "(Ord(" + first + " in " + text + "));");
        return;
    }
    case Kind::real:
        line("WriteLn(" + text + (free() ? " + zeroReal" : "") + ":1:4);");
        return;
    case Kind::pointer:
        mixPlace(text + "^", type->element);
        return;
    case Kind::record:
        for (const Field& field : type->fields) {
            mixPlace(text + "." + field.name, field.type);
        }
        return;
    case Kind::array:
        if (type->index == nullptr && type->element->isScalar() &&
            !type->element->literals.empty() == false) {
            std::string counter = "count";
            std::string element = text + "[" + counter + "]";
            line("for " + counter + " := " + std::to_string(type->low) + " to " + std::to_string(type->high) +
                 " do " + mixName_ + "(" +
                 (type->element->kind == Kind::integer ? element : "Ord(" + element + ")") + ");");
            return;
        }
        for (const int i : std::set<int>{type->low, (type->low + type->high) / 2, type->high}) {
            mixPlace(text + "[" + scalarLiteral(type->index != nullptr ? type->index : integerType_, i) + "]",
                     type->element);
        }
        return;
    }
}

/// Prints every variable of the block, or its checksum.
void Generator::report() {
    for (std::size_t i = ownVariables_; i < variables_.size(); ++i) {
        const Variable& variable = variables_[i];
        bool drop = dropNext();
        if (variable.dropped || drop) {
            continue;
        }
        if (variable.type->kind == Kind::integer) {
            line("WriteLn('" + variable.name + " ', " + variable.name + ");");
        } else {
            line(sumName_ + " := 0;");
            mixPlace(variable.name, variable.type);
            line("WriteLn('" + variable.name + " ', " + sumName_ + ");");
        }
    }
}

} // namespace fuzz
