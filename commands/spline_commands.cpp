// s2p, p2s and QXTY: splines to polylines, curves to fitted splines, and
// flat copies of curves on the world XY plane.
#include <algorithm>

#include "commands/commands.h"
#include "commands/selection_set.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "geom/append.h"
#include "geom/sampling.h"

namespace commands {

namespace {

constexpr SelectionTexts kSplineSelection{{"Please select SPLINE >\n", "请选择SPLINE线>\n"},
                                          {"No SPLINE selected.\n", "未选中SPLINE线。\n"},
                                          {"No SPLINE selected.\n", "未选中SPLINE线。\n"}};
constexpr SelectionTexts kCurveSelection{{"Please select Curves >\n", "请选择各种线条>\n"},
                                         {"No Curves selected.\n", "未选中线条。\n"},
                                         {"No Curves selected.\n", "未选中线条。\n"}};
constexpr SelectionTexts kProjectSelection{{"Please select curves >", "请选择曲线 >"},
                                           {"No curves selected.\n", "未选中曲线。\n"},
                                           {"No curves selected.\n", "未选中曲线。\n"}};
constexpr frame::Text kPrecisionPrompt{"\nPlease input the precision, allowable 1--99, default 10:",
                                       "\n请输入精度，允许值1--99，默认值10:"};
constexpr frame::Text kDivideQuestion{
    "\n Y = Divide the polylines equally, N = Based on polylinethe vertex？[Y/N]（Y）:",
    "\n Y = 对多段线按等分方式, N =多段线按原顶点？[Y/N]（Y）:"};
constexpr frame::Text kDividePointsPrompt{"\nDivide points 12~256[36]:", "\n等分点数12~256[36]:"};
constexpr frame::Text kProjecting{"\nVertically project all kinds of curves to the XY plane of the world coordinate system...",
                                  "\n垂直投影各类曲线到世界坐标系XY平面..."};
constexpr frame::Text kProjected{"\n< %d > new curves added.", "\n生成了< %d >根投影曲线。 "};

constexpr int kDefaultPrecision = 10;
constexpr int kDefaultDividePoints = 36;
constexpr int kFewestDividePoints = 12;
constexpr int kMostDividePoints = 256;
// Curves shorter than this give no samples.
constexpr double kShortestCurve = 0.0001;

// The spline of a selected spline or helix (a helix is a spline to the host).
const host::Spline* splineOf(const host::EntityData& data) {
  if (auto* s = std::get_if<host::Spline>(&data)) return s;
  if (auto* h = std::get_if<host::Helix>(&data)) return &h->curve;
  return nullptr;
}

// Replaces a spline by the host's polyline approximation in the spline's
// block; true when the polyline was appended. The spline goes once the
// approximation is made, whether or not the append succeeds.
bool splineToPolyline(host::Host& host, host::ObjectId id, int precision) {
  std::optional<host::Entity> e = host.drawing.read(id);
  const host::Spline* spline = e ? splineOf(e->data) : nullptr;
  if (!spline) return false;
  host::Entity result;
  result.props = e->props;
  if (host.curves.splineToPolyline(*spline, precision, result.data) != host::ErrorStatus::eOk) return false;
  bool appended = geom::appendBesideSource(host.drawing, id, result) == host::ErrorStatus::eOk;
  host.drawing.erase(id);
  return appended;
}

// Points at equal arc length for p2s: `count` samples from the start and then
// the end point once more, so the last two normally coincide.
ge::PointList equalLengthFitPoints(const host::CurveServices& curves, const host::EntityData& c, int count) {
  ge::PointList points;
  double endParam = 0;
  if (!host::isCurve(c) || curves.getEndParam(c, endParam) != host::ErrorStatus::eOk) return points;
  double length = geom::curveLength(curves, c);
  if (length < kShortestCurve) return points;
  double step = length / (count - 1);
  for (int i = 0; i < count; ++i) {
    ge::Point3d p;
    if (curves.getPointAtDist(c, std::min(i * step, length), p) == host::ErrorStatus::eOk) points.push_back(p);
  }
  ge::Point3d end;
  if (curves.getEndPoint(c, end) == host::ErrorStatus::eOk) points.push_back(end);
  return points;
}

// The curve's own vertices: polyline vertices, or the two ends of a line or arc.
ge::PointList ownVertices(const host::CurveServices& curves, const host::EntityData& c) {
  ge::PointList points;
  if (geom::getVertexList(c, points)) return points;
  if (std::holds_alternative<host::Line>(c) || std::holds_alternative<host::Arc>(c)) {
    ge::Point3d start, end;
    if (curves.getStartPoint(c, start) == host::ErrorStatus::eOk &&
        curves.getEndPoint(c, end) == host::ErrorStatus::eOk)
      points = {start, end};
  }
  return points;
}

// The spline that replaces a curve: the host's own spline where it has one,
// otherwise a fit through sampled points or through the vertices.
std::optional<host::Spline> splineFor(const host::CurveServices& curves, const host::EntityData& c, bool divide,
                                      int count) {
  host::Spline spline;
  if (curves.getSpline(c, spline) == host::ErrorStatus::eOk) return spline;
  ge::PointList fit = divide ? equalLengthFitPoints(curves, c, count) : ownVertices(curves, c);
  if (fit.empty()) fit = equalLengthFitPoints(curves, c, count);
  if (fit.empty()) return std::nullopt;
  if (curves.isClosed(c)) fit.push_back(fit.front());
  if (curves.fitSpline(fit, nullptr, nullptr, spline) != host::ErrorStatus::eOk) return std::nullopt;
  return spline;
}

// Replaces one curve by its spline in the curve's block; true when appended.
// The source goes whatever the append returned.
bool curveToSpline(host::Host& host, host::ObjectId id, bool divide, int count) {
  std::optional<host::Entity> e = host.drawing.read(id);
  if (!e || !host::isCurve(e->data)) return false;
  std::optional<host::Spline> spline = splineFor(host.curves, e->data, divide, count);
  if (!spline) return false;
  host::Entity result;
  result.props = e->props;
  result.data = std::move(*spline);
  bool appended = geom::appendBesideSource(host.drawing, id, result) == host::ErrorStatus::eOk;
  host.drawing.erase(id);
  return appended;
}

// A flat copy of the curve on the world XY plane, looking along world Z, in
// the working drawing; the source stays as it is.
bool projectToXY(host::Host& host, host::ObjectId id) {
  std::optional<host::Entity> e = host.drawing.read(id);
  if (!e || !host::isCurve(e->data)) return false;
  host::Entity result;
  result.props = e->props;
  if (host.curves.getProjectedCurve(e->data, host::Plane{}, ge::kZAxis, result.data) != host::ErrorStatus::eOk)
    return false;
  return geom::appendToCurrentSpace(host.drawing, result) == host::ErrorStatus::eOk;
}

}  // namespace

void spline2pline(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids =
      selectForCommand(host, kSplineSelection, frame::typeFilter({"ELLIPSE", "CIRCLE", "HELIX", "ARC", "SPLINE"}));
  if (!ids) return;
  host.editor.initGet(frame::kPositiveBits, "");
  int answer = kDefaultPrecision;
  // No upper bound: a precision above 99 goes to the host as it is.
  int precision = frame::getInt(host, kPrecisionPrompt, answer) == host::RTNORM ? answer : kDefaultPrecision;
  int count = 0;
  for (host::ObjectId id : *ids) count += splineToPolyline(host, id, precision) ? 1 : 0;
  frame::print(host, kProcessed, count);
}

void pline2spline(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(
      host, kCurveSelection,
      frame::typeFilter({"ELLIPSE", "CIRCLE", "HELIX", "ARC", "LINE", "POLYLINE", "LWPOLYLINE"}));
  if (!ids) return;
  bool divide = frame::askYesNo(host, kDivideQuestion, true);
  int points = kDefaultDividePoints;
  if (divide) {
    host.editor.initGet(frame::kPositiveBits, "");
    frame::getInt(host, kDividePointsPrompt, points);  // the status is not looked at: Enter keeps 36
    points = frame::clampToRange(points, kFewestDividePoints, kMostDividePoints);
  }
  int count = 0;
  for (host::ObjectId id : *ids) count += curveToSpline(host, id, divide, points) ? 1 : 0;
  frame::print(host, kProcessed, count);
}

void projectCurvesToXY(frame::CommandContext& context) {
  host::Host& host = context.host;
  frame::print(host, kProjecting);
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kProjectSelection, frame::curveFilter());
  if (!ids) return;
  int count = 0;
  for (host::ObjectId id : *ids) count += projectToXY(host, id) ? 1 : 0;
  if (count > 0) frame::print(host, kProjected, count);
}

}  // namespace commands
