#include "qvox/vocabulary/COXDefault.h"

namespace qvox {
namespace {

// Futures, equities and options are traded from a ticket with defaults; the others are not.
bool HasTicketDefaults(ULONG category) {
    return category == SymbolCategoryFuture || category == SymbolCategoryStock ||
           category == SymbolCategoryStockOption || category == SymbolCategoryOtherOption;
}

}  // namespace

EMVOrderType COXDefault::OrderType(ULONG category) {
    return HasTicketDefaults(category) ? OrderTypeLimit : OrderTypeUnknown;
}

EOXAutoPrice COXDefault::AutoPrice(ULONG) {
    return AutoPriceNone;
}

int COXDefault::AutoPriceIncrement(ULONG category) {
    return HasTicketDefaults(category) ? 1 : 0;
}

}  // namespace qvox
