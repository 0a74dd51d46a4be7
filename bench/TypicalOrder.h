// A typical ticket for the benchmarks: the texts and numbers an application fills before it hands
// an order over.
#pragma once

#include "qvox/order/COrderBarProperties.h"

namespace qvox::bench {

inline void FillTypicalTicket(COrderBarProperties& order) {
    order.m_Account = "ACCT-0042";
    order.m_Duration = "Day";
    order.m_OrderType = "Limit";
    order.m_Route = "NSDQ";
    order.m_Symbol = "MSFT";
    order.m_AutoPrice = "Join";
    order.m_LimitPriceRaw = 101.25;
    order.m_Bid = 101.2;
    order.m_Ask = 101.3;
    order.m_Quantity = 500;
    order.m_SymbolCategory = 2;
    order.m_Side = static_cast<SHORT>('B');
    order.m_PriceScale = static_cast<SHORT>('m');
    order.m_QuantityType = static_cast<SHORT>('#');
    order.m_LocalOrderID = 42u;
}

}  // namespace qvox::bench
