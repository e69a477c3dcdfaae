#include "reports/intersection_report.h"

#include "frame/output.h"
#include "reports/report_steps.h"

namespace reports {

void writeIntersectionReport(host::Host& host, frame::Settings& settings, ge::PointList points) {
  ge::PointList owned = std::move(points);
  std::string name = askReportName(host, kIntersectionFilter);
  if (name.empty()) return;
  constexpr std::string_view kCreateFailed = "Create file <%s> fail.";
  std::optional<ReportWriter> report = startReport(host, name, intersectionLayout(), kCreateFailed);
  if (!report) return;
  // The value rows are 10/30/20/20 under a 10/30/30/30 caption row; the page has always been so.
  for (std::size_t i = 0; i < owned.size(); ++i)
    report->row({indexCell(10, static_cast<long long>(i + 1)), measureCell(30, owned[i].x),
                 measureCell(20, owned[i].y), measureCell(20, owned[i].z)});
  std::string path = report->path();
  if (!report->finish()) {
    frame::showMessageBox(host.editor, frame::formatPrintf(kCreateFailed, {std::string_view(path)}));
    return;
  }
  openReport(host, settings, path);
}

}  // namespace reports
