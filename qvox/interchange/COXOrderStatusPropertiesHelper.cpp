#include "qvox/interchange/COXOrderStatusPropertiesHelper.h"

#include <cmath>
#include <cstdint>

#include "qvox/interchange/COXPositionPropertiesHelper.h"
#include "qvox/platform/CRuntime.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/vocabulary/COXUtil.h"

namespace qvox {

EMVOrderAction COXOrderStatusPropertiesHelper::GetOrderAction() const {
    return COXUtil::OrderActionStrToEnum(m_view.Text(5));
}

EMVOrderType COXOrderStatusPropertiesHelper::GetOrderType() const {
    return COXUtil::OrderTypeStrToEnum(m_view.Text(20));
}

EOXAutoPrice COXOrderStatusPropertiesHelper::GetAutoPrice() const {
    return COXUtil::AutoPriceStrToEnum(m_view.Text(107));
}

int COXOrderStatusPropertiesHelper::GetAutoPriceIncrement(ULONG category) const {
    return COXUtil::AutoPriceIncrementStrToEnum(m_view.Text(108), category);
}

CString COXOrderStatusPropertiesHelper::GetLimitPriceStyle() const {
    return m_view.Text(109).IsEmpty() ? CString() : m_view.Text(107);
}

LONG COXOrderStatusPropertiesHelper::GetLimitPriceOffset() const {
    return m_view.Text(109).IsEmpty() ? 0 : AtoI(m_view.Text(108).GetString());
}

CString COXOrderStatusPropertiesHelper::GetStopPriceStyle() const {
    return m_view.Text(114).IsEmpty() ? CString() : m_view.Text(115);
}

LONG COXOrderStatusPropertiesHelper::GetStopPriceOffset() const {
    if (m_view.Text(114).IsEmpty()) return 0;
    // Toward zero, as a cast would, without a cast's undefined cases.
    const double offset = std::trunc(m_view.Double(116, 0.0));
    if (std::isnan(offset)) return 0;
    if (offset <= static_cast<double>(INT32_MIN)) return INT32_MIN;
    if (offset >= static_cast<double>(INT32_MAX)) return INT32_MAX;
    return static_cast<LONG>(offset);
}

bool COXOrderStatusPropertiesHelper::GetAdditionalLegs(std::vector<IDispatchPtr>& legs) const {
    if (!m_view.IsGood()) _com_issue_error(E_POINTER);
    _variant_t value;
    if (FAILED(GetPropertyByNumber(m_view.Get(), 46, &value))) return false;
    std::vector<_variant_t> elements;
    if (value.vt == (VT_ARRAY | VT_VARIANT)) {
        LONG lower = 0;
        LONG upper = -1;
        if (value.parray) {
            ThrowIfFailed(SafeArrayGetLBound(value.parray, 1, &lower));
            ThrowIfFailed(SafeArrayGetUBound(value.parray, 1, &upper));
        }
        for (std::int64_t i = lower; i <= upper; ++i) {
            const LONG index = static_cast<LONG>(i);
            _variant_t element;
            ThrowIfFailed(SafeArrayGetElement(value.parray, &index, element.GetAddress()));
            elements.push_back(std::move(element));
        }
    } else {
        elements.push_back(std::move(value));
    }
    for (const _variant_t& element : elements) {
        IUnknown* object = nullptr;
        if (element.vt == VT_DISPATCH) {
            object = element.pdispVal;
        } else if (element.vt == VT_UNKNOWN) {
            object = element.punkVal;
        } else {
            return false;
        }
        IMVPropertiesPtr properties;
        if (object) properties = IMVPropertiesPtr(IUnknownPtr(object));
        legs.emplace_back(properties.GetInterfacePtr());
    }
    return true;
}

bool COXOrderStatusPropertiesHelper::GetAdditionalSymbols(std::vector<CString>& symbols) const {
    if (GetAdditionalLegCount() == 0) return false;
    std::vector<IDispatchPtr> legs;
    if (!GetAdditionalLegs(legs)) return false;
    for (const IDispatchPtr& leg : legs) {
        const IMVPropertiesPtr properties = leg ? IMVPropertiesPtr(leg) : nullptr;
        symbols.push_back(COXPositionPropertiesHelper(properties).GetSymbol());
    }
    return true;
}

void COXOrderStatusPropertiesHelper::GetSymbols(std::vector<CString>& symbols) const {
    symbols.push_back(GetSymbol());
    GetAdditionalSymbols(symbols);
}

}  // namespace qvox
