#pragma once
// Winding number of a closed polyline with bulges about a point, by a ray
// cast towards +x, using a grid over the segments so that a query touches
// only the segments near the ray. The offset of a closed polyline that
// crosses itself grows or shrinks the region its loop winds about.
#include <vector>

#include "standalone/kernel/pline2.h"
#include "standalone/kernel/spatial_grid.h"

namespace standalone::kernel {

// What one segment adds to the winding number about p (p not on it).
int windingContribution(const Seg& s, Vec2 p);

class WindingCounter {
 public:
  // The polyline is taken as closed whatever its flag says.
  explicit WindingCounter(const Pline2& loop);
  // Signed number of counter-clockwise turns of the loop about p; p should
  // not lie on the loop.
  int windingAt(Vec2 p) const;

 private:
  std::vector<Seg> segs_;
  SpatialGrid grid_;
  double maxX_ = 0;
};

}  // namespace standalone::kernel
