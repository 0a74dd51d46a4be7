#include "qvox/platform/Locale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "common/DecimalCommaLocale.h"
#include "qvox/platform/CRuntime.h"
#include "qvox/platform/IcuLocaleService.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/WinError.h"

namespace qvox {
namespace {

std::string Format(const char* value, UINT digits, UINT grouping, UINT negativeOrder = 1,
                   UINT leadingZero = 1) {
    const NUMBERFMTA format{digits, leadingZero, grouping, ".", ",", negativeOrder};
    char out[64];
    if (GetNumberFormatA(LOCALE_USER_DEFAULT, 0, value, &format, out, sizeof out) == 0) {
        return "<error " + std::to_string(GetLastError()) + ">";
    }
    return out;
}

TEST(NumberFormat, RoundsGroupsAndSigns) {
    // clang-format off
    const struct { const char* value; UINT digits, grouping, negativeOrder, leadingZero; const char* expected; } cases[] = {
        {"1234567.891", 2, 3, 1, 1, "1,234,567.89"}, {"1234567.895", 2, 3, 1, 1, "1,234,567.90"},
        {"9.995", 2, 3, 1, 1, "10.00"}, {"999.9", 0, 3, 1, 1, "1,000"},
        {"1234567890", 0, 32, 1, 1, "1,23,45,67,890"}, {"1234567890", 0, 30, 1, 1, "1234567,890"},
        {"1234567890", 0, 0, 1, 1, "1234567890"}, {"1234567890", 0, 9, 1, 1, "1,234567890"},
        {"123", 0, 3, 1, 1, "123"}, {"-1.5", 1, 3, 0, 1, "(1.5)"}, {"-1.5", 1, 3, 2, 1, "- 1.5"},
        {"-1.5", 1, 3, 3, 1, "1.5-"}, {"-1.5", 1, 3, 4, 1, "1.5 -"}, {"0.5", 2, 3, 1, 0, ".50"},
        {"-0.001", 2, 3, 1, 1, "0.00"}, {"007.5", 1, 3, 1, 1, "7.5"}, {".5", 1, 3, 1, 1, "0.5"},
        {"5.", 0, 3, 1, 1, "5"}, {"0", 0, 3, 1, 0, "0"}, {"-0.5", 0, 3, 1, 1, "-1"},
        {"1.2", 4, 3, 1, 1, "1.2000"},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(Format(c.value, c.digits, c.grouping, c.negativeOrder, c.leadingZero), c.expected)
            << c.value;
    }
    for (const char* bad : {"", "-", ".", "1.2.3", "+1", " 1", "1e5", "1,5", "--1", "nan"}) {
        EXPECT_EQ(Format(bad, 2, 3), "<error 87>") << bad;
    }
    EXPECT_EQ(Format("1", 10, 3), "<error 87>");
    EXPECT_EQ(Format("1", 2, 3, 5), "<error 87>");

    // The buffer protocol: the size asked with no buffer, and a buffer one short.
    const NUMBERFMTA format{2, 1, 3, ".", ",", 1};
    EXPECT_EQ(GetNumberFormatA(LOCALE_USER_DEFAULT, 0, "1234.5", &format, nullptr, 0), 9);
    char out[9];
    std::memset(out, 'x', sizeof out);
    EXPECT_EQ(GetNumberFormatA(LOCALE_USER_DEFAULT, 0, "1234.5", &format, out, 8), 0);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(out[0], 'x');  // untouched on failure
    EXPECT_EQ(GetNumberFormatA(LOCALE_USER_DEFAULT, 0, "1234.5", &format, out, 9), 9);
    EXPECT_STREQ(out, "1,234.50");
    EXPECT_EQ(GetNumberFormatA(LOCALE_USER_DEFAULT, LOCALE_NOUSEROVERRIDE, "1", &format, out, 9),
              0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_FLAGS);
    const NUMBERFMTA noSeparator{2, 1, 3, nullptr, ",", 1};
    EXPECT_EQ(GetNumberFormatA(LOCALE_USER_DEFAULT, 0, "1", &noSeparator, out, 9), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(LocaleInfo, ComesFromTheInstalledService) {
    char out[8];
    EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_STHOUSAND, out, sizeof out), 2);
    EXPECT_STREQ(out, ",");
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, 0x9999, out, sizeof out), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_FLAGS);

    NumberConventions indian;
    indian.decimalSeparator = "\xB7";  // a middle dot, one byte of the code page
    indian.thousandSeparator = "\xA0\xA0\xA0\xA0";
    indian.grouping = 32;
    {
        PlatformServices services;
        services.locale = std::make_shared<FixedLocaleService>(indian);
        const ScopedPlatformServices scoped(services);
        EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_SDECIMAL, out, sizeof out), 2);
        EXPECT_STREQ(out, "\xB7");
        EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_STHOUSAND, nullptr, 0), 5);
        EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_STHOUSAND, out, 4), 0);
        EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
        EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SGROUPING, out, sizeof out), 6);
        EXPECT_STREQ(out, "3;2;0");
        EXPECT_EQ(GetNumberFormatA(LOCALE_USER_DEFAULT, 0, "-1234567.5", nullptr, out, 0), 20);
    }
    EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_SDECIMAL, out, sizeof out), 2);
    EXPECT_STREQ(out, ".");
}

TEST(CRuntime, ReadsIntegersLikeThePlatform) {
    // clang-format off
    const struct { const char* text; std::int32_t expected; bool negative; } cases[] = {
        {"42", 42, false}, {" -17x", -17, true}, {"+8", 8, false}, {"-", 0, true}, {"-0", 0, true},
        {"abc", 0, false}, {"2147483647", INT32_MAX, false}, {"2147483648", INT32_MAX, false},
        {"-2147483648", INT32_MIN, true}, {"-99999999999999999999", INT32_MIN, true},
        {"\t\n 5", 5, false}, {"- 5", 0, true}, {"", 0, false},
    };
    // clang-format on
    for (const auto& c : cases) {
        bool negative = !c.negative;
        EXPECT_EQ(AtoI(std::string_view(c.text), negative), c.expected) << c.text;
        EXPECT_EQ(negative, c.negative) << c.text;
        EXPECT_EQ(AtoI(c.text), c.expected) << c.text;
    }
    EXPECT_EQ(AtoI(static_cast<const char*>(nullptr)), 0);
    EXPECT_EQ(AtoI(std::string_view("12345", 3)), 123);  // stops at the end of the view
}

TEST(CRuntime, ReadsFloatsInTheCLocale) {
    for (const auto& [text, value] :
         {std::pair{"1.25", 1.25}, {"  -3.5e2xyz", -350.0}, {"abc", 0.0}, {"1e999", HUGE_VAL}})
        EXPECT_EQ(AtoF(text), value) << text;
    EXPECT_EQ(AtoF(static_cast<const char*>(nullptr)), 0.0);
    EXPECT_EQ(AtoF(std::string_view("1.2599", 4)), 1.25);
    EXPECT_EQ(AtoF(std::string(100, '1') + ".5"), AtoF((std::string(100, '1') + ".5").c_str()));
    // The view reader's shortcut for whole numbers agrees with the full reader, sign of 0 included.
    for (const char* text :
         {"2", "-0", "007", "123456789012345", "9007199254740993", "2e5", "5x", "-", ""}) {
        const double view = AtoF(std::string_view(text));
        EXPECT_EQ(view, AtoF(text)) << text;
        EXPECT_EQ(std::signbit(view), std::signbit(AtoF(text))) << text;
    }
    // An application that moves the C locale to a decimal comma changes nothing here.
    const testing::DecimalCommaLocale comma;
    QVOX_EXPECT_DECIMAL_COMMA(comma);
    EXPECT_EQ(AtoF("1.5"), 1.5);
    EXPECT_EQ(AtoF(std::string_view("2.25")), 2.25);
}

}  // namespace
}  // namespace qvox

namespace qvox {
namespace {

// The error of a failed call; ERROR_SUCCESS when it did not fail.
DWORD FailedWith(int result) {
    return result == 0 ? GetLastError() : ERROR_SUCCESS;
}

std::string Money(const char* value, UINT negativeOrder, UINT positiveOrder,
                  const char* symbol = "$", UINT digits = 2) {
    const CURRENCYFMTA format{digits, 1, 3, ".", ",", negativeOrder, positiveOrder, symbol};
    char out[64];
    if (GetCurrencyFormatA(LOCALE_USER_DEFAULT, 0, value, &format, out, sizeof out) == 0) {
        return "<error " + std::to_string(GetLastError()) + ">";
    }
    return out;
}

TEST(CurrencyFormat, EveryOrder) {
    const char* negatives[] = {"($1,234.50)", "-$1,234.50",  "$-1,234.50",   "$1,234.50-",
                               "(1,234.50$)", "-1,234.50$",  "1,234.50-$",   "1,234.50$-",
                               "-1,234.50 $", "-$ 1,234.50", "1,234.50 $-",  "$ 1,234.50-",
                               "$ -1,234.50", "1,234.50- $", "($ 1,234.50)", "(1,234.50 $)"};
    for (UINT order = 0; order < 16; ++order)
        EXPECT_EQ(Money("-1234.5", order, 0), negatives[order]) << order;
    const char* positives[] = {"$1,234.50", "1,234.50$", "$ 1,234.50", "1,234.50 $"};
    for (UINT order = 0; order < 4; ++order)
        EXPECT_EQ(Money("1234.5", 0, order), positives[order]) << order;
    // A negative amount that rounds to nothing takes the positive order.
    EXPECT_EQ(Money("-0.001", 0, 3), "0.00 $");
    EXPECT_EQ(Money("-0.005", 1, 0, "\x80", 2), "-\2000.01");
    EXPECT_EQ(Money("7", 1, 0, "kr.", 0), "kr.7");
    EXPECT_EQ(Money("1", 16, 0) + Money("1", 0, 4) + Money("1,5", 0, 0) + Money("1", 0, 0, nullptr),
              "<error 87><error 87><error 87><error 87>");
}

TEST(CurrencyFormat, BufferProtocolInBothWidths) {
    const CURRENCYFMTW format{2, 1, 3, L",", L".", 8, 3, L"\u20AC"};
    EXPECT_EQ(GetCurrencyFormatW(LOCALE_USER_DEFAULT, 0, L"-1234.5", &format, nullptr, 0), 12);
    wchar_t wide[12];
    EXPECT_EQ(FailedWith(GetCurrencyFormatW(LOCALE_USER_DEFAULT, 0, L"-1234.5", &format, wide, 11)),
              ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(GetCurrencyFormatW(LOCALE_USER_DEFAULT, 0, L"-1234.5", &format, wide, 12), 12);
    EXPECT_EQ(std::wstring(wide), L"-1.234,50 \u20AC");
    EXPECT_EQ(FailedWith(GetCurrencyFormatW(LOCALE_USER_DEFAULT, 1, L"1", &format, wide, 12)),
              ERROR_INVALID_FLAGS);
    EXPECT_EQ(FailedWith(GetCurrencyFormatW(LOCALE_USER_DEFAULT, 0, L"1\u0661", &format, wide, 12)),
              ERROR_INVALID_PARAMETER);
    // The locale's own format; the built-in service lays every currency out as the dollar.
    char out[32];
    EXPECT_EQ(GetCurrencyFormatA(2057, LOCALE_NOUSEROVERRIDE, "-5", nullptr, out, 32), 8);
    EXPECT_STREQ(out, "(\2435.00)");
    EXPECT_EQ(FailedWith(GetCurrencyFormatA(0x9999, 0, "1", nullptr, out, 32)),
              ERROR_INVALID_PARAMETER);
}

TEST(LocaleInfo, MoneyFromIcuLayoutFromTheService) {
    const auto info = [](LCID locale, LCTYPE type) -> std::string {
        char out[64];
        if (GetLocaleInfoA(locale, type, out, sizeof out) > 0) return out;
        return "<error " + std::to_string(GetLastError()) + ">";
    };
    // The built-in service: what a country uses for money from ICU, the layout its own.
    // clang-format off
    const struct { LCID locale; LCTYPE type; const char* builtIn; const char* icu; } cases[] = {
        {2057, LOCALE_SCURRENCY, "\xA3", "\xA3"},       {2057, LOCALE_SINTLSYMBOL, "GBP", "GBP"},
        {2057, LOCALE_SENGCOUNTRY, "United Kingdom", "United Kingdom"},
        {1027, LOCALE_SCURRENCY, "\x80", "\x80"},
        {1041, LOCALE_SCURRENCY, "\xA5", "\xA5"},  // U+FFE5 folded to U+00A5
        {1041, LOCALE_ICURRDIGITS, "0", "0"},          {1031, LOCALE_SDECIMAL, ".", ","},
        {LOCALE_USER_DEFAULT, LOCALE_SCURRENCY, "$", "CHF"},
        {LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, ",", "\x92"},  // U+2019
        {LOCALE_USER_DEFAULT, LOCALE_ICURRENCY, "0", "2"},
        {LOCALE_USER_DEFAULT, LOCALE_INEGCURR, "0", "2"}, {1031, LOCALE_SMONDECIMALSEP, ".", ","},
        {1031, LOCALE_ICURRENCY, "0", "3"},            {1031, LOCALE_INEGCURR, "0", "8"},
        {1044, LOCALE_INEGCURR, "0", "12"},            {1081, LOCALE_SGROUPING, "3;0", "3;2;0"},
        {1036, LOCALE_STHOUSAND, ",", " "},  // U+202F folded to a blank
        {0x9999, LOCALE_SCURRENCY, "<error 87>", "<error 87>"},  // no such id
        {0x0009, LOCALE_SENGCOUNTRY, "<error 87>", "<error 87>"},  // a language alone
        {0x9999, LOCALE_SDECIMAL, ".", "."},
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(info(c.locale, c.type), c.builtIn) << c.locale << " " << c.type;
    wchar_t wide[8];
    EXPECT_EQ(GetLocaleInfoW(1041, LOCALE_SCURRENCY, wide, 8), 2);
    EXPECT_EQ(wide[0], L'\uFFE5');

    PlatformServices services;
    services.locale = std::make_shared<IcuLocaleService>("de_CH");
    const ScopedPlatformServices scoped(services);
    for (const auto& c : cases)
        EXPECT_EQ(info(c.locale, c.type), c.icu) << c.locale << " " << c.type;
    char out[32];
    EXPECT_EQ(GetCurrencyFormatA(1031, 0, "-1234.5", nullptr, out, 32), 12);
    EXPECT_STREQ(out, "-1.234,50 \x80");
    EXPECT_EQ(GetNumberFormatA(1081, 0, "1234567.5", nullptr, out, 32), 13);
    EXPECT_STREQ(out, "12,34,567.50");
}

}  // namespace
}  // namespace qvox
