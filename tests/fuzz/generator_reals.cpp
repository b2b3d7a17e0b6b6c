#include "generator.h"

#include <algorithm>

namespace fuzz {

namespace {
constexpr int product = 3, sum = 4;
constexpr long mostStored = 32768; ///< what a variable can hold, and a function give back
constexpr int bitsStored = 4;
constexpr long mostSixteenths = 1L << 35; ///< 40 bits of mantissa hold every step on the way
} // namespace

/// A number of sixteenths, not negative.
std::string Generator::realLiteral() {
    static const char* const sixteenths[] = {"0", "0625", "125", "1875", "25", "3125", "375", "4375",
                                             "5", "5625", "625", "6875", "75", "8125", "875", "9375"};
    int whole = random_.chance(1, 4) ? random_.between(0, 32767) : random_.between(0, 100);
    return std::to_string(whole) + "." + sixteenths[random_.below(16)];
}

Generator::RealTerm Generator::realLeaf() {
    spend(4);
    Place place;
    if (random_.chance(1, 2) && findPlace(place, Kind::real, nullptr, false)) {
        return {{read(place)}, mostStored, bitsStored};
    }
    if (random_.chance(1, 4)) {
        Term number = integer(1);
        std::string text = free() ? "Integer(" + number.text + ")" : operand(number, product);
        return {{"(" + text + " / 4)"}, 8192, 2};
    }
    return {{realLiteral()}, mostStored, bitsStored};
}

/// A term whose every intermediate result is exact.
Generator::RealTerm Generator::realTerm(int depth) {
    bool drop = dropNext();
    RealTerm a;
    int form = depth <= 0 || nesting_ > 5 ? 0 : random_.below(8);
    ++nesting_;
    if (form < 2) {
        a = realLeaf();
    } else if (form == 2) {
        a = {functionCall(Kind::real, realType_), mostStored, bitsStored};
    } else {
        a = realTerm(depth - 1);
        spend(6);
        static const char* const halves[] = {"2", "4.0", "8"};
        int power = random_.below(3);
        bool room = (a.most << (a.bits + 4)) < mostSixteenths;
        if (form == 3) {
            a.term = {"-" + operand(a.term, 0), 9};
        } else if (form == 4) {
            a.term = {"Abs(" + a.term.text + ")"};
        } else if (form == 5 && room) {
            std::string left = operand(a.term, product);
            bool times = random_.chance(1, 2);
            a.term = {left + (times ? " * " : " / ") + halves[power], product};
            a.most = times ? a.most << (power + 1) : a.most;
            a.bits += times ? 0 : power + 1;
        } else if (room) {
            RealTerm b = realTerm(depth - 1);
            if ((b.most << (std::max(a.bits, b.bits) + 1)) < mostSixteenths) {
                std::string left = operand(a.term, sum), right = operand(b.term, product);
                a.term = {left + (random_.chance(1, 2) ? " + " : " - ") + right, sum};
                a.most += b.most;
                a.bits = std::max(a.bits, b.bits);
            }
        }
    }
    --nesting_;
    return drop ? RealTerm{{"1.5"}, 2, 1} : a;
}

/// A term that a variable can hold.
Term Generator::real(int depth) {
    RealTerm a = realTerm(depth);
    if (a.bits > bitsStored) {
        a.term = {"Int((" + a.term.text + ") * 16) / 16", product};
    }
    if (a.most > mostStored || random_.chance(1, 8)) {
        a.term = {"Frac((" + a.term.text + ") / 32768.0) * 32768.0", product};
    } else if (a.most == mostStored) {
        a.term = {"(" + a.term.text + ")"};
    }
    return a.term;
}

} // namespace fuzz
