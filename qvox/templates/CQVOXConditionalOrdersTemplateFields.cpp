// The field updates of generation that need no arithmetic: the order type, the side, the route,
// the duration and the advanced options; and the text conversions behind them.
#include <cstring>
#include <iterator>
#include <string_view>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/templates/COTGeneration.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {
namespace {

// The order types a template can give: a market order has no price to be relative to.
constexpr const char* kTemplateOrderTypes[] = {"Limit", "Stop Market", "Stop Limit"};

// The action words of a template file, in the order they are matched.
constexpr const char* kActionWords[] = {"Buy To Open", "Buy To Close", "Sell To Open",
                                        "Sell To Close"};
constexpr char kEntryWord[] = "Entry";
constexpr char kExitWord[] = "Exit";

// A word matches a literal it begins, so that the empty word matches the first one.
bool Begins(const char* word, const char* literal) {
    return std::strncmp(literal, word, std::strlen(word)) == 0;
}

bool IsFuturesLike(LONG category) {
    return category == kCOTFutures || category == kCOTForex;
}

}  // namespace

// ---- Type ----

bool CQVOXConditionalOrdersTemplate::UpdateFieldType(CQVOXCOTOrder* node,
                                                     COrderBarProperties& target,
                                                     COrderBarProperties&, IUnknownPtr, double) {
    CQVOXCOTField* field = node->GetAt(kCOTFieldType);
    if (field == nullptr) return false;
    COTFieldWords words;
    words.name = field->GetName();
    words.usage = field->GetUsage();
    words.operation = field->GetOperation();
    words.location = field->GetLocation();
    // The one legal combination of Type, tested directly.
    if (words.usage != kCOTUsageExact || words.operation != kCOTOperationReplace ||
        words.location != kCOTLocationValue) {
        AddAttributeCombinationError(CString(words.Key()), node, field);
        return false;
    }
    const CString value = field->GetValue().TextOrEmpty();
    for (const char* type : kTemplateOrderTypes) {
        if (value == type) {
            target.m_OrderType = value;
            return true;
        }
    }
    AddError(kCOTErrorInvalidValue, value, node, field);
    return false;
}

// ---- Action ----

bool CQVOXConditionalOrdersTemplate::UpdateFieldAction(CQVOXCOTOrder* node,
                                                       COrderBarProperties& target,
                                                       COrderBarProperties& key,
                                                       IUnknownPtr position, double) {
    CQVOXCOTField* field = node->GetAt(kCOTFieldAction);
    if (field == nullptr) return false;
    COTFieldWords words;
    if (!ReadLegalFieldWords(*this, node, field, words)) return false;

    const LONG category = key.m_SymbolCategory.value;
    SHORT side = 0;
    if (words.location == kCOTLocationKey) {
        side = key.m_Side.value;
    } else if (words.location == kCOTLocationPosition) {
        const IMVPositionPtr reading = ReportingPosition(position);
        if (!reading) {
            AddVerboseError(kCOTErrorNoPosition);
            return false;
        }
        // The side of the position itself, long or short.
        if (!ConvertValueToAction(kEntryWord, category, PositionQuantityOf(reading), side, true)) {
            AddError(kCOTErrorInvalidValue, field->GetValue().TextOrEmpty(), node, field);
            return false;
        }
    } else if (words.location == kCOTLocationValue) {
        const CString value = field->GetValue().TextOrEmpty();
        if (!ConvertValueToAction(value, category, 0, side, false)) {
            AddError(kCOTErrorInvalidValue, value, node, field);
            return false;
        }
    } else {
        AddError(kCOTErrorInvalidLocation, words.location, node, field);
        return false;
    }

    if (words.usage == kCOTUsageExact) {
        target.m_Side = side;
        return true;
    }
    if (words.usage != kCOTUsageInverse) {
        AddError(kCOTErrorInvalidUsage, words.usage, node, field);
        return false;
    }
    // The opposite side: on futures and forex buying and selling alone; on equities and their
    // options a short sale is covered and anything else not long is sold short.
    if (IsFuturesLike(category)) {
        target.m_Side = static_cast<SHORT>(side == 'B' ? 'S' : 'B');
    } else if (category == kCOTEquities || category == kCOTEquityOptions) {
        switch (side) {
            case 'B':
                target.m_Side = static_cast<SHORT>('S');
                break;
            case 'S':
                target.m_Side = static_cast<SHORT>('B');
                break;
            case 'T':
                target.m_Side = static_cast<SHORT>('C');
                break;
            default:
                target.m_Side = static_cast<SHORT>('T');
                break;
        }
    }
    if (key.m_SymbolCategory == kCOTEquityOptions) {
        const SHORT inverted = target.m_Side.value;
        target.m_OpenClose = static_cast<SHORT>(inverted == 'B' || inverted == 'T' ? 'O' : 'C');
    }
    return true;
}

bool CQVOXConditionalOrdersTemplate::ConvertValueToAction(const char* value, LONG category,
                                                          LONG positionQuantity, SHORT& side,
                                                          bool allowEntryExit) {
    if (value == nullptr) return false;
    const bool futuresLike = IsFuturesLike(category);
    const char closeBuy = futuresLike ? 'B' : 'C';
    const char openSell = futuresLike ? 'S' : 'T';
    const char sides[] = {'B', closeBuy, openSell, 'S'};
    for (std::size_t i = 0; i < std::size(kActionWords); ++i) {
        if (Begins(value, kActionWords[i])) {
            side = static_cast<SHORT>(sides[i]);
            return true;
        }
    }
    if (!allowEntryExit) return false;
    if (Begins(value, kEntryWord)) {
        side = static_cast<SHORT>(positionQuantity >= 0 ? 'B' : openSell);
        return true;
    }
    if (Begins(value, kExitWord)) {
        side = static_cast<SHORT>(positionQuantity >= 0 ? 'S' : closeBuy);
        return true;
    }
    return false;
}

bool CQVOXConditionalOrdersTemplate::ConvertValueToAction(const char* value, LONG category,
                                                          CString& word) {
    if (value == nullptr) return false;
    // By literal: futures and forex, equity options, everything else.
    static constexpr const char* kShown[4][3] = {{"Buy", "Buy to Open", "Buy"},
                                                 {"Buy", "Buy to Close", "Cover"},
                                                 {"Sell", "Sell to Open", "Short"},
                                                 {"Sell", "Sell to Close", "Sell"}};
    const std::size_t column = IsFuturesLike(category) ? 0 : category == kCOTEquityOptions ? 1 : 2;
    for (std::size_t i = 0; i < std::size(kActionWords); ++i) {
        if (Begins(value, kActionWords[i])) {
            word = kShown[i][column];
            return true;
        }
    }
    return false;
}

// ---- Route, Duration, Advanced ----

namespace {

// The frame the three share: only Exact = Value and Exact = Key do anything; Key keeps what the
// target, a copy of the key, already has.
template <typename Apply>
bool UpdateKeptField(CQVOXConditionalOrdersTemplate& item, CQVOXCOTOrder* node, const char* name,
                     Apply&& apply) {
    CQVOXCOTField* field = node->GetAt(name);
    if (field == nullptr) return false;
    COTFieldWords words;
    if (!ReadLegalFieldWords(item, node, field, words)) return false;
    if (words.usage != kCOTUsageExact || words.operation != kCOTOperationReplace) return false;
    if (words.location == kCOTLocationValue) {
        apply(field->GetValue().TextOrEmpty());
        return true;
    }
    return words.location == kCOTLocationKey;
}

}  // namespace

bool CQVOXConditionalOrdersTemplate::UpdateFieldRoute(CQVOXCOTOrder* node,
                                                      COrderBarProperties& target,
                                                      COrderBarProperties&, IUnknownPtr, double) {
    return UpdateKeptField(*this, node, kCOTFieldRoute,
                           [&target](const CString& value) { target.m_Route = value; });
}

bool CQVOXConditionalOrdersTemplate::UpdateFieldDuration(CQVOXCOTOrder* node,
                                                         COrderBarProperties& target,
                                                         COrderBarProperties&, IUnknownPtr,
                                                         double) {
    return UpdateKeptField(*this, node, kCOTFieldDuration, [&target](const CString& value) {
        CString duration;
        COleDateTime date;
        ConvertStringToDurationAndDateTime(value, duration, date);
        target.m_Duration = duration;
        target.m_DurationDate = static_cast<double>(date);
    });
}

bool CQVOXConditionalOrdersTemplate::UpdateFieldAdvanced(CQVOXCOTOrder* node,
                                                         COrderBarProperties& target,
                                                         COrderBarProperties&, IUnknownPtr,
                                                         double) {
    // A Value of empty text clears the options the copy took from the key.
    return UpdateKeptField(*this, node, kCOTFieldAdvanced, [&target](const CString& value) {
        target.RestAllAdvanceOption();
        if (!value.IsEmpty()) target.SetAdvancePropertyFromString(value, false);
    });
}

void CQVOXConditionalOrdersTemplate::ConvertDurationAndDateTimeToString(CString& text,
                                                                        const CString& duration,
                                                                        const COleDateTime& date) {
    text = duration;
    if (date.GetStatus() != COleDateTime::valid) return;
    text += ":";
    text += date.Format("%m/%d/%Y");
}

void CQVOXConditionalOrdersTemplate::ConvertStringToDurationAndDateTime(const CString& text,
                                                                        CString& duration,
                                                                        COleDateTime& date) {
    duration = text;
    date = COleDateTime::GetCurrentTime();
    const int colon = text.Find(':');
    if (colon < 0) return;
    duration = text.Left(colon);
    // Text that doesn't read leaves the date zero and invalid.
    date.ParseDateTime(text.Mid(colon + 1));
}

}  // namespace qvox
