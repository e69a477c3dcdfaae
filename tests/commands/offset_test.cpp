// PLOFFSET end to end: prompts and spacings in both languages, and every copy
// measured against its source by shapely over the drawing ezdxf reads back.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <numbers>

#include <gtest/gtest.h>

#include "command_session.h"
#include "standalone/db/dxf_writer.h"
#include "standalone/kernel/curve_kernel.h"

namespace commands_test {
namespace {

class BatchOffset : public CommandTest {
 protected:
  std::vector<double> circleRadii() {
    std::vector<double> radii;
    for (auto& e : s.entitiesOf<host::Circle>()) radii.push_back(std::get<host::Circle>(e.data).radius);
    return radii;
  }
};

INSTANTIATE_TEST_SUITE_P(Languages, BatchOffset, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(BatchOffset, EnterGivesOneCopyOnEachSideOnTheCurrentLayerAndColour) {
  host::ObjectId circle = s.add(host::Circle{{0, 0, 0}, 10}, "source", 4);
  s.start();
  s.run("SETVAR\nCECOLOR\n3\n");
  std::string out = s.run("PLOFFSET\n" + selectionOf({circle}) + "\n\n2\n");
  EXPECT_TRUE(s.says(out, "Please select Curves >\n", "请选择线条>\n"));
  EXPECT_TRUE(s.says(out, "\nOffset direction[Double(D),Inner(I),Out(O)][D]:",
                     "\n请问偏移复制方向[双向(D),内侧(I),外侧(O)][默认D]:"));
  EXPECT_TRUE(s.says(out, "\nNumber of one side offset elements[1]:", "\n单侧偏移根数[1]:"));
  EXPECT_TRUE(s.says(out, "\nOffset distance:", "\n请输入偏移距离:"));
  EXPECT_EQ(circleRadii(), (std::vector<double>{10, 12, 8})) << "the positive side first";
  for (auto& copy : s.entitiesOf<host::Circle>()) {
    if (copy.id == circle) continue;
    EXPECT_EQ(copy.props.layer, "0");
    EXPECT_EQ(copy.props.color.index, 3);
  }
  EXPECT_EQ(out.find("Processed"), std::string::npos) << "no count line";
  out = s.run("PLOFFSET\n\n");
  EXPECT_TRUE(s.says(out, "No Curves selected.\n", "未选中线条。\n"));
}

TEST_P(BatchOffset, EqualSpacingsAccumulateAndACountAboveTenIsTen) {
  host::ObjectId circle = s.add(host::Circle{{0, 0, 0}, 1});
  s.start();
  std::string out = s.run("PLOFFSET\n" + selectionOf({circle}) + "O\n3\n\n5\n");
  EXPECT_TRUE(s.says(out, "\nOffset distance[Multiple(M)]:", "\n请输入偏移距离[多个不同间距(M)]:"));
  EXPECT_EQ(countOf(out, s.pick("\nOffset distance[Multiple(M)]:", "\n请输入偏移距离[多个不同间距(M)]:")), 2u)
      << "Enter asks again";
  EXPECT_EQ(circleRadii(), (std::vector<double>{1, 6, 11, 16}));
  s.run("PLOFFSET\n" + selectionOf({circle}) + "O\n25\n0.5\n");
  EXPECT_EQ(circleRadii().size(), 4u + 10u);
  EXPECT_DOUBLE_EQ(circleRadii().back(), 6.0);
}

// Enough sources for the offsets to be computed on two threads: the copies
// still come source by source in the selection's order, each distance's
// positive side before its negative one, and missing copies leave no gap.
TEST_P(BatchOffset, ManySourcesGiveTheirCopiesInSelectionOrder) {
  auto radius = [](int i) { return 1 + (i * 7) % 13 * 0.5; };
  std::vector<host::ObjectId> sources;
  std::vector<double> want;  // the sources as added, then the copies
  for (int i = 0; i < 40; ++i) {
    sources.push_back(s.add(host::Circle{{i * 100.0, 0, 0}, radius(i)}));
    want.push_back(radius(i));
  }
  std::reverse(sources.begin(), sources.end());
  for (int i = 39; i >= 0; --i)
    for (double d : {1.5, 3.0}) {
      want.push_back(radius(i) + d);
      if (radius(i) - d > 0) want.push_back(radius(i) - d);
    }
  std::string picks;
  for (host::ObjectId id : sources) picks += pickOf(id) + "\n";
  s.start();
  s.run("PLOFFSET\n" + picks + "\n\n2\n1.5\n");
  EXPECT_EQ(circleRadii(), want);
}

TEST_P(BatchOffset, SpacingListsFollowThePredecessorRuleAndInnerCopiesTooCloseToTheCentreAreMissing) {
  host::ObjectId circle = s.add(host::Circle{{0, 0, 0}, 20});
  s.start();
  const std::string listPrompt = s.pick(
      "\nPlease enter multiple offset distances（eg: offset 5 times, and distance are 9,2,1,1,1, then you can "
      "enter:9,2,1,1,1 or 9,2,1）: ",
      "\n请输入多个偏移距离（如偏移5次，以此间距为9、2、1、1、1，则可以输入：9,2,1,1,1 或 9,2,1）: ");
  std::string out = s.run("PLOFFSET\n" + selectionOf({circle}) + "I\n5\nM\n9，2 /1\n");
  EXPECT_TRUE(s.says(out, listPrompt));
  EXPECT_EQ(circleRadii(), (std::vector<double>{20, 11, 9, 8, 7, 6}));

  out = s.run("PLOFFSET\n" + selectionOf({circle}) + "I\n3\nM\nabc\n^C\n9,0,3\n");
  EXPECT_EQ(countOf(out, s.pick("\nInput parameter error.", "\n输入参数错误。")), 2u) << out;
  // 9, 18, 21 inwards from 20: the third would need a negative radius.
  EXPECT_EQ(circleRadii(), (std::vector<double>{20, 11, 9, 8, 7, 6, 11, 2}));
}

TEST_P(BatchOffset, TheSingleDistanceHasAHigherLowerBoundThanTheEqualSpacing) {
  host::ObjectId circle = s.add(host::Circle{{0, 0, 0}, 10});
  s.start();
  s.run("PLOFFSET\n" + selectionOf({circle}) + "O\n1\n0.00005\n");
  EXPECT_EQ(circleRadii().size(), 1u) << "one copy: below 0.0001 ends the command";
  s.run("PLOFFSET\n" + selectionOf({circle}) + "O\n2\n0.000005\n");
  EXPECT_EQ(circleRadii().size(), 1u) << "several copies: below 0.00001 ends the command";
  s.run("PLOFFSET\n" + selectionOf({circle}) + "O\n2\n0.00005\n");
  ASSERT_EQ(circleRadii().size(), 3u);
  EXPECT_NEAR(circleRadii()[2], 10.0001, 1e-12);
  std::string out = s.run("PLOFFSET\n" + selectionOf({circle}) + "^C\n");
  EXPECT_EQ(circleRadii().size(), 3u) << "a cancelled direction ends the command";
}

// One source curve, offset twice on both sides (3 and then 1.5 further), and
// what shapely measures of each copy.
struct OffsetCase {
  const char* name;
  host::EntityData source;
  bool closed;
  bool corners = false;  // a polyline whose segments meet at an angle
};

struct Measured {
  std::string type, layer;
  double dmin = 0, dmedian = 0, dmax = 0;
  int stray = 0;
  std::string side, mid;
};

host::LwPolyline bulged(bool closed, bool clockwise) {
  host::LwPolyline lw;
  std::vector<host::LwVertex> v{{0, 0, 0.3}, {40, 0, 0}, {40, 30, -0.4}, {20, 40, 0}, {0, 30, 0}};
  if (!closed) v = {{0, 0, 0.2}, {20, 10, 0}, {40, 10, -0.3}, {60, 0, 0}};
  if (clockwise) {  // the same shape drawn the other way round
    std::vector<host::LwVertex> r;
    for (std::size_t i = v.size(); i-- > 0;) {
      std::size_t seg = closed ? i : (i == 0 ? 0 : i - 1);
      double bulge = closed ? -v[(i + v.size() - 1) % v.size()].bulge : (i == 0 ? 0 : -v[seg].bulge);
      r.push_back({v[i].x, v[i].y, bulge});
    }
    v = r;
  }
  lw.vertices = v;
  lw.closed = closed;
  return lw;
}

// The same vertices seen from below: counter-clockwise about its normal -Z,
// clockwise in the world.
host::LwPolyline mirrored(host::LwPolyline lw) {
  lw.normal = {0, 0, -1};
  return lw;
}

host::Spline splineThrough(const ge::PointList& pts, bool reversed) {
  standalone::CurveKernel kernel;
  ge::PointList fit = pts;
  if (reversed) std::reverse(fit.begin(), fit.end());
  host::Spline sp;
  kernel.fitSpline(fit, nullptr, nullptr, sp);
  return sp;
}

host::Ellipse ellipse(bool mirrored) {
  host::Ellipse el;
  el.center = {5, 5, 0};
  el.majorAxis = {20, 5, 0};
  el.ratio = 0.5;
  if (mirrored) el.normal = {0, 0, -1};  // runs clockwise seen from above
  return el;
}

std::vector<OffsetCase> offsetCases() {
  host::Arc arc{{0, 0, 0}, 20, 0.3, 2.5};
  ge::PointList bow{{0, 0, 0}, {15, 12, 0}, {30, 14, 0}, {45, 8, 0}, {60, 0, 0}};
  return {
      {"Line", host::Line{{0, 0, 0}, {30, 10, 0}}, false},
      {"Arc", arc, false},
      {"Circle", host::Circle{{0, 0, 0}, 20}, true},
      {"Ellipse", ellipse(false), true},
      {"EllipseClockwise", ellipse(true), true},
      {"OpenSpline", splineThrough(bow, false), false},
      {"OpenSplineReversed", splineThrough(bow, true), false},
      {"OpenBulgedPolyline", bulged(false, false), false, true},
      {"OpenBulgedPolylineReversed", bulged(false, true), false, true},
      {"ClosedBulgedPolyline", bulged(true, false), true, true},
      {"ClosedBulgedPolylineClockwise", bulged(true, true), true, true},
      {"ClosedBulgedPolylineMirrored", mirrored(bulged(true, false)), true, true},
  };
}

class OffsetMeasure : public ::testing::TestWithParam<OffsetCase> {
 protected:
  std::vector<Measured> measure(CommandSession& s) {
    std::filesystem::path out = s.root() / "offsets.dxf", report = s.root() / "measured.txt";
    standalone::saveDxf(s.host().drawing(), out);
    std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_CHECK_OFFSETS + " " + out.string() + " > " +
                      report.string() + " 2>&1";
    EXPECT_EQ(std::system(cmd.c_str()), 0) << "shapely could not measure " << out;
    std::vector<Measured> rows;
    std::ifstream in(report);
    for (std::string line; std::getline(in, line);) {
      Measured m;
      char type[32], layer[64], side[16], mid[16];
      int color = 0;
      if (std::sscanf(line.c_str(), "%31s layer=%63s color=%d dmin=%lf dmed=%lf dmax=%lf stray=%d side=%15s mid=%15s",
                      type, layer, &color, &m.dmin, &m.dmedian, &m.dmax, &m.stray, side, mid) != 9) {
        ADD_FAILURE() << line;
        continue;
      }
      m.type = type, m.layer = layer, m.side = side, m.mid = mid;
      rows.push_back(m);
    }
    return rows;
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, OffsetMeasure, ::testing::ValuesIn(offsetCases()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(OffsetMeasure, EveryCopyLiesAtItsDistanceAndInnerIsInside) {
  CommandSession s(Language::kEnglish);
  host::ObjectId source = s.add(GetParam().source, "source");
  s.start();
  s.run("PLOFFSET\n" + selectionOf({source}) + "\n2\nM\n3,1.5\n");
  std::vector<Measured> copies = measure(s);
  // The positive (Outside) side before the negative (Inner) one, at 3 and at 4.5.
  const double distances[] = {3, 3, 4.5, 4.5};
  ASSERT_EQ(copies.size(), 4u) << "one piece per side and distance";
  for (std::size_t i = 0; i < copies.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_NEAR(copies[i].dmin, distances[i], 1e-4) << "no point of a copy comes closer";
    EXPECT_NEAR(copies[i].dmedian, distances[i], 1e-4);
    EXPECT_EQ(copies[i].stray, 0) << "points farther off only where extended sides meet at a corner";
    if (!GetParam().corners) {
      EXPECT_NEAR(copies[i].dmax, distances[i], 1e-4);
    }
    EXPECT_EQ(copies[i].layer, "0") << "the current layer, not the source's";
    bool outside = i % 2 == 0;
    if (GetParam().closed) {
      EXPECT_EQ(copies[i].side, outside ? "out" : "in");
    } else if (!std::holds_alternative<host::Line>(GetParam().source)) {
      EXPECT_EQ(copies[i].mid, outside ? "out" : "in") << "Outside is the side away from the chord";
    }
  }
  EXPECT_TRUE(s.read(source)) << "the source stays";
}

TEST(OffsetMeasureLine, AStraightCurveOffsetsOutsideTowardsLargerCoordinatesWhicheverWayItRuns) {
  for (bool reversed : {false, true}) {
    CommandSession s(Language::kEnglish);
    ge::Point2d a{0, 0}, b{30, 0};
    host::ObjectId line = s.add(reversed ? lwThrough({b, a}) : lwThrough({a, b}));
    s.start();
    s.run("PLOFFSET\n" + selectionOf({line}) + "O\n1\n2\n");
    auto lws = s.entitiesOf<host::LwPolyline>();
    ASSERT_EQ(lws.size(), 2u);
    EXPECT_DOUBLE_EQ(verticesOf(lws[1])[0].y, 2) << "reversed=" << reversed;
  }
}

}  // namespace
}  // namespace commands_test
