#pragma once
// Object snaps: the point of an entity near the cursor that a draftsman
// means (an end, a middle, a centre, a crossing, a quadrant, the foot of a
// perpendicular from the last point, or simply the nearest point on it).
#include <optional>
#include <vector>

#include "ge/extents.h"
#include "ge/point.h"
#include "host/curves.h"
#include "host/drawing.h"

namespace workbench {

enum class SnapKind { kEndpoint, kMidpoint, kCenter, kIntersection, kQuadrant, kPerpendicular, kNearest };
inline constexpr int snapBit(SnapKind k) { return 1 << static_cast<int>(k); }
inline constexpr int kAllSnaps = 0x7f;

struct SnapHit {
  ge::Point3d point;
  SnapKind kind = SnapKind::kNearest;
};

// The entities of model space by their extents in a grid, for finding those
// near the cursor in a large drawing without a scan of all of them.
class EntityGrid {
 public:
  EntityGrid(const host::Drawing& drawing, const host::CurveServices& curves);
  // Entities whose extents come within radius of p.
  std::vector<host::ObjectId> near(const ge::Point2d& p, double radius) const;

 private:
  struct Item {
    host::ObjectId id;
    ge::Extents3d box;
  };
  int cellOf(double v, bool column) const;  // column: along X, else along Y
  std::vector<Item> items_;
  std::vector<std::vector<int>> cells_;  // item indices, row-major
  std::vector<int> large_;               // items spanning many cells
  double minX_ = 0, minY_ = 0, cell_ = 1;
  int columns_ = 0, rows_ = 0;
};

// The snap point among the candidates within aperture of the cursor (XY
// distance), by the enabled kinds (snapBit mask). Exact kinds (end, middle,
// centre, crossing, quadrant) win over the perpendicular foot from base,
// which wins over the nearest point.
std::optional<SnapHit> findSnap(const host::Drawing& drawing, const host::CurveServices& curves,
                                const std::vector<host::ObjectId>& candidates, const ge::Point3d& cursor,
                                double aperture, const std::optional<ge::Point3d>& base, int enabled);

// Where an entity shows its grips: its ends and vertices, middles of its
// pieces, its centre and quadrants.
std::vector<ge::Point3d> gripPointsOf(const host::Entity& entity, const host::CurveServices& curves);

// The bulge of the arc from a to b through p: 0 when p lies on the chord
// between them, nothing when no arc passes (p on the chord's line beyond an
// end, or at an end).
std::optional<double> bulgeThrough(const ge::Point2d& a, const ge::Point2d& b, const ge::Point2d& p);

// Drags the polyline's grip at from (a vertex, or the middle of a segment,
// where gripPointsOf shows them) to to, as the host's grips do: a vertex
// moves alone; a straight segment's middle carries the segment, both its
// vertices by the same offset; an arc segment's middle bends the arc to pass
// through to, its ends fixed. False when no grip lies at from or no arc
// passes through to.
bool moveLwPolylineGrip(host::LwPolyline& pl, const ge::Point3d& from, const ge::Point3d& to);

// The point ortho makes of p: straight across or straight up from base,
// whichever is nearer to p.
ge::Point3d orthoPoint(const ge::Point3d& base, const ge::Point3d& p);

}  // namespace workbench
