// Winding numbers of closed polylines with bulges: the chord count, the turn
// added between an arc and its chord, the sense, and self-crossing loops.
#include <gtest/gtest.h>

#include "standalone/kernel/offset_winding.h"

namespace {

using namespace standalone::kernel;

Pline2 loopOf(std::vector<PVertex> v) { return Pline2{std::move(v), true}; }

TEST(OffsetWinding, SquareWithBulgedSidesCountsTheArcSegments) {
  // Unit square, counter-clockwise; the bottom side bows outward (down) as a
  // half circle, the right side inward (left) by a shallow arc.
  Pline2 sq = loopOf({{{0, 0}, 1.0}, {{1, 0}, -0.5}, {{1, 1}, 0}, {{0, 1}, 0}});
  WindingCounter w(sq);
  EXPECT_EQ(w.windingAt({0.5, 0.5}), 1);
  EXPECT_EQ(w.windingAt({0.5, -0.3}), 1);   // inside the outward half circle
  EXPECT_EQ(w.windingAt({0.5, -0.6}), 0);   // below it
  EXPECT_EQ(w.windingAt({0.95, 0.5}), 0);   // cut off by the inward arc
  EXPECT_EQ(w.windingAt({0.7, 0.5}), 1);
  EXPECT_EQ(w.windingAt({2, 0.5}), 0);
  EXPECT_EQ(w.windingAt({-1, -0.2}), 0);    // the ray passes the half circle twice
}

TEST(OffsetWinding, ClockwiseLoopsCountNegative) {
  Pline2 cw = loopOf({{{0, 0}, 0}, {{0, 1}, 0}, {{1, 1}, 0}, {{1, 0}, 0}});
  EXPECT_EQ(WindingCounter(cw).windingAt({0.5, 0.5}), -1);
  // A whole circle as two half arcs, clockwise.
  Pline2 circle = loopOf({{{1, 0}, -1}, {{-1, 0}, -1}});
  WindingCounter w(circle);
  EXPECT_EQ(w.windingAt({0, 0.9}), -1);
  EXPECT_EQ(w.windingAt({0.5, -0.5}), -1);
  EXPECT_EQ(w.windingAt({0.8, 0.8}), 0);
}

TEST(OffsetWinding, DoubleLoopAndFigureEight) {
  // The same square twice round winds twice.
  Pline2 twice = loopOf({{{0, 0}, 0}, {{1, 0}, 0}, {{1, 1}, 0}, {{0, 1}, 0}, {{0, 0}, 0}, {{1, 0}, 0}, {{1, 1}, 0}, {{0, 1}, 0}});
  EXPECT_EQ(WindingCounter(twice).windingAt({0.3, 0.6}), 2);
  // A figure eight: one lobe each way.
  Pline2 eight = loopOf({{{0, 0}, 0}, {{2, 2}, 0}, {{2, 0}, 0}, {{0, 2}, 0}});
  WindingCounter w(eight);
  EXPECT_EQ(w.windingAt({0.4, 1}) + w.windingAt({1.6, 1}), 0);
  EXPECT_EQ(std::abs(w.windingAt({0.4, 1})), 1);
  EXPECT_EQ(w.windingAt({1, 0.4}), 0);
}

}  // namespace
