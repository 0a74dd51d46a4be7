// The advanced options string of a typical order, written and read, beside the plainest work
// on the same text: splitting it into tag and value views, and one snprintf of the same values.
#include <cstdio>
#include <string_view>

#include "BaselineReporter.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/COleDateTime.h"

namespace {

using qvox::COrderBarProperties;
using qvox::SHORT;

constexpr const char kText[] =
    "AON;SHWQTY=100;TAG=7;PEGVAL=MID;PEGINC=NONE;OCA=G1;TRL=5;TIM=09:30:00;LMT=IMP2;";

COrderBarProperties WorkedExample() {
    COrderBarProperties order;
    order.m_SymbolCategory = 2;
    order.m_OrderType = "Limit";
    order.m_AllOrNone = static_cast<SHORT>(1);
    order.m_ShowOnly = static_cast<SHORT>(1);
    order.m_ShowQuantity = 100;
    order.m_Tag = 7;
    order.m_Peg = static_cast<SHORT>(1);
    order.m_PegValue = "MID";
    order.m_OCAGroupTag = "G1";
    order.m_TrailType = static_cast<SHORT>(1);
    order.m_TrailAmount = 5.0;
    order.m_ActivationRule = static_cast<SHORT>(1);
    order.m_ActivationTime = qvox::COleDateTime(2024, 1, 2, 9, 30, 0).m_dt;
    order.m_AutoPrice = "Improve";
    order.m_AutoPriceIncrement = "2.000000";
    return order;
}

// With GMT times the zone rule is read too, once per string.
void Read(benchmark::State& state, bool fromGmt) {
    const qvox::CString text(kText);
    COrderBarProperties order;
    order.m_OrderType = "Limit";
    for (auto _ : state) {
        order.SetAdvancePropertyFromString(text, fromGmt);
        benchmark::DoNotOptimize(order);
    }
}

// Tags and values as views, nothing interpreted.
void ReadBaseline(benchmark::State& state) {
    const std::string_view text(kText);
    for (auto _ : state) {
        std::string_view rest = text;
        std::size_t items = 0;
        while (!rest.empty()) {
            const std::size_t end = rest.find(';');
            if (end == std::string_view::npos) break;
            std::string_view item = rest.substr(0, end);
            const std::size_t equals = item.find('=');
            std::string_view tag = item.substr(0, equals);
            benchmark::DoNotOptimize(tag);
            if (equals != std::string_view::npos) {
                std::string_view value = item.substr(equals + 1);
                benchmark::DoNotOptimize(value);
            }
            rest.remove_prefix(end + 1);
            ++items;
        }
        benchmark::DoNotOptimize(items);
    }
}

void Write(benchmark::State& state) {
    const COrderBarProperties order = WorkedExample();
    for (auto _ : state) {
        benchmark::DoNotOptimize(order.GetAdvancePropertyAsString(false, 0));
    }
}

// The same text from the same values in one call.
void WriteBaseline(benchmark::State& state) {
    char text[128];
    unsigned show = 100, tag = 7;
    int trail = 5, hour = 9, minute = 30, second = 0, increment = 2;
    const char* peg = "MID";
    const char* group = "G1";
    for (auto _ : state) {
        benchmark::DoNotOptimize(show);
        std::snprintf(text, sizeof text,
                      "AON;SHWQTY=%u;TAG=%u;PEGVAL=%s;PEGINC=NONE;OCA=%s;TRL=%d;TIM=%.2d:%.2d:%.2d;"
                      "LMT=IMP%d;",
                      show, tag, peg, group, trail, hour, minute, second, increment);
        benchmark::DoNotOptimize(text);
    }
}

}  // namespace

BENCHMARK_CAPTURE(Read, local, false)->Name("Read/SetAdvancePropertyFromString");
BENCHMARK_CAPTURE(Read, gmt, true)->Name("Read/SetAdvancePropertyFromString GMT");
BENCHMARK(ReadBaseline)->Name("Read/baseline");
BENCHMARK(Write)->Name("Write/GetAdvancePropertyAsString");
BENCHMARK(WriteBaseline)->Name("Write/baseline");

QVOX_BENCHMARK_MAIN()
