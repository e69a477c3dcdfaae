// txwk end to end on the embedded host: a picture file, the dialog's values
// as prompts, the holes in the drawing, the preview file and the refusals.
#include <cmath>
#include <fstream>
#include <numeric>

#include <gtest/gtest.h>

#include "command_session.h"
#include "image/image_hole_net.h"
#include "image/picture.h"

namespace commands_test {
namespace {

class HoleNet : public CommandTest {
 protected:
  // 40 x 20 pixels, black on the left half, white on the right.
  std::string halfBlack() {
    image::Picture p = image::blankPicture(40, 20, {255, 255, 255});
    for (int y = 0; y < 20; ++y)
      for (int x = 0; x < 20; ++x) p.set(x, y, {0, 0, 0});
    std::string path = (s.root() / "half.png").string();
    image::savePng(p, path);
    return path;
  }
  // Picture, contrast, brightness, rows 2, size 33, invert, shape, preview file, origin, height 20.
  std::string script(const std::string& picture, const char* invert, const char* shape, const std::string& preview) {
    return "txwk\n" + picture + "\n\n\n2\n33\n" + invert + "\n" + shape + "\n" + preview + "\n100,200\n20\n";
  }
};

INSTANTIATE_TEST_SUITE_P(Languages, HoleNet, ::testing::Values(Language::kEnglish, Language::kChinese), languageName);

// Bad pictures and cancelled prompts draw nothing; then dark cells get holes
// of each shape.
TEST_P(HoleNet, DarkCellsGetHolesOfEachShapeBelowTheOrigin) {
  std::string text = (s.root() / "notes.png").string();
  std::ofstream(text) << "not a picture";
  std::string picture = halfBlack();
  host::ObjectId model = s.add(host::Ellipse{{0, 0, 0}, {4, 0, 0}, ge::kZAxis, 0.5, 0, 2 * M_PI}, "holes", 3);
  s.start();
  // Do Drawing before any picture was loaded.
  image::ImageHoleNet dialog(s.host().host());
  EXPECT_EQ(dialog.onDoDrawing(), 0);
  EXPECT_TRUE(s.says(s.transcript(), "Please load the picture first", "请先载入图片"));
  std::string missing = (s.root() / "missing.png").string();
  std::string out = s.run("txwk\n" + missing + "\n");
  EXPECT_TRUE(s.says(out, "GetLastError: 2 -- Load image Error：" + missing));
  out = s.run("txwk\n" + text + "\n");
  EXPECT_TRUE(s.says(out, "Load image error 2!", "载入图片错误2!"));
  out = s.run("txwk\n\n");
  EXPECT_TRUE(s.says(out, "No image file selected!", "未选中图像文件！"));
  s.run("txwk\n" + picture + "\n\n\n2\n33\nNo\nCircle\n\n^C\n");
  s.run("txwk\n" + picture + "\n\n\n2\n33\nNo\nCircle\n\n0,0\n^C\n");
  out = s.run("txwk\n" + picture + "\n\n\n2\n33\nNo\nSelect\n\n0,0\n10\n\n");
  EXPECT_TRUE(s.says(out, "No Entity selected.\n", "没有选中物体。\n"));
  EXPECT_EQ(s.entities().size(), 1u) << "the hole model alone";
  out = s.run(script(picture, "No", "Circle", ""));
  EXPECT_TRUE(s.says(out, "\nPlease specify the origin>>", "\n请指定原点>>"));
  EXPECT_TRUE(s.says(out, "\nPlease specify the height>>", "\n请指定高度>>"));
  EXPECT_TRUE(s.says(out, "\nPlease make preview first.", "\n建议先预览调整！")) << "no preview file was named";
  EXPECT_TRUE(s.says(out, "\n4 holes drawn.", "\n绘制了4个网孔。"));
  // Cells of 10 pixels, one drawing unit per pixel (height 20 over 20 rows):
  // black cells get holes of 10 × 0.99, white ones none.
  auto circles = s.entitiesOf<host::Circle>();
  ASSERT_EQ(circles.size(), 4u);
  const ge::Point3d centres[] = {{105, 195, 0}, {115, 195, 0}, {105, 185, 0}, {115, 185, 0}};
  for (int i = 0; i < 4; ++i) {
    const auto& c = std::get<host::Circle>(circles[i].data);
    EXPECT_LT(c.center.distanceTo(centres[i]), 1e-9) << i;
    EXPECT_NEAR(c.radius, 4.95, 1e-9);
  }
  auto dump = s.readBackWithEzdxf();
  EXPECT_EQ(countOf(std::accumulate(dump.begin(), dump.end(), std::string()), "CIRCLE"), 4u);
  // Squares with invert and a preview file, diamonds, and copies of a selected model.
  std::string preview = (s.root() / "preview.png").string();
  out = s.run(script(picture, "Yes", "Squart", preview));
  EXPECT_FALSE(s.says(out, "\nPlease make preview first.", "\n建议先预览调整！"));
  auto squares = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(squares.size(), 4u) << "invert: the white half gets the holes";
  expectPoints(verticesOf(squares[0]), {{120.05, 190.05, 0}, {129.95, 190.05, 0}, {129.95, 199.95, 0},
                                        {120.05, 199.95, 0}});
  s.run(script(picture, "No", "Diamond", ""));
  auto shapes = s.entitiesOf<host::LwPolyline>();
  ASSERT_EQ(shapes.size(), 8u);
  expectPoints(verticesOf(shapes[4]), {{105, 190.05, 0}, {109.95, 195, 0}, {105, 199.95, 0}, {100.05, 195, 0}});
  out = s.run(script(picture, "No", "Select", "") + pickOf(model) + "\n");
  EXPECT_TRUE(s.says(out, "\nPlease select an entity(polyline, circle, ellipse or block) representing the hole:",
                     "\n请选择一个代表网孔的物体（多段线、圆、椭圆或图块）:"));
  auto ellipses = s.entitiesOf<host::Ellipse>();
  ASSERT_EQ(ellipses.size(), 5u) << "the model and four copies";
  const auto& copy = std::get<host::Ellipse>(ellipses[1].data);
  EXPECT_LT(copy.center.distanceTo({105, 195, 0}), 1e-9);
  EXPECT_NEAR(copy.majorAxis.length() * 2, 9.9, 1e-9) << "the larger side of the extents is the hole's size";
  EXPECT_EQ(ellipses[1].props.layer, "holes");
  // The preview: red discs where the white half was, on the light grey area.
  auto shown = std::get<image::Picture>(image::loadPicture(preview));
  ASSERT_EQ(shown.width, image::kPreviewWidth);
  double scale = image::kPreviewWidth / 40.0;  // 16: the width limits the scale
  EXPECT_EQ(shown.at(int(25 * scale), int(5 * scale)), image::kPreviewHole);
  EXPECT_EQ(shown.at(int(5 * scale), int(5 * scale)), image::kPreviewBackground);
}

}  // namespace
}  // namespace commands_test
