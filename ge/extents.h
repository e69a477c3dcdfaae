#pragma once
// Axis-aligned bounding box; empty until the first point is added.
#include <algorithm>

#include "ge/point.h"

namespace ge {

struct Extents3d {
  Point3d min{1, 1, 1};
  Point3d max{-1, -1, -1};

  bool isValid() const { return min.x <= max.x && min.y <= max.y && min.z <= max.z; }
  void add(const Point3d& p) {
    if (!isValid()) {
      min = max = p;
      return;
    }
    min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
    max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
  }
  void add(const Extents3d& e) {
    if (e.isValid()) {
      add(e.min);
      add(e.max);
    }
  }
  // Length of the diagonal; 0 for an empty box.
  double diagonal() const { return isValid() ? min.distanceTo(max) : 0.0; }
  bool intersectsXY(const Extents3d& o) const {
    return isValid() && o.isValid() && min.x <= o.max.x && o.min.x <= max.x && min.y <= o.max.y &&
           o.min.y <= max.y;
  }
  bool containsXY(const Extents3d& o) const {
    return isValid() && o.isValid() && min.x <= o.min.x && o.max.x <= max.x && min.y <= o.min.y &&
           o.max.y <= max.y;
  }
};

}  // namespace ge
