#include "qvox/platform/Locale.h"

#include <cstring>
#include <string_view>

#include "qvox/platform/CodePage.h"
#include "qvox/platform/IcuLocaleData.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/WinError.h"

namespace qvox {
namespace {

bool IsDefaultId(LCID locale) {
    return locale == LOCALE_USER_DEFAULT || locale == LOCALE_SYSTEM_DEFAULT;
}

// Hands a finished text to a caller's buffer with the platform's size protocol.
template <class Char>
int CopyOut(std::basic_string_view<Char> text, Char* out, int cch) {
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
    std::memcpy(out, text.data(), text.size() * sizeof(Char));
    out[text.size()] = Char{};
    return needed;
}

// A text of digits and signs in the caller's kind of character.
template <class Char>
std::basic_string<Char> Widen(std::string_view ascii) {
    return std::basic_string<Char>(ascii.begin(), ascii.end());
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
template <class Char>
std::basic_string<Char> Group(std::string_view digits, UINT grouping,
                              std::basic_string_view<Char> separator) {
    const std::string sizes = std::to_string(grouping);
    std::basic_string<Char> reversed;
    std::size_t next = 0;
    std::size_t pos = digits.size();
    while (pos > 0) {
        const char code = next < sizes.size() ? sizes[next++] : sizes.back();
        std::size_t size = static_cast<std::size_t>(code - '0');
        if (size == 0 || size > pos) size = pos;
        if (pos != digits.size()) reversed.append(separator.rbegin(), separator.rend());
        for (std::size_t i = 0; i < size; ++i)
            reversed += static_cast<Char>(digits[--pos]);
    }
    return std::basic_string<Char>(reversed.rbegin(), reversed.rend());
}

// A number text read and rounded half away from zero to a number of fraction digits.
struct Rounded {
    bool negative = false;
    bool zero = false;     // nothing but zeros once rounded: no sign is shown
    std::string whole;     // without leading zeros, empty for 0
    std::string fraction;  // exactly the digits asked for
};

// Value: an optional minus, digits, at most one point, digits; at least one digit in all.
std::optional<Rounded> ReadAndRound(std::string_view text, std::size_t keep) {
    Rounded number;
    number.negative = !text.empty() && text.front() == '-';
    if (number.negative) text.remove_prefix(1);
    const std::size_t point = text.find('.');
    number.whole = std::string(text.substr(0, point));
    number.fraction =
        std::string(point == std::string_view::npos ? std::string_view{} : text.substr(point + 1));
    const auto allDigits = [](const std::string& s) {
        for (char c : s) {
            if (c < '0' || c > '9') return false;
        }
        return true;
    };
    if (!allDigits(number.whole) || !allDigits(number.fraction) ||
        number.whole.size() + number.fraction.size() == 0) {
        return std::nullopt;
    }
    std::string& whole = number.whole;
    std::string& fraction = number.fraction;
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
    number.zero = whole.empty() && fraction.find_first_not_of('0') == std::string::npos;
    return number;
}

// The digits of a rounded number with its separators, without sign.
template <class Char>
std::basic_string<Char> Digits(const Rounded& number, UINT leadingZero, UINT grouping,
                               std::basic_string_view<Char> decimalSep,
                               std::basic_string_view<Char> thousandSep) {
    std::basic_string<Char> text;
    if (!number.whole.empty()) {
        text = Group<Char>(number.whole, grouping, thousandSep);
    } else if (leadingZero == 1 || number.fraction.empty()) {
        text = Widen<Char>("0");
    }
    if (!number.fraction.empty()) {
        text += decimalSep;
        text += Widen<Char>(number.fraction);
    }
    return text;
}

// An order of the tables in Locale.h, filled in.
template <class Char>
std::basic_string<Char> Arrange(std::string_view order, const std::basic_string<Char>& number,
                                std::basic_string_view<Char> symbol) {
    std::basic_string<Char> text;
    for (char c : order) {
        if (c == 'N') {
            text += number;
        } else if (c == '$') {
            text += symbol;
        } else {
            text += static_cast<Char>(c);
        }
    }
    return text;
}

// A wide value text as the ASCII the number reader takes; anything else makes it malformed.
std::string NarrowValue(std::wstring_view value) {
    std::string text;
    for (wchar_t c : value)
        text += c >= 0 && c < 0x80 ? static_cast<char>(c) : '?';
    return text;
}

// The text of one locale field, or the error that GetLocaleInfo gives.
std::optional<std::wstring> FieldText(LCID locale, LCTYPE type, DWORD& error) {
    const auto service = CurrentLocaleService();
    const LCTYPE field = type & ~LOCALE_NOUSEROVERRIDE;
    switch (field) {
        case LOCALE_SDECIMAL:
        case LOCALE_STHOUSAND:
        case LOCALE_SGROUPING:
        case LOCALE_IDIGITS:
        case LOCALE_ILZERO:
        case LOCALE_INEGNUMBER: {
            const NumberConventions numbers = service->Numbers(locale);
            switch (field) {
                case LOCALE_SDECIMAL:
                    return Cp1252ToWide(numbers.decimalSeparator);
                case LOCALE_STHOUSAND:
                    return Cp1252ToWide(numbers.thousandSeparator);
                case LOCALE_SGROUPING:
                    return Widen<wchar_t>(GroupingText(numbers.grouping));
                case LOCALE_IDIGITS:
                    return std::to_wstring(numbers.digits);
                case LOCALE_ILZERO:
                    return std::to_wstring(numbers.leadingZero);
                default:
                    return std::to_wstring(numbers.negativeOrder);
            }
        }
        case LOCALE_SCURRENCY:
        case LOCALE_SINTLSYMBOL:
        case LOCALE_SMONDECIMALSEP:
        case LOCALE_SMONTHOUSANDSEP:
        case LOCALE_SMONGROUPING:
        case LOCALE_ICURRDIGITS:
        case LOCALE_ICURRENCY:
        case LOCALE_INEGCURR:
        case LOCALE_SENGCOUNTRY: {
            const std::optional<CurrencyConventions> currency = service->Currency(locale);
            if (!currency) {
                error = ERROR_INVALID_PARAMETER;
                return std::nullopt;
            }
            switch (field) {
                case LOCALE_SCURRENCY:
                    return currency->symbol;
                case LOCALE_SINTLSYMBOL:
                    return currency->internationalSymbol;
                case LOCALE_SMONDECIMALSEP:
                    return currency->decimalSeparator;
                case LOCALE_SMONTHOUSANDSEP:
                    return currency->thousandSeparator;
                case LOCALE_SMONGROUPING:
                    return Widen<wchar_t>(GroupingText(currency->grouping));
                case LOCALE_ICURRDIGITS:
                    return std::to_wstring(currency->digits);
                case LOCALE_ICURRENCY:
                    return std::to_wstring(currency->positiveOrder);
                case LOCALE_INEGCURR:
                    return std::to_wstring(currency->negativeOrder);
                default:
                    return currency->englishCountry;
            }
        }
        default:
            error = ERROR_INVALID_FLAGS;
            return std::nullopt;
    }
}

// The currency text of value with the fields of format, or of the locale when format is null;
// on failure nothing and the error.
std::optional<std::wstring> CurrencyText(LCID locale, DWORD flags, const wchar_t* value,
                                         const CURRENCYFMTW* format, DWORD& error) {
    CurrencyConventions own;
    CURRENCYFMTW fields{};
    if (format != nullptr) {
        if (flags != 0) {
            error = ERROR_INVALID_FLAGS;
            return std::nullopt;
        }
        fields = *format;
    } else {
        if ((flags & ~LOCALE_NOUSEROVERRIDE) != 0) {
            error = ERROR_INVALID_FLAGS;
            return std::nullopt;
        }
        const auto service = CurrentLocaleService();
        const std::optional<CurrencyConventions> currency = service->Currency(locale);
        if (!currency) {
            error = ERROR_INVALID_PARAMETER;
            return std::nullopt;
        }
        own = *currency;
        fields = {own.digits,
                  service->Numbers(locale).leadingZero,
                  own.grouping,
                  own.decimalSeparator.c_str(),
                  own.thousandSeparator.c_str(),
                  own.negativeOrder,
                  own.positiveOrder,
                  own.symbol.c_str()};
    }
    if (value == nullptr || fields.lpDecimalSep == nullptr || fields.lpThousandSep == nullptr ||
        fields.lpCurrencySymbol == nullptr || fields.NumDigits > 9 || fields.LeadingZero > 1 ||
        fields.NegativeOrder > 15 || fields.PositiveOrder > 3) {
        error = ERROR_INVALID_PARAMETER;
        return std::nullopt;
    }
    const std::optional<Rounded> number = ReadAndRound(NarrowValue(value), fields.NumDigits);
    if (!number) {
        error = ERROR_INVALID_PARAMETER;
        return std::nullopt;
    }
    const std::wstring digits = Digits<wchar_t>(*number, fields.LeadingZero, fields.Grouping,
                                                fields.lpDecimalSep, fields.lpThousandSep);
    const std::string_view order = number->negative && !number->zero
                                       ? kCurrencyNegativeOrders[fields.NegativeOrder]
                                       : kCurrencyPositiveOrders[fields.PositiveOrder];
    return Arrange<wchar_t>(order, digits, fields.lpCurrencySymbol);
}

}  // namespace

std::optional<CurrencyConventions> ILocaleService::Currency(LCID locale) const {
    CurrencyConventions currency;
    if (!IsDefaultId(locale)) {
        const std::string name = icudata::LocaleNameOf(locale);
        if (name.empty()) return std::nullopt;
        const CurrencyConventions own = icudata::DataOf(name).currency;
        currency.symbol = own.symbol;
        currency.internationalSymbol = own.internationalSymbol;
        currency.englishCountry = own.englishCountry;
        currency.digits = own.digits;
    }
    const NumberConventions numbers = Numbers(locale);
    currency.decimalSeparator = Cp1252ToWide(numbers.decimalSeparator);
    currency.thousandSeparator = Cp1252ToWide(numbers.thousandSeparator);
    currency.grouping = numbers.grouping;
    return currency;
}

int GetLocaleInfoW(LCID locale, LCTYPE type, wchar_t* data, int cchData) {
    DWORD error = ERROR_SUCCESS;
    const std::optional<std::wstring> text = FieldText(locale, type, error);
    if (!text) {
        SetLastError(error);
        return 0;
    }
    return CopyOut<wchar_t>(*text, data, cchData);
}

int GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR data, int cchData) {
    DWORD error = ERROR_SUCCESS;
    const std::optional<std::wstring> text = FieldText(locale, type, error);
    if (!text) {
        SetLastError(error);
        return 0;
    }
    return CopyOut<char>(icudata::FoldToCp1252(*text), data, cchData);
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
    const std::optional<Rounded> number = ReadAndRound(value, fields.NumDigits);
    if (!number) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    std::string text = Digits<char>(*number, fields.LeadingZero, fields.Grouping,
                                    fields.lpDecimalSep, fields.lpThousandSep);
    if (number->negative && !number->zero) {
        text = Arrange<char>(kNumberNegativeOrders[fields.NegativeOrder], text, {});
    }
    return CopyOut<char>(text, out, cchNumber);
}

int GetCurrencyFormatW(LCID locale, DWORD flags, const wchar_t* value, const CURRENCYFMTW* format,
                       wchar_t* out, int cchCurrency) {
    DWORD error = ERROR_SUCCESS;
    const std::optional<std::wstring> text = CurrencyText(locale, flags, value, format, error);
    if (!text) {
        SetLastError(error);
        return 0;
    }
    return CopyOut<wchar_t>(*text, out, cchCurrency);
}

int GetCurrencyFormatA(LCID locale, DWORD flags, LPCSTR value, const CURRENCYFMTA* format,
                       LPSTR out, int cchCurrency) {
    // The work is done in Unicode; the fields come in the code page.
    const auto widen = [](const char* text) {
        return text != nullptr ? std::optional<std::wstring>(Cp1252ToWide(text)) : std::nullopt;
    };
    const std::optional<std::wstring> wideValue = widen(value);
    std::optional<std::wstring> decimalSep, thousandSep, symbol;
    CURRENCYFMTW fields{};
    if (format != nullptr) {
        decimalSep = widen(format->lpDecimalSep);
        thousandSep = widen(format->lpThousandSep);
        symbol = widen(format->lpCurrencySymbol);
        fields = {format->NumDigits,
                  format->LeadingZero,
                  format->Grouping,
                  decimalSep ? decimalSep->c_str() : nullptr,
                  thousandSep ? thousandSep->c_str() : nullptr,
                  format->NegativeOrder,
                  format->PositiveOrder,
                  symbol ? symbol->c_str() : nullptr};
    }
    DWORD error = ERROR_SUCCESS;
    const std::optional<std::wstring> text =
        CurrencyText(locale, flags, wideValue ? wideValue->c_str() : nullptr,
                     format != nullptr ? &fields : nullptr, error);
    if (!text) {
        SetLastError(error);
        return 0;
    }
    return CopyOut<char>(icudata::FoldToCp1252(*text), out, cchCurrency);
}

}  // namespace qvox
