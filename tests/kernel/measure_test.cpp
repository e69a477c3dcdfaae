// Parameters, lengths, areas and derivatives against closed forms and
// independent quadrature.
#include "kernel_test.h"
#include "oracle.h"
#include "standalone/kernel/path_query.h"

namespace {

double signedArea(const EntityData& e) {
  auto path = standalone::kernel::pathOf(e);
  return standalone::kernel::signedArea(*path, *standalone::kernel::pathPlaneNormal(*path));
}

TEST(Parameters, FollowTheHostsConventions) {
  EXPECT_DOUBLE_EQ(endParam(Line{{1, 1, 0}, {4, 5, 0}}), 5.0);
  EXPECT_DOUBLE_EQ(endParam(Circle{{0, 0, 0}, 2}), 2 * kPi);
  // An arc across angle 0 ends above its start angle.
  EXPECT_DOUBLE_EQ(endParam(Arc{{0, 0, 0}, 1, 1.5 * kPi, 0.5 * kPi}), 2.5 * kPi);
  LwPolyline pl{{{0, 0}, {1, 0, 0.5}, {1, 1}, {0, 1}}};
  EXPECT_DOUBLE_EQ(endParam(pl), 3.0);
  pl.closed = true;
  EXPECT_DOUBLE_EQ(endParam(pl), 4.0);
  Polyline3d p3{{{{0, 0, 0}}, {{1, 0, 1}}, {{1, 1, 2}}}};
  EXPECT_DOUBLE_EQ(endParam(p3), 2.0);
  EXPECT_DOUBLE_EQ(endParam(Ellipse{{0, 0, 0}, {2, 0, 0}, {0, 0, 1}, 0.5, 1.0, 4.0}), 4.0);
}

TEST(Parameters, PointsOutsideTheRangeAreRefused) {
  Point3d p;
  EXPECT_EQ(kernel.getPointAtParam(Line{{0, 0, 0}, {1, 0, 0}}, 1.5, p), ErrorStatus::eInvalidInput);
  EXPECT_EQ(kernel.getPointAtDist(Line{{0, 0, 0}, {1, 0, 0}}, -0.5, p), ErrorStatus::eInvalidInput);
  double param;
  EXPECT_EQ(kernel.getParamAtPoint(Line{{0, 0, 0}, {1, 0, 0}}, {0.5, 0.1, 0}, param), ErrorStatus::ePointNotOnEntity);
  EXPECT_EQ(kernel.getStartParam(Text{}, param), ErrorStatus::eNotApplicable);
}

TEST(Parameters, PolylineParameterIsLinearInAngleAlongABulge) {
  LwPolyline pl{{{0, 0, std::tan(kPi / 8)}, {1, 1}}};  // counter-clockwise quarter circle about (0, 1)
  Point3d mid;
  ASSERT_EQ(kernel.getPointAtParam(pl, 0.5, mid), ErrorStatus::eOk);
  // From -90° to 0° about (0, 1): halfway in angle is at -45°.
  EXPECT_NEAR(mid.x, std::sqrt(0.5), 1e-12);
  EXPECT_NEAR(mid.y, 1 - std::sqrt(0.5), 1e-12);
  ge::Vector3d d;
  ASSERT_EQ(kernel.getFirstDeriv(pl, 0.5, d), ErrorStatus::eOk);
  EXPECT_NEAR(d.length(), kPi / 2, 1e-12);  // radius times the sweep per unit parameter
}

class EllipseRatio : public ::testing::TestWithParam<double> {};

TEST_P(EllipseRatio, LengthAreaAndInverseDistance) {
  double ratio = GetParam(), a = 3;
  Ellipse e{{1, -2, 0}, {a * std::cos(0.3), a * std::sin(0.3), 0}, {0, 0, 1}, ratio, 0.4, 5.1};
  double b = a * ratio;
  double oracle =
      kerneltest::integrate([&](double t) { return std::hypot(a * std::sin(t), b * std::cos(t)); }, 0.4, 5.1);
  EXPECT_NEAR(length(e), oracle, 1e-9 * oracle);
  // Sector area from the centre plus the triangle back to the chord's ends.
  double sector = a * b * (5.1 - 0.4) / 2;
  double tri = a * b * std::sin(5.1 - 0.4) / 2;  // signed: the chord cuts off the centre triangle
  EXPECT_NEAR(area(e), sector - tri, 1e-9 * a * b);
  Ellipse full = e;
  full.startParam = 0, full.endParam = 2 * kPi;
  EXPECT_NEAR(area(full), kPi * a * b, 1e-9 * a * b);
  for (double s : {0.0, 0.3 * oracle, 0.77 * oracle, oracle}) {
    Point3d p;
    double back;
    ASSERT_EQ(kernel.getPointAtDist(e, s, p), ErrorStatus::eOk);
    ASSERT_EQ(kernel.getDistAtPoint(e, p, back), ErrorStatus::eOk);
    EXPECT_NEAR(back, s, 1e-9 * oracle);
  }
}

INSTANTIATE_TEST_SUITE_P(Ratios, EllipseRatio, ::testing::Values(1.0, 0.5, 0.1, 0.01));

class ArcFamily : public ::testing::TestWithParam<std::tuple<double, double, bool>> {};

TEST_P(ArcFamily, LengthAndSegmentArea) {
  auto [r, sweep, flipped] = GetParam();
  Arc arc{{5, 7, 0}, r, 0.7, 0.7 + sweep, 0, flipped ? ge::Vector3d{0, 0, -1} : ge::Vector3d{0, 0, 1}};
  if (arc.endAngle > 2 * kPi) arc.endAngle -= 2 * kPi;
  EXPECT_NEAR(length(arc), r * sweep, 1e-9 * r * sweep);
  EXPECT_NEAR(area(arc), r * r * (sweep - std::sin(sweep)) / 2, 1e-9 * r * r);
}

INSTANTIATE_TEST_SUITE_P(Arcs, ArcFamily,
                         ::testing::Combine(::testing::Values(1e-3, 1.0, 250.0), ::testing::Values(0.1, kPi / 2, 3.0, 6.0),
                                            ::testing::Bool()));

TEST(Area, BulgedClosedPolylineIsSquarePlusHalfDiscAndOpenCurvesCloseWithAChord) {
  // Unit square whose top edge bulges outwards as a semicircle.
  LwPolyline pl{{{0, 0}, {2, 0}, {2, 2, 1}, {0, 2}}, true};
  EXPECT_NEAR(area(pl), 4 + kPi / 2, 1e-12);
  EXPECT_NEAR(length(pl), 6 + kPi, 1e-12);
  EXPECT_GT(signedArea(pl), 0);
  EntityData rev = pl;
  ASSERT_EQ(kernel.reverseCurve(rev), ErrorStatus::eOk);
  EXPECT_NEAR(signedArea(rev), -signedArea(pl), 1e-12);
  EXPECT_NEAR(area(rev), area(pl), 1e-12);
  // Open curves close with a chord.
  EXPECT_NEAR(area(LwPolyline{{{0, 0}, {4, 0}, {4, 3}}}), 6, 1e-12);
  EXPECT_NEAR(area(Line{{0, 0, 0}, {4, 0, 0}}), 0, 1e-15);
}

TEST(Area, ClosedSplineAgreesWithGreensTheoremQuadrature) {
  Spline s;
  ASSERT_EQ(kernel.fitSpline({{0, 0, 0}, {4, -1, 0}, {6, 3, 0}, {2, 5, 0}, {-1, 2, 0}, {0, 0, 0}}, nullptr, nullptr, s),
            ErrorStatus::eOk);
  double oracle = 0;
  for (size_t i = 3; i + 4 < s.knots.size(); ++i)
    oracle += kerneltest::integrate(
        [&](double u) {
          Point3d p;
          ge::Vector3d d;
          kernel.getPointAtParam(s, u, p), kernel.getFirstDeriv(s, u, d);
          return (p.x * d.y - p.y * d.x) / 2;
        },
        s.knots[i], s.knots[i + 1]);
  EXPECT_NEAR(area(s), std::abs(oracle), 1e-7 * std::abs(oracle));
}

// Distance to point and back, distance to parameter and back, and the batch
// call against single points, along bulges of both senses.
TEST(Distance, PolylineDistancesRoundTripAndBatchPointsMatchSinglePoints) {
  LwPolyline pl{{{0, 0, 0.3}, {3, 0, -0.7}, {5, 2}, {5, 6, 2.0}, {1, 6}}};
  for (int i = 0; i < 50; ++i) pl.vertices.push_back({1.0 - i, 6 + (i % 3) * 0.5, (i % 4 == 0) ? 0.4 : 0.0});
  double total = length(pl);
  std::vector<double> dists;
  for (int i = 0; i <= 97; ++i) dists.push_back(std::min(total, total * i / 97));
  std::vector<Point3d> batch;
  ASSERT_EQ(kernel.getPointsAtDists(pl, dists, batch), ErrorStatus::eOk);
  ASSERT_EQ(batch.size(), dists.size());
  for (size_t i = 0; i < dists.size(); ++i) {
    Point3d p;
    double back, param, fromParam;
    ASSERT_EQ(kernel.getPointAtDist(pl, dists[i], p), ErrorStatus::eOk);
    EXPECT_LT(p.distanceTo(batch[i]), 1e-12 * total);
    ASSERT_EQ(kernel.getDistAtPoint(pl, p, back), ErrorStatus::eOk);
    EXPECT_NEAR(back, dists[i], 1e-9 * total);
    ASSERT_EQ(kernel.getParamAtDist(pl, dists[i], param), ErrorStatus::eOk);
    ASSERT_EQ(kernel.getDistAtParam(pl, param, fromParam), ErrorStatus::eOk);
    EXPECT_NEAR(fromParam, dists[i], 1e-9 * total);
  }
  std::vector<double> descending{2.0, 1.0};
  EXPECT_EQ(kernel.getPointsAtDists(pl, descending, batch), ErrorStatus::eInvalidInput);
}

}  // namespace
