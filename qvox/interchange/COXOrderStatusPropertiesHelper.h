// COXOrderStatusPropertiesHelper: a typed, read-only view of an order status as the platform
// reports it, through the status's property object. Each accessor reads one property number
// (the platform's status numbering, not the order record's) with its own conversion and default:
// an absent property gives the default, a view without an object raises _com_error(E_POINTER),
// and a value that does not convert raises the conversion's status.
#pragma once

#include <vector>

#include "qvox/interchange/PropertyView.h"
#include "qvox/platform/COleDateTime.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {

class COXOrderStatusPropertiesHelper {
  public:
    COXOrderStatusPropertiesHelper() = default;
    explicit COXOrderStatusPropertiesHelper(IMVProperties* properties) : m_view(properties) {}
    // The status's property object; null when the status gives none (see PropertyView::Of).
    explicit COXOrderStatusPropertiesHelper(IOrderStatus* status)
        : m_view(PropertyView::Of(status)) {}

    bool IsGood() const { return m_view.IsGood(); }
    // Any number as a double; false, with value untouched, when it is absent.
    bool GetOrderValueProperty(int number, double& value) const {
        return m_view.Value(number, value);
    }

    CString GetOrderID() const { return m_view.Text(0); }
    CString GetSymbol() const { return m_view.Text(1); }
    CString GetRoute() const { return m_view.Text(9); }
    CString GetBrokerID() const { return m_view.Text(11); }
    CString GetDuration() const { return m_view.Text(12); }
    CString GetOriginator() const { return m_view.Text(13); }
    CString GetAdvancedOptions() const { return m_view.Text(29); }
    CString GetSymbolExtention() const { return m_view.Text(32); }
    CString GetSpreadName() const { return m_view.Text(60); }
    CString GetClientOrderID() const { return m_view.Text(63); }
    CString GetOCOGroupID() const { return m_view.Text(124); }
    CString GetOSOParentID() const { return m_view.Text(125); }

    // The words of the status, read through the vocabulary (empty text when absent).
    EMVOrderAction GetOrderAction() const;
    EMVOrderType GetOrderType() const;
    EOXAutoPrice GetAutoPrice() const;
    int GetAutoPriceIncrement(ULONG category) const;

    double GetLimitPrice() const { return m_view.Double(8, 0.0); }
    double GetStopPrice() const { return m_view.Double(27, 0.0); }
    double GetAvgExecutionPrice() const { return m_view.Double(25, 0.0); }
    double GetCommissions() const { return m_view.Double(47, 0.0); }
    double GetRoutingFees() const { return m_view.Double(48, 0.0); }
    double GetSymbolMinMove() const { return m_view.Double(55, 0.0); }
    COleDateTime GetExpirationDate() const { return COleDateTime(m_view.Double(49, 0.0)); }
    State GetState() const { return static_cast<State>(m_view.Long(3, 0)); }
    LONG GetQty() const { return m_view.Long(6, 0); }
    LONG GetQtyLeft() const { return m_view.Long(7, 0); }
    LONG GetQtyExecuted() const { return m_view.Long(16, 0); }
    LONG GetQtyFilled() const { return m_view.Long(26, 0); }
    LONG GetLotSize() const { return m_view.Long(127, 0); }
    char GetSymbolBaseCode() const { return m_view.Char(31, 0); }
    // The invalid category when absent, not futures.
    ULONG GetSymbolCategory() const { return m_view.ULong(41, SymbolCategoryInvalid); }
    ULONG GetAdditionalLegCount() const { return m_view.ULong(45, 0); }
    CTLBitFlagHelperWrapper<COXOrderCategoryX> GetOrderCategory() const {
        return CTLBitFlagHelperWrapper<COXOrderCategoryX>(m_view.ULong(69, 0));
    }
    StageOrderLifeSpan GetLifeSpan() const {
        return static_cast<StageOrderLifeSpan>(m_view.Long(111, 0));
    }
    // True when absent.
    bool GetIsParent() const { return m_view.Bool(131, true); }
    bool GetReplaceable() const { return m_view.Bool(132, false); }

    // Whether the limit and stop prices are auto prices: the style's text (empty when there is
    // no style), and the offset that goes with it (0 without a style). A stop offset beyond 32
    // bits saturates, and one that is not a number is 0.
    CString GetLimitPriceStyle() const;
    LONG GetLimitPriceOffset() const;
    CString GetStopPriceStyle() const;
    LONG GetStopPriceOffset() const;

    // The property objects of the additional legs (number 46: an array, or one object), each as
    // IDispatch, null for an element that is no property object. False when 46 is absent, or at
    // the first element that is no object, with what came before it appended.
    bool GetAdditionalLegs(std::vector<IDispatchPtr>& legs) const;
    // The symbols of the additional legs, appended; false without legs.
    bool GetAdditionalSymbols(std::vector<CString>& symbols) const;
    // The order's symbol, then those of its additional legs.
    void GetSymbols(std::vector<CString>& symbols) const;

  private:
    PropertyView m_view;
};

}  // namespace qvox
