#pragma once
// The grid of holes of a hole net, in picture pixels: the picture is cut into
// square cells, and each cell gets a hole whose size follows its darkness.
#include <vector>

#include "image/picture.h"

namespace image {

struct Hole {
  double x = 0, y = 0;  // cell centre, pixels from the picture's top-left corner (y downward)
  double size = 0;      // darkness times the cell side, pixels
};

struct HoleGrid {
  int cell = 1;  // cell side, pixels
  int rows = 0, columns = 0;
  std::vector<Hole> holes;  // row by row, left to right; every cell, white ones (size 0) too
};

// Darkness of a cell from the sum of its red + green + blue over its cell·cell
// pixels: 1 − sum / (cell·cell·255·3), 0 for white and 1 for black.
double cellDarkness(long long channelSum, int cell);

// The grid for a wanted number of rows (cut to the picture's height): cell
// side = height / rows (1 when that is 0), rows = height / cell and columns =
// width / cell, both truncated; with invert, light cells get the big holes.
HoleGrid holeGrid(const Picture& picture, int wantedRows, bool invert);

}  // namespace image
