// Locale information, number and currency formatting with the shapes of the platform's locale
// functions. What a locale says comes from the locale service installed through the platform
// registration point (Platform.h). The built-in service answers "." and "," for every locale, so
// that no text the library writes or reads changes with the machine it runs on; an application
// that wants the user's own conventions installs IcuLocaleService (IcuLocaleService.h).
//
// Windows locale ids name real locales through ICU's mapping (1033 en_US, 2057 en_GB, ...).
// LOCALE_USER_DEFAULT and LOCALE_SYSTEM_DEFAULT stand for the user's own locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "qvox/platform/WinTypes.h"

namespace qvox {

inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
inline constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;

inline constexpr LCTYPE LOCALE_SDECIMAL = 0x0000000E;
inline constexpr LCTYPE LOCALE_STHOUSAND = 0x0000000F;
inline constexpr LCTYPE LOCALE_SGROUPING = 0x00000010;
inline constexpr LCTYPE LOCALE_IDIGITS = 0x00000011;
inline constexpr LCTYPE LOCALE_ILZERO = 0x00000012;
inline constexpr LCTYPE LOCALE_SCURRENCY = 0x00000014;
inline constexpr LCTYPE LOCALE_SINTLSYMBOL = 0x00000015;
inline constexpr LCTYPE LOCALE_SMONDECIMALSEP = 0x00000016;
inline constexpr LCTYPE LOCALE_SMONTHOUSANDSEP = 0x00000017;
inline constexpr LCTYPE LOCALE_SMONGROUPING = 0x00000018;
inline constexpr LCTYPE LOCALE_ICURRDIGITS = 0x00000019;
inline constexpr LCTYPE LOCALE_ICURRENCY = 0x0000001B;
inline constexpr LCTYPE LOCALE_INEGCURR = 0x0000001C;
inline constexpr LCTYPE LOCALE_INEGNUMBER = 0x00001010;
inline constexpr LCTYPE LOCALE_SENGCOUNTRY = 0x00001002;
inline constexpr DWORD LOCALE_NOUSEROVERRIDE = 0x80000000;

// Explicit fields for GetNumberFormatA.
struct NUMBERFMTA {
    UINT NumDigits;    // digits after the decimal separator, 0 to 9
    UINT LeadingZero;  // 1: "0.5", 0: ".5"
    UINT Grouping;     // group sizes as decimal digits, most significant first: 3, 32, 30, 9
    const char* lpDecimalSep;   // must not be null
    const char* lpThousandSep;  // must not be null
    UINT NegativeOrder;         // 0 to 4, kNumberNegativeOrders
};

// Where the sign and the symbol go, by order number: '$' stands for the currency symbol, 'N' for
// the number, every other character for itself.
inline constexpr std::string_view kNumberNegativeOrders[] = {"(N)", "-N", "- N", "N-", "N -"};
inline constexpr std::string_view kCurrencyPositiveOrders[] = {"$N", "N$", "$ N", "N $"};
inline constexpr std::string_view kCurrencyNegativeOrders[] = {
    "($N)", "-$N",  "$-N",  "$N-",  "(N$)", "-N$",  "N-$",   "N$-",
    "-N $", "-$ N", "N $-", "$ N-", "$ -N", "N- $", "($ N)", "(N $)"};

// Explicit fields for GetCurrencyFormatA and GetCurrencyFormatW.
template <class Char>
struct CurrencyFormat {
    UINT NumDigits;                // 0 to 9
    UINT LeadingZero;              // 1: "0.5", 0: ".5"
    UINT Grouping;                 // as NUMBERFMTA::Grouping
    const Char* lpDecimalSep;      // must not be null
    const Char* lpThousandSep;     // must not be null
    UINT NegativeOrder;            // 0 to 15, kCurrencyNegativeOrders
    UINT PositiveOrder;            // 0 to 3, kCurrencyPositiveOrders
    const Char* lpCurrencySymbol;  // must not be null
};
using CURRENCYFMTA = CurrencyFormat<char>;
using CURRENCYFMTW = CurrencyFormat<wchar_t>;

// How one locale writes numbers.
struct NumberConventions {
    std::string decimalSeparator = ".";
    std::string thousandSeparator = ",";
    UINT grouping = 3;  // in the form of NUMBERFMTA::Grouping
    UINT digits = 2;
    UINT leadingZero = 1;
    UINT negativeOrder = 1;
};

// How one locale writes amounts of money. The texts are Unicode (wchar_t holds UTF-32 here);
// the single-byte functions give them in the code page.
struct CurrencyConventions {
    std::wstring symbol = L"$";                      // LOCALE_SCURRENCY
    std::wstring internationalSymbol = L"USD";       // LOCALE_SINTLSYMBOL, an ISO 4217 code
    std::wstring englishCountry = L"United States";  // LOCALE_SENGCOUNTRY
    UINT digits = 2;                                 // LOCALE_ICURRDIGITS
    UINT positiveOrder = 0;                          // LOCALE_ICURRENCY, 0 to 3
    UINT negativeOrder = 0;                          // LOCALE_INEGCURR, 0 to 15
    std::wstring decimalSeparator = L".";            // LOCALE_SMONDECIMALSEP
    std::wstring thousandSeparator = L",";           // LOCALE_SMONTHOUSANDSEP
    UINT grouping = 3;                               // LOCALE_SMONGROUPING
};

// Where locale data comes from. An application installs its own to follow the user's settings.
// Implementations are called from several threads at once.
class ILocaleService {
  public:
    virtual ~ILocaleService() = default;
    // The conventions of a locale id; LOCALE_SYSTEM_DEFAULT and LOCALE_USER_DEFAULT stand for the
    // machine's and the user's locale. Must answer for every id.
    virtual NumberConventions Numbers(LCID locale) const = 0;
    // The money of a locale id, or nothing for an id that names no locale with a country. By
    // default the two default ids give the US dollar, and any other id its country's currency
    // (symbol, ISO code, English country name and the currency's digits, from ICU); either way
    // laid out with Numbers(locale): symbol first, a negative amount in parentheses.
    virtual std::optional<CurrencyConventions> Currency(LCID locale) const;
};

// A service that gives the same number conventions for the system and for the user, whatever
// the id; its money is the default of ILocaleService.
class FixedLocaleService final : public ILocaleService {
  public:
    FixedLocaleService() = default;
    explicit FixedLocaleService(NumberConventions conventions)
        : conventions_(std::move(conventions)) {}
    NumberConventions Numbers(LCID) const override { return conventions_; }

  private:
    NumberConventions conventions_;
};

// Copies one locale field as text into data. The result counts the characters written with the
// terminator; with cchData 0 it is the size needed and nothing is written. Fails with 0 and sets
// the last error: ERROR_INVALID_FLAGS for an unknown field, ERROR_INSUFFICIENT_BUFFER when the
// text does not fit, ERROR_INVALID_PARAMETER for a null buffer or a negative size.
// Text fields of a locale that has no country (LOCALE_SCURRENCY, LOCALE_SINTLSYMBOL,
// LOCALE_SENGCOUNTRY) and the other currency fields of such a locale fail with
// ERROR_INVALID_PARAMETER. The single-byte form folds characters that the code page lacks to
// their compatibility forms where those exist (U+FFE5 to U+00A5, U+202F to a blank), else '?'.
int GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR data, int cchData);
// The same in Unicode, counted in wchar_t.
int GetLocaleInfoW(LCID locale, LCTYPE type, wchar_t* data, int cchData);

// Formats the number text value ("-" first if negative, digits, at most one ".") with the given
// fields, or with the locale's conventions when format is null. Rounds half away from zero to
// NumDigits digits; a value that rounds to zero carries no sign. Returns as GetLocaleInfoA.
// Fails with 0: ERROR_INVALID_PARAMETER for a malformed value, a null separator, a field out of
// range; ERROR_INVALID_FLAGS for flags other than 0 with explicit fields (LOCALE_NOUSEROVERRIDE
// alone is allowed without); ERROR_INSUFFICIENT_BUFFER when the text does not fit. The output is
// left untouched on failure.
int GetNumberFormatA(LCID locale, DWORD flags, LPCSTR value, const NUMBERFMTA* format, LPSTR out,
                     int cchNumber);

// Formats the number text value as an amount of money with the given fields, or with the locale's
// own currency conventions (ILocaleService::Currency) when format is null. Numbers as
// GetNumberFormatA; the sign and the symbol are placed by the orders of CurrencyFormat, and an
// amount that rounds to zero takes the positive order. Fails with 0 as GetNumberFormatA, with
// ERROR_INVALID_PARAMETER also for a null symbol, an order out of range, or no format and a
// locale without currency.
int GetCurrencyFormatW(LCID locale, DWORD flags, const wchar_t* value, const CURRENCYFMTW* format,
                       wchar_t* out, int cchCurrency);
// The single-byte form: value and fields in the code page; the result as GetLocaleInfoA gives
// text.
int GetCurrencyFormatA(LCID locale, DWORD flags, LPCSTR value, const CURRENCYFMTA* format,
                       LPSTR out, int cchCurrency);

}  // namespace qvox
