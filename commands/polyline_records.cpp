#include "commands/polyline_records.h"

namespace commands {

ge::PointList ownVertexPositions(const host::EntityData& data) {
  ge::PointList pts;
  if (auto* lw = std::get_if<host::LwPolyline>(&data)) {
    pts.reserve(lw->vertices.size());
    for (const auto& v : lw->vertices) pts.push_back({v.x, v.y, lw->elevation});
  } else if (auto* p2 = std::get_if<host::Polyline2d>(&data)) {
    for (const auto& v : p2->vertices) pts.push_back(v.position);
  } else if (auto* p3 = std::get_if<host::Polyline3d>(&data)) {
    for (const auto& v : p3->vertices) pts.push_back(v.position);
  }
  return pts;
}

ge::PointList drawnVertexPositions(const host::EntityData& data) {
  auto drawn = [](const auto& v) { return !(v.flags & host::kVertexSplineFrame); };
  ge::PointList pts;
  if (auto* p2 = std::get_if<host::Polyline2d>(&data); p2 && p2->splineFit) {
    for (const auto& v : p2->vertices)
      if (drawn(v)) pts.push_back(v.position);
    return pts;
  }
  if (auto* p3 = std::get_if<host::Polyline3d>(&data); p3 && p3->splineFit) {
    for (const auto& v : p3->vertices)
      if (drawn(v)) pts.push_back(v.position);
    return pts;
  }
  return ownVertexPositions(data);
}

bool isClosedPolyline(const host::EntityData& data) {
  if (auto* lw = std::get_if<host::LwPolyline>(&data)) return lw->closed;
  if (auto* p2 = std::get_if<host::Polyline2d>(&data)) return p2->closed;
  if (auto* p3 = std::get_if<host::Polyline3d>(&data)) return p3->closed;
  return false;
}

double constantWidthOf(const host::EntityData& data) {
  if (auto* lw = std::get_if<host::LwPolyline>(&data)) return lw->constantWidth;
  if (auto* p2 = std::get_if<host::Polyline2d>(&data)) return p2->defaultStartWidth;
  return 0;
}

host::EntityProps propsLike(const host::Drawing& drawing, const host::EntityProps& source) {
  host::EntityProps props = drawing.defaultProps();
  props.layer = source.layer;
  props.color = source.color;
  return props;
}

host::LwPolyline lwPolylineThrough(const ge::PointList& points, bool closed, double constantWidth,
                                   const ge::Vector3d& normal) {
  host::LwPolyline lw;
  lw.vertices.reserve(points.size());
  for (const auto& p : points) lw.vertices.push_back({p.x, p.y});
  lw.closed = closed;
  lw.constantWidth = constantWidth;
  lw.elevation = points.empty() ? 0.0 : points.front().z;
  lw.normal = normal;
  return lw;
}

ge::Vector3d polylineNormal(const host::EntityData& data) {
  if (auto* lw = std::get_if<host::LwPolyline>(&data)) return lw->normal;
  if (auto* p2 = std::get_if<host::Polyline2d>(&data)) return p2->normal;
  return ge::kZAxis;
}

}  // namespace commands
