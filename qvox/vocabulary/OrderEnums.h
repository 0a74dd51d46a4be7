// The numbered vocabulary of orders: symbol categories, the bit sets of an order's place in a
// group, and the enumerations whose numbers are stored in order records and exchanged with the
// platform. The numbers are interface and never change.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

// Symbol categories: what kind of symbol an order trades.
inline constexpr ULONG SymbolCategoryFuture = 0;
inline constexpr ULONG SymbolCategoryFutureOption = 1;  // options on futures
inline constexpr ULONG SymbolCategoryStock = 2;
inline constexpr ULONG SymbolCategoryStockOption = 3;
inline constexpr ULONG SymbolCategoryOtherUnderlying = 4;  // underlying of category 8
inline constexpr ULONG SymbolCategoryOtherOption = 8;      // listed like category 3 everywhere
inline constexpr ULONG SymbolCategoryForex = 12;
inline constexpr ULONG SymbolCategoryInvalid = 254;

// A bit set of class T as it crosses the library's interface: the one 32-bit word.
template <class T>
class CTLBitFlagHelperWrapper {
  public:
    constexpr CTLBitFlagHelperWrapper() = default;
    constexpr explicit CTLBitFlagHelperWrapper(DWORD bits) : m_bits(bits) {}
    constexpr CTLBitFlagHelperWrapper(const T& flags) : m_bits(flags.GetBits()) {}  // NOLINT

    constexpr T Get() const { return T(m_bits); }
    constexpr operator T() const { return T(m_bits); }  // NOLINT
    constexpr DWORD GetBits() const { return m_bits; }
    friend constexpr bool operator==(CTLBitFlagHelperWrapper, CTLBitFlagHelperWrapper) = default;

  private:
    DWORD m_bits = 0;
};

// The common part of the bit set classes: a 32-bit word that starts at 0, copied by value.
template <class Derived>
class COXBitFlags {
  public:
    constexpr COXBitFlags() = default;
    constexpr explicit COXBitFlags(DWORD bits) : m_bits(bits) {}

    constexpr DWORD GetBits() const { return m_bits; }
    constexpr void SetBits(DWORD bits) { m_bits = bits; }
    constexpr void Set(DWORD bits) { m_bits |= bits; }
    constexpr void Clear(DWORD bits) { m_bits &= ~bits; }
    constexpr void Reset() { m_bits = 0; }
    // True if any of the bits is set.
    constexpr bool HasAny(DWORD bits) const { return (m_bits & bits) != 0; }
    friend constexpr bool operator==(const COXBitFlags&, const COXBitFlags&) = default;

  protected:
    DWORD m_bits = 0;
};

// An order's place in a group, as COrderBarProperties::GetOrderCategory gives it.
class COXOrderCategoryX : public COXBitFlags<COXOrderCategoryX> {
  public:
    static constexpr DWORD SingleLeg = 1;   // the order has one leg
    static constexpr DWORD MultiLeg = 2;    // the order has more than one leg
    static constexpr DWORD Simple = 4;      // the order stands alone: none of the next four
    static constexpr DWORD OCO = 8;         // member of an OCO group
    static constexpr DWORD OCA = 16;        // member of an OCA group
    static constexpr DWORD OSOParent = 32;  // has OSO children
    static constexpr DWORD OSOChild = 64;   // is an OSO child

    using COXBitFlags::COXBitFlags;

    constexpr bool IsSingle() const { return HasAny(SingleLeg); }
    constexpr bool IsSingleLeg() const { return HasAny(SingleLeg); }
    constexpr bool IsMultiLeg() const { return HasAny(MultiLeg); }
    constexpr bool IsSpread() const { return HasAny(MultiLeg); }
    constexpr bool IsSimple() const { return HasAny(Simple); }
    constexpr bool IsOCO() const { return HasAny(OCO); }
    constexpr bool IsOCA() const { return HasAny(OCA); }
    constexpr bool IsOSOParent() const { return HasAny(OSOParent); }
    constexpr bool IsOSOChild() const { return HasAny(OSOChild); }
    // Part of some group: the simple bit is clear (so a word of 0 counts as multi).
    constexpr bool IsMulti() const { return !HasAny(Simple); }
    constexpr bool IsOCOorOCA() const { return HasAny(OCO | OCA); }
    constexpr bool IsOSO() const { return HasAny(OSOParent | OSOChild); }
};

// The contexts in which an order may be shown or acted on.
class COXOrderContextFlagX : public COXBitFlags<COXOrderContextFlagX> {
  public:
    static constexpr DWORD CtxAny = 1;
    static constexpr DWORD CtxSingle = 2;
    static constexpr DWORD CtxSpread = 4;
    static constexpr DWORD CtxCancelable = 8;

    using COXBitFlags::COXBitFlags;

    constexpr bool HasCtxAny() const { return HasAny(CtxAny); }
    constexpr bool HasCtxSingle() const { return HasAny(CtxSingle); }
    constexpr bool HasCtxSpread() const { return HasAny(CtxSpread); }
    constexpr bool HasCtxCancelable() const { return HasAny(CtxCancelable); }
};

enum EMVOrderAction : LONG {
    OrderActionUnknown = 0,
    OrderActionBuy = 1,
    OrderActionSellShort = 2,
    OrderActionSell = 3,
    OrderActionBuyToCover = 4,
};

enum EMVOrderType : LONG {
    OrderTypeUnknown = 0,
    OrderTypeLimit = 1,
    OrderTypeMarket = 2,
    OrderTypeStopLimit = 3,
    OrderTypeStopMarket = 4,
    OrderTypeClose = 5,
};

// How a price is derived from the market. 16 to 21 come only from the server ("D" forms, whose
// offset is a number of min moves) and have no display text of their own.
enum EOXAutoPrice : LONG {
    AutoPriceNone = 0,
    AutoPriceJoin = 1,
    AutoPriceImprove = 2,
    AutoPriceSplit = 3,
    AutoPriceShave = 4,
    AutoPriceHitTake = 5,
    AutoPriceHitTakePlus = 6,
    AutoPriceBid = 7,
    AutoPriceAsk = 8,
    AutoPriceLast = 9,
    AutoPriceOffsetBid = 10,
    AutoPriceOffsetAsk = 11,
    AutoPriceOffsetLast = 12,
    AutoPriceOffsetPrimary = 13,
    AutoPriceOffsetStop = 14,
    AutoPriceOffsetIfTouched = 15,
    AutoPriceImproveD = 16,
    AutoPriceShaveD = 17,
    AutoPriceHitTakePlusD = 18,
    AutoPriceOffsetPrimaryD = 19,
    AutoPriceOffsetStopD = 20,
    AutoPriceOffsetIfTouchedD = 21,
};

enum EnumTrailingStop : LONG {
    TrailingNone = 0,
    TrailingPoints = 1,
    TrailingPercent = 2,
};

enum EnumIfTouch : LONG {
    IfTouchNone = 0,
    IfTouchMarket = 1,
    IfTouchLimit = 2,
};

// What happens to a staged order once it is sent. 0 stands for no value.
enum StageOrderLifeSpan : LONG {
    StageOrderLifeSpanNone = 0,
    StageOrderLifeSpanPersist = 1,
    StageOrderLifeSpanClearUponSend = 2,
};

// The order states, numbered as the codes of g_OrderDisplayStatus.
enum State : DWORD {
    StateReceived = 1,
    StateBroken = 2,
    StateCanceled = 3,
    StateChange = 4,
    StateDispatch = 5,
    StateDead = 6,
    StateExpired = 7,
    StateFilled = 8,
    StatePartialFillUROut = 9,
    StatePartialFillAlive = 10,
    StateTooLateToCancel = 11,
    StateSent = 12,
    StateUROut = 13,
    StateRejected = 14,
    StateOrderStatusMessage = 15,
    StateReplaced = 16,
    StateCancelSent = 17,
    StateFillCorrected = 18,
    StateTradeServerCanceled = 19,
    StateSending = 20,
    StateCancelRequestRejected = 21,
    StateUnsent = 22,
    StateQueued = 23,
    StateChangeRequestRejected = 24,
    StateStopHit = 25,
    StateReplaceSent = 26,
    StateConditionMet = 27,
    StateOptionAssignment = 28,
    StateBracketCancelled = 29,
    StateBracketFilled = 30,
    StateExpirationCancelRequest = 31,
    StateOptionExercise = 32,
    StateOSOOrder = 33,
    StateBigBrotherRecallRequest = 34,
    StateBigBrotherRecall = 35,
};

// The platform's connection state, folded: 0 to 2 pass as the platform gives them, anything
// else is ConnectionStateOther.
enum EOXConnectionState : LONG {
    ConnectionStateDisconnected = 0,
    ConnectionStateConnecting = 1,
    ConnectionStateConnected = 2,
    ConnectionStateOther = 3,
};

}  // namespace qvox
