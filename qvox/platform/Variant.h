// VARIANT, the value that crosses the border with the platform, and the OLE automation rules that
// convert one type into another.
//
// A VARIANT names its type in `vt` and holds the value in the member of that type. Text (VT_BSTR)
// and objects (VT_DISPATCH, VT_UNKNOWN, counted) and arrays (VT_ARRAY | VT_VARIANT) are owned by
// the VARIANT: VariantClear frees them, VariantCopy duplicates them. _variant_t is the value class
// that does both by itself.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "qvox/platform/Bstr.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/ComBase.h"

namespace qvox {

using VARTYPE = std::uint16_t;

// The types the library exchanges; their numbers are those of the wire.
inline constexpr VARTYPE VT_EMPTY = 0;
inline constexpr VARTYPE VT_NULL = 1;
inline constexpr VARTYPE VT_I2 = 2;
inline constexpr VARTYPE VT_I4 = 3;
inline constexpr VARTYPE VT_R8 = 5;
inline constexpr VARTYPE VT_BSTR = 8;
inline constexpr VARTYPE VT_DISPATCH = 9;
inline constexpr VARTYPE VT_BOOL = 11;
inline constexpr VARTYPE VT_VARIANT = 12;  // only as the element type of an array
inline constexpr VARTYPE VT_UNKNOWN = 13;
inline constexpr VARTYPE VT_I1 = 16;
inline constexpr VARTYPE VT_UI4 = 19;
inline constexpr VARTYPE VT_INT = 22;
inline constexpr VARTYPE VT_ARRAY = 0x2000;  // a flag: VT_ARRAY | VT_VARIANT

using VARIANT_BOOL = std::int16_t;
inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// VariantChangeType flags: VT_BOOL to text as "True"/"False" instead of "-1"/"0".
inline constexpr USHORT VARIANT_ALPHABOOL = 0x2;
// VariantChangeType flags: the system's number format rather than the user's. Conversions here
// always read and write the C locale's, so the flag is accepted and changes nothing.
inline constexpr USHORT VARIANT_NOUSEROVERRIDE = 0x4;

// The short name of a type, "VT_I4", "VT_ARRAY|VT_VARIANT"; "VT_?(n)" for other numbers.
CString VarTypeName(VARTYPE vt);

struct SAFEARRAY;
struct VARIANT;

// One-dimensional arrays of VARIANTs, the only arrays the platform hands over.
// A new array of count empty elements, numbered from lowerBound; null when memory runs out or
// the element type is not VT_VARIANT.
SAFEARRAY* SafeArrayCreateVector(VARTYPE elementType, LONG lowerBound, ULONG count);
// Frees the array and clears every element. Null gives E_INVALIDARG.
HRESULT SafeArrayDestroy(SAFEARRAY* array);
HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
// A copy of the element at index into *element (which the caller clears); DISP_E_BADINDEX out of
// bounds.
HRESULT SafeArrayGetElement(SAFEARRAY* array, const LONG* index, void* element);
// Replaces the element at index by a copy of *element.
HRESULT SafeArrayPutElement(SAFEARRAY* array, const LONG* index, void* element);
// A deep copy; null source gives a null copy and S_OK.
HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy);

struct VARIANT {
    VARTYPE vt = VT_EMPTY;
    union {
        std::int64_t llVal = 0;  // sizes the union; no type of the exchange is 64-bit integer
        char cVal;               // VT_I1
        SHORT iVal;              // VT_I2
        LONG lVal;               // VT_I4
        INT intVal;              // VT_INT
        ULONG ulVal;             // VT_UI4
        double dblVal;           // VT_R8
        VARIANT_BOOL boolVal;    // VT_BOOL
        BSTR bstrVal;            // VT_BSTR
        IUnknown* punkVal;       // VT_UNKNOWN
        IDispatch* pdispVal;     // VT_DISPATCH
        SAFEARRAY* parray;       // VT_ARRAY | VT_VARIANT
    };
};

// Makes v empty without looking at what it held.
inline void VariantInit(VARIANT* v) {
    if (!v) return;
    v->vt = VT_EMPTY;
    v->llVal = 0;
}

namespace variant_detail {
HRESULT ClearOwned(VARIANT* v);
}  // namespace variant_detail

// Frees what v owns and makes it empty. E_INVALIDARG for null, DISP_E_BADVARTYPE for a type this
// layer does not know (v is then left alone).
inline HRESULT VariantClear(VARIANT* v) {
    if (!v) return E_INVALIDARG;
    switch (v->vt) {
        case VT_EMPTY:
        case VT_NULL:
        case VT_I1:
        case VT_I2:
        case VT_I4:
        case VT_INT:
        case VT_UI4:
        case VT_R8:
        case VT_BOOL:
            // Nothing owned: the common case stays out of a call.
            VariantInit(v);
            return S_OK;
        default:
            return variant_detail::ClearOwned(v);
    }
}
// Clears dest, then makes it a deep copy of source (objects gain a reference).
HRESULT VariantCopy(VARIANT* dest, const VARIANT* source);
// Converts source to type vt into dest, which is cleared first; dest may be source itself. The
// rules of OLE automation, under the C locale:
//   numbers between each other: out of range gives DISP_E_OVERFLOW, a double rounds half to even,
//     not-a-number gives DISP_E_OVERFLOW;
//   VT_BOOL to a number: -1 or 0; a number to VT_BOOL: VARIANT_TRUE unless it is 0;
//   text to a number: blanks around, a sign, digits with a "." and an exponent; anything else
//     DISP_E_TYPEMISMATCH; text to VT_BOOL also reads "True"/"False" in any case;
//   a number to text: integers in decimal, doubles in at most 15 significant digits;
//   VT_EMPTY gives 0, false or the empty text; objects convert only between VT_UNKNOWN and
//     VT_DISPATCH (by asking for the interface) and arrays not at all: DISP_E_TYPEMISMATCH.
// On failure dest is left empty (or, when it is source, unchanged).
HRESULT VariantChangeType(VARIANT* dest, const VARIANT* source, USHORT flags, VARTYPE vt);

// A VARIANT that owns its value. Each constructor states the wire type: a 32-bit integer is
// VT_I4 unless told VT_INT or VT_UI4, because the width of a C++ type does not say which one the
// platform expects.
class _variant_t : public VARIANT {
  public:
    _variant_t() noexcept { VariantInit(this); }
    _variant_t(const VARIANT& source);
    _variant_t(const _variant_t& source);
    _variant_t(_variant_t&& source) noexcept;
    ~_variant_t() { VariantClear(this); }
    _variant_t& operator=(const _variant_t& source);
    _variant_t& operator=(_variant_t&& source) noexcept;
    _variant_t& operator=(const VARIANT& source);

    // VT_I2, or VT_BOOL with vt VT_BOOL (any non-zero value true).
    explicit _variant_t(SHORT value, VARTYPE vt = VT_I2);
    // VT_I4, VT_INT or VT_UI4; E_INVALIDARG raised for any other vt.
    explicit _variant_t(std::int32_t value, VARTYPE vt = VT_I4);
    explicit _variant_t(std::uint32_t value) noexcept;
    explicit _variant_t(double value) noexcept;
    explicit _variant_t(bool value) noexcept;
    explicit _variant_t(char value) noexcept;  // VT_I1
    // VT_BSTR of single-byte text through the code page.
    explicit _variant_t(const char* text);
    explicit _variant_t(const CString& text);
    explicit _variant_t(const _bstr_t& text);
    // VT_DISPATCH or VT_UNKNOWN, with a reference of its own (addRef) or taking the caller's.
    explicit _variant_t(IDispatch* object, bool addRef = true) noexcept;
    explicit _variant_t(IUnknown* object, bool addRef = true) noexcept;

    // Frees the value and makes the variant empty.
    void Clear();
    // Converts in place; raises _com_error when the conversion fails.
    void ChangeType(VARTYPE vt, const _variant_t* source = nullptr);
    // Hands the value over and leaves this variant empty.
    VARIANT Detach() noexcept;
    // Takes over source's value, leaving source empty.
    void Attach(VARIANT& source);
    // Frees the value and gives the VARIANT for an out-parameter to fill.
    VARIANT* GetAddress();

    bool IsEmpty() const noexcept { return vt == VT_EMPTY; }
    // The text of a VT_BSTR, single-byte; empty for any other type.
    CString TextOrEmpty() const;
};

}  // namespace qvox
