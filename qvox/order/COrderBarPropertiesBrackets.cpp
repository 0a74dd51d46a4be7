// COrderBarProperties: brackets, the one-cancels-all chains whose orders stand in pairs of one
// limit or market order and one stop order, for one account, symbol and side and one quantity.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <list>
#include <memory>
#include <unordered_set>
#include <vector>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/order/OrderWalk.h"

namespace qvox {

using C = COrderBarProperties;

void C::UpdateGroupBracketFlag(bool bracket) {
    for (C* order = GetOCAFirst(); order != nullptr; order = order->m_OCANext.Get()) {
        order->m_Bracket = bracket;
    }
}

bool C::IsBrkFirst() const {
    if (!GetOrderCategory().Get().IsOCOorOCA() || !IsBracket()) return false;
    return m_OCAPrevious == nullptr || m_OCAPrevious->m_OCAPrevious == nullptr;
}

C::BracketSide C::CheckBracketSide() const {
    const bool buy = m_Side.value == 'B' || m_Side.value == 'C';
    const CString& type = m_OrderType.GetText();
    const bool limitOrMarket = type == "Limit" || type == "Market";
    return buy == limitOrMarket ? BracketSideLower : BracketSideUpper;
}

bool C::IsOCOBracket() const {
    const C* first = GetOCAFirst();
    if (first->m_OCANext.Get() == nullptr) return false;
    bool limitOrMarket = false;
    bool stop = false;
    for (const C* order = first; order != nullptr; order = order->m_OCANext.Get()) {
        if (order != first &&
            (order->m_Account != first->m_Account || order->m_Symbol != first->m_Symbol ||
             order->m_Side != first->m_Side || order->m_OpenClose != first->m_OpenClose)) {
            return false;
        }
        limitOrMarket =
            limitOrMarket || order->m_OrderType == "Limit" || order->m_OrderType == "Market";
        stop = stop || order->m_OrderType == "Stop Limit" ||
               order->m_OrderType.GetText() == "Stop Market";
    }
    return limitOrMarket && stop;
}

void C::UpdateBracketProperty(ULONG propertyID, bool bPartnerOnly) {
    const auto apply = [this, propertyID](C& target) {
        switch (propertyID) {
            case 11:
                if (m_Side.valid) target.m_Side = m_Side.value;
                break;
            case 15:
                if (m_Quantity.valid) target.m_Quantity = m_Quantity.value;
                break;
            case 23:
                target.m_Symbol = m_Symbol;
                break;
            case 30:
                target.m_Account = m_Account;
                target.m_OrderKey.Invalid();
                break;
            case 33:
                target.UpdateOrderPropertyAccordingToCategory(m_SymbolCategory.value);
                break;
            default:
                break;
        }
    };
    if (!bPartnerOnly) {
        // The list first: an account change on this order must not reach the orders behind it
        // with a cleared key of its own in between.
        std::vector<C*> chain;
        for (C* order = GetOCAFirst(); order != nullptr; order = order->m_OCANext.Get()) {
            chain.push_back(order);
        }
        for (C* order : chain)
            apply(*order);
        return;
    }
    std::size_t position = 0;
    for (const C* order = m_OCAPrevious; order != nullptr; order = order->m_OCAPrevious) {
        ++position;
    }
    C* partner = position % 2 == 0 ? m_OCANext.Get() : m_OCAPrevious;
    if (partner != nullptr) apply(*partner);
}

namespace {

// The quantity a bracket pairs by: the size of the number, whatever its sign or mark.
std::int64_t Size(const C* order) {
    return std::llabs(static_cast<std::int64_t>(order->m_Quantity.value));
}

LONG ToQuantity(std::int64_t size) {
    return static_cast<LONG>(static_cast<ULONG>(size));
}

// The partner of a among the orders of the other side: one of the same size at once, else the
// first, replaced by any later one for which a's size minus its size is below the distance so
// far (so a larger one always, a smaller one only when nearer).
std::list<C*>::iterator ChoosePartner(const C* a, std::list<C*>& others) {
    const std::int64_t size = Size(a);
    auto choice = others.begin();
    std::int64_t distance = std::llabs(size - Size(*choice));
    for (auto it = others.begin(); it != others.end(); ++it) {
        const std::int64_t other = Size(*it);
        if (other == size) return it;
        if (it != others.begin() && size - other < distance) {
            choice = it;
            distance = std::llabs(size - other);
        }
    }
    return choice;
}

}  // namespace

bool C::VerifyAndAdjustBracket() {
    bool ok = true;
    // Only the head of a bracket chain has work of its own; the walk reads each order's next
    // order and children after the work, so it follows the chain as rewritten.
    detail::Walk(this, [&ok](C* order) {
        if (order->m_OCAPrevious != nullptr || order->m_OCANext.Get() == nullptr ||
            !order->IsBracket()) {
            return false;
        }
        ok = order->AdjustBracketChain();
        return !ok;
    });
    return ok;
}

bool C::AdjustBracketChain() {
    std::vector<C*> chain;
    for (C* order = this; order != nullptr; order = order->m_OCANext.Get()) {
        if (order->m_OrderKey != m_OrderKey || order->m_Account != m_Account ||
            order->m_Symbol != m_Symbol || order->m_Side != m_Side) {
            return false;
        }
        chain.push_back(order);
    }

    std::deque<C*> lower;
    std::list<C*> upper;
    for (C* order : chain) {
        if (order->CheckBracketSide() == BracketSideLower) {
            lower.push_back(order);
        } else {
            upper.push_back(order);
        }
    }
    // All orders on one side: not one pair can form, so this is no bracket.
    if (lower.empty() || upper.empty()) return false;

    // Which records their incoming link owns, before any link changes. New halves are owned.
    std::unordered_set<const C*> owned;
    for (const C* order : chain) {
        if (order->m_OCAPrevious != nullptr && order->m_OCAPrevious->m_OCANext.Owns()) {
            owned.insert(order);
        }
    }
    std::vector<std::unique_ptr<C>> halves;

    std::vector<C*> paired;
    bool lowerFirst = true;
    while (!lower.empty() && !upper.empty()) {
        C* a = lower.front();
        // A head that stands with the stop orders is the partner of the first pair, so that it
        // stays the head.
        const auto pick =
            paired.empty() && upper.front() == this ? upper.begin() : ChoosePartner(a, upper);
        C* b = *pick;
        if (paired.empty()) lowerFirst = a == this;
        const std::int64_t sizeA = Size(a);
        const std::int64_t sizeB = Size(b);
        if (sizeA != sizeB && !(lower.size() == 1 && upper.size() == 1)) {
            // The larger order keeps the smaller size; a copy of it takes the rest and waits in
            // its list for a partner of its own.
            C* larger = sizeA > sizeB ? a : b;
            auto half = std::make_unique<C>();
            half->Copy(*larger, eCopyWithoutOCANext);
            half->ResetOrderID();
            // Copy carries no link, and none is set here: even in a child chain the new half
            // has no parent of its own, so every walk must also hold for a parentless order
            // behind the head of a child chain.
            half->m_Quantity = ToQuantity(sizeA > sizeB ? sizeA - sizeB : sizeB - sizeA);
            larger->m_Quantity = ToQuantity(sizeA > sizeB ? sizeB : sizeA);
            owned.insert(half.get());
            if (larger == a) {
                lower.push_back(half.get());
            } else {
                upper.push_back(half.get());
            }
            halves.push_back(std::move(half));
        }
        paired.push_back(lowerFirst ? a : b);
        paired.push_back(lowerFirst ? b : a);
        lower.pop_front();
        upper.erase(pick);
    }

    // Every old link goes, without deleting anything; then the pairs are linked in order, each
    // record with the ownership it had.
    for (C* order : chain) {
        order->m_OCANext.Release();
        order->m_OCANext.Reset();
        order->m_OCAPrevious = nullptr;
    }
    for (std::size_t i = 1; i < paired.size(); ++i) {
        paired[i - 1]->m_OCANext.Reset(paired[i], owned.count(paired[i]) != 0);
        paired[i]->m_OCAPrevious = paired[i - 1];
    }
    // The new halves in a pair belong to their links now; those left over go with `halves`.
    const std::unordered_set<const C*> linked(paired.begin(), paired.end());
    for (auto& half : halves) {
        if (linked.count(half.get()) != 0) static_cast<void>(half.release());
    }
    // Old orders without a partner leave the group: deleted if their link owned them,
    // otherwise standing alone with whoever holds them.
    const auto leave = [&owned, &halves](C* order) {
        const bool isHalf = std::any_of(halves.begin(), halves.end(),
                                        [order](const auto& half) { return half.get() == order; });
        if (isHalf) return;
        if (owned.count(order) != 0) {
            delete order;
        } else {
            order->m_OSOParent = nullptr;
        }
    };
    std::for_each(lower.begin(), lower.end(), leave);
    std::for_each(upper.begin(), upper.end(), leave);
    return true;
}

}  // namespace qvox
