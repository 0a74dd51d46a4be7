#include "qvox/platform/MinMove.h"

#include "qvox/platform/Platform.h"

namespace qvox {

void PlainMinMoveService::GetMinMoveInfo(double minMove, double* threshold, double* below,
                                         double* atOrAbove) const {
    if (threshold != nullptr) *threshold = minMove;
    if (below != nullptr) *below = minMove;
    if (atOrAbove != nullptr) *atOrAbove = minMove;
}

int IsMultiTierMinMove(double minMove) {
    return CurrentMinMoveService()->IsMultiTierMinMove(minMove);
}

void GetMinMoveInfo(double minMove, double* threshold, double* below, double* atOrAbove) {
    // The service may write all three; give it room of our own and copy out what is asked for.
    double values[3] = {minMove, minMove, minMove};
    CurrentMinMoveService()->GetMinMoveInfo(minMove, &values[0], &values[1], &values[2]);
    if (threshold != nullptr) *threshold = values[0];
    if (below != nullptr) *below = values[1];
    if (atOrAbove != nullptr) *atOrAbove = values[2];
}

}  // namespace qvox
