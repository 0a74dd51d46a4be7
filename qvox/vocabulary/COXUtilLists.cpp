// COXUtil: the lists that an order ticket offers for one symbol category, read by count and by
// position over the constant tables. The bound of an item is the size of its table, which may be
// more than the count offered: the futures actions share the four-row equities table, of which
// a ticket shows the first two.
#include <cstddef>
#include <iterator>
#include <type_traits>

#include "qvox/vocabulary/COXUtil.h"
#include "qvox/vocabulary/CodeTables.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {
namespace {

// The text of one row, whether the table holds plain texts or code and text pairs.
template <const auto& rows>
const char* RowText(std::size_t index) {
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(rows[0])>, const char*>) {
        return rows[index];
    } else {
        return rows[index].text;
    }
}

// One category's list: the rows of its table, and how many of them the ticket offers. The
// default is the list of a category that has none.
struct List {
    std::size_t size = 0;
    int count = 0;
    const char* (*text)(std::size_t) = nullptr;
};

template <const auto& rows>
constexpr List ListOf(int count = static_cast<int>(std::size(rows))) {
    return {std::size(rows), count, &RowText<rows>};
}

const char* Item(const List& list, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= list.size) return nullptr;
    return list.text(static_cast<std::size_t>(index));
}

List ActionList(ULONG category) {
    switch (category) {
        case SymbolCategoryFuture:
            // Futures have no short or cover side.
            return ListOf<g_OrderSidePresent>(2);
        case SymbolCategoryStock:
            return ListOf<g_OrderSidePresent>();
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            return ListOf<g_OrderSideOptions>();
        default:
            return {};
    }
}

List TypeList(ULONG category) {
    switch (category) {
        case SymbolCategoryFuture:
            return ListOf<g_FutureOrderType>();
        case SymbolCategoryStock:
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            return ListOf<g_OrderType>();
        default:
            return {};
    }
}

List DurationList(ULONG category) {
    switch (category) {
        case SymbolCategoryFuture:
            return ListOf<g_FuturesTimeLimit>();
        case SymbolCategoryStock:
            return ListOf<g_TimeLimit>();
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            return ListOf<g_OptionsTimeLimit>();
        case SymbolCategoryForex:
            return ListOf<g_ForexTimeLimit>();
        default:
            return {};
    }
}

List AutoPriceList(ULONG category) {
    switch (category) {
        case SymbolCategoryFuture:
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            // Only a join is worked out on this side for futures and options.
            return ListOf<g_AutopriceFutures>();
        case SymbolCategoryStock:
            return ListOf<g_AutopriceEquities>();
        default:
            return {};
    }
}

List IncrementList(ULONG category) {
    switch (category) {
        case SymbolCategoryFuture:
            return ListOf<g_PriceFuturesIncrements>();
        case SymbolCategoryStock:
            return ListOf<g_PriceIncrements>();
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            return ListOf<g_PriceOptionsIncrements>();
        default:
            return {};
    }
}

}  // namespace

int COXUtil::GetOrderActionCount(ULONG category) {
    return ActionList(category).count;
}

const char* COXUtil::GetOrderActionItem(int index, ULONG category) {
    return Item(ActionList(category), index);
}

int COXUtil::GetOrderTypeCount(ULONG category) {
    return TypeList(category).count;
}

const char* COXUtil::GetOrderTypeItem(int index, ULONG category) {
    return Item(TypeList(category), index);
}

int COXUtil::GetOrderDurationCount(ULONG category) {
    return DurationList(category).count;
}

const char* COXUtil::GetOrderDurationItem(int index, ULONG category) {
    return Item(DurationList(category), index);
}

int COXUtil::GetAutoPriceCount(ULONG category) {
    return AutoPriceList(category).count;
}

const char* COXUtil::GetAutoPriceItem(int index, ULONG category) {
    return Item(AutoPriceList(category), index);
}

int COXUtil::GetAutoPriceIncrementCount(ULONG category) {
    return IncrementList(category).count;
}

const char* COXUtil::GetAutoPriceIncrementItem(int index, ULONG category) {
    return Item(IncrementList(category), index);
}

int COXUtil::GetStagedOrderLifeSpanCount() {
    return ListOf<g_StageLifeSpan>().count;
}

const char* COXUtil::GetStagedOrderLifeSpanItem(int index) {
    return Item(ListOf<g_StageLifeSpan>(), index);
}

}  // namespace qvox
