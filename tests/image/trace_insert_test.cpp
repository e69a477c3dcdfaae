// R2V through the tracer program: the BMP traced, its DXF inserted as a block
// at a point the user gives during the pause, the DXF removed afterwards.
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>

#include <gtest/gtest.h>

#include "command_session.h"
#include "image/outline_dlg.h"
#include "image/picture.h"

namespace commands_test {
namespace {

namespace fs = std::filesystem;

class TraceInsert : public CommandTest {
 protected:
  void SetUp() override {
    fs::create_directories(temp());
    setenv("TMPDIR", temp().c_str(), 1);
    // A black 20 x 20 square with its lower-left corner at pixel (10, 10) counted upward.
    image::Picture p = image::blankPicture(40, 40, {255, 255, 255});
    for (int y = 10; y < 30; ++y)
      for (int x = 10; x < 30; ++x) p.set(x, y, {0, 0, 0});
    image::saveBmp(p, bmp());
  }
  void TearDown() override { unsetenv("TMPDIR"); }
  fs::path temp() const { return s.root() / "tmp"; }
  std::string bmp() const { return (s.root() / "square.bmp").string(); }
  std::string tracer() const { return (s.root() / "autotrace" / "autotrace").string(); }
  void installTracer() {
    fs::create_directories(s.root() / "autotrace");
    fs::copy_file(CORVANE_TRACER, tracer());
  }
  int leftoverDxfFiles() const {
    int n = 0;
    for (const auto& e : fs::directory_iterator(temp())) n += e.path().extension() == ".dxf";
    return n;
  }
};

INSTANTIATE_TEST_SUITE_P(Languages, TraceInsert, ::testing::Values(Language::kEnglish, Language::kChinese),
                         languageName);

// A missing tracer is reported; a cancelled insertion leaves nothing, not even
// the DXF; then the traced outline goes in as a block at the picked point.
TEST_P(TraceInsert, TheTracedOutlineIsInsertedAsABlockAtThePickedPoint) {
  s.start();
  std::string out = s.run("R2V\nYes\n" + bmp() + "\n");
  EXPECT_TRUE(s.says(out, tracer() + s.pick("Program file not found, please reinstall.", "程序文件未找到，请重新安装。")));
  installTracer();
  s.run("R2V\nYes\n" + bmp() + "\n^C\n");
  EXPECT_TRUE(s.entitiesOf<host::BlockReference>().empty());
  EXPECT_EQ(leftoverDxfFiles(), 0) << "also deleted when the insertion point was cancelled";
  s.run("R2V\nYes\n^C\n");
  EXPECT_TRUE(s.entities().empty());
  out = s.run("R2V\nYes\n" + bmp() + "\n7,8\n");
  EXPECT_TRUE(s.says(out, "waiting... \n "));
  EXPECT_TRUE(s.says(out, "Specify insertion point or [Basepoint/Scale/X/Y/Z/Rotate]: ")) << "the pause shows the prompt";
  auto refs = s.entitiesOf<host::BlockReference>();
  ASSERT_EQ(refs.size(), 1u);
  const auto& ref = std::get<host::BlockReference>(refs[0].data);
  EXPECT_LT(ref.position.distanceTo({7, 8, 0}), 1e-9);
  EXPECT_EQ(ref.scale.x, 1.0);
  EXPECT_EQ(ref.rotation, 0.0);
  auto& drawing = s.host().drawing();
  std::optional<host::ObjectId> block = drawing.findBlock(ref.blockName);
  ASSERT_TRUE(block);
  std::vector<host::ObjectId> inside = drawing.entitiesOf(*block);
  ASSERT_EQ(inside.size(), 1u) << "one outline for one square";
  ge::PointList ring = verticesOf(*drawing.read(inside[0]));
  ASSERT_GE(ring.size(), 4u);
  for (const ge::Point3d& p : ring) {
    // Distance from the square's boundary, x and y in 10..30.
    double dx = std::max({10 - p.x, p.x - 30, 0.0}), dy = std::max({10 - p.y, p.y - 30, 0.0});
    double outside = std::hypot(dx, dy);
    double inward = std::min({p.x - 10, 30 - p.x, p.y - 10, 30 - p.y});
    EXPECT_LE(outside > 0 ? outside : std::max(inward, 0.0), 1.0) << p.x << "," << p.y;
  }
  EXPECT_EQ(leftoverDxfFiles(), 0) << "the DXF is deleted after the insertion";
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(countOf(std::accumulate(dump.begin(), dump.end(), std::string()), "INSERT"), 1u);
}

TEST_P(TraceInsert, TheVectorizeDialogHandsItsProcessedPictureToTheTracer) {
  installTracer();
  s.start();
  // The dialog's Do Vectorize with the tracer box set, as a desktop dialog calls it.
  s.host().hostCommands().addHostCommand("DIALOGTRACE", [this](standalone::HostCommandContext&) {
    image::COutlineDlg dialog(s.host().host(), s.module().settings());
    dialog.loadImage(bmp());
    dialog.onProcess();
    dialog.onTracerBox(true);
    dialog.onDoVectorize();
  });
  s.run("DIALOGTRACE\n3,4\n");
  auto refs = s.entitiesOf<host::BlockReference>();
  ASSERT_EQ(refs.size(), 1u);
  EXPECT_LT(std::get<host::BlockReference>(refs[0].data).position.distanceTo({3, 4, 0}), 1e-9);
  EXPECT_EQ(std::distance(fs::directory_iterator(temp()), fs::directory_iterator()), 0)
      << "neither the picture's BMP nor the DXF is left behind";
  EXPECT_EQ(s.module().settings().readInt(image::kSettingTracerBox), 1u);
}

TEST_P(TraceInsert, TypedInsertOfADxfFileMakesOneBlockWithTheFilesBasePoint) {
  std::string dxf = (s.root() / "part.dxf").string();
  std::ofstream(dxf) << "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n9\n$INSBASE\n10\n5.0\n20\n5.0\n30\n0.0\n"
                        "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n5.0\n20\n5.0\n30\n0.0\n11\n9.0\n"
                        "21\n5.0\n31\n0.0\n0\nENDSEC\n0\nEOF\n";
  s.start();
  std::string out = s.run("INSERT\n" + dxf + "\n1,2\n2\n\n90\nINSERT\n" + dxf + "\n0,0\n\n\n\n");
  EXPECT_TRUE(s.says(out, "Enter Y scale factor <use X scale factor>: "));
  auto refs = s.entitiesOf<host::BlockReference>();
  ASSERT_EQ(refs.size(), 2u);
  const auto& first = std::get<host::BlockReference>(refs[0].data);
  EXPECT_EQ(first.blockName, "part");
  EXPECT_EQ(first.scale, (ge::Vector3d{2, 2, 2})) << "Enter at the Y scale takes the X scale";
  EXPECT_NEAR(first.rotation, M_PI / 2, 1e-12);
  EXPECT_EQ(std::get<host::BlockReference>(refs[1].data).scale, (ge::Vector3d{1, 1, 1}));
  auto& drawing = s.host().drawing();
  std::optional<host::ObjectId> block = drawing.findBlock("part");
  ASSERT_TRUE(block);
  EXPECT_LT(drawing.blockBasePoint(*block).distanceTo({5, 5, 0}), 1e-12) << "the file's insertion base";
  ASSERT_EQ(drawing.entitiesOf(*block).size(), 1u) << "the second insertion uses the same definition";
  out = s.run("INSERT\n" + (s.root() / "nothing.dxf").string() + "\n");
  EXPECT_TRUE(s.says(out, "Cannot find file"));
  EXPECT_EQ(s.entitiesOf<host::BlockReference>().size(), 2u);
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(countOf(std::accumulate(dump.begin(), dump.end(), std::string()), "INSERT"), 2u);
}

}  // namespace
}  // namespace commands_test
