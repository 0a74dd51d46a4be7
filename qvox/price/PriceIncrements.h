// Price increments: what a stored increment setting is worth for a symbol category, and the
// minimum moves of a symbol. For equities a setting is a sum of money; for futures a number of
// min moves; for options a number of min moves that depends on the option's price threshold.
// The display texts of the settings are tables of the order vocabulary.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

// Which option increment table applies, by the option's min move.
enum eQVOXOptionThresholdType : int {
    OptionThresholdPenny = 0,          // min move 1
    OptionThresholdFirstMinMove = 1,   // min move 5
    OptionThresholdSecondMinMove = 2,  // min move 10
};

// Money a setting is worth for equities: 1 to 5 cents, 6: 0.10, 7: 0.12, 8: 0.25, 9: 0.50,
// 10: 1.0; any other setting 0.01.
double GetEqIncFromSetting(int setting);
// Min moves a setting is worth for futures: 1 to 5, 10, 12, 25, 50, 100, 500, 1000, 5000 and
// 10000 are worth themselves; any other setting 1.0.
double GetFutIncFromSetting(int setting);
// Min moves a setting is worth for options at a threshold; any other setting 1.0, and every
// setting 0.0 for a threshold that is not one of the three.
double GetOptIncFromSetting(int setting, eQVOXOptionThresholdType threshold);
// By category: 0 and 12 futures, 2 equities, 3 and 8 options; 1.0 for any other category.
double GetIncFromSetting(int setting, ULONG category, eQVOXOptionThresholdType threshold);
// A setting as a step in price units: for equities the money value alone, otherwise the worth of
// one piece of code x the moves of the setting x minMove.
double GetPriceSpinIncFromSetting(ULONG category, double minMove, char code, int setting,
                                  eQVOXOptionThresholdType threshold);
// The same operation under the name the acceleration step uses.
double GetPriceSpinAccFromSetting(ULONG category, double minMove, char code, int setting,
                                  eQVOXOptionThresholdType threshold);
// The base code of an increment: always the code given.
char GetEqIncBasecodeFromSetting(int setting, char code);
char GetFutIncBasecodeFromSetting(int setting, char code);

// The threshold of an option by its min move, truncated: 5 gives the first, 10 the second table;
// anything else (NaN included) the penny table.
eQVOXOptionThresholdType GetThresholdType(double minMove);
// The min move in force at a price: for a min move that differs by price level, the one at or
// above the level when price is not below it, else the one below; otherwise minMove itself.
double GetMinMove(double price, double minMove);
// Turns a price into moves (toMoves) or moves into a price, one move being worth one piece of
// code x minMove. A move worth 0 (or NaN) gives 0.0 rather than a division by zero.
double ApplyMinMoveConversion(double value, bool toMoves, double minMove, char code);
// 1.0 for categories 0, 3, 8 and 12; 0.01 for every other category.
double GetDefaultIncrement(ULONG category);
// The largest and smallest quantity an order may carry: 2147483647 and 1 for every category.
int GetMaxSupportedQty(ULONG category);
int GetMinSupportedQty(ULONG category);

}  // namespace qvox
