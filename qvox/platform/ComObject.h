// ComObject<I...>: what every object of this library (and of a test or application that offers
// its own platform objects) needs to be a counted object: a reference count that starts at 0,
// QueryInterface over the listed interfaces and the interfaces they derive from, and deletion at
// the last Release. Make objects with MakeComObject, which hands back the first reference.
//
// Each listed interface names its identity as `kIID` and its parent interface as `Base`
// (IUnknown names no Base).
#pragma once

#include <atomic>
#include <new>
#include <type_traits>
#include <utility>

#include "qvox/platform/ComBase.h"
#include "qvox/platform/ComPtr.h"

namespace qvox {

namespace com_detail {

template <typename I, typename = void>
struct HasBase : std::false_type {};
template <typename I>
struct HasBase<I, std::void_t<typename I::Base>> : std::true_type {};

// Whether iid names I or one of the interfaces it derives from; *out then points at that
// interface of the object.
template <typename I>
bool Find(REFIID iid, I* self, void** out) {
    if (iid == I::kIID) {
        *out = self;
        return true;
    }
    if constexpr (HasBase<I>::value) {
        return Find<typename I::Base>(iid, static_cast<typename I::Base*>(self), out);
    } else {
        return false;
    }
}

// Runs destroy(object) now, or, when this thread is already destroying an object, after that
// one is done. An object that holds the last reference to another thus never destroys it from
// inside its own destructor, and a chain of objects 100,000 long goes with a flat stack.
void DestroyObject(void* object, void (*destroy)(void*)) noexcept;

}  // namespace com_detail

template <typename First, typename... Rest>
class ComObject : public First, public Rest... {
  public:
    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (!(com_detail::Find<First>(iid, static_cast<First*>(this), object) ||
              (com_detail::Find<Rest>(iid, static_cast<Rest*>(this), object) || ...))) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return m_refs.fetch_add(1, std::memory_order_relaxed) + 1; }
    ULONG Release() override {
        const ULONG left = m_refs.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0) {
            com_detail::DestroyObject(
                this, [](void* self) noexcept { delete static_cast<ComObject*>(self); });
        }
        return left;
    }

    // This object as IUnknown, without a reference.
    IUnknown* AsUnknown() noexcept { return static_cast<First*>(this); }

  protected:
    ComObject() = default;
    virtual ~ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

  private:
    std::atomic<ULONG> m_refs{0};
};

// For objects whose interface derives from IDispatch but answer no dispatch calls: type
// information and names are not offered, and every call by number is unknown.
template <typename I>
class DispatchObject : public ComObject<I> {
  public:
    HRESULT GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(REFIID, const OLECHAR* const*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
};

// A new object of type T holding the first reference; E_OUTOFMEMORY raised when memory runs out.
template <typename T, typename... Args>
_com_ptr_t<T> MakeComObject(Args&&... args) {
    T* object = new (std::nothrow) T(std::forward<Args>(args)...);
    if (!object) _com_issue_error(E_OUTOFMEMORY);
    return _com_ptr_t<T>(object);
}

}  // namespace qvox
