// The arithmetic under the pictures: OCS and arcs, bulges, NURBS, extents,
// views, colours and text codes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "standalone/render/color.h"
#include "standalone/render/nurbs.h"
#include "standalone/render/projection.h"
#include "standalone/render/scene.h"
#include "standalone/render/text_metrics.h"
#include "standalone/render/view.h"

using namespace standalone;
constexpr double kPi = std::numbers::pi;

namespace {
// The point of a projected or bulge arc at angle t.
template <class Arc>
ge::Point2d arcPoint(const Arc& a, double t) {
  return {a.center.x + a.radius * std::cos(t), a.center.y + a.radius * std::sin(t)};
}
// The point got lies within tol of want in both coordinates.
void expectNear(ge::Point2d got, ge::Point2d want, double tol) {
  EXPECT_NEAR(got.x, want.x, tol);
  EXPECT_NEAR(got.y, want.y, tol);
}
}  // namespace

// The mirrored normal (0,0,-1) is checked through the arc it turns around (ProjectArc);
// a tilted one here, where a transposed frame would show.
TEST(Ocs, ANormalOffTheZAxisUsesZCrossNForItsXAxis) {
  ge::Vector3d n = ge::Vector3d{1, 0, 1}.normalized();
  ge::Vector3d x2 = ocsToWorld(n).apply(ge::kXAxis);
  EXPECT_NEAR(x2.dot(n), 0, 1e-12);
  EXPECT_NEAR(x2.y, 1, 1e-12);
}

TEST(ProjectArc, MirroredArcRunsClockwiseThroughTheMirroredQuadrant) {
  ge::Matrix3d ocs = ocsToWorld({0, 0, -1});
  auto arc = projectArc({}, {0, 0, 0}, ocs.apply(ge::kXAxis), ocs.apply(ge::kYAxis), 10, 0, kPi / 2);
  ASSERT_TRUE(arc);
  EXPECT_FALSE(arc->ccw);
  expectNear(arcPoint(*arc, arc->startAngle), {-10, 0}, 1e-9);
  expectNear(arcPoint(*arc, arc->endAngle), {0, 10}, 1e-9);
  Box2d box;
  addPathExtents(Path{{PathArc{*arc}}}, box);
  EXPECT_NEAR(box.minX, -10, 1e-9);
  EXPECT_NEAR(box.maxX, 0, 1e-9);
  EXPECT_NEAR(box.minY, 0, 1e-9);
}

TEST(ProjectArc, UnequalScaleOrTiltGivesNoCircle) {
  ge::Matrix3d stretch;
  stretch(0, 0) = 2;
  EXPECT_FALSE(projectArc(stretch, {}, ge::kXAxis, ge::kYAxis, 1, 0, 1));
  ge::Matrix3d ocs = ocsToWorld(ge::Vector3d{1, 0, 1}.normalized());
  EXPECT_FALSE(projectArc({}, {}, ocs.apply(ge::kXAxis), ocs.apply(ge::kYAxis), 1, 0, 1));
  // A rotation and uniform scale keep it a circle, with the radius scaled.
  auto turned = projectArc(ge::Matrix3d::rotation(0.3, ge::kZAxis) * ge::Matrix3d::scaling(3), {1, 0, 0}, ge::kXAxis,
                           ge::kYAxis, 2, 0, 1);
  ASSERT_TRUE(turned);
  EXPECT_NEAR(turned->radius, 6, 1e-12);
  EXPECT_NEAR(turned->startAngle, 0.3, 1e-12);
  EXPECT_TRUE(turned->ccw);
}

TEST(Bulge, SemicirclesAndDirection) {
  // Counter-clockwise from (0,0) to (2,0) passes below the chord, clockwise above it.
  for (double bulge : {1.0, -1.0}) {
    auto arc = bulgeToArc({0, 0}, {2, 0}, bulge);
    ASSERT_TRUE(arc);
    expectNear(arc->center, {1, 0}, 1e-12);
    EXPECT_NEAR(arc->radius, 1, 1e-12);
    EXPECT_EQ(arc->ccw, bulge > 0);
    EXPECT_NEAR(arcPoint(*arc, (arc->startAngle + arc->endAngle) / 2).y, -bulge, 1e-12);
  }
  // A quarter arc: bulge tan(pi/8), centre at distance r from both ends.
  auto quarter = bulgeToArc({1, 0}, {0, 1}, std::tan(kPi / 8));
  ASSERT_TRUE(quarter);
  expectNear(quarter->center, {0, 0}, 1e-12);
  EXPECT_NEAR(quarter->endAngle - quarter->startAngle, kPi / 2, 1e-12);
  EXPECT_FALSE(bulgeToArc({0, 0}, {1, 0}, 0));
}

TEST(Nurbs, RationalQuarterCircleAndCubicBezierSampleOntoTheirExactCurves) {
  ge::Nurbs quarter{2, {0, 0, 0, 1, 1, 1}, {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {1, std::sqrt(0.5), 1}};
  auto arc = sampleNurbs(quarter, 8);
  ASSERT_TRUE(arc);
  for (const ge::Point3d& p : *arc) EXPECT_NEAR(std::hypot(p.x, p.y), 1, 1e-12);
  std::vector<ge::Point3d> p{{0, 0, 0}, {1, 3, 0}, {3, 3, 1}, {4, 0, 0}};
  auto bezier = sampleNurbs({3, {2, 2, 2, 2, 7, 7, 7, 7}, p, {}}, 5);
  ASSERT_TRUE(bezier);
  ASSERT_EQ(bezier->size(), 6u);
  for (int i = 0; i <= 5; ++i) {
    double u = i / 5.0;
    double b0 = std::pow(1 - u, 3), b1 = 3 * u * (1 - u) * (1 - u), b2 = 3 * u * u * (1 - u), b3 = u * u * u;
    const ge::Point3d& q = (*bezier)[static_cast<std::size_t>(i)];
    EXPECT_NEAR(q.x, b0 * p[0].x + b1 * p[1].x + b2 * p[2].x + b3 * p[3].x, 1e-12);
    EXPECT_NEAR(q.y, b0 * p[0].y + b1 * p[1].y + b2 * p[2].y + b3 * p[3].y, 1e-12);
    EXPECT_NEAR(q.z, b2, 1e-12);
  }
}

TEST(Nurbs, MultiSpanSamplesAreContinuousAndEndAtTheEnds) {
  ge::Nurbs c{2, {0, 0, 0, 1, 2, 3, 3, 3}, {{0, 0, 0}, {1, 2, 0}, {2, 0, 0}, {3, 2, 0}, {4, 0, 0}}, {}};
  auto pts = sampleNurbs(c, 10);
  ASSERT_TRUE(pts);
  EXPECT_EQ(pts->size(), 31u);
  EXPECT_EQ(pts->front(), (ge::Point3d{0, 0, 0}));
  EXPECT_NEAR(pts->back().x, 4, 1e-12);
  for (std::size_t i = 1; i < pts->size(); ++i) EXPECT_LT((*pts)[i].distanceTo((*pts)[i - 1]), 0.5);
}

// Data the drawing once sampled although the kernel refused it (so pictures
// and measurements disagreed): now both refuse, and the picture falls back.
TEST(Nurbs, DataTheKernelRefusesIsDrawnThroughFitPointsThenControlPoints) {
  const double inf = std::numeric_limits<double>::infinity();
  host::Spline s{.degree = 3, .knots = {0, 0, 0, 1, 1, 1},  // two short
                 .controlPoints = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}}, .fitPoints = {{0, 0, 0}, {5, 5, 0}}};
  EXPECT_EQ(splineDrawingPoints(s), s.fitPoints);
  s.fitPoints.clear();
  EXPECT_EQ(splineDrawingPoints(s), s.controlPoints);
  struct Bad {
    const char* what;
    ge::Nurbs curve;
  };
  const ge::PointList four = s.controlPoints;
  for (const Bad& bad : {Bad{"decreasing knots", {3, {0, 0, 0, 0, 2, 1, 1, 1}, four, {}}},
                         Bad{"zero weight", {3, {0, 0, 0, 0, 1, 1, 1, 1}, four, {1, 0, 1, 1}}},
                         Bad{"infinite weight", {3, {0, 0, 0, 0, 1, 1, 1, 1}, four, {1, inf, 1, 1}}},
                         Bad{"infinite control point", {3, {0, 0, 0, 0, 1, 1, 1, 1},
                                                        {{0, 0, 0}, {inf, 1, 0}, {2, 0, 0}, {3, 1, 0}}, {}}}}) {
    EXPECT_FALSE(sampleNurbs(bad.curve, 4)) << bad.what;
    host::Spline drawn{.degree = bad.curve.degree, .knots = bad.curve.knots,
                       .controlPoints = bad.curve.controlPoints, .weights = bad.curve.weights};
    EXPECT_EQ(splineDrawingPoints(drawn), bad.curve.controlPoints) << bad.what;
  }
  // A degree beyond the evaluator's work arrays is refused rather than overrun.
  ge::PointList many(30, ge::Point3d{});
  for (std::size_t i = 0; i < many.size(); ++i) many[i] = {static_cast<double>(i), 0, 0};
  std::vector<double> knots(many.size() + 27, 0.0);
  std::fill(knots.begin() + 27, knots.end(), 1.0);
  std::fill(knots.begin() + 27, knots.begin() + 30, 0.5);
  EXPECT_FALSE(sampleNurbs({26, knots, many, {}}, 4));
}

TEST(Helix, BuiltFromAxisDataWhenTheSplineIsEmpty) {
  host::Helix h{.axisBase = {0, 0, 0}, .startPoint = {2, 0, 0}, .topRadius = 4, .turns = 2, .turnHeight = 1.5};
  ge::PointList pts = helixDrawingPoints(h);
  ASSERT_GE(pts.size(), 100u);
  EXPECT_NEAR(pts.front().distanceTo({2, 0, 0}), 0, 1e-12);
  EXPECT_NEAR(pts.back().distanceTo({4, 0, 3}), 0, 1e-9);
  // A counter-clockwise helix turns from +X towards +Y first.
  EXPECT_GT(pts[5].y, 0);
  h.counterClockwise = false;
  EXPECT_LT(helixDrawingPoints(h)[5].y, 0);
}

TEST(PointGlyph, SizeRules) {
  EXPECT_DOUBLE_EQ(markerSize({.size = 2.5}, 100), 2.5);  // absolute drawing units
  EXPECT_DOUBLE_EQ(markerSize({.size = 0}, 100), 5);      // 5 % of the view height
  EXPECT_DOUBLE_EQ(markerSize({.size = -10}, 40), 4);     // 10 % of the view height
}

TEST(View, FitKeepsTheMarginAndMapsBothWays) {
  Box2d box;
  box.add(-10, 0);
  box.add(30, 10);
  PageRect page{0, 0, 200, 100};
  ViewTransform v = fitView(box, page, 0.1);
  ge::Point2d lo = v.toPage({-10, 0}), hi = v.toPage({30, 10});
  EXPECT_NEAR(lo.x, 20, 1e-9);  // width limits: 160 px for 40 units
  EXPECT_NEAR(hi.x, 180, 1e-9);
  EXPECT_GT(lo.y, hi.y);  // y up in the drawing is y down on the page
  expectNear(v.toDrawing(v.toPage({3.5, -7})), {3.5, -7}, 1e-12);
  // Degenerate boxes still give a finite scale.
  Box2d point;
  point.add(5, 5);
  EXPECT_TRUE(std::isfinite(fitView(point, page, 0.1).scale));
  EXPECT_TRUE(std::isfinite(fitView(Box2d{}, page, 0.1).scale));
}

TEST(Color, PaletteAndResolution) {
  // 7 is white on the host's dark screen, black on paper; 0 and 300 are no palette colours.
  const std::pair<int, Rgb> palette[] = {{1, {1, 0, 0}}, {5, {0, 0, 1}}, {7, kBlack},
                                         {8, packedToRgb(0x808080)}, {0, kBlack}, {300, kBlack}};
  for (const auto& [index, rgb] : palette) EXPECT_EQ(aciToRgb(index), rgb) << index;
  Rgb green{0, 1, 0};
  EXPECT_EQ(resolveColor({256, std::nullopt}, green, host::Color{3, std::nullopt}), green);
  EXPECT_EQ(resolveColor({256, std::nullopt}, kBlack, std::nullopt), kBlack);
  EXPECT_EQ(resolveColor({0, std::nullopt}, aciToRgb(5), std::nullopt), aciToRgb(5));
  EXPECT_EQ(resolveColor({1, 0x00FF00}, kBlack, std::nullopt), green);  // true colour wins
}

TEST(TextMeasurer, AdvanceScalesAndWrapRespectsTheWidth) {
  TextMeasurer m;
  double one = m.advance("Corvane", 1), two = m.advance("Corvane", 2);
  EXPECT_GT(one, 3);  // seven letters are several capital heights wide
  EXPECT_NEAR(two, 2 * one, 1e-9);
  EXPECT_NEAR(m.advance("abab", 1), 2 * m.advance("ab", 1), 1e-6);
  EXPECT_EQ(m.advance("", 1), 0);

  std::string text = "the quick brown fox jumps over the lazy dog";
  double width = m.advance("the quick brown", 1) * 1.01;
  auto lines = m.wrap(text, 1, width);
  ASSERT_GE(lines.size(), 3u);
  std::string joined;
  for (const auto& line : lines) {
    EXPECT_LE(m.advance(line, 1), width) << line;
    EXPECT_FALSE(line.empty());
    joined += (joined.empty() ? "" : " ") + line;
  }
  EXPECT_EQ(joined, text);
  EXPECT_EQ(lines[0], "the quick brown");
  // A word wider than the width stands alone instead of vanishing.
  auto narrow = m.wrap("a extraordinarily b", 1, m.advance("a", 1));
  EXPECT_EQ(narrow, (std::vector<std::string>{"a", "extraordinarily", "b"}));
  // CJK text breaks between characters.
  auto cjk = m.wrap("\u4E2D\u6587\u4E2D\u6587", 1, m.advance("\u4E2D\u6587", 1) * 1.01);
  EXPECT_EQ(cjk, (std::vector<std::string>{"\u4E2D\u6587", "\u4E2D\u6587"}));
}
