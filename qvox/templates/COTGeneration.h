// What the members of generation share (the frame, fields, prices and quantities): a field's
// words read once, the combination test every update begins with, the position object, and the
// conversions of a field's text. Internal to the template classes.
#pragma once

#include <string>

#include "qvox/platform/CString.h"
#include "qvox/platform/ComPtr.h"
#include "qvox/platform/PlatformInterfaces.h"
#include "qvox/platform/Variant.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/templates/CQVOXCOTNodes.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {

class CQVOXConditionalOrdersTemplate;
class COrderBarProperties;

// Symbol categories as an order's m_SymbolCategory holds them.
inline constexpr LONG kCOTFutures = static_cast<LONG>(SymbolCategoryFuture);
inline constexpr LONG kCOTEquities = static_cast<LONG>(SymbolCategoryStock);
inline constexpr LONG kCOTEquityOptions = static_cast<LONG>(SymbolCategoryStockOption);
inline constexpr LONG kCOTOtherOptions = static_cast<LONG>(SymbolCategoryOtherOption);
inline constexpr LONG kCOTForex = static_cast<LONG>(SymbolCategoryForex);

// Name, Usage, Operation and Location of one field, each read from the document once.
struct COTFieldWords {
    CString name;
    CString usage;
    CString operation;
    CString location;

    // The combination key: the four words joined by one blank each.
    std::string Key() const;
};

// Reads the words of field and tests their combination against item's table. On an illegal one
// the combination error goes to item for node and field, and the answer is false.
bool ReadLegalFieldWords(CQVOXConditionalOrdersTemplate& item, CQVOXCOTOrder* node,
                         CQVOXCOTField* field, COTFieldWords& words);

// The position interface of position when it reports a position (PositionExists not 0); null
// for a null reference, one without the interface, or no position. A failing call raises.
IMVPositionPtr ReportingPosition(const IUnknownPtr& position);
// PositionQuantity and PositionAveragePrice of a position; a failing call raises.
LONG PositionQuantityOf(const IMVPositionPtr& position);
double PositionAveragePriceOf(const IMVPositionPtr& position);

// A field's text as a whole number (automation rules, halves to even) or as a number; false
// for text that isn't one, or a number beyond the type.
bool TextToLong(const _variant_t& value, LONG& number);
bool TextToDouble(const _variant_t& value, double& number);

// A double truncated toward zero into 32 bits: NaN gives 0, values beyond the range the nearest
// end of it, so that no conversion overflows.
LONG TruncateToLong(double value);

// The lots of order as GetLots gives them, without GetLots' rewrite of a quantity below one lot.
LONG LotsOf(const COrderBarProperties& order);

}  // namespace qvox
