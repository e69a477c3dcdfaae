// PLJD and PLJD1: the intersection points of curves, marked in the drawing
// by points, numbered points, numbered points with a coordinate report, or
// references of a named block.
#include "commands/commands.h"
#include "commands/intersection_points.h"
#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/selection.h"
#include "reports/intersection_report.h"
#include "reports/report_steps.h"

namespace commands {

namespace {

constexpr frame::Text kSelectCurves{"Please select Curves >\n", "\n请选择多根曲线>"};
constexpr frame::Text kModePrompt{
    "\n1.Add marked points; 2.Mark point + number; 3.Mark point + number + output coordinate list; 4.Insert the "
    "block. (2):",
    "\n在交点处：1、添加标记点; 2、标记点+编号; 3、标记点+编号+输出坐标列表; 4、插入图块。 (2):"};
constexpr frame::Text kNoIntersection{"\nNo intersection found.", "\n没有找到交点。"};
constexpr frame::Text kPickCurve{"\nPlease select a curve: ", "\n请选择一根曲线: "};
// Printed in English whatever the language.
constexpr std::string_view kNothingPicked = "\nNothing selected";
constexpr frame::Text kNotACurve{"\nError: not a curve selected.", "\n错误：选中的不是曲线。"};
constexpr frame::Text kNoneCrossed{"No Curve intersected.\n", "没有相交的曲线。\n"};
constexpr frame::Text kBlockNamePrompt{"\nPlease enter the block name：", "\n请输入图块名称："};
constexpr frame::Text kBlockNameError{"\nBlock name error！", "\n图块名错误！"};

// The label of the progress meter while the pairs are intersected.
constexpr frame::Text kCollecting{"Intersecting curves", "正在求交点"};

enum class MarkMode { kPoints = 1, kNumbered = 2, kNumberedWithReport = 3, kBlocks = 4 };

MarkMode askMarkMode(host::Host& host) {
  host.editor.initGet(frame::kPositiveBits, "");
  int mode = 2;
  if (frame::getInt(host, kModePrompt, mode) != host::RTNORM || mode < 1 || mode > 4) mode = 2;
  return static_cast<MarkMode>(mode);
}

void markPoints(host::Host& host, const ge::PointList& points, bool numbered) {
  double h = numbered ? reports::askMarkHeight(host) : 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (numbered) {
      reports::drawMark(host, points[i], h, static_cast<long long>(i));
      continue;
    }
    host::Entity point;
    point.props = host.drawing.defaultProps();
    point.data = host::PointEntity{points[i]};
    host.drawing.append(point, host.drawing.modelSpace());
  }
  reports::showMarks(host);
}

void insertBlocks(host::Host& host, const ge::PointList& points) {
  std::string name;
  // Whatever the answer's status, the name typed (or none) is looked up.
  host.editor.getString(false, kBlockNamePrompt.chosen(), name);
  if (!host.drawing.findBlock(name)) {
    frame::print(host, kBlockNameError);
    return;
  }
  for (const ge::Point3d& p : points) {
    host::Entity ref;
    ref.props = host.drawing.defaultProps();
    host::BlockReference insert;
    insert.blockName = name;
    insert.position = p;
    ref.data = std::move(insert);
    host.drawing.append(ref, host.drawing.modelSpace());
  }
}

void markByMode(frame::CommandContext& context, MarkMode mode, const ge::PointList& points) {
  host::Host& host = context.host;
  switch (mode) {
    case MarkMode::kPoints: return markPoints(host, points, false);
    case MarkMode::kNumbered: return markPoints(host, points, true);
    case MarkMode::kNumberedWithReport:
      reports::writeIntersectionReport(host, context.settings, points);
      return markPoints(host, points, true);
    case MarkMode::kBlocks: return insertBlocks(host, points);
  }
}

// The curve records of the ids; ids that no longer read are left out.
std::vector<host::EntityData> curveRecords(const host::Host& host, const std::vector<host::ObjectId>& ids,
                                           host::ObjectId except = host::kNullId) {
  std::vector<host::EntityData> out;
  out.reserve(ids.size());
  for (host::ObjectId id : ids) {
    if (id == except) continue;
    std::optional<host::Entity> e = host.drawing.read(id);
    if (e && host::isCurve(e->data)) out.push_back(std::move(e->data));
  }
  return out;
}

}  // namespace

void plBatchIntersect(frame::CommandContext& context) {
  host::Host& host = context.host;
  std::vector<host::ObjectId> ids;
  // The selection helper prints its own message for an empty set; the command adds none.
  if (!frame::selectCurves(host, kSelectCurves, ids)) return;
  MarkMode mode = askMarkMode(host);
  std::vector<host::EntityData> curves = curveRecords(host, ids);
  host.editor.setProgressMeter(kCollecting.chosen(), 0, static_cast<int>(curves.size()));
  ge::PointList kept = collectAndMergeAmongCurves(host.curves, curves, [&host](std::size_t done, std::size_t) {
    host.editor.setProgressMeterPos(static_cast<int>(done));
    return true;
  });
  host.editor.restoreStatusBar();
  if (kept.empty()) {
    frame::print(host, kNoIntersection);
    return;
  }
  markByMode(context, mode, kept);
}

void plBatchIntersect1(frame::CommandContext& context) {
  host::Host& host = context.host;
  host::ObjectId pickedId;
  ge::Point3d at;
  if (frame::entSel(host, kPickCurve, pickedId, at) != host::RTNORM) {
    host.editor.print(kNothingPicked);
    return;
  }
  std::optional<host::Entity> picked = host.drawing.read(pickedId);
  if (!picked || !host::isCurve(picked->data)) {
    frame::print(host, kNotACurve);
    return;
  }
  ge::Extents3d box;
  std::vector<host::ObjectId> crossing;
  host::ResBufList filter = frame::curveFilter();
  if (host.curves.getGeomExtents(picked->data, box) != host::ErrorStatus::eOk ||
      host.editor.ssget("_C", &box.min, &box.max, &filter, crossing) != host::RTNORM || crossing.empty()) {
    frame::print(host, kNoneCrossed);
    return;
  }
  std::vector<host::EntityData> others = curveRecords(host, crossing, pickedId);
  MarkMode mode = askMarkMode(host);
  ge::PointList kept = mergeIntersections(collectWithCurve(host.curves, picked->data, others));
  if (kept.empty()) {
    frame::print(host, kNoIntersection);
    return;
  }
  orderAlongCurve(host.curves, picked->data, kept);
  markByMode(context, mode, kept);
}

}  // namespace commands
