#pragma once
// Vertex thinning of polylines: the pairwise thinning passes, the merging of
// clustered vertices, duplicate-vertex marks and the run's efficiency figure.
// Pure arithmetic on point lists; distances are in drawing units.
#include <vector>

#include "ge/point.h"

namespace commands {

// Thresholds of one thinning run, both derived from the selection's scale.
struct ThinningThresholds {
  double merge = 0;      // D: a vertex closer than this to its chord or anchor goes
  double isolation = 0;  // E: a point this far from its successor stays apart from a cluster
};

// D = 0.001 * T * S and E = 0.005 * T * S for tolerance T and scale S (the
// diagonal of the selection's bounding box).
ThinningThresholds thinningThresholds(double scale, double tolerance);

// One pass over the list: the first point stays; interior points are looked at
// two by two, each middle point dropped when it lies within `merge` of the
// line through its predecessor (unless the turn there is a spike sharper than
// 0.1 rad), each following point kept; an unreached last point is kept.
ge::PointList thinningPass(const ge::PointList& points, double merge);

// Up to five passes, stopping early once fewer than 3 points remain.
ge::PointList thinningPasses(ge::PointList points, double merge);

// Replaces each run of points closer than `merge` to its first point by the
// run's centroid; a point after a cluster that lies more than `isolation`
// from its successor is kept as it is as well; the last point closes the list
// when fewer points came out than went in.
ge::PointList mergeClusters(const ge::PointList& points, const ThinningThresholds& t);

// The passes and then the merge (the merge only when at least 2 points remain).
ge::PointList thinPolylinePoints(ge::PointList points, const ThinningThresholds& t);

// Percentage of vertices removed, truncated toward zero; an `after` above
// `before` counts as no change. before must be positive.
int thinningEfficiency(int before, int after);

// Vertices closer than this to their neighbour are duplicates.
inline constexpr double kDuplicateVertexTolerance = 1e-5;

// Which vertices duplicate the one after them (of two coincident neighbours
// the first goes), and whether the last vertex repeats the first (it goes
// too, and the polyline is then to be closed).
struct DuplicateMarks {
  std::vector<bool> remove;
  bool lastRepeatsFirst = false;
  int count() const;
};
DuplicateMarks markDuplicateVertices(const ge::PointList& points);

}  // namespace commands
