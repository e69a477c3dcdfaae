// PLYH, PLYH2 and PLYH3 end to end.
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "command_session.h"

namespace commands_test {
namespace {

class VertexOptimise : public CommandTest {};

INSTANTIATE_TEST_SUITE_P(Languages, VertexOptimise, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

// A quarter circle of radius 50 about the origin through n vertices.
host::LwPolyline quarterCircle(int n) {
  std::vector<ge::Point2d> pts;
  for (int i = 0; i < n; ++i) {
    double a = std::numbers::pi / 2 * i / (n - 1);
    pts.push_back({50 * std::cos(a), 50 * std::sin(a)});
  }
  return lwThrough(pts);
}

TEST_P(VertexOptimise, ThinningReplacesEachPolylineAndPrintsTheSummary) {
  host::ObjectId straight = s.add(lwThrough({{0, 0}, {10, 0.0001}, {20, 0}, {30, 0.0001}, {40, 0}, {50, 0}, {60, 0}}),
                                  "edges", 3);
  host::ObjectId corner = s.add(lwThrough({{0, 10}, {50, 10}, {50, 60}}));
  s.start();
  std::string out = s.run("PLYH\n" + pickOf(straight) + "\n" + pickOf(corner) + "\n\n3\n");
  EXPECT_TRUE(s.says(out, "Please select polyline >\n", "请选择待优化的多段线>\n"));
  EXPECT_TRUE(s.says(out, "\nPlease input the tolerance[1--10](1):", "\n请输入误差[1--10](1):"));
  EXPECT_FALSE(s.read(straight)) << "the source is erased";
  EXPECT_FALSE(s.read(corner));
  auto lws = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(lws.size(), 2u);
  // Scale: diagonal of (0,0)-(60,60) = 84.85; D = 0.001 * 2.5 * 84.85 = 0.21.
  // The straight run thins to its ends; the corner keeps its three vertices.
  EXPECT_EQ(verticesOf(lws[0]), (ge::PointList{{0, 0, 0}, {60, 0, 0}}));
  EXPECT_EQ(lws[0].props.layer, "edges");
  EXPECT_EQ(lws[0].props.color.index, 3);
  EXPECT_EQ(verticesOf(lws[1]).size(), 3u);
  // 10 vertices before, 5 after: 50 percent.
  std::string summary =
      s.pick("\nVertexs befor optimization : 10， nVertexs now: 5，optimization efficiency is 50 percent.",
             "\n优化前顶点数: 10， 优化后顶点数: 5，优化效率50％。 ");
  EXPECT_TRUE(s.says(out, summary));

  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(countOf(dump[0], "LWPOLYLINE closed=0"), 1u) << dump[0];
  EXPECT_NE(dump[0].find("points 0.000000,0.000000,0.000000;60.000000,0.000000,0.000000"), std::string::npos)
      << dump[0];
}

TEST_P(VertexOptimise, BulgesComeOutStraightWithTheSourceWidthAndClosure) {
  host::LwPolyline arc = lwThrough({{0, 0}, {10, 0}, {20, 0}});
  arc.vertices[0].bulge = 1;
  arc.constantWidth = 0.5;
  arc.closed = true;
  host::ObjectId id = s.add(arc);
  s.start();
  s.run("PLYH\n" + pickOf(id) + "\n\n25\n");
  auto lws = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(lws.size(), 1u);
  const auto& lw = std::get<host::LwPolyline>(lws[0].data);
  for (const auto& v : lw.vertices) EXPECT_EQ(v.bulge, 0);
  EXPECT_TRUE(lw.closed);
  EXPECT_EQ(lw.constantWidth, 0.5);
}

TEST_P(VertexOptimise, ThreeDimensionalPolylinesStayThreeDimensional) {
  host::ObjectId id = s.add(poly3dThrough({{0, 0, 0}, {5, 0, 1e-9}, {10, 0, 0}, {10, 10, 5}, {10, 10.0000001, 5}}));
  s.start();
  std::string out = s.run("PLYH\n" + pickOf(id) + "\n\n1\n");
  auto p3 = s.entitiesOf<host::Polyline3d>();
  ASSERT_EQ(p3.size(), 1u);
  ge::PointList v = verticesOf(p3[0]);
  ASSERT_GE(v.size(), 3u);
  EXPECT_EQ(v.front(), (ge::Point3d{0, 0, 0}));
  EXPECT_EQ(v.back().z, 5);
  for (std::size_t i = 1; i < v.size(); ++i) EXPECT_GT(v[i].distanceTo(v[i - 1]), 1e-6);
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0].rfind("POLYLINE3d", 0), 0u) << dump[0];
}

TEST_P(VertexOptimise, ASplineFitPolylineIsThinnedAlongItsCurveNotItsFrame) {
  host::Polyline2d fitted = old2dThrough({{0, 0}, {50, 100}, {100, 0}});
  ASSERT_EQ(standalone::CurveKernel().fitPolyline2d(fitted, 6, 8), host::ErrorStatus::eOk);
  host::ObjectId id = s.add(fitted);
  s.start();
  s.run("PLYH\n" + pickOf(id) + "\n\n1\n");
  auto lws = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(lws.size(), 1u);
  ge::PointList v = verticesOf(lws[0]);
  ASSERT_GE(v.size(), 3u);
  EXPECT_EQ(v.front(), (ge::Point3d{0, 0, 0}));
  EXPECT_EQ(v.back(), (ge::Point3d{100, 0, 0}));
  for (const ge::Point3d& p : v) EXPECT_LT(p.y, 60) << "the frame's apex (50,100) lies off the curve";
}

TEST_P(VertexOptimise, EscapeAtTheToleranceKeepsGoingAndTinySelectionsAreRefused) {
  host::ObjectId tiny = s.add(lwThrough({{0, 0}, {0.0003, 0}, {0.0005, 0.0001}}));
  s.start();
  std::string out = s.run("PLYH\n" + pickOf(tiny) + "\n\n");
  EXPECT_TRUE(s.says(out, "The height of the polyline bounding box is too low.\n", "多段线包围盒高度太低。\n"));
  EXPECT_TRUE(s.read(tiny));
  out = s.run("PLYH3\n" + pickOf(tiny) + "\n\n");
  EXPECT_TRUE(s.says(out, "The height of the polyline bounding box is too low.\n", "多段线包围盒太小。\n"));
  out = s.run("PLYH\n\n");
  EXPECT_TRUE(s.says(out, "No polyline selected.\n", "未选中多段线。\n"));
}

TEST_P(VertexOptimise, ThinningAndDuplicateRemovalEraseAVanishinglyShortPolyline) {
  host::ObjectId dot = s.add(lwThrough({{50, 50}, {50, 50.000001}}));
  host::ObjectId other = s.add(lwThrough({{0, 0}, {100, 0}}));
  host::ObjectId dot3d = s.add(poly3dThrough({{5, 5, 5}, {5, 5, 5.000001}}));
  s.start();
  s.run("PLYH\n" + pickOf(dot) + "\n" + pickOf(other) + "\n\n\n");
  EXPECT_FALSE(s.read(dot));
  EXPECT_EQ(s.entitiesOf<host::LwPolyline>().size(), 1u);
  std::string out = s.run("PLYH2\n" + pickOf(dot3d) + "\n\n");
  EXPECT_FALSE(s.read(dot3d));
  EXPECT_TRUE(s.says(out, "\nDeleted <0 > duplicate vertexs OK.", "\n删除了< 0 >个重复顶点。 "));
}

TEST_P(VertexOptimise, DuplicatesGoInPlaceAndARepeatedStartClosesThePolyline) {
  host::ObjectId id = s.add(lwThrough({{0, 0}, {10, 0}, {10, 0.000001}, {10, 10}, {0, 0}}));
  host::ObjectId old = s.add(old2dThrough({{0, 20}, {0, 20}, {5, 25}}));
  s.start();
  std::string out = s.run("PLYH2\n" + pickOf(id) + "\n" + pickOf(old) + "\n\n");
  EXPECT_TRUE(s.says(out, "\nDeleted <3 > duplicate vertexs OK.", "\n删除了< 3 >个重复顶点。 "));
  auto lw = s.read(id);
  ASSERT_TRUE(lw);
  EXPECT_EQ(verticesOf(*lw), (ge::PointList{{0, 0, 0}, {10, 0.000001, 0}, {10, 10, 0}}));
  EXPECT_TRUE(std::get<host::LwPolyline>(lw->data).closed);
  EXPECT_EQ(verticesOf(*s.read(old)).size(), 2u);
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0].rfind("LWPOLYLINE closed=1", 0), 0u) << dump[0];
}

TEST_P(VertexOptimise, SplineThinningMakesACubicSplineFit2dPolyline) {
  host::LwPolyline source = quarterCircle(41);
  source.constantWidth = 0.25;
  host::ObjectId id = s.add(source, "curves", 5);
  host::ObjectId two = s.add(lwThrough({{0, 30}, {100, 30}}));
  s.start();
  std::string out = s.run("PLYH3\n" + pickOf(id) + "\n" + pickOf(two) + "\n\n");
  EXPECT_FALSE(s.read(id));
  EXPECT_TRUE(s.read(two)) << "two vertices: left as it is";
  auto olds = s.entitiesOf<host::Polyline2d>();
  ASSERT_EQ(olds.size(), 1u);
  const auto& pl = std::get<host::Polyline2d>(olds[0].data);
  EXPECT_TRUE(pl.splineFit);
  EXPECT_EQ(pl.curveType, host::PolyCurveType::kCubicSpline);
  EXPECT_EQ(pl.defaultStartWidth, 0.25);
  EXPECT_EQ(olds[0].props.layer, "curves");
  EXPECT_EQ(olds[0].props.color.index, 5);
  int frame = 0;
  for (const auto& v : pl.vertices) frame += (v.flags & host::kVertexSplineFrame) ? 1 : 0;
  // Every other vertex lies within D of its chord; the rest turn too much to go.
  EXPECT_EQ(frame, 21);
  EXPECT_EQ(out.find("Vertexs"), std::string::npos) << "no summary line";
  auto dump = s.readBackWithEzdxf();
  bool found = false;
  for (const auto& line : dump) found |= line.rfind("POLYLINE2d closed=0 splinefit=1", 0) == 0;
  EXPECT_TRUE(found);
}

}  // namespace
}  // namespace commands_test
