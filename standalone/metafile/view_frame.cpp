#include "standalone/metafile/view_frame.h"

#include <algorithm>
#include <cmath>

namespace standalone {

namespace {

int evenRound(double v) { return 2 * static_cast<int>(std::lround(v / 2)); }

}  // namespace

ViewFrame viewFrame(const View& view) {
  double aspect = static_cast<double>(view.widthPixels) / view.heightPixels;
  // Even sides keep the centre on a whole logical unit.
  int height = std::max(2, evenRound(kViewSpan * std::min(1.0, 1 / aspect)));
  int width = std::clamp(evenRound(height * aspect), 2, kViewSpan);
  ViewFrame f;
  f.frame = WmfFrame{static_cast<std::int16_t>(-width / 2), static_cast<std::int16_t>(-height / 2),
                     static_cast<std::int16_t>(width / 2), static_cast<std::int16_t>(height / 2)};
  double u = height / view.height;
  f.unitsPerDrawingUnit = u;
  f.toLogical = PlaneMap{u, 0, 0, -u, -view.center.x * u, view.center.y * u};
  return f;
}

double importUnit(const View& view, const WmfFrame& frame) {
  return frame.height() > 0 ? 0.5 * view.height / frame.height() : 0.5 * view.height / kViewSpan;
}

}  // namespace standalone
