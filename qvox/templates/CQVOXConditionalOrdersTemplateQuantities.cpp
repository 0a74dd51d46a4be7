// The quantity field of generation, and bracket rounding: with the template property "BRQ" the
// bracket quantities are rounded at the end to whole lots of it, the remainder carried from
// bracket to bracket, so that brackets sized as percentages still add up to the key order's
// quantity (1050 shares in 30 and 70 per cent brackets become 300 and 750, not 315 and 735).
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/price/Helper.h"
#include "qvox/templates/COTGeneration.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {
namespace {

constexpr SHORT kQuantityInShares = '#';

// A count of lots as the record takes it: truncated to a whole number, with the mark.
ValidDataT<LONG> WholeLots(double lots) {
    return ValidDataT<LONG>(TruncateToLong(lots));
}

}  // namespace

// ---- Quantity ----

bool CQVOXConditionalOrdersTemplate::UpdateFieldQuantity(CQVOXCOTOrder* node,
                                                         COrderBarProperties& target,
                                                         COrderBarProperties& key,
                                                         IUnknownPtr position, double,
                                                         double& quantity) {
    CQVOXCOTField* field = node->GetAt(kCOTFieldQuantity);
    if (field == nullptr) return false;
    COTFieldWords words;
    if (!ReadLegalFieldWords(*this, node, field, words)) return false;

    const _variant_t value = field->GetValue();
    double base = 0.0;
    if (words.location == kCOTLocationKey) {
        base = key.GetLots().value;
    } else if (words.location == kCOTLocationPosition) {
        const IMVPositionPtr reading = ReportingPosition(position);
        if (!reading) {
            AddVerboseError(kCOTErrorNoPosition);
            return false;
        }
        base = static_cast<double>(wrap32::magnitude(PositionQuantityOf(reading)));
    } else if (words.location == kCOTLocationValue) {
        LONG whole = 0;
        if (!TextToLong(value, whole)) {
            AddError(kCOTErrorInvalidValue, value.TextOrEmpty(), node, field);
            return false;
        }
        base = whole;
    } else {
        CString text;
        text.Format(kCOTErrorInvalidQuantityLocation, words.location);
        AddError(text, node, field);
        return false;
    }

    double result = 0.0;
    if (words.usage == kCOTUsageExact) {
        result = base;
    } else if (words.usage == kCOTUsagePercentage || words.usage == kCOTUsageOffset) {
        double number = 0.0;
        if (!TextToDouble(value, number)) {
            AddError(kCOTErrorInvalidValue, value.TextOrEmpty(), node, field);
            return false;
        }
        if (words.usage == kCOTUsagePercentage) {
            // The nearest whole number, halves away from zero.
            const double share = number * 0.01 * base;
            result = share > 0.0 ? std::trunc(share + 0.5) : std::trunc(share - 0.5);
        } else {
            // A count of minimum moves, as for a price; it needn't be whole.
            result = Helper::Pieces2Decimal(1, static_cast<char>(key.m_PriceScale.value)) *
                     key.m_MinMove.value * number;
        }
    } else {
        return false;
    }

    // "+" and "-" act on the target's present lots, a copy of the key's, not on the base.
    double lots = 0.0;
    if (words.operation == kCOTOperationReplace) {
        lots = result;
    } else if (words.operation == kCOTOperationAdd) {
        lots = target.GetLots().value + result;
    } else if (words.operation == kCOTOperationSubtract) {
        lots = target.GetLots().value - result;
    } else {
        AddError(kCOTErrorInvalidOperation, words.operation, node, field);
        return false;
    }
    quantity = lots;
    target.SetLots(WholeLots(lots));
    return true;
}

void CQVOXConditionalOrdersTemplate::ConvertQuantityToLots(COrderBarProperties& order,
                                                           LONG lotSize) {
    if (lotSize >= 2 && order.m_Quantity.valid) order.m_Quantity = order.m_Quantity.value / lotSize;
}

void CQVOXConditionalOrdersTemplate::ConvertLotsToQuantity(COrderBarProperties& order,
                                                           LONG lotSize) {
    if (lotSize >= 2 && order.m_Quantity.valid && order.m_QuantityType == kQuantityInShares)
        order.m_Quantity = wrap32::mul(order.m_Quantity.value, lotSize);
}

// ---- Brackets ----

LONG CQVOXConditionalOrdersTemplate::DoAllBracketOrdersTotal(LONG total, CString& usage,
                                                             CString& location, LONG* sum) {
    CString foundUsage;
    CString foundLocation;
    LONG found = 0;
    LONG result = BracketTotalOk;
    // A size that isn't a whole number can't add up to anything; the field itself is reported
    // as "Invalid Value" when the generation reaches it.
    bool unreadable = false;
    const auto sizeOf = [&unreadable](CQVOXCOTField* field) {
        LONG size = 0;
        if (!TextToLong(field->GetValue(), size)) unreadable = true;
        return size;
    };
    const int collections = GetCount();
    for (int c = 0; c < collections && result == BracketTotalOk; ++c) {
        CQVOXCOTCollection* collection = GetAt(c);
        if (!collection->IsBracket()) continue;
        const int orders = collection->GetCount();
        for (int o = 0; o < orders && result == BracketTotalOk; ++o) {
            CQVOXCOTOrder* node = collection->GetAt(o);
            CQVOXCOTField* field = node != nullptr ? node->GetAt(kCOTFieldQuantity) : nullptr;
            if (field == nullptr) continue;
            const CString fieldUsage = field->GetUsage();
            const CString fieldLocation = field->GetLocation();
            if (foundUsage.IsEmpty() && foundLocation.IsEmpty()) {
                foundUsage = fieldUsage;
                foundLocation = fieldLocation;
                found = sizeOf(field);
            } else if (fieldUsage != foundUsage) {
                result = BracketTotalUsageMismatch;
            } else if (fieldLocation != foundLocation) {
                result = BracketTotalLocationMismatch;
            } else if (o == 0) {
                // A bracket's size is its first order's; the others share it.
                found = wrap32::add(found, sizeOf(field));
            }
        }
    }
    if (result == BracketTotalOk && (unreadable || found != total))
        result = BracketTotalValueMismatch;
    if (result == BracketTotalOk) {
        usage = foundUsage;
        location = foundLocation;
    }
    if (sum != nullptr) *sum = found;
    return result;
}

void CQVOXConditionalOrdersTemplate::AddBRQItem(CQVOXCOTOrder* node, COrderBarProperties& target,
                                                double quantity) {
    CQVOXCOTCollection* collection = node != nullptr ? node->GetParent() : nullptr;
    if (collection == nullptr || !collection->IsBracket()) return;
    SQVOXTBRQCollection* group = nullptr;
    for (SQVOXTBRQCollection& existing : m_BRQGroups) {
        if (existing.m_Collection == collection) group = &existing;
    }
    // Until its anchor comes, a collection's orders go to a group that is dropped again.
    SQVOXTBRQCollection local;
    local.m_Collection = collection;
    if (group == nullptr) group = &local;
    if (!m_Properties) return;
    const _variant_t anchorProperty = m_Properties->GetProperty(kCOTPropertyBRQT);
    const CString anchorType =
        anchorProperty.IsEmpty() ? CString("Limit") : anchorProperty.TextOrEmpty();
    if (anchorType.IsEmpty()) return;
    group->m_Items.push_back({&target, quantity});
    if (target.m_OrderType == anchorType && group->m_KeyOrder == nullptr) {
        group->m_KeyOrder = node;
        m_BRQGroups.push_back(std::move(*group));
    }
}

void CQVOXConditionalOrdersTemplate::UpdateQuantityInProperties(
    LONG lots, std::vector<SQVOXTBRQCalcHelper>& items) {
    for (SQVOXTBRQCalcHelper& item : items)
        item.m_Order->SetLots(ValidDataT<LONG>(lots));
}

bool CQVOXConditionalOrdersTemplate::EndGenerate(COrderBarProperties&, IUnknownPtr, double) {
    if (!m_BRQEnabled || m_BRQGroups.empty() || !m_Properties) return true;
    const _variant_t lotProperty = m_Properties->GetProperty(kCOTPropertyBRQ);
    LONG lot = 0;
    // A lot that isn't a positive whole number rounds nothing: the brackets keep their own
    // quantities, as without the property.
    if (lotProperty.IsEmpty() || !TextToLong(lotProperty, lot) || lot < 1) return true;

    // Rounding needs every bracket sized as a percentage; checked before any lots change.
    for (const SQVOXTBRQCollection& group : m_BRQGroups) {
        const int orders = group.m_Collection->GetCount();
        for (int o = 0; o < orders; ++o) {
            CQVOXCOTField* field = group.m_Collection->GetAt(o)->GetAt(kCOTFieldQuantity);
            if (field == nullptr || field->GetUsage() != kCOTUsagePercentage) {
                AddError(kCOTErrorBracketPercentages);
                return false;
            }
        }
    }

    // Ascending by the anchors' Price values, read once; an anchor whose Price is missing or
    // not a whole number is before nothing and nothing is before it. An insertion sort keeps
    // equal groups in their order and stays within bounds whatever the comparison says.
    std::vector<std::optional<LONG>> prices;
    prices.reserve(m_BRQGroups.size());
    for (const SQVOXTBRQCollection& group : m_BRQGroups) {
        CQVOXCOTField* price = group.m_KeyOrder->GetAt(kCOTFieldPrice);
        LONG value = 0;
        prices.push_back(price != nullptr && TextToLong(price->GetValue(), value)
                             ? std::optional<LONG>(value)
                             : std::nullopt);
    }
    const auto before = [](const std::optional<LONG>& a, const std::optional<LONG>& b) {
        return a && b && *a < *b;
    };
    for (std::size_t i = 1; i < m_BRQGroups.size(); ++i) {
        for (std::size_t j = i; j > 0 && before(prices[j], prices[j - 1]); --j) {
            std::swap(m_BRQGroups[j], m_BRQGroups[j - 1]);
            std::swap(prices[j], prices[j - 1]);
        }
    }

    // Each group rounded to the nearest lot over what the earlier ones carried; a group rounded
    // down passes its own remainder on, one rounded up passes nothing.
    const double size = lot;
    const double half = static_cast<double>(lot / 2);
    double carry = 0.0;
    double sum = 0.0;
    for (SQVOXTBRQCollection& group : m_BRQGroups) {
        const double quantity = group.m_Items.front().m_Quantity;
        const double total = carry + quantity + half;
        const double rounded = total - std::fmod(total, size);
        sum += rounded;
        carry = quantity > rounded ? std::fmod(quantity, size) : 0.0;
        UpdateQuantityInProperties(TruncateToLong(rounded), group.m_Items);
    }

    // The last group takes up the difference to the total the brackets must add up to.
    SQVOXTBRQCollection& lastGroup = m_BRQGroups.back();
    LONG lastLots = lastGroup.m_Items.front().m_Order->GetLots().value;
    if (m_BRQTotalKnown) {
        const LONG rounded = TruncateToLong(sum);
        if (rounded > m_BRQTotal) {
            lastLots = wrap32::sub(lastLots, wrap32::sub(rounded, m_BRQTotal));
        } else if (rounded < m_BRQTotal) {
            lastLots = wrap32::add(lastLots, wrap32::sub(m_BRQTotal, rounded));
        }
    }
    UpdateQuantityInProperties(lastLots, lastGroup.m_Items);
    return true;
}

}  // namespace qvox
