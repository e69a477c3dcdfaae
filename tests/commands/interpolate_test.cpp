// PLINT end to end, and the matching of two polylines it blends.
#include <cmath>

#include <gtest/gtest.h>

#include "command_session.h"
#include "commands/polyline_match.h"

namespace commands_test {
namespace {

using commands::MatchPolyline;

MatchPolyline matchThrough(std::vector<commands::BlendVertex> v, bool closed) { return {std::move(v), closed}; }

TEST(PolylineMatch, SplittingKeepsTheShapeAndArcsStayArcsOfTheSameCircle) {
  MatchPolyline half = matchThrough({{{0, 0, 0}, 1}, {{1, 0, 0}, 0}}, false);  // a semicircle below the chord
  commands::splitToCount(half, 3);
  ASSERT_EQ(half.vertices.size(), 3u);
  EXPECT_NEAR(half.vertices[1].p.x, 0.5, 1e-12);
  EXPECT_NEAR(half.vertices[1].p.y, -0.5, 1e-12);
  EXPECT_NEAR(half.vertices[0].bulge, std::tan(std::numbers::pi / 8), 1e-12);
  EXPECT_NEAR(half.vertices[1].bulge, std::tan(std::numbers::pi / 8), 1e-12);
  EXPECT_NEAR(commands::segmentLength(half, 0) + commands::segmentLength(half, 1), std::numbers::pi / 2, 1e-12);

  MatchPolyline square = matchThrough({{{0, 0, 0}, 0}, {{10, 0, 0}, 0}, {{10, 1, 0}, 0}, {{0, 1, 0}, 0}}, true);
  commands::splitToCount(square, 6);
  ASSERT_EQ(square.vertices.size(), 6u);
  EXPECT_EQ(square.vertices[1].p, (ge::Point3d{5, 0, 0})) << "the longest segment first";
  EXPECT_EQ(square.vertices[4].p, (ge::Point3d{5, 1, 0})) << "then the other long side";
}

TEST(PolylineMatch, ClosedSourcesRunTheSameWayFromNearStartsAndOpenOnesFromNearEnds) {
  MatchPolyline a = matchThrough({{{0, 0, 0}, 0}, {{10, 0, 0}, 0}, {{10, 10, 0}, 0}, {{0, 10, 0}, 0}}, true);
  MatchPolyline b = matchThrough({{{110, 10, 0}, 0}, {{110, 0, 0}, 0}, {{100, 0, 0}, 0}, {{100, 10, 0}, -0.5}}, true);
  commands::matchPolylines(a, b);
  EXPECT_EQ(b.vertices[0].p, (ge::Point3d{100, 0, 0}));
  EXPECT_EQ(b.vertices[1].p, (ge::Point3d{110, 0, 0})) << "turned counter-clockwise like a";
  EXPECT_EQ(b.vertices[2].bulge, 0.5) << "the arc from (100,10) to (110,10), reversed";

  MatchPolyline open = matchThrough({{{0, 0, 0}, 0}, {{10, 0, 0}, 0}}, false);
  MatchPolyline backwards = matchThrough({{{10, 5, 0}, 0.2}, {{5, 6, 0}, 0}, {{0, 5, 0}, 0}}, false);
  commands::matchPolylines(open, backwards);
  ASSERT_EQ(open.vertices.size(), 3u);
  EXPECT_EQ(backwards.vertices[0].p, (ge::Point3d{0, 5, 0}));
  EXPECT_EQ(backwards.vertices[1].bulge, -0.2);

  MatchPolyline ring = matchThrough({{{0, 0, 0}, 0}, {{10, 0, 0}, 0}, {{10, 10, 0}, 0}}, true);
  MatchPolyline line = matchThrough({{{0, 20, 0}, 0}, {{10, 20, 0}, 0}}, false);
  commands::matchPolylines(ring, line);
  EXPECT_FALSE(ring.closed) << "a closed source meeting an open one is opened";
  EXPECT_EQ(ring.vertices.size(), 4u);
  EXPECT_EQ(ring.vertices.back().p, ring.vertices.front().p);
  EXPECT_EQ(line.vertices.size(), 4u);
}

class Interpolate : public CommandTest {
 protected:
  std::vector<host::LwPolyline> made(std::initializer_list<host::ObjectId> sources) {
    std::vector<host::LwPolyline> out;
    for (auto& e : s.entitiesOf<host::LwPolyline>())
      if (std::find(sources.begin(), sources.end(), e.id) == sources.end())
        out.push_back(std::get<host::LwPolyline>(e.data));
    return out;
  }
  static ge::Point3d centre(const host::LwPolyline& lw) {
    double x0 = 1e300, x1 = -1e300, y0 = 1e300, y1 = -1e300;
    for (auto& v : lw.vertices) x0 = std::min(x0, v.x), x1 = std::max(x1, v.x), y0 = std::min(y0, v.y), y1 = std::max(y1, v.y);
    return {(x0 + x1) / 2, (y0 + y1) / 2, 0};
  }
};

INSTANTIATE_TEST_SUITE_P(Languages, Interpolate, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(Interpolate, CopiesBlendTwoSquaresDrawnDifferentlyAndEaseLikeTheArray) {
  host::ObjectId a = s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true));
  host::ObjectId b = s.add(lwThrough({{110, 10}, {110, 0}, {100, 0}, {100, 10}}, true));
  host::ObjectId dot = s.add(lwThrough({{5, 5}}));
  s.start();
  std::string out = s.run("PLINT\n" + pickOf(a) + "\n" + pickOf(b) + "\n1\n\n\n");
  EXPECT_TRUE(s.says(out, "\nPlease input the number of interpolated polylines[1--1000](9):",
                     "\n请输入间插多段线数量[1--1000](9):"));
  EXPECT_TRUE(s.says(out, "\nPlease select the path curve, Enter for none: ", "\n请选择间插路径曲线，回车则不用路径： "));
  EXPECT_TRUE(s.says(out, "\nAdded < 1> interpolated polylines.", "\n生成了< 1 >根间插多段线。"));
  auto copies = made({a, b, dot});
  ASSERT_EQ(copies.size(), 1u);
  expectPoints(verticesOf({host::kNullId, host::kNullId, {}, copies[0]}),
               {{50, 0, 0}, {60, 0, 0}, {60, 10, 0}, {50, 10, 0}});
  EXPECT_TRUE(copies[0].closed);
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[3], "LWPOLYLINE closed=1 width=0 points 50.000000,0.000000,0.000000;60.000000,0.000000,0.000000;"
                     "60.000000,10.000000,0.000000;50.000000,10.000000,0.000000");
  s.run("PLINT\n" + pickOf(a) + "\n" + pickOf(b) + "\n3\n\n100\n");
  copies = made({a, b, dot});
  ASSERT_EQ(copies.size(), 4u);
  EXPECT_NEAR(copies[1].vertices[0].x, 100 * std::pow(0.25, 3), 1e-9) << "acceleration 100: t = s^3";
  out = s.run("PLINT\n\n");
  EXPECT_TRUE(s.says(out, "\nSelected nothing.", "\n未选中。"));
  out = s.run("PLINT\n" + pickOf(a) + "\n" + pickOf(dot) + "\n1\n\n\n");
  EXPECT_TRUE(s.says(out, "\nPolyline unexpected error.", "\n多段线意外错误。")) << "one vertex cannot be matched";
  EXPECT_EQ(made({a, b, dot}).size(), 4u);
}

TEST_P(Interpolate, DifferentVertexCountsAndBulgesBlendAndAPathCarriesTheCopies) {
  host::ObjectId a = s.add(lwThrough({{0, 0}, {10, 0}}));
  host::LwPolyline arc = lwThrough({{0, 100}, {10, 100}, {20, 100}});
  arc.vertices[0].bulge = 1;
  host::ObjectId b = s.add(arc);
  host::ObjectId path = s.add(lwThrough({{5, 0}, {205, 200}, {405, 100}}));
  s.start();
  s.run("PLINT\n" + pickOf(a) + "\n" + pickOf(b) + "\n1\n\n\n");
  auto copies = made({a, b, path});
  ASSERT_EQ(copies.size(), 1u);
  ASSERT_EQ(copies[0].vertices.size(), 3u) << "the line gains a vertex";
  EXPECT_NEAR(copies[0].vertices[0].bulge, 0.5, 1e-12);
  EXPECT_NEAR(copies[0].vertices[1].x, 7.5, 1e-12) << "(5 + 10) / 2";

}

TEST_P(Interpolate, APathFromCentreToCentreCarriesTheCopiesOnIt) {
  host::ObjectId a = s.add(lwThrough({{0, 0}, {10, 0}}));
  host::ObjectId b = s.add(lwThrough({{400, 100}, {410, 100}}));
  host::ObjectId path = s.add(lwThrough({{5, 0}, {205, 200}, {405, 100}}));
  s.start();
  s.run("PLINT\n" + pickOf(a) + "\n" + pickOf(b) + "\n1\n" + pickOf(path) + "\n\n");
  auto copies = made({a, b, path});
  ASSERT_EQ(copies.size(), 1u);
  double half = (std::hypot(200, 200) + std::hypot(200, 100)) / 2;
  expectPoints({centre(copies[0])}, {{5 + half / std::sqrt(2.0), half / std::sqrt(2.0), 0}});
  EXPECT_NEAR(copies[0].vertices[1].x - copies[0].vertices[0].x, 10, 1e-9) << "moved, not turned or scaled";
}

}  // namespace
}  // namespace commands_test
