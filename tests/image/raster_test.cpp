// The raster tools of the vectorizer and the contour commands: region seeds
// with the outside area first, the outer contour in order, the pixel mapping
// of a rendered view, and the colour reduction.
#include <cmath>
#include <cstdlib>
#include <functional>
#include <set>

#include <gtest/gtest.h>

#include "image/colour_regions.h"
#include "image/raster_tools.h"

namespace {

using image::PixelPoint;
using image::Picture;

constexpr image::Rgb kWhite{255, 255, 255}, kBlack{0, 0, 0};

void frame(Picture& p, int x0, int y0, int x1, int y1, image::Rgb c = kBlack) {
  for (int x = x0; x <= x1; ++x) p.set(x, y0, c), p.set(x, y1, c);
  for (int y = y0; y <= y1; ++y) p.set(x0, y, c), p.set(x1, y, c);
}

void fill(Picture& p, int x0, int y0, int x1, int y1, image::Rgb c = kBlack) {
  for (int y = y0; y <= y1; ++y)
    for (int x = x0; x <= x1; ++x) p.set(x, y, c);
}

TEST(RegionSeeds, OutsideFirstThenEachEnclosedArea) {
  const image::BackgroundTest white{kWhite, 24};
  struct Case {
    const char* name;
    std::function<void(Picture&)> draw;
    std::vector<std::pair<int, int>> inside;  // one pixel of each enclosed area, in seed order
  };
  const Case cases[] = {
      {"empty", [](Picture&) {}, {}},
      {"one frame", [](Picture& p) { frame(p, 5, 5, 20, 15); }, {{6, 6}}},
      {"a frame cut in two and another beside it",
       [](Picture& p) {
         frame(p, 2, 2, 20, 12);
         fill(p, 10, 2, 10, 12);
         frame(p, 24, 4, 36, 16);
       },
       {{3, 3}, {11, 3}, {25, 5}}},
      // A light grey line (within the tolerance) does not close anything.
      {"a faint line", [](Picture& p) { frame(p, 5, 5, 20, 15, {240, 240, 240}); }, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Picture p = image::blankPicture(40, 20, kWhite);
    c.draw(p);
    std::vector<PixelPoint> seeds = image::regionSeeds(p, white);
    ASSERT_EQ(seeds.size(), c.inside.size() + 1);
    EXPECT_EQ(seeds[0], (PixelPoint{0, 0})) << "the outside area first";
    for (std::size_t i = 0; i < c.inside.size(); ++i)
      EXPECT_EQ(seeds[i + 1], (PixelPoint{c.inside[i].first, c.inside[i].second}));
  }
  Picture specks = image::blankPicture(20, 20, kWhite);
  frame(specks, 3, 3, 5, 5);  // encloses one pixel
  EXPECT_EQ(image::regionSeeds(specks, white, 2).size(), 1u) << "areas below the smallest are left out";
}

TEST(OuterContour, OrderedAroundTheLargestPartClockwiseOnScreen) {
  const image::BackgroundTest white{kWhite, 24};
  Picture p = image::blankPicture(30, 20, kWhite);
  fill(p, 3, 2, 12, 9);    // a 10 x 8 block
  fill(p, 8, 10, 9, 15);   // a leg below it: the part is an upside-down T
  fill(p, 20, 3, 22, 5);   // a smaller part elsewhere
  std::vector<PixelPoint> c = image::outerContour(p, white);
  EXPECT_EQ(c.front(), (PixelPoint{3, 2})) << "starts at the part's top-left pixel";
  std::set<std::pair<int, int>> boundary;
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 30; ++x) {
      if (p.at(x, y) != kBlack || x >= 20) continue;
      bool edge = false;
      for (auto [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
        edge |= x + dx < 0 || y + dy < 0 || p.at(x + dx, y + dy) != kBlack;
      if (edge) boundary.insert({x, y});
    }
  std::set<std::pair<int, int>> visited;
  double twiceArea = 0;
  for (std::size_t i = 0; i < c.size(); ++i) {
    const PixelPoint a = c[i], b = c[(i + 1) % c.size()];
    EXPECT_LE(std::max(std::abs(a.x - b.x), std::abs(a.y - b.y)), 1) << "neighbours follow each other";
    visited.insert({a.x, a.y});
    twiceArea += a.x * b.y - b.x * a.y;
  }
  EXPECT_EQ(visited, boundary) << "every boundary pixel of the largest part, nothing else";
  EXPECT_GT(twiceArea, 0) << "clockwise on screen: positive area with y downward";
  Picture dot = image::blankPicture(5, 5, kWhite);
  dot.set(2, 3, kBlack);
  EXPECT_EQ(image::outerContour(dot, white), (std::vector<PixelPoint>{{2, 3}}));
  EXPECT_TRUE(image::outerContour(image::blankPicture(5, 5, kWhite), white).empty());
}

TEST(PixelMapping, ViewCentreAndScale) {
  // A view 30 units high around (100, 50), rendered into 200 x 150 pixels.
  image::PixelMapping m = image::PixelMapping::ofView({100, 50}, 30, 200, 150);
  EXPECT_DOUBLE_EQ(m.unitsPerPixel, 0.2);
  ge::Point3d corner = m.toDrawing(PixelPoint{0, 0});
  EXPECT_NEAR(corner.x, 80.1, 1e-12);
  EXPECT_NEAR(corner.y, 64.9, 1e-12) << "pixel rows run downward";
  EXPECT_NEAR(m.toDrawing(100.0, 75.0).distanceTo({100, 50, 0}), 0, 1e-12);
  for (PixelPoint p : {PixelPoint{0, 0}, PixelPoint{199, 149}, PixelPoint{37, 120}})
    EXPECT_EQ(m.toPixel(m.toDrawing(p)), p);
}

TEST(ColourRegions, FewColoursAndTheBorderColourAsBackground) {
  Picture p = image::blankPicture(30, 20, {250, 250, 250});
  fill(p, 2, 2, 10, 10, {200, 20, 20});
  fill(p, 15, 5, 25, 15, {20, 20, 200});
  p.set(11, 10, {225, 135, 135});  // an edge colour between red and white
  image::ColourClasses c = image::reduceColours(p, 3);
  ASSERT_EQ(c.palette.size(), 3u);
  EXPECT_EQ(c.palette[image::backgroundClass(c)], (image::Rgb{250, 250, 250}));
  EXPECT_EQ(c.palette[c.classOf[3 * 30 + 3]], (image::Rgb{200, 20, 20}));
  EXPECT_EQ(c.palette[c.classOf[6 * 30 + 16]], (image::Rgb{20, 20, 200}));
  Picture mask = image::classMask(c, c.classOf[6 * 30 + 16]);
  EXPECT_EQ(mask.at(16, 6), kBlack);
  EXPECT_EQ(mask.at(3, 3), kWhite);
}

}  // namespace
