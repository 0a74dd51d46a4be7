// Price text and decimal conversions, each beside the plain standard-library work it stands for.
#include <charconv>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "BaselineReporter.h"
#include "qvox/price/Helper.h"

namespace {

using qvox::Helper;
using qvox::LONG;

// Prices as they come: a few thousand units, in the code's own pieces, some negative.
std::vector<LONG> SamplePieces(LONG perUnit) {
    std::mt19937 random(20261122);
    std::uniform_int_distribution<LONG> units(-500, 5000);
    std::uniform_int_distribution<LONG> rest(0, perUnit - 1);
    std::vector<LONG> pieces(1024);
    for (LONG& p : pieces)
        p = units(random) * perUnit + rest(random);
    return pieces;
}

void PieceTextRoundTrip(benchmark::State& state, char code, LONG perUnit) {
    const std::vector<LONG> pieces = SamplePieces(perUnit);
    char text[16];
    std::size_t i = 0;
    for (auto _ : state) {
        Helper::Pieces2String(code, pieces[i], text, 0);
        benchmark::DoNotOptimize(Helper::String2Pieces(code, text));
        i = (i + 1) & 1023;
    }
}

// The same integers through std::to_chars and std::from_chars.
void PieceTextBaseline(benchmark::State& state) {
    const std::vector<LONG> pieces = SamplePieces(64);
    char text[16];
    std::size_t i = 0;
    for (auto _ : state) {
        const auto end = std::to_chars(text, text + sizeof text - 1, pieces[i]).ptr;
        *end = '\0';
        LONG value = 0;
        std::from_chars(text, end, value);
        benchmark::DoNotOptimize(value);
        i = (i + 1) & 1023;
    }
}

void DecimalRoundTrip(benchmark::State& state, char code, LONG perUnit) {
    const std::vector<LONG> pieces = SamplePieces(perUnit);
    std::size_t i = 0;
    for (auto _ : state) {
        const double value = Helper::Pieces2Decimal(pieces[i], code);
        benchmark::DoNotOptimize(Helper::Decimal2Pieces(value, code));
        i = (i + 1) & 1023;
    }
}

// A plain multiply one way and llround the other.
void DecimalBaseline(benchmark::State& state) {
    const std::vector<LONG> pieces = SamplePieces(100);
    double step = 0.01;
    double perUnit = 100.0;
    benchmark::DoNotOptimize(step);
    benchmark::DoNotOptimize(perUnit);
    std::size_t i = 0;
    for (auto _ : state) {
        const double value = pieces[i] * step;
        benchmark::DoNotOptimize(std::llround(value * perUnit));
        i = (i + 1) & 1023;
    }
}

}  // namespace

BENCHMARK_CAPTURE(PieceTextRoundTrip, m, 'm', 100)->Name("PieceText/m");
BENCHMARK_CAPTURE(PieceTextRoundTrip, l, 'l', 64)->Name("PieceText/l");
BENCHMARK_CAPTURE(PieceTextRoundTrip, s, 's', 320)->Name("PieceText/s");
BENCHMARK(PieceTextBaseline)->Name("PieceText/baseline");
BENCHMARK_CAPTURE(DecimalRoundTrip, m, 'm', 100)->Name("Decimal/m");
BENCHMARK_CAPTURE(DecimalRoundTrip, l, 'l', 64)->Name("Decimal/l");
BENCHMARK_CAPTURE(DecimalRoundTrip, a, 'a', 1)->Name("Decimal/a");
BENCHMARK(DecimalBaseline)->Name("Decimal/baseline");

QVOX_BENCHMARK_MAIN()
