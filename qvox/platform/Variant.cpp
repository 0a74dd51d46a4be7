#include "qvox/platform/Variant.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "qvox/platform/CRuntime.h"
#include "qvox/platform/CodePage.h"

namespace qvox {

struct SAFEARRAY {
    VARTYPE elementType = VT_VARIANT;
    LONG lowerBound = 0;
    std::vector<VARIANT> elements;
};

namespace {

// The types this layer knows, as bits of a mask over the small type numbers.
constexpr std::uint32_t kKnownScalars = (1u << VT_EMPTY) | (1u << VT_NULL) | (1u << VT_I1) |
                                        (1u << VT_I2) | (1u << VT_I4) | (1u << VT_INT) |
                                        (1u << VT_UI4) | (1u << VT_R8) | (1u << VT_BOOL) |
                                        (1u << VT_BSTR) | (1u << VT_DISPATCH) | (1u << VT_UNKNOWN);

bool Known(VARTYPE vt) {
    return (vt < 32 && ((kKnownScalars >> vt) & 1u) != 0) || vt == (VT_ARRAY | VT_VARIANT);
}

}  // namespace

CString VarTypeName(VARTYPE vt) {
    switch (vt) {
        case VT_EMPTY:
            return "VT_EMPTY";
        case VT_NULL:
            return "VT_NULL";
        case VT_I1:
            return "VT_I1";
        case VT_I2:
            return "VT_I2";
        case VT_I4:
            return "VT_I4";
        case VT_INT:
            return "VT_INT";
        case VT_UI4:
            return "VT_UI4";
        case VT_R8:
            return "VT_R8";
        case VT_BOOL:
            return "VT_BOOL";
        case VT_BSTR:
            return "VT_BSTR";
        case VT_DISPATCH:
            return "VT_DISPATCH";
        case VT_UNKNOWN:
            return "VT_UNKNOWN";
        case VT_ARRAY | VT_VARIANT:
            return "VT_ARRAY|VT_VARIANT";
        default:
            break;
    }
    CString name;
    name.Format("VT_?(%u)", static_cast<unsigned>(vt));
    return name;
}

// ---- Arrays ----

SAFEARRAY* SafeArrayCreateVector(VARTYPE elementType, LONG lowerBound, ULONG count) {
    if (elementType != VT_VARIANT) return nullptr;
    // The upper bound must stay a 32-bit index.
    if (count > 0 && static_cast<std::int64_t>(lowerBound) + count - 1 > INT32_MAX) return nullptr;
    auto* array = new (std::nothrow) SAFEARRAY;
    if (!array) return nullptr;
    try {
        array->elements.resize(count);
    } catch (const std::bad_alloc&) {
        delete array;
        return nullptr;
    }
    array->lowerBound = lowerBound;
    return array;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
    if (!array) return E_INVALIDARG;
    for (VARIANT& element : array->elements) {
        VariantClear(&element);
    }
    delete array;
    return S_OK;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
    if (!array || !bound) return E_INVALIDARG;
    if (dimension != 1) return DISP_E_BADINDEX;
    *bound = array->lowerBound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
    if (!array || !bound) return E_INVALIDARG;
    if (dimension != 1) return DISP_E_BADINDEX;
    *bound = static_cast<LONG>(static_cast<std::int64_t>(array->lowerBound) +
                               static_cast<std::int64_t>(array->elements.size()) - 1);
    return S_OK;
}

namespace {

VARIANT* ElementAt(SAFEARRAY* array, const LONG* index) {
    if (!array || !index) return nullptr;
    const std::int64_t offset = static_cast<std::int64_t>(*index) - array->lowerBound;
    if (offset < 0 || offset >= static_cast<std::int64_t>(array->elements.size())) return nullptr;
    return &array->elements[static_cast<std::size_t>(offset)];
}

}  // namespace

HRESULT SafeArrayGetElement(SAFEARRAY* array, const LONG* index, void* element) {
    if (!array || !index || !element) return E_INVALIDARG;
    const VARIANT* source = ElementAt(array, index);
    if (!source) return DISP_E_BADINDEX;
    auto* dest = static_cast<VARIANT*>(element);
    VariantInit(dest);
    return VariantCopy(dest, source);
}

HRESULT SafeArrayPutElement(SAFEARRAY* array, const LONG* index, void* element) {
    if (!array || !index || !element) return E_INVALIDARG;
    VARIANT* dest = ElementAt(array, index);
    if (!dest) return DISP_E_BADINDEX;
    return VariantCopy(dest, static_cast<const VARIANT*>(element));
}

HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy) {
    if (!copy) return E_INVALIDARG;
    *copy = nullptr;
    if (!source) return S_OK;
    SAFEARRAY* result = SafeArrayCreateVector(source->elementType, source->lowerBound,
                                              static_cast<ULONG>(source->elements.size()));
    if (!result) return E_OUTOFMEMORY;
    for (std::size_t i = 0; i < source->elements.size(); ++i) {
        const HRESULT hr = VariantCopy(&result->elements[i], &source->elements[i]);
        if (FAILED(hr)) {
            SafeArrayDestroy(result);
            return hr;
        }
    }
    *copy = result;
    return S_OK;
}

// ---- Variants ----

HRESULT variant_detail::ClearOwned(VARIANT* v) {
    switch (v->vt) {
        case VT_BSTR:
            SysFreeString(v->bstrVal);
            break;
        case VT_DISPATCH:
            if (v->pdispVal) v->pdispVal->Release();
            break;
        case VT_UNKNOWN:
            if (v->punkVal) v->punkVal->Release();
            break;
        case VT_ARRAY | VT_VARIANT:
            if (v->parray) SafeArrayDestroy(v->parray);
            break;
        default:
            if (!Known(v->vt)) return DISP_E_BADVARTYPE;
            break;
    }
    VariantInit(v);
    return S_OK;
}

HRESULT VariantCopy(VARIANT* dest, const VARIANT* source) {
    if (!dest || !source) return E_INVALIDARG;
    if (dest == source) return S_OK;
    if (!Known(source->vt)) return DISP_E_BADVARTYPE;
    // Build the copy first, so that a failure leaves dest as it was.
    VARIANT copy = *source;
    switch (source->vt) {
        case VT_BSTR:
            if (source->bstrVal) {
                copy.bstrVal = SysAllocStringLen(source->bstrVal, SysStringLen(source->bstrVal));
                if (!copy.bstrVal) return E_OUTOFMEMORY;
            }
            break;
        case VT_DISPATCH:
            if (copy.pdispVal) copy.pdispVal->AddRef();
            break;
        case VT_UNKNOWN:
            if (copy.punkVal) copy.punkVal->AddRef();
            break;
        case VT_ARRAY | VT_VARIANT: {
            const HRESULT hr = SafeArrayCopy(source->parray, &copy.parray);
            if (FAILED(hr)) return hr;
            break;
        }
        default:
            break;
    }
    const HRESULT hr = VariantClear(dest);
    if (FAILED(hr)) {
        VariantClear(&copy);
        return hr;
    }
    *dest = copy;
    return S_OK;
}

namespace {

// A number on its way between two types: an integer held exactly, or a double.
struct Number {
    bool isDouble = false;
    std::int64_t i = 0;
    double d = 0.0;
};

// Rounds half to even, as automation does when a double becomes an integer.
double RoundHalfEven(double x) {
    const double floor = std::floor(x);
    const double diff = x - floor;
    if (diff > 0.5) return floor + 1.0;
    if (diff < 0.5) return floor;
    return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

// The integer of a number within [lo, hi]; DISP_E_OVERFLOW outside, and for not-a-number.
HRESULT ToInteger(const Number& n, std::int64_t lo, std::int64_t hi, std::int64_t& out) {
    if (n.isDouble) {
        const double r = RoundHalfEven(n.d);
        // Written so that NaN fails the test.
        if (!(r >= static_cast<double>(lo) && r <= static_cast<double>(hi))) {
            return DISP_E_OVERFLOW;
        }
        out = static_cast<std::int64_t>(r);
        return S_OK;
    }
    if (n.i < lo || n.i > hi) return DISP_E_OVERFLOW;
    out = n.i;
    return S_OK;
}

bool IsBlank(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

// Text as a number: blanks around, a sign, digits with at most one "." and an exponent. Digits
// must stand on at least one side of the point.
HRESULT ParseNumber(std::u16string_view text, Number& out) {
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && IsBlank(text[begin]))
        ++begin;
    while (end > begin && IsBlank(text[end - 1]))
        --end;
    std::string ascii;
    ascii.reserve(end - begin);
    for (std::size_t i = begin; i < end; ++i) {
        const char16_t c = text[i];
        if (c > 0x7F) return DISP_E_TYPEMISMATCH;
        ascii.push_back(static_cast<char>(c));
    }
    std::size_t i = 0;
    if (i < ascii.size() && (ascii[i] == '+' || ascii[i] == '-')) ++i;
    std::size_t digits = 0;
    while (i < ascii.size() && ascii[i] >= '0' && ascii[i] <= '9') {
        ++i;
        ++digits;
    }
    if (i < ascii.size() && ascii[i] == '.') {
        ++i;
        while (i < ascii.size() && ascii[i] >= '0' && ascii[i] <= '9') {
            ++i;
            ++digits;
        }
    }
    if (digits == 0) return DISP_E_TYPEMISMATCH;
    if (i < ascii.size() && (ascii[i] == 'e' || ascii[i] == 'E')) {
        ++i;
        if (i < ascii.size() && (ascii[i] == '+' || ascii[i] == '-')) ++i;
        std::size_t expDigits = 0;
        while (i < ascii.size() && ascii[i] >= '0' && ascii[i] <= '9') {
            ++i;
            ++expDigits;
        }
        if (expDigits == 0) return DISP_E_TYPEMISMATCH;
    }
    if (i != ascii.size()) return DISP_E_TYPEMISMATCH;
    // The text is a plain decimal number now; a value beyond the double range overflows, one
    // below it reads as 0.
    const double value = AtoF(std::string_view(ascii));
    if (!std::isfinite(value)) return DISP_E_OVERFLOW;
    out.isDouble = true;
    out.d = value;
    return S_OK;
}

bool EqualsNoCase(std::u16string_view text, std::string_view word) {
    if (text.size() != word.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char16_t c = text[i];
        if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
        if (c != static_cast<unsigned char>(word[i])) return false;
    }
    return true;
}

// The source as a number; DISP_E_TYPEMISMATCH for objects, arrays and unreadable text.
HRESULT AsNumber(const VARIANT& v, Number& out) {
    switch (v.vt) {
        case VT_EMPTY:
            out.i = 0;
            return S_OK;
        case VT_I1:
            out.i = v.cVal;
            return S_OK;
        case VT_I2:
            out.i = v.iVal;
            return S_OK;
        case VT_I4:
            out.i = v.lVal;
            return S_OK;
        case VT_INT:
            out.i = v.intVal;
            return S_OK;
        case VT_UI4:
            out.i = v.ulVal;
            return S_OK;
        case VT_BOOL:
            out.i = v.boolVal == 0 ? 0 : -1;
            return S_OK;
        case VT_R8:
            out.isDouble = true;
            out.d = v.dblVal;
            return S_OK;
        case VT_BSTR:
            return ParseNumber(BstrView(v.bstrVal), out);
        default:
            return DISP_E_TYPEMISMATCH;
    }
}

std::string DoubleText(double d) {
    if (d == 0.0) return "0";  // no "-0"
    if (std::isnan(d)) return "NaN";
    if (std::isinf(d)) return d > 0 ? "Infinity" : "-Infinity";
    // Fifteen significant digits, the shortest of fixed and exponent forms, as %G writes them.
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof(buffer), d, std::chars_format::general, 15);
    std::string text(buffer, result.ptr);
    for (char& c : text) {
        if (c == 'e') c = 'E';
    }
    return text;
}

HRESULT ToText(const VARIANT& v, USHORT flags, BSTR& out) {
    std::string text;
    switch (v.vt) {
        case VT_EMPTY:
            break;
        case VT_I1:
            text = std::to_string(static_cast<int>(v.cVal));
            break;
        case VT_I2:
            text = std::to_string(v.iVal);
            break;
        case VT_I4:
            text = std::to_string(v.lVal);
            break;
        case VT_INT:
            text = std::to_string(v.intVal);
            break;
        case VT_UI4:
            text = std::to_string(v.ulVal);
            break;
        case VT_R8:
            text = DoubleText(v.dblVal);
            break;
        case VT_BOOL:
            if (flags & VARIANT_ALPHABOOL) {
                text = v.boolVal != 0 ? "True" : "False";
            } else {
                text = v.boolVal != 0 ? "-1" : "0";
            }
            break;
        default:
            return DISP_E_TYPEMISMATCH;
    }
    out = SysAllocStringFromCp1252(text);
    return out ? S_OK : E_OUTOFMEMORY;
}

// Converts into result, which starts empty and is not yet owned by anyone.
HRESULT Convert(const VARIANT& source, USHORT flags, VARTYPE vt, VARIANT& result) {
    if (source.vt == vt) return VariantCopy(&result, &source);
    if (vt == VT_EMPTY) return S_OK;
    if (source.vt == VT_NULL || vt == VT_NULL) return DISP_E_TYPEMISMATCH;
    const bool sourceIsObject = source.vt == VT_DISPATCH || source.vt == VT_UNKNOWN;
    if (vt == VT_DISPATCH || vt == VT_UNKNOWN) {
        if (!sourceIsObject) return DISP_E_TYPEMISMATCH;
        IUnknown* object = source.vt == VT_DISPATCH ? source.pdispVal : source.punkVal;
        if (!object) {
            result.vt = vt;
            result.punkVal = nullptr;
            return S_OK;
        }
        void* out = nullptr;
        const HRESULT hr = object->QueryInterface(
            vt == VT_DISPATCH ? uuidof<IDispatch>() : uuidof<IUnknown>(), &out);
        if (FAILED(hr)) return hr == E_NOINTERFACE ? DISP_E_TYPEMISMATCH : hr;
        result.vt = vt;
        if (vt == VT_DISPATCH) {
            result.pdispVal = static_cast<IDispatch*>(out);
        } else {
            result.punkVal = static_cast<IUnknown*>(out);
        }
        return S_OK;
    }
    if (sourceIsObject || (source.vt & VT_ARRAY) || (vt & VT_ARRAY)) return DISP_E_TYPEMISMATCH;
    if (vt == VT_BSTR) {
        BSTR text = nullptr;
        const HRESULT hr = ToText(source, flags, text);
        if (FAILED(hr)) return hr;
        result.vt = VT_BSTR;
        result.bstrVal = text;
        return S_OK;
    }
    if (vt == VT_BOOL && source.vt == VT_BSTR) {
        const std::u16string_view text = BstrView(source.bstrVal);
        if (EqualsNoCase(text, "true") || EqualsNoCase(text, "false")) {
            result.vt = VT_BOOL;
            result.boolVal = EqualsNoCase(text, "true") ? VARIANT_TRUE : VARIANT_FALSE;
            return S_OK;
        }
    }
    Number n;
    HRESULT hr = AsNumber(source, n);
    if (FAILED(hr)) return hr;
    std::int64_t i = 0;
    switch (vt) {
        case VT_R8:
            result.dblVal = n.isDouble ? n.d : static_cast<double>(n.i);
            break;
        case VT_BOOL:
            result.boolVal = (n.isDouble ? n.d != 0.0 : n.i != 0) ? VARIANT_TRUE : VARIANT_FALSE;
            break;
        case VT_I1:
            hr = ToInteger(n, INT8_MIN, INT8_MAX, i);
            result.cVal = static_cast<char>(i);
            break;
        case VT_I2:
            hr = ToInteger(n, INT16_MIN, INT16_MAX, i);
            result.iVal = static_cast<SHORT>(i);
            break;
        case VT_I4:
            hr = ToInteger(n, INT32_MIN, INT32_MAX, i);
            result.lVal = static_cast<LONG>(i);
            break;
        case VT_INT:
            hr = ToInteger(n, INT32_MIN, INT32_MAX, i);
            result.intVal = static_cast<INT>(i);
            break;
        case VT_UI4:
            hr = ToInteger(n, 0, UINT32_MAX, i);
            result.ulVal = static_cast<ULONG>(i);
            break;
        default:
            return DISP_E_BADVARTYPE;
    }
    if (FAILED(hr)) {
        VariantInit(&result);
        return hr;
    }
    result.vt = vt;
    return S_OK;
}

}  // namespace

HRESULT VariantChangeType(VARIANT* dest, const VARIANT* source, USHORT flags, VARTYPE vt) {
    if (!dest || !source) return E_INVALIDARG;
    if (!Known(source->vt) || !Known(vt)) return DISP_E_BADVARTYPE;
    VARIANT result;
    VariantInit(&result);
    const HRESULT hr = Convert(*source, flags, vt, result);
    if (FAILED(hr)) {
        if (dest != source) VariantClear(dest);
        return hr;
    }
    // Clearing dest may free source's value when they are one; the result is already separate.
    const HRESULT cleared = VariantClear(dest);
    if (FAILED(cleared)) {
        VariantClear(&result);
        return cleared;
    }
    *dest = result;
    return S_OK;
}

// ---- _variant_t ----

_variant_t::_variant_t(const VARIANT& source) {
    VariantInit(this);
    ThrowIfFailed(VariantCopy(this, &source));
}

_variant_t::_variant_t(const _variant_t& source)
    : _variant_t(static_cast<const VARIANT&>(source)) {}

_variant_t::_variant_t(_variant_t&& source) noexcept {
    *static_cast<VARIANT*>(this) = source;
    VariantInit(&source);
}

_variant_t& _variant_t::operator=(const VARIANT& source) {
    ThrowIfFailed(VariantCopy(this, &source));
    return *this;
}

_variant_t& _variant_t::operator=(const _variant_t& source) {
    return *this = static_cast<const VARIANT&>(source);
}

_variant_t& _variant_t::operator=(_variant_t&& source) noexcept {
    if (this != &source) {
        VariantClear(this);
        *static_cast<VARIANT*>(this) = source;
        VariantInit(&source);
    }
    return *this;
}

_variant_t::_variant_t(SHORT value, VARTYPE type) {
    VariantInit(this);
    if (type == VT_BOOL) {
        vt = VT_BOOL;
        boolVal = value != 0 ? VARIANT_TRUE : VARIANT_FALSE;
    } else if (type == VT_I2) {
        vt = VT_I2;
        iVal = value;
    } else {
        _com_issue_error(E_INVALIDARG);
    }
}

_variant_t::_variant_t(std::int32_t value, VARTYPE type) {
    VariantInit(this);
    switch (type) {
        case VT_I4:
            lVal = value;
            break;
        case VT_INT:
            intVal = value;
            break;
        case VT_UI4:
            ulVal = static_cast<ULONG>(value);
            break;
        default:
            _com_issue_error(E_INVALIDARG);
    }
    vt = type;
}

_variant_t::_variant_t(std::uint32_t value) noexcept {
    VariantInit(this);
    vt = VT_UI4;
    ulVal = value;
}

_variant_t::_variant_t(double value) noexcept {
    VariantInit(this);
    vt = VT_R8;
    dblVal = value;
}

_variant_t::_variant_t(bool value) noexcept {
    VariantInit(this);
    vt = VT_BOOL;
    boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

_variant_t::_variant_t(char value) noexcept {
    VariantInit(this);
    vt = VT_I1;
    cVal = value;
}

_variant_t::_variant_t(const char* text) {
    VariantInit(this);
    if (text) {
        bstrVal = SysAllocStringFromCp1252(text);
        if (!bstrVal) _com_issue_error(E_OUTOFMEMORY);
    }
    vt = VT_BSTR;
}

_variant_t::_variant_t(const CString& text) {
    VariantInit(this);
    bstrVal = SysAllocStringFromCp1252(text.view());
    if (!bstrVal) _com_issue_error(E_OUTOFMEMORY);
    vt = VT_BSTR;
}

_variant_t::_variant_t(const _bstr_t& text) {
    VariantInit(this);
    bstrVal = text.copy();
    vt = VT_BSTR;
}

_variant_t::_variant_t(IDispatch* object, bool addRef) noexcept {
    VariantInit(this);
    vt = VT_DISPATCH;
    pdispVal = object;
    if (object && addRef) object->AddRef();
}

_variant_t::_variant_t(IUnknown* object, bool addRef) noexcept {
    VariantInit(this);
    vt = VT_UNKNOWN;
    punkVal = object;
    if (object && addRef) object->AddRef();
}

void _variant_t::Clear() {
    ThrowIfFailed(VariantClear(this));
}

void _variant_t::ChangeType(VARTYPE type, const _variant_t* source) {
    const VARIANT* from = source ? static_cast<const VARIANT*>(source) : this;
    if (from->vt == type && from == this) return;
    ThrowIfFailed(VariantChangeType(this, from, 0, type));
}

VARIANT _variant_t::Detach() noexcept {
    VARIANT out = *this;
    VariantInit(this);
    return out;
}

void _variant_t::Attach(VARIANT& source) {
    ThrowIfFailed(VariantClear(this));
    *static_cast<VARIANT*>(this) = source;
    VariantInit(&source);
}

VARIANT* _variant_t::GetAddress() {
    ThrowIfFailed(VariantClear(this));
    return this;
}

CString _variant_t::TextOrEmpty() const {
    return vt == VT_BSTR ? CString(Cp1252FromBstr(bstrVal)) : CString();
}

}  // namespace qvox
