#include "qvox/price/PriceText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <utility>

#include "common/DecimalCommaLocale.h"
#include "qvox/platform/Platform.h"
#include "qvox/price/Helper.h"

namespace qvox {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Among the rows: the longest text there is (13 characters, under f), and a factor code whose
// factor x pieces leaves 32 bits and wraps.
TEST(PieceText, Writes) {
    // clang-format off
    const struct { char code; LONG pieces; int plus; const char* expected; } cases[] = {
        {'l', 6617, 0, "103^25"}, {'l', 25, 0, "^25"}, {'m', 1050, 0, "10.50"}, {'m', 5, 0, ".05"},
        {'m', 0, 0, ".00"}, {'m', 0, 1, " .00"}, {'m', -5, 1, "-.05"}, {'s', 3515, 0, "10^315"},
        {'t', 415, 0, "10.33"}, {'u', 1343, 0, "10^153"}, {'e', 5, 0, "5"}, {'a', 5, 0, "50000"},
        {'m', 100, 0, "1.00"}, {'x', 703, 0, "10^311"}, {'L', 6617, 1, "+103^25"}, {'?', 5, 0, ""},
        {'z', 1234, 0, "1.234"}, {'w', 1, 0, ".000001"}, {'i', 15, 0, "1.5"},
        {'v', 6399, 0, "9^639"}, {'e', 0, 1, " 0"}, {'f', INT32_MIN, 0, "-1073741824^0"},
        {'a', 300000, 0, "3000000000"},
    };
    // clang-format on
    for (const auto& c : cases) {
        char out[14];
        EXPECT_STREQ(Helper::Pieces2String(c.code, c.pieces, out, c.plus), c.expected)
            << c.code << ' ' << c.pieces;
    }
}

TEST(PieceText, WritesDecimals) {
    // clang-format off
    const struct { char code; LONG pieces; int plus; const char* expected; } cases[] = {
        {'l', 6617, 0, "103.390625"}, {'s', 3515, 0, "10.984375"}, {'a', 5, 0, "50000"},
        {'m', 0, 1, "+0.00"}, {'m', -5, 1, "-0.05"}, {'?', 1, 0, ""}, {'e', 7, 1, "+7"},
        {'r', INT32_MIN, 0, "-8388608.00000000"}, {'a', INT32_MIN, 1, "-21474836480000"},
        {'T', 415, 0, "10.375"},
    };
    // clang-format on
    for (const auto& c : cases) {
        char out[18];
        EXPECT_STREQ(Helper::Pieces2DecimalString(c.code, c.pieces, out, c.plus), c.expected)
            << c.code << ' ' << c.pieces;
    }

    // The digits behind the point of each code.
    for (const auto& [code, digits] :
         {std::pair{'l', 6}, {'R', 8}, {'t', 3}, {'a', 0}, {'e', 0}, {'!', 0}})
        EXPECT_EQ(GetDecimalDigit(code), digits) << code;
}

// The last two rows: a text of 99 characters is read whole; of one of 100, the last is cut off.
TEST(PieceText, Reads) {
    const std::string zeros97(97, '0');
    // clang-format off
    const struct { char code; std::string text; LONG expected; } cases[] = {
        {'m', "10.5", 1050}, {'m', "10.05", 1005}, {'m', "10.123", 1012}, {'n', "1.5", 1500},
        {'l', "103^25", 6617}, {'s', "10^315", 3515}, {'s', "10^31", 3510}, {'t', "10.33", 415},
        {'m', "7", 700}, {'x', "10^311", 702}, {'l', "10.25", 665}, {'l', "10^25", 665},
        {'m', "10^25", 1025}, {'a', "7", 70000}, {'a', "7.5", 70000}, {'l', "103^5", 6597},
        {'l', "103.5", 6597}, {'m', "", 0}, {'?', "10.5", 1050}, {'M', "10.5", 1050},
        {'m', "-.05", -5}, {'l', "-^25", -25}, {'m', "-0.05", -5}, {'m', " 10.50", 1050},
        {'m', "+10.50", 1050}, {'l', "-103^25", -6617}, {'u', "10^153", 1343}, {'m', "abc", 0},
        {'m', "10.5x", 1005}, {'a', "99999999999", wrap32::mul(INT32_MAX, 10000)},
        {'m', zeros97 + ".5", 50}, {'m', "0" + zeros97 + ".5", 0},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(Helper::String2Pieces(c.code, c.text.c_str()), c.expected)
            << c.code << " \"" << c.text << '"';
    }
    EXPECT_EQ(Helper::String2Pieces('m', nullptr), 0);
}

TEST(PieceText, EveryWrittenTextReadsBack) {
    std::mt19937 random(7);
    std::uniform_int_distribution<LONG> any(INT32_MIN, INT32_MAX);
    for (char code = 'f'; code <= 'z'; ++code) {
        if (code == 'x') continue;  // writes a third digit that it does not read
        const LONG perUnit = basecode::Scale(code).PiecesPerUnit;
        std::vector<LONG> values = {0,       1,        -1,        perUnit - 1, -perUnit + 1,
                                    perUnit, -perUnit, INT32_MAX, INT32_MIN};
        for (int i = 0; i < 500; ++i)
            values.push_back(any(random));
        for (const LONG pieces : values) {
            for (int plus : {0, 1}) {
                char text[14];
                Helper::Pieces2String(code, pieces, text, plus);
                ASSERT_EQ(Helper::String2Pieces(code, text), pieces) << code << ' ' << text;
            }
        }
    }
}

TEST(FractionText, Writes) {
    // clang-format off
    const struct { double value; char code; int reduce; const char* expected; } cases[] = {
        {103.390625, 'l', 1, "103 25/64"}, {0.5, 'l', 1, "1/2"}, {0.5, 'l', 0, "32/64"},
        {2.999, 'l', 1, "3"}, {10.5, 'm', 0, "10.50"}, {10.96875, 's', 1, "10 31/32"},
        {-3.5, 'l', 1, "3 1/2"}, {-3.5, 'm', 0, "-3.50"}, {7.9, 'a', 0, "79000"},
        {-0.00001, 'a', 0, "0"}, {1.5, '?', 1, ""}, {HUGE_VAL, 'l', 1, ""}, {kNaN, 'm', 1, ""},
        {3e9, 'e', 0, "3000000000"}, {0.0, 'l', 1, "0"}, {5.0, 'L', 1, "5"},
        {1e12 + 0.25, 'g', 1, "1000000000000 1/4"},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_STREQ(Helper::Num2Frac(c.value, c.code, c.reduce), c.expected)
            << c.value << ' ' << c.code;
    }
}

TEST(FractionText, Reads) {
    // clang-format off
    const struct { const char* text; double expected; } cases[] = {
        {"103 25/64", 103.390625}, {"25/64", 0.390625}, {"1.25", 1.25}, {"1/0", 0.0},
        {"-1 1/2", -0.5}, {" 1/2", 0.5}, {"", 0.0}, {"abc", 0.0}, {"1 1/2", 1.5}, {"3/4 ", 0.75},
        {"1e2", 100.0}, {"7/x", 0.0},
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(Helper::Frac2Num(c.text), c.expected) << c.text;
}

TEST(FractionText, MixFractionsBySmallPrimes) {
    // clang-format off
    const struct { LONG n, d, n2, d2; } cases[] = {
        {5, 10, 5, 10}, {50000, 100000, 1, 2}, {62, 1000, 31, 500}, {0, 100, 0, 100}, {1, 8, 1, 8},
        {-4, 8, -1, 2}, {12, 18, 6, 9}, {4, 0, 1, 0}, {74, 148, 37, 74}, {37 * 37, 37 * 74, 1, 2},
    };
    // clang-format on
    for (const auto& c : cases) {
        LONG n = c.n;
        LONG d = c.d;
        mix_fractions(n, d);
        EXPECT_EQ(n, c.n2) << c.n << '/' << c.d;
        EXPECT_EQ(d, c.d2) << c.n << '/' << c.d;
    }
}

TEST(FractionText, FractionNumbers) {
    // clang-format off
    const struct { double value; int precision; const char* expected; } cases[] = {
        {5.5, 3, "5 1/2"}, {0.5, 3, " 1/2"}, {-5.5, 3, "-5 1/2"}, {-0.5, 3, "- 1/2"},
        {5.0, 3, "5"}, {1.1, 3, "1.1"}, {0.0, 3, "0"}, {1.0, 3, "1"}, {0.0625, 1, "0.0625"},
        {0.0625, 2, " 1/16"}, {0.0625, 0, " 1/16"}, {-0.0, 3, "0"}, {103.390625, 6, "103 25/64"},
        {1e30, 3, "1e+30"}, {HUGE_VAL, 3, "inf"}, {-1e-12, 3, "0"},
    };
    // clang-format on
    for (const auto& c : cases) {
        // Exactly the 30 bytes the writers promise to stay in.
        auto out = std::make_unique<char[]>(30);
        GetFractionNumber(c.value, c.precision, out.get());
        EXPECT_STREQ(out.get(), c.expected) << c.value << ' ' << c.precision;
    }
}

class LocaleText : public ::testing::Test {
  protected:
    static PlatformServices Separators(const char* decimal, const char* thousand) {
        NumberConventions conventions;
        conventions.decimalSeparator = decimal;
        conventions.thousandSeparator = thousand;
        PlatformServices services;
        services.locale = std::make_shared<FixedLocaleService>(conventions);
        return services;
    }
};

TEST_F(LocaleText, DisplayText) {
    // clang-format off
    const struct { double value; char code; const char* expected; } cases[] = {
        {10.5, 'm', "10.50"}, {1234567.891, 'm', "1234567.89"},
        {1234567890.5, 'm', "1,234567890.50"}, {-3.456, 'n', "-3.456"},
        {103.390625, 'l', "103 25/64"}, {0.5, 'w', "0.500000"}, {10.96875, 's', "10 31/32"},
        {5.0, 'e', "5"}, {12345.6, 'a', "12346"}, {-0.001, 'm', "0.00"}, {10.5, 'M', "10.50"},
        {10.5, '?', ""}, {1e30, 'm', ""}, {kNaN, 'm', ""},
    };
    // clang-format on
    for (const auto& c : cases) {
        auto out = std::make_unique<char[]>(30);
        GetText(c.value, c.code, out.get());
        EXPECT_STREQ(out.get(), c.expected) << c.value << ' ' << c.code;
    }
    const ScopedPlatformServices german(Separators(",", "."));
    char out[30];
    GetText(1234567890.5, 'm', out);
    EXPECT_STREQ(out, "1.234567890,50");
}

TEST_F(LocaleText, Commas) {
    // clang-format off
    const struct { double value; int decimals; const char* expected; } cases[] = {
        {1234567.891, 2, "1,234,567.89"}, {-999.5, 1, "-999.5"}, {999.0, 0, "999"},
        {1234.0, 0, "1,234"}, {0.0, 2, "0.00"}, {-0.0, 2, "0.00"}, {123456.0, 0, "123,456"},
        {1234.25, -1, "1,234"}, {-1234567.0, 0, "-1,234,567"},
    };
    // clang-format on
    for (const auto& c : cases) {
        char out[64];
        add_commas(out, c.value, c.decimals);
        EXPECT_STREQ(out, c.expected) << c.value << ' ' << c.decimals;
    }
    // Separators from the locale service, and back to the built-in ones when it goes.
    for (const auto& [decimal, thousand, expected] :
         {std::tuple{",", "'", "1'234'567,89"}, {".", "", "1234567.89"}}) {
        const ScopedPlatformServices scoped(Separators(decimal, thousand));
        char out[64];
        add_commas(out, 1234567.891, 2);
        EXPECT_STREQ(out, expected);
    }
    char out[64];
    add_commas(out, 1234.0, 0);
    EXPECT_STREQ(out, "1,234");
}

TEST(PriceText, KeepsItsPointUnderADecimalCommaLocale) {
    const testing::DecimalCommaLocale comma;
    QVOX_EXPECT_DECIMAL_COMMA(comma);
    char out[30];
    EXPECT_STREQ(Helper::Pieces2DecimalString('l', 6617, out, 0), "103.390625");
    EXPECT_STREQ(Helper::Num2Frac(10.5, 'm', 0), "10.50");
    EXPECT_TRUE(Helper::Frac2Num("1.25") == 1.25 && Helper::String2Pieces('m', "10.5") == 1050);
    GetFractionNumber(1.1, 3, out);
    EXPECT_STREQ(out, "1.1");
    GetText(10.5, 'm', out);  // the separator comes from the locale service, not the C locale
    EXPECT_STREQ(out, "10.50");
}
}  // namespace
}  // namespace qvox
