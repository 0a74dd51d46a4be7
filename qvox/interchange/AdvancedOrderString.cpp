// COXStringForDisplay::AdvancedOrderString: the options of an advanced string in words. It lives
// beside the reader of the string, which does all the parsing.
#include "qvox/order/COrderBarProperties.h"
#include "qvox/vocabulary/COXStringForDisplay.h"

namespace qvox {

CString COXStringForDisplay::AdvancedOrderString(const CString& advanced) {
    CString words;
    if (advanced.IsEmpty()) return words;
    COrderBarProperties order;
    order.SetAdvancePropertyFromString(advanced, true);

    const auto add = [&words](const ValidDataT<SHORT>& flag) {
        if (!flag.valid || flag.value != 1) return false;
        if (!words.IsEmpty()) words += ", ";
        return true;
    };
    if (add(order.m_AllOrNone)) words += "All or None";
    if (add(order.m_ECNSweep)) words += "ECN Sweep";
    if (add(order.m_SubscriberOnly)) words += "Subscriber Only";
    if (add(order.m_NonDisplay)) words += "Non-Display";
    if (add(order.m_BuyOnMinus)) words += "Buy on -/Sell on +";
    if (add(order.m_ShortExempt)) words += "Short Exempt";
    if (add(order.m_ShowOnly)) words.AppendFormat("Show Only: %d", order.m_ShowQuantity.value);
    if (add(order.m_Discretionary)) {
        words.AppendFormat("Discretionary: %.2f", order.m_DiscretionaryAmount.value);
    }
    if (add(order.m_Peg)) words.AppendFormat("Peg Value: %s", order.m_PegValue.GetText());
    return words;
}

}  // namespace qvox
