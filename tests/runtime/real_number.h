// The 48-bit real in C++: its bytes, and exact values to compare with.
#pragma once

#include "library_machine.h"

#include <cmath>
#include <cstdint>
#include <random>

namespace runtime_test {

__extension__ typedef __float128 Quad;

/// +-mantissa * 2^(exponent - 40); mantissa 0 or with bit 39 set.
struct RealNumber {
    bool negative = false;
    int exponent = 0;
    std::uint64_t mantissa = 0;

    bool operator==(const RealNumber&) const = default;
    Quad value() const {
        Quad result = static_cast<Quad>(mantissa);
        for (int power = exponent - 40; power > 0; --power) {
            result *= 2;
        }
        for (int power = exponent - 40; power < 0; ++power) {
            result /= 2;
        }
        return negative ? -result : result;
    }
    long double longValue() const {
        const long double size = std::ldexp(static_cast<long double>(mantissa), exponent - 40);
        return negative ? -size : size;
    }
};

constexpr int largestExponent = 127;
constexpr int smallestExponent = -127;

/// The nearest real, halves to even; too small ones are 0; exponents above 127 are left to the caller.
inline RealNumber nearestReal(Quad value) {
    RealNumber result;
    if (value == 0) {
        return result;
    }
    result.negative = value < 0;
    Quad size = result.negative ? -value : value;
    while (size >= 1) {
        size /= 2;
        ++result.exponent;
    }
    while (size < static_cast<Quad>(0.5)) {
        size *= 2;
        --result.exponent;
    }
    size *= static_cast<Quad>(0x1p40);
    result.mantissa = static_cast<std::uint64_t>(size);
    const Quad rest = size - static_cast<Quad>(result.mantissa);
    const auto half = static_cast<Quad>(0.5);
    if (rest > half || (rest == half && (result.mantissa & 1U) != 0)) {
        ++result.mantissa;
    }
    if (result.mantissa == 1ULL << 40U) {
        result.mantissa >>= 1U;
        ++result.exponent;
    }
    return result.exponent < smallestExponent ? RealNumber{} : result;
}

inline void putReal(LibraryMachine& machine, std::uint16_t at, const RealNumber& number) {
    const bool zero = number.mantissa == 0;
    machine.setByte(at, zero ? 0 : static_cast<std::uint8_t>(number.exponent + 0x80));
    const std::uint64_t bits =
        zero ? 0 : (number.mantissa & ~(1ULL << 39U)) | (number.negative ? 1ULL << 39U : 0);
    for (unsigned index = 0; index < 5; ++index) {
        machine.setByte(static_cast<std::uint16_t>(at + 1 + index),
                        static_cast<std::uint8_t>(bits >> index * 8U));
    }
}

inline RealNumber getReal(const LibraryMachine& machine, std::uint16_t at) {
    if (machine.byte(at) == 0) {
        return {};
    }
    RealNumber number;
    number.exponent = machine.byte(at) - 0x80;
    for (unsigned index = 0; index < 5; ++index) {
        number.mantissa |=
            static_cast<std::uint64_t>(machine.byte(static_cast<std::uint16_t>(at + 1 + index)))
            << index * 8U;
    }
    number.negative = (number.mantissa >> 39U & 1U) != 0;
    number.mantissa |= 1ULL << 39U;
    return number;
}

/// Mantissas of all kinds: random ones, few bits, many ones, and exponents within `spread` of 0.
inline RealNumber randomReal(std::mt19937_64& random, int spread) {
    RealNumber number;
    number.negative = random() % 2 != 0;
    number.exponent = static_cast<int>(random() % static_cast<unsigned>(2 * spread + 1)) - spread;
    const std::uint64_t all = (1ULL << 40U) - 1;
    switch (random() % 6) {
    case 0:
        number.mantissa = (random() >> random() % 64U) & all;
        break;
    case 1:
        number.mantissa = ~(1ULL << random() % 40U) & all;
        break;
    case 2:
        number.mantissa = (random() & all) >> random() % 40U << random() % 40U & all;
        break;
    default:
        number.mantissa = random() & all;
    }
    number.mantissa |= 1ULL << 39U;
    return number;
}

} // namespace runtime_test
