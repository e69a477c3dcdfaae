#include "reports/report_writer.h"

#include <filesystem>

namespace reports {

Cell indexCell(int widthPercent, long long index) { return {widthPercent, indexText(index), true}; }
Cell measureCell(int widthPercent, double value) { return {widthPercent, measureText(value), true}; }
Cell blankCell(int widthPercent) { return {widthPercent, "&nbsp;", false}; }

ReportWriter::ReportWriter(ReportFile file, const ReportLayout& layout) : file_(std::move(file)) {
  std::error_code ec;
  std::filesystem::path full = std::filesystem::absolute(file_.path(), ec);
  file_.write(pageHead(ec ? file_.path() : full.string(), layout.pageCaption.chosen()));
  file_.write(tableStart());
  std::vector<Cell> captions;
  for (const Column& c : layout.columns) captions.push_back({c.widthPercent, std::string(c.caption.chosen()), false});
  row(captions);
}

void ReportWriter::row(const std::vector<Cell>& cells, std::string_view background) {
  text_.assign(kRowStart);
  for (const Cell& c : cells) {
    if (c.formatted)
      appendFormattedCell(text_, c.widthPercent, background, c.content);
    else
      appendPlainCell(text_, c.widthPercent, background, c.content);
  }
  text_ += kRowEnd;
  file_.write(text_);
}

bool ReportWriter::finish() {
  file_.write(pageTail());
  return file_.commit();
}

}  // namespace reports
