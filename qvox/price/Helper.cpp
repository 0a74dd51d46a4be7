// Arithmetic members of Helper: codes, pieces, decimals, signals and conversions. The text members
// live in PriceText.cpp.
#include "qvox/price/Helper.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "qvox/platform/CRuntime.h"

namespace qvox {

using basecode::Factor;
using basecode::IsFactor;
using basecode::IsLetter;
using basecode::Normalize;
using basecode::Scale;
using basecode::ToLower;

LONG Helper::round2long(double value) {
    if (std::isnan(value) || value <= -2147483648.0 || value >= 2147483647.0) return 0;
    // Inside the range the conversion cuts toward zero, and value - whole is exact.
    const auto whole = static_cast<LONG>(value);
    const double fraction = value - whole;
    if (fraction < 0.5 && fraction > -0.5) return whole;
    return value > 0.0 ? whole + 1 : whole - 1;
}

char* Helper::strncopy(char* destination, const char* source, unsigned int size) {
    if (destination == nullptr) return destination;
    unsigned int n = 0;
    if (source != nullptr) {
        for (; n + 1 < size && source[n] != '\0'; ++n)
            destination[n] = source[n];
    }
    destination[n] = '\0';
    return destination;
}

int Helper::IsValidBaseCode(char code) {
    return IsLetter(code) ? 1 : 0;
}

int Helper::IsBaseCodeDecimal(char code) {
    return basecode::IsDecimal(code) ? 1 : 0;
}

double Helper::Pieces2Decimal(LONG pieces, char code) {
    const char c = Normalize(code);
    if (IsFactor(c)) return static_cast<double>(Factor(c)) * pieces;
    return pieces / static_cast<double>(Scale(c).PiecesPerUnit);
}

LONG Helper::Decimal2Pieces(double value, char code) {
    const char c = Normalize(code);
    if (IsFactor(c)) return round2long(value / Factor(c));
    return round2long(Scale(c).PiecesPerUnit * value);
}

double Helper::GetBaseCodeDecimalFactor(char code) {
    const char c = Normalize(code);
    if (IsFactor(c)) return static_cast<double>(Factor(c));
    return 1.0 / Scale(c).PiecesPerUnit;
}

LONG Helper::Signal2Pieces(char code, LONG value) {
    const bool oneLevel = (code >= 'F' && code <= 'L') || code == 'Q' || code == 'R';
    const bool twoLevel = code >= 'S' && code <= 'V';
    if (!oneLevel && !twoLevel) return value;
    const BaseCodeScale& scale = Scale(ToLower(code));
    const auto digits = static_cast<std::size_t>(scale.PrimaryDigits);

    char buffer[16];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string_view text(buffer, static_cast<std::size_t>(written.ptr - buffer));

    // The whole part keeps the minus sign; the digits behind it always add.
    const auto split = [&](LONG& whole, LONG& fraction) {
        fraction = AtoI(text.substr(text.size() - digits));
        whole = AtoI(text.substr(0, text.size() - digits));
    };
    LONG whole = 0;
    LONG fraction = 0;
    if (oneLevel) {
        if (text.size() <= digits) return value;
        split(whole, fraction);
        return wrap32::add(wrap32::mul(whole, scale.PiecesPerUnit), fraction);
    }

    LONG last = 0;
    if (text.size() > 1) {
        last = text.back() - '0';
        text.remove_suffix(1);
        // T and U spell a quarter step as 0, 2, 5 or 7 (hundredths of the step).
        if (code == 'T' || code == 'U') last /= 2;
    }
    if (text.size() <= digits) {
        fraction = AtoI(text);
    } else {
        split(whole, fraction);
    }
    return wrap32::add(wrap32::add(wrap32::mul(scale.SecondaryDenominator, fraction),
                                   wrap32::mul(scale.PiecesPerUnit, whole)),
                       last);
}

int Helper::Fraction2Basecode(LONG decimalFactor, LONG fractionLevels, LONG denominator1,
                              LONG denominator2, char& code) {
    if (decimalFactor != 0) {
        for (std::size_t i = 0; i < std::size(g_BaseCodeFactors); ++i) {
            if (g_BaseCodeFactors[i].Factor == decimalFactor) {
                code = static_cast<char>('a' + i);
                return 1;
            }
        }
        return 0;
    }
    if (fractionLevels == 0) {
        code = 'e';
        return 1;
    }
    if (fractionLevels != 1 && fractionLevels != 2) return 0;
    // z repeats the numbers of n, so the search ends before it and n is what is found.
    for (std::size_t i = 0; i + 1 < std::size(g_BaseCodeScales); ++i) {
        const BaseCodeScale& s = g_BaseCodeScales[i];
        if (s.FractionLevels == fractionLevels && s.PrimaryDenominator == denominator1 &&
            (fractionLevels == 1 || s.SecondaryDenominator == denominator2)) {
            code = static_cast<char>('f' + i);
            return 1;
        }
    }
    return 0;
}

int Helper::Value2Pieces(LONG whole, LONG decimalFactor, LONG fractionLevels, LONG numerator1,
                         LONG denominator1, LONG numerator2, LONG denominator2, char& code,
                         LONG& pieces) {
    char found = code;
    if (!Fraction2Basecode(decimalFactor, fractionLevels, denominator1, denominator2, found)) {
        return 0;
    }
    code = found;
    if (decimalFactor != 0) {
        pieces = wrap32::mul(whole, decimalFactor);
    } else if (fractionLevels == 0) {
        pieces = whole;
    } else {
        // The scale found has PrimaryDenominator = denominator1 (and SecondaryDenominator =
        // denominator2 for two levels), so its numbers are the caller's.
        pieces = CombineParts(Scale(found), whole, numerator1, numerator2);
    }
    return 1;
}

LONG Helper::Value2PiecesV2(LONG whole, LONG numerator1, LONG numerator2, char code) {
    const char c = Normalize(code);
    if (IsFactor(c)) return wrap32::mul(Factor(c), whole);
    return CombineParts(Scale(c), whole, numerator1, numerator2);
}

namespace {

// pieces x (worth of one source piece / worth of one target piece) x multiplier, for two valid
// lower-case codes. Both products are 32-bit, as the conversion has always computed them; the
// widest pairs (a factor of 10000 against a million pieces per unit) wrap.
double ConvertQuotient(LONG pieces, char from, char to, double multiplier) {
    LONG numerator = 1;
    LONG denominator = 1;
    if (IsFactor(to)) {
        denominator = wrap32::mul(denominator, Factor(to));
    } else {
        numerator = wrap32::mul(numerator, Scale(to).PiecesPerUnit);
    }
    if (IsFactor(from)) {
        numerator = wrap32::mul(numerator, Factor(from));
    } else {
        denominator = wrap32::mul(denominator, Scale(from).PiecesPerUnit);
    }
    return static_cast<double>(numerator) * pieces / denominator * multiplier;
}

}  // namespace

LONG Helper::ConvertPieces_From_BaseCode1_To_BaseCode2(LONG pieces, char fromCode, char toCode) {
    const char from = ToLower(fromCode);
    const char to = ToLower(toCode);
    if (!IsLetter(from) || !IsLetter(to) || from == to) return pieces;
    return round2long(std::trunc(ConvertQuotient(pieces, from, to, 1.0)));
}

LONG Helper::ConvertPieces_From_BaseCode1_To_BaseCode2Ex(LONG pieces, char fromCode, char toCode,
                                                         double multiplier) {
    const char from = ToLower(fromCode);
    const char to = ToLower(toCode);
    if (!IsLetter(from) || !IsLetter(to) || from == to) {
        return round2long(std::trunc(pieces * multiplier));
    }
    return round2long(std::trunc(ConvertQuotient(pieces, from, to, multiplier)));
}

int Helper::IsBaseCodePrecisionLoss(char fromCode, char toCode) {
    const char from = ToLower(fromCode);
    const char to = ToLower(toCode);
    if (!IsLetter(from) || !IsLetter(to)) return 1;
    if (from == to || IsFactor(from)) return 0;
    if (IsFactor(to)) return 1;
    return Scale(from).PiecesPerUnit > Scale(to).PiecesPerUnit ? 1 : 0;
}

int Helper::Can_Convert_BaseCodes(char fromCode, char toCode) {
    const char from = ToLower(fromCode);
    const char to = ToLower(toCode);
    if (!IsLetter(from) || !IsLetter(to)) return 0;
    // e is worth one unit, so it belongs to both families.
    const auto inFractions = [](char c) { return c >= 'e'; };
    const auto inFactors = [](char c) { return c <= 'e'; };
    return (inFractions(from) && inFractions(to)) || (inFactors(from) && inFactors(to)) ? 1 : 0;
}

const char* Helper::GetPriceScaleString(char code) {
    if (!IsLetter(code)) return Scale('m').Text;
    if (code >= 'A' && code <= 'Z') return nullptr;
    return IsFactor(code) ? g_BaseCodeFactors[code - 'a'].Text : Scale(code).Text;
}

int Helper::GetNumberOfDecimalsFromPriceScale(double scale) {
    if (!(scale > 0.0) || !std::isfinite(scale)) return 0;
    const double x = std::log10(scale);
    double whole = 0.0;
    if (std::modf(x, &whole) == 0.0) return static_cast<int>(std::fabs(x));
    return static_cast<int>(std::fabs(x / std::log10(2.0)));
}

int Helper::GCF(int a, int b) {
    std::uint32_t y = wrap32::magnitude(b);
    const std::uint32_t x = wrap32::magnitude(a);
    if (y == 0) return static_cast<int>(x);
    std::uint32_t r = x % y;
    while (r > 0) {
        const std::uint32_t next = y % r;
        y = r;
        r = next;
    }
    return static_cast<int>(y);
}

LONG CalcGCD(LONG a, LONG b) {
    if (a == 0) return b;
    if (b == 0 || a == b) return a;
    // Euclid's remainders reach what repeated subtraction reaches, without its linear run time.
    std::uint32_t x = wrap32::magnitude(a);
    std::uint32_t y = wrap32::magnitude(b);
    while (y != 0) {
        const std::uint32_t r = x % y;
        x = y;
        y = r;
    }
    return static_cast<LONG>(x);
}

}  // namespace qvox
