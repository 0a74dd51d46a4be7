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

// As AtoI on at most max characters of text; the terminator ends the number like any other
// character that is not part of it, so nothing past it is read. Tells whether a minus sign stood
// before the digits (also when they read as 0) and how many characters the number took, white
// space included. Inline: the price text readers call it on every field.
inline std::int32_t AtoI(const char* text, std::size_t max, bool& negative, std::size_t& used) {
    std::size_t i = 0;
    while (i < max && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r')))
        ++i;
    negative = false;
    if (i < max && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    // The magnitude stops growing once it is past any 32-bit value.
    std::uint64_t magnitude = 0;
    for (; i < max && text[i] >= '0' && text[i] <= '9'; ++i) {
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

// The same on a view: reading stops at its end.
inline std::int32_t AtoI(std::string_view text, bool& negative, std::size_t& used) {
    return AtoI(text.data(), text.size(), negative, used);
}
inline std::int32_t AtoI(std::string_view text, bool& negative) {
    std::size_t used = 0;
    return AtoI(text, negative, used);
}
inline std::int32_t AtoI(std::string_view text) {
    bool negative = false;
    return AtoI(text, negative);
}

// Reads a floating number as atof does in the "C" locale: white space, an optional sign, then the
// longest prefix that is a decimal or hexadecimal number, "inf" or "nan". No number gives 0.0; an
// overflow gives +-HUGE_VAL. A null text gives 0.0.
double AtoF(const char* text);
double AtoF(std::string_view text);

}  // namespace qvox
