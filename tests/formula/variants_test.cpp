// The command-line variants: their questions in both languages, the fixed
// curves they draw at the picked origin, and the frame of 25 on each side.
#include <gtest/gtest.h>

#include <cmath>

#include "formula/variants.h"
#include "formula_host.h"

namespace formula {
namespace {

using formula_test::pointsOf;
using formula_test::keyword;
using formula_test::Reply;

class Variants : public formula_test::CommandTest {
 protected:
  void SetUp() override { geom::setCurveKindIsSpline(false); }
  std::vector<ge::PointList> curves() const {
    std::vector<ge::PointList> out;
    for (const auto& e : h->modelSpace())
      if (!std::holds_alternative<host::Line>(e.data) && !std::holds_alternative<host::Text>(e.data))
        out.push_back(pointsOf(e));
    return out;
  }
};

TEST_F(Variants, ConeHelixOf175SamplesAtTheOriginAndNothingWithoutAPoint) {
  run(coneHelixCommand, {Reply::enter()});
  EXPECT_TRUE(h->modelSpace().empty());
  h->editor.transcript.clear();
  run(coneHelixCommand, {Reply::point({1, 2, 3})});
  EXPECT_EQ(h->editor.transcript, "\nPlease specify the origin>>");
  auto c = curves();
  ASSERT_EQ(c.size(), 1u);
  ASSERT_EQ(c[0].size(), 175u);
  for (int i : {0, 50, 174}) {
    double t = i / 174.0;
    EXPECT_NEAR(c[0][i].x, 1 + 20 * t * std::sin(90 * t) * std::cos(90 * t), 1e-9);
    EXPECT_NEAR(c[0][i].y, 2 + 20 * t * std::sin(90 * t) * std::sin(90 * t), 1e-9);
    EXPECT_NEAR(c[0][i].z, 3 + 20 * t * std::cos(90 * t), 1e-9);
  }
  // The frame reaches 25 on each side: labels -25 .. 25 by 5.
  EXPECT_TRUE(formula_test::contains(h->labels(), "-25"));
  EXPECT_TRUE(formula_test::contains(h->labels(), "25"));
}

TEST_F(Variants, ArchimedesAsksTurnsAndSenseInChinese) {
  frame::setChinese(true);
  run(archimedesSpiralCommand, {Reply::integer(500), keyword("No"), Reply::point({0, 0, 0})});
  EXPECT_EQ(h->editor.transcript,
            "\n请问绘制几圈阿基米德螺线?[2--128](3):\n按逆时针绘制吗？[Y/N]（Y）:\n请指定原点>>");
  auto c = curves();
  ASSERT_EQ(c.size(), 1u);
  EXPECT_EQ(c[0].size(), 128u * 36);  // 500 turns clamped to 128
  EXPECT_LT(c[0][5].x, 0);            // clockwise: mirrored in x
}

TEST_F(Variants, SpiralDefaultsOnEnter) {
  run(logarithmicSpiralCommand, {Reply::enter(), Reply::enter(), Reply::point({0, 0, 0})});
  EXPECT_EQ(h->editor.transcript,
            "\nHow many turns of the logarithmic spiral?[1--128](1):\nCounterclockwise[Y/N]（Y）:"
            "\nPlease specify the origin>>");
  ASSERT_EQ(curves().size(), 1u);
  EXPECT_EQ(curves()[0].size(), 36u);
}

TEST_F(Variants, RosePetalsOddAndEven) {
  auto maxRadius = [](const ge::PointList& pts) {
    double r = 0;
    for (auto& p : pts) r = std::max(r, std::hypot(p.x, p.y));
    return r;
  };
  run(roseCommand, {Reply::integer(4), keyword("Yes"), Reply::enter(), Reply::point({0, 0, 0})});
  EXPECT_EQ(h->editor.transcript,
            "\nNumber of petals, an odd number gives that many, an even one twice as many:[1~32](5):"
            "\nAccurate？[Y/N]（N）:\nPath multiple:[1~32](1):\nPlease specify the origin>>");
  auto c = curves();
  ASSERT_EQ(c.size(), 1u);
  EXPECT_EQ(c[0].size(), 72u * 4 + 1);
  EXPECT_NEAR(maxRadius(c[0]), 20, 1e-9);
  // Eight petal tips (rho = +-20) for an even count of 4: count sign changes of rho.
  int tips = 0;
  for (const auto& p : c[0]) tips += std::abs(std::hypot(p.x, p.y) - 20) < 1e-9;
  EXPECT_EQ(tips, 9);  // eight tips, the first repeated at the end of the sweep
}

TEST_F(Variants, SphericalHelixAndUfoChoices) {
  run(sphericalHelixCommand, {keyword("No"), Reply::point({0, 0, 0})});
  EXPECT_EQ(h->editor.transcript, "\n Y = Spherical helix, N = Mantle helix？[Y/N]（Y）:\nPlease specify the origin>>");
  auto mantle = curves();
  ASSERT_EQ(mantle.size(), 1u);
  for (auto& p : mantle[0]) EXPECT_GE(p.z, -1e-9);  // the mantle stays on the upper half
  h->editor.transcript.clear();
  run(ufoVortexCommand, {Reply::enter(), Reply::point({0, 0, 0})});
  EXPECT_EQ(h->editor.transcript, "\n Y = UFO, N = Whirlpool？[Y/N]（Y）:\nPlease specify the origin>>");
  EXPECT_EQ(variantCommands().size(), 8u);
}

}  // namespace
}  // namespace formula
