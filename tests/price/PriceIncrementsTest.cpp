#include "qvox/price/PriceIncrements.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <tuple>

#include "qvox/platform/MinMove.h"
#include "qvox/platform/Platform.h"

namespace qvox {
namespace {

TEST(Increments, ValueOfEverySettingByColumn) {
    // clang-format off
    const struct { int setting; double eq, fut, penny, first, second; } cases[] = {
        {0, 0.01, 1, 1, 1, 1},       {1, 0.01, 1, 1, 1, 1},     {5, 0.05, 5, 5, 5, 5},
        {6, 0.10, 1, 1, 1, 1},       {8, 0.25, 1, 1, 1, 1},     {10, 1.0, 10, 10, 6, 6},
        {11, 0.01, 1, 1, 1, 1},      {12, 0.01, 12, 15, 7, 7},  {25, 0.01, 25, 25, 8, 8},
        {50, 0.01, 50, 50, 10, 9},   {100, 0.01, 100, 100, 20, 10}, {200, 0.01, 1, 1, 1, 1},
        {500, 0.01, 500, 1, 1, 1},   {10000, 0.01, 10000, 1, 1, 1}, {-1, 0.01, 1, 1, 1, 1},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(GetEqIncFromSetting(c.setting), c.eq) << c.setting;
        EXPECT_EQ(GetFutIncFromSetting(c.setting), c.fut) << c.setting;
        EXPECT_EQ(GetOptIncFromSetting(c.setting, OptionThresholdPenny), c.penny) << c.setting;
        EXPECT_EQ(GetOptIncFromSetting(c.setting, OptionThresholdFirstMinMove), c.first);
        EXPECT_EQ(GetOptIncFromSetting(c.setting, OptionThresholdSecondMinMove), c.second);
        EXPECT_EQ(GetOptIncFromSetting(c.setting, static_cast<eQVOXOptionThresholdType>(3)), 0.0);
    }
    // Option settings at their threshold's min move give the display steps.
    EXPECT_DOUBLE_EQ(GetOptIncFromSetting(100, OptionThresholdFirstMinMove) * 0.05, 1.0);
}

TEST(Increments, ByCategoryAndAsPriceSteps) {
    // clang-format off
    for (const auto& [setting, category, increment] : {std::tuple{5, 12u, 5.0}, {8, 12u, 1.0}, {5, 1u, 1.0}, {12, 8u, 15.0}, {9, 2u, 0.5}})
        EXPECT_EQ(GetIncFromSetting(setting, category, OptionThresholdPenny), increment) << setting << ' ' << category;
    // clang-format on
    EXPECT_EQ(GetPriceSpinIncFromSetting(2, 99.0, 'x', 8, OptionThresholdPenny), 0.25);
    EXPECT_EQ(GetPriceSpinIncFromSetting(0, 1.0, 'l', 2, OptionThresholdPenny), 0.03125);
    EXPECT_DOUBLE_EQ(GetPriceSpinAccFromSetting(3, 5.0, 'm', 100, OptionThresholdFirstMinMove),
                     1.0);
    EXPECT_EQ(GetFutIncBasecodeFromSetting(7, 'K'), 'K');
    EXPECT_EQ(GetEqIncBasecodeFromSetting(7, '?'), '?');
}

TEST(MinMoves, ThresholdsAndConversions) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    // clang-format off
    const struct { double minMove; eQVOXOptionThresholdType type; } thresholds[] = {
        {1, OptionThresholdPenny}, {5, OptionThresholdFirstMinMove}, {5.9, OptionThresholdFirstMinMove},
        {10, OptionThresholdSecondMinMove}, {2, OptionThresholdPenny}, {nan, OptionThresholdPenny},
        {1e300, OptionThresholdPenny}, {-5, OptionThresholdPenny},
    };
    // clang-format on
    for (const auto& c : thresholds)
        EXPECT_EQ(GetThresholdType(c.minMove), c.type) << c.minMove;

    // clang-format off
    for (const auto& [value, toMoves, minMove, code, expected] :
         {std::tuple{1.0, true, 2.0, 'l', 32.0}, {32.0, false, 2.0, 'l', 1.0}, {5.0, true, 0.0, 'm', 0.0}, {5.0, false, 1.0, 'a', 50000.0}})
        EXPECT_EQ(ApplyMinMoveConversion(value, toMoves, minMove, code), expected) << value << ' ' << code;
    // clang-format on
    for (ULONG category : {0u, 3u, 8u, 12u})
        EXPECT_EQ(GetDefaultIncrement(category), 1.0);
    for (ULONG category : {1u, 2u, 4u, 254u})
        EXPECT_EQ(GetDefaultIncrement(category), 0.01);
}

// A platform on which min move 7 means 1 below the price 3 and 5 from 3 on.
class TieredMinMoves final : public IMinMoveService {
  public:
    int IsMultiTierMinMove(double minMove) const override { return minMove == 7.0 ? 1 : 0; }
    void GetMinMoveInfo(double, double* threshold, double* below,
                        double* atOrAbove) const override {
        *threshold = 3.0;
        *below = 1.0;
        *atOrAbove = 5.0;
    }
};

TEST(MinMoves, TiersComeFromThePlatform) {
    EXPECT_EQ(GetMinMove(2.99, 7.0), 7.0);  // the built-in platform has no tiers
    PlatformServices services = GetPlatformServices();
    services.minMove = std::make_shared<TieredMinMoves>();
    const ScopedPlatformServices tiered(services);
    EXPECT_EQ(GetMinMove(2.99, 7.0), 1.0);
    EXPECT_EQ(GetMinMove(3.0, 7.0), 5.0);  // at the level counts as above it
    EXPECT_EQ(GetMinMove(100.0, 7.0), 5.0);
    EXPECT_EQ(GetMinMove(100.0, 2.0), 2.0);
    double threshold = 0.0;
    GetMinMoveInfo(7.0, &threshold, nullptr, nullptr);
    EXPECT_EQ(threshold, 3.0);
}

}  // namespace
}  // namespace qvox
