// Currency formatting: the table, the pair test and the formatter on both of its paths.
#include "qvox/services/CQVOXCurrencyHelper.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "qvox/platform/IcuLocaleService.h"
#include "qvox/platform/Platform.h"

namespace qvox {
namespace {

using H = CQVOXCurrencyHelper;
constexpr ULONG kDefault = H::kDefaultFormat;

TEST(Currency, TableLookupAndPairs) {
    EXPECT_EQ(std::size(g_QVOXCurrencies), 13u);
    for (const QVOXCurrency& row : g_QVOXCurrencies) {
        EXPECT_EQ(H::QVOXLocalIDFromISOCode(row.isoCode), static_cast<LONG>(row.localeID));
        // Every row's country has the row's currency.
        EXPECT_EQ(H::QVOXCurrencyFromLocaleID(row.localeID), row.isoCode);
    }
    for (const char* code : {"gbp", "G B P", " GBP"})
        EXPECT_EQ(H::QVOXLocalIDFromISOCode(code), 2057) << code;
    for (const char* code : {"ZZZ", "", "GBP\t"})
        EXPECT_EQ(H::QVOXLocalIDFromISOCode(code), 1033) << code;

    for (const char* pair : {"USDEUR", "USDNZD", "USDGBP", "USDAUD", "EUR", "USDEURX", ""})
        EXPECT_FALSE(H::QVOXIsCurrenySupported(pair)) << pair;
    for (const char* pair : {"EURUSD", "USDJPY", "USDCHF", "usdeur", "XXXYYY", "USDeur"})
        EXPECT_TRUE(H::QVOXIsCurrenySupported(pair)) << pair;
}

TEST(Currency, LocaleTexts) {
    EXPECT_EQ(H::QVOXCountrySymbolFromLocaleID(2057), "\xA3");
    EXPECT_EQ(H::QVOXCountrySymbolFromLocaleID(15369), "HK$");
    EXPECT_EQ(H::QVOXCountryFromLocaleID(2055), "Switzerland");
    EXPECT_EQ(H::QVOXCountryFromLocaleID(1027), "Spain");
    for (ULONG unknown : {0x9999u, 0x0009u}) {
        EXPECT_EQ(H::QVOXCurrencyFromLocaleID(unknown), "");
        EXPECT_EQ(H::QVOXCountrySymbolFromLocaleID(unknown), "");
        EXPECT_EQ(H::QVOXCountryFromLocaleID(unknown), "");
    }
}

TEST(Currency, FormatsOnTheFixedPathAndTheUsersOwn) {
    const struct {
        double value;
        int decimals;
        ULONG locale;
        bool minus;
        const char* expected;
    } cases[] = {
        {1234.5, 2, kDefault, false, "$1,234.50"},
        {-1234.5, 2, kDefault, false, "($1,234.50)"},
        {-1234.5, 2, kDefault, true, "($1,234.50)"},  // the minus sign is for other locales
        {0.125, 2, kDefault, false, "$0.13"},
        {1e300, 2, kDefault, false, "1.0000e+300"},  // beyond 63 characters of "%f"
        {-1e300, 2, 2057, false, "-1.0000e+300"},
        {1e50, 2, kDefault, false, "#Overflow"},  // "%f" fits, the grouped result does not
        {1.5, -1, kDefault, false, "#Overflow"},
        {1.5, 10, 2057, false, "#Overflow"},
        {1.5, 9, kDefault, false, "$1.500000000"},
        {-5, 2, 2057, true,
         "-\xA3"
         "5.00"},
        {-5, 2, 2057, false,
         "(\xA3"
         "5.00)"},
        {1234.5, 0, 1041, false,
         "\xA5"
         "1,235"},
        {1234.5, 2, 1027, false,
         "\x80"
         "1,234.50"},
        {1.5, 2, 0x9999, false, "#Overflow"},
        {std::numeric_limits<double>::quiet_NaN(), 2, kDefault, false, "#Overflow"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(H::QVOXFormatCurrency(c.value, c.decimals, c.locale, c.minus), c.expected)
            << c.value << " " << c.decimals << " " << c.locale;
    }

    // With the user's conventions from ICU only the symbol comes from the currency's country.
    PlatformServices services;
    services.locale = std::make_shared<IcuLocaleService>("de_DE");
    const ScopedPlatformServices german(services);
    EXPECT_EQ(H::QVOXFormatCurrency(-1234.5, 2, 2057, false), "-1.234,50 \xA3");
    EXPECT_EQ(H::QVOXFormatCurrency(-1234.5, 2, 2057, true),
              "-\xA3"
              "1.234,50");
    EXPECT_EQ(H::QVOXFormatCurrency(-1234.5, 2, kDefault, false), "($1,234.50)");
}

}  // namespace
}  // namespace qvox
