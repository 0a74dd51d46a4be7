// The order's property numbers: the protocol between the library and the platform's property
// objects. Each number names one field of COrderBarProperties and the VARIANT type it travels in;
// a number never changes without the platform changing with it. Numbers 75 and above 91 are no
// properties.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/order/QVOrderLeg.h"
#include "qvox/platform/Variant.h"

namespace qvox {

// What setting a number does besides storing its field.
enum class OrderPropertyNote : std::uint8_t {
    None,
    Paired,          // empty turns off this field and its switch; a value turns the switch on
    DropsAutoPrice,  // with extra on, the auto price of this price goes
    TwoValues,       // value is the side, extra the open/close code
    SetsRule,        // with extra on, extra is also the activation rule
    PairedSetsType,  // as Paired, and the if-touched type follows the order type
    Fallback,        // SetOrderProperties falls back to the price scale's factor
    Legs,            // an additional leg's own property object
    Collection,      // a collection of order property objects
    Computed,        // read gives the computed category without an override
    SetsBracket,     // with extra on, the order becomes a bracket order
};

// One row of the table: number, field name, wire type, note, and the field itself (one of the
// member pointers is set; none for legs and collections).
template <class Record>
struct PropertyRow {
    int number = -1;
    const char* field = "";
    VARTYPE vt = VT_EMPTY;
    OrderPropertyNote note = OrderPropertyNote::None;
    ValidString Record::*text = nullptr;
    ValidDataT<double> Record::*real = nullptr;
    ValidDataT<ULONG> Record::*ulong = nullptr;
    ValidDataT<LONG> Record::*integer = nullptr;  // VT_I4 or VT_INT
    ValidDataT<SHORT> Record::*shortint = nullptr;
    ValidDataT<bool> Record::*flag = nullptr;
};

using OrderPropertyRow = PropertyRow<COrderBarProperties>;
using LegPropertyRow = PropertyRow<QVOrderLeg>;

namespace property_rows {

template <class R>
constexpr PropertyRow<R> Text(int n, const char* name, ValidString R::*m, VARTYPE vt,
                              OrderPropertyNote note = OrderPropertyNote::None) {
    PropertyRow<R> row{n, name, vt, note};
    row.text = m;
    return row;
}
template <class R>
constexpr PropertyRow<R> Real(int n, const char* name, ValidDataT<double> R::*m, VARTYPE vt,
                              OrderPropertyNote note = OrderPropertyNote::None) {
    PropertyRow<R> row{n, name, vt, note};
    row.real = m;
    return row;
}
template <class R>
constexpr PropertyRow<R> ULong(int n, const char* name, ValidDataT<ULONG> R::*m, VARTYPE vt,
                               OrderPropertyNote note = OrderPropertyNote::None) {
    PropertyRow<R> row{n, name, vt, note};
    row.ulong = m;
    return row;
}
template <class R>
constexpr PropertyRow<R> Long(int n, const char* name, ValidDataT<LONG> R::*m, VARTYPE vt,
                              OrderPropertyNote note = OrderPropertyNote::None) {
    PropertyRow<R> row{n, name, vt, note};
    row.integer = m;
    return row;
}
template <class R>
constexpr PropertyRow<R> Short(int n, const char* name, ValidDataT<SHORT> R::*m, VARTYPE vt,
                               OrderPropertyNote note = OrderPropertyNote::None) {
    PropertyRow<R> row{n, name, vt, note};
    row.shortint = m;
    return row;
}
template <class R>
constexpr PropertyRow<R> Flag(int n, const char* name, ValidDataT<bool> R::*m, VARTYPE vt,
                              OrderPropertyNote note = OrderPropertyNote::None) {
    PropertyRow<R> row{n, name, vt, note};
    row.flag = m;
    return row;
}
constexpr OrderPropertyRow Object(int n, const char* name, VARTYPE vt, OrderPropertyNote note) {
    return OrderPropertyRow{n, name, vt, note};
}

using C = COrderBarProperties;
using L = QVOrderLeg;

}  // namespace property_rows

// The order's properties in number order.
inline constexpr OrderPropertyRow g_OrderProperties[] = {
    property_rows::Text(0, "m_OrderKey", &property_rows::C::m_OrderKey, VT_BSTR),
    property_rows::Short(1, "m_AllOrNone", &property_rows::C::m_AllOrNone, VT_I2),
    property_rows::Short(2, "m_BuyOnMinus", &property_rows::C::m_BuyOnMinus, VT_I2),
    property_rows::Short(3, "m_Discretionary", &property_rows::C::m_Discretionary, VT_I2),
    property_rows::Real(4, "m_DiscretionaryAmount", &property_rows::C::m_DiscretionaryAmount, VT_R8,
                        OrderPropertyNote::Paired),
    property_rows::Text(5, "m_Duration", &property_rows::C::m_Duration, VT_BSTR),
    property_rows::Real(6, "m_DurationDate", &property_rows::C::m_DurationDate, VT_R8),
    property_rows::Real(7, "m_LimitPriceRaw", &property_rows::C::m_LimitPriceRaw, VT_R8,
                        OrderPropertyNote::DropsAutoPrice),
    property_rows::Short(8, "m_Short8", &property_rows::C::m_Short8, VT_I2),
    property_rows::Text(9, "m_Text9", &property_rows::C::m_Text9, VT_BSTR),
    property_rows::Short(10, "m_NonDisplay", &property_rows::C::m_NonDisplay, VT_I2),
    property_rows::Short(11, "m_Side", &property_rows::C::m_Side, VT_I2,
                         OrderPropertyNote::TwoValues),
    property_rows::Text(12, "m_OrderType", &property_rows::C::m_OrderType, VT_BSTR),
    property_rows::Short(13, "m_Peg", &property_rows::C::m_Peg, VT_I2),
    property_rows::Text(14, "m_PegValue", &property_rows::C::m_PegValue, VT_BSTR,
                        OrderPropertyNote::Paired),
    property_rows::Long(15, "m_Quantity", &property_rows::C::m_Quantity, VT_I4),
    property_rows::Text(16, "m_Route", &property_rows::C::m_Route, VT_BSTR),
    property_rows::Short(17, "m_ShortExempt", &property_rows::C::m_ShortExempt, VT_I2),
    property_rows::Short(18, "m_ShowOnly", &property_rows::C::m_ShowOnly, VT_I2),
    property_rows::Long(19, "m_ShowQuantity", &property_rows::C::m_ShowQuantity, VT_I4,
                        OrderPropertyNote::Paired),
    property_rows::Real(20, "m_StopPriceRaw", &property_rows::C::m_StopPriceRaw, VT_R8,
                        OrderPropertyNote::DropsAutoPrice),
    property_rows::Short(21, "m_Short21", &property_rows::C::m_Short21, VT_I2),
    property_rows::Short(22, "m_SubscriberOnly", &property_rows::C::m_SubscriberOnly, VT_I2),
    property_rows::Text(23, "m_Symbol", &property_rows::C::m_Symbol, VT_BSTR),
    property_rows::Long(24, "m_Exchange", &property_rows::C::m_Exchange, VT_I4),
    property_rows::Short(25, "m_PriceScale", &property_rows::C::m_PriceScale, VT_I2),
    property_rows::Long(26, "m_Long26", &property_rows::C::m_Long26, VT_I4),
    property_rows::ULong(27, "m_ULong27", &property_rows::C::m_ULong27, VT_UI4),
    property_rows::ULong(28, "m_ULong28", &property_rows::C::m_ULong28, VT_UI4),
    property_rows::ULong(29, "m_LocalOrderID", &property_rows::C::m_LocalOrderID, VT_UI4),
    property_rows::Text(30, "m_Account", &property_rows::C::m_Account, VT_BSTR),
    property_rows::Short(31, "m_ECNSweep", &property_rows::C::m_ECNSweep, VT_I2),
    property_rows::Text(32, "m_AutoPrice", &property_rows::C::m_AutoPrice, VT_BSTR),
    property_rows::Long(33, "m_SymbolCategory", &property_rows::C::m_SymbolCategory, VT_I4),
    property_rows::ULong(34, "m_ULong34", &property_rows::C::m_ULong34, VT_UI4),
    property_rows::Text(35, "m_AutoPriceIncrement", &property_rows::C::m_AutoPriceIncrement,
                        VT_BSTR),
    property_rows::Short(36, "m_Short36", &property_rows::C::m_Short36, VT_I2),
    property_rows::Text(37, "m_StopTrigger", &property_rows::C::m_StopTrigger, VT_BSTR),
    property_rows::Short(38, "m_Short38", &property_rows::C::m_Short38, VT_I2),
    property_rows::Short(39, "m_Short39", &property_rows::C::m_Short39, VT_I2),
    property_rows::Text(40, "m_Text40", &property_rows::C::m_Text40, VT_BSTR),
    property_rows::Text(41, "m_Text41", &property_rows::C::m_Text41, VT_BSTR),
    property_rows::Real(42, "m_Bid", &property_rows::C::m_Bid, VT_R8),
    property_rows::Real(43, "m_Ask", &property_rows::C::m_Ask, VT_R8),
    property_rows::Real(44, "m_Real44", &property_rows::C::m_Real44, VT_R8),
    property_rows::Short(45, "m_Short45", &property_rows::C::m_Short45, VT_I2),
    property_rows::Real(46, "m_Real46", &property_rows::C::m_Real46, VT_R8),
    property_rows::Real(47, "m_Real47", &property_rows::C::m_Real47, VT_R8),
    property_rows::Short(48, "m_TrailType", &property_rows::C::m_TrailType, VT_I2),
    property_rows::Real(49, "m_TrailAmount", &property_rows::C::m_TrailAmount, VT_R8,
                        OrderPropertyNote::Paired),
    property_rows::Short(50, "m_ActivationRule", &property_rows::C::m_ActivationRule, VT_I2),
    property_rows::Real(51, "m_ActivationTime", &property_rows::C::m_ActivationTime, VT_R8,
                        OrderPropertyNote::SetsRule),
    property_rows::Text(52, "m_Condition", &property_rows::C::m_Condition, VT_BSTR),
    property_rows::Short(53, "m_IfTouchedType", &property_rows::C::m_IfTouchedType, VT_I2),
    property_rows::Real(54, "m_IfTouchedPrice", &property_rows::C::m_IfTouchedPrice, VT_R8,
                        OrderPropertyNote::PairedSetsType),
    property_rows::Real(55, "m_MinMove", &property_rows::C::m_MinMove, VT_R8),
    property_rows::Real(56, "m_PieceValue", &property_rows::C::m_PieceValue, VT_R8,
                        OrderPropertyNote::Fallback),
    property_rows::Object(57, "m_Legs[0]", VT_DISPATCH, OrderPropertyNote::Legs),
    property_rows::Object(58, "m_Legs[1]", VT_DISPATCH, OrderPropertyNote::Legs),
    property_rows::Object(59, "m_Legs[2]", VT_DISPATCH, OrderPropertyNote::Legs),
    property_rows::Short(60, "m_OpenClose", &property_rows::C::m_OpenClose, VT_I2),
    property_rows::Short(61, "m_LegCount", &property_rows::C::m_LegCount, VT_I2),
    property_rows::Text(62, "m_Text62", &property_rows::C::m_Text62, VT_BSTR),
    property_rows::Long(63, "m_Long63", &property_rows::C::m_Long63, VT_I4),
    property_rows::Text(64, "m_Text64", &property_rows::C::m_Text64, VT_BSTR),
    property_rows::Long(65, "m_StagedLifeSpan", &property_rows::C::m_StagedLifeSpan, VT_I4),
    property_rows::Text(66, "m_StopAutoPrice", &property_rows::C::m_StopAutoPrice, VT_BSTR),
    property_rows::Real(67, "m_StopAutoPriceOffset", &property_rows::C::m_StopAutoPriceOffset,
                        VT_R8),
    property_rows::Text(68, "m_AutoPrice3", &property_rows::C::m_AutoPrice3, VT_BSTR),
    property_rows::Real(69, "m_AutoPrice3Offset", &property_rows::C::m_AutoPrice3Offset, VT_R8),
    property_rows::Text(70, "m_IfTouchedTrigger", &property_rows::C::m_IfTouchedTrigger, VT_BSTR),
    property_rows::Real(71, "m_LITAutoPriceOffset", &property_rows::C::m_LITAutoPriceOffset, VT_R8),
    property_rows::Text(72, "m_LITAutoPrice", &property_rows::C::m_LITAutoPrice, VT_BSTR),
    property_rows::Short(73, "m_Short73", &property_rows::C::m_Short73, VT_I2),
    property_rows::Short(74, "m_QuantityType", &property_rows::C::m_QuantityType, VT_I2),
    property_rows::Long(76, "m_LotSize", &property_rows::C::m_LotSize, VT_I4),
    property_rows::Real(77, "m_EffectiveParentPrice", &property_rows::C::m_EffectiveParentPrice,
                        VT_R8),
    property_rows::Object(78, "OCA followers", VT_UNKNOWN, OrderPropertyNote::Collection),
    property_rows::Object(79, "OSO children", VT_UNKNOWN, OrderPropertyNote::Collection),
    property_rows::Flag(80, "m_Bracket", &property_rows::C::m_Bracket, VT_BOOL),
    property_rows::ULong(81, "m_OrderCategoryOverride", &property_rows::C::m_OrderCategoryOverride,
                         VT_UI4, OrderPropertyNote::Computed),
    property_rows::Short(82, "m_Short82", &property_rows::C::m_Short82, VT_I2),
    property_rows::Text(83, "m_Locate", &property_rows::C::m_Locate, VT_BSTR),
    property_rows::Text(84, "m_LocateTag", &property_rows::C::m_LocateTag, VT_BSTR),
    property_rows::Text(85, "m_OSOParentTag", &property_rows::C::m_OSOParentTag, VT_BSTR),
    property_rows::Text(86, "m_OCAGroupTag", &property_rows::C::m_OCAGroupTag, VT_BSTR,
                        OrderPropertyNote::SetsBracket),
    property_rows::Text(87, "m_OSOTag", &property_rows::C::m_OSOTag, VT_BSTR),
    property_rows::Real(88, "m_ExpirationTime", &property_rows::C::m_ExpirationTime, VT_R8),
    property_rows::Flag(89, "m_Flag89", &property_rows::C::m_Flag89, VT_BOOL),
    property_rows::Short(90, "m_STA", &property_rows::C::m_STA, VT_I2),
    property_rows::Long(91, "m_Tag", &property_rows::C::m_Tag, VT_I4),
};

// A leg's properties, in the order they are stored.
inline constexpr LegPropertyRow g_LegProperties[] = {
    property_rows::Text(23, "m_Symbol", &property_rows::L::m_Symbol, VT_BSTR),
    property_rows::Text(64, "m_Text64", &property_rows::L::m_Text64, VT_BSTR),
    property_rows::Text(12, "m_OrderType", &property_rows::L::m_OrderType, VT_BSTR),
    property_rows::Real(7, "m_LimitPrice", &property_rows::L::m_LimitPrice, VT_R8),
    property_rows::Real(20, "m_StopPrice", &property_rows::L::m_StopPrice, VT_R8),
    property_rows::Short(11, "m_Side", &property_rows::L::m_Side, VT_I2),
    property_rows::Short(60, "m_OpenClose", &property_rows::L::m_OpenClose, VT_I2),
    property_rows::Long(15, "m_Quantity", &property_rows::L::m_Quantity, VT_I4),
    property_rows::Real(47, "m_Real47", &property_rows::L::m_Real47, VT_R8),
    property_rows::Real(46, "m_Real46", &property_rows::L::m_Real46, VT_R8),
    property_rows::Short(45, "m_Short45", &property_rows::L::m_Short45, VT_I2),
};

// The numbers GetOrderProperties stores, in the order it stores them (81 always, the others
// when their field has its mark; legs, children, followers and 80 come after).
inline constexpr int g_OrderPropertiesStoreOrder[] = {
    0,  81, 77, 30, 29, 33, 27, 28, 11, 12, 5,  6,  46, 15, 23, 24, 32, 35, 66, 67, 68, 69,
    9,  37, 70, 16, 7,  47, 20, 1,  91, 31, 22, 90, 10, 83, 84, 8,  21, 25, 2,  17, 18, 19,
    3,  4,  13, 14, 26, 34, 36, 38, 39, 40, 45, 74, 82, 41, 42, 43, 55, 76, 56, 44, 60, 62,
    63, 64, 65, 48, 49, 50, 51, 88, 52, 53, 54, 72, 71, 73, 61, 85, 87, 86, 89,
};

// The numbers SetOrderProperties reads, in the order it reads them (legs, 80, children and
// followers come after).
inline constexpr int g_OrderPropertiesReadOrder[] = {
    0,  81, 77, 30, 29, 33, 27, 28, 11, 12, 5,  6,  46, 15, 23, 24, 32, 35, 66, 67, 68, 69,
    9,  37, 70, 16, 7,  47, 20, 1,  31, 22, 90, 10, 8,  21, 25, 2,  17, 91, 18, 19, 3,  4,
    13, 14, 26, 34, 38, 39, 40, 41, 36, 42, 43, 55, 76, 56, 44, 60, 45, 74, 82, 62, 63, 64,
    65, 48, 49, 50, 51, 88, 52, 53, 54, 72, 71, 73, 61, 83, 84, 85, 87, 86, 89,
};

inline constexpr int kLastOrderProperty = 91;

namespace property_rows {

// Row index of each number from 0 to kLastOrderProperty, -1 for no property.
inline constexpr auto kRowOfNumber = [] {
    std::array<std::int8_t, kLastOrderProperty + 1> slots{};
    slots.fill(-1);
    for (std::size_t i = 0; i < std::size(g_OrderProperties); ++i) {
        slots[static_cast<std::size_t>(g_OrderProperties[i].number)] = static_cast<std::int8_t>(i);
    }
    return slots;
}();

}  // namespace property_rows

// The row of number, or null for a number that is no property.
constexpr const OrderPropertyRow* FindOrderProperty(int number) {
    if (number < 0 || number > kLastOrderProperty) return nullptr;
    const std::int8_t slot = property_rows::kRowOfNumber[static_cast<std::size_t>(number)];
    return slot < 0 ? nullptr : &g_OrderProperties[slot];
}

static_assert(std::size(g_OrderProperties) == 91);
static_assert(std::size(g_OrderPropertiesStoreOrder) == 85);
static_assert(std::size(g_OrderPropertiesReadOrder) == 85);

}  // namespace qvox
