#include "qvox/vocabulary/Lookups.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace qvox {
namespace {

// Texts as users type them: in another case, with white space around, or without spaces.
std::string Cased(const char* text, bool upper) {
    CString s(text);
    return (upper ? s.MakeUpper() : s.MakeLower()).str();
}
std::string Padded(const std::string& text) {
    return "\t " + text + " \r\n";
}
std::string Squeezed(const char* text, bool upper) {
    std::string s = Cased(text, upper);
    std::erase(s, ' ');
    return s;
}

constexpr const char* kAllDurations[] = {"Day", "Day+", "GTC", "GTC+",  "GTD",   "GTD+", "IOC",
                                         "FOK", "OPG",  "CLO", "1 Min", "3 Min", "5 Min"};

std::vector<std::string> Items(const CStringList& list) {
    std::vector<std::string> items;
    for (POSITION pos = list.GetHeadPosition(); pos != nullptr;)
        items.push_back(list.GetNext(pos).str());
    return items;
}

// Every row there and back, as users type it.
TEST(Lookups, EveryRowRoundTrips) {
    for (const STR2STRMAP& row : g_TimeLimit) {
        EXPECT_STREQ(GetTIF(Padded(row.code).c_str()), row.text);
        EXPECT_STREQ(GetTIFCodeFromDisplay(Padded(Squeezed(row.text, false)).c_str()), row.code);
    }
    for (const STR2STRMAP& row : g_FuturesTimeLimit) {
        EXPECT_STREQ(GetTIF(row.code), row.text);
        EXPECT_STREQ(GetTIFCodeFromDisplay(Padded(row.text).c_str()), row.code);
    }
    for (const auto* rows : {+g_OrderType, +g_FutureOrderType}) {
        for (int i = 0; i < 4; ++i) {
            EXPECT_STREQ(GetType(Padded(Cased(rows[i].code, false)).c_str()), rows[i].text);
            const std::string text = Padded(Cased(rows[i].text, true));
            EXPECT_STREQ(GetOrderTypeCodeFromDisplayValue(text.c_str()), rows[i].code);
        }
    }
    for (const auto* rows : {+g_Route, +g_OptionsRoute}) {
        for (int i = 0; i < (rows == g_Route ? 11 : 7); ++i) {
            const std::string code = Padded(Cased(rows[i].code, false));
            EXPECT_STREQ(GetRouteCodeFromCode(code.c_str()), rows[i].code);
        }
    }
    for (int i = 0; i < 12; ++i) {
        const STR2STRMAP& stop = g_StopTriggerType[i];
        const STR2STRMAP& condition = g_ConditionTriggerType[i];
        EXPECT_STREQ(GetStopTriggerFromCode(Cased(stop.code, false)), stop.text);
        EXPECT_STREQ(GetStopTriggerCodeFromValue(Cased(stop.text, true)), stop.code);
        EXPECT_STREQ(GetConditionTriggerFromCode(Cased(condition.code, false)), condition.text);
        EXPECT_STREQ(GetConditionTriggerCodeFromValue(Cased(condition.text, true)), condition.code);
        const auto& futures = g_PriceFuturesIncrements[i % 10];
        const auto& options = g_PriceOptionsIncrements[i % 10];
        EXPECT_STREQ(GetFuturesIncString(futures.code), futures.text);
        EXPECT_STREQ(GetOptionsIncString(options.code), options.text);
    }
    for (const INT2STR& row : g_StageLifeSpan) {
        EXPECT_STREQ(GetLifeSpanFromCode(row.code), row.text);
        EXPECT_EQ(GetLifeSpanCode(Padded(row.text).c_str()), row.code);
    }
    for (const INT2STR& row : g_QtyRound) {
        EXPECT_STREQ(GetQuantityRoundString(row.code), row.text);
        EXPECT_EQ(GetQtyRoundFromCode(Padded(row.text).c_str()), row.code);
    }
    for (const STR2STRMAP& row : c_szPegValue)
        EXPECT_STREQ(GetPegString(Cased(row.text, false)), row.code);
    for (const auto* rows : {+g_OrderSidePresent, +g_OrderSidePast}) {
        for (int i = 0; i < 4; ++i) {
            EXPECT_STREQ(GetSide(rows[i].code, rows == g_OrderSidePresent ? 2 : 0), rows[i].text);
            const std::string text = Padded(Squeezed(rows[i].text, true));
            EXPECT_EQ(GetSideCodeFromDisplayValue(text.c_str(), 1), rows[i].code);
        }
    }
    // Option wording there and back, and option sides through the trade server and back.
    const char regular[] = {'B', 'S', 'T', 'C'};  // the four rows of g_OrderSideOptions
    for (int i = 0; i < 4; ++i) {
        char openClose = 0;
        const char* side =
            GetSideFromOptionSideString(Squeezed(g_OrderSideOptions[i], i % 2 == 0), &openClose);
        EXPECT_STREQ(side, i == 0 || i == 3 ? "Buy" : "Sell");
        EXPECT_STREQ(GetOptionOrderTypeFromSide(side, openClose, 3), g_OrderSideOptions[i]);
        for (const ULONG category : {3u, 8u}) {
            const char server = CovertRegularSideToTradeServerSide(regular[i], category);
            EXPECT_EQ(server, side[0] == 'B' ? 'B' : 'S');
            EXPECT_EQ(CovertTradeServerSideToRegularSide(server, category, openClose), regular[i]);
        }
    }
}

// Each lookup's comparison kind and fallback, null included. A fallback "" is never null.
TEST(Lookups, ComparisonKindsAndFallbacks) {
    using Lookup = const char* (*)(const char*);
    const Lookup stop = [](const char* c) { return GetStopTriggerFromCode(c); };
    const Lookup stopCode = [](const char* t) { return GetStopTriggerCodeFromValue(t); };
    const Lookup condition = [](const char* c) { return GetConditionTriggerFromCode(c); };
    const Lookup conditionCode = [](const char* t) { return GetConditionTriggerCodeFromValue(t); };
    const Lookup peg = [](const char* t) { return GetPegString(t); };
    // clang-format off
    const struct { Lookup lookup; const char* in; const char* out; } cases[] = {
        {GetTIF, "  GCP ", "GTC+"}, {GetTIF, "OCO", "MOC"}, {GetTIF, "gcp", ""},
        {GetTIF, "G CP", ""}, {GetTIF, nullptr, ""},
        {GetTIFCodeFromDisplay, "gtc +", "GCP"}, {GetTIFCodeFromDisplay, "MOC", "OCO"},
        {GetTIFCodeFromDisplay, "moc", ""}, {GetTIFCodeFromDisplay, " M OC ", "OCO"},
        {GetTIFCodeFromDisplay, "1 min", "1"}, {GetTIFCodeFromDisplay, "gtc\t+", ""},
        {GetTIFCodeFromDisplay, "   ", ""}, {GetTIFCodeFromDisplay, nullptr, ""},
        {GetType, "S TL", ""}, {GetType, "MIT", ""}, {GetType, nullptr, ""},
        {GetOrderTypeCodeFromDisplayValue, "StopMarket", ""},
        {GetOrderTypeCodeFromDisplayValue, nullptr, ""},
        {GetRouteCodeFromCode, "", ""}, {GetRouteCodeFromCode, "ISLD", ""},
        {GetRouteCodeFromCode, "ATDK", ""}, {GetRouteCodeFromCode, nullptr, ""},
        {stop, "", "Single Trade Tick (STT)"}, {stop, "XYZ", "Single Trade Tick"},
        {stop, " DBA", "Single Trade Tick"}, {condition, "", "Single Trade Tick (STT)"},
        {condition, "ST T", "Single Trade Tick"}, {stopCode, "nonsense", "STT"},
        {stopCode, "", "STT"}, {conditionCode, "Twice Ask/Bid Tick (TAB) ", "STT"},
        {conditionCode, "", "STT"}, {peg, " Mid", ""}, {peg, "Middle", ""}};
    // clang-format on
    for (const auto& c : cases)
        EXPECT_STREQ(c.lookup(c.in), c.out) << c.in;
    for (const char* text :
         {"persist", "Up to nearest even  lot", "", static_cast<const char*>(nullptr)}) {
        EXPECT_TRUE(GetLifeSpanCode(text) == -1 && GetQtyRoundFromCode(text) == 0) << text;
    }
    for (const int code : {0, 6, 11, INT_MIN}) {
        const std::string all = std::string(GetFuturesIncString(code)) + GetOptionsIncString(code) +
                                GetLifeSpanFromCode(code) + GetQuantityRoundString(code + 3);
        EXPECT_EQ(all, "") << code;
    }
    EXPECT_STREQ(GetSide('X', 1), "");
    EXPECT_TRUE(GetRoute(true) == g_RouteForFlatTicketing && GetRouteCount(true) == 8);
    EXPECT_TRUE(GetRoute(false) == g_Route && GetRouteCount(false) == 11);
}

TEST(Lookups, SidesAndOptionWording) {
    // clang-format off
    const struct { const char* text; char folded, exact; } sides[] = {
        {"sold short", 'S', 'T'}, {"Covered", 'B', 'C'}, {"\tSELL SHORT\n", 'S', 'T'},
        {"Bought", 'B', 'B'}, {"Sold\tShort", 0, 0}, {"", 0, 0}, {"Buy it", 0, 0}, {nullptr, 0, 0}};
    const char opposite[][2] = {{'B', 'S'}, {'S', 'B'}, {'C', 'T'}, {'T', 'C'}, {'Z', 'B'}};
    const struct { const char* side; char openClose; ULONG category; const char* out; } wording[] = {
        {"Sell Short", 'C', 8, "Sell to Close"}, {"Buy to Cover", 'O', 1, "Buy to Open"},
        {"Buy", 'O', 0, "Buy"}, {"Buy", 'O', 2, "Buy"}, {"Buy", 'O', 12, "Buy"},
        {"Buy", 'X', 3, "Buy"}, {"buy", 'O', 3, "buy"}};
    const struct { char side; ULONG category; char openClose, server, regular; } server[] = {
        {'T', 2, 'O', 'T', 'T'}, {'C', 0, 'C', 'B', 'C'}, {'X', 4, 'O', 'S', 'X'},
        {'X', 3, 'C', 'S', 'C'}, {'X', 8, 'O', 'S', 'T'}, {'S', 3, 'X', 'S', 'S'}};
    // clang-format on
    for (const auto& s : sides) {
        EXPECT_EQ(GetSideCodeFromDisplayValue(s.text, 0), s.folded) << s.text;
        EXPECT_EQ(GetSideCodeFromDisplayValue(s.text, -7), s.exact) << s.text;
    }
    for (const auto& o : opposite)
        EXPECT_EQ(GetOppositeAction(o[0]), o[1]);
    for (const char* text : {"Buy", "Buy\tto Open", " Sell to Open\n"}) {
        char openClose = '?';
        EXPECT_STREQ(GetSideFromOptionSideString(text, &openClose), "") << text;
        EXPECT_EQ(openClose, '?') << text;
    }
    EXPECT_STREQ(GetSideFromOptionSideString(" b u y t o c l o s e ", nullptr), "Buy");
    for (const auto& w : wording)
        EXPECT_STREQ(GetOptionOrderTypeFromSide(w.side, w.openClose, w.category), w.out) << w.side;
    // A regular side to the server's, and the same letter taken as the server's back.
    for (const auto& s : server) {
        EXPECT_EQ(CovertRegularSideToTradeServerSide(s.side, s.category), s.server) << s.side;
        EXPECT_EQ(CovertTradeServerSideToRegularSide(s.side, s.category, s.openClose), s.regular);
    }
}

TEST(Lookups, NumbersAndDurationLists) {
    // clang-format off
    const struct { const char* text; int number; } types[] = {
        {"Limit", 0}, {"Market", 1}, {"Stop Market", 2}, {"Stop Limit", 3}, {" stop limit ", 3},
        {"Close", -1}, {"", -1}, {"LMT", -1}, {"MOC", -1}};
    const struct { const char* text; int value; } integers[] = {
        {"1,000,000", 1000000}, {" -1,5x", -15}, {",,-,7", -7}, {",", 0},
        {"2,147,483,648", INT_MAX}, {"-2,147,483,649", INT_MIN},
        {"0,000,000,000,000,000,012,345", 12345}};
    // clang-format on
    for (const auto& t : types)
        EXPECT_EQ(GetOrderTypeNumber(t.text), t.number) << t.text;
    for (const auto& i : integers)
        EXPECT_EQ(GetIntegerValue(i.text), i.value) << i.text;

    const std::vector<std::string> all(std::begin(kAllDurations), std::end(kAllDurations));
    CStringList list;
    list.AddTail("stale");
    GetDurationInfoList(list);
    EXPECT_EQ(Items(list), all);
    // clang-format off
    const struct { LONG category; std::vector<std::string> texts; } lists[] = {
        {0, {"Day", "GTC", "GTD", "IOC", "FOK"}}, {2, all},
        {3, {"Day", "GTC", "GTD", "IOC", "FOK", "OPG"}},
        {12, {"Day", "GTC", "GTD", "IOC", "FOK", "1 Min", "3 Min", "5 Min"}},
        {8, {}}, {1, {}}, {4, {}}, {254, {}}, {-1, {}}};
    // clang-format on
    for (const auto& l : lists) {
        list.AddTail("stale");
        GetDurationInfoList(list, l.category);
        EXPECT_EQ(Items(list), l.texts) << l.category;
    }
}

}  // namespace
}  // namespace qvox
