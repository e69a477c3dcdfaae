#include "standalone/db/r12_downgrade.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "ge/nurbs.h"
#include "standalone/text/text_codes.h"

namespace standalone {

namespace {

// Points per full turn of an ellipse, and per knot span of a spline: enough
// that the chords stay within a small fraction of the curve's size.
constexpr int kPointsPerTurn = 72;
constexpr int kPointsPerSpan = 12;

// Points along a spline, kPointsPerSpan in every knot span; its fit points
// when it has no control points, its control polygon when its data cannot
// be evaluated.
std::vector<ge::Point3d> splinePoints(const host::Spline& s) {
  if (s.controlPoints.empty()) return s.fitPoints;  // only fit data: the points the curve passes through
  ge::Nurbs curve{s.degree, s.knots, s.controlPoints, s.weights};
  if (!curve.isValid()) return s.controlPoints;
  std::vector<double> breaks = ge::nurbsBreakpoints(curve);
  std::vector<ge::Point3d> out{ge::nurbsPoint(curve, breaks.front())};
  for (std::size_t k = 1; k < breaks.size(); ++k)
    for (int i = 1; i <= kPointsPerSpan; ++i)
      out.push_back(ge::nurbsPoint(curve, breaks[k - 1] + (breaks[k] - breaks[k - 1]) * i / kPointsPerSpan));
  return out;
}

// Counter-clockwise sweep from angle a to angle b, in (0, 2 pi]: equal
// angles are a full turn, as a hatch's circular edge from 0 to 360 is.
double ccwSweep(double a, double b) {
  constexpr double kTurn = 2 * std::numbers::pi;
  double s = std::fmod(b - a, kTurn);
  if (!(s > 1e-12)) s += kTurn;
  return std::isfinite(s) ? s : kTurn;  // angles beyond any turn count: the whole curve
}

std::vector<ge::Point3d> ellipsePoints(const host::Ellipse& e) {
  ge::Vector3d minor = e.normal.normalized().cross(e.majorAxis) * e.ratio;
  double sweep = ccwSweep(e.startParam, e.endParam);
  int count = std::max(8, static_cast<int>(std::ceil(kPointsPerTurn * sweep / (2 * std::numbers::pi))));
  std::vector<ge::Point3d> out;
  for (int i = 0; i <= count; ++i) {
    double t = e.startParam + sweep * i / count;
    out.push_back(e.center + e.majorAxis * std::cos(t) + minor * std::sin(t));
  }
  return out;
}

// Points that overflowed on the way (from coordinates near the limit of a
// double) cannot be written as DXF numbers; they are left out.
void dropUnwritable(std::vector<ge::Point3d>& pts) {
  std::erase_if(pts, [](const ge::Point3d& p) {
    return !std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z);
  });
}
void dropUnwritable(std::vector<host::LwVertex>& vs) {
  std::erase_if(vs, [](const host::LwVertex& v) {
    return !std::isfinite(v.x) || !std::isfinite(v.y) || !std::isfinite(v.bulge);
  });
}

// A flat polyline when every point lies at one height, else a 3D one.
host::EntityData polylineThrough(std::vector<ge::Point3d> pts, bool closed) {
  dropUnwritable(pts);
  if (closed && pts.size() > 1 && pts.front().distanceTo(pts.back()) < 1e-12) pts.pop_back();
  bool flat = std::all_of(pts.begin(), pts.end(), [&](const ge::Point3d& q) { return q.z == pts.front().z; });
  if (flat) {
    host::Polyline2d p;
    p.closed = closed;
    p.elevation = pts.empty() ? 0 : pts.front().z;
    for (const auto& q : pts) p.vertices.push_back({q, 0, 0, 0, 0, 0, 0});
    return p;
  }
  host::Polyline3d p;
  p.closed = closed;
  for (const auto& q : pts) p.vertices.push_back({q});
  return p;
}

// MTEXT content as one line of TEXT: its plain lines joined by spaces.
std::string singleLineText(const std::string& m) {
  std::string out;
  for (const std::string& line : plainMTextLines(m)) out += (out.empty() ? "" : " ") + line;
  return out;
}

// Signed sweep of a hatch arc or elliptic edge: negative when it runs clockwise.
double edgeSweep(double start, double end, bool ccw) { return ccw ? ccwSweep(start, end) : -ccwSweep(end, start); }

// Appends the vertices of one hatch edge, from its start up to (not
// including) its end, which is where the next edge starts.
void appendEdge(const host::HatchEdge& edge, std::vector<host::LwVertex>& out) {
  if (auto* l = std::get_if<host::HatchLineEdge>(&edge)) {
    out.push_back({l->start.x, l->start.y});
  } else if (auto* a = std::get_if<host::HatchArcEdge>(&edge)) {
    // A bulge cannot hold a full turn, so an arc is split in two halves.
    double sweep = edgeSweep(a->startAngle, a->endAngle, a->counterClockwise);
    for (int half = 0; half < 2; ++half) {
      double at = a->startAngle + sweep * half / 2;
      out.push_back({a->center.x + a->radius * std::cos(at), a->center.y + a->radius * std::sin(at),
                     std::tan(sweep / 8)});
    }
  } else if (auto* e = std::get_if<host::HatchEllipseEdge>(&edge)) {
    double sweep = edgeSweep(e->startAngle, e->endAngle, e->counterClockwise);
    int count = std::max(4, static_cast<int>(std::ceil(kPointsPerTurn * std::fabs(sweep) / (2 * std::numbers::pi))));
    for (int i = 0; i < count; ++i) {
      double t = e->startAngle + sweep * i / count;
      double c = std::cos(t), s = std::sin(t) * e->ratio;
      out.push_back({e->center.x + e->majorAxis.x * c - e->majorAxis.y * s,
                     e->center.y + e->majorAxis.y * c + e->majorAxis.x * s});
    }
  } else if (auto* sp = std::get_if<host::HatchSplineEdge>(&edge)) {
    host::Spline curve;
    curve.degree = sp->degree;
    curve.knots = sp->knots;
    curve.weights = sp->weights;
    for (const auto& p : sp->controlPoints) curve.controlPoints.push_back({p.x, p.y, 0});
    for (const auto& p : sp->fitPoints) curve.fitPoints.push_back({p.x, p.y, 0});
    auto pts = splinePoints(curve);
    for (std::size_t i = 0; i + 1 < pts.size(); ++i) out.push_back({pts[i].x, pts[i].y});
  }
}

// One closed polyline per boundary path, in the hatch's plane. The fill
// itself has no R12 form we could write without inventing geometry (old
// hatches were blocks of pattern lines), so the boundaries carry the shape
// and the layer; the drawing itself keeps the hatch.
std::vector<host::EntityData> hatchOutlines(const host::Hatch& h) {
  std::vector<host::EntityData> out;
  for (const auto& path : h.paths) {
    std::vector<host::LwVertex> vertices = path.polyline;
    if (!(path.flags & 2))
      for (const auto& edge : path.edges) appendEdge(edge, vertices);
    dropUnwritable(vertices);
    if (vertices.empty()) continue;
    host::Polyline2d p;
    p.closed = (path.flags & 2) ? path.polylineClosed : true;
    p.elevation = h.elevation;
    p.normal = h.normal;
    for (const auto& v : vertices) p.vertices.push_back({{v.x, v.y, h.elevation}, v.bulge, 0, 0, 0, 0, 0});
    out.push_back(std::move(p));
  }
  return out;
}

// The image's frame: its corners are the outer corners of its corner pixels.
host::EntityData imageFrame(const host::Image& im) {
  ge::Vector3d across = im.uVector * im.widthPixels, up = im.vVector * im.heightPixels;
  return polylineThrough({im.insertion, im.insertion + across, im.insertion + across + up, im.insertion + up}, true);
}

std::optional<host::EntityData> singleStandIn(const host::EntityData& data) {
  if (auto* e = std::get_if<host::Ellipse>(&data)) {
    bool full = std::fabs(e->endParam - e->startParam - 2 * std::numbers::pi) < 1e-9;
    return polylineThrough(ellipsePoints(*e), full);
  }
  if (auto* s = std::get_if<host::Spline>(&data)) return polylineThrough(splinePoints(*s), s->isClosed());
  if (auto* h = std::get_if<host::Helix>(&data)) return polylineThrough(splinePoints(h->curve), false);
  if (auto* m = std::get_if<host::MText>(&data)) {
    host::Text t;
    t.position = t.alignmentPoint = m->position;
    t.height = m->height;
    t.text = singleLineText(m->text);
    t.style = m->style;
    t.normal = m->normal;
    t.rotation = std::atan2(m->xDirection.y, m->xDirection.x);
    return t;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::vector<host::EntityData>> r12StandIns(const host::EntityData& data) {
  if (auto* h = std::get_if<host::Hatch>(&data)) return hatchOutlines(*h);
  if (auto* im = std::get_if<host::Image>(&data)) return std::vector<host::EntityData>{imageFrame(*im)};
  if (auto one = singleStandIn(data)) return std::vector<host::EntityData>{std::move(*one)};
  return std::nullopt;
}

}  // namespace standalone
