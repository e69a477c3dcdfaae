#pragma once
// Queries on a whole path: parameters, distances along the curve, closest
// points, extents, plane and area.
#include <optional>
#include <vector>

#include "ge/extents.h"
#include "standalone/kernel/path.h"

namespace standalone::kernel {

// Total arc length.
double pathLength(const Path& path);
// Arc length from the start to parameter u (clamped to the range).
double distAtParam(const Path& path, double u);
// Parameter at arc length s from the start; nothing when s is outside 0..length.
std::optional<double> paramAtDist(const Path& path, double s);
ge::Point3d pointAtParam(const Path& path, double u);
// First derivative with respect to the host parameter (the left piece's at a
// vertex shared by two pieces is not used: the piece starting there wins).
ge::Vector3d derivAtParam(const Path& path, double u);
bool paramInRange(const Path& path, double u);

struct ClosestPoint {
  double param = 0;
  ge::Point3d point;
  double distance = 0;
};
// Closest point on the curve itself (no extension).
ClosestPoint closestPoint(const Path& path, const ge::Point3d& p);

// Tight geometric extents.
ge::Extents3d pathExtents(const Path& path);
// Scale of the path for tolerances (see tolerance.h).
double pathScale(const Path& path);

// Normal of the plane the path lies in: the entity's own normal for planar
// kinds, otherwise a best-fit normal when all points lie in one plane.
std::optional<ge::Vector3d> pathPlaneNormal(const Path& path);
// Signed area about the normal (counter-clockwise positive); an open path is
// closed by the chord from its end to its start.
double signedArea(const Path& path, const ge::Vector3d& normal);

// Points at the given arc lengths, which must be ascending, in one walk along
// the path; lengths beyond the end give the end point.
std::vector<ge::Point3d> pointsAtDists(const Path& path, const std::vector<double>& dists);

}  // namespace standalone::kernel
