#pragma once
// Outlines of the dark parts of a picture, traced with potrace: each outline
// is a closed ring of points (the ring's first point is not repeated at its
// end), curves flattened to short straight pieces. Coordinates are pixels
// with y upward and the origin at the picture's lower-left corner, so that a
// traced drawing stands the right way up at one drawing unit per pixel.
#include <vector>

#include "ge/point.h"
#include "image/picture.h"

namespace image {

struct Outline {
  std::vector<ge::Point2d> points;
  bool hole = false;  // the boundary of a light area inside a dark one
};

// Whether a pixel reads as black in the two-colour reading of a picture: its
// luminance (0.299 r + 0.587 g + 0.114 b) is below the middle grey 128.
bool isDark(Rgb c);

struct TraceOptions {
  int speckleArea = 2;      // dark or light specks of at most this many pixels are dropped
  double cornerLimit = 1.0;  // potrace's alphamax: 0 keeps every corner sharp, 4/3 rounds them all
  double flatness = 0.2;     // largest distance of a flattened piece from its curve, pixels
};

// The outlines of the picture's dark areas; nothing when the tracer fails.
std::vector<Outline> traceOutlines(const Picture& picture, const TraceOptions& options = {});

}  // namespace image
