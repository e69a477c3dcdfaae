#include "image/hole_shapes.h"

#include <algorithm>

#include "ge/matrix.h"

namespace image {

namespace {

host::LwPolyline closedThrough(std::initializer_list<ge::Point2d> corners, double z) {
  host::LwPolyline pl;
  for (const ge::Point2d& c : corners) pl.vertices.push_back({c.x, c.y});
  pl.closed = true;
  pl.elevation = z;
  return pl;
}

}  // namespace

std::optional<host::EntityData> holeEntity(HoleShape shape, const ge::Point3d& p, double extent) {
  double h = extent / 2;
  switch (shape) {
    case HoleShape::kCircle: return host::Circle{p, h};
    case HoleShape::kSquare:
      return closedThrough({{p.x - h, p.y - h}, {p.x + h, p.y - h}, {p.x + h, p.y + h}, {p.x - h, p.y + h}}, p.z);
    case HoleShape::kDiamond:
      return closedThrough({{p.x, p.y - h}, {p.x + h, p.y}, {p.x, p.y + h}, {p.x - h, p.y}}, p.z);
    case HoleShape::kCopy: break;
  }
  return std::nullopt;
}

std::optional<ge::Matrix3d> copyTransform(const ge::Extents3d& extents, const ge::Point3d& p, double extent) {
  if (!extents.isValid()) return std::nullopt;
  double side = std::max(extents.max.x - extents.min.x, extents.max.y - extents.min.y);
  if (!(side > 0)) return std::nullopt;
  ge::Point3d centre{(extents.min.x + extents.max.x) / 2, (extents.min.y + extents.max.y) / 2,
                     (extents.min.z + extents.max.z) / 2};
  return ge::Matrix3d::translation(p - centre) * ge::Matrix3d::scaling(extent / side, centre);
}

}  // namespace image
