// Closest points, end points and extents of the common kinds against closed forms.
#include "kernel_test.h"

namespace {

void expectNear(Point3d a, Point3d b, double tol = 1e-9) {
  EXPECT_NEAR(a.x, b.x, tol);
  EXPECT_NEAR(a.y, b.y, tol);
  EXPECT_NEAR(a.z, b.z, tol);
}

// Semicircle bulge 1 from (0,0) to (2,0): counter-clockwise, so it dips below the chord; then up to (2,3).
LwPolyline bulged() { return LwPolyline{{{0, 0, 1}, {2, 0, 0}, {2, 3, 0}}}; }

TEST(ClosestPoint, LinesAndArcsClampToTheirEndsAndBulgesAreRound) {
  const Line line{{0, 0, 0}, {10, 0, 0}};
  const Arc arc{{0, 0, 0}, 5, 0, kPi / 2};
  const struct { const char* what; EntityData e; Point3d from, want; } cases[] = {
      {"line, beside", line, {3, 4, 0}, {3, 0, 0}},
      {"line, before its start", line, {-5, 1, 0}, {0, 0, 0}},
      {"line, past its end and off the plane", line, {15, -1, 2}, {10, 0, 0}},
      {"arc, inside its sweep", arc, {10, 10, 0}, {5 / std::sqrt(2.0), 5 / std::sqrt(2.0), 0}},
      {"arc, nearer its start", arc, {-1, -10, 0}, {5, 0, 0}},
      {"arc, nearer its end", arc, {-10, -1, 0}, {0, 5, 0}},
      {"polyline, under its bulge", bulged(), {1, -5, 0}, {1, -1, 0}},
      {"polyline, beside its straight side", bulged(), {3, 1.5, 0}, {2, 1.5, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Point3d q;
    ASSERT_EQ(kernel.getClosestPointTo(c.e, c.from, q), ErrorStatus::eOk);
    expectNear(q, c.want);
  }
}

class CircleRadius : public ::testing::TestWithParam<double> {};

TEST_P(CircleRadius, ClosestPointIsRadialProjectionAndExtentsAreCentrePlusMinusRadius) {
  double r = GetParam();
  Circle c{{r, -2 * r, 0}, r};
  for (int k = 0; k < 12; ++k) {
    double a = 0.3 + k * kPi / 6;
    double d = (k % 2 ? 0.4 : 2.5) * r;
    Point3d p{c.center.x + d * std::cos(a), c.center.y + d * std::sin(a), 0}, q;
    ASSERT_EQ(kernel.getClosestPointTo(c, p, q), ErrorStatus::eOk);
    expectNear(q, {c.center.x + r * std::cos(a), c.center.y + r * std::sin(a), 0}, 1e-9 * r);
  }
  ge::Extents3d e;
  ASSERT_EQ(kernel.getGeomExtents(Circle{{1, 2, 3}, r}, e), ErrorStatus::eOk);
  expectNear(e.min, {1 - r, 2 - r, 3}, 1e-12 * r);
  expectNear(e.max, {1 + r, 2 + r, 3}, 1e-12 * r);
}

INSTANTIATE_TEST_SUITE_P(Radii, CircleRadius, ::testing::Values(1e-3, 1.0, 37.5, 1e6));

TEST(Extents, ArcsBulgesHatchesAndImages) {
  Hatch hatch;  // a 4 x 4 square whose right side bulges out by a half circle of radius 2
  HatchPath path;
  path.flags = 1;
  path.edges = {HatchLineEdge{{0, 0}, {4, 0}}, HatchArcEdge{{4, 2}, 2, -kPi / 2, kPi / 2, true},
                HatchLineEdge{{4, 4}, {0, 4}}, HatchLineEdge{{0, 4}, {0, 0}}};
  hatch.paths = {path};
  Image image;
  image.insertion = {1, 1, 0};
  image.widthPixels = 10, image.heightPixels = 5;
  const struct { const char* what; EntityData e; Point3d min, max; double tol = 1e-12; } cases[] = {
      // From -90° through 0° to 45°: the rightmost point lies inside the sweep, not at an end.
      {"arc across angle 0", Arc{{0, 0, 0}, 2, 1.5 * kPi, 0.25 * kPi}, {0, -2, 0}, {2, std::sqrt(2.0), 0}},
      {"polyline with a bulge", bulged(), {0, -1, 0}, {2, 3, 0}},
      {"hatch with an arc edge", hatch, {0, 0, 0}, {6, 4, 0}},
      {"image of 10 x 5 pixels", image, {1, 1, 0}, {11, 6, 0}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ge::Extents3d e;
    ASSERT_EQ(kernel.getGeomExtents(c.e, e), ErrorStatus::eOk);
    expectNear(e.min, c.min, c.tol);
    expectNear(e.max, c.max, c.tol);
  }
}

// The object coordinate system places the ends: normal -Z makes the OCS X axis
// world -X, and a polyline's elevation is along its normal.
TEST(EndPoints, NormalAndElevationPlaceThem) {
  LwPolyline raised{{{0, 0}, {1, 0}}};
  raised.elevation = 5;
  raised.normal = {0, 0, -1};
  const struct { const char* what; EntityData e; Point3d start, end; } cases[] = {
      {"arc under normal -Z runs clockwise in world", Arc{{0, 0, 0}, 1, 0, kPi / 2, 0, {0, 0, -1}}, {-1, 0, 0}, {0, 1, 0}},
      {"polyline raised along normal -Z", raised, {0, 0, -5}, {-1, 0, -5}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Point3d s, e;
    ASSERT_EQ(kernel.getStartPoint(c.e, s), ErrorStatus::eOk);
    ASSERT_EQ(kernel.getEndPoint(c.e, e), ErrorStatus::eOk);
    expectNear(s, c.start);
    expectNear(e, c.end);
  }
}

}  // namespace
