#include "standalone/db/r12_downgrade.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace standalone {

namespace {

// Points per full turn of an ellipse, and per knot span of a spline: enough
// that the chords stay within a small fraction of the curve's size.
constexpr int kPointsPerTurn = 72;
constexpr int kPointsPerSpan = 12;

struct Homogeneous {
  double x = 0, y = 0, z = 0, w = 1;
};

// De Boor's algorithm on the homogeneous control points (rational splines).
ge::Point3d splinePoint(const host::Spline& s, double u) {
  const int p = s.degree;
  const int n = static_cast<int>(s.controlPoints.size());
  int k = p;
  while (k < n - 1 && s.knots[static_cast<std::size_t>(k + 1)] <= u) ++k;
  std::vector<Homogeneous> d(static_cast<std::size_t>(p + 1));
  for (int j = 0; j <= p; ++j) {
    const auto& c = s.controlPoints[static_cast<std::size_t>(j + k - p)];
    double w = s.weights.size() == s.controlPoints.size() ? s.weights[static_cast<std::size_t>(j + k - p)] : 1.0;
    d[static_cast<std::size_t>(j)] = {c.x * w, c.y * w, c.z * w, w};
  }
  for (int r = 1; r <= p; ++r) {
    for (int j = p; j >= r; --j) {
      double lo = s.knots[static_cast<std::size_t>(j + k - p)];
      double hi = s.knots[static_cast<std::size_t>(j + 1 + k - r)];
      double a = hi > lo ? (u - lo) / (hi - lo) : 0.0;
      auto& dj = d[static_cast<std::size_t>(j)];
      const auto& dm = d[static_cast<std::size_t>(j - 1)];
      dj = {(1 - a) * dm.x + a * dj.x, (1 - a) * dm.y + a * dj.y, (1 - a) * dm.z + a * dj.z, (1 - a) * dm.w + a * dj.w};
    }
  }
  const auto& h = d[static_cast<std::size_t>(p)];
  return {h.x / h.w, h.y / h.w, h.z / h.w};
}

std::vector<ge::Point3d> splinePoints(const host::Spline& s) {
  const std::size_t n = s.controlPoints.size();
  const std::size_t p = static_cast<std::size_t>(std::max(1, s.degree));
  if (n == 0) return s.fitPoints;  // only fit data: the points the curve passes through
  if (n <= p || s.knots.size() != n + p + 1) return s.controlPoints;
  double u0 = s.knots[p], u1 = s.knots[n];
  int count = static_cast<int>(n - p) * kPointsPerSpan;
  std::vector<ge::Point3d> out;
  for (int i = 0; i <= count; ++i) out.push_back(splinePoint(s, u0 + (u1 - u0) * i / count));
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

// Plain text of MTEXT content: paragraph breaks become spaces, formatting
// codes and braces are dropped.
std::string plainText(const std::string& m) {
  std::string out;
  for (std::size_t i = 0; i < m.size(); ++i) {
    char c = m[i];
    if (c == '{' || c == '}') continue;
    if (c != '\\' || i + 1 >= m.size()) {
      out += c;
      continue;
    }
    char code = m[++i];
    if (code == 'P' || code == '~') {
      out += ' ';
    } else if (code == '\\' || code == '{' || code == '}') {
      out += code;
    } else if (std::string_view("fFHQTWACpcS").find(code) != std::string_view::npos) {
      std::size_t end = m.find(';', i);
      i = end == std::string::npos ? m.size() : end;
    } else if (code == 'U' || code == 'u') {
      out += '\\';
      out += code;
    }
  }
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
    t.text = plainText(m->text);
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
