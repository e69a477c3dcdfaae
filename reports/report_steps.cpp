#include "reports/report_steps.h"

#include "frame/output.h"
#include "frame/prompts.h"
#include "frame/sysvars.h"

namespace reports {

namespace {

constexpr frame::Text kNoFileName{"\nNo file name asigned.\n", "\n未设定文件名。\n"};
constexpr frame::Text kMarksPrompt{"\nMarks and numbers[Y/N](Y): ", "\n是否绘制标记和编号[Y/N](Y): "};
constexpr frame::Text kHeightPrompt{"\nPlease enter the mark text height(%.2f):", "\n请输入标记文字高度(%.2f):"};
constexpr frame::Text kOutputAs{"\nThe list has been output as <%s>, and will be automatically opened soon.",
                                "\n列表已输出为<%s>, 马上会自动打开。"};

// The viewer program in the plug-in's folder.
constexpr std::string_view kViewerName = "openExcel.exe";
// The view height that stands in when VIEWSIZE cannot be read.
constexpr double kFallbackViewSize = 100.0;
// The default mark height is this fraction of the view height.
constexpr double kViewSizeFraction = 1.0 / 30;
// A height of this or less keeps the default.
constexpr double kSmallestHeight = 0.001;
constexpr std::int16_t kMarkPointMode = 35;

}  // namespace

std::string askReportName(host::Host& host, const frame::Text& filter) {
  std::string_view chosen = filter.chosen();
  if (chosen.empty()) chosen = kVertexFilter.chosen();
  std::string path;
  int rc = host.editor.getFileNameWithFilter(chosen, true, path);
  if (rc != host::RTNORM || path.empty()) {
    frame::print(host, kNoFileName);
    return {};
  }
  return path;
}

std::optional<ReportWriter> startReport(host::Host& host, const std::string& chosenName, const ReportLayout& layout,
                                        std::string_view createFailed) {
  std::string path = htmlNameFor(chosenName);
  std::optional<ReportFile> file = ReportFile::create(path);
  if (!file) {
    frame::showMessageBox(host.editor, frame::formatPrintf(createFailed, {std::string_view(path)}));
    return std::nullopt;
  }
  return ReportWriter(std::move(*file), layout);
}

void openReport(host::Host& host, frame::Settings& settings, const std::string& path) {
  std::string viewer = std::string(settings.readText("Location")) + std::string(kViewerName);
  if (host.platform.fileExists(viewer)) {
    host.platform.startProgram(viewer, {path});
    frame::print(host, kOutputAs, path);
    return;
  }
  host.platform.openWithDesktop(path);
}

double askMarkHeight(host::Host& host) {
  double viewSize = kFallbackViewSize;
  if (frame::getSysVar(host, "VIEWSIZE", viewSize) != frame::kSysVarOk) viewSize = kFallbackViewSize;
  double fallback = viewSize * kViewSizeFraction;
  double answer = 0;
  int rc = host.editor.getReal(frame::format(kHeightPrompt, fallback), answer);
  return rc == host::RTNORM && answer > kSmallestHeight ? answer : fallback;
}

std::optional<double> askMarks(host::Host& host) {
  if (!frame::askYesNo(host, kMarksPrompt, true)) return std::nullopt;
  return askMarkHeight(host);
}

void drawMark(host::Host& host, const ge::Point3d& p, double h, long long k) {
  host::Entity point;
  point.props = host.drawing.defaultProps();
  point.data = host::PointEntity{p};
  host.drawing.append(point, host.drawing.modelSpace());

  host::Entity label;
  label.props = host.drawing.defaultProps();
  host::Text text;
  text.position = {p.x + h / 2, p.y + h / 2, p.z};
  text.alignmentPoint = text.position;
  text.height = h / 2;
  text.text = std::to_string(k + 1);
  label.data = std::move(text);
  host.drawing.append(label, host.drawing.modelSpace());
}

void showMarks(host::Host& host) { frame::setSysVarShort(host, "PDMODE", kMarkPointMode); }

}  // namespace reports
