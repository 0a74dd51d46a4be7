// COXPositionPropertiesHelper: a typed, read-only view of a position as the platform reports it,
// through the position's property object, with the platform's position numbering. Absent
// properties give their defaults; a view without an object raises _com_error(E_POINTER), a value
// that does not convert the conversion's status.
#pragma once

#include "qvox/interchange/PropertyView.h"
#include "qvox/platform/COleDateTime.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {

class COXPositionPropertiesHelper {
  public:
    COXPositionPropertiesHelper() = default;
    explicit COXPositionPropertiesHelper(IMVProperties* properties) : m_view(properties) {}
    explicit COXPositionPropertiesHelper(IPositionInfo* position)
        : m_view(PropertyView::Of(position)) {}

    bool IsGood() const { return m_view.IsGood(); }
    bool GetPositionValueProperty(int number, double& value) const {
        return m_view.Value(number, value);
    }

    CString GetSymbol() const { return m_view.Text(2); }
    CString GetBrokerID() const { return m_view.Text(25); }
    // True when absent.
    bool GetType() const { return m_view.Bool(3, true); }
    LONG GetQty() const { return m_view.Long(4, 0); }
    ULONG GetSymbolCategory() const { return m_view.ULong(44, SymbolCategoryInvalid); }
    double GetAvgPrice() const { return m_view.Double(5, 0.0); }
    double GetOpenPL() const { return m_view.Double(10, 0.0); }
    double GetNetChange() const { return m_view.Double(23, 0.0); }
    double GetMarketValue() const { return m_view.Double(33, 0.0); }
    double GetPointValue() const { return m_view.Double(48, 0.0); }
    double GetInitialMargin() const { return m_view.Double(49, 0.0); }
    double GetMaintenanceMargin() const { return m_view.Double(50, 0.0); }
    double GetTotalCost() const { return m_view.Double(55, 0.0); }
    COleDateTime GetExpirationDate() const { return COleDateTime(m_view.Double(45, 0.0)); }

  private:
    PropertyView m_view;
};

}  // namespace qvox
