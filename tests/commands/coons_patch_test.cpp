// The fence's orientation from its curves' ends, the Coons patch on its
// sides, and the refinement of mapped curves to a tolerance.
#include <cmath>

#include <gtest/gtest.h>

#include "commands/coons_patch.h"

namespace {

using commands::CurveEnds;

TEST(OrientFence, RecoversEveryCombinationOfReversedSides) {
  const ge::Point3d c00{0, 0, 0}, c10{10, 1, 0}, c11{9, 7, 0}, c01{-1, 6, 0};
  const CurveEnds forward[4] = {{c00, c10}, {c10, c11}, {c01, c11}, {c00, c01}};
  for (int mask = 0; mask < 16; ++mask) {
    std::array<CurveEnds, 4> sides;
    for (int i = 0; i < 4; ++i)
      sides[i] = (mask >> i) & 1 ? CurveEnds{forward[i].end, forward[i].start} : forward[i];
    commands::FenceOrientation o = commands::orientFence(sides);
    EXPECT_EQ(o.widestGap, 0) << mask;
    for (int i = 0; i < 4; ++i) EXPECT_EQ(o.reversed[i], ((mask >> i) & 1) != 0) << mask << " side " << i;
  }
  std::array<CurveEnds, 4> gapped{{{c00, c10}, {c10, c11}, {c01, c11}, {{0, 0.5, 0}, c01}}};
  EXPECT_DOUBLE_EQ(commands::orientFence(gapped).widestGap, 0.5);
}

TEST(CoonsPatch, ReproducesTheBottomAndTopExactlyAndABilinearQuadInside) {
  // Straight sides: the patch is the bilinear map of the four corners.
  auto along = [](ge::Point3d a, ge::Point3d b) {
    return [a, b](double f) { return a + (b - a) * f; };
  };
  const ge::Point3d c00{0, 0, 0}, c10{10, 1, 0}, c11{9, 7, 0}, c01{-1, 6, 0};
  commands::CoonsPatch quad(along(c00, c10), along(c10, c11), along(c01, c11), along(c00, c01));
  for (double u : {0.0, 0.3, 1.0})
    for (double v : {0.0, 0.6, 1.0}) {
      ge::Point3d bilinear = c00 + (c10 - c00) * (u * (1 - v)) + (c01 - c00) * ((1 - u) * v) + (c11 - c00) * (u * v);
      EXPECT_LT(quad.at(u, v).distanceTo(bilinear), 1e-12) << u << "," << v;
    }
  // A curved bottom is followed along v = 0 up to rounding, even where the sides miss its ends.
  auto bowed = [](double f) { return ge::Point3d{10 * f, -std::sin(3.14159 * f), 0}; };
  commands::CoonsPatch bowl(bowed, along(c10, c11), along(c01, c11), along({0, 0, 0}, c01));
  for (double u : {0.0, 0.25, 0.5, 1.0}) EXPECT_LT(bowl.at(u, 0).distanceTo(bowed(u)), 1e-14) << u;
}

struct RefineCase {
  const char* name;
  std::function<ge::Point3d(double)> image;
  std::vector<double> breaks;
  double tolerance;
};

TEST(SampleMapped, EveryStepStaysWithinTheToleranceOfTheImage) {
  const RefineCase cases[] = {
      {"circle", [](double t) { return ge::Point3d{std::cos(t), std::sin(t), 0}; }, {0, 3, 6.28}, 1e-4},
      {"wiggle between corners", [](double t) { return ge::Point3d{t, std::sin(20 * t) * 0.1, 0}; }, {0, 0.5, 1}, 1e-5},
      {"straight", [](double t) { return ge::Point3d{2 * t, t, 0}; }, {0, 1, 2, 3}, 1e-9},
  };
  for (const RefineCase& c : cases) {
    commands::MappedSample s = commands::sampleMapped(c.image, c.breaks, c.tolerance);
    ASSERT_EQ(s.params.size(), s.points.size()) << c.name;
    EXPECT_EQ(s.params.front(), c.breaks.front()) << c.name;
    EXPECT_EQ(s.params.back(), c.breaks.back()) << c.name;
    for (double b : c.breaks) EXPECT_NE(std::find(s.params.begin(), s.params.end(), b), s.params.end()) << c.name;
    double worst = 0;
    for (size_t i = 0; i + 1 < s.params.size(); ++i)
      for (int k = 1; k < 16; ++k) {
        double t = s.params[i] + (s.params[i + 1] - s.params[i]) * k / 16;
        worst = std::max(worst, commands::distanceToSegment(c.image(t), s.points[i], s.points[i + 1]));
      }
    EXPECT_LE(worst, c.tolerance) << c.name;
  }
  EXPECT_EQ(commands::sampleMapped(cases[2].image, {0, 1, 2, 3}, 1e-9).points.size(), 4u)
      << "a straight image needs no more than its breaks";
}

}  // namespace
