// CHBJ on hatches written by ezdxf (line, arc, ellipse and spline edges, an
// island), the restored polylines compared by ezdxf and shapely with the
// hatches' own paths; associativity carried over to the restored boundary.
#include <gtest/gtest.h>

#include <cstdlib>

#include "command_session.h"
#include "standalone/db/dxf_writer.h"

namespace commands_test {
namespace {

class HatchBoundary : public CommandTest {};

std::string python(const std::string& args) {
  return std::string(CORVANE_PYTHON) + " " + CORVANE_CHECK_HATCHES + " " + args;
}

TEST_P(HatchBoundary, RestoresEveryPathOfHatchesWrittenByEzdxf) {
  std::filesystem::path in = s.root() / "hatches.dxf", out = s.root() / "restored.dxf";
  ASSERT_EQ(std::system(python("make " + in.string()).c_str()), 0);
  s.startFrom(in);
  std::string t = s.run("CHBJ\nALL\n\n");
  EXPECT_TRUE(s.says(t, "\nRestored the boundaries of <4 > hatch(es): <5 > polyline(s) OK.",
                     "\n恢复了< 4 >个填充图案的边界，共< 5 >条多段线。 "));
  standalone::saveDxf(s.host().drawing(), out);
  EXPECT_EQ(std::system(python("check " + out.string()).c_str()), 0);
}

TEST_P(HatchBoundary, NothingSelectedAndAssociativity) {
  host::Hatch hatch;
  hatch.associative = true;
  hatch.solidFill = true;
  host::HatchPath path;
  path.flags = 1;
  path.edges = {host::HatchLineEdge{{0, 0}, {4, 0}},
                host::HatchArcEdge{{4, 2}, 2, -1.5707963267948966, 1.5707963267948966, true},
                host::HatchLineEdge{{4, 4}, {0, 4}}, host::HatchLineEdge{{0, 4}, {0, 0}}};
  hatch.paths = {path};
  host::ObjectId h = s.add(hatch, "FLOOR");
  host::ObjectId line = s.add(host::Line{{0, 10, 0}, {5, 10, 0}});
  s.start();
  std::string t = s.run("CHBJ\n" + pickOf(line) + "\n\n");
  EXPECT_TRUE(s.says(t, "No hatches selected.\n", "未选中填充图案。\n"));
  s.run("CHBJ\n" + pickOf(h) + "\n\n");
  std::vector<host::Entity> restored = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(restored.size(), 1u);
  EXPECT_EQ(restored[0].props.layer, "FLOOR");
  const auto& pl = std::get<host::LwPolyline>(restored[0].data);
  ASSERT_EQ(pl.vertices.size(), 4u);
  EXPECT_TRUE(pl.closed);
  EXPECT_NEAR(pl.vertices[1].bulge, 1.0, 1e-12) << "the half circle stays one arc";
  std::optional<host::Entity> hatchAfter = s.read(h);
  ASSERT_TRUE(hatchAfter);
  const auto& after = std::get<host::Hatch>(hatchAfter->data);
  ASSERT_EQ(after.paths[0].sourceHandles.size(), 1u);
  EXPECT_EQ(after.paths[0].sourceHandles[0], restored[0].id.value);
  std::vector<host::ObjectId> reactors = s.host().drawing().reactorsOf(restored[0].id);
  EXPECT_NE(std::find(reactors.begin(), reactors.end(), h), reactors.end());
}

INSTANTIATE_TEST_SUITE_P(Languages, HatchBoundary, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

}  // namespace
}  // namespace commands_test
