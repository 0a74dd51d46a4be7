#include "qvox/services/CQVOXCurrencyHelper.h"

#include <string>

#include "qvox/platform/CRuntime.h"
#include "qvox/platform/CodePage.h"
#include "qvox/platform/IcuLocaleData.h"
#include "qvox/platform/Locale.h"

namespace qvox {
namespace {

constexpr const char* kOverflow = "#Overflow";
// The formatter's text buffers: 63 characters and the terminator.
constexpr int kAmountBuffer = 64;

// One text field of a locale, at most maxChars characters; "" on any failure.
CString LocaleText(ULONG localeID, LCTYPE type, int maxChars) {
    std::string buffer(static_cast<std::size_t>(maxChars) + 1, '\0');
    const int written = GetLocaleInfoA(localeID, type, buffer.data(), maxChars + 1);
    if (written <= 0) return CString();
    buffer.resize(static_cast<std::size_t>(written - 1));
    return CString(std::move(buffer));
}

// A numeric field of the user's locale.
UINT UserNumber(LCTYPE type) {
    char text[8] = {};
    if (GetLocaleInfoA(LOCALE_USER_DEFAULT, type, text, sizeof text) == 0) return 0;
    return static_cast<UINT>(AtoI(text));
}

std::wstring UserText(LCTYPE type) {
    wchar_t text[16] = {};
    if (GetLocaleInfoW(LOCALE_USER_DEFAULT, type, text, 16) == 0) return {};
    return text;
}

}  // namespace

CString CQVOXCurrencyHelper::QVOXFormatCurrency(double value, int decimals, ULONG localeID,
                                                bool bMinusSign) {
    CString amount;
    amount.Format("%f", value);
    if (amount.GetLength() >= kAmountBuffer) {
        CString scientific;
        scientific.Format("%.4e", value);
        return scientific.GetLength() < kAmountBuffer ? scientific : CString(kOverflow);
    }
    if (decimals < 0) return CString(kOverflow);
    const auto digits = static_cast<UINT>(decimals);

    if (localeID == kDefaultFormat) {
        const CURRENCYFMTA fixed{digits, 1, 3, ".", ",", 0, 0, "$"};
        char out[kAmountBuffer];
        if (GetCurrencyFormatA(LOCALE_USER_DEFAULT, 0, amount, &fixed, out, kAmountBuffer) == 0) {
            return CString(kOverflow);
        }
        return CString(out);
    }

    // The user's own conventions with the symbol of the currency's country, in Unicode: a symbol
    // may lie outside the single-byte code page.
    wchar_t symbol[16] = {};
    if (GetLocaleInfoW(localeID, LOCALE_SCURRENCY, symbol, 16) == 0) return CString(kOverflow);
    const std::wstring decimalSep = UserText(LOCALE_SDECIMAL);
    const std::wstring thousandSep = UserText(LOCALE_STHOUSAND);
    const CURRENCYFMTW format{digits,
                              UserNumber(LOCALE_ILZERO),
                              3,
                              decimalSep.c_str(),
                              thousandSep.c_str(),
                              bMinusSign ? 1u : UserNumber(LOCALE_INEGCURR),
                              UserNumber(LOCALE_ICURRENCY),
                              symbol};
    const std::wstring wideAmount = Cp1252ToWide(amount.view());
    wchar_t out[kAmountBuffer];
    if (GetCurrencyFormatW(LOCALE_USER_DEFAULT, 0, wideAmount.c_str(), &format, out,
                           kAmountBuffer) == 0) {
        return CString(kOverflow);
    }
    // Back in the single-byte code page, folded as the locale functions fold their texts.
    return CString(icudata::FoldToCp1252(out));
}

LONG CQVOXCurrencyHelper::QVOXLocalIDFromISOCode(CString code) {
    code.MakeUpper();
    code.Remove(' ');
    for (const QVOXCurrency& row : g_QVOXCurrencies) {
        if (code.CompareNoCase(row.isoCode) == 0) return static_cast<LONG>(row.localeID);
    }
    return static_cast<LONG>(g_QVOXCurrencies[0].localeID);
}

bool CQVOXCurrencyHelper::QVOXIsCurrenySupported(CString pair) {
    if (pair.GetLength() != 6) return false;
    if (pair.Left(3) != "USD") return true;
    const CString quote = pair.Right(3);
    return quote != "EUR" && quote != "GBP" && quote != "AUD" && quote != "NZD";
}

CString CQVOXCurrencyHelper::QVOXCurrencyFromLocaleID(ULONG localeID) {
    return LocaleText(localeID, LOCALE_SINTLSYMBOL, 256);
}

CString CQVOXCurrencyHelper::QVOXCountrySymbolFromLocaleID(ULONG localeID) {
    return LocaleText(localeID, LOCALE_SCURRENCY, 9);
}

CString CQVOXCurrencyHelper::QVOXCountryFromLocaleID(ULONG localeID) {
    return LocaleText(localeID, LOCALE_SENGCOUNTRY, 256);
}

}  // namespace qvox
