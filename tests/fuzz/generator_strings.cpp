#include "generator.h"

#include <algorithm>

namespace fuzz {

/// A string of at most `limit` characters that needs no concatenation; `most` gets how long it can be.
Term Generator::stringPiece(int limit, int& most) {
    spend(6);
    Place place;
    int form = random_.below(6);
    if (form < 3 && findPlace(place, Kind::string, nullptr, false) && place.type->high <= limit) {
        most = place.type->high;
        return {read(place)};
    }
    if (form == 3 && findPlace(place, Kind::string, nullptr, false)) {
        int count = random_.between(0, std::min(limit, 20));
        std::string text = read(place);
        std::string from = integerOf(1, 10, random_.below(2)).text;
        most = count;
        return {"Copy(" + text + ", " + from + ", " + std::to_string(count) + ")"};
    }
    if (form == 4) {
        Term a = character(1);
        most = 1;
        return a;
    }
    std::string letters = "'";
    most = random_.between(2, 5);
    for (int i = 0; i < most; ++i) {
        letters += static_cast<char>('a' + random_.below(4));
    }
    return {letters + "'"};
}

/// A string of at most `limit` characters, which is 255 at most.
Term Generator::string(int limit, int depth) {
    bool drop = dropNext();
    int most = 0;
    Term term = stringPiece(limit, most);
    for (int i = random_.below(depth + 1); i > 0 && most < limit; --i) {
        int more = 0;
        Term b = stringPiece(std::max(limit - most, 5), more);
        if (most + more > limit) {
            break;
        }
        most += more;
        term.text += " + " + b.text;
        term.level = 4;
    }
    return drop ? Term{"'ab'"} : term;
}

/// A possible element of a set. Free Pascal wants them all of one type, and constant ranges in order.
Term Generator::setElement(const Type* type, int depth) {
    if (type->element != nullptr) {
        return enumeration(type->element, depth);
    }
    Term term = integerOf(0, type->high, depth);
    if (free()) {
        term = {"Byte(Integer(zero + (" + term.text + ")))", 0, term.low, term.high};
    }
    return term;
}

Term Generator::set(const Type* type, int depth) {
    spend(8);
    Place place;
    Term term;
    if (random_.chance(1, 2) && findPlace(place, Kind::set, type, false)) {
        term = {read(place)};
    } else {
        std::string text = "[";
        int from = 0; // Free Pascal takes a constant that is there twice for an error
        for (int i = random_.below(4); i > 0; --i) {
            if (type->element != nullptr) {
                Place element;
                if (from > type->high || random_.chance(1, 3)) {
                    bool there = findPlace(element, Kind::enumeration, type->element, false);
                    text += there ? read(element) : "";
                    if (!there) {
                        break;
                    }
                } else {
                    from = random_.between(from, type->high);
                    text += scalarLiteral(type->element, from);
                    if (random_.chance(1, 3)) {
                        from = random_.between(from, type->high);
                        text += ".." + scalarLiteral(type->element, from);
                    }
                    ++from;
                }
            } else {
                text += setElement(type, random_.below(2)).text;
                if (random_.chance(1, 3)) {
                    text += ".." + setElement(type, random_.below(2)).text;
                }
            }
            text += i > 1 ? ", " : "";
        }
        if (text.back() == ' ') {
            text.resize(text.size() - 2);
        }
        term = {text + "]"};
    }
    if (depth > 0 && random_.chance(1, 2)) {
        static const char* const names[] = {" + ", " - ", " * "};
        int op = random_.below(3);
        int level = op == 2 ? 3 : 4;
        Term b = set(type, depth - 1);
        std::string left = operand(term, level), right = operand(b, level - 1);
        term = {left + names[op] + right, level};
    }
    return term;
}

/// One of the statements on strings; false when there is no string to write to.
bool Generator::stringStatement() {
    Place to;
    int form = random_.below(7);
    // What stands in a conditional statement cannot be moved before it.
    bool callsAllowed = callsAllowed_;
    callsAllowed_ = callsAllowed && form != 4 && form != 5;
    bool done = findPlace(to, Kind::string, nullptr, true) && stringStatementOn(to, form);
    callsAllowed_ = callsAllowed;
    return done;
}

bool Generator::stringStatementOn(const Place& to, int form) {
    spend(10);
    switch (form) {
    case 0: {
        Term from = integerOf(1, 6, 1);
        Term count = integerOf(0, 5, 1);
        line("Delete(" + to.text + ", " + from.text + ", " + count.text + ");");
        return true;
    }
    case 1: {
        int most = 0;
        Term what = stringPiece(40, most);
        line("Insert(" + what.text + ", " + to.text + ", " + std::to_string(random_.between(1, 6)) + ");");
        return true;
    }
    case 2: {
        Term what = integer(1);
        // The text must fit: what does not is cut in one dialect only.
        if (to.type->high >= 6) {
            line("Str(" + (free() ? "Integer(" + what.text + ")" : what.text) +
                 (random_.chance(1, 2) ? "" : ":5") + ", " + to.text + ");");
        }
        return true;
    }
    case 3: {
        Place place;
        if (findPlace(place, Kind::integer, integerType_, true)) {
            int most = 0;
            Term part = stringPiece(5, most);
            std::string from = read(to);
            line(place.text + " := Pos(" + part.text + ", " + from + ");");
        }
        return true;
    }
    case 4: {
        std::string at = std::to_string(random_.between(1, std::min(to.type->high, 6)));
        Term what = character(1);
        line("if Length(" + to.text + ") >= " + at + " then " + to.text + "[" + at + "] := " + what.text +
             ";");
        return true;
    }
    case 5: {
        Place place;
        std::string at = std::to_string(random_.between(1, std::min(to.type->high, 6)));
        if (findPlace(place, Kind::character, characterType_, true)) {
            line("if Length(" + to.text + ") >= " + at + " then " + place.text + " := " + to.text + "[" + at +
                 "];");
        }
        return true;
    }
    default: {
        Term value = string(random_.chance(1, 3) ? 200 : std::max(to.type->high, 5), 3);
        line(to.text + " := " + value.text + ";");
        return true;
    }
    }
}

} // namespace fuzz
