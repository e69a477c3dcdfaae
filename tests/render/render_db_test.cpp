// The renderer over the embedded host's real drawing database.
#include <gtest/gtest.h>

#include "standalone/db/database.h"
#include "standalone/render/render.h"
#include "tests/render/picture.h"

using namespace standalone;

namespace {

void appendTo(DrawingDatabase& db, host::EntityData data, int colorIndex = 256) {
  host::Entity e;
  e.props = db.defaultProps();
  e.props.color.index = colorIndex;
  e.data = std::move(data);
  EXPECT_EQ(db.append(e), host::ErrorStatus::eOk);
}

}  // namespace

TEST(RenderDatabase, NewDrawingEntitiesAppearWithTheirColours) {
  DrawingDatabase db = DrawingDatabase::createEmpty();
  appendTo(db, host::Line{{0, 0, 0}, {10, 0, 0}});  // by layer: layer 0 is index 7, drawn black
  appendTo(db, host::Circle{{5, 5, 0}, 2}, 1);
  RenderOptions o;
  o.widthPx = o.heightPx = 300;
  auto file = std::filesystem::temp_directory_path() / "corvane-render-db.png";
  renderDrawingToPng(db, file, o);
  render_test::Picture pic = render_test::loadPng(file);
  std::filesystem::remove(file);
  ViewTransform v = planView(db, o);
  auto pixel = [&](double x, double y) {
    ge::Point2d p = v.toPage({x, y});
    return pic.darkestNear(static_cast<int>(p.x), static_cast<int>(p.y), 2);
  };
  render_test::Pixel line = pixel(5, 0), circle = pixel(7, 5);
  EXPECT_LT(line.r + line.g + line.b, 200);
  EXPECT_EQ(line.r, line.g);
  EXPECT_GT(circle.r, circle.g + 100);
  ge::Point2d centre = v.toPage({5, 5});
  EXPECT_FALSE(pic.isInk(static_cast<int>(centre.x), static_cast<int>(centre.y)));
}
