// Enumerations to texts and back, the bit sets, and the auto price increments.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "qvox/vocabulary/COXStringForDisplay.h"
#include "qvox/vocabulary/COXUtil.h"
#include "qvox/vocabulary/CodeTables.h"

namespace qvox {
namespace {

constexpr ULONG kCategories[] = {0, 1, 2, 3, 4, 8, 12, 254, 0xFFFFFFFFu};

// The questions that read more than one bit; the locked modules have their own test.
TEST(BitFlags, CombinedQuestions) {
    EXPECT_TRUE(COXOrderCategoryX().IsMulti());  // a word of 0 counts as part of a group
    COXOrderCategoryX simple;
    simple.Set(COXOrderCategoryX::SingleLeg | COXOrderCategoryX::Simple);
    EXPECT_FALSE(simple.IsMulti() || simple.IsOCOorOCA() || simple.IsOSO());
    EXPECT_TRUE(COXOrderCategoryX(COXOrderCategoryX::OCA).IsOCOorOCA());
    EXPECT_TRUE(COXOrderCategoryX(COXOrderCategoryX::OSOChild).IsOSO());
    EXPECT_FALSE(COXOrderCategoryX(COXOrderCategoryX::MultiLeg).IsOSO());

    COXOrderContextFlagX context;
    context.Set(COXOrderContextFlagX::CtxSpread | COXOrderContextFlagX::CtxCancelable);
    context.Clear(COXOrderContextFlagX::CtxSpread);
    EXPECT_TRUE(context.HasCtxCancelable());
    EXPECT_FALSE(context.HasCtxSpread() || context.HasCtxAny());

    // The wrapper carries the word across and back unchanged.
    const CTLBitFlagHelperWrapper<COXOrderCategoryX> wrapped(simple);
    EXPECT_EQ(wrapped.GetBits(), 5u);
    EXPECT_EQ(static_cast<COXOrderCategoryX>(wrapped), simple);
}

TEST(Display, ActionsByCategory) {
    const char* plain[] = {"Buy", "Sell Short", "Sell", "Buy to Cover"};
    const char* options[] = {"Buy to Open", "Sell to Open", "Sell to Close", "Buy to Close"};
    for (ULONG category : kCategories) {
        const bool isPlain = category == 0 || category == 2 || category == 12;
        const bool isOption = category == 3 || category == 8;
        for (LONG action = -1; action <= 5; ++action) {
            const auto value = static_cast<EMVOrderAction>(action);
            const char* text = COXStringForDisplay::OrderAction(value, category);
            if (action < 1 || action > 4 || (!isPlain && !isOption)) {
                EXPECT_STREQ(text, "Unknown") << action << " " << category;
                continue;
            }
            EXPECT_STREQ(text, isPlain ? plain[action - 1] : options[action - 1]);
            // Every action text reads back to its number, whichever category wrote it.
            EXPECT_EQ(COXUtil::OrderActionStrToEnum(text), value);
        }
    }
}

TEST(Display, EnumerationsRoundTrip) {
    for (LONG n = -1; n <= 6; ++n) {
        const char* text = COXStringForDisplay::OrderType(static_cast<EMVOrderType>(n));
        if (n < 1 || n > 5) {
            EXPECT_STREQ(text, "Unknown");
        }
        // "Close" is shown but never read back: it is not a type a user picks.
        EXPECT_EQ(COXUtil::OrderTypeStrToEnum(text), n >= 1 && n <= 4 ? n : 0) << text;
    }
    EXPECT_STREQ(COXStringForDisplay::OrderType(OrderTypeClose), "Close");

    EXPECT_EQ(COXStringForDisplay::AutoPrice(AutoPriceNone), nullptr);
    for (LONG n = 1; n <= 15; ++n) {
        const auto value = static_cast<EOXAutoPrice>(n);
        const char* text = COXStringForDisplay::AutoPrice(value);
        ASSERT_NE(text, nullptr);
        EXPECT_STREQ(COXStringForDisplay::StopAutoPrice(value), text);
        EXPECT_EQ(COXUtil::AutoPriceStrToEnum(text), value);
        EXPECT_EQ(COXUtil::CanSendAutoprice(text), n < 7 || n > 12) << text;
    }
    for (LONG n : {16, 21, 22, -1}) {
        EXPECT_STREQ(COXStringForDisplay::AutoPrice(static_cast<EOXAutoPrice>(n)), "Invalid");
    }
    EXPECT_TRUE(COXUtil::AutoPriceStrToEnum("") == AutoPriceNone &&
                COXUtil::AutoPriceStrToEnum("join") == AutoPriceNone);
    EXPECT_TRUE(COXUtil::CanSendAutoprice("") && COXUtil::CanSendAutoprice(nullptr));

    // clang-format off
    const struct { EOXAutoPrice value; const char* text; } stops[] = {
        {AutoPriceOffsetBid, "Offset from Bid"}, {AutoPriceOffsetAsk, "Offset from Ask"}, {AutoPriceOffsetLast, "Offset from Last"},
        {AutoPriceOffsetPrimary, "Offset from Primary"}, {AutoPriceNone, "Offset from Stop Price"}, {AutoPriceNone, "Last"}};
    // clang-format on
    for (const auto& s : stops)
        EXPECT_EQ(COXUtil::StopAPStrToEnum(s.text), s.value) << s.text;

    EXPECT_TRUE(COXStringForDisplay::TrailingValue(TrailingNone) == nullptr &&
                COXStringForDisplay::IfTouchedValue(IfTouchNone) == nullptr);
    for (LONG n = 1; n <= 2; ++n) {
        const auto trailing = static_cast<EnumTrailingStop>(n);
        EXPECT_EQ(COXUtil::TrailingStrToEnum(COXStringForDisplay::TrailingValue(trailing)),
                  trailing);
        const auto life = static_cast<StageOrderLifeSpan>(n);
        EXPECT_EQ(
            COXUtil::StagedOrderLifeSpanStrToEnum(COXStringForDisplay::StagedOrderLifeSpan(life)),
            life);
    }
    EXPECT_STREQ(COXStringForDisplay::TrailingValue(TrailingPoints), "Pts");
    EXPECT_STREQ(COXStringForDisplay::IfTouchedValue(IfTouchLimit), "Limit if Touched");
    EXPECT_STREQ(COXStringForDisplay::IfTouchedValue(static_cast<EnumIfTouch>(3)), "Invalid");
    EXPECT_STREQ(COXStringForDisplay::StagedOrderLifeSpan(StageOrderLifeSpanNone), "Unknown");
    EXPECT_STREQ(COXStringForDisplay::PositionType(false), "Short");
}

TEST(Display, ServerCodesAndStates) {
    // clang-format off
    const struct { const char* code; LONG value; } codes[] = {
        {"JON", 1}, {"IMP", 2}, {"SPL", 3}, {"SHV", 4}, {"HTK", 5}, {"HTP", 6}, {"DLT", 13},
        {"STP", 14}, {"LIT", 15}, {"IMPD", 16}, {"SHVD", 17}, {"HTPD", 18}, {"DLTD", 19},
        {"STPD", 20}, {"LITD", 21}, {"jon", 0}, {"LMT", 0}, {"", 0}, {nullptr, 0}};
    // clang-format on
    for (const auto& c : codes)
        EXPECT_EQ(COXUtil::ServerAutoPriceStrToEnum(c.code), c.value);

    for (const DWORD2STR2& row : g_OrderDisplayStatus) {
        EXPECT_STREQ(COXStringForDisplay::OrderState(static_cast<State>(row.code)), row.text);
    }
    EXPECT_STREQ(GetDisplayStatus(9), "Partial Fill (UROut)");
    EXPECT_STREQ(GetDisplayStatus(0), "");
    EXPECT_STREQ(GetDisplayStatus(36), "");

    for (ULONG state : {0u, 1u, 2u})
        EXPECT_EQ(COXUtil::Convert(state), static_cast<LONG>(state));
    EXPECT_EQ(COXUtil::Convert(3), ConnectionStateOther);
    EXPECT_EQ(COXUtil::Convert(0xFFFFFFFFu), ConnectionStateOther);
}

TEST(Display, StatusBarMessage) {
    // clang-format off
    const struct { const char *action, *quantity, *symbol, *id, *shown; } cases[] = {
        {"Buy", "100", "MSFT", "0042", "Buy 100 - MSFT #0042"}, {"Buy", "100", "", "0042", "Buy 100"},
        {"Buy", nullptr, nullptr, "x", "Buy "}, {"a", "b", "c", nullptr, "a b - c #"}};
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_STREQ(
            COXStringForDisplay::FormatOrderStatusBarMessage(c.action, c.quantity, c.symbol, c.id),
            c.shown);
    }
}

TEST(AutoPriceIncrements, ValuesTextsAndBack) {
    // Every text that the display gives reads back to its setting, in every category that has
    // a table; the value agrees with the increment functions.
    for (ULONG category : kCategories) {
        const bool known = category == 0 || category == 2 || category == 3 || category == 8;
        for (int setting = -1; setting <= 101; ++setting) {
            const char* text = COXStringForDisplay::AutoPriceIncrement(setting, category);
            if (std::strcmp(text, "Unknown") == 0) continue;
            ASSERT_TRUE(known) << category;
            EXPECT_EQ(COXUtil::AutoPriceIncrementStrToEnum(text, category), setting) << text;
        }
        EXPECT_STREQ(COXStringForDisplay::AutoPriceIncrement(11, category), "Unknown");
    }
    // clang-format off
    const struct { int setting; ULONG category; double value; } values[] = {
        {8, 2, 0.25}, {10, 2, 1.0}, {11, 2, 0.01}, {12, 0, 12.0}, {6, 0, 1.0}, {500, 0, 500.0},
        {12, 3, 15.0}, {12, 8, 15.0}, {8, 12, 0.0}, {1, 1, 0.0}, {1, 254, 0.0}};
    // clang-format on
    for (const auto& v : values) {
        EXPECT_DOUBLE_EQ(COXUtil::GetAutoPriceIncrement(v.setting, v.category), v.value)
            << v.setting << " " << v.category;
        // A decimal base code keeps the same value.
        EXPECT_DOUBLE_EQ(COXUtil::GetAutoPriceIncrement(v.setting, v.category, 'm'), v.value);
    }

    const char* fractions[] = {"1/2",  "1/2",  "1/4",   "1/8",   "1/16",
                               "1/32", "1/64", "1/128", "1/256", "1/2"};
    for (int setting = 0; setting <= 9; ++setting) {
        const double fraction = COXUtil::GetAutoPriceIncrementFraction(setting, 2);
        EXPECT_STREQ(COXStringForDisplay::AutoPriceIncrementFraction(setting, 0),
                     fractions[setting]);
        // "1/n" is the value the fraction functions give.
        EXPECT_DOUBLE_EQ(1.0 / fraction, std::atof(fractions[setting] + 2)) << setting;
        EXPECT_DOUBLE_EQ(COXUtil::GetAutoPriceIncrement(setting, 0, 'l'), fraction);
    }

    // clang-format off
    const struct { const char* text; ULONG category; int setting; } back[] = {
        {"1", 2, 10}, {"0.1", 2, 6}, {".10", 2, 6}, {"0.120", 2, 7}, {"0.11", 2, 0},
        {"abc", 2, 0}, {"2 MinMoves", 0, 2}, {"2 minmoves", 0, 0}, {"100 MinMoves", 8, 100},
        {"1 MinMove", 12, 0}, {"1 MinMove", 1, 0}, {nullptr, 2, 0}};
    // clang-format on
    for (const auto& b : back) {
        EXPECT_EQ(COXUtil::AutoPriceIncrementStrToEnum(b.text, b.category), b.setting)
            << (b.text ? b.text : "null") << " " << b.category;
    }
}

}  // namespace
}  // namespace qvox
