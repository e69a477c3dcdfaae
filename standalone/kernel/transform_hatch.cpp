#include "standalone/kernel/transform_hatch.h"

#include <cmath>
#include <numbers>

#include "standalone/kernel/ocs.h"

namespace standalone::kernel {

namespace {

// The map restricted to the hatch's plane, in its object coordinates.
struct PlaneMap {
  Frame f;
  double elevation;
  const ge::Matrix3d& m;
  ge::Point3d origin;

  PlaneMap(const host::Hatch& h, const ge::Matrix3d& map)
      : f(ocsFrame(h.normal.length() > 0 ? h.normal : ge::kZAxis)), elevation(h.elevation), m(map),
        origin(worldToOcs(f, m.apply(ocsToWorld(f, 0, 0, h.elevation)))) {}

  ge::Point2d point(ge::Point2d p) const {
    ge::Point3d q = worldToOcs(f, m.apply(ocsToWorld(f, p.x, p.y, elevation)));
    return {q.x, q.y};
  }
  ge::Point2d vector(ge::Point2d v) const {
    ge::Point2d q = point(v);
    return {q.x - origin.x, q.y - origin.y};
  }
  double angle(double a) const {
    ge::Point2d d = vector({std::cos(a), std::sin(a)});
    return std::atan2(d.y, d.x);
  }
  bool mirrored() const {
    ge::Point2d ex = vector({1, 0}), ey = vector({0, 1});
    return ex.x * ey.y - ex.y * ey.x < 0;
  }
};

void transformEdges(host::HatchPath& path, const PlaneMap& pm, double s, bool mirrored) {
  for (host::LwVertex& v : path.polyline) {
    ge::Point2d p = pm.point({v.x, v.y});
    v.x = p.x, v.y = p.y;
    if (mirrored) v.bulge = -v.bulge;
  }
  for (host::HatchEdge& edge : path.edges) {
    if (auto* l = std::get_if<host::HatchLineEdge>(&edge)) {
      l->start = pm.point(l->start), l->end = pm.point(l->end);
    } else if (auto* a = std::get_if<host::HatchArcEdge>(&edge)) {
      // The edge still runs from its mapped start to its mapped end; a mirror reverses its turn.
      a->center = pm.point(a->center);
      a->radius *= s;
      a->startAngle = pm.angle(a->startAngle), a->endAngle = pm.angle(a->endAngle);
      if (mirrored) a->counterClockwise = !a->counterClockwise;
    } else if (auto* e = std::get_if<host::HatchEllipseEdge>(&edge)) {
      // Parameters stay under turns and scales; a mirror runs them backwards.
      e->center = pm.point(e->center);
      e->majorAxis = pm.vector(e->majorAxis);
      if (mirrored) {
        e->startAngle = -e->startAngle, e->endAngle = -e->endAngle;
        e->counterClockwise = !e->counterClockwise;
      }
    } else if (auto* sp = std::get_if<host::HatchSplineEdge>(&edge)) {
      for (auto& p : sp->controlPoints) p = pm.point(p);
      for (auto& p : sp->fitPoints) p = pm.point(p);
      if (sp->startTangent) sp->startTangent = pm.vector(*sp->startTangent);
      if (sp->endTangent) sp->endTangent = pm.vector(*sp->endTangent);
    }
  }
}

// Angles are kept in [0, 2pi) as the pattern's own angle is.
double normalized(double a) {
  a = std::fmod(a, 2 * std::numbers::pi);
  return a < 0 ? a + 2 * std::numbers::pi : a;
}

}  // namespace

bool transformHatch(host::Hatch& h, const ge::Matrix3d& m, MirroredPattern mirroredPattern) {
  double s = m.uniformScale();
  PlaneMap pm(h, m);
  if (s == 0 || !std::isfinite(s) || (m.apply(pm.f.z) / s - pm.f.z).length() > 1e-12) return false;
  bool mirrored = pm.mirrored();
  for (host::HatchPath& path : h.paths) transformEdges(path, pm, s, mirrored);
  for (ge::Point2d& seed : h.seeds) seed = pm.point(seed);
  if (mirrored && mirroredPattern == MirroredPattern::kKeep) {
    // Carried along with the pattern's origin: same angles, scaled about it.
    for (host::HatchPatternLine& line : h.patternLines) {
      line.base = {pm.origin.x + line.base.x * s, pm.origin.y + line.base.y * s};
      line.offset = {line.offset.x * s, line.offset.y * s};
      for (double& d : line.dashes) d *= s;
    }
  } else {
    for (host::HatchPatternLine& line : h.patternLines) {
      line.angle = normalized(pm.angle(line.angle));
      line.base = pm.point(line.base);
      line.offset = pm.vector(line.offset);
      for (double& d : line.dashes) d *= s;
    }
    h.patternAngle = normalized(pm.angle(h.patternAngle));
  }
  h.patternScale *= s;
  h.elevation = pm.origin.z;
  return true;
}

}  // namespace standalone::kernel
