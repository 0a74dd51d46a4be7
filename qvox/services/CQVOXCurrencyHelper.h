// CQVOXCurrencyHelper: money in the currency of a forex symbol or an account. A table of the
// supported ISO codes with the Windows locale id of a country that uses each, a test of currency
// pairs, and a formatter that joins the user's own number conventions with another country's
// currency symbol. Static: an instance holds nothing.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

// One supported currency: its ISO code and the locale id whose symbol shows it.
struct QVOXCurrency {
    const char* isoCode;
    ULONG localeID;
};

// The supported currencies, in this order; lookups walk it from the top.
inline constexpr QVOXCurrency g_QVOXCurrencies[] = {
    {"USD", 1033}, {"CAD", 4105},  {"CHF", 2055},  {"EUR", 1027}, {"JPY", 1041},
    {"GBP", 2057}, {"NOK", 1044},  {"DKK", 1030},  {"SEK", 1053}, {"NZD", 5129},
    {"AUD", 3081}, {"SGD", 18441}, {"HKD", 15369},
};

class CQVOXCurrencyHelper {
  public:
    // The locale id that means the fixed format: "$", "." and ",", negative amounts in
    // parentheses.
    static constexpr ULONG kDefaultFormat = 0xFFFFFFFF;

    // value with decimals digits (rounded half away from zero). kDefaultFormat gives the fixed
    // format; any other id the user's own conventions (LOCALE_USER_DEFAULT: leading zero,
    // separators, grouped by 3, orders) with the currency symbol of localeID, and a minus sign
    // before the symbol when bMinusSign. An amount beyond 63 characters of "%f" gives its "%.4e"
    // text; decimals outside 0 to 9, a result beyond 63 characters, an id without a currency and
    // any other failure give "#Overflow".
    static CString QVOXFormatCurrency(double value, int decimals, ULONG localeID, bool bMinusSign);
    // The table's id for an ISO code, ignoring case and blanks; 1033 for an unknown code.
    static LONG QVOXLocalIDFromISOCode(CString code);
    // False for a text that is not six characters and for "USDEUR", "USDGBP", "USDAUD" and
    // "USDNZD" exactly; true for every other pair, known or not.
    static bool QVOXIsCurrenySupported(CString pair);
    // The locale's ISO currency code (LOCALE_SINTLSYMBOL), at most 256 characters; "" when the
    // locale gives none.
    static CString QVOXCurrencyFromLocaleID(ULONG localeID);
    // The locale's currency symbol (LOCALE_SCURRENCY), at most 9 characters; "" when the
    // locale gives none or a longer one.
    static CString QVOXCountrySymbolFromLocaleID(ULONG localeID);
    // The locale's country in English (LOCALE_SENGCOUNTRY), at most 256 characters; "" when
    // the locale gives none.
    static CString QVOXCountryFromLocaleID(ULONG localeID);
};

}  // namespace qvox
