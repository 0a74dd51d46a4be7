// The order's property exchange with the platform: whole graphs to and from nested property
// objects, and single properties with their side effects. The numbers and wire types come from
// OrderPropertyTable.h; the wire type of a value is decided by its number, never by the C++ type
// of its field.
//
// Graphs of any depth go both ways without recursion: an explicit stack of frames stands in for
// the nesting of objects, so a tree 10,000 generations deep costs heap, not stack.
#include <array>
#include <cstring>
#include <memory>
#include <unordered_set>
#include <vector>

#include "qvox/interchange/OrderPropertyTable.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/price/Helper.h"

namespace qvox {

using C = COrderBarProperties;

namespace {

// ---- Values of fields ----

// Calls f with the field of row in record.
// The wire type names the kind of field, so one switch finds it.
template <class R, class Record, class F>
void VisitField(const PropertyRow<R>& row, Record& record, F&& f) {
    switch (row.vt) {
        case VT_BSTR:
            if (row.text) f(record.*row.text);
            break;
        case VT_R8:
            if (row.real) f(record.*row.real);
            break;
        case VT_UI4:
            if (row.ulong) f(record.*row.ulong);
            break;
        case VT_I4:
        case VT_INT:
            if (row.integer) f(record.*row.integer);
            break;
        case VT_I2:
            if (row.shortint) f(record.*row.shortint);
            break;
        case VT_BOOL:
            if (row.flag) f(record.*row.flag);
            break;
        default:
            break;
    }
}

bool IsMarked(const ValidString& field) {
    return field.IsValid();
}
template <class T>
bool IsMarked(const ValidDataT<T>& field) {
    return field.valid;
}

void Unmark(ValidString& field) {
    field.Invalid();
}
template <class T>
void Unmark(ValidDataT<T>& field) {
    field.valid = false;
}

// The value of a field as a VARIANT of the wire type vt.
void Put(VARIANT& v, VARTYPE vt, const ValidString& field) {
    v.bstrVal = SysAllocStringFromCp1252(field.GetText().view());
    if (!v.bstrVal) _com_issue_error(E_OUTOFMEMORY);
    v.vt = vt;
}
void Put(VARIANT& v, VARTYPE vt, const ValidDataT<double>& field) {
    v.dblVal = field.value;
    v.vt = vt;
}
void Put(VARIANT& v, VARTYPE vt, const ValidDataT<ULONG>& field) {
    v.ulVal = field.value;
    v.vt = vt;
}
void Put(VARIANT& v, VARTYPE vt, const ValidDataT<LONG>& field) {
    if (vt == VT_INT) {
        v.intVal = field.value;
    } else {
        v.lVal = field.value;
    }
    v.vt = vt;
}
void Put(VARIANT& v, VARTYPE vt, const ValidDataT<SHORT>& field) {
    v.iVal = field.value;
    v.vt = vt;
}
void Put(VARIANT& v, VARTYPE vt, const ValidDataT<bool>& field) {
    v.boolVal = field.value ? VARIANT_TRUE : VARIANT_FALSE;
    v.vt = vt;
}

// The value of a VARIANT that has the field's wire type.
void Take(ValidString& field, const VARIANT& v) {
    field = CString(Cp1252FromBstr(v.bstrVal));
}
void Take(ValidDataT<double>& field, const VARIANT& v) {
    field = v.dblVal;
}
void Take(ValidDataT<ULONG>& field, const VARIANT& v) {
    field = v.ulVal;
}
void Take(ValidDataT<LONG>& field, const VARIANT& v) {
    field = v.vt == VT_INT ? v.intVal : v.lVal;
}
void Take(ValidDataT<SHORT>& field, const VARIANT& v) {
    field = v.iVal;
}
void Take(ValidDataT<bool>& field, const VARIANT& v) {
    field = v.boolVal == VARIANT_TRUE;  // only -1 is true
}

template <class Field>
bool SetValue(Field& field, const VARIANT& value, bool bStrict, VARTYPE native) {
    if (value.vt == native) {
        Take(field, value);
        return true;
    }
    if (bStrict) return false;
    _variant_t converted;
    if (FAILED(VariantChangeType(&converted, &value, 0, native))) return false;
    Take(field, converted);
    return true;
}

// Whether the 16 bits at the start of extra's value are not 0.
bool ExtraOn(const VARIANT& extra) {
    std::int16_t bits = 0;
    std::memcpy(&bits, &extra.llVal, sizeof(bits));
    return bits != 0;
}

// ---- Property objects ----

_variant_t Fetch(IMVProperties* object, int number, HRESULT& hr) {
    _variant_t value;
    hr = GetPropertyByNumber(object, number, &value);
    return value;
}

// A fetched value, lent by the object where it can, copied into holder where it can't.
struct Fetched {
    _variant_t holder;
    const VARIANT* value = nullptr;
    HRESULT hr = S_OK;

    Fetched(IMVProperties* object, int number)
        : hr(ReadPropertyByNumber(object, number, holder, &value)) {}
    bool Ok() const { return SUCCEEDED(hr) && value != nullptr; }
};

// Stores value under number and hands it over to the object.
void Store(IMVProperties* object, int number, _variant_t&& value) {
    if (!object) _com_issue_error(E_POINTER);
    ThrowIfFailed(TakePropertyByNumber(object, number, &value));
}

// The numbers an object holds, when it can tell; the reader then asks only for those.
struct Present {
    bool known = false;
    std::array<bool, kLastOrderProperty + 1> numbers{};

    bool MayHold(int number) const { return !known || numbers[static_cast<std::size_t>(number)]; }
};

Present NumbersIn(IMVProperties* object) {
    Present present;
    LONG count = 0;
    if (FAILED(object->GetCount(&count))) return present;
    for (LONG i = 0; i < count; ++i) {
        _variant_t key;
        if (FAILED(object->GetKeyAt(i, &key)) || key.vt != VT_I4) return present;
        if (key.lVal >= 0 && key.lVal <= kLastOrderProperty) {
            present.numbers[static_cast<std::size_t>(key.lVal)] = true;
        }
    }
    present.known = true;
    return present;
}

// Stores every marked field of rows, in order, into object.
template <class R, std::size_t N>
void StoreFields(const R& record, const PropertyRow<R> (&rows)[N], IMVProperties* object) {
    for (const auto& row : rows) {
        VisitField(row, record, [&](const auto& field) {
            if (!IsMarked(field)) return;
            _variant_t value;
            Put(value, row.vt, field);
            Store(object, row.number, std::move(value));
        });
    }
}

// The field of row from a fetched value: text only from VT_BSTR (anything else is the empty
// text), other types by conversion, which raises when it fails.
template <class R>
void ReadField(const PropertyRow<R>& row, R& record, const VARIANT& value) {
    VisitField(row, record, [&](auto& field) {
        using Field = std::remove_reference_t<decltype(field)>;
        if constexpr (std::is_same_v<Field, ValidString>) {
            field = value.vt == VT_BSTR ? CString(Cp1252FromBstr(value.bstrVal)) : CString();
        } else if (value.vt == row.vt) {
            Take(field, value);
        } else {
            _variant_t converted;
            ThrowIfFailed(VariantChangeType(&converted, &value, 0, row.vt));
            Take(field, converted);
        }
    });
}

// The identity of an object: its IUnknown, as every object answers it the same way. Only
// compared: the caller holds the object.
IUnknown* Identity(IUnknown* object) {
    IUnknownPtr identity;
    identity.QueryInterface(object);
    return identity.GetInterfacePtr();
}

// The object a value holds, asked for interface I; null when it holds none or lacks I.
template <class I>
_com_ptr_t<I> ObjectOf(const VARIANT& value) {
    IUnknown* object = nullptr;
    if (value.vt == VT_UNKNOWN) object = value.punkVal;
    if (value.vt == VT_DISPATCH) object = value.pdispVal;
    return object ? _com_ptr_t<I>(_com_ptr_t<IUnknown>(object)) : nullptr;
}

constexpr int kFollowers = 78;
constexpr int kChildren = 79;
constexpr int kBracket = 80;
constexpr int kLegCount = 61;
constexpr int kPieceValue = 56;
constexpr SHORT kMostLegs = 4;  // the main leg and the three of m_Legs

bool LegCountFits(SHORT count) {
    return count >= 0 && count <= kMostLegs;
}

// How many of m_Legs a record uses, bounded by the slots it has.
int LegsInUse(const C& record) {
    if (!record.m_LegCount.valid) return 0;
    const int count = record.m_LegCount.value;
    return count <= 1 ? 0 : (count > kMostLegs ? kMostLegs - 1 : count - 1);
}

}  // namespace

// ---- Single fields ----

bool C::SetPropertyValue(ValidString& field, const VARIANT& value, bool bStrict) {
    return SetValue(field, value, bStrict, VT_BSTR);
}
bool C::SetPropertyValue(ValidDataT<double>& field, const VARIANT& value, bool bStrict) {
    return SetValue(field, value, bStrict, VT_R8);
}
bool C::SetPropertyValue(ValidDataT<ULONG>& field, const VARIANT& value, bool bStrict) {
    return SetValue(field, value, bStrict, VT_UI4);
}
bool C::SetPropertyValue(ValidDataT<LONG>& field, const VARIANT& value, bool bStrict,
                         VARTYPE native) {
    return SetValue(field, value, bStrict, native == VT_INT ? VT_INT : VT_I4);
}
bool C::SetPropertyValue(ValidDataT<SHORT>& field, const VARIANT& value, bool bStrict) {
    return SetValue(field, value, bStrict, VT_I2);
}
bool C::SetPropertyValue(ValidDataT<bool>& field, const VARIANT& value, bool bStrict) {
    return SetValue(field, value, bStrict, VT_BOOL);
}

// ---- Legs ----

IDispatchPtr QVOrderLeg::GetLegProperties() const {
    IMVPropertiesPtr object = NewPropertyObject();
    StoreFields(*this, g_LegProperties, object);
    return object;
}

void QVOrderLeg::SetLegProperties(IDispatchPtr object) {
    const IMVPropertiesPtr properties(object);
    if (!properties) return;
    for (const LegPropertyRow& row : g_LegProperties) {
        const Fetched fetched(properties, row.number);
        if (fetched.Ok()) ReadField(row, *this, *fetched.value);
    }
}

// ---- Whole graphs out ----

namespace {

// The rows in the order GetOrderProperties stores them.
constexpr auto kStoreRows = [] {
    std::array<const OrderPropertyRow*, std::size(g_OrderPropertiesStoreOrder)> rows{};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i] = FindOrderProperty(g_OrderPropertiesStoreOrder[i]);
    }
    return rows;
}();

// One record on its way into a property object: the object, and how far its children and
// followers have come.
struct StoreFrame {
    const C* record = nullptr;
    IMVPropertiesPtr object;
    int stage = 0;  // 0 children, 1 followers, 2 done
    ULONG child = 0;
    const C* follower = nullptr;
    IMVCollectionPtr collection;
};

// The record's own fields and legs into a new object; the frame that finishes it.
StoreFrame BeginStore(const C& record) {
    StoreFrame frame;
    frame.record = &record;
    frame.object = NewPropertyObject();
    IMVProperties* object = frame.object;
    // 81 goes in its place in the order, always: the override, else the computed category.
    for (const OrderPropertyRow* row : kStoreRows) {
        const int number = row->number;
        if (number == 81) {
            const ULONG category = record.m_OrderCategoryOverride.valid
                                       ? record.m_OrderCategoryOverride.value
                                       : record.GetOrderCategory().GetBits();
            Store(object, number, _variant_t(category));
            continue;
        }
        VisitField(*row, record, [&](const auto& field) {
            if (!IsMarked(field)) return;
            _variant_t value;
            Put(value, row->vt, field);
            Store(object, number, std::move(value));
        });
    }
    const int legs = LegsInUse(record);
    for (int i = 0; i < legs; ++i) {
        const IDispatchPtr leg = record.m_Legs[i].GetLegProperties();
        Store(object, 57 + i, _variant_t(leg.GetInterfacePtr()));
    }
    if (record.GetOSOChildCount() > 0) frame.collection = NewCollection();
    return frame;
}

void StoreBracket(const C& record, IMVProperties* object) {
    if (!record.m_Bracket.valid) return;
    _variant_t flag;
    Put(flag, VT_BOOL, record.m_Bracket);
    Store(object, kBracket, std::move(flag));
}

void AddToCollection(IMVCollection* collection, IMVProperties* object) {
    if (!collection) _com_issue_error(E_POINTER);
    ThrowIfFailed(collection->Add(object));
}

}  // namespace

IDispatchPtr C::GetOrderProperties() const {
    if (GetOSOChildCount() == 0 && (GetOCAPrevious() != nullptr || GetOCANext() == nullptr)) {
        // An order that carries no other: no stack to keep.
        StoreFrame frame = BeginStore(*this);
        StoreBracket(*this, frame.object);
        return frame.object;
    }
    std::vector<StoreFrame> stack;
    stack.push_back(BeginStore(*this));
    for (;;) {
        StoreFrame& top = stack.back();
        const C& record = *top.record;
        if (top.stage == 0) {
            if (top.child < record.GetOSOChildCount()) {
                const C* child = record.GetOSOChild(top.child++);
                stack.push_back(BeginStore(*child));
                continue;
            }
            if (top.collection) {
                Store(top.object, kChildren,
                      _variant_t(static_cast<IUnknown*>(top.collection.GetInterfacePtr())));
            }
            top.collection = nullptr;
            top.stage = 1;
            // Only the head of a chain carries its followers; the members in the middle don't
            // repeat the chain.
            if (record.GetOCAPrevious() == nullptr && record.GetOCANext() != nullptr) {
                top.collection = NewCollection();
                top.follower = record.GetOCANext();
            }
        }
        if (top.stage == 1) {
            if (top.follower != nullptr) {
                const C* follower = top.follower;
                top.follower = follower->GetOCANext();
                stack.push_back(BeginStore(*follower));
                continue;
            }
            if (top.collection) {
                Store(top.object, kFollowers,
                      _variant_t(static_cast<IUnknown*>(top.collection.GetInterfacePtr())));
            }
            top.stage = 2;
        }
        StoreBracket(record, top.object);
        IMVPropertiesPtr done = std::move(top.object);
        stack.pop_back();
        if (stack.empty()) return done;
        AddToCollection(stack.back().collection, done);
    }
}

// ---- Whole graphs in ----

namespace {

// One record being read: the object it comes from, the collection being walked, and the record
// itself while no group holds it yet.
struct ReadFrame {
    C* record = nullptr;
    std::unique_ptr<C> owned;  // null for the record the read started on
    IMVPropertiesPtr object;
    int stage = 0;  // 0 children (79), 1 followers (78), 2 done
    IMVCollectionPtr collection;
    LONG position = 0;
    bool oneStage = false;  // a single collection given by SetOrderProperty
    Present present;
};

class GraphReader {
  public:
    // Reads object into record: fields, legs, the bracket flag, then the groups.
    void Read(C& record, IUnknown* object) {
        ReadFrame root = Begin(record, nullptr, object);
        // An object that holds no other order needs no stack.
        if (!root.collection &&
            (root.stage == 2 || (root.present.known && !root.present.numbers[kFollowers]))) {
            return;
        }
        m_stack.push_back(std::move(root));
        Run();
    }

    // Reads the objects of one collection into new records that join record's group: children
    // for 79, followers for 78.
    void ReadCollection(C& record, IMVCollection* collection, int number) {
        ReadFrame frame;
        frame.record = &record;
        frame.stage = number == kChildren ? 0 : 1;
        frame.oneStage = true;
        StartWalk(frame, collection);
        m_stack.push_back(std::move(frame));
        Run();
    }

  private:
    ReadFrame Begin(C& record, std::unique_ptr<C> owned, IUnknown* object) {
        ReadFrame frame;
        frame.record = &record;
        frame.owned = std::move(owned);
        if (object) frame.object = IMVPropertiesPtr(IUnknownPtr(object));
        if (!frame.object) {
            // Not a property object: the record stays as it is and has no groups.
            frame.stage = 2;
            return frame;
        }
        Remember(frame.object);
        frame.present = NumbersIn(frame.object);
        ReadFields(record, frame.object, frame.present);
        StartWalk(frame, CollectionAt(frame.object, kChildren, frame.present));
        return frame;
    }

    // One fetched number into its field.
    static void ReadNumber(C& record, int number, const VARIANT& value) {
        const OrderPropertyRow& row = *FindOrderProperty(number);
        if (number == kLegCount) {
            // The record has room for three legs beside its own; a larger count can't be held,
            // and is refused here rather than trusted by every loop over the legs.
            const ValidDataT<SHORT> before = record.m_LegCount;
            ReadField(row, record, value);
            if (!LegCountFits(record.m_LegCount.value)) {
                record.m_LegCount.valid = before.valid;
                record.m_LegCount.value = before.value;
            }
            return;
        }
        ReadField(row, record, value);
    }

    static void ReadFields(C& record, IMVProperties* object, const Present& present) {
        for (const int number : g_OrderPropertiesReadOrder) {
            if (present.MayHold(number)) {
                const Fetched fetched(object, number);
                if (fetched.Ok()) {
                    ReadNumber(record, number, *fetched.value);
                    continue;
                }
            }
            // Without its own piece value the record takes its price scale's.
            if (number == kPieceValue && record.m_PriceScale.valid) {
                record.m_PieceValue =
                    Helper::GetBaseCodeDecimalFactor(static_cast<char>(record.m_PriceScale.value));
            }
        }
        const int legs = LegsInUse(record);
        for (int i = 0; i < legs; ++i) {
            if (!present.MayHold(57 + i)) continue;
            HRESULT hr = S_OK;
            const _variant_t value = Fetch(object, 57 + i, hr);
            if (FAILED(hr)) continue;
            _variant_t leg;
            ThrowIfFailed(VariantChangeType(&leg, &value, 0, VT_DISPATCH));
            record.m_Legs[i].SetLegProperties(IDispatchPtr(leg.pdispVal));
        }
        if (!present.MayHold(kBracket)) return;
        HRESULT hr = S_OK;
        const _variant_t bracket = Fetch(object, kBracket, hr);
        if (SUCCEEDED(hr)) ReadField(*FindOrderProperty(kBracket), record, bracket);
    }

    static IMVCollectionPtr CollectionAt(IMVProperties* object, int number,
                                         const Present& present) {
        if (!present.MayHold(number)) return nullptr;
        HRESULT hr = S_OK;
        const _variant_t value = Fetch(object, number, hr);
        return SUCCEEDED(hr) ? ObjectOf<IMVCollection>(value) : nullptr;
    }

    static void StartWalk(ReadFrame& frame, IMVCollectionPtr collection) {
        frame.collection = std::move(collection);
        frame.position = 0;
        if (frame.collection) ThrowIfFailed(frame.collection->StartWalk(&frame.position));
    }

    void Run() {
        while (!m_stack.empty()) {
            ReadFrame& top = m_stack.back();
            if (top.stage < 2) {
                IUnknownPtr item;
                bool more = false;
                if (top.collection) {
                    const HRESULT hr = top.collection->GetNext(&top.position, &item);
                    ThrowIfFailed(hr);
                    more = hr == S_OK;
                }
                if (more) {
                    // An object read before in this call (the object itself, an ancestor or
                    // one shared by two parents) is not read again: that is what keeps a
                    // self-containing object from reading forever.
                    if (item && Seen(item)) continue;
                    auto fresh = std::make_unique<C>();
                    C& record = *fresh;
                    m_stack.push_back(Begin(record, std::move(fresh), item));
                    continue;
                }
                if (top.stage == 0 && !top.oneStage) {
                    top.stage = 1;
                    StartWalk(top, top.object ? CollectionAt(top.object, kFollowers, top.present)
                                              : nullptr);
                } else {
                    top.stage = 2;
                }
                continue;
            }
            ReadFrame done = std::move(top);
            m_stack.pop_back();
            if (m_stack.empty() || !done.owned) continue;
            ReadFrame& parent = m_stack.back();
            C* joined = parent.stage == 0
                            ? parent.record->AddOSOChildOrder(done.owned.get(), true)
                            : parent.record->AddOrderToOCAGroup(done.owned.get(), true);
            // A group that takes the record owns it; one that refuses it leaves it to
            // done.owned, which deletes it with everything that hangs on it.
            if (joined != nullptr) done.owned.release();
        }
    }

    // Every object read in this call, by identity; the references keep an address from being
    // reused by another object while the read goes on.
    void Remember(IUnknown* object) {
        IUnknownPtr identity;
        identity.QueryInterface(object);
        if (!m_first) {
            // Most reads meet one object: no set for it.
            m_first = identity;
        } else if (identity != m_first && m_seen.insert(identity.GetInterfacePtr()).second) {
            m_held.push_back(identity);
        }
    }
    bool Seen(IUnknown* object) const {
        IUnknown* identity = Identity(object);
        return identity == m_first.GetInterfacePtr() || m_seen.count(identity) != 0;
    }

    std::vector<ReadFrame> m_stack;
    IUnknownPtr m_first;
    std::unordered_set<IUnknown*> m_seen;
    std::vector<IUnknownPtr> m_held;
};

}  // namespace

void C::SetOrderProperties(IDispatchPtr object) {
    GraphReader().Read(*this, object.GetInterfacePtr());
}

// ---- Single properties ----

bool C::GetOrderProperty(int number, VARIANT& value) const {
    switch (number) {
        case 57:
        case 58:
        case 59:
        case 75:
        case 78:
        case 79:
        case 80:
        case 89:
            return false;
        default:
            break;
    }
    const OrderPropertyRow* row = FindOrderProperty(number);
    if (!row) return false;
    _variant_t result;
    if (number == 81) {
        result = _variant_t(m_OrderCategoryOverride.valid ? m_OrderCategoryOverride.value
                                                          : GetOrderCategory().GetBits());
    } else if (number == 77 && !m_EffectiveParentPrice.valid) {
        // Unset, yet answered: the empty value says so.
    } else {
        bool marked = false;
        VisitField(*row, *this, [&](const auto& field) {
            marked = IsMarked(field);
            if (marked) Put(result, row->vt, field);
        });
        if (!marked) return false;
    }
    if (FAILED(VariantClear(&value))) return false;
    value = result.Detach();
    return true;
}

bool C::SetOrderProperty(int number, const VARIANT& value, const VARIANT& extra, bool bStrict) {
    const OrderPropertyRow* row = FindOrderProperty(number);
    if (!row) return false;
    const bool empty = value.vt == VT_EMPTY;
    try {
        switch (row->note) {
            case OrderPropertyNote::Legs: {
                const SHORT leg = static_cast<SHORT>(number - 56);
                if (value.vt != VT_DISPATCH || !m_LegCount.valid || m_LegCount.value <= leg) {
                    return false;
                }
                m_Legs[leg - 1].SetLegProperties(IDispatchPtr(value.pdispVal));
                return true;
            }
            case OrderPropertyNote::Collection: {
                if (value.vt != VT_UNKNOWN) return false;
                const IMVCollectionPtr collection = ObjectOf<IMVCollection>(value);
                if (!collection) return false;
                GraphReader().ReadCollection(*this, collection, number);
                return true;
            }
            default:
                break;
        }
    } catch (const _com_error&) {
        // A single property answers; what was read before the failure stays.
        return false;
    }

    const auto set = [&](auto& field) { return SetPropertyValue(field, value, bStrict); };
    switch (number) {
        case 4:     // the discretionary amount and its switch
        case 14:    // the peg value and its switch
        case 19: {  // the show quantity and its switch
            ValidDataT<SHORT>& flag =
                number == 4 ? m_Discretionary : (number == 14 ? m_Peg : m_ShowOnly);
            if (empty) {
                VisitField(*row, *this, [](auto& field) { Unmark(field); });
                flag.valid = false;
                return true;
            }
            bool ok = false;
            VisitField(*row, *this, [&](auto& field) { ok = set(field); });
            if (ok) flag = static_cast<SHORT>(1);
            return ok;
        }
        case 49:
            if (empty) {
                m_TrailAmount.valid = false;
                m_TrailType.valid = false;
                return true;
            }
            return set(m_TrailAmount);
        case 54: {
            if (empty) {
                m_IfTouchedPrice.valid = false;
                m_IfTouchedType.valid = false;
                return true;
            }
            if (!set(m_IfTouchedPrice)) return false;
            SHORT type = 0;
            if (m_OrderType == "Market") {
                type = 1;
            } else if (m_OrderType == "Limit") {
                type = 2;
            }
            m_IfTouchedType = type;
            return true;
        }
        case 7:
            if (!set(m_LimitPriceRaw)) return false;
            if (ExtraOn(extra)) m_AutoPrice.Invalid();
            return true;
        case 20:
            if (!set(m_StopPriceRaw)) return false;
            if (ExtraOn(extra)) m_StopAutoPrice.Invalid();
            return true;
        case 11: {
            const bool side = set(m_Side);
            SetPropertyValue(m_OpenClose, extra, bStrict);
            return side;
        }
        case 51:
            if (!set(m_ActivationTime)) return false;
            if (ExtraOn(extra)) SetPropertyValue(m_ActivationRule, extra, bStrict);
            return true;
        case 86:
            if (!set(m_OCAGroupTag)) return false;
            if (ExtraOn(extra)) m_Bracket = true;
            return true;
        case kLegCount: {
            ValidDataT<SHORT> count;
            if (!set(count) || !LegCountFits(count.value)) return false;
            m_LegCount = count;
            return true;
        }
        default:
            break;
    }
    bool ok = false;
    VisitField(*row, *this, [&](auto& field) {
        if constexpr (std::is_same_v<std::decay_t<decltype(field)>, ValidDataT<LONG>>) {
            ok = SetPropertyValue(field, value, bStrict, row->vt);
        } else {
            ok = set(field);
        }
    });
    return ok;
}

}  // namespace qvox
