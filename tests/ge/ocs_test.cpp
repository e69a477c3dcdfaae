// The arbitrary-axis rule: every reader, writer and drawer of planar
// entities takes its axes from here, so the cases where separate copies
// once disagreed are pinned down.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "ge/ocs.h"

namespace {

struct AxisCase {
  const char* name;
  ge::Vector3d normal;
  ge::Vector3d x;  // expected OCS X axis
};

class ArbitraryAxis : public ::testing::TestWithParam<AxisCase> {};

TEST_P(ArbitraryAxis, GivesAnOrthonormalRightHandedFrameWithTheExpectedX) {
  const AxisCase& c = GetParam();
  ge::OcsFrame f = ge::OcsFrame::of(c.normal);
  EXPECT_NEAR(f.x.x, c.x.x, 1e-12);
  EXPECT_NEAR(f.x.y, c.x.y, 1e-12);
  EXPECT_NEAR(f.x.z, c.x.z, 1e-12);
  for (const ge::Vector3d& axis : {f.x, f.y, f.z}) EXPECT_NEAR(axis.length(), 1, 1e-14);
  EXPECT_NEAR(f.x.dot(f.y), 0, 1e-14);
  ge::Vector3d z = f.x.cross(f.y);
  EXPECT_NEAR(z.dot(f.z), 1, 1e-14);
}

const double kLimit = 1.0 / 64.0;
const double kInside = kLimit * 0.99;
const double kInsideScale = 1 / std::sqrt(1 + kInside * kInside);
INSTANTIATE_TEST_SUITE_P(
    Normals, ArbitraryAxis,
    ::testing::Values(AxisCase{"worldZ", {0, 0, 1}, {1, 0, 0}},
                      AxisCase{"minusZ", {0, 0, -1}, {-1, 0, 0}},
                      AxisCase{"unnormalised", {0, 0, 5}, {1, 0, 0}},
                      AxisCase{"worldX", {1, 0, 0}, {0, 1, 0}},
                      AxisCase{"worldY", {0, 1, 0}, {-1, 0, 0}},
                      // Just inside the pole limit X = Wy × N; just outside X = Wz × N.
                      AxisCase{"insidePole", {kInside, 0, 1}, {kInsideScale, 0, -kInside * kInsideScale}},
                      AxisCase{"outsidePole", {kLimit * 1.01, 0, 1}, {0, 1, 0}},
                      // A zero or broken normal is the world Z axis, not a frame of NaNs.
                      AxisCase{"zero", {0, 0, 0}, {1, 0, 0}},
                      AxisCase{"notANumber", {std::numeric_limits<double>::quiet_NaN(), 0, 1}, {1, 0, 0}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ArbitraryAxis, WorldAndOcsCoordinatesMapBothWaysAndTheMatrixAgrees) {
  const ge::Vector3d normal{0.3, -0.4, 0.866};
  const ge::Point3d p{2, -3, 0.5};
  ge::OcsFrame f = ge::OcsFrame::of(normal);
  ge::Point3d w = ge::ocsToWorld(p, normal);
  EXPECT_LT(ge::worldToOcs(w, normal).distanceTo(p), 1e-12);
  EXPECT_LT(f.toWorldMatrix().apply(p).distanceTo(w), 1e-12);
  // The world Z normal maps points exactly, without rounding through a frame.
  ge::Point3d q{0.1, 0.2, 0.3};
  EXPECT_EQ(ge::ocsToWorld(q, {0, 0, 1}), q);
}

}  // namespace
