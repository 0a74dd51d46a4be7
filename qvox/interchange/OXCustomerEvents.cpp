#include "qvox/interchange/OXCustomerEvents.h"

#include "qvox/platform/ComPtr.h"
#include "qvox/platform/PlatformInterfaces.h"

namespace qvox {
namespace OXCustomer {

HRESULT EventsImpl::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (iid == uuidof<IUnknown>() || iid == uuidof<IDispatch>() || iid == DIID_IOXCustomerEvents) {
        *object = static_cast<IDispatch*>(this);
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT EventsImpl::GetTypeInfoCount(UINT*) {
    return E_NOTIMPL;
}

HRESULT EventsImpl::GetTypeInfo(UINT, LCID, ITypeInfo**) {
    return E_NOTIMPL;
}

HRESULT EventsImpl::GetIDsOfNames(REFIID, const OLECHAR* const*, UINT, LCID, DISPID*) {
    return E_NOTIMPL;
}

HRESULT EventsImpl::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                           UINT* argError) {
    const EventRow* row = nullptr;
    for (const EventRow& candidate : g_CustomerEvents) {
        if (candidate.id == id) {
            row = &candidate;
            break;
        }
    }
    if (!row) return E_NOTIMPL;
    const UINT given = params ? params->cArgs : 0;
    if (given != row->count || (given > 0 && !params->rgvarg)) return DISP_E_BADPARAMCOUNT;
    // The caller lays the arguments out last first.
    _variant_t args[4];
    for (UINT i = 0; i < row->count; ++i) {
        const VARIANT& arg = params->rgvarg[row->count - 1 - i];
        const HRESULT hr = arg.vt == row->params[i]
                               ? VariantCopy(&args[i], &arg)
                               : VariantChangeType(&args[i], &arg, 0, row->params[i]);
        if (FAILED(hr)) {
            if (argError) *argError = row->count - 1 - i;
            return hr;
        }
    }
    m_owner.Deliver(id, args);
    return S_OK;
}

namespace {

CString Text(const _variant_t& v) {
    return v.TextOrEmpty();
}
// Only -1 is true.
bool Flag(const _variant_t& v) {
    return v.boolVal == VARIANT_TRUE;
}

}  // namespace

void Events::Deliver(DISPID id, const _variant_t* a) {
    switch (id) {
        case 8:
            if (m_OnEvent8) m_OnEvent8(a[0].lVal, Flag(a[1]));
            break;
        case 28:
            if (m_OnEvent28) m_OnEvent28(Text(a[0]), Flag(a[1]));
            break;
        case 33:
            if (m_OnEvent33) m_OnEvent33(Text(a[0]), a[1].lVal, Flag(a[2]));
            break;
        case 29:
            if (m_OnEvent29) m_OnEvent29(Text(a[0]), a[1].lVal, Flag(a[2]));
            break;
        case 4:
            if (m_OnEvent4) m_OnEvent4(a[0].pdispVal, a[1].lVal);
            break;
        case 27:
            if (m_OnEvent27) m_OnEvent27(a[0].pdispVal, a[1].lVal);
            break;
        case 3:
            if (m_OnEvent3) m_OnEvent3(a[0].pdispVal);
            break;
        case 23:
            if (m_OnEvent23) m_OnEvent23(a[0].pdispVal);
            break;
        case 24:
            if (m_OnEvent24) m_OnEvent24(a[0].pdispVal);
            break;
        case 25:
            if (m_OnEvent25) m_OnEvent25(a[0].pdispVal);
            break;
        case 30:
            if (m_OnEvent30) m_OnEvent30(a[0].lVal);
            break;
        case 1:
            if (m_OnEvent1) m_OnEvent1(a[0].pdispVal);
            break;
        case 11:
            if (m_OnEvent11) m_OnEvent11(Text(a[0]));
            break;
        case 2:
            if (m_OnEvent2) m_OnEvent2(a[0].pdispVal);
            break;
        case 31:
            if (m_OnEvent31) m_OnEvent31(a[0].pdispVal, a[1].ulVal, Flag(a[2]), Text(a[3]));
            break;
        case 39:
            if (m_OnEvent39) m_OnEvent39(Text(a[0]), a[1].lVal);
            break;
        case 40:
            if (m_OnEvent40) m_OnEvent40(a[0].lVal, Text(a[1]), Text(a[2]), a[3].dblVal);
            break;
        case 13:
            if (m_OnEvent13) m_OnEvent13(a[0].pdispVal);
            break;
        case 17:
            if (m_OnEvent17) m_OnEvent17(a[0].pdispVal);
            break;
        default:
            break;
    }
}

namespace {

HRESULT FindPoint(IUnknown* source, IConnectionPointPtr& point) {
    IConnectionPointContainerPtr container;
    HRESULT hr = container.QueryInterface(source);
    if (FAILED(hr)) return hr;
    hr = container->FindConnectionPoint(DIID_IOXCustomerEvents, &point);
    if (SUCCEEDED(hr) && !point) hr = E_POINTER;
    return hr;
}

}  // namespace

LONG Events::DispEventAdvise(IUnknown* source) {
    if (!source) return E_INVALIDARG;
    IConnectionPointPtr point;
    HRESULT hr = FindPoint(source, point);
    if (FAILED(hr)) return hr;
    DWORD cookie = kNotConnected;
    hr = point->Advise(&m_Sink, &cookie);
    if (SUCCEEDED(hr)) m_Cookie = cookie;
    return hr;
}

LONG Events::DispEventUnadvise(IUnknown* source) {
    if (!source) return E_INVALIDARG;
    IConnectionPointPtr point;
    HRESULT hr = FindPoint(source, point);
    if (SUCCEEDED(hr)) hr = point->Unadvise(m_Cookie);
    m_Cookie = kNotConnected;
    return hr;
}

}  // namespace OXCustomer
}  // namespace qvox
