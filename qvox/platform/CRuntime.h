// Number readers with the platform C runtime's rules, independent of the process's C locale: the
// point is always ".", and reading never goes past the end of the text given.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qvox {

// Reads a decimal integer as the platform's atoi does: white space, an optional sign, then digits
// up to the first other character. No digits gives 0; a value beyond 32 bits saturates at
// INT32_MIN or INT32_MAX. A null text gives 0.
std::int32_t AtoI(const char* text);
std::int32_t AtoI(std::string_view text);

// As AtoI, and tells whether a minus sign stood before the digits (also when they read as 0) and
// how many characters the number took, white space included. Inline: price text readers call it
// on every field.
inline std::int32_t AtoI(std::string_view text, bool& negative, std::size_t& used) {
    std::size_t i = 0;
    const std::size_t n = text.size();
    while (i < n && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r')))
        ++i;
    negative = false;
    if (i < n && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    // The magnitude stops growing once it is past any 32-bit value.
    std::uint64_t magnitude = 0;
    for (; i < n && text[i] >= '0' && text[i] <= '9'; ++i) {
        if (magnitude <= 0xFFFFFFFFull) {
            magnitude = magnitude * 10 + static_cast<unsigned>(text[i] - '0');
        }
    }
    used = i;
    if (negative) {
        return magnitude >= 0x80000000ull ? INT32_MIN : -static_cast<std::int32_t>(magnitude);
    }
    return magnitude >= 0x7FFFFFFFull ? INT32_MAX : static_cast<std::int32_t>(magnitude);
}

inline std::int32_t AtoI(std::string_view text, bool& negative) {
    std::size_t used = 0;
    return AtoI(text, negative, used);
}

// Reads a floating number as atof does in the "C" locale: white space, an optional sign, then the
// longest prefix that is a decimal or hexadecimal number, "inf" or "nan". No number gives 0.0; an
// overflow gives +-HUGE_VAL. A null text gives 0.0.
double AtoF(const char* text);
double AtoF(std::string_view text);

}  // namespace qvox
