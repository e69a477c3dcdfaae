#pragma once
// The captions and column widths of every report.
#include <vector>

#include "frame/text.h"

namespace reports {

struct Column {
  int widthPercent = 0;
  frame::Text caption;
};

struct ReportLayout {
  frame::Text pageCaption;
  std::vector<Column> columns;
};

ReportLayout polylineLayout();      // PLLIST
ReportLayout circleLayout();        // CLIST
ReportLayout ellipseLayout();       // ELLLIST
ReportLayout arcLayout();           // ARCLIST
ReportLayout intersectionLayout();  // intersection points: Chinese captions in both languages

}  // namespace reports
