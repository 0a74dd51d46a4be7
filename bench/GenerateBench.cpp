// Generating orders from templates, beside copying the key order as many times as the template
// makes orders: the typical "OSO" template (three brackets of a target and a stop, rounded to
// round lots) over a stock limit order, and templates of 1, 10 and 100 orders, reported per
// generated order so that a flat line shows a cost that grows with the template and no faster.
// Every iteration starts from a fresh key order, since a generation hangs its orders on it; the
// baselines do the same, and make each copy a new record as a generation does.
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "BaselineReporter.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/CodePage.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"
#include "qvox/vocabulary/OrderIDManipulation.h"

namespace {

using qvox::COrderBarProperties;
using qvox::SHORT;

// A limit buy of 1050 shares at 50.00, one move of 0.01.
COrderBarProperties StockKey() {
    COrderBarProperties key;
    key.m_Account = "ACCT-0042";
    key.m_Symbol = "MSFT";
    key.m_SymbolCategory = 2;
    key.m_PriceScale = static_cast<SHORT>('m');
    key.m_MinMove = 1.0;
    key.m_OrderType = "Limit";
    key.m_Side = static_cast<SHORT>('B');
    key.m_Quantity = 1050;
    key.m_QuantityType = static_cast<SHORT>('#');
    key.m_LimitPriceRaw = 50.0;
    key.m_Bid = 49.99;
    key.m_Ask = 50.01;
    key.m_Duration = "Day";
    key.m_Route = "NSDQ";
    return key;
}

std::unique_ptr<qvox::CQVOXCOTOSOTemplate> Load(const std::string& utf8) {
    auto item = std::make_unique<qvox::CQVOXCOTOSOTemplate>();
    if (!item->Load(qvox::Utf8ToWide(utf8).c_str())) std::abort();
    return item;
}

std::unique_ptr<qvox::CQVOXCOTOSOTemplate> ThreeTargets() {
    std::ifstream in(std::string(QVOX_EXAMPLES) +
                         "/Templates/Conditional Orders/Stocks/OSO/Three Targets 33-33-34.xml",
                     std::ios::binary);
    return Load(std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()));
}

// A template of n orders in one collection: limit sells 10 moves above the key, at its size.
std::unique_ptr<qvox::CQVOXCOTOSOTemplate> Orders(int n) {
    const auto field = [](const char* name, const char* usage, const char* operation,
                          const char* location, const char* value) {
        return std::string("<Field Name=\"") + name + "\" Usage=\"" + usage + "\" Operation=\"" +
               operation + "\" Location=\"" + location + "\">" + value + "</Field>";
    };
    const std::string order =
        "<Order Name=\"O\">" + field("Type", "Exact", "=", "Value", "Limit") +
        field("Action", "Inverse", "=", "Key", "") + field("Quantity", "Exact", "=", "Key", "") +
        field("Price", "Offset", "~", "Key", "10") + field("Duration", "Exact", "=", "Key", "") +
        field("Route", "Exact", "=", "Key", "") + field("Advanced", "Exact", "=", "Key", "") +
        "</Order>";
    std::string text =
        "<QVXML><Template Name=\"N\" Type=\"OSO\" Version=\"1\"><Collection Name=\"C\">";
    for (int i = 0; i < n; ++i)
        text += order;
    return Load(text + "</Collection></Template></QVXML>");
}

void Generate(benchmark::State& state, qvox::CQVOXConditionalOrdersTemplate& item) {
    const COrderBarProperties prototype = StockKey();
    for (auto _ : state) {
        COrderBarProperties key;
        key = prototype;
        if (!item.Generate(key, nullptr, 50.0)) state.SkipWithError("not generated");
        benchmark::DoNotOptimize(key);
    }
}

// A fresh key order and n new records assigned from it; with ids, each record also takes a new
// local order id, as every generated order must.
void Copies(benchmark::State& state, int n, bool ids = false) {
    const COrderBarProperties prototype = StockKey();
    std::vector<std::unique_ptr<COrderBarProperties>> copies;
    copies.reserve(static_cast<std::size_t>(n));
    for (auto _ : state) {
        COrderBarProperties key;
        key = prototype;
        for (int i = 0; i < n; ++i) {
            copies.push_back(std::make_unique<COrderBarProperties>());
            *copies.back() = key;
            if (ids) copies.back()->m_LocalOrderID = qvox::CreateLocalOrderID();
        }
        benchmark::DoNotOptimize(copies.data());
        copies.clear();
    }
}

void PerOrder(benchmark::State& state, int n) {
    state.counters["per_order"] = benchmark::Counter(
        n, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void ThreeBrackets(benchmark::State& state) {
    const auto item = ThreeTargets();
    Generate(state, *item);
    PerOrder(state, 6);
}

void ThreeBracketsBaseline(benchmark::State& state) {
    Copies(state, 6);
    PerOrder(state, 6);
}

// The same generation beside copies that take their new ids too: what the template's own work
// costs, apart from the random ids that every order needs whichever way it is made.
void ThreeBracketsWithIds(benchmark::State& state) {
    const auto item = ThreeTargets();
    Generate(state, *item);
    PerOrder(state, 6);
}
void ThreeBracketsWithIdsBaseline(benchmark::State& state) {
    Copies(state, 6, true);
    PerOrder(state, 6);
}

void Register(int n) {
    const std::string group = "Orders" + std::to_string(n);
    benchmark::RegisterBenchmark((group + "/generate").c_str(), [n](benchmark::State& state) {
        const auto item = Orders(n);
        Generate(state, *item);
        PerOrder(state, n);
    });
    benchmark::RegisterBenchmark((group + "/baseline").c_str(), [n](benchmark::State& state) {
        Copies(state, n);
        PerOrder(state, n);
    });
}

}  // namespace

BENCHMARK(ThreeBrackets)->Name("ThreeBrackets/OSO 6 orders");
BENCHMARK(ThreeBracketsBaseline)->Name("ThreeBrackets/baseline");
BENCHMARK(ThreeBracketsWithIds)->Name("ThreeBracketsIds/OSO 6 orders");
BENCHMARK(ThreeBracketsWithIdsBaseline)->Name("ThreeBracketsIds/baseline");

int main(int argc, char** argv) {
    for (int n : {1, 10, 100})
        Register(n);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    qvox::bench::BaselineReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
