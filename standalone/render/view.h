#pragma once
// Mapping between drawing coordinates (XY plane, y up) and page pixels
// (origin top-left, y down): a uniform scale and a shift.
#include <optional>

#include "ge/point.h"

namespace standalone {

// A rectangle of the page in pixels, origin top-left.
struct PageRect {
  double x = 0, y = 0, width = 0, height = 0;
};

// 2D extents in drawing units; empty until the first point is added.
struct Box2d {
  double minX = 1, minY = 1, maxX = -1, maxY = -1;

  bool isValid() const { return minX <= maxX && minY <= maxY; }
  void add(double x, double y);
  void add(const Box2d& b);
};

struct ViewTransform {
  double scale = 1;        // pixels per drawing unit
  ge::Point2d center;      // drawing point shown at the page rectangle's centre
  ge::Point2d pageCenter;  // that centre in page pixels

  // Page pixel of a drawing point.
  ge::Point2d toPage(const ge::Point2d& p) const;
  // Drawing point of a page pixel (the inverse of toPage).
  ge::Point2d toDrawing(const ge::Point2d& px) const;
  // Height of the page rectangle in drawing units.
  double viewHeight(const PageRect& page) const { return page.height / scale; }
};

// Shows a view of the given height (drawing units) centred on a drawing point.
ViewTransform viewAt(const ge::Point2d& center, double height, const PageRect& page);

// Fits the box into the page, leaving marginFraction of the page free on each
// side. An empty box shows the unit square around the origin; a box with no
// width or height is widened so that the scale stays finite.
ViewTransform fitView(const Box2d& box, const PageRect& page, double marginFraction);

}  // namespace standalone
