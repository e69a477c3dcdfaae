#pragma once
// GEOS (C API) as the independent measure of faces: the pieces flattened
// finely, noded by a union and polygonized.
#include <vector>

#include "standalone/kernel/arrangement.h"

namespace contours_test {

struct GeosFace {
  double area = 0;  // holes taken off
};

class GeosFaces {
 public:
  // arcs become chords of at most `chordAngle` radians.
  explicit GeosFaces(const std::vector<standalone::kernel::BulgePiece>& pieces, double chordAngle = 0.002);
  ~GeosFaces();
  GeosFaces(const GeosFaces&) = delete;
  GeosFaces& operator=(const GeosFaces&) = delete;

  std::size_t count() const { return areas_.size(); }
  double totalArea() const;
  // The area of the face holding p; a negative value when none does.
  double areaAt(standalone::kernel::Vec2 p) const;

 private:
  void* context_;
  std::vector<void*> faces_;
  std::vector<double> areas_;
};

// The points along a bulged piece, a included, b left out.
std::vector<standalone::kernel::Vec2> flatten(const standalone::kernel::BulgePiece& p, double chordAngle);

}  // namespace contours_test
