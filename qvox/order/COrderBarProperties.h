// COrderBarProperties: the order an application composes. One flat record of validated fields
// (a field without its mark is "not specified"), and the links that tie it to related orders:
// the chain of a one-cancels-all group (m_OCANext / m_OCAPrevious) and the tree of
// one-sends-other children (m_OSOChildren / m_OSOParent).
//
// Ownership: the application owns the root of a graph. Every other record belongs to the link
// that points to it when that link owns it, otherwise to whoever added it. Destroying a record
// destroys what its owning links hold, to any depth. No operation of the record recurses with the
// size of the graph: chains of any length and trees of any depth are built, copied, searched and
// destroyed with a constant stack.
//
// The members are defined by concern: the record in COrderBarProperties.cpp, the groups in
// COrderBarPropertiesGroups.cpp, brackets, defaults and rules in their own files beside them,
// and the advanced options string and auto prices in interchange/.
#pragma once

#include <vector>

#include "qvox/order/QVOrderLeg.h"
#include "qvox/order/ValidDataT.h"
#include "qvox/order/ValidString.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/Variant.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {

class COrderBarProperties;

// Which auto price rule of a record is meant.
enum eQVAPType : int {
    APTypeLimit = 0,      // m_AutoPrice
    APTypeStop = 1,       // m_StopAutoPrice
    APTypeIfTouched = 2,  // m_LITAutoPrice
    APTypeThird = 3,      // m_AutoPrice3
    APTypeLimitAlso = 4,  // m_AutoPrice
};

// Bits of GetAdvancePropertyAsString's omitFlags.
inline constexpr ULONG AdvStringOmitTail = 1;       // stop after the trailing stop item
inline constexpr ULONG AdvStringOmitTrailing = 2;   // no trailing stop item
inline constexpr ULONG AdvStringOmitAutoPrice = 4;  // plain if-touched price, then stop

// A downward link that may own its record. Assigning moves ownership and leaves the source's
// pointer readable: after d = s, d holds s's target and s's owns flag is off.
class OrderLink {
  public:
    OrderLink() = default;
    OrderLink(COrderBarProperties* target, bool owns) : m_target(target), m_owns(owns) {}
    // Deletes the target if the link owns it.
    ~OrderLink();
    // Takes the target and the ownership; the source keeps its target as a plain value.
    OrderLink(OrderLink& source) noexcept;
    OrderLink(OrderLink&& source) noexcept;
    // Different targets: deletes this link's own target if it owns it, then takes the source's
    // target and owns flag. Equal targets: the owns flag is set if the source's is. In both
    // cases the source's owns flag goes off. Assigning a link to itself changes nothing.
    OrderLink& operator=(OrderLink& source) noexcept;
    OrderLink& operator=(OrderLink&& source) noexcept;

    COrderBarProperties* Get() const { return m_target; }
    bool Owns() const { return m_owns; }
    // Points at target with the given owns flag, deleting a different owned target first.
    void Reset(COrderBarProperties* target = nullptr, bool owns = false);
    // Gives up ownership without deleting; the target stays readable. Returns the target.
    COrderBarProperties* Release() noexcept {
        m_owns = false;
        return m_target;
    }

  private:
    COrderBarProperties* m_target = nullptr;
    bool m_owns = false;
};

class COrderBarProperties {
  public:
    // Where an order of a bracket stands: with the limit and market orders of its side, or
    // with the stop orders.
    enum BracketSide : int {
        BracketSideLower = 0,
        BracketSideUpper = 1,
    };

    enum ECopyMode : int {
        eCopyFromRoot = 1,        // mode 4 from the source's root onto the target's root
        eCopyOrderOnly = 2,       // the fields marked "all" and the legs; no group field, no link
        eCopyFromOCAFirst = 3,    // mode 4 from the first of the source's chain onto the target's
        eCopyWithRelations = 4,   // order, group fields, the rest of the chain, the children
        eCopyWithoutOCANext = 5,  // as 4, without the rest of the chain
    };

    // Empty: no field has the mark, no link. Numbers start at 0.
    COrderBarProperties() = default;
    // An empty record with m_Bracket false and marked, then Copy(source, mode). In the default
    // mode this is a clone of the source's whole graph, from its root.
    COrderBarProperties(const COrderBarProperties& source, ECopyMode mode = eCopyFromRoot);
    // Destroys the owned relations, without recursion.
    ~COrderBarProperties();
    // Copy with eCopyOrderOnly: the marked fields of the source overlay this record.
    COrderBarProperties& operator=(const COrderBarProperties& source);

    // ---- The record ----

    // See ECopyMode. An unknown mode changes nothing. Returns this record.
    COrderBarProperties& Copy(const COrderBarProperties& source, ECopyMode mode);
    // The compared fields and the legs in use; text fields by text alone, numbers by their
    // marked value. Group fields and links stay out: orders of different groups can be equal.
    bool operator==(const COrderBarProperties& other) const;
    bool operator!=(const COrderBarProperties& other) const { return !(*this == other); }
    // Turns off the mark of every field but the legs, m_EffectiveParentPrice and
    // m_OrderCategoryOverride. Values stay; related orders are not touched.
    void InValidAll();

    // m_OrderType as the word of the type, with the mark.
    void SetOrderType(EMVOrderType type);
    // The type of the text of m_OrderType, whatever its mark; 0 for an unknown text.
    EMVOrderType GetOrderType() const;
    // The main price: the stop price field for stop orders, the limit price field otherwise.
    // The setters mark; the getters do not look at the mark.
    void SetPrice(double price);
    double GetPrice() const;
    // The other price of the order type.
    void SetStopPrice(double price);
    double GetStopPrice() const;
    void SetLimitPriceRaw(double price) { m_LimitPriceRaw = price; }
    double GetLimitPriceRaw() const { return m_LimitPriceRaw.value; }
    void SetStopPriceRaw(double price) { m_StopPriceRaw = price; }
    double GetStopPriceRaw() const { return m_StopPriceRaw.value; }

    // The quantity in lots. For a count of shares ('#'), m_Quantity / lot size; a quantity
    // below one lot is taken to be a count of lots already, and m_Quantity becomes that many
    // lots' worth. Unmarked without quantity or quantity type. A lot size of 0 counts as 1.
    ValidDataT<LONG> GetLots();
    // m_Quantity from lots; nothing without a marked argument and quantity type.
    void SetLots(ValidDataT<LONG> lots);

    // The side and open/close codes of an action for a symbol category, on this record.
    bool SetOrderAction(EMVOrderAction action, ULONG category);
    // The action that the side and open/close codes say; unknown for anything unreadable.
    EMVOrderAction GetOrderAction() const;
    // Writes the codes of an action for a category: futures 'B'/'S', equities 'B' 'T' 'S' 'C',
    // options a side with 'O' or 'C'. False, with nothing written, for a combination that does
    // not exist (every action in other categories, forex included).
    static bool CalcOrderAction(ValidDataT<SHORT>& side, ValidDataT<SHORT>& openClose,
                                EMVOrderAction action, ULONG category);

    // The bits of the record's place: legs, chain (OCO for a bracket, else OCA), parent, children.
    CTLBitFlagHelperWrapper<COXOrderCategoryX> GetOrderCategory() const;
    // Turns off the mark of m_LocalOrderID here and on everything behind and below.
    void ResetOrderID();

    // m_LegCount as stored (it counts the main leg), 0 without the mark.
    ULONG GetAdditionalLegCount() const;
    // The slot of m_Legs; null without a marked m_LegCount, for an index not below it, or past
    // the three slots.
    QVOrderLeg* GetAdditionalLeg(ULONG index);
    const QVOrderLeg* GetAdditionalLeg(ULONG index) const;
    const CString& GetOCAGroupName() const { return m_OCAGroupName.GetText(); }
    // Walks the chain and the children, a level deeper per generation; writes nothing.
    void Dump(int depth);

    // ---- The groups ----

    COrderBarProperties* GetOCANext() const { return m_OCANext.Get(); }
    COrderBarProperties* GetOCAPrevious() const { return m_OCAPrevious; }
    bool IsOCAFirst() const { return m_OCAPrevious == nullptr; }
    bool IsOCALast() const { return m_OCANext.Get() == nullptr; }
    // The ends of this order's chain.
    COrderBarProperties* GetOCAFirst() const;
    COrderBarProperties* GetOCALast() const;
    COrderBarProperties* GetOSOParent() const { return m_OSOParent; }
    ULONG GetOSOChildCount() const { return static_cast<ULONG>(m_OSOChildren.size()); }
    // The first order of that child chain; null for an index not below the count.
    COrderBarProperties* GetOSOChild(ULONG index) const {
        return index < m_OSOChildren.size() ? m_OSOChildren[index].Get() : nullptr;
    }
    // Parent steps up to the top chain; 0 there.
    int GetGenerationCount() const;
    // Up the parents, then to the first order of that chain.
    COrderBarProperties* GetRootOrder() const;
    // The length of a bracket chain; 0 for an order outside one.
    int GetNumberOfOCO() const;
    // Whether p is this order or lies behind or below it (bFromHere), or anywhere in this
    // order's graph (not bFromHere). Null gives false.
    bool OrderContainsOrder(const COrderBarProperties* p, bool bFromHere) const;

    // Turns two OSO children into one chain: other goes behind this order's chain, with a link
    // that does not own, and leaves its parent's list. Null unless one of the two is a child.
    COrderBarProperties* CreateOCAGroup(COrderBarProperties* other);
    // Takes this child chain apart. Null unless this order is a child in a chain.
    COrderBarProperties* UnGroupOCA();
    // Puts p (with whatever follows it) behind this order's chain. Null if p has a parent, is
    // this order or is already in the graph, or if p is a bracket order and this one is not.
    COrderBarProperties* AddOrderToOCAGroup(COrderBarProperties* p, bool bOwned);
    // Adds an owned clone of order (from its root); null unless order stands alone.
    COrderBarProperties* AddOrderToOCAGroup(const COrderBarProperties& order);
    // Hangs p's whole chain below this order; returns its first order. Refusals as above.
    COrderBarProperties* AddOSOChildOrder(COrderBarProperties* p, bool bOwned);
    COrderBarProperties* AddOSOChildOrder(const COrderBarProperties& order);
    // Takes p out of the graph below this order; p is deleted if a link owned it. False if p is
    // this order or not behind or below it.
    bool RemoveOrder(const COrderBarProperties* p);
    // As RemoveOrder from the root; a bracket order goes with its partner of the pair.
    bool RemoveOrderWithRules(const COrderBarProperties* p);

    // ---- Brackets (COrderBarPropertiesBrackets.cpp) ----

    // m_Bracket; an unset flag is false.
    bool IsBracket() const { return m_Bracket.IsSetAndTrue(); }
    // m_Bracket on this order alone, with the mark.
    void SetBracketFlag(bool bracket) { m_Bracket = bracket; }
    // m_Bracket, with the mark, on every order of this order's chain.
    void UpdateGroupBracketFlag(bool bracket);
    // Whether this order belongs to the first pair of a bracket chain.
    bool IsBrkFirst() const;
    // The number of pairs of a bracket chain.
    int GetNumberOfBracket() const { return GetNumberOfOCO() / 2; }
    // A buy ('B' or 'C') limit or market order, and a sell stop order, are lower; the rest upper.
    BracketSide CheckBracketSide() const;
    // Whether this order's chain, whatever its flag, holds more than one order of one account,
    // symbol, side and open/close, with a limit or market order and a stop order among them.
    bool IsOCOBracket() const;
    // Carries one changed property (11 side, 15 quantity, 23 symbol, 30 account, 33 symbol
    // category) to the partner of this order's pair, or to the whole chain; other identifiers
    // do nothing.
    void UpdateBracketProperty(ULONG propertyID, bool bPartnerOnly);
    // Rewrites every bracket chain from this order down into pairs of equal quantities,
    // splitting orders where needed. False, with the chain left as it was, when the orders of a
    // bracket differ in order key, account, symbol or side, or when all of them stand on one
    // side, so that no pair can form. The head of a chain stays its head: a head that stands with
    // the stop orders is the partner of the first order of the other side. The new halves of a
    // split belong to their links; in a child chain they take the chain's parent like every order
    // of it. Orders that find no partner leave the chain, and are deleted if their link owned
    // them.
    bool VerifyAndAdjustBracket();

    // ---- Defaults (COrderBarPropertiesDefaults.cpp) ----

    // The factory values of the symbol category (0 futures, 2 equities, 3 and 8 options, 12
    // forex; others do nothing), then the user's saved ones. Without bOverwrite only fields
    // without the mark are filled, and the saved values cannot reach a field.
    void LoadDefaults(ULONG category, bool bOverwrite);
    void LoadEquitiesDefaults(bool bOverwrite);
    void LoadOptionsDefaults(bool bOverwrite);
    void LoadFuturesDefaults(bool bOverwrite);
    void LoadForexDefaults(bool bOverwrite);
    // The advanced switches off (0, with the mark): 0 and 12 the futures form, 2, 3 and 8 the
    // equities form, which leaves m_Peg alone.
    void LoadAdvanceDefaults(ULONG category, bool bOverwrite);
    void LoadEquitiesAdvancedSettingsDefaults(bool bOverwrite);
    void LoadOptionsAdvancedSettingsDefaults(bool bOverwrite);
    void LoadFuturesAdvancedSettingsDefaults(bool bOverwrite);
    void LoadForexAdvancedSettingsDefaults(bool bOverwrite);
    // Writes duration, route, type, quantity and quantity type to the key keyPath below
    // HKEY_CURRENT_USER, creating it; marks are not looked at. Nothing is reported.
    void SaveDefaults(const char* keyPath) const;

    // ---- Rules (COrderBarPropertiesRules.cpp) ----

    // Whether every chain from this order down has one account; on failure the message goes to
    // error.
    bool IsValidRelation(CString& error) const;
    // Whether every order from this order down has a side.
    bool IsValidAction() const;
    // Whether p may be deleted: not the top of its graph, nor the second order of a bracket at
    // the top. Looks at p's graph alone; null gives false.
    bool CanDelete(const COrderBarProperties* p) const;
    // Whether something other than the market decides when the order goes out: a condition, an
    // activation time, an OSO parent with a tag, an if-touched auto price.
    bool CanSendAutoPrice() const;
    // Moves the order to another symbol category, restating side and open/close in its terms.
    // A record whose category has no mark is only given the new one.
    void UpdateOrderPropertyAccordingToCategory(LONG newCategory);
    // The advanced options off by their marks, or off by their values.
    void InvalidateAdvanceOption();
    void RestAllAdvanceOption();
    // The auto price fields as display words, with the mark; AutoPriceNone empties the text.
    void SetAutoPrice(EOXAutoPrice autoPrice);
    void SetStopAutoPrice(EOXAutoPrice autoPrice);
    void SetLITAutoPrice(EOXAutoPrice autoPrice);
    EOXAutoPrice GetAutoPrice() const;
    // The increment word of the category, with the mark; 0 empties the text and keeps the mark.
    void SetAutoPriceIncrement(int increment, ULONG category);
    int GetAutoPriceIncrement() const;
    void SetStagedOrderLifeSpan(StageOrderLifeSpan lifeSpan) { m_StagedLifeSpan = lifeSpan; }
    StageOrderLifeSpan GetStagedOrderLifeSpan() const {
        return static_cast<StageOrderLifeSpan>(m_StagedLifeSpan.value);
    }

    // ---- The advanced options string (interchange/COrderBarPropertiesAdvanced.cpp) ----

    // The advanced options of the record as the server reads them, items in their fixed
    // order; the two times in GMT with bToGMT, else in local time.
    CString GetAdvancePropertyAsString(bool bToGMT, ULONG omitFlags) const;
    // The server word of an auto price with its offset in moves: "IMP2;" and the like, or with
    // bDollars the price-unit form "IMPD0.020000;". "" for the kinds that are never sent.
    CString GetAutoPriceStringForServer(EOXAutoPrice kind, double offset, bool bDollars) const;
    // Fills the advanced fields from such a string; with bFromGMT its times are GMT. Never fails:
    // what cannot be read reads as 0 or is skipped.
    void SetAdvancePropertyFromString(const CString& text, bool bFromGMT);

    // ---- Auto price (interchange/COrderBarPropertiesAutoPrice.cpp) ----

    // The price the order would have now: its auto price rules applied to the market, the
    // parent's effective price and its trailing stop, picked by the order type. Note the order
    // of the arguments: bid, ask, last.
    double GetEffectivePrice(double bid, double ask, double last) const;
    // The OSO parent's effective price; without a parent m_EffectiveParentPrice (0.0 unset).
    double GetEffectiveParentPrice(double bid, double ask, double last) const;
    // Stores each child's view of this record's effective price, down the whole tree.
    void SetEffectiveParentPrice(double bid, double ask, double last);
    // Whether the chosen auto price rule takes an offset; false when the field is unset or
    // empty, or for a value outside the five types.
    bool IsAutopriceOffsetNeeded(eQVAPType type) const;

    // ---- Property exchange (interchange/COrderBarPropertiesExchange.cpp) ----
    // A new property object of the platform holding every marked field under its property
    // number, in its wire type, with the legs, the OSO children and (on the head of a chain) the
    // OCA followers nested inside. Number 81 is always there. Raises _com_error when the platform
    // gives no object (E_POINTER) or refuses a store.
    IDispatchPtr GetOrderProperties() const;
    // Fills this record from a property object: each number present replaces its field and
    // marks it; absent numbers leave their fields alone. Legs go into m_Legs, OSO children and
    // OCA followers become new records owned by their links. Nothing happens for a null object
    // or one that is no property object. Raises _com_error for a value that does not convert to
    // its field's type, and for a store or fetch the platform fails. A follower or child that
    // the group refuses is deleted with everything hanging on it. A property object met a second
    // time in one read (one that contains itself, or one shared by two parents) is read once. An
    // m_LegCount outside 0 to 4 is not taken.
    void SetOrderProperties(IDispatchPtr object);
    // The marked field of number into value, in its wire type. False, value untouched, for an
    // unmarked field, for the numbers that only travel inside objects (57-59, 75, 78-80, 89) and
    // for numbers outside 0-91. Number 77 unmarked gives true and VT_EMPTY; number 81 always
    // gives the category.
    bool GetOrderProperty(int number, VARIANT& value) const;
    // Sets one property, with its side effects on the paired fields; extra is the second value
    // that some numbers look at. False when the number is none of the table's or the value does
    // not fit (with bStrict, a value of another type never fits).
    bool SetOrderProperty(int number, const VARIANT& value, const VARIANT& extra, bool bStrict);
    // One field from a value: its own wire type is taken as it is; another type is refused with
    // bStrict and converted by VariantChangeType otherwise. True when the field took the value
    // (and its mark). Of a VT_BOOL only -1 is true. A 32-bit signed field travels as VT_I4 or,
    // with native VT_INT, as VT_INT: the C++ type can't tell them apart.
    static bool SetPropertyValue(ValidString& field, const VARIANT& value, bool bStrict);
    static bool SetPropertyValue(ValidDataT<double>& field, const VARIANT& value, bool bStrict);
    static bool SetPropertyValue(ValidDataT<ULONG>& field, const VARIANT& value, bool bStrict);
    static bool SetPropertyValue(ValidDataT<LONG>& field, const VARIANT& value, bool bStrict,
                                 VARTYPE native = VT_I4);
    static bool SetPropertyValue(ValidDataT<SHORT>& field, const VARIANT& value, bool bStrict);
    static bool SetPropertyValue(ValidDataT<bool>& field, const VARIANT& value, bool bStrict);

    // ---- Fields, in declared order ----

    ValidString m_OrderKey;
    ValidString m_Account;
    ValidString m_Duration;
    ValidString m_Text9;
    ValidString m_OrderType;
    ValidString m_PegValue;
    ValidString m_Route;
    ValidString m_Symbol;
    ValidString m_AutoPrice;
    ValidString m_AutoPriceIncrement;
    ValidString m_StopTrigger;
    ValidString m_IfTouchedTrigger;
    ValidString m_Text40;
    ValidString m_Text41;
    ValidString m_Text62;
    ValidString m_Text64;
    ValidString m_Condition;
    ValidString m_StopAutoPrice;
    ValidString m_AutoPrice3;
    ValidString m_LITAutoPrice;
    ValidDataT<double> m_LITAutoPriceOffset;
    ValidDataT<double> m_StopAutoPriceOffset;
    ValidDataT<double> m_AutoPrice3Offset;
    ValidDataT<double> m_Real46;
    ValidDataT<double> m_DurationDate;
    ValidDataT<double> m_DiscretionaryAmount;
    ValidDataT<double> m_LimitPriceRaw;
    ValidDataT<double> m_Real47;
    ValidDataT<double> m_StopPriceRaw;
    ValidDataT<double> m_Bid;
    ValidDataT<double> m_Ask;
    ValidDataT<double> m_Real44;
    ValidDataT<double> m_IfTouchedPrice;
    ValidDataT<double> m_ActivationTime;
    ValidDataT<double> m_ExpirationTime;
    ValidDataT<double> m_TrailAmount;
    ValidDataT<double> m_MinMove;
    ValidDataT<double> m_PieceValue;
    ValidDataT<double> m_EffectiveParentPrice;
    ValidDataT<ULONG> m_ULong27;
    ValidDataT<ULONG> m_ULong28;
    ValidDataT<ULONG> m_ULong34;
    ValidDataT<ULONG> m_LocalOrderID;
    ValidDataT<ULONG> m_OrderCategoryOverride;
    ValidDataT<LONG> m_Exchange;
    ValidDataT<LONG> m_Quantity;
    ValidDataT<LONG> m_SymbolCategory;
    ValidDataT<LONG> m_ShowQuantity;
    ValidDataT<LONG> m_Long26;
    ValidDataT<LONG> m_Long63;
    ValidDataT<LONG> m_StagedLifeSpan;
    ValidDataT<LONG> m_LotSize;
    ValidDataT<LONG> m_Tag;
    ValidDataT<SHORT> m_Side;
    ValidDataT<SHORT> m_PriceScale;
    ValidDataT<SHORT> m_Short8;
    ValidDataT<SHORT> m_Short36;
    ValidDataT<SHORT> m_Short38;
    ValidDataT<SHORT> m_Short39;
    ValidDataT<SHORT> m_Short45;
    ValidDataT<SHORT> m_QuantityType;
    ValidDataT<SHORT> m_Short82;
    ValidDataT<SHORT> m_AllOrNone;
    ValidDataT<SHORT> m_ECNSweep;
    ValidDataT<SHORT> m_BuyOnMinus;
    ValidDataT<SHORT> m_Discretionary;
    ValidDataT<SHORT> m_NonDisplay;
    ValidDataT<SHORT> m_ShortExempt;
    ValidDataT<SHORT> m_ShowOnly;
    ValidDataT<SHORT> m_Peg;
    ValidDataT<SHORT> m_Short21;
    ValidDataT<SHORT> m_SubscriberOnly;
    ValidDataT<SHORT> m_TrailType;
    ValidDataT<SHORT> m_ActivationRule;
    ValidDataT<SHORT> m_IfTouchedType;
    ValidDataT<SHORT> m_STA;
    ValidDataT<bool> m_Flag89;
    ValidDataT<SHORT> m_LegCount;
    ValidDataT<SHORT> m_OpenClose;
    ValidDataT<SHORT> m_Short73;
    QVOrderLeg m_Legs[3];
    ValidString m_OCAGroupName;
    ValidString m_OCAGroupTag;
    ValidString m_OSOParentTag;
    ValidString m_OSOTag;
    ValidDataT<bool> m_Bracket;
    ValidString m_Locate;
    ValidString m_LocateTag;

  protected:
    // The order of this graph that stands where target stands in reference's graph, both
    // graphs having the same shape from this order and reference on. Walks next orders and
    // first children only; null when the path leaves this graph.
    COrderBarProperties* FindMatchingOrder(const COrderBarProperties& reference,
                                           const COrderBarProperties& target);

  private:
    friend class OrderLink;

    // The effective price given the parent's, with no walk up the tree.
    double EffectivePriceWithParent(double bid, double ask, double last, double parent) const;

    // The fields marked "all", then the legs in use; then, for the group modes, the group fields.
    void MergeFields(const COrderBarProperties& source, bool withGroupFields);
    // Modes 4 and 5 onto this record.
    void CopyWithRelations(const COrderBarProperties& source, bool withNext);
    // Takes every owned record below this one off its links and deletes them, breadth first.
    void DestroyOwned() noexcept;
    // Gives p and every order behind it the parent.
    static void SetChainParent(COrderBarProperties* first, COrderBarProperties* parent);
    // Removes the list link to child from this order's children; deletes child if it owned it.
    bool RemoveChildLink(const COrderBarProperties* child);
    // The bracket rewrite of the chain this order heads; false when it is left as it was.
    bool AdjustBracketChain();
    // Whether p already belongs to this order's graph, from the roots of both.
    bool GraphHolds(const COrderBarProperties* p) const;

    OrderLink m_OCANext;
    COrderBarProperties* m_OCAPrevious = nullptr;
    std::vector<OrderLink> m_OSOChildren;
    COrderBarProperties* m_OSOParent = nullptr;
};

}  // namespace qvox
