// intersectWith against closed forms: every pairing of segment kinds,
// extension modes, free-form refinement and curves in different planes.
// Also the boxes of arc segments, which culling relies on.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "standalone/kernel/curve_kernel.h"
#include "standalone/kernel/pline2.h"

namespace {

using namespace host;
using ge::Point3d;
constexpr double kPi = std::numbers::pi;

standalone::CurveKernel kernel;

std::vector<Point3d> meet(const EntityData& a, const EntityData& b, Intersect mode = Intersect::kOnBothOperands) {
  std::vector<Point3d> pts;
  EXPECT_EQ(kernel.intersectWith(a, b, mode, pts), ErrorStatus::eOk);
  std::sort(pts.begin(), pts.end(), [](const Point3d& p, const Point3d& q) {
    return p.x != q.x ? p.x < q.x : p.y < q.y;
  });
  return pts;
}

void expectPoints(const std::vector<Point3d>& got, std::vector<Point3d> want, double tol = 1e-9) {
  ASSERT_EQ(got.size(), want.size());
  for (const auto& w : want) {
    double best = INFINITY;
    for (const auto& g : got) best = std::min(best, g.distanceTo(w));
    EXPECT_LT(best, tol) << w.x << "," << w.y << "," << w.z;
  }
}

TEST(Intersect, LinesCrossOnlyWithinBothUnlessExtended) {
  Line a{{0, 0, 0}, {4, 4, 0}}, b{{0, 4, 0}, {1, 3, 0}};
  expectPoints(meet(a, b), {});
  expectPoints(meet(a, b, Intersect::kExtendArg), {{2, 2, 0}});
  expectPoints(meet(b, a, Intersect::kExtendThis), {{2, 2, 0}});
  expectPoints(meet(a, Line{{0, 4, 0}, {4, 0, 0}}), {{2, 2, 0}});
  // Parallel lines never meet; a shared end point counts once.
  expectPoints(meet(a, Line{{1, 0, 0}, {5, 4, 0}}), {});
  expectPoints(meet(a, Line{{4, 4, 0}, {9, 0, 0}}), {{4, 4, 0}});
}

// A closed polyline first: its start is its end, which once passed it as a
// straight path and lost every crossing.
TEST(Intersect, AClosedStraightSidedPolylineMeetsALineInEitherOrder) {
  LwPolyline square;
  for (auto [x, y] : {std::pair{0.0, 0.0}, {10.0, 0.0}, {10.0, 10.0}, {0.0, 10.0}}) square.vertices.push_back({x, y});
  square.closed = true;
  Line across{{-5, 4.5, 0}, {15, 4.5, 0}};
  expectPoints(meet(square, across), {{0, 4.5, 0}, {10, 4.5, 0}});
  expectPoints(meet(across, square), {{0, 4.5, 0}, {10, 4.5, 0}});
  expectPoints(meet(square, Line{{9.5, 4.5, 0}, {10.5, 4.5, 0}}), {{10, 4.5, 0}});
}

class CircleLine : public ::testing::TestWithParam<std::tuple<double, double>> {};

TEST_P(CircleLine, ChordPointsAtTheClosedFormDistance) {
  auto [r, h] = GetParam();
  Circle c{{10, -5, 0}, r};
  Line l{{10 - 3 * r, -5 + h, 0}, {10 + 3 * r, -5 + h, 0}};
  auto pts = meet(c, l);
  if (h > r) {
    EXPECT_TRUE(pts.empty());
    return;
  }
  double k = std::sqrt(r * r - h * h);
  expectPoints(pts, {{10 - k, -5 + h, 0}, {10 + k, -5 + h, 0}}, 1e-9 * std::max(1.0, r));
  expectPoints(meet(l, c), {{10 - k, -5 + h, 0}, {10 + k, -5 + h, 0}}, 1e-9 * std::max(1.0, r));
}

INSTANTIATE_TEST_SUITE_P(Radii, CircleLine,
                         ::testing::Combine(::testing::Values(0.01, 1.0, 1000.0), ::testing::Values(0.0, 0.005, 0.7, 5.0)));

TEST(Intersect, ArcsMeetOnlyInsideTheirSweeps) {
  Arc a{{0, 0, 0}, 1, 0, kPi};   // upper half of the unit circle
  Circle c{{1, 0, 0}, 1};        // meets the unit circle at (1/2, ±√3/2)
  expectPoints(meet(a, c), {{0.5, std::sqrt(3.0) / 2, 0}});
  expectPoints(meet(a, c, Intersect::kExtendThis), {{0.5, std::sqrt(3.0) / 2, 0}, {0.5, -std::sqrt(3.0) / 2, 0}});
  // Tangent circles touch once.
  expectPoints(meet(Circle{{0, 0, 0}, 1}, Circle{{3, 0, 0}, 2}), {{1, 0, 0}});
}

TEST(Intersect, BulgedPolylinesGiveEveryCrossingOnce) {
  LwPolyline zig;
  zig.vertices = {{0, 0}, {1, 1}, {2, 0}, {3, 1}, {4, 0}};
  Line across{{-1, 0.5, 0}, {5, 0.5, 0}};
  expectPoints(meet(zig, across), {{0.5, 0.5, 0}, {1.5, 0.5, 0}, {2.5, 0.5, 0}, {3.5, 0.5, 0}});
  // Through a shared vertex: one point, not two.
  expectPoints(meet(zig, Line{{1, 0, 0}, {1, 3, 0}}), {{1, 1, 0}});
  LwPolyline bump;
  bump.vertices = {{0, 0, -1}, {2, 0}};  // clockwise semicircle above the chord, top at (1, 1)
  expectPoints(meet(bump, Line{{-1, 1, 0}, {3, 1, 0}}), {{1, 1, 0}}, 1e-7);
}

TEST(Intersect, EllipseAndLineRefineToTheExactPoints) {
  Ellipse e{{0, 0, 0}, {4, 0, 0}, {0, 0, 1}, 0.5, 0, 2 * kPi};  // x²/16 + y²/4 = 1
  Line l{{-5, 1, 0}, {5, 1, 0}};
  double x = 4 * std::sqrt(1 - 0.25);
  expectPoints(meet(e, l), {{-x, 1, 0}, {x, 1, 0}});
  expectPoints(meet(l, e), {{-x, 1, 0}, {x, 1, 0}});
}

TEST(Intersect, SplineAndCircle) {
  Spline s;
  kernel.fitSpline({{-3, 0, 0}, {-1, 0.5, 0}, {1, -0.5, 0}, {3, 0, 0}}, nullptr, nullptr, s);
  Circle c{{0, 0, 0}, 2};
  auto pts = meet(s, c);
  ASSERT_EQ(pts.size(), 2u);
  for (const auto& p : pts) {
    EXPECT_NEAR(std::hypot(p.x, p.y), 2, 1e-9);
    Point3d q;
    kernel.getClosestPointTo(s, p, q);
    EXPECT_LT(q.distanceTo(p), 1e-9);
    // Intersection points count as on both curves for queries by point.
    double d;
    EXPECT_EQ(kernel.getDistAtPoint(s, p, d), ErrorStatus::eOk);
    EXPECT_EQ(kernel.getDistAtPoint(c, p, d), ErrorStatus::eOk);
  }
}

TEST(Intersect, TwoSplinesMeetAtPointsOnBoth) {
  Spline a, b;
  kernel.fitSpline({{0, 0, 0}, {2, 2, 0}, {4, -1, 0}, {6, 1, 0}, {8, 0, 0}}, nullptr, nullptr, a);
  kernel.fitSpline({{0, 1, 0}, {3, -2, 0}, {5, 2, 0}, {8, -1, 0}}, nullptr, nullptr, b);
  auto pts = meet(a, b);
  ASSERT_GE(pts.size(), 3u);
  for (const auto& p : pts) {
    Point3d qa, qb;
    kernel.getClosestPointTo(a, p, qa), kernel.getClosestPointTo(b, p, qb);
    EXPECT_LT(qa.distanceTo(p), 1e-9);
    EXPECT_LT(qb.distanceTo(p), 1e-9);
  }
  // The same pair the other way round gives the same points.
  auto back = meet(b, a);
  ASSERT_EQ(back.size(), pts.size());
  for (size_t i = 0; i < pts.size(); ++i) EXPECT_LT(back[i].distanceTo(pts[i]), 1e-9);
}

TEST(Intersect, CirclesInCrossingPlanesTouchOnTheCommonLine) {
  // Unit circles about the origin in the XY and XZ planes share the points (±1, 0, 0).
  Circle flat{{0, 0, 0}, 1};
  Circle upright{{0, 0, 0}, 1, 0, {0, 1, 0}};
  expectPoints(meet(flat, upright), {{-1, 0, 0}, {1, 0, 0}});
}

TEST(Intersect, CurvesInDifferentPlanesMeetWhereOneCrossesTheOther) {
  Circle flat{{0, 0, 0}, 2};
  Line vertical{{2, 0, -1}, {2, 0, 1}};
  expectPoints(meet(flat, vertical), {{2, 0, 0}});
  Line skew{{0, 0, 1}, {1, 1, 1}};
  expectPoints(meet(Line{{0, 1, 0}, {1, 0, 0}}, skew), {});
  Polyline3d p3;
  p3.vertices = {{{0, 0, 0}}, {{2, 2, 2}}, {{4, 0, 0}}};
  expectPoints(meet(p3, Line{{1, 1, -3}, {1, 1, 3}}), {{1, 1, 1}});
}

}  // namespace

namespace {

// The box of an arc segment, found without angles, against points sampled
// along the arc by its angle: it holds them all, and each side is reached.
TEST(SegmentBox, HoldsTheWholeArcAndNoMore) {
  using standalone::kernel::Seg;
  using standalone::kernel::Vec2;
  std::mt19937 rng(5);
  std::uniform_real_distribution<double> at(-50, 50), bulge(-3, 3);
  for (int trial = 0; trial < 500; ++trial) {
    Seg s{{at(rng), at(rng)}, {at(rng), at(rng)}, bulge(rng)};
    if (trial % 50 == 0) s.bulge = 1;  // half circles, ends on a diameter
    if (trial % 50 == 1) s.b = Vec2{s.a.x + 10, s.a.y};  // ends level: a quadrant point may sit on the chord line
    if (s.bulge == 0) continue;
    standalone::kernel::Box2 box = standalone::kernel::segmentBox(s);
    double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
    constexpr int kSamples = 20000;
    for (int i = 0; i <= kSamples; ++i) {
      Vec2 p = s.pointAt(static_cast<double>(i) / kSamples);
      minX = std::min(minX, p.x), maxX = std::max(maxX, p.x), minY = std::min(minY, p.y), maxY = std::max(maxY, p.y);
    }
    double r = s.arc().r, slack = 1e-9 * (r + 50), reach = r * 2e-7 + slack;  // a sample lies within reach of an extreme
    ASSERT_LE(box.minX, minX + slack) << trial;
    ASSERT_GE(box.maxX, maxX - slack) << trial;
    ASSERT_LE(box.minY, minY + slack) << trial;
    ASSERT_GE(box.maxY, maxY - slack) << trial;
    ASSERT_GE(box.minX, minX - reach) << trial;
    ASSERT_LE(box.maxX, maxX + reach) << trial;
    ASSERT_GE(box.minY, minY - reach) << trial;
    ASSERT_LE(box.maxY, maxY + reach) << trial;
  }
}

}  // namespace
