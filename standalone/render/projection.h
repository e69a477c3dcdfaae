#pragma once
// Geometry that turns entities in their own planes into shapes of the XY
// plane: object coordinate systems, circles seen from above, bulges.
#include <optional>

#include "ge/matrix.h"
#include "ge/point.h"
#include "standalone/render/scene.h"

namespace standalone {

// The object coordinate system of a normal (the DXF arbitrary-axis rule):
// maps OCS coordinates to world coordinates.
ge::Matrix3d ocsToWorld(const ge::Vector3d& normal);

// A circular arc in the plane spanned by the unit vectors xAxis and yAxis at
// a centre (all world), from startAngle to endAngle (counter-clockwise about
// xAxis x yAxis when ccw), after transform by m and projection onto XY. When
// the result is still a circle it is one arc; otherwise nothing (the caller
// samples it).
std::optional<PathArc> projectArc(const ge::Matrix3d& m, const ge::Point3d& center, const ge::Vector3d& xAxis,
                                  const ge::Vector3d& yAxis, double radius, double startAngle, double endAngle,
                                  bool ccw = true);

// Centre, radius and angles (radians, counter-clockwise) of a bulged segment
// from a to b in its own plane; nothing for a straight one.
struct BulgeArc {
  ge::Point2d center;
  double radius = 0;
  double startAngle = 0, endAngle = 0;  // the sweep runs start to end, counter-clockwise when ccw
  bool ccw = true;
};
std::optional<BulgeArc> bulgeToArc(const ge::Point2d& a, const ge::Point2d& b, double bulge);

// The counter-clockwise sweep from one angle to another (radians), in
// (0, 2 pi]: equal angles mean a full turn. Non-finite angles give 0.
double ccwSweep(double startAngle, double endAngle);

// XY projection of a world point.
inline ge::Point2d toXY(const ge::Point3d& p) { return {p.x, p.y}; }

// Number of straight pieces for sampling a sweep of the given angle (radians)
// finely enough that the chords look round at any on-screen size we draw.
int piecesForSweep(double sweep);

}  // namespace standalone
