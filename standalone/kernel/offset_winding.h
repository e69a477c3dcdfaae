#pragma once
// Winding number of a closed polyline with bulges about a point, by a ray
// cast towards +x, using a grid over the segments so that a query touches
// only the segments near the ray. Closed offsets keep the parts of their raw
// offset that bound the region of winding ±1 (the sense of the source).
#include <vector>

#include "standalone/kernel/pline2.h"
#include "standalone/kernel/spatial_grid.h"

namespace standalone::kernel {

// Box around a segment, arcs included whole (their extreme points).
Box2 segmentBox(const Seg& s);

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
