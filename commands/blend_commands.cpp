// PLBLENDS: a spline between the nearer ends of two open curves that
// continues both curves' tangents (Tangent) or tangents and curvatures (Smooth).
#include <algorithm>
#include <cmath>

#include "commands/blend.h"
#include "commands/commands.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "ge/tolerance.h"
#include "geom/append.h"

namespace commands {

namespace {

constexpr frame::Text kFirstPrompt{"\nSelect the first curve to blend:", "\n请选择要连接的第一条曲线:"};
constexpr frame::Text kSecondPrompt{"\nSelect the second curve to blend:", "\n请选择要连接的第二条曲线:"};
constexpr frame::Text kContinuityPrompt{"\nContinuity [Tangent/Smooth] <Tangent>:",
                                        "\n连续性 [相切(T)/平滑(S)] <相切>:"};
constexpr frame::Text kNotACurve{"\nThe object picked is not a line, arc, polyline, spline or elliptical arc.",
                                 "\n所选对象不是直线、圆弧、多段线、样条曲线或椭圆弧。"};
constexpr frame::Text kClosed{"\nThe curve picked is closed and has no ends to blend.",
                              "\n所选曲线是闭合的，没有可连接的端点。"};
constexpr frame::Text kSameCurve{"\nPlease pick a different curve.", "\n请选择另一条曲线。"};
constexpr frame::Text kTouching{"\nThe nearer ends already touch; no blend curve is needed.",
                                "\n两条曲线相近的端点已经重合，无需连接曲线。"};
constexpr frame::Text kNoDirection{"\nA curve has no direction at its end; no blend curve was drawn.",
                                   "\n曲线在端点处没有方向，未绘制连接曲线。"};
constexpr frame::Text kDrawnTangent{"\nTangent blend curve drawn.", "\n已绘制相切连接曲线。"};
constexpr frame::Text kDrawnSmooth{"\nSmooth blend curve drawn.", "\n已绘制平滑连接曲线。"};

// Ends closer than this, relative to the size of their coordinates (at least
// 1), already touch: the host's equal-point tolerance.
bool touching(const ge::Point3d& a, const ge::Point3d& b) {
  double size = std::max({1.0, std::abs(a.x), std::abs(a.y), std::abs(a.z)});
  return a.distanceTo(b) <= ge::kGlobalTol.equalPoint * size;
}

// Asks for a curve until an open curve other than `other` is picked; nothing
// when the pick is cancelled or answered with Enter.
std::optional<host::Entity> pickOpenCurve(host::Host& host, const frame::Text& prompt, host::ObjectId other) {
  for (;;) {
    host::ObjectId id;
    ge::Point3d picked;
    int rc = frame::entSel(host, prompt, id, picked);
    if (rc == host::RTERROR) continue;  // a pick where nothing lies asks again
    if (rc != host::RTNORM) return std::nullopt;
    std::optional<host::Entity> e = host.drawing.read(id);
    if (!e || !host::isCurve(e->data))
      frame::print(host, kNotACurve);
    else if (host.curves.isClosed(e->data))
      frame::print(host, kClosed);
    else if (id == other)
      frame::print(host, kSameCurve);
    else
      return e;
  }
}

// The continuity keyword; Enter, a cancel or an error keep Tangent.
Continuity askContinuity(host::Host& host) {
  std::string keyword = "Tangent";
  host.editor.initGet(0, "Tangent Smooth");
  if (host.editor.getKword(kContinuityPrompt.chosen(), keyword) != host::RTNORM) return Continuity::kTangent;
  return keyword == "Smooth" ? Continuity::kSmooth : Continuity::kTangent;
}

std::pair<ge::Point3d, ge::Point3d> endsOf(const host::Host& host, const host::EntityData& c) {
  std::pair<ge::Point3d, ge::Point3d> ends;
  host.curves.getStartPoint(c, ends.first);
  host.curves.getEndPoint(c, ends.second);
  return ends;
}

}  // namespace

void plineBlends(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<host::Entity> first = pickOpenCurve(host, kFirstPrompt, host::kNullId);
  if (!first) return;
  std::optional<host::Entity> second = pickOpenCurve(host, kSecondPrompt, first->id);
  if (!second) return;
  Continuity continuity = askContinuity(host);

  auto [s1, e1] = endsOf(host, first->data);
  auto [s2, e2] = endsOf(host, second->data);
  NearestEnds ends = nearestEnds(s1, e1, s2, e2);
  if (touching(ends.firstAtStart ? s1 : e1, ends.secondAtStart ? s2 : e2)) {
    frame::print(host, kTouching);
    return;
  }
  std::optional<CurveEnd> from = curveEnd(host.curves, first->data, ends.firstAtStart);
  std::optional<CurveEnd> to = curveEnd(host.curves, second->data, ends.secondAtStart);
  if (!from || !to) {
    frame::print(host, kNoDirection);
    return;
  }
  host::Entity blend;
  blend.props = host.drawing.defaultProps();
  blend.data = bezierSpline(blendControlPoints(*from, *to, continuity));
  if (geom::appendToCurrentSpace(host.drawing, blend) != host::ErrorStatus::eOk) return;
  frame::print(host, continuity == Continuity::kSmooth ? kDrawnSmooth : kDrawnTangent);
}

}  // namespace commands
