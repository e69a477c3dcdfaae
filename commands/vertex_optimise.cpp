// PLYH, PLYH2 and PLYH3: thinning polylines, removing duplicate vertices,
// and thinning into a spline-fit 2D polyline.
#include "commands/commands.h"
#include "commands/polyline_records.h"
#include "commands/selection_set.h"
#include "commands/thinning.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "frame/sysvars.h"
#include "geom/append.h"
#include "geom/sampling.h"

namespace commands {

namespace {

constexpr frame::Text kSelectPrompt{"Please select polyline >\n", "请选择待优化的多段线>\n"};
constexpr frame::Text kNoPolyline{"No polyline selected.\n", "未选中多段线。\n"};
constexpr SelectionTexts kSelection{kSelectPrompt, kNoPolyline, kNoPolyline};
constexpr frame::Text kTolerancePrompt{"\nPlease input the tolerance[1--10](1):", "\n请输入误差[1--10](1):"};
constexpr frame::Text kTooSmallThin{"The height of the polyline bounding box is too low.\n",
                                    "多段线包围盒高度太低。\n"};
constexpr frame::Text kTooSmallSpline{"The height of the polyline bounding box is too low.\n",
                                      "多段线包围盒太小。\n"};
constexpr frame::Text kThinSummary{
    "\nVertexs befor optimization : %d， nVertexs now: %d，optimization efficiency is %d percent.",
    "\n优化前顶点数: %d， 优化后顶点数: %d，优化效率%d％。 "};
constexpr frame::Text kDuplicateSummary{"\nDeleted <%d > duplicate vertexs OK.", "\n删除了< %d >个重复顶点。 "};

// A selection whose bounding box has a shorter diagonal than this is too small to thin.
constexpr double kSmallestScale = 0.001;
// Polylines shorter than this are erased rather than thinned.
constexpr double kShortestPolyline = 1e-5;
// Consecutive 3D vertices closer than this are written once.
constexpr double k3dVertexTolerance = 1e-6;
// PLYH3 thins with this tolerance as it stands (PLYH subtracts 0.5 from the user's answer).
constexpr double kSplineThinTolerance = 1.0;

// Vertex counts of one run, summed over the polylines.
struct RunCounters {
  int before = 0;
  int after = 0;
};

// Diagonal of the bounding box of every entity of the selection.
double selectionScale(const host::Host& host, const std::vector<host::ObjectId>& ids) {
  ge::Extents3d all;
  for (host::ObjectId id : ids) {
    std::optional<host::Entity> e = host.drawing.read(id);
    ge::Extents3d ext;
    if (e && host.curves.getGeomExtents(e->data, ext) == host::ErrorStatus::eOk) all.add(ext);
  }
  return all.diagonal();
}

// The thinned replacement of a 3D polyline: points closer than 1e-6 to the
// previously written one are left out and taken off the after-count.
host::Polyline3d thinned3d(const ge::PointList& points, bool closed, RunCounters& counters) {
  host::Polyline3d pl;
  pl.closed = closed;
  for (const ge::Point3d& p : points) {
    if (!pl.vertices.empty() && pl.vertices.back().position.distanceTo(p) < k3dVertexTolerance) {
      --counters.after;
      continue;
    }
    pl.vertices.push_back({p});
  }
  return pl;
}

// Thins one polyline and replaces it in the current space; the new entity's
// id, or nothing when the polyline was unreadable, too short (then erased) or
// the append failed.
std::optional<host::ObjectId> thinOne(host::Host& host, host::ObjectId id, const ThinningThresholds& t,
                                      RunCounters& counters) {
  std::optional<host::Entity> source = host.drawing.read(id);
  if (!source) return std::nullopt;
  if (geom::curveLength(host.curves, source->data) < kShortestPolyline) {
    host.drawing.erase(id);
    return std::nullopt;
  }
  ge::PointList points = drawnVertexPositions(source->data);
  bool closed = isClosedPolyline(source->data);
  counters.before += static_cast<int>(points.size());
  ge::PointList kept = thinPolylinePoints(std::move(points), t);
  counters.after += static_cast<int>(kept.size());

  host::Entity result;
  result.props = propsLike(host.drawing, source->props);
  if (std::holds_alternative<host::Polyline3d>(source->data))
    result.data = thinned3d(kept, closed, counters);
  else
    result.data = lwPolylineThrough(kept, closed, constantWidthOf(source->data), polylineNormal(source->data));
  if (geom::appendToCurrentSpace(host.drawing, result) != host::ErrorStatus::eOk) return std::nullopt;
  host.drawing.erase(id);
  return result.id;
}

// Removes the marked vertices of a polyline record; the number removed.
int removeMarkedVertices(host::EntityData& data, const std::vector<bool>& remove) {
  auto dropMarked = [&remove](auto& vertices) {
    int removed = 0;
    for (std::size_t i = vertices.size(); i-- > 0;) {
      if (i < remove.size() && remove[i]) {
        vertices.erase(vertices.begin() + static_cast<std::ptrdiff_t>(i));
        ++removed;
      }
    }
    return removed;
  };
  if (auto* lw = std::get_if<host::LwPolyline>(&data)) return dropMarked(lw->vertices);
  if (auto* p2 = std::get_if<host::Polyline2d>(&data)) return dropMarked(p2->vertices);
  if (auto* p3 = std::get_if<host::Polyline3d>(&data)) return dropMarked(p3->vertices);
  return 0;
}

void setClosed(host::EntityData& data) {
  if (auto* lw = std::get_if<host::LwPolyline>(&data)) lw->closed = true;
  if (auto* p2 = std::get_if<host::Polyline2d>(&data)) p2->closed = true;
  if (auto* p3 = std::get_if<host::Polyline3d>(&data)) p3->closed = true;
}

// Removes the duplicate vertices of one polyline in place; the number removed.
int deleteDuplicatesOf(host::Host& host, host::ObjectId id) {
  std::optional<host::Entity> e = host.drawing.read(id);
  if (!e) return 0;
  if (geom::curveLength(host.curves, e->data) < kShortestPolyline) {
    host.drawing.erase(id);
    return 0;
  }
  bool wasClosed = isClosedPolyline(e->data);
  DuplicateMarks marks = markDuplicateVertices(ownVertexPositions(e->data));
  int removed = removeMarkedVertices(e->data, marks.remove);
  if (wasClosed || marks.lastRepeatsFirst) setClosed(e->data);
  if (host.drawing.write(*e) != host::ErrorStatus::eOk) return 0;
  return removed;
}

// PLYH3 on one polyline: thinned with the fixed tolerance and made a cubic
// spline-fit 2D polyline with the source's closure, width, layer and colour.
void thinToSplineOne(host::Host& host, host::ObjectId id, double scale, int splineSegs) {
  std::optional<host::Entity> source = host.drawing.read(id);
  if (!source) return;
  if (geom::curveLength(host.curves, source->data) < kShortestPolyline) {
    host.drawing.erase(id);
    return;
  }
  if (auto* lw = std::get_if<host::LwPolyline>(&source->data); lw && lw->vertices.size() <= 2) return;

  bool closed = isClosedPolyline(source->data);
  double width = constantWidthOf(source->data);
  ge::PointList points = drawnVertexPositions(source->data);
  if (closed && !points.empty()) points.push_back(points.front());
  // The points pass through a flat lightweight polyline at the first point's
  // elevation before they are thinned, so a 3D source comes out flat.
  for (ge::Point3d& p : points) p.z = points.front().z;

  ge::PointList kept = thinPolylinePoints(std::move(points), thinningThresholds(scale, kSplineThinTolerance));
  host::LwPolyline thinned = lwPolylineThrough(kept, false, 0.0, polylineNormal(source->data));
  host::Entity result;
  result.props = propsLike(host.drawing, source->props);
  host::Polyline2d fitted;
  if (host.curves.convertLwTo2d(thinned, fitted) == host::ErrorStatus::eObjectToBeDeleted) {
    fitted.closed = closed;
    fitted.defaultStartWidth = fitted.defaultEndWidth = width;
    for (host::Vertex2d& v : fitted.vertices) v.startWidth = v.endWidth = width;
    // Too few vertices to fit stay a plain 2D polyline.
    host.curves.fitPolyline2d(fitted, static_cast<int>(host::PolyCurveType::kCubicSpline), splineSegs);
    result.data = std::move(fitted);
  } else {
    result.data = std::move(thinned);  // the host would not convert it: the thinned polyline stays
  }
  if (geom::appendToCurrentSpace(host.drawing, result) == host::ErrorStatus::eOk) host.drawing.erase(id);
}

}  // namespace

void plineThin(frame::CommandContext& context) {
  host::Host& host = context.host;
  RunCounters counters;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, frame::polylineFilter());
  if (!ids) return;
  double scale = selectionScale(host, *ids);
  if (scale < kSmallestScale) {
    frame::print(host, kTooSmallThin);
    return;
  }
  host.editor.initGet(frame::kPositiveBits, "");
  int answer = 1;
  int tolerance = frame::getInt(host, kTolerancePrompt, answer) == host::RTNORM ? frame::clampToRange(answer, 1, 10) : 1;
  ThinningThresholds thresholds = thinningThresholds(scale, tolerance - 0.5);

  for (host::ObjectId id : *ids) thinOne(host, id, thresholds, counters);

  if (counters.before > 0) {
    int after = std::min(counters.after, counters.before);
    frame::print(host, kThinSummary, counters.before, after, thinningEfficiency(counters.before, after));
  }
}

void plineDeleteDuplicates(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, frame::polylineFilter());
  if (!ids) return;
  int deleted = 0;
  for (host::ObjectId id : *ids) deleted += deleteDuplicatesOf(host, id);
  frame::print(host, kDuplicateSummary, deleted);
}

void plineThinToSpline(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, frame::polylineFilter());
  if (!ids) return;
  double scale = selectionScale(host, *ids);
  if (scale < kSmallestScale) {
    frame::print(host, kTooSmallSpline);
    return;
  }
  int splineSegs = 8;
  frame::getSysVar(host, "SPLINESEGS", splineSegs);
  for (host::ObjectId id : *ids) thinToSplineOne(host, id, scale, splineSegs);
}

}  // namespace commands
