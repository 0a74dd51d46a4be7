// Graphs far larger than any stack: every operation must work without recursion.
#include <gtest/gtest.h>

#include <memory>

#include "qvox/order/COrderBarProperties.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

TEST(DeepGraphs, LongChain) {
    constexpr int kOrders = 100000;
    auto root = std::make_unique<C>();
    C* last = root.get();
    for (int i = 1; i < kOrders; ++i) {
        C* order = new C;
        order->m_Quantity = i;
        // Adding behind the last order costs the same at any length.
        ASSERT_EQ(last->AddOrderToOCAGroup(order, true), order);
        last = order;
    }
    EXPECT_EQ(last->GetRootOrder(), root.get());
    EXPECT_TRUE(root->OrderContainsOrder(last, true) &&
                last->OrderContainsOrder(root.get(), false));

    auto clone = std::make_unique<C>(*root, C::eCopyWithRelations);
    const C* a = root.get();
    const C* b = clone.get();
    int count = 0;
    for (; a != nullptr && b != nullptr; a = a->GetOCANext(), b = b->GetOCANext(), ++count) {
        ASSERT_TRUE(*a == *b);
    }
    EXPECT_EQ(count, kOrders);
    EXPECT_EQ(a, b);  // both ended
    root->ResetOrderID();
    EXPECT_TRUE(root->RemoveOrder(last));
    clone.reset();
    root.reset();
}

TEST(DeepGraphs, DeepOsoTree) {
    constexpr int kGenerations = 10000;
    auto root = std::make_unique<C>();
    C* youngest = root.get();
    for (int i = 0; i < kGenerations; ++i) {
        youngest = youngest->AddOSOChildOrder(new C, true);
        ASSERT_NE(youngest, nullptr);
    }
    EXPECT_EQ(youngest->GetGenerationCount(), kGenerations);
    EXPECT_TRUE(youngest->GetRootOrder() == root.get() && root->OrderContainsOrder(youngest, true));

    auto clone = std::make_unique<C>(*youngest);  // from the root: the whole tree
    const C* order = clone.get();
    int depth = 0;
    while (order->GetOSOChildCount() > 0) {
        order = order->GetOSOChild(0);
        ++depth;
    }
    EXPECT_EQ(depth, kGenerations);
    EXPECT_EQ(order->GetRootOrder(), clone.get());
    root->ResetOrderID();
    root->Dump(0);
    clone.reset();
    root.reset();
}

}  // namespace
}  // namespace qvox
