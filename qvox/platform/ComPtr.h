// _com_ptr_t<I>: a counted reference to an object through interface I. Copies add a reference,
// destruction releases one. Made from a reference of another interface, it asks the object for I:
// an object without I (E_NOINTERFACE) gives a null reference, any other failure of the request
// raises _com_error.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "qvox/platform/ComBase.h"

namespace qvox {

template <typename I>
class _com_ptr_t {
  public:
    using Interface = I;

    _com_ptr_t() noexcept = default;
    _com_ptr_t(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)
    // Adds a reference to p, or takes over the caller's when addRef is false.
    _com_ptr_t(I* p, bool addRef = true) noexcept : m_p(p) {  // NOLINT
        if (m_p && addRef) m_p->AddRef();
    }
    _com_ptr_t(const _com_ptr_t& other) noexcept : _com_ptr_t(other.m_p) {}
    _com_ptr_t(_com_ptr_t&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
    // From a reference of another interface: asks for I.
    template <typename J, typename = std::enable_if_t<!std::is_same_v<I, J>>>
    _com_ptr_t(const _com_ptr_t<J>& other) {  // NOLINT
        QueryFrom(other.GetInterfacePtr());
    }
    template <typename J,
              typename = std::enable_if_t<!std::is_same_v<I, J> && !std::is_base_of_v<I, J>>>
    explicit _com_ptr_t(J* other) {
        QueryFrom(other);
    }
    ~_com_ptr_t() { Release(); }

    _com_ptr_t& operator=(const _com_ptr_t& other) noexcept {
        _com_ptr_t(other).Swap(*this);
        return *this;
    }
    _com_ptr_t& operator=(_com_ptr_t&& other) noexcept {
        _com_ptr_t(std::move(other)).Swap(*this);
        return *this;
    }
    _com_ptr_t& operator=(I* p) noexcept {
        _com_ptr_t(p).Swap(*this);
        return *this;
    }
    _com_ptr_t& operator=(std::nullptr_t) noexcept {
        Release();
        return *this;
    }

    // Asks object for I; the answer of QueryInterface, with this reference null on failure.
    template <typename J>
    HRESULT QueryInterface(J* object) noexcept {
        Release();
        if (!object) return E_POINTER;
        void* out = nullptr;
        const HRESULT hr = object->QueryInterface(uuidof<I>(), &out);
        if (SUCCEEDED(hr)) m_p = static_cast<I*>(out);
        return hr;
    }

    // Takes over a reference without adding one.
    void Attach(I* p) noexcept {
        Release();
        m_p = p;
    }
    // Gives the reference up without releasing it.
    I* Detach() noexcept { return std::exchange(m_p, nullptr); }
    // Releases the reference (if any) and makes this null.
    void Release() noexcept {
        if (I* p = std::exchange(m_p, nullptr)) p->Release();
    }
    // Releases, then gives the slot for an out-parameter to fill with a counted reference.
    I** operator&() noexcept {  // NOLINT(google-runtime-operator)
        Release();
        return &m_p;
    }

    I* GetInterfacePtr() const noexcept { return m_p; }
    I* operator->() const {
        if (!m_p) _com_issue_error(E_POINTER);
        return m_p;
    }
    I& operator*() const {
        if (!m_p) _com_issue_error(E_POINTER);
        return *m_p;
    }
    operator I*() const noexcept { return m_p; }  // NOLINT(google-explicit-constructor)
    explicit operator bool() const noexcept { return m_p != nullptr; }

    void Swap(_com_ptr_t& other) noexcept { std::swap(m_p, other.m_p); }

  private:
    template <typename J>
    void QueryFrom(J* object) {
        if (!object) return;
        void* out = nullptr;
        const HRESULT hr = object->QueryInterface(uuidof<I>(), &out);
        if (SUCCEEDED(hr)) {
            m_p = static_cast<I*>(out);
        } else if (hr != E_NOINTERFACE) {
            _com_issue_error(hr);
        }
    }

    I* m_p = nullptr;
};

using IUnknownPtr = _com_ptr_t<IUnknown>;
using IDispatchPtr = _com_ptr_t<IDispatch>;
using IConnectionPointPtr = _com_ptr_t<IConnectionPoint>;
using IConnectionPointContainerPtr = _com_ptr_t<IConnectionPointContainer>;

}  // namespace qvox
