// The JSON form of an order, which every qvox command that takes an order reads.
//
// An order is a JSON object whose keys are the record's field names without their "m_" prefix
// ("Symbol", "Quantity", "LimitPriceRaw", ...), one per property number of the exchange, with a
// value of the property's type: text for VT_BSTR, a number for VT_R8, a whole number for VT_I2,
// VT_I4 and VT_UI4 (checked against the type's range), true or false for VT_BOOL. "Side",
// "OpenClose", "PriceScale" and "QuantityType" hold a character code and take a one-letter text
// as well ("B", "O", "l", "#"). Besides the fields:
//   "Legs"          up to three leg objects (keys: Symbol, Text64, OrderType, LimitPrice,
//                   StopPrice, Side, OpenClose, Quantity, Real47, Real46, Short45); "LegCount"
//                   defaults to one more than their number
//   "OSOChildren"   orders sent when this one fills, each the head of its own chain
//   "OCAFollowers"  the orders behind this one in its one-cancels-all chain
//   "Bracket"       the chain is a bracket
// Unknown keys are refused, so a misspelt field does not pass unnoticed.
//
// Written back, an order has its keys in the order the exchange stores them, and always
// "OrderCategoryOverride", the category the platform receives.
#pragma once

#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/PlatformInterfaces.h"

namespace qvox::tool {

// What is wrong with a JSON order: "line 3, column 7: ..." for text that is no JSON, "at
// /OSOChildren/0/Quantity: ..." for JSON that is no order.
class OrderJsonError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The property object of an order in JSON text, with its related orders nested inside.
IMVPropertiesPtr OrderPropertiesFromJson(const std::string& text);

// The order of JSON text, read through its property object as the platform's would be.
void ReadOrderJson(const std::string& text, COrderBarProperties& order);

// The JSON form of a property object of an order, nested objects included.
nlohmann::ordered_json OrderPropertiesToJson(IMVProperties* object);

// A file's whole text; OrderJsonError when it can't be read.
std::string ReadTextFile(const std::string& path);

}  // namespace qvox::tool
