// COrderBarProperties: the price an order would have now, through its auto price rules and the
// OSO tree. Walks up and down the tree keep their own lists, never recursing with its depth.
#include <vector>

#include "qvox/interchange/CAutoPriceHelper.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/CRuntime.h"
#include "qvox/vocabulary/Lookups.h"

namespace qvox {

using C = COrderBarProperties;

double C::EffectivePriceWithParent(double bid, double ask, double last, double parent) const {
    double limit = m_LimitPriceRaw.valid ? m_LimitPriceRaw.value : 0.0;
    double stop = m_StopPriceRaw.valid ? m_StopPriceRaw.value : 0.0;
    double ifTouched = 0.0;
    char side = static_cast<char>(m_Side.value);
    // An option's offsets count whole price units; other symbols count min moves.
    double scale = m_MinMove.value;
    if (m_SymbolCategory.value == 3 || m_SymbolCategory.value == 8) {
        side = CovertTradeServerSideToRegularSide(side, static_cast<ULONG>(m_SymbolCategory.value),
                                                  static_cast<char>(m_OpenClose.value));
        scale = 1.0;
    }
    const double step = m_PieceValue.value * scale;
    const char code = static_cast<char>(m_PriceScale.value);
    bool marketBased = true;

    if (m_IfTouchedPrice.valid) ifTouched = m_IfTouchedPrice.value;
    if (m_LITAutoPrice.IsValid() && !m_LITAutoPrice.GetText().IsEmpty()) {
        CAutoPriceHelper helper;
        const double offset = m_LITAutoPriceOffset.valid ? m_LITAutoPriceOffset.value : 0.0;
        helper.SetIfTouchAutoPrice(code, m_LITAutoPrice.GetText(), offset * step, step);
        ifTouched = helper.GetIfTouchPrice(side, ask, bid, last, parent, marketBased);
    }
    if (m_StopAutoPrice.IsValid() && !m_StopAutoPrice.GetText().IsEmpty()) {
        CAutoPriceHelper helper;
        const double offset = m_StopAutoPriceOffset.valid ? m_StopAutoPriceOffset.value : 0.0;
        helper.SetStopAutoPrice(code, m_StopAutoPrice.GetText(), offset * step, step);
        stop = helper.GetStopPrice(side, ask, bid, last, parent, marketBased);
    }
    if (m_AutoPrice.IsValid() && !m_AutoPrice.GetText().IsEmpty()) {
        CAutoPriceHelper helper;
        const double offset =
            m_AutoPriceIncrement.IsValid() ? AtoF(m_AutoPriceIncrement.GetText().view()) : 0.0;
        helper.SetLimitAutoPrice(code, m_AutoPrice.GetText(), offset * step, step);
        limit = helper.GetLimitPrice(side, ask, bid, last, parent, stop, ifTouched, marketBased);
    }
    if (m_TrailType.valid && m_TrailType.value != 0) {
        // A trailing stop lies above last for a buyer, below it for a seller.
        const double s = side == 'B' || side == 'C' ? 1.0 : -1.0;
        const double amount = m_TrailAmount.valid ? m_TrailAmount.value : 0.0;
        stop = m_TrailType.value == 1 ? s * amount * m_PieceValue.value * scale + last
                                      : (s * amount * 0.01 + 1.0) * last;
    }

    const CString& type = m_OrderType.GetText();
    if (type == "Market")
        return m_IfTouchedType.valid && m_IfTouchedType.value == 1 ? ifTouched : last;
    if (type == "Limit" || type == "Stop Limit") return limit;
    if (type == "Stop Market") return stop;
    return 0.0;
}

double C::GetEffectiveParentPrice(double bid, double ask, double last) const {
    // Up to the top of the tree first, then each generation's price down to the parent.
    std::vector<const C*> ancestors;
    for (const C* order = m_OSOParent; order != nullptr; order = order->m_OSOParent) {
        ancestors.push_back(order);
    }
    const C* top = ancestors.empty() ? this : ancestors.back();
    double price = top->m_EffectiveParentPrice.valid ? top->m_EffectiveParentPrice.value : 0.0;
    for (auto order = ancestors.rbegin(); order != ancestors.rend(); ++order) {
        price = (*order)->EffectivePriceWithParent(bid, ask, last, price);
    }
    return price;
}

double C::GetEffectivePrice(double bid, double ask, double last) const {
    // The helper takes ask before bid.
    return EffectivePriceWithParent(bid, ask, last, GetEffectiveParentPrice(bid, ask, last));
}

void C::SetEffectiveParentPrice(double bid, double ask, double last) {
    std::vector<C*> pending{this};
    while (!pending.empty()) {
        C* parent = pending.back();
        pending.pop_back();
        if (parent->m_OSOChildren.empty()) continue;
        const double price = parent->GetEffectivePrice(bid, ask, last);
        for (auto link = parent->m_OSOChildren.rbegin(); link != parent->m_OSOChildren.rend();
             ++link) {
            C* child = link->Get();
            if (child == nullptr) continue;
            child->m_EffectiveParentPrice = price;
            for (C* member = child->GetOCAFirst(); member != nullptr;
                 member = member->m_OCANext.Get()) {
                if (member == child) continue;
                if (child->m_EffectiveParentPrice.valid) {
                    member->m_EffectiveParentPrice = child->m_EffectiveParentPrice.value;
                }
                pending.push_back(member);
            }
            pending.push_back(child);
        }
    }
}

bool C::IsAutopriceOffsetNeeded(eQVAPType type) const {
    const ValidString* word = nullptr;
    switch (type) {
        case APTypeLimit:
        case APTypeLimitAlso:
            word = &m_AutoPrice;
            break;
        case APTypeStop:
            word = &m_StopAutoPrice;
            break;
        case APTypeIfTouched:
            word = &m_LITAutoPrice;
            break;
        case APTypeThird:
            word = &m_AutoPrice3;
            break;
        default:
            return false;
    }
    if (!word->IsValid() || word->GetText().IsEmpty()) return false;
    return qvox::IsAutopriceOffsetNeeded(word->GetText());
}

}  // namespace qvox
