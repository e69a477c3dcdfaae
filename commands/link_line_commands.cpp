// linkLine00, linkLine90 and linkLineAuto: a two-point spline between picked
// points, its end tangents horizontal, vertical, or from the sides of the
// shapes it joins, which then keep its ends at their side middles.
#include <optional>

#include "commands/commands.h"
#include "commands/link_lines.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "frame/sysvars.h"
#include "geom/append.h"

namespace commands {

namespace {

constexpr frame::Text kStartPrompt{"\nPlease specify the starting point>>", "\n请指定起点>>"};
constexpr frame::Text kEndPrompt{"\nPlease specify the end point>>", "\n请指定终点>>"};

// The margin of the automatic tangents is this fraction of the view height.
constexpr double kMarginOfView = 1.0 / 20;
// VIEWSIZE when it cannot be read.
constexpr double kFallbackViewSize = 100;
// A shape counts as under a picked point when it passes through a square of
// this fraction of the view height about it.
constexpr double kPickBoxOfView = 1.0 / 200;

struct Ends {
  ge::Point3d start, end;
};

// Both points, or nothing when either prompt was answered with Enter or a cancel.
std::optional<Ends> askEnds(host::Host& host) {
  Ends ends;
  if (frame::getPoint(host, kStartPrompt, ends.start) != host::RTNORM) return std::nullopt;
  if (frame::getPoint(host, kEndPrompt, ends.end, &ends.start) != host::RTNORM) return std::nullopt;
  return ends;
}

// The connector: a spline through the two points with the end tangents,
// colour by layer, in the current space; its id, or nothing.
std::optional<host::ObjectId> drawConnector(host::Host& host, const Ends& ends, const ge::Vector3d& startTangent,
                                            const ge::Vector3d& endTangent) {
  host::Spline spline;
  if (host.curves.fitSpline({ends.start, ends.end}, &startTangent, &endTangent, spline) != host::ErrorStatus::eOk)
    return std::nullopt;
  host::Entity e;
  e.props = host.drawing.defaultProps();
  e.props.color.index = host::Color::kByLayer;
  e.props.color.trueColor.reset();
  e.data = std::move(spline);
  if (geom::appendToCurrentSpace(host.drawing, e) != host::ErrorStatus::eOk) return std::nullopt;
  return e.id;
}

double viewSize(const host::Host& host) {
  double size = kFallbackViewSize;
  if (frame::getSysVar(host, "VIEWSIZE", size) != frame::kSysVarOk) size = kFallbackViewSize;
  return size;
}

struct ShapeSide {
  Side side = Side::kNone;
  host::ObjectId shape;
};

// The polyline, circle or ellipse under the point (the nearest when several
// pass through the pick box) and the side of its box the point is nearest to.
ShapeSide shapeUnder(host::Host& host, const ge::Point3d& p, double pickHalf) {
  ge::Point3d a{p.x - pickHalf, p.y - pickHalf, 0}, b{p.x + pickHalf, p.y + pickHalf, 0};
  host::ResBufList filter = frame::typeFilter({"POLYLINE", "LWPOLYLINE", "CIRCLE", "ELLIPSE"});
  std::vector<host::ObjectId> found;
  if (host.editor.ssget("C", &a, &b, &filter, found) != host::RTNORM) return {};
  ShapeSide best;
  double bestDistance = 0;
  for (host::ObjectId id : found) {
    std::optional<host::Entity> e = host.drawing.read(id);
    ge::Point3d near;
    ge::Extents3d box;
    if (!e || host.curves.getClosestPointTo(e->data, p, near) != host::ErrorStatus::eOk ||
        host.curves.getGeomExtents(e->data, box) != host::ErrorStatus::eOk)
      continue;
    double d = near.distanceTo(p);
    if (best.side == Side::kNone || d < bestDistance) {
      best = {nearestSide(box, p), id};
      bestDistance = d;
    }
  }
  return best;
}

}  // namespace

void linkLine00(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<Ends> ends = askEnds(host);
  if (!ends) return;
  ge::Vector3d t = ends->end.x > ends->start.x ? ge::Vector3d{1, 0, 0} : ge::Vector3d{-1, 0, 0};
  drawConnector(host, *ends, t, t);
}

void linkLine90(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<Ends> ends = askEnds(host);
  if (!ends) return;
  ge::Vector3d t = ends->start.y > ends->end.y ? ge::Vector3d{0, -1, 0} : ge::Vector3d{0, 1, 0};
  drawConnector(host, *ends, t, t);
}

void linkLineAuto(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<Ends> ends = askEnds(host);
  if (!ends) return;
  double size = viewSize(host);
  double margin = size * kMarginOfView;
  ShapeSide from = shapeUnder(host, ends->start, size * kPickBoxOfView);
  ShapeSide to = shapeUnder(host, ends->end, size * kPickBoxOfView);
  ge::Vector3d startTangent = from.side == Side::kNone ? marginTangent(ends->start, ends->end, margin)
                                                       : leavingTangent(from.side);
  ge::Vector3d endTangent = to.side == Side::kNone ? marginTangent(ends->start, ends->end, margin)
                                                   : arrivingTangent(to.side);
  std::optional<host::ObjectId> connector = drawConnector(host, *ends, startTangent, endTangent);
  if (!connector) return;
  if (from.side != Side::kNone) attachConnector(host, from.shape, *connector);
  if (to.side != Side::kNone) attachConnector(host, to.shape, *connector);
}

}  // namespace commands
