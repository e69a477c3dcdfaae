#include "geom/curve_orientation.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace geom {

namespace {

// Samples per curve for the area of ellipses and splines: enough that the
// sign of any drawable loop comes out right; the area itself is not reported.
constexpr int kAreaSamples = 512;
// An area at most this fraction of the square of the curve's size counts as
// none: round-off on a straight polyline stays far below it.
constexpr double kStraightAreaRatio = 1e-9;

struct PlanarVertex {
  double x = 0, y = 0, bulge = 0;
};

// Area between a circular arc of the given bulge and its chord, signed like
// the bulge: a counter-clockwise arc lies to the right of its chord and adds
// to a counter-clockwise loop.
double arcSegmentArea(double chord, double bulge) {
  if (bulge == 0 || chord == 0) return 0;
  double sweep = 4 * std::atan(std::abs(bulge));
  double radius = chord / (2 * std::sin(sweep / 2));
  double area = radius * radius / 2 * (sweep - std::sin(sweep));
  return bulge > 0 ? area : -area;
}

// Shoelace area of a bulged polyline in its own coordinates, which are
// right-handed about its normal; an open polyline is closed by a straight chord.
double bulgedArea(const std::vector<PlanarVertex>& v, bool closed) {
  double area = 0;
  for (std::size_t i = 0; i < v.size(); ++i) {
    bool last = i + 1 == v.size();
    const PlanarVertex& a = v[i];
    const PlanarVertex& b = v[last ? 0 : i + 1];
    area += (a.x * b.y - b.x * a.y) / 2;
    if (!last || closed) area += arcSegmentArea(std::hypot(b.x - a.x, b.y - a.y), a.bulge);
  }
  return area;
}

std::vector<PlanarVertex> planarVertices(const host::LwPolyline& lw) {
  std::vector<PlanarVertex> out;
  for (const auto& v : lw.vertices) out.push_back({v.x, v.y, v.bulge});
  return out;
}

// A spline-fit polyline is drawn through its generated vertices, not its frame.
std::vector<PlanarVertex> planarVertices(const host::Polyline2d& pl) {
  std::vector<PlanarVertex> out;
  for (const auto& v : pl.vertices)
    if (!(pl.splineFit && (v.flags & host::kVertexSplineFrame))) out.push_back({v.position.x, v.position.y, v.bulge});
  return out;
}

// Newell's vector of points sampled along the parameter range; half its
// component along the normal is the signed area about the normal.
std::optional<double> sampledArea(const host::CurveServices& curves, const host::EntityData& curve,
                                  const ge::Vector3d& normal) {
  double start = 0, end = 0;
  if (curves.getStartParam(curve, start) != host::ErrorStatus::eOk ||
      curves.getEndParam(curve, end) != host::ErrorStatus::eOk)
    return std::nullopt;
  std::vector<ge::Point3d> pts;
  for (int i = 0; i <= kAreaSamples; ++i) {
    ge::Point3d p;
    if (curves.getPointAtParam(curve, start + (end - start) * i / kAreaSamples, p) != host::ErrorStatus::eOk)
      return std::nullopt;
    pts.push_back(p);
  }
  ge::Vector3d newell;
  ge::Point3d o = pts.front();  // relative to the first point, for round-off far from the origin
  for (std::size_t i = 0; i < pts.size(); ++i) {
    ge::Vector3d a = pts[i] - o, b = pts[(i + 1) % pts.size()] - o;
    newell = newell + a.cross(b);
  }
  return newell.dot(normal.normalized()) / 2;
}

ge::Vector3d normalOf(const host::EntityData& curve) {
  if (auto* e = std::get_if<host::Ellipse>(&curve)) return e->normal;
  if (auto* s = std::get_if<host::Spline>(&curve)) return s->normal;
  if (auto* lw = std::get_if<host::LwPolyline>(&curve)) return lw->normal;
  if (auto* p2 = std::get_if<host::Polyline2d>(&curve)) return p2->normal;
  return ge::kZAxis;
}

// Size of the curve for the straightness test: the diagonal of its extents.
double sizeOf(const host::CurveServices& curves, const host::EntityData& curve) {
  ge::Extents3d ext;
  if (curves.getGeomExtents(curve, ext) != host::ErrorStatus::eOk || !ext.isValid()) return 0;
  return (ext.max - ext.min).length();
}

// The side a line's positive offset takes: the first of X, Y, Z that the
// vector has a part along, positive.
bool facesLargerCoordinates(const ge::Vector3d& side) {
  double scale = side.length();
  for (double c : {side.x, side.y, side.z})
    if (std::abs(c) > 1e-12 * scale) return c > 0;
  return true;
}

}  // namespace

std::optional<double> signedAreaAboutNormal(const host::CurveServices& curves, const host::EntityData& curve) {
  if (auto* lw = std::get_if<host::LwPolyline>(&curve)) return bulgedArea(planarVertices(*lw), lw->closed);
  if (auto* p2 = std::get_if<host::Polyline2d>(&curve)) return bulgedArea(planarVertices(*p2), p2->closed);
  if (std::holds_alternative<host::Ellipse>(curve) || std::holds_alternative<host::Spline>(curve))
    return sampledArea(curves, curve, normalOf(curve));
  return std::nullopt;
}

Turning turningOf(const host::CurveServices& curves, const host::EntityData& curve) {
  std::optional<double> area = signedAreaAboutNormal(curves, curve);
  if (!area) return Turning::kStraight;
  double size = sizeOf(curves, curve);
  if (std::abs(*area) <= kStraightAreaRatio * size * size) return Turning::kStraight;
  return *area > 0 ? Turning::kCounterClockwise : Turning::kClockwise;
}

bool orientForOffset(const host::CurveServices& curves, host::EntityData& curve) {
  bool polyline = std::holds_alternative<host::LwPolyline>(curve) || std::holds_alternative<host::Polyline2d>(curve);
  bool freeForm = std::holds_alternative<host::Ellipse>(curve) || std::holds_alternative<host::Spline>(curve);
  if (!polyline && !freeForm) return false;
  bool reverse = false;
  switch (turningOf(curves, curve)) {
    case Turning::kCounterClockwise: break;
    case Turning::kClockwise: reverse = true; break;
    case Turning::kStraight: {
      ge::Point3d start, end;
      if (curves.getStartPoint(curve, start) != host::ErrorStatus::eOk ||
          curves.getEndPoint(curve, end) != host::ErrorStatus::eOk)
        return false;
      ge::Vector3d right = (end - start).cross(normalOf(curve).normalized());
      if (right.length() == 0) return false;  // closed, or straight along the normal: no side to choose
      reverse = !facesLargerCoordinates(right);
      break;
    }
  }
  return reverse && curves.reverseCurve(curve) == host::ErrorStatus::eOk;
}

}  // namespace geom
