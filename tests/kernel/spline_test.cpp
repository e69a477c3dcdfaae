// Fit-point interpolation, exact conic splines and spline queries.
#include "kernel_test.h"
#include "oracle.h"

namespace {

TEST(FitSpline, MatchesTheHostsControlPointsForTheReferenceFitPoints) {
  Spline s;
  ASSERT_EQ(kernel.fitSpline({{0, 0, 0}, {0, 10, 0}, {10, 10, 0}, {20, 10, 0}, {20, 0, 0}}, nullptr, nullptr, s),
            ErrorStatus::eOk);
  std::vector<Point3d> expected{{0, 0, 0},       {-0.8333, 4.2857, 0}, {-2.5, 12.8571, 0}, {10, 8.5714, 0},
                                {22.5, 12.8571, 0}, {20.8333, 4.2857, 0}, {20, 0, 0}};
  ASSERT_EQ(s.controlPoints.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR(s.controlPoints[i].x, expected[i].x, 1e-4) << i;
    EXPECT_NEAR(s.controlPoints[i].y, expected[i].y, 1e-4) << i;
  }
  // Knots stay in chord length: the end parameter is the total chord, 40.
  EXPECT_DOUBLE_EQ(endParam(s), 40.0);
  EXPECT_EQ(s.fitTolerance, 0.0);
  EXPECT_TRUE(s.flags & 8);  // planar
  // Fewer than two distinct points are refused.
  EXPECT_EQ(kernel.fitSpline({{1, 1, 0}, {1, 1, 0}}, nullptr, nullptr, s), ErrorStatus::eInvalidInput);
}

// Through every fit point; with the parameter in chord length given end
// tangents are the end derivatives, and natural ends have no curvature.
TEST(FitSpline, PassesThroughEveryFitPointWithGivenOrNaturalEnds) {
  std::vector<Point3d> fit;
  for (int i = 0; i < 12; ++i) fit.push_back({i * 1.7, std::sin(i * 0.9) * 3, 0.2 * i});
  const ge::Vector3d t0{0, 1, 0}, t1{1, 1, 0};  // the end derivative is the unit tangent
  for (bool natural : {false, true}) {
    SCOPED_TRACE(natural ? "natural ends" : "given end tangents");
    Spline s;
    ASSERT_EQ(kernel.fitSpline(fit, natural ? nullptr : &t0, natural ? nullptr : &t1, s), ErrorStatus::eOk);
    for (const auto& p : fit) {
      Point3d q;
      ASSERT_EQ(kernel.getClosestPointTo(s, p, q), ErrorStatus::eOk);
      EXPECT_LT(q.distanceTo(p), 1e-9);
    }
    for (double u : {s.knots.front(), s.knots.back()}) {
      double h = 1e-5, sign = u == s.knots.front() ? 1 : -1;
      ge::Vector3d a, b;
      ASSERT_EQ(kernel.getFirstDeriv(s, u, a), ErrorStatus::eOk);
      ASSERT_EQ(kernel.getFirstDeriv(s, u + sign * h, b), ErrorStatus::eOk);
      if (natural) {
        EXPECT_LT((b - a).length() / h, 1e-3);  // the second derivative by differences
      } else {
        EXPECT_LT((a - (sign > 0 ? t0 : t1).normalized()).length(), 1e-9);
      }
    }
  }
}

TEST(SplineLength, AgreesWithIndependentQuadrature) {
  Spline s;
  ASSERT_EQ(kernel.fitSpline({{0, 0, 0}, {3, 5, 1}, {7, -2, 2}, {12, 4, 0}, {15, 0, -1}}, nullptr, nullptr, s),
            ErrorStatus::eOk);
  double len = length(s);
  double oracle = 0;
  for (size_t i = 3; i + 4 < s.knots.size(); ++i)  // span by span: the speed has kinks in its derivatives at knots
    oracle += kerneltest::integrate(
        [&](double u) {
          ge::Vector3d d;
          kernel.getFirstDeriv(s, u, d);
          return d.length();
        },
        s.knots[i], s.knots[i + 1]);
  EXPECT_NEAR(len, oracle, 1e-7 * oracle);
  // Point at half the length splits the length in two.
  double param, half;
  ASSERT_EQ(kernel.getParamAtDist(s, len / 2, param), ErrorStatus::eOk);
  ASSERT_EQ(kernel.getDistAtParam(s, param, half), ErrorStatus::eOk);
  EXPECT_NEAR(half, len / 2, 1e-9 * len);
}

class ConicSpline : public ::testing::TestWithParam<EntityData> {};

TEST_P(ConicSpline, RationalFormLiesExactlyOnTheCurveAndSharesItsEnds) {
  const EntityData& e = GetParam();
  Spline s;
  ASSERT_EQ(kernel.getSpline(e, s), ErrorStatus::eOk);
  EXPECT_EQ(s.degree, 2);
  EXPECT_TRUE(s.isRational());
  for (const Point3d& p : samples(s, 40)) EXPECT_LT(distanceTo(e, p), 1e-9);
  auto ends = samples(e, 1), splineEnds = samples(s, 1);  // start and end
  EXPECT_LT(ends[0].distanceTo(splineEnds[0]), 1e-9);
  EXPECT_LT(ends[1].distanceTo(splineEnds[1]), 1e-9);
  EXPECT_NEAR(length(e), length(s), 1e-9 * length(e));
}

// Polylines have no spline of their own.
TEST(ConicSplines, PolylinesHaveNone) {
  Spline s;
  EXPECT_EQ(kernel.getSpline(LwPolyline{{{0, 0}, {1, 0}}}, s), ErrorStatus::eNotApplicable);
  EXPECT_EQ(kernel.getSpline(Polyline3d{}, s), ErrorStatus::eNotApplicable);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ConicSpline,
                         ::testing::Values(EntityData{Circle{{1, 2, 0}, 3}},
                                           EntityData{Arc{{0, 0, 1}, 2, 5.5, 1.0}},
                                           EntityData{Arc{{0, 0, 0}, 2, 0.2, 0.4, 0, {0, 0, -1}}},
                                           EntityData{Ellipse{{1, 1, 0}, {4, 3, 0}, {0, 0, 1}, 0.4, 0.5, 5.0}},
                                           EntityData{Ellipse{{0, 0, 0}, {2, 0, 0}, {0, 1, 1}, 0.5, 0, 2 * kPi}}));

// Precision sets the segments per span, the ends match and every vertex lies
// on the spline; a spline off its plane gives a 3D polyline.
TEST(SplineToPolyline, PrecisionSetsSegmentsPerSpanAndEndsMatch) {
  Spline s;
  ASSERT_EQ(kernel.fitSpline({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}}, nullptr, nullptr, s), ErrorStatus::eOk);
  EntityData out;
  ASSERT_EQ(kernel.splineToPolyline(s, 10, out), ErrorStatus::eOk);
  auto* pl = std::get_if<LwPolyline>(&out);
  ASSERT_NE(pl, nullptr);
  EXPECT_EQ(pl->vertices.size(), 3u * 10 + 1);
  EXPECT_NEAR(pl->vertices.back().x, 3, 1e-12);
  EXPECT_NEAR(pl->vertices.back().y, 1, 1e-12);
  // Every vertex lies on the spline.
  for (const auto& v : pl->vertices) {
    Point3d q;
    kernel.getClosestPointTo(s, {v.x, v.y, 0}, q);
    EXPECT_LT(q.distanceTo({v.x, v.y, 0}), 1e-9);
  }
  ASSERT_EQ(kernel.fitSpline({{0, 0, 0}, {1, 1, 1}, {2, 0, 0}, {3, 1, 2}}, nullptr, nullptr, s), ErrorStatus::eOk);
  ASSERT_EQ(kernel.splineToPolyline(s, 4, out), ErrorStatus::eOk);
  EXPECT_TRUE(std::holds_alternative<Polyline3d>(out));
}

TEST(SplineFitPolyline, GeneratedVerticesComeFirstAndTheFrameIsKept) {
  Polyline2d pl{{{{0, 0, 0}}, {{4, 0, 0}}, {{4, 4, 0}}, {{0, 4, 0}}}};
  ASSERT_EQ(kernel.fitPolyline2d(pl, 6, 8), ErrorStatus::eOk);
  EXPECT_TRUE(pl.splineFit);
  EXPECT_EQ(pl.curveType, PolyCurveType::kCubicSpline);
  size_t generated = 0, frame = 0;
  for (const auto& v : pl.vertices) (v.flags & kVertexSplineFrame ? frame : generated)++;
  EXPECT_EQ(frame, 4u);
  EXPECT_EQ(generated, 3u * 8 + 1);
  // Open: the curve runs through the first and last frame points.
  Point3d s, e;
  kernel.getStartPoint(pl, s), kernel.getEndPoint(pl, e);
  EXPECT_LT(s.distanceTo({0, 0, 0}), 1e-12);
  EXPECT_LT(e.distanceTo({0, 4, 0}), 1e-12);
  // Refitting with the quadratic type uses the same frame.
  ASSERT_EQ(kernel.fitPolyline2d(pl, 5, 4), ErrorStatus::eOk);
  EXPECT_EQ(pl.curveType, PolyCurveType::kQuadraticSpline);
  frame = 0;
  for (const auto& v : pl.vertices) frame += (v.flags & kVertexSplineFrame) ? 1 : 0;
  EXPECT_EQ(frame, 4u);
}

TEST(CurveFitPolyline, PointsOnACircleGiveArcsOfThatCircle) {
  Polyline2d pl;
  for (double a : {0.1, 0.5, 1.2, 1.6, 2.5, 2.9}) pl.vertices.push_back({{3 + 2 * std::cos(a), -1 + 2 * std::sin(a), 0}});
  pl.curveFit = true;
  ASSERT_EQ(kernel.fitPolyline2d(pl, 6, 8), ErrorStatus::eOk);
  EXPECT_EQ(pl.vertices.size(), 11u);
  for (size_t i = 0; i < pl.vertices.size(); ++i) EXPECT_EQ(pl.vertices[i].flags, i % 2 ? kVertexCurveFitExtra : 0);
  for (const Point3d& p : samples(pl, 100)) EXPECT_NEAR(std::hypot(p.x - 3, p.y + 1), 2, 1e-9);
}

TEST(CurveFitPolyline, ClosedFitPassesThroughTheFrameWithSmoothTangents) {
  Polyline2d pl{{{{0, 0, 0}}, {{4, 0, 0}}, {{5, 3, 0}}, {{1, 4, 0}}}, true};
  pl.curveFit = true;
  ASSERT_EQ(kernel.fitPolyline2d(pl, 6, 8), ErrorStatus::eOk);
  ASSERT_EQ(pl.vertices.size(), 8u);
  EXPECT_EQ(pl.vertices[2].position, (Point3d{4, 0, 0}));
  // Derivative directions agree on both sides of every vertex, frame and joint.
  for (int i = 1; i < 8; ++i) {
    ge::Vector3d before, after;
    kernel.getFirstDeriv(pl, i - 1e-9, before);
    kernel.getFirstDeriv(pl, i, after);
    EXPECT_GT(before.normalized().dot(after.normalized()), 1 - 1e-6) << i;
  }
  // Fitting again from the fitted polyline uses the same frame.
  auto once = pl.vertices;
  ASSERT_EQ(kernel.fitPolyline2d(pl, 6, 8), ErrorStatus::eOk);
  ASSERT_EQ(pl.vertices.size(), once.size());
  for (size_t i = 0; i < once.size(); ++i) EXPECT_LT(pl.vertices[i].position.distanceTo(once[i].position), 1e-12);
}

}  // namespace
