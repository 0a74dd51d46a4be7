#include "qvox/platform/CTLProperties.h"

#include "qvox/platform/PlatformObjects.h"

namespace qvox {

CTLProperties::CTLProperties(IUnknownPtr object) {
    m_Properties.QueryInterface(object.GetInterfacePtr());
}

_variant_t CTLProperties::GetValue(LONG number) const {
    _variant_t value;
    if (m_Properties && FAILED(GetPropertyByNumber(m_Properties, number, &value))) value.Clear();
    return value;
}

bool CTLProperties::GetText(LONG number, CString& text) const {
    const _variant_t value = GetValue(number);
    if (value.vt != VT_BSTR) return false;
    text = value.TextOrEmpty();
    return true;
}

}  // namespace qvox
