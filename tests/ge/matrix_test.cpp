#include "ge/matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

using ge::Matrix3d;
using ge::Point3d;
using ge::Vector3d;

void expectNear(const Point3d& a, const Point3d& b, double tol = 1e-12) {
  EXPECT_NEAR(a.x, b.x, tol);
  EXPECT_NEAR(a.y, b.y, tol);
  EXPECT_NEAR(a.z, b.z, tol);
}

// Rotation about a point is counter-clockwise; a mirror flips orientation and
// is still a similarity; a non-uniform scale is none.
TEST(Matrix, SimilaritiesTheirOrientationAndScale) {
  auto r = Matrix3d::rotation(std::numbers::pi / 2, ge::kZAxis, {1, 1, 0});
  expectNear(r.apply(Point3d{2, 1, 0}), {1, 2, 0});
  EXPECT_NEAR(r.determinant3(), 1.0, 1e-12);
  EXPECT_NEAR(r.uniformScale(), 1.0, 1e-12);
  auto m = Matrix3d::mirroring({0, 0, 0}, {1, 0, 0});
  expectNear(m.apply(Point3d{3, 4, 5}), {-3, 4, 5});
  EXPECT_LT(m.determinant3(), 0);
  EXPECT_NEAR(m.uniformScale(), 1.0, 1e-12);
  Matrix3d s;
  s(0, 0) = 2;
  EXPECT_EQ(s.uniformScale(), 0.0);
  EXPECT_NEAR(Matrix3d::scaling(3, {1, 0, 0}).uniformScale(), 3.0, 1e-12);
}

TEST(Matrix, ProjectionAlongDirectionLandsOnPlane) {
  auto p = Matrix3d::projection({0, 0, 2}, ge::kZAxis, Vector3d{1, 0, 1});
  // From (0,0,5) along (1,0,1) down to z=2 moves x by -3.
  expectNear(p.apply(Point3d{0, 0, 5}), {-3, 0, 2});
}

TEST(Matrix, FrameRoundTrip) {
  Vector3d x{0, 1, 0}, y{-1, 0, 0}, z{0, 0, 1};
  Point3d o{5, 6, 7};
  auto to = Matrix3d::toFrame(o, x, y, z), from = Matrix3d::fromFrame(o, x, y, z);
  Point3d p{1.5, -2, 3};
  expectNear(from.apply(to.apply(p)), p);
  expectNear(to.apply(o), {0, 0, 0});
}

}  // namespace
