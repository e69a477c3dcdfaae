// PLLIST, CLIST, ELLLIST and ARCLIST: coordinates and measures of the
// selected entities written as a report page, with optional marks and
// numbers in the drawing.
#include <algorithm>
#include <functional>

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

using reports::blankCell;
using reports::indexCell;
using reports::measureCell;

constexpr frame::Text kLowerLeftPrompt{"Lower Left default?[Y/N](Y):", "是否把默认起点设在左下角[Y/N](Y):"};

// The label of the progress meter while the rows are written.
constexpr frame::Text kListing{"Writing the list", "正在输出列表"};

// What one list command asks of the shared sequence.
struct ListCommand {
  SelectionTexts selection;
  host::ResBufList filter;
  frame::Text fileFilter;
  reports::ReportLayout layout;
  std::string_view createFailed;  // the message box text, English only
};

// Writes an entity's rows (and marks) when it is of a listed kind; false
// when it is not, so it takes no number.
using ItemWriter = std::function<bool(const host::Entity& e, long long number, reports::ReportWriter& report,
                                      const std::optional<double>& markHeight)>;

// The sequence every list command follows: select, name the file, start the
// page, ask for marks (and whatever else the command asks), write a row set
// per listed entity, finish the page and open it.
void runList(frame::CommandContext& context, const ListCommand& command,
             const std::function<ItemWriter(host::Host&)>& prepare) {
  host::Host& host = context.host;
  std::optional<std::vector<host::ObjectId>> ids = selectForCommand(host, command.selection, command.filter);
  if (!ids) return;
  std::string name = reports::askReportName(host, command.fileFilter);
  if (name.empty()) return;
  std::optional<reports::ReportWriter> report = reports::startReport(host, name, command.layout, command.createFailed);
  if (!report) return;
  std::optional<double> markHeight = reports::askMarks(host);
  ItemWriter writeItem = prepare(host);

  long long listed = 0;
  host.editor.setProgressMeter(kListing.chosen(), 0, static_cast<int>(ids->size()));
  for (std::size_t i = 0; i < ids->size(); ++i) {
    std::optional<host::Entity> e = host.drawing.read((*ids)[i]);
    if (e && writeItem(*e, listed + 1, *report, markHeight)) ++listed;
    host.editor.setProgressMeterPos(static_cast<int>(i + 1));
  }
  host.editor.restoreStatusBar();
  if (markHeight) reports::showMarks(host);
  std::string path = report->path();
  if (!report->finish()) {
    frame::showMessageBox(host.editor, frame::formatPrintf(command.createFailed, {std::string_view(path)}));
    return;
  }
  reports::openReport(host, context.settings, path);
}

double areaOf(const host::Host& host, const host::EntityData& data) {
  double area = 0;
  return host.curves.getArea(data, area) == host::ErrorStatus::eOk ? area : 0.0;
}

double degrees(double radians) { return radians * 180 / 3.141592653589793; }

// The points PLLIST lists for a curve, or nothing when it lists none of its
// kind. A full ellipse lists an empty set.
std::optional<ge::PointList> listedPoints(const host::Host& host, const host::EntityData& data) {
  ge::PointList points;
  if (geom::getVertexList(data, points)) return points;
  if (auto* spline = std::get_if<host::Spline>(&data)) return spline->fitPoints;
  if (auto* ellipse = std::get_if<host::Ellipse>(&data); ellipse && host.curves.isClosed(data)) return points;
  if (std::holds_alternative<host::Line>(data) || std::holds_alternative<host::Arc>(data) ||
      std::holds_alternative<host::Ellipse>(data)) {
    ge::Point3d start, end;
    // A failed query ends the curve's rows where they stand.
    if (host.curves.getStartPoint(data, start) != host::ErrorStatus::eOk) return points;
    points.push_back(start);
    if (host.curves.getEndPoint(data, end) == host::ErrorStatus::eOk) points.push_back(end);
    return points;
  }
  return std::nullopt;
}

ItemWriter polylineRows(host::Host& host, bool lowerLeft) {
  return [&host, lowerLeft](const host::Entity& e, long long number, reports::ReportWriter& report,
                            const std::optional<double>& markHeight) {
    std::optional<ge::PointList> points = listedPoints(host, e.data);
    if (!points) return false;
    bool fullEllipse = std::holds_alternative<host::Ellipse>(e.data) && host.curves.isClosed(e.data);
    if (fullEllipse) return true;  // it takes a number and writes nothing
    if (lowerLeft && startsAtUpperRight(*points)) std::reverse(points->begin(), points->end());
    for (std::size_t i = 0; i < points->size(); ++i) {
      const ge::Point3d& p = (*points)[i];
      report.row({i == 0 ? indexCell(5, number) : blankCell(5), indexCell(5, static_cast<long long>(i + 1)),
                  measureCell(20, p.x), measureCell(20, p.y), measureCell(20, p.z), blankCell(15), blankCell(15)});
      if (markHeight) reports::drawMark(host, p, *markHeight, static_cast<long long>(i));
    }
    report.row({blankCell(5), blankCell(5), blankCell(20), blankCell(20), blankCell(20),
                measureCell(15, geom::curveLength(host.curves, e.data)), measureCell(15, areaOf(host, e.data))},
               reports::kGreen);
    return true;
  };
}

}  // namespace

void listPolylineVertices(frame::CommandContext& context) {
  ListCommand command{{{"Please select polyline >\n", "请选择直线、圆弧、多段线、样条曲线等>\n"},
                       {"No polyline selected.\n", "未选中。\n"},
                       {"No polyline selected.\n", "未选中。\n"}},
                      frame::typeFilter({"LWPOLYLINE", "POLYLINE", "SPLINE", "LINE", "ARC", "ELLIPSE"}),
                      reports::kVertexFilter,
                      reports::polylineLayout(),
                      "Create file <%s> fail."};
  runList(context, command, [](host::Host& host) {
    return polylineRows(host, frame::askYesNo(host, kLowerLeftPrompt, true));
  });
}

void listCircles(frame::CommandContext& context) {
  ListCommand command{{{"Please select circle >\n", "请选择圆>\n"},
                       {"No circle selected.\n", "未选中圆。\n"},
                       {"No circle selected.\n", "未选中圆。\n"}},
                      singleTypeFilter("CIRCLE"),
                      reports::kCentreFilter,
                      reports::circleLayout(),
                      "Create file <%s> Error！"};
  runList(context, command, [](host::Host& host) -> ItemWriter {
    return [&host](const host::Entity& e, long long number, reports::ReportWriter& report,
                   const std::optional<double>& markHeight) {
      auto* c = std::get_if<host::Circle>(&e.data);
      if (!c) return false;
      report.row({indexCell(5, number), measureCell(15, c->center.x), measureCell(15, c->center.y),
                  measureCell(15, c->center.z), measureCell(20, c->radius),
                  measureCell(15, geom::curveLength(host.curves, e.data)), measureCell(15, areaOf(host, e.data))});
      if (markHeight) reports::drawMark(host, c->center, *markHeight, number - 1);
      return true;
    };
  });
}

void outputEllipseToExcel(frame::CommandContext& context) {
  ListCommand command{{{"Please select Ellipse >\n", "请选择椭圆>\n"},
                       {"No Ellipse selected.\n", "未选中椭圆。\n"},
                       {"No Ellipse selected.\n", "未选中椭圆。\n"}},
                      singleTypeFilter("ELLIPSE"),
                      reports::kCentreFilter,
                      reports::ellipseLayout(),
                      "Create file <%s> fail!"};
  runList(context, command, [](host::Host& host) -> ItemWriter {
    return [&host](const host::Entity& e, long long number, reports::ReportWriter& report,
                   const std::optional<double>& markHeight) {
      auto* el = std::get_if<host::Ellipse>(&e.data);
      if (!el) return false;
      double major = el->majorAxis.length();
      report.row({indexCell(4, number), measureCell(16, el->center.x), measureCell(16, el->center.y),
                  measureCell(16, el->center.z), measureCell(12, 2 * major), measureCell(12, 2 * major * el->ratio),
                  measureCell(12, geom::curveLength(host.curves, e.data)), measureCell(12, areaOf(host, e.data))});
      if (markHeight) reports::drawMark(host, el->center, *markHeight, number - 1);
      return true;
    };
  });
}

void outputArcToExcel(frame::CommandContext& context) {
  ListCommand command{{{"Please select ARC >\n", "请选择圆弧>\n"},
                       {"No ARC selected.\n", "未选中圆弧。\n"},
                       {"No ARC selected.\n", "未选中圆弧。\n"}},
                      singleTypeFilter("ARC"),
                      reports::kCentreFilter,
                      reports::arcLayout(),
                      "Create file <%s> fail！"};
  runList(context, command, [](host::Host& host) -> ItemWriter {
    return [&host](const host::Entity& e, long long number, reports::ReportWriter& report,
                   const std::optional<double>& markHeight) {
      auto* a = std::get_if<host::Arc>(&e.data);
      if (!a) return false;
      report.row({indexCell(4, number), measureCell(16, a->center.x), measureCell(16, a->center.y),
                  measureCell(16, a->center.z), measureCell(12, a->radius), measureCell(12, degrees(a->startAngle)),
                  measureCell(12, degrees(a->endAngle)), measureCell(12, geom::curveLength(host.curves, e.data))});
      if (markHeight) reports::drawMark(host, a->center, *markHeight, number - 1);
      return true;
    };
  });
}

}  // namespace commands
