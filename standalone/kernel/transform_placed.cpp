#include "standalone/kernel/transform_placed.h"

#include <cmath>

#include "standalone/kernel/ocs.h"

namespace standalone::kernel {

namespace {

constexpr int kBackwardFlag = 2;

// Angle of a direction in the OCS of a normal.
double angleIn(const ge::Vector3d& normal, const ge::Vector3d& dir) {
  Frame f = ocsFrame(normal);
  return std::atan2(dir.dot(f.y), dir.dot(f.x));
}

// Direction at an angle in the OCS of a normal.
ge::Vector3d directionAt(const ge::Vector3d& normal, double angle) {
  Frame f = ocsFrame(normal);
  return f.x * std::cos(angle) + f.y * std::sin(angle);
}

// The mapped frame of a planar placement: new normal, the mapped direction of
// its X axis, whether the map reverses the plane's orientation, and the scale.
struct MappedAxes {
  ge::Vector3d normal;
  ge::Vector3d x;
  bool reversed = false;
  double scale = 1;
};

std::optional<MappedAxes> mapAxes(const ge::Vector3d& normal, const ge::Vector3d& xDir, const ge::Matrix3d& m) {
  double s = m.uniformScale();
  if (s == 0) return std::nullopt;
  ge::Vector3d n = normal.normalized();
  ge::Vector3d y = n.cross(xDir);
  ge::Vector3d mx = m.apply(xDir) / s, my = m.apply(y) / s, mn = (m.apply(n) / s).normalized();
  return MappedAxes{mn, mx.normalized(), mx.cross(my).dot(mn) < 0, s};
}

struct Placer {
  const ge::Matrix3d& m;

  bool operator()(host::Text& t) const {
    auto a = mapAxes(t.normal, textDirection(t), m);
    if (!a) return false;
    t.position = m.apply(t.position);
    t.alignmentPoint = m.apply(t.alignmentPoint);
    t.height *= a->scale;
    t.thickness *= a->scale;
    t.normal = a->normal;
    // Reversed: the glyphs read the other way along the mapped baseline.
    t.rotation = angleIn(a->normal, a->reversed ? -a->x : a->x);
    if (a->reversed) t.mirrorFlags ^= kBackwardFlag;
    return true;
  }
  bool operator()(host::MText& t) const {
    auto a = mapAxes(t.normal, t.xDirection.normalized(), m);
    if (!a) return false;
    t.position = m.apply(t.position);
    t.height *= a->scale;
    t.referenceWidth *= a->scale;
    t.xDirection = a->x;
    t.normal = a->reversed ? -a->normal : a->normal;
    return true;
  }
  bool operator()(host::BlockReference& r) const {
    ge::Vector3d normal = r.normal.length() > 0 ? r.normal : ge::kZAxis;
    auto a = mapAxes(normal, directionAt(normal, r.rotation), m);
    if (!a) return false;
    r.position = m.apply(r.position);
    r.normal = a->normal;
    r.rotation = angleIn(a->normal, a->reversed ? -a->x : a->x);
    r.scale = r.scale * a->scale;
    if (a->reversed) r.scale.x = -r.scale.x;
    r.columnSpacing *= a->scale;
    r.rowSpacing *= a->scale;
    return true;
  }
  // A solid hatch keeps its plane: only maps that carry its plane onto a
  // parallel one with the same normal (moves, turns about it, scales, mirrors
  // across lines in it) are followed; its edges are mapped in object
  // coordinates. Pattern hatches are refused: their pattern lines and seed
  // points are kept as read and would not follow.
  bool operator()(host::Hatch& h) const {
    if (!h.solidFill) return false;
    double s = m.uniformScale();
    Frame f = ocsFrame(h.normal.length() > 0 ? h.normal : ge::kZAxis);
    if (s == 0 || (m.apply(f.z) / s - f.z).length() > 1e-12) return false;
    auto point = [&](double x, double y) { return worldToOcs(f, m.apply(ocsToWorld(f, x, y, h.elevation))); };
    ge::Point3d origin = point(0, 0);
    auto vector = [&](double x, double y) {
      ge::Point3d p = point(x, y);
      return ge::Point2d{p.x - origin.x, p.y - origin.y};
    };
    auto map2 = [&](ge::Point2d p) {
      ge::Point3d q = point(p.x, p.y);
      return ge::Point2d{q.x, q.y};
    };
    ge::Point2d ex = vector(1, 0), ey = vector(0, 1);
    bool mirrored = ex.x * ey.y - ex.y * ey.x < 0;
    auto angleOf = [&](double a) {
      ge::Point2d d = vector(std::cos(a), std::sin(a));
      return std::atan2(d.y, d.x);
    };
    for (host::HatchPath& path : h.paths) {
      for (host::LwVertex& v : path.polyline) {
        ge::Point2d p = map2({v.x, v.y});
        v.x = p.x, v.y = p.y;
        if (mirrored) v.bulge = -v.bulge;
      }
      for (host::HatchEdge& edge : path.edges) {
        if (auto* l = std::get_if<host::HatchLineEdge>(&edge)) {
          l->start = map2(l->start), l->end = map2(l->end);
        } else if (auto* a = std::get_if<host::HatchArcEdge>(&edge)) {
          // The edge still runs from its mapped start to its mapped end; a mirror reverses its turn.
          a->center = map2(a->center);
          a->radius *= s;
          a->startAngle = angleOf(a->startAngle), a->endAngle = angleOf(a->endAngle);
          if (mirrored) a->counterClockwise = !a->counterClockwise;
        } else if (auto* e = std::get_if<host::HatchEllipseEdge>(&edge)) {
          // Parameters stay under turns and scales; a mirror runs them backwards.
          e->center = map2(e->center);
          e->majorAxis = vector(e->majorAxis.x, e->majorAxis.y);
          if (mirrored) {
            e->startAngle = -e->startAngle, e->endAngle = -e->endAngle;
            e->counterClockwise = !e->counterClockwise;
          }
        } else if (auto* sp = std::get_if<host::HatchSplineEdge>(&edge)) {
          for (auto& p : sp->controlPoints) p = map2(p);
          for (auto& p : sp->fitPoints) p = map2(p);
          if (sp->startTangent) sp->startTangent = vector(sp->startTangent->x, sp->startTangent->y);
          if (sp->endTangent) sp->endTangent = vector(sp->endTangent->x, sp->endTangent->y);
        }
      }
    }
    h.elevation = origin.z;
    return true;
  }
  bool operator()(host::Image& im) const {
    im.insertion = m.apply(im.insertion);
    im.uVector = m.apply(im.uVector);
    im.vVector = m.apply(im.vVector);
    return true;
  }
  template <class T>
  bool operator()(T&) const {
    return false;
  }
};

}  // namespace

bool isFinite(const ge::Matrix3d& m) {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (!std::isfinite(m(r, c))) return false;
  return true;
}

ge::Vector3d textDirection(const host::Text& t) {
  return directionAt(t.normal.length() > 0 ? t.normal : ge::kZAxis, t.rotation);
}

bool transformPlaced(host::EntityData& e, const ge::Matrix3d& m) {
  host::EntityData copy = e;
  if (!std::visit(Placer{m}, copy)) return false;
  e = std::move(copy);
  return true;
}

}  // namespace standalone::kernel
