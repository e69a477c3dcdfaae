// PLDF, PLDJDF and PLBH end to end.
#include <cmath>

#include <gtest/gtest.h>

#include "command_session.h"

namespace commands_test {
namespace {

class Divide : public CommandTest {
 protected:
  const char* countPrompt() {
    return s.pick("\nPlease enter the number of divide points, allowable 4--100, default 16:",
                  "\n请输入等分点数，允许值4--100，默认值16:");
  }
};

INSTANTIATE_TEST_SUITE_P(Languages, Divide, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(Divide, ByCountPutsAPolylineBesideEachCurveAndKeepsTheSource) {
  host::ObjectId line = s.add(host::Line{{0, 0, 0}, {10, 0, 0}}, "axis", 4);
  host::ObjectId circle = s.add(host::Circle{{50, 0, 0}, 5});
  s.start();
  std::string out = s.run("PLDF\n" + pickOf(line) + "\n" + pickOf(circle) + "\n\n3\n101\n5\n");
  EXPECT_TRUE(s.says(out, "Please select Curves >\n", "请选择各种线条>\n"));
  EXPECT_EQ(countOf(out, countPrompt()), 3u) << "3 and 101 ask again: " << out;
  EXPECT_TRUE(s.says(out, s.processed(2)));
  EXPECT_TRUE(s.read(line) && s.read(circle));
  auto lws = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(lws.size(), 2u);
  expectPoints(verticesOf(lws[0]), {{0, 0, 0}, {2.5, 0, 0}, {5, 0, 0}, {7.5, 0, 0}, {10, 0, 0}});
  // The closed circle: five points, the last repeating the first, and closed all the same.
  ge::PointList round = verticesOf(lws[1]);
  ASSERT_EQ(round.size(), 5u);
  EXPECT_LT(round.front().distanceTo(round.back()), 1e-9);
  EXPECT_TRUE(std::get<host::LwPolyline>(lws[1].data).closed);
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump[2], "LWPOLYLINE closed=0 width=0 points 0.000000,0.000000,0.000000;2.500000,0.000000,0.000000;"
                     "5.000000,0.000000,0.000000;7.500000,0.000000,0.000000;10.000000,0.000000,0.000000");
}

TEST_P(Divide, EnterOrEscapeAtTheCountGivesSixteen) {
  host::ObjectId line = s.add(host::Line{{0, 0, 0}, {15, 0, 0}});
  s.start();
  s.run("PLDF\n" + pickOf(line) + "\n\n\n");
  auto lws = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(lws.size(), 1u);
  EXPECT_EQ(verticesOf(lws[0]).size(), 16u);
  s.run("PLDF\n" + pickOf(line) + "\n\n^C\n");
  EXPECT_EQ(s.entitiesOf<host::LwPolyline>().size(), 2u) << "a cancel goes on with 16";
  std::string out = s.run("PLDF\n\n");
  EXPECT_TRUE(s.says(out, "No Curve selected.\n", "未选中任何线条。\n"));
}

TEST_P(Divide, BySpacingRefusesSpacingsAboveAQuarterAndLengthensTheLastPiece) {
  host::ObjectId line = s.add(host::Line{{0, 0, 0}, {10, 0, 0}});
  host::ObjectId p3 = s.add(poly3dThrough({{0, 0, 0}, {0, 0, 10}}));
  s.start();
  std::string out = s.run("PLDJDF\n" + pickOf(line) + "\n\n3\n");
  EXPECT_TRUE(s.says(out, "\nPlease enter the equal distance:", "\n请输入等分距离:"));
  EXPECT_TRUE(
      s.says(out, "The line length is less than 4 times of the bisection distance, this curve will not be processed.",
             "\n线条长度小于4倍设定的等分距离，本曲线不处理。"));
  EXPECT_TRUE(s.says(out, s.processed(0)));
  s.run("PLDJDF\n" + pickOf(line) + "\n\n2.5\n");
  s.run("PLDJDF\n" + pickOf(line) + "\n" + pickOf(p3) + "\n\n2.2\n");
  auto lws = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(lws.size(), 2u);
  expectPoints(verticesOf(lws[0]), {{0, 0, 0}, {2.5, 0, 0}, {5, 0, 0}, {7.5, 0, 0}, {10, 0, 0}});
  expectPoints(verticesOf(lws[1]), {{0, 0, 0}, {2.2, 0, 0}, {4.4, 0, 0}, {6.6, 0, 0}, {10, 0, 0}});
  auto vertical = s.entitiesOf<host::Polyline3d>();
  ASSERT_EQ(vertical.size(), 2u) << "points along z make a 3D polyline";
  expectPoints(verticesOf(vertical[1]), {{0, 0, 0}, {0, 0, 2.2}, {0, 0, 4.4}, {0, 0, 6.6}, {0, 0, 10}});
  auto dump = s.readBackWithEzdxf();
  EXPECT_NE(dump.back().find("HEADER"), std::string::npos);
  out = s.run("PLDJDF\n" + pickOf(line) + "\n\n^C\n");
  EXPECT_EQ(out.find("Processed"), std::string::npos) << "a cancelled spacing ends quietly";
  EXPECT_EQ(s.entitiesOf<host::LwPolyline>().size(), 2u);
}

TEST_P(Divide, NumberingStartsAtTheLowerLeftEndAndSetsPdmode) {
  host::ObjectId leftward = s.add(host::Line{{10, 0, 0}, {0, 0, 0}});
  host::ObjectId closed = s.add(lwThrough({{20, 20}, {30, 20}, {30, 30}, {20, 20}}));
  s.start();
  std::string out = s.run("PLBH\n" + pickOf(leftward) + "\n" + pickOf(closed) + "\n\n4\n\n");
  EXPECT_TRUE(s.says(out, "Please select polyline >\n", "请选择多段线>\n"));
  EXPECT_TRUE(s.says(out, "Lower Left default?[Y/N](Y):", "是否把默认起点设在左下角[Y/N](Y):"));
  auto texts = s.entitiesOf<host::Text>();
  auto points = s.entitiesOf<host::PointEntity>();
  ASSERT_EQ(texts.size(), 6u);
  ASSERT_EQ(points.size(), 6u);
  const auto& first = std::get<host::Text>(texts[0].data);
  EXPECT_EQ(first.text, "1");
  EXPECT_EQ(first.height, 2) << "half the height asked for";
  EXPECT_EQ(first.position, (ge::Point3d{2, 2, 0})) << "the left end is 1, marked up and right by half";
  EXPECT_EQ(std::get<host::Text>(texts[1].data).position, (ge::Point3d{12, 2, 0}));
  EXPECT_EQ(std::get<host::Text>(texts[2].data).text, "1") << "numbers restart on every curve";
  EXPECT_EQ(std::get<host::Text>(texts[2].data).position, (ge::Point3d{22, 22, 0})) << "closed: never reversed";
  EXPECT_EQ(s.sysvar("PDMODE"), host::ResBuf::shortInt(35));
  EXPECT_EQ(out.find("Processed"), std::string::npos) << "no count line";
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(dump.back(), "HEADER PDMODE=35");
  EXPECT_NE(std::find(dump.begin(), dump.end(), "TEXT height=2 text=1 points 2.000000,2.000000,0.000000"), dump.end());
}

TEST_P(Divide, NumberingWithNoKeepsTheDrawnDirectionAndATinyHeightUsesTheViewSize) {
  host::ObjectId leftward = s.add(host::Line{{10, 0, 0}, {0, 0, 0}});
  s.start();
  const double viewSize = std::get<double>(s.sysvar("VIEWSIZE").value);
  std::string out = s.run("PLBH\n" + pickOf(leftward) + "\n\n0.0005\nNo\n");
  char shown[64];
  std::snprintf(shown, sizeof shown, "(%.2f):", viewSize / 30);
  EXPECT_TRUE(s.says(out, shown));
  auto texts = s.entitiesOf<host::Text>();
  ASSERT_EQ(texts.size(), 2u);
  const auto& first = std::get<host::Text>(texts[0].data);
  EXPECT_NEAR(first.height, viewSize / 60, 1e-12);
  EXPECT_NEAR(first.position.x, 10 + viewSize / 60, 1e-12) << "No: the start point is 1";
}

}  // namespace
}  // namespace commands_test
