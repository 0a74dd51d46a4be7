// The interfaces of the platform's objects that the library calls: the property object and its
// collection, the position, the root object with its route-list and preferences services, and
// the order status, account and position objects. The platform implements them; the library
// offers plain implementations of the first three (PlatformObjects.h) for use out of the box.
//
// Every operation answers a status; a failure other than the one its comment names is the
// platform's own and reaches the caller as _com_error where the library's operation raises.
#pragma once

#include "qvox/platform/Bstr.h"
#include "qvox/platform/ComBase.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/Variant.h"

namespace qvox {

// A property object: values under keys, the keys being VT_I4 property numbers.
class IMVProperties : public IDispatch {
  public:
    using Base = IDispatch;
    static constexpr IID kIID{
        0x3391A7A0, 0xD983, 0x43B4, {0x92, 0xFF, 0x8F, 0x0B, 0xAC, 0x18, 0x3B, 0xDB}};
    // Stores a copy of value under key, replacing what the key held.
    virtual HRESULT SetValue(const VARIANT& key, const VARIANT& value) = 0;
    // A copy of the value of key into *value, which is cleared first. A negative status, with
    // *value left alone, when the key is absent.
    virtual HRESULT GetValue(const VARIANT& key, VARIANT* value) = 0;
    // Stores *value under key and takes it over: *value is empty afterwards, whatever the
    // answer. An object may move the value in rather than copy it; by default it is copied and
    // the original cleared.
    virtual HRESULT TakeValue(const VARIANT& key, VARIANT* value) {
        if (!value) return E_POINTER;
        const HRESULT hr = SetValue(key, *value);
        VariantClear(value);
        return hr;
    }
    // Lends the value of key: *value points at the object's own copy, valid until the object
    // next changes. A negative status, with *value null, when the key is absent. An object that
    // can't lend its values answers E_NOTIMPL, and the caller fetches a copy with GetValue.
    virtual HRESULT PeekValue(const VARIANT& key, const VARIANT** value) {
        if (!value) return E_POINTER;
        (void)key;
        *value = nullptr;
        return E_NOTIMPL;
    }
    // How many keys the object holds.
    virtual HRESULT GetCount(LONG* count) = 0;
    // The key stored index-th (from 0, in the order keys were first stored) into *key, which is
    // cleared first; DISP_E_BADINDEX outside.
    virtual HRESULT GetKeyAt(LONG index, VARIANT* key) = 0;

  protected:
    ~IMVProperties() = default;
};

// A list of objects, walked with a position handle.
class IMVCollection : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0x3C42581C, 0x0540, 0x4DCC, {0xB1, 0x73, 0x3A, 0xB0, 0x22, 0x2F, 0x98, 0xD8}};
    // Appends object, with a reference of the collection's own; a null object is stored too.
    virtual HRESULT Add(IUnknown* object) = 0;
    // Starts a walk: the handle of the first object.
    virtual HRESULT StartWalk(LONG* position) = 0;
    // The object at *position into *object (counted; null at the end, with S_FALSE) and the
    // handle moves on.
    virtual HRESULT GetNext(LONG* position, IUnknown** object) = 0;
    virtual HRESULT GetCount(LONG* count) = 0;

  protected:
    ~IMVCollection() = default;
};

// The user's position in a symbol: whether there is one, its signed quantity (negative when
// short) and its average price.
class IMVPosition : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0x7AD7C535, 0xD25E, 0x4197, {0xBF, 0x1F, 0xAC, 0x62, 0x5B, 0xAA, 0x9B, 0x83}};
    virtual HRESULT PositionExists(LONG* exists) = 0;  // 0 when there is no position
    virtual HRESULT PositionQuantity(LONG* quantity) = 0;
    virtual HRESULT PositionAveragePrice(double* price) = 0;

  protected:
    ~IMVPosition() = default;
};

// The platform's root object. Its services object offers the route-list and preferences
// interfaces below, or not.
class IMVRoot : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0x2385D9A6, 0xDB09, 0x423E, {0xBA, 0xEA, 0x62, 0x2E, 0x54, 0xD7, 0x3D, 0xCC}};
    // The services object, counted.
    virtual HRESULT GetServices(IUnknown** services) = 0;

  protected:
    ~IMVRoot() = default;
};

// The routes the server offers for a symbol category, as the platform's list text.
class IMVRouteList : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0xCAF4710A, 0x3364, 0x4D92, {0xB6, 0x60, 0x8E, 0x84, 0x19, 0x2E, 0xE3, 0xB9}};
    // A new BSTR for the caller to free: "code,display,kind," records.
    virtual HRESULT GetRouteList(LONG category, BSTR* list) = 0;

  protected:
    ~IMVRouteList() = default;
};

// The user's order preferences per symbol category.
class IMVOrderPreferences : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0xA32B8632, 0xF332, 0x40E2, {0x83, 0x03, 0xE3, 0xEF, 0xC6, 0xE1, 0xC8, 0x8A}};
    // The preferences entry of category, an object offering IMVProperties (counted; null when
    // there is none).
    virtual HRESULT GetPreferences(LONG category, IUnknown** entry) = 0;

  protected:
    ~IMVOrderPreferences() = default;
};

// The platform's order status, account and position objects; each hands out the property object
// that holds its values.
class IOrderStatus : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0x47894E81, 0xB3CE, 0x497A, {0x85, 0x61, 0x77, 0x92, 0x8F, 0x50, 0x14, 0x3B}};
    virtual HRESULT GetProperties(IUnknown** properties) = 0;

  protected:
    ~IOrderStatus() = default;
};

class IAccount : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0xED66AB68, 0x59B6, 0x479A, {0xBF, 0x6B, 0x3B, 0x31, 0xD1, 0x97, 0xDB, 0x43}};
    virtual HRESULT GetProperties(IUnknown** properties) = 0;

  protected:
    ~IAccount() = default;
};

class IPositionInfo : public IUnknown {
  public:
    using Base = IUnknown;
    static constexpr IID kIID{
        0xCAE0B7AE, 0xD996, 0x486C, {0xBB, 0xCE, 0xAB, 0x44, 0xD6, 0x44, 0xB3, 0xF4}};
    virtual HRESULT GetProperties(IUnknown** properties) = 0;

  protected:
    ~IPositionInfo() = default;
};

// The identity of the customer object's event interface, a dispatch interface.
inline constexpr IID DIID_IOXCustomerEvents{
    0xCE104F40, 0x8190, 0x4FCD, {0x89, 0xFB, 0x4C, 0xE6, 0x9C, 0x22, 0x8B, 0x31}};

using IMVPropertiesPtr = _com_ptr_t<IMVProperties>;
using IMVCollectionPtr = _com_ptr_t<IMVCollection>;
using IMVPositionPtr = _com_ptr_t<IMVPosition>;
using IMVRootPtr = _com_ptr_t<IMVRoot>;
using IMVRouteListPtr = _com_ptr_t<IMVRouteList>;
using IMVOrderPreferencesPtr = _com_ptr_t<IMVOrderPreferences>;
using IOrderStatusPtr = _com_ptr_t<IOrderStatus>;
using IAccountPtr = _com_ptr_t<IAccount>;
using IPositionInfoPtr = _com_ptr_t<IPositionInfo>;

}  // namespace qvox
