#pragma once
// Raster tools shared by the vectorizer and the contour commands: telling
// background pixels from figure pixels, the enclosed areas of a rendered
// figure as one seed pixel each (the outside area first), the outer contour
// of the figure as an ordered pixel list, and the mapping from the pixels of
// a rendered view to drawing coordinates.
//
// Pixels are addressed (x, y) with x to the right and y downward from the
// picture's top-left pixel, as pictures are stored and rendered.
#include <cstdint>
#include <vector>

#include "ge/point.h"
#include "image/picture.h"

namespace image {

struct PixelPoint {
  int x = 0, y = 0;
  bool operator==(const PixelPoint&) const = default;
};

// A pixel is background when each channel is within tolerance of the
// background colour: anti-aliased edges drawn over it then count as figure.
struct BackgroundTest {
  Rgb background{0, 0, 0};
  int tolerance = 24;
  bool operator()(Rgb c) const;
};

// The background colour of a rendered view: the most frequent colour of the
// picture's border pixels (a view has its background at the border unless
// the figure fills it entirely).
Rgb borderColour(const Picture& picture);

// One pixel in each connected area of background pixels (4-connected), in
// the order of the area's first pixel row by row; the area that touches the
// picture's border comes first (index 0). The outside area of a figure
// always touches the border; when nothing touches it the list starts with a
// seed of the first area as well. Areas smaller than minArea pixels are left out.
std::vector<PixelPoint> regionSeeds(const Picture& picture, const BackgroundTest& background, int minArea = 1);

// The outer contour of the figure: the boundary pixels of its largest part
// (figure pixels 4-connected), in order around it, clockwise as seen on the
// screen (counter-clockwise once mapped to a drawing, whose y runs upward),
// starting at the part's top-left pixel and not repeating it at the end. A
// pixel where the outline passes twice (a one-pixel neck) appears twice.
// Empty when the picture has no figure pixel.
std::vector<PixelPoint> outerContour(const Picture& picture, const BackgroundTest& background);

// The mapping of a rendered view: pixel centres to drawing points. A view of
// the drawing rectangle [min, max] rendered into width x height pixels with
// equal scale on both axes keeps the view's centre at the picture's centre.
struct PixelMapping {
  ge::Point2d centre;         // drawing point at the picture's centre
  double unitsPerPixel = 1;   // drawing units per pixel
  int width = 0, height = 0;  // pixels

  // The view whose centre and height (drawing units) fill a picture of width x height pixels.
  static PixelMapping ofView(ge::Point2d viewCentre, double viewHeight, int width, int height);
  // The drawing point at the centre of pixel (x, y).
  ge::Point3d toDrawing(PixelPoint p) const;
  ge::Point3d toDrawing(double x, double y) const;  // fractional pixels, (0, 0) the top-left corner
  // The pixel that contains a drawing point.
  PixelPoint toPixel(const ge::Point3d& p) const;
};

}  // namespace image
