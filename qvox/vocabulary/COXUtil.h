// COXUtil: display texts and server codes to enumerations, the lists a ticket offers for one
// symbol category, auto price increments, trade symbols and the split of a quantity. A static
// class: no instances, no state, every member reentrant.
#pragma once

#include <type_traits>

#include "qvox/platform/CString.h"
#include "qvox/platform/CUIntArray.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/vocabulary/OrderEnums.h"
#include "qvox/vocabulary/SymbolCategories.h"

namespace qvox {

class COXUtil {
  public:
    COXUtil() = delete;

    // Texts to enumerations. Comparisons are exact; an unknown text, and null, give 0.

    // "Buy"/"Buy to Open" 1, "Sell Short"/"Sell to Open" 2, "Sell"/"Sell to Close" 3,
    // "Buy to Cover"/"Buy to Close" 4.
    static EMVOrderAction OrderActionStrToEnum(const char* text);
    // "Limit", "Market", "Stop Limit", "Stop Market": 1 to 4. "Close" is not accepted.
    static EMVOrderType OrderTypeStrToEnum(const char* text);
    // "Pts" 1, "%" 2.
    static EnumTrailingStop TrailingStrToEnum(const char* text);
    // The four stop offsets: "Offset from Bid" 10, "... Ask" 11, "... Last" 12, "... Primary" 13.
    static EOXAutoPrice StopAPStrToEnum(const char* text);
    // "Persist" 1, "Clear upon send" 2.
    static StageOrderLifeSpan StagedOrderLifeSpanStrToEnum(const char* text);
    // The fifteen display texts, 1 to 15.
    static EOXAutoPrice AutoPriceStrToEnum(const char* text);
    // The fourteen server codes ("JON", ..., "LITD").
    static EOXAutoPrice ServerAutoPriceStrToEnum(const char* text);
    // False for the auto prices that follow the market alone (Bid, Ask, Last and the three
    // market offsets); true for every other text, an unknown one included.
    static bool CanSendAutoprice(const char* text);
    // 0, 1 and 2 pass as they are; anything else is ConnectionStateOther.
    static EOXConnectionState Convert(ULONG state);

    // Auto price increments.

    // A setting's worth: futures (0) and equities (2) by their tables, options (3, 8) at the
    // penny threshold; 0.0 for every other category, forex included.
    static double GetAutoPriceIncrement(int setting, ULONG category);
    // For a decimal base code as above; for a fraction code the fraction of the setting.
    static double GetAutoPriceIncrement(int setting, ULONG category, char code);
    // Setting 2 to 8 give 1/4 to 1/256; every other setting 1/2. The category plays no part.
    static double GetAutoPriceIncrementFraction(int setting, ULONG category);
    // A display text back to its setting: futures and options by exact text, equities by
    // value ("0.1" and ".10" both give 6). Not found, null, or another category: 0.
    static int AutoPriceIncrementStrToEnum(const char* text, ULONG category);

    // Lists by symbol category. A count is 0 for a category without the list; an item is null
    // for a category without the list or a position outside the table. The bound of an item is
    // its table's, not the count: GetOrderActionItem(2, 0) is "Sell Short".

    static int GetOrderActionCount(ULONG category);
    static const char* GetOrderActionItem(int index, ULONG category);
    static int GetOrderTypeCount(ULONG category);
    static const char* GetOrderTypeItem(int index, ULONG category);
    static int GetOrderDurationCount(ULONG category);
    static const char* GetOrderDurationItem(int index, ULONG category);
    static int GetAutoPriceCount(ULONG category);
    static const char* GetAutoPriceItem(int index, ULONG category);
    static int GetAutoPriceIncrementCount(ULONG category);
    static const char* GetAutoPriceIncrementItem(int index, ULONG category);
    static int GetStagedOrderLifeSpanCount();
    static const char* GetStagedOrderLifeSpanItem(int index);

    // The routes of the route store (routes/RouteManager.h, where these two live): the items of
    // GetRouteInfoList(list, category, false), "Intelligent" first. An item is text that the
    // store holds until the category's list is next refreshed; null beyond the list.
    static ULONG GetOrderRouteCount(ULONG category);
    static const char* GetOrderRouteItem(ULONG index, ULONG category);

    // Categories of symbols and accounts.

    // 0 futures, 2 equities, 3 and 8 options, 12 forex; AccCategoryNone for the others.
    static EOXAccCategory GetAccCatFromSymbolCat(ULONG category);
    // The way back: futures 0, equities 2, options 3, forex 12; 254 for anything else.
    static ULONG GetSymbolCatFromAccCat(EOXAccCategory category);

    // Trade symbols: the part of a symbol that the trade server knows.

    // Cuts a leading "@" from a contract of five characters or more, and ends the symbol at
    // its first ".", "-" or "=" (keeping ".P"). True with start and length of the trade
    // symbol, false (nothing written) when the symbol is already one. Null gives false.
    static bool ConvertToTradeSymbolForFutures(const char* symbol, ULONG& start, ULONG& length);
    // The symbol, or its trade symbol when the rule finds one. Null gives "".
    static CString ConvertToTradeSymbolForFutures(const char* symbol);
    // "US:" and the marker after it are cut: "US:$XYZ" gives start 4, length 3. "US:" alone
    // gives true with a length that wraps to 0xFFFFFFFF; any other symbol gives false.
    static bool ConvertToTradeSymbolForEquities(const char* symbol, ULONG& start, ULONG& length);
    // The trade symbol, or the symbol itself; "US:" gives "". Null gives "".
    static CString ConvertToTradeSymbolForEquities(const char* symbol);
    // Futures (0) and equities (2) by their rules; other categories keep the symbol. Writes the
    // trade symbol with its terminator to out and returns out, if it fits in outSize bytes;
    // otherwise returns symbol and leaves out untouched.
    static const char* ConvertToTradeSymbol(const char* symbol, ULONG category, char* out,
                                            ULONG outSize);
    // As the buffer form with room for the text and its terminator: the text becomes its
    // trade symbol, never longer than it was ("US:" stays "US:").
    static CString& ConvertToTradeSymbol(CString& symbol, ULONG category);
    static CString ConvertToTradeSymbol(const char* symbol, ULONG category);

    // True if value is one of the numbers before the closing -1: IsPresent(5, 1, 5, -1).
    // Numbers after the first -1 are not looked at; a list without one is read to its end.
    template <class... Values>
    static bool IsPresent(LONG value, Values... list) {
        static_assert((std::is_integral_v<Values> && ...), "IsPresent takes integers");
        bool found = false;
        bool ended = false;
        (void)((Present(value, static_cast<LONG>(list), found, ended)) || ...);
        return found;
    }
    template <class... Values>
    static bool IsNotPresent(LONG value, Values... list) {
        return !IsPresent(value, list...);
    }

    // Splits total shares or contracts into count orders: every part but the last a whole
    // number of lots (100 for equities, 1 otherwise), the last the rest. False, with out
    // untouched, if there are fewer lots than orders or total is negative; count 0 or less
    // gives true with out empty.
    static bool BreakQty(int total, int count, ULONG category, CUIntArray& out);

  private:
    // One step of IsPresent; true stops the walk.
    static constexpr bool Present(LONG value, LONG item, bool& found, bool& ended) {
        if (ended || item == -1) {
            ended = true;
            return true;
        }
        found = item == value;
        return found;
    }
};

}  // namespace qvox
