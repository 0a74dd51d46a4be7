// COrderBarProperties: the links between orders, and the operations on the graph they form.
// Every walk keeps its own work list, so that no stack depth grows with the graph.
#include <memory>
#include <utility>
#include <vector>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/order/OrderWalk.h"

namespace qvox {

using C = COrderBarProperties;

// ---- OrderLink ----

OrderLink::~OrderLink() {
    if (m_owns) delete m_target;
}

OrderLink::OrderLink(OrderLink& source) noexcept
    : m_target(source.m_target), m_owns(std::exchange(source.m_owns, false)) {}

OrderLink::OrderLink(OrderLink&& source) noexcept
    : m_target(source.m_target), m_owns(std::exchange(source.m_owns, false)) {}

OrderLink& OrderLink::operator=(OrderLink& source) noexcept {
    if (&source == this) return *this;
    COrderBarProperties* target = source.m_target;
    const bool owns = std::exchange(source.m_owns, false);
    if (target != m_target) {
        // Take the new target before letting the old one go: deleting it may reach the source.
        COrderBarProperties* old = std::exchange(m_target, target);
        const bool ownedOld = std::exchange(m_owns, owns);
        if (ownedOld) delete old;
    } else {
        m_owns = m_owns || owns;
    }
    return *this;
}

OrderLink& OrderLink::operator=(OrderLink&& source) noexcept {
    return *this = source;
}

void OrderLink::Reset(COrderBarProperties* target, bool owns) {
    COrderBarProperties* old = std::exchange(m_target, target);
    const bool ownedOld = std::exchange(m_owns, owns);
    if (ownedOld && old != target) delete old;
}

// ---- Destruction ----

C::~COrderBarProperties() {
    DestroyOwned();
}

void C::DestroyOwned() noexcept {
    // Each record's owned links are released before it is deleted, so every destructor on the
    // way finds nothing left to follow and the depth stays at one.
    std::vector<C*> doomed;
    const auto release = [&doomed](C& record) {
        if (record.m_OCANext.Owns()) doomed.push_back(record.m_OCANext.Release());
        for (OrderLink& child : record.m_OSOChildren) {
            if (child.Owns()) doomed.push_back(child.Release());
        }
    };
    release(*this);
    while (!doomed.empty()) {
        C* record = doomed.back();
        doomed.pop_back();
        release(*record);
        delete record;
    }
}

// ---- Walks ----

C* C::GetOCAFirst() const {
    const C* order = this;
    while (order->m_OCAPrevious != nullptr)
        order = order->m_OCAPrevious;
    return const_cast<C*>(order);
}

C* C::GetOCALast() const {
    const C* order = this;
    while (order->m_OCANext.Get() != nullptr)
        order = order->m_OCANext.Get();
    return const_cast<C*>(order);
}

int C::GetGenerationCount() const {
    int generations = 0;
    for (const C* order = m_OSOParent; order != nullptr; order = order->m_OSOParent) {
        ++generations;
    }
    return generations;
}

C* C::GetRootOrder() const {
    const C* order = this;
    while (order->m_OSOParent != nullptr)
        order = order->m_OSOParent;
    return order->GetOCAFirst();
}

int C::GetNumberOfOCO() const {
    if (!GetOrderCategory().Get().IsOCOorOCA() || !m_Bracket.IsSetAndTrue()) return 0;
    int count = 0;
    for (const C* order = GetOCAFirst(); order != nullptr; order = order->m_OCANext.Get()) {
        ++count;
    }
    return count;
}

using detail::Walk;

bool C::OrderContainsOrder(const C* p, bool bFromHere) const {
    if (p == nullptr) return false;
    if (p == this) return true;
    const C* start = bFromHere ? this : GetRootOrder();
    return Walk(start, [p](const C* order) { return order == p; });
}

void C::ResetOrderID() {
    Walk(this, [](C* order) {
        order->m_LocalOrderID.valid = false;
        return false;
    });
}

void C::Dump(int depth) {
    // A diagnostic walk that writes nothing: each generation one level deeper than its parent.
    std::vector<std::pair<const C*, int>> pending{{this, depth}};
    while (!pending.empty()) {
        const auto [order, level] = pending.back();
        pending.pop_back();
        for (auto child = order->m_OSOChildren.size(); child > 0; --child) {
            pending.emplace_back(order->m_OSOChildren[child - 1].Get(), level + 1);
        }
        if (order->m_OCANext.Get() != nullptr) pending.emplace_back(order->m_OCANext.Get(), level);
    }
}

C* C::FindMatchingOrder(const C& reference, const C& target) {
    const C* theirs = &reference;
    C* mine = this;
    while (theirs != &target) {
        if (theirs->m_OCANext.Get() != nullptr) {
            theirs = theirs->m_OCANext.Get();
            mine = mine->m_OCANext.Get();
        } else {
            if (mine->m_OSOChildren.empty() || theirs->m_OSOChildren.empty()) return nullptr;
            theirs = theirs->m_OSOChildren.front().Get();
            mine = mine->m_OSOChildren.front().Get();
        }
        if (mine == nullptr) return nullptr;
    }
    return mine;
}

// ---- Cloning ----

namespace {

// What a copy construction starts from: no mark but m_Bracket, marked false.
C* NewCloneRecord() {
    C* record = new C;
    record->m_Bracket = false;
    return record;
}

}  // namespace

void C::CopyWithRelations(const C& source, bool withNext) {
    MergeFields(source, true);

    // The clones are built in full from the source before this record's links change, so that
    // a source inside this record's own graph is read as it was.
    struct Job {
        const C* from;
        C* to;
    };
    std::vector<Job> pending;
    const auto cloneGraph = [&pending](const C& from) {
        std::unique_ptr<C> root(NewCloneRecord());
        pending.push_back({&from, root.get()});
        while (!pending.empty()) {
            const Job job = pending.back();
            pending.pop_back();
            job.to->MergeFields(*job.from, true);
            if (const C* next = job.from->m_OCANext.Get()) {
                C* clone = NewCloneRecord();
                job.to->m_OCANext.Reset(clone, true);
                clone->m_OCAPrevious = job.to;
                clone->m_OSOParent = job.to->m_OSOParent;
                pending.push_back({next, clone});
            }
            for (const OrderLink& child : job.from->m_OSOChildren) {
                C* clone = NewCloneRecord();
                job.to->m_OSOChildren.emplace_back(clone, true);
                clone->m_OSOParent = job.to;
                pending.push_back({child.Get(), clone});
            }
        }
        return root.release();
    };

    C* nextClone = nullptr;
    if (withNext && source.m_OCANext.Get() != nullptr)
        nextClone = cloneGraph(*source.m_OCANext.Get());
    std::vector<C*> childClones;
    childClones.reserve(source.m_OSOChildren.size());
    for (const OrderLink& child : source.m_OSOChildren)
        childClones.push_back(cloneGraph(*child.Get()));

    if (nextClone != nullptr) {
        m_OCANext.Reset(nextClone, true);
        nextClone->m_OCAPrevious = this;
        // The rest of a chain shares its parent.
        SetChainParent(nextClone, m_OSOParent);
    }
    for (C* clone : childClones) {
        SetChainParent(clone, this);
        m_OSOChildren.emplace_back(clone, true);
    }
}

// ---- Adding ----

void C::SetChainParent(C* first, C* parent) {
    for (C* order = first; order != nullptr; order = order->m_OCANext.Get()) {
        order->m_OSOParent = parent;
    }
}

namespace {

// The root of the whole graph that order belongs to. Unlike GetRootOrder it goes to the head of
// each chain before stepping up, so it also finds the top from an order without a parent of its
// own behind the head of a child chain (the new half of a bracket split).
const C* GraphRoot(const C* order) {
    for (order = order->GetOCAFirst(); order->GetOSOParent() != nullptr;
         order = order->GetOSOParent()->GetOCAFirst()) {
    }
    return order;
}

}  // namespace

bool C::GraphHolds(const C* p) const {
    // p belongs to this graph exactly when both have one root. A p that stands alone is decided
    // without walking this order's chain.
    const C* root = GraphRoot(p);
    if (root->m_OCANext.Get() == nullptr && root->m_OSOChildren.empty()) return root == this;
    return root == GraphRoot(this);
}

C* C::AddOrderToOCAGroup(C* p, bool bOwned) {
    // A p that stands behind another order belongs to that chain, which may own it.
    if (p == nullptr || p->m_OSOParent != nullptr || p->m_OCAPrevious != nullptr || p == this ||
        GraphHolds(p)) {
        return nullptr;
    }
    const bool bracket = m_Bracket.IsSetAndTrue();
    if (p->m_Bracket.IsSetAndTrue() && !bracket) return nullptr;
    if (bracket && !p->m_Bracket.IsSetAndTrue()) p->m_Bracket = true;
    C* last = GetOCALast();
    p->m_OCAPrevious = last;
    last->m_OCANext.Reset(p, bOwned);
    // The orders before p have the parent already; p and what follows it take it.
    if (m_OSOParent != nullptr) SetChainParent(p, m_OSOParent);
    return p;
}

C* C::AddOrderToOCAGroup(const C& order) {
    if (!order.GetOrderCategory().Get().IsSimple()) return nullptr;
    auto clone = std::make_unique<C>(order, eCopyFromRoot);
    C* added = AddOrderToOCAGroup(clone.get(), true);
    if (added != nullptr) clone.release();
    return added;
}

C* C::AddOSOChildOrder(C* p, bool bOwned) {
    if (p == nullptr || p->m_OSOParent != nullptr || p == this || GraphHolds(p)) return nullptr;
    C* first = p->GetOCAFirst();
    // An order without a parent behind the head of a child chain still hangs below that parent.
    if (first->m_OSOParent != nullptr) return nullptr;
    SetChainParent(first, this);
    m_OSOChildren.emplace_back(first, bOwned);
    return first;
}

C* C::AddOSOChildOrder(const C& order) {
    if (!order.GetOrderCategory().Get().IsSimple()) return nullptr;
    auto clone = std::make_unique<C>(order, eCopyFromRoot);
    C* added = AddOSOChildOrder(clone.get(), true);
    if (added != nullptr) clone.release();
    return added;
}

// ---- Regrouping and removal ----

bool C::RemoveChildLink(const C* child) {
    for (auto link = m_OSOChildren.begin(); link != m_OSOChildren.end(); ++link) {
        if (link->Get() != child) continue;
        // Out of the list first, then let go: deleting the child must not meet a half-moved list.
        OrderLink removed(std::move(*link));
        m_OSOChildren.erase(link);
        return true;
    }
    return false;
}

C* C::CreateOCAGroup(C* other) {
    // An order behind another is held by that order's link, which would go on pointing at it.
    if (other == nullptr || other == this || other->m_OCAPrevious != nullptr ||
        other->GetOCAFirst() == GetOCAFirst()) {
        return nullptr;
    }
    if (!GetOrderCategory().Get().IsOSOChild() && !other->GetOrderCategory().Get().IsOSOChild()) {
        return nullptr;
    }
    C* last = GetOCALast();
    other->m_OCAPrevious = last;
    other->m_OCANext.Reset();
    // A child that its parent's list owned stays owned, by the chain link that now reaches it;
    // every other chain link made here does not own.
    bool owned = false;
    if (C* parent = other->m_OSOParent) {
        for (auto link = parent->m_OSOChildren.begin(); link != parent->m_OSOChildren.end();
             ++link) {
            if (link->Get() != other) continue;
            owned = link->Owns();
            link->Release();
            parent->m_OSOChildren.erase(link);
            break;
        }
    }
    last->m_OCANext.Reset(other, owned);
    return this;
}

C* C::UnGroupOCA() {
    const COXOrderCategoryX category = GetOrderCategory();
    if (!category.IsOSOChild() || !category.IsOCOorOCA()) return nullptr;
    C* previous = GetOCAFirst();
    while (C* next = previous->m_OCANext.Get()) {
        const bool owned = previous->m_OCANext.Owns();
        // An owning link deletes what it held, and everything behind it: the walk ends there.
        previous->m_OCANext.Reset();
        if (owned) break;
        next->m_OCAPrevious = nullptr;
        previous = next;
    }
    return this;
}

bool C::RemoveOrder(const C* p) {
    if (p == this || !OrderContainsOrder(p, true)) return false;
    C* order = const_cast<C*>(p);
    const COXOrderCategoryX category = order->GetOrderCategory();
    C* parent = order->m_OSOParent;

    const auto unlinkFromChain = [](C* member) {
        // The previous order's link takes over member's link, ownership included; member goes
        // if the link to it owned it, and keeps its old pointers as plain values otherwise.
        C* previous = member->m_OCAPrevious;
        C* next = member->m_OCANext.Get();
        const bool ownsNext = member->m_OCANext.Owns();
        member->m_OCANext.Release();
        if (next != nullptr) next->m_OCAPrevious = previous;
        previous->m_OCANext.Reset(next, ownsNext);
    };

    if (category.IsOCOorOCA() && order->m_OCAPrevious == nullptr && category.IsOSOChild()) {
        // The head of a child chain: the chain goes as a whole, the orders behind it first.
        while (C* behind = order->m_OCANext.Get())
            unlinkFromChain(behind);
        parent->RemoveChildLink(order);
    } else if (category.IsOSOChild() && order->m_OCAPrevious == nullptr &&
               parent->RemoveChildLink(order)) {
        // A child standing alone: taken out of its parent's list.
    } else if (category.IsOCOorOCA() && order->m_OCAPrevious != nullptr) {
        unlinkFromChain(order);
    }
    return true;
}

bool C::RemoveOrderWithRules(const C* p) {
    if (p == nullptr) return false;
    C* root = GetRootOrder();
    if (!p->m_Bracket.IsSetAndTrue()) return root->RemoveOrder(p);
    // Bracket orders go in pairs: positions 0 and 1, 2 and 3, and so on.
    int position = 0;
    for (const C* order = p->m_OCAPrevious; order != nullptr; order = order->m_OCAPrevious) {
        ++position;
    }
    const C* partner = position % 2 == 0 ? p->m_OCANext.Get() : p->m_OCAPrevious;
    // The head of a child chain takes its whole chain with it, partner included.
    const bool partnerGoesAlong = position == 0 && p->m_OSOParent != nullptr;
    if (!root->RemoveOrder(p)) return false;
    if (partnerGoesAlong) return false;
    return root->RemoveOrder(partner);
}

}  // namespace qvox
