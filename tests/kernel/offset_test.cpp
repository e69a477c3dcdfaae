// Offsets: arcs stay arcs, corners meet as extended segments, loops are
// trimmed, and shapes offset out and back in return.
#include "kernel_test.h"
#include "standalone/kernel/path_query.h"

namespace {

std::vector<EntityData> offset(const EntityData& e, double d, ErrorStatus expect = ErrorStatus::eOk) {
  std::vector<EntityData> out;
  EXPECT_EQ(kernel.getOffsetCurves(e, d, out), expect);
  return out;
}

// Every sample of every result lies at |d| from the source.
void expectAtDistance(const EntityData& src, const std::vector<EntityData>& res, double d, double tol = 1e-9) {
  for (const auto& r : res)
    for (const Point3d& p : samples(r, 200)) EXPECT_NEAR(distanceTo(src, p), std::abs(d), tol);
}

LwPolyline square(double side) {
  return LwPolyline{{{0, 0}, {side, 0}, {side, side}, {0, side}}, true};
}

TEST(Offset, CirclesAndArcsChangeRadiusOnlyAndLinesMoveSideways) {
  auto out = offset(Circle{{1, 1, 0}, 3}, 2);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(std::get<Circle>(out[0]).radius, 5);
  out = offset(Arc{{0, 0, 0}, 3, 0.5, 2}, -1);
  EXPECT_EQ(std::get<Arc>(out[0]).radius, 2);
  EXPECT_EQ(std::get<Arc>(out[0]).startAngle, 0.5);
  // Negative distances go towards smaller x whichever way the line runs.
  EXPECT_EQ(std::get<Line>(offset(Line{{0, 0, 0}, {0, 5, 0}}, -2)[0]).start, (Point3d{-2, 0, 0}));
  EXPECT_EQ(std::get<Line>(offset(Line{{0, 5, 0}, {0, 0, 0}}, -2)[0]).start, (Point3d{-2, 5, 0}));
}

TEST(Offset, CounterClockwiseSquareGrowsWithMitredCorners) {
  auto out = offset(square(10), 1);
  ASSERT_EQ(out.size(), 1u);
  const auto& pl = std::get<LwPolyline>(out[0]);
  EXPECT_TRUE(pl.closed);
  EXPECT_EQ(pl.vertices.size(), 4u);
  EXPECT_NEAR(area(out[0]), 144, 1e-9);
  EXPECT_NEAR(area(offset(square(10), -1)[0]), 64, 1e-9);
}

// Nothing would remain, or there is no plane to offset in.
TEST(Offset, RefusedWhenNothingRemainsOrOffThePlane) {
  Polyline3d bent{{{{0, 0, 0}}, {{1, 0, 1}}}};
  const struct { const char* what; EntityData e; double d; ErrorStatus status; } cases[] = {
      {"circle shrunk to its centre", Circle{{0, 0, 0}, 3}, -3, ErrorStatus::eInvalidOffset},
      {"square shrunk past its middle", square(10), -5.5, ErrorStatus::eInvalidOffset},
      {"nonplanar 3D polyline", bent, 1, ErrorStatus::eNotApplicable},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_TRUE(offset(c.e, c.d, c.status).empty());
  }
}

// A thin isosceles triangle pointing along +x with its tip angle in degrees.
LwPolyline wedge(double tipDegrees) {
  double half = tipDegrees / 2 * kPi / 180, len = 20;
  double x = -len * std::cos(half), y = len * std::sin(half);
  return LwPolyline{{{0, 0}, {x, y}, {x, -y}}, true};
}

// How far the outward offset reaches past the tip, along the tip's axis.
double reachPastTip(double tipDegrees, double d) {
  auto out = offset(wedge(tipDegrees), d);
  EXPECT_EQ(out.size(), 1u);
  double reach = 0;
  for (const auto& v : std::get<LwPolyline>(out[0]).vertices) reach = std::max(reach, v.x);
  // An arc about the tip reaches d, from vertices that lie short of that.
  return reach;
}

TEST(Offset, SharpCornersMeetUpToFourOffsetsOutAndAreRoundedBeyond) {
  // 40 degrees: the meeting point lies d / sin 20° ≈ 2.9 d out.
  EXPECT_NEAR(reachPastTip(40, 1), 1 / std::sin(20 * kPi / 180), 1e-9);
  // 10 degrees would put it 11.5 d out: an arc of radius d about the tip
  // instead, whose ends lie d cos 85° ahead.
  EXPECT_NEAR(reachPastTip(10, 1), std::cos(85 * kPi / 180), 1e-9);
  auto out = offset(wedge(10), 1);
  const auto& pl = std::get<LwPolyline>(out[0]);
  int arcs = 0;
  for (const auto& v : pl.vertices) arcs += v.bulge != 0;
  EXPECT_EQ(arcs, 1);
  EXPECT_EQ(pl.vertices.size(), 4u);  // the two blunt corners still meet
}

class RoundedShape : public ::testing::TestWithParam<std::tuple<double, bool>> {};

TEST_P(RoundedShape, OutAndBackInReturnsTheShape) {
  auto [d, reversed] = GetParam();
  // A stadium: two straight sides joined by semicircles (convex, counter-clockwise).
  LwPolyline pl{{{0, 0}, {6, 0, 1}, {6, 4}, {0, 4, 1}}, true};
  EntityData src = pl;
  if (reversed) kernel.reverseCurve(src);
  double sign = reversed ? -1 : 1;  // the right side of a clockwise shape is its inside
  auto out = offset(src, sign * d);
  ASSERT_EQ(out.size(), 1u);
  expectAtDistance(src, out, d);
  // Steiner: area grows by perimeter times d plus a disc of radius d.
  EXPECT_NEAR(area(out[0]), 24 + kPi * 4 + d * (12 + 4 * kPi) + kPi * d * d, 1e-9 * 100);
  auto back = offset(out[0], -sign * d);
  ASSERT_EQ(back.size(), 1u);
  EXPECT_NEAR(area(back[0]), area(src), 1e-9 * 100);
  expectAtDistance(back[0], {src}, 0, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Distances, RoundedShape, ::testing::Combine(::testing::Values(0.1, 1.0, 7.5), ::testing::Bool()));

// Open polylines stay open, their sides trimmed where they cross: a square
// drawn open, its last vertex on its first, offset inward starts and ends
// where its first and last sides cross; inside a bend the corner is cut.
TEST(Offset, OpenPolylinesAreTrimmedWhereTheirSidesCross) {
  const struct { const char* what; LwPolyline source; double d; std::vector<LwVertex> want; } cases[] = {
      {"square back to its start", {{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}}, -1, {{1, 1}, {9, 1}, {9, 9}, {1, 9}, {1, 1}}},
      {"left turn, inside the corner", {{{0, 0}, {10, 0}, {10, 10}}}, -2, {{0, 2}, {8, 2}, {8, 10}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    auto out = offset(c.source, c.d);
    ASSERT_EQ(out.size(), 1u);
    const auto& r = std::get<LwPolyline>(out[0]);
    EXPECT_FALSE(r.closed);
    ASSERT_EQ(r.vertices.size(), c.want.size());
    for (size_t i = 0; i < c.want.size(); ++i) {
      EXPECT_NEAR(r.vertices[i].x, c.want[i].x, 1e-12) << i;
      EXPECT_NEAR(r.vertices[i].y, c.want[i].y, 1e-12) << i;
    }
    expectAtDistance(c.source, out, c.d);  // and no side bulges
  }
}

TEST(Offset, EllipseOffsetsAreSplinesAndLoseTheirLoopsPastACusp) {
  // Ellipse 10 x 4: its curvature radius at the ends of the long axis is
  // b²/a = 1.6, so inward by 2 the exact offset turns back at two cusps and
  // crosses itself. What remains keeps exactly 2 from the ellipse, closes,
  // and has a corner on the long axis at each end.
  // Outward, by 1, it is a spline within the stated tolerance (1e-7 of the
  // diagonal) and encloses more.
  Ellipse e{{0, 0, 0}, {10, 0, 0}, {0, 0, 1}, 0.4, 0, 2 * kPi};
  double tol = 1e-7 * 2 * std::hypot(10.0, 4.0);
  auto grown = offset(e, 1);
  ASSERT_EQ(grown.size(), 1u);
  ASSERT_TRUE(std::holds_alternative<Spline>(grown[0]));
  expectAtDistance(e, grown, 1, tol);
  EXPECT_GT(area(grown[0]), area(e));
  auto out = offset(e, -2);
  ASSERT_EQ(out.size(), 1u);
  const auto& s = std::get<Spline>(out[0]);
  EXPECT_TRUE(s.flags & 1);
  expectAtDistance(e, out, 2, tol);
  // The corner: where the offset of the upper half meets the x axis.
  // Offset point of (10 cos t, 4 sin t) is P - 2 N with N the outward unit
  // normal (4 cos t, 10 sin t)/|.|; its y vanishes where 4 sin t = 20 sin t / |n|,
  // that is |n| = 5: 16 cos² t + 100 sin² t = 25.
  double t = std::acos(std::sqrt(75.0 / 84.0));
  double x = 10 * std::cos(t) - 2 * 4 * std::cos(t) / 5;
  for (double sx : {x, -x}) EXPECT_LE(distanceTo(out[0], {sx, 0, 0}), tol);
  // An open arc of the same ellipse offset inward keeps its ends: one spline.
  Ellipse half = e;
  half.startParam = -kPi / 2, half.endParam = kPi / 2;
  auto part = offset(half, -2);
  ASSERT_EQ(part.size(), 1u);
  expectAtDistance(half, part, 2, tol);
}

TEST(Offset, FreeFormOffsetFacingTheNextTurnOfASpiralKeepsItsDistance) {
  // Two turns of a spiral whose gap widens from 0.8 to 1.44 over the first
  // turn, offset by 0.6 either way: the inner turn's offset runs within 0.6
  // of the outer turn until the gap passes 1.2, where it leaves the band
  // about the outer turn through that turn's other side, and is cut there.
  Spline spiral;
  spiral.flags = 8;
  for (int i = 0; i <= 64; ++i) {
    double a = 4 * kPi * i / 64, r = std::pow(1.8, a / (2 * kPi));
    spiral.fitPoints.push_back({r * std::cos(a), r * std::sin(a), 0});
  }
  for (double d : {0.6, -0.6}) {
    auto out = offset(spiral, d);
    ASSERT_FALSE(out.empty());
    expectAtDistance(spiral, out, d, 1e-7 * 2 * 6.5);
  }
}

}  // namespace
