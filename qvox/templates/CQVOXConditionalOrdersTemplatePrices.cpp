// The price field of generation: limit and stop prices relative to the key order, the position
// or the market, as real prices on the symbol's grid ("OCO") or as auto-price offsets that the
// server resolves when the parent fills ("OSO"); the grid itself; and the stop trigger that
// every generated order takes from the user's preferences.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/PlatformObjects.h"
#include "qvox/price/Helper.h"
#include "qvox/price/PriceIncrements.h"
#include "qvox/templates/COTGeneration.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {
namespace {

constexpr char kLimit[] = "Limit";
constexpr char kStopMarket[] = "Stop Market";
constexpr char kStopLimit[] = "Stop Limit";
constexpr char kMarket[] = "Market";

// Trail types of m_TrailType.
constexpr SHORT kTrailPoints = 1;
constexpr SHORT kTrailPercent = 2;

// Preference numbers of the stop trigger words.
constexpr LONG kTriggerPreference = 19;
constexpr LONG kTriggerPreferenceListed = 20;

// Buying: a marked side of 'B' or 'C'. Anything else sells.
bool IsBuying(const COrderBarProperties& order) {
    return order.m_Side == static_cast<SHORT>('B') || order.m_Side == static_cast<SHORT>('C');
}

// A word matches a literal it begins, so that the empty word matches.
bool Begins(const char* word, const char* literal) {
    return std::strncmp(literal, word, std::strlen(word)) == 0;
}

// Whole moves in a count of moves. The count is a quotient of two decimal amounts, whose binary
// forms can put a whole count a hair below itself (0.29 / 0.01 is 28.999999999999996); such a
// count still means the whole number. Counts that are really fractional truncate.
LONG WholeMoves(double moves) {
    return TruncateToLong(moves + std::fabs(moves) * 1e-9);
}

}  // namespace

// ---- The order's Price field ----

bool CQVOXConditionalOrdersTemplate::UpdateFieldPrice(CQVOXCOTOrder* node,
                                                      COrderBarProperties& target,
                                                      COrderBarProperties& key,
                                                      IUnknownPtr position, double last,
                                                      bool absolutePrices) {
    CQVOXCOTField* field = node->GetAt(kCOTFieldPrice);
    if (field == nullptr) return false;
    COTFieldWords words;
    if (!ReadLegalFieldWords(*this, node, field, words)) return false;
    if (field->GetCount() == 0) {
        if (words.usage == kCOTUsageExplicit) {
            AddError(kCOTErrorMissingExplicit, words.usage, node, field);
            return false;
        }
        return UpdateFieldPrice(field, node, target, key, position, last, absolutePrices);
    }

    // Child fields: their own words decide, the parent's were only tested.
    CQVOXCOTField* limit = field->GetAt(kCOTFieldLimit);
    CQVOXCOTField* stop = field->GetAt(kCOTFieldStop);
    COTFieldWords limitWords;
    COTFieldWords stopWords;
    if (limit != nullptr && !ReadLegalFieldWords(*this, node, limit, limitWords)) return false;
    if (stop != nullptr && !ReadLegalFieldWords(*this, node, stop, stopWords)) return false;
    const bool limitRefers = limit != nullptr && limitWords.location == kCOTLocationPriceStop;
    const bool stopRefers = stop != nullptr && stopWords.location == kCOTLocationPriceLimit;
    if (limitRefers && stopRefers) {
        AddError(kCOTErrorCircularReference, limitWords.location, node, limit);
        AddError(kCOTErrorCircularReference, stopWords.location, node, stop);
        return false;
    }
    if (limitRefers && stop == nullptr) {
        AddError(kCOTErrorInvalidReference, limitWords.location, node, limit);
        return false;
    }
    if (stopRefers && limit == nullptr) {
        AddError(kCOTErrorInvalidReference, stopWords.location, node, stop);
        return false;
    }

    // A field that refers to the other is computed after it; two that refer to nothing, Stop
    // first.
    std::deque<CQVOXCOTField*> order;
    const auto place = [&order](CQVOXCOTField* child, const COTFieldWords& childWords) {
        if (child == nullptr) return;
        if (childWords.location == kCOTLocationPriceStop ||
            childWords.location == kCOTLocationPriceLimit) {
            order.push_back(child);
        } else {
            order.push_front(child);
        }
    };
    place(limit, limitWords);
    place(stop, stopWords);
    bool result = true;
    for (CQVOXCOTField* child : order) {
        result = UpdateFieldPrice(child, node, target, key, position, last, absolutePrices);
        if (!result) break;
    }
    return result;
}

// ---- One price field ----

bool CQVOXConditionalOrdersTemplate::UpdateFieldPrice(CQVOXCOTField* field, CQVOXCOTOrder* node,
                                                      COrderBarProperties& target,
                                                      COrderBarProperties& key,
                                                      IUnknownPtr position, double last,
                                                      bool absolutePrices) {
    if (field == nullptr) return false;
    COTFieldWords words;
    if (!ReadLegalFieldWords(*this, node, field, words)) return false;

    double base = 0.0;
    const CString& location = words.location;
    if (location == kCOTLocationKey) {
        // What "the key's price" is depends on its type.
        if (key.m_OrderType == kLimit || key.m_OrderType == kStopLimit) {
            base = key.m_LimitPriceRaw.value;
        } else if (key.m_OrderType == kMarket) {
            base = IsBuying(key) ? key.m_Ask.value : key.m_Bid.value;
        } else if (key.m_OrderType == kStopMarket) {
            if (target.m_TrailType == kTrailPoints) {
                const double trail = ApplyMinMoveConversion(
                    target.m_TrailAmount.value, false, target.m_SymbolCategory.value,
                    target.m_MinMove.value, static_cast<char>(target.m_PriceScale.value));
                base = IsBuying(key) ? last + trail : last - trail;
            } else if (target.m_TrailType == kTrailPercent) {
                const double trail = last * target.m_TrailAmount.value * 0.01;
                base = IsBuying(key) ? last + trail : last - trail;
            } else {
                base = key.m_StopPriceRaw.value;
            }
        } else {
            return false;
        }
    } else if (location == kCOTLocationPosition) {
        const IMVPositionPtr reading = ReportingPosition(position);
        if (!reading) {
            AddVerboseError(kCOTErrorNoPosition);
            return false;
        }
        base = PositionAveragePriceOf(reading);
    } else if (location == kCOTLocationLast) {
        base = last;
    } else if (location == kCOTLocationAsk) {
        base = key.m_Ask.value;
    } else if (location == kCOTLocationBid) {
        base = key.m_Bid.value;
    } else if (location == kCOTLocationPriceStop) {
        base = target.m_StopPriceRaw.value;
    } else if (location == kCOTLocationPriceLimit) {
        base = target.m_LimitPriceRaw.value;
    } else {
        AddError(kCOTErrorInvalidLocation, location, node, field);
        return false;
    }
    base = GetClosestPrice(base, key, nullptr);

    const _variant_t text = field->GetValue();
    double value = 0.0;
    if (!TextToDouble(text, value)) {
        AddError(kCOTErrorInvalidValue, text.TextOrEmpty(), node, field);
        return false;
    }
    double amount = 0.0;
    if (words.usage == kCOTUsagePercentage) {
        amount = value * 0.01 * base;
    } else if (words.usage == kCOTUsageOffset) {
        const double move = Helper::Pieces2Decimal(1, static_cast<char>(key.m_PriceScale.value)) *
                            key.m_MinMove.value;
        amount = value * move;
    } else {
        AddError(kCOTErrorInvalidUsage, words.usage, node, field);
        return false;
    }

    const char* operation = words.operation;
    if (words.operation == kCOTOperationFarSide) {
        // Away from the base on the far side: a limit below it to buy and above it to sell, a
        // stop the other way.
        const bool below = target.m_OrderType == kLimit ? IsBuying(target) : !IsBuying(target);
        operation = below ? kCOTOperationSubtract : kCOTOperationAdd;
    } else if (words.operation != kCOTOperationAdd && words.operation != kCOTOperationSubtract) {
        AddError(kCOTErrorInvalidOperation, words.operation, node, field);
        return false;
    }
    return UpdateFieldPriceOperation(field, operation, amount, base, target, key, absolutePrices);
}

bool CQVOXConditionalOrdersTemplate::UpdateFieldPriceOperation(
    CQVOXCOTField* field, const char* operation, double amount, double base,
    COrderBarProperties& target, COrderBarProperties& key, bool absolutePrices) {
    if (operation == nullptr) return false;
    if (Begins(operation, kCOTOperationAdd)) {
        // amount as it is
    } else if (Begins(operation, kCOTOperationSubtract)) {
        amount *= -1.0;
    } else {
        return false;
    }
    const bool limit = AllowLimitPriceModification(field, target);

    if (absolutePrices) {
        ValidDataT<double>& price = limit ? target.m_LimitPriceRaw : target.m_StopPriceRaw;
        price = amount + base;
        price = GetClosestPrice(price.value, key, nullptr);
        return true;
    }

    // The parent hasn't filled: the price is a number of moves from it, for the server.
    LONG moves = WholeMoves(ApplyMinMoveConversion(std::fabs(amount), true,
                                                   key.m_SymbolCategory.value, key.m_MinMove.value,
                                                   static_cast<char>(target.m_PriceScale.value)));
    // A negative amount smaller than a millionth counts as none.
    if (amount + 0.000001 < 0.0) moves = -moves;
    if (limit) {
        if (target.m_OrderType == kStopLimit) {
            // The limit of a stop limit keeps its distance from the stop, without a sign.
            target.SetAutoPrice(AutoPriceOffsetStop);
            target.m_AutoPriceIncrement.Format("%d", std::abs(moves));
        } else {
            target.SetAutoPrice(AutoPriceOffsetPrimary);
            target.m_AutoPriceIncrement.Format("%d", moves);
        }
    } else {
        target.SetStopAutoPrice(AutoPriceOffsetPrimary);
        target.m_StopAutoPriceOffset = static_cast<double>(moves);
    }
    return true;
}

bool CQVOXConditionalOrdersTemplate::AllowLimitPriceModification(CQVOXCOTField* field,
                                                                 COrderBarProperties& order) {
    if (order.m_OrderType == kLimit) return true;
    return field != nullptr && field->IsChildField() && field->GetName() == kCOTFieldLimit;
}

bool CQVOXConditionalOrdersTemplate::AllowStopPriceModification(CQVOXCOTField* field,
                                                                COrderBarProperties& order) {
    if (order.m_OrderType == kStopMarket) return true;
    return field != nullptr && field->IsChildField() && field->GetName() == kCOTFieldStop;
}

// ---- The grid ----

double CQVOXConditionalOrdersTemplate::ApplyMinMoveConversion(double value, bool toMoves,
                                                              int category, double minMove,
                                                              char scale) {
    // An option moves by single pieces of its scale, whatever its minimum move says.
    if (category == kCOTEquityOptions || category == kCOTOtherOptions) minMove = 1.0;
    return qvox::ApplyMinMoveConversion(value, toMoves, minMove, scale);
}

double CQVOXConditionalOrdersTemplate::GetClosestPrice(double price,
                                                       const COrderBarProperties& order,
                                                       int* moves) {
    if (!(price > 0.0)) return price;
    constexpr double kLimit32 = 2147483647.0;
    // The grid counts in units of 1/P, P being a power of 10 for decimal pieces and of 2 for
    // binary ones, fine enough to hold one piece.
    const double piece =
        Helper::GetBaseCodeDecimalFactor(static_cast<char>(order.m_PriceScale.value));
    const double exponent = std::log10(piece);
    const std::int64_t radix = exponent == std::trunc(exponent) ? 10 : 2;
    const double units = std::trunc(
        std::pow(static_cast<double>(radix), Helper::GetNumberOfDecimalsFromPriceScale(piece)));
    const double pieceUnits = std::trunc(piece * units);
    const double minMove = std::trunc(order.m_MinMove.value);
    // Every number of the grid is 32-bit; a grid or a price beyond that is left alone.
    if (!(units >= 1.0 && units <= kLimit32) || !(pieceUnits <= kLimit32) ||
        !(std::fabs(minMove) <= kLimit32)) {
        return price;
    }
    const auto move = static_cast<std::int64_t>(pieceUnits) * static_cast<std::int64_t>(minMove);
    if (move == 0 || move > INT32_MAX || move < INT32_MIN) return price;
    const double scaled = price * units * static_cast<double>(radix);
    if (!(scaled < kLimit32 - static_cast<double>(radix))) return price;
    // Half up at one digit below the grid, then down to a whole move.
    std::int64_t steps = (static_cast<std::int64_t>(scaled) + radix / 2) / radix;
    steps -= steps % move;
    if (moves != nullptr) *moves = static_cast<int>(steps / move);
    return static_cast<double>(steps) / units;
}

// ---- Stop trigger ----

void CQVOXConditionalOrdersTemplate::UpdateStopTrigger(COrderBarProperties& order) {
    CString trigger;
    const LONG category = order.m_SymbolCategory.value;
    const CTLProperties preferences = GetOXPrefs(category);
    if (!preferences.IsEmpty()) {
        LONG number = 0;
        if (category == kCOTFutures || category == kCOTEquityOptions || category == kCOTForex) {
            if (order.m_Exchange.valid) number = kTriggerPreference;
        } else if (category == kCOTEquities) {
            if (order.m_Exchange == 18 || order.m_Exchange == 19) {
                number = kTriggerPreferenceListed;
            } else if (order.m_Exchange == 22 || order.m_Exchange == 1) {
                number = kTriggerPreference;
            }
        }
        // Only a text counts.
        if (number != 0) preferences.GetText(number, trigger);
    }
    if (order.m_OrderType == kStopMarket || order.m_OrderType == kStopLimit) {
        order.m_StopTrigger = trigger;
    } else {
        order.m_StopTrigger.Invalid();
    }
    if (order.m_IfTouchedType.valid && order.m_IfTouchedType.value != 0) {
        order.m_IfTouchedTrigger = trigger;
    } else {
        order.m_IfTouchedTrigger.Invalid();
    }
}

CTLProperties CQVOXConditionalOrdersTemplate::GetOXPrefs(LONG category) {
    const IMVRootPtr root(GetPlatformRootObject());
    if (!root) return CTLProperties();
    IUnknownPtr services;
    ThrowIfFailed(root->GetServices(&services));
    const IMVOrderPreferencesPtr preferences(services);
    if (!preferences) return CTLProperties();
    IUnknownPtr entry;
    ThrowIfFailed(preferences->GetPreferences(category, &entry));
    return CTLProperties(entry);
}

}  // namespace qvox
