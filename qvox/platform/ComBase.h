// The small part of COM that the library speaks with the platform: status codes, interface
// identities, the counted-object interfaces IUnknown and IDispatch, connection points for event
// sinks, and the exception that carries a failing status.
//
// Interfaces are abstract C++ classes with a static identity (`uuidof<I>()`); objects count their
// own references and are freed by their last Release. Nothing here talks to a system COM runtime.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>

#include "qvox/platform/WinTypes.h"

namespace qvox {

// ---- Status codes ----

using HRESULT = std::int32_t;

// One character of the platform's wide text: a UTF-16 unit.
using OLECHAR = char16_t;

// A status made from its 32-bit pattern, as the platform writes its codes.
constexpr HRESULT MakeHResult(std::uint32_t bits) {
    return static_cast<HRESULT>(bits);
}

constexpr bool SUCCEEDED(HRESULT hr) {
    return hr >= 0;
}
constexpr bool FAILED(HRESULT hr) {
    return hr < 0;
}

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = MakeHResult(0x80004001u);
inline constexpr HRESULT E_NOINTERFACE = MakeHResult(0x80004002u);
inline constexpr HRESULT E_POINTER = MakeHResult(0x80004003u);
inline constexpr HRESULT E_ABORT = MakeHResult(0x80004004u);
inline constexpr HRESULT E_FAIL = MakeHResult(0x80004005u);
inline constexpr HRESULT E_UNEXPECTED = MakeHResult(0x8000FFFFu);
inline constexpr HRESULT E_ACCESSDENIED = MakeHResult(0x80070005u);
inline constexpr HRESULT E_OUTOFMEMORY = MakeHResult(0x8007000Eu);
inline constexpr HRESULT E_INVALIDARG = MakeHResult(0x80070057u);
inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = MakeHResult(0x80020001u);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = MakeHResult(0x80020003u);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = MakeHResult(0x80020004u);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = MakeHResult(0x80020005u);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = MakeHResult(0x80020006u);
inline constexpr HRESULT DISP_E_BADVARTYPE = MakeHResult(0x80020008u);
inline constexpr HRESULT DISP_E_OVERFLOW = MakeHResult(0x8002000Au);
inline constexpr HRESULT DISP_E_BADINDEX = MakeHResult(0x8002000Bu);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = MakeHResult(0x8002000Eu);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = MakeHResult(0x80040111u);
inline constexpr HRESULT CONNECT_E_NOCONNECTION = MakeHResult(0x80040200u);
inline constexpr HRESULT CONNECT_E_ADVISELIMIT = MakeHResult(0x80040201u);
inline constexpr HRESULT CONNECT_E_CANNOTCONNECT = MakeHResult(0x80040202u);

// ---- Interface identities ----

struct GUID {
    DWORD Data1 = 0;
    WORD Data2 = 0;
    WORD Data3 = 0;
    BYTE Data4[8] = {};

    friend constexpr bool operator==(const GUID&, const GUID&) = default;
    friend constexpr auto operator<=>(const GUID&, const GUID&) = default;
};
static_assert(sizeof(GUID) == 16);

using IID = GUID;
using CLSID = GUID;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline constexpr IID IID_NULL{};

// The identity of interface I, which names it as a static member `kIID`.
template <typename I>
constexpr const IID& uuidof() {
    return I::kIID;
}

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" in upper-case hexadecimal.
std::string GuidToString(const GUID& guid);

// ---- Counted objects ----

// Every interface derives from IUnknown. QueryInterface answers S_OK with a counted reference in
// *object, or E_NOINTERFACE with *object null; a null `object` gives E_POINTER. AddRef and Release
// answer the new count, for diagnostics only.
class IUnknown {
  public:
    static constexpr IID kIID{
        0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
    virtual HRESULT QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;

  protected:
    // Objects end by their last Release, never by delete through an interface.
    ~IUnknown() = default;
};

// ---- Dispatch ----

struct VARIANT;
class ITypeInfo;  // never implemented: type information is not offered by any object here

using DISPID = LONG;
inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;

// The arguments of a dispatch call, last argument first, as the caller lays them out.
struct DISPPARAMS {
    VARIANT* rgvarg = nullptr;
    DISPID* rgdispidNamedArgs = nullptr;
    UINT cArgs = 0;
    UINT cNamedArgs = 0;
};

struct EXCEPINFO {
    WORD wCode = 0;
    HRESULT scode = S_OK;
};

class IDispatch : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0x00020400, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
    virtual HRESULT GetIDsOfNames(REFIID iid, const OLECHAR* const* names, UINT count, LCID locale,
                                  DISPID* ids) = 0;
    virtual HRESULT Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                           VARIANT* result, EXCEPINFO* exception, UINT* argError) = 0;

  protected:
    ~IDispatch() = default;
};

// ---- Connection points: how an event source reaches a sink ----

class IConnectionPoint : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0xB196B286, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
    // Connects sink and answers a cookie that names the connection.
    virtual HRESULT Advise(IUnknown* sink, DWORD* cookie) = 0;
    // Drops the connection of cookie; CONNECT_E_NOCONNECTION for a cookie it doesn't know.
    virtual HRESULT Unadvise(DWORD cookie) = 0;

  protected:
    ~IConnectionPoint() = default;
};

class IConnectionPointContainer : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0xB196B284, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
    // The connection point for the events of iid, counted; CONNECT_E_NOCONNECTION when the
    // object has none for it.
    virtual HRESULT FindConnectionPoint(REFIID iid, IConnectionPoint** point) = 0;

  protected:
    ~IConnectionPointContainer() = default;
};

// ---- The error exception ----

// What a failing operation on a platform object raises: the status it failed with.
class _com_error : public std::exception {
  public:
    explicit _com_error(HRESULT hr) noexcept;
    HRESULT Error() const noexcept { return m_hr; }
    // "COM error 0x80004003".
    const char* what() const noexcept override { return m_text; }
    const char* ErrorMessage() const noexcept { return m_text; }

  private:
    HRESULT m_hr;
    char m_text[24] = {};
};

// Raises _com_error(hr).
[[noreturn]] void _com_issue_error(HRESULT hr);

// Raises _com_error(hr) when hr is a failure.
inline void ThrowIfFailed(HRESULT hr) {
    if (FAILED(hr)) _com_issue_error(hr);
}

}  // namespace qvox

template <>
struct std::hash<qvox::GUID> {
    std::size_t operator()(const qvox::GUID& g) const noexcept;
};
