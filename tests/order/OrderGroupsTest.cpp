// The graph of related orders: adding, refusing, removing, regrouping and cloning, with the
// ownership of every record checked by the sanitizers.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "qvox/order/COrderBarProperties.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

C* Owned(const char* symbol, bool bracket = false) {
    C* order = new C;
    order->m_Symbol = symbol;
    if (bracket) order->m_Bracket = true;
    return order;
}

std::vector<const C*> Chain(const C* first) {
    std::vector<const C*> orders;
    for (const C* o = first; o != nullptr; o = o->GetOCANext())
        orders.push_back(o);
    return orders;
}

// Checks the graph invariants from a root: links agree both ways, a chain shares its parent,
// a child list holds chain heads only.
void ExpectConsistent(const C* root) {
    std::vector<const C*> pending{root};
    while (!pending.empty()) {
        const C* order = pending.back();
        pending.pop_back();
        if (const C* next = order->GetOCANext()) {
            EXPECT_EQ(next->GetOCAPrevious(), order);
            EXPECT_EQ(next->GetOSOParent(), order->GetOSOParent());
            pending.push_back(next);
        }
        for (ULONG i = 0; i < order->GetOSOChildCount(); ++i) {
            const C* child = order->GetOSOChild(i);
            EXPECT_EQ(child->GetOSOParent(), order);
            EXPECT_EQ(child->GetOCAPrevious(), nullptr);
            pending.push_back(child);
        }
    }
}

TEST(Groups, AddingAndRefusals) {
    C root;
    root.m_Symbol = "ROOT";
    C* second = root.AddOrderToOCAGroup(Owned("B"), true);
    ASSERT_EQ(root.GetOCALast(), second);
    EXPECT_TRUE(root.GetOrderCategory().Get().IsOCA());
    EXPECT_EQ(root.GetNumberOfOCO(), 0);  // a plain chain counts no bracket

    // Already in the graph, itself, and the root below its own chain: all refused.
    EXPECT_TRUE(root.AddOrderToOCAGroup(second, true) == nullptr &&
                root.AddOrderToOCAGroup(&root, false) == nullptr &&
                second->AddOSOChildOrder(&root, false) == nullptr);

    std::unique_ptr<C> bracket(Owned("BRK", true));
    EXPECT_EQ(root.AddOrderToOCAGroup(bracket.get(), true), nullptr);  // a bracket order stays out
    EXPECT_EQ(bracket->GetOCAPrevious(), nullptr);

    // A plain order joining a bracket becomes a bracket order.
    C head;
    head.m_Bracket = true;
    C* joined = head.AddOrderToOCAGroup(Owned("J"), true);
    EXPECT_TRUE(joined->m_Bracket == true && head.GetOrderCategory().Get().IsOCO());
    EXPECT_EQ(joined->GetNumberOfOCO(), 2);  // asked of either order

    // Children: the chain of a child shares its parent; an order of it does not enter the list.
    C* child = second->AddOSOChildOrder(Owned("C1"), true);
    C* childNext = child->AddOrderToOCAGroup(Owned("C2"), true);
    EXPECT_TRUE(childNext->GetOrderCategory().Get().IsOSOChild());
    EXPECT_EQ(second->GetOSOChildCount(), 1u);
    EXPECT_TRUE(childNext->GetGenerationCount() == 1 && childNext->GetRootOrder() == &root);
    C* grandChild = childNext->AddOSOChildOrder(Owned("G"), true);
    EXPECT_EQ(grandChild->GetGenerationCount(), 2);

    // A record with a parent, even in another graph, is refused.
    std::unique_ptr<C> foreign(new C);
    EXPECT_EQ(foreign->AddOrderToOCAGroup(grandChild, true), nullptr);

    // AddOSOChildOrder given the middle of a chain hangs the whole chain from its head.
    auto otherHead = std::make_unique<C>();
    C* middle = otherHead->AddOrderToOCAGroup(Owned("M"), true);
    otherHead->AddOrderToOCAGroup(Owned("N"), true);
    EXPECT_EQ(root.AddOSOChildOrder(middle, true), otherHead.get());
    otherHead.release();  // root's list owns it now
    for (const C* o : Chain(middle->GetOCAFirst()))
        EXPECT_EQ(o->GetOSOParent(), &root);
    ExpectConsistent(&root);
    EXPECT_FALSE(child->OrderContainsOrder(&root, true));
    EXPECT_TRUE(child->OrderContainsOrder(&root, false));
    EXPECT_FALSE(root.OrderContainsOrder(nullptr, false));

    // The by-reference adders take a clone of a lone order, and refuse any other.
    C refRoot;
    C lone;
    lone.m_Symbol = "LONE";
    C* refClone = refRoot.AddOSOChildOrder(lone);
    ASSERT_NE(refClone, nullptr);
    EXPECT_TRUE(refClone != &lone && refClone->m_Symbol == "LONE");
    EXPECT_EQ(refRoot.AddOrderToOCAGroup(refRoot), nullptr);  // refRoot has a child now
    C chained;
    chained.AddOrderToOCAGroup(Owned("X"), true);
    EXPECT_EQ(refRoot.AddOrderToOCAGroup(chained), nullptr);
    // A refBracket refClone refused by a plain chain is not leaked.
    C refBracket;
    refBracket.m_Bracket = true;
    EXPECT_EQ(refRoot.AddOrderToOCAGroup(refBracket), nullptr);
}

TEST(Groups, RemoveOrder) {
    C root;
    C* a = root.AddOrderToOCAGroup(Owned("A"), true);
    C* head = a->AddOSOChildOrder(Owned("H"), true);
    C* second = head->AddOrderToOCAGroup(Owned("S"), true);
    C* third = head->AddOrderToOCAGroup(Owned("T"), true);
    third->AddOSOChildOrder(Owned("TC"), true);

    EXPECT_FALSE(root.RemoveOrder(&root) || head->RemoveOrder(a));  // itself; above, not below
    EXPECT_TRUE(root.RemoveOrder(second));                          // the second order alone
    EXPECT_EQ(Chain(head), (std::vector<const C*>{head, third}));
    EXPECT_TRUE(root.RemoveOrder(head));  // the head takes its chain and children along
    EXPECT_EQ(a->GetOSOChildCount(), 0u);

    // A lone child, and an order added without ownership survives its removal.
    C survivor;
    survivor.m_Symbol = "SURV";
    a->AddOSOChildOrder(&survivor, false);
    C* lone = a->AddOSOChildOrder(Owned("L"), true);
    EXPECT_TRUE(root.RemoveOrder(&survivor) && survivor.m_Symbol == "SURV");
    EXPECT_TRUE(root.RemoveOrder(lone));
    EXPECT_EQ(a->GetOSOChildCount(), 0u);
    ExpectConsistent(&root);
}

TEST(Groups, RemoveWithRulesTakesBracketPairs) {
    for (std::size_t removeAt : {2u, 3u}) {
        C root;
        root.m_Bracket = true;
        std::vector<C*> chain{&root};
        for (int i = 1; i < 4; ++i)
            chain.push_back(root.AddOrderToOCAGroup(Owned("P"), true));
        EXPECT_TRUE(root.RemoveOrderWithRules(chain[removeAt]));
        EXPECT_EQ(Chain(&root), (std::vector<const C*>{chain[0], chain[1]}));
        EXPECT_FALSE(root.RemoveOrderWithRules(&root));  // the root is not removable
        EXPECT_EQ(Chain(&root).size(), 2u);
        EXPECT_FALSE(root.RemoveOrderWithRules(nullptr));
    }
    // A bracket chain below a parent: the head takes its whole chain, the partner with it.
    C parent;
    C* head = parent.AddOSOChildOrder(Owned("H", true), true);
    head->AddOrderToOCAGroup(Owned("P", true), true);
    EXPECT_FALSE(parent.RemoveOrderWithRules(head));
    EXPECT_EQ(parent.GetOSOChildCount(), 0u);
}

TEST(Groups, CreateAndUngroupChildChains) {
    C parent;
    C first, other, third;
    parent.AddOSOChildOrder(&first, false);
    parent.AddOSOChildOrder(&other, false);
    C* owned = parent.AddOSOChildOrder(Owned("O"), true);
    EXPECT_EQ(first.CreateOCAGroup(&other), &first);
    EXPECT_EQ(first.CreateOCAGroup(owned), &first);  // an owned child stays owned, by the chain
    EXPECT_EQ(parent.GetOSOChildCount(), 1u);
    EXPECT_EQ(Chain(&first), (std::vector<const C*>{&first, &other, owned}));
    EXPECT_EQ(first.CreateOCAGroup(&other), nullptr);  // already in this chain
    C loneA, loneB;
    EXPECT_EQ(loneA.CreateOCAGroup(&loneB), nullptr);  // neither is a child

    // Ungrouping: the non-owning link between first and other goes, the owning link to the
    // last order deletes it.
    EXPECT_EQ(other.UnGroupOCA(), &other);
    EXPECT_TRUE(first.GetOCANext() == nullptr && other.GetOCAPrevious() == nullptr);
    EXPECT_EQ(other.GetOCANext(), nullptr);
    EXPECT_EQ(first.UnGroupOCA(), nullptr);  // no chain any more
    third.m_Symbol = "T";
    EXPECT_EQ(third.UnGroupOCA(), nullptr);
}

TEST(Groups, CloningReproducesTheShape) {
    auto root = std::make_unique<C>();
    root->m_Symbol = "R";
    C* b = root->AddOrderToOCAGroup(Owned("B"), true);
    C notOwned;
    notOwned.m_Symbol = "N";
    C* child = b->AddOSOChildOrder(&notOwned, false);
    child->AddOrderToOCAGroup(Owned("N2"), true);
    child->AddOSOChildOrder(Owned("G"), true);

    // Default mode from any order: a clone of the whole graph from its root.
    auto clone = std::make_unique<C>(*child);
    ExpectConsistent(clone.get());
    EXPECT_TRUE(clone->m_Symbol == "R");
    C* cloneB = clone->GetOCANext();
    ASSERT_TRUE(cloneB != nullptr && cloneB->GetOSOChildCount() == 1u);
    const C* cloneChild = cloneB->GetOSOChild(0);
    EXPECT_TRUE(cloneChild->m_Symbol == "N");
    EXPECT_TRUE(cloneChild->GetOCANext()->m_Symbol == "N2");
    EXPECT_TRUE(cloneChild->GetOSOChild(0)->m_Symbol == "G");
    EXPECT_EQ(cloneChild->GetOCANext()->GetOSOParent(), cloneB);

    // FindMatchingOrder walks both graphs in step.
    struct Finder : C {
        using C::FindMatchingOrder;
    };
    Finder* finder = static_cast<Finder*>(clone.get());
    EXPECT_EQ(finder->FindMatchingOrder(*root, *child->GetOCANext()), cloneChild->GetOCANext());
    // Only next orders and first children are followed: a child of an order that has a next
    // order is out of reach.
    EXPECT_EQ(finder->FindMatchingOrder(*root, *child->GetOSOChild(0)), nullptr);
    EXPECT_EQ(finder->FindMatchingOrder(*root, *root), clone.get());

    // Mode 4 onto a parent that has children already: the clones come behind them.
    C target;
    C* existing = target.AddOSOChildOrder(Owned("E"), true);
    target.Copy(*b, C::eCopyWithRelations);
    ASSERT_EQ(target.GetOSOChildCount(), 2u);
    EXPECT_TRUE(target.GetOSOChild(0) == existing && target.GetOSOChild(1)->m_Symbol == "N");
    // Mode 5 leaves the rest of the chain alone.
    C withoutNext;
    withoutNext.Copy(*root, C::eCopyWithoutOCANext);
    EXPECT_EQ(withoutNext.GetOCANext(), nullptr);

    // The clone owns all its records and is independent of the source.
    clone.reset();
    root.reset();
    EXPECT_TRUE(notOwned.m_Symbol == "N");
}

TEST(Groups, ResetOrderIdReachesEverythingBelow) {
    C root;
    root.m_LocalOrderID = 1u;
    C* next = root.AddOrderToOCAGroup(Owned("N"), true);
    next->m_LocalOrderID = 2u;
    C* child = next->AddOSOChildOrder(Owned("C"), true);
    child->m_LocalOrderID = 3u;
    next->ResetOrderID();
    EXPECT_TRUE(root.m_LocalOrderID.valid);
    EXPECT_FALSE(next->m_LocalOrderID.valid || child->m_LocalOrderID.valid);
    root.Dump(0);
}

}  // namespace
}  // namespace qvox
