#pragma once
// The steps every report shares: the file name, creating the page, opening
// it afterwards, and the marks drawn at listed points.
#include <optional>
#include <string>

#include "frame/settings.h"
#include "frame/text.h"
#include "ge/point.h"
#include "host/host.h"
#include "reports/report_writer.h"

namespace reports {

// Dialog filters of the save-file question.
inline constexpr frame::Text kVertexFilter{"EXCEL File(*.xls)|*.xls|", "曲线顶点坐标文件 (*.xls)|*.xls|"};
inline constexpr frame::Text kCentreFilter{"EXCEL File(*.xls)|*.xls|", "圆心坐标和半径文件 (*.xls)|*.xls|"};
inline constexpr frame::Text kIntersectionFilter{"EXCEL File(*.xls)|*.xls|", "交点坐标文件 (*.xls)|*.xls|"};

// The save-file question with the filter of the chosen language; an empty
// filter literal falls back to kVertexFilter's. On a cancel or an empty name
// it prints "\nNo file name asigned.\n" and gives the empty path.
std::string askReportName(host::Host& host, const frame::Text& filter);

// Creates the page under the chosen name with every ".xls" made ".html" and
// writes its head and caption row. When the file cannot be made it shows the
// English createFailed text (a "%s" for the path) in a message box and gives nothing.
std::optional<ReportWriter> startReport(host::Host& host, const std::string& chosenName, const ReportLayout& layout,
                                        std::string_view createFailed);

// Opens the written page: the viewer "openExcel.exe" of the stored Location
// folder when it exists (started without waiting, and a line naming the
// page), else the desktop's opener, silently.
void openReport(host::Host& host, frame::Settings& settings, const std::string& path);

// The mark height question: VIEWSIZE / 30 by default (100 / 30 when VIEWSIZE
// cannot be read); an answer counts only when it is above 0.001.
double askMarkHeight(host::Host& host);
// Asks "Marks and numbers" (yes by default) and, on yes, the mark height.
std::optional<double> askMarks(host::Host& host);

// A point entity at p and the number k + 1 beside it: a text at p moved by
// (h/2, h/2) of height h/2, both appended to model space.
void drawMark(host::Host& host, const ge::Point3d& p, double h, long long k);

// Marks show as a cross in a circle (PDMODE 35).
void showMarks(host::Host& host);

}  // namespace reports
