// makeOutline on a cluster of overlapping shapes: one closed outline that
// follows their outer edges, measured against shapely's union of the shapes;
// the shapes themselves and the entities not selected are left as they were.
#include <gtest/gtest.h>

#include <cstdlib>

#include "command_session.h"
#include "standalone/db/dxf_writer.h"

namespace commands_test {
namespace {

class Outline : public CommandTest {};

TEST_P(Outline, FollowsTheOuterEdgeOfOverlappingShapes) {
  s.add(lwThrough({{0, 0}, {6, 0}, {6, 4}, {0, 4}}, true));
  s.add(host::Circle{{6, 4, 0}, 2});
  host::LwPolyline bay = lwThrough({{-2, 1}, {1, 1}, {1, 3}, {-2, 3}}, true);
  bay.vertices[3].bulge = 0.8;  // round on the left
  s.add(bay);
  host::Ellipse ellipse;
  ellipse.center = {3, -0.6, 0};
  ellipse.majorAxis = {2.5, 0, 0};
  ellipse.ratio = 0.4;
  s.add(ellipse);
  host::ObjectId away = s.add(host::Circle{{40, 40, 0}, 1});
  s.start();
  std::string t = s.run("makeOutline\nW -5,-3 9,7\n\n");
  EXPECT_TRUE(s.says(t, "\nPleas Select all entities for outline:", "\n请选择需要产生外轮廓的所有物体："));
  std::optional<host::Entity> other = s.read(away);
  ASSERT_TRUE(other);
  EXPECT_FALSE(other->props.invisible);
  // The circle far away is no part of the cluster: leave it out of the measure.
  s.run("ERASE\n" + pickOf(away) + "\n\n");
  std::filesystem::path out = s.root() / "outline.dxf";
  standalone::saveDxf(s.host().drawing(), out);
  std::string cmd = std::string(CORVANE_PYTHON) + " " + CORVANE_CHECK_OUTLINE + " " + out.string() + " 4";
  EXPECT_EQ(std::system(cmd.c_str()), 0) << t;
  EXPECT_EQ(s.sysvar("CMDECHO").value, host::ResBuf::shortInt(1).value);
}

INSTANTIATE_TEST_SUITE_P(Languages, Outline, ::testing::Values(Language::kEnglish, Language::kChinese), languageName);

}  // namespace
}  // namespace commands_test
