// PLDD, PLCLOSE, PLOPEN, PLGXK, PL2OLD, OLDPL2LW end to end, and the host's PEDIT they drive.
#include <gtest/gtest.h>

#include "command_session.h"

namespace commands_test {
namespace {

class PolylineBatch : public CommandTest {};

INSTANTIATE_TEST_SUITE_P(Languages, PolylineBatch, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(PolylineBatch, ReverseFlipsEveryKindOfCurveAndCountsThem) {
  host::ObjectId line = s.add(host::Line{{0, 0, 0}, {10, 0, 0}});
  host::LwPolyline lw = lwThrough({{0, 0}, {5, 0}, {5, 5}});
  lw.vertices[0].bulge = 0.5;
  host::ObjectId pl = s.add(lw);
  host::ObjectId arc = s.add(host::Arc{{0, 0, 0}, 5, 0, 1.5});
  host::ObjectId p3 = s.add(poly3dThrough({{0, 0, 0}, {1, 2, 3}, {4, 5, 6}}));
  host::ObjectId text = s.add(host::Text{{1, 1, 0}, {1, 1, 0}, 1, "not a curve"});
  host::ObjectId circle = s.add(host::Circle{{30, 0, 0}, 2});
  host::ObjectId ellipse = s.add(host::Ellipse{.center = {40, 0, 0}, .majorAxis = {3, 0, 0}, .ratio = 0.5});
  host::Spline sp;
  standalone::CurveKernel().fitSpline({{50, 0, 0}, {55, 5, 0}, {60, 0, 0}}, nullptr, nullptr, sp);
  host::ObjectId spline = s.add(sp);
  s.start();
  ge::Point3d splineStart;
  s.host().host().curves.getStartPoint(s.read(spline)->data, splineStart);
  std::string out = s.run("PLDD\n" + selectionOf({line, pl, arc, p3, text, circle, ellipse, spline}));
  EXPECT_TRUE(s.says(out, "Please select PLINE >\n", "请选择多段线>\n"));
  EXPECT_TRUE(s.says(out, s.processed(7)));
  ge::Point3d splineEnd;
  s.host().host().curves.getEndPoint(s.read(spline)->data, splineEnd);
  EXPECT_LT(splineEnd.distanceTo(splineStart), 1e-9) << "the spline now ends where it started";
  EXPECT_EQ(std::get<host::Circle>(s.read(circle)->data).normal.z, -1) << "a reversed circle runs about -Z";
  EXPECT_EQ(std::get<host::Line>(s.read(line)->data).start, (ge::Point3d{10, 0, 0}));
  EXPECT_EQ(verticesOf(*s.read(pl)), (ge::PointList{{5, 5, 0}, {5, 0, 0}, {0, 0, 0}}));
  EXPECT_EQ(std::get<host::LwPolyline>(s.read(pl)->data).vertices[1].bulge, -0.5) << "the bulge moves and flips";
  EXPECT_EQ(verticesOf(*s.read(p3)).front(), (ge::Point3d{4, 5, 6}));
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0], "LINE points 10.000000,0.000000,0.000000;0.000000,0.000000,0.000000");
  out = s.run("PLDD\n\n");
  EXPECT_TRUE(s.says(out, "No PLINE selected.\n", "未选中多段线。\n"));
}

TEST_P(PolylineBatch, CloseAndOpenGoThroughPeditAndLeaveCmdechoAtOne) {
  host::ObjectId a = s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}}));
  host::ObjectId b = s.add(old2dThrough({{20, 0}, {30, 0}, {30, 10}}, true));
  host::ObjectId c = s.add(poly3dThrough({{0, 0, 0}, {1, 0, 1}, {1, 1, 2}}));
  s.start();
  s.host().host().sysvars.setVar("CMDECHO", host::ResBuf::shortInt(0));
  std::string out = s.run("PLCLOSE\n" + selectionOf({a, b, c}));
  EXPECT_TRUE(s.says(out, "Please select polyline >\n", "请选择待优化的多段线>\n"));
  EXPECT_TRUE(std::get<host::LwPolyline>(s.read(a)->data).closed);
  EXPECT_TRUE(std::get<host::Polyline2d>(s.read(b)->data).closed) << "already closed: stays closed";
  EXPECT_TRUE(std::get<host::Polyline3d>(s.read(c)->data).closed);
  EXPECT_EQ(s.sysvar("CMDECHO"), host::ResBuf::shortInt(1));
  EXPECT_EQ(out.find("Processed"), std::string::npos) << "no count line";
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0].rfind("LWPOLYLINE closed=1", 0), 0u) << dump[0];
  EXPECT_EQ(dump[2].rfind("POLYLINE3d closed=1", 0), 0u) << dump[2];

  s.run("PLOPEN\n" + selectionOf({a, c}));
  EXPECT_FALSE(std::get<host::LwPolyline>(s.read(a)->data).closed);
  EXPECT_FALSE(std::get<host::Polyline3d>(s.read(c)->data).closed);
  EXPECT_TRUE(std::get<host::Polyline2d>(s.read(b)->data).closed) << "not selected";
  out = s.run("PLOPEN\n\n");
  EXPECT_TRUE(s.says(out, "No polyline selected.\n", "未选中多段线。\n"));
}

TEST_P(PolylineBatch, WidthIsSetOnAllAndTinyOrMissingWidthsBecomeZero) {
  host::LwPolyline wide = lwThrough({{0, 0}, {10, 0}});
  wide.vertices[0].startWidth = 2;
  host::ObjectId a = s.add(wide);
  host::ObjectId b = s.add(old2dThrough({{20, 0}, {30, 0}}));
  s.start();
  std::string out = s.run("PLGXK\n" + selectionOf({a, b}) + "0.75\n");
  EXPECT_TRUE(s.says(out, "\nPlease enter a new line width:", "\n请输入新的线宽:"));
  const auto lw = std::get<host::LwPolyline>(s.read(a)->data);
  EXPECT_EQ(lw.constantWidth, 0.75);
  EXPECT_EQ(lw.vertices[0].startWidth, 0);
  const auto old = std::get<host::Polyline2d>(s.read(b)->data);
  EXPECT_EQ(old.vertices[1].endWidth, 0.75);
  auto dump = s.readBackWithEzdxf();
  EXPECT_NE(dump[0].find("width=0.75"), std::string::npos) << dump[0];

  s.run("PLGXK\n" + selectionOf({a}) + "1e-12\n");
  EXPECT_EQ(std::get<host::LwPolyline>(s.read(a)->data).constantWidth, 0);
  s.run("PLGXK\n" + selectionOf({b}) + "\n");
  EXPECT_EQ(std::get<host::Polyline2d>(s.read(b)->data).vertices[0].startWidth, 0) << "Enter sends width 0";
  EXPECT_EQ(s.sysvar("CMDECHO"), host::ResBuf::shortInt(1));
}

TEST_P(PolylineBatch, LightweightAndOldStylePolylinesConvertBothWaysKeepingTheirIdentity) {
  host::LwPolyline lw = lwThrough({{0, 0}, {10, 0}, {10, 10}}, true);
  lw.vertices[1].bulge = 0.3;
  host::ObjectId a = s.add(lw, "walls", 2);
  host::ObjectId p3 = s.add(poly3dThrough({{0, 0, 0}, {1, 0, 1}}));
  s.start();
  std::string out = s.run("PL2OLD\n" + selectionOf({a}));
  EXPECT_TRUE(s.says(out, "Please select Lightweight Polyline(s) >\n", "请选择轻量级多段线>\n"));
  EXPECT_TRUE(s.says(out, s.processed(1)));
  auto old = s.read(a);
  ASSERT_TRUE(old && std::holds_alternative<host::Polyline2d>(old->data));
  EXPECT_EQ(std::get<host::Polyline2d>(old->data).vertices[1].bulge, 0.3);
  EXPECT_TRUE(std::get<host::Polyline2d>(old->data).closed);
  EXPECT_EQ(old->props.layer, "walls");
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0].rfind("POLYLINE2d closed=1", 0), 0u) << dump[0];

  out = s.run("OLDPL2LW\n" + selectionOf({a, p3}));
  EXPECT_TRUE(s.says(out, "Please select old type Polyline(s) >\n", "请选择老式多段线>\n"));
  EXPECT_TRUE(s.says(out, s.processed(1))) << "the 3D polyline is refused: ";
  EXPECT_TRUE(std::holds_alternative<host::LwPolyline>(s.read(a)->data));
  EXPECT_TRUE(std::holds_alternative<host::Polyline3d>(s.read(p3)->data));
  dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0].rfind("LWPOLYLINE closed=1", 0), 0u) << dump[0];

  out = s.run("PL2OLD\n\n");
  EXPECT_TRUE(s.says(out, "No Polyline selected.\n", "未选中。\n"));
  out = s.run("OLDPL2LW\n\n");
  EXPECT_TRUE(s.says(out, "No Polyline2D selected.\n", "未选中。\n"));
}

TEST_P(PolylineBatch, PeditTypedByTheUserEditsOnePolylineWithUndo) {
  host::ObjectId a = s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}, {0, 10}}));
  s.start();
  std::string out = s.run("PEDIT\n" + pickOf(a) + "\nC\nW\n2\nU\n\n");
  EXPECT_TRUE(s.says(out, "Select polyline or [Multiple]: "));
  EXPECT_TRUE(
      s.says(out, "Enter an option [Close/Join/Width/Edit vertex/Fit/Spline/Decurve/Ltype gen/Reverse/Undo]: "));
  EXPECT_TRUE(s.says(out, "Enter an option [Open/Join/Width/")) << "a closed polyline offers Open";
  EXPECT_TRUE(s.says(out, "Specify new width for all segments: "));
  const auto lw = std::get<host::LwPolyline>(s.read(a)->data);
  EXPECT_TRUE(lw.closed);
  EXPECT_EQ(lw.constantWidth, 0) << "the width was undone";

  out = s.run("PEDIT\nM\n" + pickOf(a) + "\n\nS\n\n");
  auto fitted = s.read(a);
  ASSERT_TRUE(std::holds_alternative<host::Polyline2d>(fitted->data)) << out;
  EXPECT_TRUE(std::get<host::Polyline2d>(fitted->data).splineFit);
  std::size_t openVertices = std::get<host::Polyline2d>(fitted->data).vertices.size();
  s.run("PEDIT\n" + pickOf(a) + "\nO\n\n");
  const auto reopened = std::get<host::Polyline2d>(s.read(a)->data);
  EXPECT_FALSE(reopened.closed);
  EXPECT_TRUE(reopened.splineFit);
  EXPECT_NE(reopened.vertices.size(), openVertices) << "fitted again as an open curve";
  s.run("PEDIT\n" + pickOf(a) + "\nD\n\n");
  const auto plain = std::get<host::Polyline2d>(s.read(a)->data);
  EXPECT_FALSE(plain.splineFit);
  EXPECT_EQ(plain.vertices.size(), 4u) << "the frame comes back";

  s.run("PEDIT\n" + pickOf(a) + "\nF\n\n");
  const auto arcs = std::get<host::Polyline2d>(s.read(a)->data);
  EXPECT_TRUE(arcs.curveFit);
  EXPECT_GT(arcs.vertices.size(), 4u) << "arcs through the frame add vertices between its points";
  bool bulged = false;
  for (const auto& v : arcs.vertices) bulged |= v.bulge != 0;
  EXPECT_TRUE(bulged);
}

TEST_P(PolylineBatch, PeditRefusesOtherObjectsAndACancelKeepsWhatWasDone) {
  host::ObjectId line = s.add(host::Line{{0, 0, 0}, {10, 0, 0}});
  host::ObjectId a = s.add(poly3dThrough({{0, 0, 0}, {5, 0, 1}, {5, 5, 2}}));
  s.start();
  std::string out = s.run("PEDIT\n" + pickOf(line) + "\n" + pickOf(a) + "\nR\nC\n^C\n");
  EXPECT_TRUE(s.says(out, "Object selected is not a polyline."));
  EXPECT_TRUE(s.says(out, "Enter an option [Close/Join/Edit vertex/Spline curve/Decurve/Reverse/Undo]: "))
      << "a 3D polyline has no widths";
  auto p3 = std::get<host::Polyline3d>(s.read(a)->data);
  EXPECT_TRUE(p3.closed);
  EXPECT_EQ(p3.vertices.front().position, (ge::Point3d{5, 5, 2})) << "reversed";
  EXPECT_TRUE(std::holds_alternative<host::Line>(s.read(line)->data));
}

TEST_P(PolylineBatch, PeditMultipleTurnsLinesAndArcsIntoPolylinesWhenAsked) {
  host::ObjectId line = s.add(host::Line{{0, 0, 2}, {10, 0, 2}});
  host::ObjectId arc = s.add(host::Arc{{20, 0, 0}, 5, 0, 3.14159265358979323846});
  host::ObjectId kept = s.add(host::Line{{0, 10, 0}, {10, 10, 0}});
  s.start();
  std::string out = s.run("PEDIT\nM\n" + pickOf(line) + "\n" + pickOf(arc) + "\n\n\nW\n1\n\n");
  EXPECT_TRUE(s.says(out, "Convert Lines, Arcs and Splines to polylines [Yes/No]? <Y>: "));
  auto fromLine = std::get<host::LwPolyline>(s.read(line)->data);
  EXPECT_EQ(fromLine.elevation, 2);
  EXPECT_EQ(fromLine.constantWidth, 1);
  auto fromArc = std::get<host::LwPolyline>(s.read(arc)->data);
  ASSERT_EQ(fromArc.vertices.size(), 2u);
  EXPECT_NEAR(fromArc.vertices[0].bulge, 1.0, 1e-12) << "a half circle has bulge 1";
  EXPECT_NEAR(fromArc.vertices[1].x, 15, 1e-12);

  s.run("PEDIT\nM\n" + pickOf(kept) + "\n\nN\n");
  EXPECT_TRUE(std::holds_alternative<host::Line>(s.read(kept)->data)) << "No leaves it a line";
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[0].rfind("LWPOLYLINE closed=0 width=1 points 0.000000,0.000000,2.000000", 0), 0u) << dump[0];
}

}  // namespace
}  // namespace commands_test
