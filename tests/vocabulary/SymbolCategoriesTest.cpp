#include "qvox/vocabulary/SymbolCategories.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

#include "qvox/vocabulary/COXUtil.h"

namespace qvox {
namespace {

TEST(Categories, TranslateEveryCategoryAndFallBack) {
    // clang-format off
    const struct { LONG category, translated, options; int asset; EOXAccCategory account; } cases[] = {
        {0, 1, 1, 4, AccCategoryFutures}, {1, 2, 254, 2, AccCategoryNone},
        {2, 2, 3, 1, AccCategoryEquities}, {3, 2, 3, 2, AccCategoryOptions},
        {4, 2, 8, 0, AccCategoryNone}, {8, 2, 8, 2, AccCategoryOptions},
        {12, 8, 254, 8, AccCategoryForex}, {254, 2, 254, 0, AccCategoryNone},
        {-1, 2, 254, 0, AccCategoryNone}, {7, 2, 254, 0, AccCategoryNone},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(TranslateCategory(c.category), c.translated) << c.category;
        EXPECT_EQ(GetOptionCategory(c.category), c.options) << c.category;
        EXPECT_EQ(GetAssetClassFromCategory(c.category), c.asset) << c.category;
        EXPECT_EQ(COXUtil::GetAccCatFromSymbolCat(static_cast<ULONG>(c.category)), c.account);
    }
    EXPECT_EQ(COXUtil::GetAccCatFromSymbolCat(0x80000000u), AccCategoryNone);
    // clang-format off
    const struct { EOXAccCategory account; ULONG category; } back[] = {
        {AccCategoryFutures, 0}, {AccCategoryEquities, 2}, {AccCategoryOptions, 3},
        {AccCategoryForex, 12}, {AccCategoryNone, 254}, {static_cast<EOXAccCategory>(3), 254},
    };
    // clang-format on
    for (const auto& c : back)
        EXPECT_EQ(COXUtil::GetSymbolCatFromAccCat(c.account), c.category);
}

TEST(Categories, Codes) {
    // clang-format off
    for (const auto& [code, category] : {std::pair{"EQ", 2u}, {"eq", 2u}, {"Op", 3u}, {"fx", 12u}, {"xx", 0u}, {"EQX", 0u}, {"", 0u}})
        EXPECT_EQ(GetSymbolCategoryFromCode(code), category) << code;
    for (const auto& [category, code] : {std::pair{8u, "OP"}, {12u, "FX"}, {1u, ""}, {0xFFFFFFFFu, ""}})
        EXPECT_STREQ(GetSymbolCodeFromCategory(category), code) << category;
    // clang-format on
    EXPECT_EQ(GetSymbolCategoryFromCode(nullptr), 0u);
}

TEST(TradeSymbols, FuturesAndEquitiesRules) {
    // The rule's answer, its CString form ("cut"), and ConvertToTradeSymbol ("trade"), which goes
    // through a buffer of the symbol's own size: "US:" has a length that wraps past any buffer.
    // clang-format off
    const struct { const char* symbol; ULONG category; bool found; ULONG start, length; const char* cut; const char* trade; } rows[] = {
        {"ESH09.D", 0, true, 0, 5, "ESH09", "ESH09"}, {"ESH09.P", 0, false, 0, 0, "ESH09.P", "ESH09.P"},
        {"ESH09.PX", 0, true, 0, 7, "ESH09.P", "ESH09.P"}, {"@ESH09=68", 0, true, 1, 5, "ESH09", "ESH09"},
        {"@ES.D", 0, true, 0, 3, "@ES", "@ES"}, {"@ES", 0, false, 0, 0, "@ES", "@ES"},
        {"@ESH09", 0, true, 1, 5, "ESH09", "ESH09"}, {"CL-Z", 0, true, 0, 2, "CL", "CL"},
        {"X.", 0, true, 0, 1, "X", "X"}, {"", 0, false, 0, 0, "", ""},
        {"US:$XYZ", 2, true, 4, 3, "XYZ", "XYZ"}, {"XYZ", 2, false, 0, 0, "XYZ", "XYZ"},
        {"US:X", 2, true, 4, 0, "", ""}, {"US:", 2, true, 4, 0xFFFFFFFFu, "", "US:"},
    };
    // clang-format on
    for (const auto& c : rows) {
        ULONG start = 99;
        ULONG length = 99;
        const bool futures = c.category == 0;
        EXPECT_EQ(futures ? COXUtil::ConvertToTradeSymbolForFutures(c.symbol, start, length)
                          : COXUtil::ConvertToTradeSymbolForEquities(c.symbol, start, length),
                  c.found);
        EXPECT_EQ(start, c.found ? c.start : 99u) << c.symbol;
        EXPECT_EQ(length, c.found ? c.length : 99u) << c.symbol;
        EXPECT_STREQ(futures ? COXUtil::ConvertToTradeSymbolForFutures(c.symbol)
                             : COXUtil::ConvertToTradeSymbolForEquities(c.symbol),
                     c.cut)
            << c.symbol;
        EXPECT_STREQ(COXUtil::ConvertToTradeSymbol(c.symbol, c.category), c.trade) << c.symbol;
    }
    EXPECT_STREQ(COXUtil::ConvertToTradeSymbolForEquities(nullptr), "");
    EXPECT_STREQ(COXUtil::ConvertToTradeSymbol("@ESH09", 3), "@ESH09");
}

TEST(TradeSymbols, BufferFormNeedsRoomForTheTerminator) {
    const char* symbol = "@ESH09=68";
    char out[8];
    std::memset(out, 'x', sizeof out);
    EXPECT_EQ(COXUtil::ConvertToTradeSymbol(symbol, 0, out, 5), symbol);  // 5 bytes: no room
    EXPECT_EQ(out[0], 'x');
    const char* us = "US:";
    EXPECT_EQ(COXUtil::ConvertToTradeSymbol(us, 2, out, 8), us);
    EXPECT_EQ(out[0], 'x');
    EXPECT_EQ(COXUtil::ConvertToTradeSymbol(symbol, 0, out, 6), out);
    EXPECT_STREQ(out, "ESH09");
    EXPECT_EQ(COXUtil::ConvertToTradeSymbol(symbol, 0, nullptr, 6), symbol);
    EXPECT_EQ(COXUtil::ConvertToTradeSymbol(symbol, 12, out, 8), symbol);
    CString inPlace = "US:$ABC";
    EXPECT_EQ(&COXUtil::ConvertToTradeSymbol(inPlace, 2), &inPlace);
    EXPECT_STREQ(inPlace, "ABC");
    inPlace = "US:";
    EXPECT_STREQ(COXUtil::ConvertToTradeSymbol(inPlace, 2), "US:");
}

TEST(Lists, PresenceEndsAtMinusOne) {
    EXPECT_TRUE(COXUtil::IsPresent(5, 1, 5, -1) && COXUtil::IsPresent(12, 0, 2, 3, 8, 12, -1));
    EXPECT_FALSE(COXUtil::IsPresent(5, -1) || COXUtil::IsPresent(-1, -1));
    EXPECT_FALSE(COXUtil::IsPresent(5, 1, -1, 5, -1));  // nothing after the end counts
    EXPECT_TRUE(COXUtil::IsNotPresent(5, -1) && !COXUtil::IsNotPresent(2, 1, 2, 3, -1));
}

TEST(Lists, BreakQtyKeepsWholeLotsAndPutsTheRestLast) {
    // clang-format off
    const struct { int total, count; ULONG category; bool ok; std::vector<UINT> parts; } cases[] = {
        {1050, 3, 2, true, {300, 400, 350}}, {10, 3, 0, true, {3, 3, 4}}, {50, 2, 2, false, {9}},
        {50, 1, 2, true, {50}}, {0, 1, 2, true, {0}}, {100, 0, 2, true, {}},
        {-5, 1, 0, false, {9}}, {7, 7, 12, true, {1, 1, 1, 1, 1, 1, 1}},
        {2147483647, 2, 0, true, {1073741823, 1073741824}},
    };
    // clang-format on
    for (const auto& c : cases) {
        CUIntArray out;
        out.Add(9);
        EXPECT_EQ(COXUtil::BreakQty(c.total, c.count, c.category, out), c.ok) << c.total;
        std::vector<UINT> got;
        for (int i = 0; i < out.GetSize(); ++i)
            got.push_back(out.GetAt(i));
        EXPECT_EQ(got, c.parts) << c.total << '/' << c.count;
    }
}

TEST(LockedModules, AllBitsOfAModule) {
    COXLockedModulesX locks;
    locks.LockModule(0x1);
    EXPECT_TRUE(locks.IsModuleLocked(0x1) && !locks.IsModuleLocked(0x3));  // all bits of a module
    locks.SetModuleLock(0x6, true);
    EXPECT_TRUE(locks.IsModuleLocked(0x3));
    locks.SetModuleLock(0x2, false);
    EXPECT_EQ(locks.GetLockedModules(), 0x5u);
    locks.ModifyLockedModules(0x5, 0x1);  // clears first, then sets
    EXPECT_EQ(locks.GetLockedModules(), 0x1u);
    const COXLockedModulesX copy = locks;
    locks.UnlockModule(0x1);
    EXPECT_TRUE(copy.IsModuleLocked(0x1));
}

}  // namespace
}  // namespace qvox
