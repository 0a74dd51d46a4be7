#include "qvox/interchange/PropertyView.h"

#include "qvox/platform/PlatformObjects.h"

namespace qvox {

bool PropertyView::Fetch(int number, VARTYPE vt, _variant_t& value) const {
    if (!IsGood()) _com_issue_error(E_POINTER);
    _variant_t fetched;
    if (FAILED(GetPropertyByNumber(m_properties, number, &fetched))) return false;
    if (fetched.vt == vt) {
        value = std::move(fetched);
    } else {
        ThrowIfFailed(VariantChangeType(&value, &fetched, 0, vt));
    }
    return true;
}

CString PropertyView::Text(int number) const {
    if (!IsGood()) _com_issue_error(E_POINTER);
    _variant_t fetched;
    if (FAILED(GetPropertyByNumber(m_properties, number, &fetched))) return CString();
    return fetched.TextOrEmpty();
}

bool PropertyView::Value(int number, double& value) const {
    _variant_t fetched;
    if (!Fetch(number, VT_R8, fetched)) return false;
    value = fetched.dblVal;
    return true;
}

double PropertyView::Double(int number, double fallback) const {
    _variant_t value;
    return Fetch(number, VT_R8, value) ? value.dblVal : fallback;
}

LONG PropertyView::Long(int number, LONG fallback) const {
    _variant_t value;
    return Fetch(number, VT_I4, value) ? value.lVal : fallback;
}

INT PropertyView::Int(int number, INT fallback) const {
    _variant_t value;
    return Fetch(number, VT_INT, value) ? value.intVal : fallback;
}

ULONG PropertyView::ULong(int number, ULONG fallback) const {
    _variant_t value;
    return Fetch(number, VT_UI4, value) ? value.ulVal : fallback;
}

char PropertyView::Char(int number, char fallback) const {
    _variant_t value;
    return Fetch(number, VT_I1, value) ? value.cVal : fallback;
}

bool PropertyView::Bool(int number, bool fallback) const {
    _variant_t value;
    return Fetch(number, VT_BOOL, value) ? value.boolVal == VARIANT_TRUE : fallback;
}

}  // namespace qvox
