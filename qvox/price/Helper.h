// Price arithmetic: a price is a whole number of pieces under a one-letter base code (see
// BaseCodeTables.h). Helper converts between pieces, decimal prices, the packed signal form,
// separate whole and fraction numbers, other base codes and text. It has no instances and no
// state; it never throws and reports failure only by the fallback value each member names.
//
// Codes: most members fold upper case to lower case and read any non-letter as m ("normalise").
// Integers are 32-bit and wrap on overflow where a member says so.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/price/BaseCodeTables.h"

namespace qvox {

class Helper {
  public:
    Helper() = delete;

    // Unpacks a signal (digits spelling whole part and numerators, "10325" for 103 25/64) under
    // an upper-case code F to L, Q to V. Any other code, lower case included, returns value
    // unchanged. A minus sign stays on the whole part; products wrap.
    static LONG Signal2Pieces(char code, LONG value);

    // 1 for a letter of either case, else 0.
    static int IsValidBaseCode(char code);
    // 1 for the lower-case codes e, i, m, n, o, p, w, z; else 0 (no folding).
    static int IsBaseCodeDecimal(char code);

    // pieces x factor, or pieces / PiecesPerUnit. Normalises the code.
    static double Pieces2Decimal(LONG pieces, char code);
    // The inverse of Pieces2Decimal, rounded half away from zero; 0 if the result is NaN or not
    // strictly inside the 32-bit range. Normalises the code.
    static LONG Decimal2Pieces(double value, char code);
    // The worth of one piece. Normalises the code.
    static double GetBaseCodeDecimalFactor(char code);

    // Finds the code of a factor (10000 to 1, wins when non-zero), or of a one- or two-level
    // fraction (first match among f to y; z is never found). Returns 1 and sets code, or returns
    // 0 and leaves code untouched.
    static int Fraction2Basecode(LONG decimalFactor, LONG fractionLevels, LONG denominator1,
                                 LONG denominator2, char& code);

    // Converts pieces between codes, truncating toward zero. Invalid or equal codes return pieces
    // unchanged; a result outside the 32-bit range, or exactly INT32_MAX, gives 0.
    static LONG ConvertPieces_From_BaseCode1_To_BaseCode2(LONG pieces, char fromCode, char toCode);
    // As above with the quotient scaled by multiplier before truncation; invalid or equal codes
    // give pieces x multiplier, truncated and guarded alike.
    static LONG ConvertPieces_From_BaseCode1_To_BaseCode2Ex(LONG pieces, char fromCode, char toCode,
                                                            double multiplier);
    // 1 if converting from one code to the other can lose precision (compares fineness only);
    // 1 for an invalid code.
    static int IsBaseCodePrecisionLoss(char fromCode, char toCode);
    // 1 if both codes lie in e..z or both in a..e; 0 otherwise and for invalid codes.
    static int Can_Convert_BaseCodes(char fromCode, char toCode);

    // The scale text of a lower-case code; the text of m for a non-letter; null for upper case.
    static const char* GetPriceScaleString(char code);
    // Decimal places of a price step (0.01 gives 2, 0.125 gives 3: binary steps count halvings).
    // 0 for a step that is zero, negative, infinite or NaN.
    static int GetNumberOfDecimalsFromPriceScale(double scale);
    // Greatest common factor of |a| and |b| by Euclid; |b| when a is 0, |a| when b is 0. A result
    // of 2^31 wraps to INT32_MIN.
    static int GCF(int a, int b);

    // Builds pieces from a whole part and numerators after finding the code as Fraction2Basecode
    // does (the code is set on success). The sign comes from whole alone; products wrap. Returns
    // 1, or 0 with pieces untouched when no code matches.
    static int Value2Pieces(LONG whole, LONG decimalFactor, LONG fractionLevels, LONG numerator1,
                            LONG denominator1, LONG numerator2, LONG denominator2, char& code,
                            LONG& pieces);
    // The same operation; kept under its second name for callers that use it.
    static int Value2PiecesV3(LONG whole, int decimalFactor, int fractionLevels, LONG numerator1,
                              int denominator1, LONG numerator2, int denominator2, char& code,
                              LONG& pieces) {
        return Value2Pieces(whole, decimalFactor, fractionLevels, numerator1, denominator1,
                            numerator2, denominator2, code, pieces);
    }
    // Pieces from whole and numerators under a known code. Normalises the code; products wrap.
    static LONG Value2PiecesV2(LONG whole, LONG numerator1, LONG numerator2, char code);

    // Piece text: whole part, separator, numerators as fixed-width digits ("103^25" under l).
    // out must hold 14 bytes. A non-letter code gives the empty text. Under a factor code the
    // digits of factor x magnitude are written, wrapping modulo 2^32.
    static char* Pieces2String(char code, LONG pieces, char* out, int plus);
    // Decimal text with DecimalDigits places ("103.390625" under l), always with a point "."; a
    // factor code gives a whole number. out must hold 18 bytes. A non-letter gives "".
    static char* Pieces2DecimalString(char code, LONG pieces, char* out, int plus);
    // Reads a piece text (at most its first 99 characters). Either separator is accepted for any
    // code; what is not a number reads as 0. Null or empty gives 0; a non-letter code reads as m.
    // A minus sign before a whole part that reads as 0 ("-.05", "-^25") makes the result
    // negative, so every text that Pieces2String writes reads back.
    static LONG String2Pieces(char code, const char* text);
    // Reads a fraction text ("103 25/64", "25/64") or a plain number. A zero denominator gives
    // 0.0; a leading minus applies to the whole part only ("-1 1/2" is -0.5).
    static double Frac2Num(const CString& text);
    // Fraction text of a decimal price ("103 25/64"; reduce non-zero asks for lowest terms).
    // Decimal codes give a plain decimal; factor codes a whole number. Fraction texts carry no
    // sign. A non-letter code, an infinite or NaN value give the empty text.
    static CString Num2Frac(double value, char code, int reduce);

  protected:
    // Nearest whole number, halves away from zero; 0 for NaN, <= -2147483648.0, >= 2147483647.0.
    static LONG round2long(double value);
    // Copies at most size - 1 characters and always terminates (size 0 or 1, or a null source,
    // give ""). A null destination is returned untouched.
    static char* strncopy(char* destination, const char* source, unsigned int size);

  private:
    // The pieces of whole and numerators under a fraction scale, sign from whole; wraps. Inline:
    // every piece text read ends here.
    static LONG CombineParts(const BaseCodeScale& scale, LONG whole, LONG numerator1,
                             LONG numerator2) {
        LONG fraction = numerator1;
        if (scale.FractionLevels == 2) {
            fraction = wrap32::add(wrap32::mul(scale.SecondaryDenominator, numerator1), numerator2);
        }
        const LONG units = wrap32::mul(scale.PiecesPerUnit, whole);
        return whole < 0 ? wrap32::sub(units, fraction) : wrap32::add(units, fraction);
    }
};

// Greatest common divisor of two positive numbers; a if b is 0 or equal to a, b if a is 0.
// Arguments below zero count by their magnitude (the result is then positive).
LONG CalcGCD(LONG a, LONG b);

}  // namespace qvox
