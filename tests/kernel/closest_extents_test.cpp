// Closest points and extents of the common kinds against closed forms.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "standalone/kernel/curve_kernel.h"

namespace {

using namespace host;
using ge::Point3d;
constexpr double kPi = std::numbers::pi;

standalone::CurveKernel kernel;

Point3d closest(const EntityData& e, Point3d p) {
  Point3d q;
  EXPECT_EQ(kernel.getClosestPointTo(e, p, q), ErrorStatus::eOk);
  return q;
}

void expectNear(Point3d a, Point3d b, double tol = 1e-9) {
  EXPECT_NEAR(a.x, b.x, tol);
  EXPECT_NEAR(a.y, b.y, tol);
  EXPECT_NEAR(a.z, b.z, tol);
}

TEST(ClosestPoint, LineClampsToItsEnds) {
  Line l{{0, 0, 0}, {10, 0, 0}};
  expectNear(closest(l, {3, 4, 0}), {3, 0, 0});
  expectNear(closest(l, {-5, 1, 0}), {0, 0, 0});
  expectNear(closest(l, {15, -1, 2}), {10, 0, 0});
}

class CircleRadius : public ::testing::TestWithParam<double> {};

TEST_P(CircleRadius, ClosestPointIsRadialProjection) {
  double r = GetParam();
  Circle c{{r, -2 * r, 0}, r};
  for (int k = 0; k < 12; ++k) {
    double a = 0.3 + k * kPi / 6;
    double d = (k % 2 ? 0.4 : 2.5) * r;
    Point3d p{c.center.x + d * std::cos(a), c.center.y + d * std::sin(a), 0};
    expectNear(closest(c, p), {c.center.x + r * std::cos(a), c.center.y + r * std::sin(a), 0}, 1e-9 * r);
  }
}

TEST_P(CircleRadius, ExtentsAreCentrePlusMinusRadius) {
  double r = GetParam();
  Circle c{{1, 2, 3}, r};
  ge::Extents3d e;
  ASSERT_EQ(kernel.getGeomExtents(c, e), ErrorStatus::eOk);
  expectNear(e.min, {1 - r, 2 - r, 3}, 1e-12 * r);
  expectNear(e.max, {1 + r, 2 + r, 3}, 1e-12 * r);
}

INSTANTIATE_TEST_SUITE_P(Radii, CircleRadius, ::testing::Values(1e-3, 1.0, 37.5, 1e6));

TEST(ClosestPoint, ArcOutsideItsSweepGoesToTheNearerEnd) {
  Arc a{{0, 0, 0}, 5, 0, kPi / 2};
  expectNear(closest(a, {10, 10, 0}), {5 / std::sqrt(2.0), 5 / std::sqrt(2.0), 0});
  expectNear(closest(a, {-1, -10, 0}), {5, 0, 0});
  expectNear(closest(a, {-10, -1, 0}), {0, 5, 0});
}

TEST(Extents, ArcAcrossZeroIncludesTheRightmostPoint) {
  Arc a{{0, 0, 0}, 2, 1.5 * kPi, 0.25 * kPi};  // from -90° through 0° to 45°
  ge::Extents3d e;
  ASSERT_EQ(kernel.getGeomExtents(a, e), ErrorStatus::eOk);
  EXPECT_NEAR(e.max.x, 2, 1e-12);
  EXPECT_NEAR(e.min.y, -2, 1e-12);
  EXPECT_NEAR(e.max.y, std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(e.min.x, 0, 1e-12);
}

TEST(Extents, MirroredArcRunsClockwiseInWorld) {
  // Normal -Z: the OCS X axis is -X, so angle 0 points to world -X.
  Arc a{{0, 0, 0}, 1, 0, kPi / 2, 0, {0, 0, -1}};
  Point3d s, e;
  ASSERT_EQ(kernel.getStartPoint(a, s), ErrorStatus::eOk);
  ASSERT_EQ(kernel.getEndPoint(a, e), ErrorStatus::eOk);
  expectNear(s, {-1, 0, 0});
  expectNear(e, {0, 1, 0});
}

TEST(LwPolyline, BulgedSegmentClosestPointAndExtents) {
  // Semicircle bulge 1 from (0,0) to (2,0): counter-clockwise, so it dips below the chord.
  LwPolyline pl;
  pl.vertices = {{0, 0, 1}, {2, 0, 0}, {2, 3, 0}};
  expectNear(closest(pl, {1, -5, 0}), {1, -1, 0});
  expectNear(closest(pl, {3, 1.5, 0}), {2, 1.5, 0});
  ge::Extents3d e;
  ASSERT_EQ(kernel.getGeomExtents(pl, e), ErrorStatus::eOk);
  expectNear(e.min, {0, -1, 0});
  expectNear(e.max, {2, 3, 0});
}

TEST(LwPolyline, ElevationAndNormalPlaceTheVertices) {
  LwPolyline pl;
  pl.vertices = {{0, 0}, {1, 0}};
  pl.elevation = 5;
  pl.normal = {0, 0, -1};
  Point3d s, e;
  ASSERT_EQ(kernel.getStartPoint(pl, s), ErrorStatus::eOk);
  ASSERT_EQ(kernel.getEndPoint(pl, e), ErrorStatus::eOk);
  expectNear(s, {0, 0, -5});
  expectNear(e, {-1, 0, -5});
}

}  // namespace
