#pragma once
// The view of the drawing window: its centre and height in drawing units and
// the size of the viewport in pixels. ZOOM changes it; picking measures the
// pick box with it (VIEWSIZE and VIEWCTR read it).
#include "ge/point.h"

namespace standalone {

struct View {
  ge::Point2d center{0, 0};
  double height = 10;          // drawing units shown from bottom to top (VIEWSIZE)
  int widthPixels = 1600;
  int heightPixels = 1000;

  // Drawing units shown from left to right.
  double width() const { return height * widthPixels / heightPixels; }
  // Drawing units covered by one pixel.
  double unitsPerPixel() const { return height / heightPixels; }
  bool operator==(const View&) const = default;
};

}  // namespace standalone
