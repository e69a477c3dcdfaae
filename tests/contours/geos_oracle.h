#pragma once
// GEOS (C API) as the independent measure of faces: the pieces flattened
// finely, noded by a union and polygonized.
#include <vector>

#include "standalone/kernel/arrangement.h"

namespace contours_test {

class GeosFaces {
 public:
  // arcs become chords of at most `chordAngle` radians.
  explicit GeosFaces(const std::vector<standalone::kernel::BulgePiece>& pieces, double chordAngle = 0.002);
  ~GeosFaces();
  GeosFaces(const GeosFaces&) = delete;
  GeosFaces& operator=(const GeosFaces&) = delete;

  std::size_t count() const { return areas_.size(); }
  // The area of the face holding p, holes taken off; a negative value when none does.
  double areaAt(standalone::kernel::Vec2 p) const;

 private:
  void* context_;
  std::vector<void*> faces_;
  std::vector<double> areas_;
};

}  // namespace contours_test
