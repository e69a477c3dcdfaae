// PLDF and PLDJDF: a new polyline beside each selected curve through points
// at equal arc length, by a count of points or by a spacing.
#include <algorithm>

#include "commands/commands.h"
#include "commands/divide.h"
#include "commands/selection_set.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "geom/curve_builders.h"
#include "geom/sampling.h"

namespace commands {

namespace {

constexpr SelectionTexts kSelection{{"Please select Curves >\n", "请选择各种线条>\n"},
                                    {"No Curve selected.\n", "未选中任何线条。\n"},
                                    {"No Curve selected.\n", "未选中任何线条。\n"}};
constexpr frame::Text kCountPrompt{"\nPlease enter the number of divide points, allowable 4--100, default 16:",
                                   "\n请输入等分点数，允许值4--100，默认值16:"};
constexpr frame::Text kSpacingPrompt{"\nPlease enter the equal distance:", "\n请输入等分距离:"};
// The English text has no leading line break; it has always been printed so.
constexpr frame::Text kTooShort{
    "The line length is less than 4 times of the bisection distance, this curve will not be processed.",
    "\n线条长度小于4倍设定的等分距离，本曲线不处理。"};

constexpr int kFewestPoints = 4;
constexpr int kMostPoints = 100;
constexpr int kDefaultPoints = 16;
// Curves shorter than this are not divided.
constexpr double kShortestCurve = 0.0001;
// A spacing below this ends the command.
constexpr double kSmallestSpacing = 0.0001;

// The curve of a selected entity with its length, or nothing when it is not
// a curve, has no end parameter or is shorter than kShortestCurve.
struct MeasuredCurve {
  host::Entity entity;
  double length = 0;
};

std::optional<MeasuredCurve> measure(const host::Host& host, host::ObjectId id) {
  std::optional<host::Entity> e = host.drawing.read(id);
  if (!e || !host::isCurve(e->data)) return std::nullopt;
  double endParam = 0;
  if (host.curves.getEndParam(e->data, endParam) != host::ErrorStatus::eOk) return std::nullopt;
  double length = geom::curveLength(host.curves, e->data);
  if (length < kShortestCurve) return std::nullopt;
  return MeasuredCurve{std::move(*e), length};
}

// The points at the distances, the last one replaced by the curve's end
// point, handed to the polyline builder with the curve's closed flag. On a
// closed curve the last point repeats the first and the polyline is closed
// as well: that double vertex is intended.
bool polylineAtDistances(host::Host& host, const MeasuredCurve& curve, std::vector<double> dists) {
  for (double& d : dists) d = std::min(d, curve.length);
  ge::PointList points;
  if (host.curves.getPointsAtDists(curve.entity.data, dists, points) != host::ErrorStatus::eOk) return false;
  if (host.curves.getEndPoint(curve.entity.data, points.back()) != host::ErrorStatus::eOk) return false;
  bool closed = host.curves.isClosed(curve.entity.data);
  return geom::buildPolyline(host, curve.entity.id, points, closed);
}

bool divideByCount(host::Host& host, host::ObjectId id, int count) {
  if (count < kFewestPoints) count = kDefaultPoints;
  std::optional<MeasuredCurve> curve = measure(host, id);
  if (!curve) return false;
  return polylineAtDistances(host, *curve, distancesForCount(curve->length, count));
}

bool divideBySpacing(host::Host& host, host::ObjectId id, double spacing) {
  std::optional<MeasuredCurve> curve = measure(host, id);
  if (!curve) return false;
  if (spacingTooLong(curve->length, spacing)) {
    frame::print(host, kTooShort);
    return false;
  }
  int count = countForSpacing(curve->length, spacing);
  return polylineAtDistances(host, *curve, distancesForSpacing(spacing, count));
}

// The count prompt, asked again while the answer is outside 4..100; Enter,
// a cancel or an error give 16 and the command goes on.
int askPointCount(host::Host& host) {
  host.editor.initGet(frame::kPositiveBits, "");  // for the first prompt only
  int count = 0;
  while (count < kFewestPoints || count > kMostPoints) {
    int answer = 0;
    if (frame::getInt(host, kCountPrompt, answer) != host::RTNORM) return kDefaultPoints;
    count = answer;
  }
  return count;
}

}  // namespace

void plineDevide(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, frame::curveFilter());
  if (!ids) return;
  int count = askPointCount(host);
  int made = 0;
  for (host::ObjectId id : *ids) made += divideByCount(host, id, count) ? 1 : 0;
  frame::print(host, kProcessed, made);
}

void plineDevideByDist(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, frame::curveFilter());
  if (!ids) return;
  host.editor.initGet(frame::kPositiveBits, "");
  double spacing = -1.0;
  if (frame::getDist(host, kSpacingPrompt, spacing) != host::RTNORM) return;
  if (spacing < kSmallestSpacing) return;
  int made = 0;
  for (host::ObjectId id : *ids) made += divideBySpacing(host, id, spacing) ? 1 : 0;
  frame::print(host, kProcessed, made);
}

}  // namespace commands
