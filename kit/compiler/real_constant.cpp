#include "real_constant.h"

#include <array>
#include <cstddef>

namespace tp3 {
namespace {

constexpr int mantissaBits = 40;
constexpr int exponentBias = 0x80;

/// A whole number large enough for every literal: 50 digits times ten to the 45th and 200 bits more.
class BigNumber {
  public:
    void multiplyAdd(std::uint32_t factor, std::uint32_t summand) {
        std::uint64_t carry = summand;
        for (std::uint32_t& word : words_) {
            carry += std::uint64_t{word} * factor;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }
    /// Divides and gives back the remainder.
    std::uint32_t divide(std::uint32_t divisor) {
        std::uint32_t remainder = 0;
        for (std::size_t i = words_.size(); i-- > 0;) {
            // By halves, so that no 64-bit division is needed, which a free-standing program lacks.
            const std::uint32_t high = (remainder << 16) | (words_[i] >> 16);
            const std::uint32_t low = ((high % divisor) << 16) | (words_[i] & 0xFFFF);
            words_[i] = ((high / divisor) << 16) | (low / divisor);
            remainder = low % divisor;
        }
        return remainder;
    }
    void shiftLeftWords(std::size_t count) {
        for (std::size_t i = words_.size(); i-- > 0;)
            words_[i] = i >= count ? words_[i - count] : 0;
    }
    [[nodiscard]] int bitLength() const {
        for (std::size_t i = words_.size(); i-- > 0;)
            for (int bit = 31; bit >= 0; --bit)
                if ((words_[i] >> bit & 1) != 0)
                    return static_cast<int>(i) * 32 + bit + 1;
        return 0;
    }
    [[nodiscard]] bool bit(int place) const {
        return place >= 0 && (words_[static_cast<std::size_t>(place) / 32] >> (place % 32) & 1) != 0;
    }

  private:
    std::array<std::uint32_t, 20> words_{};
};

// number * 2^shift (with `inexact` for a lost remainder above zero) as a real.
bool store(const BigNumber& number, int shift, bool inexact, char* bytes) {
    for (int i = 0; i < 6; ++i)
        bytes[i] = 0;
    const int length = number.bitLength();
    if (length == 0)
        return true;
    std::uint64_t mantissa = 0;
    for (int i = 1; i <= mantissaBits; ++i)
        mantissa = mantissa << 1 | (number.bit(length - i) ? 1 : 0);
    int exponent = length + shift;
    bool below = inexact;
    for (int place = length - mantissaBits - 2; place >= 0 && !below; --place)
        below = number.bit(place);
    if (number.bit(length - mantissaBits - 1) && (below || (mantissa & 1) != 0)) {
        ++mantissa;
        if (mantissa >> mantissaBits != 0) {
            mantissa >>= 1;
            ++exponent;
        }
    }
    if (exponent + exponentBias > 255)
        return false;
    if (exponent + exponentBias <= 0)
        return true; // too small: zero
    bytes[0] = static_cast<char>(exponent + exponentBias);
    mantissa &= ~(std::uint64_t{1} << (mantissaBits - 1));
    for (int i = 1; i <= 5; ++i, mantissa >>= 8)
        bytes[i] = static_cast<char>(mantissa & 0xFF);
    return true;
}

} // namespace

bool realFromText(std::string_view text, char* bytes) {
    BigNumber number;
    constexpr int maximumDigits = 50; // those behind change nothing in 12 significant ones
    constexpr int maximumExponent = 45;
    int digits = 0;
    int scale = 0;
    std::size_t i = 0;
    bool fraction = false;
    for (; i < text.size() && text[i] != 'E'; ++i) {
        if (text[i] == '.') {
            fraction = true;
            continue;
        }
        const auto digit = static_cast<std::uint32_t>(text[i] - '0');
        if (digits < maximumDigits) {
            number.multiplyAdd(10, digit);
            if (digits > 0 || digit > 0)
                ++digits;
            scale -= fraction ? 1 : 0;
        } else {
            scale += fraction ? 0 : 1;
        }
    }
    int exponent = 0;
    bool negative = false;
    for (++i; i < text.size(); ++i) {
        if (text[i] == '-' || text[i] == '+')
            negative = text[i] == '-';
        else if (exponent < 10000)
            exponent = exponent * 10 + text[i] - '0';
    }
    scale += negative ? -exponent : exponent;
    if (number.bitLength() == 0)
        return store(number, 0, false, bytes);
    if (digits + scale > maximumExponent)
        return false;
    if (digits + scale < -maximumExponent)
        return store(BigNumber(), 0, false, bytes);
    for (; scale > 0; --scale)
        number.multiplyAdd(10, 0);
    bool inexact = false;
    int shift = 0;
    if (scale < 0) {
        constexpr std::size_t extraWords = 12; // ten to the -95th is above two to the -320th
        number.shiftLeftWords(extraWords);
        shift = -static_cast<int>(extraWords) * 32;
        for (; scale < 0; ++scale)
            inexact = number.divide(10) != 0 || inexact;
    }
    return store(number, shift, inexact, bytes);
}

void realFromInteger(std::int32_t value, char* bytes) {
    BigNumber number;
    number.multiplyAdd(0, static_cast<std::uint32_t>(value < 0 ? -value : value));
    store(number, 0, false, bytes);
    if (value < 0)
        bytes[5] = static_cast<char>(bytes[5] | 0x80);
}

} // namespace tp3
