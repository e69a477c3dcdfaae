#pragma once
// Writing one report page: head, table start and caption row first, then the
// value rows, then the tail.
#include <string>
#include <vector>

#include "reports/report_file.h"
#include "reports/report_layouts.h"
#include "reports/report_page.h"

namespace reports {

struct Cell {
  int widthPercent = 0;
  std::string content;
  bool formatted = true;  // a number; false for "&nbsp;" and caption words
};

Cell indexCell(int widthPercent, long long index);
Cell measureCell(int widthPercent, double value);
Cell blankCell(int widthPercent);

class ReportWriter {
 public:
  // Writes the head (its title the file's full path), the table start and
  // the caption row of the layout in the chosen language.
  ReportWriter(ReportFile file, const ReportLayout& layout);

  void row(const std::vector<Cell>& cells, std::string_view background = kWhite);
  // Writes the tail and puts the page in place; false when it could not be written.
  bool finish();

  const std::string& path() const { return file_.path(); }

 private:
  ReportFile file_;
  std::string text_;
};

}  // namespace reports
