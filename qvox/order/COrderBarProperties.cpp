// COrderBarProperties: construction, copying, comparison and the record's own operations.
#include "qvox/order/COrderBarProperties.h"

#include <tuple>
#include <utility>

#include "qvox/vocabulary/COXStringForDisplay.h"
#include "qvox/vocabulary/COXUtil.h"

namespace qvox {
namespace {

using C = COrderBarProperties;

// How a field takes part in copying, comparing and InValidAll.
enum class Copied { all, group, no };
enum class Compared { text, value, valueIfSetHere, valueIfSetOnBoth, no };

template <class M>
struct Field {
    M C::*member;
    Copied copied;
    Compared compared;
    bool invalidated;
};

constexpr Copied all = Copied::all;
constexpr Copied group = Copied::group;
constexpr Compared text = Compared::text;
constexpr Compared value = Compared::value;

// Every field but the legs, m_EffectiveParentPrice and m_OrderCategoryOverride, which no copy,
// comparison or InValidAll touches.
// clang-format off
constexpr auto kFields = std::make_tuple(
    Field<ValidString>{&C::m_OrderKey, all, text, true},
    Field<ValidString>{&C::m_Account, all, text, true},
    Field<ValidString>{&C::m_Duration, all, text, true},
    Field<ValidString>{&C::m_Text9, all, text, true},
    Field<ValidString>{&C::m_OrderType, all, text, true},
    Field<ValidString>{&C::m_PegValue, all, text, true},
    Field<ValidString>{&C::m_Route, all, text, true},
    Field<ValidString>{&C::m_Symbol, all, text, true},
    Field<ValidString>{&C::m_AutoPrice, all, text, true},
    Field<ValidString>{&C::m_AutoPriceIncrement, all, text, true},
    Field<ValidString>{&C::m_StopTrigger, all, text, true},
    Field<ValidString>{&C::m_IfTouchedTrigger, all, text, true},
    Field<ValidString>{&C::m_Text40, all, text, true},
    Field<ValidString>{&C::m_Text41, all, text, true},
    Field<ValidString>{&C::m_Text62, all, text, true},
    Field<ValidString>{&C::m_Text64, all, text, true},
    Field<ValidString>{&C::m_Condition, all, Compared::valueIfSetHere, true},
    Field<ValidString>{&C::m_StopAutoPrice, all, text, true},
    Field<ValidString>{&C::m_AutoPrice3, all, text, true},
    Field<ValidString>{&C::m_LITAutoPrice, all, text, true},
    Field<ValidDataT<double>>{&C::m_LITAutoPriceOffset, all, value, true},
    Field<ValidDataT<double>>{&C::m_StopAutoPriceOffset, all, value, true},
    Field<ValidDataT<double>>{&C::m_AutoPrice3Offset, all, value, true},
    Field<ValidDataT<double>>{&C::m_Real46, all, value, true},
    Field<ValidDataT<double>>{&C::m_DurationDate, all, value, true},
    Field<ValidDataT<double>>{&C::m_DiscretionaryAmount, all, value, true},
    Field<ValidDataT<double>>{&C::m_LimitPriceRaw, all, value, true},
    Field<ValidDataT<double>>{&C::m_Real47, all, value, true},
    Field<ValidDataT<double>>{&C::m_StopPriceRaw, all, value, true},
    Field<ValidDataT<double>>{&C::m_Bid, all, value, true},
    Field<ValidDataT<double>>{&C::m_Ask, all, value, true},
    Field<ValidDataT<double>>{&C::m_Real44, all, value, true},
    Field<ValidDataT<double>>{&C::m_IfTouchedPrice, all, value, true},
    Field<ValidDataT<double>>{&C::m_ActivationTime, all, value, true},
    Field<ValidDataT<double>>{&C::m_ExpirationTime, all, value, true},
    Field<ValidDataT<double>>{&C::m_TrailAmount, all, value, true},
    Field<ValidDataT<double>>{&C::m_MinMove, all, value, true},
    Field<ValidDataT<double>>{&C::m_PieceValue, all, value, true},
    Field<ValidDataT<ULONG>>{&C::m_ULong27, all, value, true},
    Field<ValidDataT<ULONG>>{&C::m_ULong28, all, value, true},
    Field<ValidDataT<ULONG>>{&C::m_ULong34, all, value, true},
    Field<ValidDataT<ULONG>>{&C::m_LocalOrderID, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_Exchange, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_Quantity, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_SymbolCategory, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_ShowQuantity, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_Long26, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_Long63, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_StagedLifeSpan, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_LotSize, all, value, true},
    Field<ValidDataT<LONG>>{&C::m_Tag, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Side, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_PriceScale, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Short8, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Short36, all, Compared::no, true},
    Field<ValidDataT<SHORT>>{&C::m_Short38, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Short39, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Short45, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_QuantityType, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Short82, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_AllOrNone, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_ECNSweep, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_BuyOnMinus, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Discretionary, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_NonDisplay, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_ShortExempt, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_ShowOnly, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Peg, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Short21, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_SubscriberOnly, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_TrailType, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_ActivationRule, all, Compared::valueIfSetHere, true},
    Field<ValidDataT<SHORT>>{&C::m_IfTouchedType, all, Compared::valueIfSetOnBoth, true},
    Field<ValidDataT<SHORT>>{&C::m_STA, all, value, true},
    Field<ValidDataT<bool>>{&C::m_Flag89, group, value, true},
    Field<ValidDataT<SHORT>>{&C::m_LegCount, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_OpenClose, all, value, true},
    Field<ValidDataT<SHORT>>{&C::m_Short73, all, value, true},
    Field<ValidString>{&C::m_OCAGroupName, group, Compared::no, true},
    Field<ValidString>{&C::m_OCAGroupTag, group, Compared::no, true},
    Field<ValidString>{&C::m_OSOParentTag, group, Compared::no, true},
    Field<ValidString>{&C::m_OSOTag, group, Compared::no, true},
    Field<ValidDataT<bool>>{&C::m_Bracket, group, Compared::no, true},
    Field<ValidString>{&C::m_Locate, all, Compared::no, true},
    Field<ValidString>{&C::m_LocateTag, all, Compared::no, true});
// clang-format on

template <class F>
void ForEachField(F&& f) {
    std::apply([&](const auto&... field) { (f(field), ...); }, kFields);
}

bool Marked(const ValidString& s) {
    return s.IsValid();
}
template <class T>
bool Marked(const ValidDataT<T>& d) {
    return d.valid;
}

void Unmark(ValidString& s) {
    s.Invalid();
}
template <class T>
void Unmark(ValidDataT<T>& d) {
    d.valid = false;
}

bool TextEqual(const ValidString& a, const ValidString& b) {
    return a.GetText() == b.GetText();
}
template <class T>
bool TextEqual(const ValidDataT<T>& a, const ValidDataT<T>& b) {
    return a == b;
}

// The legs in use: slots 0 to count - 2, never past the three slots.
int LegsInUse(const ValidDataT<SHORT>& legCount) {
    if (!legCount.valid || legCount.value <= 1) return 0;
    return legCount.value - 1 < 3 ? legCount.value - 1 : 3;
}

}  // namespace

COrderBarProperties::COrderBarProperties(const COrderBarProperties& source, ECopyMode mode) {
    m_Bracket = false;
    Copy(source, mode);
}

COrderBarProperties& COrderBarProperties::operator=(const COrderBarProperties& source) {
    return Copy(source, eCopyOrderOnly);
}

void COrderBarProperties::MergeFields(const COrderBarProperties& source, bool withGroupFields) {
    if (&source == this) return;
    ForEachField([&](const auto& field) {
        if (field.copied == Copied::all || (withGroupFields && field.copied == Copied::group)) {
            this->*field.member = source.*field.member;
        }
    });
    // The legs follow this record's leg count, as the merge above left it.
    const int legs = LegsInUse(m_LegCount);
    for (int i = 0; i < legs; ++i)
        m_Legs[i] = source.m_Legs[i];
}

COrderBarProperties& COrderBarProperties::Copy(const COrderBarProperties& source, ECopyMode mode) {
    switch (mode) {
        case eCopyFromRoot: {
            COrderBarProperties* to = GetRootOrder();
            to->CopyWithRelations(*source.GetRootOrder(), true);
            break;
        }
        case eCopyFromOCAFirst: {
            COrderBarProperties* to = GetOCAFirst();
            to->CopyWithRelations(*source.GetOCAFirst(), true);
            break;
        }
        case eCopyOrderOnly:
            MergeFields(source, false);
            break;
        case eCopyWithRelations:
            CopyWithRelations(source, true);
            break;
        case eCopyWithoutOCANext:
            CopyWithRelations(source, false);
            break;
    }
    return *this;
}

bool COrderBarProperties::operator==(const COrderBarProperties& other) const {
    bool equal = true;
    ForEachField([&](const auto& field) {
        if (!equal) return;
        const auto& mine = this->*field.member;
        const auto& theirs = other.*field.member;
        switch (field.compared) {
            case Compared::text:
                equal = TextEqual(mine, theirs);
                break;
            case Compared::value:
                equal = mine == theirs;
                break;
            case Compared::valueIfSetHere:
                equal = !Marked(mine) || mine == theirs;
                break;
            case Compared::valueIfSetOnBoth:
                equal = !(Marked(mine) && Marked(theirs)) || mine == theirs;
                break;
            case Compared::no:
                break;
        }
    });
    if (!equal) return false;
    const int legs = LegsInUse(m_LegCount);
    for (int i = 0; i < legs; ++i) {
        if (!(m_Legs[i] == other.m_Legs[i])) return false;
    }
    return true;
}

void COrderBarProperties::InValidAll() {
    ForEachField([&](const auto& field) {
        if (field.invalidated) Unmark(this->*field.member);
    });
}

void COrderBarProperties::SetOrderType(EMVOrderType type) {
    m_OrderType = COXStringForDisplay::OrderType(type);
}

EMVOrderType COrderBarProperties::GetOrderType() const {
    return COXUtil::OrderTypeStrToEnum(m_OrderType.GetText());
}

namespace {
bool IsStopType(EMVOrderType type) {
    return type == OrderTypeStopLimit || type == OrderTypeStopMarket;
}
}  // namespace

void COrderBarProperties::SetPrice(double price) {
    (IsStopType(GetOrderType()) ? m_StopPriceRaw : m_LimitPriceRaw) = price;
}

double COrderBarProperties::GetPrice() const {
    return (IsStopType(GetOrderType()) ? m_StopPriceRaw : m_LimitPriceRaw).value;
}

void COrderBarProperties::SetStopPrice(double price) {
    (IsStopType(GetOrderType()) ? m_LimitPriceRaw : m_StopPriceRaw) = price;
}

double COrderBarProperties::GetStopPrice() const {
    return (IsStopType(GetOrderType()) ? m_LimitPriceRaw : m_StopPriceRaw).value;
}

namespace {
constexpr SHORT kShareCount = '#';

// Units per lot; an unset lot size is 1, and so is a lot size of 0, which would divide by zero.
LONG LotOf(const ValidDataT<LONG>& lotSize) {
    return lotSize.valid && lotSize.value != 0 ? lotSize.value : 1;
}
}  // namespace

ValidDataT<LONG> COrderBarProperties::GetLots() {
    ValidDataT<LONG> result;
    if (!m_Quantity.valid || !m_QuantityType.valid) return result;
    if (m_QuantityType.value != kShareCount) return ValidDataT<LONG>(m_Quantity.value);
    const LONG lot = LotOf(m_LotSize);
    // INT32_MIN / -1 is the one quotient that overflows; it wraps as the platform's would.
    const LONG lots = (lot == -1) ? wrap32::neg(m_Quantity.value) : m_Quantity.value / lot;
    if (lots != 0) return ValidDataT<LONG>(lots);
    // Less than one lot: the quantity was a count of lots already.
    result = m_Quantity.value;
    m_Quantity = wrap32::mul(m_Quantity.value, lot);
    return result;
}

void COrderBarProperties::SetLots(ValidDataT<LONG> lots) {
    if (!lots.valid || !m_QuantityType.valid) return;
    if (m_QuantityType.value == kShareCount) {
        m_Quantity = wrap32::mul(lots.value, LotOf(m_LotSize));
    } else {
        m_Quantity = lots.value;
    }
}

bool COrderBarProperties::SetOrderAction(EMVOrderAction action, ULONG category) {
    return CalcOrderAction(m_Side, m_OpenClose, action, category);
}

bool COrderBarProperties::CalcOrderAction(ValidDataT<SHORT>& side, ValidDataT<SHORT>& openClose,
                                          EMVOrderAction action, ULONG category) {
    struct Codes {
        char side;
        char openClose;  // 0: left as it was
    };
    // By action 1 to 4; a side of 0 is a combination that does not exist.
    static constexpr Codes kFutures[] = {{'B', 0}, {0, 0}, {'S', 0}, {0, 0}};
    static constexpr Codes kEquities[] = {{'B', 0}, {'T', 0}, {'S', 0}, {'C', 0}};
    static constexpr Codes kOptions[] = {{'B', 'O'}, {'S', 'O'}, {'S', 'C'}, {'B', 'C'}};
    const Codes* table = nullptr;
    switch (category) {
        case SymbolCategoryFuture:
            table = kFutures;
            break;
        case SymbolCategoryStock:
            table = kEquities;
            break;
        case SymbolCategoryStockOption:
        case SymbolCategoryOtherOption:
            table = kOptions;
            break;
        default:
            return false;
    }
    if (action < OrderActionBuy || action > OrderActionBuyToCover) return false;
    const Codes codes = table[action - 1];
    if (codes.side == 0) return false;
    side = static_cast<SHORT>(codes.side);
    if (codes.openClose != 0) openClose = static_cast<SHORT>(codes.openClose);
    return true;
}

EMVOrderAction COrderBarProperties::GetOrderAction() const {
    if (!m_Side.valid) return OrderActionUnknown;
    const SHORT side = m_Side.value;
    if (m_OpenClose.valid && m_OpenClose.value != 0) {
        const SHORT openClose = m_OpenClose.value;
        if (side == 'B' && openClose == 'O') return OrderActionBuy;
        if (side == 'B' && openClose == 'C') return OrderActionBuyToCover;
        if (side == 'S' && openClose == 'O') return OrderActionSellShort;
        if (side == 'S' && openClose == 'C') return OrderActionSell;
        return OrderActionUnknown;
    }
    switch (side) {
        case 'B':
            return OrderActionBuy;
        case 'T':
            return OrderActionSellShort;
        case 'S':
            return OrderActionSell;
        case 'C':
            return OrderActionBuyToCover;
        default:
            return OrderActionUnknown;
    }
}

CTLBitFlagHelperWrapper<COXOrderCategoryX> COrderBarProperties::GetOrderCategory() const {
    COXOrderCategoryX category;
    category.Set(m_LegCount.valid && m_LegCount.value > 1 ? COXOrderCategoryX::MultiLeg
                                                          : COXOrderCategoryX::SingleLeg);
    if (m_OCANext.Get() != nullptr || m_OCAPrevious != nullptr) {
        category.Set(m_Bracket.IsSetAndTrue() ? COXOrderCategoryX::OCO : COXOrderCategoryX::OCA);
    }
    if (m_OSOParent != nullptr) category.Set(COXOrderCategoryX::OSOChild);
    if (!m_OSOChildren.empty()) category.Set(COXOrderCategoryX::OSOParent);
    constexpr DWORD kGrouped = COXOrderCategoryX::OCO | COXOrderCategoryX::OCA |
                               COXOrderCategoryX::OSOParent | COXOrderCategoryX::OSOChild;
    if (!category.HasAny(kGrouped)) category.Set(COXOrderCategoryX::Simple);
    return category;
}

ULONG COrderBarProperties::GetAdditionalLegCount() const {
    return m_LegCount.valid ? static_cast<ULONG>(static_cast<LONG>(m_LegCount.value)) : 0;
}

QVOrderLeg* COrderBarProperties::GetAdditionalLeg(ULONG index) {
    return const_cast<QVOrderLeg*>(std::as_const(*this).GetAdditionalLeg(index));
}

const QVOrderLeg* COrderBarProperties::GetAdditionalLeg(ULONG index) const {
    if (!m_LegCount.valid || m_LegCount.value < 0) return nullptr;
    if (index >= static_cast<ULONG>(m_LegCount.value) || index >= 3) return nullptr;
    return &m_Legs[index];
}

}  // namespace qvox
