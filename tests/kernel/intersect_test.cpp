// intersectWith against closed forms: every pairing of segment kinds,
// extension modes, free-form refinement and curves in different planes.
// Also the boxes of arc segments, which culling relies on.
#include <algorithm>
#include <random>

#include "kernel_test.h"
#include "standalone/kernel/pline2.h"

namespace {

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


// Pairs whose crossings have a closed form. Each pair is met in the order
// given; those marked `both` also the other way round.
struct Meeting {
  const char* what;
  EntityData a, b;
  Intersect mode;
  std::vector<Point3d> want;
  bool both = false;
  double tol = 1e-9;
};

std::vector<Meeting> meetings() {
  const Line diagonal{{0, 0, 0}, {4, 4, 0}}, stub{{0, 4, 0}, {1, 3, 0}};
  // A closed polyline first: its start is its end, which once passed it as a
  // straight path and lost every crossing.
  const LwPolyline square{{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true};
  const LwPolyline zig{{{0, 0}, {1, 1}, {2, 0}, {3, 1}, {4, 0}}};
  const Arc upperHalf{{0, 0, 0}, 1, 0, kPi};
  const Circle besideUnit{{1, 0, 0}, 1};  // meets the unit circle at (1/2, ±√3/2)
  const double h = std::sqrt(3.0) / 2, ex = 4 * std::sqrt(1 - 0.25);
  Polyline3d bent{{{{0, 0, 0}}, {{2, 2, 2}}, {{4, 0, 0}}}};
  const auto on = Intersect::kOnBothOperands;
  return {
      {"lines apart within their lengths", diagonal, stub, on, {}},
      {"the argument extended", diagonal, stub, Intersect::kExtendArg, {{2, 2, 0}}},
      {"this extended", stub, diagonal, Intersect::kExtendThis, {{2, 2, 0}}},
      {"crossing lines", diagonal, Line{{0, 4, 0}, {4, 0, 0}}, on, {{2, 2, 0}}},
      {"parallel lines never meet", diagonal, Line{{1, 0, 0}, {5, 4, 0}}, on, {}},
      {"a shared end counts once", diagonal, Line{{4, 4, 0}, {9, 0, 0}}, on, {{4, 4, 0}}},
      {"closed square and a line", square, Line{{-5, 4.5, 0}, {15, 4.5, 0}}, on, {{0, 4.5, 0}, {10, 4.5, 0}}, true},
      {"closed square and a short line", square, Line{{9.5, 4.5, 0}, {10.5, 4.5, 0}}, on, {{10, 4.5, 0}}},
      {"an arc meets only inside its sweep", upperHalf, besideUnit, on, {{0.5, h, 0}}},
      {"an extended arc is its whole circle", upperHalf, besideUnit, Intersect::kExtendThis, {{0.5, h, 0}, {0.5, -h, 0}}},
      {"tangent circles touch once", Circle{{0, 0, 0}, 1}, Circle{{3, 0, 0}, 2}, on, {{1, 0, 0}}},
      {"zigzag crossed four times", zig, Line{{-1, 0.5, 0}, {5, 0.5, 0}}, on,
       {{0.5, 0.5, 0}, {1.5, 0.5, 0}, {2.5, 0.5, 0}, {3.5, 0.5, 0}}},
      {"through a shared vertex: one point, not two", zig, Line{{1, 0, 0}, {1, 3, 0}}, on, {{1, 1, 0}}},
      // Clockwise semicircle above the chord, top at (1, 1): a tangent line.
      {"bulge touched at its top", LwPolyline{{{0, 0, -1}, {2, 0}}}, Line{{-1, 1, 0}, {3, 1, 0}}, on, {{1, 1, 0}}, false,
       1e-7},
      {"ellipse and line refined to the exact points", Ellipse{{0, 0, 0}, {4, 0, 0}, {0, 0, 1}, 0.5, 0, 2 * kPi},
       Line{{-5, 1, 0}, {5, 1, 0}}, on, {{-ex, 1, 0}, {ex, 1, 0}}, true},
      // Unit circles about the origin in the XY and XZ planes share (±1, 0, 0).
      {"circles in crossing planes", Circle{{0, 0, 0}, 1}, Circle{{0, 0, 0}, 1, 0, {0, 1, 0}}, on,
       {{-1, 0, 0}, {1, 0, 0}}},
      {"a vertical line through a flat circle", Circle{{0, 0, 0}, 2}, Line{{2, 0, -1}, {2, 0, 1}}, on, {{2, 0, 0}}},
      {"skew lines never meet", Line{{0, 1, 0}, {1, 0, 0}}, Line{{0, 0, 1}, {1, 1, 1}}, on, {}},
      {"a 3D polyline crossed by a vertical line", bent, Line{{1, 1, -3}, {1, 1, 3}}, on, {{1, 1, 1}}},
  };
}

TEST(Intersect, ClosedFormCrossingsForEveryPairingOfKinds) {
  for (const Meeting& m : meetings()) {
    SCOPED_TRACE(m.what);
    expectPoints(meet(m.a, m.b, m.mode), m.want, m.tol);
    if (m.both) expectPoints(meet(m.b, m.a, m.mode), m.want, m.tol);
  }
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

// Free-form pairs are refined until each point lies on both curves, counts
// as on both for queries by point, and the order of the pair does not matter.
TEST(Intersect, SplinesMeetAtPointsOnBothCurves) {
  Spline wave, a, b;
  kernel.fitSpline({{-3, 0, 0}, {-1, 0.5, 0}, {1, -0.5, 0}, {3, 0, 0}}, nullptr, nullptr, wave);
  kernel.fitSpline({{0, 0, 0}, {2, 2, 0}, {4, -1, 0}, {6, 1, 0}, {8, 0, 0}}, nullptr, nullptr, a);
  kernel.fitSpline({{0, 1, 0}, {3, -2, 0}, {5, 2, 0}, {8, -1, 0}}, nullptr, nullptr, b);
  const struct { const char* what; EntityData first, second; size_t atLeast, atMost; } cases[] = {
      {"spline and circle", wave, Circle{{0, 0, 0}, 2}, 2, 2},
      {"two splines", a, b, 3, 100},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    auto pts = meet(c.first, c.second);
    ASSERT_GE(pts.size(), c.atLeast);
    ASSERT_LE(pts.size(), c.atMost);
    for (const auto& p : pts)
      for (const EntityData* e : {&c.first, &c.second}) {
        Point3d q;
        double d;
        kernel.getClosestPointTo(*e, p, q);
        EXPECT_LT(q.distanceTo(p), 1e-9);
        EXPECT_EQ(kernel.getDistAtPoint(*e, p, d), ErrorStatus::eOk);
      }
    auto back = meet(c.second, c.first);
    ASSERT_EQ(back.size(), pts.size());
    for (size_t i = 0; i < pts.size(); ++i) EXPECT_LT(back[i].distanceTo(pts[i]), 1e-9);
  }
}

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
