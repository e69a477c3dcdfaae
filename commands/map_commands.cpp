// PLMAP4: curves are mapped from the rectangle of their extents into the
// region fenced by four picked curves, by the Coons patch of the fence.
#include <algorithm>
#include <array>
#include <cmath>

#include "commands/commands.h"
#include "commands/coons_patch.h"
#include "commands/selection_set.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "ge/extents.h"
#include "geom/curve_builders.h"
#include "geom/sampling.h"

namespace commands {

namespace {

constexpr SelectionTexts kSelection{{"Please select Curves to map >\n", "请选择要映射的线条>\n"},
                                    {"No Curve selected.\n", "未选中任何线条。\n"},
                                    {"No Curve selected.\n", "未选中任何线条。\n"}};
constexpr std::array<frame::Text, 4> kSidePrompts{{
    {"\nPick the bottom curve of the fence:", "\n请选择边界的下边曲线:"},
    {"\nPick the right curve of the fence:", "\n请选择边界的右边曲线:"},
    {"\nPick the top curve of the fence:", "\n请选择边界的上边曲线:"},
    {"\nPick the left curve of the fence:", "\n请选择边界的左边曲线:"},
}};
constexpr frame::Text kNotAnOpenCurve{"\nThe fence is made of open curves; please pick another.",
                                      "\n边界须由开放曲线组成，请另选一条。"};
constexpr frame::Text kFenceOpen{"\nThe four fence curves do not meet end to end; nothing was mapped.",
                                 "\n四条边界曲线首尾不相接，未做映射。"};
constexpr frame::Text kFlatExtents{"\nThe selected curves have no width or no height to map from.",
                                   "\n所选曲线的范围没有宽度或高度，无法映射。"};

// Fence ends meet when no farther apart than this fraction of the fence's size.
constexpr double kCornerGap = 1e-6;
// Mapped curves stay within this fraction of the fence's size of the exact map.
constexpr double kMapTolerance = 1e-4;
// Steps a curve without vertices is first cut into before refining.
constexpr int kFirstSteps = 8;

struct FenceCurve {
  host::Entity entity;
  double length = 0;
};

// Asks for an open curve with a length until one is picked; nothing on a cancel or Enter.
std::optional<FenceCurve> pickSide(host::Host& host, const frame::Text& prompt) {
  for (;;) {
    host::ObjectId id;
    ge::Point3d picked;
    int rc = frame::entSel(host, prompt, id, picked);
    if (rc == host::RTERROR) continue;  // a pick where nothing lies asks again
    if (rc != host::RTNORM) return std::nullopt;
    std::optional<host::Entity> e = host.drawing.read(id);
    if (e && host::isCurve(e->data) && !host.curves.isClosed(e->data)) {
      double length = geom::curveLength(host.curves, e->data);
      if (length > 0) return FenceCurve{std::move(*e), length};
    }
    frame::print(host, kNotAnOpenCurve);
  }
}

// The side as a function of the fraction of its length, in the patch's direction.
FenceSide sideOf(const host::CurveServices& curves, const FenceCurve& c, bool reversed) {
  return [&curves, c, reversed](double f) {
    double s = std::clamp(reversed ? 1 - f : f, 0.0, 1.0) * c.length;
    ge::Point3d p;
    curves.getPointAtDist(c.entity.data, s, p);
    return p;
  };
}

// Breaks of a curve's parameter range: every vertex of a polyline, else kFirstSteps equal steps.
std::vector<double> breaksOf(const host::CurveServices& curves, const host::EntityData& c) {
  double t0 = 0, t1 = 0;
  curves.getStartParam(c, t0);
  curves.getEndParam(c, t1);
  bool vertices = std::holds_alternative<host::LwPolyline>(c) || std::holds_alternative<host::Polyline2d>(c) ||
                  std::holds_alternative<host::Polyline3d>(c);
  int steps = vertices ? static_cast<int>(std::lround(t1 - t0)) : kFirstSteps;
  std::vector<double> breaks;
  for (int i = 0; i <= std::max(steps, 1); ++i) breaks.push_back(t0 + (t1 - t0) * i / std::max(steps, 1));
  return breaks;
}

ge::Extents3d extentsOf(const host::Host& host, const std::vector<host::Entity>& curves) {
  ge::Extents3d all;
  for (const host::Entity& e : curves) {
    ge::Extents3d one;
    if (host.curves.getGeomExtents(e.data, one) == host::ErrorStatus::eOk) all.add(one);
  }
  return all;
}

bool mapCurve(host::Host& host, const host::Entity& source, const CoonsPatch& patch, const ge::Extents3d& from,
              double tolerance) {
  const double w = from.max.x - from.min.x, h = from.max.y - from.min.y;
  auto image = [&](double t) {
    ge::Point3d p;
    host.curves.getPointAtParam(source.data, t, p);
    return patch.at((p.x - from.min.x) / w, (p.y - from.min.y) / h);
  };
  MappedSample sample = sampleMapped(image, breaksOf(host.curves, source.data), tolerance);
  bool closed = host.curves.isClosed(source.data);
  if (closed && sample.points.size() > 2) sample.points.pop_back();
  return geom::makeCurveByPoints(host, nullptr, sample.points, geom::kColorCurrent, closed, {}, {});
}

}  // namespace

void plineMapInto4(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, frame::curveFilter());
  if (!ids) return;
  std::array<std::optional<FenceCurve>, 4> sides;
  for (size_t i = 0; i < sides.size(); ++i)
    if (!(sides[i] = pickSide(host, kSidePrompts[i]))) return;

  std::array<CurveEnds, 4> ends;
  ge::Extents3d fenceBox;
  for (size_t i = 0; i < sides.size(); ++i) {
    host.curves.getStartPoint(sides[i]->entity.data, ends[i].start);
    host.curves.getEndPoint(sides[i]->entity.data, ends[i].end);
    ge::Extents3d box;
    if (host.curves.getGeomExtents(sides[i]->entity.data, box) == host::ErrorStatus::eOk) fenceBox.add(box);
  }
  const double fenceSize = fenceBox.diagonal();
  FenceOrientation orientation = orientFence(ends);
  if (orientation.widestGap > kCornerGap * fenceSize) {
    frame::print(host, kFenceOpen);
    return;
  }
  CoonsPatch patch(sideOf(host.curves, *sides[0], orientation.reversed[0]),
                   sideOf(host.curves, *sides[1], orientation.reversed[1]),
                   sideOf(host.curves, *sides[2], orientation.reversed[2]),
                   sideOf(host.curves, *sides[3], orientation.reversed[3]));

  // The fence itself is not mapped into itself.
  std::vector<host::Entity> sources;
  for (host::ObjectId id : *ids) {
    bool isFence = std::any_of(sides.begin(), sides.end(), [&](const auto& s) { return s->entity.id == id; });
    std::optional<host::Entity> e = host.drawing.read(id);
    if (!isFence && e && host::isCurve(e->data)) sources.push_back(std::move(*e));
  }
  ge::Extents3d from = extentsOf(host, sources);
  if (!from.isValid() || from.max.x - from.min.x <= 0 || from.max.y - from.min.y <= 0) {
    frame::print(host, kFlatExtents);
    return;
  }
  int made = 0;
  for (const host::Entity& source : sources) made += mapCurve(host, source, patch, from, kMapTolerance * fenceSize);
  frame::print(host, kProcessed, made);
}

}  // namespace commands
