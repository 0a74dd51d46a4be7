// The property exchange: one typical order to a property object and back, beside a plain copy of
// the same record; and graphs of 10, 100 and 1,000 orders, reported per order so that a flat line
// shows a cost that grows with the graph and no faster.
#include "BaselineReporter.h"
#include "TypicalOrder.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/PlatformObjects.h"

namespace {

using qvox::COrderBarProperties;
using qvox::SHORT;

// The typical ticket with its key and piece value, as the platform receives it.
void Fill(COrderBarProperties& order) {
    qvox::bench::FillTypicalTicket(order);
    order.m_OrderKey = "K-000042";
    order.m_PieceValue = 0.01;
    order.m_AllOrNone = static_cast<SHORT>(1);
}

void ExchangeOne(benchmark::State& state) {
    COrderBarProperties source;
    Fill(source);
    for (auto _ : state) {
        COrderBarProperties copy;
        copy.SetOrderProperties(source.GetOrderProperties());
        benchmark::DoNotOptimize(copy);
    }
}

// The plain copy of the record: what the application does to pass an order on inside one
// process.
void ExchangeBaseline(benchmark::State& state) {
    COrderBarProperties source;
    Fill(source);
    for (auto _ : state) {
        COrderBarProperties copy(source);
        benchmark::DoNotOptimize(copy);
    }
}

// n orders: a chain of three at the top, and below each of its orders child chains of two,
// until there are n.
void BuildGraph(COrderBarProperties& root, int n) {
    Fill(root);
    int made = 1;
    std::vector<COrderBarProperties*> parents{&root};
    for (int i = 0; i < 2 && made < n; ++i, ++made) {
        auto* follower = new COrderBarProperties;
        Fill(*follower);
        root.AddOrderToOCAGroup(follower, true);
        parents.push_back(follower);
    }
    for (std::size_t p = 0; made < n; ++p) {
        auto* child = new COrderBarProperties;
        Fill(*child);
        parents[p]->AddOSOChildOrder(child, true);
        parents.push_back(child);
        ++made;
        if (made < n) {
            auto* sibling = new COrderBarProperties;
            Fill(*sibling);
            child->AddOrderToOCAGroup(sibling, true);
            parents.push_back(sibling);
            ++made;
        }
    }
}

void ExchangeGraph(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    COrderBarProperties root;
    BuildGraph(root, n);
    for (auto _ : state) {
        COrderBarProperties copy;
        copy.SetOrderProperties(root.GetOrderProperties());
        benchmark::DoNotOptimize(copy);
    }
    state.counters["ns/order"] =
        benchmark::Counter(static_cast<double>(n), benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
}

}  // namespace

BENCHMARK(ExchangeBaseline)->Name("exchange/baseline");
BENCHMARK(ExchangeOne)->Name("exchange/get+set");
BENCHMARK(ExchangeGraph)->Name("graph/orders")->Arg(10)->Arg(100)->Arg(1000);

QVOX_BENCHMARK_MAIN();
