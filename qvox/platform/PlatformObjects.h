// Where the platform's objects come from. The platform makes property objects and collections
// and owns the root object; an application installs its own IPlatformObjects through
// SetPlatformServices (Platform.h). Out of the box the library makes its own plain objects and
// there is no root object, so that everything that asks the platform for lists gets no answer
// and keeps what it has.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <vector>

#include "qvox/platform/ComObject.h"
#include "qvox/platform/PlatformInterfaces.h"

namespace qvox {

class IPlatformObjects {
  public:
    virtual ~IPlatformObjects() = default;
    // A new, empty, started property object (offering IMVProperties) into *object, counted.
    virtual HRESULT CreatePropertyObject(IUnknown** object) const = 0;
    // A new, empty collection object (offering IMVCollection) into *object, counted.
    virtual HRESULT CreateCollection(IUnknown** object) const = 0;
    // The platform's root object (offering IMVRoot) into *root, counted; S_FALSE with a null
    // root when there is none.
    virtual HRESULT GetRootObject(IUnknown** root) const = 0;
};

// The library's own objects, and the root object given at construction (none by default).
class LibraryPlatformObjects final : public IPlatformObjects {
  public:
    explicit LibraryPlatformObjects(IUnknownPtr root = nullptr) : m_root(std::move(root)) {}
    HRESULT CreatePropertyObject(IUnknown** object) const override;
    HRESULT CreateCollection(IUnknown** object) const override;
    HRESULT GetRootObject(IUnknown** root) const override;

  private:
    IUnknownPtr m_root;
};

// ---- Through the objects service in force ----

// A new property object; null when the platform makes none or it lacks IMVProperties.
IMVPropertiesPtr NewPropertyObject();
// A new collection; null when the platform makes none or it lacks IMVCollection.
IMVCollectionPtr NewCollection();
// The platform's root object; null when there is none or it cannot be had.
IUnknownPtr GetPlatformRootObject();

// The value of property number into *value (cleared first), through a VT_I4 key. E_POINTER for
// a null object; otherwise the object's answer, negative when the property is absent.
HRESULT GetPropertyByNumber(IMVProperties* object, LONG number, VARIANT* value);
// Stores value under property number, through a VT_I4 key. E_POINTER for a null object.
HRESULT SetPropertyByNumber(IMVProperties* object, LONG number, const VARIANT& value);
// Stores *value under property number and takes it over (see IMVProperties::TakeValue).
HRESULT TakePropertyByNumber(IMVProperties* object, LONG number, VARIANT* value);
// The value of property number, lent by the object when it can (see IMVProperties::PeekValue),
// else fetched into holder; *value points at one or the other. The fetch's status.
HRESULT ReadPropertyByNumber(IMVProperties* object, LONG number, _variant_t& holder,
                             const VARIANT** value);

// ---- The library's plain objects ----

// A property object: keys are numbers (any key converts to VT_I4), kept in the order they were
// first stored. An absent key answers DISP_E_MEMBERNOTFOUND; a key that is no number
// DISP_E_TYPEMISMATCH.
class CMVProperties final : public DispatchObject<IMVProperties> {
  public:
    static IMVPropertiesPtr Create();

    HRESULT SetValue(const VARIANT& key, const VARIANT& value) override;
    HRESULT TakeValue(const VARIANT& key, VARIANT* value) override;
    HRESULT GetValue(const VARIANT& key, VARIANT* value) override;
    HRESULT PeekValue(const VARIANT& key, const VARIANT** value) override;
    HRESULT GetCount(LONG* count) override;
    HRESULT GetKeyAt(LONG index, VARIANT* key) override;

    CMVProperties();

  private:
    ~CMVProperties() override;
    // The index of key's entry in m_values, or -1.
    std::ptrdiff_t Find(LONG key) const;
    // Stores value, which the object owns from then on (also when it fails).
    HRESULT Put(LONG number, VARIANT& value);

    struct Entry {
        LONG key;
        VARIANT value;
    };
    std::vector<Entry> m_values;
    // Entry index + 1 of each small key, 0 for none: property numbers are small, and an order
    // stores all of its fields one after another. Other keys go to the map.
    static constexpr LONG kSmallKeys = 128;
    std::array<std::uint32_t, kSmallKeys> m_small{};
    std::map<LONG, std::size_t> m_large;
};

class CMVCollection final : public ComObject<IMVCollection> {
  public:
    static IMVCollectionPtr Create();

    HRESULT Add(IUnknown* object) override;
    HRESULT StartWalk(LONG* position) override;
    HRESULT GetNext(LONG* position, IUnknown** object) override;
    HRESULT GetCount(LONG* count) override;

    CMVCollection() = default;

  private:
    ~CMVCollection() override = default;
    std::vector<IUnknownPtr> m_items;
};

// A fixed position: quantity 0 means none.
class CMVPosition final : public ComObject<IMVPosition> {
  public:
    static IMVPositionPtr Create(LONG quantity, double averagePrice);
    CMVPosition(LONG quantity, double averagePrice)
        : m_quantity(quantity), m_averagePrice(averagePrice) {}

    HRESULT PositionExists(LONG* exists) override;
    HRESULT PositionQuantity(LONG* quantity) override;
    HRESULT PositionAveragePrice(double* price) override;

  private:
    ~CMVPosition() override = default;
    LONG m_quantity;
    double m_averagePrice;
};

// A root object for an application without a platform, and for tests: it serves fixed route
// list texts and preferences entries per category, from itself as its services object. A
// category without a list text answers the empty text. Fill it before it is installed: it has
// no lock of its own.
class CMVRoot final : public ComObject<IMVRoot, IMVRouteList, IMVOrderPreferences> {
  public:
    static _com_ptr_t<CMVRoot> Create() { return MakeComObject<CMVRoot>(); }

    void SetRouteList(LONG category, const CString& text) { m_routes[category] = text; }
    void SetPreferences(LONG category, IUnknownPtr entry) { m_preferences[category] = entry; }

    HRESULT GetServices(IUnknown** services) override;
    HRESULT GetRouteList(LONG category, BSTR* list) override;
    HRESULT GetPreferences(LONG category, IUnknown** entry) override;

    CMVRoot() = default;

  private:
    ~CMVRoot() override = default;
    std::map<LONG, CString> m_routes;
    std::map<LONG, IUnknownPtr> m_preferences;
};

}  // namespace qvox
