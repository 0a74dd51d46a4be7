#include "qvox/price/Helper.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>

namespace qvox {
namespace {

// Reaches the protected members; never instantiated.
struct HelperAccess : Helper {
    using Helper::round2long;
    using Helper::strncopy;
};

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(BaseCodes, ClassifiesEveryChar) {
    int letters = 0;
    int decimals = 0;
    for (int i = CHAR_MIN; i <= CHAR_MAX; ++i) {
        letters += Helper::IsValidBaseCode(static_cast<char>(i));
        decimals += Helper::IsBaseCodeDecimal(static_cast<char>(i));
    }
    EXPECT_EQ(letters, 52);
    EXPECT_EQ(decimals, 8);
    for (char c : {'e', 'i', 'm', 'n', 'o', 'p', 'w', 'z'})
        EXPECT_EQ(Helper::IsBaseCodeDecimal(c), 1);
    EXPECT_EQ(Helper::IsBaseCodeDecimal('t'), 0);
    EXPECT_EQ(Helper::IsBaseCodeDecimal('M'), 0);

    // The texts of the scales.
    // clang-format off
    const struct { char code; const char* text; } texts[] = {
        {'a', "10000"}, {'e', "As is"}, {'l', "1/64"}, {'t', "1/10 and \xBC of 10th"},
        {'y', "1/64 and \xBD of 64th"}, {'z', "Display 1/100 truncated, Calc 1/1000"}, {'7', "1/100"},
    };
    // clang-format on
    for (const auto& t : texts)
        EXPECT_STREQ(Helper::GetPriceScaleString(t.code), t.text) << t.code;
    EXPECT_EQ(Helper::GetPriceScaleString('L'), nullptr);
}

TEST(Round2Long, HalvesAwayFromZeroAndGuardsTheRange) {
    // clang-format off
    const struct { double value; LONG expected; } cases[] = {
        {2.5, 3}, {-2.5, -3}, {2.4999, 2}, {-2.4999, -2}, {0.5, 1}, {-0.5, -1}, {0.0, 0},
        {kNaN, 0}, {2147483647.0, 0}, {2147483646.5, INT32_MAX}, {-2147483648.0, 0},
        {-2147483647.5, INT32_MIN}, {1e300, 0}, {-HUGE_VAL, 0},
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(HelperAccess::round2long(c.value), c.expected) << c.value;
}

TEST(Strncopy, AlwaysTerminates) {
    char out[8];
    EXPECT_STREQ(HelperAccess::strncopy(out, "abcdef", 4), "abc");
    EXPECT_STREQ(HelperAccess::strncopy(out, "ab", 8), "ab");
    std::memset(out, 'x', sizeof out);
    EXPECT_STREQ(HelperAccess::strncopy(out, "abc", 1), "");
    std::memset(out, 'x', sizeof out);
    EXPECT_STREQ(HelperAccess::strncopy(out, "abc", 0), "");
    EXPECT_TRUE(*HelperAccess::strncopy(out, nullptr, 8) == '\0' &&
                HelperAccess::strncopy(nullptr, "abc", 8) == nullptr);
}

TEST(PiecesAndDecimals, ConvertBothWays) {
    EXPECT_EQ(Helper::Pieces2Decimal(5, 'a'), 50000.0);
    EXPECT_EQ(Helper::Pieces2Decimal(5, '?'), 0.05);
    EXPECT_EQ(Helper::Pieces2Decimal(6617, 'L'), 103.390625);
    // clang-format off
    const struct { double value; char code; LONG pieces; } cases[] = {
        {0.5, 'e', 1}, {-0.5, 'e', -1}, {2147483647.0, 'e', 0}, {103.390625, 'l', 6617},
        {12345.0, 'c', 123}, {kNaN, 'm', 0},  // 123.45 pieces of 100 are cut
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(Helper::Decimal2Pieces(c.value, c.code), c.pieces) << c.value << ' ' << c.code;
    EXPECT_EQ(Helper::GetBaseCodeDecimalFactor('b'), 1000.0);
    EXPECT_EQ(Helper::GetBaseCodeDecimalFactor('K'), 1.0 / 32);
    EXPECT_EQ(Helper::GetBaseCodeDecimalFactor('#'), 0.01);
}

TEST(Signal2Pieces, UnpacksOnlyUpperCaseFractionCodes) {
    // clang-format off
    const struct { char code; LONG value; LONG expected; } cases[] = {
        {'L', 10325, 6617}, {'S', 10315, 3515}, {'T', 1037, 415}, {'U', 10157, 1343},
        {'l', 10325, 10325}, {'M', 10325, 10325}, {'L', 25, 25}, {'X', 10311, 10311},
        {'Y', 777, 777}, {'A', 5, 5}, {'?', 5, 5}, {'L', -10325, -6567}, {'L', -25, 25},
        {'F', 31, 7}, {'Q', 1127, 1 * 128 + 127}, {'V', 10639, 10 * 640 + 63 * 10 + 9},
        {'T', 7, 4 * 7}, {'S', -35, -25}, {'T', -37, 15}, {'L', INT32_MIN, -21474836 * 64 + 48},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(Helper::Signal2Pieces(c.code, c.value), c.expected) << c.code << ' ' << c.value;
    }
}

TEST(Fraction2Basecode, FindsFirstMatchAndLeavesCodeOnFailure) {
    // clang-format off
    const struct { LONG factor, levels, d1, d2; int found; char code; } cases[] = {
        {0, 1, 1000, 0, 1, 'n'}, {0, 2, 32, 4, 1, 'u'}, {0, 2, 32, 3, 0, '-'},
        {100, 7, 7, 7, 1, 'c'}, {10000, 0, 0, 0, 1, 'a'}, {7, 1, 64, 0, 0, '-'},
        {0, 0, 9, 9, 1, 'e'}, {0, 3, 64, 0, 0, '-'}, {0, 1, 64, 0, 1, 'l'}, {0, 2, 64, 2, 1, 'y'},
        {0, 1, 32, 0, 1, 'k'}, {0, 2, 10, 4, 1, 't'},
    };
    // clang-format on
    for (const auto& c : cases) {
        char code = '-';
        EXPECT_EQ(Helper::Fraction2Basecode(c.factor, c.levels, c.d1, c.d2, code), c.found);
        EXPECT_EQ(code, c.code) << c.factor << ' ' << c.levels << ' ' << c.d1 << ' ' << c.d2;
    }
}

TEST(Value2Pieces, TakesTheSignFromTheWholePart) {
    // clang-format off
    const struct { LONG whole, factor, levels, n1, d1, n2, d2; char code; LONG pieces; } cases[] = {
        {-10, 0, 1, 25, 64, 0, 0, 'l', -665}, {0, 0, 1, 25, 64, 0, 0, 'l', 25},
        {10, 0, 2, 31, 32, 5, 10, 's', 3515}, {-10, 0, 2, 31, 32, 5, 10, 's', -3515},
        {7, 100, 0, 0, 0, 0, 0, 'c', 700}, {42, 0, 0, 1, 1, 1, 1, 'e', 42},
        {INT32_MAX, 10000, 0, 0, 0, 0, 0, 'a', wrap32::mul(INT32_MAX, 10000)},
    };
    // clang-format on
    for (const auto& c : cases) {
        char code = '-';
        LONG pieces = -1;
        ASSERT_EQ(
            Helper::Value2Pieces(c.whole, c.factor, c.levels, c.n1, c.d1, c.n2, c.d2, code, pieces),
            1);
        EXPECT_EQ(code, c.code);
        EXPECT_EQ(pieces, c.pieces) << c.whole << ' ' << c.n1;
        EXPECT_EQ(Helper::Value2PiecesV3(c.whole, c.factor, c.levels, c.n1, c.d1, c.n2, c.d2, code,
                                         pieces),
                  1);
    }
    char code = '-';
    LONG pieces = -1;
    EXPECT_EQ(Helper::Value2Pieces(1, 0, 2, 1, 32, 1, 3, code, pieces), 0);
    EXPECT_EQ(pieces, -1);
    EXPECT_EQ(code, '-');

    EXPECT_EQ(Helper::Value2PiecesV2(10, 31, 5, 's'), 3515);
    EXPECT_EQ(Helper::Value2PiecesV2(-10, 31, 5, 'S'), -3515);
    EXPECT_EQ(Helper::Value2PiecesV2(7, 99, 99, 'a'), 70000);
    EXPECT_EQ(Helper::Value2PiecesV2(103, 25, 99, 'l'), 6617);  // one level: numerator2 unused
    EXPECT_EQ(Helper::Value2PiecesV2(10, 50, 0, '%'), 1050);
}

TEST(ConvertPieces, TruncatesAndGuards) {
    // A million pieces per unit against a factor of 10000 wraps the 32-bit numerator ('a' to
    // 'w'); 0 is the factor NaN, and every overflow of the result.
    // clang-format off
    const struct { LONG pieces; char from, to; double factor; LONG expected; } cases[] = {
        {25, 'm', 'k', 0, 8}, {6617, 'l', 'R', 0, 26468}, {3, 'm', 'f', 0, 0}, {-3, 'm', 'f', 0, 0},
        {7, 'a', 'e', 0, 70000}, {5, '1', 'e', 0, 5}, {5, 'M', 'm', 0, 5}, {INT32_MAX, 'e', 'm', 0, 0},
        {1, 'a', 'w', 0, wrap32::mul(1000000, 10000)},
        {3, 'm', 'm', 2.5, 7}, {-3, '?', 'm', 2.5, -7}, {25, 'm', 'k', 2.0, 16},
        {INT32_MAX, 'm', 'm', 1.0, 0}, {5, 'm', 'k', kNaN, 0},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(c.factor == 0
                      ? Helper::ConvertPieces_From_BaseCode1_To_BaseCode2(c.pieces, c.from, c.to)
                      : Helper::ConvertPieces_From_BaseCode1_To_BaseCode2Ex(c.pieces, c.from, c.to,
                                                                            c.factor),
                  c.expected)
            << c.pieces << ' ' << c.from << c.to << ' ' << c.factor;
    }
}

TEST(ConvertPieces, FamiliesAndPrecision) {
    // clang-format off
    const struct { char from, to; int canConvert, loss; } cases[] = {
        {'a', 'e', 1, 0}, {'e', 'a', 1, 0}, {'e', 'z', 1, 0}, {'f', 'e', 1, 1}, {'a', 'f', 0, 0},
        {'f', 'a', 0, 1}, {'m', 'q', 1, 0}, {'q', 'm', 1, 1}, {'m', 'M', 1, 0}, {'?', 'm', 0, 1},
        {'m', '?', 0, 1}, {'d', 'B', 1, 0},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(Helper::Can_Convert_BaseCodes(c.from, c.to), c.canConvert) << c.from << c.to;
        EXPECT_EQ(Helper::IsBaseCodePrecisionLoss(c.from, c.to), c.loss) << c.from << c.to;
    }
}

TEST(Numbers, DecimalsOfAScaleAndCommonFactors) {
    // clang-format off
    const struct { double scale; int decimals; } scales[] = {
        {0.01, 2}, {1, 0}, {0.125, 3}, {0.015625, 6}, {100, 2}, {1.0 / 256, 8}, {0, 0}, {-0.5, 0},
        {kNaN, 0}, {HUGE_VAL, 0},
    };
    // clang-format on
    for (const auto& c : scales) {
        EXPECT_EQ(Helper::GetNumberOfDecimalsFromPriceScale(c.scale), c.decimals) << c.scale;
    }
    // clang-format off
    const struct { LONG a, b, gcf, gcd; } factors[] = {
        {12, 18, 6, 6}, {0, -5, 5, -5}, {7, 0, 7, 7}, {7, 7, 7, 7}, {-4, 6, 2, 2},
        {1, INT32_MAX, 1, 1},  // CalcGCD must not take 2^31 subtractions
    };
    // clang-format on
    for (const auto& f : factors) {
        EXPECT_EQ(Helper::GCF(f.a, f.b), f.gcf) << f.a << ' ' << f.b;
        EXPECT_EQ(CalcGCD(f.a, f.b), f.gcd) << f.a << ' ' << f.b;
    }
    EXPECT_EQ(Helper::GCF(-12, 18), 6);
    EXPECT_EQ(Helper::GCF(INT32_MIN, INT32_MIN), INT32_MIN);
}

}  // namespace
}  // namespace qvox
