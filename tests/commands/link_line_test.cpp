// linkLine00, linkLine90 and linkLineAuto end to end, with the reactors that
// keep automatic connectors at their shapes' side middles through the host's
// edit commands, saving and reopening.
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "command_session.h"
#include "commands/link_lines.h"
#include "standalone/db/dxf_reader.h"
#include "standalone/db/dxf_writer.h"

namespace commands_test {
namespace {

class LinkLines : public CommandTest {
 protected:
  const host::Spline& connector(std::size_t i = 0) {
    splines_ = s.entitiesOf<host::Spline>();
    return std::get<host::Spline>(splines_.at(i).data);
  }
  std::vector<host::Entity> splines_;
};

INSTANTIATE_TEST_SUITE_P(Languages, LinkLines, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

TEST_P(LinkLines, FixedTangentsFollowTheDirectionFromStartToEnd) {
  struct Case {
    const char* command;
    const char* points;
    ge::Vector3d tangent;
  };
  const Case cases[] = {
      {"linkLine00", "0,0\n10,5\n", {1, 0, 0}},   {"linkLine00", "10,5\n0,0\n", {-1, 0, 0}},
      {"linkLine00", "3,0\n3,9\n", {-1, 0, 0}},   // straight above: not to the right
      {"linkLine90", "0,9\n4,0\n", {0, -1, 0}},   {"linkLine90", "0,0\n4,9\n", {0, 1, 0}},
      {"linkLine90", "0,2\n5,2\n", {0, 1, 0}},
  };
  s.start();
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    std::string out = s.run(std::string(cases[i].command) + "\n" + cases[i].points);
    const host::Spline& made = connector(i);
    ASSERT_TRUE(made.startTangent && made.endTangent) << i;
    EXPECT_LT((*made.startTangent - cases[i].tangent).length(), 1e-12) << i;
    EXPECT_LT((*made.endTangent - cases[i].tangent).length(), 1e-12) << i;
    EXPECT_EQ(made.fitPoints.size(), 2u);
    EXPECT_EQ(splines_[i].props.color.index, host::Color::kByLayer);
    if (i == 0) {
      EXPECT_TRUE(s.says(out, "\nPlease specify the starting point>>", "\n请指定起点>>"));
      EXPECT_TRUE(s.says(out, "\nPlease specify the end point>>", "\n请指定终点>>"));
    }
  }
  s.run("linkLine00\n0,0\n\nlinkLine90\n^C\n");
  EXPECT_EQ(s.entitiesOf<host::Spline>().size(), std::size(cases)) << "Enter or a cancel draws nothing";
}

TEST_P(LinkLines, AutoTangentsComeFromTheSidesOrTheMargin) {
  s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true));
  s.add(host::Circle{{30, 5, 0}, 5});
  s.start();
  s.run("ZOOM\nC\n20,5\n100\n");  // margin 5
  struct Case {
    const char* points;
    ge::Vector3d start, end;
  };
  const Case cases[] = {
      {"10,5\n25,5\n", {1, 0, 0}, {1, 0, 0}},     // right side of the square to the left of the circle
      {"5,10\n30,0\n", {0, 1, 0}, {0, 1, 0}},     // top to bottom
      {"0,5\n30,10\n", {-1, 0, 0}, {0, -1, 0}},   // left side to the top
      {"50,50\n56,40\n", {1, 0, 0}, {1, 0, 0}},   // empty space, b right of a by more than the margin
      {"50,50\n52,40\n", {0, -1, 0}, {0, -1, 0}}, // within the margin in x, a above b
      {"50,50\n47,52\n", {0, 1, 0}, {0, 1, 0}},   // within the margin both ways
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    s.run(std::string("linkLineAuto\n") + cases[i].points);
    const host::Spline& made = connector(i);
    ASSERT_TRUE(made.startTangent && made.endTangent) << i;
    EXPECT_LT((*made.startTangent - cases[i].start).length(), 1e-12) << i;
    EXPECT_LT((*made.endTangent - cases[i].end).length(), 1e-12) << i;
  }
}

TEST_P(LinkLines, EditsOfAShapeMoveOnlyTheEndAtItsSideMiddleAndTheReactorsAreSaved) {
  host::ObjectId a = s.add(lwThrough({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true));
  host::ObjectId b = s.add(lwThrough({{30, 0}, {40, 0}, {40, 10}, {30, 10}}, true));
  host::ObjectId hatched = s.add(lwThrough({{0, 30}, {10, 30}, {10, 40}, {0, 40}}, true));
  s.start();
  // A reactor of any kind keeps a shape from getting one of ours.
  host::DbObject other{host::kNullId, host::kNullId, "XRECORD", {}};
  s.host().drawing().writeObject(other);
  s.host().drawing().dictionarySet(s.host().drawing().namedObjectsDictionary(), "OTHER_APP", other.id);
  s.host().drawing().addReactor(hatched, other.id);
  s.run("ZOOM\nC\n20,5\n100\n");
  s.run("linkLineAuto\n10,5\n30,5\n");
  s.run("linkLineAuto\n5,40\n33,10\n");
  EXPECT_EQ(s.host().drawing().reactorsOf(hatched).size(), 1u);
  ASSERT_EQ(s.host().drawing().reactorsOf(a).size(), 1u);
  ASSERT_EQ(s.host().drawing().reactorsOf(b).size(), 1u);
  auto ends = [&] {
    const host::Spline& c = connector();
    return std::pair{c.fitPoints.front(), c.fitPoints.back()};
  };
  auto expectEnds = [&](ge::Point3d start, ge::Point3d end, const char* after) {
    auto [s0, e0] = ends();
    EXPECT_LT(s0.distanceTo(start), 1e-9) << after;
    EXPECT_LT(e0.distanceTo(end), 1e-9) << after;
  };
  s.run("MOVE\n" + selectionOf({b}) + "0,0\n5,2\n");
  expectEnds({10, 5, 0}, {35, 7, 0}, "MOVE of the end shape");
  s.run("ROTATE\n" + selectionOf({a}) + "0,0\n90\n");
  expectEnds({0, 5, 0}, {35, 7, 0}, "ROTATE of the start shape");
  s.run("STRETCH\nC\n34,11\n46,13\n\n0,0\n0,4\n");
  expectEnds({0, 5, 0}, {35, 9, 0}, "STRETCH of the end shape's top");
  // The second connector started on the shape with a foreign reactor: its start stays put.
  const host::Spline& second = connector(1);
  EXPECT_LT(second.fitPoints.front().distanceTo({5, 40, 0}), 1e-9);
  EXPECT_LT(second.fitPoints.back().distanceTo({33, 10, 0}), 1e-9) << "on B's top, not at its middle: left alone";

  std::filesystem::path saved = s.root() / "links.dxf", report = s.root() / "links.txt";
  standalone::saveDxf(s.host().drawing(), saved);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_CHECK_LINKS + " " + saved.string() + " > " +
                    report.string() + " 2>&1";
  EXPECT_EQ(std::system(cmd.c_str()), 0);
  std::ifstream in(report);
  std::string facts((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_NE(facts.find("entries 2\ntypes LINKLINETONOTIFY\nowners ok\nwatched shapes 2\naudit errors 0 fixes 0"),
            std::string::npos)
      << facts;

  // Reopened: the dictionary and the reactors are there, without points or connectors.
  test_support::HostSession reopened("links");
  reopened.start(standalone::loadDxf(saved), reopened.root() / "corvane", [](standalone::EmbeddedHost&) {});
  host::Drawing& d = reopened.host().drawing();
  std::optional<host::ObjectId> dict = d.dictionaryLookup(d.namedObjectsDictionary(), "ZORL_DICT");
  ASSERT_TRUE(dict);
  std::vector<host::ObjectId> watching = d.reactorsOf(b);
  ASSERT_EQ(watching.size(), 1u);
  auto* link = dynamic_cast<commands::LinkLineToNotify*>(reopened.host().classes().instance(watching[0]));
  ASSERT_NE(link, nullptr);
  EXPECT_TRUE(link->connectors.empty());
  EXPECT_EQ(link->sides[0], (ge::Point3d{}));
  reopened.run("MOVE\n" + selectionOf({b}) + "0,0\n5,0\n");
  std::optional<host::Entity> kept = d.read(splines_[0].id);
  ASSERT_TRUE(kept);
  EXPECT_LT(std::get<host::Spline>(kept->data).fitPoints.back().distanceTo({35, 9, 0}), 1e-9)
      << "a reopened reactor knows no connector";
}

TEST_P(LinkLines, AClassOfTheSameNameWithAnotherParentIsAMismatch) {
  s.start();
  s.module().acrxEntryPoint(frame::AppMsg::kUnloadAppMsg);
  s.host().classes().addClass({"LinkLineToNotify", "AcDbEntity", "OTHER", "other", nullptr});
  std::string before = s.transcript();
  s.module().acrxEntryPoint(frame::AppMsg::kInitAppMsg);
  std::string after = s.transcript();
  EXPECT_NE(after.substr(before.size()).find("Class mismatch"), std::string::npos);
}

}  // namespace
}  // namespace commands_test
