// The renderer over the embedded host's real drawing database.
#include <gtest/gtest.h>

#include "standalone/db/database.h"
#include "standalone/render/render.h"
#include "tests/render/picture.h"

using namespace standalone;

namespace {

std::filesystem::path scratch(const std::string& name) {
  auto dir = std::filesystem::temp_directory_path() / "corvane-render-db";
  std::filesystem::create_directories(dir);
  return dir / name;
}

host::ObjectId appendTo(DrawingDatabase& db, host::EntityData data, int colorIndex = 256) {
  host::Entity e;
  e.props = db.defaultProps();
  e.props.color.index = colorIndex;
  e.data = std::move(data);
  EXPECT_EQ(db.append(e), host::ErrorStatus::eOk);
  return e.id;
}

}  // namespace

TEST(RenderDatabase, NewDrawingEntitiesAppearWithTheirColours) {
  DrawingDatabase db = DrawingDatabase::createEmpty();
  appendTo(db, host::Line{{0, 0, 0}, {10, 0, 0}});  // by layer: layer 0 is index 7, drawn black
  host::Circle c;
  c.center = {5, 5, 0};
  c.radius = 2;
  appendTo(db, c, 1);
  RenderOptions o;
  o.widthPx = 300;
  o.heightPx = 300;
  auto file = scratch("db.png");
  renderDrawingToPng(db, file, o);
  render_test::Picture pic = render_test::loadPng(file);
  ViewTransform v = planView(db, o);
  ge::Point2d onLine = v.toPage({5, 0}), onCircle = v.toPage({7, 5}), centre = v.toPage({5, 5});
  render_test::Pixel line = pic.darkestNear(static_cast<int>(onLine.x), static_cast<int>(onLine.y), 2);
  EXPECT_LT(line.r + line.g + line.b, 200);
  EXPECT_EQ(line.r, line.g);
  render_test::Pixel circle = pic.darkestNear(static_cast<int>(onCircle.x), static_cast<int>(onCircle.y), 2);
  EXPECT_GT(circle.r, circle.g + 100);
  EXPECT_FALSE(pic.isInk(static_cast<int>(centre.x), static_cast<int>(centre.y)));
  std::filesystem::remove(file);
}
