// The COM layer: BSTR ownership and code page, automation conversions, owning variants and
// counted references, and the library's property, collection and root objects.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "qvox/platform/Bstr.h"
#include "qvox/platform/ComObject.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/platform/Variant.h"

namespace qvox {
namespace {

// Counts how many of its objects are alive, so that a test sees every reference given back.
class Probe final : public ComObject<IMVPosition> {
  public:
    static inline int alive = 0;
    Probe() { ++alive; }
    HRESULT PositionExists(LONG* v) override { return *v = 1, S_OK; }
    HRESULT PositionQuantity(LONG* v) override { return *v = 7, S_OK; }
    HRESULT PositionAveragePrice(double* v) override { return *v = 1.5, S_OK; }

  private:
    ~Probe() override { --alive; }
};

// Answers every request for an interface with a failure that is not "no such interface".
class Broken final : public ComObject<IMVPosition> {
  public:
    HRESULT QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_ACCESSDENIED;
    }
    HRESULT PositionExists(LONG*) override { return E_FAIL; }
    HRESULT PositionQuantity(LONG*) override { return E_FAIL; }
    HRESULT PositionAveragePrice(double*) override { return E_FAIL; }
};

TEST(Bstr, PrefixTerminatorAndCodePage) {
    const std::ptrdiff_t before = LiveBstrCount();
    {
        _bstr_t text("Caf\xE9 \x80");  // é and the euro sign of the single-byte code page
        ASSERT_EQ(text.length(), 6u);
        EXPECT_EQ(SysStringByteLen(text.GetBSTR()), 12u);
        EXPECT_EQ(text.GetBSTR()[6], u'\0');
        EXPECT_EQ(text.GetBSTR()[3], u'\u00E9');
        EXPECT_EQ(text.GetBSTR()[5], u'\u20AC');
        EXPECT_EQ(text.ToString(), "Caf\xE9 \x80");
        _bstr_t copy = text;
        EXPECT_NE(copy.GetBSTR(), text.GetBSTR());
        EXPECT_TRUE(copy == text);
        _bstr_t moved = std::move(copy);
        EXPECT_EQ(copy.GetBSTR(), nullptr);
        BSTR detached = moved.Detach();
        SysFreeString(detached);
        // Characters outside the code page come back as '?'.
        const char16_t wide[] = {u'a', u'\u4E2D', u'b', 0};
        EXPECT_EQ(_bstr_t(wide).ToString(), "a?b");
        EXPECT_EQ(_bstr_t(static_cast<const char*>(nullptr)).GetBSTR(), nullptr);
        EXPECT_EQ(SysStringLen(nullptr), 0u);
        BSTR zeros = SysAllocStringLen(nullptr, 3);
        EXPECT_EQ(BstrView(zeros), std::u16string_view(u"\0\0\0", 3));
        SysFreeString(zeros);
        EXPECT_EQ(SysAllocStringLen(u"x", 0x7FFFFFFFu), nullptr);
    }
    EXPECT_EQ(LiveBstrCount(), before);
}

struct Conversion {
    _variant_t source;
    VARTYPE to;
    HRESULT hr;
    std::string text;  // the result converted to text, for comparison
};

std::string Show(const VARIANT& v) {
    switch (v.vt) {
        case VT_EMPTY:
            return "empty";
        case VT_I1:
            return "i1:" + std::to_string(static_cast<int>(v.cVal));
        case VT_I2:
            return "i2:" + std::to_string(v.iVal);
        case VT_I4:
            return "i4:" + std::to_string(v.lVal);
        case VT_INT:
            return "int:" + std::to_string(v.intVal);
        case VT_UI4:
            return "ui4:" + std::to_string(v.ulVal);
        case VT_BOOL:
            return "bool:" + std::to_string(v.boolVal);
        case VT_R8:
            return "r8:" + std::to_string(v.dblVal);
        case VT_BSTR:
            return "bstr:" + Cp1252FromBstr(v.bstrVal);
        default:
            return "vt:" + std::to_string(v.vt);
    }
}

TEST(Variant, ChangeTypeFollowsAutomationRules) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Conversion table[] = {
        // Doubles round half to even into integers and overflow outside the range.
        {_variant_t(2.5), VT_I4, S_OK, "i4:2"},
        {_variant_t(3.5), VT_I4, S_OK, "i4:4"},
        {_variant_t(-2.5), VT_I2, S_OK, "i2:-2"},
        {_variant_t(32767.4), VT_I2, S_OK, "i2:32767"},
        {_variant_t(32767.5), VT_I2, DISP_E_OVERFLOW, "empty"},
        {_variant_t(2147483647.0), VT_I4, S_OK, "i4:2147483647"},
        {_variant_t(2147483648.0), VT_INT, DISP_E_OVERFLOW, "empty"},
        {_variant_t(nan), VT_I4, DISP_E_OVERFLOW, "empty"},
        {_variant_t(std::numeric_limits<double>::infinity()), VT_UI4, DISP_E_OVERFLOW, "empty"},
        {_variant_t(-1), VT_UI4, DISP_E_OVERFLOW, "empty"},
        {_variant_t(0xFFFFFFFFu), VT_I4, DISP_E_OVERFLOW, "empty"},
        {_variant_t(70000), VT_I2, DISP_E_OVERFLOW, "empty"},
        {_variant_t(-128), VT_I1, S_OK, "i1:-128"},
        {_variant_t(128), VT_I1, DISP_E_OVERFLOW, "empty"},
        // Booleans are -1 and 0; numbers are true unless 0.
        {_variant_t(true), VT_I4, S_OK, "i4:-1"},
        {_variant_t(0.25), VT_BOOL, S_OK, "bool:-1"},
        {_variant_t(0), VT_BOOL, S_OK, "bool:0"},
        // Text reads as a number in the C locale, blanks around allowed, nothing else.
        {_variant_t(" -12.5e1 "), VT_R8, S_OK, "r8:-125.000000"},
        {_variant_t("+7"), VT_I2, S_OK, "i2:7"},
        {_variant_t("1.5"), VT_I4, S_OK, "i4:2"},
        {_variant_t(".5"), VT_R8, S_OK, "r8:0.500000"},
        {_variant_t("1,5"), VT_R8, DISP_E_TYPEMISMATCH, "empty"},
        {_variant_t("12abc"), VT_I4, DISP_E_TYPEMISMATCH, "empty"},
        {_variant_t(""), VT_I4, DISP_E_TYPEMISMATCH, "empty"},
        {_variant_t("."), VT_R8, DISP_E_TYPEMISMATCH, "empty"},
        {_variant_t("1e"), VT_R8, DISP_E_TYPEMISMATCH, "empty"},
        {_variant_t("nan"), VT_R8, DISP_E_TYPEMISMATCH, "empty"},
        {_variant_t("1e400"), VT_R8, DISP_E_OVERFLOW, "empty"},
        {_variant_t("1e-400"), VT_R8, S_OK, "r8:0.000000"},
        {_variant_t("99999999999"), VT_I4, DISP_E_OVERFLOW, "empty"},
        {_variant_t("TRUE"), VT_BOOL, S_OK, "bool:-1"},
        {_variant_t("false"), VT_BOOL, S_OK, "bool:0"},
        {_variant_t("2"), VT_BOOL, S_OK, "bool:-1"},
        {_variant_t("yes"), VT_BOOL, DISP_E_TYPEMISMATCH, "empty"},
        // Numbers to text.
        {_variant_t(static_cast<SHORT>(-3)), VT_BSTR, S_OK, "bstr:-3"},
        {_variant_t(0xFFFFFFFFu), VT_BSTR, S_OK, "bstr:4294967295"},
        {_variant_t(0.1), VT_BSTR, S_OK, "bstr:0.1"},
        {_variant_t(-0.0), VT_BSTR, S_OK, "bstr:0"},
        {_variant_t(1e20), VT_BSTR, S_OK, "bstr:1E+20"},
        {_variant_t(1.0 / 3.0), VT_BSTR, S_OK, "bstr:0.333333333333333"},
        {_variant_t(true), VT_BSTR, S_OK, "bstr:-1"},
        // Empty gives zero values; objects and text don't mix.
        {_variant_t(), VT_I4, S_OK, "i4:0"},
        {_variant_t(), VT_BSTR, S_OK, "bstr:"},
        {_variant_t(5), VT_EMPTY, S_OK, "empty"},
        {_variant_t(5), VT_DISPATCH, DISP_E_TYPEMISMATCH, "empty"},
        {_variant_t(static_cast<IUnknown*>(nullptr)), VT_I4, DISP_E_TYPEMISMATCH, "empty"},
    };
    for (const Conversion& row : table) {
        SCOPED_TRACE(Show(row.source) + " to " + std::string(VarTypeName(row.to).GetString()));
        _variant_t out;
        EXPECT_EQ(VariantChangeType(&out, &row.source, 0, row.to), row.hr);
        EXPECT_EQ(Show(out), row.text);
    }
    _variant_t alpha(true);
    EXPECT_EQ(VariantChangeType(&alpha, &alpha, VARIANT_ALPHABOOL, VT_BSTR), S_OK);
    EXPECT_EQ(Show(alpha), "bstr:True");
    // A failed conversion in place leaves the value as it was.
    _variant_t text("abc");
    EXPECT_EQ(VariantChangeType(&text, &text, 0, VT_R8), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Show(text), "bstr:abc");
    VARIANT bad;
    VariantInit(&bad);
    bad.vt = 0x4000;
    EXPECT_EQ(VariantClear(&bad), DISP_E_BADVARTYPE);
    EXPECT_EQ(VariantChangeType(&text, &bad, 0, VT_I4), DISP_E_BADVARTYPE);
    EXPECT_THROW(_variant_t(5, VT_BSTR), _com_error);
    EXPECT_EQ(VarTypeName(VT_ARRAY | VT_VARIANT), "VT_ARRAY|VT_VARIANT");
    EXPECT_EQ(VarTypeName(99), "VT_?(99)");
}

TEST(Variant, OwnsTextObjectsAndArrays) {
    const std::ptrdiff_t bstrs = LiveBstrCount();
    {
        IMVPositionPtr probe(MakeComObject<Probe>().Detach(), false);
        EXPECT_EQ(Probe::alive, 1);
        _variant_t holder(static_cast<IUnknown*>(probe.GetInterfacePtr()));
        _variant_t copy = holder;
        probe = nullptr;
        EXPECT_EQ(Probe::alive, 1);  // both variants hold a reference
        holder.Clear();
        // Objects convert between the two object types by asking for the interface.
        _variant_t dispatch;
        EXPECT_EQ(VariantChangeType(&dispatch, &copy, 0, VT_DISPATCH), DISP_E_TYPEMISMATCH);
        _variant_t unknown;
        EXPECT_EQ(VariantChangeType(&unknown, &copy, 0, VT_UNKNOWN), S_OK);

        SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 1, 2);
        ASSERT_NE(array, nullptr);
        LONG index = 2;
        _variant_t text("leg");
        EXPECT_EQ(SafeArrayPutElement(array, &index, &text), S_OK);
        index = 3;
        EXPECT_EQ(SafeArrayPutElement(array, &index, &text), DISP_E_BADINDEX);
        LONG lower = 0, upper = 0;
        EXPECT_EQ(SafeArrayGetLBound(array, 1, &lower), S_OK);
        EXPECT_EQ(SafeArrayGetUBound(array, 1, &upper), S_OK);
        EXPECT_EQ(lower, 1);
        EXPECT_EQ(upper, 2);
        VARIANT wrapped;
        VariantInit(&wrapped);
        wrapped.vt = VT_ARRAY | VT_VARIANT;
        wrapped.parray = array;
        _variant_t owner;
        owner.Attach(wrapped);  // owner frees the array and its text
        _variant_t arrayCopy = owner;
        index = 2;
        _variant_t element;
        EXPECT_EQ(SafeArrayGetElement(arrayCopy.parray, &index, element.GetAddress()), S_OK);
        EXPECT_EQ(element.TextOrEmpty(), "leg");
        EXPECT_EQ(_variant_t(3).TextOrEmpty(), "");
        EXPECT_EQ(SafeArrayCreateVector(VT_I4, 0, 1), nullptr);
        EXPECT_EQ(SafeArrayCreateVector(VT_VARIANT, INT32_MAX, 2), nullptr);
    }
    EXPECT_EQ(Probe::alive, 0);
    EXPECT_EQ(LiveBstrCount(), bstrs);
}

TEST(ComPtr, AsksForInterfacesAndRaisesOnlyForRealFailures) {
    {
        IMVPositionPtr position(MakeComObject<Probe>().Detach(), false);
        IUnknownPtr unknown = position;  // asks for IUnknown
        ASSERT_TRUE(unknown);
        IMVPropertiesPtr properties = unknown;  // not offered: null, no error
        EXPECT_FALSE(properties);
        EXPECT_EQ(properties.QueryInterface(unknown.GetInterfacePtr()), E_NOINTERFACE);
        IMVPositionPtr back(unknown.GetInterfacePtr());
        LONG quantity = 0;
        EXPECT_EQ(back->PositionQuantity(&quantity), S_OK);
        EXPECT_EQ(quantity, 7);
    }
    EXPECT_EQ(Probe::alive, 0);

    IMVPositionPtr broken(MakeComObject<Broken>().Detach(), false);
    try {
        IUnknownPtr unknown = broken;
        FAIL() << "a failing request must raise";
    } catch (const _com_error& e) {
        EXPECT_EQ(e.Error(), E_ACCESSDENIED);
        EXPECT_STREQ(e.what(), "COM error 0x80070005");
    }
    IMVPositionPtr null;
    try {
        null->PositionExists(nullptr);
        FAIL() << "a null reference must raise";
    } catch (const _com_error& e) {
        EXPECT_EQ(e.Error(), E_POINTER);
    }
    EXPECT_EQ(GuidToString(uuidof<IDispatch>()), "{00020400-0000-0000-C000-000000000046}");
}

TEST(PlatformObjects, PropertyObjectKeepsValuesByNumberInStoringOrder) {
    const std::ptrdiff_t bstrs = LiveBstrCount();
    {
        IMVPropertiesPtr object = NewPropertyObject();
        ASSERT_TRUE(object);
        EXPECT_EQ(SetPropertyByNumber(object, 23, _variant_t("IBM")), S_OK);
        EXPECT_EQ(SetPropertyByNumber(object, 5000, _variant_t(1.5)), S_OK);
        EXPECT_EQ(SetPropertyByNumber(object, 0, _variant_t(7)), S_OK);
        EXPECT_EQ(SetPropertyByNumber(object, 23, _variant_t("MSFT")), S_OK);  // replaces
        _variant_t value;
        EXPECT_EQ(GetPropertyByNumber(object, 23, &value), S_OK);
        EXPECT_EQ(value.TextOrEmpty(), "MSFT");
        EXPECT_EQ(GetPropertyByNumber(object, 5000, &value), S_OK);
        EXPECT_EQ(value.dblVal, 1.5);
        // An absent key fails with a negative status and leaves the output alone.
        EXPECT_EQ(GetPropertyByNumber(object, 24, &value), DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(value.dblVal, 1.5);
        EXPECT_EQ(GetPropertyByNumber(object, -1, &value), DISP_E_MEMBERNOTFOUND);
        // Keys of another type convert to a number, or are refused.
        EXPECT_EQ(object->GetValue(_variant_t("23"), &value), S_OK);
        EXPECT_EQ(object->GetValue(_variant_t("x"), &value), DISP_E_TYPEMISMATCH);
        LONG count = 0;
        EXPECT_EQ(object->GetCount(&count), S_OK);
        ASSERT_EQ(count, 3);
        std::string keys;
        for (LONG i = 0; i < count; ++i) {
            _variant_t key;
            EXPECT_EQ(object->GetKeyAt(i, &key), S_OK);
            keys += std::to_string(key.lVal) + " ";
        }
        EXPECT_EQ(keys, "23 5000 0 ");
        EXPECT_EQ(object->GetKeyAt(3, &value), DISP_E_BADINDEX);
        IDispatchPtr dispatch = object;
        EXPECT_TRUE(dispatch);
        EXPECT_EQ(
            dispatch->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(GetPropertyByNumber(nullptr, 1, &value), E_POINTER);
    }
    EXPECT_EQ(LiveBstrCount(), bstrs);
}

TEST(PlatformObjects, CollectionWalksInOrderAndEndsWithNull) {
    IMVCollectionPtr collection = NewCollection();
    ASSERT_TRUE(collection);
    IMVPropertiesPtr a = CMVProperties::Create();
    IMVPropertiesPtr b = CMVProperties::Create();
    EXPECT_EQ(collection->Add(a), S_OK);
    EXPECT_EQ(collection->Add(b), S_OK);
    LONG position = -5;
    EXPECT_EQ(collection->StartWalk(&position), S_OK);
    IUnknownPtr item;
    EXPECT_EQ(collection->GetNext(&position, &item), S_OK);
    EXPECT_EQ(IMVPropertiesPtr(item).GetInterfacePtr(), a.GetInterfacePtr());
    EXPECT_EQ(collection->GetNext(&position, &item), S_OK);
    EXPECT_EQ(IMVPropertiesPtr(item).GetInterfacePtr(), b.GetInterfacePtr());
    EXPECT_EQ(collection->GetNext(&position, &item), S_FALSE);
    EXPECT_FALSE(item);
}

TEST(PlatformObjects, RootObjectComesFromTheInstalledService) {
    EXPECT_FALSE(GetPlatformRootObject());  // out of the box there is none
    auto root = CMVRoot::Create();
    root->SetRouteList(2, "ARCA,ARCX,,");
    ScopedPlatformServices scope({.objects = std::make_shared<const LibraryPlatformObjects>(
                                      IUnknownPtr(root->AsUnknown()))});
    IMVRootPtr installed(GetPlatformRootObject());
    ASSERT_TRUE(installed);
    IUnknownPtr services;
    EXPECT_EQ(installed->GetServices(&services), S_OK);
    IMVRouteListPtr routes(services);
    ASSERT_TRUE(routes);
    _bstr_t list;
    EXPECT_EQ(routes->GetRouteList(2, list.GetAddress()), S_OK);
    EXPECT_EQ(list.ToString(), "ARCA,ARCX,,");
    EXPECT_EQ(routes->GetRouteList(0, list.GetAddress()), S_OK);
    EXPECT_TRUE(list.empty());
    IMVPositionPtr position = CMVPosition::Create(-300, 12.25);
    LONG exists = 0;
    position->PositionExists(&exists);
    EXPECT_EQ(exists, 1);
}

}  // namespace
}  // namespace qvox
