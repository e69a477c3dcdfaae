#include "geom/sampling.h"

#include <algorithm>
#include <cmath>

namespace geom {

namespace {
// Curves shorter than this (drawing units) cannot be sampled.
constexpr double kShortestSampledCurve = 0.0001;
// Fewer requested points than this gets the default count.
constexpr int kFewestSamples = 4;
constexpr int kDefaultSamples = 16;
// Axes of an object coordinate system by the arbitrary-axis rule of the
// drawing format: X = Wy × N when N is within 1/64 of the world Z axis, else
// Wz × N; Y = N × X.
struct OcsAxes {
  ge::Vector3d x, y, z;
  ge::Point3d toWorld(double px, double py, double pz) const { return ge::Point3d{} + x * px + y * py + z * pz; }
};

OcsAxes ocsAxes(const ge::Vector3d& normal) {
  ge::Vector3d n = normal.normalized();
  bool nearZ = std::abs(n.x) < 1.0 / 64 && std::abs(n.y) < 1.0 / 64;
  ge::Vector3d x = (nearZ ? ge::kYAxis.cross(n) : ge::kZAxis.cross(n)).normalized();
  return {x, n.cross(x), n};
}

}  // namespace

double curveLength(const host::CurveServices& curves, const host::EntityData& curve) {
  double end = 0, dist = 0;
  if (curves.getEndParam(curve, end) != host::ErrorStatus::eOk) return 0.0;
  if (curves.getDistAtParam(curve, end, dist) != host::ErrorStatus::eOk) return 0.0;
  return dist;
}

bool sampleCurveByLength(const host::CurveServices& curves, const host::EntityData* curve, int count,
                         ge::PointList& points) {
  points.clear();
  if (!curve) return false;
  int n = count < kFewestSamples ? kDefaultSamples : count;
  double length = curveLength(curves, *curve);
  if (length < kShortestSampledCurve) return false;
  double step = length / (n - 1);
  std::vector<double> dists(n);
  for (int i = 0; i < n; ++i) dists[i] = std::min(i * step, length);
  ge::PointList out;
  if (curves.getPointsAtDists(*curve, dists, out) != host::ErrorStatus::eOk) return false;
  // Rounding must never leave the last sample short of the end.
  if (curves.getEndPoint(*curve, out.back()) != host::ErrorStatus::eOk) return false;
  points = std::move(out);
  return true;
}

bool getVertexList(const host::EntityData& entity, ge::PointList& points) {
  points.clear();
  if (auto* lw = std::get_if<host::LwPolyline>(&entity)) {
    // The vertices are in the polyline's object coordinates.
    OcsAxes axes = ocsAxes(lw->normal);
    for (const auto& v : lw->vertices) points.push_back(axes.toWorld(v.x, v.y, lw->elevation));
    return true;
  }
  if (auto* p2 = std::get_if<host::Polyline2d>(&entity)) {
    for (const auto& v : p2->vertices) points.push_back(v.position);
    return true;
  }
  if (auto* p3 = std::get_if<host::Polyline3d>(&entity)) {
    for (const auto& v : p3->vertices) points.push_back(v.position);
    return true;
  }
  return false;
}

}  // namespace geom
