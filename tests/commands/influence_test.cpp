// PLAFFECT, plAffectMoveX and plAffClick end to end. Expected positions are
// worked out here from the fading rule: a point at r (<= d) from the
// crossing of its horizontal with the influence curve moves away from it by
// d/2 * ((d - r) / d)^1.5 * s.
#include <cmath>
#include <cstdio>
#include <numbers>

#include <gtest/gtest.h>

#include "command_session.h"

namespace commands_test {
namespace {

constexpr double kPi = std::numbers::pi;

class Influence : public CommandTest {
 protected:
  // A long vertical influence line at x = 10.
  host::ObjectId wall() { return s.add(host::Line{{10, -1000, 0}, {10, 1000, 0}}); }
  // The answers after the two selections: strength, distance, move, rotate, scale, rigid.
  static std::string answers(const std::string& strength, const std::string& distance, const char* move,
                             const char* rotate, const char* scale, const char* rigid) {
    return strength + "\n" + distance + "\n" + move + "\n" + rotate + "\n" + scale + "\n" + rigid + "\n";
  }
  std::string plAffect(host::ObjectId influence, std::initializer_list<host::ObjectId> affected,
                       const std::string& rest) {
    return s.run("PLAFFECT\n" + pickOf(influence) + "\n\n" + selectionOf(affected) + rest);
  }
  // Starts the session with a view 100 high, so a distance of 10 stands.
  void begin() {
    s.start();
    s.run("ZOOM\nC\n0,0\n100\n");
  }
  host::Circle circle(host::ObjectId id) { return std::get<host::Circle>(s.read(id)->data); }
  host::Line line(host::ObjectId id) { return std::get<host::Line>(s.read(id)->data); }
};

INSTANTIATE_TEST_SUITE_P(Languages, Influence, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

// Shift of a rigid object's centre at r from the crossing, d = 10.
double shiftAt(double r, double strength) { return 5 * std::pow((10 - r) / 10, 1.5) * strength; }

TEST_P(Influence, RigidObjectsMoveAndScaleByTheirDistanceFromTheCurve) {
  struct Case {
    const char* what;
    double y;              // the circle of radius 1 sits at (8, y) unless centreX says otherwise
    double centreX;
    std::string strength;  // as typed
    const char* move;
    const char* scale;
    double wantX, wantRadius;
  };
  const double near = std::sqrt(std::sin(0.1 * kPi));  // |C - K| = 2 of d = 10
  const Case cases[] = {
      {"full strength", 0, 8, "10", "Y", "N", 8 - shiftAt(2, 1.0), 1},
      {"Enter gives 3", 100, 8, "", "Y", "N", 8 - shiftAt(2, 0.3), 1},
      {"15 acts as 10", 200, 8, "15", "Y", "N", 8 - shiftAt(2, 1.0), 1},
      {"scale only", 300, 8, "10", "N", "Y", 8, near},
      {"at r = d nothing moves, size kept", 400, 0, "10", "Y", "Y", 0, 1},
      {"right of the curve moves right", 500, 13, "5", "Y", "N", 13 + shiftAt(3, 0.5), 1},
  };
  host::ObjectId influence = wall();
  std::vector<host::ObjectId> circles;
  for (const Case& c : cases) circles.push_back(s.add(host::Circle{{c.centreX, c.y, 0}, 1}));
  begin();
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const Case& c = cases[i];
    std::string out = plAffect(influence, {circles[i]}, answers(c.strength, "10", c.move, "N", c.scale, "Y"));
    EXPECT_NEAR(circle(circles[i]).center.x, c.wantX, 1e-9) << c.what;
    EXPECT_EQ(circle(circles[i]).center.y, c.y) << c.what << ": y never changes";
    EXPECT_NEAR(circle(circles[i]).radius, c.wantRadius, 1e-9) << c.what;
    if (i == 0) {
      EXPECT_TRUE(s.says(out, "\nPlease Select Curve(s) With Affection >", "\n请选择影响力曲线（一根或多根）>"));
      EXPECT_TRUE(s.says(out, "\nPlease select the object that will be affected.", "\n请选择将被影响的物体。"));
      EXPECT_TRUE(s.says(out, "\nPlease input the influence strength[1--10](3):", "\n请输入影响力度[1--10](3):"));
      EXPECT_TRUE(s.says(out, "\nInfluence distance:", "\n请输入影响距离:"));
      EXPECT_TRUE(s.says(out, "\n Position affect?[Y/N]（Y）:", "\n是否影响物体位置[Y/N]（Y）:"));
      EXPECT_TRUE(s.says(out, "\nRotate?[Y/N]（N）:", "\n是否影响物体旋转[Y/N]（N）:"));
      EXPECT_TRUE(s.says(out, "\nSclae?[Y/N]（Y）:", "\n是否影响物体缩放[Y/N]（Y）:"));
      EXPECT_TRUE(s.says(out,
                         "\nWhether the affected object is a rigid body (the rigid body will not curve, but can "
                         "only rotate and move)?[Y/N]（Y）:",
                         "\n被影响物体是否是刚体（刚体不会曲线化，只能旋转、移动）[Y/N]（Y）:"));
    }
  }
  EXPECT_EQ(line(influence), (host::Line{{10, -1000, 0}, {10, 1000, 0}}));
}

TEST_P(Influence, RotationTurnsAboutTheOldCentreAndACentreOnTheCurveShrinksToNothing) {
  host::ObjectId influence = wall();
  host::ObjectId bar = s.add(host::Line{{7, 0, 0}, {9, 0, 0}});
  host::ObjectId across = s.add(host::Line{{9, 50, 0}, {11, 50, 0}});
  begin();
  plAffect(influence, {bar}, answers("10", "10", "Y", "Y", "N", "Y"));
  // Moved left by the shift at r = 2, then turned by pi/2 * 0.8 about (8, 0).
  const double m = shiftAt(2, 1.0), a = 0.4 * kPi;
  auto turned = [&](double x) { return ge::Point3d{8 + (x - m - 8) * std::cos(a), (x - m - 8) * std::sin(a), 0}; };
  EXPECT_LT(line(bar).start.distanceTo(turned(7)), 1e-9);
  EXPECT_LT(line(bar).end.distanceTo(turned(9)), 1e-9);
  // Centre on the curve: scaled by sqrt(sin 0) = 0, then r = 0 moves it right by d/2.
  plAffect(influence, {across}, answers("10", "10", "Y", "N", "Y", "Y"));
  EXPECT_LT(line(across).start.distanceTo({15, 50, 0}), 1e-9);
  EXPECT_LT(line(across).end.distanceTo({15, 50, 0}), 1e-9);
}

TEST_P(Influence, ZeroAndNegativeStrengthsAreRefusedAndATinyDistanceGivesHalfTheView) {
  host::ObjectId influence = wall();
  host::ObjectId c1 = s.add(host::Circle{{8, 0, 0}, 1});
  host::ObjectId c2 = s.add(host::Circle{{8, 300, 0}, 1});
  begin();
  std::string out = plAffect(influence, {c1}, answers("0\n-2\n10", "0.1", "Y", "N", "N", "Y"));
  EXPECT_EQ(countOf(out, s.pick("\nPlease input the influence strength[1--10](3):", "\n请输入影响力度[1--10](3):")),
            3u)
      << out;
  // d = 50: r = 2 gives 25 * (48/50)^1.5.
  EXPECT_NEAR(circle(c1).center.x, 8 - 25 * std::pow(0.96, 1.5), 1e-9);
  plAffect(influence, {c2}, answers("10", "", "Y", "N", "N", "Y"));
  EXPECT_NEAR(circle(c2).center.x, 8 - 25 * std::pow(0.96, 1.5), 1e-9) << "Enter keeps half the view height";
  out = s.run("PLAFFECT\n\n");
  EXPECT_TRUE(s.says(out, "No Curve selected.\n", "未选中曲线。\n"));
}

TEST_P(Influence, BendingPushesEverySampleAndReplacesTheCurve) {
  host::ObjectId influence = wall();
  host::ObjectId slant = s.add(host::Line{{0, 0, 0}, {22, 22, 0}}, "bent", 3);
  begin();
  s.run("SETVAR\nSURFTAB1\n2\n");
  plAffect(influence, {slant, influence}, answers("10", "10", "Y", "N", "N", "N"));
  EXPECT_FALSE(s.read(slant)) << "the bent curve replaces the old one";
  EXPECT_EQ(line(influence).start.x, 10) << "the influence curve never acts on itself";
  auto splines = s.entitiesOf<host::Spline>();
  ASSERT_EQ(splines.size(), 1u);
  EXPECT_EQ(splines[0].props.color.index, 3);
  // Twelve samples at t = 2i along the diagonal; the crossing is (10, t), r = |t - 10|.
  ge::PointList want;
  for (int i = 0; i < 12; ++i) {
    double t = 2.0 * i, r = std::abs(t - 10), x = t;
    if (r <= 10) x += (t < 10 ? -1 : 1) * 5 * std::pow((10 - r) / 10, 1.5);
    want.push_back({x, t, 0});
  }
  const auto& fit = std::get<host::Spline>(splines[0].data).fitPoints;
  ASSERT_EQ(fit.size(), want.size());
  for (std::size_t i = 0; i < fit.size(); ++i) EXPECT_LT(fit[i].distanceTo(want[i]), 1e-9) << i;
  char second[64];
  std::snprintf(second, sizeof second, "%.6f,%.6f,0.000000;", want[1].x, want[1].y);
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[1].rfind("SPLINE degree=3 fit 0.000000,0.000000,0.000000;" + std::string(second), 0), 0u)
      << dump[1];
}

TEST_P(Influence, RigidObjectsAccumulateEveryInfluenceCurve) {
  host::ObjectId left = s.add(host::Line{{6, -100, 0}, {6, 100, 0}});
  host::ObjectId right = s.add(host::Line{{10, -100, 0}, {10, 100, 0}});
  host::ObjectId c = s.add(host::Circle{{8, 0, 0}, 1});
  begin();
  s.run("PLAFFECT\n" + selectionOf({left, right}) + selectionOf({c}) + answers("10", "10", "Y", "N", "N", "Y"));
  // Pushed right by the line at 6 (r = 2), which carries it past the line at
  // 10, so that one pushes it further right from its new place.
  double x = 8 + shiftAt(2, 1.0);
  ASSERT_GT(x, 10);
  x += shiftAt(x - 10, 1.0);
  EXPECT_NEAR(circle(c).center.x, x, 1e-9);
}

TEST_P(Influence, MoveXShiftsByTheCurvesDeviationWithOrWithoutFading) {
  host::ObjectId curve = s.add(host::Line{{0, 10, 0}, {3, 0, 0}});
  host::ObjectId a = s.add(host::Circle{{20, 0, 0}, 1});
  host::ObjectId b = s.add(host::Circle{{40, 0, 0}, 1});
  host::ObjectId above = s.add(host::Circle{{20, 30, 0}, 1});
  host::ObjectId a2 = s.add(host::Circle{{20, 0, 5}, 1});
  begin();
  std::string out = s.run("plAffectMoveX\n" + pickOf(curve) + "\n" + selectionOf({a2, curve}) + "\n");
  EXPECT_TRUE(s.says(out, "\nPlease select a curve: ", "\n请选择一根竖向曲线影响曲线: "));
  EXPECT_TRUE(s.says(out, "\nIs the impact getting smaller and smaller[N]:", "\n影响是渐远渐小吗（Y）?[N]:"));
  // Fading off: the curve lies 3 right of its upper end at the object's height, so about 3.
  EXPECT_NEAR(circle(a2).center.x, 23, 1e-6);
  EXPECT_EQ(line(curve), (host::Line{{0, 10, 0}, {3, 0, 0}}));
  s.run("plAffectMoveX\n" + pickOf(curve) + "\n" + selectionOf({a, b, above}) + "Y\n");
  // Fading on: the objects span x 19..41; P = (3, 0), the far edge is 41, range 38.
  EXPECT_NEAR(circle(a).center.x, 20 + (38.0 - 17) / 38 * 3, 1e-9);
  EXPECT_NEAR(circle(b).center.x, 40 + (38.0 - 37) / 38 * 3, 1e-9);
  EXPECT_EQ(circle(above).center.x, 20) << "above the curve P is its upper end: no deviation";
}

TEST_P(Influence, MoveXTellsWhenNothingOrNoCurveWasPicked) {
  host::ObjectId text = s.add(host::Text{{0, 0, 0}, {}, 1, "t"});
  host::ObjectId c = s.add(host::Circle{{20, 0, 0}, 1});
  begin();
  std::string out = s.run("plAffectMoveX\n\n");
  EXPECT_TRUE(s.says(out, "\nNothing selected"));
  out = s.run("plAffectMoveX\n" + pickOf(text) + "\n" + selectionOf({c}) + "\n");
  EXPECT_TRUE(s.says(out, "\n Which you selected as an influence curve is not a line, polyline, or spline.",
                     "\n您选中的影响力曲线它不是一根直线、多段线或样条曲线。"));
  EXPECT_EQ(circle(c).center.x, 20);
}

TEST_P(Influence, ClickAppliesOneStepOfTheCarriedCurveAtEveryPickedPoint) {
  host::ObjectId influence = s.add(host::Line{{100, -10, 0}, {100, 10, 0}});
  host::ObjectId c = s.add(host::Circle{{8, 0, 0}, 1});
  begin();
  std::string out = s.run("plAffClick\n" + pickOf(influence) + "\n\n" + selectionOf({c}) +
                          answers("10", "10", "Y", "N", "N", "Y") + "10,0\n10,0\n\n");
  EXPECT_TRUE(s.says(out, "\nPick a point to apply the influence there <Enter to finish>:",
                     "\n请点取施加影响的位置<回车结束>:"));
  EXPECT_TRUE(s.says(out, "\nApplied the influence <2 > time(s).", "\n施加了< 2 >次影响。"));
  double x = 8 - shiftAt(2, 1.0);
  x -= shiftAt(10 - x, 1.0);
  EXPECT_NEAR(circle(c).center.x, x, 1e-9);
  EXPECT_EQ(line(influence).start.x, 100) << "the influence curve itself stays";
}

}  // namespace
}  // namespace commands_test
