// PLBLENDS and PLMAP4 end to end: the blend's joints measured on the spline
// the host evaluates, and the mapped curves against a Coons patch computed here.
#include <algorithm>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "command_session.h"
#include "geom/curve_kind.h"

namespace commands_test {
namespace {

constexpr double kPi = std::numbers::pi;

struct Frame {
  ge::Point3d point;
  ge::Vector3d tangent;    // unit, in the direction of travel
  ge::Vector3d curvature;  // d²C/ds²
};

// The curve's frame at one end from the host's derivatives.
Frame frameAt(const host::CurveServices& curves, const host::EntityData& c, bool atStart) {
  double t = 0;
  atStart ? curves.getStartParam(c, t) : curves.getEndParam(c, t);
  Frame f;
  ge::Vector3d d1, d2;
  curves.getPointAtParam(c, t, f.point);
  curves.getFirstDeriv(c, t, d1);
  EXPECT_EQ(curves.getSecondDeriv(c, t, d2), host::ErrorStatus::eOk);
  double speed = d1.length();
  f.tangent = d1 / speed;
  f.curvature = (d2 - f.tangent * d2.dot(f.tangent)) / (speed * speed);
  return f;
}

struct BlendCase {
  const char* name;
  host::EntityData first, second;
  bool firstAtStart, secondAtStart;  // which ends lie nearer each other
};

host::Spline fitSplineThrough(const ge::PointList& pts) {
  host::Spline s;
  s.fitPoints = pts;
  s.flags = 8;
  return s;
}

host::LwPolyline bulgedEnd() {
  host::LwPolyline pl = lwThrough({{0, 0}, {5, 0}, {10, 0}});
  pl.vertices[1].bulge = 0.4;
  return pl;
}

const BlendCase kBlendCases[] = {
    {"LineToArc", host::Line{{0, 0, 0}, {10, 0, 0}}, host::Arc{{20, 8, 0}, 4, kPi, 5 * kPi / 3}, false, true},
    {"ArcToEllipticalArc", host::Arc{{0, 0, 0}, 10, 0, kPi / 2},
     host::Ellipse{{30, 0, 0}, {5, 0, 0}, ge::kZAxis, 0.5, 2 * kPi / 3, 5 * kPi / 3}, true, true},
    {"BulgedPolylineToSpline", bulgedEnd(), fitSplineThrough({{20, 5, 0}, {25, 8, 0}, {30, 4, 0}, {35, 6, 0}}), false,
     true},
    {"ReversedLineToLine", host::Line{{10, 0, 0}, {0, 0, 0}}, host::Line{{30, 12, 0}, {20, 5, 0}}, true, false},
};

class Blend : public CommandTest {};
INSTANTIATE_TEST_SUITE_P(Languages, Blend, ::testing::Values(Language::kEnglish, Language::kChinese), languageName);

TEST_P(Blend, JointsContinueTheTangentsAndInSmoothModeTheCurvatures) {
  for (const BlendCase& c : kBlendCases) s.add(c.first), s.add(c.second);
  s.start();
  const host::CurveServices& curves = s.host().host().curves;
  auto sources = s.entities();
  for (bool smooth : {false, true}) {
    for (size_t i = 0; i < std::size(kBlendCases); ++i) {
      const BlendCase& c = kBlendCases[i];
      SCOPED_TRACE(std::string(c.name) + (smooth ? " smooth" : " tangent"));
      std::string out = s.run("PLBLENDS\n" + pickOf(sources[2 * i].id) + "\n" + pickOf(sources[2 * i + 1].id) +
                              "\n" + (smooth ? "S" : "T") + "\n");
      EXPECT_TRUE(s.says(out, smooth ? s.pick("\nSmooth blend curve drawn.", "\n已绘制平滑连接曲线。")
                                     : s.pick("\nTangent blend curve drawn.", "\n已绘制相切连接曲线。")));
      host::Entity blend = s.entities().back();
      ASSERT_TRUE(std::holds_alternative<host::Spline>(blend.data));
      EXPECT_EQ(std::get<host::Spline>(blend.data).degree, smooth ? 5 : 3);

      Frame from = frameAt(curves, sources[2 * i].data, c.firstAtStart);
      Frame to = frameAt(curves, sources[2 * i + 1].data, c.secondAtStart);
      Frame start = frameAt(curves, blend.data, true), end = frameAt(curves, blend.data, false);
      const double chord = from.point.distanceTo(to.point);
      EXPECT_LT(start.point.distanceTo(from.point), 1e-9 * chord);
      EXPECT_LT(end.point.distanceTo(to.point), 1e-9 * chord);
      // Leaving the first curve the blend runs on from it; entering the second it runs into it.
      EXPECT_LT((start.tangent - (c.firstAtStart ? -from.tangent : from.tangent)).length(), 1e-9);
      EXPECT_LT((end.tangent - (c.secondAtStart ? to.tangent : -to.tangent)).length(), 1e-9);
      if (smooth) {
        // Relative to the larger of the curvature and the chord's 1/chord.
        EXPECT_LT((start.curvature - from.curvature).length(), 1e-9 * std::max(from.curvature.length(), 1 / chord));
        EXPECT_LT((end.curvature - to.curvature).length(), 1e-9 * std::max(to.curvature.length(), 1 / chord));
      }
    }
  }
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(std::count(dump.begin(), dump.end(), "SPLINE degree=3 fit  control 4"), 4);
  EXPECT_EQ(std::count(dump.begin(), dump.end(), "SPLINE degree=5 fit  control 6"), 4);
}

TEST_P(Blend, RefusesClosedCurvesOtherObjectsTheSameCurveAndTouchingEnds) {
  host::ObjectId circle = s.add(host::Circle{{0, 0, 0}, 5});
  host::ObjectId label = s.add(host::Text{{0, 0, 0}, {0, 0, 0}, 1, "A"});
  host::ObjectId a = s.add(host::Line{{10, 0, 0}, {20, 0, 0}});
  host::ObjectId b = s.add(host::Line{{20, 0, 0}, {30, 10, 0}});
  host::ObjectId c = s.add(host::Line{{40, 0, 0}, {50, 0, 0}});
  s.start();
  const size_t before = s.entities().size();
  std::string out = s.run("PLBLENDS\n" + pickOf(circle) + "\n" + pickOf(label) + "\n500,500\n" + pickOf(a) + "\n" +
                          pickOf(a) + "\n" + pickOf(b) + "\n\n");
  EXPECT_TRUE(s.says(out, "\nThe curve picked is closed and has no ends to blend.", "\n所选曲线是闭合的，没有可连接的端点。"));
  EXPECT_TRUE(s.says(out, "\nThe object picked is not a line, arc, polyline, spline or elliptical arc.",
                     "\n所选对象不是直线、圆弧、多段线、样条曲线或椭圆弧。"));
  EXPECT_TRUE(s.says(out, "\nPlease pick a different curve.", "\n请选择另一条曲线。"));
  EXPECT_EQ(countOf(out, s.pick("\nSelect the first curve to blend:", "\n请选择要连接的第一条曲线:")), 4u)
      << "the closed curve, the text and the miss ask again";
  EXPECT_TRUE(s.says(out, "\nThe nearer ends already touch; no blend curve is needed.",
                     "\n两条曲线相近的端点已经重合，无需连接曲线。"));
  EXPECT_TRUE(s.says(out, "\nContinuity [Tangent/Smooth] <Tangent>:", "\n连续性 [相切(T)/平滑(S)] <相切>:"));
  EXPECT_EQ(s.entities().size(), before);
  // Enter at the continuity keeps Tangent; a cancel at a pick ends quietly.
  s.run("PLBLENDS\n" + pickOf(a) + "\n" + pickOf(c) + "\n\n");
  ASSERT_EQ(s.entities().size(), before + 1);
  EXPECT_EQ(std::get<host::Spline>(s.entities().back().data).degree, 3);
  out = s.run("PLBLENDS\n^C\n");
  EXPECT_EQ(s.entities().size(), before + 1);
  EXPECT_EQ(out.find("drawn"), std::string::npos);
}

// The fence: bottom and right drawn in the patch's directions, the top an
// arc drawn right to left bulging upwards, the left drawn downwards.
constexpr double kBulge = 0.4;
host::LwPolyline topArc() {
  host::LwPolyline pl = lwThrough({{100, 60}, {0, 60}});
  pl.vertices[0].bulge = kBulge;
  return pl;
}

// The Coons patch of that fence, computed from its sides' closed forms.
ge::Point3d expectedPatch(double u, double v) {
  const double sweep = 4 * std::atan(kBulge), r = 50 / std::sin(sweep / 2);
  const double cy = 60 - r * std::cos(sweep / 2), phi = kPi / 2 + sweep / 2 - sweep * u;
  ge::Point3d bottom{100 * u, 0, 0}, top{50 + r * std::cos(phi), cy + r * std::sin(phi), 0};
  ge::Point3d left{0, 60 * v, 0}, right{100, 60 * v, 0};
  double x = (1 - v) * bottom.x + v * top.x + (1 - u) * left.x + u * right.x - u * 100;
  double y = (1 - v) * bottom.y + v * top.y + (1 - u) * left.y + u * right.y - v * 60;
  return {x, y, 0};
}

// Distance to the patch's iso-curve v = const: the nearest of 1001 samples,
// then a ternary search on u about it.
double distanceToIsoCurve(const ge::Point3d& p, double v) {
  constexpr int kSamples = 1000;
  int nearest = 0;
  for (int i = 0; i <= kSamples; ++i)
    if (p.distanceTo(expectedPatch(double(i) / kSamples, v)) < p.distanceTo(expectedPatch(double(nearest) / kSamples, v)))
      nearest = i;
  double lo = std::max(0.0, (nearest - 1.0) / kSamples), hi = std::min(1.0, (nearest + 1.0) / kSamples);
  auto d = [&](double u) { return p.distanceTo(expectedPatch(u, v)); };
  for (int k = 0; k < 100; ++k) {
    double a = lo + (hi - lo) / 3, b = hi - (hi - lo) / 3;
    if (d(a) < d(b))
      hi = b;
    else
      lo = a;
  }
  return d((lo + hi) / 2);
}

class Map4 : public CommandTest {
 protected:
  void TearDown() override { geom::setCurveKindIsSpline(true); }
  std::vector<host::ObjectId> fence;
  void addFence() {
    fence = {s.add(host::Line{{0, 0, 0}, {100, 0, 0}}), s.add(host::Line{{100, 0, 0}, {100, 60, 0}}),
             s.add(topArc()), s.add(host::Line{{0, 60, 0}, {0, 0, 0}})};
  }
  std::string fenceAnswers() {
    std::string a;
    for (host::ObjectId id : fence) a += pickOf(id) + "\n";
    return a;
  }
};
INSTANTIATE_TEST_SUITE_P(Languages, Map4, ::testing::Values(Language::kEnglish, Language::kChinese), languageName);

// The stated tolerance: a ten-thousandth of the fence's size, whose extents
// are 100 by 80 (the top arc rises by bulge times half its chord, 20).
const double kMapTolerance = 1e-4 * std::hypot(100.0, 80.0);

TEST_P(Map4, CornersGoExactlyToTheFenceCornersAndAStraightLineToAnIsoCurve) {
  geom::setCurveKindIsSpline(false);
  host::ObjectId frame = s.add(lwThrough({{200, 0}, {300, 0}, {300, 40}, {200, 40}}, true));
  host::ObjectId across = s.add(host::Line{{200, 10, 0}, {300, 10, 0}});
  addFence();
  s.start();
  std::string out = s.run("PLMAP4\n" + selectionOf({frame, across}) + fenceAnswers());
  EXPECT_TRUE(s.says(out, "Please select Curves to map >\n", "请选择要映射的线条>\n"));
  EXPECT_TRUE(s.says(out, "\nPick the bottom curve of the fence:", "\n请选择边界的下边曲线:"));
  EXPECT_TRUE(s.says(out, "\nPick the left curve of the fence:", "\n请选择边界的左边曲线:"));
  EXPECT_TRUE(s.says(out, s.processed(2)));
  auto made = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(made.size(), 4u) << "the source frame, the fence's top and the two results";
  ge::PointList box = verticesOf(made[2]), line = verticesOf(made[3]);
  EXPECT_TRUE(std::get<host::LwPolyline>(made[2].data).closed);
  const ge::Point3d corners[] = {{0, 0, 0}, {100, 0, 0}, {100, 60, 0}, {0, 60, 0}};
  for (const ge::Point3d& corner : corners) {
    double nearest = 1e300;
    for (const auto& p : box) nearest = std::min(nearest, p.distanceTo(corner));
    EXPECT_LT(nearest, 1e-9) << corner.x << "," << corner.y;
  }
  // Every vertex of the mapped line lies on the iso-curve v = 1/4, and so does
  // every segment within the tolerance (its midpoint is the farthest from the arc-like curve).
  ASSERT_GT(line.size(), 2u);
  for (size_t i = 0; i < line.size(); ++i) {
    EXPECT_LT(distanceToIsoCurve(line[i], 0.25), 1e-6) << i;
    if (i + 1 < line.size()) {
      ge::Point3d mid{(line[i].x + line[i + 1].x) / 2, (line[i].y + line[i + 1].y) / 2, 0};
      EXPECT_LT(distanceToIsoCurve(mid, 0.25), kMapTolerance) << i;
    }
  }
  EXPECT_LT(line.front().distanceTo(expectedPatch(0, 0.25)), 1e-9);
  EXPECT_LT(line.back().distanceTo(expectedPatch(1, 0.25)), 1e-9);
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[dump.size() - 2].rfind("LWPOLYLINE closed=0 width=0 points 0.000000,15.000000,0.000000;", 0), 0u)
      << dump[dump.size() - 2];
}

TEST_P(Map4, SplinesByTheCurveKindFlagAndClearMessagesForAnOpenFenceOrAFlatSelection) {
  host::ObjectId wave = s.add(lwThrough({{200, 0}, {220, 40}, {240, 0}, {260, 40}}));
  host::ObjectId flat = s.add(host::Line{{0, 100, 0}, {50, 100, 0}});
  host::ObjectId ring = s.add(host::Circle{{0, 200, 0}, 5});
  addFence();
  host::ObjectId shortLeft = s.add(host::Line{{0, 59, 0}, {0, 0, 0}});
  s.start();
  const size_t before = s.entities().size();
  std::string out = s.run("PLMAP4\n" + selectionOf({wave}) + pickOf(fence[0]) + "\n" + pickOf(ring) + "\n" +
                          pickOf(fence[1]) + "\n" + pickOf(fence[2]) + "\n" + pickOf(shortLeft) + "\n");
  EXPECT_TRUE(s.says(out, "\nThe fence is made of open curves; please pick another.", "\n边界须由开放曲线组成，请另选一条。"));
  EXPECT_TRUE(s.says(out, "\nThe four fence curves do not meet end to end; nothing was mapped.",
                     "\n四条边界曲线首尾不相接，未做映射。"));
  out = s.run("PLMAP4\n" + selectionOf({flat}) + fenceAnswers());
  EXPECT_TRUE(s.says(out, "\nThe selected curves have no width or no height to map from.",
                     "\n所选曲线的范围没有宽度或高度，无法映射。"));
  EXPECT_EQ(s.entities().size(), before);
  // The flag at its initial value, spline: the mapped wave is a fitted spline through its corners.
  s.run("PLMAP4\n" + selectionOf({wave, fence[0]}) + fenceAnswers());
  ASSERT_EQ(s.entities().size(), before + 1) << "the fence in the selection is not mapped";
  const host::Spline spline = std::get<host::Spline>(s.entities().back().data);
  EXPECT_LT(spline.fitPoints.front().distanceTo({0, 0, 0}), 1e-9);
  EXPECT_LT(spline.fitPoints.back().distanceTo(expectedPatch(1, 1)), 1e-9);
}

}  // namespace
}  // namespace commands_test
