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
constexpr ULONG kFixed = H::kDefaultFormat;

TEST(Currency, TableAndLocaleTexts) {
    for (const QVOXCurrency& row : g_QVOXCurrencies) {
        EXPECT_EQ(H::QVOXLocalIDFromISOCode(row.isoCode), static_cast<LONG>(row.localeID));
        EXPECT_EQ(H::QVOXCurrencyFromLocaleID(row.localeID), row.isoCode);  // its own currency
    }
    for (const auto& [code, id] : {std::pair{"gbp", 2057},
                                   {"G B P", 2057},
                                   {" GBP", 2057},
                                   {"ZZZ", 1033},
                                   {"", 1033},
                                   {"GBP\t", 1033}})
        EXPECT_EQ(H::QVOXLocalIDFromISOCode(code), id) << code;
    for (const char* pair : {"USDEUR", "USDNZD", "USDGBP", "USDAUD", "EUR", "USDEURX"})
        EXPECT_FALSE(H::QVOXIsCurrenySupported(pair)) << pair;
    for (const char* pair : {"EURUSD", "USDJPY", "usdeur", "XXXYYY", "USDeur"})
        EXPECT_TRUE(H::QVOXIsCurrenySupported(pair)) << pair;
    EXPECT_EQ(H::QVOXCountrySymbolFromLocaleID(15369) + H::QVOXCountryFromLocaleID(1027),
              "HK$Spain");
    for (ULONG unknown : {0x9999u, 0x0009u}) {  // no such id; a language without a country
        EXPECT_EQ(H::QVOXCurrencyFromLocaleID(unknown) + H::QVOXCountrySymbolFromLocaleID(unknown) +
                      H::QVOXCountryFromLocaleID(unknown),
                  "");
    }
}

TEST(Currency, FormatsOnTheFixedPathAndTheUsersOwn) {
    // clang-format off
    const struct { double value; int decimals; ULONG locale; bool minus; const char* expected; }
    cases[] = {
        {1234.5, 2, kFixed, false, "$1,234.50"},  {-1234.5, 2, kFixed, true, "($1,234.50)"},
        {0.125, 2, kFixed, false, "$0.13"},       {1e300, 2, kFixed, false, "1.0000e+300"},
        {-1e300, 2, 2057, false, "-1.0000e+300"},  // beyond 63 characters of "%f"
        {1e50, 2, kFixed, false, "#Overflow"},     // "%f" fits, the grouped result does not
        {1.5, -1, kFixed, false, "#Overflow"},    {1.5, 10, 2057, false, "#Overflow"},
        {-5, 2, 2057, true, "-\2435.00"},         {-5, 2, 2057, false, "(\2435.00)"},
        {1234.5, 0, 1041, false, "\2451,235"},    {1234.5, 2, 1027, false, "\2001,234.50"},
        {1.5, 2, 0x9999, false, "#Overflow"},
        {std::numeric_limits<double>::quiet_NaN(), 2, kFixed, false, "#Overflow"},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(H::QVOXFormatCurrency(c.value, c.decimals, c.locale, c.minus), c.expected)
            << c.value << " " << c.decimals << " " << c.locale;
    }
    // With the user's conventions from ICU only the symbol comes from the currency's country.
    PlatformServices services;
    services.locale = std::make_shared<IcuLocaleService>("de_DE");
    const ScopedPlatformServices german(services);
    EXPECT_EQ(H::QVOXFormatCurrency(-1234.5, 2, 2057, false), "-1.234,50 \xA3");
    EXPECT_EQ(H::QVOXFormatCurrency(-1234.5, 2, 2057, true), "-\2431.234,50");
    EXPECT_EQ(H::QVOXFormatCurrency(-1234.5, 2, kFixed, false), "($1,234.50)");
}

}  // namespace
}  // namespace qvox
