#pragma once
// Which points an offset keeps clear of: those nearer the source than |d|
// and those inside a corner kite. The margin only absorbs rounding: points
// of the raw offset lie at |d| from their own source segment, and on the
// edges of their own kite, to a few units in the last place.
#include <memory>
#include <vector>

#include "standalone/kernel/offset_raw.h"
#include "standalone/kernel/offset_winding.h"
#include "standalone/kernel/pline2.h"
#include "standalone/kernel/spatial_grid.h"

namespace standalone::kernel {

class OffsetClearance {
 public:
  OffsetClearance(const Pline2& source, std::vector<Kite> kites, double d, double tol);
  // Is the point farther than |d| from the source and outside every kite
  // (and, once keepSide was called, on that side of the source's loop)?
  bool clear(Vec2 p) const;
  // For a closed source that crosses itself, whose right and left sides
  // swap where it crosses: the offset then bounds the region the loop winds
  // about, grown (points kept outside it) or shrunk (kept inside).
  void keepSide(const Pline2& source, bool outside);

 private:
  bool farFromSource(Vec2 p) const;
  bool insideAKite(Vec2 p) const;

  std::vector<Seg> source_;
  SpatialGrid sourceGrid_;
  std::vector<Kite> kites_;
  SpatialGrid kiteGrid_;
  double need_, margin_;
  std::unique_ptr<WindingCounter> loop_;
  bool outside_ = true;
};

}  // namespace standalone::kernel
