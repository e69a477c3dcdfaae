#include "standalone/kernel/path.h"

#include <cmath>
#include <numbers>

#include "standalone/kernel/ocs.h"
#include "standalone/kernel/spline_fit.h"

namespace standalone::kernel {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

Piece arcPiece(const ge::Point3d& center, const ge::Vector3d& normal, double radius, double start, double sweep,
               double p0, double p1) {
  Frame f = ocsFrame(normal);
  return {ArcPiece{center, f.x, f.y, radius, start, sweep}, p0, p1};
}

Path linePath(const host::Line& l) {
  double len = l.start.distanceTo(l.end);
  return {{Piece{LinePiece{l.start, l.end}, 0.0, len}}, false, l.normal};
}

Path circlePath(const host::Circle& c) {
  return {{arcPiece(c.center, c.normal, c.radius, 0.0, kTwoPi, 0.0, kTwoPi)}, true, c.normal};
}

// Sweep of an arc from start to end angle, counter-clockwise, in (0, 2π].
double ccwSweep(double start, double end) {
  double s = std::fmod(end - start, kTwoPi);
  if (s <= 0) s += kTwoPi;
  return s;
}

Path arcPath(const host::Arc& a) {
  double sweep = ccwSweep(a.startAngle, a.endAngle);
  return {{arcPiece(a.center, a.normal, a.radius, a.startAngle, sweep, a.startAngle, a.startAngle + sweep)}, false,
          a.normal};
}

Path ellipsePath(const host::Ellipse& e) {
  ge::Vector3d n = e.normal.normalized();
  ge::Vector3d minor = n.cross(e.majorAxis) * e.ratio;
  double start = e.startParam, end = e.endParam;
  double sweep = ccwSweep(start, end);
  bool full = std::abs(sweep - kTwoPi) < 1e-12;
  Path p{{Piece{EllipsePiece{e.center, e.majorAxis, minor}, start, start + sweep}}, full, e.normal};
  return p;
}

template <typename V>
std::optional<Path> bulgedPath(const std::vector<V>& verts, bool closed, double elevation, const ge::Vector3d& normal,
                               auto position) {
  if (verts.empty()) return std::nullopt;
  Path path{{}, closed, normal};
  size_t n = verts.size();
  size_t segments = closed ? n : n - 1;
  Frame f = ocsFrame(normal);
  path.pieces.reserve(segments);
  for (size_t i = 0; i < segments; ++i) {
    const auto& a = verts[i];
    const auto& b = verts[i + 1 == n ? 0 : i + 1];
    path.pieces.push_back(bulgeSegment(position(a), position(b), a.bulge, elevation, f, double(i), double(i + 1)));
  }
  if (path.pieces.empty()) {  // a single vertex: a point-like curve of parameter range 0
    auto p = position(verts[0]);
    ge::Point3d w = ocsToWorld(ocsFrame(normal), p.x, p.y, elevation);
    path.pieces.push_back({LinePiece{w, w}, 0.0, 0.0});
  }
  return path;
}

std::optional<Path> lwPath(const host::LwPolyline& pl) {
  return bulgedPath(pl.vertices, pl.closed, pl.elevation, pl.normal,
                    [](const host::LwVertex& v) { return ge::Point2d{v.x, v.y}; });
}

// The vertices that make up the curve of a 2D polyline: for a spline-fit one
// the generated vertices, never the frame.
std::vector<host::Vertex2d> curveVertices(const host::Polyline2d& pl) {
  std::vector<host::Vertex2d> out;
  for (const auto& v : pl.vertices)
    if (!(pl.splineFit && (v.flags & host::kVertexSplineFrame))) out.push_back(v);
  return out;
}

std::optional<Path> polyline2dPath(const host::Polyline2d& pl) {
  auto verts = curveVertices(pl);
  return bulgedPath(verts, pl.closed, pl.elevation, pl.normal,
                    [](const host::Vertex2d& v) { return ge::Point2d{v.position.x, v.position.y}; });
}

std::optional<Path> polyline3dPath(const host::Polyline3d& pl) {
  std::vector<ge::Point3d> pts;
  for (const auto& v : pl.vertices)
    if (!(pl.splineFit && (v.flags & host::kVertexSplineFrame))) pts.push_back(v.position);
  if (pts.empty()) return std::nullopt;
  Path path{{}, pl.closed, std::nullopt};
  size_t n = pts.size(), segments = pl.closed ? n : n - 1;
  for (size_t i = 0; i < segments; ++i)
    path.pieces.push_back({LinePiece{pts[i], pts[(i + 1) % n]}, double(i), double(i + 1)});
  if (path.pieces.empty()) path.pieces.push_back({LinePiece{pts[0], pts[0]}, 0.0, 0.0});
  return path;
}

std::optional<Path> splinePath(const host::Spline& s) {
  auto n = nurbsOf(s);
  if (!n) return std::nullopt;
  double a = n->startParam(), b = n->endParam();
  bool closed = s.isClosed() || nurbsPoint(*n, a).distanceTo(nurbsPoint(*n, b)) == 0;
  return Path{{Piece{std::move(*n), a, b}}, closed, std::nullopt};
}

}  // namespace

Piece bulgeSegment(const ge::Point2d& a, const ge::Point2d& b, double bulge, double z, const Frame& f, double p0,
                   double p1) {
  ge::Point3d wa = ocsToWorld(f, a.x, a.y, z), wb = ocsToWorld(f, b.x, b.y, z);
  double dx = b.x - a.x, dy = b.y - a.y;
  double chord = std::hypot(dx, dy);
  if (bulge == 0 || chord == 0) return {LinePiece{wa, wb}, p0, p1};
  // Centre lies on the chord's bisector, at signed distance chord(1-b²)/(4b)
  // to the left of the chord direction.
  double h = chord * (1 - bulge * bulge) / (4 * bulge);
  double cx = (a.x + b.x) / 2 - dy / chord * h, cy = (a.y + b.y) / 2 + dx / chord * h;
  double radius = chord * (1 + bulge * bulge) / (4 * std::abs(bulge));
  double start = std::atan2(a.y - cy, a.x - cx);
  double sweep = 4 * std::atan(bulge);
  return {ArcPiece{ocsToWorld(f, cx, cy, z), f.x, f.y, radius, start, sweep}, p0, p1};
}

std::optional<Nurbs> nurbsOf(const host::Spline& s) {
  if (!s.controlPoints.empty()) {
    Nurbs n{s.degree, s.knots, s.controlPoints, s.weights};
    if (!n.isValid()) return std::nullopt;
    return n;
  }
  const ge::Vector3d* st = s.startTangent ? &*s.startTangent : nullptr;
  const ge::Vector3d* et = s.endTangent ? &*s.endTangent : nullptr;
  return interpolateFitPoints(s.fitPoints, st, et);
}

std::optional<Path> pathOf(const host::EntityData& e) {
  using namespace host;
  if (auto* l = std::get_if<Line>(&e)) return linePath(*l);
  if (auto* c = std::get_if<Circle>(&e)) return circlePath(*c);
  if (auto* a = std::get_if<Arc>(&e)) return arcPath(*a);
  if (auto* el = std::get_if<Ellipse>(&e)) return ellipsePath(*el);
  if (auto* lw = std::get_if<LwPolyline>(&e)) return lwPath(*lw);
  if (auto* p2 = std::get_if<Polyline2d>(&e)) return polyline2dPath(*p2);
  if (auto* p3 = std::get_if<Polyline3d>(&e)) return polyline3dPath(*p3);
  if (auto* s = std::get_if<Spline>(&e)) return splinePath(*s);
  if (auto* h = std::get_if<Helix>(&e)) return splinePath(h->curve);
  return std::nullopt;
}

}  // namespace standalone::kernel
