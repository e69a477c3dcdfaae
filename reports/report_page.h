#pragma once
// The report page as text: an HTML page holding one table, built from fixed
// templates. Line ends here are "\n"; the report file writes them as CR LF.
#include <string>
#include <string_view>

namespace reports {

// Cell backgrounds: white for captions and values, green for summary rows.
inline constexpr std::string_view kWhite = "#FFFFFF";
inline constexpr std::string_view kGreen = "#99FF99";

// The head up to the caption paragraph; the title is the file's full path.
std::string pageHead(std::string_view fullPath, std::string_view caption);
// The table start, written as it stands (one percent sign, blanks around "=").
std::string tableStart();
inline constexpr std::string_view kRowStart = "  <tr>\n";
inline constexpr std::string_view kRowEnd = "  </tr>\n";
std::string pageTail();

// A cell whose content went through printf-style formatting (a number): the
// doubled percent sign of the template comes out single ("width=5%").
std::string formattedCell(int widthPercent, std::string_view background, std::string_view content);
// A cell written without formatting (a caption word or "&nbsp;"): the
// template's doubled percent sign stays ("width=5%%").
std::string plainCell(int widthPercent, std::string_view background, std::string_view content);

// The same, appended to a row being built.
void appendFormattedCell(std::string& row, int widthPercent, std::string_view background, std::string_view content);
void appendPlainCell(std::string& row, int widthPercent, std::string_view background, std::string_view content);

// Number texts of the cells: indexes "%d", every measure "%.3f".
std::string indexText(long long index);
std::string measureText(double value);

// The written file's name: every ".xls" of the chosen name becomes ".html".
std::string htmlNameFor(std::string_view chosenName);

}  // namespace reports
