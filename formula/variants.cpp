#include "formula/variants.h"

#include <array>
#include <cmath>
#include <numbers>

#include "formula/coordinate_frame.h"
#include "formula/generators.h"
#include "formula/main_dlg.h"
#include "frame/prompts.h"
#include "frame/text.h"

namespace formula {
namespace {

constexpr frame::Text kArchimedesTurns{"\nHow many turns of the Archimedes spiral?[2--128](3):",
                                       "\n请问绘制几圈阿基米德螺线?[2--128](3):"};
constexpr frame::Text kLogTurns{"\nHow many turns of the logarithmic spiral?[1--128](1):",
                                "\n请问绘制几圈对数螺线?[1--128](1):"};
constexpr frame::Text kHyperbolicTurns{"\nHow many turns of the hyperbolic spiral?[1--128](1):",
                                       "\n请问绘制几圈双曲螺线?[1--128](1):"};
constexpr frame::Text kInterlockingTurns{"\nHow many turns of the interlocking spiral?[1--128](1):",
                                         "\n请问绘制几圈连锁螺线?[1--128](1):"};
constexpr frame::Text kCounterclockwise{"\nCounterclockwise[Y/N]（Y）:", "\n按逆时针绘制吗？[Y/N]（Y）:"};
constexpr frame::Text kPetals{"\nNumber of petals, an odd number gives that many, an even one twice as many:[1~32](5):",
                              "\n请问花瓣数，奇数为一倍花瓣数，偶数为两倍花瓣倍数:[1~32](5):"};
constexpr frame::Text kAccurate{"\nAccurate？[Y/N]（N）:", "\n精确绘制吗？[Y/N]（N）:"};
constexpr frame::Text kPathMultiple{"\nPath multiple:[1~32](1):", "\n请问路径倍数:[1~32](1):"};
constexpr frame::Text kSphereOrMantle{"\n Y = Spherical helix, N = Mantle helix？[Y/N]（Y）:",
                                      "\n Y = 球面螺旋线, N = 罩形螺旋线？[Y/N]（Y）:"};
constexpr frame::Text kUfoOrWhirlpool{"\n Y = UFO, N = Whirlpool？[Y/N]（Y）:", "\n Y = 飞碟线, N = 漩涡球？[Y/N]（Y）:"};

// The frame of the variants reaches this far on each side of the origin.
constexpr double kFrameReach = 25;

// Asks for the origin; on a point draws the lists and the frame.
void drawAtOrigin(host::Host& host, const std::vector<ge::PointList>& relative) {
  ge::Point3d origin;
  if (frame::getPoint(host, kOriginPrompt, origin) != host::RTNORM) return;
  std::vector<ge::PointList> lists = relative;
  for (auto& list : lists)
    for (auto& p : list) p = origin + p.asVector();
  makeCurves(host, lists, kCurrentColor, false);
  drawCoordinateFrame(host, origin, {-kFrameReach, kFrameReach, -kFrameReach, kFrameReach});
}

// The point lists of a catalogue row at the origin of coordinates.
std::vector<ge::PointList> rowCurves(int row, std::array<int, kParamCount> params) {
  std::vector<ge::PointList> lists;
  for (auto& curve : generateFormulaCurve(row, {ge::Point3d{}, params, 6})) lists.push_back(std::move(curve.points));
  return lists;
}

// A spiral row with its turns and direction asked for; radius and growth fixed.
void spiralVariant(frame::CommandContext& ctx, const frame::Text& turnsPrompt, int low, int fallback, int row,
                   int slot3, int slot4) {
  int turns = frame::askInt(ctx.host, turnsPrompt, fallback, low, 128);
  bool ccw = frame::askYesNo(ctx.host, kCounterclockwise, true);
  drawAtOrigin(ctx.host, rowCurves(row, {turns, ccw ? 1 : 0, slot3, slot4}));
}

}  // namespace

void coneHelixCommand(frame::CommandContext& ctx) {
  ge::PointList points;
  for (int i = 0; i < 175; ++i) {
    double t = i / 174.0, a = 90 * t, s = std::sin(a), c = std::cos(a);
    points.push_back({20 * t * s * c, 20 * t * s * s, 20 * t * c});
  }
  drawAtOrigin(ctx.host, {points});
}

// Radius 1: three turns reach about 19.
void archimedesSpiralCommand(frame::CommandContext& ctx) { spiralVariant(ctx, kArchimedesTurns, 2, 3, 13, 1, 0); }

// Radius 1, growth 2.718281828^(0.2 t).
void logarithmicSpiralCommand(frame::CommandContext& ctx) { spiralVariant(ctx, kLogTurns, 1, 1, 14, 200, 1); }

// Radius 20 at t = 1.
void hyperbolicSpiralCommand(frame::CommandContext& ctx) { spiralVariant(ctx, kHyperbolicTurns, 1, 1, 15, 20, 0); }

void interlockingSpiralCommand(frame::CommandContext& ctx) {
  spiralVariant(ctx, kInterlockingTurns, 1, 1, 16, 20, 0);
}

void roseCommand(frame::CommandContext& ctx) {
  int petals = frame::askInt(ctx.host, kPetals, 5, 1, 32);
  bool accurate = frame::askYesNo(ctx.host, kAccurate, false);
  int multiple = frame::askInt(ctx.host, kPathMultiple, 1, 1, 32);
  // An odd index closes after pi, an even one after 2 pi; the path multiple
  // stretches both the index's denominator and the sweep.
  const double k = static_cast<double>(petals) / multiple;
  const double sweep = (petals % 2 ? std::numbers::pi : 2 * std::numbers::pi) * multiple;
  const int n = (accurate ? 72 : 18) * petals * multiple + 1;
  ge::PointList points;
  for (int i = 0; i < n; ++i) {
    double t = sweep * i / (n - 1), rho = 20 * std::cos(k * t);
    points.push_back({rho * std::cos(t), rho * std::sin(t), 0});
  }
  drawAtOrigin(ctx.host, {points});
}

void sphericalHelixCommand(frame::CommandContext& ctx) {
  bool sphere = frame::askYesNo(ctx.host, kSphereOrMantle, true);
  drawAtOrigin(ctx.host, rowCurves(31, {20, sphere ? 1 : 0, 6, 0}));
}

void ufoVortexCommand(frame::CommandContext& ctx) {
  bool ufo = frame::askYesNo(ctx.host, kUfoOrWhirlpool, true);
  drawAtOrigin(ctx.host, rowCurves(38, {20, ufo ? 1 : 0, 30, 0}));
}

std::span<const VariantCommand> variantCommands() {
  static constexpr std::array<VariantCommand, 8> kVariants{{
      {"FCONEHELIX", coneHelixCommand},
      {"FARCHIMEDES", archimedesSpiralCommand},
      {"FLOGSPIRAL", logarithmicSpiralCommand},
      {"FHYPSPIRAL", hyperbolicSpiralCommand},
      {"FLITUUS", interlockingSpiralCommand},
      {"FROSE", roseCommand},
      {"FSPHEREHELIX", sphericalHelixCommand},
      {"FUFO", ufoVortexCommand},
  }};
  return kVariants;
}

}  // namespace formula
