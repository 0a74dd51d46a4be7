// Minimum moves that differ by price level. Some symbols move in one step below a price and in
// another at or above it; the platform knows which, and says so through this service (installed
// through Platform.h). The built-in service knows of no such symbol.
#pragma once

namespace qvox {

class IMinMoveService {
  public:
    virtual ~IMinMoveService() = default;
    // Non-zero if minMove stands for a min move that differs by price level.
    virtual int IsMultiTierMinMove(double minMove) const = 0;
    // The price level, the min move below it and the one at or above it. Writes all three.
    virtual void GetMinMoveInfo(double minMove, double* threshold, double* below,
                                double* atOrAbove) const = 0;
};

// Every min move is plain: one step at every price.
class PlainMinMoveService final : public IMinMoveService {
  public:
    int IsMultiTierMinMove(double) const override { return 0; }
    void GetMinMoveInfo(double minMove, double* threshold, double* below,
                        double* atOrAbove) const override;
};

// Through the installed service. Null out-pointers are skipped.
int IsMultiTierMinMove(double minMove);
void GetMinMoveInfo(double minMove, double* threshold, double* below, double* atOrAbove);

}  // namespace qvox
