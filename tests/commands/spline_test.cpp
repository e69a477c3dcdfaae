// s2p, p2s and QXTY end to end.
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "command_session.h"

namespace commands_test {
namespace {

class SplineConversion : public CommandTest {};

INSTANTIATE_TEST_SUITE_P(Languages, SplineConversion, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

host::Spline wave() {
  standalone::CurveKernel kernel;
  host::Spline sp;
  kernel.fitSpline({{0, 0, 0}, {10, 10, 0}, {20, 0, 0}, {30, 10, 0}}, nullptr, nullptr, sp);
  return sp;
}

TEST_P(SplineConversion, SplinesBecomePolylinesInTheirBlockAndOtherKindsArePassedOver) {
  host::ObjectId spline = s.add(wave(), "paths", 6);
  host::ObjectId circle = s.add(host::Circle{{0, 0, 0}, 3});
  s.start();
  std::string out = s.run("s2p\n" + pickOf(spline) + "\n" + pickOf(circle) + "\n\n\n");
  EXPECT_TRUE(s.says(out, "Please select SPLINE >\n", "请选择SPLINE线>\n"));
  EXPECT_TRUE(s.says(
      out, "\nPlease input the precision, allowable 1--99, default 10:", "\n请输入精度，允许值1--99，默认值10:"));
  EXPECT_TRUE(s.says(out, s.processed(1)));
  EXPECT_FALSE(s.read(spline));
  EXPECT_TRUE(s.read(circle));
  auto results = s.entities();
  ASSERT_EQ(results.size(), 2u);
  EXPECT_EQ(results[1].props.layer, "paths");
  ge::PointList v = verticesOf(results[1]);
  ASSERT_GE(v.size(), 3u) << "a polyline through the spline";
  EXPECT_LT(v.front().distanceTo({0, 0, 0}), 1e-9);
  EXPECT_LT(v.back().distanceTo({30, 10, 0}), 1e-9);
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[1].find("SPLINE"), std::string::npos) << dump[1];
  out = s.run("s2p\n" + pickOf(circle) + "\n\n\n");
  EXPECT_TRUE(s.says(out, s.processed(0))) << "a circle alone converts nothing, and says so";
  EXPECT_TRUE(s.read(circle));
}

TEST_P(SplineConversion, APrecisionAboveNinetyNineIsPassedOnAsItIs) {
  host::ObjectId coarse = s.add(wave());
  host::ObjectId fine = s.add(wave());
  s.start();
  s.run("s2p\n" + pickOf(coarse) + "\n\n1\n");
  s.run("s2p\n" + pickOf(fine) + "\n\n150\n");
  auto all = s.entities();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_GT(verticesOf(all[1]).size(), verticesOf(all[0]).size()) << "150 is finer than 1";
  std::string out = s.run("s2p\n" + pickOf(all[0].id) + "\n\n");
  EXPECT_TRUE(s.says(out, "No SPLINE selected.\n", "未选中SPLINE线。\n"));
}

TEST_P(SplineConversion, PolylinesBecomeSplinesThroughEqualSamplesWithTheEndDoubled) {
  host::ObjectId line3 = s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}}), "roads", 1);
  s.start();
  std::string out = s.run("p2s\n" + pickOf(line3) + "\n\n\n5\n");
  EXPECT_TRUE(s.says(out, "\n Y = Divide the polylines equally, N = Based on polylinethe vertex？[Y/N]（Y）:",
                     "\n Y = 对多段线按等分方式, N =多段线按原顶点？[Y/N]（Y）:"));
  EXPECT_TRUE(s.says(out, "\nDivide points 12~256[36]:", "\n等分点数12~256[36]:"));
  EXPECT_TRUE(s.says(out, s.processed(1)));
  EXPECT_FALSE(s.read(line3));
  auto splines = s.entitiesOf<host::Spline>();
  ASSERT_EQ(splines.size(), 1u);
  const auto& sp = std::get<host::Spline>(splines[0].data);
  ASSERT_EQ(sp.fitPoints.size(), 13u) << "5 is raised to 12, and the end point comes twice";
  EXPECT_LT(sp.fitPoints[11].distanceTo(sp.fitPoints[12]), 1e-9);
  EXPECT_LT(sp.fitPoints[1].distanceTo({20.0 / 11, 0, 0}), 1e-9);
  EXPECT_EQ(splines[0].props.layer, "roads");
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0].rfind("SPLINE degree=3", 0), 0u) << dump[0];
}

TEST_P(SplineConversion, VertexFittingRepeatsTheFirstVertexOnClosedPolylinesAndClampsCounts) {
  host::ObjectId square = s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true));
  host::ObjectId many = s.add(lwThrough({{0, 20}, {10, 25}, {20, 20}}));
  host::ObjectId plain = s.add(lwThrough({{0, 40}, {10, 45}, {20, 40}}));
  s.start();
  s.run("p2s\n" + pickOf(square) + "\n\nN\n");
  s.run("p2s\n" + pickOf(many) + "\n\nY\n1000\n");
  s.run("p2s\n" + pickOf(plain) + "\n\n\n\n");
  auto splines = s.entitiesOf<host::Spline>();
  ASSERT_EQ(splines.size(), 3u);
  EXPECT_EQ(std::get<host::Spline>(splines[0].data).fitPoints,
            (ge::PointList{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}}));
  EXPECT_EQ(std::get<host::Spline>(splines[1].data).fitPoints.size(), 257u) << "1000 becomes 256";
  EXPECT_EQ(std::get<host::Spline>(splines[2].data).fitPoints.size(), 37u) << "Enter keeps 36";
}

TEST_P(SplineConversion, EllipsesUseTheHostsExactSpline) {
  const host::Ellipse el{.center = {5, 5, 0}, .majorAxis = {4, 0, 0}, .ratio = 0.5};
  host::ObjectId id = s.add(el);
  s.start();
  s.run("p2s\n" + pickOf(id) + "\n\n\n100\n");
  auto splines = s.entitiesOf<host::Spline>();
  ASSERT_EQ(splines.size(), 1u);
  const auto& sp = std::get<host::Spline>(splines[0].data);
  EXPECT_TRUE(sp.fitPoints.empty()) << "not a fit through samples";
  EXPECT_TRUE(sp.isRational());
  host::Spline exact;
  ASSERT_EQ(s.host().host().curves.getSpline(el, exact), host::ErrorStatus::eOk);
  EXPECT_EQ(sp.controlPoints, exact.controlPoints);
  std::string out = s.run("p2s\n\n");
  EXPECT_TRUE(s.says(out, "No Curves selected.\n", "未选中线条。\n"));
}

TEST_P(SplineConversion, ProjectionAddsAFlatCopyAndKeepsTheSource) {
  host::ObjectId raised = s.add(poly3dThrough({{0, 0, 5}, {10, 0, 5}, {10, 10, 5}}), "high", 2);
  s.start();
  std::string out = s.run("QXTY\n" + pickOf(raised) + "\n\n");
  EXPECT_TRUE(s.says(out, "\nVertically project all kinds of curves to the XY plane of the world coordinate system...",
                     "\n垂直投影各类曲线到世界坐标系XY平面..."));
  EXPECT_TRUE(s.says(out, "Please select curves >", "请选择曲线 >"));
  ASSERT_TRUE(s.read(raised));
  EXPECT_EQ(verticesOf(*s.read(raised)).front().z, 5) << "the source stays as it was";
  auto all = s.entities();
  ASSERT_EQ(all.size(), 2u) << out;
  for (const ge::Point3d& p : verticesOf(all[1])) EXPECT_EQ(p.z, 0);
  EXPECT_EQ(verticesOf(all[1]).size(), 3u);
  EXPECT_TRUE(s.says(out, "\n< 1 > new curves added.", "\n生成了< 1 >根投影曲线。 "));
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump.size(), 3u);
  out = s.run("QXTY\n\n");
  EXPECT_TRUE(s.says(out, "No curves selected.\n", "未选中曲线。\n"));
}

}  // namespace
}  // namespace commands_test
