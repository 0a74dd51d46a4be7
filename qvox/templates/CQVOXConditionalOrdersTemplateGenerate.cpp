// Generation: applying a template to a key order (Generate), filling one order from one template
// order (UpdateFields), and what the members of generation share. The field updates are in
// ...Fields.cpp, ...Prices.cpp and ...Quantities.cpp, the bracket rounding with the quantities.
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/ComBase.h"
#include "qvox/templates/COTGeneration.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"
#include "qvox/vocabulary/OrderIDManipulation.h"

namespace qvox {

// ---- Shared by the members of generation ----

std::string COTFieldWords::Key() const {
    std::string key;
    key.reserve(name.view().size() + usage.view().size() + operation.view().size() +
                location.view().size() + 3);
    key.append(name.view()).append(1, ' ').append(usage.view()).append(1, ' ');
    key.append(operation.view()).append(1, ' ').append(location.view());
    return key;
}

bool ReadLegalFieldWords(CQVOXConditionalOrdersTemplate& item, CQVOXCOTOrder* node,
                         CQVOXCOTField* field, COTFieldWords& words) {
    words.name = field->GetName();
    words.usage = field->GetUsage();
    words.operation = field->GetOperation();
    words.location = field->GetLocation();
    const std::string key = words.Key();
    if (item.IsAttributeCombinationValid(key.c_str())) return true;
    item.AddAttributeCombinationError(CString(key), node, field);
    return false;
}

IMVPositionPtr ReportingPosition(const IUnknownPtr& position) {
    IMVPositionPtr reading;
    if (!position) return reading;
    reading = IMVPositionPtr(position);
    if (!reading) return reading;
    LONG exists = 0;
    ThrowIfFailed(reading->PositionExists(&exists));
    if (exists == 0) reading = nullptr;
    return reading;
}

LONG PositionQuantityOf(const IMVPositionPtr& position) {
    LONG quantity = 0;
    ThrowIfFailed(position->PositionQuantity(&quantity));
    return quantity;
}

double PositionAveragePriceOf(const IMVPositionPtr& position) {
    double price = 0.0;
    ThrowIfFailed(position->PositionAveragePrice(&price));
    return price;
}

bool TextToLong(const _variant_t& value, LONG& number) {
    _variant_t converted;
    if (FAILED(VariantChangeType(&converted, &value, VARIANT_NOUSEROVERRIDE, VT_I4))) return false;
    number = converted.lVal;
    return true;
}

bool TextToDouble(const _variant_t& value, double& number) {
    _variant_t converted;
    if (FAILED(VariantChangeType(&converted, &value, VARIANT_NOUSEROVERRIDE, VT_R8))) return false;
    number = converted.dblVal;
    return true;
}

LONG TruncateToLong(double value) {
    if (std::isnan(value)) return 0;
    if (value <= static_cast<double>(std::numeric_limits<LONG>::min()))
        return std::numeric_limits<LONG>::min();
    if (value >= static_cast<double>(std::numeric_limits<LONG>::max()))
        return std::numeric_limits<LONG>::max();
    return static_cast<LONG>(value);
}

LONG LotsOf(const COrderBarProperties& order) {
    COrderBarProperties quantity;
    quantity.m_Quantity = order.m_Quantity;
    quantity.m_QuantityType = order.m_QuantityType;
    quantity.m_LotSize = order.m_LotSize;
    return quantity.GetLots().value;
}

namespace {

using Orders = std::vector<std::unique_ptr<COrderBarProperties>>;

// What a generation leaves behind, whichever way it ends: the orders it made that no link of
// the key order's graph took (a failed target, orders the chain refused, children of a failed
// "OSO" generation) are deleted, and the rounding state, whose pointers reach the orders just
// made, is emptied, so that the template holds nothing of them afterwards.
class GenerationScope {
  public:
    explicit GenerationScope(std::vector<SQVOXTBRQCollection>& groups) : m_groups(groups) {}
    // The groups are emptied first, then the orders no link took are deleted.
    ~GenerationScope() { m_groups.clear(); }
    GenerationScope(const GenerationScope&) = delete;
    GenerationScope& operator=(const GenerationScope&) = delete;

    // A new target, assigned from key, held here until a link takes it.
    COrderBarProperties* NewTarget(const COrderBarProperties& key) {
        m_made.push_back(std::make_unique<COrderBarProperties>());
        *m_made.back() = key;
        return m_made.back().get();
    }
    // The most recent target now belongs to a link of the graph.
    void Adopted() { m_made.back().release(); }
    // order (the head of "OSO" children) now belongs to a link of the graph.
    void Adopted(const COrderBarProperties* order) {
        for (auto& made : m_made) {
            if (made.get() == order) made.release();
        }
    }

  private:
    std::vector<SQVOXTBRQCollection>& m_groups;
    Orders m_made;
};

// Calls fill(collection, node) for every template order of item, collection by collection, each
// in its order, skipping null nodes, until fill answers false; the answer is then false.
template <typename Fill>
bool ForEachTemplateOrder(CQVOXConditionalOrdersTemplate& item, Fill&& fill) {
    const int collections = item.GetCount();
    for (int c = 0; c < collections; ++c) {
        CQVOXCOTCollection* collection = item.GetAt(c);
        const int orders = collection->GetCount();
        for (int o = 0; o < orders; ++o) {
            CQVOXCOTOrder* node = collection->GetAt(o);
            if (node != nullptr && !fill(*collection, node)) return false;
        }
    }
    return true;
}

}  // namespace

// ---- Generate ----

bool CQVOXConditionalOrdersTemplate::Generate(COrderBarProperties& order, IUnknownPtr position,
                                              double) {
    m_BRQGroups.clear();
    m_ErrorText.Empty();
    m_VerboseError.Empty();
    m_HasVerboseError = false;
    if (m_Properties) m_BRQEnabled = !m_Properties->GetProperty(kCOTPropertyBRQ).IsEmpty();
    m_BRQTotalKnown = false;
    if (!m_BRQEnabled) return true;

    // With every bracket sized as a per cent of one source, adding up to 100, the brackets
    // must add up to the whole source.
    CString usage;
    CString location;
    if (DoAllBracketOrdersTotal(100, usage, location, nullptr) != BracketTotalOk ||
        usage != kCOTUsagePercentage) {
        return true;
    }
    if (location == kCOTLocationKey) {
        m_BRQTotalKnown = true;
        // The lots as GetLots counts them, read without its rewrite: order is the caller's.
        m_BRQTotal = LotsOf(order);
    } else if (location == kCOTLocationPosition) {
        m_BRQTotalKnown = true;
        const IMVPositionPtr reading(position);
        if (reading) {
            LONG quantity = 0;
            ThrowIfFailed(reading->PositionQuantity(&quantity));
            m_BRQTotal = static_cast<LONG>(wrap32::magnitude(quantity));
        }
    }
    return true;
}

bool CQVOXCOTOCOTemplate::Generate(COrderBarProperties& order, IUnknownPtr position, double last) {
    CQVOXConditionalOrdersTemplate::Generate(order, position, last);
    COrderBarProperties key;
    key = order;
    GenerationScope scope(m_BRQGroups);
    bool first = true;
    const bool made =
        ForEachTemplateOrder(*this, [&](CQVOXCOTCollection& collection, CQVOXCOTOrder* node) {
            // The key order itself is the first target; the others join its chain.
            COrderBarProperties* target = first ? &order : scope.NewTarget(key);
            target->m_Bracket = collection.IsBracket();
            if (!UpdateFields(node, *target, key, position, last, true)) return false;
            // A chain refuses a bracket order behind a plain one; such an order stays out of the
            // group and goes with the scope.
            if (!first && order.AddOrderToOCAGroup(target, true) != nullptr) scope.Adopted();
            first = false;
            return true;
        });
    if (!made) return false;
    return EndGenerate(order, position, last);
}

bool CQVOXCOTOSOTemplate::Generate(COrderBarProperties& order, IUnknownPtr position, double last) {
    CQVOXConditionalOrdersTemplate::Generate(order, position, last);
    COrderBarProperties key;
    key = order;
    GenerationScope scope(m_BRQGroups);
    COrderBarProperties* head = nullptr;
    const bool made =
        ForEachTemplateOrder(*this, [&](CQVOXCOTCollection& collection, CQVOXCOTOrder* node) {
            COrderBarProperties* child = scope.NewTarget(key);
            child->m_Bracket = collection.IsBracket();
            // Until it is attached, order stays as it was: the children made so far go with the
            // scope.
            if (!UpdateFields(node, *child, key, position, last, false)) return false;
            if (head == nullptr) {
                head = child;
            } else if (head->AddOrderToOCAGroup(child, true) != nullptr) {
                scope.Adopted();
            }
            return true;
        });
    if (!made) return false;
    if (head != nullptr && order.AddOSOChildOrder(head, true) != nullptr) scope.Adopted(head);
    return EndGenerate(order, position, last);
}

// ---- UpdateFields ----

bool CQVOXConditionalOrdersTemplate::UpdateFields(CQVOXCOTOrder* node, COrderBarProperties& target,
                                                  COrderBarProperties& key, IUnknownPtr position,
                                                  double last, bool absolutePrices) {
    // What bracket rounding sees unless the quantity update sets it.
    double quantity = target.GetLots().value;
    // A trailing stop of the key order doesn't pass to the generated orders.
    if (!(key.m_TrailType.valid && key.m_TrailType.value == 0))
        target.m_TrailType = static_cast<SHORT>(0);
    target.m_LocalOrderID = CreateLocalOrderID();

    // Fixed order: the price reads the type and side that the first two set.
    const bool done = UpdateFieldType(node, target, key, position, last) &&
                      UpdateFieldAction(node, target, key, position, last) &&
                      UpdateFieldQuantity(node, target, key, position, last, quantity) &&
                      UpdateFieldPrice(node, target, key, position, last, absolutePrices) &&
                      UpdateFieldDuration(node, target, key, position, last) &&
                      UpdateFieldRoute(node, target, key, position, last) &&
                      UpdateFieldAdvanced(node, target, key, position, last);

    // The advanced options can make the order trail, and a trailing order has no auto price.
    if (target.m_TrailType.valid && target.m_TrailType.value != 0) {
        target.m_AutoPrice.Invalid();
        target.m_StopAutoPrice.Invalid();
    }
    UpdateStopTrigger(target);
    if (m_BRQEnabled) AddBRQItem(node, target, quantity);
    return done;
}

}  // namespace qvox
