#include "generator.h"

#include <algorithm>

namespace fuzz {

namespace {
constexpr int product = 3, sum = 4, comparison = 5,
              alone = 9; ///< levels; `alone` wants parentheses everywhere

/// `term` with what it can be, unless that does not fit 16 bits: then it wraps round to anything.
Term ranged(std::string text, int level, long low, long high) {
    Term term{std::move(text), level};
    if (low >= -32768 && high <= 32767) {
        term.low = static_cast<int>(low);
        term.high = static_cast<int>(high);
    }
    return term;
}
} // namespace

/// A number with its result cut to 16 bits where the dialect calculates with more.
std::string Generator::wrap(const Term& term) const {
    return free() ? "Integer(" + term.text + ")" : term.text;
}

/// The term as an operand of an operator of `level`; a right operand asks for one level less.
std::string Generator::operand(const Term& term, int level) {
    bool extra = decoration_.chance(1, 12);
    return term.level > level || extra ? "(" + term.text + ")" : term.text;
}

Term Generator::number(int value) {
    std::string text = scalarLiteral(integerType_, value);
    if (value >= 0 && random_.chance(1, 10)) {
        static const char* const digits = "0123456789ABCDEF";
        text = "$";
        for (int shift = 12; shift >= 0; shift -= 4) {
            text += digits[value >> shift & 15];
        }
    }
    return {text, value < 0 && value != -32768 ? alone : 0, value, value};
}

/// A number that Free Pascal does not see through: its constants do not wrap round, and it takes some for
/// errors.
Term Generator::hiddenNumber(int value) {
    Term term = number(value);
    if (free()) {
        term.text = "Integer(zero + " + operand(term, product) + ")";
        term.level = 0;
    }
    return term;
}

Term Generator::leaf() {
    spend(1);
    Place place;
    if (random_.chance(2, 3) && findPlace(place, Kind::integer, nullptr, false)) {
        return {read(place), 0, place.low, place.high};
    }
    static const int interesting[] = {0,   1,   2,   3,    7,    8,     10, 15, 16,  31,   100,  127,   128,
                                      255, 256, 257, 1000, 4096, 32767, -1, -2, -10, -128, -256, -32768};
    if (random_.chance(1, 2)) {
        return hiddenNumber(interesting[random_.below(static_cast<int>(std::size(interesting)))]);
    }
    return hiddenNumber(random_.between(-300, 300));
}

Term Generator::integer(int depth) {
    bool drop = dropNext();
    Term term;
    int form = depth <= 0 || nesting_ > 5 ? 0 : random_.below(18);
    ++nesting_;
    if (form < 3) {
        term = leaf();
    } else if (form < 9) {
        term = arithmetic(depth - 1);
    } else if (form < 11) {
        term = bitwise(depth - 1);
    } else if (form < 12) {
        term = shifted(depth - 1);
    } else if (form < 14) {
        term = integerFunction(depth - 1);
    } else {
        term = functionCall(Kind::integer, nullptr);
    }
    --nesting_;
    if (drop) {
        // Something of the term's range.
        int value = std::clamp(1, term.low, term.high);
        term.text = scalarLiteral(integerType_, value);
        term.level = value < 0 ? alone : 0;
        if (free()) {
            term.text = "Integer(zero + (" + term.text + "))";
        }
    }
    return term;
}

Term Generator::arithmetic(int depth) {
    spend(2);
    Term a = integer(depth);
    int op = random_.below(8);
    auto binary = [&](const char* name, int level, const Term& b, long low, long high) {
        std::string left = operand(a, level), right = operand(b, level - 1);
        Term term = ranged(left + " " + name + " " + right, level, low, high);
        if (free()) {
            term.text = wrap(term);
            term.level = 0;
        }
        return term;
    };
    if (op < 3) {
        Term b = integer(depth);
        return binary("+", sum, b, long{a.low} + b.low, long{a.high} + b.high);
    }
    if (op < 5) {
        Term b = integer(depth);
        return binary("-", sum, b, long{a.low} - b.high, long{a.high} - b.low);
    }
    if (op == 5) {
        Term b = random_.chance(1, 2) ? hiddenNumber(random_.between(-20, 300)) : integer(depth);
        long products[] = {long{a.low} * b.low, long{a.low} * b.high, long{a.high} * b.low,
                           long{a.high} * b.high};
        return binary("*", product, b, *std::min_element(products, products + 4),
                      *std::max_element(products, products + 4));
    }
    // A divisor that is never 0: a constant, or something positive.
    Term b;
    if (random_.chance(1, 2)) {
        int value = random_.chance(1, 2) ? 1 << random_.below(15) : random_.between(1, 400);
        b = number(random_.chance(1, 5) ? -value : value);
    } else {
        b = integerOf(1, random_.chance(1, 2) ? 8 : random_.between(2, 300), depth);
    }
    if (op == 6) {
        int most = std::max(std::abs(a.low), std::abs(a.high));
        return binary("div", product, b, a.low < 0 || b.low < 0 ? -most : 0,
                      a.high > 0 || b.low < 0 ? most : 0);
    }
    int most = std::max(std::abs(b.low), std::abs(b.high)) - 1;
    return binary("mod", product, b, a.low < 0 ? -most : 0, a.high > 0 ? most : 0);
}

Term Generator::bitwise(int depth) {
    spend(2);
    Term a = integer(depth);
    Term b = random_.chance(1, 2) ? number(random_.between(0, 255)) : integer(depth);
    int op = random_.below(4);
    if (op == 3) {
        // Free Pascal keeps a byte a byte here.
        std::string text = free() ? "Integer(not Integer(" + a.text + "))" : "not " + operand(a, 2);
        return ranged(text, free() ? 0 : 2, -1L - a.high, -1L - a.low);
    }
    static const char* const names[] = {" and ", " or ", " xor "};
    int level = op == 0 ? product : sum;
    std::string left = operand(a, level), right = operand(b, level - 1);
    Term term{left + names[op] + right, level};
    if (op == 0 && (a.low >= 0 || b.low >= 0)) {
        term.low = 0;
        term.high = a.low >= 0 && b.low >= 0 ? std::min(a.high, b.high) : a.low >= 0 ? a.high : b.high;
    } else if (op != 0 && a.low >= 0 && b.low >= 0) {
        term.low = 0;
        term.high = 32767;
        for (int bits = 1; bits < 32767; bits = 2 * bits + 1) {
            if (a.high <= bits && b.high <= bits) {
                term.high = bits;
                break;
            }
        }
    }
    if (free()) {
        term.text = wrap(term);
        term.level = 0;
    }
    return term;
}

Term Generator::shifted(int depth) {
    spend(3);
    Term a = integer(depth);
    Term by = random_.chance(2, 3) ? number(random_.between(0, 15)) : integerOf(0, 15, depth);
    bool left = random_.chance(1, 2);
    Term term;
    if (free()) {
        term.text = "Integer(Word(" + a.text + ") " + (left ? "shl" : "shr") + " (" + by.text + "))";
    } else {
        std::string what = operand(a, product), count = operand(by, product - 1);
        term.text = what + (left ? " shl " : " shr ") + count;
        term.level = product;
    }
    if (!left && a.low >= 0) {
        term.low = 0;
        term.high = a.high;
    }
    return term;
}

Term Generator::integerFunction(int depth) {
    spend(2);
    Term a;
    auto made = [&](const char* name, long low, long high) {
        std::string argument = free() ? "Integer(" + a.text + ")" : a.text;
        std::string text = std::string(name) + "(" + argument + ")";
        return ranged(free() ? "Integer(" + text + ")" : text, 0, low, high);
    };
    switch (random_.below(12)) {
    case 10:
    case 11: {
        // What is left of the point is always a number.
        std::string text = "Trunc(" + real(depth).text + ")";
        return {free() ? "Integer(" + text + ")" : text, 0, -32767, 32767};
    }
    case 0:
        a = integer(depth);
        return made("Hi", 0, 255);
    case 1:
        a = integer(depth);
        return made("Lo", 0, 255);
    case 2:
        a = integer(depth);
        return made("Swap", -32768, 32767);
    case 3:
        a = integer(depth);
        return made("Abs", a.low >= 0 ? a.low : a.high <= 0 && a.low > -32768 ? -a.high : -32768, 32767);
    case 4:
        a = integer(depth);
        return made("Succ", long{a.low} + 1, long{a.high} + 1);
    case 5:
        a = integer(depth);
        return made("Pred", long{a.low} - 1, long{a.high} - 1);
    case 6: {
        a = character(depth);
        return {"Ord(" + a.text + ")", 0, 0, 255};
    }
    case 7: {
        const Type* type = random_.chance(1, 3) ? booleanType_ : enumerations_[0];
        a = scalar(type, depth);
        return {"Ord(" + a.text + ")", 0, 0, type->high};
    }
    case 8: {
        Place place;
        if (findPlace(place, Kind::string, nullptr, false)) {
            return {"Length(" + read(place) + ")", 0, 0, place.type->high};
        }
        return leaf();
    }
    default:
        a = integer(depth);
        if (free()) {
            return ranged("Integer(-Integer(" + a.text + "))", 0, -long{a.high}, -long{a.low});
        }
        return ranged("-" + operand(a, 0), alone, -long{a.high}, -long{a.low});
    }
}

/// A number within the limits.
Term Generator::integerOf(int low, int high, int depth) {
    spend(2);
    int form = depth <= 0 || nesting_ > 5 ? random_.below(2) : random_.below(8);
    if (low == -32768 && high == 32767) {
        return integer(depth);
    }
    if (form >= 1 && form < 5) {
        for (int attempt = 0; attempt < 4; ++attempt) {
            Place place;
            if (findPlace(place, Kind::integer, nullptr, false) && place.low >= low && place.high <= high) {
                return {read(place), 0, place.low, place.high};
            }
        }
    }
    if (form == 0 || depth <= 0) {
        return number(random_.between(low, high));
    }
    Term a = integer(depth - 1);
    if (a.low >= low && a.high <= high) {
        return a;
    }
    int count = high - low + 1;
    int mask = 1;
    while (2 * mask + 1 < count) {
        mask = 2 * mask + 1;
    }
    std::string text;
    int most = count - 1;
    if (mask + 1 == count || (mask < count && random_.chance(1, 2))) {
        text = operand(a, product) + " and " + std::to_string(mask);
        most = mask;
    } else {
        text = "Abs(" + operand(a, product) + " mod " + std::to_string(std::min(count, 32767)) + ")";
    }
    if (low == 0) {
        return {text, product, 0, most};
    }
    if (low == -32768 && !free()) {
        return {text + " + $8000", sum, low, low + most};
    }
    return {text + (low < 0 ? " - " : " + ") + std::to_string(std::abs(low)), sum, low, low + most};
}

Term Generator::compare(int depth) {
    static const char* const relations[] = {" = ", " <> ", " < ", " > ", " <= ", " >= "};
    const char* relation = relations[random_.below(6)];
    spend(2);
    Term a, b;
    switch (random_.below(13)) {
    case 10:
    case 11:
        a = real(depth), b = real(depth);
        break;
    case 12: {
        Place one, other;
        if (!pointers_.empty() && findPlace(one, Kind::pointer, pointers_[0], false) &&
            findPlace(other, Kind::pointer, pointers_[0], false)) {
            return {read(one) + (random_.chance(1, 2) ? " = " : " <> ") + read(other), comparison};
        }
        a = character(depth), b = character(depth);
        break;
    }
    case 0:
        a = character(depth), b = character(depth);
        break;
    case 1: {
        const Type* type = enumerations_[0];
        a = enumeration(type, depth), b = enumeration(type, depth);
        break;
    }
    case 2: {
        int most = 0;
        a = stringPiece(60, most), b = stringPiece(60, most);
        break;
    }
    case 3:
        if (!sets_.empty()) {
            static const char* const forSets[] = {" = ", " <> ", " <= ", " >= "};
            const Type* type = sets_[0];
            a = set(type, depth), b = set(type, depth);
            relation = forSets[random_.below(4)];
            break;
        }
        [[fallthrough]];
    default:
        a = integer(depth), b = random_.chance(1, 3) ? leaf() : integer(depth);
        break;
    }
    std::string left = operand(a, sum), right = operand(b, sum);
    return {left + relation + right, comparison};
}

Term Generator::condition(int depth) {
    bool drop = dropNext();
    spend(1);
    Term term;
    ++nesting_;
    switch (depth <= 0 || nesting_ > 6 ? random_.below(2) : random_.below(11)) {
    case 0: {
        Place place;
        if (findPlace(place, Kind::boolean, nullptr, false)) {
            term = {read(place)};
            break;
        }
        [[fallthrough]];
    }
    case 1:
        term = compare(0);
        break;
    case 2:
    case 3: {
        static const char* const names[] = {" and ", " or ", " xor "};
        int op = random_.below(3);
        int level = op == 0 ? product : sum;
        Term a = condition(depth - 1), b = condition(depth - 1);
        std::string left = operand(a, level), right = operand(b, level - 1);
        term = {left + names[op] + right, level};
        break;
    }
    case 4: {
        Term a = condition(depth - 1);
        term = {"not " + operand(a, 2), 2};
        break;
    }
    case 5: {
        Term a = integer(depth - 1);
        term = {"Odd(" + a.text + ")"};
        break;
    }
    case 6:
        term = functionCall(Kind::boolean, booleanType_);
        break;
    case 7:
        if (!sets_.empty()) {
            const Type* type = sets_[0];
            Term element = setElement(type, depth - 1);
            Term of = set(type, depth - 1);
            std::string left = operand(element, sum);
            term = {left + " in " + operand(of, sum), comparison};
            break;
        }
        [[fallthrough]];
    default:
        term = compare(depth - 1);
        break;
    }
    --nesting_;
    return drop ? Term{"True"} : term;
}

Term Generator::character(int depth) {
    spend(1);
    Place place;
    int form = depth <= 0 ? random_.below(3) : random_.below(7);
    if (form < 2 && findPlace(place, Kind::character, nullptr, false)) {
        return {read(place)};
    }
    if (form < 4) {
        return {scalarLiteral(characterType_, random_.between(33, 126))};
    }
    if (form == 4) {
        Term a = functionCall(Kind::character, characterType_);
        return a;
    }
    if (form == 5 && findPlace(place, Kind::character, nullptr, false)) {
        return {"UpCase(" + read(place) + ")"};
    }
    Term a = integerOf(32, 126, depth - 1);
    return {"Chr(" + a.text + ")"};
}

Term Generator::enumeration(const Type* type, int depth) {
    spend(1);
    Place place;
    if (random_.chance(1, 2) && findPlace(place, Kind::enumeration, type, false)) {
        return {read(place)};
    }
    if (depth > 0 && random_.chance(1, 2)) {
        Term a = integerOf(0, type->high, depth - 1);
        return {type->name + "(" + a.text + ")"};
    }
    return {scalarLiteral(type, random_.between(0, type->high))};
}

/// A value that may be assigned to something of `type`.
Term Generator::scalar(const Type* type, int depth) {
    switch (type->kind) {
    case Kind::character:
        return character(depth);
    case Kind::boolean:
        return condition(depth);
    case Kind::enumeration:
        return enumeration(type, depth);
    default:
        return type->wraps() && !(options_.rangeChecks && type == byteType_)
                   ? integer(depth)
                   : integerOf(type->low, type->high, depth);
    }
}

} // namespace fuzz
