#pragma once
// The arithmetic of blend curves: a Bézier curve from the end of one curve to
// the end of another that continues both curves' tangent directions, and in
// the smooth mode their curvature vectors as well.
#include <optional>
#include <vector>

#include "ge/point.h"
#include "host/curves.h"

namespace commands {

// What a blend must continue at one end of a curve.
struct CurveEnd {
  ge::Point3d point;
  ge::Vector3d outward;    // unit tangent pointing away from the curve, off its end
  ge::Vector3d curvature;  // curvature vector d²C/ds² (towards the centre, length 1/radius)
};

enum class Continuity { kTangent, kSmooth };

// The end of a curve at its start (atStart) or at its end, from the host's
// first and second derivatives; nothing when the curve has no direction there.
std::optional<CurveEnd> curveEnd(const host::CurveServices& curves, const host::EntityData& curve, bool atStart);

// Control points of the blend from `from` to `to`: a cubic for tangent
// continuity, a quintic for curvature continuity. Each end's control arm is
// the chord over the degree, so that a straight-through blend is uniformly
// parametrised; the curvature arm follows from C'' = n(n-1)(P2 - 2P1 + P0).
std::vector<ge::Point3d> blendControlPoints(const CurveEnd& from, const CurveEnd& to, Continuity continuity);

// The Bézier curve of the control points as a clamped, non-rational spline
// record over the parameter range 0..1.
host::Spline bezierSpline(const std::vector<ge::Point3d>& controlPoints);

// The pair of ends, one of each curve, that lie nearest each other.
struct NearestEnds {
  bool firstAtStart = false;
  bool secondAtStart = false;
  double gap = 0;
};
NearestEnds nearestEnds(const ge::Point3d& start1, const ge::Point3d& end1, const ge::Point3d& start2,
                        const ge::Point3d& end2);

}  // namespace commands
