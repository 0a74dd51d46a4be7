#include "qvox/platform/Locale.h"

#include <cstring>
#include <string_view>

#include "qvox/platform/Platform.h"
#include "qvox/platform/WinError.h"

namespace qvox {
namespace {

// Hands a finished text to a caller's buffer with the platform's size protocol.
int CopyOut(const std::string& text, LPSTR out, int cch) {
    const int needed = static_cast<int>(text.size()) + 1;
    if (cch < 0 || (cch > 0 && out == nullptr)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (cch == 0) return needed;
    if (cch < needed) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::memcpy(out, text.c_str(), text.size() + 1);
    return needed;
}

// The registry form of a grouping: 3 is "3;0", 32 is "3;2;0", 30 is "3".
std::string GroupingText(UINT grouping) {
    const std::string digits = std::to_string(grouping);
    std::string text;
    for (char d : digits) {
        if (!text.empty()) text += ';';
        text += d;
    }
    if (digits.back() != '0') {
        text += ";0";
    } else if (digits.size() > 1) {
        text.resize(text.size() - 2);
    }
    return text;
}

// Splits the integer digits into groups from the right. The grouping's digits give the sizes from
// the decimal separator outwards; a 0 makes the rest one group, and when the digits run out the
// last size repeats (so 3 groups by thousands, 30 only once, 32 as in 12,34,56,789).
std::string Group(std::string_view digits, UINT grouping, std::string_view separator) {
    const std::string sizes = std::to_string(grouping);
    std::string reversed;
    std::size_t next = 0;
    std::size_t pos = digits.size();
    while (pos > 0) {
        const char code = next < sizes.size() ? sizes[next++] : sizes.back();
        std::size_t size = static_cast<std::size_t>(code - '0');
        if (size == 0 || size > pos) size = pos;
        if (pos != digits.size()) reversed.append(separator.rbegin(), separator.rend());
        for (std::size_t i = 0; i < size; ++i)
            reversed += digits[--pos];
    }
    return std::string(reversed.rbegin(), reversed.rend());
}

}  // namespace

int GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR data, int cchData) {
    const NumberConventions numbers = CurrentLocaleService()->Numbers(locale);
    std::string text;
    switch (type & ~LOCALE_NOUSEROVERRIDE) {
        case LOCALE_SDECIMAL:
            text = numbers.decimalSeparator;
            break;
        case LOCALE_STHOUSAND:
            text = numbers.thousandSeparator;
            break;
        case LOCALE_SGROUPING:
            text = GroupingText(numbers.grouping);
            break;
        case LOCALE_IDIGITS:
            text = std::to_string(numbers.digits);
            break;
        case LOCALE_ILZERO:
            text = std::to_string(numbers.leadingZero);
            break;
        case LOCALE_INEGNUMBER:
            text = std::to_string(numbers.negativeOrder);
            break;
        default:
            SetLastError(ERROR_INVALID_FLAGS);
            return 0;
    }
    return CopyOut(text, data, cchData);
}

int GetNumberFormatA(LCID locale, DWORD flags, LPCSTR value, const NUMBERFMTA* format, LPSTR out,
                     int cchNumber) {
    NumberConventions fromLocale;
    NUMBERFMTA fields{};
    if (format != nullptr) {
        if (flags != 0) {
            SetLastError(ERROR_INVALID_FLAGS);
            return 0;
        }
        fields = *format;
    } else {
        if ((flags & ~LOCALE_NOUSEROVERRIDE) != 0) {
            SetLastError(ERROR_INVALID_FLAGS);
            return 0;
        }
        fromLocale = CurrentLocaleService()->Numbers(locale);
        fields = {fromLocale.digits,
                  fromLocale.leadingZero,
                  fromLocale.grouping,
                  fromLocale.decimalSeparator.c_str(),
                  fromLocale.thousandSeparator.c_str(),
                  fromLocale.negativeOrder};
    }
    if (value == nullptr || fields.lpDecimalSep == nullptr || fields.lpThousandSep == nullptr ||
        fields.NumDigits > 9 || fields.LeadingZero > 1 || fields.NegativeOrder > 4) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }

    // Value: an optional minus, digits, at most one point, digits; at least one digit in all.
    std::string_view text(value);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative) text.remove_prefix(1);
    const std::size_t point = text.find('.');
    std::string whole(text.substr(0, point));
    std::string fraction(point == std::string_view::npos ? std::string_view{}
                                                         : text.substr(point + 1));
    const auto allDigits = [](const std::string& s) {
        for (char c : s) {
            if (c < '0' || c > '9') return false;
        }
        return true;
    };
    if (!allDigits(whole) || !allDigits(fraction) || whole.size() + fraction.size() == 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }

    // Round half away from zero to NumDigits places, carrying into the whole part.
    const std::size_t keep = fields.NumDigits;
    bool carry = fraction.size() > keep && fraction[keep] >= '5';
    fraction.resize(keep, '0');
    for (std::size_t i = fraction.size(); carry && i-- > 0;) {
        carry = fraction[i] == '9';
        fraction[i] = carry ? '0' : static_cast<char>(fraction[i] + 1);
    }
    for (std::size_t i = whole.size(); carry && i-- > 0;) {
        carry = whole[i] == '9';
        whole[i] = carry ? '0' : static_cast<char>(whole[i] + 1);
    }
    if (carry) whole.insert(whole.begin(), '1');
    const std::size_t firstDigit = whole.find_first_not_of('0');
    whole = firstDigit == std::string::npos ? std::string() : whole.substr(firstDigit);
    const bool zero = whole.empty() && fraction.find_first_not_of('0') == std::string::npos;

    std::string number;
    if (!whole.empty()) {
        number = Group(whole, fields.Grouping, fields.lpThousandSep);
    } else if (fields.LeadingZero == 1 || keep == 0) {
        number = "0";
    }
    if (keep > 0) {
        number += fields.lpDecimalSep;
        number += fraction;
    }
    if (negative && !zero) {
        static constexpr const char* kBefore[] = {"(", "-", "- ", "", ""};
        static constexpr const char* kAfter[] = {")", "", "", "-", " -"};
        number = kBefore[fields.NegativeOrder] + number + kAfter[fields.NegativeOrder];
    }
    return CopyOut(number, out, cchNumber);
}

}  // namespace qvox
