#pragma once
// Which points an offset keeps clear of: those nearer the source than |d|
// and those inside a corner kite. The margin only absorbs rounding: points
// of the raw offset lie at |d| from their own source segment, and on the
// edges of their own kite, to a few units in the last place.
#include <vector>

#include "standalone/kernel/pline2.h"
#include "standalone/kernel/spatial_grid.h"

namespace standalone::kernel {

class OffsetClearance {
 public:
  OffsetClearance(const Pline2& source, std::vector<Pline2> kites, double d, double tol);
  // Is the point farther than |d| from the source and outside every kite?
  bool clear(Vec2 p) const;

 private:
  bool farFromSource(Vec2 p) const;
  bool insideAKite(Vec2 p) const;

  std::vector<Seg> source_;
  SpatialGrid sourceGrid_;
  std::vector<Pline2> kites_;
  SpatialGrid kiteGrid_;
  double need_, margin_;
};

}  // namespace standalone::kernel
