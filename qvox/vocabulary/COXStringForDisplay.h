// COXStringForDisplay: enumerations to the texts shown to the user. A static class; every text
// is constant and lives as long as the library.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {

class COXStringForDisplay {
  public:
    COXStringForDisplay() = delete;

    // "Long" or "Short".
    static const char* PositionType(bool isLong);
    // The state's text in g_OrderDisplayStatus; "" for a number not in it.
    static const char* OrderState(State state);
    // Futures, equities and forex (0, 2, 12): "Buy", "Sell Short", "Sell", "Buy to Cover";
    // options (3, 8): "Buy to Open", "Sell to Open", "Sell to Close", "Buy to Close". Any other
    // category or action: "Unknown".
    static const char* OrderAction(EMVOrderAction action, ULONG category);
    // "Limit", "Market", "Stop Limit", "Stop Market", "Close"; anything else "Unknown".
    static const char* OrderType(EMVOrderType type);
    // "Persist", "Clear upon send"; anything else "Unknown".
    static const char* StagedOrderLifeSpan(StageOrderLifeSpan lifeSpan);
    // None gives null; 1 to 15 their display text; anything else, the server-only 16 to 21
    // included, "Invalid".
    static const char* AutoPrice(EOXAutoPrice autoPrice);
    static const char* StopAutoPrice(EOXAutoPrice autoPrice);
    // None gives null; "Pts", "%"; anything else "Invalid".
    static const char* TrailingValue(EnumTrailingStop trailing);
    // None gives null; "Market if Touched", "Limit if Touched"; anything else "Invalid".
    static const char* IfTouchedValue(EnumIfTouch ifTouch);
    // An increment setting's display by category: futures, equities and options by their
    // tables; "Unknown" for a setting not in the table or another category.
    static const char* AutoPriceIncrement(int setting, ULONG category);
    // Setting 2 to 8 give "1/4" to "1/256"; every other setting "1/2".
    static const char* AutoPriceIncrementFraction(int setting, ULONG category);
    // The words an order list shows for an advanced options string ("All or None, Show Only:
    // 100"): read as GMT, then the options that have words, in a fixed order. "" for "".
    // Defined with the string's reader, in interchange/.
    static CString AdvancedOrderString(const CString& advanced);
    // "a b - c #d" when c is a non-empty text, else "a b". A null text prints as "".
    static CString FormatOrderStatusBarMessage(const char* a, const char* b, const char* c,
                                               const char* d);
};

// The text of a state code in g_OrderDisplayStatus, or "" if the code is not there.
const char* GetDisplayStatus(ULONG code);

}  // namespace qvox
