// Curve entities as scene paths: exact arcs where they stay circular, sampled
// points elsewhere, and filled outlines for wide polyline segments.
#include <cmath>
#include <numbers>
#include <optional>

#include "standalone/render/emitter.h"
#include "standalone/render/nurbs.h"
#include "standalone/render/projection.h"

namespace standalone {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// The x and y axes of an entity's OCS in world space.
struct Plane {
  ge::Vector3d x, y;
  ge::Matrix3d toWorld;
};
Plane planeOf(const ge::Vector3d& normal) {
  ge::Matrix3d m = ocsToWorld(normal);
  return {m.apply(ge::kXAxis), m.apply(ge::kYAxis), m};
}

// A vertex of a bulged polyline in its OCS.
struct BulgeVertex {
  ge::Point2d at;
  double bulge = 0;
  double startWidth = 0, endWidth = 0;
};

// The centre line of a bulged polyline, one sub-path.
void addBulgedCentreLine(const std::vector<BulgeVertex>& v, bool closed, double elevation, const Plane& plane,
                         const Emitter& out, Path& path) {
  auto world = [&](const ge::Point2d& p) { return plane.toWorld.apply(ge::Point3d{p.x, p.y, elevation}); };
  path.moveTo(out.place(world(v.front().at)));
  std::size_t segments = closed ? v.size() : v.size() - 1;
  for (std::size_t i = 0; i < segments; ++i) {
    const auto& a = v[i];
    const auto& b = v[(i + 1) % v.size()];
    if (auto arc = bulgeToArc(a.at, b.at, a.bulge))
      out.addArc(path, world({arc->center.x, arc->center.y}), plane.x, plane.y, arc->radius, arc->startAngle,
                 arc->endAngle, arc->ccw, true);
    else
      path.lineTo(out.place(world(b.at)));
  }
  if (closed) path.close();
}

// The filled outline of one wide segment: the offset sides at half the width,
// the width changing linearly from start to end.
Path wideSegmentOutline(const BulgeVertex& a, const BulgeVertex& b, double elevation, const Plane& plane,
                        const Emitter& out) {
  auto world = [&](double x, double y) { return out.place(plane.toWorld.apply(ge::Point3d{x, y, elevation})); };
  Path path;
  if (auto arc = bulgeToArc(a.at, b.at, a.bulge)) {
    int pieces = piecesForSweep(arc->endAngle - arc->startAngle);
    std::vector<ge::Point2d> outer, inner;
    for (int i = 0; i <= pieces; ++i) {
      double f = static_cast<double>(i) / pieces, t = arc->startAngle + (arc->endAngle - arc->startAngle) * f;
      double half = (a.startWidth + (a.endWidth - a.startWidth) * f) / 2;
      double c = std::cos(t), s = std::sin(t);
      outer.push_back(world(arc->center.x + (arc->radius + half) * c, arc->center.y + (arc->radius + half) * s));
      inner.push_back(world(arc->center.x + (arc->radius - half) * c, arc->center.y + (arc->radius - half) * s));
    }
    path.moveTo(outer.front());
    for (std::size_t i = 1; i < outer.size(); ++i) path.lineTo(outer[i]);
    for (std::size_t i = inner.size(); i-- > 0;) path.lineTo(inner[i]);
  } else {
    double dx = b.at.x - a.at.x, dy = b.at.y - a.at.y, len = std::hypot(dx, dy);
    if (len == 0) return path;
    double nx = -dy / len, ny = dx / len, h0 = a.startWidth / 2, h1 = a.endWidth / 2;
    path.moveTo(world(a.at.x + nx * h0, a.at.y + ny * h0));
    path.lineTo(world(b.at.x + nx * h1, b.at.y + ny * h1));
    path.lineTo(world(b.at.x - nx * h1, b.at.y - ny * h1));
    path.lineTo(world(a.at.x - nx * h0, a.at.y - ny * h0));
  }
  path.close();
  return path;
}

// Unit directions of a segment at its start and at its end (OCS); an arc's
// tangents are its chord turned by half the included angle either way.
struct SegmentDirections {
  ge::Point2d atStart, atEnd;
};
std::optional<SegmentDirections> segmentDirections(const BulgeVertex& a, const BulgeVertex& b) {
  double dx = b.at.x - a.at.x, dy = b.at.y - a.at.y, len = std::hypot(dx, dy);
  if (len == 0) return std::nullopt;
  double half = 2 * std::atan(a.bulge);
  auto turned = [&](double angle) {
    return ge::Point2d{(dx * std::cos(angle) - dy * std::sin(angle)) / len,
                       (dx * std::sin(angle) + dy * std::cos(angle)) / len};
  };
  return SegmentDirections{turned(-half), turned(half)};
}

// The wedge that closes the gap on the outer side of a corner between two
// wide segments: mitred up to a limit, bevelled beyond it.
std::optional<Path> cornerWedge(const BulgeVertex& before, const BulgeVertex& corner, const BulgeVertex& after,
                                double elevation, const Plane& plane, const Emitter& out) {
  constexpr double kMitreLimit = 4;  // mitre length in half widths, as in common stroking rules
  double h1 = before.endWidth / 2, h2 = corner.startWidth / 2;
  auto in = segmentDirections(before, corner), outDir = segmentDirections(corner, after);
  if (h1 <= 0 || h2 <= 0 || !in || !outDir) return std::nullopt;
  ge::Point2d t1 = in->atEnd, t2 = outDir->atStart, v = corner.at;
  double turn = t1.x * t2.y - t1.y * t2.x;
  if (std::abs(turn) < 1e-9) return std::nullopt;
  double side = turn > 0 ? -1 : 1;  // the outer side: right of a left turn
  ge::Point2d a{v.x - t1.y * h1 * side, v.y + t1.x * h1 * side}, b{v.x - t2.y * h2 * side, v.y + t2.x * h2 * side};
  double u = ((b.x - a.x) * t2.y - (b.y - a.y) * t2.x) / turn;
  ge::Point2d mitre{a.x + t1.x * u, a.y + t1.y * u};
  auto world = [&](const ge::Point2d& p) { return out.place(plane.toWorld.apply(ge::Point3d{p.x, p.y, elevation})); };
  Path path;
  path.moveTo(world(v));
  path.lineTo(world(a));
  if (std::hypot(mitre.x - v.x, mitre.y - v.y) <= kMitreLimit * std::max(h1, h2)) path.lineTo(world(mitre));
  path.lineTo(world(b));
  path.close();
  return path;
}

void emitBulgedPolyline(const std::vector<BulgeVertex>& v, bool closed, double elevation, const ge::Vector3d& normal,
                        const Emitter& out) {
  if (v.empty()) return;
  Plane plane = planeOf(normal);
  Path centre;
  addBulgedCentreLine(v, closed, elevation, plane, out, centre);
  out.stroke(std::move(centre));
  std::size_t segments = closed ? v.size() : v.size() - 1;
  // Each wide segment is filled on its own: one even-odd fill would cut
  // holes where neighbouring segments overlap at a corner.
  for (std::size_t i = 0; i < segments && v.size() > 1; ++i) {
    const auto& a = v[i];
    if (a.startWidth > 0 || a.endWidth > 0)
      out.fill(wideSegmentOutline(a, v[(i + 1) % v.size()], elevation, plane, out));
  }
  std::size_t firstCorner = closed ? 0 : 1, lastCorner = closed ? v.size() : v.size() - 1;
  for (std::size_t i = firstCorner; i < lastCorner && v.size() > 2; ++i) {
    const auto& before = v[(i + v.size() - 1) % v.size()];
    if (auto wedge = cornerWedge(before, v[i], v[(i + 1) % v.size()], elevation, plane, out))
      out.fill(std::move(*wedge));
  }
}

void emit(const host::Line& l, const Emitter& out) {
  Path path;
  out.addPoints(path, {l.start, l.end}, false);
  out.stroke(std::move(path));
}

void emit(const host::Circle& c, const Emitter& out) {
  Plane plane = planeOf(c.normal);
  Path path;
  out.addArc(path, c.center, plane.x, plane.y, c.radius, 0, kTwoPi, true, false);
  path.close();
  out.stroke(std::move(path));
}

void emit(const host::Arc& a, const Emitter& out) {
  Plane plane = planeOf(a.normal);
  // Arcs always run counter-clockwise about their normal.
  double end = a.startAngle + ccwSweep(a.startAngle, a.endAngle);
  Path path;
  out.addArc(path, a.center, plane.x, plane.y, a.radius, a.startAngle, end, true, false);
  out.stroke(std::move(path));
}

void emit(const host::Ellipse& e, const Emitter& out) {
  ge::Vector3d minor = e.normal.normalized().cross(e.majorAxis) * e.ratio;
  double sweep = ccwSweep(e.startParam, e.endParam);
  int pieces = piecesForSweep(sweep);
  ge::PointList points;
  for (int i = 0; i <= pieces; ++i) {
    double t = e.startParam + sweep * i / pieces;
    points.push_back(e.center + e.majorAxis * std::cos(t) + minor * std::sin(t));
  }
  Path path;
  out.addPoints(path, points, false);
  out.stroke(std::move(path));
}

void emit(const host::LwPolyline& pl, const Emitter& out) {
  bool ownWidths = false;
  for (const auto& v : pl.vertices) ownWidths = ownWidths || v.startWidth != 0 || v.endWidth != 0;
  std::vector<BulgeVertex> v;
  for (const auto& x : pl.vertices) {
    double w0 = ownWidths ? x.startWidth : pl.constantWidth, w1 = ownWidths ? x.endWidth : pl.constantWidth;
    v.push_back({{x.x, x.y}, x.bulge, w0, w1});
  }
  emitBulgedPolyline(v, pl.closed, pl.elevation, pl.normal, out);
}

// The vertices that make up the drawn curve: the generated ones of a fitted
// polyline, never its frame (unless there is nothing else).
template <typename V>
std::vector<V> drawnVertices(const std::vector<V>& all) {
  std::vector<V> drawn;
  for (const auto& v : all)
    if (!(v.flags & host::kVertexSplineFrame)) drawn.push_back(v);
  return drawn.empty() ? all : drawn;
}

void emit(const host::Polyline2d& pl, const Emitter& out) {
  bool ownWidths = false;
  for (const auto& v : pl.vertices) ownWidths = ownWidths || v.startWidth != 0 || v.endWidth != 0;
  std::vector<BulgeVertex> v;
  for (const auto& x : drawnVertices(pl.vertices)) {
    double w0 = ownWidths ? x.startWidth : pl.defaultStartWidth, w1 = ownWidths ? x.endWidth : pl.defaultEndWidth;
    // Spline-fit vertices are joined by straight pieces whatever bulge they carry.
    double bulge = pl.splineFit ? 0 : x.bulge;
    v.push_back({{x.position.x, x.position.y}, bulge, w0, w1});
  }
  emitBulgedPolyline(v, pl.closed, pl.elevation, pl.normal, out);
}

void emit(const host::Polyline3d& pl, const Emitter& out) {
  ge::PointList points;
  for (const auto& v : drawnVertices(pl.vertices)) points.push_back(v.position);
  if (points.empty()) return;
  Path path;
  out.addPoints(path, points, false);
  if (pl.closed) path.close();
  out.stroke(std::move(path));
}

void emitPoints(const ge::PointList& points, const Emitter& out) {
  if (points.empty()) return;
  Path path;
  out.addPoints(path, points, false);
  out.stroke(std::move(path));
}

}  // namespace

bool emitCurve(const host::EntityData& data, const Emitter& out) {
  if (auto* line = std::get_if<host::Line>(&data))
    emit(*line, out);
  else if (auto* circle = std::get_if<host::Circle>(&data))
    emit(*circle, out);
  else if (auto* arc = std::get_if<host::Arc>(&data))
    emit(*arc, out);
  else if (auto* ellipse = std::get_if<host::Ellipse>(&data))
    emit(*ellipse, out);
  else if (auto* lwPolyline = std::get_if<host::LwPolyline>(&data))
    emit(*lwPolyline, out);
  else if (auto* polyline2d = std::get_if<host::Polyline2d>(&data))
    emit(*polyline2d, out);
  else if (auto* polyline3d = std::get_if<host::Polyline3d>(&data))
    emit(*polyline3d, out);
  else if (auto* spline = std::get_if<host::Spline>(&data))
    emitPoints(splineDrawingPoints(*spline), out);
  else if (auto* helix = std::get_if<host::Helix>(&data))
    emitPoints(helixDrawingPoints(*helix), out);
  else
    return false;
  return true;
}

}  // namespace standalone
