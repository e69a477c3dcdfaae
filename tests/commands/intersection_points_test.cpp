// The merge of intersection points against the walk that compares each
// point with every kept one, and the extents pairing against all pairs.
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "commands/intersection_points.h"
#include "standalone/kernel/curve_kernel.h"

namespace {

using commands::kMergeDistance;

// The walk as it reads: keep a point when it is at least the merge distance
// from every point kept before it.
ge::PointList quadraticMerge(const ge::PointList& raw) {
  ge::PointList kept;
  for (const auto& p : raw) {
    bool keep = true;
    for (const auto& q : kept) keep = keep && p.distanceTo(q) >= kMergeDistance;
    if (keep) kept.push_back(p);
  }
  return kept;
}

struct Cloud {
  const char* name;
  double spread;     // of the cluster centres
  double jitter;     // of the points around a centre, in merge distances
  int clusters;
  int perCluster;
  double z;
};

class MergeCloud : public ::testing::TestWithParam<Cloud> {};

TEST_P(MergeCloud, KeepsWhatTheQuadraticWalkKeepsInTheSameOrder) {
  const Cloud& c = GetParam();
  std::mt19937 rng(42);
  std::uniform_real_distribution<double> centre(-c.spread, c.spread), unit(-1, 1);
  ge::PointList raw;
  for (int k = 0; k < c.clusters; ++k) {
    ge::Point3d m{centre(rng), centre(rng), 0};
    for (int i = 0; i < c.perCluster; ++i)
      raw.push_back({m.x + unit(rng) * c.jitter * kMergeDistance, m.y + unit(rng) * c.jitter * kMergeDistance,
                     unit(rng) * c.z});
  }
  std::shuffle(raw.begin(), raw.end(), rng);
  ge::PointList fast = commands::mergeIntersections(raw), slow = quadraticMerge(raw);
  ASSERT_EQ(fast.size(), slow.size());
  for (std::size_t i = 0; i < fast.size(); ++i) EXPECT_EQ(fast[i], slow[i]) << i;
  EXPECT_LT(fast.size(), raw.size());
}

INSTANTIATE_TEST_SUITE_P(
    Clouds, MergeCloud,
    ::testing::Values(Cloud{"SeparateRepeats", 100, 0.01, 300, 4, 0},        // repeats of well-apart points
                      Cloud{"ChainsAcrossCells", 0.002, 1.5, 40, 30, 0},     // points about one distance apart
                      Cloud{"FarFromTheOrigin", 1e7, 1.0, 50, 10, 0},        // coarse doubles
                      Cloud{"ApartInZOnly", 0.001, 0.3, 20, 10, 3e-4},       // near in plan, apart in height
                      Cloud{"NegativeCoordinates", 0.0005, 2.0, 30, 20, 0}),  // cells on both sides of zero
    [](const auto& row) { return std::string(row.param.name); });

class OverlappingPairs : public ::testing::TestWithParam<std::size_t> {};

// Few boxes are compared pair by pair, many by a sweep; both give the same rows.
TEST_P(OverlappingPairs, AreThePairsWhoseBoxesMeetInWalkOrder) {
  std::mt19937 rng(7);
  double side = std::sqrt(static_cast<double>(GetParam())) * 6;
  std::uniform_real_distribution<double> at(0, side), size(0, 20);
  std::vector<ge::Extents3d> boxes(GetParam());
  for (auto& b : boxes) {
    double x = at(rng), y = at(rng);
    b.add(ge::Point3d{x, y, 0});
    b.add(ge::Point3d{x + size(rng), y + size(rng), 0});
  }
  boxes[10] = ge::Extents3d{};  // no extents: pairs with everything
  boxes[20] = boxes[21];        // equal boxes
  boxes[30] = ge::Extents3d{};
  boxes[30].add(ge::Point3d{50, 50, 0});  // a single point
  boxes[40] = ge::Extents3d{};
  auto rows = commands::overlappingPairs(boxes);
  ASSERT_EQ(rows.size(), boxes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    std::vector<std::size_t> want;
    for (std::size_t j = i + 1; j < boxes.size(); ++j)
      if (!boxes[i].isValid() || !boxes[j].isValid() || boxes[i].intersectsXY(boxes[j])) want.push_back(j);
    ASSERT_EQ(rows[i], want) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, OverlappingPairs, ::testing::Values(300, 5000));

// Collecting on a worker while merging here gives the points of the plain
// collect-then-merge, in the same order; a stop keeps the rows merged so far.
TEST(CollectAndMerge, EqualsMergingTheCollectedPointsAndStopsWhereTold) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> at(0, 100);
  std::vector<host::EntityData> lines;
  for (int i = 0; i < 300; ++i) lines.push_back(host::Line{{at(rng), at(rng), 0}, {at(rng), at(rng), 0}});
  // Repeats and a star of lines through one point give points to merge away.
  for (int i = 0; i < 20; ++i) lines.push_back(lines[static_cast<std::size_t>(i) * 7]);
  for (int i = 0; i < 8; ++i) lines.push_back(host::Line{{50 - 40 * std::cos(i * 0.4), 50 - 40 * std::sin(i * 0.4), 0},
                                                         {50 + 40 * std::cos(i * 0.4), 50 + 40 * std::sin(i * 0.4), 0}});
  standalone::CurveKernel kernel;
  ASSERT_TRUE(kernel.callableFromWorkerThreads());
  ge::PointList raw = commands::collectAmongCurves(kernel, lines);
  ge::PointList want = commands::mergeIntersections(raw);
  ASSERT_LT(want.size(), raw.size());
  EXPECT_EQ(commands::collectAndMergeAmongCurves(kernel, lines), want);

  constexpr std::size_t kStopAfter = 40;
  auto stopAt = [](std::size_t done, std::size_t) { return done < kStopAfter; };
  EXPECT_EQ(commands::collectAndMergeAmongCurves(kernel, lines, stopAt),
            commands::mergeIntersections(commands::collectAmongCurves(kernel, lines, stopAt)));
  EXPECT_LT(commands::mergeIntersections(commands::collectAmongCurves(kernel, lines, stopAt)).size(), want.size());
}

}  // namespace
