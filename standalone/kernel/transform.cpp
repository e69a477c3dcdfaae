// transformBy and reverseCurve for every curve kind. Planar kinds keep their
// orientation by taking the new normal as X' × Y' of the mapped OCS axes, so a
// mirror gives the flipped normal the host gives (a mirrored arc runs
// clockwise in world terms and keeps its sweep).
#include <algorithm>
#include <cmath>
#include <numbers>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/ocs.h"
#include "standalone/kernel/transform_placed.h"

namespace standalone {

using host::ErrorStatus;
using namespace kernel;

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

double normalizeAngle(double a) {
  a = std::fmod(a, kTwoPi);
  return a < 0 ? a + kTwoPi : a;
}

// The planar frame after the transform: new normal, new OCS, and the angle in
// the new OCS of the direction that had angle 0 in the old one.
struct MappedPlane {
  ge::Vector3d normal;
  Frame ocs;
  double angleShift = 0;
  double scale = 1;
};

std::optional<MappedPlane> mapPlane(const ge::Vector3d& normal, const ge::Matrix3d& m) {
  double s = m.uniformScale();
  if (s == 0) return std::nullopt;  // arcs would turn into ellipses: only similarities keep them
  Frame f = ocsFrame(normal);
  ge::Vector3d x = m.apply(f.x) / s, y = m.apply(f.y) / s;
  ge::Vector3d n = x.cross(y).normalized();
  Frame nf = ocsFrame(n);
  return MappedPlane{n, nf, std::atan2(x.dot(nf.y), x.dot(nf.x)), s};
}

template <typename V>
bool transformOcsVertices(std::vector<V>& verts, double& elevation, ge::Vector3d& normal, const ge::Matrix3d& m,
                          auto get, auto set) {
  auto mp = mapPlane(normal, m);
  if (!mp) return false;
  Frame f = ocsFrame(normal);
  double newElevation = elevation;
  bool first = true;
  for (auto& v : verts) {
    ge::Point2d p = get(v);
    ge::Point3d w = m.apply(ocsToWorld(f, p.x, p.y, elevation));
    ge::Point3d o = worldToOcs(mp->ocs, w);
    if (first) newElevation = o.z, first = false;
    set(v, o, mp->scale);
  }
  if (verts.empty()) newElevation = worldToOcs(mp->ocs, m.apply(ocsToWorld(f, 0, 0, elevation))).z;
  elevation = newElevation;
  normal = mp->normal;
  return true;
}

struct Transformer {
  const ge::Matrix3d& m;

  bool operator()(host::Line& l) const {
    l.start = m.apply(l.start);
    l.end = m.apply(l.end);
    l.normal = m.apply(l.normal).normalized();
    return true;
  }
  bool operator()(host::Circle& c) const {
    auto mp = mapPlane(c.normal, m);
    if (!mp) return false;
    c.center = m.apply(c.center);
    c.radius *= mp->scale;
    c.normal = mp->normal;
    return true;
  }
  bool operator()(host::Arc& a) const {
    auto mp = mapPlane(a.normal, m);
    if (!mp) return false;
    double sweep = normalizeAngle(a.endAngle - a.startAngle);
    if (sweep == 0) sweep = kTwoPi;
    a.center = m.apply(a.center);
    a.radius *= mp->scale;
    a.normal = mp->normal;
    a.startAngle = normalizeAngle(a.startAngle + mp->angleShift);
    a.endAngle = normalizeAngle(a.startAngle + sweep);
    return true;
  }
  bool operator()(host::Ellipse& e) const {
    ge::Vector3d minor = e.normal.normalized().cross(e.majorAxis) * e.ratio;
    ge::Vector3d nm = m.apply(e.majorAxis), nn = m.apply(minor);
    // Only similarities keep the axes perpendicular.
    if (m.uniformScale() == 0) return false;
    e.center = m.apply(e.center);
    e.majorAxis = nm;
    e.normal = nm.cross(nn).normalized();
    return true;
  }
  bool operator()(host::LwPolyline& pl) const {
    // Widths scale with the drawing.
    return transformOcsVertices(
        pl.vertices, pl.elevation, pl.normal, m, [](const host::LwVertex& v) { return ge::Point2d{v.x, v.y}; },
        [](host::LwVertex& v, const ge::Point3d& o, double s) {
          v.x = o.x, v.y = o.y, v.startWidth *= s, v.endWidth *= s;
        }) && (pl.constantWidth *= m.uniformScale(), true);
  }
  bool operator()(host::Polyline2d& pl) const {
    double s = m.uniformScale();
    bool ok = transformOcsVertices(
        pl.vertices, pl.elevation, pl.normal, m,
        [](const host::Vertex2d& v) { return ge::Point2d{v.position.x, v.position.y}; },
        [](host::Vertex2d& v, const ge::Point3d& o, double sc) {
          v.position = o, v.startWidth *= sc, v.endWidth *= sc;
        });
    if (ok) {
      for (auto& v : pl.vertices) v.position.z = pl.elevation;
      pl.defaultStartWidth *= s, pl.defaultEndWidth *= s;
    }
    return ok;
  }
  bool operator()(host::Polyline3d& pl) const {
    for (auto& v : pl.vertices) v.position = m.apply(v.position);
    return true;
  }
  bool operator()(host::Spline& s) const {
    for (auto& p : s.controlPoints) p = m.apply(p);
    for (auto& p : s.fitPoints) p = m.apply(p);
    if (s.startTangent) s.startTangent = m.apply(*s.startTangent).normalized();
    if (s.endTangent) s.endTangent = m.apply(*s.endTangent).normalized();
    ge::Vector3d n = m.apply(s.normal);
    if (m.determinant3() < 0) n = -n;
    s.normal = n.normalized();
    // Fit points define the curve again only under a similarity; otherwise
    // keep the mapped control points as the curve.
    if (m.uniformScale() == 0 && !s.controlPoints.empty()) s.fitPoints.clear();
    return true;
  }
  bool operator()(host::Helix& h) const {
    if (!(*this)(h.curve)) return false;
    h.axisBase = m.apply(h.axisBase);
    h.startPoint = m.apply(h.startPoint);
    h.axisVector = m.apply(h.axisVector);
    double s = m.uniformScale();
    if (s > 0) h.topRadius *= s, h.turnHeight *= s;
    if (m.determinant3() < 0) h.counterClockwise = !h.counterClockwise;
    return true;
  }
  bool operator()(host::PointEntity& p) const {
    p.position = m.apply(p.position);
    p.normal = m.apply(p.normal).normalized();
    return true;
  }
  template <typename T>
  bool operator()(T&) const {
    return false;
  }
};

struct Reverser {
  bool operator()(host::Line& l) const {
    std::swap(l.start, l.end);
    return true;
  }
  bool operator()(host::Circle& c) const {
    c.normal = -c.normal;
    return true;
  }
  bool operator()(host::Arc& a) const {
    // Same points run the other way: the normal flips and the angles are
    // re-measured in the new OCS, where the old end comes first.
    Frame oldF = ocsFrame(a.normal), newF = ocsFrame(-a.normal);
    auto remap = [&](double ang) {
      ge::Vector3d d = oldF.x * std::cos(ang) + oldF.y * std::sin(ang);
      return normalizeAngle(std::atan2(d.dot(newF.y), d.dot(newF.x)));
    };
    double s = remap(a.endAngle), e = remap(a.startAngle);
    a.normal = -a.normal;
    a.startAngle = s;
    a.endAngle = e;
    return true;
  }
  bool operator()(host::Ellipse& e) const {
    // With the normal flipped the minor axis flips, so the point at t becomes the old point at -t.
    double sweep = normalizeAngle(e.endParam - e.startParam);
    bool full = sweep < 1e-12 || std::abs(sweep - kTwoPi) < 1e-12;
    e.normal = -e.normal;
    e.startParam = normalizeAngle(-e.endParam);
    e.endParam = full ? e.startParam + kTwoPi : normalizeAngle(e.startParam + sweep);
    return true;
  }
  template <typename V>
  static void reverseBulged(std::vector<V>& v, bool closed, auto swapWidths) {
    size_t n = v.size();
    if (n < 2) return;
    // Open: the vertex order reverses. Closed: the first vertex stays first and
    // the rest reverse. Either way each segment keeps its vertices and runs the
    // other way: its bulge changes sign and its widths swap.
    std::vector<V> out(n);
    for (size_t j = 0; j < n; ++j) out[j] = closed ? v[(n - j) % n] : v[n - 1 - j];
    size_t segs = closed ? n : n - 1;
    for (size_t j = 0; j < n; ++j) {
      if (j >= segs) {
        out[j].bulge = 0;
        continue;
      }
      size_t old = closed ? (2 * n - 1 - j) % n : n - 2 - j;
      out[j].bulge = -v[old].bulge;
      swapWidths(out[j], v[old]);
    }
    v = std::move(out);
  }
  bool operator()(host::LwPolyline& pl) const {
    reverseBulged(pl.vertices, pl.closed, [](host::LwVertex& to, const host::LwVertex& from) {
      to.startWidth = from.endWidth, to.endWidth = from.startWidth;
    });
    return true;
  }
  bool operator()(host::Polyline2d& pl) const {
    if (pl.splineFit || pl.curveFit) {
      std::reverse(pl.vertices.begin(), pl.vertices.end());
      for (auto& v : pl.vertices) v.bulge = -v.bulge;
      return true;
    }
    reverseBulged(pl.vertices, pl.closed, [](host::Vertex2d& to, const host::Vertex2d& from) {
      to.startWidth = from.endWidth, to.endWidth = from.startWidth;
    });
    return true;
  }
  bool operator()(host::Polyline3d& pl) const {
    std::reverse(pl.vertices.begin(), pl.vertices.end());
    return true;
  }
  bool operator()(host::Spline& s) const {
    std::reverse(s.controlPoints.begin(), s.controlPoints.end());
    std::reverse(s.weights.begin(), s.weights.end());
    std::reverse(s.fitPoints.begin(), s.fitPoints.end());
    if (!s.knots.empty()) {
      double sum = s.knots.front() + s.knots.back();
      std::reverse(s.knots.begin(), s.knots.end());
      for (auto& k : s.knots) k = sum - k;
    }
    auto st = s.startTangent, et = s.endTangent;
    s.startTangent = et ? std::optional(-*et) : std::nullopt;
    s.endTangent = st ? std::optional(-*st) : std::nullopt;
    return true;
  }
  bool operator()(host::Helix& h) const {
    (*this)(h.curve);
    h.counterClockwise = !h.counterClockwise;
    return true;
  }
  template <typename T>
  bool operator()(T&) const {
    return false;
  }
};

}  // namespace

ErrorStatus CurveKernel::transformBy(EntityData& e, const ge::Matrix3d& m) const {
  if (!isFinite(m)) return ErrorStatus::eInvalidInput;
  EntityData copy = e;
  if (!std::visit(Transformer{m}, copy) && !transformPlaced(copy, m)) return ErrorStatus::eInvalidInput;
  e = std::move(copy);
  return ErrorStatus::eOk;
}

ErrorStatus CurveKernel::reverseCurve(EntityData& c) const {
  return std::visit(Reverser{}, c) ? ErrorStatus::eOk : ErrorStatus::eNotApplicable;
}

}  // namespace standalone
