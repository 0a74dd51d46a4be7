// Generation: one key order and a template give the whole linked, priced group. The worked
// example end to end, bracket quantities that add up, the field rules with their texts, prices
// that stay on the symbol's grid, and what a failed or repeated generation leaves behind.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "TemplateTestSupport.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/CodePage.h"
#include "qvox/platform/Platform.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {
namespace {

using test::Field;
using test::TemplateFile;

using C = COrderBarProperties;

// One template order of the seven fields; every default takes its value from the key order.
struct TOrder {
    std::string name = "O";
    std::string type = "Limit";
    std::string action = Field("Action", "Inverse", "=", "Key");
    std::string quantity = Field("Quantity", "Exact", "=", "Key");
    std::string price = Field("Price", "Offset", "~", "Key", "10");
    std::string duration = Field("Duration", "Exact", "=", "Key");
    std::string advanced = Field("Advanced", "Exact", "=", "Key");
};

std::string Xml(const TOrder& o) {
    return "<Order Name=\"" + o.name + "\">" + Field("Type", "Exact", "=", "Value", o.type) +
           o.action + o.quantity + o.price + o.duration + Field("Route", "Exact", "=", "Key") +
           o.advanced + "</Order>";
}

std::string Collection(const std::vector<TOrder>& orders, bool bracket = true) {
    std::string xml =
        std::string("<Collection Name=\"C\"") + (bracket ? " Type=\"Bracket\">" : ">");
    for (const TOrder& o : orders)
        xml += Xml(o);
    return xml + "</Collection>";
}

std::string Percent(const std::string& value, const std::string& location = "Key") {
    return Field("Quantity", "Percentage", "=", location, value);
}

std::string Brq(const std::string& lot) {
    return "<Property Name=\"BRQ\">" + lot + "</Property>";
}

template <class T>
std::unique_ptr<T> Load(const std::string& body) {
    auto item = std::make_unique<T>();
    const std::string kind = std::is_same_v<T, CQVOXCOTOSOTemplate> ? "OSO" : "OCO";
    if (!item->Load(Utf8ToWide(TemplateFile(kind, "T", body)).c_str())) ADD_FAILURE();
    return item;
}

// A limit buy of stock: 1050 shares at 50.00, one move of 0.01.
C StockKey(LONG quantity = 1050) {
    C key;
    key.m_Symbol = "AAPL";
    key.m_SymbolCategory = 2;
    key.m_PriceScale = static_cast<SHORT>('m');
    key.m_MinMove = 1.0;
    key.m_OrderType = "Limit";
    key.m_Side = static_cast<SHORT>('B');
    key.m_Quantity = quantity;
    key.m_QuantityType = static_cast<SHORT>('#');
    key.m_LimitPriceRaw = 50.0;
    key.m_Duration = "Day";
    key.m_Route = "ARCA";
    return key;
}

// The orders of the chain that first heads.
std::vector<C*> Chain(C* first) {
    std::vector<C*> orders;
    for (C* order = first; order != nullptr; order = order->GetOCANext())
        orders.push_back(order);
    return orders;
}

// The lots of every child of an "OSO" generation, in chain order.
std::vector<LONG> ChildLots(C& order) {
    std::vector<LONG> lots;
    if (order.GetOSOChildCount() == 0) return lots;
    for (C* child : Chain(order.GetOSOChild(0)))
        lots.push_back(child->GetLots().value);
    return lots;
}

const TOrder kTarget1{.name = "Target 1",
                      .quantity = Percent("50"),
                      .price = Field("Price", "Offset", "~", "Key", "50")};
const TOrder kStop1{.name = "Stop 1",
                    .type = "Stop Market",
                    .quantity = Percent("50"),
                    .price = Field("Price", "Offset", "~", "Key", "20")};
const TOrder kTarget2{.name = "Target 2",
                      .quantity = Percent("50"),
                      .price = Field("Price", "Offset", "~", "Key", "100")};

TEST(Generate, TheTwoTargetsExampleEndToEnd) {
    TOrder stop2 = kStop1;
    stop2.name = "Stop 2";
    auto oso =
        Load<CQVOXCOTOSOTemplate>(Brq("100") + "<Property Name=\"BRQT\">Limit</Property>" +
                                  Collection({kTarget1, kStop1}) + Collection({kTarget2, stop2}));
    C order = StockKey();
    const C before(order, C::eCopyOrderOnly);
    ASSERT_TRUE(oso->Generate(order, nullptr, 0.0)) << oso->GetErrorMessage(false);
    EXPECT_TRUE(oso->m_BRQTotalKnown);
    EXPECT_EQ(oso->m_BRQTotal, 1050);
    EXPECT_TRUE(oso->m_BRQGroups.empty());  // nothing of the generation stays behind
    EXPECT_TRUE(order == before);           // the key order only gained its children

    // The limit buy sends one bracket of four: sell 500 at +50 moves against a stop at -20,
    // sell 550 at +100 moves against a stop at -20.
    ASSERT_EQ(order.GetOSOChildCount(), 1u);
    const std::vector<C*> chain = Chain(order.GetOSOChild(0));
    ASSERT_EQ(chain.size(), 4u);
    struct Want {
        const char* type;
        LONG lots;
        const char* increment;  // limit: "Offset from Primary" with this text
        double stopOffset;      // stop: "Offset from Primary" this many moves
    };
    const Want want[] = {{"Limit", 500, "50", 0},
                         {"Stop Market", 500, nullptr, -20},
                         {"Limit", 550, "100", 0},
                         {"Stop Market", 550, nullptr, -20}};
    std::set<ULONG> ids;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        C& child = *chain[i];
        EXPECT_EQ(child.m_OrderType, want[i].type) << i;
        EXPECT_EQ(child.m_Side, static_cast<SHORT>('S')) << i;
        EXPECT_EQ(child.GetLots(), want[i].lots) << i;
        EXPECT_TRUE(child.IsBracket());
        EXPECT_EQ(child.GetOSOParent(), &order);
        EXPECT_EQ(child.m_TrailType, static_cast<SHORT>(0));
        EXPECT_EQ(child.m_Duration, "Day");
        EXPECT_EQ(child.m_Route, "ARCA");
        if (want[i].increment != nullptr) {
            EXPECT_EQ(child.m_AutoPrice, "Offset from Primary") << i;
            EXPECT_EQ(child.m_AutoPriceIncrement, want[i].increment) << i;
            EXPECT_FALSE(child.m_StopTrigger.IsValid());
        } else {
            EXPECT_EQ(child.m_StopAutoPrice, "Offset from Primary") << i;
            EXPECT_EQ(child.m_StopAutoPriceOffset, want[i].stopOffset) << i;
            EXPECT_EQ(child.m_StopTrigger, "");  // no preferences without a platform
        }
        ASSERT_TRUE(child.m_LocalOrderID.valid);
        ids.insert(child.m_LocalOrderID.value);
    }
    EXPECT_EQ(ids.size(), 4u);

    // Again on the same template: the same group, nothing left over from the first run.
    C again = StockKey();
    ASSERT_TRUE(oso->Generate(again, nullptr, 0.0));
    EXPECT_EQ(ChildLots(again), (std::vector<LONG>{500, 500, 550, 550}));
}

TEST(Generate, TheSameTemplateAsOCOGivesRealPricesOnTheKeyOrder) {
    const std::string sell = Field("Action", "Exact", "=", "Value", "Sell To Close");
    TOrder target = kTarget1;
    TOrder stop = kStop1;
    target.action = stop.action = sell;
    target.quantity = stop.quantity = Field("Quantity", "Exact", "=", "Key");
    auto oco = Load<CQVOXCOTOCOTemplate>(Collection({target, stop}));
    C order = StockKey();
    ASSERT_TRUE(oco->Generate(order, nullptr, 0.0)) << oco->GetErrorMessage(false);
    // The key order itself is the target, the stop joins its chain.
    EXPECT_EQ(order.m_Side, static_cast<SHORT>('S'));
    EXPECT_DOUBLE_EQ(order.m_LimitPriceRaw.value, 50.50);
    EXPECT_FALSE(order.m_AutoPrice.IsValid());
    ASSERT_NE(order.GetOCANext(), nullptr);
    EXPECT_DOUBLE_EQ(order.GetOCANext()->m_StopPriceRaw.value, 49.80);
    EXPECT_EQ(order.GetOCANext()->GetLots(), 1050);
    EXPECT_TRUE(order.GetOCANext()->IsBracket());
}

TEST(Generate, AnEditedTemplateGeneratesWhatItNowSays) {
    auto oso = Load<CQVOXCOTOSOTemplate>(Collection({TOrder{}}, false));
    C order = StockKey();
    ASSERT_TRUE(oso->Generate(order, nullptr, 0.0));
    CQVOXCOTOrder* node = oso->GetAt(0)->GetAt(0);
    node->GetAt("Price")->SetValue(_variant_t("25"));
    // Edited through the document, beside the node: half the key's quantity.
    const IUnknownPtr quantity = node->GetAt("Quantity")->m_Element;
    oso->m_Document.AddAttribute(quantity, "Usage", "Percentage");
    oso->m_Document.SetElementText(quantity, "50");
    C again = StockKey();
    ASSERT_TRUE(oso->Generate(again, nullptr, 0.0));
    EXPECT_EQ(again.GetOSOChild(0)->m_AutoPriceIncrement, "25");
    EXPECT_EQ(again.GetOSOChild(0)->GetLots(), 525);
}

TEST(Generate, BracketQuantitiesAddUpToTheKeyOrder) {
    struct Case {
        const char* name;
        LONG key;
        std::string lot;  // "BRQ", or none
        std::vector<std::string> percents;
        std::vector<std::string> prices;  // of each bracket's anchor
        std::vector<LONG> lots;           // per bracket, in template order
    };
    const Case cases[] = {
        {"30/70", 1050, "100", {"30", "70"}, {"10", "20"}, {300, 750}},
        {"thirds without rounding", 100, "", {"33", "33", "34"}, {"1", "2", "3"}, {33, 33, 34}},
        {"thirds to single lots", 100, "1", {"33", "33", "34"}, {"1", "2", "3"}, {33, 33, 34}},
        {"thirds of 300 to 100", 300, "100", {"33", "33", "34"}, {"1", "2", "3"}, {100, 100, 100}},
        {"anchors swapped", 1050, "100", {"50", "50"}, {"100", "50"}, {550, 500}},
        {"a multiple of the lot", 1000, "100", {"50", "50"}, {"1", "2"}, {500, 500}},
        {"not 100 per cent", 1000, "100", {"30", "30"}, {"1", "2"}, {300, 300}},
        {"a lot of 0 rounds nothing", 1050, "0", {"30", "70"}, {"1", "2"}, {315, 735}},
        {"nor one that isn't a number", 1050, "lots", {"30", "70"}, {"1", "2"}, {315, 735}},
    };
    for (const Case& c : cases) {
        std::string body = c.lot.empty() ? "" : Brq(c.lot);
        for (std::size_t b = 0; b < c.percents.size(); ++b) {
            TOrder anchor{.quantity = Percent(c.percents[b]),
                          .price = Field("Price", "Offset", "~", "Key", c.prices[b])};
            TOrder stop = anchor;
            stop.type = "Stop Market";
            body += Collection({anchor, stop});
        }
        auto oso = Load<CQVOXCOTOSOTemplate>(body);
        C order = StockKey(c.key);
        ASSERT_TRUE(oso->Generate(order, nullptr, 0.0)) << c.name;
        std::vector<LONG> expected;
        for (LONG lots : c.lots) {
            expected.push_back(lots);
            expected.push_back(lots);
        }
        EXPECT_EQ(ChildLots(order), expected) << c.name;
    }
}

TEST(Generate, BracketRoundingNeedsPercentagesAndAnAnchor) {
    // A bracket of Exact quantities: no known total, and rounding stops with its text, lots
    // untouched.
    TOrder exact{.name = "Exact"};
    auto oso = Load<CQVOXCOTOSOTemplate>(Brq("100") + Collection({exact}));
    C order = StockKey(1050);
    EXPECT_FALSE(oso->Generate(order, nullptr, 0.0));
    EXPECT_FALSE(oso->m_BRQTotalKnown);
    EXPECT_NE(oso->GetErrorMessage(false).Find("All orders in brackets are not specified as "
                                               "percentages yet bracket rounding was specified."),
              -1);
    // The orders stay generated and linked.
    EXPECT_EQ(ChildLots(order), std::vector<LONG>{1050});

    // A stop before its limit isn't in the group and keeps its own lots.
    TOrder stop{.type = "Stop Market", .quantity = Percent("30")};
    TOrder limit{.quantity = Percent("30")};
    TOrder rest{.quantity = Percent("70")};
    auto late =
        Load<CQVOXCOTOSOTemplate>(Brq("100") + Collection({stop, limit}) + Collection({rest}));
    C key = StockKey(1050);
    ASSERT_TRUE(late->Generate(key, nullptr, 0.0));
    EXPECT_EQ(ChildLots(key), (std::vector<LONG>{315, 300, 750}));
}

TEST(Generate, Quantities) {
    struct Case {
        std::string field;
        LONG key;
        LONG lots;  // -1: refused
        const char* text;
    };
    const Case cases[] = {
        {Percent("50"), 7, 4, nullptr},
        {Percent("50"), -7, -4, nullptr},
        {Percent("0"), 7, 0, nullptr},
        {Percent("50"), 1, 1, nullptr},  // half a lot is one lot, not none
        {Field("Quantity", "Exact", "=", "Value", "12.5"), 7, 12, nullptr},
        {Field("Quantity", "Exact", "=", "Value", "lots"), 7, -1, "Invalid Value (lots)"},
        {Field("Quantity", "Offset", "+", "Key", "300"), 100, 103, nullptr},  // moves of 0.01
        {Field("Quantity", "Percentage", "-", "Key", "10"), 100, 90, nullptr},
        {Field("Quantity", "Exact", "=", "Last"), 7, -1, "Invalid attribute combination"},
        {Field("Quantity", "Exact", "=", "Position"), 7, -1,
         "There is no position for the active symbol in the selected account."},
    };
    for (const Case& c : cases) {
        auto oso = Load<CQVOXCOTOSOTemplate>(Collection({TOrder{.quantity = c.field}}, false));
        C order = StockKey(c.key);
        const bool done = oso->Generate(order, nullptr, 0.0);
        EXPECT_EQ(done, c.lots != -1) << c.field;
        if (done) {
            EXPECT_EQ(ChildLots(order), std::vector<LONG>{c.lots}) << c.field;
        }
        if (c.text != nullptr) {
            EXPECT_NE(oso->GetErrorMessage(false).Find(c.text), -1) << c.field;
            EXPECT_EQ(order.GetOSOChildCount(), 0u);  // a failed "OSO" leaves the order alone
        }
    }
    // From a short position: its size.
    auto oso = Load<CQVOXCOTOSOTemplate>(
        Collection({TOrder{.quantity = Field("Quantity", "Exact", "=", "Position")}}));
    C order = StockKey(5);
    ASSERT_TRUE(oso->Generate(order, IUnknownPtr(CMVPosition::Create(-300, 49.0)), 0.0));
    EXPECT_EQ(ChildLots(order), std::vector<LONG>{300});
}

TEST(Generate, Actions) {
    struct Case {
        LONG category;
        SHORT keySide;
        std::string field;
        LONG position;  // 0: none
        SHORT side;     // 0: refused
        SHORT openClose;
    };
    const auto value = [](const char* word) {
        return Field("Action", "Exact", "=", "Value", word);
    };
    const Case cases[] = {
        {2, 'B', value("Buy To Close"), 0, 'C', 0},
        {0, 'B', value("Buy To Close"), 0, 'B', 0},
        {2, 'B', value(""), 0, 'B', 0},
        {2, 'B', value("Sell To"), 0, 'T', 0},
        {2, 'B', value("Entry"), 0, 0, 0},
        {2, 'B', Field("Action", "Inverse", "=", "Position"), 100, 'S', 0},
        {2, 'B', Field("Action", "Inverse", "=", "Position"), -100, 'C', 0},
        {2, 'B', Field("Action", "Exact", "=", "Position"), -100, 'T', 0},
        {2, 'B', Field("Action", "Inverse", "=", "Position"), 0, 0, 0},
        {3, 'C', Field("Action", "Inverse", "=", "Key"), 0, 'T', 'O'},
        {3, 'T', Field("Action", "Inverse", "=", "Key"), 0, 'C', 'C'},
        {12, 'T', Field("Action", "Inverse", "=", "Key"), 0, 'B', 0},
        {4, 'T', Field("Action", "Inverse", "=", "Key"), 0, 'T', 0},  // no inverse: kept
    };
    for (const Case& c : cases) {
        auto oso = Load<CQVOXCOTOSOTemplate>(Collection({TOrder{.action = c.field}}, false));
        C order = StockKey();
        order.m_SymbolCategory = c.category;
        order.m_Side = c.keySide;
        const IUnknownPtr position =
            c.position != 0 ? IUnknownPtr(CMVPosition::Create(c.position, 50.0)) : nullptr;
        const bool done = oso->Generate(order, position, 0.0);
        ASSERT_EQ(done, c.side != 0) << c.field << " " << oso->GetErrorMessage(false);
        if (!done) continue;
        const C& child = *order.GetOSOChild(0);
        EXPECT_EQ(child.m_Side.value, c.side) << c.field;
        EXPECT_EQ(child.m_OpenClose.valid, c.openClose != 0) << c.field;
        if (c.openClose != 0) {
            EXPECT_EQ(child.m_OpenClose.value, c.openClose) << c.field;
        }
    }
    CString word;
    EXPECT_TRUE(CQVOXConditionalOrdersTemplate::ConvertValueToAction("Buy To Close", 3, word));
    EXPECT_EQ(word, "Buy to Close");
    EXPECT_TRUE(CQVOXConditionalOrdersTemplate::ConvertValueToAction("Sell To Open", 2, word));
    EXPECT_EQ(word, "Short");
    EXPECT_FALSE(CQVOXConditionalOrdersTemplate::ConvertValueToAction("Exit", 2, word));
}

TEST(Generate, ClosestPriceOnTheGrid) {
    struct Case {
        char scale;
        double minMove;
        double price;
        double closest;
        int moves;  // -1: untouched
    };
    const Case cases[] = {
        {'m', 5, 50.19, 50.15, 1003},
        {'m', 5, 50.196, 50.20, 1004},
        {'k', 1, 100.17, 100.15625, 3205},
        {'x', 1, 117.52, 117.515625, 7521},
        {'l', 1, 1.0 / 64 + 3, 3.015625, 193},
        {'r', 1, 2.0 / 256 + 7, 7.0078125, 1794},
        {'m', 0.5, 50.19, 50.19, -1},  // below one piece: no grid
        {'m', 1, 0.0, 0.0, -1},
        {'m', 1, -3.0, -3.0, -1},
        {'m', 1, 1e300, 1e300, -1},  // beyond 32 bits: left alone
    };
    for (const Case& c : cases) {
        C order;
        order.m_PriceScale = static_cast<SHORT>(c.scale);
        order.m_MinMove = c.minMove;
        int moves = -1;
        EXPECT_DOUBLE_EQ(CQVOXConditionalOrdersTemplate::GetClosestPrice(c.price, order, &moves),
                         c.closest)
            << c.scale << " " << c.price;
        EXPECT_EQ(moves, c.moves) << c.scale << " " << c.price;
    }
}

TEST(Generate, PricesKeepTheirFinestPart) {
    // "OCO": real prices on the grid of 1/32, halves of 1/32, 1/64 and 1/256.
    struct Case {
        char scale;
        double key;
        const char* moves;
        double limit;
    };
    const Case cases[] = {{'k', 117.5, "3", 117.59375},
                          {'x', 117.515625, "1", 117.53125},
                          {'l', 99.984375, "3", 100.03125},
                          {'r', 1.00390625, "5", 1.0234375}};
    for (const Case& c : cases) {
        auto oco = Load<CQVOXCOTOCOTemplate>(
            Collection({TOrder{.action = Field("Action", "Exact", "=", "Value", "Sell To Close"),
                               .price = Field("Price", "Offset", "~", "Key", c.moves)}}));
        C order = StockKey(4);
        order.m_SymbolCategory = 0;
        order.m_PriceScale = static_cast<SHORT>(c.scale);
        order.m_LimitPriceRaw = c.key;
        ASSERT_TRUE(oco->Generate(order, nullptr, 0.0)) << oco->GetErrorMessage(false);
        EXPECT_EQ(order.m_LimitPriceRaw.value, c.limit) << c.scale;
    }
    // "OSO": offsets in whole moves, also where the decimal amount isn't exact in binary.
    auto oso = Load<CQVOXCOTOSOTemplate>(
        Collection({TOrder{.price = Field("Price", "Offset", "~", "Key", "29")}}));
    C order = StockKey();
    ASSERT_TRUE(oso->Generate(order, nullptr, 0.0));
    EXPECT_EQ(order.GetOSOChild(0)->m_AutoPriceIncrement, "29");
}

TEST(Generate, PriceFields) {
    const auto explicitPrice = [](const std::string& children) {
        return "<Field Name=\"Price\" Usage=\"Explicit\">" + children + "</Field>";
    };
    const std::string stopAtLast = Field("Stop", "Offset", "-", "Last", "20");
    const std::string limitFromStop = Field("Limit", "Offset", "-", "Price.Stop", "5");
    struct Case {
        const char* type;
        std::string price;
        double limit;  // with absolute prices; 0: refused
        double stop;
        const char* text;
    };
    const Case cases[] = {
        // The limit is computed after the stop it refers to, whatever their order in the file.
        {"Stop Limit", explicitPrice(limitFromStop + stopAtLast), 49.75, 49.80, nullptr},
        {"Stop Limit",
         explicitPrice(Field("Limit", "Percentage", "+", "Bid", "2") +
                       Field("Stop", "Offset", "+", "Price.Limit", "1")),
         102.00, 102.01, nullptr},
        {"Stop Limit", Field("Price", "Offset", "-", "Ask", "3"), 50.0, 100.47, nullptr},
        {"Limit", explicitPrice(""), 0, 0, "Missing Explicit (Explicit)"},
        {"Limit", explicitPrice(limitFromStop), 0, 0, "Invalid reference (Price.Stop)"},
        {"Limit", explicitPrice(limitFromStop + Field("Stop", "Offset", "-", "Price.Limit", "5")),
         0, 0, "[Order = \"O\" : Field = \"Stop\"] - Circular reference (Price.Limit)"},
        {"Limit", Field("Price", "Offset", "~", "Key", "x"), 0, 0, "Invalid Value (x)"},
        {"Limit", Field("Price", "Exact", "=", "Key", "1"), 0, 0,
         "Invalid attribute combination (Price Exact = Key)\n\nValid attribute combinations:\n"
         "Price Offset + Key\n"},
    };
    for (const Case& c : cases) {
        auto oco = Load<CQVOXCOTOCOTemplate>(
            Collection({TOrder{.type = c.type,
                               .action = Field("Action", "Exact", "=", "Value", "Sell To Close"),
                               .price = c.price}}));
        C order = StockKey();
        order.m_Bid = 100.0;
        order.m_Ask = 100.5;
        const bool done = oco->Generate(order, nullptr, 50.0);
        ASSERT_EQ(done, c.limit != 0) << c.price << oco->GetErrorMessage(false);
        if (done) {
            EXPECT_DOUBLE_EQ(order.m_LimitPriceRaw.value, c.limit) << c.price;
            EXPECT_DOUBLE_EQ(order.m_StopPriceRaw.value, c.stop) << c.price;
        } else {
            EXPECT_NE(oco->GetErrorMessage(false).Find(c.text), -1) << oco->GetErrorMessage(false);
        }
    }

    // Offsets of a stop limit: its limit keeps an unsigned distance from the stop.
    auto oso = Load<CQVOXCOTOSOTemplate>(Collection(
        {TOrder{.type = "Stop Limit",
                .price = explicitPrice(Field("Stop", "Offset", "+", "Key", "4") +
                                       Field("Limit", "Offset", "-", "Price.Stop", "3"))},
         TOrder{.price = Field("Price", "Offset", "-", "Key", "3")}}));
    C order = StockKey();
    ASSERT_TRUE(oso->Generate(order, nullptr, 0.0));
    const C& stopLimit = *order.GetOSOChild(0);
    EXPECT_EQ(stopLimit.m_AutoPrice, "Offset from Stop Price");
    EXPECT_EQ(stopLimit.m_AutoPriceIncrement, "3");
    EXPECT_EQ(stopLimit.m_StopAutoPriceOffset, 4.0);
    EXPECT_EQ(stopLimit.GetOCANext()->m_AutoPriceIncrement, "-3");

    // The key's price by its type: a market buy means the ask; a "Close" order has none.
    C market = StockKey();
    market.m_OrderType = "Market";
    market.m_Ask = 51.0;
    auto fromKey = Load<CQVOXCOTOCOTemplate>(
        Collection({TOrder{.action = Field("Action", "Exact", "=", "Value", "Sell To Close")}}));
    ASSERT_TRUE(fromKey->Generate(market, nullptr, 0.0));
    EXPECT_DOUBLE_EQ(market.m_LimitPriceRaw.value, 51.10);
    C close = StockKey();
    close.m_OrderType = "Close";
    EXPECT_FALSE(fromKey->Generate(close, nullptr, 0.0));
    EXPECT_EQ(fromKey->m_ErrorText, "");
}

TEST(Generate, DurationRouteAdvancedAndTrailing) {
    auto oso = Load<CQVOXCOTOSOTemplate>(
        Collection({TOrder{.duration = Field("Duration", "Exact", "=", "Value", "GTD:12/31/2027"),
                           .advanced = Field("Advanced", "Exact", "=", "Value", "")},
                    TOrder{.type = "Stop Market",
                           .advanced = Field("Advanced", "Exact", "=", "Value", "TRL=8;")}}));
    C order = StockKey();
    order.m_AllOrNone = static_cast<SHORT>(1);
    order.m_TrailType = static_cast<SHORT>(1);  // the key's trailing stop doesn't pass on
    ASSERT_TRUE(oso->Generate(order, nullptr, 0.0));
    const C& first = *order.GetOSOChild(0);
    EXPECT_EQ(first.m_Duration, "GTD");
    EXPECT_EQ(COleDateTime(first.m_DurationDate.value).Format("%m/%d/%Y"), "12/31/2027");
    EXPECT_EQ(first.m_AllOrNone, static_cast<SHORT>(-1));  // the empty Value cleared it
    EXPECT_EQ(first.m_TrailType, static_cast<SHORT>(0));
    EXPECT_EQ(first.m_AutoPrice, "Offset from Primary");
    const C& trailing = *first.GetOCANext();
    EXPECT_NE(trailing.m_TrailType, static_cast<SHORT>(0));
    EXPECT_FALSE(trailing.m_StopAutoPrice.IsValid());  // a trailing order has no auto price

    CString text;
    CString word;
    COleDateTime date(2027, 3, 4, 15, 30, 0);
    CQVOXConditionalOrdersTemplate::ConvertDurationAndDateTimeToString(text, "GTD", date);
    EXPECT_EQ(text, "GTD:03/04/2027");
    CQVOXConditionalOrdersTemplate::ConvertStringToDurationAndDateTime(text, word, date);
    EXPECT_EQ(word, "GTD");
    EXPECT_TRUE(date == COleDateTime(2027, 3, 4, 0, 0, 0));
    CQVOXConditionalOrdersTemplate::ConvertStringToDurationAndDateTime("Day:never", word, date);
    EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
}

TEST(Generate, StopTriggerFromThePreferences) {
    const IMVPropertiesPtr stocks = CMVProperties::Create();
    SetPropertyByNumber(stocks, 19, _variant_t("Last"));
    SetPropertyByNumber(stocks, 20, _variant_t("Bid/Ask"));
    const auto root = CMVRoot::Create();
    root->SetPreferences(2, IUnknownPtr(stocks));
    ScopedPlatformServices services(
        {.objects = std::make_shared<LibraryPlatformObjects>(IUnknownPtr(root))});
    struct Case {
        LONG exchange;  // -1: none
        const char* type;
        const char* trigger;  // null: no mark
    };
    const Case cases[] = {{18, "Stop Market", "Bid/Ask"},
                          {1, "Stop Limit", "Last"},
                          {7, "Stop Market", ""},
                          {-1, "Stop Market", ""},
                          {18, "Limit", nullptr}};
    for (const Case& c : cases) {
        C order = StockKey();
        order.m_OrderType = c.type;
        if (c.exchange >= 0) order.m_Exchange = c.exchange;
        CQVOXConditionalOrdersTemplate::UpdateStopTrigger(order);
        EXPECT_EQ(order.m_StopTrigger.IsValid(), c.trigger != nullptr) << c.exchange;
        if (c.trigger != nullptr) {
            EXPECT_EQ(order.m_StopTrigger, c.trigger) << c.exchange;
        }
    }
    EXPECT_TRUE(CQVOXConditionalOrdersTemplate::GetOXPrefs(0).IsEmpty());
}

TEST(Generate, WhatAFailureOrARefusalLeaves) {
    const TOrder broken{.type = "Market"};
    // "OSO": the order is untouched, the children made so far are released (LeakSanitizer).
    auto oso = Load<CQVOXCOTOSOTemplate>(Collection({TOrder{}, TOrder{}}) +
                                         Collection({TOrder{}, broken}));
    C order = StockKey();
    const C before(order, C::eCopyOrderOnly);
    EXPECT_FALSE(oso->Generate(order, nullptr, 0.0));
    EXPECT_TRUE(order == before);
    EXPECT_EQ(order.GetOSOChildCount(), 0u);
    EXPECT_NE(oso->GetErrorMessage(true).Find("[Order = \"O\" : Field = \"Type\"] - Invalid "
                                              "Value (Market)"),
              -1);

    // "OCO": what came before the failing order stays in the group.
    TOrder sell{.action = Field("Action", "Exact", "=", "Value", "Sell To Close")};
    TOrder sellBroken = sell;
    sellBroken.type = "Market";
    auto oco = Load<CQVOXCOTOCOTemplate>(Collection({sell, sell}) + Collection({sell, sellBroken}));
    C key = StockKey();
    EXPECT_FALSE(oco->Generate(key, nullptr, 0.0));
    EXPECT_EQ(Chain(&key).size(), 3u);

    // A plain collection before a bracket: the chain refuses the bracket orders, which are
    // gone when Generate returns; the other way round the plain orders join as brackets.
    auto plainFirst = Load<CQVOXCOTOSOTemplate>(Brq("100") + Collection({TOrder{}}, false) +
                                                Collection({TOrder{.quantity = Percent("100")}}));
    C first = StockKey();
    ASSERT_TRUE(plainFirst->Generate(first, nullptr, 0.0));
    EXPECT_EQ(Chain(first.GetOSOChild(0)).size(), 1u);
    EXPECT_FALSE(first.GetOSOChild(0)->IsBracket());
    auto bracketFirst =
        Load<CQVOXCOTOSOTemplate>(Collection({TOrder{}}) + Collection({TOrder{}}, false));
    C second = StockKey();
    ASSERT_TRUE(bracketFirst->Generate(second, nullptr, 0.0));
    const std::vector<C*> joined = Chain(second.GetOSOChild(0));
    ASSERT_EQ(joined.size(), 2u);
    EXPECT_TRUE(joined[1]->IsBracket());

    // No collections: true, nothing changes.
    auto none = Load<CQVOXCOTOSOTemplate>("");
    C alone = StockKey();
    EXPECT_TRUE(none->Generate(alone, nullptr, 0.0));
    EXPECT_TRUE(alone == before);
    EXPECT_EQ(alone.GetOSOChildCount(), 0u);
}

}  // namespace
}  // namespace qvox
