#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "qvox/vocabulary/COXUtil.h"
#include "qvox/vocabulary/CodeTables.h"

namespace qvox {
namespace {

template <class Row, std::size_t N>
std::vector<const char*> Texts(const Row (&rows)[N]) {
    std::vector<const char*> texts;
    for (const Row& row : rows) {
        if constexpr (std::is_same_v<Row, const char*>) {
            texts.push_back(row);
        } else {
            texts.push_back(row.text);
        }
    }
    return texts;
}

// Every list for every category: the count, each item as the row of its table, and null just
// outside the table. Categories not named have no list.
TEST(TicketLists, CountsItemsAndBoundsForEveryCategory) {
    // clang-format off
    struct ForCategory { ULONG category; int count; std::vector<const char*> items; };
    const struct { const char* name; int (*count)(ULONG); const char* (*item)(int, ULONG); std::vector<ForCategory> lists; } lists[] = {
        {"action", COXUtil::GetOrderActionCount, COXUtil::GetOrderActionItem,
         {{0, 2, Texts(g_OrderSidePresent)}, {2, 4, Texts(g_OrderSidePresent)},
          {3, 4, Texts(g_OrderSideOptions)}, {8, 4, Texts(g_OrderSideOptions)}}},
        {"type", COXUtil::GetOrderTypeCount, COXUtil::GetOrderTypeItem,
         {{0, 4, Texts(g_FutureOrderType)}, {2, 4, Texts(g_OrderType)},
          {3, 4, Texts(g_OrderType)}, {8, 4, Texts(g_OrderType)}}},
        {"duration", COXUtil::GetOrderDurationCount, COXUtil::GetOrderDurationItem,
         {{0, 6, Texts(g_FuturesTimeLimit)}, {2, 13, Texts(g_TimeLimit)},
          {3, 6, Texts(g_OptionsTimeLimit)}, {8, 6, Texts(g_OptionsTimeLimit)},
          {12, 8, Texts(g_ForexTimeLimit)}}},
        {"auto price", COXUtil::GetAutoPriceCount, COXUtil::GetAutoPriceItem,
         {{0, 1, Texts(g_AutopriceFutures)}, {2, 6, Texts(g_AutopriceEquities)},
          {3, 1, Texts(g_AutopriceFutures)}, {8, 1, Texts(g_AutopriceFutures)}}},
        {"increment", COXUtil::GetAutoPriceIncrementCount, COXUtil::GetAutoPriceIncrementItem,
         {{0, 10, Texts(g_PriceFuturesIncrements)}, {2, 10, Texts(g_PriceIncrements)},
          {3, 10, Texts(g_PriceOptionsIncrements)}, {8, 10, Texts(g_PriceOptionsIncrements)}}},
    };
    // clang-format on
    const ULONG categories[] = {0, 1, 2, 3, 4, 8, 12, 254, 0xFFFFFFFFu};
    for (const auto& list : lists) {
        for (const ULONG category : categories) {
            ForCategory expected{category, 0, {}};
            for (const ForCategory& c : list.lists) {
                if (c.category == category) expected = c;
            }
            SCOPED_TRACE(testing::Message() << list.name << " list, category " << category);
            EXPECT_EQ(list.count(category), expected.count);
            const int size = static_cast<int>(expected.items.size());
            for (int i = 0; i < size; ++i) {
                EXPECT_STREQ(list.item(i, category), expected.items[static_cast<std::size_t>(i)])
                    << i;
            }
            for (const int outside : {-1, size, size + 1, INT_MIN, INT_MAX}) {
                EXPECT_EQ(list.item(outside, category), nullptr) << outside;
            }
        }
    }
    // The bound is the table's: the futures actions offer two, yet the short side is there.
    EXPECT_STREQ(COXUtil::GetOrderActionItem(2, 0), "Sell Short");

    EXPECT_EQ(COXUtil::GetStagedOrderLifeSpanCount(), 2);
    EXPECT_EQ(std::string(COXUtil::GetStagedOrderLifeSpanItem(0)) + "|" +
                  COXUtil::GetStagedOrderLifeSpanItem(1),
              "Persist|Clear upon send");
    for (const int outside : {-1, 2, INT_MIN, INT_MAX}) {
        EXPECT_EQ(COXUtil::GetStagedOrderLifeSpanItem(outside), nullptr) << outside;
    }
}

}  // namespace
}  // namespace qvox
