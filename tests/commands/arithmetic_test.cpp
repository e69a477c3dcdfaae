// The arithmetic behind the commands: thinning passes, merging, efficiency,
// duplicate marks, divide counts and the lower-left rule.

#include <gtest/gtest.h>

#include "commands/divide.h"
#include "commands/thinning.h"

namespace {

using commands::ThinningThresholds;
using ge::PointList;

TEST(ThinningPass, DropsNearlyStraightMiddlesAndKeepsTheRest) {
  // The middle of each pair is tested: (1, 0.001) lies within D of its chord; (3, 2) does not.
  PointList p{{0, 0, 0}, {1, 0.001, 0}, {2, 0, 0}, {3, 2, 0}, {4, 0, 0}, {5, 0, 0}};
  PointList out = commands::thinningPass(p, 0.01);
  PointList expected{{0, 0, 0}, {2, 0, 0}, {3, 2, 0}, {4, 0, 0}, {5, 0, 0}};
  EXPECT_EQ(out, expected) << "the even count leaves the last point unreached, and it is kept";
}

TEST(ThinningPass, SpikesSharperThanATenthOfARadianStayAtAnyTolerance) {
  PointList zigzag;
  for (int i = 0; i < 21; ++i) zigzag.push_back({i * 0.01, (i % 2) ? 10.0 : 0.0, 0});
  PointList out = commands::thinningPasses(zigzag, 1000.0);
  EXPECT_EQ(out, zigzag);
}

TEST(ThinningPass, AStraightRunCollapsesOverTheFivePasses) {
  PointList line;
  for (int i = 0; i <= 64; ++i) line.push_back({double(i), 0, 0});
  PointList out = commands::thinningPasses(line, 0.001);
  // Each pass halves the interior: 65 -> 33 -> 17 -> 9 -> 5 -> 3.
  ASSERT_EQ(out.size(), 3u);
  EXPECT_EQ(out.front(), line.front());
  EXPECT_EQ(out.back(), line.back());
}

TEST(MergeClusters, TwoPointsKeepBothWhenApartElseCentroidThenSecond) {
  ThinningThresholds t{1.0, 5.0};
  PointList apart{{0, 0, 0}, {1, 0, 0}};
  EXPECT_EQ(commands::mergeClusters(apart, t), apart) << "exactly D apart is not closer than D";
  PointList close{{0, 0, 0}, {0.5, 0, 0}};
  PointList expected{{0.25, 0, 0}, {0.5, 0, 0}};
  EXPECT_EQ(commands::mergeClusters(close, t), expected);
}

TEST(MergeClusters, AnIsolatedPointAfterAClusterIsKeptAndAnchorsTheNextRun) {
  ThinningThresholds t{1.0, 5.0};
  PointList q{{0, 0, 0}, {0.2, 0, 0}, {0.4, 0, 0}, {3, 0, 0}, {20, 0, 0}, {21, 0, 0}};
  PointList out = commands::mergeClusters(q, t);
  // Run {0,0.2,0.4} -> centroid 0.2; 3 is more than E from 20 so it is output,
  // then anchors a run of its own (output again); 20 and 21 are a run apart.
  PointList expected{{0.2, 0, 0}, {3, 0, 0}, {3, 0, 0}, {20, 0, 0}, {21, 0, 0}};
  ASSERT_EQ(out.size(), expected.size());
  for (std::size_t i = 0; i < out.size(); ++i) EXPECT_NEAR(out[i].x, expected[i].x, 1e-12) << i;
}

TEST(ThinningThresholds, FollowTheScaleAndTolerance) {
  ThinningThresholds t = commands::thinningThresholds(200.0, 0.5);
  EXPECT_DOUBLE_EQ(t.merge, 0.1);
  EXPECT_DOUBLE_EQ(t.isolation, 0.5);
}

TEST(ThinningEfficiency, IsTruncatedAndNeverNegative) {
  EXPECT_EQ(commands::thinningEfficiency(7, 4), 42);
  EXPECT_EQ(commands::thinningEfficiency(3, 1), 66);
  EXPECT_EQ(commands::thinningEfficiency(5, 9), 0);
  EXPECT_EQ(commands::thinningEfficiency(4, 0), 100);
}

// Which of a coincident pair goes, and the closing repeat, are checked end to end by PLYH2.
TEST(DuplicateMarks, NeighboursTwoHundredThousandthsApartAreNoDuplicates) {
  PointList spaced{{0, 0, 0}, {2e-5, 0, 0}, {1, 1, 0}};
  EXPECT_EQ(commands::markDuplicateVertices(spaced).count(), 0) << "2e-5 apart is not a duplicate";
}

TEST(Divide, SpacingCountTruncatesAndAQuarterIsTheLongestSpacing) {
  EXPECT_FALSE(commands::spacingTooLong(10, 2.5));
  EXPECT_TRUE(commands::spacingTooLong(10, 2.5000001));
  EXPECT_EQ(commands::countForSpacing(10, 2.5), 5);
  EXPECT_EQ(commands::countForSpacing(10, 2.2), 5);
  EXPECT_EQ(commands::countForSpacing(10, 0.3), 34);
  std::vector<double> d = commands::distancesForSpacing(2.2, 5);
  EXPECT_NEAR(d[4], 8.8, 1e-12);
}

TEST(LowerLeftRule, ReversesOnlyWhenTheStartLiesRightOrLevelAndAbove) {
  EXPECT_TRUE(commands::startsAtUpperRight({{5, 0, 0}, {0, 0, 0}}));
  EXPECT_FALSE(commands::startsAtUpperRight({{0, 0, 0}, {5, 0, 0}}));
  EXPECT_TRUE(commands::startsAtUpperRight({{1, 5, 0}, {1.00005, 0, 0}})) << "level within 0.0001, start above";
  EXPECT_FALSE(commands::startsAtUpperRight({{1, 0, 0}, {1.00005, 5, 0}}));
  EXPECT_FALSE(commands::startsAtUpperRight({{3, 3, 0}, {1, 1, 0}, {3, 3, 0}})) << "closed: first equals last";
}

}  // namespace
