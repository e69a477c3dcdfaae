// PLBH: a point and a number at every vertex of each selected curve,
// counting from 1 on every curve.
#include <algorithm>
#include <string>

#include "commands/commands.h"
#include "commands/divide.h"
#include "commands/selection_set.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "geom/sampling.h"
#include "reports/report_steps.h"

namespace commands {

namespace {

constexpr SelectionTexts kSelection{{"Please select polyline >\n", "请选择多段线>\n"},
                                    {"No polyline selected.\n", "未选中多段线。\n"},
                                    {"No polyline selected.\n", "未选中多段线。\n"}};
constexpr frame::Text kLowerLeftPrompt{"Lower Left default?[Y/N](Y):", "是否把默认起点设在左下角[Y/N](Y):"};

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

}  // namespace

void plineVertexBH(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, kSelection, numberingFilter());
  if (!ids) return;
  double height = reports::askMarkHeight(host);
  bool lowerLeft = frame::askYesNo(host, kLowerLeftPrompt, true);

  for (host::ObjectId id : *ids) {
    std::optional<host::Entity> e = host.drawing.read(id);
    if (!e) continue;
    ge::PointList vertices = verticesToNumber(host, e->data);
    if (lowerLeft && startsAtUpperRight(vertices)) std::reverse(vertices.begin(), vertices.end());
    for (std::size_t i = 0; i < vertices.size(); ++i)
      reports::drawMark(host, vertices[i], height, static_cast<long long>(i));
  }
  reports::showMarks(host);
}

}  // namespace commands
