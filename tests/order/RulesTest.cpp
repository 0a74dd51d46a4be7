// Order rules: accounts and sides through a graph, what may be deleted, category moves, and the
// advanced options switched off.
#include <gtest/gtest.h>

#include <string>

#include "qvox/order/COrderBarProperties.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

C* WithAccount(const char* account, char side = 'B') {
    auto* order = new C;
    order->m_Account = account;
    order->m_Side = static_cast<SHORT>(side);
    return order;
}

TEST(Rules, AccountsSidesAndDeletionThroughAGraph) {
    C head;
    head.m_Account = "A";
    C* second = head.AddOrderToOCAGroup(WithAccount("A"), true);
    C* third = head.AddOrderToOCAGroup(WithAccount("B"), true);
    CString error = "untouched";
    EXPECT_TRUE(second->IsValidRelation(error) && error == "untouched");  // not a head
    EXPECT_FALSE(head.IsValidRelation(error));
    EXPECT_EQ(error, "All orders in an OCO/Bracket group should have same account.");

    third->m_Account = "A";
    third->m_Account.Invalid();  // same text without the mark still fails
    EXPECT_FALSE(head.IsValidRelation(error));
    third->m_Account = "A";
    EXPECT_TRUE(head.IsValidRelation(error));

    // A child chain may use another account, but must agree with itself, however deep.
    C* child = second->AddOSOChildOrder(WithAccount("Z"), true);
    C* grandchild = child->AddOSOChildOrder(WithAccount("Y"), true);
    grandchild->AddOrderToOCAGroup(WithAccount("Y"), true);
    EXPECT_TRUE(head.IsValidRelation(error));
    C* last = grandchild->AddOrderToOCAGroup(WithAccount("X"), true);
    EXPECT_FALSE(head.IsValidRelation(error));
    C alone;
    EXPECT_TRUE(alone.IsValidRelation(error));

    // Every order of the graph needs a side; ' ' counts as none.
    head.m_Side = static_cast<SHORT>('S');
    EXPECT_TRUE(head.IsValidAction());
    last->m_Side = static_cast<SHORT>(' ');
    EXPECT_FALSE(head.IsValidAction());
    last->m_Side = static_cast<SHORT>('B');
    third->m_Side.valid = false;
    EXPECT_FALSE(head.IsValidAction());

    // What may be deleted: never the root, and not the first pair of a bracket at the top. The
    // record asked plays no part.
    EXPECT_TRUE(!alone.CanDelete(&head) && alone.CanDelete(third) && !alone.CanDelete(nullptr));
    head.UpdateGroupBracketFlag(true);
    EXPECT_TRUE(!alone.CanDelete(second) && alone.CanDelete(third) && alone.CanDelete(child));
}

TEST(Rules, CategoryMovesRestateSideAndOpenClose) {
    // clang-format off
    const struct { LONG from, to; char side, openClose, sideAfter, openCloseAfter; } rows[] = {
        {0, 3, 'B', ' ', 'B', 'O'},  {0, 8, 'S', ' ', 'S', 'C'}, {2, 3, 'B', ' ', 'B', 'O'},
        {2, 3, 'C', ' ', 'B', 'C'},  {2, 8, 'S', ' ', 'S', 'C'}, {2, 3, 'T', ' ', 'S', 'O'},
        {2, 0, 'C', 'x', 'B', 'x'},  {2, 0, 'T', 'x', 'S', 'x'}, {3, 2, 'B', 'O', 'B', 'O'},
        {3, 2, 'B', 'C', 'C', 'C'},  {8, 2, 'S', 'O', 'T', 'O'}, {3, 2, 'S', 'C', 'S', 'C'},
        {3, 0, 'S', 'O', 'S', 'O'},  {0, 2, 'S', 'x', 'S', 'x'}, {3, 8, 'B', 'O', 'B', 'O'},
        {12, 3, 'B', 'x', 'B', 'x'}, {2, 3, 'X', 'x', 'X', 'x'},
    };
    // clang-format on
    for (const auto& row : rows) {
        C order;
        order.m_SymbolCategory = row.from;
        order.m_Side = static_cast<SHORT>(row.side);
        order.m_OpenClose = static_cast<SHORT>(row.openClose);
        order.UpdateOrderPropertyAccordingToCategory(row.to);
        const std::string where = std::to_string(row.from) + "->" + std::to_string(row.to) + " " +
                                  row.side + row.openClose;
        EXPECT_EQ(order.m_Side.value, row.sideAfter) << where;
        EXPECT_EQ(order.m_OpenClose.value, row.openCloseAfter) << where;
        EXPECT_EQ(order.m_SymbolCategory, row.to) << where;
    }
    // A short sale survives the trip to options and back; without a category there is nothing
    // to restate from.
    C order;
    order.m_SymbolCategory = 2;
    order.m_Side = static_cast<SHORT>('T');
    order.UpdateOrderPropertyAccordingToCategory(3);
    order.UpdateOrderPropertyAccordingToCategory(2);
    EXPECT_EQ(order.m_Side.value, 'T');
    C fresh;
    fresh.m_Side = static_cast<SHORT>('T');
    fresh.UpdateOrderPropertyAccordingToCategory(3);
    EXPECT_TRUE(fresh.m_Side == 'T' && !fresh.m_OpenClose.valid && fresh.m_SymbolCategory == 3);
}

TEST(Rules, AdvancedOptionsOff) {
    C order;
    order.m_SymbolCategory = 2;
    order.SetAdvancePropertyFromString(
        "AON;NOW;NON;BMS;SEX;SHWQTY=100;DSCPR=0.05;PEGVAL=MID;PEGINC=NONE;TAG=3;TRL=5;"
        "TIM=09:30:00;CND=LAST>5;MIT=12.5(Bid);STPTRG=DBA;",
        false);
    C invalidated = order;
    invalidated.InvalidateAdvanceOption();
    EXPECT_FALSE(invalidated.m_AllOrNone.valid);
    EXPECT_TRUE(invalidated.m_Condition == "");
    order.RestAllAdvanceOption();
    EXPECT_EQ(order.m_AllOrNone.value, -1);
    EXPECT_EQ(order.m_TrailType, static_cast<SHORT>(0));
    // The show quantity, discretionary amount and peg value stay, but nothing switches them on.
    const std::string written(order.GetAdvancePropertyAsString(false, 0));
    for (const char* tag : {"AON", "NOW", "NON", "BMS", "SEX", "SHWQTY", "DSCPR", "PEGVAL", "TAG",
                            "TRL", "TIM", "CND", "MIT", "STPTRG"}) {
        EXPECT_EQ(written.find(tag), std::string::npos) << tag << " in " << written;
    }
}

TEST(Rules, AutoPriceWords) {
    C order;
    order.m_SymbolCategory = 2;
    order.SetAutoPrice(AutoPriceImprove);
    EXPECT_EQ(order.m_AutoPrice.GetText(), "Improve");
    EXPECT_EQ(order.GetAutoPrice(), AutoPriceImprove);
    order.SetStopAutoPrice(AutoPriceNone);
    EXPECT_TRUE(order.m_StopAutoPrice == "");
    order.SetAutoPriceIncrement(2, 2);
    EXPECT_EQ(order.GetAutoPriceIncrement(), 2);
    order.SetAutoPriceIncrement(0, 2);
    EXPECT_TRUE(order.m_AutoPriceIncrement == "");
    C unset;
    unset.SetAutoPriceIncrement(0, 2);
    EXPECT_FALSE(unset.m_AutoPriceIncrement.IsValid());

    EXPECT_FALSE(order.CanSendAutoPrice());
    order.m_ActivationRule = static_cast<SHORT>(1);
    EXPECT_TRUE(order.CanSendAutoPrice());
}

}  // namespace
}  // namespace qvox
