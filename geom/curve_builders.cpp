#include "geom/curve_builders.h"

#include <cmath>

#include "ge/tolerance.h"
#include "geom/append.h"
#include "geom/curve_kind.h"

namespace geom {

namespace {

// Two angles with +X closer than this (radians) give the same direction.
constexpr double kCollinearAngle = 0.001;
// Consecutive points whose z differ by no more than this keep a lightweight polyline.
constexpr double kFlatZ = 0.0001;

// The unsigned-angle test: every direction from the first point makes the
// same angle with +X as the first one does. The angle is unsigned on purpose,
// so points mirrored about the X axis through the first point pass.
bool collinearByAngle(const ge::PointList& pts) {
  double a0 = (pts[1] - pts[0]).angleTo(ge::kXAxis);
  for (size_t i = 2; i < pts.size(); ++i)
    if (std::abs((pts[i] - pts[0]).angleTo(ge::kXAxis) - a0) > kCollinearAngle) return false;
  return true;
}

host::Entity newEntity(const host::Drawing& drawing, host::EntityData data) {
  host::Entity e;
  e.props = drawing.defaultProps();
  e.data = std::move(data);
  return e;
}

bool appendLine(BuildContext ctx, host::Drawing* target, const ge::Point3d& a, const ge::Point3d& b,
                const host::Color& color) {
  host::Drawing& d = target ? *target : ctx.drawing;
  host::Entity e = newEntity(d, host::Line{a, b});
  e.props.color = color;
  return appendToDatabase(ctx.drawing, target, e) == host::ErrorStatus::eOk;
}

bool isFlat(const ge::PointList& pts) {
  for (size_t i = 1; i < pts.size(); ++i)
    if (std::abs(pts[i].z - pts[i - 1].z) > kFlatZ) return false;
  return true;
}

host::EntityData polylineData(const ge::PointList& pts, bool closed) {
  if (isFlat(pts)) {
    host::LwPolyline pl;
    for (const auto& p : pts) pl.vertices.push_back({p.x, p.y});
    pl.elevation = pts[0].z;
    pl.closed = closed;
    return pl;
  }
  host::Polyline3d pl;
  for (const auto& p : pts) pl.vertices.push_back({p});
  pl.closed = closed;
  return pl;
}

}  // namespace

host::Color resolveColor(int colorNumber, const host::Drawing& drawing) {
  host::Color c;
  if (colorNumber == 0 || colorNumber == 256) {
    c.index = host::Color::kByLayer;
    return c;
  }
  if (colorNumber >= 1 && colorNumber <= 255) {
    c.index = colorNumber;
    return c;
  }
  return drawing.currentColor();
}

bool makeCurveByPoints(BuildContext ctx, host::Drawing* target, const ge::PointList& points, int colorNumber,
                       bool closed, const ge::Vector3d& startTangent, const ge::Vector3d& endTangent) {
  host::Color color = resolveColor(colorNumber, target ? *target : ctx.drawing);
  if (points.size() < 2) return false;
  if (points.size() == 2 || collinearByAngle(points)) return appendLine(ctx, target, points.front(), points.back(), color);
  // The polyline branch takes the working drawing's defaults, as the builder always has.
  if (!curveKindIsSpline()) return buildPolyline(ctx, host::kNullId, points, closed);
  return buildFitSpline(ctx, target, points, color, closed, startTangent, endTangent);
}

std::optional<host::EntityData> curveShapeByPoints(const host::CurveServices& curves, const ge::PointList& points,
                                                   bool closed) {
  if (points.size() < 2) return std::nullopt;
  if (points.size() == 2 || collinearByAngle(points)) return host::Line{points.front(), points.back()};
  if (!curveKindIsSpline()) return polylineData(points, closed);
  if (closed) {
    host::Polyline3d pl;
    for (const auto& p : points) pl.vertices.push_back({p});
    pl.closed = true;
    return pl;
  }
  host::Spline s;
  if (curves.fitSpline(points, nullptr, nullptr, s) != host::ErrorStatus::eOk) return std::nullopt;
  return s;
}

bool buildPolyline(BuildContext ctx, host::ObjectId source, const ge::PointList& points, bool closed) {
  if (points.size() < 2) return false;
  host::Entity e = newEntity(ctx.drawing, polylineData(points, closed));
  host::ErrorStatus es = source.isNull() ? appendToCurrentSpace(ctx.drawing, e)
                                         : appendBesideSource(ctx.drawing, source, e);
  return es == host::ErrorStatus::eOk;
}

bool buildFitSpline(BuildContext ctx, host::Drawing* target, const ge::PointList& points, const host::Color& color,
                    bool closed, const ge::Vector3d& startTangent, const ge::Vector3d& endTangent) {
  if (points.size() < 2) return false;
  host::Drawing& d = target ? *target : ctx.drawing;
  host::Entity e;
  if (closed) {
    host::Polyline3d pl;
    for (const auto& p : points) pl.vertices.push_back({p});
    pl.closed = true;
    e = newEntity(d, pl);
  } else {
    bool tangents = !ge::isZeroLength(startTangent.length()) && !ge::isZeroLength(endTangent.length());
    host::Spline s;
    if (ctx.curves.fitSpline(points, tangents ? &startTangent : nullptr, tangents ? &endTangent : nullptr, s) !=
        host::ErrorStatus::eOk)
      return false;
    e = newEntity(d, std::move(s));
  }
  e.props.color = color;
  return appendToDatabase(ctx.drawing, target, e) == host::ErrorStatus::eOk;
}

}  // namespace geom
