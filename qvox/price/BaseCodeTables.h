// The base codes: one letter says what one piece of a price is worth. Codes a to e are whole-number
// factors; f to z are fractions of a unit, some of them a fraction of a fraction.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

// One factor code: a piece is worth Factor units.
struct BaseCodeFactor {
    LONG Factor;
    const char* Text;
};

// One fraction code: a piece is 1/PiecesPerUnit of a unit.
struct BaseCodeScale {
    LONG PiecesPerUnit;         // pieces in one whole unit
    LONG SignalScale;           // smallest power of ten not below PiecesPerUnit
    LONG FractionDigits;        // exponent of SignalScale; fraction characters read back from text
    LONG FractionLevels;        // 1 plain fraction, 2 fraction of a fraction
    LONG PrimaryDenominator;    // denominator of the first (or only) fraction
    LONG SecondaryDenominator;  // smallest steps in one primary step; 0 for one level
    LONG PrimaryDigits;         // digits of the primary numerator in text
    LONG SecondaryDigits;       // digits of the secondary numerator in text; 0 for one level
    LONG DecimalDigits;         // digits after the point that write one piece exactly
    LONG Radix;                 // 10 for the decimal family and tenths, 2 for the binary family
    const char* Text;           // scale text; single-byte code page (0xBC is 1/4, 0xBD is 1/2)
};

// Codes a to e, in that order.
inline constexpr BaseCodeFactor g_BaseCodeFactors[5] = {
    {10000, "10000"}, {1000, "1000"}, {100, "100"}, {10, "10"}, {1, "As is"},
};

// Codes f to z, in that order: the row of a lower-case code c is c - 'f'.
inline constexpr BaseCodeScale g_BaseCodeScales[21] = {
    {2, 10, 1, 1, 2, 0, 1, 0, 1, 2, "1/2"},                                            // f
    {4, 10, 1, 1, 4, 0, 1, 0, 2, 2, "1/4"},                                            // g
    {8, 10, 1, 1, 8, 0, 1, 0, 3, 2, "1/8"},                                            // h
    {10, 10, 1, 1, 10, 0, 1, 0, 1, 10, "1/10"},                                        // i
    {16, 100, 2, 1, 16, 0, 2, 0, 4, 2, "1/16"},                                        // j
    {32, 100, 2, 1, 32, 0, 2, 0, 5, 2, "1/32"},                                        // k
    {64, 100, 2, 1, 64, 0, 2, 0, 6, 2, "1/64"},                                        // l
    {100, 100, 2, 1, 100, 0, 2, 0, 2, 10, "1/100"},                                    // m
    {1000, 1000, 3, 1, 1000, 0, 3, 0, 3, 10, "1/1000"},                                // n
    {10000, 10000, 4, 1, 10000, 0, 4, 0, 4, 10, "1/10000"},                            // o
    {100000, 100000, 5, 1, 100000, 0, 5, 0, 5, 10, "1/100000"},                        // p
    {128, 1000, 3, 1, 128, 0, 3, 0, 7, 2, "1/128"},                                    // q
    {256, 1000, 3, 1, 256, 0, 3, 0, 8, 2, "1/256"},                                    // r
    {320, 1000, 3, 2, 32, 10, 2, 1, 6, 10, "1/32 and 10th of 32nd"},                   // s
    {40, 100, 2, 2, 10, 4, 1, 1, 3, 10, "1/10 and \xBC of 10th"},                      // t
    {128, 1000, 3, 2, 32, 4, 2, 1, 7, 2, "1/32 and \xBC of 32nd"},                     // u
    {640, 1000, 3, 2, 64, 10, 2, 1, 7, 10, "1/64 and 10th of 64th"},                   // v
    {1000000, 1000000, 6, 1, 1000000, 0, 6, 0, 6, 10, "1/1000000"},                    // w
    {64, 100, 2, 2, 32, 2, 2, 1, 6, 2, "1/32 and \xBD of 32nd"},                       // x
    {128, 1000, 3, 2, 64, 2, 2, 1, 7, 2, "1/64 and \xBD of 64th"},                     // y
    {1000, 1000, 3, 1, 1000, 0, 3, 0, 3, 10, "Display 1/100 truncated, Calc 1/1000"},  // z
};

// Small code predicates shared by the price functions. All are total: any char is accepted.
namespace basecode {

constexpr bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr char ToLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
// The rule of most price functions: a non-letter means m, upper case folds.
constexpr char Normalize(char c) {
    return IsLetter(c) ? ToLower(c) : 'm';
}
// The decimal family: e, i, m, n, o, p, w, z in lower case only (no folding).
constexpr bool IsDecimal(char c) {
    return c == 'e' || c == 'i' || c == 'm' || c == 'n' || c == 'o' || c == 'p' || c == 'w' ||
           c == 'z';
}
// For lower-case codes only.
constexpr bool IsFactor(char lower) {
    return lower >= 'a' && lower <= 'e';
}
constexpr bool IsFraction(char lower) {
    return lower >= 'f' && lower <= 'z';
}
constexpr LONG Factor(char lower) {
    return g_BaseCodeFactors[lower - 'a'].Factor;
}
constexpr const BaseCodeScale& Scale(char lower) {
    return g_BaseCodeScales[lower - 'f'];
}

}  // namespace basecode

namespace basecode_checks {
constexpr bool ScalesAreConsistent() {
    LONG power = 1;
    for (const BaseCodeScale& s : g_BaseCodeScales) {
        const bool twoLevel = s.FractionLevels == 2;
        if (s.PiecesPerUnit != s.PrimaryDenominator * (twoLevel ? s.SecondaryDenominator : 1)) {
            return false;
        }
        if (twoLevel != (s.SecondaryDigits == 1) || twoLevel != (s.SecondaryDenominator != 0)) {
            return false;
        }
        power = 1;
        for (LONG i = 0; i < s.FractionDigits; ++i)
            power *= 10;
        if (power != s.SignalScale || s.SignalScale < s.PiecesPerUnit ||
            s.SignalScale / 10 >= s.PiecesPerUnit) {
            return false;
        }
    }
    return true;
}
static_assert(ScalesAreConsistent());
// x is the one code whose fraction text is wider than what reads back from it.
static_assert(basecode::Scale('x').FractionDigits + 1 ==
              basecode::Scale('x').PrimaryDigits + basecode::Scale('x').SecondaryDigits);
}  // namespace basecode_checks

}  // namespace qvox
