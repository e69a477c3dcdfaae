// Winding numbers of closed polylines with bulges: the chord count, the turn
// added between an arc and its chord, the sense, and self-crossing loops.
#include <gtest/gtest.h>

#include "standalone/kernel/offset_winding.h"

namespace {

using namespace standalone::kernel;

TEST(OffsetWinding, ArcsSenseAndSelfCrossingLoops) {
  // Unit square, counter-clockwise; the bottom side bows outward (down) as a
  // half circle, the right side inward (left) by a shallow arc.
  const Pline2 bulgedSquare{{{{0, 0}, 1.0}, {{1, 0}, -0.5}, {{1, 1}, 0}, {{0, 1}, 0}}, true};
  const Pline2 clockwise{{{{0, 0}, 0}, {{0, 1}, 0}, {{1, 1}, 0}, {{1, 0}, 0}}, true};
  const Pline2 clockwiseCircle{{{{1, 0}, -1}, {{-1, 0}, -1}}, true};  // two half arcs
  const Pline2 twice{{{{0, 0}, 0}, {{1, 0}, 0}, {{1, 1}, 0}, {{0, 1}, 0}, {{0, 0}, 0}, {{1, 0}, 0}, {{1, 1}, 0}, {{0, 1}, 0}},
                     true};
  const Pline2 eight{{{{0, 0}, 0}, {{2, 2}, 0}, {{2, 0}, 0}, {{0, 2}, 0}}, true};  // one lobe each way
  const struct { const char* what; const Pline2& loop; Vec2 at; int winding; } cases[] = {
      {"bulged square, middle", bulgedSquare, {0.5, 0.5}, 1},
      {"inside the outward half circle", bulgedSquare, {0.5, -0.3}, 1},
      {"below the outward half circle", bulgedSquare, {0.5, -0.6}, 0},
      {"cut off by the inward arc", bulgedSquare, {0.95, 0.5}, 0},
      {"short of the inward arc", bulgedSquare, {0.7, 0.5}, 1},
      {"right of the square", bulgedSquare, {2, 0.5}, 0},
      {"left, the ray passing the half circle twice", bulgedSquare, {-1, -0.2}, 0},
      {"clockwise square", clockwise, {0.5, 0.5}, -1},
      {"clockwise circle, near its top", clockwiseCircle, {0, 0.9}, -1},
      {"clockwise circle, lower right", clockwiseCircle, {0.5, -0.5}, -1},
      {"outside the clockwise circle", clockwiseCircle, {0.8, 0.8}, 0},
      {"the same square twice round", twice, {0.3, 0.6}, 2},
      {"figure eight, counter-clockwise lobe", eight, {0.4, 1}, 1},
      {"figure eight, clockwise lobe", eight, {1.6, 1}, -1},
      {"figure eight, between the lobes", eight, {1, 0.4}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(WindingCounter(c.loop).windingAt(c.at), c.winding);
  }
}

}  // namespace
