// Copying orders: one record beside a plain struct of the same strings and numbers, and whole
// graphs with relations, reported per order so that a flat line shows linear cloning.
#include <memory>
#include <string>

#include "BaselineReporter.h"
#include "qvox/order/COrderBarProperties.h"

namespace {

using qvox::COrderBarProperties;

// A typical ticket: the texts and numbers an application fills.
void Fill(COrderBarProperties& order) {
    order.m_Account = "ACCT-0042";
    order.m_Duration = "Day";
    order.m_OrderType = "Limit";
    order.m_Route = "NSDQ";
    order.m_Symbol = "MSFT";
    order.m_AutoPrice = "Join";
    order.m_LimitPriceRaw = 101.25;
    order.m_Bid = 101.2;
    order.m_Ask = 101.3;
    order.m_Quantity = 500;
    order.m_SymbolCategory = 2;
    order.m_Side = static_cast<qvox::SHORT>('B');
    order.m_PriceScale = static_cast<qvox::SHORT>('m');
    order.m_QuantityType = static_cast<qvox::SHORT>('#');
    order.m_LocalOrderID = 42u;
}

// The same content as a plain struct: what a copy costs without marks and merge rules.
struct PlainOrder {
    std::string account = "ACCT-0042", duration = "Day", type = "Limit", route = "NSDQ",
                symbol = "MSFT", autoPrice = "Join";
    double limit = 101.25, bid = 101.2, ask = 101.3;
    int quantity = 500, category = 2;
    short side = 'B', scale = 'm', quantityType = '#';
    unsigned localId = 42;
};

void CopyOrderOnly(benchmark::State& state) {
    COrderBarProperties source;
    Fill(source);
    for (auto _ : state) {
        COrderBarProperties copy(source, COrderBarProperties::eCopyOrderOnly);
        benchmark::DoNotOptimize(copy);
    }
}

void CopyBaseline(benchmark::State& state) {
    const PlainOrder source;
    for (auto _ : state) {
        PlainOrder copy(source);
        benchmark::DoNotOptimize(copy);
    }
}

// A graph of n orders: a bracket-sized chain at the top, each order with a child chain of two,
// the rest as further children of the last order, so chains and children both grow.
std::unique_ptr<COrderBarProperties> MakeGraph(int n) {
    auto root = std::make_unique<COrderBarProperties>();
    Fill(*root);
    COrderBarProperties* parent = root.get();
    int made = 1;
    while (made < n) {
        auto* child = new COrderBarProperties;
        Fill(*child);
        parent->AddOSOChildOrder(child, true);
        ++made;
        if (made < n) {
            auto* next = new COrderBarProperties;
            Fill(*next);
            child->AddOrderToOCAGroup(next, true);
            ++made;
        }
        parent = child;
    }
    return root;
}

void CloneGraph(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const auto graph = MakeGraph(n);
    for (auto _ : state) {
        COrderBarProperties clone(*graph, COrderBarProperties::eCopyWithRelations);
        benchmark::DoNotOptimize(clone);
    }
    // Time per order: flat when cloning is linear.
    state.SetItemsProcessed(state.iterations() * n);
    state.counters["ns/order"] =
        benchmark::Counter(static_cast<double>(n), benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
}

}  // namespace

BENCHMARK(CopyOrderOnly)->Name("Copy/eCopyOrderOnly");
BENCHMARK(CopyBaseline)->Name("Copy/baseline");
BENCHMARK(CloneGraph)->Name("Clone/graph")->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

QVOX_BENCHMARK_MAIN()
