// INOFFSET on a floor plan of loose lines and an arc: every room gets its
// inner rings at the right depths (measured by shapely against the rooms it
// finds itself) and no boundary is left behind.
#include <gtest/gtest.h>

#include <cstdlib>
#include <numbers>

#include "command_session.h"
#include "standalone/db/dxf_writer.h"

namespace commands_test {
namespace {

class InnerOffsets : public CommandTest {
 protected:
  // Three rooms; the walls overshoot their corners, the left room has a bay window.
  void floorPlan() {
    auto wall = [&](double x1, double y1, double x2, double y2) { s.add(host::Line{{x1, y1, 0}, {x2, y2, 0}}); };
    wall(-0.5, 0, 3, 0);
    s.add(host::Arc{{5, 0, 0}, 2, std::numbers::pi, 0});
    wall(7, 0, 16.5, 0);
    wall(0, -0.5, 0, 13.5);
    wall(10, -0.5, 10, 8.5);
    wall(16, -0.5, 16, 13.5);
    wall(-0.5, 8, 16.5, 8);
    wall(-0.5, 13, 16.5, 13);
  }
  int check(const std::string& depths) {
    std::filesystem::path out = s.root() / "inner.dxf";
    standalone::saveDxf(s.host().drawing(), out);
    std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_CHECK_INNER + " " + out.string() + " " + depths;
    return std::system(cmd.c_str());
  }
};

TEST_P(InnerOffsets, RingsInEveryRoomAndNoBoundaryLeft) {
  floorPlan();
  s.start();
  std::string t = s.run("ZOOM\nC\n8,6\n18\nINOFFSET\nALL\n\n2\nM\n0.5,0.25\n");
  EXPECT_TRUE(s.says(t, "\nOffset times[1]:", "\n偏移根数[1]:"));
  EXPECT_EQ(check("0.5 0.75"), 0) << t;
  EXPECT_NE(check("0.5 0.8"), 0) << "the measure tells a wrong depth";
  EXPECT_EQ(s.sysvar("CMDECHO").value, host::ResBuf::shortInt(1).value);
}

TEST_P(InnerOffsets, OneDistanceAndHiddenOthersShownAgain) {
  floorPlan();
  host::ObjectId other = s.add(host::Circle{{40, 40, 0}, 1});
  s.start();
  // The circle is not selected: hidden while the command runs, so it makes no room.
  s.run("ZOOM\nC\n8,6\n18\nINOFFSET\nC -1,-1 17,14\n\n25\n0.4\n");
  std::optional<host::Entity> circle = s.read(other);
  ASSERT_TRUE(circle);
  EXPECT_FALSE(circle->props.invisible);
  // Count 25 is taken as 10 rings, 0.4 apart; each room holds those shallower
  // than half its width: 7 in the 6-wide room, 6 in the 5-high one, and all
  // 10 in the 8-high one, whose bay window leaves room for the 4.0 ring.
  EXPECT_EQ(s.entitiesOf<host::LwPolyline>().size(), 23u);
}

// More than 100 selected entities ask before going on; 100 do not. A
// single closed figure gives the outside and one area, so one boundary.
TEST_P(InnerOffsets, AsksAbove100EntitiesAndTracesASingleFigure) {
  s.add(host::Circle{{0, 0, 0}, 3});
  for (int i = 0; i < 99; ++i) s.add(host::Line{{10.0 + i * 0.01, 5, 0}, {10.0 + i * 0.01, 5.005, 0}});
  host::ObjectId extra = s.add(host::Line{{20, 5, 0}, {20, 5.005, 0}});
  s.start();
  const char* question = s.pick(
      "\nMore objects selected, it may take a long time to calculate the inner contour. Are you sure to "
      "continue[Y/N]（N）:",
      "\n您选择了较多的物体，计算内轮廓可能需要较长时间，确认继续吗？[Y/N]（N）:");
  std::string t = s.run("ZOOM\nC\n8,0\n30\nINOFFSET\nALL\n\n\n");
  EXPECT_TRUE(s.says(t, question));
  EXPECT_TRUE(s.entitiesOf<host::LwPolyline>().empty()) << "no is the default";
  t = s.run("INOFFSET\nALL\nR\n" + pickOf(extra) + "\n\n1\n0.5\n");
  EXPECT_EQ(countOf(t, question), 0u) << t;
  std::vector<host::Entity> rings = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(rings.size(), 1u) << t;
  double area = 0;
  ASSERT_EQ(s.host().host().curves.getArea(rings[0].data, area), host::ErrorStatus::eOk);
  EXPECT_NEAR(std::abs(area), std::numbers::pi * 2.5 * 2.5, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Languages, InnerOffsets, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

}  // namespace
}  // namespace commands_test
