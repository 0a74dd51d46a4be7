// The read views of status, account and position objects, and the customer event receiver.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qvox/interchange/COXAccountPropertiesHelper.h"
#include "qvox/interchange/COXOrderStatusPropertiesHelper.h"
#include "qvox/interchange/COXPositionPropertiesHelper.h"
#include "qvox/interchange/OXCustomerEvents.h"
#include "qvox/platform/ComObject.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/vocabulary/COXUtil.h"

namespace qvox {
namespace {

template <class F>
HRESULT ErrorOf(F&& call) {
    try {
        call();
    } catch (const _com_error& e) {
        return e.Error();
    }
    return S_OK;
}

TEST(Views, AbsentPropertiesGiveDefaultsAndMissingObjectsRaise) {
    const COXOrderStatusPropertiesHelper none;
    EXPECT_FALSE(none.IsGood());
    EXPECT_EQ(ErrorOf([&] { none.GetSymbol(); }), E_POINTER);
    double untouched = 9.0;
    EXPECT_EQ(ErrorOf([&] { none.GetOrderValueProperty(8, untouched); }), E_POINTER);

    const IMVPropertiesPtr empty = CMVProperties::Create();
    const COXOrderStatusPropertiesHelper status(empty);
    EXPECT_TRUE(status.IsGood());
    EXPECT_EQ(status.GetSymbol(), "");
    EXPECT_EQ(status.GetSymbolCategory(), 254u);
    EXPECT_TRUE(status.GetIsParent());
    EXPECT_FALSE(status.GetReplaceable());
    EXPECT_EQ(status.GetQty(), 0);
    EXPECT_EQ(status.GetExpirationDate().m_dt, 0.0);
    EXPECT_EQ(status.GetExpirationDate().GetStatus(), COleDateTime::valid);
    EXPECT_FALSE(status.GetOrderValueProperty(8, untouched));
    EXPECT_EQ(untouched, 9.0);
    const COXAccountPropertiesHelper account(empty);
    EXPECT_EQ(account.GetAccountCategory(), -1);
    EXPECT_EQ(account.GetAccountType(), -1);
    EXPECT_EQ(account.GetAccountState(), -1);
    EXPECT_EQ(account.GetAccountStatus(), "");
    EXPECT_EQ(account.GetAccountValueProperty(5), 0.0);
    const COXPositionPropertiesHelper position(empty);
    EXPECT_TRUE(position.GetType());
    EXPECT_EQ(position.GetSymbolCategory(), 254u);
}

TEST(Views, ValuesConvertToEachAccessorsType) {
    const IMVPropertiesPtr object = CMVProperties::Create();
    SetPropertyByNumber(object, 1, _variant_t("IBM"));
    SetPropertyByNumber(object, 9, _variant_t(17));  // text accessors take only text
    SetPropertyByNumber(object, 6, _variant_t(250.0));
    SetPropertyByNumber(object, 7, _variant_t("lots"));
    SetPropertyByNumber(object, 31, _variant_t(static_cast<SHORT>('l')));
    SetPropertyByNumber(object, 20, _variant_t("Stop Limit"));
    SetPropertyByNumber(object, 108, _variant_t("5"));
    SetPropertyByNumber(object, 115, _variant_t("Last"));
    SetPropertyByNumber(object, 116, _variant_t(-7.9));
    const COXOrderStatusPropertiesHelper status(object);
    EXPECT_EQ(status.GetSymbol(), "IBM");
    EXPECT_EQ(status.GetRoute(), "");
    EXPECT_EQ(status.GetQty(), 250);
    EXPECT_EQ(ErrorOf([&] { status.GetQtyLeft(); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(status.GetSymbolBaseCode(), 'l');
    EXPECT_EQ(status.GetOrderType(), COXUtil::OrderTypeStrToEnum("Stop Limit"));
    // A price style counts only when its style property is there.
    EXPECT_EQ(status.GetLimitPriceOffset(), 0);
    EXPECT_EQ(status.GetLimitPriceStyle(), "");
    SetPropertyByNumber(object, 109, _variant_t("x"));
    SetPropertyByNumber(object, 107, _variant_t("Join"));
    EXPECT_EQ(status.GetLimitPriceOffset(), 5);
    EXPECT_EQ(status.GetLimitPriceStyle(), "Join");
    SetPropertyByNumber(object, 114, _variant_t("y"));
    EXPECT_EQ(status.GetStopPriceStyle(), "Last");
    EXPECT_EQ(status.GetStopPriceOffset(), -7);
    SetPropertyByNumber(object, 116, _variant_t(1e20));
    EXPECT_EQ(status.GetStopPriceOffset(), INT32_MAX);

    // Only the value 1 makes a day trader; status codes go by their upper case.
    const IMVPropertiesPtr accountObject = CMVProperties::Create();
    const COXAccountPropertiesHelper account(accountObject);
    for (const LONG value : {0, 2, -1}) {
        SetPropertyByNumber(accountObject, 46, _variant_t(value));
        EXPECT_FALSE(account.IsDayTrader()) << value;
    }
    SetPropertyByNumber(accountObject, 46, _variant_t(1));
    EXPECT_TRUE(account.IsDayTrader());
    SetPropertyByNumber(accountObject, 5, _variant_t(0x100 + 'f'));
    EXPECT_EQ(account.GetAccountStatus(), "Margin Call");
    const std::pair<char, const char*> codes[] = {
        {'a', "Active"},     {'C', "Closing Transactions Only"},
        {'I', "Inactive"},   {'l', "Liquidating Trades Only"},
        {'R', "Restricted"}, {'x', "Closed"},
        {'Z', ""},           {'\0', ""}};
    for (const auto& [code, text] : codes) {
        EXPECT_EQ(COXAccountPropertiesHelper::GetStatusCode(code), text) << code;
    }
}

IMVPropertiesPtr Leg(const char* symbol) {
    IMVPropertiesPtr leg = CMVProperties::Create();
    SetPropertyByNumber(leg, 2, _variant_t(symbol));
    return leg;
}

TEST(Views, AdditionalLegsFromAnArrayOrOneObject) {
    const IMVPropertiesPtr object = CMVProperties::Create();
    SetPropertyByNumber(object, 1, _variant_t("SPREAD"));
    const COXOrderStatusPropertiesHelper status(object);
    std::vector<CString> symbols;
    status.GetSymbols(symbols);
    EXPECT_EQ(symbols, std::vector<CString>{"SPREAD"});

    SetPropertyByNumber(object, 45, _variant_t(1u));
    SetPropertyByNumber(object, 46, _variant_t(static_cast<IDispatch*>(Leg("A"))));
    std::vector<IDispatchPtr> legs;
    EXPECT_TRUE(status.GetAdditionalLegs(legs));
    EXPECT_EQ(legs.size(), 1u);
    symbols.clear();
    status.GetSymbols(symbols);
    EXPECT_EQ(symbols, (std::vector<CString>{"SPREAD", "A"}));

    // An array: objects in order, a non-property object as null, the first non-object ends it.
    SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, 4);
    const _variant_t elements[] = {_variant_t(static_cast<IDispatch*>(Leg("B"))),
                                   _variant_t(static_cast<IUnknown*>(CMVCollection::Create())),
                                   _variant_t(3), _variant_t(static_cast<IDispatch*>(Leg("C")))};
    for (LONG i = 0; i < 4; ++i) {
        SafeArrayPutElement(array, &i, const_cast<_variant_t*>(&elements[i]));
    }
    _variant_t wrapped;
    wrapped.vt = VT_ARRAY | VT_VARIANT;
    wrapped.parray = array;
    SetPropertyByNumber(object, 46, wrapped);
    legs.clear();
    EXPECT_FALSE(status.GetAdditionalLegs(legs));
    ASSERT_EQ(legs.size(), 2u);
    EXPECT_TRUE(legs[0]);
    EXPECT_FALSE(legs[1]);
}

// A platform status object: hands out a given object, or fails.
class Status final : public ComObject<IOrderStatus> {
  public:
    Status(IUnknownPtr properties, HRESULT hr) : m_properties(properties), m_hr(hr) {}
    HRESULT GetProperties(IUnknown** properties) override {
        *properties = m_properties.Detach();
        return m_hr;
    }

  private:
    IUnknownPtr m_properties;
    HRESULT m_hr;
};

// Refuses every interface with a failure that is not "no such interface".
class Hostile final : public ComObject<IMVPosition> {
  public:
    HRESULT QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_UNEXPECTED;
    }
    HRESULT PositionExists(LONG*) override { return E_FAIL; }
    HRESULT PositionQuantity(LONG*) override { return E_FAIL; }
    HRESULT PositionAveragePrice(double*) override { return E_FAIL; }
};

TEST(Views, PlatformObjectsHandOutTheirPropertyObjects) {
    const auto status = [](IUnknownPtr properties, HRESULT hr) {
        return MakeComObject<Status>(properties, hr);
    };
    EXPECT_TRUE(COXOrderStatusPropertiesHelper(
                    status(IUnknownPtr(CMVProperties::Create()), S_OK).GetInterfacePtr())
                    .IsGood());
    EXPECT_FALSE(COXOrderStatusPropertiesHelper(
                     status(IUnknownPtr(CMVProperties::Create()), E_FAIL).GetInterfacePtr())
                     .IsGood());
    EXPECT_FALSE(COXOrderStatusPropertiesHelper(
                     status(IUnknownPtr(CMVCollection::Create()), S_OK).GetInterfacePtr())
                     .IsGood());
    const auto hostile = IUnknownPtr(MakeComObject<Hostile>().Detach(), false);
    EXPECT_EQ(
        ErrorOf([&] { COXOrderStatusPropertiesHelper(status(hostile, S_OK).GetInterfacePtr()); }),
        E_UNEXPECTED);
}

// ---- Customer events ----

// A customer object with one connection point for the customer events.
class Customer final : public ComObject<IConnectionPointContainer, IConnectionPoint> {
  public:
    HRESULT FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
        *point = nullptr;
        if (iid != DIID_IOXCustomerEvents) return CONNECT_E_NOCONNECTION;
        *point = this;
        AddRef();
        return S_OK;
    }
    HRESULT Advise(IUnknown* sink, DWORD* cookie) override {
        if (refuse) return CONNECT_E_CANNOTCONNECT;
        m_sink.QueryInterface(sink);
        *cookie = 42;
        return S_OK;
    }
    HRESULT Unadvise(DWORD cookie) override {
        if (cookie != 42 || !m_sink) return CONNECT_E_NOCONNECTION;
        m_sink = nullptr;
        return S_OK;
    }
    IDispatch* Sink() { return m_sink; }
    bool refuse = false;

  private:
    IDispatchPtr m_sink;
};

HRESULT Fire(IDispatch* sink, DISPID id, std::vector<_variant_t> args) {
    std::vector<VARIANT> reversed(args.rbegin(), args.rend());
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    return sink->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr);
}

TEST(CustomerEvents, SlotsReceiveParametersInTheirTypes) {
    OXCustomer::Events events;
    IDispatch* sink = events.GetEventHandlers();
    EXPECT_EQ(Fire(sink, 40, {_variant_t(1), _variant_t("a"), _variant_t("b"), _variant_t(2.5)}),
              S_OK);  // an empty slot drops the event
    EXPECT_EQ(Fire(sink, 99, {}), E_NOTIMPL);

    std::string seen;
    events.m_OnEvent40 = [&](LONG n, CString a, CString b, double d) {
        seen = std::to_string(n) + a.str() + b.str() + std::to_string(d);
    };
    events.m_OnEvent8 = [&](LONG n, bool flag) { seen = std::to_string(n) + (flag ? "T" : "F"); };
    EXPECT_EQ(Fire(sink, 40, {_variant_t(1), _variant_t("a"), _variant_t("b"), _variant_t(2.5)}),
              S_OK);
    EXPECT_EQ(seen, "1ab2.500000");
    VARIANT one;
    VariantInit(&one);
    one.vt = VT_BOOL;
    one.boolVal = 1;  // only -1 is true
    EXPECT_EQ(Fire(sink, 8, {_variant_t(7), _variant_t(one)}), S_OK);
    EXPECT_EQ(seen, "7F");
    EXPECT_EQ(Fire(sink, 8, {_variant_t("12"), _variant_t(true)}), S_OK);  // converted
    EXPECT_EQ(seen, "12T");
    EXPECT_EQ(Fire(sink, 8, {_variant_t("x"), _variant_t(true)}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Fire(sink, 8, {_variant_t(1)}), DISP_E_BADPARAMCOUNT);

    // The sink is not counted and answers only for its own interfaces.
    EXPECT_EQ(sink->AddRef(), 1u);
    EXPECT_EQ(sink->Release(), 1u);
    void* out = nullptr;
    EXPECT_EQ(sink->QueryInterface(DIID_IOXCustomerEvents, &out), S_OK);
    EXPECT_EQ(sink->QueryInterface(uuidof<IMVProperties>(), &out), E_NOINTERFACE);
    UINT count = 0;
    EXPECT_EQ(sink->GetTypeInfoCount(&count), E_NOTIMPL);
}

TEST(CustomerEvents, ConnectAndDisconnect) {
    OXCustomer::Events events;
    EXPECT_EQ(events.GetCookie(), 0xFEFEFEFEu);
    EXPECT_EQ(events.DispEventAdvise(nullptr), E_INVALIDARG);
    EXPECT_EQ(events.DispEventUnadvise(nullptr), E_INVALIDARG);
    auto customer = MakeComObject<Customer>();
    IUnknown* source = customer->AsUnknown();
    EXPECT_EQ(events.DispEventAdvise(source), S_OK);
    EXPECT_EQ(events.GetCookie(), 42u);
    CString symbol;
    events.m_OnEvent11 = [&](CString text) { symbol = text; };
    EXPECT_EQ(Fire(customer->Sink(), 11, {_variant_t("IBM")}), S_OK);
    EXPECT_EQ(symbol, "IBM");
    EXPECT_EQ(events.DispEventUnadvise(source), S_OK);
    EXPECT_EQ(events.GetCookie(), 0xFEFEFEFEu);
    // After a failed advise the disconnect fails too, and the cookie is reset all the same.
    customer->refuse = true;
    EXPECT_EQ(events.DispEventAdvise(source), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(events.DispEventUnadvise(source), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(events.GetCookie(), 0xFEFEFEFEu);
    // A source without connection points.
    EXPECT_EQ(events.DispEventAdvise(CMVCollection::Create()), E_NOINTERFACE);
}

}  // namespace
}  // namespace qvox
