// The vocabulary of template fields and the tables of legal field attribute combinations.
//
// A field says where its value comes from and how it is applied by three words, Usage,
// Operation and Location; with the field's Name they form a combination, written as a key of
// the four joined by one blank each ("Price Offset ~ Key"). Only the combinations of a fixed
// table are legal, one table per kind of template. The two tables differ in two rows: an "OSO"
// template can take its action from the key order, an "OCO" template can't.
//
// The tables are data, in their published row order: the order in which the legal
// alternatives are listed to the user. Absences that stand: Price has no "Exact" and no "=";
// Limit and Stop have no "Explicit"; Percentage with "~" goes only with Key and Position;
// Quantity has no "Inverse"; Type can't come from the key order.
#pragma once

#include <array>
#include <cstddef>

#include "qvox/templates/CQVOXCOTNodes.h"

namespace qvox {

// ---- Words of the file ----

// Template kinds (the Template's Type).
inline constexpr char kCOTKindOCO[] = "OCO";
inline constexpr char kCOTKindOSO[] = "OSO";

// Field names.
inline constexpr char kCOTFieldType[] = "Type";
inline constexpr char kCOTFieldAction[] = "Action";
inline constexpr char kCOTFieldQuantity[] = "Quantity";
inline constexpr char kCOTFieldPrice[] = "Price";
inline constexpr char kCOTFieldDuration[] = "Duration";
inline constexpr char kCOTFieldRoute[] = "Route";
inline constexpr char kCOTFieldAdvanced[] = "Advanced";
inline constexpr char kCOTFieldLimit[] = "Limit";  // child field of Price
inline constexpr char kCOTFieldStop[] = "Stop";    // child field of Price
// The seven fields an order needs to generate, in the order generation fills them.
inline constexpr const char* g_COTOrderFields[7] = {
    kCOTFieldType,     kCOTFieldAction, kCOTFieldQuantity, kCOTFieldPrice,
    kCOTFieldDuration, kCOTFieldRoute,  kCOTFieldAdvanced};

// Usage: how the field's value and the location's value combine.
inline constexpr char kCOTUsageExact[] = "Exact";            // the location's value unchanged
inline constexpr char kCOTUsageInverse[] = "Inverse";        // Action: the opposite side
inline constexpr char kCOTUsagePercentage[] = "Percentage";  // value per cent of the location's
inline constexpr char kCOTUsageOffset[] = "Offset";          // value counts minimum moves
inline constexpr char kCOTUsageExplicit[] = "Explicit";      // Price: the child fields hold it

// Operation: what is done with the result.
inline constexpr char kCOTOperationReplace[] = "=";
inline constexpr char kCOTOperationAdd[] = "+";
inline constexpr char kCOTOperationSubtract[] = "-";
inline constexpr char kCOTOperationFarSide[] = "~";  // prices: away from the base for the side

// Location: where the base value comes from.
inline constexpr char kCOTLocationValue[] = "Value";  // the field's own text
inline constexpr char kCOTLocationKey[] = "Key";      // the key order
inline constexpr char kCOTLocationPosition[] = "Position";
inline constexpr char kCOTLocationLast[] = "Last";
inline constexpr char kCOTLocationBid[] = "Bid";
inline constexpr char kCOTLocationAsk[] = "Ask";
inline constexpr char kCOTLocationPriceStop[] = "Price.Stop";    // Limit: the order's stop price
inline constexpr char kCOTLocationPriceLimit[] = "Price.Limit";  // Stop: the order's limit price

// The one meaningful Collection Type.
inline constexpr char kCOTCollectionBracket[] = "Bracket";

// Property names the engine reads.
inline constexpr char kCOTPropertyBRQ[] = "BRQ";    // lot of bracket rounding
inline constexpr char kCOTPropertyBRQT[] = "BRQT";  // order type anchoring a rounding group
inline constexpr char kCOTPropertyAction[] = "Action";

// ---- Texts a generation collects for the user ----

// With the combination key as detail, then the legal combinations of the field's Name.
inline constexpr char kCOTErrorInvalidCombination[] = "Invalid attribute combination";
// With the field's value as detail: a type that isn't Limit, Stop Market or Stop Limit, an
// action word that isn't one, a quantity or price that isn't a number.
inline constexpr char kCOTErrorInvalidValue[] = "Invalid Value";
// With the word as detail, for a word no branch of the update knows.
inline constexpr char kCOTErrorInvalidUsage[] = "Invalid Usage";
inline constexpr char kCOTErrorInvalidLocation[] = "Invalid Location";
inline constexpr char kCOTErrorInvalidOperation[] = "Invalid Operation";
// The quantity's own form, the location filling it, with no detail.
inline constexpr char kCOTErrorInvalidQuantityLocation[] = "Invalid Location (%s)";
// With the usage as detail: Price is "Explicit" and has no child fields.
inline constexpr char kCOTErrorMissingExplicit[] = "Missing Explicit";
// With the location as detail, once for each of Limit and Stop that refer to each other.
inline constexpr char kCOTErrorCircularReference[] = "Circular reference";
// With the location as detail: Limit refers to a Stop (or Stop to a Limit) that isn't there.
inline constexpr char kCOTErrorInvalidReference[] = "Invalid reference";
// Without order or field: bracket rounding over quantities that aren't all percentages.
inline constexpr char kCOTErrorBracketPercentages[] =
    "All orders in brackets are not specified as percentages yet bracket rounding was specified.";
// The verbose error of a "Position" location without a position.
inline constexpr char kCOTErrorNoPosition[] =
    "There is no position for the active symbol in the selected account.";

// ---- The tables ----

// One legal combination.
struct COTFieldRule {
    const char* name;
    const char* usage;
    const char* operation;
    const char* location;
    bool osoOnly;  // a row of the "OSO" table alone
};

// Every legal combination of either kind, in the published order. The rows are written out so
// that the listing a user sees can be read here line by line.
// clang-format off
inline constexpr COTFieldRule g_COTFieldRules[117] = {
    {"Type", "Exact", "=", "Value", false},
    {"Action", "Exact", "=", "Value", false},
    {"Action", "Exact", "=", "Key", true},
    {"Action", "Exact", "=", "Position", false},
    {"Action", "Inverse", "=", "Key", true},
    {"Action", "Inverse", "=", "Position", false},
    {"Quantity", "Exact", "=", "Value", false},
    {"Quantity", "Exact", "=", "Key", false},
    {"Quantity", "Exact", "=", "Position", false},
    {"Quantity", "Offset", "+", "Key", false},
    {"Quantity", "Offset", "-", "Key", false},
    {"Quantity", "Offset", "+", "Position", false},
    {"Quantity", "Offset", "-", "Position", false},
    {"Quantity", "Percentage", "+", "Key", false},
    {"Quantity", "Percentage", "-", "Key", false},
    {"Quantity", "Percentage", "+", "Position", false},
    {"Quantity", "Percentage", "-", "Position", false},
    {"Quantity", "Percentage", "=", "Key", false},
    {"Quantity", "Percentage", "=", "Position", false},
    {"Price", "Offset", "+", "Key", false},
    {"Price", "Offset", "+", "Position", false},
    {"Price", "Offset", "+", "Last", false},
    {"Price", "Offset", "+", "Bid", false},
    {"Price", "Offset", "+", "Ask", false},
    {"Price", "Offset", "-", "Key", false},
    {"Price", "Offset", "-", "Position", false},
    {"Price", "Offset", "-", "Last", false},
    {"Price", "Offset", "-", "Bid", false},
    {"Price", "Offset", "-", "Ask", false},
    {"Price", "Offset", "~", "Key", false},
    {"Price", "Offset", "~", "Position", false},
    {"Price", "Offset", "~", "Last", false},
    {"Price", "Offset", "~", "Bid", false},
    {"Price", "Offset", "~", "Ask", false},
    {"Price", "Percentage", "+", "Key", false},
    {"Price", "Percentage", "+", "Position", false},
    {"Price", "Percentage", "+", "Last", false},
    {"Price", "Percentage", "+", "Bid", false},
    {"Price", "Percentage", "+", "Ask", false},
    {"Price", "Percentage", "-", "Key", false},
    {"Price", "Percentage", "-", "Position", false},
    {"Price", "Percentage", "-", "Last", false},
    {"Price", "Percentage", "-", "Bid", false},
    {"Price", "Percentage", "-", "Ask", false},
    {"Price", "Percentage", "~", "Key", false},
    {"Price", "Percentage", "~", "Position", false},
    {"Price", "Explicit", "", "", false},
    {"Limit", "Offset", "+", "Key", false},
    {"Limit", "Offset", "+", "Position", false},
    {"Limit", "Offset", "+", "Last", false},
    {"Limit", "Offset", "+", "Bid", false},
    {"Limit", "Offset", "+", "Ask", false},
    {"Limit", "Offset", "+", "Price.Stop", false},
    {"Limit", "Offset", "-", "Key", false},
    {"Limit", "Offset", "-", "Position", false},
    {"Limit", "Offset", "-", "Last", false},
    {"Limit", "Offset", "-", "Bid", false},
    {"Limit", "Offset", "-", "Ask", false},
    {"Limit", "Offset", "-", "Price.Stop", false},
    {"Limit", "Offset", "~", "Key", false},
    {"Limit", "Offset", "~", "Position", false},
    {"Limit", "Offset", "~", "Last", false},
    {"Limit", "Offset", "~", "Bid", false},
    {"Limit", "Offset", "~", "Ask", false},
    {"Limit", "Offset", "~", "Price.Stop", false},
    {"Limit", "Percentage", "+", "Key", false},
    {"Limit", "Percentage", "+", "Position", false},
    {"Limit", "Percentage", "+", "Last", false},
    {"Limit", "Percentage", "+", "Bid", false},
    {"Limit", "Percentage", "+", "Ask", false},
    {"Limit", "Percentage", "+", "Price.Stop", false},
    {"Limit", "Percentage", "-", "Key", false},
    {"Limit", "Percentage", "-", "Position", false},
    {"Limit", "Percentage", "-", "Last", false},
    {"Limit", "Percentage", "-", "Bid", false},
    {"Limit", "Percentage", "-", "Ask", false},
    {"Limit", "Percentage", "-", "Price.Stop", false},
    {"Limit", "Percentage", "~", "Key", false},
    {"Limit", "Percentage", "~", "Position", false},
    {"Stop", "Offset", "+", "Key", false},
    {"Stop", "Offset", "+", "Position", false},
    {"Stop", "Offset", "+", "Last", false},
    {"Stop", "Offset", "+", "Bid", false},
    {"Stop", "Offset", "+", "Ask", false},
    {"Stop", "Offset", "+", "Price.Limit", false},
    {"Stop", "Offset", "-", "Key", false},
    {"Stop", "Offset", "-", "Position", false},
    {"Stop", "Offset", "-", "Last", false},
    {"Stop", "Offset", "-", "Bid", false},
    {"Stop", "Offset", "-", "Ask", false},
    {"Stop", "Offset", "-", "Price.Limit", false},
    {"Stop", "Offset", "~", "Key", false},
    {"Stop", "Offset", "~", "Position", false},
    {"Stop", "Offset", "~", "Last", false},
    {"Stop", "Offset", "~", "Bid", false},
    {"Stop", "Offset", "~", "Ask", false},
    {"Stop", "Offset", "~", "Price.Limit", false},
    {"Stop", "Percentage", "+", "Key", false},
    {"Stop", "Percentage", "+", "Position", false},
    {"Stop", "Percentage", "+", "Last", false},
    {"Stop", "Percentage", "+", "Bid", false},
    {"Stop", "Percentage", "+", "Ask", false},
    {"Stop", "Percentage", "+", "Price.Limit", false},
    {"Stop", "Percentage", "-", "Key", false},
    {"Stop", "Percentage", "-", "Position", false},
    {"Stop", "Percentage", "-", "Last", false},
    {"Stop", "Percentage", "-", "Bid", false},
    {"Stop", "Percentage", "-", "Ask", false},
    {"Stop", "Percentage", "-", "Price.Limit", false},
    {"Stop", "Percentage", "~", "Key", false},
    {"Stop", "Percentage", "~", "Position", false},
    {"Route", "Exact", "=", "Value", false},
    {"Route", "Exact", "=", "Key", false},
    {"Duration", "Exact", "=", "Value", false},
    {"Duration", "Exact", "=", "Key", false},
    {"Advanced", "Exact", "=", "Value", false},
    {"Advanced", "Exact", "=", "Key", false},
};
// clang-format on

inline constexpr std::size_t kCOTOCORuleCount = 115;
inline constexpr std::size_t kCOTOSORuleCount = 117;

// The table of each kind as records, built once, in table order. MinValue and MaxValue are
// empty and IsChildField false in every row.
const CQVOXCOTField::SQVOXCOTFAttributes* COTOCOFieldAttributes();
const CQVOXCOTField::SQVOXCOTFAttributes* COTOSOFieldAttributes();

// Whether key is the combination key of one of count rows, compared exactly. False for a null
// table or a count below 1.
bool IsCOTCombinationInTable(const CQVOXCOTField::SQVOXCOTFAttributes* table, int count,
                             const char* key);

}  // namespace qvox
