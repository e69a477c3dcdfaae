#include "standalone/kernel/transform_placed.h"

#include <cmath>

#include "standalone/kernel/ocs.h"
#include "standalone/kernel/transform_hatch.h"

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
  bool operator()(host::Hatch& h) const { return transformHatch(h, m); }
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
