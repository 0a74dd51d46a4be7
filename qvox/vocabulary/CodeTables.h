// The constant tables of the order vocabulary, published as data. Row order is interface: the
// lists that a ticket offers index these tables by position. Every text lives as long as the
// library. A code goes to the server; a text is shown to the user.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

struct INT2STRMAP {
    LONG code;
    const char* text;
};
struct STR2STRMAP {
    const char* code;
    const char* text;
};
struct CHAR2STRMAP {
    char code;
    const char* text;
};
struct DWORD2STR2 {
    DWORD code;
    const char* text;
};
struct INT2STR {
    LONG code;
    const char* text;
};

// clang-format off

// Increment settings and their display: equities in money, the others in min moves.
inline constexpr INT2STRMAP g_PriceIncrements[10] = {
    {1, "0.01"}, {2, "0.02"}, {3, "0.03"}, {4, "0.04"}, {5, "0.05"},
    {6, "0.10"}, {7, "0.12"}, {8, "0.25"}, {9, "0.50"}, {10, "1"}};
inline constexpr INT2STRMAP g_PriceFuturesIncrements[10] = {
    {1, "1 MinMove"}, {2, "2 MinMoves"}, {3, "3 MinMoves"}, {4, "4 MinMoves"},
    {5, "5 MinMoves"}, {10, "10 MinMoves"}, {12, "12 MinMoves"}, {25, "25 MinMoves"},
    {50, "50 MinMoves"}, {100, "100 MinMoves"}};
inline constexpr INT2STRMAP g_PriceOptionsIncrements[10] = {
    {1, "1 MinMove"}, {2, "2 MinMoves"}, {3, "3 MinMoves"}, {4, "4 MinMoves"},
    {5, "5 MinMoves"}, {10, "10 MinMoves"}, {12, "12 MinMoves"}, {25, "25 MinMoves"},
    {50, "50 MinMoves"}, {100, "100 MinMoves"}};
inline constexpr INT2STRMAP g_PriceForexIncrements[10] = {
    {1, "1 MinMove"}, {2, "2 MinMoves"}, {3, "3 MinMoves"}, {4, "4 MinMoves"},
    {5, "5 MinMoves"}, {10, "10 MinMoves"}, {12, "12 MinMoves"}, {25, "25 MinMoves"},
    {50, "50 MinMoves"}, {100, "100 MinMoves"}};

// Option increments in money, by the option's threshold (min move 1, 5 and 10 cents).
inline constexpr INT2STRMAP g_PriceOptionsPennyIncs[10] = {
    {1, "0.01"}, {2, "0.02"}, {3, "0.03"}, {4, "0.04"}, {5, "0.05"},
    {10, "0.10"}, {12, "0.15"}, {25, "0.25"}, {50, "0.50"}, {100, "1.00"}};
inline constexpr INT2STRMAP g_PriceOptionsFirstMinMoveIncs[10] = {
    {1, "0.05"}, {2, "0.10"}, {3, "0.15"}, {4, "0.20"}, {5, "0.25"},
    {10, "0.30"}, {12, "0.35"}, {25, "0.40"}, {50, "0.50"}, {100, "1.00"}};
inline constexpr INT2STRMAP g_PriceOptionsSecondMinMoveIncs[10] = {
    {1, "0.10"}, {2, "0.20"}, {3, "0.30"}, {4, "0.40"}, {5, "0.50"},
    {10, "0.60"}, {12, "0.70"}, {25, "0.80"}, {50, "0.90"}, {100, "1.00"}};

// Quantity steps.
inline constexpr const char* arEquitiesQtyInc[6] = {"100", "500", "1000", "5000", "10000", "50000"};
inline constexpr LONG g_nQtyIncDollar[11] = {100, 200, 500, 1000, 2000, 5000, 10000, 15000,
                                             20000, 25000, 50000};
inline constexpr LONG g_nQtyAccDollar[11] = {100, 200, 500, 1000, 2000, 5000, 10000, 15000,
                                             20000, 25000, 50000};

// What fires a stop, and what meets a condition.
inline constexpr STR2STRMAP g_StopTriggerType[12] = {
    {"STT", "Single Trade Tick (STT)"},
    {"STTN", "Single Trade Tick within NBBO (STTN)"},
    {"SBA", "Single Bid/Ask Tick (SBA)"},
    {"SAB", "Single Ask/Bid Tick (SAB)"},
    {"DTT", "Double Trade Tick (DTT)"},
    {"DTTN", "Double Trade Tick within NBBO (DTTN)"},
    {"DBA", "Double Bid/Ask Tick (DBA)"},
    {"DAB", "Double Ask/Bid Tick (DAB)"},
    {"TTT", "Twice Trade Tick (TTT)"},
    {"TTTN", "Twice Trade Tick within NBBO (TTTN)"},
    {"TBA", "Twice Bid/Ask Tick (TBA)"},
    {"TAB", "Twice Ask/Bid Tick (TAB)"}};
inline constexpr STR2STRMAP g_ConditionTriggerType[12] = {
    {"STT", "Single Trade Tick (STT)"},
    {"STTN", "Single Trade Tick within NBBO (STTN)"},
    {"SBA", "Single Bid/Ask Tick (SBA)"},
    {"SAB", "Single Ask/Bid Tick (SAB)"},
    {"DTT", "Double Trade Tick (DTT)"},
    {"DTTN", "Double Trade Tick within NBBO (DTTN)"},
    {"DBA", "Double Bid/Ask Tick (DBA)"},
    {"DAB", "Double Ask/Bid Tick (DAB)"},
    {"TTT", "Twice Trade Tick (TTT)"},
    {"TTTN", "Twice Trade Tick within NBBO (TTTN)"},
    {"TBA", "Twice Bid/Ask Tick (TBA)"},
    {"TAB", "Twice Ask/Bid Tick (TAB)"}};

// Sides. The past tense lists cover before short, unlike the present tense.
inline constexpr CHAR2STRMAP g_OrderSidePresent[4] = {
    {'B', "Buy"}, {'S', "Sell"}, {'T', "Sell Short"}, {'C', "Buy to Cover"}};
inline constexpr CHAR2STRMAP g_OrderSidePast[4] = {
    {'B', "Bought"}, {'S', "Sold"}, {'C', "Covered"}, {'T', "Sold Short"}};
inline constexpr const char* g_OrderSideOptions[4] = {"Buy to Open", "Sell to Close",
                                                      "Sell to Open", "Buy to Close"};
inline constexpr const char* g_OrderSideFutures[2] = {"Buy", "Sell"};
inline constexpr const char* g_OrderSideOptionsOpen[2] = {"Buy to Open", "Sell to Open"};
inline constexpr const char* g_OrderSideOptionsClose[2] = {"Buy to Close", "Sell to Close"};

// Durations. The futures table pairs the code "OCO" with the text "MOC", as the server has it.
inline constexpr STR2STRMAP g_TimeLimit[13] = {
    {"DAY", "Day"}, {"DYP", "Day+"}, {"GTC", "GTC"}, {"GCP", "GTC+"}, {"GTD", "GTD"},
    {"GDP", "GTD+"}, {"IOC", "IOC"}, {"FOK", "FOK"}, {"OPG", "OPG"}, {"CLO", "CLO"},
    {"1", "1 Min"}, {"3", "3 Min"}, {"5", "5 Min"}};
inline constexpr STR2STRMAP g_FuturesTimeLimit[6] = {
    {"DAY", "Day"}, {"GTC", "GTC"}, {"GTD", "GTD"}, {"IOC", "IOC"}, {"FOK", "FOK"},
    {"OCO", "MOC"}};
inline constexpr STR2STRMAP g_OptionsTimeLimit[6] = {
    {"DAY", "Day"}, {"GTC", "GTC"}, {"GTD", "GTD"}, {"IOC", "IOC"}, {"FOK", "FOK"},
    {"OPG", "OPG"}};
inline constexpr STR2STRMAP g_ForexTimeLimit[8] = {
    {"DAY", "Day"}, {"GTC", "GTC"}, {"GTD", "GTD"}, {"IOC", "IOC"}, {"FOK", "FOK"},
    {"1", "1 Min"}, {"3", "3 Min"}, {"5", "5 Min"}};
inline constexpr STR2STRMAP g_SpreadsTimeLimit[2] = {{"DAY", "Day"}, {"GTC", "GTC"}};

// Built-in routes, code then display. The empty code is the default route.
inline constexpr STR2STRMAP g_Route[11] = {
    {"", "Intelligent"}, {"ARCA", "ARCX"}, {"AUTO", "AUTO"}, {"BATS", "BATS"},
    {"BTRD", "BTRD"}, {"CTDL", "CDRG"}, {"EDGA", "EDGA"}, {"EDGX", "EDGX"},
    {"NITE", "NITE"}, {"NSDQ", "NSDQ"}, {"DOT", "SuperDOT"}};
inline constexpr STR2STRMAP g_RouteForFlatTicketing[8] = {
    {"", "Intelligent"}, {"ARCA", "ARCX"}, {"BTRD", "BTRD"}, {"NSDQ", "NSDQ"},
    {"DOT", "SuperDOT"}, {"CTDL", "Citadel"}, {"ATDK", "ADT"}, {"NITE", "Knight"}};
inline constexpr STR2STRMAP g_RouteHistory[13] = {
    {"AMEX", "AMEX"}, {"ISLD", "ISLD"}, {"NYSE", "NYSE"}, {"HRZG", "MLCO"},
    {"SNET", "SNET"}, {"INCA", "INCA"}, {"SOES", "SuperMont"}, {"INET", "INET"},
    {"PCX", "PCX"}, {"BRUT", "BRUT"}, {"CTDL", "Citadel"}, {"ATDK", "ADT"},
    {"NITE", "Knight"}};
inline constexpr STR2STRMAP g_OptionsRoute[7] = {
    {"", "Intelligent"}, {"AMOP", "AMEX"}, {"BOX", "BOX"}, {"CBOE", "CBOE"},
    {"ISE", "ISE"}, {"NYOP", "NYSE Arca"}, {"PHLX", "PHLX"}};
inline constexpr STR2STRMAP g_SpreadsRoute[1] = {{"ISE", "ISE"}};

// Order types. strOrderString numbers the server's codes; its STP and STL stand in the other
// order than in the tables.
inline constexpr STR2STRMAP g_OrderType[4] = {
    {"LMT", "Limit"}, {"MKT", "Market"}, {"STL", "Stop Limit"}, {"STP", "Stop Market"}};
inline constexpr STR2STRMAP g_FutureOrderType[4] = {
    {"LMT", "Limit"}, {"MKT", "Market"}, {"STL", "Stop Limit"}, {"STP", "Stop Market"}};
inline constexpr const char strOrderString[] = "LMT;MKT;STP;STL;MIT;MOC;OBT;OBO;OBC;SOO;SCO;FOK;";

// Auto price lists, by where the price is used.
inline constexpr const char* g_AutopriceEquities[6] = {
    "Join", "Improve", "Split", "Shave", "Hit/Take", "Hit/Take+"};
inline constexpr const char* g_AutopriceOSOChild[8] = {
    "Join", "Improve", "Split", "Shave", "Hit/Take", "Hit/Take+", "Offset from Primary",
    "Custom Price"};
inline constexpr const char* g_AutopriceCOLimit[2] = {"Offset from Stop Price", "Custom Price"};
inline constexpr const char* g_AutopriceCOLimitIfTouched[2] = {"Offset from If Touched Price",
                                                               "Custom Price"};
inline constexpr const char* g_AutopriceFutures[1] = {"Join"};
inline constexpr const char* g_AutopriceMacrosIfTouched[4] = {
    "Offset from If Touched Price", "Offset from Last", "Offset from Ask", "Offset from Bid"};
inline constexpr const char* g_AutopriceMacrosStop[4] = {
    "Offset from Stop Price", "Offset from Last", "Offset from Ask", "Offset from Bid"};
inline constexpr const char* g_AutopriceMacros[9] = {
    "Join", "Improve", "Split", "Shave", "Hit/Take", "Hit/Take+", "Bid", "Ask", "Last"};
inline constexpr const char* g_AutopriceStops[4] = {
    "Offset from Last", "Offset from Ask", "Offset from Bid", "Offset from Primary"};
inline constexpr const char* g_AutopriceStopLimit[9] = {
    "Join", "Improve", "Split", "Shave", "Hit/Take", "Hit/Take+", "Offset from Last",
    "Offset from Ask", "Offset from Bid"};
inline constexpr const char* g_AutopriceOSOChildsStops[4] = {
    "Offset from Last", "Offset from Ask", "Offset from Bid", "Offset from Primary"};

// Activation rules.
inline constexpr const char* g_ActivationRuleCriteria[3] = {"Bid", "Ask", "Last"};
inline constexpr const char* g_ActivationRuleLogValues[4] = {">", ">=", "<", "<="};
inline constexpr const char* g_ActivationRuleAddValues[2] = {"and", "or"};

// Peg, trailing and if-touched words.
inline constexpr STR2STRMAP c_szPegValue[2] = {{"BEST", "Best"}, {"MID", "Mid"}};
inline constexpr const char* g_TrailingValues[2] = {"%", "Pts"};
inline constexpr const char* g_IfTouchedValues[2] = {"Market if Touched", "Limit if Touched"};

// Staged order life span and quantity rounding.
inline constexpr INT2STR g_StageLifeSpan[2] = {{1, "Persist"}, {2, "Clear upon send"}};
inline constexpr INT2STR g_QtyRound[3] = {
    {0, "Down to nearest even lot"}, {1, "Up to nearest even lot"}, {2, "To nearest even lot"}};

// The order states and their display.
inline constexpr DWORD2STR2 g_OrderDisplayStatus[35] = {
    {1, "Received"}, {2, "Broken"}, {3, "Canceled"}, {4, "Change"}, {5, "Dispatch"},
    {6, "Dead"}, {7, "Expired"}, {8, "Filled"}, {9, "Partial Fill (UROut)"},
    {10, "Partial Fill (Alive)"}, {11, "Too Late to Cancel"}, {12, "Sent"}, {13, "UROut"},
    {14, "Rejected"}, {15, "Order Status Message"}, {16, "Replaced"}, {17, "Cancel Sent"},
    {18, "Fill Corrected"}, {19, "Trade Server Canceled"}, {20, "Sending"},
    {21, "Cancel Request Rejected"}, {22, "Unsent"}, {23, "Queued"},
    {24, "Change Request Rejected"}, {25, "Stop Hit"}, {26, "Replace Sent"},
    {27, "Condition Met"}, {28, "Option assignment"}, {29, "Bracket Cancelled"},
    {30, "Bracket Filled"}, {31, "Expiration Cancel Request"}, {32, "Option exercise"},
    {33, "OSO Order"}, {34, "Big Brother Recall Request"}, {35, "Big Brother recall"}};

// clang-format on

}  // namespace qvox
