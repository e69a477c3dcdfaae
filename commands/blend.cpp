#include "commands/blend.h"

#include "ge/tolerance.h"

namespace commands {

std::optional<CurveEnd> curveEnd(const host::CurveServices& curves, const host::EntityData& curve, bool atStart) {
  double param = 0;
  auto status = atStart ? curves.getStartParam(curve, param) : curves.getEndParam(curve, param);
  if (status != host::ErrorStatus::eOk) return std::nullopt;
  CurveEnd end;
  ge::Vector3d d1, d2;
  if (curves.getPointAtParam(curve, param, end.point) != host::ErrorStatus::eOk ||
      curves.getFirstDeriv(curve, param, d1) != host::ErrorStatus::eOk ||
      curves.getSecondDeriv(curve, param, d2) != host::ErrorStatus::eOk)
    return std::nullopt;
  double speed = d1.length();
  if (ge::isZeroLength(speed)) return std::nullopt;
  ge::Vector3d tangent = d1 / speed;
  end.outward = atStart ? -tangent : tangent;
  // The curvature vector does not depend on the direction of travel.
  end.curvature = (d2 - tangent * d2.dot(tangent)) / (speed * speed);
  return end;
}

std::vector<ge::Point3d> blendControlPoints(const CurveEnd& from, const CurveEnd& to, Continuity continuity) {
  const double chord = from.point.distanceTo(to.point);
  // The blend arrives at `to` travelling into the second curve.
  const ge::Vector3d arrive = -to.outward;
  if (continuity == Continuity::kTangent) {
    const double arm = chord / 3;
    return {from.point, from.point + from.outward * arm, to.point - arrive * arm, to.point};
  }
  // Quintic: with P1 - P0 = a·t the curvature vector at the start is
  // (n-1)/n · (P2 - 2P1 + P0)_normal / a², so P2 = P0 + 2a·t + n/(n-1)·a²·k.
  constexpr double n = 5;
  const double arm = chord / n;
  const double bend = n / (n - 1) * arm * arm;
  return {from.point,
          from.point + from.outward * arm,
          from.point + from.outward * (2 * arm) + from.curvature * bend,
          to.point - arrive * (2 * arm) + to.curvature * bend,
          to.point - arrive * arm,
          to.point};
}

host::Spline bezierSpline(const std::vector<ge::Point3d>& controlPoints) {
  host::Spline s;
  s.degree = static_cast<int>(controlPoints.size()) - 1;
  s.controlPoints = controlPoints;
  s.knots.assign(controlPoints.size(), 0.0);
  s.knots.insert(s.knots.end(), controlPoints.size(), 1.0);
  s.flags = 0;
  return s;
}

NearestEnds nearestEnds(const ge::Point3d& start1, const ge::Point3d& end1, const ge::Point3d& start2,
                        const ge::Point3d& end2) {
  NearestEnds best{false, false, end1.distanceTo(end2)};
  for (bool a : {true, false})
    for (bool b : {true, false}) {
      double gap = (a ? start1 : end1).distanceTo(b ? start2 : end2);
      if (gap < best.gap) best = {a, b, gap};
    }
  return best;
}

}  // namespace commands
