// PLINT: polylines in between two polylines, eased like the interpolated
// array, optionally carried along a path curve.
//
// The two polylines are matched first (commands/polyline_match.h): they run
// the same way from corresponding starts and the one with fewer vertices
// gains vertices on its longest segments, so any two polylines blend. Both
// closed give closed copies; otherwise the copies are open, a closed source
// opened at its first vertex. Copy k of n lies at t = ease(k / (n + 1)):
// vertices, elevation and bulges blend by t. Without a path the copies'
// centres (of their extents) run straight from A's to B's; with a path they
// follow it from its start to its end at the same t of its length, A's and
// B's offsets from the path's ends blended in, so that sources placed on the
// path's ends give copies centred on the path. Copies are moved, not turned.
#include <optional>

#include "commands/interpolation.h"
#include "commands/offset_array_commands.h"
#include "commands/polyline_match.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "geom/append.h"
#include "geom/sampling.h"

namespace commands {

namespace {

constexpr frame::Text kFirstPrompt{"\nPlease select the first LWPolyline: ", "\n请选择第一根多段线： "};
constexpr frame::Text kSecondPrompt{"\nPlease select the second LWPolyline: ", "\n请选择第二根多段线： "};
constexpr frame::Text kCountPrompt{"\nPlease input the number of interpolated polylines[1--1000](9):",
                                   "\n请输入间插多段线数量[1--1000](9):"};
constexpr frame::Text kPathPrompt{"\nPlease select the path curve, Enter for none: ",
                                  "\n请选择间插路径曲线，回车则不用路径： "};
constexpr frame::Text kAccelerationPrompt{
    "\nPlease enter the interpolation density acceleration, the allowable value is -100 (deceleration) ~ 100 "
    "(acceleration), the default value is 0:",
    "\n请输入间插疏密加速度，允许值 -100（减速） ~ 100（加速），默认值0:"};
constexpr frame::Text kSelectedNothing{"\nSelected nothing.", "\n未选中。"};
constexpr frame::Text kNotLwPolyline{"\nPolyline unexpected error.", "\n多段线意外错误。"};
constexpr frame::Text kMade{"\nAdded < %d> interpolated polylines.", "\n生成了< %d >根间插多段线。"};

// Paths shorter than this carry nothing: the copies go straight.
constexpr double kShortestPath = 0.0001;

MatchPolyline matchOf(const host::LwPolyline& lw) {
  MatchPolyline m;
  for (const auto& v : lw.vertices) m.vertices.push_back({{v.x, v.y, lw.elevation}, v.bulge});
  m.closed = lw.closed;
  return m;
}

host::LwPolyline lwOf(const BlendPolyline& vertices, bool closed) {
  host::LwPolyline lw;
  for (const auto& v : vertices) lw.vertices.push_back({v.p.x, v.p.y, v.bulge});
  lw.elevation = vertices.empty() ? 0 : vertices.front().p.z;
  lw.closed = closed;
  return lw;
}

BlendPolyline blendAt(const BlendPolyline& a, const BlendPolyline& b, double t) {
  BlendPolyline out(a.size());
  for (std::size_t k = 0; k < a.size(); ++k) {
    out[k].p = a[k].p + (b[k].p - a[k].p) * t;
    out[k].bulge = a[k].bulge + (b[k].bulge - a[k].bulge) * t;
  }
  return out;
}

std::optional<ge::Point3d> centreOf(const host::CurveServices& curves, const host::LwPolyline& lw) {
  ge::Extents3d ext;
  if (curves.getGeomExtents(lw, ext) != host::ErrorStatus::eOk || !ext.isValid()) return std::nullopt;
  return ge::Point3d{(ext.min.x + ext.max.x) / 2, (ext.min.y + ext.max.y) / 2, 0};
}

struct Path {
  host::EntityData curve;
  double length = 0;
};

std::optional<Path> askPath(host::Host& host) {
  frame::print(host, kPathPrompt);
  host::ResBufList filter = frame::curveFilter();
  std::vector<host::ObjectId> picked;
  if (host.editor.ssget(":S", nullptr, nullptr, &filter, picked) != host::RTNORM || picked.empty()) return std::nullopt;
  std::optional<host::Entity> e = host.drawing.read(picked.front());
  if (!e || !host::isCurve(e->data)) return std::nullopt;
  double length = geom::curveLength(host.curves, e->data);
  if (length < kShortestPath) return std::nullopt;
  return Path{std::move(e->data), length};
}

// How far copy at t moves off the straight blend to ride on the path.
ge::Vector3d pathShift(const host::CurveServices& curves, const Path& path, double t, const ge::Point3d& centreA,
                       const ge::Point3d& centreB) {
  ge::Point3d start, end, along;
  if (curves.getPointAtDist(path.curve, 0, start) != host::ErrorStatus::eOk ||
      curves.getPointAtDist(path.curve, path.length, end) != host::ErrorStatus::eOk ||
      curves.getPointAtDist(path.curve, path.length * t, along) != host::ErrorStatus::eOk)
    return {};
  ge::Point3d straight = centreA + (centreB - centreA) * t;
  ge::Point3d wanted = along + (centreA - start) * (1 - t) + (centreB - end) * t;
  ge::Vector3d shift = wanted - straight;
  return {shift.x, shift.y, 0};
}

}  // namespace

void plineInterpolate(frame::CommandContext& context) {
  host::Host& host = context.host;
  host::ObjectId firstId = frame::pickOne(host, kFirstPrompt, frame::PickKind::kLwPolylines);
  if (firstId.isNull()) {
    frame::print(host, kSelectedNothing);
    return;
  }
  host::ObjectId secondId = frame::pickOne(host, kSecondPrompt, frame::PickKind::kLwPolylines);
  int count = frame::askInt(host, kCountPrompt, 9, 1, 1000);
  std::optional<Path> path = askPath(host);

  std::optional<host::Entity> first = host.drawing.read(firstId);
  std::optional<host::Entity> second = host.drawing.read(secondId);
  if (!first || !second) return;
  const auto* a = std::get_if<host::LwPolyline>(&first->data);
  const auto* b = std::get_if<host::LwPolyline>(&second->data);
  if (!a || !b || a->vertices.empty() || b->vertices.empty()) {
    frame::print(host, kNotLwPolyline);
    return;
  }
  double acceleration = frame::askInt(host, kAccelerationPrompt, 0, -100, 100, host::RSG_NOLIM) / 100.0;

  MatchPolyline ma = matchOf(*a), mb = matchOf(*b);
  matchPolylines(ma, mb);
  if (ma.vertices.size() != mb.vertices.size()) {  // a single vertex has no segment to split
    frame::print(host, kNotLwPolyline);
    return;
  }
  std::optional<ge::Point3d> centreA = centreOf(host.curves, *a), centreB = centreOf(host.curves, *b);
  int made = 0;
  for (int k = 1; k <= count; ++k) {
    double t = ease(static_cast<double>(k) / (count + 1), acceleration);
    BlendPolyline vertices = blendAt(ma.vertices, mb.vertices, t);
    if (path && centreA && centreB) {
      ge::Vector3d shift = pathShift(host.curves, *path, t, *centreA, *centreB);
      for (auto& v : vertices) v.p = v.p + shift;
    }
    host::Entity copy;
    copy.props = host.drawing.defaultProps();
    copy.data = lwOf(vertices, ma.closed);
    if (geom::appendToCurrentSpace(host.drawing, copy) == host::ErrorStatus::eOk) ++made;
  }
  frame::print(host, kMade, made);
}

}  // namespace commands
