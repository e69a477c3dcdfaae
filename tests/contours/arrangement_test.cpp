// The arrangement's faces against GEOS's noding and polygonizing of the same
// pieces (arcs flattened finely for GEOS): the number of faces, and at a
// grid of probe points the area of the region found there, islands taken off.
#include "standalone/kernel/arrangement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>

#include "geos_oracle.h"

namespace contours_test {
namespace {

using standalone::kernel::Arrangement;
using standalone::kernel::BulgePiece;
using standalone::kernel::Vec2;

void line(std::vector<BulgePiece>& out, Vec2 a, Vec2 b) { out.push_back({a, b, 0}); }
// A circle as two half arcs, counter-clockwise.
void circle(std::vector<BulgePiece>& out, Vec2 c, double r) {
  out.push_back({c + Vec2{r, 0}, c - Vec2{r, 0}, 1});
  out.push_back({c - Vec2{r, 0}, c + Vec2{r, 0}, 1});
}
// Straight pieces from each point to the next.
void chain(std::vector<BulgePiece>& out, std::vector<Vec2> pts) {
  for (std::size_t i = 0; i + 1 < pts.size(); ++i) line(out, pts[i], pts[i + 1]);
}
void rectangle(std::vector<BulgePiece>& out, Vec2 a, Vec2 b) { chain(out, {a, {b.x, a.y}, b, {a.x, b.y}, a}); }

struct Figure {
  const char* name;
  std::function<std::vector<BulgePiece>()> make;
  std::size_t faces;  // as counted by hand
};

std::vector<BulgePiece> grid() {
  std::vector<BulgePiece> p;
  for (int i = 0; i < 6; ++i) {
    line(p, {0, i * 2.0}, {10, i * 2.0});
    line(p, {i * 2.0, 0}, {i * 2.0, 10});
  }
  return p;
}

// A room with a round table (island), crossed by a wall that cuts a bay off.
std::vector<BulgePiece> roomWithIsland() {
  std::vector<BulgePiece> p;
  rectangle(p, {0, 0}, {20, 10});
  circle(p, {6, 5}, 2);
  rectangle(p, {5.5, 4.5}, {6.5, 5.5});  // an island in the island
  line(p, {15, -3}, {15, 13});           // sticks out at both ends
  return p;
}

// Circles touching outside and inside, an arc bulging out of a square.
std::vector<BulgePiece> tangents() {
  std::vector<BulgePiece> p;
  circle(p, {0, 0}, 2);
  circle(p, {4, 0}, 2);
  circle(p, {1, 0}, 1);
  chain(p, {{10, 0}, {14, 0}, {14, 4}, {10, 4}});
  p.push_back({{10, 4}, {10, 0}, 0.6});
  return p;
}

// Overlapping walls, a dangling line and a gap-free chain of arcs.
std::vector<BulgePiece> overlaps() {
  std::vector<BulgePiece> p;
  rectangle(p, {0, 0}, {4, 4});
  rectangle(p, {2, 0}, {7, 3});  // shares part of the bottom edge
  line(p, {1, 1}, {1.5, 2});     // loose inside
  line(p, {7, 3}, {9, 5});       // loose outside
  p.push_back({{0, 4}, {4, 4}, -0.5});
  return p;
}

// Pseudo-random lines and circles, the same every run.
std::vector<BulgePiece> scatter() {
  std::uint64_t state = 12345;
  auto next = [&] {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<double>(state >> 11) / static_cast<double>(1ULL << 53);
  };
  std::vector<BulgePiece> p;
  for (int i = 0; i < 25; ++i) line(p, {next() * 20, next() * 20}, {next() * 20, next() * 20});
  for (int i = 0; i < 8; ++i) circle(p, {next() * 20, next() * 20}, 0.5 + next() * 4);
  for (int i = 0; i < 6; ++i) p.push_back({{next() * 20, next() * 20}, {next() * 20, next() * 20}, next() * 1.6 - 0.8});
  return p;
}

class Faces : public ::testing::TestWithParam<Figure> {};

TEST_P(Faces, AgreeWithGeos) {
  std::vector<BulgePiece> pieces = GetParam().make();
  Arrangement arrangement(pieces);
  GeosFaces geos(pieces);
  EXPECT_EQ(arrangement.faceCount(), geos.count());
  if (GetParam().faces) {
    EXPECT_EQ(arrangement.faceCount(), GetParam().faces);
  }
  double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
  for (const BulgePiece& p : pieces)
    for (Vec2 q : {p.a, p.b})
      minX = std::min(minX, q.x), maxX = std::max(maxX, q.x), minY = std::min(minY, q.y), maxY = std::max(maxY, q.y);
  int found = 0;
  for (int i = 0; i < 40; ++i)
    for (int j = 0; j < 40; ++j) {
      Vec2 p{minX - 1 + (maxX - minX + 2) * (i + 0.4321) / 40, minY - 1 + (maxY - minY + 2) * (j + 0.5678) / 40};
      double want = geos.areaAt(p);
      std::optional<Arrangement::Region> region = arrangement.regionAt(p);
      if (want < 0) {
        EXPECT_FALSE(region) << "no face at " << p.x << "," << p.y;
        continue;
      }
      ASSERT_TRUE(region) << "a face at " << p.x << "," << p.y;
      double area = arrangement.loops()[region->outer].area;
      for (std::size_t k : region->islands) area += arrangement.loops()[k].area;
      // GEOS's chords cut the arcs by about 1e-6 of the figure's size.
      EXPECT_NEAR(area, want, 1e-5 * want + 5e-5) << "at " << p.x << "," << p.y;
      ++found;
    }
  EXPECT_GT(found, 0);
}

INSTANTIATE_TEST_SUITE_P(Figures, Faces,
                         ::testing::Values(Figure{"grid", grid, 25}, Figure{"roomWithIsland", roomWithIsland, 4},
                                           Figure{"tangents", tangents, 4}, Figure{"overlaps", overlaps, 4},
                                           Figure{"scatter", scatter, 0}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Region, KeepsArcsAndListsIslands) {
  std::vector<BulgePiece> p = roomWithIsland();
  Arrangement arrangement(p);
  std::optional<Arrangement::Region> room = arrangement.regionAt({2, 2});
  ASSERT_TRUE(room);
  ASSERT_EQ(room->islands.size(), 1u);  // the table; the square on it is inside the table
  const auto& table = arrangement.loops()[room->islands[0]];
  double pi = std::numbers::pi;
  EXPECT_NEAR(table.area, -pi * 4, 1e-9);
  for (const BulgePiece& piece : table.pieces) EXPECT_NE(piece.bulge, 0) << "the table's edge stays round";
  EXPECT_NEAR(arrangement.loops()[room->outer].area, 150, 1e-9);
  // On the table, around the square: the square is its island.
  std::optional<Arrangement::Region> top = arrangement.regionAt({6, 6.5});
  ASSERT_TRUE(top);
  EXPECT_NEAR(arrangement.loops()[top->outer].area, pi * 4, 1e-9);
  ASSERT_EQ(top->islands.size(), 1u);
  EXPECT_NEAR(arrangement.loops()[top->islands[0]].area, -1, 1e-9);
  EXPECT_FALSE(arrangement.regionAt({30, 30}));
}

}  // namespace
}  // namespace contours_test
