// The property exchange: wire types by number, whole graphs both ways, single properties with
// their side effects, and property objects that come from outside and can't be trusted.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "qvox/interchange/OrderPropertyTable.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/price/Helper.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

// Every field of a record marked, each with a value of its own so that a field mixed up with
// another shows.
C EveryFieldMarked() {
    C order;
    for (const OrderPropertyRow& row : g_OrderProperties) {
        const int n = row.number;
        if (row.text) order.*row.text = CString("t") + CString(std::to_string(n));
        if (row.real) order.*row.real = n + 0.25;
        if (row.ulong) order.*row.ulong = 4000000000u + static_cast<ULONG>(n);
        if (row.integer) order.*row.integer = -100000 - n;
        if (row.shortint) order.*row.shortint = static_cast<SHORT>(-n);
        if (row.flag) order.*row.flag = true;
    }
    order.m_LegCount = static_cast<SHORT>(3);
    order.m_Legs[0].m_Symbol = "LEG1";
    order.m_Legs[0].m_Quantity = 5;
    order.m_Legs[1].m_LimitPrice = 1.5;
    order.m_Legs[2].m_Side = static_cast<SHORT>('S');  // slot 3 is not in use with a count of 3
    return order;
}

std::string Describe(const C& order, const OrderPropertyRow& row) {
    std::string text;
    if (row.text) text = (order.*row.text).IsValid() ? (order.*row.text).GetText().str() : "-";
    if (row.real) text = (order.*row.real).valid ? std::to_string((order.*row.real).value) : "-";
    if (row.ulong) text = (order.*row.ulong).valid ? std::to_string((order.*row.ulong).value) : "-";
    if (row.integer) {
        text = (order.*row.integer).valid ? std::to_string((order.*row.integer).value) : "-";
    }
    if (row.shortint) {
        text = (order.*row.shortint).valid ? std::to_string((order.*row.shortint).value) : "-";
    }
    if (row.flag) text = (order.*row.flag).valid ? std::to_string((order.*row.flag).value) : "-";
    return text;
}

IMVPropertiesPtr PropertiesOf(const IDispatchPtr& object) {
    return IMVPropertiesPtr(object);
}

LONG CountOf(const IMVPropertiesPtr& object) {
    LONG count = 0;
    object->GetCount(&count);
    return count;
}

TEST(PropertyExchange, EveryNumberTravelsInItsWireTypeAndComesBack) {
    const C order = EveryFieldMarked();
    const IMVPropertiesPtr object = PropertiesOf(order.GetOrderProperties());
    ASSERT_TRUE(object);
    for (const OrderPropertyRow& row : g_OrderProperties) {
        SCOPED_TRACE(row.field);
        _variant_t value;
        const HRESULT hr = GetPropertyByNumber(object, row.number, &value);
        if (row.number == 59 || row.number == 78 || row.number == 79) {
            EXPECT_TRUE(FAILED(hr));  // the third slot is not in use; no group
            continue;
        }
        ASSERT_EQ(hr, S_OK);
        EXPECT_EQ(value.vt, row.vt);
    }
    C back;
    back.SetOrderProperties(order.GetOrderProperties());
    for (const OrderPropertyRow& row : g_OrderProperties) {
        SCOPED_TRACE(row.field);
        EXPECT_EQ(Describe(back, row), Describe(order, row));
    }
    EXPECT_TRUE(back == order);
    EXPECT_EQ(back.m_Legs[0].m_Symbol, "LEG1");
    EXPECT_EQ(back.m_Legs[1].m_LimitPrice, 1.5);
    EXPECT_FALSE(back.m_Legs[2].m_Side.valid);
}

TEST(PropertyExchange, NewRecordGivesOnlyTheCategory) {
    C order;
    const IMVPropertiesPtr object = PropertiesOf(order.GetOrderProperties());
    EXPECT_EQ(CountOf(object), 1);
    _variant_t category;
    EXPECT_EQ(GetPropertyByNumber(object, 81, &category), S_OK);
    EXPECT_EQ(category.vt, VT_UI4);
    EXPECT_EQ(category.ulVal, order.GetOrderCategory().GetBits());
    // The piece value falls back to the price scale's factor when it doesn't travel.
    C scaled;
    _variant_t scale(static_cast<SHORT>('c'));
    EXPECT_EQ(SetPropertyByNumber(object, 25, scale), S_OK);
    scaled.SetOrderProperties(IDispatchPtr(object));
    EXPECT_TRUE(scaled.m_PieceValue.valid);
    EXPECT_EQ(scaled.m_PieceValue.value, Helper::GetBaseCodeDecimalFactor('c'));
}

TEST(PropertyExchange, GraphsGoOutAndComeBackWithTheirShape) {
    C head;
    head.m_Symbol = "ES";
    auto* second = new C;
    second->m_Symbol = "NQ";
    auto* third = new C;
    third->m_Symbol = "YM";
    head.AddOrderToOCAGroup(second, true);
    head.AddOrderToOCAGroup(third, true);
    auto* child = new C;
    child->m_Symbol = "CHILD";
    auto* grandchild = new C;
    grandchild->m_Symbol = "GRAND";
    child->AddOSOChildOrder(grandchild, true);
    second->AddOSOChildOrder(child, true);

    const IMVPropertiesPtr object = PropertiesOf(head.GetOrderProperties());
    _variant_t followers;
    ASSERT_EQ(GetPropertyByNumber(object, 78, &followers), S_OK);
    LONG count = 0;
    IMVCollectionPtr(IUnknownPtr(followers.punkVal))->GetCount(&count);
    EXPECT_EQ(count, 2);
    // A member in the middle doesn't repeat its chain.
    const IMVPropertiesPtr middle = PropertiesOf(second->GetOrderProperties());
    EXPECT_TRUE(FAILED(GetPropertyByNumber(middle, 78, &followers)));

    C back;
    back.SetOrderProperties(IDispatchPtr(object));
    ASSERT_NE(back.GetOCANext(), nullptr);
    const C* backSecond = back.GetOCANext();
    ASSERT_NE(backSecond->GetOCANext(), nullptr);
    EXPECT_EQ(backSecond->GetOCANext()->m_Symbol, "YM");
    ASSERT_EQ(backSecond->GetOSOChildCount(), 1u);
    const C* backChild = backSecond->GetOSOChild(0);
    EXPECT_EQ(backChild->m_Symbol, "CHILD");
    EXPECT_EQ(backChild->GetOSOParent(), backSecond);
    ASSERT_EQ(backChild->GetOSOChildCount(), 1u);
    EXPECT_EQ(backChild->GetOSOChild(0)->m_Symbol, "GRAND");
    // The record keeps no memory of a read: the same object twice adds the groups twice.
    back.SetOrderProperties(IDispatchPtr(object));
    EXPECT_EQ(back.GetNumberOfOCO(), 0);  // not a bracket chain
    int members = 0;
    for (const C* o = &back; o != nullptr; o = o->GetOCANext())
        ++members;
    EXPECT_EQ(members, 5);
}

TEST(PropertyExchange, SingleGetAnswersByNumber) {
    C order;
    order.m_Bracket = true;
    order.m_Quantity = 300;
    _variant_t value(1.5);
    // Not marked, or never a single property: false with the value untouched.
    for (const int number : {15 + 1, 57, 75, 78, 79, 80, 89, 92, -1}) {
        SCOPED_TRACE(number);
        EXPECT_FALSE(order.GetOrderProperty(number, value));
        EXPECT_EQ(value.vt, VT_R8);
    }
    EXPECT_TRUE(order.GetOrderProperty(15, value));
    EXPECT_EQ(value.vt, VT_I4);
    EXPECT_EQ(value.lVal, 300);
    EXPECT_TRUE(order.GetOrderProperty(77, value));
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_TRUE(order.GetOrderProperty(81, value));
    EXPECT_EQ(value.ulVal, order.GetOrderCategory().GetBits());
    order.m_OrderCategoryOverride = 0x40u;
    EXPECT_TRUE(order.GetOrderProperty(81, value));
    EXPECT_EQ(value.ulVal, 0x40u);
}

TEST(PropertyExchange, SingleSetKeepsPairsTogether) {
    const _variant_t none;
    const _variant_t on(true);
    C order;
    order.m_ShowOnly = static_cast<SHORT>(1);
    order.m_ShowQuantity = 100;
    EXPECT_TRUE(order.SetOrderProperty(19, none, none, false));
    EXPECT_FALSE(order.m_ShowOnly.valid);
    EXPECT_FALSE(order.m_ShowQuantity.valid);
    EXPECT_EQ(order.m_ShowQuantity.value, 100);  // only the marks go
    EXPECT_EQ(order.GetAdvancePropertyAsString(false, 0).Find("SHWQTY"), -1);
    EXPECT_TRUE(order.SetOrderProperty(14, _variant_t("MID"), none, false));
    EXPECT_EQ(order.m_Peg, static_cast<SHORT>(1));
    EXPECT_TRUE(order.SetOrderProperty(4, _variant_t(0.05), none, false));
    EXPECT_EQ(order.m_Discretionary, static_cast<SHORT>(1));

    // The if-touched type follows the order type: Market 1, Limit 2, anything else 0.
    const std::pair<const char*, SHORT> types[] = {{"Market", 1}, {"Limit", 2}, {"Stop Limit", 0}};
    for (const auto& [type, expected] : types) {
        C touched;
        touched.m_OrderType = type;
        EXPECT_TRUE(touched.SetOrderProperty(54, _variant_t(10.5), none, false));
        EXPECT_EQ(touched.m_IfTouchedType, expected) << type;
    }

    // A raw price with extra on drops its auto price; extra off keeps it.
    C priced;
    priced.m_AutoPrice = "Join";
    priced.m_StopAutoPrice = "Last";
    EXPECT_TRUE(priced.SetOrderProperty(7, _variant_t(12.0), none, false));
    EXPECT_TRUE(priced.m_AutoPrice.IsValid());
    EXPECT_TRUE(priced.SetOrderProperty(7, _variant_t(12.0), on, false));
    EXPECT_FALSE(priced.m_AutoPrice.IsValid());
    EXPECT_TRUE(priced.SetOrderProperty(20, _variant_t(11.0), _variant_t(65536), false));
    EXPECT_TRUE(priced.m_StopAutoPrice.IsValid());  // the low 16 bits of extra are 0

    // Side and open/close in one call; the answer is the side's.
    C sided;
    EXPECT_TRUE(sided.SetOrderProperty(11, _variant_t(static_cast<SHORT>('B')),
                                       _variant_t(static_cast<SHORT>('O')), true));
    EXPECT_EQ(sided.m_OpenClose, static_cast<SHORT>('O'));
    EXPECT_FALSE(
        sided.SetOrderProperty(11, _variant_t("x"), _variant_t(static_cast<SHORT>('C')), false));
    EXPECT_EQ(sided.m_OpenClose, static_cast<SHORT>('C'));

    // Strict refuses another type; lenient converts.
    C strict;
    strict.m_Short8 = static_cast<SHORT>(3);
    EXPECT_FALSE(strict.SetOrderProperty(8, _variant_t(7), none, true));
    EXPECT_EQ(strict.m_Short8, static_cast<SHORT>(3));
    EXPECT_TRUE(strict.SetOrderProperty(8, _variant_t(7), none, false));
    EXPECT_EQ(strict.m_Short8, static_cast<SHORT>(7));
    EXPECT_FALSE(strict.SetOrderProperty(8, _variant_t(70000), none, false));
    // Only -1 is a true VT_BOOL.
    VARIANT one;
    VariantInit(&one);
    one.vt = VT_BOOL;
    one.boolVal = 1;
    EXPECT_TRUE(strict.SetOrderProperty(89, one, none, true));
    EXPECT_EQ(strict.m_Flag89, false);
    EXPECT_TRUE(strict.SetOrderProperty(86, _variant_t("G1"), on, true));
    EXPECT_TRUE(strict.IsBracket());
    EXPECT_FALSE(strict.SetOrderProperty(75, _variant_t(1), none, false));
    EXPECT_FALSE(strict.SetOrderProperty(61, _variant_t(static_cast<SHORT>(5)), none, true));
    EXPECT_FALSE(strict.m_LegCount.valid);
    // A leg slot answers only while the count reaches it.
    const IDispatchPtr leg = QVOrderLeg().GetLegProperties();
    EXPECT_FALSE(strict.SetOrderProperty(57, _variant_t(leg.GetInterfacePtr()), none, true));
    EXPECT_TRUE(strict.SetOrderProperty(61, _variant_t(static_cast<SHORT>(2)), none, true));
    EXPECT_TRUE(strict.SetOrderProperty(57, _variant_t(leg.GetInterfacePtr()), none, true));
    EXPECT_FALSE(strict.SetOrderProperty(58, _variant_t(leg.GetInterfacePtr()), none, true));
}

TEST(PropertyExchange, SingleSetReadsCollectionsIntoGroups) {
    C parent;
    C child;
    child.m_Symbol = "A";
    const IMVCollectionPtr children = CMVCollection::Create();
    children->Add(IUnknownPtr(child.GetOrderProperties()));
    EXPECT_FALSE(parent.SetOrderProperty(79, _variant_t(static_cast<IDispatch*>(nullptr)),
                                         _variant_t(), false));
    EXPECT_TRUE(parent.SetOrderProperty(
        79, _variant_t(static_cast<IUnknown*>(children.GetInterfacePtr())), _variant_t(), false));
    ASSERT_EQ(parent.GetOSOChildCount(), 1u);
    EXPECT_EQ(parent.GetOSOChild(0)->m_Symbol, "A");
}

// ---- Objects from outside ----

// A property object that counts its fetches and whose 79 holds a collection with itself.
IMVPropertiesPtr SelfContaining() {
    IMVPropertiesPtr object = CMVProperties::Create();
    IMVCollectionPtr collection = CMVCollection::Create();
    collection->Add(object);
    SetPropertyByNumber(object, 23, _variant_t("LOOP"));
    SetPropertyByNumber(object, 79,
                        _variant_t(static_cast<IUnknown*>(collection.GetInterfacePtr())));
    return object;
}

TEST(PropertyExchange, OutsideObjectsGetAnAnswerAndNoCrash) {
    // A value of the wrong type for a number raises; what was read before stays.
    IMVPropertiesPtr object = CMVProperties::Create();
    SetPropertyByNumber(object, 0, _variant_t("KEY"));
    SetPropertyByNumber(object, 15, _variant_t("lots"));
    SetPropertyByNumber(object, 23, _variant_t(42));  // text from anything else: empty, marked
    C order;
    try {
        order.SetOrderProperties(IDispatchPtr(object));
        FAIL() << "an unconvertible value must raise";
    } catch (const _com_error& e) {
        EXPECT_EQ(e.Error(), DISP_E_TYPEMISMATCH);
    }
    EXPECT_EQ(order.m_OrderKey, "KEY");
    SetPropertyByNumber(object, 15, _variant_t("250"));
    SetPropertyByNumber(object, 61, _variant_t(9));  // no room for 8 legs: not taken
    order.SetOrderProperties(IDispatchPtr(object));
    EXPECT_EQ(order.m_Quantity, 250);
    EXPECT_EQ(order.m_Symbol, "");
    EXPECT_TRUE(order.m_Symbol.IsValid());
    EXPECT_FALSE(order.m_LegCount.valid);

    // Null, or no property object: nothing happens.
    order.SetOrderProperties(nullptr);
    order.SetOrderProperties(IDispatchPtr(IUnknownPtr(CMVCollection::Create())));

    // An object that contains itself is read once.
    C looped;
    const IMVPropertiesPtr loop = SelfContaining();
    looped.SetOrderProperties(IDispatchPtr(loop));
    EXPECT_EQ(looped.m_Symbol, "LOOP");
    EXPECT_EQ(looped.GetOSOChildCount(), 0u);
    SetPropertyByNumber(loop, 79, _variant_t());  // counted references can't free a cycle

    // A bracket follower can't join a head that isn't one: the reader deletes it (LSan sees
    // any leak), and a collection item that is no property object becomes an empty record.
    IMVPropertiesPtr head = CMVProperties::Create();
    IMVCollectionPtr followers = CMVCollection::Create();
    C bracket;
    bracket.m_Bracket = true;
    C loose;
    loose.m_Symbol = "LOOSE";
    followers->Add(IUnknownPtr(bracket.GetOrderProperties()));
    followers->Add(IUnknownPtr(CMVCollection::Create()));
    followers->Add(IUnknownPtr(loose.GetOrderProperties()));
    SetPropertyByNumber(head, 78, _variant_t(static_cast<IUnknown*>(followers.GetInterfacePtr())));
    C refused;
    refused.SetOrderProperties(IDispatchPtr(head));
    ASSERT_NE(refused.GetOCANext(), nullptr);
    EXPECT_FALSE(refused.GetOCANext()->m_Symbol.IsValid());
    ASSERT_NE(refused.GetOCANext()->GetOCANext(), nullptr);
    EXPECT_EQ(refused.GetOCANext()->GetOCANext()->m_Symbol, "LOOSE");
}

TEST(PropertyExchange, NestingTenThousandDeepNeedsNoStack) {
    constexpr int kDepth = 10000;
    IMVPropertiesPtr top = CMVProperties::Create();
    IMVPropertiesPtr current = top;
    for (int i = 1; i < kDepth; ++i) {
        IMVPropertiesPtr next = CMVProperties::Create();
        SetPropertyByNumber(next, 15, _variant_t(i));
        IMVCollectionPtr children = CMVCollection::Create();
        children->Add(next);
        SetPropertyByNumber(current, 79,
                            _variant_t(static_cast<IUnknown*>(children.GetInterfacePtr())));
        current = next;
    }
    C order;
    order.SetOrderProperties(IDispatchPtr(top));
    const C* deepest = &order;
    while (deepest->GetOSOChildCount() > 0)
        deepest = deepest->GetOSOChild(0);
    EXPECT_EQ(deepest->GetGenerationCount(), kDepth - 1);
    EXPECT_EQ(deepest->m_Quantity, kDepth - 1);
    // And out again.
    C back;
    back.SetOrderProperties(order.GetOrderProperties());
    deepest = &back;
    while (deepest->GetOSOChildCount() > 0)
        deepest = deepest->GetOSOChild(0);
    EXPECT_EQ(deepest->GetGenerationCount(), kDepth - 1);
}

// A platform that makes no property objects.
class NoObjects final : public IPlatformObjects {
  public:
    HRESULT CreatePropertyObject(IUnknown** object) const override {
        *object = nullptr;
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    HRESULT CreateCollection(IUnknown** object) const override {
        *object = nullptr;
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    HRESULT GetRootObject(IUnknown** root) const override {
        *root = nullptr;
        return S_FALSE;
    }
};

TEST(PropertyExchange, NoPropertyObjectRaisesAtTheFirstStore) {
    ScopedPlatformServices scope({.objects = std::make_shared<const NoObjects>()});
    C order;
    try {
        order.GetOrderProperties();
        FAIL() << "must raise";
    } catch (const _com_error& e) {
        EXPECT_EQ(e.Error(), E_POINTER);
    }
}

}  // namespace
}  // namespace qvox
