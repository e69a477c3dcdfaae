// getOffsetCurves: arcs and circles stay arcs and circles, lines stay lines,
// polylines are offset with joined corners and trimmed loops, and ellipses
// and splines give splines fitted through sampled offset points within
// kFreeFormOffsetTolerance of the exact offset.
#include <algorithm>
#include <cmath>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/offset_pline.h"
#include "standalone/kernel/path_query.h"
#include "standalone/kernel/piece_eval.h"
#include "standalone/kernel/spline_fit.h"
#include "standalone/kernel/tolerance.h"

namespace standalone {

using host::ErrorStatus;
using namespace kernel;

namespace {

// Largest distance, relative to the diagonal of the source's extents, between
// a fitted free-form offset and the exact offset, checked at the quarter
// points between its fit points.
constexpr double kFreeFormOffsetTolerance = 1e-7;

ErrorStatus offsetLine(const host::Line& l, double d, std::vector<host::EntityData>& out) {
  ge::Vector3d dir = l.end - l.start;
  if (dir.length() == 0) return ErrorStatus::eDegenerateGeometry;
  ge::Vector3d n = l.normal.normalized();
  ge::Vector3d side = dir.cross(n).normalized();
  if (side.length() == 0) return ErrorStatus::eDegenerateGeometry;  // line along its own normal
  // No inside or outside: a negative distance goes towards smaller X (then Y, then Z).
  double lead = std::abs(side.x) > 1e-12 ? side.x : std::abs(side.y) > 1e-12 ? side.y : side.z;
  if (lead < 0) side = -side;
  host::Line r = l;
  r.start = l.start + side * d;
  r.end = l.end + side * d;
  out.push_back(r);
  return ErrorStatus::eOk;
}

template <typename C>
ErrorStatus offsetRound(C c, double d, std::vector<host::EntityData>& out) {
  // A positive distance gives the larger curve.
  if (c.radius + d <= 0) return ErrorStatus::eInvalidOffset;
  c.radius += d;
  out.push_back(c);
  return ErrorStatus::eOk;
}

Pline2 plineOfLw(const host::LwPolyline& pl) {
  Pline2 p;
  p.closed = pl.closed;
  for (const auto& v : pl.vertices) p.vertices.push_back({{v.x, v.y}, v.bulge});
  return p;
}

ErrorStatus offsetPolyline(const Pline2& src, const host::EntityData& e, double d, auto make,
                           std::vector<host::EntityData>& out) {
  auto path = pathOf(e);
  if (!path) return ErrorStatus::eInvalidInput;
  double tol = pointTolerance(pathScale(*path));
  auto results = offsetPline(src, d, tol);
  if (results.empty()) return ErrorStatus::eInvalidOffset;
  for (const auto& r : results) out.push_back(make(r));
  return ErrorStatus::eOk;
}

// Offsets a planar free-form curve by sampling the exact offset and fitting a
// spline through the samples, doubling the samples until the fit is close.
ErrorStatus offsetFreeForm(const Path& path, const ge::Vector3d& normal, double d, std::vector<host::EntityData>& out) {
  const Piece& piece = path.pieces.front();
  auto exact = [&](double u) {
    ge::Vector3d t = pieceDeriv(piece, u);
    return piecePoint(piece, u) + t.cross(normal).normalized() * d;
  };
  auto bps = pieceBreakpoints(piece);
  double limit = kFreeFormOffsetTolerance * pathExtents(path).diagonal();
  for (int perSpan = 8; perSpan <= 1024; perSpan *= 2) {
    std::vector<ge::Point3d> pts;
    std::vector<double> us;
    for (size_t i = 0; i + 1 < bps.size(); ++i)
      for (int k = 0; k < perSpan; ++k) us.push_back(bps[i] + (bps[i + 1] - bps[i]) * k / perSpan);
    us.push_back(bps.back());
    for (double u : us) pts.push_back(exact(u));
    ge::Vector3d t0 = pieceDeriv(piece, us.front()), t1 = pieceDeriv(piece, us.back());
    auto fit = interpolateFitPoints(pts, &t0, &t1);
    if (!fit) return ErrorStatus::eInvalidOffset;
    Path fitted{{Piece{*fit, fit->startParam(), fit->endParam()}}, false, normal};
    double worst = 0;
    for (size_t i = 0; i + 1 < us.size(); ++i)
      for (double f : {0.25, 0.5, 0.75})
        worst = std::max(worst, closestPoint(fitted, exact(us[i] + (us[i + 1] - us[i]) * f)).distance);
    if (worst <= limit || perSpan == 1024) {
      host::Spline s;
      s.degree = 3;
      s.knots = fit->knots;
      s.controlPoints = fit->controlPoints;
      s.fitPoints = pts;
      s.startTangent = t0.normalized();
      s.endTangent = t1.normalized();
      s.fitTolerance = 0;
      s.normal = normal;
      s.flags = 8 | (path.closed ? 1 : 0);
      out.push_back(std::move(s));
      return ErrorStatus::eOk;
    }
  }
  return ErrorStatus::eInvalidOffset;
}

}  // namespace

ErrorStatus CurveKernel::getOffsetCurves(const EntityData& c, double distance, std::vector<EntityData>& results) const {
  using namespace host;
  if (!std::isfinite(distance)) return ErrorStatus::eInvalidInput;
  if (auto* l = std::get_if<Line>(&c)) return offsetLine(*l, distance, results);
  if (auto* ci = std::get_if<Circle>(&c)) return offsetRound(*ci, distance, results);
  if (auto* a = std::get_if<Arc>(&c)) return offsetRound(*a, distance, results);
  if (auto* lw = std::get_if<LwPolyline>(&c)) {
    return offsetPolyline(plineOfLw(*lw), c, distance, [&](const Pline2& r) {
      LwPolyline o = *lw;
      o.vertices.clear();
      o.constantWidth = 0;
      o.closed = r.closed;
      for (const auto& v : r.vertices) o.vertices.push_back({v.p.x, v.p.y, v.bulge});
      return EntityData{o};
    }, results);
  }
  if (auto* p2 = std::get_if<Polyline2d>(&c)) {
    Pline2 src;
    src.closed = p2->closed;
    for (const auto& v : p2->vertices)
      if (!(p2->splineFit && (v.flags & kVertexSplineFrame))) src.vertices.push_back({{v.position.x, v.position.y}, v.bulge});
    return offsetPolyline(src, c, distance, [&](const Pline2& r) {
      Polyline2d o;
      o.closed = r.closed;
      o.elevation = p2->elevation;
      o.normal = p2->normal;
      o.thickness = p2->thickness;
      for (const auto& v : r.vertices) {
        Vertex2d nv;
        nv.position = {v.p.x, v.p.y, p2->elevation};
        nv.bulge = v.bulge;
        o.vertices.push_back(nv);
      }
      return EntityData{o};
    }, results);
  }
  if (std::holds_alternative<Ellipse>(c) || std::holds_alternative<Spline>(c)) {
    auto path = pathOf(c);
    if (!path) return ErrorStatus::eInvalidInput;
    auto normal = pathPlaneNormal(*path);
    if (!normal) return ErrorStatus::eNonPlanarEntity;
    if (auto* s = std::get_if<Spline>(&c); s && s->normal.cross(*normal).length() < 1e-9) normal = s->normal.normalized();
    return offsetFreeForm(*path, *normal, distance, results);
  }
  return ErrorStatus::eNotApplicable;  // 3D polylines and helices leave their plane
}

}  // namespace standalone
