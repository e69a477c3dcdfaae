#pragma once
// The planar arrangement of straight and circular pieces: every piece split
// at its intersections with the others, the pieces joined at shared points
// and the faces they enclose traced as closed loops whose arcs stay arcs.
// BOUNDARY finds the region around a point in it.
#include <cstddef>
#include <optional>
#include <vector>

#include "standalone/kernel/intersect2d.h"
#include "standalone/kernel/spatial_grid.h"

namespace standalone::kernel {

// A piece from a to b: straight for bulge 0, else a circular arc of bulge
// tan(included angle / 4), positive when it runs counter-clockwise.
struct BulgePiece {
  Vec2 a, b;
  double bulge = 0;
};

// A closed loop of pieces, each from its start to the next one's start.
struct Loop {
  std::vector<BulgePiece> pieces;  // b of each piece is the a of the next
  double area = 0;                 // signed: positive counter-clockwise
  Box2 box;
  int component = 0;  // pieces joined to each other share a component
};

// Winding number of the loop about p (0 outside); arcs are exact.
int windingNumber(const Loop& loop, Vec2 p);
// Signed area enclosed by the loop, arcs included.
double signedArea(const std::vector<BulgePiece>& pieces);

class Arrangement {
 public:
  // Builds the arrangement of the pieces. Loose ends closer than gapTolerance
  // to another point of the figure are bridged by a straight piece (the
  // host's gap tolerance); pieces that close no area are left out.
  explicit Arrangement(const std::vector<BulgePiece>& pieces, double gapTolerance = 0);

  // Every loop: the bounded faces counter-clockwise (positive area), and the
  // outer edge of each connected figure clockwise (negative area).
  const std::vector<Loop>& loops() const { return loops_; }
  // Number of bounded faces.
  std::size_t faceCount() const;

  // The smallest face around p and the islands inside it: the outer edges of
  // the figures that lie in the face, not inside one another and not around
  // p. Nothing when p is in no bounded face. Indices into loops().
  struct Region {
    std::size_t outer = 0;
    std::vector<std::size_t> islands;
  };
  std::optional<Region> regionAt(Vec2 p) const;

 private:
  std::vector<Loop> loops_;
  double tolerance_ = 0;
};

}  // namespace standalone::kernel
