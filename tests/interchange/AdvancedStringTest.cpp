// The advanced options string: the writer's items, the reader's grammar, and what a round trip
// keeps.
#include <gtest/gtest.h>

#include <memory>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/COleDateTime.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/SystemTimeService.h"
#include "qvox/vocabulary/COXStringForDisplay.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

// New York's rule, and "now" on 1 July 2025 at noon: daylight time, GMT = local + 4 hours.
class AdvancedString : public ::testing::Test {
  protected:
    void SetUp() override {
        // Year, month, weekday, day (here the week of the month), hour.
        const TIME_ZONE_INFORMATION rule{300, {0, 11, 0, 1, 2}, 0, {0, 3, 0, 2, 2}, -60};
        const SYSTEMTIME now{2025, 7, 0, 1, 12};
        PlatformServices services;
        services.time = std::make_shared<FixedTimeService>(rule, now, TIME_ZONE_ID_DAYLIGHT);
        scoped_ = std::make_unique<ScopedPlatformServices>(services);
    }

    static C WorkedExample() {
        C order;
        order.m_SymbolCategory = 2;
        order.m_OrderType = "Limit";
        order.m_AllOrNone = static_cast<SHORT>(1);
        order.m_ShowOnly = static_cast<SHORT>(1);
        order.m_ShowQuantity = 100;
        order.m_Tag = 7;
        order.m_Peg = static_cast<SHORT>(1);
        order.m_PegValue = "MID";
        order.m_OCAGroupTag = "G1";
        order.m_TrailType = static_cast<SHORT>(1);
        order.m_TrailAmount = 5.0;
        order.m_ActivationRule = static_cast<SHORT>(1);
        order.m_ActivationTime = COleDateTime(2024, 1, 2, 9, 30, 0).m_dt;
        order.m_AutoPrice = "Improve";
        order.m_AutoPriceIncrement = "2.000000";
        return order;
    }

    std::unique_ptr<ScopedPlatformServices> scoped_;
};

constexpr const char* kWorked =
    "AON;SHWQTY=100;TAG=7;PEGVAL=MID;PEGINC=NONE;OCA=G1;TRL=5;TIM=09:30:00;LMT=IMP2;";

TEST_F(AdvancedString, WorkedExampleBothWays) {
    const C order = WorkedExample();
    EXPECT_STREQ(order.GetAdvancePropertyAsString(false, 0), kWorked);
    EXPECT_STREQ(C().GetAdvancePropertyAsString(false, 0), "");

    C back;
    back.m_OrderType = "Limit";
    back.SetAdvancePropertyFromString(kWorked, false);
    EXPECT_TRUE(back.m_AllOrNone == 1 && back.m_ShowOnly == 1 && back.m_ShowQuantity == 100);
    EXPECT_TRUE(back.m_Tag == 7 && back.m_Peg == 1 && back.m_PegValue == "MID");
    EXPECT_TRUE(back.m_OCAGroupTag == "G1" && back.m_Bracket == false);
    EXPECT_TRUE(back.m_TrailType == 1 && back.m_TrailAmount == 5.0);
    const COleDateTime time(back.m_ActivationTime.value);
    EXPECT_TRUE(back.m_ActivationRule == 1 && time.GetHour() == 9 && time.GetMinute() == 30);
    EXPECT_EQ(time.GetDay(), 1);  // today's date, not the stored one
    EXPECT_TRUE(back.m_AutoPrice == "Improve" && back.m_AutoPriceIncrement == "2.000000");
    back.m_SymbolCategory = 2;
    EXPECT_STREQ(back.GetAdvancePropertyAsString(false, 0), kWorked);

    // The omit bits cut the tail at their places.
    EXPECT_STREQ(order.GetAdvancePropertyAsString(false, AdvStringOmitTail),
                 "AON;SHWQTY=100;TAG=7;PEGVAL=MID;PEGINC=NONE;OCA=G1;TRL=5;");
    EXPECT_STREQ(
        order.GetAdvancePropertyAsString(false, AdvStringOmitTrailing | AdvStringOmitAutoPrice),
        "AON;SHWQTY=100;TAG=7;PEGVAL=MID;PEGINC=NONE;OCA=G1;TIM=09:30:00;");

    // In GMT the times move by the zone rule of today's date.
    const CString gmt = order.GetAdvancePropertyAsString(true, AdvStringOmitAutoPrice);
    EXPECT_NE(gmt.Find("TIM=13:30:00;"), -1) << gmt.GetString();
    C fromGmt;
    fromGmt.SetAdvancePropertyFromString("EXP=13:30:05;TIM=25:00:00;", true);
    const COleDateTime expires(fromGmt.m_ExpirationTime.value);
    EXPECT_TRUE(expires.GetHour() == 9 && expires.GetSecond() == 5);
    // An hour past the day runs on into the next day instead of failing: 25:00 GMT is 01:00
    // GMT tomorrow, 21:00 local today.
    EXPECT_TRUE(fromGmt.m_ActivationRule == 1);
    EXPECT_EQ(COleDateTime(fromGmt.m_ActivationTime.value).GetHour(), 21);
}

// What the reader makes of each item the writer emits.
TEST_F(AdvancedString, WriterAgainstReader) {
    // clang-format off
    struct Row { void (*fill)(C&); const char* written; void (*check)(const C&); };
    const Row rows[] = {
        {[](C& o) { o.m_Discretionary = static_cast<SHORT>(1); o.m_DiscretionaryAmount = 0.05; },
         "DSCPR=0.050000;", [](const C& o) { EXPECT_TRUE(o.m_DiscretionaryAmount == 0.05); }},
        {[](C& o) { o.m_TrailType = static_cast<SHORT>(2); o.m_TrailAmount = 1.5; },
         "TRL=1.500000%;", [](const C& o) { EXPECT_TRUE(o.m_TrailType == 2 && o.m_TrailAmount == 1.5); }},
        {[](C& o) { o.m_OrderCategoryOverride = 0x40u; },
         "OSO=PARENT1;", [](const C& o) { EXPECT_TRUE(o.m_OSOTag == "PARENT1"); }},
        {[](C& o) { o.m_SymbolCategory = 3; o.m_PieceValue = 0.01; o.m_TrailType = static_cast<SHORT>(1); o.m_TrailAmount = 4.0; },
         "TRL=D0.040000;", [](const C& o) { EXPECT_NEAR(o.m_TrailAmount.value, 4.0, 1e-9); }},
        {[](C& o) { o.m_SymbolCategory = 3; o.m_PieceValue = 0.01; o.m_TrailType = static_cast<SHORT>(3); o.m_TrailAmount = 0.04; },
         "TRL=D0.040000;", [](const C& o) { EXPECT_TRUE(o.m_TrailType == 1); EXPECT_NEAR(o.m_TrailAmount.value, 4.0, 1e-9); }},
        {[](C& o) { o.m_TrailType = static_cast<SHORT>(3); o.m_TrailAmount = 2.5; },
         "TRL=3;", [](const C& o) { EXPECT_TRUE(o.m_TrailType == 1 && o.m_TrailAmount == 3.0); }},
        {[](C& o) { o.m_IfTouchedType = static_cast<SHORT>(1); o.m_IfTouchedPrice = 10.5; o.m_IfTouchedTrigger = "Last"; },
         "MIT=10.500000(Last);", [](const C& o) { EXPECT_TRUE(o.m_IfTouchedType == 1 && o.m_IfTouchedPrice == 10.5 && o.m_IfTouchedTrigger == "Last"); }},
        {[](C& o) { o.m_IfTouchedType = static_cast<SHORT>(2); o.m_LITAutoPrice = "Shave"; o.m_LITAutoPriceOffset = 3.0; o.m_IfTouchedTrigger = "Bid"; },
         "LIT=SHV3(Bid);", [](const C& o) { EXPECT_TRUE(o.m_LITAutoPrice == "Shave" && o.m_LITAutoPriceOffset == 3.0); }},
        {[](C& o) { o.m_IfTouchedType = static_cast<SHORT>(2); o.m_LITAutoPrice = "Offset from If Touched Price"; o.m_LITAutoPriceOffset = 5.0; o.m_IfTouchedTrigger = "Last"; },
         "LIT=LIT5(Last);", [](const C& o) { EXPECT_FALSE(o.m_LITAutoPrice.IsValid() || o.m_LITAutoPriceOffset.valid); }},
        {[](C& o) { o.m_IfTouchedType = static_cast<SHORT>(2); o.m_LITAutoPrice = "Offset from Primary"; o.m_IfTouchedTrigger = "Last"; },
         "LIT=(Last);", [](const C& o) { EXPECT_TRUE(o.m_IfTouchedTrigger == "Last"); }},
        {[](C& o) { o.m_SymbolCategory = 3; o.m_PieceValue = 0.01; o.m_AutoPrice = "Improve"; o.m_AutoPriceIncrement = "2.000000"; },
         "LMT=IMPD0.020000;", [](const C& o) { EXPECT_TRUE(o.m_AutoPriceIncrement == "2.000000"); }},
        {[](C& o) { o.m_AutoPrice = "Offset from Stop Price"; o.m_AutoPriceIncrement = "-3"; },
         "LMT=STP3;", [](const C& o) { EXPECT_TRUE(o.m_AutoPrice == "Offset from Stop Price" && o.m_AutoPriceIncrement == "3.000000"); }},
        {[](C& o) { o.m_OrderType = "Stop Market"; o.m_StopAutoPrice = "Hit/Take+"; o.m_StopAutoPriceOffset = 2.0; },
         "STP=HTP2;", [](const C& o) { EXPECT_TRUE(o.m_StopAutoPrice == "Hit/Take+" && o.m_StopAutoPriceOffset == 2.0); }},
        {[](C& o) { o.m_OrderType = "Stop Limit"; o.m_AutoPrice = "Offset from Primary"; o.m_AutoPriceIncrement = "2"; o.m_StopAutoPrice = "Offset from Primary"; o.m_StopAutoPriceOffset = -1.0; },
         "DLT=2;DLT=-1;", [](const C& o) { EXPECT_TRUE(o.m_StopAutoPrice == "Offset from Primary" && o.m_StopAutoPriceOffset == -1.0); }},
        {[](C& o) { o.m_AutoPrice = "Custom Price"; },
         "", [](const C&) {}},
    };
    // clang-format on
    for (const Row& row : rows) {
        C order;
        row.fill(order);
        EXPECT_STREQ(order.GetAdvancePropertyAsString(false, 0), row.written);
        C back;
        back.m_SymbolCategory = order.m_SymbolCategory;
        back.m_PieceValue = order.m_PieceValue;
        back.m_OrderType = order.m_OrderType;
        back.SetAdvancePropertyFromString(row.written, false);
        SCOPED_TRACE(row.written);
        row.check(back);
    }
}

TEST_F(AdvancedString, ReaderGrammar) {
    C order;
    order.m_Locate = "L";
    order.m_Condition = "kept";
    order.SetAdvancePropertyFromString("", false);
    // The marks of the listed fields go, the others stay.
    EXPECT_TRUE(!order.m_Locate.IsValid() && order.m_Condition == "kept");

    // clang-format off
    const struct { const char* text; void (*check)(const C&); } cases[] = {
        {"AON;NOW", [](const C& o) { EXPECT_TRUE(o.m_AllOrNone == 1 && !o.m_ECNSweep.valid); }},
        {"SHWQTY=100", [](const C& o) { EXPECT_TRUE(o.m_ShowQuantity == 0 && o.m_ShowOnly == 1); }},
        {"XYZ=AON;", [](const C& o) { EXPECT_TRUE(o.m_AllOrNone == 1); }},
        {"AON=", [](const C& o) { EXPECT_TRUE(o.m_AllOrNone == 1); }},
        {"aon;", [](const C& o) { EXPECT_FALSE(o.m_AllOrNone.valid); }},
        {"PEGVAL=MID;AON;", [](const C& o) { EXPECT_TRUE(o.m_PegValue == "MID" && !o.m_AllOrNone.valid); }},
        {"TRL=;", [](const C& o) { EXPECT_TRUE(o.m_TrailType == 1 && o.m_TrailAmount == 0.0); }},
        {"TRL=DD2;", [](const C& o) { EXPECT_NEAR(o.m_TrailAmount.value, 200.0, 1e-9); }},  // no piece value: 0.01
        {"LIT=JON", [](const C& o) { EXPECT_TRUE(o.m_IfTouchedTrigger == "" && !o.m_LITAutoPrice.IsValid()); }},
        {"LIT=12.5(Bid);", [](const C& o) { EXPECT_TRUE(o.m_IfTouchedPrice == 12.5 && o.m_LITAutoPrice == ""); }},
        {"LIT=LMTD0.5(Bid);", [](const C& o) { EXPECT_TRUE(o.m_LITAutoPrice == "Offset from Primary"); EXPECT_NEAR(o.m_LITAutoPriceOffset.value, 50.0, 1e-9); }},
        {"LMT=IMP-2;", [](const C& o) { EXPECT_FALSE(o.m_AutoPrice.IsValid() || o.m_AutoPriceIncrement.IsValid()); }},
        {"LMT=5;", [](const C& o) { EXPECT_FALSE(o.m_AutoPrice.IsValid()); }},
        {"STP=STP4;", [](const C& o) { EXPECT_TRUE(o.m_StopAutoPriceOffset == 0.0 && !o.m_StopAutoPrice.IsValid()); }},
        {"DLTD=D0.5;", [](const C& o) { EXPECT_TRUE(o.m_StopAutoPrice == "Offset from Primary" && o.m_StopAutoPriceOffset == 0.5); }},  // no piece value: kept as written
        {"BRK=B1;OCA", [](const C& o) { EXPECT_TRUE(o.m_OCAGroupTag == "B1" && o.m_Bracket == true); }},
        {"CND=LAST>5;OSP=P;OSO=;STPTRG=DBA;LOC=X;LOCTAG=Y;", [](const C& o) {
             EXPECT_TRUE(o.m_Condition == "LAST>5" && o.m_OSOParentTag == "P" && o.m_OSOTag == "" &&
                         o.m_StopTrigger == "DBA" && o.m_Locate == "X" && o.m_LocateTag == "Y"); }},
    };
    // clang-format on
    for (const auto& c : cases) {
        C fresh;
        fresh.SetAdvancePropertyFromString(c.text, false);
        SCOPED_TRACE(c.text);
        c.check(fresh);
    }
}

TEST_F(AdvancedString, DisplayWords) {
    // clang-format off
    const struct { const char* advanced; const char* shown; } cases[] = {
        {"", ""}, {"STA;TAG=7;", ""}, {"AON;", "All or None"},
        {"SHWQTY=100;DSCPR=0.050000;", "Show Only: 100, Discretionary: 0.05"},
        {"PEGVAL=MID;PEGINC=NONE;AON;", "All or None, Peg Value: MID"},
        {"SEX;BMS;NON;SUB;NOW;", "ECN Sweep, Subscriber Only, Non-Display, Buy on -/Sell on +, Short Exempt"},
        {"DSCPR=1.239;TIM=10:00:00;", "Discretionary: 1.24"},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_STREQ(COXStringForDisplay::AdvancedOrderString(c.advanced), c.shown) << c.advanced;
    }
}

}  // namespace
}  // namespace qvox
