// Free functions of price text: decimal digits of a code, numbers with thousands separators,
// fraction reduction and fraction text, and the display text of a decimal price. The piece text
// and the fraction reader are members of Helper (Helper.h).
//
// add_commas and GetText read the decimal and thousands separators of the system's default locale
// (Locale.h); all other price text uses "." and no grouping, whatever the process locale says.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

// DecimalDigits of a fraction code (either case); 0 for any other code.
int GetDecimalDigit(char code);

// Writes |value| with `decimals` places, "-" first if value is below 0.0, the locale's decimal
// separator for the point and its thousands separator between groups of three ("1,234,567.89").
// Only the first character of each separator is used; an empty separator writes nothing. A
// negative `decimals` counts as 0. out must hold the whole text: the digits of |value|, its
// separators and 3 more bytes.
void add_commas(char* out, double value, int decimals);

// Divides numerator and denominator by the primes 2 to 37 while both divide, stopping once the
// square root of the numerator is below the prime. Not always lowest terms (5/10 stays).
void mix_fractions(LONG& numerator, LONG& denominator);

// Writes value as a binary fraction ("5 1/2", " 1/2" below one, "-5 1/2") when its first
// precision + 2 decimals make one with denominator 2 to 256, else as a decimal with trailing
// zeros removed ("1.1", "5"). A precision outside 1 to 6 counts as 3. Writes at most 30 bytes
// with the terminator: a decimal longer than that is written in exponent form ("1e+30"). A value
// that is zero after the cut carries no sign.
void GetFractionNumber(double value, int precision, char* out);

// Display text of a decimal price. Codes of the decimal family (i, m, n, o, p, w, z) are written
// with DecimalDigits places, the locale's separators and digits grouped by nine; other fraction
// codes as GetFractionNumber with precision 6. Upper case folds; a factor code is written like a
// decimal code with no places. Writes at most 30 bytes with the terminator; a non-letter code, a
// value that is infinite, NaN or too long to fit gives "".
void GetText(double value, char code, char* out);

}  // namespace qvox
