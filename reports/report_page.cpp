#include "reports/report_page.h"

#include <cstdio>

namespace reports {

namespace {

void appendCell(std::string& row, int widthPercent, std::string_view percent, std::string_view background,
                std::string_view content) {
  row += "    <td width=";
  row += std::to_string(widthPercent);
  row += percent;
  row += " valign=top bgcolor=";
  row += background;
  row += "><div align=center>";
  row += content;
  row += "</div></td>\n";
}

}  // namespace

std::string pageHead(std::string_view fullPath, std::string_view caption) {
  std::string head =
      "<html>\n<head>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=gb2312\">\n<title>";
  head += fullPath;
  head +=
      "</title>\n<style type=\"text/css\">\n<!--\n.STYLE1 {font-size: 18px}\n-->\n</style>\n</head>\n<body>\n"
      "<p align=center class=STYLE1>";
  head += caption;
  head += "</p>\n";
  return head;
}

std::string tableStart() {
  return "<table border=1 cellspacing=0 bordercolor=#000000 width = 100% style=border-collapse:collapse>\n";
}

std::string pageTail() { return "</table>\n<br>\n</body>\n</html>\n"; }

void appendFormattedCell(std::string& row, int widthPercent, std::string_view background, std::string_view content) {
  appendCell(row, widthPercent, "%", background, content);
}

void appendPlainCell(std::string& row, int widthPercent, std::string_view background, std::string_view content) {
  appendCell(row, widthPercent, "%%", background, content);
}

std::string formattedCell(int widthPercent, std::string_view background, std::string_view content) {
  std::string cell;
  appendFormattedCell(cell, widthPercent, background, content);
  return cell;
}

std::string plainCell(int widthPercent, std::string_view background, std::string_view content) {
  std::string cell;
  appendPlainCell(cell, widthPercent, background, content);
  return cell;
}

std::string indexText(long long index) { return std::to_string(index); }

std::string measureText(double value) {
  char buf[400];  // "%.3f" of the largest double has 309 digits before the point
  std::snprintf(buf, sizeof buf, "%.3f", value);
  return buf;
}

std::string htmlNameFor(std::string_view chosenName) {
  constexpr std::string_view kFrom = ".xls", kTo = ".html";
  std::string out;
  std::size_t at = 0;
  while (true) {
    std::size_t hit = chosenName.find(kFrom, at);
    if (hit == std::string_view::npos) break;
    out += chosenName.substr(at, hit - at);
    out += kTo;
    at = hit + kFrom.size();
  }
  out += chosenName.substr(at);
  return out;
}

}  // namespace reports
