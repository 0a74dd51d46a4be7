#include "qvox/platform/PlatformObjects.h"

#include "qvox/platform/Platform.h"

namespace qvox {

// ---- The library's objects service ----

HRESULT LibraryPlatformObjects::CreatePropertyObject(IUnknown** object) const {
    if (!object) return E_POINTER;
    *object = CMVProperties::Create().Detach();
    return S_OK;
}

HRESULT LibraryPlatformObjects::CreateCollection(IUnknown** object) const {
    if (!object) return E_POINTER;
    *object = CMVCollection::Create().Detach();
    return S_OK;
}

HRESULT LibraryPlatformObjects::GetRootObject(IUnknown** root) const {
    if (!root) return E_POINTER;
    *root = m_root.GetInterfacePtr();
    if (!*root) return S_FALSE;
    (*root)->AddRef();
    return S_OK;
}

namespace {

// An object the platform makes, asked for interface I; null when it makes none or lacks I.
template <class I>
_com_ptr_t<I> Make(HRESULT (IPlatformObjects::*create)(IUnknown**) const) {
    IUnknownPtr object;
    if (FAILED((CurrentPlatformObjects().get()->*create)(&object)) || !object) return nullptr;
    _com_ptr_t<I> result;
    result.QueryInterface(object.GetInterfacePtr());
    return result;
}

}  // namespace

IMVPropertiesPtr NewPropertyObject() {
    return Make<IMVProperties>(&IPlatformObjects::CreatePropertyObject);
}

IMVCollectionPtr NewCollection() {
    return Make<IMVCollection>(&IPlatformObjects::CreateCollection);
}

IUnknownPtr GetPlatformRootObject() {
    IUnknownPtr root;
    if (FAILED(CurrentPlatformObjects()->GetRootObject(&root))) return nullptr;
    return root;
}

namespace {

// The key of property number: a VT_I4 variant, which owns nothing.
VARIANT NumberKey(LONG number) {
    VARIANT key;
    VariantInit(&key);
    key.vt = VT_I4;
    key.lVal = number;
    return key;
}

}  // namespace

HRESULT GetPropertyByNumber(IMVProperties* object, LONG number, VARIANT* value) {
    if (!object) return E_POINTER;
    const VARIANT key = NumberKey(number);
    return object->GetValue(key, value);
}

HRESULT SetPropertyByNumber(IMVProperties* object, LONG number, const VARIANT& value) {
    if (!object) return E_POINTER;
    const VARIANT key = NumberKey(number);
    return object->SetValue(key, value);
}

HRESULT TakePropertyByNumber(IMVProperties* object, LONG number, VARIANT* value) {
    if (!object) {
        VariantClear(value);
        return E_POINTER;
    }
    const VARIANT key = NumberKey(number);
    return object->TakeValue(key, value);
}

HRESULT ReadPropertyByNumber(IMVProperties* object, LONG number, _variant_t& holder,
                             const VARIANT** value) {
    *value = nullptr;
    if (!object) return E_POINTER;
    const VARIANT key = NumberKey(number);
    HRESULT hr = object->PeekValue(key, value);
    if (hr != E_NOTIMPL) return hr;
    hr = object->GetValue(key, &holder);
    if (SUCCEEDED(hr)) *value = &holder;
    return hr;
}

// ---- CMVProperties ----

namespace {

HRESULT KeyNumber(const VARIANT& key, LONG& number) {
    if (key.vt == VT_I4) {
        number = key.lVal;
        return S_OK;
    }
    VARIANT converted;
    VariantInit(&converted);
    const HRESULT hr = VariantChangeType(&converted, &key, 0, VT_I4);
    if (FAILED(hr)) return DISP_E_TYPEMISMATCH;
    number = converted.lVal;
    return S_OK;
}

}  // namespace

IMVPropertiesPtr CMVProperties::Create() {
    return IMVPropertiesPtr(MakeComObject<CMVProperties>().Detach(), false);
}

CMVProperties::~CMVProperties() {
    for (Entry& entry : m_values) {
        VariantClear(&entry.value);
    }
}

std::ptrdiff_t CMVProperties::Find(LONG key) const {
    if (key >= 0 && key < kSmallKeys) {
        const std::uint32_t slot = m_small[static_cast<std::size_t>(key)];
        return static_cast<std::ptrdiff_t>(slot) - 1;
    }
    const auto it = m_large.find(key);
    return it == m_large.end() ? -1 : static_cast<std::ptrdiff_t>(it->second);
}

CMVProperties::CMVProperties() {
    // Room for an order's fields: it stores them one after another.
    m_values.reserve(32);
}

HRESULT CMVProperties::SetValue(const VARIANT& key, const VARIANT& value) {
    LONG number = 0;
    HRESULT hr = KeyNumber(key, number);
    if (FAILED(hr)) return hr;
    VARIANT copy;
    VariantInit(&copy);
    hr = VariantCopy(&copy, &value);
    if (FAILED(hr)) return hr;
    return Put(number, copy);
}

HRESULT CMVProperties::TakeValue(const VARIANT& key, VARIANT* value) {
    if (!value) return E_POINTER;
    LONG number = 0;
    const HRESULT hr = KeyNumber(key, number);
    if (FAILED(hr)) {
        VariantClear(value);
        return hr;
    }
    VARIANT taken = *value;
    VariantInit(value);
    return Put(number, taken);
}

HRESULT CMVProperties::Put(LONG number, VARIANT& value) {
    const std::ptrdiff_t at = Find(number);
    if (at >= 0) {
        VARIANT& slot = m_values[static_cast<std::size_t>(at)].value;
        VariantClear(&slot);
        slot = value;
        return S_OK;
    }
    const bool small = number >= 0 && number < kSmallKeys;
    try {
        m_values.push_back(Entry{number, value});
        if (small) {
            m_small[static_cast<std::size_t>(number)] = static_cast<std::uint32_t>(m_values.size());
        } else {
            try {
                m_large.emplace(number, m_values.size() - 1);
            } catch (const std::bad_alloc&) {
                m_values.pop_back();
                throw;
            }
        }
    } catch (const std::bad_alloc&) {
        VariantClear(&value);
        return E_OUTOFMEMORY;
    }
    return S_OK;
}

HRESULT CMVProperties::GetValue(const VARIANT& key, VARIANT* value) {
    if (!value) return E_POINTER;
    LONG number = 0;
    const HRESULT hr = KeyNumber(key, number);
    if (FAILED(hr)) return hr;
    const std::ptrdiff_t at = Find(number);
    if (at < 0) return DISP_E_MEMBERNOTFOUND;
    return VariantCopy(value, &m_values[static_cast<std::size_t>(at)].value);
}

HRESULT CMVProperties::PeekValue(const VARIANT& key, const VARIANT** value) {
    if (!value) return E_POINTER;
    *value = nullptr;
    LONG number = 0;
    const HRESULT hr = KeyNumber(key, number);
    if (FAILED(hr)) return hr;
    const std::ptrdiff_t at = Find(number);
    if (at < 0) return DISP_E_MEMBERNOTFOUND;
    *value = &m_values[static_cast<std::size_t>(at)].value;
    return S_OK;
}

HRESULT CMVProperties::GetCount(LONG* count) {
    if (!count) return E_POINTER;
    *count = static_cast<LONG>(m_values.size());
    return S_OK;
}

HRESULT CMVProperties::GetKeyAt(LONG index, VARIANT* key) {
    if (!key) return E_POINTER;
    if (index < 0 || static_cast<std::size_t>(index) >= m_values.size()) return DISP_E_BADINDEX;
    const HRESULT hr = VariantClear(key);
    if (FAILED(hr)) return hr;
    key->vt = VT_I4;
    key->lVal = m_values[static_cast<std::size_t>(index)].key;
    return S_OK;
}

// ---- CMVCollection ----

IMVCollectionPtr CMVCollection::Create() {
    return IMVCollectionPtr(MakeComObject<CMVCollection>().Detach(), false);
}

HRESULT CMVCollection::Add(IUnknown* object) {
    try {
        m_items.emplace_back(object);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    return S_OK;
}

HRESULT CMVCollection::StartWalk(LONG* position) {
    if (!position) return E_POINTER;
    *position = 0;
    return S_OK;
}

HRESULT CMVCollection::GetNext(LONG* position, IUnknown** object) {
    if (!position || !object) return E_POINTER;
    *object = nullptr;
    if (*position < 0 || static_cast<std::size_t>(*position) >= m_items.size()) return S_FALSE;
    IUnknown* item = m_items[static_cast<std::size_t>(*position)].GetInterfacePtr();
    ++*position;
    if (item) item->AddRef();
    *object = item;
    return S_OK;
}

HRESULT CMVCollection::GetCount(LONG* count) {
    if (!count) return E_POINTER;
    *count = static_cast<LONG>(m_items.size());
    return S_OK;
}

// ---- CMVPosition ----

IMVPositionPtr CMVPosition::Create(LONG quantity, double averagePrice) {
    return IMVPositionPtr(MakeComObject<CMVPosition>(quantity, averagePrice).Detach(), false);
}

HRESULT CMVPosition::PositionExists(LONG* exists) {
    if (!exists) return E_POINTER;
    *exists = m_quantity != 0 ? 1 : 0;
    return S_OK;
}

HRESULT CMVPosition::PositionQuantity(LONG* quantity) {
    if (!quantity) return E_POINTER;
    *quantity = m_quantity;
    return S_OK;
}

HRESULT CMVPosition::PositionAveragePrice(double* price) {
    if (!price) return E_POINTER;
    *price = m_averagePrice;
    return S_OK;
}

// ---- CMVRoot ----

HRESULT CMVRoot::GetServices(IUnknown** services) {
    if (!services) return E_POINTER;
    *services = AsUnknown();
    AddRef();
    return S_OK;
}

HRESULT CMVRoot::GetRouteList(LONG category, BSTR* list) {
    if (!list) return E_POINTER;
    const auto it = m_routes.find(category);
    *list = SysAllocStringFromCp1252(it == m_routes.end() ? std::string_view() : it->second.view());
    return *list ? S_OK : E_OUTOFMEMORY;
}

HRESULT CMVRoot::GetPreferences(LONG category, IUnknown** entry) {
    if (!entry) return E_POINTER;
    const auto it = m_preferences.find(category);
    *entry = it == m_preferences.end() ? nullptr : it->second.GetInterfacePtr();
    if (*entry) (*entry)->AddRef();
    return S_OK;
}

}  // namespace qvox
