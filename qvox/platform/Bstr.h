// BSTR, the platform's wide text: UTF-16 units behind a 32-bit byte-length prefix, always
// terminated by a zero unit that the length does not count. A null BSTR is the empty text to every
// reader here. Texts cross to and from the single-byte code page (Windows-1252) of CString.
//
// _bstr_t is a value that owns one BSTR: copies duplicate the text, destruction frees it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "qvox/platform/CString.h"
#include "qvox/platform/ComBase.h"

namespace qvox {

using BSTR = OLECHAR*;

// A new BSTR holding text up to its zero unit; null for a null text or when memory runs out.
BSTR SysAllocString(const OLECHAR* text);
// A new BSTR of length units copied from text (zeros when text is null); null when memory runs
// out or the length is beyond what the prefix can state.
BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
// Frees a BSTR; null does nothing.
void SysFreeString(BSTR text);
// The length in units, from the prefix; 0 for null.
UINT SysStringLen(BSTR text);
// The length in bytes, from the prefix; 0 for null.
UINT SysStringByteLen(BSTR text);

// A new BSTR of single-byte text, one unit per byte through the code page. Null when memory runs
// out.
BSTR SysAllocStringFromCp1252(std::string_view text);
// The single-byte form of a BSTR; characters outside the code page become '?'.
std::string Cp1252FromBstr(BSTR text);
// The units of a BSTR, empty for null.
inline std::u16string_view BstrView(BSTR text) {
    return text ? std::u16string_view(text, SysStringLen(text)) : std::u16string_view();
}

// BSTRs allocated and not yet freed in this process: a check for tests that nothing leaks.
std::ptrdiff_t LiveBstrCount();

class _bstr_t {
  public:
    _bstr_t() noexcept = default;
    // Single-byte text through the code page. Raises _com_error(E_OUTOFMEMORY) when memory runs
    // out; a null text gives the null BSTR.
    _bstr_t(const char* text);  // NOLINT(google-explicit-constructor): the platform's own shape
    _bstr_t(const CString& text);
    _bstr_t(std::string_view text);
    // Wide text, copied. Null gives the null BSTR.
    _bstr_t(const OLECHAR* text);
    // With copy, the text is duplicated; without, this object takes over `text` and frees it.
    _bstr_t(BSTR text, bool copy);
    _bstr_t(const _bstr_t& other);
    _bstr_t(_bstr_t&& other) noexcept : m_text(std::exchange(other.m_text, nullptr)) {}
    _bstr_t& operator=(const _bstr_t& other);
    _bstr_t& operator=(_bstr_t&& other) noexcept;
    ~_bstr_t() { SysFreeString(m_text); }

    // The held BSTR; still owned by this object.
    BSTR GetBSTR() const noexcept { return m_text; }
    // A fresh copy for a caller that will free it; null for the null BSTR.
    BSTR copy() const;
    // Frees the held text and gives its slot, for an out-parameter to fill.
    BSTR* GetAddress() noexcept;
    // Takes over text, freeing what was held.
    void Attach(BSTR text) noexcept;
    // Gives up the held text without freeing it.
    BSTR Detach() noexcept { return std::exchange(m_text, nullptr); }

    UINT length() const noexcept { return SysStringLen(m_text); }
    bool empty() const noexcept { return length() == 0; }
    std::u16string_view view() const noexcept { return BstrView(m_text); }
    // The single-byte text through the code page.
    CString ToCString() const;
    std::string ToString() const { return Cp1252FromBstr(m_text); }

    friend bool operator==(const _bstr_t& a, const _bstr_t& b) noexcept {
        return a.view() == b.view();
    }

  private:
    BSTR m_text = nullptr;
};

}  // namespace qvox
