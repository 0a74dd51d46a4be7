#include "qvox/price/PriceIncrements.h"

#include <cmath>
#include <cstddef>

#include "qvox/platform/MinMove.h"
#include "qvox/price/Helper.h"

namespace qvox {
namespace {

// What each setting is worth, by column; kNone marks a setting that a column does not know, which
// then takes the column's fallback.
constexpr double kNone = -1.0;

struct IncrementRow {
    int setting;
    double equities;    // money
    double futures;     // min moves
    double options[3];  // min moves, by threshold
};

// clang-format off
constexpr IncrementRow kIncrements[] = {
    {1, 0.01, 1, {1, 1, 1}},        {2, 0.02, 2, {2, 2, 2}},        {3, 0.03, 3, {3, 3, 3}},
    {4, 0.04, 4, {4, 4, 4}},        {5, 0.05, 5, {5, 5, 5}},        {6, 0.10, kNone, {kNone, kNone, kNone}},
    {7, 0.12, kNone, {kNone, kNone, kNone}}, {8, 0.25, kNone, {kNone, kNone, kNone}},
    {9, 0.50, kNone, {kNone, kNone, kNone}}, {10, 1.0, 10, {10, 6, 6}},
    {12, kNone, 12, {15, 7, 7}},    {25, kNone, 25, {25, 8, 8}},    {50, kNone, 50, {50, 10, 9}},
    {100, kNone, 100, {100, 20, 10}}, {500, kNone, 500, {kNone, kNone, kNone}},
    {1000, kNone, 1000, {kNone, kNone, kNone}}, {5000, kNone, 5000, {kNone, kNone, kNone}},
    {10000, kNone, 10000, {kNone, kNone, kNone}},
};
// clang-format on

const IncrementRow* RowOf(int setting) {
    for (const IncrementRow& row : kIncrements) {
        if (row.setting == setting) return &row;
    }
    return nullptr;
}

double OrFallback(double value, double fallback) {
    return value == kNone ? fallback : value;
}

}  // namespace

double GetEqIncFromSetting(int setting) {
    const IncrementRow* row = RowOf(setting);
    return row == nullptr ? 0.01 : OrFallback(row->equities, 0.01);
}

double GetFutIncFromSetting(int setting) {
    const IncrementRow* row = RowOf(setting);
    return row == nullptr ? 1.0 : OrFallback(row->futures, 1.0);
}

double GetOptIncFromSetting(int setting, eQVOXOptionThresholdType threshold) {
    if (threshold < OptionThresholdPenny || threshold > OptionThresholdSecondMinMove) return 0.0;
    const IncrementRow* row = RowOf(setting);
    return row == nullptr ? 1.0 : OrFallback(row->options[threshold], 1.0);
}

double GetIncFromSetting(int setting, ULONG category, eQVOXOptionThresholdType threshold) {
    switch (category) {
        case 0:
        case 12:
            return GetFutIncFromSetting(setting);
        case 2:
            return GetEqIncFromSetting(setting);
        case 3:
        case 8:
            return GetOptIncFromSetting(setting, threshold);
        default:
            return 1.0;
    }
}

double GetPriceSpinIncFromSetting(ULONG category, double minMove, char code, int setting,
                                  eQVOXOptionThresholdType threshold) {
    // An equity step is money already; min move and code only scale counts of moves.
    if (category == 2) return GetIncFromSetting(setting, 2, threshold);
    return Helper::GetBaseCodeDecimalFactor(code) *
           GetIncFromSetting(setting, category, threshold) * minMove;
}

double GetPriceSpinAccFromSetting(ULONG category, double minMove, char code, int setting,
                                  eQVOXOptionThresholdType threshold) {
    return GetPriceSpinIncFromSetting(category, minMove, code, setting, threshold);
}

char GetEqIncBasecodeFromSetting(int, char code) {
    return code;
}
char GetFutIncBasecodeFromSetting(int, char code) {
    return code;
}

eQVOXOptionThresholdType GetThresholdType(double minMove) {
    // Compared before truncating, so that NaN and huge values cannot reach the conversion.
    if (minMove >= 5.0 && minMove < 6.0) return OptionThresholdFirstMinMove;
    if (minMove >= 10.0 && minMove < 11.0) return OptionThresholdSecondMinMove;
    return OptionThresholdPenny;
}

double GetMinMove(double price, double minMove) {
    double threshold = minMove;
    double below = minMove;
    double atOrAbove = minMove;
    if (IsMultiTierMinMove(minMove) != 0) GetMinMoveInfo(minMove, &threshold, &below, &atOrAbove);
    return threshold <= price ? atOrAbove : below;
}

double ApplyMinMoveConversion(double value, bool toMoves, double minMove, char code) {
    const double move = Helper::GetBaseCodeDecimalFactor(code) * minMove;
    if (!toMoves) return move * value;
    if (move == 0.0 || std::isnan(move)) return 0.0;
    return value / move;
}

double GetDefaultIncrement(ULONG category) {
    switch (category) {
        case 0:
        case 3:
        case 8:
        case 12:
            return 1.0;
        default:
            return 0.01;
    }
}

int GetMaxSupportedQty(ULONG) {
    return 2147483647;
}
int GetMinSupportedQty(ULONG) {
    return 1;
}

}  // namespace qvox
