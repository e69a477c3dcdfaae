// PLBH: a point and a number at every vertex of each selected curve,
// counting from 1 on every curve.
#include <string>

#include "commands/commands.h"
#include "commands/divide.h"
#include "commands/selection_set.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "frame/sysvars.h"
#include "geom/append.h"
#include "geom/sampling.h"

namespace commands {

namespace {

constexpr SelectionTexts kSelection{{"Please select polyline >\n", "请选择多段线>\n"},
                                    {"No polyline selected.\n", "未选中多段线。\n"},
                                    {"No polyline selected.\n", "未选中多段线。\n"}};
constexpr frame::Text kHeightPrompt{"\nPlease enter the mark text height(%.2f):", "\n请输入标记文字高度(%.2f):"};
constexpr frame::Text kLowerLeftPrompt{"Lower Left default?[Y/N](Y):", "是否把默认起点设在左下角[Y/N](Y):"};

// The view height that stands in when VIEWSIZE cannot be read.
constexpr double kFallbackViewSize = 100.0;
// The default mark height is this fraction of the view height.
constexpr double kViewSizeFraction = 1.0 / 30;
// A height of this or less gives the default.
constexpr double kSmallestHeight = 0.001;
// Marks show as a cross in a circle.
constexpr std::int16_t kMarkPointMode = 35;

host::ResBufList numberingFilter() {
  return frame::typeFilter({"POLYLINE", "LWPOLYLINE", "SPLINE", "LINE", "ARC", "ELLIPSE"});
}

// The vertices of one curve by its kind: polyline vertices, spline fit points,
// or the two ends of a line, arc or ellipse.
ge::PointList verticesToNumber(const host::Host& host, const host::EntityData& data) {
  ge::PointList points;
  if (geom::getVertexList(data, points)) return points;
  if (auto* spline = std::get_if<host::Spline>(&data)) return spline->fitPoints;
  if (std::holds_alternative<host::Line>(data) || std::holds_alternative<host::Arc>(data) ||
      std::holds_alternative<host::Ellipse>(data)) {
    ge::Point3d start, end;
    if (host.curves.getStartPoint(data, start) == host::ErrorStatus::eOk &&
        host.curves.getEndPoint(data, end) == host::ErrorStatus::eOk)
      return {start, end};
  }
  return {};
}

// A point at p and the number beside it, up and right by half the height,
// with text of half the height asked for.
void markVertex(host::Host& host, const ge::Point3d& p, int number, double height) {
  host::Entity point;
  point.props = host.drawing.defaultProps();
  point.data = host::PointEntity{p};
  geom::appendToCurrentSpace(host.drawing, point);

  host::Entity label;
  label.props = host.drawing.defaultProps();
  host::Text text;
  text.position = {p.x + height / 2, p.y + height / 2, p.z};
  text.alignmentPoint = text.position;
  text.height = height / 2;
  text.text = std::to_string(number);
  label.data = std::move(text);
  geom::appendToCurrentSpace(host.drawing, label);
}

double askMarkHeight(host::Host& host) {
  double viewSize = kFallbackViewSize;
  if (frame::getSysVar(host, "VIEWSIZE", viewSize) != frame::kSysVarOk) viewSize = kFallbackViewSize;
  double fallback = viewSize * kViewSizeFraction;
  double answer = 0;
  std::string prompt = frame::format(kHeightPrompt, fallback);
  int rc = host.editor.getReal(prompt, answer);
  return rc == host::RTNORM && answer > kSmallestHeight ? answer : fallback;
}

}  // namespace

void plineVertexBH(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, numberingFilter());
  if (!ids) return;
  double height = askMarkHeight(host);
  bool lowerLeft = frame::askYesNo(host, kLowerLeftPrompt, true);

  for (host::ObjectId id : *ids) {
    std::optional<host::Entity> e = host.drawing.read(id);
    if (!e) continue;
    ge::PointList vertices = verticesToNumber(host, e->data);
    if (lowerLeft && startsAtUpperRight(vertices)) std::reverse(vertices.begin(), vertices.end());
    for (std::size_t i = 0; i < vertices.size(); ++i) markVertex(host, vertices[i], static_cast<int>(i + 1), height);
  }
  frame::setSysVarShort(host, "PDMODE", kMarkPointMode);
}

}  // namespace commands
