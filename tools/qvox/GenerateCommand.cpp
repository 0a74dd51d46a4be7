// qvox generate: a template applied to a key order, as an order bar applies it when the user picks
// a template: the group of orders it makes, linked and priced, as a tree or as JSON for scripts.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "OrderJson.h"
#include "TemplateFile.h"
#include "qvox/QVOXUtil.h"

namespace qvox::tool {
namespace {

using Json = nlohmann::ordered_json;

struct GenerateOptions {
    std::string templateFile;
    std::string orderFile;
    std::optional<double> bid;
    std::optional<double> ask;
    double last = 0.0;
    std::string position;
    bool json = false;
};

struct Position {
    LONG quantity = 0;
    double averagePrice = 0.0;
};

// "QTY@PRICE": a whole number of lots, negative for a short position, and the average price.
std::optional<Position> ParsePosition(std::string_view text) {
    const std::size_t at = text.find('@');
    if (at == std::string_view::npos) return std::nullopt;
    Position position;
    const std::string_view quantity = text.substr(0, at);
    const auto whole =
        std::from_chars(quantity.data(), quantity.data() + quantity.size(), position.quantity);
    if (quantity.empty() || whole.ec != std::errc() ||
        whole.ptr != quantity.data() + quantity.size()) {
        return std::nullopt;
    }
    const std::string price(text.substr(at + 1));
    std::size_t used = 0;
    try {
        position.averagePrice = std::stod(price, &used);
    } catch (const std::exception&) {
        return std::nullopt;
    }
    if (used != price.size() || !std::isfinite(position.averagePrice)) return std::nullopt;
    return position;
}

// ---- One order as the user reads it ----

std::string Text(const CString& text) {
    return Cp1252ToUtf8(text.view());
}

std::string Text(const ValidString& text) {
    return text.IsValid() ? Text(text.GetText()) : std::string();
}

// A price in the symbol's own price text: "50.00" in cents, "112^161" for 112 and 16.5 32nds in
// 32nds and halves. A plain decimal for a symbol without a price scale, or for a price beyond
// 32-bit pieces.
std::string PriceText(double price, const COrderBarProperties& order) {
    const char code = static_cast<char>(order.m_PriceScale.value);
    if (order.m_PriceScale.valid && Helper::IsValidBaseCode(code) &&
        std::fabs(price / Helper::GetBaseCodeDecimalFactor(code)) < 2147483647.0) {
        char text[16];
        return Helper::Pieces2String(code, Helper::Decimal2Pieces(price, code), text, 0);
    }
    char text[32];
    std::snprintf(text, sizeof(text), "%.10g", price);
    return text;
}

bool HasLimitPrice(const COrderBarProperties& order) {
    return order.m_OrderType == "Limit" || order.m_OrderType == "Stop Limit";
}

bool HasStopPrice(const COrderBarProperties& order) {
    return order.m_OrderType == "Stop Market" || order.m_OrderType == "Stop Limit";
}

// An auto price with its distance in moves ("Offset from Primary +10"); empty without one.
std::string AutoPriceText(const ValidString& kind, const std::string& moves) {
    if (!kind.IsValid() || kind.GetText().IsEmpty()) return {};
    std::string shown = Text(kind);
    if (!moves.empty()) shown += ' ' + (moves[0] == '-' ? moves : '+' + moves);
    return shown;
}

std::string LimitText(const COrderBarProperties& order) {
    const std::string automatic =
        AutoPriceText(order.m_AutoPrice, Text(order.m_AutoPriceIncrement));
    if (!automatic.empty()) return automatic;
    return order.m_LimitPriceRaw.valid ? PriceText(order.m_LimitPriceRaw.value, order) : "";
}

std::string StopText(const COrderBarProperties& order) {
    std::string moves;
    if (order.m_StopAutoPriceOffset.valid) {
        char text[32];
        std::snprintf(text, sizeof(text), "%.0f", order.m_StopAutoPriceOffset.value);
        moves = text;
    }
    const std::string automatic = AutoPriceText(order.m_StopAutoPrice, moves);
    if (!automatic.empty()) return automatic;
    // A trailing stop follows the market: its distance in moves, or in per cent.
    if (order.m_TrailType.valid && order.m_TrailType.value != 0 && order.m_TrailAmount.valid) {
        char text[48];
        std::snprintf(text, sizeof(text), "trailing %g%s", order.m_TrailAmount.value,
                      order.m_TrailType.value == 2 ? "%" : " moves");
        return text;
    }
    return order.m_StopPriceRaw.valid ? PriceText(order.m_StopPriceRaw.value, order) : "";
}

std::string SideText(const COrderBarProperties& order) {
    if (!order.m_Side.valid) return "?";
    const char code = static_cast<char>(order.m_Side.value);
    std::string shown = GetSide(code, 1);
    if (shown.empty()) shown = std::string(1, code);
    if (order.m_OpenClose.valid) {
        shown += order.m_OpenClose.value == 'O' ? " to open" : " to close";
    }
    return shown;
}

// A duration with a date ("GTD") shows the date the order ends.
std::string DurationText(const COrderBarProperties& order) {
    std::string shown = Text(order.m_Duration);
    if (order.m_Duration == "GTD" && order.m_DurationDate.valid) {
        const COleDateTime date(order.m_DurationDate.value);
        shown += ' ' + Text(date.Format("%m/%d/%Y"));
    }
    return shown;
}

// ---- The group as a tree ----

// One order and where it stands in the group: its chain and its place in it, and how deep it
// hangs below the key order.
struct Placed {
    const COrderBarProperties* order;
    std::string place;
    std::size_t depth;
};

std::size_t ChainLength(const COrderBarProperties* head) {
    std::size_t length = 0;
    for (; head != nullptr; head = head->GetOCANext())
        ++length;
    return length;
}

// Every order of the key order's graph, the key first, each chain in its order and the children
// of an order right below it, before its chain goes on; no recursion over the graph.
std::vector<Placed> Walk(const COrderBarProperties& key) {
    struct Pending {
        const COrderBarProperties* order;  // the next order of a chain to place
        std::string title;                 // how the chain hangs from the order above it
        std::size_t depth;
        std::size_t index;   // the order's place in its chain, from 1
        std::size_t length;  // the chain's length
    };
    std::vector<Placed> placed;
    std::vector<Pending> pending{{&key, "key order", 0, 1, ChainLength(&key)}};
    while (!pending.empty()) {
        const Pending item = pending.back();
        pending.pop_back();
        std::string place = item.index == 1 ? item.title : std::string();
        if (item.length > 1) {
            if (!place.empty()) place += ", ";
            place += "OCA " + std::to_string(item.index) + " of " + std::to_string(item.length);
        }
        if (item.order->IsBracket()) place += ", bracket";
        placed.push_back({item.order, place, item.depth});
        // Pushed in reverse: the children first, then the rest of the chain.
        if (const COrderBarProperties* next = item.order->GetOCANext()) {
            pending.push_back({next, "", item.depth, item.index + 1, item.length});
        }
        const ULONG children = item.order->GetOSOChildCount();
        for (ULONG c = children; c-- > 0;) {
            const COrderBarProperties* child = item.order->GetOSOChild(c);
            std::string title = "OSO child";
            if (children > 1)
                title += " " + std::to_string(c + 1) + " of " + std::to_string(children);
            pending.push_back({child, title, item.depth + 1, 1, ChainLength(child)});
        }
    }
    return placed;
}

std::string Summary(const COrderBarProperties& order) {
    std::string shown = SideText(order) + ' ' + std::to_string(order.m_Quantity.value) + ' ' +
                        Text(order.m_OrderType);
    if (HasLimitPrice(order)) shown += ", limit " + LimitText(order);
    if (HasStopPrice(order)) shown += ", stop " + StopText(order);
    shown += ", " + DurationText(order) + ", route " + Text(order.m_Route);
    return shown;
}

std::string Advanced(const COrderBarProperties& order) {
    return Text(order.GetAdvancePropertyAsString(false, 0));
}

void PrintTree(std::ostream& out, const std::vector<Placed>& placed) {
    for (const Placed& item : placed) {
        const std::string indent(item.depth * 2, ' ');
        const std::string place = item.place.empty() ? std::string("OCA") : item.place;
        out << indent << place << ": " << Summary(*item.order) << '\n';
        const std::string advanced = Advanced(*item.order);
        out << indent << "  advanced " << (advanced.empty() ? "(none)" : advanced) << '\n';
    }
}

Json OrderJson(const Placed& item) {
    const COrderBarProperties& order = *item.order;
    Json shown;
    shown["place"] = item.place;
    shown["depth"] = item.depth;
    shown["type"] = Text(order.m_OrderType);
    shown["side"] =
        order.m_Side.valid ? std::string(1, static_cast<char>(order.m_Side.value)) : std::string();
    shown["quantity"] = order.m_Quantity.value;
    shown["limit"] = HasLimitPrice(order) ? LimitText(order) : std::string();
    shown["stop"] = HasStopPrice(order) ? StopText(order) : std::string();
    shown["duration"] = DurationText(order);
    shown["route"] = Text(order.m_Route);
    shown["bracket"] = order.IsBracket();
    shown["advanced"] = Advanced(order);
    return shown;
}

// ---- Running it ----

int Fail(std::ostream& err, const std::string& file, const std::string& why) {
    err << "qvox: " << file << ": " << why << '\n';
    return kExitUsage;
}

int Run(const GenerateOptions& options, std::ostream& out, std::ostream& err) {
    const OpenedTemplate opened = Open(options.templateFile);
    if (opened.result != Opened::Ok) return Fail(err, options.templateFile, Why(opened));
    CQVOXConditionalOrdersTemplate& item = *opened.item;

    COrderBarProperties key;
    try {
        ReadOrderJson(ReadTextFile(options.orderFile), key);
    } catch (const OrderJsonError& e) {
        return Fail(err, options.orderFile, e.what());
    } catch (const _com_error& e) {
        return Fail(err, options.orderFile, e.what());
    }
    if (options.bid) key.m_Bid = *options.bid;
    if (options.ask) key.m_Ask = *options.ask;

    IUnknownPtr position;
    if (!options.position.empty()) {
        const std::optional<Position> held = ParsePosition(options.position);
        if (!held) {
            err << "qvox: --position " << options.position
                << ": expected QTY@PRICE, a whole number of lots (negative when short) and the "
                   "average price\n";
            return kExitUsage;
        }
        position = IUnknownPtr(CMVPosition::Create(held->quantity, held->averagePrice));
    }

    bool generated = false;
    try {
        generated = item.Generate(key, position, options.last);
    } catch (const _com_error& e) {
        return Fail(err, options.templateFile, std::string("a platform call failed: ") + e.what());
    }
    const std::string message = generated ? std::string() : Text(item.GetErrorMessage(true));
    const std::vector<Placed> placed = Walk(key);

    if (options.json) {
        Json result;
        result["template"] = Text(item.GetName());
        result["kind"] = Text(item.GetType());
        result["generated"] = generated;
        if (!generated) result["message"] = message;
        Json orders = Json::array();
        for (const Placed& order : placed)
            orders.push_back(OrderJson(order));
        result["orders"] = std::move(orders);
        result["order"] = OrderPropertiesToJson(IMVPropertiesPtr(key.GetOrderProperties()));
        out << result.dump(2) << '\n';
        return generated ? kExitOk : kExitBadData;
    }
    out << "template \"" << Text(item.GetName()) << "\" (" << Text(item.GetType()) << ") on "
        << Text(key.m_Symbol) << '\n';
    if (!generated) {
        out << "generation failed; the user is told:\n" << message << '\n';
        return kExitBadData;
    }
    PrintTree(out, placed);
    return kExitOk;
}

}  // namespace

void AddGenerateCommand(CLI::App& app, Action& action) {
    auto options = std::make_shared<GenerateOptions>();
    CLI::App* command = app.add_subcommand(
        "generate", "the group of orders a conditional-order template makes of a key order");
    command->add_option("--template", options->templateFile, "the template file (XML)")->required();
    command->add_option("--order", options->orderFile, "the key order in JSON (as qvox order)")
        ->required();
    command->add_option("--bid", options->bid, "the bid, in place of the key order's");
    command->add_option("--ask", options->ask, "the ask, in place of the key order's");
    command->add_option("--last", options->last, "the last trade price (default 0: none known)");
    command->add_option("--position", options->position,
                        "the position in the symbol, QTY@PRICE (negative QTY when short)");
    command->add_flag("--json", options->json, "print the group as JSON");
    command->callback([options, &action] {
        action = [options](std::ostream& out, std::ostream& err) {
            return Run(*options, out, err);
        };
    });
}

}  // namespace qvox::tool
