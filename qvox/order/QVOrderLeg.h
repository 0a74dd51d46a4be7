// QVOrderLeg: one additional leg of a multi-leg order, held by value in the order record.
#pragma once

#include "qvox/order/ValidDataT.h"
#include "qvox/order/ValidString.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {

struct QVOrderLeg {
    // Every field without the mark.
    QVOrderLeg() = default;
    // An exact copy of all fields, marks included, and of values whose mark is off.
    QVOrderLeg(const QVOrderLeg&) = default;
    // Field-wise merge: only fields with the mark in the source change this leg.
    QVOrderLeg& operator=(const QVOrderLeg&) = default;

    // Symbol and order type by text alone (marks ignored), prices, side, open/close and
    // quantity by marked value, then m_Text64 by text, then the carried numbers by value.
    bool operator==(const QVOrderLeg& other) const;
    bool operator!=(const QVOrderLeg& other) const { return !(*this == other); }

    // Turns off the mark of every field; texts and values stay.
    void InValidAll();
    // Writes the side and open/close codes of an action for a symbol category; false, with
    // nothing written, for a combination that does not exist.
    bool SetOrderAction(EMVOrderAction action, ULONG category);

    // A new property object of the platform with the leg's marked fields (defined with the
    // order's property exchange in interchange/). Raises _com_error as the order's does.
    IDispatchPtr GetLegProperties() const;
    // Fills the leg from a property object; absent numbers leave their fields alone, a null or
    // unsuited object changes nothing. Raises _com_error for a value that does not convert.
    void SetLegProperties(IDispatchPtr object);

    ValidString m_Symbol;
    ValidString m_OrderType;
    ValidString m_Text64;
    ValidDataT<double> m_LimitPrice;
    ValidDataT<double> m_StopPrice;
    ValidDataT<double> m_Real47;
    ValidDataT<double> m_Real46;
    ValidDataT<SHORT> m_Short45;
    ValidDataT<SHORT> m_Side;
    ValidDataT<SHORT> m_OpenClose;
    ValidDataT<LONG> m_Quantity;
};

}  // namespace qvox
