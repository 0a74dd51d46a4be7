#include "qvox/order/QVOrderLeg.h"

#include "qvox/order/COrderBarProperties.h"

namespace qvox {

bool QVOrderLeg::operator==(const QVOrderLeg& other) const {
    return m_Symbol.GetText() == other.m_Symbol.GetText() &&
           m_OrderType.GetText() == other.m_OrderType.GetText() &&
           !(m_LimitPrice != other.m_LimitPrice) && !(m_StopPrice != other.m_StopPrice) &&
           !(m_Side != other.m_Side) && !(m_OpenClose != other.m_OpenClose) &&
           !(m_Quantity != other.m_Quantity) && m_Text64.GetText() == other.m_Text64.GetText() &&
           !(m_Real47 != other.m_Real47) && !(m_Real46 != other.m_Real46) &&
           !(m_Short45 != other.m_Short45);
}

void QVOrderLeg::InValidAll() {
    m_Symbol.Invalid();
    m_OrderType.Invalid();
    m_Text64.Invalid();
    m_LimitPrice.valid = false;
    m_StopPrice.valid = false;
    m_Real47.valid = false;
    m_Real46.valid = false;
    m_Short45.valid = false;
    m_Side.valid = false;
    m_OpenClose.valid = false;
    m_Quantity.valid = false;
}

bool QVOrderLeg::SetOrderAction(EMVOrderAction action, ULONG category) {
    return COrderBarProperties::CalcOrderAction(m_Side, m_OpenClose, action, category);
}

}  // namespace qvox
