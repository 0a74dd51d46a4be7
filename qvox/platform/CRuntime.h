// Number readers with the platform C runtime's rules, independent of the process's C locale: the
// point is always ".", and reading never goes past the end of the text given.
#pragma once

#include <cstdint>
#include <string_view>

namespace qvox {

// Reads a decimal integer as the platform's atoi does: white space, an optional sign, then digits
// up to the first other character. No digits gives 0; a value beyond 32 bits saturates at
// INT32_MIN or INT32_MAX. A null text gives 0.
std::int32_t AtoI(const char* text);
std::int32_t AtoI(std::string_view text);

// As AtoI, and tells whether a minus sign stood before the digits (also when they read as 0).
std::int32_t AtoI(std::string_view text, bool& negative);

// Reads a floating number as atof does in the "C" locale: white space, an optional sign, then the
// longest prefix that is a decimal or hexadecimal number, "inf" or "nan". No number gives 0.0; an
// overflow gives +-HUGE_VAL. A null text gives 0.0.
double AtoF(const char* text);
double AtoF(std::string_view text);

}  // namespace qvox
