// The order record: copy modes, comparison, prices, lots, actions and category bits.
#include <gtest/gtest.h>

#include "qvox/order/COrderBarProperties.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

C MakeOrder(const char* symbol, LONG quantity) {
    C order;
    order.m_Symbol = symbol;
    order.m_Quantity = quantity;
    order.m_OrderType = "Limit";
    order.m_LimitPriceRaw = 10.5;
    order.m_Side = static_cast<SHORT>('B');
    return order;
}

TEST(Record, AssignmentMergesMarkedFieldsOnly) {
    C target = MakeOrder("MSFT", 100);
    target.m_OCAGroupTag = "G1";
    const C before(target, C::eCopyOrderOnly);
    target = C();
    EXPECT_TRUE(target == before);

    C source;
    source.m_Quantity = 300;
    source.m_Bracket = true;              // group field: not carried by assignment
    source.m_OCAGroupTag = "G2";          // nor this
    source.m_EffectiveParentPrice = 1.0;  // never copied
    source.m_Locate = "LOC1";             // carried though never compared
    target = source;
    EXPECT_TRUE(target.m_Quantity == 300 && target.m_Symbol == "MSFT");
    EXPECT_TRUE(target.m_OCAGroupTag == "G1" && target.m_Locate == "LOC1");
    EXPECT_FALSE(target.m_Bracket.valid || target.m_EffectiveParentPrice.valid);

    // Copy construction marks m_Bracket false; the group modes carry the group fields.
    const C orderOnly(source, C::eCopyOrderOnly);
    EXPECT_TRUE(orderOnly.m_Bracket.valid && !orderOnly.m_Bracket.value);
    const C withGroup(source, C::eCopyWithRelations);
    EXPECT_TRUE(withGroup.m_Bracket == true && withGroup.m_OCAGroupTag == "G2");
    C unchanged = MakeOrder("X", 1);
    unchanged.Copy(source, static_cast<C::ECopyMode>(9));
    EXPECT_TRUE(unchanged.m_Quantity == 1);

    // InValidAll keeps values and legs; without the leg count a copy no longer reaches the legs.
    C invalidated = MakeOrder("IBM", 100);
    invalidated.m_LegCount = static_cast<SHORT>(2);
    invalidated.m_Legs[0].m_Quantity = 5;
    invalidated.m_EffectiveParentPrice = 3.0;
    invalidated.InValidAll();
    EXPECT_FALSE(invalidated.m_Symbol.IsValid() || invalidated.m_Quantity.valid ||
                 invalidated.m_LegCount.valid);
    EXPECT_TRUE(invalidated.m_Symbol.GetText() == "IBM" && invalidated.m_Quantity.value == 100);
    EXPECT_TRUE(invalidated.m_Legs[0].m_Quantity.valid && invalidated.m_EffectiveParentPrice.valid);
    // Without the leg count, a copy no longer reaches the legs.
    C legTarget;
    legTarget.Copy(invalidated, C::eCopyOrderOnly);
    EXPECT_FALSE(legTarget.m_Legs[0].m_Quantity.valid);
    EXPECT_EQ(invalidated.GetAdditionalLeg(0), nullptr);
}

TEST(Record, ComparisonRules) {
    const C a = MakeOrder("IBM", 100);
    C b(a, C::eCopyOrderOnly);
    EXPECT_TRUE(a == b);

    // Texts compare by text alone; numbers by marked value.
    b.m_Symbol.Invalid();
    EXPECT_TRUE(a == b);
    b.m_Quantity.valid = false;
    EXPECT_FALSE(a == b);

    // Fields out of the comparison, and the ones compared only sometimes.
    C c(a, C::eCopyOrderOnly);
    c.m_Short36 = static_cast<SHORT>(3);
    c.m_Locate = "L";
    c.m_OCAGroupTag = "G";
    EXPECT_TRUE(a == c);
    c.m_Condition = "LAST>5";  // compared only when set on the left
    EXPECT_TRUE(a == c);
    EXPECT_FALSE(c == a);
    C d(a, C::eCopyOrderOnly);
    d.m_IfTouchedType = static_cast<SHORT>(1);  // only when set on both
    EXPECT_TRUE(a == d && d == a);
    C e(a, C::eCopyOrderOnly);
    e.m_IfTouchedType = static_cast<SHORT>(2);
    EXPECT_FALSE(d == e);

    // The legs in use, by the left record's leg count.
    C legs(a, C::eCopyOrderOnly);
    legs.m_Legs[0].m_Symbol = "LEG";
    EXPECT_TRUE(legs == a);
    legs.m_LegCount = static_cast<SHORT>(2);
    C legsB(legs, C::eCopyOrderOnly);
    EXPECT_TRUE(legs == legsB);
    legsB.m_Legs[0].m_Symbol = "OTHER";
    EXPECT_FALSE(legs == legsB);
    legs.m_LegCount = static_cast<SHORT>(1);
    legsB.m_LegCount = static_cast<SHORT>(1);
    EXPECT_TRUE(legs == legsB);
}

TEST(Record, PricesFollowTheOrderType) {
    // clang-format off
    const struct { const char* type; bool stopFirst; } types[] = {
        {"Stop Limit", true}, {"Stop Market", true}, {"Limit", false}, {"Market", false},
        {"", false}, {"Close", false}, {"stop limit", false}};
    // clang-format on
    for (const auto& t : types) {
        C order;
        if (*t.type != '\0') order.m_OrderType = t.type;
        order.SetPrice(1.0);
        order.SetStopPrice(2.0);
        EXPECT_EQ(order.GetStopPriceRaw(), t.stopFirst ? 1.0 : 2.0) << t.type;
        EXPECT_EQ(order.GetLimitPriceRaw(), t.stopFirst ? 2.0 : 1.0) << t.type;
        EXPECT_EQ(order.GetPrice(), 1.0);
        EXPECT_TRUE(order.m_LimitPriceRaw.valid && order.m_StopPriceRaw.valid);
    }
    C typed;
    typed.SetOrderType(OrderTypeStopMarket);
    EXPECT_TRUE(typed.m_OrderType == "Stop Market");
    EXPECT_EQ(typed.GetOrderType(), OrderTypeStopMarket);
}

TEST(Record, LotsByQuantityType) {
    // clang-format off
    const struct { SHORT type; bool lotSet; LONG lot; LONG quantity; LONG lots; LONG after; } cases[] = {
        {'#', true, 100, 250, 2, 250}, {'#', true, 100, 5, 5, 500}, {'#', true, 100, 0, 0, 0},
        {'#', false, 0, 7, 7, 7}, {'#', true, 0, 7, 7, 7}, {'#', true, 100, -250, -2, -250},
        {'$', true, 100, 250, 250, 250},
    };
    // clang-format on
    for (const auto& c : cases) {
        C order;
        order.m_QuantityType = c.type;
        if (c.lotSet) order.m_LotSize = c.lot;
        order.m_Quantity = c.quantity;
        const ValidDataT<LONG> lots = order.GetLots();
        EXPECT_TRUE(lots.valid);
        EXPECT_EQ(lots.value, c.lots) << c.quantity;
        EXPECT_EQ(order.m_Quantity.value, c.after) << c.quantity;
    }
    C untyped;
    untyped.m_Quantity = 5;
    EXPECT_FALSE(untyped.GetLots().valid);
    untyped.SetLots(ValidDataT<LONG>(3));
    EXPECT_EQ(untyped.m_Quantity.value, 5);
    untyped.m_QuantityType = static_cast<SHORT>('#');
    untyped.m_LotSize = 100;
    untyped.SetLots(ValidDataT<LONG>(3));
    untyped.SetLots(ValidDataT<LONG>());  // unmarked: nothing
    EXPECT_EQ(untyped.m_Quantity.value, 300);
}

TEST(Record, ActionsWriteAndReadBack) {
    const EMVOrderAction actions[] = {OrderActionBuy, OrderActionSellShort, OrderActionSell,
                                      OrderActionBuyToCover};
    // clang-format off
    const struct { ULONG category; const char* sides; const char* openClose; } table[] = {
        {0, "B-S-", "----"}, {2, "BTSC", "----"}, {3, "BSSB", "OOCC"}, {8, "BSSB", "OOCC"},
        {12, "----", "----"}, {1, "----", "----"},
    };
    // clang-format on
    for (const auto& row : table) {
        for (int i = 0; i < 4; ++i) {
            C order;
            order.m_Side = static_cast<SHORT>('X');
            const bool wrote = order.SetOrderAction(actions[i], row.category);
            EXPECT_EQ(wrote, row.sides[i] != '-') << row.category << " " << i;
            EXPECT_EQ(order.m_Side.value, wrote ? row.sides[i] : 'X');
            if (row.openClose[i] != '-') {
                EXPECT_TRUE(order.m_OpenClose == row.openClose[i]);
            } else {
                EXPECT_FALSE(order.m_OpenClose.valid);
            }
            // What was written reads back as the same action.
            if (wrote) {
                EXPECT_EQ(order.GetOrderAction(), actions[i]) << row.category << i;
            }
        }
    }
    C order;
    EXPECT_FALSE(order.SetOrderAction(OrderActionUnknown, 2));
    EXPECT_EQ(order.GetOrderAction(), OrderActionUnknown);
    order.m_Side = static_cast<SHORT>('T');
    order.m_OpenClose = static_cast<SHORT>('O');
    EXPECT_EQ(order.GetOrderAction(), OrderActionUnknown);
    order.m_OpenClose = static_cast<SHORT>(0);
    EXPECT_EQ(order.GetOrderAction(), OrderActionSellShort);
}

TEST(Record, CategoryBitsAndLegs) {
    C order;
    EXPECT_EQ(order.GetOrderCategory().GetBits(),
              COXOrderCategoryX::SingleLeg | COXOrderCategoryX::Simple);
    order.m_LegCount = static_cast<SHORT>(1);
    EXPECT_TRUE(order.GetOrderCategory().Get().IsSingle());
    order.m_LegCount = static_cast<SHORT>(3);
    EXPECT_TRUE(order.GetOrderCategory().Get().IsSpread());
    EXPECT_EQ(order.GetAdditionalLegCount(), 3u);
    EXPECT_TRUE(order.GetAdditionalLeg(1) == &order.m_Legs[1] &&
                order.GetAdditionalLeg(3) == nullptr);
    order.m_LegCount = static_cast<SHORT>(9);  // more than the record holds
    EXPECT_EQ(order.GetAdditionalLeg(3), nullptr);
    C copy;
    copy.Copy(order, C::eCopyOrderOnly);
    EXPECT_TRUE(copy == order);
}

}  // namespace
}  // namespace qvox
