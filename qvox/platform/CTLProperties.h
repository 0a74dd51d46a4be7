// CTLProperties: read access by number to one of the platform's property objects, such as the
// user's order preferences of a symbol category. An empty one (no object, or an object without
// IMVProperties) holds no values, so that a caller without a platform reads nothing and keeps
// its own defaults.
#pragma once

#include "qvox/platform/PlatformInterfaces.h"

namespace qvox {

class CTLProperties {
  public:
    CTLProperties() = default;
    // Reads object through IMVProperties; an object without it makes an empty one.
    explicit CTLProperties(IUnknownPtr object);

    // No property object behind it.
    bool IsEmpty() const { return !m_Properties; }
    // The value of property number; the empty variant when there is no object or the object
    // doesn't hold the number.
    _variant_t GetValue(LONG number) const;
    // The text of property number, and true, when it holds a text (VT_BSTR); false otherwise,
    // text untouched.
    bool GetText(LONG number, CString& text) const;

    IMVPropertiesPtr m_Properties;
};

}  // namespace qvox
