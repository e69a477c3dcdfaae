// STRETCH of one entity: what lies inside the crossing moves, the rest stays.
#include <cmath>
#include <numbers>

#include "standalone/editor/selection_shapes.h"
#include "standalone/hostcmds/edit_commands.h"
#include "standalone/kernel/ocs.h"

namespace standalone {

namespace {

using Crossings = std::vector<std::vector<ge::Point2d>>;

bool inside(const Crossings& crossings, const ge::Point3d& p) {
  for (const auto& polygon : crossings)
    if (pointInPolygon(polygon, {p.x, p.y})) return true;
  return false;
}

// Moves the planar vertices (OCS) of a polyline whose world position lies inside.
template <class Vertices, class Get, class Set>
bool stretchOcs(Vertices& vertices, const ge::Vector3d& normal, double elevation, const Crossings& crossings,
                const ge::Vector3d& d, Get get, Set set) {
  kernel::Frame f = kernel::ocsFrame(normal);
  ge::Vector3d local{d.dot(f.x), d.dot(f.y), 0};
  bool moved = false;
  for (auto& v : vertices) {
    ge::Point2d p = get(v);
    if (!inside(crossings, kernel::ocsToWorld(f, p.x, p.y, elevation))) continue;
    set(v, local);
    moved = true;
  }
  return moved;
}

// The arc through two end points with the given counter-clockwise sweep, in the XY plane.
bool arcThrough(host::Arc& a, const ge::Point3d& p0, const ge::Point3d& p1, double sweep) {
  ge::Vector3d chord = p1 - p0;
  double c = chord.length();
  double half = sweep / 2;
  if (c == 0 || std::sin(half) == 0) return false;
  double r = c / (2 * std::sin(half));
  ge::Vector3d left = ge::kZAxis.cross(chord) / c;
  ge::Point3d centre = p0 + chord * 0.5 + left * (r * std::cos(half));
  a.center = centre;
  a.radius = std::abs(r);
  a.startAngle = std::atan2(p0.y - centre.y, p0.x - centre.x);
  a.endAngle = a.startAngle + sweep;
  return true;
}

struct Stretcher {
  const Crossings& crossings;
  const ge::Vector3d& d;
  const host::CurveServices& curves;

  bool moveWhole(host::EntityData& e) const {
    return curves.transformBy(e, ge::Matrix3d::translation(d)) == host::ErrorStatus::eOk;
  }
  bool operator()(host::Line& l) const {
    bool s = inside(crossings, l.start), e = inside(crossings, l.end);
    if (s) l.start = l.start + d;
    if (e) l.end = l.end + d;
    return s || e;
  }
  bool operator()(host::Arc& a) const {
    host::EntityData data = a;
    ge::Point3d p0, p1;
    if (curves.getStartPoint(data, p0) != host::ErrorStatus::eOk ||
        curves.getEndPoint(data, p1) != host::ErrorStatus::eOk)
      return false;
    bool s = inside(crossings, p0), e = inside(crossings, p1);
    if (!s && !e) return false;
    if (s && e) {
      if (!moveWhole(data)) return false;
      a = std::get<host::Arc>(data);
      return true;
    }
    // Only arcs in the drawing's plane are reshaped; others stay.
    if (std::abs(a.normal.normalized().z - 1) > 1e-12) return false;
    double sweep = std::remainder(a.endAngle - a.startAngle, 2 * std::numbers::pi);
    if (sweep <= 0) sweep += 2 * std::numbers::pi;
    return arcThrough(a, s ? p0 + d : p0, e ? p1 + d : p1, sweep);
  }
  bool operator()(host::LwPolyline& pl) const {
    return stretchOcs(
        pl.vertices, pl.normal, pl.elevation, crossings, d, [](const host::LwVertex& v) { return ge::Point2d{v.x, v.y}; },
        [](host::LwVertex& v, const ge::Vector3d& l) { v.x += l.x, v.y += l.y; });
  }
  bool operator()(host::Polyline2d& pl) const {
    return stretchOcs(
        pl.vertices, pl.normal, pl.elevation, crossings, d,
        [](const host::Vertex2d& v) { return ge::Point2d{v.position.x, v.position.y}; },
        [](host::Vertex2d& v, const ge::Vector3d& l) { v.position.x += l.x, v.position.y += l.y; });
  }
  bool operator()(host::Polyline3d& pl) const {
    bool moved = false;
    for (auto& v : pl.vertices)
      if (inside(crossings, v.position)) v.position = v.position + d, moved = true;
    return moved;
  }
  // A fitted spline moves its fit points and is fitted again with its end
  // tangents; a spline without fit data moves its control points.
  bool operator()(host::Spline& s) const {
    bool moved = false;
    if (s.fitPoints.empty()) {
      for (auto& p : s.controlPoints)
        if (inside(crossings, p)) p = p + d, moved = true;
      return moved;
    }
    std::vector<ge::Point3d> fit = s.fitPoints;
    for (auto& p : fit)
      if (inside(crossings, p)) p = p + d, moved = true;
    if (!moved) return false;
    host::Spline refit;
    const ge::Vector3d* st = s.startTangent ? &*s.startTangent : nullptr;
    const ge::Vector3d* et = s.endTangent ? &*s.endTangent : nullptr;
    if (curves.fitSpline(fit, st, et, refit) != host::ErrorStatus::eOk) return false;
    s = refit;
    return true;
  }
  bool operator()(host::Hatch& h) const;
  // Kinds the host does not interpret are not stretched.
  bool operator()(host::OtherEntity&) const { return false; }
  template <class T>
  bool operator()(T& kind) const {
    host::EntityData data = kind;
    if (!inside(crossings, definingPoint(kind))) return false;
    if (!moveWhole(data)) return false;
    kind = std::get<T>(data);
    return true;
  }

  static ge::Point3d definingPoint(const host::Circle& c) { return c.center; }
  static ge::Point3d definingPoint(const host::Ellipse& e) { return e.center; }
  static ge::Point3d definingPoint(const host::Text& t) { return t.position; }
  static ge::Point3d definingPoint(const host::MText& t) { return t.position; }
  static ge::Point3d definingPoint(const host::PointEntity& p) { return p.position; }
  static ge::Point3d definingPoint(const host::BlockReference& r) { return r.position; }
  static ge::Point3d definingPoint(const host::Image& im) { return im.insertion; }
  static ge::Point3d definingPoint(const host::Helix& h) { return h.axisBase; }
};

// A hatch lying wholly inside moves with its pattern. Otherwise its boundary
// is stretched like the curves it is made of (polyline vertices and line
// ends inside move, an arc edge keeps its sweep through its moved ends, an
// elliptic edge moves when both ends do, spline points inside move), seed
// points inside move, and the pattern stays where it is.
bool Stretcher::operator()(host::Hatch& h) const {
  kernel::Frame f = kernel::ocsFrame(h.normal.length() > 0 ? h.normal : ge::kZAxis);
  const ge::Point2d local{d.dot(f.x), d.dot(f.y)};
  auto in = [&](ge::Point2d p) { return inside(crossings, kernel::ocsToWorld(f, p.x, p.y, h.elevation)); };
  auto shifted = [&](ge::Point2d p) { return ge::Point2d{p.x + local.x, p.y + local.y}; };
  auto at = [](ge::Point2d c, double r, double a) { return ge::Point2d{c.x + r * std::cos(a), c.y + r * std::sin(a)}; };
  auto ellipseAt = [](const host::HatchEllipseEdge& e, double t) {
    double minor = e.ratio;
    return ge::Point2d{e.center.x + e.majorAxis.x * std::cos(t) - e.majorAxis.y * minor * std::sin(t),
                       e.center.y + e.majorAxis.y * std::cos(t) + e.majorAxis.x * minor * std::sin(t)};
  };
  // Every defining point, to tell a hatch wholly inside.
  bool all = true;
  for (const host::HatchPath& path : h.paths) {
    for (const host::LwVertex& v : path.polyline) all = all && in({v.x, v.y});
    for (const host::HatchEdge& edge : path.edges) {
      if (auto* l = std::get_if<host::HatchLineEdge>(&edge)) all = all && in(l->start) && in(l->end);
      else if (auto* a = std::get_if<host::HatchArcEdge>(&edge))
        all = all && in(at(a->center, a->radius, a->startAngle)) && in(at(a->center, a->radius, a->endAngle));
      else if (auto* e = std::get_if<host::HatchEllipseEdge>(&edge))
        all = all && in(ellipseAt(*e, e->startAngle)) && in(ellipseAt(*e, e->endAngle));
      else if (auto* sp = std::get_if<host::HatchSplineEdge>(&edge))
        for (const auto& p : sp->controlPoints) all = all && in(p);
    }
  }
  if (all) {
    host::EntityData data = h;
    if (!moveWhole(data)) return false;
    h = std::get<host::Hatch>(data);
    return true;
  }
  bool moved = false;
  auto step = [&](ge::Point2d& p) {
    if (!in(p)) return;
    p = shifted(p);
    moved = true;
  };
  for (host::HatchPath& path : h.paths) {
    for (host::LwVertex& v : path.polyline) {
      ge::Point2d p{v.x, v.y};
      step(p);
      v.x = p.x, v.y = p.y;
    }
    for (host::HatchEdge& edge : path.edges) {
      if (auto* l = std::get_if<host::HatchLineEdge>(&edge)) {
        step(l->start), step(l->end);
      } else if (auto* a = std::get_if<host::HatchArcEdge>(&edge)) {
        ge::Point2d p0 = at(a->center, a->radius, a->startAngle), p1 = at(a->center, a->radius, a->endAngle);
        bool s = in(p0), e = in(p1);
        if (!s && !e) continue;
        if (s) p0 = shifted(p0);
        if (e) p1 = shifted(p1);
        double sweep = a->counterClockwise ? a->endAngle - a->startAngle : a->startAngle - a->endAngle;
        sweep = std::remainder(sweep, 2 * std::numbers::pi);
        if (sweep <= 0) sweep += 2 * std::numbers::pi;
        // The same arc as a counter-clockwise one in the boundary's plane.
        host::Arc through;
        ge::Point3d from{p0.x, p0.y, 0}, to{p1.x, p1.y, 0};
        if (!(a->counterClockwise ? arcThrough(through, from, to, sweep) : arcThrough(through, to, from, sweep)))
          continue;
        ge::Point2d c{through.center.x, through.center.y};
        a->center = c;
        a->radius = std::hypot(p0.x - c.x, p0.y - c.y);
        a->startAngle = std::atan2(p0.y - c.y, p0.x - c.x);
        a->endAngle = std::atan2(p1.y - c.y, p1.x - c.x);
        moved = true;
      } else if (auto* e = std::get_if<host::HatchEllipseEdge>(&edge)) {
        if (in(ellipseAt(*e, e->startAngle)) && in(ellipseAt(*e, e->endAngle))) e->center = shifted(e->center), moved = true;
      } else if (auto* sp = std::get_if<host::HatchSplineEdge>(&edge)) {
        for (auto& p : sp->controlPoints) step(p);
        for (auto& p : sp->fitPoints) step(p);
      }
    }
  }
  for (ge::Point2d& seed : h.seeds) step(seed);
  return moved;
}

}  // namespace

bool stretchEntity(host::EntityData& e, const std::vector<std::vector<ge::Point2d>>& crossings,
                   const ge::Vector3d& displacement, const host::CurveServices& curves) {
  host::EntityData copy = e;
  if (!std::visit(Stretcher{crossings, displacement, curves}, copy)) return false;
  e = std::move(copy);
  return true;
}

}  // namespace standalone
