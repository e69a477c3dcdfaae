// Records as a damaged or odd drawing can hold them: every service answers
// with a status or a finite value, never a crash or a NaN reported as eOk.
#include <limits>

#include "kernel_test.h"

namespace {

bool finite(const Point3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

std::vector<EntityData> oddRecords() {
  double nan = std::numeric_limits<double>::quiet_NaN();
  std::vector<EntityData> out{Line{}, Circle{}, Arc{{0, 0, 0}, 0, 1, 1}, Ellipse{{0, 0, 0}, {0, 0, 0}},
                              Ellipse{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}, 0}, LwPolyline{}, Polyline2d{}, Polyline3d{},
                              Spline{}, Helix{}};
  LwPolyline one{{{1, 1}}};
  out.push_back(one);
  LwPolyline same{{{1, 1, 0.5}, {1, 1, 2}, {1, 1}}, true};
  out.push_back(same);
  Spline highDegree;
  highDegree.degree = 30;
  highDegree.controlPoints.assign(31, Point3d{});
  highDegree.knots.assign(62, 0.0);
  out.push_back(highDegree);
  Spline badKnots;
  badKnots.degree = 2;
  badKnots.controlPoints = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}};
  badKnots.knots = {0, 0, 0, 1, 0.5, 1};
  out.push_back(badKnots);
  Spline notANumber = badKnots;
  notANumber.knots = {0, 0, 0, 1, 1, 1};
  notANumber.controlPoints[1].x = nan;
  out.push_back(notANumber);
  Spline oneFitPoint;
  oneFitPoint.fitPoints = {{1, 2, 3}, {1, 2, 3}};
  out.push_back(oneFitPoint);
  return out;
}

class OddRecord : public ::testing::TestWithParam<size_t> {};

TEST_P(OddRecord, EveryServiceAnswersSanely) {
  EntityData e = oddRecords()[GetParam()];
  double v = 0;
  Point3d p;
  ge::Vector3d d;
  ge::Extents3d ext;
  EXPECT_TRUE(kernel.getEndParam(e, v) != ErrorStatus::eOk || std::isfinite(v));
  EXPECT_TRUE(kernel.getStartPoint(e, p) != ErrorStatus::eOk || finite(p));
  EXPECT_TRUE(kernel.getPointAtParam(e, 0.5, p) != ErrorStatus::eOk || finite(p));
  EXPECT_TRUE(kernel.getDistAtParam(e, 0.5, v) != ErrorStatus::eOk || std::isfinite(v));
  EXPECT_TRUE(kernel.getPointAtDist(e, 0.1, p) != ErrorStatus::eOk || finite(p));
  EXPECT_TRUE(kernel.getClosestPointTo(e, {3, 4, 0}, p) != ErrorStatus::eOk || finite(p));
  kernel.getFirstDeriv(e, 0, d);
  EXPECT_TRUE(kernel.getArea(e, v) != ErrorStatus::eOk || std::isfinite(v));
  kernel.getGeomExtents(e, ext);
  std::vector<Point3d> pts;
  kernel.intersectWith(e, Line{{-5, -5, 0}, {5, 5, 0}}, Intersect::kOnBothOperands, pts);
  kernel.intersectWith(e, e, Intersect::kOnBothOperands, pts);
  std::vector<EntityData> offs;
  kernel.getOffsetCurves(e, 1.0, offs);
  EntityData copy = e, r;
  kernel.transformBy(copy, ge::Matrix3d::rotation(0.3, ge::kZAxis));
  kernel.reverseCurve(copy);
  kernel.getOrthoProjectedCurve(e, Plane{}, r);
  Spline s;
  if (kernel.getSpline(e, s) == ErrorStatus::eOk) kernel.splineToPolyline(s, 10, r);
}

INSTANTIATE_TEST_SUITE_P(Records, OddRecord, ::testing::Range<size_t>(0, 16));

TEST(OddRecord, UnusableSplinesAreRefused) {
  auto recs = oddRecords();
  double v;
  for (size_t i = 12; i < 16; ++i) EXPECT_NE(kernel.getEndParam(recs[i], v), ErrorStatus::eOk) << i;
}

}  // namespace
