// Equal-length sampling, lengths and vertex lists through the kernel.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "geom/sampling.h"
#include "standalone/kernel/curve_kernel.h"

namespace {

using namespace host;
using ge::Point3d;

standalone::CurveKernel kernel;

TEST(Sampling, ShortCurvesAndNonCurvesGiveNothing) {
  EXPECT_EQ(geom::curveLength(kernel, Text{}), 0.0);
  ge::PointList pts{{1, 1, 1}};
  EXPECT_FALSE(geom::sampleCurveByLength(kernel, nullptr, 10, pts));
  EXPECT_TRUE(pts.empty());
  EntityData tiny = Line{{0, 0, 0}, {0.00009, 0, 0}};
  EXPECT_FALSE(geom::sampleCurveByLength(kernel, &tiny, 10, pts));
  EXPECT_TRUE(pts.empty());
}

TEST(Sampling, FewerThanFourGivesSixteen) {
  EntityData l = Line{{0, 0, 0}, {15, 0, 0}};
  ge::PointList pts;
  ASSERT_TRUE(geom::sampleCurveByLength(kernel, &l, 3, pts));
  ASSERT_EQ(pts.size(), 16u);
  for (int i = 0; i < 16; ++i) EXPECT_NEAR(pts[i].x, i, 1e-12);
}

TEST(Sampling, CircleSamplesAreEquallySpacedAndEndAtTheEnd) {
  EntityData c = Circle{{0, 0, 0}, 2};
  ge::PointList pts;
  ASSERT_TRUE(geom::sampleCurveByLength(kernel, &c, 9, pts));
  ASSERT_EQ(pts.size(), 9u);
  for (int i = 0; i < 9; ++i) {
    double a = i * std::numbers::pi / 4;
    EXPECT_NEAR(pts[i].x, 2 * std::cos(a), 1e-12);
    EXPECT_NEAR(pts[i].y, 2 * std::sin(a), 1e-12);
  }
  EXPECT_NEAR(pts.back().distanceTo({2, 0, 0}), 0, 1e-15);
}

TEST(Sampling, BulgedPolylineSamplesWalkAcrossSegments) {
  // A straight segment of length 2, then a semicircle of radius 1 (length π).
  LwPolyline pl;
  pl.vertices = {{-2, 0, 0}, {0, 0, 1}, {2, 0, 0}};
  EntityData e = pl;
  double total = 2 + std::numbers::pi;
  EXPECT_NEAR(geom::curveLength(kernel, e), total, 1e-12);
  ge::PointList pts;
  ASSERT_TRUE(geom::sampleCurveByLength(kernel, &e, 5, pts));
  double step = total / 4;
  for (int i = 0; i < 5; ++i) {
    double s = i * step;
    Point3d expect = s <= 2 ? Point3d{-2 + s, 0, 0}
                            : Point3d{1 - std::cos(s - 2), -std::sin(s - 2), 0};  // counter-clockwise: below the chord
    EXPECT_NEAR(pts[i].distanceTo(expect), 0, 1e-12) << i;
  }
}

TEST(VertexList, PolylineKindsGiveTheirOwnVertices) {
  LwPolyline lw;
  lw.vertices = {{0, 0, 0.5}, {1, 0}, {1, 1}};
  lw.elevation = 2;
  lw.normal = {0, 0, -1};
  ge::PointList pts;
  ASSERT_TRUE(geom::getVertexList(lw, pts));
  ASSERT_EQ(pts.size(), 3u);
  EXPECT_EQ(pts[1], (Point3d{-1, 0, -2}));  // OCS of -Z mirrors x and z

  Polyline3d p3;
  p3.vertices = {{{1, 2, 3}}, {{4, 5, 6}}};
  ASSERT_TRUE(geom::getVertexList(p3, pts));
  EXPECT_EQ(pts, (ge::PointList{{1, 2, 3}, {4, 5, 6}}));

  EXPECT_FALSE(geom::getVertexList(Line{}, pts));
  EXPECT_TRUE(pts.empty());
}

}  // namespace
