// Projection onto a plane: the result is the image of the source under the
// projection map, point for point, and of the kind the host gives.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "standalone/kernel/curve_kernel.h"

namespace {

using namespace host;
using ge::Point3d;
constexpr double kPi = std::numbers::pi;

standalone::CurveKernel kernel;

void expectImage(const EntityData& src, const EntityData& img, const ge::Matrix3d& m) {
  double s, t;
  kernel.getStartParam(src, s), kernel.getEndParam(src, t);
  for (int i = 0; i <= 48; ++i) {
    Point3d p, q;
    kernel.getPointAtParam(src, s + (t - s) * i / 48, p);
    kernel.getClosestPointTo(img, m.apply(p), q);
    EXPECT_LT(q.distanceTo(m.apply(p)), 1e-9);
  }
  Point3d a, b;
  kernel.getStartPoint(src, a), kernel.getStartPoint(img, b);
  if (!std::holds_alternative<Circle>(src) && !kernel.isClosed(src)) {
    EXPECT_LT(b.distanceTo(m.apply(a)), 1e-9);
  }
}

Plane worldXY() { return Plane{{0, 0, -3}, {0, 0, 1}}; }

TEST(Projection, TiltedCircleBecomesAnEllipseOnXY) {
  EntityData c = Circle{{1, 2, 5}, 2, 0, ge::Vector3d{1, 0, 1}.normalized()};
  EntityData r;
  ASSERT_EQ(kernel.getOrthoProjectedCurve(c, worldXY(), r), ErrorStatus::eOk);
  ASSERT_TRUE(std::holds_alternative<Ellipse>(r));
  EXPECT_NEAR(std::get<Ellipse>(r).ratio, std::sqrt(0.5), 1e-12);
  expectImage(c, r, ge::Matrix3d::projection({0, 0, -3}, {0, 0, 1}, {0, 0, 1}));
}

TEST(Projection, ArcsAndEllipsesMapPointForPointAlongAnObliqueDirection) {
  ge::Vector3d dir{0.3, -0.2, 1};
  auto m = ge::Matrix3d::projection({0, 0, -3}, {0, 0, 1}, dir);
  for (const EntityData& e : {EntityData{Arc{{0, 0, 2}, 3, 5.5, 1.0, 0, ge::Vector3d{0, 1, 1}.normalized()}},
                              EntityData{Ellipse{{1, 1, 1}, {3, 0, 1}, ge::Vector3d{-1, 0, 3}.normalized(), 0.3, 0.2, 2.5}},
                              EntityData{Arc{{0, 0, 2}, 3, 0.5, 2.0}}}) {
    EntityData r;
    ASSERT_EQ(kernel.getProjectedCurve(e, worldXY(), dir, r), ErrorStatus::eOk);
    expectImage(e, r, m);
  }
}

TEST(Projection, FlatArcProjectedStraightDownStaysAnArc) {
  EntityData a = Arc{{1, 1, 7}, 2, 0.3, 2.0};
  EntityData r;
  ASSERT_EQ(kernel.getOrthoProjectedCurve(a, worldXY(), r), ErrorStatus::eOk);
  ASSERT_TRUE(std::holds_alternative<Arc>(r));
  EXPECT_NEAR(std::get<Arc>(r).center.z, -3, 1e-12);
  EXPECT_NEAR(std::get<Arc>(r).startAngle, 0.3, 1e-12);
}

TEST(Projection, PolylinesAndSplines) {
  auto m = ge::Matrix3d::projection({0, 0, -3}, {0, 0, 1}, {0, 0, 1});
  LwPolyline lw;
  lw.vertices = {{0, 0, 0.5}, {2, 0}, {2, 2}};
  lw.elevation = 4;
  EntityData r;
  ASSERT_EQ(kernel.getOrthoProjectedCurve(lw, worldXY(), r), ErrorStatus::eOk);
  expectImage(lw, r, m);
  Polyline3d p3;
  p3.vertices = {{{0, 0, 0}}, {{1, 2, 3}}, {{4, 1, -2}}};
  ASSERT_EQ(kernel.getOrthoProjectedCurve(p3, worldXY(), r), ErrorStatus::eOk);
  expectImage(p3, r, m);
  Spline s;
  kernel.fitSpline({{0, 0, 0}, {1, 2, 3}, {4, 1, -2}, {5, 5, 1}}, nullptr, nullptr, s);
  ASSERT_EQ(kernel.getOrthoProjectedCurve(s, worldXY(), r), ErrorStatus::eOk);
  expectImage(s, r, m);
  // A bulged polyline seen at an angle has elliptical arcs: a rational spline.
  LwPolyline tilted = lw;
  tilted.normal = ge::Vector3d{1, 0, 1}.normalized();
  tilted.closed = true;
  ASSERT_EQ(kernel.getOrthoProjectedCurve(tilted, worldXY(), r), ErrorStatus::eOk);
  ASSERT_TRUE(std::holds_alternative<Spline>(r));
  expectImage(tilted, r, m);
}

TEST(Projection, DirectionInThePlaneIsRefused) {
  EntityData r;
  EXPECT_EQ(kernel.getProjectedCurve(Line{{0, 0, 0}, {1, 1, 1}}, worldXY(), {1, 0, 0}, r), ErrorStatus::eInvalidInput);
  EXPECT_EQ(kernel.getOrthoProjectedCurve(Line{{0, 0, 0}, {0, 0, 1}}, worldXY(), r), ErrorStatus::eDegenerateGeometry);
}

}  // namespace
