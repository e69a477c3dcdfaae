// transformBy and reverseCurve: the mapped curve is the image of the source,
// and a reversed curve covers the same points in the opposite order.
#include "kernel_test.h"
#include "standalone/kernel/insert_extents.h"
#include "standalone/kernel/transform_hatch.h"

namespace {

Spline sampleSpline() {
  Spline s;
  kernel.fitSpline({{0, 0, 0}, {2, 1, 0}, {3, -1, 0}, {5, 2, 0}}, nullptr, nullptr, s);
  return s;
}

LwPolyline sampleLw(bool closed) {
  LwPolyline pl{{{0, 0, 0.4, 1, 2}, {3, 0, -0.3, 2, 3}, {4, 2, 0, 3, 4}, {1, 3, 0.9, 4, 5}}, closed};
  pl.elevation = 1.5;
  return pl;
}

std::vector<EntityData> curves() {
  return {Line{{0, 0, 0}, {3, 4, 0}},
          Circle{{1, 2, 0}, 2},
          Arc{{1, 1, 0}, 3, 5.8, 1.2},
          Arc{{0, 0, 2}, 1, 0.5, 2.0, 0, {0, 0, -1}},
          Ellipse{{0, 0, 0}, {3, 1, 0}, {0, 0, 1}, 0.4, 0.3, 4.0},
          sampleLw(false),
          sampleLw(true),
          sampleSpline()};
}

class EveryCurve : public ::testing::TestWithParam<size_t> {};

TEST_P(EveryCurve, SimilarityMapsPointsOntoTheImage) {
  EntityData e = curves()[GetParam()];
  std::vector<ge::Matrix3d> maps{ge::Matrix3d::translation({3, -2, 1}), ge::Matrix3d::rotation(0.7, ge::kZAxis, {1, 1, 0}),
                                 ge::Matrix3d::scaling(2.5, {-1, 0, 0}), ge::Matrix3d::mirroring({1, 0, 0}, {1, 1, 0}),
                                 ge::Matrix3d::rotation(0.4, {1, 0, 0})};
  for (const auto& m : maps) {
    EntityData t = e;
    ASSERT_EQ(kernel.transformBy(t, m), ErrorStatus::eOk);
    EXPECT_EQ(t.index(), e.index());  // arcs stay arcs, circles stay circles
    auto before = samples(e), after = samples(t);
    for (const auto& p : before) EXPECT_LT(distanceTo(t, m.apply(p)), 1e-9) << GetParam();
    // Start maps to start: the direction is kept. (A circle has no start of
    // its own: parameter 0 follows its OCS X axis.)
    if (!std::holds_alternative<Circle>(e)) {
      EXPECT_LT(after.front().distanceTo(m.apply(before.front())), 1e-9);
    }
  }
}

TEST_P(EveryCurve, ReverseRunsThroughTheSamePointsBackwards) {
  EntityData e = curves()[GetParam()];
  EntityData r = e;
  ASSERT_EQ(kernel.reverseCurve(r), ErrorStatus::eOk);
  auto fwd = samples(e, 40), back = samples(r, 40);
  if (!std::holds_alternative<Circle>(e)) {
    EXPECT_LT(back.front().distanceTo(fwd.back()), 1e-9);
    EXPECT_LT(back.back().distanceTo(fwd.front()), 1e-9);
  }
  // The reversed curve leaves its start against the direction in which the
  // old curve arrived there (at its end parameter when that point is its start).
  ge::Vector3d d0, d1;
  double r0, re, pOld;
  kernel.getStartParam(r, r0), kernel.getEndParam(e, re);
  kernel.getFirstDeriv(r, r0, d1);
  kernel.getParamAtPoint(e, back.front(), pOld);
  kernel.getFirstDeriv(e, pOld == 0 ? re : pOld, d0);
  EXPECT_LT(d0.normalized().dot(d1.normalized()), -1 + 1e-9);
  for (const auto& p : back) EXPECT_LT(distanceTo(e, p), 1e-9);
  EXPECT_NEAR(length(e), length(r), 1e-9 * length(e));
  // Twice reversed is the same curve again.
  EntityData rr = r;
  ASSERT_EQ(kernel.reverseCurve(rr), ErrorStatus::eOk);
  auto again = samples(rr, 40);
  for (size_t i = 0; i < fwd.size(); ++i) EXPECT_LT(again[i].distanceTo(fwd[i]), 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryCurve, ::testing::Range<size_t>(0, 8));

// A non-uniform scale of a circle is refused and leaves it alone; a line takes it.
TEST(Transform, StretchedCirclesAreRefused) {
  ge::Matrix3d m;
  m(0, 0) = 2;
  EntityData c = Circle{{0, 0, 0}, 1};
  EXPECT_EQ(kernel.transformBy(c, m), ErrorStatus::eInvalidInput);
  EXPECT_EQ(std::get<Circle>(c).radius, 1);
  EntityData l = Line{{0, 0, 0}, {1, 1, 0}};
  ASSERT_EQ(kernel.transformBy(l, m), ErrorStatus::eOk);
  EXPECT_EQ(std::get<Line>(l).end, (Point3d{2, 1, 0}));
}

// A block reference carried by a similarity is placed where the old
// placement followed by the map puts its block: mirrors give a negative X
// scale, and maps that are not similarities or not finite are refused.
TEST(Transform, BlockReferencesFollowEveryMoveTurnScaleAndMirror) {
  BlockReference ref;
  ref.blockName = "B";
  ref.position = {3, 4, 0};
  ref.scale = {2, 1.5, 1};
  ref.rotation = 0.7;
  const ge::Matrix3d maps[] = {ge::Matrix3d::translation({5, -2, 1}),
                               ge::Matrix3d::rotation(2.1, ge::kZAxis, {1, 1, 0}),
                               ge::Matrix3d::scaling(0.4, {-3, 2, 0}),
                               ge::Matrix3d::mirroring({0, 0, 0}, {1, 0, 0}),
                               ge::Matrix3d::mirroring({2, 1, 0}, ge::Vector3d{1, -2, 0}.normalized()),
                               ge::Matrix3d::mirroring({0, 0, 2}, ge::kZAxis)};
  const Point3d base{1, 2, 0};
  for (std::size_t i = 0; i < std::size(maps); ++i) {
    EntityData moved = ref;
    ASSERT_EQ(kernel.transformBy(moved, maps[i]), ErrorStatus::eOk) << i;
    ge::Matrix3d want = maps[i] * standalone::kernel::blockTransform(ref, base);
    ge::Matrix3d got = standalone::kernel::blockTransform(std::get<BlockReference>(moved), base);
    for (Point3d p : {Point3d{0, 0, 0}, Point3d{1, 0, 0}, Point3d{0, 1, 0}, Point3d{0, 0, 1}})
      EXPECT_LT(got.apply(p).distanceTo(want.apply(p)), 1e-9) << i;
  }
  ge::Matrix3d shear;
  shear(0, 1) = 0.5;
  EntityData sheared = ref;
  EXPECT_EQ(kernel.transformBy(sheared, shear), ErrorStatus::eInvalidInput);
  EXPECT_EQ(std::get<BlockReference>(sheared), ref);
  EntityData line = Line{{0, 0, 0}, {1, 0, 0}};
  EXPECT_EQ(kernel.transformBy(line, ge::Matrix3d::scaling(std::sqrt(-1.0))), ErrorStatus::eInvalidInput);
}

// Pattern lines, seeds and the pattern's angle and scale under a turn, a
// scale and a mirror (which mirrors the pattern or keeps its direction).
TEST(Transform, HatchPatternFollowsTheMap) {
  using standalone::kernel::MirroredPattern, standalone::kernel::transformHatch;
  Hatch h;
  h.solidFill = false;
  h.patternAngle = 0.5;
  h.patternScale = 1.5;
  h.patternLines = {{0.5, {1, 0}, {0, 2}, {1, -0.5}}};
  h.seeds = {{2, 3}};
  auto expect = [](const Hatch& got, double angle, ge::Point2d base, ge::Point2d offset, std::vector<double> dashes,
                   ge::Point2d seed, double patternAngle, double scale, const char* what) {
    const HatchPatternLine& l = got.patternLines.at(0);
    EXPECT_NEAR(l.angle, angle, 1e-12) << what;
    EXPECT_LT(std::hypot(l.base.x - base.x, l.base.y - base.y), 1e-12) << what;
    EXPECT_LT(std::hypot(l.offset.x - offset.x, l.offset.y - offset.y), 1e-12) << what;
    ASSERT_EQ(l.dashes.size(), dashes.size()) << what;
    for (std::size_t i = 0; i < dashes.size(); ++i) EXPECT_NEAR(l.dashes[i], dashes[i], 1e-12) << what;
    EXPECT_LT(std::hypot(got.seeds.at(0).x - seed.x, got.seeds[0].y - seed.y), 1e-12) << what;
    EXPECT_NEAR(got.patternAngle, patternAngle, 1e-12) << what;
    EXPECT_NEAR(got.patternScale, scale, 1e-12) << what;
  };
  // A quarter turn about (1, 1): (x, y) -> (2 - y, x); then twice the size about the origin.
  Hatch turned = h;
  ASSERT_TRUE(transformHatch(turned, ge::Matrix3d::rotation(std::numbers::pi / 2, ge::kZAxis, {1, 1, 0})));
  expect(turned, 0.5 + std::numbers::pi / 2, {2, 1}, {-2, 0}, {1, -0.5}, {-1, 2}, 0.5 + std::numbers::pi / 2, 1.5,
         "turned");
  ASSERT_TRUE(transformHatch(turned, ge::Matrix3d::scaling(2, {0, 0, 0})));
  expect(turned, 0.5 + std::numbers::pi / 2, {4, 2}, {-4, 0}, {2, -1}, {-2, 4}, 0.5 + std::numbers::pi / 2, 3,
         "scaled");
  // Across x = 3: (x, y) -> (6 - x, y), the pattern's origin to (6, 0).
  const ge::Matrix3d mirror = ge::Matrix3d::mirroring({3, 0, 0}, {1, 0, 0});
  Hatch mirrored = h, kept = h;
  ASSERT_TRUE(transformHatch(mirrored, mirror));
  expect(mirrored, std::numbers::pi - 0.5, {5, 0}, {0, 2}, {1, -0.5}, {4, 3}, std::numbers::pi - 0.5, 1.5, "mirrored");
  ASSERT_TRUE(transformHatch(kept, mirror, MirroredPattern::kKeep));
  expect(kept, 0.5, {7, 0}, {0, 2}, {1, -0.5}, {4, 3}, 0.5, 1.5, "direction kept");
  // A mirror across the hatch's plane would turn its normal round: refused, hatch untouched.
  Hatch flipped = h;
  EXPECT_FALSE(transformHatch(flipped, ge::Matrix3d::mirroring({0, 0, 2}, ge::kZAxis)));
  EXPECT_EQ(flipped, h);
}

// The bulges' part is checked point for point above; the widths here.
TEST(Reverse, PolylineWidthsMoveWithTheirSegments) {
  EntityData r = sampleLw(false);
  ASSERT_EQ(kernel.reverseCurve(r), ErrorStatus::eOk);
  // Segment 0 of the reversed polyline is the old segment 2 (vertex 2 to 3) run backwards.
  EXPECT_EQ(std::get<LwPolyline>(r).vertices[0].startWidth, 4);
  EXPECT_EQ(std::get<LwPolyline>(r).vertices[0].endWidth, 3);
}

// Lightweight to 2D and back keeps the curve; a constant width becomes vertex widths and back.
TEST(Conversion, LightweightTo2dAndBackKeepsTheCurve) {
  LwPolyline lw = sampleLw(true);
  lw.constantWidth = 0;
  Polyline2d p2;
  EXPECT_EQ(kernel.convertLwTo2d(lw, p2), ErrorStatus::eObjectToBeDeleted);
  EXPECT_EQ(p2.vertices.size(), 4u);
  auto a = samples(lw), b = samples(p2);
  for (size_t i = 0; i < a.size(); ++i) EXPECT_LT(a[i].distanceTo(b[i]), 1e-12);
  LwPolyline back;
  EXPECT_EQ(kernel.convert2dToLw(p2, back), ErrorStatus::eObjectToBeDeleted);
  EXPECT_EQ(back.vertices, lw.vertices);
  p2.splineFit = true;
  EXPECT_EQ(kernel.convert2dToLw(p2, back), ErrorStatus::eNotApplicable);
  LwPolyline wide{{{0, 0}, {1, 0}}};
  wide.constantWidth = 0.5;
  kernel.convertLwTo2d(wide, p2);
  EXPECT_EQ(p2.vertices[0].startWidth, 0.5);
  kernel.convert2dToLw(p2, back);
  EXPECT_EQ(back.constantWidth, 0.5);
}

}  // namespace
