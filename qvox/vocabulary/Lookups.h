// Lookups between the codes that go to the server and the texts shown to the user, over the
// tables of CodeTables.h. None fails: each has a fallback, given on its line. A `const char*`
// result points into a table or at a constant text that lives as long as the library. A null
// `const char*` argument gets the fallback, and a null openClose pointer is not written.
//
// How texts are compared:
// - exact: byte for byte.
// - no case: ASCII letters fold; bytes 0x80-0xFF compare as they are.
// - trimmed: white space (" \t\n\v\f\r", as CString::Trim) is cut from both ends of the argument.
// - squeezed: every space (' ' only) is dropped from both sides of the comparison, so "gtc +"
//   meets "GTC+"; a tab or other white space inside a text is kept and must match. The table
//   texts hold no white space but single spaces.
// A CString argument is compared as the whole of its text; a null passed for one arrives as the
// empty text. No comparison copies or allocates.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/CStringList.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/vocabulary/CodeTables.h"

namespace qvox {

// Duration code to text: g_TimeLimit, then g_FuturesTimeLimit; trimmed, exact. "" if unknown.
const char* GetTIF(const char* code);
// Duration text to code: g_TimeLimit trimmed, squeezed, no case; then g_FuturesTimeLimit exactly
// against the trimmed, squeezed text ("MOC" gives "OCO", "moc" gives ""). "" if unknown.
const char* GetTIFCodeFromDisplay(const char* text);
// Order type code to text: g_OrderType, then g_FutureOrderType; trimmed, no case. "" if unknown.
const char* GetType(const char* code);
// Order type text to code, over the same tables; trimmed, no case. "" if unknown.
const char* GetOrderTypeCodeFromDisplayValue(const char* text);
// A route code as the built-in tables spell it: g_Route, then g_OptionsRoute; trimmed, no case.
// "" if unknown (the empty code is the default route, and gives "" too).
const char* GetRouteCodeFromCode(const char* code);
// Stop trigger code to text, no case; an empty code means "STT". Unknown: "Single Trade Tick".
const char* GetStopTriggerFromCode(CString code);
// Stop trigger text to code, no case. Unknown or empty: "STT".
const char* GetStopTriggerCodeFromValue(CString text);
// Condition trigger code to text, no case; an empty code means "STT". Unknown: "Single Trade
// Tick".
const char* GetConditionTriggerFromCode(CString code);
// Condition trigger text to code, no case. Unknown or empty: "STT".
const char* GetConditionTriggerCodeFromValue(CString text);
// Futures increment setting to text (g_PriceFuturesIncrements). "" if unknown.
const char* GetFuturesIncString(int code);
// Options increment setting to text (g_PriceOptionsIncrements). "" if unknown.
const char* GetOptionsIncString(int code);
// Staged order life span code to text: 1 "Persist", 2 "Clear upon send". "" if unknown.
const char* GetLifeSpanFromCode(int code);
// Staged order life span text to code; trimmed, exact. -1 if unknown.
int GetLifeSpanCode(const char* text);
// Quantity rounding code to text (g_QtyRound). "" if unknown.
const char* GetQuantityRoundString(int code);
// Quantity rounding text to code; trimmed, exact. 0 if unknown, which is a valid code ("Down").
int GetQtyRoundFromCode(const char* text);
// Peg text to code ("Best" "BEST", "Mid" "MID"); no case. "" if unknown.
const char* GetPegString(const CString& text);
// The built-in route table: g_RouteForFlatTicketing if flat, else g_Route. Never null.
const STR2STRMAP* GetRoute(bool flat);
// The rows of GetRoute(flat): 8 if flat, else 11.
int GetRouteCount(bool flat);
// Side code to text: g_OrderSidePresent if present is non-zero, else g_OrderSidePast; exact.
// "" if unknown.
const char* GetSide(char code, int present);
// Side text to code: trimmed and squeezed, no case, present tense then past tense. With exact 0
// short ('T') folds into sell and cover ('C') into buy. 0 if unknown or empty.
char GetSideCodeFromDisplayValue(const char* text, LONG exact);
// 'B'<->'S', 'C'<->'T'; anything else gives 'B'.
char GetOppositeAction(char side);
// An option side ("Buy to Open" and the like; squeezed, no case) to "Buy" or "Sell", writing 'O'
// or 'C' to openClose when it is not null. "" for any other text, openClose untouched.
const char* GetSideFromOptionSideString(CString text, char* openClose);
// For option categories (any but 0, 2 and 12): a side text with its open/close code in option
// wording ("Buy" with 'O' is "Buy to Open"); exact. Other texts and codes come back unchanged.
CString GetOptionOrderTypeFromSide(CString side, char openClose, ULONG category);
// The side the trade server knows: equities (2) keep theirs; elsewhere 'B' and 'C' give 'B',
// everything else 'S'.
char CovertRegularSideToTradeServerSide(char side, ULONG category);
// Back from the trade server for options (3, 8): with 'C' a sell stays and anything else is 'C';
// with 'O' a buy stays and anything else is 'T'. Other categories and codes keep the side.
char CovertTradeServerSideToRegularSide(char side, ULONG category, char openClose);
// The position of an order type's code in strOrderString ("Limit" 0, "Market" 1, "Stop Market"
// 2, "Stop Limit" 3); the text as GetOrderTypeCodeFromDisplayValue reads it. -1 otherwise.
int GetOrderTypeNumber(CString text);
// The text without its commas, read as AtoI reads: "1,000,000" gives 1000000. No digits: 0.
int GetIntegerValue(const CString& text);
// Empties list, then appends the texts of all 13 rows of g_TimeLimit.
void GetDurationInfoList(CStringList& list);
// Empties list, then appends the duration texts of a category: futures (0) g_FuturesTimeLimit
// without "MOC", equities (2) g_TimeLimit, options (3) g_OptionsTimeLimit, forex (12)
// g_ForexTimeLimit. Any other category, 8 included, leaves the list empty.
void GetDurationInfoList(CStringList& list, LONG category);

}  // namespace qvox
