#include "image/hole_grid.h"

#include <algorithm>
#include <cmath>

namespace image {

double cellDarkness(long long channelSum, int cell) {
  return 1.0 - static_cast<double>(channelSum) / (static_cast<double>(cell) * cell * 255.0 * 3.0);
}

HoleGrid holeGrid(const Picture& picture, int wantedRows, bool invert) {
  HoleGrid grid;
  if (picture.empty() || wantedRows <= 0) return grid;
  int rows = std::min(wantedRows, picture.height);
  grid.cell = std::max(1, picture.height / rows);
  grid.rows = picture.height / grid.cell;
  grid.columns = picture.width / grid.cell;
  const int c = grid.cell;
  grid.holes.reserve(static_cast<std::size_t>(grid.rows) * grid.columns);
  // One pass per row of cells: the sums of its columns are gathered pixel row
  // by pixel row, so the picture is read in memory order.
  std::vector<long long> sums(grid.columns);
  for (int row = 0; row < grid.rows; ++row) {
    std::fill(sums.begin(), sums.end(), 0);
    for (int y = row * c; y < (row + 1) * c; ++y) {
      const std::uint8_t* p = &picture.rgb[static_cast<std::size_t>(y) * picture.width * 3];
      for (int col = 0; col < grid.columns; ++col) {
        long long s = 0;
        for (int i = 0; i < c * 3; ++i) s += p[i];
        sums[col] += s;
        p += c * 3;
      }
    }
    for (int col = 0; col < grid.columns; ++col) {
      double d = cellDarkness(sums[col], c);
      if (invert) d = std::fabs(d - 1.0);
      grid.holes.push_back({col * c + c / 2.0, row * c + c / 2.0, d * c});
    }
  }
  return grid;
}

}  // namespace image
