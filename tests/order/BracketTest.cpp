// Brackets: the side of an order, the pair tests, carrying a property to a partner, and the
// rewrite of a chain into equal pairs, checked on fixed cases and on random chains.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "qvox/order/COrderBarProperties.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

// clang-format off
struct Shape { char side; const char* type; LONG quantity; };
// clang-format on

void Fill(C& order, const Shape& shape) {
    order.m_Account = "ACC";
    order.m_Symbol = "IBM";
    order.m_Side = static_cast<SHORT>(shape.side);
    order.m_OrderType = shape.type;
    order.m_Quantity = shape.quantity;
    order.m_Bracket = true;
}

// head gets shapes[0]; the others are added behind it, owned by their links.
void Build(C& head, const std::vector<Shape>& shapes) {
    Fill(head, shapes[0]);
    for (std::size_t i = 1; i < shapes.size(); ++i) {
        auto* order = new C;
        Fill(*order, shapes[i]);
        ASSERT_NE(head.AddOrderToOCAGroup(order, true), nullptr);
    }
}

// The chain as "type quantity" words, with the links checked both ways.
std::vector<std::string> Words(const C& head) {
    std::vector<std::string> words;
    const C* previous = nullptr;
    for (const C* o = &head; o != nullptr; o = o->GetOCANext()) {
        EXPECT_EQ(o->GetOCAPrevious(), previous);
        words.push_back(std::string(o->m_OrderType.GetText()) + " " +
                        std::to_string(o->m_Quantity.value));
        previous = o;
    }
    return words;
}

TEST(Bracket, SideOfAnOrder) {
    // clang-format off
    const struct { char side; const char* type; C::BracketSide expected; } rows[] = {
        {'B', "Limit", C::BracketSideLower}, {'C', "Market", C::BracketSideLower}, {'B', "Stop Limit", C::BracketSideUpper},
        {'C', "", C::BracketSideUpper}, {'S', "Limit", C::BracketSideUpper}, {'T', "Limit", C::BracketSideUpper},
        {'S', "Stop Market", C::BracketSideLower}, {' ', "", C::BracketSideLower},
    };
    // clang-format on
    for (const auto& row : rows) {
        C order;
        order.m_Side = static_cast<SHORT>(row.side);
        order.m_OrderType = row.type;
        EXPECT_EQ(order.CheckBracketSide(), row.expected) << row.side << " " << row.type;
    }
}

TEST(Bracket, RewriteCases) {
    struct Row {
        const char* name;
        std::vector<Shape> chain;
        bool result;
        std::vector<std::string> after;
    };
    // clang-format off
    const Row rows[] = {
        {"worked example: the stop is split", {{'S', "Stop Market", 100}, {'S', "Limit", 60}, {'S', "Limit", 40}}, true,
         {"Stop Market 60", "Limit 60", "Stop Market 40", "Limit 40"}},
        {"equal pair, head lower", {{'B', "Limit", 5}, {'B', "Stop Market", 5}}, true, {"Limit 5", "Stop Market 5"}},
        {"equal pair, head upper", {{'B', "Stop Market", 5}, {'B', "Limit", 5}}, true, {"Stop Market 5", "Limit 5"}},
        {"last pair stays unequal", {{'B', "Limit", 10}, {'B', "Stop Market", 7}}, true, {"Limit 10", "Stop Market 7"}},
        {"third order has no partner", {{'B', "Limit", 5}, {'B', "Stop Market", 5}, {'B', "Limit", 5}}, true,
         {"Limit 5", "Stop Market 5"}},
        {"negative quantity splits to positive", {{'B', "Limit", -9}, {'B', "Stop Market", 4}, {'B', "Stop Market", 5}}, true,
         {"Limit 5", "Stop Market 5", "Limit 4", "Stop Market 4"}},
        {"head upper whose nearest partner is not first", {{'B', "Stop Market", 3}, {'B', "Stop Market", 7}, {'B', "Limit", 7}}, true,
         {"Stop Market 3", "Limit 3", "Stop Market 7", "Limit 4"}},
        {"all on one side", {{'B', "Limit", 5}, {'B', "Market", 3}}, false, {"Limit 5", "Market 3"}},
    };
    // clang-format on
    for (const Row& row : rows) {
        C x;
        Build(x, row.chain);
        EXPECT_EQ(x.VerifyAndAdjustBracket(), row.result) << row.name;
        EXPECT_EQ(Words(x), row.after) << row.name;
        // A second run finds every pair at once and changes nothing.
        EXPECT_EQ(x.VerifyAndAdjustBracket(), row.result) << row.name;
        EXPECT_EQ(Words(x), row.after) << row.name;
    }
}

TEST(Bracket, MismatchOrNoFlagLeavesTheChain) {
    C x;
    Build(x, {{'B', "Limit", 10}, {'B', "Stop Market", 4}, {'B', "Stop Market", 6}});
    x.GetOCALast()->m_Account = "OTHER";
    EXPECT_FALSE(x.VerifyAndAdjustBracket());
    EXPECT_EQ(Words(x).size(), 3u);

    x.GetOCALast()->m_Account = "ACC";
    x.UpdateGroupBracketFlag(false);
    EXPECT_TRUE(x.VerifyAndAdjustBracket());
    EXPECT_EQ(Words(x), (std::vector<std::string>{"Limit 10", "Stop Market 4", "Stop Market 6"}));
}

// A split in a child chain: the new half has no parent of its own, and every walk of the graph
// still holds with it standing behind the head.
TEST(Bracket, ChildBracketsAreReachedFromTheRootAndSplitsHaveNoParent) {
    C root;
    root.m_Symbol = "ROOT";
    auto* head = new C;
    Build(*head, {{'S', "Stop Market", 100}, {'S', "Limit", 60}, {'S', "Limit", 40}});
    ASSERT_NE(root.AddOSOChildOrder(head, true), nullptr);
    ASSERT_TRUE(root.VerifyAndAdjustBracket());
    ASSERT_EQ(root.GetOSOChild(0), head);
    ASSERT_EQ(Words(*head).size(), 4u);
    C* half = head->GetOCANext()->GetOCANext();
    for (const C* o = head; o != nullptr; o = o->GetOCANext())
        EXPECT_EQ(o->GetOSOParent(), o == half ? nullptr : &root);
    EXPECT_FALSE(half->GetOrderCategory().Get().IsOSOChild());
    EXPECT_TRUE(half->GetRootOrder() == head && half->GetGenerationCount() == 0);
    EXPECT_TRUE(root.OrderContainsOrder(half, true));

    // Adding refuses the half, from this graph and from another one; regrouping leaves it.
    C other;
    EXPECT_EQ(root.AddOSOChildOrder(half, true), nullptr);
    EXPECT_EQ(other.AddOSOChildOrder(half, true), nullptr);
    EXPECT_EQ(half->AddOSOChildOrder(&root, false), nullptr);
    EXPECT_EQ(head->CreateOCAGroup(half), nullptr);
    ASSERT_TRUE(root.VerifyAndAdjustBracket());
    EXPECT_EQ(Words(*head).size(), 4u);
    EXPECT_TRUE(root.RemoveOrder(half));
    EXPECT_EQ(Words(*head).size(), 3u);
}

TEST(Bracket, PairQueries) {
    C x;
    // clang-format off
    Build(x, {{'B', "Limit", 1}, {'B', "Stop Limit", 1}, {'B', "Limit", 1}, {'B', "Stop Limit", 1}, {'B', "Limit", 1}});
    // clang-format on
    std::vector<C*> chain;
    for (C* o = &x; o != nullptr; o = o->GetOCANext())
        chain.push_back(o);
    EXPECT_EQ(x.GetNumberOfBracket(), 2);
    EXPECT_TRUE(chain[0]->IsBrkFirst() && chain[1]->IsBrkFirst() && !chain[2]->IsBrkFirst());
    EXPECT_TRUE(chain[3]->IsOCOBracket());

    // Quantity to the partner: 1 -> 0 and 2 -> 3; the last order has none.
    chain[1]->m_Quantity = 40;
    chain[1]->UpdateBracketProperty(15, true);
    chain[2]->m_Quantity = 70;
    chain[2]->UpdateBracketProperty(15, true);
    chain[4]->m_Quantity = 90;
    chain[4]->UpdateBracketProperty(15, true);
    EXPECT_TRUE(chain[0]->m_Quantity == 40 && chain[3]->m_Quantity == 70);
    EXPECT_EQ(chain[2]->m_Quantity.value, 70);

    // An account to every order, whose keys lose their marks, this order's too.
    for (C* o : chain)
        o->m_OrderKey = "K";
    chain[2]->m_Account = "NEW";
    chain[2]->UpdateBracketProperty(30, false);
    for (C* o : chain)
        EXPECT_TRUE(o->m_Account == "NEW" && !o->m_OrderKey.IsValid());

    // A chain of two limits is no bracket, nor is an order alone.
    C two, alone;
    Build(two, {{'B', "Limit", 1}, {'B', "Limit", 1}});
    EXPECT_FALSE(two.IsOCOBracket() || alone.IsOCOBracket());
}

// Random chains: after the rewrite the head is the head, the links agree, pairs alternate
// sides, every pair but the last is equal, every record is linked once or released, and equal
// side totals come out whole.
TEST(Bracket, RandomChainsKeepTheirInvariants) {
    std::mt19937 random(20261123);
    const char* types[] = {"Limit", "Market", "Stop Limit", "Stop Market"};
    for (int round = 0; round < 400; ++round) {
        const int length = 2 + static_cast<int>(random() % 7);
        // Records no link owns stay with the test, and outlive x.
        std::vector<std::unique_ptr<C>> unowned;
        C x;
        std::vector<C*> originals{&x};
        Fill(x, {'S', types[random() % 4], static_cast<LONG>(1 + random() % 9)});
        for (int i = 1; i < length; ++i) {
            auto order = std::make_unique<C>();
            Fill(*order, {'S', types[random() % 4], static_cast<LONG>(1 + random() % 9)});
            const bool owned = random() % 2 == 0;
            originals.push_back(order.get());
            x.AddOrderToOCAGroup(owned ? order.release() : order.get(), owned);
            if (!owned) unowned.push_back(std::move(order));
        }
        LONG totals[2] = {0, 0};
        for (const C* o : originals)
            totals[o->CheckBracketSide()] += o->m_Quantity.value;
        const C::BracketSide headSide = x.CheckBracketSide();
        const bool oneSide = totals[0] == 0 || totals[1] == 0;

        EXPECT_EQ(x.VerifyAndAdjustBracket(), !oneSide);
        ASSERT_EQ(x.GetOCAPrevious(), nullptr);
        if (oneSide) continue;

        std::set<const C*> seen;
        std::vector<const C*> chain;
        for (const C* o = &x; o != nullptr; o = o->GetOCANext()) {
            ASSERT_TRUE(seen.insert(o).second);
            if (o->GetOCANext() != nullptr) {
                ASSERT_EQ(o->GetOCANext()->GetOCAPrevious(), o);
            }
            chain.push_back(o);
        }
        ASSERT_EQ(chain.size() % 2, 0u);
        LONG after[2] = {0, 0};
        for (std::size_t i = 0; i < chain.size(); i += 2) {
            EXPECT_EQ(chain[i]->CheckBracketSide(), headSide);
            EXPECT_NE(chain[i + 1]->CheckBracketSide(), headSide);
            if (i + 2 < chain.size()) {
                EXPECT_EQ(chain[i]->m_Quantity.value, chain[i + 1]->m_Quantity.value);
            }
            after[chain[i]->CheckBracketSide()] += chain[i]->m_Quantity.value;
            after[chain[i + 1]->CheckBracketSide()] += chain[i + 1]->m_Quantity.value;
        }
        for (const auto& order : unowned) {
            if (seen.count(order.get()) == 0) {
                EXPECT_EQ(order->GetOCAPrevious(), nullptr);
                EXPECT_EQ(order->GetOCANext(), nullptr);
            }
        }
        if (totals[0] == totals[1]) {
            EXPECT_EQ(after[0], totals[0]);
            EXPECT_EQ(after[1], totals[1]);
        }
    }
}

}  // namespace
}  // namespace qvox
