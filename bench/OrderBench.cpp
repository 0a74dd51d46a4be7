// Copying orders: one record beside a plain struct of all its fields as strings and numbers, and
// whole graphs with relations, reported per order so that a flat line shows linear cloning.
#include <memory>
#include <string>

#include "BaselineReporter.h"
#include "TypicalOrder.h"
#include "qvox/order/COrderBarProperties.h"

namespace {

using qvox::COrderBarProperties;

using qvox::bench::FillTypicalTicket;

// The record's fields as a plain struct: the same strings as std::string and the same numbers,
// legs included, with the same content. What a copy of the record costs beyond this is the
// marks and the merge rules.
struct PlainLeg {
    std::string symbol, orderType, text64;
    double limitPrice = 0, stopPrice = 0, real47 = 0, real46 = 0;
    short short45 = 0, side = 0, openClose = 0;
    int quantity = 0;
};

struct PlainOrder {
    std::string orderKey, account = "ACCT-0042", duration = "Day", text9, orderType = "Limit",
                          pegValue, route = "NSDQ", symbol = "MSFT", autoPrice = "Join",
                          autoPriceIncrement, stopTrigger, ifTouchedTrigger, text40, text41, text62,
                          text64, condition, stopAutoPrice, autoPrice3, litAutoPrice;
    double litAutoPriceOffset = 0, stopAutoPriceOffset = 0, autoPrice3Offset = 0, real46 = 0,
           durationDate = 0, discretionaryAmount = 0, limitPriceRaw = 101.25, real47 = 0,
           stopPriceRaw = 0, bid = 101.2, ask = 101.3, real44 = 0, ifTouchedPrice = 0,
           activationTime = 0, expirationTime = 0, trailAmount = 0, minMove = 0, pieceValue = 0,
           effectiveParentPrice = 0;
    unsigned ulong27 = 0, ulong28 = 0, ulong34 = 0, localOrderId = 42, categoryOverride = 0;
    int exchange = 0, quantity = 500, symbolCategory = 2, showQuantity = 0, long26 = 0, long63 = 0,
        stagedLifeSpan = 0, lotSize = 0, tag = 0;
    short side = 'B', priceScale = 'm', short8 = 0, short36 = 0, short38 = 0, short39 = 0,
          short45 = 0, quantityType = '#', short82 = 0, allOrNone = 0, ecnSweep = 0, buyOnMinus = 0,
          discretionary = 0, nonDisplay = 0, shortExempt = 0, showOnly = 0, peg = 0, short21 = 0,
          subscriberOnly = 0, trailType = 0, activationRule = 0, ifTouchedType = 0, sta = 0,
          legCount = 0, openClose = 0, short73 = 0;
    bool flag89 = false, bracket = false;
    PlainLeg legs[3];
    std::string ocaGroupName, ocaGroupTag, osoParentTag, osoTag, locate, locateTag;
};

void CopyOrderOnly(benchmark::State& state) {
    COrderBarProperties source;
    FillTypicalTicket(source);
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
    FillTypicalTicket(*root);
    COrderBarProperties* parent = root.get();
    int made = 1;
    while (made < n) {
        auto* child = new COrderBarProperties;
        FillTypicalTicket(*child);
        parent->AddOSOChildOrder(child, true);
        ++made;
        if (made < n) {
            auto* next = new COrderBarProperties;
            FillTypicalTicket(*next);
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
    // Time per order: flat when cloning is linear. Beside it the size of one record: n times it is
    // the working set, so that a rise at the larger graphs reads as the caches running out.
    state.SetItemsProcessed(state.iterations() * n);
    state.counters["ns/order"] =
        benchmark::Counter(static_cast<double>(n), benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
    state.counters["bytes/order"] = static_cast<double>(sizeof(COrderBarProperties));
}

}  // namespace

BENCHMARK(CopyOrderOnly)->Name("Copy/eCopyOrderOnly");
BENCHMARK(CopyBaseline)->Name("Copy/baseline");
BENCHMARK(CloneGraph)->Name("Clone/graph")->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

QVOX_BENCHMARK_MAIN()
