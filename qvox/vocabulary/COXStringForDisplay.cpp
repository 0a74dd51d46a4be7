#include "qvox/vocabulary/COXStringForDisplay.h"

#include <iterator>

#include "qvox/vocabulary/CodeTables.h"

namespace qvox {
namespace {

constexpr const char* kUnknown = "Unknown";
constexpr const char* kInvalid = "Invalid";

// The text of a setting in an increment table, or "Unknown".
template <std::size_t N>
const char* TextOfSetting(const INT2STRMAP (&rows)[N], int setting) {
    for (const INT2STRMAP& row : rows) {
        if (row.code == setting) return row.text;
    }
    return kUnknown;
}

// texts[value - 1] for 1 <= value <= N; null for 0; otherwise `other`.
template <std::size_t N>
const char* TextOfNumber(const char* const (&texts)[N], LONG value, const char* other) {
    if (value == 0) return nullptr;
    if (value < 0 || static_cast<std::size_t>(value) > N) return other;
    return texts[value - 1];
}

// clang-format off
constexpr const char* kActionTexts[] = {"Buy", "Sell Short", "Sell", "Buy to Cover"};
constexpr const char* kOptionActionTexts[] = {"Buy to Open", "Sell to Open", "Sell to Close",
                                              "Buy to Close"};
constexpr const char* kTypeTexts[] = {"Limit", "Market", "Stop Limit", "Stop Market", "Close"};
constexpr const char* kLifeSpanTexts[] = {"Persist", "Clear upon send"};
constexpr const char* kAutoPriceTexts[] = {
    "Join", "Improve", "Split", "Shave", "Hit/Take", "Hit/Take+", "Bid", "Ask", "Last",
    "Offset from Bid", "Offset from Ask", "Offset from Last", "Offset from Primary",
    "Offset from Stop Price", "Offset from If Touched Price"};
constexpr const char* kTrailingTexts[] = {"Pts", "%"};
constexpr const char* kIfTouchedTexts[] = {"Market if Touched", "Limit if Touched"};
constexpr const char* kFractionTexts[] = {"1/4", "1/8", "1/16", "1/32", "1/64", "1/128", "1/256"};
// clang-format on

}  // namespace

const char* GetDisplayStatus(ULONG code) {
    for (const DWORD2STR2& row : g_OrderDisplayStatus) {
        if (row.code == code) return row.text;
    }
    return "";
}

const char* COXStringForDisplay::PositionType(bool isLong) {
    return isLong ? "Long" : "Short";
}

const char* COXStringForDisplay::OrderState(State state) {
    return GetDisplayStatus(state);
}

const char* COXStringForDisplay::OrderAction(EMVOrderAction action, ULONG category) {
    const char* const* texts = nullptr;
    switch (category) {
        case SymbolCategoryFuture:
        case SymbolCategoryStock:
        case SymbolCategoryForex:
            texts = kActionTexts;
            break;
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            texts = kOptionActionTexts;
            break;
        default:
            return kUnknown;
    }
    if (action < OrderActionBuy || action > OrderActionBuyToCover) return kUnknown;
    return texts[action - 1];
}

const char* COXStringForDisplay::OrderType(EMVOrderType type) {
    const char* text = TextOfNumber(kTypeTexts, type, kUnknown);
    return text == nullptr ? kUnknown : text;
}

const char* COXStringForDisplay::StagedOrderLifeSpan(StageOrderLifeSpan lifeSpan) {
    const char* text = TextOfNumber(kLifeSpanTexts, lifeSpan, kUnknown);
    return text == nullptr ? kUnknown : text;
}

const char* COXStringForDisplay::AutoPrice(EOXAutoPrice autoPrice) {
    return TextOfNumber(kAutoPriceTexts, autoPrice, kInvalid);
}

const char* COXStringForDisplay::StopAutoPrice(EOXAutoPrice autoPrice) {
    return AutoPrice(autoPrice);
}

const char* COXStringForDisplay::TrailingValue(EnumTrailingStop trailing) {
    return TextOfNumber(kTrailingTexts, trailing, kInvalid);
}

const char* COXStringForDisplay::IfTouchedValue(EnumIfTouch ifTouch) {
    return TextOfNumber(kIfTouchedTexts, ifTouch, kInvalid);
}

const char* COXStringForDisplay::AutoPriceIncrement(int setting, ULONG category) {
    switch (category) {
        case SymbolCategoryFuture:
            return TextOfSetting(g_PriceFuturesIncrements, setting);
        case SymbolCategoryStock:
            return TextOfSetting(g_PriceIncrements, setting);
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            return TextOfSetting(g_PriceOptionsIncrements, setting);
        default:
            return kUnknown;
    }
}

const char* COXStringForDisplay::AutoPriceIncrementFraction(int setting, ULONG) {
    if (setting < 2 || setting > 8) return "1/2";
    return kFractionTexts[setting - 2];
}

CString COXStringForDisplay::FormatOrderStatusBarMessage(const char* a, const char* b,
                                                         const char* c, const char* d) {
    const auto text = [](const char* s) { return s == nullptr ? "" : s; };
    CString message;
    if (c != nullptr && *c != '\0') {
        message.Format("%s %s - %s #%s", text(a), text(b), c, text(d));
    } else {
        message.Format("%s %s", text(a), text(b));
    }
    return message;
}

}  // namespace qvox
