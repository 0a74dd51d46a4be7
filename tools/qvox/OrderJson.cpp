#include "OrderJson.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "qvox/interchange/OrderPropertyTable.h"
#include "qvox/platform/CodePage.h"
#include "qvox/platform/PlatformObjects.h"

namespace qvox::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kLegs = "Legs";
constexpr std::string_view kChildren = "OSOChildren";
constexpr std::string_view kFollowers = "OCAFollowers";
constexpr std::string_view kBracket = "Bracket";
constexpr int kChildrenNumber = 79;
constexpr int kFollowersNumber = 78;
constexpr int kBracketNumber = 80;
constexpr int kLegCountNumber = 61;
constexpr int kFirstLegNumber = 57;

// The JSON key of a field: its name without "m_".
std::string_view KeyOf(const char* field) {
    std::string_view name(field);
    return name.substr(0, 2) == "m_" ? name.substr(2) : name;
}

bool HoldsCharacter(std::string_view key) {
    return key == "Side" || key == "OpenClose" || key == "PriceScale" || key == "QuantityType";
}

// The row of a key among rows, or null.
template <class Row, std::size_t N>
const Row* RowOf(const Row (&rows)[N], std::string_view key) {
    for (const Row& row : rows) {
        if ((row.text || row.real || row.ulong || row.integer || row.shortint || row.flag) &&
            KeyOf(row.field) == key) {
            return &row;
        }
    }
    return nullptr;
}

[[noreturn]] void Fail(const std::string& path, const std::string& what) {
    throw OrderJsonError("at " + (path.empty() ? std::string("/") : path) + ": " + what);
}

// A JSON value as a VARIANT of the row's type.
_variant_t ValueOf(const Json& value, VARTYPE vt, std::string_view key, const std::string& path) {
    switch (vt) {
        case VT_BSTR:
            if (!value.is_string()) Fail(path, "expects text");
            // JSON text is UTF-8; the record keeps the single-byte code page.
            return _variant_t(CString(Utf8ToCp1252(value.get<std::string>())));
        case VT_R8:
            if (!value.is_number()) Fail(path, "expects a number");
            return _variant_t(value.get<double>());
        case VT_BOOL:
            if (!value.is_boolean()) Fail(path, "expects true or false");
            return _variant_t(value.get<bool>());
        default:
            break;
    }
    std::int64_t number = 0;
    if (HoldsCharacter(key) && value.is_string()) {
        const auto text = value.get<std::string>();
        if (text.size() != 1) Fail(path, "expects one character or a whole number");
        number = static_cast<unsigned char>(text[0]);
    } else if (value.is_number_integer()) {
        number = value.is_number_unsigned()
                     ? static_cast<std::int64_t>(std::min<std::uint64_t>(
                           value.get<std::uint64_t>(), std::numeric_limits<std::int64_t>::max()))
                     : value.get<std::int64_t>();
    } else {
        Fail(path, "expects a whole number");
    }
    const auto range = [&](std::int64_t lo, std::int64_t hi) {
        if (number < lo || number > hi) {
            Fail(path,
                 "expects a whole number from " + std::to_string(lo) + " to " + std::to_string(hi));
        }
    };
    switch (vt) {
        case VT_I2:
            range(INT16_MIN, INT16_MAX);
            return _variant_t(static_cast<SHORT>(number));
        case VT_UI4:
            range(0, UINT32_MAX);
            return _variant_t(static_cast<ULONG>(number));
        default:
            range(INT32_MIN, INT32_MAX);
            return _variant_t(static_cast<std::int32_t>(number), vt);
    }
}

template <class Row, std::size_t N>
void PutFields(const Json& json, const Row (&rows)[N], IMVProperties* object,
               const std::string& path, bool isOrder) {
    for (const auto& [key, value] : json.items()) {
        if (isOrder && (key == kLegs || key == kChildren || key == kFollowers || key == kBracket)) {
            continue;
        }
        const Row* row = RowOf(rows, key);
        if (!row) Fail(path + "/" + key, "no such field");
        ThrowIfFailed(SetPropertyByNumber(object, row->number,
                                          ValueOf(value, row->vt, key, path + "/" + key)));
    }
}

struct PendingObject {
    const Json* json;
    IMVPropertiesPtr object;
    std::string path;
};

}  // namespace

IMVPropertiesPtr OrderPropertiesFromJson(const std::string& text) {
    Json root;
    try {
        root = Json::parse(text);
    } catch (const nlohmann::json::parse_error& e) {
        // The library counts the byte where it stopped; the user wants line and column, from 1.
        const std::size_t stop = std::min<std::size_t>(e.byte > 0 ? e.byte - 1 : 0, text.size());
        std::size_t line = 1;
        std::size_t column = 1;
        for (std::size_t i = 0; i < stop; ++i) {
            if (text[i] == '\n') {
                ++line;
                column = 1;
            } else {
                ++column;
            }
        }
        std::string message = e.what();
        const auto reason = message.find(": ", message.find("parse error"));
        throw OrderJsonError(
            "line " + std::to_string(line) + ", column " + std::to_string(column) +
            (reason == std::string::npos ? ": " + message : message.substr(reason)));
    }
    const IMVPropertiesPtr top = NewPropertyObject();
    std::vector<PendingObject> pending{{&root, top, ""}};
    // Order by order, with no recursion: a file can nest as deep as it likes.
    while (!pending.empty()) {
        PendingObject item = std::move(pending.back());
        pending.pop_back();
        const Json& json = *item.json;
        if (!json.is_object()) Fail(item.path, "an order is a JSON object");
        PutFields(json, g_OrderProperties, item.object, item.path, true);
        if (json.contains(kLegs)) {
            const Json& legs = json[std::string(kLegs)];
            const std::string path = item.path + "/Legs";
            if (!legs.is_array() || legs.size() > 3) Fail(path, "expects up to three legs");
            for (std::size_t i = 0; i < legs.size(); ++i) {
                const std::string legPath = path + "/" + std::to_string(i);
                if (!legs[i].is_object()) Fail(legPath, "a leg is a JSON object");
                const IMVPropertiesPtr leg = NewPropertyObject();
                PutFields(legs[i], g_LegProperties, leg, legPath, false);
                ThrowIfFailed(SetPropertyByNumber(item.object,
                                                  kFirstLegNumber + static_cast<int>(i),
                                                  _variant_t(static_cast<IDispatch*>(leg))));
            }
            if (!json.contains("LegCount")) {
                ThrowIfFailed(SetPropertyByNumber(item.object, kLegCountNumber,
                                                  _variant_t(static_cast<SHORT>(legs.size() + 1))));
            }
        }
        if (json.contains(kBracket)) {
            ThrowIfFailed(SetPropertyByNumber(
                item.object, kBracketNumber,
                ValueOf(json[std::string(kBracket)], VT_BOOL, kBracket, item.path + "/Bracket")));
        }
        for (const auto& [key, number] :
             {std::pair{kChildren, kChildrenNumber}, std::pair{kFollowers, kFollowersNumber}}) {
            if (!json.contains(key)) continue;
            const Json& orders = json[std::string(key)];
            const std::string path = item.path + "/" + std::string(key);
            if (!orders.is_array()) Fail(path, "expects a list of orders");
            const IMVCollectionPtr collection = NewCollection();
            for (std::size_t i = 0; i < orders.size(); ++i) {
                const IMVPropertiesPtr object = NewPropertyObject();
                ThrowIfFailed(collection->Add(object));
                pending.push_back({&orders[i], object, path + "/" + std::to_string(i)});
            }
            ThrowIfFailed(SetPropertyByNumber(
                item.object, number,
                _variant_t(static_cast<IUnknown*>(collection.GetInterfacePtr()))));
        }
    }
    return top;
}

void ReadOrderJson(const std::string& text, COrderBarProperties& order) {
    order.SetOrderProperties(IDispatchPtr(OrderPropertiesFromJson(text)));
}

namespace {

// A value in JSON: characters as one-letter texts where they are printable.
Json JsonOf(const VARIANT& value, std::string_view key) {
    switch (value.vt) {
        case VT_BSTR:
            return Cp1252ToUtf8(Cp1252FromBstr(value.bstrVal));
        case VT_R8:
            return std::isfinite(value.dblVal) ? Json(value.dblVal) : Json();
        case VT_BOOL:
            return value.boolVal == VARIANT_TRUE;
        case VT_UI4:
            return value.ulVal;
        case VT_I4:
            return value.lVal;
        case VT_INT:
            return value.intVal;
        case VT_I2:
            if (HoldsCharacter(key) && value.iVal > 32 && value.iVal < 127) {
                return std::string(1, static_cast<char>(value.iVal));
            }
            return value.iVal;
        default:
            return Json();
    }
}

// The fields of a property object as JSON, in the order the object holds them; the property
// numbers of legs and groups are handed back for the caller.
template <class Row, std::size_t N>
Json FieldsOf(IMVProperties* object, const Row (&rows)[N], std::vector<int>* others) {
    Json json = Json::object();
    LONG count = 0;
    ThrowIfFailed(object->GetCount(&count));
    for (LONG i = 0; i < count; ++i) {
        _variant_t key;
        ThrowIfFailed(object->GetKeyAt(i, &key));
        _variant_t value;
        ThrowIfFailed(GetPropertyByNumber(object, key.lVal, &value));
        const Row* row = nullptr;
        for (const Row& candidate : rows) {
            if (candidate.number == key.lVal) row = &candidate;
        }
        const bool isField = row && (row->text || row->real || row->ulong || row->integer ||
                                     row->shortint || row->flag);
        if (isField) {
            const std::string_view name = KeyOf(row->field);
            json[std::string(name)] = JsonOf(value, name);
        } else if (others) {
            others->push_back(key.lVal);
        }
    }
    return json;
}

std::vector<IMVPropertiesPtr> ObjectsIn(IMVProperties* object, int number) {
    std::vector<IMVPropertiesPtr> objects;
    _variant_t value;
    if (FAILED(GetPropertyByNumber(object, number, &value))) return objects;
    if (value.vt != VT_UNKNOWN && value.vt != VT_DISPATCH) return objects;
    const IMVCollectionPtr collection(IUnknownPtr(value.punkVal));
    if (!collection) return objects;
    LONG position = 0;
    ThrowIfFailed(collection->StartWalk(&position));
    IUnknownPtr item;
    while (collection->GetNext(&position, &item) == S_OK) {
        objects.emplace_back(IMVPropertiesPtr(item));
    }
    return objects;
}

}  // namespace

Json OrderPropertiesToJson(IMVProperties* object) {
    Json root;
    std::vector<std::pair<IMVProperties*, Json*>> pending{{object, &root}};
    std::vector<IMVPropertiesPtr> held;  // the nested objects, alive while they are written
    while (!pending.empty()) {
        auto [current, target] = pending.back();
        pending.pop_back();
        if (!current) {
            *target = Json::object();
            continue;
        }
        std::vector<int> others;
        Json json = FieldsOf(current, g_OrderProperties, &others);
        Json legs = Json::array();
        for (int number = kFirstLegNumber; number < kFirstLegNumber + 3; ++number) {
            _variant_t leg;
            if (FAILED(GetPropertyByNumber(current, number, &leg)) || leg.vt != VT_DISPATCH) {
                continue;
            }
            const IMVPropertiesPtr legObject(IDispatchPtr(leg.pdispVal));
            legs.push_back(legObject ? FieldsOf(legObject.GetInterfacePtr(), g_LegProperties,
                                                static_cast<std::vector<int>*>(nullptr))
                                     : Json::object());
        }
        if (!legs.empty()) json[std::string(kLegs)] = std::move(legs);
        _variant_t bracket;
        if (SUCCEEDED(GetPropertyByNumber(current, kBracketNumber, &bracket))) {
            json[std::string(kBracket)] = JsonOf(bracket, kBracket);
        }
        // Make every key first and fill the nested orders after: a key added later would move
        // the places the pending entries point at.
        std::vector<std::pair<std::string, std::vector<IMVPropertiesPtr>>> groups;
        for (const auto& [key, number] :
             {std::pair{kChildren, kChildrenNumber}, std::pair{kFollowers, kFollowersNumber}}) {
            auto objects = ObjectsIn(current, number);
            if (objects.empty()) continue;
            json[std::string(key)] = Json::array();
            json[std::string(key)].get_ref<Json::array_t&>().resize(objects.size());
            groups.emplace_back(std::string(key), std::move(objects));
        }
        *target = std::move(json);
        for (auto& [key, objects] : groups) {
            Json& array = (*target)[key];
            for (std::size_t i = objects.size(); i > 0; --i) {
                pending.emplace_back(objects[i - 1].GetInterfacePtr(), &array[i - 1]);
                held.push_back(std::move(objects[i - 1]));
            }
        }
    }
    return root;
}

std::string ReadTextFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw OrderJsonError("cannot read '" + path + "'");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace qvox::tool
