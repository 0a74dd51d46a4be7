// The library's own walk over a graph of orders, shared by the order's source files; not part of
// the interface.
#pragma once

#include <vector>

namespace qvox::detail {

// Calls visit on start and on everything behind and below it, depth first: an order, then the
// orders behind it (with theirs), then its children in list order. Stops when visit returns
// true and reports whether it did. The next order and the children are read after visit, so
// visit may rearrange what lies behind and below the order it is given.
template <class Record, class Visit>
bool Walk(Record* start, Visit&& visit) {
    std::vector<Record*> pending{start};
    while (!pending.empty()) {
        Record* order = pending.back();
        pending.pop_back();
        if (visit(order)) return true;
        for (auto child = order->GetOSOChildCount(); child > 0; --child) {
            pending.push_back(order->GetOSOChild(child - 1));
        }
        if (order->GetOCANext() != nullptr) pending.push_back(order->GetOCANext());
    }
    return false;
}

}  // namespace qvox::detail
