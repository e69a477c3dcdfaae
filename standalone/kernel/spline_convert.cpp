// Splines of other curves and polylines of splines: the exact rational form
// of arcs, circles and ellipses, fitting through points, approximation by
// polylines, and the generated vertices of spline-fit 2D polylines.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "standalone/kernel/curve_fit.h"
#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/nurbs_forms.h"
#include "standalone/kernel/ocs.h"
#include "standalone/kernel/path.h"
#include "standalone/kernel/path_query.h"
#include "standalone/kernel/plane_fit.h"
#include "standalone/kernel/spline_fit.h"

namespace standalone {

using host::ErrorStatus;
using namespace kernel;

namespace {

constexpr int kFlagClosed = 1, kFlagRational = 4, kFlagPlanar = 8, kFlagLinear = 16;

host::Spline splineOf(const Nurbs& n, int flags, const ge::Vector3d& normal) {
  host::Spline s;
  s.degree = n.degree;
  s.knots = n.knots;
  s.controlPoints = n.controlPoints;
  s.weights = n.weights;
  s.flags = flags;
  s.normal = normal;
  return s;
}

}  // namespace

ErrorStatus CurveKernel::getSpline(const EntityData& c, host::Spline& result) const {
  using namespace host;
  if (auto* s = std::get_if<Spline>(&c)) {
    result = *s;
    return ErrorStatus::eOk;
  }
  if (auto* h = std::get_if<Helix>(&c)) {
    result = h->curve;
    return ErrorStatus::eOk;
  }
  if (auto* l = std::get_if<Line>(&c)) {
    double len = l->start.distanceTo(l->end);
    if (len == 0) return ErrorStatus::eDegenerateGeometry;
    result = splineOf(Nurbs{1, {0, 0, len, len}, {l->start, l->end}, {}}, kFlagPlanar | kFlagLinear, l->normal);
    return ErrorStatus::eOk;
  }
  if (std::holds_alternative<Arc>(c) || std::holds_alternative<Circle>(c) || std::holds_alternative<Ellipse>(c)) {
    auto path = pathOf(c);
    if (!path) return ErrorStatus::eNotApplicable;
    const Piece& piece = path->pieces.front();
    Nurbs n;
    if (auto* a = std::get_if<ArcPiece>(&piece.geometry)) {
      if (a->radius <= 0) return ErrorStatus::eDegenerateGeometry;
      n = conicArc(a->center, a->x * a->radius, a->y * a->radius, a->start, a->sweep);
    } else {
      const auto& e = std::get<EllipsePiece>(piece.geometry);
      n = conicArc(e.center, e.major, e.minor, piece.p0, piece.p1 - piece.p0);
    }
    int flags = kFlagRational | kFlagPlanar | (path->closed ? kFlagClosed : 0);
    result = splineOf(n, flags, *path->normal);
    return ErrorStatus::eOk;
  }
  return ErrorStatus::eNotApplicable;  // polylines have no spline of their own
}

ErrorStatus CurveKernel::fitSpline(const std::vector<ge::Point3d>& fitPoints, const ge::Vector3d* startTangent,
                                   const ge::Vector3d* endTangent, host::Spline& result) const {
  auto n = interpolateFitPoints(fitPoints, startTangent, endTangent);
  if (!n) return ErrorStatus::eInvalidInput;
  auto normal = planeNormalOfPoints(fitPoints);
  host::Spline s = splineOf(*n, normal ? kFlagPlanar : 0, normal.value_or(ge::kZAxis));
  s.fitPoints = fitPoints;
  if (startTangent && startTangent->length() > 0 && endTangent && endTangent->length() > 0) {
    s.startTangent = startTangent->normalized();
    s.endTangent = endTangent->normalized();
  }
  s.fitTolerance = 0.0;
  result = std::move(s);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::splineToPolyline(const host::Spline& s, int precision, EntityData& result) const {
  auto n = nurbsOf(s);
  if (!n) return ErrorStatus::eInvalidInput;
  // Precision 0..99 (the host's default 10) is the number of straight
  // segments per knot span; a linear spline needs one per span.
  bool linear = n->degree == 1 && n->weights.empty();
  int perSpan = linear ? 1 : std::clamp(precision, 1, 99);
  std::vector<ge::Point3d> pts;
  auto bps = nurbsBreakpoints(*n);
  for (size_t i = 0; i + 1 < bps.size(); ++i)
    for (int k = 0; k < perSpan; ++k) pts.push_back(nurbsPoint(*n, bps[i] + (bps[i + 1] - bps[i]) * k / perSpan));
  pts.push_back(nurbsPoint(*n, n->endParam()));
  bool closed = s.isClosed() || pts.front().distanceTo(pts.back()) == 0;
  if (closed && pts.size() > 2) pts.pop_back();
  auto normal = s.controlPoints.empty() ? planeNormalOfPoints(pts) : planeNormalOfPoints(s.controlPoints);
  if (normal) {
    // Keep the spline's own normal when it agrees, so the OCS matches the source.
    if (s.normal.cross(*normal).length() < 1e-9) normal = s.normal.normalized();
    Frame f = ocsFrame(*normal);
    host::LwPolyline pl;
    pl.normal = *normal;
    pl.closed = closed;
    pl.elevation = worldToOcs(f, pts.front()).z;
    for (const auto& p : pts) {
      ge::Point3d o = worldToOcs(f, p);
      pl.vertices.push_back({o.x, o.y});
    }
    result = std::move(pl);
  } else {
    host::Polyline3d pl;
    pl.closed = closed;
    for (const auto& p : pts) pl.vertices.push_back({p});
    result = std::move(pl);
  }
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::convertLwTo2d(const host::LwPolyline& lw, host::Polyline2d& result) const {
  if (lw.vertices.empty()) return ErrorStatus::eInvalidInput;
  bool ownWidths = std::any_of(lw.vertices.begin(), lw.vertices.end(),
                               [](const host::LwVertex& v) { return v.startWidth != 0 || v.endWidth != 0; });
  host::Polyline2d pl;
  for (const auto& v : lw.vertices) {
    host::Vertex2d nv;
    nv.position = {v.x, v.y, lw.elevation};
    nv.bulge = v.bulge;
    nv.startWidth = ownWidths ? v.startWidth : lw.constantWidth;
    nv.endWidth = ownWidths ? v.endWidth : lw.constantWidth;
    pl.vertices.push_back(nv);
  }
  pl.closed = lw.closed;
  pl.plinegen = lw.plinegen;
  pl.defaultStartWidth = pl.defaultEndWidth = ownWidths ? 0.0 : lw.constantWidth;
  pl.elevation = lw.elevation;
  pl.thickness = lw.thickness;
  pl.normal = lw.normal;
  result = std::move(pl);
  return ErrorStatus::eObjectToBeDeleted;  // a made conversion: the caller replaces the old entity
}

ErrorStatus CurveKernel::convert2dToLw(const host::Polyline2d& pl, host::LwPolyline& result) const {
  // Fitted forms keep generated and frame vertices that a lightweight polyline cannot hold.
  if (pl.curveFit || pl.splineFit || pl.vertices.empty()) return ErrorStatus::eNotApplicable;
  host::LwPolyline lw;
  for (const auto& v : pl.vertices) lw.vertices.push_back({v.position.x, v.position.y, v.bulge, v.startWidth, v.endWidth});
  bool allEqual = std::all_of(lw.vertices.begin(), lw.vertices.end(), [&](const host::LwVertex& v) {
    return v.startWidth == lw.vertices[0].startWidth && v.endWidth == lw.vertices[0].startWidth;
  });
  if (allEqual) {
    lw.constantWidth = lw.vertices[0].startWidth;
    for (auto& v : lw.vertices) v.startWidth = v.endWidth = 0;
  }
  lw.closed = pl.closed;
  lw.plinegen = pl.plinegen;
  lw.elevation = pl.elevation;
  lw.thickness = pl.thickness;
  lw.normal = pl.normal;
  result = std::move(lw);
  return ErrorStatus::eObjectToBeDeleted;
}

ErrorStatus CurveKernel::fitPolyline2d(host::Polyline2d& pl, int splineType, int splineSegs) const {
  if (pl.curveFit && !pl.splineFit) return curveFitPolyline(pl) ? ErrorStatus::eOk : ErrorStatus::eInvalidInput;
  // The frame: flag-16 vertices of a spline-fit polyline, else every vertex
  // (arc segments are straightened).
  std::vector<host::Vertex2d> frame;
  for (const auto& v : pl.vertices)
    if (!pl.splineFit || (v.flags & host::kVertexSplineFrame)) frame.push_back(v);
  int count = static_cast<int>(frame.size());
  if (count < 3) return ErrorStatus::eInvalidInput;
  int degree = std::min(splineType == 5 ? 2 : 3, count - 1);
  Nurbs n;
  n.degree = degree;
  for (const auto& v : frame) n.controlPoints.push_back(v.position);
  if (pl.closed) {
    // Periodic uniform B-spline: wrap the first `degree` frame points.
    for (int i = 0; i < degree; ++i) n.controlPoints.push_back(frame[i].position);
    int k = static_cast<int>(n.controlPoints.size()) + degree + 1;
    for (int i = 0; i < k; ++i) n.knots.push_back(i);
  } else {
    n.knots.assign(degree + 1, 0.0);
    for (int i = 1; i < count - degree; ++i) n.knots.push_back(i);
    n.knots.insert(n.knots.end(), degree + 1, double(count - degree));
  }
  // SPLINESEGS segments per frame span; a negative value (arc fitting) is
  // taken by its magnitude, with straight segments.
  int segs = std::max(1, std::abs(splineSegs)) * (pl.closed ? count : count - 1);
  std::vector<host::Vertex2d> out;
  for (int i = 0; i <= segs; ++i) {
    if (pl.closed && i == segs) break;
    double u = n.startParam() + (n.endParam() - n.startParam()) * i / segs;
    host::Vertex2d v;
    v.position = nurbsPoint(n, u);
    v.position.z = pl.elevation;
    v.flags = host::kVertexSplineFit;
    out.push_back(v);
  }
  for (auto v : frame) {
    v.flags = (v.flags & ~host::kVertexSplineFit) | host::kVertexSplineFrame;
    v.bulge = 0;
    out.push_back(v);
  }
  pl.vertices = std::move(out);
  pl.splineFit = true;
  pl.curveFit = false;
  pl.curveType = degree == 2 ? host::PolyCurveType::kQuadraticSpline : host::PolyCurveType::kCubicSpline;
  return ErrorStatus::eOk;
}

}  // namespace standalone
