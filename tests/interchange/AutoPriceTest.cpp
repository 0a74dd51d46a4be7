// Auto prices: the calculator's rules, and the effective price of orders through the OSO tree.
#include <gtest/gtest.h>

#include "qvox/interchange/CAutoPriceHelper.h"
#include "qvox/order/COrderBarProperties.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

TEST(AutoPriceHelper, RulesBySide) {
    // clang-format off
    const struct { const char* word; double offset, tick; char side; double expected; bool market; } cases[] = {
        {"IMP", 0.02, 0.01, 'B', 10.02, true}, {"Improve", 0.02, 0.05, 'B', 10.05, true},
        {"IMP", 0.02, 0.05, 'S', 10.05, true},   // ask 10.10 - 0.02, floor to 0.05
        {"SHV", 0.02, 0.05, 'B', 10.05, true},   // ask 10.10 - 0.02, floor
        {"SHV", 0.02, 0.05, 'S', 10.05, true},   // bid 10.00 + 0.02, ceil
        {"JON", 0, 0.01, 'C', 10.00, true}, {"JON", 0, 0.01, 'T', 10.10, true},
        {"SPL", 0, 0.01, 'S', 10.05, true}, {"HTK", 0, 0.01, 'B', 10.10, true},
        {"HTP", 0.01, 0.01, 'S', 9.99, true}, {"Bid", 0, 0.01, 'S', 10.00, true},
        {"Last", 0, 0.01, 'B', 10.04, true}, {"Offset from Ask", 0.03, 0.01, 'B', 10.13, true},
        {"Offset from Last", 0.03, 0.01, 'S', 10.07, true},
        {"DLT", 0.5, 0.01, 'B', 25.50, false},  // from the parent
        {"STP", -0.25, 0.01, 'B', 9.75, true}, {"STP", -0.25, 0.01, 'S', 9.25, true},
        {"LIT", -0.25, 0.01, 'S', 11.25, true}, {"IMPD", 0.02, 0.01, 'B', 0.0, true},
        {"nonsense", 1, 0.01, 'B', 0.0, true}, {"IMP", 0.02, 0.0, 'B', 10.02, true},  // no step
    };
    // clang-format on
    for (const auto& c : cases) {
        CAutoPriceHelper helper;
        helper.SetLimitAutoPrice('m', c.word, c.offset, c.tick);
        bool market = false;
        const double price =
            helper.GetLimitPrice(c.side, 10.10, 10.00, 10.04, 25.0, 9.5, 11.0, market);
        EXPECT_NEAR(price, c.expected, 1e-9) << c.word << " " << c.side << " " << c.tick;
        EXPECT_EQ(market, c.market) << c.word;
    }
    // r() keeps 2.0000000001 steps at 2 under ceil.
    CAutoPriceHelper helper;
    helper.SetLimitAutoPrice('m', "IMP", 0.0000000001, 1.0);
    bool market = false;
    EXPECT_DOUBLE_EQ(helper.GetLimitPrice('B', 0, 2.0, 0, 0, 0, 0, market), 2.0);
    // The stop rule keeps a negative offset's sign; parent 0 means last.
    helper.SetStopAutoPrice('m', "Offset from Stop Price", -0.25, 0.01);
    EXPECT_DOUBLE_EQ(helper.GetStopPrice('B', 0, 0, 0, 0, market), 0.0 - 0.25);
    helper.SetIfTouchAutoPrice('m', "DLT", 1.0, 0.01);
    EXPECT_DOUBLE_EQ(helper.GetIfTouchPrice('B', 0, 0, 7.0, 0.0, market), 8.0);

    EXPECT_FALSE(IsAutopriceOffsetNeeded("Join") || IsAutopriceOffsetNeeded("") ||
                 IsAutopriceOffsetNeeded("Hit/Take") || IsAutopriceOffsetNeeded("Split"));
    EXPECT_TRUE(IsAutopriceOffsetNeeded("Improve") && IsAutopriceOffsetNeeded("whatever"));
}

C Priced(const char* type) {
    C order;
    order.m_OrderType = type;
    order.m_SymbolCategory = 2;
    order.m_Side = static_cast<SHORT>('B');
    order.m_PieceValue = 0.01;
    order.m_MinMove = 1.0;
    return order;
}

TEST(EffectivePrice, ByOrderTypeAndThroughTheTree) {
    C limit = Priced("Limit");
    limit.m_AutoPrice = "Improve";
    limit.m_AutoPriceIncrement = "2";
    EXPECT_NEAR(limit.GetEffectivePrice(10.00, 10.10, 10.04), 10.02, 1e-9);  // bid, ask, last

    C market = Priced("Market");
    EXPECT_DOUBLE_EQ(market.GetEffectivePrice(1, 2, 3), 3.0);
    market.m_IfTouchedType = static_cast<SHORT>(1);
    market.m_IfTouchedPrice = 4.5;
    EXPECT_DOUBLE_EQ(market.GetEffectivePrice(1, 2, 3), 4.5);
    EXPECT_DOUBLE_EQ(Priced("").GetEffectivePrice(1, 2, 3), 0.0);

    C trailing = Priced("Stop Market");
    trailing.m_TrailType = static_cast<SHORT>(1);
    trailing.m_TrailAmount = 5.0;
    EXPECT_NEAR(trailing.GetEffectivePrice(0, 0, 10.0), 10.05, 1e-9);
    trailing.m_Side = static_cast<SHORT>('S');
    trailing.m_TrailType = static_cast<SHORT>(2);
    EXPECT_NEAR(trailing.GetEffectivePrice(0, 0, 10.0), 9.5, 1e-9);

    // A child offset from its parent, two generations down.
    C parent = Priced("Limit");
    parent.SetLimitPriceRaw(20.0);
    C* child = parent.AddOSOChildOrder(new C(Priced("Limit"), C::eCopyOrderOnly), true);
    child->m_AutoPrice = "Offset from Primary";
    child->m_AutoPriceIncrement = "50";
    C* sibling = child->AddOrderToOCAGroup(new C(Priced("Limit"), C::eCopyOrderOnly), true);
    C* grandChild = sibling->AddOSOChildOrder(new C(Priced("Limit"), C::eCopyOrderOnly), true);
    grandChild->m_AutoPrice = "Offset from Primary";
    grandChild->m_AutoPriceIncrement = "-100";
    sibling->SetLimitPriceRaw(30.0);
    EXPECT_NEAR(child->GetEffectivePrice(0, 0, 1.0), 20.5, 1e-9);
    EXPECT_NEAR(grandChild->GetEffectiveParentPrice(0, 0, 1.0), 30.0, 1e-9);
    EXPECT_NEAR(grandChild->GetEffectivePrice(0, 0, 1.0), 29.0, 1e-9);

    parent.SetEffectiveParentPrice(0, 0, 1.0);
    EXPECT_TRUE(child->m_EffectiveParentPrice == 20.0 && sibling->m_EffectiveParentPrice == 20.0);
    EXPECT_TRUE(grandChild->m_EffectiveParentPrice == 30.0);
    // Without a parent the stored price stands in for it.
    C alone = Priced("Limit");
    alone.m_AutoPrice = "Offset from Primary";
    alone.m_AutoPriceIncrement = "1";
    alone.m_EffectiveParentPrice = 7.0;
    EXPECT_NEAR(alone.GetEffectivePrice(0, 0, 1.0), 7.01, 1e-9);

    EXPECT_TRUE(limit.IsAutopriceOffsetNeeded(APTypeLimit) &&
                limit.IsAutopriceOffsetNeeded(APTypeLimitAlso));
    EXPECT_FALSE(limit.IsAutopriceOffsetNeeded(APTypeStop) ||
                 limit.IsAutopriceOffsetNeeded(static_cast<eQVAPType>(5)));
}

}  // namespace
}  // namespace qvox
