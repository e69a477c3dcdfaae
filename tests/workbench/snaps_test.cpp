// Object snaps on a drawing of known shapes: which point each snap kind
// finds near the cursor, and which kind wins where several are in reach.
#include <gtest/gtest.h>

#include <cmath>

#include "apps/corvane-workbench/snaps.h"
#include "standalone/db/database.h"
#include "standalone/kernel/curve_kernel.h"

namespace workbench_test {
namespace {

using workbench::SnapKind;

struct SnapCase {
  const char* name;
  ge::Point3d cursor;
  std::optional<ge::Point3d> base;
  int enabled;
  SnapKind kind;
  ge::Point3d expected;
};

class SnapTest : public ::testing::TestWithParam<SnapCase> {
 protected:
  SnapTest() : db_(standalone::DrawingDatabase::createEmpty()) {
    add(host::Line{{0, 0, 0}, {10, 0, 0}});
    add(host::Line{{8, -5, 0}, {8, 5, 0}});
    add(host::Circle{{20, 0, 0}, 3});
    host::LwPolyline pl;
    pl.vertices = {{30, 0}, {40, 0, 1.0}, {40, 10}};  // a half circle from (40,0) to (40,10) bulging right
    add(pl);
  }
  void add(host::EntityData data) {
    host::Entity e;
    e.props = db_.defaultProps();
    e.data = std::move(data);
    db_.append(e);
  }
  standalone::DrawingDatabase db_;
  standalone::CurveKernel curves_;
};

TEST_P(SnapTest, FindsThePointTheDraftsmanMeans) {
  const SnapCase& c = GetParam();
  workbench::EntityGrid grid(db_, curves_);
  double aperture = 1.0;
  auto near = grid.near({c.cursor.x, c.cursor.y}, aperture);
  auto hit = workbench::findSnap(db_, curves_, near, c.cursor, aperture, c.base, c.enabled);
  ASSERT_TRUE(hit);
  EXPECT_EQ(hit->kind, c.kind);
  EXPECT_NEAR(hit->point.x, c.expected.x, 1e-9);
  EXPECT_NEAR(hit->point.y, c.expected.y, 1e-9);
}

constexpr int kAll = workbench::kAllSnaps;
INSTANTIATE_TEST_SUITE_P(
    Kinds, SnapTest,
    ::testing::Values(
        SnapCase{"Endpoint", {0.3, 0.2, 0}, std::nullopt, kAll, SnapKind::kEndpoint, {0, 0, 0}},
        SnapCase{"MidpointBeatsNearest", {5.1, 0.1, 0}, std::nullopt, kAll, SnapKind::kMidpoint, {5, 0, 0}},
        SnapCase{"Intersection", {8.2, 0.3, 0}, std::nullopt, kAll, SnapKind::kIntersection, {8, 0, 0}},
        SnapCase{"Centre", {20.2, 0.1, 0}, std::nullopt, kAll, SnapKind::kCenter, {20, 0, 0}},
        SnapCase{"Quadrant", {20.3, 2.6, 0}, std::nullopt, kAll, SnapKind::kQuadrant, {20, 3, 0}},
        SnapCase{"NearestOnTheCircle", {22.0, 2.0, 0}, std::nullopt, kAll, SnapKind::kNearest,
                 {20 + 3 / std::sqrt(2.0), 3 / std::sqrt(2.0), 0}},
        SnapCase{"PerpendicularFromTheBase", {3.1, 0.4, 0}, ge::Point3d{3, 8, 0}, kAll, SnapKind::kPerpendicular,
                 {3, 0, 0}},
        SnapCase{"BulgedSegmentMiddle", {45.2, 5.1, 0}, std::nullopt, kAll, SnapKind::kMidpoint, {45, 5, 0}},
        SnapCase{"OnlyTheEnabledKinds", {5.1, 0.1, 0}, std::nullopt, workbench::snapBit(SnapKind::kNearest),
                 SnapKind::kNearest, {5.1, 0, 0}}),
    [](const ::testing::TestParamInfo<SnapCase>& row) { return std::string(row.param.name); });

struct GripCase {
  const char* name;
  ge::Point3d from, to;
  bool closed;
  std::vector<host::LwVertex> expected;  // empty: the grip cannot go there, nothing changes
};

// A right angle then a half circle bulging right, middle at (15,5).
const std::vector<host::LwVertex> kShape{{0, 0}, {10, 0, 1.0}, {10, 10}};

class PolylineGripTest : public ::testing::TestWithParam<GripCase> {};

TEST_P(PolylineGripTest, MovesWhatTheGripHolds) {
  const GripCase& c = GetParam();
  host::LwPolyline pl;
  pl.vertices = kShape;
  pl.closed = c.closed;
  bool moved = workbench::moveLwPolylineGrip(pl, c.from, c.to);
  EXPECT_EQ(moved, !c.expected.empty());
  const std::vector<host::LwVertex>& want = c.expected.empty() ? kShape : c.expected;
  ASSERT_EQ(pl.vertices.size(), want.size());
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_NEAR(pl.vertices[i].x, want[i].x, 1e-12) << i;
    EXPECT_NEAR(pl.vertices[i].y, want[i].y, 1e-12) << i;
    EXPECT_NEAR(pl.vertices[i].bulge, want[i].bulge, 1e-12) << i;
  }
  if (!moved) return;
  // Wherever the dropped point went, the polyline now passes through it.
  standalone::CurveKernel curves;
  ge::Point3d on;
  ASSERT_EQ(curves.getClosestPointTo(pl, c.to, on), host::ErrorStatus::eOk);
  EXPECT_NEAR(on.distanceTo(c.to), 0, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Grips, PolylineGripTest,
    ::testing::Values(
        GripCase{"Vertex", {0, 0, 0}, {1, 1, 0}, false, {{1, 1}, {10, 0, 1.0}, {10, 10}}},
        GripCase{"StraightMiddleCarriesTheSegment", {5, 0, 0}, {5, 3, 0}, false, {{0, 3}, {10, 3, 1.0}, {10, 10}}},
        GripCase{"ArcMiddleFlattens", {15, 5, 0}, {13, 5, 0}, false, {{0, 0}, {10, 0, 0.6}, {10, 10}}},
        GripCase{"ArcThroughAnOffCentrePoint", {15, 5, 0}, {12, 9, 0}, false,
                 {{0, 0}, {10, 0, (std::sqrt(425.0) - 5) / 20}, {10, 10}}},
        GripCase{"ArcFlippedToTheOtherSide", {15, 5, 0}, {8, 5, 0}, false, {{0, 0}, {10, 0, -0.4}, {10, 10}}},
        GripCase{"ArcOntoItsChordIsStraight", {15, 5, 0}, {10, 5, 0}, false, {{0, 0}, {10, 0, 0.0}, {10, 10}}},
        GripCase{"ArcBeyondAnEndCannot", {15, 5, 0}, {10, 20, 0}, false, {}},
        GripCase{"ClosingSegmentOfAClosedPolyline", {5, 5, 0}, {4, 5, 0}, true, {{-1, 0}, {10, 0, 1.0}, {9, 10}}},
        GripCase{"NoGripThere", {7, 7, 0}, {8, 8, 0}, false, {}}),
    [](const ::testing::TestParamInfo<GripCase>& row) { return std::string(row.param.name); });

TEST(Ortho, KeepsTheLargerOfTheTwoMoves) {
  EXPECT_EQ(workbench::orthoPoint({1, 1, 0}, {5, 2, 0}), (ge::Point3d{5, 1, 0}));
  EXPECT_EQ(workbench::orthoPoint({1, 1, 0}, {2, -6, 0}), (ge::Point3d{1, -6, 0}));
}

TEST(EntityGrid, FindsOnlyWhatIsNear) {
  standalone::DrawingDatabase db = standalone::DrawingDatabase::createEmpty();
  standalone::CurveKernel curves;
  for (int i = 0; i < 1000; ++i) {
    host::Entity e;
    e.props = db.defaultProps();
    e.data = host::Circle{{i * 10.0, 0, 0}, 1};
    db.append(e);
  }
  workbench::EntityGrid grid(db, curves);
  EXPECT_EQ(grid.near({500, 0}, 0.5).size(), 1u);
  EXPECT_EQ(grid.near({505, 0}, 0.5).size(), 0u);
  EXPECT_EQ(grid.near({505, 0}, 4.5).size(), 2u);
}

}  // namespace
}  // namespace workbench_test
