// PropertyView: what the three read views of platform objects share. It holds the counted
// reference to a property object and fetches one property at a time, converted to the type an
// accessor gives: a property that is absent (the object answers a negative status) gives the
// accessor's default; a view without an object, and a value that does not convert, raise
// _com_error.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/PlatformInterfaces.h"
#include "qvox/platform/Variant.h"

namespace qvox {

class PropertyView {
  public:
    PropertyView() = default;
    // A counted reference of its own; null allowed.
    explicit PropertyView(IMVProperties* properties) : m_properties(properties) {}
    // The property object that a platform object (order status, account, position) hands out.
    // A failing request, or one without IMVProperties, leaves the view null; any other failure
    // of asking for IMVProperties raises.
    template <class PlatformObject>
    static PropertyView Of(PlatformObject* object) {
        PropertyView view;
        IUnknownPtr properties;
        if (!object || FAILED(object->GetProperties(&properties)) || !properties) return view;
        view.m_properties = IMVPropertiesPtr(properties);
        return view;
    }

    bool IsGood() const { return m_properties.GetInterfacePtr() != nullptr; }
    IMVProperties* Get() const { return m_properties.GetInterfacePtr(); }

    // The value of number converted to vt into value; false when absent. Raises E_POINTER on a
    // view without an object and the conversion's status when it fails.
    bool Fetch(int number, VARTYPE vt, _variant_t& value) const;
    // The text of number: a VT_BSTR's text, empty for an absent property or any other type.
    CString Text(int number) const;
    // Any number as a double into value; false, value untouched, when absent.
    bool Value(int number, double& value) const;
    // Numbers by type; fallback when absent.
    double Double(int number, double fallback) const;
    LONG Long(int number, LONG fallback) const;
    INT Int(int number, INT fallback) const;
    ULONG ULong(int number, ULONG fallback) const;
    char Char(int number, char fallback) const;
    // Of a VT_BOOL only -1 is true, as everywhere in the exchange.
    bool Bool(int number, bool fallback) const;

  private:
    IMVPropertiesPtr m_properties;
};

}  // namespace qvox
