// COXDefault: the default of an order setting for a symbol category. A static class.
#pragma once

#include "qvox/platform/WinTypes.h"
#include "qvox/vocabulary/OrderEnums.h"

namespace qvox {

class COXDefault {
  public:
    COXDefault() = delete;

    // Limit for futures, equities and options (0, 2, 3, 8); unknown for the others.
    static EMVOrderType OrderType(ULONG category);
    // No auto price, for every category.
    static EOXAutoPrice AutoPrice(ULONG category);
    // Setting 1 for futures, equities and options (0, 2, 3, 8); 0 for the others.
    static int AutoPriceIncrement(ULONG category);
};

}  // namespace qvox
