// OXCustomer::Events: the receiver of the customer object's events. An application fills the
// nineteen slots with what it wants called, connects the receiver to the customer object with
// DispEventAdvise, and each event then calls its slot with its parameters as plain types. The
// events are known by dispatch identifier only; the library forwards them unchanged.
//
// The sink runs on whatever thread the platform delivers an event on, with no lock: change the
// slots only while no events can arrive. Disconnect before the receiver is destroyed; its
// destructor does not, and a connected source would go on calling a sink that is gone.
#pragma once

#include <functional>

#include "qvox/platform/CString.h"
#include "qvox/platform/ComBase.h"
#include "qvox/platform/Variant.h"

namespace qvox {
namespace OXCustomer {

// The wire form of one event: its dispatch identifier and parameter types, in call order.
struct EventRow {
    DISPID id;
    UINT count;
    VARTYPE params[4];
};

// The events in slot order.
inline constexpr EventRow g_CustomerEvents[] = {
    {8, 2, {VT_I4, VT_BOOL}},
    {28, 2, {VT_BSTR, VT_BOOL}},
    {33, 3, {VT_BSTR, VT_I4, VT_BOOL}},
    {29, 3, {VT_BSTR, VT_I4, VT_BOOL}},
    {4, 2, {VT_DISPATCH, VT_I4}},
    {27, 2, {VT_DISPATCH, VT_I4}},
    {3, 1, {VT_DISPATCH}},
    {23, 1, {VT_DISPATCH}},
    {24, 1, {VT_DISPATCH}},
    {25, 1, {VT_DISPATCH}},
    {30, 1, {VT_I4}},
    {1, 1, {VT_DISPATCH}},
    {11, 1, {VT_BSTR}},
    {2, 1, {VT_DISPATCH}},
    {31, 4, {VT_DISPATCH, VT_UI4, VT_BOOL, VT_BSTR}},
    {39, 2, {VT_BSTR, VT_I4}},
    {40, 4, {VT_I4, VT_BSTR, VT_BSTR, VT_R8}},
    {13, 1, {VT_DISPATCH}},
    {17, 1, {VT_DISPATCH}},
};

class Events;

// The dispatch object the customer object calls. It lives inside its Events and is not counted:
// AddRef and Release always answer 1.
class EventsImpl final : public IDispatch {
  public:
    explicit EventsImpl(Events& owner) : m_owner(owner) {}
    // IUnknown, IDispatch and the event interface; E_NOINTERFACE for anything else.
    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override { return 1; }
    ULONG Release() override { return 1; }
    // No type information: E_NOTIMPL.
    HRESULT GetTypeInfoCount(UINT* count) override;
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT GetIDsOfNames(REFIID iid, const OLECHAR* const* names, UINT count, LCID locale,
                          DISPID* ids) override;
    // An event: E_NOTIMPL for an identifier that is not in the table; DISP_E_BADPARAMCOUNT for
    // another number of arguments, and the conversion's status for an argument that does not
    // convert to its type (no slot is called then); otherwise S_OK, whether a slot was called or
    // the event dropped.
    HRESULT Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                   VARIANT* result, EXCEPINFO* exception, UINT* argError) override;

  private:
    Events& m_owner;
};

class Events {
  public:
    static constexpr DWORD kNotConnected = 0xFEFEFEFE;

    Events() : m_Sink(*this) {}
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;

    std::function<void(LONG, bool)> m_OnEvent8;
    std::function<void(CString, bool)> m_OnEvent28;
    std::function<void(CString, LONG, bool)> m_OnEvent33;
    std::function<void(CString, LONG, bool)> m_OnEvent29;
    std::function<void(IDispatch*, LONG)> m_OnEvent4;
    std::function<void(IDispatch*, LONG)> m_OnEvent27;
    std::function<void(IDispatch*)> m_OnEvent3;
    std::function<void(IDispatch*)> m_OnEvent23;
    std::function<void(IDispatch*)> m_OnEvent24;
    std::function<void(IDispatch*)> m_OnEvent25;
    std::function<void(LONG)> m_OnEvent30;
    std::function<void(IDispatch*)> m_OnEvent1;
    std::function<void(CString)> m_OnEvent11;
    std::function<void(IDispatch*)> m_OnEvent2;
    std::function<void(IDispatch*, ULONG, bool, CString)> m_OnEvent31;
    std::function<void(CString, LONG)> m_OnEvent39;
    std::function<void(LONG, CString, CString, double)> m_OnEvent40;
    std::function<void(IDispatch*)> m_OnEvent13;
    std::function<void(IDispatch*)> m_OnEvent17;

    // The sink, with no reference added.
    IDispatch* GetEventHandlers() { return &m_Sink; }
    // Connects the sink to source's connection point for the customer events and keeps the
    // cookie. The status; E_INVALIDARG for a null source.
    LONG DispEventAdvise(IUnknown* source);
    // Disconnects the connection of the cookie held, then forgets the cookie whatever came of
    // it. The status; E_INVALIDARG for a null source (the cookie stays).
    LONG DispEventUnadvise(IUnknown* source);
    DWORD GetCookie() const { return m_Cookie; }

  private:
    friend class EventsImpl;
    // Calls the slot of event id with arguments already in their types; an empty slot drops the
    // event.
    void Deliver(DISPID id, const _variant_t* args);

    EventsImpl m_Sink;
    DWORD m_Cookie = kNotConnected;
};

}  // namespace OXCustomer
}  // namespace qvox
