// COrderBarProperties: what an application asks of a composed order before it goes out, and the
// setters that keep the record's words consistent.
#include <initializer_list>
#include <vector>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/order/OrderWalk.h"
#include "qvox/vocabulary/COXStringForDisplay.h"
#include "qvox/vocabulary/COXUtil.h"

namespace qvox {

using C = COrderBarProperties;

namespace {

constexpr const char* kAccountMismatch =
    "All orders in an OCO/Bracket group should have same account.";

bool IsOptions(LONG category) {
    return category == 3 || category == 8;
}

}  // namespace

bool C::IsValidRelation(CString& error) const {
    // Every chain head compares the orders behind it with itself; every order hands the check on
    // to its children. A chain's later orders are visited through their head only, so the walk
    // covers the graph once.
    std::vector<const C*> pending{this};
    while (!pending.empty()) {
        const C* order = pending.back();
        pending.pop_back();
        for (auto child = order->GetOSOChildCount(); child > 0; --child) {
            pending.push_back(order->GetOSOChild(child - 1));
        }
        if (order->m_OCAPrevious != nullptr || order->m_OCANext.Get() == nullptr) continue;
        for (const C* behind = order->m_OCANext.Get(); behind != nullptr;
             behind = behind->m_OCANext.Get()) {
            if (!behind->m_Account.IsValid() ||
                behind->m_Account.GetText() != order->m_Account.GetText()) {
                error = kAccountMismatch;
                return false;
            }
            pending.push_back(behind);
        }
    }
    return true;
}

bool C::IsValidAction() const {
    std::vector<const C*> pending{this};
    while (!pending.empty()) {
        const C* order = pending.back();
        pending.pop_back();
        if (!order->m_Side.valid || order->m_Side.value == ' ') return false;
        for (auto child = order->GetOSOChildCount(); child > 0; --child) {
            pending.push_back(order->GetOSOChild(child - 1));
        }
        if (order->m_OCAPrevious != nullptr) continue;
        for (const C* behind = order->m_OCANext.Get(); behind != nullptr;
             behind = behind->m_OCANext.Get()) {
            pending.push_back(behind);
        }
    }
    return true;
}

bool C::CanDelete(const C* p) const {
    if (p == nullptr) return false;
    const C* top = p->m_OSOParent != nullptr ? p->m_OSOParent->GetRootOrder() : p->GetOCAFirst();
    if (p == top) return false;
    // The first pair of a bracket at the top of the graph stays.
    return !(top->IsBracket() && top->m_OCANext.Get() == p);
}

bool C::CanSendAutoPrice() const {
    return (m_Condition.IsValid() && !m_Condition.GetText().IsEmpty()) ||
           (m_ActivationRule.valid && m_ActivationRule.value > 0) ||
           (!m_OSOTag.GetText().IsEmpty() && m_OSOParent != nullptr) ||
           (m_LITAutoPrice.IsValid() && !m_LITAutoPrice.GetText().IsEmpty());
}

void C::UpdateOrderPropertyAccordingToCategory(LONG newCategory) {
    if (m_SymbolCategory.valid && m_SymbolCategory.value == newCategory) return;
    const LONG old = m_SymbolCategory.value;
    const SHORT side = m_Side.value;
    const auto write = [this](char newSide, char openClose) {
        m_Side = static_cast<SHORT>(newSide);
        if (openClose != 0) m_OpenClose = static_cast<SHORT>(openClose);
    };
    // A category that was never set says nothing about what side and open/close mean.
    if (m_SymbolCategory.valid) {
        if ((old == 0 || old == 2) && IsOptions(newCategory)) {
            // Futures and equities to options: a buy opens, a sale closes, except that a short
            // sale opens and a buy to cover closes.
            if (side == 'B') write('B', 'O');
            if (side == 'S') write('S', 'C');
            if (old == 2 && side == 'C') write('B', 'C');
            if (old == 2 && side == 'T') write('S', 'O');
        } else if (old == 2 && newCategory == 0) {
            if (side == 'B' || side == 'C') write('B', 0);
            if (side == 'S' || side == 'T') write('S', 0);
        } else if (IsOptions(old) && newCategory == 2) {
            const bool opens = m_OpenClose.value == 'O';
            if (side == 'B') write(opens ? 'B' : 'C', 0);
            if (side == 'S') write(opens ? 'T' : 'S', 0);
        } else if (IsOptions(old) && newCategory == 0) {
            if (side == 'B' || side == 'S') write(static_cast<char>(side), 0);
        }
    }
    m_SymbolCategory = newCategory;
}

void C::InvalidateAdvanceOption() {
    for (ValidString* text : {&m_StopTrigger, &m_IfTouchedTrigger, &m_Condition})
        *text = "";
    for (ValidDataT<SHORT>* flag :
         {&m_AllOrNone, &m_ECNSweep, &m_BuyOnMinus, &m_Discretionary, &m_NonDisplay, &m_ShortExempt,
          &m_ShowOnly, &m_Peg, &m_TrailType, &m_IfTouchedType, &m_ActivationRule}) {
        flag->valid = false;
    }
    m_TrailAmount.valid = false;
    m_LITAutoPriceOffset.valid = false;
    m_IfTouchedPrice.valid = false;
    m_Tag.valid = false;
}

void C::RestAllAdvanceOption() {
    for (ValidString* text : {&m_StopTrigger, &m_IfTouchedTrigger, &m_Condition})
        *text = "";
    for (ValidDataT<SHORT>* flag :
         {&m_AllOrNone, &m_ECNSweep, &m_BuyOnMinus, &m_Discretionary, &m_NonDisplay, &m_ShortExempt,
          &m_ShowOnly, &m_Peg, &m_ActivationRule}) {
        *flag = static_cast<SHORT>(-1);
    }
    m_TrailType = static_cast<SHORT>(0);
    m_IfTouchedType = static_cast<SHORT>(0);
    m_TrailAmount.valid = false;
    m_LITAutoPriceOffset.valid = false;
    m_IfTouchedPrice.valid = false;
    m_Tag.valid = false;
}

namespace {

void SetAutoPriceWord(ValidString& field, EOXAutoPrice autoPrice) {
    field = autoPrice == AutoPriceNone ? "" : COXStringForDisplay::AutoPrice(autoPrice);
}

}  // namespace

void C::SetAutoPrice(EOXAutoPrice autoPrice) {
    SetAutoPriceWord(m_AutoPrice, autoPrice);
}

void C::SetStopAutoPrice(EOXAutoPrice autoPrice) {
    SetAutoPriceWord(m_StopAutoPrice, autoPrice);
}

void C::SetLITAutoPrice(EOXAutoPrice autoPrice) {
    SetAutoPriceWord(m_LITAutoPrice, autoPrice);
}

EOXAutoPrice C::GetAutoPrice() const {
    return COXUtil::AutoPriceStrToEnum(m_AutoPrice.GetText());
}

void C::SetAutoPriceIncrement(int increment, ULONG category) {
    if (increment != 0) {
        m_AutoPriceIncrement = COXStringForDisplay::AutoPriceIncrement(increment, category);
    } else if (m_AutoPriceIncrement.IsValid()) {
        m_AutoPriceIncrement = "";
    } else {
        m_AutoPriceIncrement.SetDefault(CString());
    }
}

int C::GetAutoPriceIncrement() const {
    return COXUtil::AutoPriceIncrementStrToEnum(m_AutoPriceIncrement.GetText(),
                                                static_cast<ULONG>(m_SymbolCategory.value));
}

}  // namespace qvox
