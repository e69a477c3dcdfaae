// getOffsetCurves: arcs and circles stay arcs and circles, lines stay lines,
// polylines are offset with joined corners and trimmed loops, and ellipses
// and splines give splines fitted through sampled offset points within
// kFreeFormOffsetTolerance of the exact offset, trimmed where they cross
// themselves.
#include <algorithm>
#include <cmath>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/offset_freeform.h"
#include "standalone/kernel/offset_pline.h"
#include "standalone/kernel/path_query.h"
#include "standalone/kernel/tolerance.h"

namespace standalone {

using host::ErrorStatus;
using namespace kernel;

namespace {

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

// Scale of a planar polyline for its tolerances, from its vertices: arcs
// bulge past them by no more than their chords, which leaves the magnitude.
std::optional<double> vertexScale(const Pline2& pl, double elevation) {
  ge::Extents3d e;
  for (const auto& v : pl.vertices) {
    if (!std::isfinite(v.p.x) || !std::isfinite(v.p.y) || !std::isfinite(v.bulge)) return std::nullopt;
    e.add(ge::Point3d{v.p.x, v.p.y, elevation});
  }
  if (!std::isfinite(elevation)) return std::nullopt;
  return geometryScale(e);
}

ErrorStatus offsetPolyline(const Pline2& src, double elevation, double d, auto make,
                           std::vector<host::EntityData>& out) {
  std::optional<double> scale = vertexScale(src, elevation);
  if (!scale) return ErrorStatus::eInvalidInput;
  double tol = pointTolerance(*scale);
  auto results = offsetPline(src, d, tol);
  if (results.empty()) return ErrorStatus::eInvalidOffset;
  for (const auto& r : results) out.push_back(make(r));
  return ErrorStatus::eOk;
}

}  // namespace

ErrorStatus CurveKernel::getOffsetCurves(const EntityData& c, double distance, std::vector<EntityData>& results) const {
  using namespace host;
  if (!std::isfinite(distance)) return ErrorStatus::eInvalidInput;
  if (auto* l = std::get_if<Line>(&c)) return offsetLine(*l, distance, results);
  if (auto* ci = std::get_if<Circle>(&c)) return offsetRound(*ci, distance, results);
  if (auto* a = std::get_if<Arc>(&c)) return offsetRound(*a, distance, results);
  if (auto* lw = std::get_if<LwPolyline>(&c)) {
    return offsetPolyline(plineOfLw(*lw), lw->elevation, distance, [&](const Pline2& r) {
      LwPolyline o;  // the source's plane and flags, not its vertices or widths
      o.plinegen = lw->plinegen, o.elevation = lw->elevation, o.thickness = lw->thickness, o.normal = lw->normal;
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
    return offsetPolyline(src, p2->elevation, distance, [&](const Pline2& r) {
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
  // The host keeps an ellipse's axis ratio in 1e-6 .. 1; below that it is a
  // line traced back and forth, whose offset would be all cusps.
  if (auto* el = std::get_if<Ellipse>(&c); el && !(el->ratio >= 1e-6)) return ErrorStatus::eDegenerateGeometry;
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
