// qvox order: what the platform receives for an order written in JSON: the property table of the
// order and of everything nested in it, with the advanced options string of each order, or the
// same exchange written back as JSON.
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "Commands.h"
#include "OrderJson.h"
#include "qvox/QVOXUtil.h"
#include "qvox/interchange/OrderPropertyTable.h"

namespace qvox::tool {
namespace {

struct OrderOptions {
    std::string file;
    bool json = false;
};

std::string NameOf(int number, bool leg) {
    if (leg) {
        for (const LegPropertyRow& row : g_LegProperties) {
            if (row.number == number) return row.field;
        }
        return "?";
    }
    const OrderPropertyRow* row = FindOrderProperty(number);
    return row ? row->field : "?";
}

std::string Show(const VARIANT& v) {
    char text[64];
    switch (v.vt) {
        case VT_BSTR:
            return "\"" + Cp1252ToUtf8(Cp1252FromBstr(v.bstrVal)) + "\"";
        case VT_R8:
            std::snprintf(text, sizeof(text), "%.10g", v.dblVal);
            return text;
        case VT_BOOL:
            return v.boolVal == VARIANT_TRUE ? "true" : "false";
        case VT_UI4:
            return std::to_string(v.ulVal);
        case VT_I4:
            return std::to_string(v.lVal);
        case VT_INT:
            return std::to_string(v.intVal);
        case VT_I2:
            if (v.iVal > 32 && v.iVal < 127) {
                return std::to_string(v.iVal) + " '" + static_cast<char>(v.iVal) + "'";
            }
            return std::to_string(v.iVal);
        default:
            return "";
    }
}

std::vector<IMVPropertiesPtr> Nested(IMVProperties* object, int number) {
    std::vector<IMVPropertiesPtr> objects;
    _variant_t value;
    if (FAILED(GetPropertyByNumber(object, number, &value)) || value.vt != VT_UNKNOWN) {
        return objects;
    }
    const IMVCollectionPtr collection(IUnknownPtr(value.punkVal));
    LONG position = 0;
    collection->StartWalk(&position);
    IUnknownPtr item;
    while (collection->GetNext(&position, &item) == S_OK) {
        objects.emplace_back(IMVPropertiesPtr(item));
    }
    return objects;
}

// One order's rows, its legs' rows indented below their own rows.
void PrintRows(std::ostream& out, IMVProperties* object, const std::string& indent, bool leg) {
    LONG count = 0;
    object->GetCount(&count);
    for (LONG i = 0; i < count; ++i) {
        _variant_t key;
        object->GetKeyAt(i, &key);
        _variant_t value;
        GetPropertyByNumber(object, key.lVal, &value);
        char row[160];
        std::string shown;
        if (value.vt == VT_UNKNOWN) {
            const auto n = Nested(object, key.lVal).size();
            shown = std::to_string(n) + (n == 1 ? " order" : " orders") + ", below";
        } else if (value.vt == VT_DISPATCH) {
            shown = "leg";
        } else {
            shown = Show(value);
        }
        std::snprintf(row, sizeof(row), "%s%3d  %-26s %-12s ", indent.c_str(),
                      static_cast<int>(key.lVal), NameOf(key.lVal, leg).c_str(),
                      VarTypeName(value.vt).GetString());
        out << row << shown << '\n';
        if (value.vt == VT_DISPATCH && value.pdispVal) {
            const IMVPropertiesPtr legObject(IDispatchPtr(value.pdispVal));
            if (legObject) PrintRows(out, legObject, indent + "       ", true);
        }
    }
}

struct Pending {
    IMVPropertiesPtr object;
    const COrderBarProperties* order;
    std::string indent;
    std::string title;
};

// The table of an order and everything below it, depth first, with no recursion over the graph.
void PrintTable(std::ostream& out, IMVProperties* top, const COrderBarProperties& root) {
    std::vector<Pending> pending{{top, &root, "", "order"}};
    while (!pending.empty()) {
        Pending item = std::move(pending.back());
        pending.pop_back();
        out << item.indent << item.title << '\n';
        PrintRows(out, item.object, item.indent + "  ", false);
        out << item.indent << "  advanced  "
            << item.order->GetAdvancePropertyAsString(false, 0).GetString() << '\n';
        // The record's children and followers stand in the same order as the nested objects.
        std::vector<Pending> below;
        const auto children = Nested(item.object, 79);
        for (std::size_t i = 0; i < children.size(); ++i) {
            below.push_back(
                {children[i], item.order->GetOSOChild(static_cast<ULONG>(i)), item.indent + "    ",
                 "OSO child " + std::to_string(i + 1) + " of " + std::to_string(children.size())});
        }
        const auto followers = Nested(item.object, 78);
        const COrderBarProperties* follower = item.order->GetOCANext();
        for (std::size_t i = 0; i < followers.size() && follower; ++i) {
            below.push_back({followers[i], follower, item.indent + "    ",
                             "OCA follower " + std::to_string(i + 1) + " of " +
                                 std::to_string(followers.size())});
            follower = follower->GetOCANext();
        }
        for (auto it = below.rbegin(); it != below.rend(); ++it) {
            pending.push_back(std::move(*it));
        }
    }
}

int Run(const OrderOptions& options, std::ostream& out, std::ostream& err) {
    COrderBarProperties order;
    try {
        ReadOrderJson(ReadTextFile(options.file), order);
    } catch (const OrderJsonError& e) {
        err << "qvox: " << options.file << ": " << e.what() << '\n';
        return kExitUsage;
    } catch (const _com_error& e) {
        err << "qvox: " << options.file << ": " << e.what() << '\n';
        return kExitUsage;
    }
    const IMVPropertiesPtr object(order.GetOrderProperties());
    if (options.json) {
        out << OrderPropertiesToJson(object).dump(2) << '\n';
    } else {
        PrintTable(out, object, order);
    }
    return kExitOk;
}

}  // namespace

void AddOrderCommand(CLI::App& app, Action& action) {
    auto options = std::make_shared<OrderOptions>();
    CLI::App* command = app.add_subcommand(
        "order", "the property objects the platform receives for an order written in JSON");
    command->add_option("file", options->file, "the order in JSON (see README: the JSON order)")
        ->required();
    command->add_flag("--json", options->json, "write the exchange back as JSON");
    command->callback([options, &action] {
        action = [options](std::ostream& out, std::ostream& err) {
            return Run(*options, out, err);
        };
    });
}

}  // namespace qvox::tool
