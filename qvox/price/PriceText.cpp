// Price text: the text members of Helper and the free functions of PriceText.h.
//
// Numbers are written with std::to_chars rather than printf: the result is the same digit for
// digit, but the point stays "." even when the application has switched the C locale.
#include "qvox/price/PriceText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

#include "qvox/platform/CRuntime.h"
#include "qvox/platform/Locale.h"
#include "qvox/price/Helper.h"

namespace qvox {

using basecode::Factor;
using basecode::IsFactor;
using basecode::IsFraction;
using basecode::IsLetter;
using basecode::Normalize;
using basecode::Scale;
using basecode::ToLower;

namespace {

// A piece text is read as far as a work area of 100 bytes holds it.
constexpr std::size_t kWorkArea = 99;

// Longest fixed-notation text of a finite double: 309 digits, sign and point, before the places.
constexpr std::size_t kFixedHead = 312;

std::string Fixed(double value, int places) {
    std::string text(kFixedHead + static_cast<std::size_t>(places), '\0');
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value,
                                      std::chars_format::fixed, places);
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    return text;
}

// The whole number of a finite value cut toward zero, as "%d" writes it for values that fit.
std::string WholeNumber(double value) {
    double whole = std::trunc(value);
    if (whole == 0.0) whole = 0.0;  // no "-0"
    return Fixed(whole, 0);
}

char* WriteUnsigned(char* p, std::uint32_t value) {
    return std::to_chars(p, p + 10, value).ptr;
}

char* WritePadded(char* p, std::uint32_t value, LONG width) {
    for (LONG i = width - 1; i >= 0; --i) {
        p[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    return p + width;
}

// The point goes with the decimal family and with t, the only two-level code of tenths.
char PieceSeparator(char lower) {
    return basecode::IsDecimal(lower) || lower == 't' ? '.' : '^';
}

// One separator of the system's default locale, at most 3 characters; the conventional one if
// the locale does not give it in that room.
void SystemSeparator(LCTYPE type, char (&buffer)[4], const char* fallback) {
    if (GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, type, buffer, sizeof buffer) == 0) {
        std::strcpy(buffer, fallback);
    }
}

}  // namespace

char* Helper::Pieces2String(char code, LONG pieces, char* out, int plus) {
    if (out == nullptr) return out;
    char* p = out;
    if (!IsLetter(code)) {
        *p = '\0';
        return out;
    }
    const char c = ToLower(code);
    if (pieces < 0) {
        *p++ = '-';
    } else if (plus != 0) {
        *p++ = pieces == 0 ? ' ' : '+';
    }
    const std::uint32_t magnitude = wrap32::magnitude(pieces);
    if (IsFactor(c)) {
        p = WriteUnsigned(p, static_cast<std::uint32_t>(Factor(c)) * magnitude);
        *p = '\0';
        return out;
    }
    const BaseCodeScale& scale = Scale(c);
    const auto perUnit = static_cast<std::uint32_t>(scale.PiecesPerUnit);
    const std::uint32_t whole = magnitude / perUnit;
    const std::uint32_t rest = magnitude % perUnit;
    // Below one unit no whole digit is written: the text starts with the separator.
    if (whole != 0) p = WriteUnsigned(p, whole);
    *p++ = PieceSeparator(c);
    if (scale.FractionLevels == 1) {
        p = WritePadded(p, rest, scale.FractionDigits);
    } else {
        const auto secondary = static_cast<std::uint32_t>(scale.SecondaryDenominator);
        p = WritePadded(p, rest / secondary, scale.PrimaryDigits);
        p = WritePadded(p, rest % secondary, scale.SecondaryDigits);
    }
    *p = '\0';
    return out;
}

char* Helper::Pieces2DecimalString(char code, LONG pieces, char* out, int plus) {
    if (out == nullptr) return out;
    *out = '\0';
    if (!IsLetter(code)) return out;
    const char c = ToLower(code);
    const double value = Pieces2Decimal(pieces, c);
    char* p = out;
    if (value >= 0.0 && plus != 0) *p++ = '+';
    const int places = IsFactor(c) ? 0 : Scale(c).DecimalDigits;
    // At most 17 characters: 8 places on 2^31 / 256, or 14 digits of 2^31 x 10000, with sign.
    p = std::to_chars(p, out + 17, value, std::chars_format::fixed, places).ptr;
    *p = '\0';
    return out;
}

LONG Helper::String2Pieces(char code, const char* text) {
    if (text == nullptr || *text == '\0') return 0;
    const char c = Normalize(code);
    bool negative = false;
    std::size_t separator = 0;
    const LONG whole = AtoI(text, kWorkArea, negative, separator);
    if (IsFactor(c)) return wrap32::mul(whole, Factor(c));

    const BaseCodeScale& scale = Scale(c);
    // The whole part is the number before the first separator. The number can only end at a
    // character that is not part of it, so the search for the separator starts there.
    const auto isEnd = [text](std::size_t i) { return i >= kWorkArea || text[i] == '\0'; };
    while (!isEnd(separator) && text[separator] != '.' && text[separator] != '^')
        ++separator;
    LONG numerator1 = 0;
    LONG numerator2 = 0;
    if (!isEnd(separator)) {
        // The fraction is cut to FractionDigits characters, and to the work area.
        const std::size_t first = separator + 1;
        std::size_t end = first;
        while (end < first + static_cast<std::size_t>(scale.FractionDigits) && !isEnd(end))
            ++end;
        const std::string_view fraction(text + first, end - first);
        const auto primary = static_cast<std::size_t>(scale.PrimaryDigits);
        if (scale.FractionLevels == 1) {
            numerator1 = AtoI(fraction);
            // Under a decimal code the digits are decimal places: ".5" is fifty hundredths.
            if (basecode::IsDecimal(c)) {
                for (std::size_t n = fraction.size(); n < primary; ++n) {
                    numerator1 = wrap32::mul(numerator1, 10);
                }
            }
        } else {
            numerator1 = AtoI(fraction.substr(0, primary));
            if (fraction.size() > primary) {
                numerator2 =
                    AtoI(fraction.substr(primary, static_cast<std::size_t>(scale.SecondaryDigits)));
            }
        }
    }
    const LONG pieces = CombineParts(scale, whole, numerator1, numerator2);
    // A whole part of "-" or "-0" still says the price is negative: "-.05" is what Pieces2String
    // writes for -5 pieces under m.
    return whole == 0 && negative ? wrap32::neg(pieces) : pieces;
}

double Helper::Frac2Num(const CString& text) {
    const std::string_view all = text.view();
    const std::size_t slash = all.find('/');
    if (slash == std::string_view::npos) return AtoF(all);
    const double denominator = AtoF(all.substr(slash + 1));
    if (denominator == 0.0) return 0.0;
    const std::string_view before = all.substr(0, slash);
    const std::size_t blank = before.find(' ');
    double whole = 0.0;
    double numerator = 0.0;
    if (blank == std::string_view::npos) {
        numerator = AtoF(before);
    } else {
        whole = AtoF(before.substr(0, blank));
        numerator = AtoF(before.substr(blank + 1));
    }
    return numerator / denominator + whole;
}

CString Helper::Num2Frac(double value, char code, int reduce) {
    if (!IsLetter(code) || !std::isfinite(value)) return CString();
    const char c = ToLower(code);
    if (IsFactor(c)) {
        const double scaled = value * Factor(c);
        return std::isfinite(scaled) ? CString(WholeNumber(scaled)) : CString();
    }
    const BaseCodeScale& scale = Scale(c);
    if (basecode::IsDecimal(c)) return CString(Fixed(value, scale.FractionDigits));

    // Fraction texts carry no sign; two-level codes use their primary denominator only.
    const double magnitude = std::fabs(value);
    const double whole = std::trunc(magnitude);
    LONG denominator = scale.PrimaryDenominator;
    auto numerator = static_cast<LONG>((magnitude - whole) * denominator + 0.5);
    if (numerator == denominator) return CString(WholeNumber(whole + 1.0));
    if (numerator == 0) return CString(WholeNumber(whole));
    if (reduce != 0) {
        const int factor = GCF(numerator, denominator);
        numerator /= factor;
        denominator /= factor;
    }
    std::string text = whole == 0.0 ? std::string() : WholeNumber(whole) + ' ';
    text += std::to_string(numerator);
    text += '/';
    text += std::to_string(denominator);
    return CString(text);
}

int GetDecimalDigit(char code) {
    const char c = ToLower(code);
    return IsFraction(c) ? Scale(c).DecimalDigits : 0;
}

void add_commas(char* out, double value, int decimals) {
    if (out == nullptr) return;
    const std::string digits = Fixed(std::fabs(value), decimals < 0 ? 0 : decimals);
    char decimal[4];
    char thousand[4];
    SystemSeparator(LOCALE_SDECIMAL, decimal, ".");
    SystemSeparator(LOCALE_STHOUSAND, thousand, ",");

    std::size_t before = digits.find('.');
    if (before == std::string::npos) before = digits.size();
    char* p = out;
    if (value < 0.0) *p++ = '-';
    for (char ch : digits) {
        if (ch == '.') {
            if (decimal[0] != '\0') *p++ = decimal[0];
        } else {
            *p++ = ch;
        }
        if (before > 3) {
            --before;
            if (before % 3 == 0 && thousand[0] != '\0') *p++ = thousand[0];
        }
    }
    *p = '\0';
}

void mix_fractions(LONG& numerator, LONG& denominator) {
    static constexpr LONG kPrimes[] = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37};
    for (const LONG prime : kPrimes) {
        // The root of a negative numerator is NaN, which is below no prime: all primes are tried.
        if (std::sqrt(static_cast<double>(numerator)) < prime) break;
        while (denominator % prime == 0 && numerator % prime == 0) {
            numerator /= prime;
            denominator /= prime;
        }
    }
}

void GetFractionNumber(double value, int precision, char* out) {
    if (out == nullptr) return;
    *out = '\0';
    if (precision < 1 || precision > 6) precision = 3;
    std::string text;
    if (std::isfinite(value)) {
        const double magnitude = std::fabs(value);
        const double whole = std::floor(magnitude);
        LONG denominator = 1;
        for (int i = 0; i < precision + 2; ++i)
            denominator *= 10;
        auto numerator = static_cast<LONG>((magnitude - whole) * denominator);
        mix_fractions(numerator, denominator);
        switch (denominator) {
            case 2:
            case 4:
            case 8:
            case 16:
            case 32:
            case 64:
            case 128:
            case 256:
                text = ' ' + std::to_string(numerator) + '/' + std::to_string(denominator);
                if (magnitude >= 1.0) text = WholeNumber(whole) + text;
                if (value < 0.0) text = '-' + text;
                break;
            default:
                break;
        }
    }
    if (text.empty()) {
        text = Fixed(value, 8);
        const std::size_t point = text.find('.');
        if (point != std::string::npos) {
            text.erase(text.find_last_not_of('0') + 1);
            if (text.back() == '.') text.pop_back();
        }
        if (text == "-0") text = "0";
        // Only values beyond 10^20 get here; their fixed text would not fit the caller's room.
        if (text.size() > 29) {
            char buffer[32];
            const auto result = std::to_chars(buffer, buffer + sizeof buffer, value,
                                              std::chars_format::general, 15);
            text.assign(buffer, result.ptr);
        }
    }
    std::memcpy(out, text.c_str(), text.size() + 1);
}

void GetText(double value, char code, char* out) {
    if (out == nullptr) return;
    *out = '\0';
    if (!IsLetter(code)) return;
    const char c = ToLower(code);
    UINT places = 0;
    if (IsFraction(c)) {
        const BaseCodeScale& scale = Scale(c);
        if (scale.Radix != 10 || scale.SecondaryDenominator != 0) {
            GetFractionNumber(value, 6, out);
            return;
        }
        places = static_cast<UINT>(scale.DecimalDigits);
    }
    char decimal[4];
    char thousand[4];
    SystemSeparator(LOCALE_SDECIMAL, decimal, ".");
    SystemSeparator(LOCALE_STHOUSAND, thousand, ",");
    // Grouping by nine keeps every realistic price free of thousands separators.
    const NUMBERFMTA format{places, 1, 9, decimal, thousand, 1};
    GetNumberFormatA(LOCALE_USER_DEFAULT, 0, Fixed(value, 6).c_str(), &format, out, 30);
}

}  // namespace qvox
