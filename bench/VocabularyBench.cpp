// Vocabulary lookups as a grid calls them, each beside a plain exact scan of the same table:
// what the trimming, squeezing and case folding cost on top of finding the row.
#include <cstring>
#include <iterator>

#include "BaselineReporter.h"
#include "qvox/vocabulary/CodeTables.h"
#include "qvox/vocabulary/Lookups.h"

namespace {

using namespace qvox;

// Texts as users and settings write them: padded, in another case, with blanks moved.
constexpr const char* kDurationTexts[] = {" Day",   "gtc +", "GTD+", "ioc",
                                          "1 Min ", "MOC",   "Day+", "opg"};
constexpr const char* kSideTexts[] = {"Buy",     "sell short", " Sold ", "Buy to Cover",
                                      "Covered", "SELL",       "Bought", "Sold Short"};

void DurationCode(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(GetTIFCodeFromDisplay(kDurationTexts[i]));
        i = (i + 1) % std::size(kDurationTexts);
    }
}

// The rows of both duration tables compared byte for byte, first match wins.
void DurationBaseline(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        const char* text = kDurationTexts[i];
        const char* code = "";
        for (const STR2STRMAP& row : g_TimeLimit) {
            if (std::strcmp(row.text, text) == 0) {
                code = row.code;
                break;
            }
        }
        if (*code == '\0') {
            for (const STR2STRMAP& row : g_FuturesTimeLimit) {
                if (std::strcmp(row.text, text) == 0) {
                    code = row.code;
                    break;
                }
            }
        }
        benchmark::DoNotOptimize(code);
        i = (i + 1) % std::size(kDurationTexts);
    }
}

void SideCode(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(GetSideCodeFromDisplayValue(kSideTexts[i], 0));
        i = (i + 1) % std::size(kSideTexts);
    }
}

void SideBaseline(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        const char* text = kSideTexts[i];
        char code = 0;
        for (const auto* table : {g_OrderSidePresent, g_OrderSidePast}) {
            for (std::size_t row = 0; row < 4 && code == 0; ++row) {
                if (std::strcmp(table[row].text, text) == 0) code = table[row].code;
            }
        }
        benchmark::DoNotOptimize(code);
        i = (i + 1) % std::size(kSideTexts);
    }
}

}  // namespace

BENCHMARK(DurationCode)->Name("DurationCode/GetTIFCodeFromDisplay");
BENCHMARK(DurationBaseline)->Name("DurationCode/baseline");
BENCHMARK(SideCode)->Name("SideCode/GetSideCodeFromDisplayValue");
BENCHMARK(SideBaseline)->Name("SideCode/baseline");

QVOX_BENCHMARK_MAIN()
